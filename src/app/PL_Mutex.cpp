// PL_RecursiveMutex over std::recursive_mutex.
#include <PlumvaleBaseCore/app/PL_Mutex.h>

#include <mutex>

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
