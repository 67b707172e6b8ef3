// OSW_Lang: the current language, its preference list and the translation files.
#include <PlumvaleBaseCore/app/OSW_Lang.h>

#include <PlumvaleBaseCore/app/BAPP_Application.h>
#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>

#include "app/Translations.h"

#include <QLocale>

namespace {

// Process-wide state of the class, main thread only.
struct LangState {
    QStringList preference;
    QString language;
    bool fake = false;
};

LangState& state() {
    static LangState s;
    return s;
}

} // namespace

QString OSW_Lang::language() {
    if (state().language.isEmpty()) state().language = QStringLiteral("en");
    return state().language;
}

void OSW_Lang::setDefaultLanguage(const QString& code) {
    state().preference.clear();
    QLocale::setDefault(QLocale(code));
    state().language = code;
}

QStringList OSW_Lang::languagesPreference() {
    plumvale::app::fillLanguagePreference(state().preference, QLocale());
    return state().preference;
}

QStringList OSW_Lang::systemLanguagesPreference() {
    plumvale::app::fillLanguagePreference(state().preference, QLocale::system());
    return state().preference;
}

QStringList OSW_Lang::systemLanguagesNames() {
    QStringList names;
    const QLocale::Language language = QLocale().language();
    if (language == QLocale::Chinese)
        names.append(QStringLiteral("\u4e2d\u6587") /* Chinese, in Chinese */);
    else if (language == QLocale::English)
        names.append(QStringLiteral("English"));
    else if (language == QLocale::French)
        names.append(QStringLiteral("Fran%1ais").arg(QChar(0x00E7)));
    if (language != QLocale::English) names.append(QStringLiteral("English"));
    return names;
}

QString OSW_Lang::findTranslator(const QString& baseName, const QString& dir) {
    return plumvale::app::findTranslatorIn(languagesPreference(), baseName,
                                           plumvale::app::languageFolder(dir));
}

bool OSW_Lang::loadTranslator(const QString& baseName, const QString& dir, bool fake) {
    QString folder = dir;
    if (folder.isEmpty()) {
        const QString lang = BAPP_SharedSpecialFolders()->lang();
        folder = fake ? lang + QStringLiteral("/fake/")
                      : lang + QLatin1Char('/') + language() + QLatin1Char('/');
    }
    QString file;
    if (fake) {
        file = baseName + QStringLiteral("_fake");
        state().fake = true;
    } else {
        file = findTranslator(baseName, folder);
        state().fake = false;
    }
    if (file.isEmpty()) return false;
    return plumvale::app::installTranslatorFile(file, folder) != nullptr;
}

bool OSW_Lang::isFakeTranslation() {
    return state().fake;
}

bool OSW_Lang::isIdeographicLanguage() {
    return BAPP_Application::isIdeographicLanguage();
}
