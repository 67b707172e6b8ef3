// Fuzz target: the code-page conversions in the "C" (ASCII) and UTF-8 locales.
//
// Input: byte 0 picks the locale (even "C", odd "C.UTF-8"); the rest is read as 8-bit text
// up to its first zero and, again, as UTF-16 units.
#include "FuzzCheck.h"

#include <PlumvaleBaseCore/text/UT_Encoding.h>

#include <QString>

#include <clocale>
#include <cstring>

namespace {

bool isValidUtf16(const UT_String& s) {
    for (UT_String::size_type i = 0; i < s.size(); ++i) {
        const unsigned u = s[i];
        if (u >= 0xD800 && u <= 0xDBFF && i + 1 < s.size() && s[i + 1] >= 0xDC00 &&
            s[i + 1] <= 0xDFFF)
            ++i;
        else if (u >= 0xD800 && u <= 0xDFFF)
            return false;
    }
    return true;
}

void checkAscii(const std::string& text, const UT_String& wide) {
    // Every byte is one unit: itself below 0x80, U+FFFD above; back, the latter are '?'.
    FUZZ_CHECK(wide.size() == text.size());
    std::string back = text;
    for (std::size_t k = 0; k < text.size(); ++k) {
        const auto byte = static_cast<unsigned char>(text[k]);
        FUZZ_CHECK(wide[UT_String::size_type(k)] == (byte < 0x80 ? byte : 0xFFFD));
        if (byte >= 0x80) back[k] = '?';
    }
    FUZZ_CHECK(UT_W2S(wide) == back);
}

void checkUtf8(const std::string& text, const UT_String& wide, const UT_String& units) {
    // Valid UTF-8 comes back byte for byte, and valid UTF-16 survives the trip out and in.
    const QByteArray bytes(text.data(), static_cast<int>(text.size()));
    if (QString::fromUtf8(bytes).toUtf8() == bytes) FUZZ_CHECK(UT_W2S(wide) == text);
    if (isValidUtf16(units)) FUZZ_CHECK(UT_A2W(UT_W2S(units).c_str()) == units);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    const bool utf8 = data[0] % 2 == 1;
    if (!std::setlocale(LC_ALL, utf8 ? "C.UTF-8" : "C")) return 0;
    const char* text = reinterpret_cast<const char*>(data + 1);
    const std::string narrow(text, strnlen(text, size - 1));
    const fuzz::Units u = fuzz::unitsOf(data + 1, size - 1);
    UT_String units(u.data(), UT_String::size_type(u.size()));
    // Embedded zeros end a C string on the way back in; keep the units before the first.
    units.resize(std::min(units.size(), units.find(u'\0')));

    const UT_String wide = UT_A2W(narrow.c_str());
    FUZZ_CHECK(UT_S2W(narrow) == wide);
    if (utf8)
        checkUtf8(narrow, wide, units);
    else
        checkAscii(narrow, wide);
    std::setlocale(LC_ALL, "C");
    return 0;
}
