// BAPP_Application: the application frame; for now the record of the main thread.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

/// The application frame.
class PLUMVALE_EXPORT BAPP_Application {
public:
    /// Records the calling thread as the main thread. Until it is called, the thread that
    /// loaded the library counts as the main thread.
    static void setupMainThread();
    /// Whether the calling thread is the recorded main thread.
    static bool isMainThread();
};
