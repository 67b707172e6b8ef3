// Whole-string UTF-8 <-> UTF-16 codecs with vectorised ASCII runs.
#include "Utf8Codec.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace plumvale::text {

namespace {

inline unsigned short* emitUtf16(std::uint32_t ch, unsigned short* o) noexcept {
    if (ch < 0x10000) {
        *o++ = static_cast<unsigned short>(ch);
    } else if (ch > 0x10FFFF) {
        *o++ = 0xFFFD;
    } else {
        ch -= 0x10000;
        *o++ = static_cast<unsigned short>(0xD800 + (ch >> 10));
        *o++ = static_cast<unsigned short>(0xDC00 + (ch & 0x3FF));
    }
    return o;
}

} // namespace

std::size_t utf8ToUtf16(const unsigned char* s, std::size_t n, unsigned short* out) noexcept {
    const unsigned char* p = s;
    const unsigned char* const end = s + n;
    unsigned short* o = out;
    // Invariant: o - out <= p - s, so writing 16 units while 16 bytes remain stays in room.
    while (p < end) {
        if (*p < 0x80) {
#if defined(__SSE2__)
            const __m128i zero = _mm_setzero_si128();
            while (end - p >= 16) {
                const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
                const int mask = _mm_movemask_epi8(v);
                _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_unpacklo_epi8(v, zero));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 8), _mm_unpackhi_epi8(v, zero));
                if (mask) {
                    const int ascii = __builtin_ctz(static_cast<unsigned>(mask));
                    p += ascii;
                    o += ascii;
                    goto nonAscii;
                }
                p += 16;
                o += 16;
            }
#endif
            while (p < end && *p < 0x80)
                *o++ = *p++;
            continue;
        }
#if defined(__SSE2__)
    nonAscii:
#endif
        // A run of multi-byte sequences; fall back to the ASCII loop on the next ASCII byte.
        while (p < end && *p >= 0x80) {
            const unsigned char lead = *p;
            if (lead < 0xC0) {
                *o++ = lead;
                ++p;
                continue;
            }
            const int extra = trailingBytes(lead);
            if (end - p <= extra) return std::size_t(o - out);
            std::uint32_t ch;
            if (extra == 1)
                ch = (std::uint32_t(lead) << 6) + p[1] - 0x3080u;
            else if (extra == 2)
                ch = (std::uint32_t(lead) << 12) + (std::uint32_t(p[1]) << 6) + p[2] - 0xE2080u;
            else
                ch = decodeSequence(p, extra);
            p += extra + 1;
            o = emitUtf16(ch, o);
        }
    }
    return std::size_t(o - out);
}

namespace {

std::size_t utf8Length(const unsigned short* s, std::size_t n) noexcept {
    std::size_t len = 0;
    std::size_t i = 0;
#if defined(__SSE2__)
    const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
    const __m128i zero = _mm_setzero_si128();
#endif
    while (i < n) {
#if defined(__SSE2__)
        if (n - i >= 8) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
            if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(v, high), zero)) == 0xFFFF) {
                len += 8;
                i += 8;
                continue;
            }
        }
#endif
        const std::uint32_t u = s[i];
        if (u < 0x80) {
            len += 1;
        } else if (u < 0x800) {
            len += 2;
        } else if (isHighSurrogate(u) && i + 1 < n && isLowSurrogate(s[i + 1])) {
            len += 4;
            ++i;
        } else {
            len += 3;
        }
        ++i;
    }
    return len;
}

} // namespace

std::string utf16ToUtf8(const unsigned short* s, std::size_t n) {
    std::string result(utf8Length(s, n), '\0');
    unsigned char* o = reinterpret_cast<unsigned char*>(result.data());
    std::size_t i = 0;
    while (i < n) {
#if defined(__SSE2__)
        // Output room never falls below the units left, so 16-byte stores are safe here.
        const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
        const __m128i zero = _mm_setzero_si128();
        while (n - i >= 16) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 8));
            const __m128i any = _mm_and_si128(_mm_or_si128(a, b), high);
            if (_mm_movemask_epi8(_mm_cmpeq_epi16(any, zero)) != 0xFFFF) break;
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_packus_epi16(a, b));
            o += 16;
            i += 16;
        }
        if (i == n) break;
#endif
        const std::size_t stop = n - i > 16 ? i + 16 : n;
        while (i < stop) {
            std::uint32_t u = s[i++];
            if (u < 0x80) {
                *o++ = static_cast<unsigned char>(u);
                continue;
            }
            if (u < 0x800) {
                o[0] = static_cast<unsigned char>(0xC0 | (u >> 6));
                o[1] = static_cast<unsigned char>(0x80 | (u & 0x3F));
                o += 2;
                continue;
            }
            if (isHighSurrogate(u) && i < n && isLowSurrogate(s[i])) {
                u = combineSurrogates(u, s[i++]);
                encodeSequence(u, 4, o);
                o += 4;
                continue;
            }
            o[0] = static_cast<unsigned char>(0xE0 | (u >> 12));
            o[1] = static_cast<unsigned char>(0x80 | ((u >> 6) & 0x3F));
            o[2] = static_cast<unsigned char>(0x80 | (u & 0x3F));
            o += 3;
        }
    }
    return result;
}

} // namespace plumvale::text
