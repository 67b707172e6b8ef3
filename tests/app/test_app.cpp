// Tests of the recursive mutex, the main-thread record and the application identity table.
#include <PlumvaleBaseCore/app.h>

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

TEST(PL_RecursiveMutex, RelocksOnOneThreadAndExcludesOthers) {
    PL_RecursiveMutex mutex;
    long counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 10000; ++i) {
                PL_RecursiveMutex::ScopeLock outer(mutex);
                PL_RecursiveMutex::ScopeLock inner(mutex); // same thread: no deadlock
                ++counter;
            }
        });
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(counter, 40000);

    PL_RecursiveMutex::ScopeLock held(mutex);
    bool otherGotIt = true;
    std::thread([&] { otherGotIt = mutex.tryLock(); }).join();
    EXPECT_FALSE(otherGotIt);
    held.release();
    std::thread([&] {
        otherGotIt = mutex.tryLock();
        if (otherGotIt) mutex.unlock();
    }).join();
    EXPECT_TRUE(otherGotIt);
}

TEST(BAPP_Application, MainThreadRecord) {
    BAPP_Application::setupMainThread();
    EXPECT_TRUE(BAPP_Application::isMainThread());
    bool workerIsMain = true;
    std::thread([&] { workerIsMain = BAPP_Application::isMainThread(); }).join();
    EXPECT_FALSE(workerIsMain);
}

TEST(BAPP_Identity, TableIsConsistentAndSelectionFallsBack) {
    std::set<QString> names, codes;
    for (const BAPP_AppIdentity& id : BAPP_Identity::table()) {
        EXPECT_TRUE(names.insert(id.shortName).second) << id.shortName.toStdString();
        EXPECT_TRUE(codes.insert(id.fullCode).second) << id.fullCode.toStdString();
        EXPECT_EQ(id.sceneExtensions.size(), id.scenePatterns.size());
        EXPECT_TRUE(id.versionText().endsWith(QStringLiteral("\n\n")));
        EXPECT_TRUE(id.banner().startsWith(id.fullName));
    }
    EXPECT_TRUE(BAPP_Identity::select(QStringLiteral("PVTOOL")));
    EXPECT_EQ(BAPP_Identity::current().shortName, QStringLiteral("pvtool"));
    EXPECT_TRUE(BAPP_Identity::current().hasFeature(QStringLiteral("batch")));
    EXPECT_FALSE(BAPP_Identity::select(QStringLiteral("no-such-app")));
    EXPECT_EQ(&BAPP_Identity::current(), &BAPP_Identity::table().front());
}
