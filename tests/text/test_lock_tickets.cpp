// Tests of lock owners and tickets, the arrival-ordered semaphore and file-reference owners.
#include <PlumvaleBaseCore/text/TUFileRef.h>
#include <PlumvaleBaseCore/text/TULock.h>
#include <PlumvaleBaseCore/text/TUSema.h>

#include <gtest/gtest.h>

#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// Grants every key and writes each call to a log that outlives it.
class RecordingOwner : public TULockOwner {
public:
    explicit RecordingOwner(QStringList* log) : m_log(log) {}

protected:
    LockResult_t acquire(const QString& key) override {
        *m_log << "get " + key;
        return key == "busy" ? LockRefused : LockGranted;
    }
    bool release(const QString& key) override {
        *m_log << "release " + key;
        return key != "stuck";
    }
    bool forceRelease(const QString& key) override {
        *m_log << "force " + key;
        return true;
    }

private:
    QStringList* m_log;
};

} // namespace

TEST(TULockTicket, ReleasesThroughItsOwnerOnce) {
    QStringList log;
    RecordingOwner owner(&log);
    EXPECT_EQ(owner.getLock("busy"), TULockOwner::LockRefused);
    EXPECT_EQ(owner.getLock("scene"), TULockOwner::LockGranted);
    EXPECT_TRUE(owner.forceReleaseLock("other"));
    {
        TULockTicket ticket("scene", &owner);
        owner.add(&ticket); // a second add keeps one entry
        EXPECT_EQ(owner.ticketCount(), 1);
        EXPECT_EQ(ticket.owner(), &owner);
    }
    EXPECT_EQ(owner.ticketCount(), 0);
    EXPECT_EQ(log, QStringList({"get busy", "get scene", "force other", "release scene"}));

    log.clear();
    { TULockTicket empty(QString(), &owner); } // unregistered, but nothing to release
    { TULockTicket ownerless("scene", nullptr); }
    EXPECT_EQ(owner.ticketCount(), 0);
    EXPECT_TRUE(log.isEmpty());
}

TEST(TULockTicket, EitherMayEndFirst) {
    QStringList log;
    std::unique_ptr<TULockTicket> ticket;
    {
        RecordingOwner owner(&log);
        ticket = std::make_unique<TULockTicket>("scene", &owner);
    }
    EXPECT_EQ(ticket->owner(), nullptr); // the dying owner made it forget
    EXPECT_EQ(ticket->key(), "scene");
    ticket.reset(); // calls nothing: the owner is gone
    EXPECT_TRUE(log.isEmpty());
}

TEST(TULockOwner, CopiesShareTheTicketSet) {
    QStringList log;
    auto original = std::make_unique<RecordingOwner>(&log);
    TULockTicket first("a", original.get());
    RecordingOwner copy(*original);
    EXPECT_EQ(copy.ticketCount(), 1);
    TULockTicket second("b", &copy);
    EXPECT_EQ(original->ticketCount(), 2);

    original.reset(); // every ticket of the shared set forgets its owner
    EXPECT_EQ(first.owner(), nullptr);
    EXPECT_EQ(second.owner(), nullptr);
    EXPECT_EQ(copy.ticketCount(), 0);

    RecordingOwner fresh(&log);
    TULockTicket third("c", &fresh);
    fresh = copy; // the old set's tickets are let go, as at destruction
    EXPECT_EQ(third.owner(), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST(TUSema, CountsWithoutWaiting) {
    TUSema sema(0);
    EXPECT_FALSE(sema.tryAcquire());
    sema.release(3);
    EXPECT_EQ(sema.available(), 3u);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(sema.tryAcquire()) << i;
    EXPECT_FALSE(sema.tryAcquire());
    TUSema two(2);
    two.acquire();
    two.acquire();
    EXPECT_FALSE(two.tryAcquire());
}

// Threads queue one at a time (each waits before the next starts), then units come one at
// a time; each waiter must come out in the order it went in, in every trial.
TEST(TUSema, WakesWaitersInArrivalOrder) {
    constexpr int kWaiters = 5;
    for (int trial = 0; trial < 40; ++trial) {
        TUSema sema(0);
        std::mutex orderMutex;
        std::vector<int> order;
        std::vector<std::thread> threads;
        for (int i = 0; i < kWaiters; ++i) {
            threads.emplace_back([&, i] {
                sema.acquire();
                std::lock_guard<std::mutex> lock(orderMutex);
                order.push_back(i);
            });
            while (sema.waiting() != i + 1)
                std::this_thread::yield();
        }
        for (int released = 1; released <= kWaiters; ++released) {
            sema.release();
            for (;;) {
                std::lock_guard<std::mutex> lock(orderMutex);
                if (static_cast<int>(order.size()) == released) break;
            }
        }
        for (std::thread& t : threads)
            t.join();
        ASSERT_EQ(order, std::vector<int>({0, 1, 2, 3, 4})) << "trial " << trial;
        EXPECT_EQ(sema.available(), 0u);
    }
}

TEST(TUSema, ReleaseManyWakesTheFrontOnes) {
    TUSema sema(0);
    std::vector<int> done(3, 0);
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&, i] {
            sema.acquire();
            done[static_cast<size_t>(i)] = 1;
        });
        while (sema.waiting() != i + 1)
            std::this_thread::yield();
    }
    sema.release(2);
    threads[0].join();
    threads[1].join();
    EXPECT_EQ(sema.waiting(), 1); // the last to arrive still waits
    sema.release();
    threads[2].join();
    EXPECT_EQ(done, std::vector<int>({1, 1, 1}));
}

