// Tests of timers and posted actions in a real event loop: main-thread callbacks,
// coalescing, stops while an expiry is on its way, and actions posted from many threads.
#include <PlumvaleBaseCore/app/PL_PostMessage.h>
#include <PlumvaleBaseCore/app/PL_Timer.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

// A QCoreApplication whose expiries reach the manager, and whose loop runs Idle().
struct App {
    int argc = 1;
    char name[10] = "app_tests";
    char* argv[2] = {name, nullptr};
    QCoreApplication app{argc, argv};
    App() {
        PL_TimerManager::SetUIThread(&app);
        EXPECT_TRUE(PL_TimerManager::ConnectIdle());
    }
    ~App() { PL_TimerManager::SetUIThread(nullptr); }
    // Runs the event loop for `ms` milliseconds.
    void run(int ms) {
        QTimer::singleShot(ms, &app, [] { QCoreApplication::quit(); });
        QCoreApplication::exec();
    }
};

struct Counter : PL_Timer {
    std::function<void()> onTimer = [] {};
    int calls = 0;
    bool offMainThread = false;
    void OnTimer() override {
        ++calls;
        offMainThread |= QThread::currentThread() != QCoreApplication::instance()->thread();
        onTimer();
    }
};

void sleepMs(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace

TEST(PL_Timer, OneShotAndPeriodicOnTheMainThread) {
    App app;
    EXPECT_EQ(PL_TimerManager::GetInstance()->resolution(), 10u);
    Counter periodic, oneShot, tiny;
    QElapsedTimer clock;
    qint64 tinyAt = 0;
    tiny.onTimer = [&] { tinyAt = clock.elapsed(); };
    clock.start();
    ASSERT_TRUE(periodic.StartTimer(20, false));
    ASSERT_TRUE(oneShot.StartTimer(50, true));
    ASSERT_TRUE(tiny.StartTimer(1, true)); // raised to the resolution
    app.run(300);
    EXPECT_GE(periodic.calls, 8);
    EXPECT_LE(periodic.calls, 16);
    EXPECT_EQ(oneShot.calls, 1);
    EXPECT_FALSE(oneShot.IsTimerActive());
    EXPECT_TRUE(periodic.IsTimerActive());
    EXPECT_EQ(tiny.calls, 1);
    EXPECT_GE(tinyAt, 10);
    EXPECT_FALSE(periodic.offMainThread || oneShot.offMainThread);

    // A restart is a new run with a new identifier; a stop ends the callbacks.
    const unsigned int first = periodic.timerId();
    ASSERT_TRUE(periodic.StartTimer(10, false));
    EXPECT_GT(periodic.timerId(), first);
    EXPECT_TRUE(periodic.StopTimer());
    EXPECT_EQ(periodic.timerId(), 0u);
    const int before = periodic.calls;
    app.run(60);
    EXPECT_EQ(periodic.calls, before);
}

TEST(PL_Timer, ASlowMainThreadGetsCoalescedExpiries) {
    App app;
    Counter periodic;
    ASSERT_TRUE(periodic.StartTimer(10, false));
    sleepMs(250); // some 25 expiries pass while the main thread is busy
    QCoreApplication::processEvents();
    PL_TimerManager::GetInstance()->Idle();
    EXPECT_EQ(periodic.calls, 1);
    app.run(55); // and it goes on afterwards
    EXPECT_GE(periodic.calls, 3);
}

TEST(PL_Timer, StoppedOrDestroyedWhileOnItsWayIsNeverCalledBack) {
    App app;
    auto* manager = PL_TimerManager::GetInstance();
    Counter posted;
    auto queued = std::make_unique<Counter>();
    Counter control;
    ASSERT_TRUE(posted.StartTimer(10, true));
    ASSERT_TRUE(queued->StartTimer(10, false));
    ASSERT_TRUE(control.StartTimer(10, true));
    sleepMs(60);                       // all three expiries posted, none handled
    EXPECT_TRUE(posted.StopTimer());   // posted, not yet queued
    QCoreApplication::processEvents(); // the events queue the expiries
    queued.reset();                    // destroyed while queued
    manager->Idle();
    EXPECT_EQ(posted.calls, 0);
    EXPECT_EQ(control.calls, 1);
    app.run(40);
    EXPECT_EQ(posted.calls, 0);

    // Idle() from within OnTimer() returns at once: the second expiry waits its turn.
    Counter outer, inner;
    outer.onTimer = [&] {
        manager->Idle();
        EXPECT_EQ(inner.calls, 0);
    };
    ASSERT_TRUE(outer.StartTimer(10, true));
    ASSERT_TRUE(inner.StartTimer(10, true));
    sleepMs(40);
    QCoreApplication::processEvents();
    manager->Idle();
    EXPECT_EQ(outer.calls, 1);
    EXPECT_EQ(inner.calls, 1);
}

namespace {

std::atomic<int> g_runs{0}, g_destroyed{0}, g_offMain{0};

struct CountingAction : PL_PostMessageAction {
    ~CountingAction() override { ++g_destroyed; }
    void Execute() override {
        ++g_runs;
        const QCoreApplication* app = QCoreApplication::instance();
        if (app && QThread::currentThread() != app->thread()) ++g_offMain;
    }
};

void resetCounts() {
    g_runs = g_destroyed = g_offMain = 0;
}

} // namespace

TEST(PL_PostMessage, WithoutAnApplicationRunsAtOnce) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    resetCounts();
    std::thread([] { PL_PostMessage(new CountingAction); }).join();
    PL_PostMessage(nullptr);
    EXPECT_EQ(g_runs, 1);
    EXPECT_EQ(g_destroyed, 1);
}

TEST(PL_PostMessage, FromManyThreadsEachRunsOnceOnTheMainThread) {
    App app;
    resetCounts();
    PL_PostMessage(new CountingAction); // before the init: dropped
    EXPECT_EQ(g_runs, 0);
    EXPECT_EQ(g_destroyed, 1);

    PL_PostMessageInit();
    PL_PostMessageInit(); // the second time: nothing
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 250; ++i)
                PL_PostMessage(new CountingAction);
        });
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(g_runs, 0); // nothing runs before the loop does
    app.run(50);
    EXPECT_EQ(g_runs, 1000);
    EXPECT_EQ(g_destroyed, 1001);
    EXPECT_EQ(g_offMain, 0);

    // Queued, then cleaned up: destroyed unrun when delivered.
    PL_PostMessage(new CountingAction);
    PL_PostMessageCleanup();
    PL_PostMessage(new CountingAction);
    app.run(20);
    EXPECT_EQ(g_runs, 1000);
    EXPECT_EQ(g_destroyed, 1003);
}
