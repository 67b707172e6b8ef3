// The language preference list, the translator search and exact translator loading.
#include "app/Translations.h"

#include <PlumvaleBaseCore/app/BAPP_SpecialFolders.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QTranslator>

namespace plumvale::app {

void fillLanguagePreference(QStringList& codes, const QLocale& locale) {
    if (!codes.isEmpty()) return;
    const QString name = locale.name();
    codes.append(name);
    if (name.size() == 5) codes.append(name.left(2));
    if (locale.language() != QLocale::English) codes.append(QStringLiteral("en"));
}

QString findTranslatorIn(const QStringList& codes, const QString& baseName, const QString& dir) {
    const QString folder = dir.isEmpty() ? QString() : dir + QLatin1Char('/');
    for (const QString& code : codes) {
        const QString name = baseName + QLatin1Char('_') + code;
        if (QFileInfo(folder + name + QStringLiteral(".qm")).isFile()) return name;
        // The texts are written in English: nothing past it is looked for.
        if (code == QLatin1String("en")) break;
    }
    return QString();
}

QTranslator* installTranslatorFile(const QString& name, const QString& dir) {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app) return nullptr;
    auto* translator = new QTranslator(app);
    // Empty (not null) delimiters switch off the search for shorter names; the null suffix
    // keeps Qt's ".qm".
    if (!translator->load(name, dir, QLatin1String(""), QString()) ||
        !QCoreApplication::installTranslator(translator)) {
        delete translator;
        return nullptr;
    }
    return translator;
}

QString languageFolder(const QString& dir) {
    return dir.isEmpty() ? BAPP_SharedSpecialFolders()->lang() : dir;
}

} // namespace plumvale::app
