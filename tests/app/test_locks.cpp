// Tests of the spin and queuing reader-writer mutexes and of the application locks.
#include <PlumvaleBaseCore/app/PL_AppLock.h>
#include <PlumvaleBaseCore/app/PL_Mutex.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

// What `probe` answers on a fresh thread: the calling thread's own holds do not count.
template <typename Probe>
bool fromOtherThread(Probe probe) {
    bool answer = false;
    std::thread([&] { answer = probe(); }).join();
    return answer;
}

bool appMutexFreeElsewhere() {
    return fromOtherThread([] { return PL_AppLock::isApplicationMutexAvailable(); });
}

bool paletteFreeElsewhere() {
    return fromOtherThread([] { return PL_AppLock::isPaletteAvailable(); });
}

// A thread that asks for the palette as a reader. Declared before the locks of a test, so
// that it is joined after they are gone even when it could not get in.
class ReaderProbe {
public:
    ~ReaderProbe() {
        if (m_thread.joinable()) m_thread.join();
    }
    void start() {
        m_thread = std::thread([this] {
            PL_AppLock::PaletteReadLock read;
            m_in = true;
        });
    }
    bool getsInWithin(std::chrono::seconds limit) const {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (!m_in && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        return m_in;
    }

private:
    std::thread m_thread;
    std::atomic<bool> m_in{false};
};

// Runs body(0) ... body(count - 1) on as many threads, released together.
template <typename Body>
void runThreads(int count, Body body) {
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < count; ++t)
        threads.emplace_back([&, t] {
            ++ready;
            while (ready.load() < count)
                std::this_thread::yield();
            body(t);
        });
    for (std::thread& t : threads)
        t.join();
}

} // namespace

TEST(PL_SpinMutex, ExcludesUnderContention) {
    PL_SpinMutex mutex;
    long counter = 0; // plain on purpose: only the mutex orders the increments
    runThreads(4, [&](int) {
        for (int i = 0; i < 20000; ++i) {
            PL_SpinMutex::ScopeLock lock(mutex);
            ++counter;
        }
    });
    EXPECT_EQ(counter, 80000);

    PL_SpinMutex::ScopeLock held(mutex);
    EXPECT_FALSE(mutex.tryLock());
    held.release();
    held.release(); // a second release must not unlock someone else's hold
    EXPECT_TRUE(mutex.tryLock());
    held.release();
    EXPECT_FALSE(mutex.tryLock());
    mutex.unlock();
}

TEST(PL_QueuingRwMutex, ReadersShareWritersExclude) {
    PL_QueuingRwMutex mutex;
    PL_QueuingRwMutex::ScopeLock first(mutex, false);
    PL_QueuingRwMutex::ScopeLock second(mutex, false); // would wait forever if not shared
    EXPECT_TRUE(second.isHolding());
    EXPECT_FALSE(second.isWriter());
    second.release();
    EXPECT_FALSE(second.tryAcquire(mutex, true));
    EXPECT_FALSE(second.tryAcquire(mutex, false)); // a try refuses whenever anyone holds
    EXPECT_FALSE(second.isHolding());

    EXPECT_TRUE(first.upgradeToWriter()); // alone: upgraded in place
    EXPECT_TRUE(first.isWriter());
    EXPECT_FALSE(second.tryAcquire(mutex, false));
    first.release();
    EXPECT_FALSE(first.upgradeToWriter()); // holds nothing
    EXPECT_TRUE(second.tryAcquire(mutex, true));
}

TEST(PL_QueuingRwMutex, WritersSeeConsistentState) {
    PL_QueuingRwMutex mutex;
    long a = 0, b = 0; // a writer keeps a == b; a reader must never see them differ
    std::atomic<int> torn{0};
    runThreads(4, [&](int t) {
        for (int i = 0; i < 5000; ++i) {
            const bool write = (i + t) % 3 == 0;
            PL_QueuingRwMutex::ScopeLock lock(mutex, write);
            if (write) {
                ++a;
                ++b;
            } else if (i % 7 == 0 && lock.upgradeToWriter()) {
                ++a;
                ++b;
            } else if (a != b) {
                ++torn;
            }
        }
    });
    EXPECT_EQ(torn.load(), 0);
    EXPECT_EQ(a, b);
    EXPECT_GE(a, 4 * 5000 / 3);
}

