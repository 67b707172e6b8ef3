// Catalogue lookups of texts, and quoting.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <QString>

/// `pair[0]` is a translation context, `pair[1]` a source text: the application's
/// translation (QCoreApplication::translate) of it. A null pair or source gives "".
PLUMVALE_EXPORT UT_String UT_LoadString(const char** pair);
/// Returns `text` unchanged; the context is ignored.
PLUMVALE_EXPORT UT_String UT_LoadString(const UT_String& text, const char* context);

/// The text between two double quotes; nothing inside is escaped.
PLUMVALE_EXPORT QString quote(const QString& text);

/// With an application object, the catalogue translation of `source` in `context`; when
/// there is none (or no application), `source` read as Latin-1.
PLUMVALE_EXPORT QString MISC_translateFromLatin1(const char* context, const char* source,
                                                 const char* disambiguation = nullptr);
/// As above, the source read as UTF-8 in both cases.
PLUMVALE_EXPORT QString MISC_translateFromUtf8(const char* context, const char* source,
                                               const char* disambiguation = nullptr);
