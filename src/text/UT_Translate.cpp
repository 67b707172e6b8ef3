// Catalogue lookups of texts, and quoting.
#include <PlumvaleBaseCore/text/UT_Translate.h>

#include <QCoreApplication>

namespace {

/// The catalogue's translation, or `fallback(source)` when the catalogue has none.
template <class Fallback>
QString translateOr(const char* context, const char* source, const char* disambiguation,
                    Fallback fallback) {
    if (!source) return QString();
    if (!QCoreApplication::instance()) return fallback(source);
    const QString translated = QCoreApplication::translate(context, source, disambiguation);
    // translate() answers with the source read as UTF-8 when nothing matched.
    if (translated == QString::fromUtf8(source)) return fallback(source);
    return translated;
}

} // namespace

UT_String UT_LoadString(const char** pair) {
    if (!pair || !pair[1]) return UT_String();
    return UT_String(QCoreApplication::translate(pair[0], pair[1]));
}

UT_String UT_LoadString(const UT_String& text, const char* /*context*/) {
    return text;
}

QString quote(const QString& text) {
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString MISC_translateFromLatin1(const char* context, const char* source,
                                 const char* disambiguation) {
    return translateOr(context, source, disambiguation,
                       [](const char* s) { return QString::fromLatin1(s); });
}

QString MISC_translateFromUtf8(const char* context, const char* source,
                               const char* disambiguation) {
    return translateOr(context, source, disambiguation,
                       [](const char* s) { return QString::fromUtf8(s); });
}
