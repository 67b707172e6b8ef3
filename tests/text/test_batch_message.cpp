// Tests of TUBatchMessage: the bounded log, its header, and worker reports against a real
// event loop on the main thread.
#include "text/MessageTestSupport.h"

#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/text/TUBatchMessage.h>
#include <PlumvaleBaseCore/text/UT_LibraryTranslator.h>

#include <QCoreApplication>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

// The text part of a log entry "K hh:mm:ss.zzz text".
QString entryText(const QString& entry) {
    return entry.mid(15);
}

void drainEvents() {
    QCoreApplication::sendPostedEvents(nullptr, MessageCmdEvent::kType);
    QCoreApplication::processEvents();
}

} // namespace

TEST(TUBatchMessage, EntryFormatAndTheTwoHundredBound) {
    TUBatchMessage centre(QStringLiteral("batch"), false, false);
    centre.information(QStringLiteral("first"), QStringLiteral("premier"));
    const QRegularExpression format(QStringLiteral("^I \\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d first$"));
    ASSERT_EQ(centre.getLog().size(), 1);
    EXPECT_TRUE(format.match(centre.getLog()[0]).hasMatch()) << centre.getLog()[0].toStdString();
    for (int i = 2; i <= 250; ++i)
        centre.trace(QString::number(i), QString(), 0);
    ASSERT_EQ(centre.getLog().size(), TUBatchMessage::kMaxEntries);
    EXPECT_EQ(entryText(centre.getLog().back()), QStringLiteral("200"));
    EXPECT_TRUE(centre.getLog().back().startsWith(QLatin1Char('T')));
    centre.flushLog();
    EXPECT_TRUE(centre.getLog().isEmpty());
}

TEST(TUBatchMessage, HeaderInFrenchWithTheVersionOnOneLine) {
    ASSERT_TRUE(UT_LibraryTranslator::install(QStringLiteral("fr")));
    TUBatchMessage centre(QStringLiteral("rendu"), false, false);
    centre.setUserName(QStringLiteral("alice"));
    centre.initLog();
    UT_LibraryTranslator::remove();
    const QStringList log = centre.getLog();
    ASSERT_EQ(log.size(), 5);
    EXPECT_TRUE(log[0].startsWith(QStringLiteral(" Date - Heure : ")));
    EXPECT_EQ(log[1], QStringLiteral(" Programme : rendu"));
    QString version = BAPP_Identity::current().versionText();
    version.remove(QStringLiteral("\n\n"));
    version.replace(QLatin1Char('\n'), QStringLiteral(", "));
    EXPECT_EQ(log[2], QStringLiteral(" Version : ") + version);
    EXPECT_FALSE(log[2].contains(QLatin1Char('\n')));
    EXPECT_EQ(log[3], QStringLiteral(" Nom d\u2019utilisateur du syst\u00e8me : alice"));
    EXPECT_EQ(log[4], QStringLiteral(" Mode d\u00e9bogage : D\u00c9SACTIV\u00c9"));
}

TEST(TUBatchMessage, WorkerReportWaitsForTheEventOrTheNextMainReport) {
    TUBatchMessage centre(QStringLiteral("batch"), false, false);
    std::thread([&] { centre.warning(QStringLiteral("from worker"), QString()); }).join();
    EXPECT_TRUE(centre.getLog().isEmpty()); // queued, not yet logged
    drainEvents();
    ASSERT_EQ(centre.getLog().size(), 1);
    EXPECT_EQ(entryText(centre.getLog()[0]), QStringLiteral("from worker"));

    // Without the event loop running, the main thread's own report drains the queue first.
    std::thread([&] { centre.warning(QStringLiteral("second worker"), QString()); }).join();
    centre.information(QStringLiteral("main"), QString());
    ASSERT_EQ(centre.getLog().size(), 3);
    EXPECT_EQ(entryText(centre.getLog()[1]), QStringLiteral("second worker"));
    EXPECT_EQ(entryText(centre.getLog()[2]), QStringLiteral("main"));
    drainEvents(); // the stale event finds an empty queue
    EXPECT_EQ(centre.getLog().size(), 3);
}

TEST(TUBatchMessage, ManyThreadsLoseNothingAndKeepTheirOrder) {
    constexpr int kThreads = 4;
    constexpr int kEach = 45;
    TUBatchMessage centre(QStringLiteral("batch"), false, false);
    std::atomic<int> finished{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < kThreads; ++t)
        workers.emplace_back([&, t] {
            for (int i = 0; i < kEach; ++i)
                centre.trace(QStringLiteral("%1:%2").arg(t).arg(i), QString(), 0);
            ++finished;
        });
    // The main thread keeps running its event loop (and adding its own reports) meanwhile.
    int mainReports = 0;
    while (finished.load() < kThreads) {
        QCoreApplication::processEvents();
        if (mainReports < 5)
            centre.information(QStringLiteral("main:%1").arg(mainReports++), QString());
    }
    for (std::thread& w : workers)
        w.join();
    drainEvents();

    std::vector<int> next(kThreads, 0);
    int mainSeen = 0;
    for (const QString& entry : centre.getLog()) {
        const QStringList parts = entryText(entry).split(QLatin1Char(':'));
        ASSERT_EQ(parts.size(), 2);
        if (parts[0] == QStringLiteral("main")) {
            EXPECT_EQ(parts[1].toInt(), mainSeen++);
            continue;
        }
        const int t = parts[0].toInt();
        EXPECT_EQ(parts[1].toInt(), next[t]++) << "thread " << t;
    }
    for (int t = 0; t < kThreads; ++t)
        EXPECT_EQ(next[t], kEach) << "thread " << t;
    EXPECT_EQ(mainSeen, mainReports);
}