TEST(PL_AppLock, NestedScopesTakeTheMutexOnce) {
    ASSERT_TRUE(appMutexFreeElsewhere());
    {
        PL_AppLock::AppLock outer;
        EXPECT_EQ(outer.depth(), 1);
        {
            PL_AppLock::AppLock inner;
            EXPECT_EQ(inner.depth(), 2);
            EXPECT_EQ(PL_AppLock::currentCounts().appLockCount, 2);
        }
        EXPECT_EQ(PL_AppLock::currentCounts().appLockCount, 1);
        EXPECT_FALSE(appMutexFreeElsewhere()); // the inner scope did not let it go
    }
    EXPECT_TRUE(appMutexFreeElsewhere());
    const PL_AppLock::Counts after = PL_AppLock::currentCounts();
    EXPECT_EQ(after.depth, 0);
    EXPECT_EQ(after.appLockCount, 0);
}

TEST(PL_AppLock, AutoReleaseKeepsPaletteUntilItsEnd) {
    {
        PL_AppLock::AutoReleasePaletteLock keep;
        { PL_AppLock::PaletteLock inner; }
        EXPECT_TRUE(PL_AppLock::currentCounts().paletteHeld);
        EXPECT_FALSE(paletteFreeElsewhere());
        { PL_AppLock::PaletteReadLock nested; } // nests in the write hold kept
        EXPECT_FALSE(paletteFreeElsewhere());
    }
    EXPECT_FALSE(PL_AppLock::currentCounts().paletteHeld);
    EXPECT_TRUE(paletteFreeElsewhere());

    // The interactive scope: AppLock, then the auto-release part, which ends first.
    {
        PL_AppLock::AppLockInteractive interaction;
        { PL_AppLock::PaletteLock edit; }
        EXPECT_FALSE(appMutexFreeElsewhere());
        EXPECT_FALSE(paletteFreeElsewhere());
    }
    EXPECT_TRUE(appMutexFreeElsewhere());
    EXPECT_TRUE(paletteFreeElsewhere());
}

TEST(PL_AppLock, ReadersShareThePaletteAcrossThreads) {
    ReaderProbe other;
    PL_AppLock::PaletteReadLock read;
    EXPECT_FALSE(PL_AppLock::holdsPaletteForWriting());
    EXPECT_FALSE(paletteFreeElsewhere());
    other.start();
    EXPECT_TRUE(other.getsInWithin(std::chrono::seconds(20)));
    EXPECT_EQ(PL_AppLock::currentCounts().paletteReadCount, 1);
}

TEST(PL_AppLock, AppLockInsidePaletteWriteHoldsBoth) {
    PL_AppLock::PaletteLock palette;
    {
        PL_AppLock::AppLock app; // lets the palette go, takes the mutex, takes it back
        const PL_AppLock::Counts c = PL_AppLock::currentCounts();
        EXPECT_TRUE(c.paletteHeld);
        EXPECT_EQ(c.appLockCount, 1);
        EXPECT_EQ(c.paletteLockCount, 1);
        EXPECT_FALSE(appMutexFreeElsewhere());
        EXPECT_FALSE(paletteFreeElsewhere());
    }
    EXPECT_TRUE(appMutexFreeElsewhere());
    EXPECT_FALSE(paletteFreeElsewhere());
}

TEST(PL_AppLock, UnlockAllLetsOthersInAndRestoresAsWriter) {
    int shared = 0;
    ReaderProbe other;
    PL_AppLock::AppLock app;
    PL_AppLock::PaletteReadLock read;
    other.start();
    EXPECT_TRUE(other.getsInWithin(std::chrono::seconds(20)));
    {
        PL_AppLock::UnlockAll pause;
        const PL_AppLock::Counts inside = PL_AppLock::currentCounts();
        EXPECT_EQ(inside.appLockCount, 0);
        EXPECT_FALSE(inside.paletteHeld);
        EXPECT_EQ(inside.depth, 0);
        std::thread([&] {
            PL_AppLock::AppLock otherApp;
            PL_AppLock::PaletteLock otherPalette;
            shared = 42;
        }).join();
    }
    EXPECT_EQ(shared, 42);
    const PL_AppLock::Counts back = PL_AppLock::currentCounts();
    EXPECT_EQ(back.depth, 2);
    EXPECT_EQ(back.appLockCount, 1);
    EXPECT_EQ(back.paletteReadCount, 1);
    EXPECT_FALSE(appMutexFreeElsewhere());
    EXPECT_TRUE(PL_AppLock::holdsPaletteForWriting()); // the read hold came back as a writer
}

