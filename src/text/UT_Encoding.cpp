// UT_String conversions to and from the locale's encoding, number parsing and collation.
#include <PlumvaleBaseCore/text/UT_Encoding.h>

#include <PlumvaleBaseCore/text/ConvertUTF.h>

#include "CodePage.h"

#include <QString>

#include <climits>
#include <cstring>
#include <cwchar>
#include <cwctype>

using namespace plumvale::text;

namespace {

/// UCS-4 copy of the text up to its first zero unit, for the C library's wide routines.
std::wstring toWide(const UT_String& s, bool lower) {
    std::wstring w(s.size(), L'\0');
    const unsigned short* src = s.data();
    auto* dst = reinterpret_cast<unsigned int*>(w.data());
    static_assert(sizeof(wchar_t) == sizeof(unsigned int), "wchar_t holds UCS-4 here");
    ConvertUTF16toUCS4(&src, s.data() + s.size(), &dst, dst + w.size());
    w.resize(static_cast<std::size_t>(dst - reinterpret_cast<unsigned int*>(w.data())));
    if (lower)
        for (wchar_t& c : w)
            c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
    return w;
}

int collate(const UT_String& a, const UT_String& b, bool lower) {
    const int r = std::wcscoll(toWide(a, lower).c_str(), toWide(b, lower).c_str());
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

/// Low 8 bits of each unit up to the first zero, optionally with ',' read as '.'.
std::string narrow(const UT_String& s, bool commaIsPoint) {
    std::string r;
    r.reserve(s.size());
    for (const unsigned short u : s) {
        const char c = static_cast<char>(u & 0xFF);
        if (c == '\0') break;
        r.push_back(commaIsPoint && c == ',' ? '.' : c);
    }
    return r;
}

bool isCSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

int UT_Compare(const UT_String& a, const UT_String& b) {
    return collate(a, b, false);
}

int UT_CompareNoCase(const UT_String& a, const UT_String& b) {
    return collate(a, b, true);
}

UT_String UT_A2W(const char* text) {
    return text ? codePageToUtf16(text, std::strlen(text)) : UT_String();
}

UT_String& UT_A2W(const char* text, UT_String& out) {
    return out = UT_A2W(text);
}

UT_String UT_S2W(const std::string& text) {
    return UT_A2W(text.c_str());
}

UT_String& UT_S2W(const std::string& text, UT_String& out) {
    return out = UT_S2W(text);
}

std::string UT_W2S(const UT_String& text) {
    if (!codePageIsUtf8()) {
        for (const unsigned short u : text) {
            if (u >= 0x300) {
                // A decomposed accent would otherwise become '?' in an 8-bit code page.
                const UT_String composed(text.ToQString().normalized(QString::NormalizationForm_C));
                return utf16ToCodePage(composed.data(), composed.size());
            }
        }
    }
    return utf16ToCodePage(text.data(), text.size());
}

std::string& UT_W2S(const UT_String& text, std::string& out) {
    return out = UT_W2S(text);
}

int UT_W2Int(const UT_String& text) {
    const std::string s = narrow(text, false);
    std::size_t i = 0;
    while (i < s.size() && isCSpace(s[i]))
        ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) negative = s[i++] == '-';
    long long value = 0;
    for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i) {
        value = value * 10 + (s[i] - '0');
        if (value > 1LL + INT_MAX) value = 1LL + INT_MAX; // saturate; keeps scanning digits
    }
    if (negative) value = -value;
    if (value > INT_MAX) return INT_MAX;
    if (value < INT_MIN) return INT_MIN;
    return static_cast<int>(value);
}

double UT_W2Float(const UT_String& text) {
    return parseDoubleC(narrow(text, true).c_str());
}
