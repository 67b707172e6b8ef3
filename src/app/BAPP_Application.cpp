// BAPP_Application: the frame's face of the main-thread record.
#include <PlumvaleBaseCore/app/BAPP_Application.h>

#include "app/MainThread.h"

void BAPP_Application::setupMainThread() {
    plumvale::app::recordMainThread();
}

bool BAPP_Application::isMainThread() {
    return plumvale::app::isMainThread();
}
