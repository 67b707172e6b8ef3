// TUSema: the count, and the queue of waiting threads served from its front.
#include <PlumvaleBaseCore/text/TUSema.h>

#include <condition_variable>
#include <deque>
#include <mutex>

namespace {

// A waiting thread's place in the queue, on its own stack. `woken` tells a real wake-up
// from a spurious one, so that only the thread taken off the queue leaves its wait.
struct Waiter {
    std::condition_variable wake;
    bool woken = false;
};

} // namespace

// A standard mutex rather than a QMutex: the thread sanitizer sees its ordering.
struct TUSema::Impl {
    mutable std::mutex mutex;
    unsigned int count = 0;
    std::deque<Waiter*> waiters; // front: the longest waiting

    void wakeFront() {
        Waiter* waiter = waiters.front();
        waiters.pop_front();
        waiter->woken = true;
        waiter->wake.notify_one();
    }
};

TUSema::TUSema(unsigned int initial) : m_impl(std::make_unique<Impl>()) {
    m_impl->count = initial;
}

TUSema::~TUSema() = default;

void TUSema::acquire() {
    std::unique_lock<std::mutex> lock(m_impl->mutex);
    while (m_impl->count == 0) {
        Waiter waiter;
        m_impl->waiters.push_back(&waiter);
        waiter.wake.wait(lock, [&waiter] { return waiter.woken; });
    }
    --m_impl->count;
}

bool TUSema::tryAcquire() {
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    if (m_impl->count == 0) return false;
    --m_impl->count;
    return true;
}

void TUSema::release() {
    release(1);
}

void TUSema::release(unsigned int n) {
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    m_impl->count += n;
    for (unsigned int woken = 0; woken < n && !m_impl->waiters.empty(); ++woken)
        m_impl->wakeFront();
}

unsigned int TUSema::available() const {
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    return m_impl->count;
}

int TUSema::waiting() const {
    std::lock_guard<std::mutex> lock(m_impl->mutex);
    return static_cast<int>(m_impl->waiters.size());
}
