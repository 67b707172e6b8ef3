// A stand-in for the plug-in manager library: its entry point hands back the folders it got,
// so the test sees both that it was reached and what it was given.
#include <PlumvaleBaseCore/app/PLUG_Interfaces.h>

extern "C" __attribute__((visibility("default"))) PLUG_Manager*
PLUG_SharedPluginManager(BAPP_SpecialFolders* folders) {
    return reinterpret_cast<PLUG_Manager*>(folders);
}
