// Platform conversions between UTF-16 and the current locale's 8-bit encoding.
#pragma once

#include <PlumvaleBaseCore/text/UT_String.h>

#include <cstddef>
#include <string>

namespace plumvale::text {

/// True when the current locale's encoding is UTF-8.
bool codePageIsUtf8();
/// Decodes `n` bytes of the locale's encoding; an invalid byte becomes U+FFFD.
UT_String codePageToUtf16(const char* s, std::size_t n);
/// Encodes `n` units into the locale's encoding; an unmappable character becomes '?'.
std::string utf16ToCodePage(const unsigned short* s, std::size_t n);
/// strtod in the "C" locale, whatever the current one; `end`, when given, receives where
/// the parse stopped.
double parseDoubleC(const char* s, const char** end = nullptr);

} // namespace plumvale::text
