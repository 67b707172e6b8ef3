// BAPP_Application: the record of the main thread.
#include <PlumvaleBaseCore/app/BAPP_Application.h>

#include <atomic>
#include <thread>

namespace {

// Initialised while the library is loaded, which happens on the main thread unless the
// application loads it later by hand; setupMainThread() corrects that case.
std::atomic<std::thread::id> g_mainThread{std::this_thread::get_id()};

} // namespace

void BAPP_Application::setupMainThread() {
    g_mainThread.store(std::this_thread::get_id(), std::memory_order_release);
}

bool BAPP_Application::isMainThread() {
    return g_mainThread.load(std::memory_order_acquire) == std::this_thread::get_id();
}
