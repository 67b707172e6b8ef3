// The record of the main thread.
#include "app/MainThread.h"

#include <atomic>
#include <thread>

namespace {

// Initialised while the library is loaded, which happens on the main thread unless the
// application loads it later by hand; recordMainThread() corrects that case.
std::atomic<std::thread::id> g_mainThread{std::this_thread::get_id()};

} // namespace

namespace plumvale::app {

void recordMainThread() {
    g_mainThread.store(std::this_thread::get_id(), std::memory_order_release);
}

bool isMainThread() {
    return g_mainThread.load(std::memory_order_acquire) == std::this_thread::get_id();
}

} // namespace plumvale::app
