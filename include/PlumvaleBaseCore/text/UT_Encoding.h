// Conversions between UT_String and 8-bit text, number parsing and locale comparison.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <string>

// "Active code page" below means the 8-bit encoding of the current C locale
// (nl_langinfo(CODESET) after setlocale; plain ASCII in the default "C" locale).

/// Locale collation (wcscoll) of the two texts as UCS-4: <0, 0 or >0.
PLUMVALE_EXPORT int UT_Compare(const UT_String& a, const UT_String& b);
/// Locale collation of the two texts after the C library's towlower on each character.
PLUMVALE_EXPORT int UT_CompareNoCase(const UT_String& a, const UT_String& b);

/// @{
/// Active-code-page text (zero-terminated; null reads as empty) to UTF-16. A byte that is
/// not valid in the code page becomes U+FFFD. The `out` forms replace `out` and return it.
PLUMVALE_EXPORT UT_String UT_A2W(const char* text);
PLUMVALE_EXPORT UT_String& UT_A2W(const char* text, UT_String& out);
/// @}
/// @{
/// As UT_A2W on the characters up to the first zero byte.
PLUMVALE_EXPORT UT_String UT_S2W(const std::string& text);
PLUMVALE_EXPORT UT_String& UT_S2W(const std::string& text, UT_String& out);
/// @}
/// @{
/// UTF-16 to the active code page over exactly size() units (embedded zeros kept). Each
/// character the code page cannot hold becomes one '?'. For code pages other than UTF-8,
/// decomposed sequences are composed (NFC) first, so "e" + U+0301 can still map to "é".
/// The `out` form replaces `out` and returns it.
PLUMVALE_EXPORT std::string UT_W2S(const UT_String& text);
PLUMVALE_EXPORT std::string& UT_W2S(const UT_String& text, std::string& out);
/// @}

/// Low 8 bits of each unit, parsed as atoi does (leading white space, optional sign, digits
/// up to the first non-digit; no digits gives 0). Out-of-range values saturate to INT_MIN or
/// INT_MAX.
PLUMVALE_EXPORT int UT_W2Int(const UT_String& text);
/// Low 8 bits of each unit with every ',' read as '.', parsed as atof does in the "C"
/// locale whatever the current one: "1,5" and "1.5" both give 1.5.
PLUMVALE_EXPORT double UT_W2Float(const UT_String& text);
