// The two faces of the family's plug-in manager library that the application frame needs.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QStringList>

/// The plug-in manager; opaque here: it belongs to the plug-in manager library.
class PLUG_Manager;

/// What the plug-in manager asks of an application to choose its plug-ins' translations.
class PLUMVALE_EXPORT PLUG_LanguagePreferenceInterface {
public:
    /// Fills `codes` with the language codes to try, most wanted first.
    virtual void languagesPreference(QStringList& codes) = 0;
    virtual ~PLUG_LanguagePreferenceInterface();
};

/// The plug-in manager library's entry point, which BAPP_Application::pluginManager() looks
/// up at run time by this C name in "libPlumvalePluginManager.so": the manager shared by the
/// process, given the special folders.
class BAPP_SpecialFolders;
extern "C" {
typedef PLUG_Manager* (*PLUG_SharedPluginManagerFunction)(BAPP_SpecialFolders* folders);
}
