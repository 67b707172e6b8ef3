// BAPP_Application: the start-up sequence, the language and the translators.
#include <PlumvaleBaseCore/app/BAPP_Application.h>

#include <PlumvaleBaseCore/app/BAPP_Identity.h>
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>
#include <PlumvaleBaseCore/files/OSW_Dll.h>

#include "app/MainThread.h"
#include "app/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <clocale>
#include <cstdio>

namespace {

// The frame's preference list: process-wide, made and changed on the main thread only.
QStringList& framePreference() {
    static QStringList codes;
    return codes;
}

} // namespace

PLUG_LanguagePreferenceInterface::~PLUG_LanguagePreferenceInterface() = default;

BAPP_Application::BAPP_Application() {
    setupMainThread();
    setupLibraries();
}

BAPP_Application::BAPP_Application(BAPP_Arguments& arguments) {
    for (BAPP_ArgumentIterator it = arguments.begin(); it.hasMoreArgument(1);) {
        const QString argument = *it;
        if (argument == QLatin1String("-lang") && it.hasMoreArgument(2)) {
            m_language = it[1];
            it.handled(2);
        } else if (argument == QLatin1String("-langdir") && it.hasMoreArgument(2)) {
            BAPP_SharedSpecialFolders()->setLang(it[1]);
            it.handled(2);
        } else if (argument == QLatin1String("-nologo")) {
            m_noLogo = true;
            it.handled(1);
        } else {
            ++it;
        }
    }
    if (!m_noLogo)
        std::fprintf(stderr, "%s\n", BAPP_Identity::current().banner().toLocal8Bit().constData());
    // Inside this constructor the call reaches this class's setupLanguage, as C++ wants; a
    // derived frame with its own calls setup() again once it is built.
    if (!m_language.isEmpty())
        changeLanguage(m_language);
    else
        setupLanguage();
    setupMainThread();
    setupLibraries();
}

BAPP_Application::~BAPP_Application() = default;

void BAPP_Application::languagesPreference(QStringList& codes) {
    codes = languagesPreference();
}

void BAPP_Application::setup() {
    if (!m_language.isEmpty())
        changeLanguage(m_language);
    else
        setupLanguage();
}

PLUG_Manager* BAPP_Application::pluginManager() {
    // Looked up once: the plug-in manager library is optional, beside the frame's libraries
    // or wherever the system loader finds it.
    static const PLUG_SharedPluginManagerFunction shared = [] {
        DllModule module = DllOpen(BAPP_SharedSpecialFolders()->library() +
                                   QStringLiteral("/libPlumvalePluginManager"));
        if (!module) module = DllOpen(QStringLiteral("libPlumvalePluginManager"));
        DllError(); // a missing library is the normal case, not a pending failure
        return module ? reinterpret_cast<PLUG_SharedPluginManagerFunction>(
                            DllSymbol(module, "PLUG_SharedPluginManager"))
                      : nullptr;
    }();
    return shared ? shared(BAPP_SharedSpecialFolders()) : nullptr;
}

BAPP_Arguments BAPP_Application::parseArguments(int argc, char** argv) {
    QStringList list;
    for (int i = 1; i < argc; ++i)
        list.append(QString::fromUtf8(argv[i]));
    return BAPP_Arguments(list);
}

BAPP_Application* BAPP_Application::instance() {
    QCoreApplication* app = QCoreApplication::instance();
    return app ? static_cast<BAPP_Application*>(app->qt_metacast("BAPP_Application")) : nullptr;
}

void BAPP_Application::setupMainThread() {
    plumvale::app::recordMainThread();
}

bool BAPP_Application::isMainThread() {
    return plumvale::app::isMainThread();
}

void BAPP_Application::setupLibraries() {
    QCoreApplication::setLibraryPaths(
        {BAPP_SharedSpecialFolders()->library() + QStringLiteral("/qt/plugins")});
}

void BAPP_Application::changeLanguage(const QString& code) {
    m_language = code;
    framePreference() = QStringList{code};
    QLocale::setDefault(QLocale(code));
    setupLanguage();
}

void BAPP_Application::setupLanguage() {
    addTranslator(QStringLiteral("qt"), QString());
    addTranslator(QStringLiteral("PlumvaleWhoAmI"), QString());
    std::setlocale(LC_ALL, "C");
}

QStringList BAPP_Application::languagesPreference() {
    plumvale::app::fillLanguagePreference(framePreference(), QLocale());
    return framePreference();
}

QString BAPP_Application::findTranslator(const QString& baseName, const QString& dir) {
    return plumvale::app::findTranslatorIn(languagesPreference(), baseName,
                                           plumvale::app::languageFolder(dir));
}

bool BAPP_Application::addTranslator(const QString& baseName, const QString& dir) {
    const QString folder = plumvale::app::languageFolder(dir);
    const QString name = findTranslator(baseName, folder);
    if (name.isEmpty()) return false;
    QTranslator* translator = plumvale::app::installTranslatorFile(name, folder);
    if (!translator) return false;
    m_translators.push_back(translator);
    return true;
}

void BAPP_Application::addTranslator(QTranslator* translator) {
    QCoreApplication::installTranslator(translator);
    m_translators.push_back(translator);
}

bool BAPP_Application::isIdeographicLanguage() {
    const QLocale::Language language = QLocale().language();
    return language == QLocale::Chinese || language == QLocale::Japanese ||
           language == QLocale::Korean;
}
