// Tests of the action log: file name, line formats, indentation and whole lines from threads.
#include <PlumvaleBaseCore/files/UT_Log.h>
#include <PlumvaleBaseCore/files/oswUtil.h>

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <thread>
#include <vector>

namespace {

// The log's lines with their time stamps replaced by "T" (after checking their form).
QStringList linesOf(const QString& file) {
    QFile f(file);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(f.readAll());
    EXPECT_TRUE(text.endsWith('\n'));
    QStringList lines = text.split('\n');
    lines.removeLast();
    static const QRegularExpression stamp("^( *)\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d;");
    for (QString& line : lines) {
        const QRegularExpressionMatch m = stamp.match(line);
        EXPECT_TRUE(m.hasMatch()) << line.toStdString();
        line = m.captured(1) + "T;" + line.mid(m.capturedLength());
    }
    return lines;
}

} // namespace

TEST(UT_LogIO, WithoutALogEverythingIsFalse) {
    UT_LogIO::close();
    EXPECT_FALSE(UT_LogIO::isOpen());
    EXPECT_FALSE(UT_LogIO::logAction("x"));
    EXPECT_FALSE(UT_LogIO::add(UT_Log::Copy, QString("a"), QString("b")));
    EXPECT_FALSE(UT_LogIO::add(UT_Log::Create, UT_String("a")));
    EXPECT_FALSE(UT_LogIO::add("a", "b", true));
    EXPECT_FALSE(UT_LogIO::add("a", "b", UT_String("c"), false));
    EXPECT_FALSE(UT_LogIO::copyLog("a", "b"));
    { UT_LogIO::logActionHelper nothing("quiet"); }
    EXPECT_TRUE(UT_LogIO::fileName().isEmpty());
}

TEST(UT_LogIO, LinesAndIndentation) {
    QTemporaryDir tmp;
    const QString folder = tmp.path() + "/logs/deeper";
    ASSERT_TRUE(UT_LogIO::create(folder));
    char machine[256] = {};
    ASSERT_TRUE(oswUtil::getShortMachineName(machine, 255));
    QString user;
    ASSERT_TRUE(oswUtil::getUserName(user));
    const QString file = UT_LogIO::fileName();
    EXPECT_TRUE(QRegularExpression("^" + QRegularExpression::escape(folder) + "/\\d{8}-\\d{6}_" +
                                   QRegularExpression::escape(machine) + "_" +
                                   QRegularExpression::escape(user) + "\\.log$")
                    .match(file)
                    .hasMatch())
        << file.toStdString();
    {
        UT_LogIO::logActionHelper outer("save");
        {
            UT_LogIO::logActionHelper inner("copy");
            EXPECT_TRUE(UT_LogIO::add(UT_Log::Copy, QString("/a"), QString("/b")));
            EXPECT_TRUE(UT_LogIO::add(static_cast<UT_Log::eFileOperation>(9), UT_String("/c")));
        }
        EXPECT_TRUE(UT_LogIO::add("lock", "/d", false));
        EXPECT_TRUE(UT_LogIO::add("swap", "/e", UT_String("/f"), true));
    }
    EXPECT_TRUE(UT_LogIO::add(UT_Log::HardLink, QString("/g")));
    EXPECT_EQ(linesOf(file),
              QStringList({"T;ACTION;Start save", "  T;ACTION;Start copy", "    T;Copy;/a;/b",
                           "    T;Unknown;/c;", "  T;ACTION;End copy", "  T;lock;/d;;FAIL",
                           "  T;swap;/e;/f;SUCCESS", "T;ACTION;End save", "T;HardLink;/g;"}));

    EXPECT_TRUE(UT_LogIO::copyLog(file, tmp.path() + "/copy.log"));
    EXPECT_EQ(linesOf(tmp.path() + "/copy.log"), linesOf(file));
    EXPECT_FALSE(UT_LogIO::copyLog(tmp.path() + "/missing.log", tmp.path() + "/x.log"));
    UT_LogIO::close();
    EXPECT_FALSE(UT_LogIO::logAction("after close"));
    EXPECT_EQ(UT_Log::operationWord(-1), "Unknown");
}

TEST(UT_Log, ThreadsNeverSplitALine) {
    QTemporaryDir tmp;
    UT_Log log;
    ASSERT_TRUE(log.create(tmp.path()));
    constexpr int kThreads = 4, kLines = 300;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&log, t] {
            const QString text = QString(200, QChar('a' + t)); // long enough to be split
            for (int i = 0; i < kLines; ++i)
                log.add(UT_Log::Update, text, QString::number(i));
        });
    for (std::thread& t : threads)
        t.join();
    const QStringList lines = linesOf(log.fileName());
    ASSERT_EQ(lines.size(), kThreads * kLines);
    static const QRegularExpression whole("^T;Update;(a{200}|b{200}|c{200}|d{200});\\d+$");
    for (const QString& line : lines)
        ASSERT_TRUE(whole.match(line).hasMatch()) << line.toStdString();
    UT_Log closed;
    EXPECT_FALSE(closed.logAction("x"));
    EXPECT_FALSE(UT_Log().create("/proc/no/such/folder"));
}
