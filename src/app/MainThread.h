// Internal: the record of the main thread, below the message centre.
//
// The message centre asks it, and the application frame (BAPP_Application) sets and exposes
// it; keeping it apart lets the frame include the message centre without a cycle.
#pragma once

namespace plumvale::app {

/// Records the calling thread as the main thread.
void recordMainThread();
/// Whether the calling thread is the recorded main thread; until recordMainThread() is
/// called, the thread that loaded the library counts as the main thread.
bool isMainThread();

} // namespace plumvale::app
