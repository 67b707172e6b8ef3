// OSW_Lang: the user-interface language and the loading of per-language translation files.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>
#include <QStringList>

/// The current language, its preference list and translation loading, for code that uses
/// a folder per language ("<lang>/<code>/<base>_<code>.qm").
///
/// Conventions: process-wide state, made and changed on the main thread only. The
/// preference list follows the frame's rule (BAPP_Application) and is filled once, from
/// whichever locale is asked for first: the default locale or the system one. Failures
/// return false and print nothing.
class PLUMVALE_EXPORT OSW_Lang {
public:
    /// The current language; "en" once asked while none was set.
    static QString language();
    /// Makes `code` the current language and QLocale(code) the default locale; the
    /// preference list is emptied and refilled from the new default on next use.
    static void setDefaultLanguage(const QString& code);
    /// The preference list, filled when empty from the default locale.
    static QStringList languagesPreference();
    /// The preference list, filled when empty from the system locale.
    static QStringList systemLanguagesPreference();
    /// Names for a language menu: the default locale's own language ("中文", "English" or
    /// "Français"; any other contributes nothing), then "English" unless it is English.
    static QStringList systemLanguagesNames();
    /// As BAPP_Application::findTranslator, over this class's preference list.
    static QString findTranslator(const QString& baseName, const QString& dir);
    /// Loads and installs a translator from `dir` (when empty: "<lang>/<language()>/", or
    /// "<lang>/fake/" when `fake`). With `fake` the file is "<baseName>_fake.qm", else
    /// findTranslator's; false when there is none or it does not load.
    static bool loadTranslator(const QString& baseName, const QString& dir, bool fake);
    /// Whether the last loadTranslator that got as far as choosing a file chose the fake one.
    static bool isFakeTranslation();
    /// Whether the default locale's language is Chinese, Japanese or Korean.
    static bool isIdeographicLanguage();
};
