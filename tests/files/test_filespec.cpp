// Tests of PL_FileSpec on real files: status, listing, shortcuts, temporary names, special
// folders and the file operations.
#include <PlumvaleBaseCore/files.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <future>
#include <map>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

UT_String u(const QString& s) {
    return UT_String(s);
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray readFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
}

void put32(QByteArray& b, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        b.append(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void put16(QByteArray& b, std::uint32_t v) {
    b.append(static_cast<char>(v & 0xFF));
    b.append(static_cast<char>((v >> 8) & 0xFF));
}

// The fixed 0x4C-byte header of a shell link with the given link flags.
QByteArray shellLinkHeader(std::uint32_t flags) {
    QByteArray b;
    put32(b, 0x4C);
    const unsigned char clsid[16] = {0x01, 0x14, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00,
                                     0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46};
    b.append(reinterpret_cast<const char*>(clsid), 16);
    put32(b, flags);
    b.append(QByteArray(0x4C - b.size(), '\0')); // attributes, times, size, icon, hotkey
    return b;
}

// A shell link whose LinkInfo holds a local base path (written with backslashes).
QByteArray shellLinkToLocalPath(const QString& target) {
    QByteArray b = shellLinkHeader(0x2); // HasLinkInfo
    QByteArray volume;
    put32(volume, 0x11); // VolumeIDSize
    put32(volume, 3);    // DRIVE_FIXED
    put32(volume, 0x1234);
    put32(volume, 0x10); // label offset
    volume.append('\0');
    QByteArray base = target.toLatin1().replace('/', '\\');
    base.append('\0');
    const std::uint32_t header = 0x1C;
    const std::uint32_t volumeOffset = header;
    const std::uint32_t baseOffset = volumeOffset + static_cast<std::uint32_t>(volume.size());
    const std::uint32_t suffixOffset = baseOffset + static_cast<std::uint32_t>(base.size());
    QByteArray info;
    put32(info, suffixOffset + 1); // LinkInfoSize
    put32(info, header);
    put32(info, 0x1); // VolumeIDAndLocalBasePath
    put32(info, volumeOffset);
    put32(info, baseOffset);
    put32(info, 0); // no network link
    put32(info, suffixOffset);
    info += volume + base;
    info.append('\0'); // empty common path suffix
    return b + info;
}

// A Unicode shell link that only carries a relative path.
QByteArray shellLinkRelative(const QString& relative) {
    QByteArray b = shellLinkHeader(0x8 | 0x80); // HasRelativePath | IsUnicode
    put16(b, static_cast<std::uint32_t>(relative.size()));
    for (QChar c : relative)
        put16(b, c.unicode());
    return b;
}

} // namespace

TEST(OSW_FileInfo, ShellLinkParsing) {
    EXPECT_EQ(OSW_FileInfo::parseShellLink(shellLinkToLocalPath(QStringLiteral("C:/Users/a/b"))),
              QStringLiteral("C:/Users/a/b"));
    EXPECT_EQ(OSW_FileInfo::parseShellLink(shellLinkRelative(QStringLiteral("..\\d\u00e9j\u00e0"))),
              QStringLiteral("../d\u00e9j\u00e0"));
    QByteArray broken = shellLinkToLocalPath(QStringLiteral("C:/x"));
    broken[5] = 'X'; // wrong class id
    EXPECT_TRUE(OSW_FileInfo::parseShellLink(broken).isEmpty());
    // Every truncation of a valid link is rejected or parsed without reading past the end.
    const QByteArray whole = shellLinkToLocalPath(QStringLiteral("C:/some/where"));
    for (int n = 0; n < whole.size(); ++n)
        EXPECT_NE(OSW_FileInfo::parseShellLink(whole.left(n)), QStringLiteral("C:/some/where"))
            << n;
}

TEST(PL_FileSpec, ListingKnowsEveryKindOfEntry) {
    QTemporaryDir tmp;
    ASSERT_TRUE(tmp.isValid());
    const QString d = tmp.path();
    writeFile(d + "/a.txt", "abc");
    writeFile(d + "/.hidden", "");
    ASSERT_TRUE(QDir(d).mkdir(QStringLiteral("folder")));
    ASSERT_EQ(::symlink((d + "/a.txt").toUtf8().constData(), (d + "/to_file").toUtf8().constData()),
              0);
    ASSERT_EQ(
        ::symlink((d + "/folder").toUtf8().constData(), (d + "/to_folder").toUtf8().constData()),
        0);
    ASSERT_EQ(
        ::symlink((d + "/nowhere").toUtf8().constData(), (d + "/dangling").toUtf8().constData()),
        0);
    writeFile(d + "/x.lnk", shellLinkToLocalPath(d + "/folder"));
    writeFile(d + "/X.LNK", shellLinkToLocalPath(d + "/folder"));
    writeFile(d + "/rel.lnk", shellLinkRelative(QStringLiteral("folder")));

    struct Want {
        bool file, folder, link, hidden;
        unsigned length;
    };
    const std::map<std::string, Want> want = {
        {"a.txt", {true, false, false, false, 3}},    {".hidden", {true, false, false, true, 0}},
        {"folder", {false, true, false, false, 0}},   {"to_file", {true, false, true, false, 3}},
        {"to_folder", {false, true, true, false, 0}}, {"dangling", {false, false, true, false, 0}},
        {"x.lnk", {false, true, true, false, 0}},     {"X.LNK", {true, false, false, false, 0}},
        {"rel.lnk", {false, true, true, false, 0}},
    };
    std::map<std::string, int> seen;
    const PL_FileSpec folder(u(d));
    for (PL_FileSpec::iterator it = folder.begin(); it != folder.end(); ++it) {
        const std::string name = it->GetName().utf8();
        ++seen[name];
        ASSERT_TRUE(want.count(name)) << name;
        const Want& w = want.at(name);
        EXPECT_EQ(it->GetFilePath().utf8(), (d + "/").toStdString() + name);
        EXPECT_EQ(it->IsFile(), w.file) << name;
        EXPECT_EQ(it->IsFolder(), w.folder) << name;
        EXPECT_EQ(it->IsSymbolicLink(), w.link) << name;
        EXPECT_EQ(it->IsHidden(), w.hidden) << name;
        if (w.file && name != "X.LNK") {
            EXPECT_EQ(it->GetFileLength(), w.length) << name;
        }
        // The listed status agrees with a fresh one.
        const PL_FileSpec fresh(it->GetFilePath());
        EXPECT_EQ(fresh.GetFileInfo().GetMode(), it->GetFileInfo().GetMode()) << name;
    }
    EXPECT_EQ(seen.size(), want.size());
    for (const auto& [name, count] : seen)
        EXPECT_EQ(count, 1) << name;

    // UT_PathIterator yields the same entries as paths.
    int paths = 0;
    for (UT_PathIterator it(UT_Path(d + "/", true)); !it.IsEnd(); ++it) {
        EXPECT_EQ(it->GetPath(true).left(d.size() + 1), d + "/");
        ++paths;
    }
    EXPECT_EQ(paths, static_cast<int>(want.size()));
    EXPECT_TRUE(PL_FileSpec(u(d + "/missing")).begin() == PL_FileSpec::iterator());
    const PL_FileSpec missing(u(d + "/missing"));
    EXPECT_FALSE(missing.IsFile() || missing.IsFolder() || missing.IsSymbolicLink());
    EXPECT_EQ(missing.GetFileLength(), 0u);
    EXPECT_EQ(missing.TestAccess(false), -1);
}

TEST(PL_FileSpec, TextRules) {
    struct Case {
        const char *path, *name, *base, *ext;
    };
    const Case cases[] = {{"/a/b/file.tar.gz", "file.tar.gz", "file.tar", "gz"},
                          {"/a/b/", "b", "b", ""},
                          {"C:\\x\\y.TXT", "y.TXT", "y", "TXT"},
                          {"noext", "noext", "noext", ""}};
    for (const Case& c : cases) {
        const PL_FileSpec f{UT_String(c.path)};
        EXPECT_EQ(f.GetName(true).utf8(), c.name) << c.path;
        EXPECT_EQ(f.GetName(false).utf8(), c.base) << c.path;
        EXPECT_EQ(f.GetExtension().utf8(), c.ext) << c.path;
    }
    EXPECT_TRUE(PL_FileSpec(UT_String("C:/x/y.TXT")).HasExtension(UT_String("txt")));
    EXPECT_TRUE(PL_FileSpec(UT_String("//srv/share")).IsShare());
    EXPECT_FALSE(PL_FileSpec(UT_String("//srv/share/x")).IsShare());
    EXPECT_FALSE(PL_FileSpec(UT_String("///x/y")).IsShare());

    PL_FileSpec f(UT_String("/a/b/c.txt"));
    f.SetExtension(UT_String("png"));
    EXPECT_EQ(f.GetFilePath().utf8(), "/a/b/c.png");
    EXPECT_TRUE(f.Up());
    EXPECT_EQ(f.GetFilePath().utf8(), "/a/b");
    f.Add(UT_String("d"));
    EXPECT_EQ(f.GetFilePath().utf8(), "/a/b/d");
    PL_FileSpec root(UT_String("/a"));
    EXPECT_TRUE(root.Up());
    EXPECT_EQ(root.GetFilePath().utf8(), "/");
    EXPECT_FALSE(root.Up());

    UT_String rel;
    ASSERT_EQ(PL_FileSpec(UT_String("/p/q/r")).GetRelativePath(rel, PL_FileSpec(UT_String("/p"))),
              0);
    EXPECT_EQ(rel.utf8(), "./q/r");
    ASSERT_EQ(PL_FileSpec(UT_String("/p/x")).GetRelativePath(rel, PL_FileSpec(UT_String("/p/q/r"))),
              0);
    EXPECT_EQ(rel.utf8(), "../../x");
    EXPECT_EQ(PL_FileSpec(UT_String("C:/p")).GetRelativePath(rel, PL_FileSpec(UT_String("D:/p"))),
              -1);
    PL_FileSpec back;
    back.IFileSpec(UT_String("../../x"), PL_FileSpec(UT_String("/p/q/r")));
    EXPECT_EQ(back.GetFilePath().utf8(), "/p/x");
    // Joined onto a bare drive, a path stays relative to the drive's current folder.
    for (const auto& [relText, baseText, expected] :
         {std::array<const char*, 3>{"../x", "C:y", "C:x"},
          {"x", "C:", "C:x"},
          {"../x", "C:/y", "C:/x"},
          {"x", "//srv/share", "//srv/share/x"},
          // a third '/' is no share: the root is "/"
          {"../b", "////", "/b"},
          {"..", "///a/b", "/a"}}) {
        back.IFileSpec(UT_String(relText), PL_FileSpec(UT_String(baseText)));
        EXPECT_EQ(back.GetFilePath().utf8(), expected) << relText << " on " << baseText;
    }

    PL_FileSpec::FILETIME ft{0x256D4000u, 0x01BF53EBu}; // 2000-01-01 00:00:00 UTC
    long long t = 0;
    PL_FileSpec::ConvertFileTimeToTimeT(&ft, t);
    EXPECT_EQ(t, 946684800);
}

TEST(PL_FileSpec, SavableIdRoundTrip) {
    QTemporaryDir tmp;
    writeFile(tmp.path() + "/s\u00e9.txt", "x");
    const PL_FileSpec base(u(tmp.path()));
    const PL_FileSpec file(u(tmp.path() + "/s\u00e9.txt"));
    PL_FileSpec::SavableID id;
    ASSERT_EQ(file.GetSavableID(id, &base), 0);
    EXPECT_EQ(id.path(), UT_String(QStringLiteral("./s\u00e9.txt")));
    EXPECT_EQ(id.bytes.size(), 2 * id.path().size());
    PL_FileSpec restored;
    restored.IFileSpec(id, &base);
    EXPECT_EQ(restored, file);
    ASSERT_EQ(file.GetSavableID(id, nullptr), 0);
    EXPECT_EQ(id.path(), file.GetFilePath());
    EXPECT_EQ(PL_FileSpec(u(tmp.path() + "/none")).GetSavableID(id, nullptr), -1);
}

TEST(PL_FileSpec, TemporaryNamesAndSpecialFolders) {
    QTemporaryDir tmp;
    ASSERT_TRUE(tmp.isValid());
    qputenv("TMPDIR", tmp.path().toUtf8());
    qputenv("HOME", tmp.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (tmp.path() + "/config").toUtf8());
    qputenv("XDG_DATA_HOME", (tmp.path() + "/data").toUtf8());
    ASSERT_TRUE(QDir().mkpath(tmp.path() + "/config"));
    writeFile(tmp.path() + "/config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Papiers\"\n");

    PL_FileSpec first, second;
    ASSERT_EQ(first.IFileSpec(PL_FileSpec::TempFile), 0);
    ASSERT_EQ(second.IFileSpec(PL_FileSpec::TempFile), 0);
    const std::string folder = (tmp.path() + "/PlumvaleStudioTempDir/").toStdString();
    EXPECT_EQ(first.GetFilePath().utf8(), folder + "tmpfs_1.tmp");
    EXPECT_EQ(second.GetFilePath().utf8(), folder + "tmpfs_2.tmp");
    EXPECT_FALSE(first.IsExists()); // names only
    writeFile(tmp.path() + "/PlumvaleStudioTempDir/tmpfs_3.tmp", "taken");
    PL_FileSpec third;
    ASSERT_EQ(third.IFileSpec(PL_FileSpec::TempFile), 0);
    EXPECT_EQ(third.GetFilePath().utf8(), folder + "tmpfs_4.tmp");

    PL_FileSpec session;
    ASSERT_EQ(session.IFileSpec(PL_FileSpec::SessionTempFolder), 0);
    EXPECT_EQ(session.GetFilePath().utf8(), (tmp.path() + "/PlumvaleSessionTempDir").toStdString());
    EXPECT_TRUE(session.IsFolder());

    for (int type = 2; type <= 6; ++type) {
        PL_FileSpec docs;
        ASSERT_EQ(docs.IFileSpec(static_cast<PL_FileSpec::SpecialFolderType>(type)), 0);
        EXPECT_EQ(docs.GetFilePath().utf8(), (tmp.path() + "/Papiers").toStdString()) << type;
    }
    PL_FileSpec appData;
    ASSERT_EQ(appData.IFileSpec(PL_FileSpec::AppDataFolder), 0);
    EXPECT_EQ(appData.GetFilePath().utf8(), (tmp.path() + "/data").toStdString());
    for (int type : {0, 9, -1}) {
        PL_FileSpec none(UT_String("/keep"));
        EXPECT_EQ(none.IFileSpec(static_cast<PL_FileSpec::SpecialFolderType>(type)), -1);
        EXPECT_FALSE(none.IsValid());
    }
    qunsetenv("TMPDIR");
}

TEST(PL_FileSpec, FileOperations) {
    QTemporaryDir tmp;
    const QString d = tmp.path();
    writeFile(d + "/one", "first");
    writeFile(d + "/two", "second, longer");
    const PL_FileSpec one(u(d + "/one")), two(u(d + "/two"));
    ASSERT_EQ(one.Exchange(two), 0);
    EXPECT_EQ(readFile(d + "/one"), QByteArray("second, longer"));
    EXPECT_EQ(readFile(d + "/two"), QByteArray("first"));
    EXPECT_EQ(one.GetFileLength(), 14u); // the cache was reset

    ASSERT_EQ(::chmod((d + "/one").toUtf8().constData(), 0640), 0);
    const PL_FileSpec copy(u(d + "/copy"));
    ASSERT_EQ(one.Copy(copy, false), 0);
    EXPECT_EQ(readFile(d + "/copy"), QByteArray("second, longer"));
    struct stat st;
    ASSERT_EQ(::stat((d + "/copy").toUtf8().constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    EXPECT_EQ(two.Copy(copy, false), -EEXIST);
    EXPECT_EQ(readFile(d + "/copy"), QByteArray("second, longer"));
    ASSERT_EQ(two.Copy(copy, true), 0);
    EXPECT_EQ(readFile(d + "/copy"), QByteArray("first"));
    EXPECT_EQ(PL_FileSpec(u(d + "/none")).Copy(copy, true), -ENOENT);

    const PL_FileSpec nested(u(d + "/n1/n2/n3"));
    EXPECT_EQ(nested.CreateFolder(), 0);
    EXPECT_TRUE(nested.IsFolder());
    EXPECT_EQ(nested.CreateFolder(), 0); // existing is success
    EXPECT_EQ(PL_FileSpec(UT_String("relative/dir")).CreateFolder(), -1);
    EXPECT_EQ(PL_FileSpec(u(d + "/one/sub")).CreateFolder(), -ENOTDIR);

    ASSERT_EQ(copy.Rename(UT_String("renamed")), 0);
    EXPECT_TRUE(PL_FileSpec(u(d + "/renamed")).IsFile());
    EXPECT_EQ(PL_FileSpec(u(d + "/renamed")).Delete(), 0);
    EXPECT_EQ(nested.Delete(), 0);
    EXPECT_FALSE(PL_FileSpec(u(d + "/n1/n2/n3")).IsExists());
    EXPECT_EQ(PL_FileSpec(u(d + "/renamed")).Delete(), -ENOENT);

    std::FILE* f = one.get_fs("rb");
    ASSERT_NE(f, nullptr);
    EXPECT_NE(::fcntl(fileno(f), F_GETFD) & FD_CLOEXEC, 0);
    std::fclose(f);
    bool ok = false;
    std::unique_ptr<std::filebuf> buf(two.getInFileBuf(ok));
    ASSERT_TRUE(ok);
    EXPECT_EQ(buf->sgetc(), 'f');
    std::unique_ptr<std::filebuf> bad(PL_FileSpec(u(d + "/x/y")).getOutFileBuf(ok));
    EXPECT_FALSE(ok);
}

TEST(UT_Path, MakeUniqueFileNameOnRealFiles) {
    QTemporaryDir tmp;
    writeFile(tmp.path() + "/scene.old.txt", "");
    writeFile(tmp.path() + "/scene_1.old.txt", "");
    UT_Path free(tmp.path() + "/free.txt");
    EXPECT_TRUE(free.MakeUniqueFileName());
    EXPECT_EQ(free.GetFileName(), QStringLiteral("free.txt"));
    UT_Path taken(tmp.path() + "/scene.old.txt");
    EXPECT_TRUE(taken.MakeUniqueFileName());
    EXPECT_EQ(taken.GetFileName(), QStringLiteral("scene_2.old.txt"));

    UT_Path folder(tmp.path() + "/made/deeper/");
    EXPECT_TRUE(folder.CreateFolder());
    EXPECT_TRUE(folder.IsDirectory());
    UT_Path file(tmp.path() + "/scene.old.txt");
    EXPECT_TRUE(file.Rename(QStringLiteral("moved.txt")));
    EXPECT_TRUE(UT_Path(tmp.path() + "/moved.txt").IsFile());
    EXPECT_FALSE(UT_Path(tmp.path() + "/gone.txt").Rename(QStringLiteral("x")));
}

// A FIFO (or a link to one) named ".lnk" must not block a listing, a status query or a link
// read. Each step runs on a helper thread; should one block, the FIFO is opened for
// writing, which releases the reader, and the test fails instead of hanging.
TEST(PL_FileSpec, SpecialFilesNamedLikeShortcutsNeverBlock) {
    QTemporaryDir tmp;
    ASSERT_TRUE(tmp.isValid());
    const QString d = tmp.path();
    const QByteArray fifo = (d + "/pipe.lnk").toUtf8();
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);
    ASSERT_EQ(::symlink(fifo.constData(), (d + "/to_pipe.lnk").toUtf8().constData()), 0);
    writeFile(d + "/real.lnk", shellLinkToLocalPath(QStringLiteral("C:\\dir\\x.txt")));

    const auto withinSeconds = [&](const char* what, auto step) {
        auto done = std::async(std::launch::async, step);
        if (done.wait_for(std::chrono::seconds(10)) == std::future_status::timeout) {
            const int w = ::open(fifo.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            if (w >= 0) ::close(w);
            ADD_FAILURE() << what << " blocked on a FIFO";
        }
        return done.get();
    };

    const auto names = withinSeconds("listing", [&] {
        std::map<std::string, std::uint32_t> seen;
        for (PL_FileSpec_iterator it(PL_FileSpec(u(d))), end; it != end; ++it)
            seen[it->GetName().utf8()] = it->GetFileInfo().GetMode();
        return seen;
    });
    ASSERT_EQ(names.size(), 3u);
    EXPECT_EQ(names.at("pipe.lnk") & (PL_FileInfo::kFile | PL_FileInfo::kFolder), 0u);
    EXPECT_NE(names.at("real.lnk") & PL_FileInfo::kFile, 0u);

    EXPECT_FALSE(withinSeconds("status", [&] { return PL_FileSpec(u(d + "/pipe.lnk")).IsFile(); }));
    EXPECT_TRUE(withinSeconds("status of a link",
                              [&] { return PL_FileSpec(u(d + "/to_pipe.lnk")).IsSymbolicLink(); }));
    EXPECT_EQ(withinSeconds("link read", [&] { return OSW_FileInfo(d + "/pipe.lnk").readLink(); }),
              QString());
    // A symbolic link is read as a link, whatever its name; its FIFO target is not opened.
    EXPECT_EQ(
        withinSeconds("link read", [&] { return OSW_FileInfo(d + "/to_pipe.lnk").readLink(); }),
        QString::fromUtf8(fifo));
    EXPECT_EQ(OSW_FileInfo(d + "/real.lnk").readLink(), QStringLiteral("C:/dir/x.txt"));
}
