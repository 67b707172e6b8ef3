// TUSema: a counting semaphore that wakes its waiters in arrival order.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <memory>

/// A counting semaphore, safe from any thread, whose blocked waiters are woken first come,
/// first served.
///
/// Conventions: release() adds to the count and wakes the longest waiting thread. A thread
/// that is not yet waiting may take the count before the woken one runs (tryAcquire() or an
/// acquire() that finds the count above 0); the woken thread then queues again at the back.
/// Destroying a semaphore that threads still wait on is undefined.
class PLUMVALE_EXPORT TUSema {
public:
    /// A semaphore with `initial` units.
    explicit TUSema(unsigned int initial = 0);
    ~TUSema();
    TUSema(const TUSema&) = delete;
    TUSema& operator=(const TUSema&) = delete;

    /// Takes one unit, waiting in line while there is none.
    void acquire();
    /// Takes one unit when there is one; false at once otherwise.
    bool tryAcquire();
    /// Adds one unit and wakes the longest waiting thread, if any.
    void release();
    /// Adds `n` units and wakes up to `n` waiting threads, longest waiting first.
    void release(unsigned int n);

    /// @{
    /// Momentary views for checks and tests: the units now free, the threads now waiting.
    unsigned int available() const;
    int waiting() const;
    /// @}

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
