// Tests of tufile: texts and log lines, tree moves and copies, and failures injected at every
// system call (torn files, symbolic-link swaps during a delete, transient retries, crashes).
#include "platform/Unix.h"
#include "text/MessageTestSupport.h"

#include <PlumvaleBaseCore/files/OSW_Execute.h>
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/tufile.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <functional>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

using plumvale::platform::setCallHook;

namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    file.write(bytes);
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Every path under `root`, relative, folders with a trailing '/', links as "name->target".
std::set<QString> treeOf(const QString& root) {
    std::set<QString> out;
    const QDir base(root);
    const auto entries = QDir(root).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot |
                                                  QDir::Hidden | QDir::System);
    for (const QFileInfo& e : entries) {
        const QString name = base.relativeFilePath(e.filePath());
        if (e.isSymLink())
            out.insert(name + "->" + e.symLinkTarget());
        else if (e.isDir()) {
            out.insert(name + "/");
            for (const QString& inner : treeOf(e.filePath()))
                out.insert(name + "/" + inner);
        } else
            out.insert(name + "=" + readFile(e.filePath()));
    }
    return out;
}

// The text of the FileErr that `operation` raises, or "<none>".
QString failureOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const tufile::FileErr& e) {
        return e.getText();
    }
    return QStringLiteral("<none>");
}

// A call hook driven by a function of the call number, removed on destruction.
class Hook {
public:
    explicit Hook(std::function<int(long)> f) : m_f(std::move(f)) { setCallHook(&run, this); }
    ~Hook() { setCallHook(nullptr, nullptr); }
    long calls = 0;

private:
    static int run(long call, void* self) {
        auto* hook = static_cast<Hook*>(self);
        hook->calls = call;
        return hook->m_f(call);
    }
    std::function<int(long)> m_f;
};

// How many counted system calls `operation` makes on a fresh `setup`.
long callsOf(const std::function<void()>& setup, const std::function<void()>& operation) {
    setup();
    Hook counter([](long) { return 0; });
    operation();
    return counter.calls;
}

} // namespace

TEST(tufile, PathTexts) {
    struct {
        const char* in;
        const char* out;
        const char* drive;
    } cases[] = {
        {"C:\\a\\\\b", "/a/b", "C:"},
        {"c:/x//y/", "/x/y/", "c:"},
        {"//server/share", "/server/share", ""},
        {"a\\b", "a/b", ""},
        {":x", ":x", ""},
        {"", "", ""},
        {"dir/file:stream", "/stream", "dir/file:"},
    };
    for (const auto& c : cases) {
        QString drive;
        EXPECT_EQ(tufile::unixPath(c.in, &drive), c.out) << c.in;
        EXPECT_EQ(drive, c.drive) << c.in;
        EXPECT_EQ(tufile::unixPath(c.in, nullptr), c.out);
    }
    EXPECT_EQ(tufile::mergePart("a/", "b"), "a/b");
    EXPECT_EQ(tufile::mergePart("a", "b"), "a/b");
    EXPECT_EQ(tufile::mergePart("", "b"), "/b");
}

