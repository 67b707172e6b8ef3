// BAPP_Application: the application frame every application and tool starts through.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/app/BAPP_Arguments.h>
#include <PlumvaleBaseCore/app/PLUG_Interfaces.h>

#include <QString>
#include <QStringList>

#include <vector>

class QTranslator;

/// The application frame: consumes the frame's options ("-lang CODE", "-langdir FOLDER",
/// "-nologo"), prints the version banner, chooses the language and installs the
/// translators, records the main thread and sets the Qt library paths.
///
/// Conventions: made on the main thread, after the Qt application object, before any other
/// thread (BAPP_CoreApplication does both in order). Nothing here reports through the
/// message centre: a missing translation leaves the texts in English. The banner goes to
/// standard error so that a tool's standard output stays its data. The language preference
/// list is process-wide and built on first use from the default locale: its name ("fr_CA"),
/// its first two letters when the name has five, then "en" unless the language is English.
class PLUMVALE_EXPORT BAPP_Application : public PLUG_LanguagePreferenceInterface {
public:
    /// Records the main thread and sets the library paths; no arguments, no language.
    BAPP_Application();
    /// The full start-up: consumes the frame's options from `arguments` (an option missing
    /// its value stays), prints the banner unless "-nologo", sets the language ("-lang", or
    /// setupLanguage()), records the main thread, sets the library paths. A derived class's
    /// setupLanguage() cannot run from here (C++ calls this class's): call setup() once the
    /// derived object is built.
    explicit BAPP_Application(BAPP_Arguments& arguments);
    /// Fills `codes` with languagesPreference().
    void languagesPreference(QStringList& codes) override;
    ~BAPP_Application() override;
    /// changeLanguage() with the language asked on the command line, else setupLanguage().
    virtual void setup();
    /// The process's plug-in manager, from the plug-in manager library's
    /// PLUG_SharedPluginManager (looked up once); null when that library is not installed.
    virtual PLUG_Manager* pluginManager();

    /// Every argument after the program name, read as UTF-8, in order.
    static BAPP_Arguments parseArguments(int argc, char** argv);
    /// The Qt application object as a frame; null when there is none or it is not a frame.
    static BAPP_Application* instance();
    /// Records the calling thread as the main thread. Until it is called, the thread that
    /// loaded the library counts as the main thread.
    static void setupMainThread();
    /// Whether the calling thread is the recorded main thread.
    static bool isMainThread();

    /// Sets Qt's library paths to the one folder "<library>/qt/plugins".
    void setupLibraries();
    /// Makes `code` the language: the preference list becomes just `code`, QLocale(code)
    /// the default locale, then setupLanguage() runs (translators already installed stay).
    void changeLanguage(const QString& code);
    /// The process's language preference list (see the class comment).
    static QStringList languagesPreference();
    /// "<baseName>_<code>" for the first preferred code whose .qm file is in `dir` (the
    /// `lang` special folder when empty); empty when none is found before "en", since
    /// English is what the texts are written in and codes after it are never tried.
    static QString findTranslator(const QString& baseName, const QString& dir);
    /// Loads and installs the translator findTranslator() names, exactly that file; false,
    /// silently, when there is none or it does not load.
    bool addTranslator(const QString& baseName, const QString& dir);
    /// Installs an already loaded translator (owned by the Qt application) and records it.
    void addTranslator(QTranslator* translator);
    /// Whether the default locale's language is Chinese, Japanese or Korean.
    static bool isIdeographicLanguage();

    /// @{
    /// The language asked for ("-lang" or changeLanguage; empty when none), whether
    /// "-nologo" was given, and the translators this frame installed, in order.
    QString requestedLanguage() const { return m_language; }
    bool noLogo() const { return m_noLogo; }
    const std::vector<QTranslator*>& translators() const { return m_translators; }
    /// @}

protected:
    /// Installs the "qt" and "PlumvaleWhoAmI" translators from the `lang` folder, then sets
    /// the C library's locale to "C" for every category, so numbers are always written and
    /// read with a point. A derived frame may add its own translators.
    virtual void setupLanguage();

private:
    QString m_language;
    std::vector<QTranslator*> m_translators; // children of the Qt application, not deleted here
    bool m_noLogo = false;
};