namespace {

class RecordingRefOwner : public TUFileRefOwner {
public:
    RecordingRefOwner(QString name, QStringList* log) : m_name(std::move(name)), m_log(log) {}
    void moveDir(const QString& from, const QString& to, bool a, bool b) override {
        *m_log << QString("%1 moveDir %2 %3 %4%5").arg(m_name, from, to).arg(int(a)).arg(int(b));
        if (onNotice) onNotice();
    }
    void deleteDir(const QString& dir) override { *m_log << m_name + " deleteDir " + dir; }
    void moveFile(const QString& from, const QString& to) override {
        *m_log << m_name + " moveFile " + from + " " + to;
    }
    std::function<void()> onNotice;

private:
    QString m_name;
    QStringList* m_log;
};

} // namespace

TEST(TUFileRefMgr, ForwardsInRegistrationOrder) {
    QStringList log;
    TUFileRefMgr manager;
    RecordingRefOwner a("a", &log), b("b", &log);
    auto c = std::make_unique<RecordingRefOwner>("c", &log);
    manager.add(&b);
    manager.add(&a);
    manager.add(c.get());
    EXPECT_TRUE(a.isFileRefOwnerHasManager());
    manager.moveDir("/x", "/y", true, false);
    manager.deleteDir("/y");
    c.reset(); // removes itself
    manager.moveFile("/f", "/g");
    EXPECT_EQ(log, QStringList({"b moveDir /x /y 10", "a moveDir /x /y 10", "c moveDir /x /y 10",
                                "b deleteDir /y", "a deleteDir /y", "c deleteDir /y",
                                "b moveFile /f /g", "a moveFile /f /g"}));

    RecordingRefOwner stranger("s", &log);
    manager.remove(&stranger); // not registered: nothing changes
    EXPECT_EQ(manager.owners(), (std::vector<TUFileRefOwner*>{&b, &a}));
    manager.remove(&b);
    EXPECT_EQ(manager.owners(), std::vector<TUFileRefOwner*>{&a});
    EXPECT_TRUE(b.isFileRefOwnerHasManager()); // remove() leaves the pointer
}

TEST(TUFileRefMgr, OwnersAndManagerEndInEitherOrder) {
    QStringList log;
    RecordingRefOwner kept("k", &log);
    auto removed = std::make_unique<RecordingRefOwner>("r", &log);
    {
        TUFileRefMgr manager;
        manager.add(&kept);
        manager.add(removed.get());
        manager.remove(removed.get());
        RecordingRefOwner copy(kept); // a copy is registered too, after the others
        EXPECT_EQ(manager.owners(), (std::vector<TUFileRefOwner*>{&kept, &copy}));
    }
    EXPECT_FALSE(kept.isFileRefOwnerHasManager());
    EXPECT_FALSE(removed->isFileRefOwnerHasManager()); // a removed owner is cleared as well
    removed.reset(); // and ends without reaching the dead manager (ASan checks)
    EXPECT_TRUE(log.isEmpty());
}

TEST(TUFileRefMgr, CallbackMayRemoveALaterOwner) {
    QStringList log;
    TUFileRefMgr manager;
    RecordingRefOwner first("1", &log);
    auto second = std::make_unique<RecordingRefOwner>("2", &log);
    first.onNotice = [&] { second.reset(); };
    manager.add(&first);
    manager.add(second.get());
    manager.moveDir("/a", "/b", false, true);
    EXPECT_EQ(log, QStringList({"1 moveDir /a /b 01"}));
    EXPECT_EQ(manager.owners(), std::vector<TUFileRefOwner*>{&first});
}
