// The language rules shared by the application frame and OSW_Lang.
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

class QTranslator;

namespace plumvale::app {

/// Fills an empty `codes` from `locale`: its name, its first two letters when the name has
/// five characters, then "en" unless the language is English. A filled list is kept.
void fillLanguagePreference(QStringList& codes, const QLocale& locale);

/// "<baseName>_<code>" for the first code of `codes` whose .qm file is in `dir`; empty when
/// "en" (or the end) comes first.
QString findTranslatorIn(const QStringList& codes, const QString& baseName, const QString& dir);

/// Loads `dir`/`name`.qm, that file only (Qt's fallback to shorter names is off), into a
/// translator owned by the Qt application and installs it; null when it does not load.
QTranslator* installTranslatorFile(const QString& name, const QString& dir);

/// `dir`, or the `lang` special folder when `dir` is empty.
QString languageFolder(const QString& dir);

} // namespace plumvale::app
