// UT_LibraryTranslator: loads the library's own message catalogue for a language.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

/// The library's message texts ship as Qt catalogues built into the library (and installed
/// as .qm files under share/PlumvaleBaseCore/translations).
class PLUMVALE_EXPORT UT_LibraryTranslator {
public:
    /// Installs the catalogue of `language` ("fr") into the QCoreApplication, replacing the
    /// one installed before. False when there is no application object or no catalogue.
    static bool install(const QString& language);
    /// Removes the installed catalogue, if any.
    static void remove();
    /// The resource path of a language's catalogue.
    static QString catalogue(const QString& language);
};