// Two kinds of data: `app` under the application lock, `palette` under the palette lock.
// Each worker mixes the scopes in every nesting the class allows; a broken lock order
// deadlocks (the test times out), broken exclusion shows as a lost update or a torn read.
TEST(PL_AppLock, HammeringKeepsExclusionAndOrder) {
    long app = 0, paletteA = 0, paletteB = 0;
    std::atomic<int> torn{0};
    constexpr int kRounds = 20000;
    std::atomic<long> appWrites{0}, paletteWrites{0};
    runThreads(3, [&](int t) {
        std::mt19937 random(static_cast<unsigned>(t) * 7919u + 1u);
        auto writePalette = [&] {
            ++paletteA;
            ++paletteB;
            ++paletteWrites;
        };
        for (int i = 0; i < kRounds; ++i) {
            switch (random() % 6) {
            case 0: {
                PL_AppLock::AppLock a;
                PL_AppLock::AppLock nested;
                ++app;
                ++appWrites;
                break;
            }
            case 1: {
                PL_AppLock::AppLock a;
                PL_AppLock::PaletteLock p;
                ++app;
                ++appWrites;
                writePalette();
                break;
            }
            case 2: { // the reversed order, which AppLock repairs
                PL_AppLock::PaletteLock p;
                PL_AppLock::AppLock a;
                writePalette();
                break;
            }
            case 3: {
                PL_AppLock::PaletteReadLock r;
                PL_AppLock::PaletteReadLock nested;
                if (paletteA != paletteB) ++torn;
                break;
            }
            case 4: {
                PL_AppLock::AppLockInteractive interaction;
                { PL_AppLock::PaletteLock p; }
                writePalette(); // still held by the auto-release part
                break;
            }
            default: {
                PL_AppLock::AppLock a;
                PL_AppLock::PaletteLock p;
                {
                    PL_AppLock::UnlockAll pause;
                    PL_AppLock::PaletteReadLock r;
                    if (paletteA != paletteB) ++torn;
                }
                ++app;
                ++appWrites;
                writePalette();
            }
            }
        }
        const PL_AppLock::Counts end = PL_AppLock::currentCounts();
        if (end.depth != 0 || end.appLockCount != 0 || end.paletteHeld) ++torn;
    });
    EXPECT_EQ(torn.load(), 0);
    EXPECT_EQ(app, appWrites.load());
    EXPECT_EQ(paletteA, paletteWrites.load());
    EXPECT_EQ(paletteB, paletteWrites.load());
}

TEST(PL_AppLock, RegistryGrowsForManyThreads) {
    constexpr int kThreads = 150; // more than two chunks of the registry
    std::vector<unsigned> serials(kThreads);
    runThreads(kThreads, [&](int t) {
        PL_AppLock::AppLock lock;
        serials[static_cast<size_t>(t)] = PL_AppLock::threadSerial();
    });
    const std::set<unsigned> distinct(serials.begin(), serials.end());
    EXPECT_EQ(distinct.size(), serials.size());
    EXPECT_GE(*distinct.begin(), 1u);
    EXPECT_EQ(PL_AppLock::threadSerial(), PL_AppLock::threadSerial());
}

// The misuses end the process; each runs in a child made by the death-test machinery.
TEST(PL_AppLockMisuse, AbortsWhenAReaderAsksForMore) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            PL_AppLock::PaletteReadLock read;
            PL_AppLock::PaletteLock write;
        },
        testing::KilledBySignal(SIGABRT), "PaletteLock while the thread holds the palette");
    EXPECT_EXIT(
        {
            PL_AppLock::PaletteReadLock read;
            PL_AppLock::AppLock app;
        },
        testing::KilledBySignal(SIGABRT), "AppLock while the thread holds the palette");
}
