// The three mutexes of the library (spin, recursive, queuing reader-writer) and their scoped locks.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <atomic>
#include <memory>

/// The scoped lock of a mutex with lock() and unlock(): holds it from construction (or
/// acquire()) until release() or destruction; a default one holds nothing.
template <typename Mutex>
class PL_MutexScope {
public:
    /// Holds nothing.
    PL_MutexScope() = default;
    /// Locks `mutex` until release() or destruction.
    explicit PL_MutexScope(Mutex& mutex) { acquire(mutex); }
    /// Releases what it holds.
    ~PL_MutexScope() { release(); }
    PL_MutexScope(const PL_MutexScope&) = delete;
    PL_MutexScope& operator=(const PL_MutexScope&) = delete;

    /// Releases what it holds, then locks `mutex`.
    void acquire(Mutex& mutex) {
        release();
        mutex.lock();
        m_mutex = &mutex;
    }
    /// Unlocks the held mutex, if any; a second call does nothing.
    void release() {
        if (m_mutex) {
            m_mutex->unlock();
            m_mutex = nullptr;
        }
    }

private:
    Mutex* m_mutex = nullptr;
};

/// A one-byte spin lock for very short critical sections: no owner, no recursion, no fairness.
///
/// Conventions: 0 is free and 1 is held. A contended lock() spins 1, 2, 4, 8 and 16 pause
/// iterations between attempts, then yields the time slice before each further attempt.
/// Locking it again from the holding thread deadlocks; unlocking a free mutex frees it.
class PLUMVALE_EXPORT PL_SpinMutex {
public:
    /// A free mutex.
    PL_SpinMutex() = default;
    PL_SpinMutex(const PL_SpinMutex&) = delete;
    PL_SpinMutex& operator=(const PL_SpinMutex&) = delete;

    /// Blocks until the calling thread has set the byte from 0 to 1.
    void lock() {
        if (!tryLock()) lockContended();
    }
    /// Sets the byte from 0 to 1 without waiting; false when it was already 1.
    bool tryLock() {
        unsigned char expected = 0;
        return m_flag.compare_exchange_strong(expected, 1, std::memory_order_acquire,
                                              std::memory_order_relaxed);
    }
    /// Stores 0, whoever holds it.
    void unlock() { m_flag.store(0, std::memory_order_release); }

    /// Holds the mutex from construction (or acquire()) until release() or destruction.
    using ScopeLock = PL_MutexScope<PL_SpinMutex>;

private:
    void lockContended();

    std::atomic<unsigned char> m_flag{0};
};

/// A mutex the holding thread may lock again; each lock needs its own unlock.
class PLUMVALE_EXPORT PL_RecursiveMutex {
public:
    /// An unlocked mutex; destroying one that is held is undefined, as for std::mutex.
    PL_RecursiveMutex();
    ~PL_RecursiveMutex();
    PL_RecursiveMutex(const PL_RecursiveMutex&) = delete;
    PL_RecursiveMutex& operator=(const PL_RecursiveMutex&) = delete;

    /// Blocks until the calling thread holds the mutex (at once when it already does).
    void lock();
    /// Releases one lock of the calling thread, which must hold the mutex.
    void unlock();
    /// Locks without waiting: false when another thread holds the mutex.
    bool tryLock();

    /// Holds the mutex from construction (or acquire()) until release() or destruction.
    using ScopeLock = PL_MutexScope<PL_RecursiveMutex>;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// A fair reader-writer mutex: requests are granted in arrival order, readers share it, a
/// writer excludes everyone. Not recursive: a thread that asks again while holding it waits
/// for itself.
///
/// Storage: one machine word, zero when free (the queue's tail); each ScopeLock is the queue
/// node of its holder, so a ScopeLock must not move while it holds or waits.
class PLUMVALE_EXPORT PL_QueuingRwMutex {
public:
    /// A free mutex.
    PL_QueuingRwMutex();
    /// Destroying a held mutex is undefined, as for std::shared_mutex.
    ~PL_QueuingRwMutex();
    PL_QueuingRwMutex(const PL_QueuingRwMutex&) = delete;
    PL_QueuingRwMutex& operator=(const PL_QueuingRwMutex&) = delete;

    /// One holder's place in the queue, released at destruction.
    class PLUMVALE_EXPORT ScopeLock {
    public:
        /// Holds nothing.
        ScopeLock();
        /// Waits for `mutex` as a writer (`write` true) or a reader.
        ScopeLock(PL_QueuingRwMutex& mutex, bool write);
        /// Releases what it holds.
        ~ScopeLock();
        ScopeLock(const ScopeLock&) = delete;
        ScopeLock& operator=(const ScopeLock&) = delete;

        /// Releases what it holds, then waits for `mutex` as a writer or a reader.
        void acquire(PL_QueuingRwMutex& mutex, bool write);
        /// As acquire(), without waiting: false (holding nothing) unless the mutex is free,
        /// with nobody holding or waiting; a reader is refused even while only readers hold.
        bool tryAcquire(PL_QueuingRwMutex& mutex, bool write);
        /// Turns a read hold into a write hold. True when no other writer held the mutex in
        /// between; false when the hold had to be dropped and taken again as a writer, so that
        /// what was read must be read again. A write hold stays and gives true; holding
        /// nothing does nothing and gives false.
        bool upgradeToWriter();
        /// Leaves the queue, if in it; a second call does nothing.
        void release();
        /// Whether it holds the mutex.
        bool isHolding() const { return m_mutex != nullptr; }
        /// Whether it holds the mutex as a writer.
        bool isWriter() const { return m_mutex != nullptr && m_writer; }

    private:
        // The queue node of the underlying lock, kept opaque so that callers need no
        // threading-library headers; the source checks the size.
        alignas(void*) unsigned char m_node[4 * sizeof(void*)];
        PL_QueuingRwMutex* m_mutex = nullptr;
        bool m_writer = false;
    };

private:
    alignas(void*) unsigned char m_tail[sizeof(void*)];
};
