// The spin lock's backoff, PL_RecursiveMutex over std::recursive_mutex, and
// PL_QueuingRwMutex over the threading library's queuing reader-writer lock.
#include <PlumvaleBaseCore/app/PL_Mutex.h>

#include "platform/Platform.h"

#include <oneapi/tbb/queuing_rw_mutex.h>

#include <mutex>
#include <new>

#if defined(__SANITIZE_THREAD__)
#define PLUMVALE_TSAN 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define PLUMVALE_TSAN 1
#endif
#endif
#ifdef PLUMVALE_TSAN
#include <sanitizer/tsan_interface.h>
#endif

namespace {

// One pause of the spin loop: tells the core that this is a busy wait.
inline void cpuPause() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#else
    std::atomic_signal_fence(std::memory_order_seq_cst);
#endif
}

using TbbMutex = tbb::queuing_rw_mutex;
using TbbNode = tbb::queuing_rw_mutex::scoped_lock;

// The threading library is not built with the thread sanitizer, so the order its lock
// creates between holders is told to the sanitizer by hand.
inline void announceAcquired([[maybe_unused]] void* mutex) {
#ifdef PLUMVALE_TSAN
    __tsan_acquire(mutex);
#endif
}

inline void announceReleasing([[maybe_unused]] void* mutex) {
#ifdef PLUMVALE_TSAN
    __tsan_release(mutex);
#endif
}

} // namespace

void PL_SpinMutex::lockContended() {
    // Spin 1, 2, 4, 8, 16 pauses between attempts, then yield before each attempt. Waiting
    // on a plain load keeps the cache line shared until the holder lets go.
    for (int spins = 1;;) {
        if (spins <= 16) {
            for (int i = 0; i < spins; ++i)
                cpuPause();
            spins *= 2;
        } else {
            plumvale::platform::yieldThread();
        }
        if (m_flag.load(std::memory_order_relaxed) == 0 && tryLock()) return;
    }
}

struct PL_RecursiveMutex::Impl {
    std::recursive_mutex mutex;
};

PL_RecursiveMutex::PL_RecursiveMutex() : m_impl(std::make_unique<Impl>()) {}

PL_RecursiveMutex::~PL_RecursiveMutex() = default;

void PL_RecursiveMutex::lock() {
    m_impl->mutex.lock();
}

void PL_RecursiveMutex::unlock() {
    m_impl->mutex.unlock();
}

bool PL_RecursiveMutex::tryLock() {
    return m_impl->mutex.try_lock();
}

namespace {

static_assert(sizeof(TbbMutex) <= sizeof(void*) && alignof(TbbMutex) <= alignof(void*));
static_assert(sizeof(TbbNode) <= 4 * sizeof(void*) && alignof(TbbNode) <= alignof(void*));

TbbMutex& tbbMutex(unsigned char* storage) {
    return *std::launder(reinterpret_cast<TbbMutex*>(storage));
}

TbbNode& tbbNode(unsigned char* storage) {
    return *std::launder(reinterpret_cast<TbbNode*>(storage));
}

} // namespace

PL_QueuingRwMutex::PL_QueuingRwMutex() {
    new (m_tail) TbbMutex();
}

PL_QueuingRwMutex::~PL_QueuingRwMutex() {
    tbbMutex(m_tail).~TbbMutex();
}

PL_QueuingRwMutex::ScopeLock::ScopeLock() {
    new (m_node) TbbNode();
}

PL_QueuingRwMutex::ScopeLock::ScopeLock(PL_QueuingRwMutex& mutex, bool write) : ScopeLock() {
    acquire(mutex, write);
}

PL_QueuingRwMutex::ScopeLock::~ScopeLock() {
    release();
    tbbNode(m_node).~TbbNode();
}

void PL_QueuingRwMutex::ScopeLock::acquire(PL_QueuingRwMutex& mutex, bool write) {
    release();
    // A reader's try succeeds only on an empty queue, where waiting would be granted at once
    // too, and it costs less than the reader's full enqueue; a writer's enqueue is cheap.
    TbbNode& node = tbbNode(m_node);
    if (write || !node.try_acquire(tbbMutex(mutex.m_tail), false))
        node.acquire(tbbMutex(mutex.m_tail), write);
    announceAcquired(&mutex);
    m_mutex = &mutex;
    m_writer = write;
}

bool PL_QueuingRwMutex::ScopeLock::tryAcquire(PL_QueuingRwMutex& mutex, bool write) {
    release();
    if (!tbbNode(m_node).try_acquire(tbbMutex(mutex.m_tail), write)) return false;
    announceAcquired(&mutex);
    m_mutex = &mutex;
    m_writer = write;
    return true;
}

bool PL_QueuingRwMutex::ScopeLock::upgradeToWriter() {
    if (!m_mutex) return false;
    if (m_writer) return true;
    announceReleasing(m_mutex);
    const bool kept = tbbNode(m_node).upgrade_to_writer();
    announceAcquired(m_mutex);
    m_writer = true;
    return kept;
}

void PL_QueuingRwMutex::ScopeLock::release() {
    if (!m_mutex) return;
    announceReleasing(m_mutex);
    tbbNode(m_node).release();
    m_mutex = nullptr;
    m_writer = false;
}
