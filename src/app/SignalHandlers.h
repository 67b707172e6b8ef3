// The few signal facilities the termination cleaner needs, kept behind one narrow interface.
#pragma once

#include <cstddef>

namespace plumvale::app {

/// Signal numbers below this have a slot for a remembered previous handler.
constexpr int kSignalSlots = 128;

/// Installs `handler` for `sig`, one-shot as the C runtime's signal() is where the frame
/// came from: delivery first restores the default action, so a fault that comes back after
/// the handler returns ends the process instead of looping. The previous handler is
/// remembered when it is a function (not the default, ignore or error value). False when
/// `sig` is out of range or refused by the system.
bool installSignalHandler(int sig, void (*handler)(int));

/// Calls the remembered previous handler of `sig`, with the details of the signal being
/// handled when there is one; false when none is remembered.
bool callPreviousSignalHandler(int sig);

/// Writes `size` bytes to the standard error descriptor, safely inside a signal handler.
void writeToStandardError(const char* text, std::size_t size);

/// Ends the process at once with `status`, without exit handlers or stream flushing.
[[noreturn]] void exitImmediately(int status);

} // namespace plumvale::app
