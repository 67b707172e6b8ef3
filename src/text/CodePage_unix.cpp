// Locale encoding conversions through iconv, and locale-independent number parsing.
#include "CodePage.h"

#include "UT_StringAccess.h"
#include "Utf8Rules.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <vector>

namespace plumvale::text {

namespace {

#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
constexpr const char* kUtf16 = "UTF-16LE";
#else
constexpr const char* kUtf16 = "UTF-16BE";
#endif

const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1);

/// One pair of converters per thread (iconv descriptors are not thread-safe), reopened when
/// the locale's encoding changes.
struct Converters {
    std::string codeset;
    iconv_t toUtf16 = kNoConverter;
    iconv_t fromUtf16 = kNoConverter;

    ~Converters() { close(); }
    void close() {
        if (toUtf16 != kNoConverter) iconv_close(toUtf16);
        if (fromUtf16 != kNoConverter) iconv_close(fromUtf16);
        toUtf16 = fromUtf16 = kNoConverter;
    }
    void refresh() {
        const char* current = nl_langinfo(CODESET);
        if (!current || !*current) current = "ANSI_X3.4-1968";
        if (codeset == current && toUtf16 != kNoConverter && fromUtf16 != kNoConverter) return;
        close();
        codeset = current;
        toUtf16 = iconv_open(kUtf16, current);
        fromUtf16 = iconv_open(current, kUtf16);
        if (toUtf16 == kNoConverter || fromUtf16 == kNoConverter) {
            // An encoding iconv does not know: fall back to ASCII rather than fail.
            close();
            toUtf16 = iconv_open(kUtf16, "ASCII");
            fromUtf16 = iconv_open("ASCII", kUtf16);
        }
    }
};

Converters& converters() {
    thread_local Converters c;
    c.refresh();
    return c;
}

bool allAscii(const unsigned char* s, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i)
        if (s[i] >= 0x80) return false;
    return true;
}

} // namespace

bool codePageIsUtf8() {
    const char* cs = nl_langinfo(CODESET);
    return cs && (std::strcmp(cs, "UTF-8") == 0 || std::strcmp(cs, "utf8") == 0);
}

UT_String codePageToUtf16(const char* s, std::size_t n) {
    if (n > UT_String::max_size()) n = UT_String::max_size();
    const auto* bytes = reinterpret_cast<const unsigned char*>(s);
    if (allAscii(bytes, n)) {
        UT_String out;
        UT_String::value_type* buf = UT_StringAccess::prepare(out, UT_String::size_type(n));
        for (std::size_t i = 0; i < n; ++i)
            buf[i] = bytes[i];
        UT_StringAccess::commit(out, UT_String::size_type(n));
        return out;
    }
    iconv_t cd = converters().toUtf16;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    // One unit per byte is enough for every encoding a locale uses; grow if one needs more.
    std::vector<UT_String::value_type> units(n + 2);
    char* in = const_cast<char*>(s);
    std::size_t inLeft = n;
    std::size_t used = 0; // units written
    while (inLeft > 0) {
        char* o = reinterpret_cast<char*>(units.data() + used);
        std::size_t outLeft = (units.size() - used) * sizeof(UT_String::value_type);
        const std::size_t rc = iconv(cd, &in, &inLeft, &o, &outLeft);
        const int err = errno;
        used = units.size() - outLeft / sizeof(UT_String::value_type);
        if (rc != static_cast<std::size_t>(-1)) break;
        if (err == E2BIG) {
            units.resize(units.size() * 2);
            continue;
        }
        // An invalid or truncated byte sequence: one replacement character per byte.
        if (used == units.size()) units.resize(units.size() * 2);
        units[used++] = 0xFFFD;
        ++in;
        --inLeft;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
    return UT_String(units.data(), UT_String::size_type(used));
}

std::string utf16ToCodePage(const unsigned short* s, std::size_t n) {
    std::string out;
    bool ascii = true;
    for (std::size_t i = 0; i < n && ascii; ++i)
        ascii = s[i] < 0x80;
    if (ascii) {
        out.resize(n);
        for (std::size_t i = 0; i < n; ++i)
            out[i] = static_cast<char>(s[i]);
        return out;
    }
    iconv_t cd = converters().fromUtf16;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    out.resize(4 * n + 16);
    char* in = reinterpret_cast<char*>(const_cast<unsigned short*>(s));
    std::size_t inLeft = n * sizeof(unsigned short);
    std::size_t used = 0;
    bool flushing = false; // all input converted: only the shift state is left to write
    for (;;) {
        char* o = out.data() + used;
        std::size_t outLeft = out.size() - used;
        const std::size_t rc = flushing ? iconv(cd, nullptr, nullptr, &o, &outLeft)
                                        : iconv(cd, &in, &inLeft, &o, &outLeft);
        const int err = errno;
        used = static_cast<std::size_t>(o - out.data());
        if (rc != static_cast<std::size_t>(-1)) {
            if (flushing) break;
            flushing = true;
            continue;
        }
        if (err == E2BIG) {
            out.resize(out.size() * 2);
            continue;
        }
        if (flushing) break;
        // An unmappable character (or a lone surrogate): one '?' in its place.
        const auto* unit = reinterpret_cast<const unsigned short*>(in);
        const bool pair = inLeft >= 4 && isHighSurrogate(unit[0]) && isLowSurrogate(unit[1]);
        const std::size_t skip = std::min<std::size_t>(inLeft, (pair ? 2 : 1) * 2);
        in += skip;
        inLeft -= skip;
        if (used == out.size()) out.resize(out.size() * 2);
        out[used++] = '?';
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
    out.resize(used);
    return out;
}

double parseDoubleC(const char* s, const char** end) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    char* stop = nullptr;
    const double value = strtod_l(s, &stop, cLocale);
    if (end) *end = stop;
    return value;
}

} // namespace plumvale::text