TEST(tufile, FailureTextsAndLogLines) {
    QTemporaryDir tmp;
    const QString d = tmp.path();
    ASSERT_TRUE(UT_LogIO::create(d + "/log"));
    writeFile(d + "/file", "x");
    const QString missing = d + "/missing";
    const QString enoent = QString::fromLocal8Bit(strerror(ENOENT));
    const struct {
        std::function<void()> operation;
        QString text;
        QString logLine; // the end of the line logged, empty for none
    } cases[] = {
        {[&] { tufile::rm(missing); }, "Cannot delete file \"" + missing + "\".",
         "Delete;" + missing + ";"},
        {[&] { tufile::rm(d); }, "Cannot delete file \"" + d + "\".", "Delete;" + d + ";"},
        {[&] { tufile::mv(missing, d + "/b"); },
         "Cannot move file: " + missing + " to: " + d + "/b", "Move;" + missing + ";" + d + "/b"},
        {[&] { tufile::mv(d + "\\file", d + "/log"); }, // backslashes prepared; the target is taken
         "Cannot move file: " + d + "/file to: " + d + "/log",
         "Move;" + d + "\\file;" + d + "/log"},
        {[&] { tufile::Copy(missing, d + "/c"); },
         "Cannot copy file \"" + missing + "\" to \"" + d + "/c\": (" + enoent + ")",
         "Copy;" + missing + ";" + d + "/c"},
        {[&] { tufile::MoveDir(missing, d + "/m"); },
         "Cannot move: " + missing + " to: " + d + "/m", "Move;" + missing + ";" + d + "/m"},
        {[&] { tufile::MoveDir2(missing, d + "/m", false); },
         "Cannot move: \"" + missing + "\" to \"" + d + "/m\"", "Move;" + missing + ";" + d + "/m"},
        {[&] { tufile::RmDir(missing); }, "Cannot delete: " + missing, "Delete;" + missing + ";"},
        {[&] { tufile::mkdir(""); }, "Invalid path (empty)", ""},
        {[&] { tufile::rmdir(""); }, "Invalid path (empty)", ""},
        {[&] { tufile::mkdir(missing + "/x"); }, "Cannot create dir: " + missing + "/x", ""},
        {[&] { tufile::rmdir(d + "/log"); }, "Cannot remove dir: " + d + "/log", ""},
        {[&] { tufile::lns(d + "/file", d + "/l"); }, "Sym link not supported", ""},
        {[&] { tufile::lnh("", ""); }, "Hard link not supported", ""},
        {[&] { tufile::chmod(d + "/file", 0644); }, "Permissions change not supported", ""},
        {[&] { tufile::checkCreatePath(d + "/file/sub/x", true); },
         "Cannot create directory \"" + d + "/file\": (" +
             QString::fromLocal8Bit(strerror(ENOTDIR)) + ")",
         ""},
        {[&] { tufile::cp(missing, d + "/c", true, true, false); },
         "Error during file copy. \"" + missing + "\" does not exists.",
         "Copy;" + missing + ";" + d + "/c"},
        {[&] { tufile::cp(d + "/file", d + "/file", false, false, false); },
         "Error during file copy. \"" + d + "/file\" already exists.",
         "Copy;" + d + "/file;" + d + "/file"},
        {[&] { tufile::updateFile(missing, "a", "b"); }, "Cannot update file \"" + missing + "\".",
         "Update;" + missing + ";"},
    };
    for (const auto& c : cases) {
        const qint64 before = QFileInfo(UT_LogIO::fileName()).size();
        EXPECT_EQ(failureOf(c.operation), c.text);
        QFile log(UT_LogIO::fileName());
        ASSERT_TRUE(log.open(QIODevice::ReadOnly));
        log.seek(before);
        const QString added = QString::fromUtf8(log.readAll()).trimmed();
        if (c.logLine.isEmpty())
            EXPECT_EQ(added, "") << c.text.toStdString();
        else
            EXPECT_TRUE(added.endsWith(c.logLine)) << added.toStdString();
    }
    UT_LogIO::close();
    EXPECT_EQ(readFile(d + "/file"), "x");

    // The exception carries its message both ways.
    const tufile::FileErr err(MSG_Text("tufile", "Sym link not supported"));
    EXPECT_EQ(static_cast<MSG_Text>(err).getText(), err.getMSgText().getText());
    EXPECT_EQ(err.getTransText(), "Sym link not supported");
}

