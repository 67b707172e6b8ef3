// Signal handlers on POSIX: a one-shot sigaction trampoline and the remembered predecessors.
#include "app/SignalHandlers.h"

#include "platform/Unix.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstring>

namespace plumvale::app {

namespace {

// Per signal: the handler we run, and the action we replaced when it is a function. Filled
// on the main thread at start-up, read inside handlers.
struct Slot {
    std::atomic<void (*)(int)> target{nullptr};
    struct sigaction previous;
    std::atomic<bool> hasPrevious{false};
    // The signal being handled, for a predecessor that wants the details.
    siginfo_t* info = nullptr;
    void* context = nullptr;
};

Slot g_slots[kSignalSlots];

void trampoline(int sig, siginfo_t* info, void* context) {
    Slot& slot = g_slots[sig];
    slot.info = info;
    slot.context = context;
    if (void (*target)(int) = slot.target.load(std::memory_order_acquire)) target(sig);
    slot.info = nullptr;
    slot.context = nullptr;
}

bool isFunction(const struct sigaction& action) {
    if (action.sa_flags & SA_SIGINFO) return action.sa_sigaction != nullptr;
    return action.sa_handler != SIG_DFL && action.sa_handler != SIG_IGN &&
           action.sa_handler != SIG_ERR;
}

} // namespace

bool installSignalHandler(int sig, void (*handler)(int)) {
    if (sig <= 0 || sig >= kSignalSlots || !handler) return false;
    Slot& slot = g_slots[sig];
    slot.target.store(handler, std::memory_order_release);
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_sigaction = trampoline;
    action.sa_flags = SA_SIGINFO | SA_RESETHAND | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    struct sigaction previous;
    if (::sigaction(sig, &action, &previous) != 0) return false;
    // Our own trampoline is not a predecessor: installing twice keeps the first one found.
    if (isFunction(previous) && previous.sa_sigaction != trampoline) {
        slot.previous = previous;
        slot.hasPrevious.store(true, std::memory_order_release);
    }
    return true;
}

bool callPreviousSignalHandler(int sig) {
    if (sig <= 0 || sig >= kSignalSlots) return false;
    Slot& slot = g_slots[sig];
    if (!slot.hasPrevious.load(std::memory_order_acquire)) return false;
    if (slot.previous.sa_flags & SA_SIGINFO) {
        siginfo_t made;
        siginfo_t* info = slot.info;
        if (!info) { // called outside a handler: describe a signal sent by this process
            std::memset(&made, 0, sizeof made);
            made.si_signo = sig;
            made.si_code = SI_USER;
            made.si_pid = ::getpid();
            info = &made;
        }
        slot.previous.sa_sigaction(sig, info, slot.context);
    } else {
        slot.previous.sa_handler(sig);
    }
    return true;
}

void writeToStandardError(const char* text, std::size_t size) {
    plumvale::platform::writeAll(STDERR_FILENO, text, size);
}

void exitImmediately(int status) {
    ::_exit(status);
}

} // namespace plumvale::app
