// PL_RecursiveMutex, a recursive mutex, with its scoped lock.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <memory>

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
    class PLUMVALE_EXPORT ScopeLock {
    public:
        /// Holds nothing.
        ScopeLock() = default;
        /// Locks `mutex` until release() or destruction.
        explicit ScopeLock(PL_RecursiveMutex& mutex) { acquire(mutex); }
        /// Releases what it holds.
        ~ScopeLock() { release(); }
        ScopeLock(const ScopeLock&) = delete;
        ScopeLock& operator=(const ScopeLock&) = delete;

        /// Releases what it holds, then locks `mutex`.
        void acquire(PL_RecursiveMutex& mutex) {
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
        PL_RecursiveMutex* m_mutex = nullptr;
    };

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