TEST(tufile, FoldersAndExistence) {
    QTemporaryDir tmp;
    const QString d = tmp.path();
    tufile::mkdir(d + "/new");
    tufile::mkdir(d + "/new"); // exists: nothing
    EXPECT_TRUE(tufile::dirExists(d + "/new") && tufile::fileExists(d + "/new"));
    writeFile(d + "/f", "x");
    EXPECT_TRUE(tufile::fileExists(d + "/f"));
    EXPECT_FALSE(tufile::dirExists(d + "/f"));
    tufile::rmIfExists(d + "/new"); // a folder: kept
    tufile::rmIfExists(d + "/absent");
    ASSERT_EQ(::symlink("nowhere", (d + "/dangling").toLocal8Bit().constData()), 0);
    tufile::rmIfExists(d + "/dangling");
    tufile::rmIfExists(d + "\\f");
    tufile::rmdir(d + "/new");
    tufile::rmdir(d + "/new"); // gone: nothing
    tufile::checkCreatePath(d + "/p/q/r/file.txt", true);
    tufile::checkCreatePath(d + "/s/t", false);
    EXPECT_EQ(treeOf(d), (std::set<QString>{"p/", "p/q/", "p/q/r/", "s/", "s/t/"}));
}

TEST(tufile, CopyReplacesWholeAndKeepsTheMode) {
    QTemporaryDir tmp;
    const QString d = tmp.path();
    writeFile(d + "/src", "new bytes");
    ::chmod((d + "/src").toLocal8Bit().constData(), 0640);
    writeFile(d + "/dst", "old");
    // A second name of the old target keeps the old bytes: the target was replaced by a
    // rename, never rewritten in place.
    ASSERT_EQ(
        ::link((d + "/dst").toLocal8Bit().constData(), (d + "/old").toLocal8Bit().constData()), 0);
    tufile::Copy(d + "/src", d + "/dst");
    EXPECT_EQ(treeOf(d), (std::set<QString>{"src=new bytes", "dst=new bytes", "old=old"}));
    struct stat st;
    ASSERT_EQ(::stat((d + "/dst").toLocal8Bit().constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
}

TEST(tufile, MoveDirMergesAndMoveDir2Refuses) {
    QTemporaryDir tmp;
    const QString d = tmp.path();
    const auto build = [&] {
        QDir(d).removeRecursively();
        QDir().mkpath(d + "/a/sub");
        QDir().mkpath(d + "/b/a/sub");
        QDir().mkpath(d + "/b/a/keep");
        writeFile(d + "/a/x", "new x");
        writeFile(d + "/a/sub/y", "y");
        writeFile(d + "/b/a/x", "old x");
        writeFile(d + "/b/a/sub/z", "z");
    };
    const std::set<QString> merged{"b/",        "b/a/",        "b/a/x=new x", "b/a/sub/",
                                   "b/a/keep/", "b/a/sub/y=y", "b/a/sub/z=z"};
    build();
    tufile::MoveDir(d + "/a", d + "/b");
    EXPECT_EQ(treeOf(d), merged);

    build();
    const std::set<QString> untouched = treeOf(d);
    EXPECT_EQ(failureOf([&] { tufile::MoveDir2(d + "/a", d + "/b", true); }),
              "Cannot move: \"" + d + "/a\" to \"" + d + "/b\"");
    EXPECT_EQ(treeOf(d), untouched);
    tufile::MoveDir2(d + "/a", d + "/c", true); // a free name: renamed
    EXPECT_TRUE(treeOf(d).count("c/sub/y=y"));
    EXPECT_EQ(failureOf([&] { tufile::MoveDir(d + "/c", d); }), // onto itself
              "Cannot move: " + d + "/c to: " + d);

    // Across file systems (the first rename fails with EXDEV) the tree is copied then removed.
    build();
    {
        Hook crossDevice([](long call) { return call == 1 ? EXDEV : 0; });
        tufile::MoveDir(d + "/a", d + "/fresh");
    }
    EXPECT_TRUE(treeOf(d).count("fresh/sub/y=y") && !QFileInfo::exists(d + "/a"));
}

TEST(tufile, CopyOptions) {
    QTemporaryDir tmp;
    const QString d = tmp.path();
    QDir().mkpath(d + "/src/sub/deep");
    writeFile(d + "/src/one", "1");
    writeFile(d + "/src/sub/two", "2");
    writeFile(d + "/src/sub/deep/three", "3");
    ASSERT_EQ(::symlink("..", (d + "/src/sub/up").toLocal8Bit().constData()), 0); // a loop

    RecordingInstall install;
    QStringList asked;
    const QString loopText = "Cannot copy file \"" + d + "/src/sub/up\" to \"" + d +
                             "/dst/src/sub/up\": (" + QString::fromLocal8Bit(strerror(ELOOP)) + ")";
    QDir().mkpath(d + "/dst");
    EXPECT_EQ(failureOf([&] {
                  tufile::cp(d + "/src", d + "/dst", false, true, true, [&](const QString& f) {
                      asked << QFileInfo(f).fileName();
                      return true;
                  });
              }),
              loopText);
    ASSERT_EQ(install.centre->reports.size(), 1u);
    EXPECT_EQ(install.centre->reports[0].kind, 'W');
    EXPECT_EQ(install.centre->reports[0].text, loopText);
    asked.sort();
    EXPECT_EQ(asked, (QStringList{"one", "three", "two"}));
    const std::set<QString> copied = treeOf(d + "/dst");
    EXPECT_TRUE(copied.count("src/sub/deep/three=3") && copied.count("src/one=1"));

    // Without going on, the loop stops the copy; without overwriting, a present file does.
    EXPECT_EQ(failureOf([&] { tufile::cp(d + "/src", d + "/again", true, true, false); }),
              QString(loopText).replace("/dst/src/", "/again/"));
    EXPECT_EQ(failureOf([&] { tufile::CopyDir(d + "/src", d + "/dst/src", false, false, false); }),
              "Error during file copy. \"" + d + "/dst/src/one\" already exists.");
    ::unlink((d + "/src/sub/up").toLocal8Bit().constData());

    // Not recursive: the files of the folder only; then a user's stop.
    tufile::CopyDir(d + "/src", d + "/flat", true, false, false);
    EXPECT_EQ(treeOf(d + "/flat"), (std::set<QString>{"one=1"}));
    EXPECT_EQ(failureOf([&] {
                  tufile::cp(d + "/src", d + "/halt", true, true, false,
                             [](const QString&) { return false; });
              }),
              "Copy of " + d + "/src to " + d + "/halt has been halted.\n");
    EXPECT_EQ(failureOf([&] { tufile::cp(d + "/src", d + "/src/sub/in", true, true, false); }),
              "Cannot copy file \"" + d + "/src\" to \"" + d + "/src/sub/in\": (" +
                  QString::fromLocal8Bit(strerror(EINVAL)) + ")");
    tufile::cp(d + "/src/one", d + "/flat/one", true, false, false); // a file over a file
    EXPECT_EQ(readFile(d + "/flat/one"), "1");
}

TEST(tufile, UpdateFileEncodingsAndCounts) {
    QTemporaryDir tmp;
    const QString f = tmp.filePath("scene.ini");
    writeFile(f, "path=C:/old/old/x\nname=old\n");
    ::chmod(f.toLocal8Bit().constData(), 0600);
    EXPECT_EQ(tufile::updateFile(f, {{"old", "new"}, {"new/new", "n2"}, {"", "never"}}), 4);
    EXPECT_EQ(readFile(f), "path=C:/n2/x\nname=new\n");
    struct stat st;
    ASSERT_EQ(::stat(f.toLocal8Bit().constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0600u);
    EXPECT_EQ(treeOf(tmp.path()), (std::set<QString>{"scene.ini=path=C:/n2/x\nname=new\n"}));

    // Without a match the file is left as it is (same inode).
    struct stat before, after;
    ::stat(f.toLocal8Bit().constData(), &before);
    EXPECT_EQ(tufile::updateFile(f, "absent", "x"), 0);
    ::stat(f.toLocal8Bit().constData(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino);

    // UTF-16 in both orders, matched on whole units: U+E941 U+4100 U+E941 holds the bytes of
    // U+00E9 astride two units in either order, which must not match.
    for (bool big : {false, true}) {
        const auto utf16 = [big](const QString& text) {
            QByteArray bytes(big ? "\xFE\xFF" : "\xFF\xFE");
            for (const QChar c : text) {
                bytes.append(char(big ? c.unicode() >> 8 : c.unicode()));
                bytes.append(char(big ? c.unicode() : c.unicode() >> 8));
            }
            return bytes;
        };
        writeFile(f, utf16(QString::fromUtf8("a\u00e9b\u4e2d\u00e9\ue941\u4100\ue941")));
        EXPECT_EQ(tufile::updateFile(f, QString::fromUtf8("\u00e9"), "E"), 2);
        EXPECT_EQ(readFile(f), utf16(QString::fromUtf8("aEb\u4e2dE\ue941\u4100\ue941")));
    }
}

// A failure at each system call, of each kind, leaves no torn or stray file.
TEST(tufile, InjectedFailuresLeaveNothingTorn) {
    QTemporaryDir tmp;
    const QString d = tmp.path() + "/w";
    const QByteArray oldBytes(100000, 'o'), newBytes(150000, 'n');
    const auto setup = [&] {
        QDir(d).removeRecursively();
        QDir().mkpath(d);
        writeFile(d + "/src", newBytes);
        writeFile(d + "/dst", oldBytes);
    };
    const auto oldOrNew = [&](const QString& path) {
        const QByteArray bytes = readFile(path);
        return bytes == oldBytes || bytes == newBytes;
    };
    struct Operation {
        const char* name;
        std::function<void()> run;
        std::function<void(bool failed)> check;
    } operations[] = {
        {"Copy", [&] { tufile::Copy(d + "/src", d + "/dst"); },
         [&](bool failed) {
             EXPECT_TRUE(oldOrNew(d + "/dst"));
             EXPECT_TRUE(failed || readFile(d + "/dst") == newBytes);
             EXPECT_EQ(treeOf(d).size(), 2u); // no temporary file left
         }},
        {"updateFile",
         [&] { tufile::updateFile(d + "/dst", QString(oldBytes), QString(newBytes)); },
         [&](bool failed) {
             const bool named = QFileInfo::exists(d + "/dst");
             EXPECT_TRUE(named ? oldOrNew(d + "/dst") : readFile(d + "/dst~") == oldBytes);
             EXPECT_TRUE(failed || readFile(d + "/dst") == newBytes);
             EXPECT_FALSE(QFileInfo::exists(d + "/dst+"));
         }},
        {"mv across file systems", [&] { tufile::mv(d + "/src", d + "/moved"); },
         [&](bool failed) {
             const QByteArray moved = readFile(d + "/moved");
             EXPECT_TRUE(moved == newBytes || moved == "<missing>");
             EXPECT_EQ(readFile(d + "/src"), failed ? newBytes : QByteArray("<missing>"));
         }},
    };
    for (const Operation& op : operations) {
        // The move gets EXDEV from its first rename, so that its copy path is the one tested.
        const bool cross = std::string(op.name).rfind("mv", 0) == 0;
        const auto crossing = [cross](long call) { return cross && call == 1 ? EXDEV : 0; };
        setup();
        long count;
        {
            Hook counter(crossing);
            op.run();
            count = counter.calls;
        }
        ASSERT_GT(count, 4) << op.name;
        for (long n = cross ? 2 : 1; n <= count; ++n)
            for (int error : {ENOSPC, EIO, EXDEV}) {
                SCOPED_TRACE(std::string(op.name) + " call " + std::to_string(n) + " errno " +
                             std::to_string(error));
                setup();
                bool failed = false;
                {
                    Hook hook([&](long call) { return call == n ? error : crossing(call); });
                    failed = failureOf(op.run) != "<none>";
                }
                op.check(failed);
            }
    }
}

// A folder swapped for a link to an outside folder at any moment of a delete: the outside
// folder keeps everything.
TEST(tufile, RmDirNeverFollowsASwappedLink) {
    QTemporaryDir tmp;
    const QString d = tmp.path();
    const QString root = d + "/root", outside = d + "/outside";
    const auto setup = [&] {
        QDir(root).removeRecursively();
        QDir(d + "/moved").removeRecursively();
        QDir().mkpath(root + "/a/b/c");
        QDir().mkpath(outside);
        writeFile(outside + "/keep", "k");
        writeFile(root + "/a/b/c/f", "f");
        writeFile(root + "/a/g", "g");
        writeFile(root + "/z", "z");
        ::symlink(outside.toLocal8Bit().constData(), (root + "/link").toLocal8Bit().constData());
    };
    const long count = callsOf(setup, [&] { tufile::RmDir(root); });
    EXPECT_FALSE(QFileInfo::exists(root));
    ASSERT_GT(count, 8);
    for (const char* swapped : {"/a", "/a/b", "/a/b/c"})
        for (long n = 1; n <= count; ++n) {
            setup();
            const QString folder = root + swapped;
            {
                Hook swap([&](long call) {
                    if (call == n) {
                        ::rename(folder.toLocal8Bit().constData(),
                                 (d + "/moved").toLocal8Bit().constData());
                        ::symlink(outside.toLocal8Bit().constData(),
                                  folder.toLocal8Bit().constData());
                    }
                    return 0;
                });
                failureOf([&] { tufile::RmDir(root); });
            }
            EXPECT_EQ(treeOf(outside), (std::set<QString>{"keep=k"})) << swapped << " at " << n;
        }
}

TEST(tufile, ShellOperationsRetryABusyFileFourTimes) {
    QTemporaryDir tmp;
    const QString folder = tmp.path() + "/busy";
    for (long busyCalls : {3, 4}) {
        QDir().mkpath(folder);
        Hook busy([&](long call) { return call <= busyCalls ? EBUSY : 0; });
        const QString result = failureOf([&] { tufile::RmDir(folder); });
        EXPECT_EQ(result, busyCalls < 4 ? "<none>" : "Cannot delete: " + folder);
        EXPECT_EQ(QFileInfo::exists(folder), busyCalls == 4);
        EXPECT_TRUE(busyCalls < 4 || busy.calls == 4); // each attempt stopped at its first call
    }
}

// A process killed at any system call of updateFile's replacement leaves the old or the new
// bytes under the name, or the old ones in its backup.
TEST(tufile, KilledDuringReplacement) {
    QTemporaryDir tmp;
    const QString f = tmp.filePath("doc");
    const auto setup = [&] {
        QFile::remove(f + "~");
        writeFile(f, "old payload");
    };
    const long count = callsOf(setup, [&] { tufile::updateFile(f, "old", "new"); });
    ASSERT_GT(count, 6);
    for (int round = 0; round < 3; ++round)
        for (long n = 1; n <= count + 1; ++n) {
            setup();
            OSW_Execute child;
            child.execm(QStringList{PLUMVALE_PROC_CHILD, "replace", f, QString::number(n)});
            const int status = child.waitForProcEnd();
            EXPECT_EQ(status, n <= count ? 128 + SIGKILL : 0) << n;
            const QByteArray now = readFile(f);
            EXPECT_TRUE(now == "old payload" || now == "new payload" ||
                        (now == "<missing>" && readFile(f + "~") == "old payload"))
                << "killed at call " << n << ": " << now.constData();
        }
}

// In a widget application the user's input is kept from its windows while a shell-style
// operation runs, and given back afterwards.
TEST(tufile, ShellOperationsBlockInputInAWidgetApplication) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[] = "files_tests";
    char* argv[] = {name, nullptr};
    QApplication app(argc, argv);
    QTemporaryDir tmp;
    QDir().mkpath(tmp.path() + "/tree/sub");
    bool blocked = true;
    {
        Hook watch([&](long) {
            blocked = blocked && QApplication::activeModalWidget() != nullptr;
            return 0;
        });
        tufile::RmDir(tmp.path() + "/tree");
        EXPECT_GT(watch.calls, 3);
    }
    EXPECT_TRUE(blocked);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}
