// Whole-string UTF-8 <-> UTF-16 codecs with vectorised ASCII runs.
#include "Utf8Codec.h"
#include "Utf8EncodeSpan.h"

#include <algorithm>
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

/// Decodes the multi-byte sequence at p (lead byte >= 0x80) whose bytes are all in range.
inline const unsigned char* decodeOne(const unsigned char* p, unsigned short*& o) noexcept {
    const std::uint32_t lead = *p;
    std::uint32_t ch;
    int extra;
    if (lead < 0xC0) {
        *o++ = static_cast<unsigned short>(lead);
        return p + 1;
    }
    if (lead < 0xE0) {
        // Never a pair: at most 0x83F, or wrapped below zero for 0xC0/0xC1 leads.
        ch = (lead << 6) + p[1] - 0x3080u;
        *o++ = ch < 0x10000 ? static_cast<unsigned short>(ch) : 0xFFFD;
        return p + 2;
    }
    if (lead < 0xF0) {
        ch = (lead << 12) + (std::uint32_t(p[1]) << 6) + p[2] - 0xE2080u;
        extra = 2;
    } else {
        extra = trailingBytes(static_cast<unsigned char>(lead));
        ch = decodeSequence(p, extra);
    }
    if (ch < 0x10000)
        *o++ = static_cast<unsigned short>(ch);
    else
        o = emitUtf16(ch, o);
    return p + extra + 1;
}

std::size_t utf8ToUtf16(const unsigned char* s, std::size_t n, unsigned short* out) noexcept {
    const unsigned char* p = s;
    const unsigned char* const end = s + n;
    unsigned short* o = out;
#if defined(__SSE2__)
    // Invariant: o - out <= p - s, so 16 units may be stored while 16 bytes remain.
    const __m128i zero = _mm_setzero_si128();
    while (end - p >= 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(v));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_unpacklo_epi8(v, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 8), _mm_unpackhi_epi8(v, zero));
        if (mask == 0) {
            p += 16;
            o += 16;
            continue;
        }
        const int ascii = __builtin_ctz(mask);
        p += ascii;
        o += ascii;
        // Mixed text: a short scalar stretch costs less than a vector step per character.
        // Stop 6 bytes (the longest sequence) before the end; the checked loop does the rest.
        const unsigned char* const stop = end - p > 22 ? p + 16 : end - 6;
        while (p < stop) {
            if (*p < 0x80)
                *o++ = *p++;
            else
                p = decodeOne(p, o);
        }
    }
#endif
    while (p < end) {
        if (*p < 0x80) {
            *o++ = *p++;
            continue;
        }
        if (end - p <= trailingBytes(*p)) break; // cut off at the end: dropped
        p = decodeOne(p, o);
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

#if defined(PLUMVALE_HAVE_SSSE3_ENCODER)
std::size_t encodeUtf8SpanSsse3(const unsigned short* s, std::size_t n, std::size_t& i,
                                unsigned char* out, const unsigned char* limit);
#endif

namespace {

using SpanEncoder = std::size_t (*)(const unsigned short*, std::size_t, std::size_t&,
                                    unsigned char*, const unsigned char*);

SpanEncoder spanEncoder() {
#if defined(PLUMVALE_HAVE_SSSE3_ENCODER)
    static const SpanEncoder best =
        __builtin_cpu_supports("ssse3") ? &encodeUtf8SpanSsse3 : &encodeSpan;
    return best;
#else
    return &encodeSpan;
#endif
}

} // namespace

std::string utf16ToUtf8(const unsigned short* s, std::size_t n) {
    // Units are encoded into a chunk that stays in the first-level cache. A text that fits
    // in one chunk costs one allocation; a longer one is appended chunk by chunk to a string
    // reserved at one byte per unit (exact for ASCII), and only text that outgrows that pays
    // for one exact length pass over what is left.
    constexpr std::size_t kChunk = 8192;
    unsigned char chunk[kChunk + kEncodeMaxStep];
    const SpanEncoder encode = spanEncoder();
    std::size_t i = 0;
    std::size_t produced = encode(s, n, i, chunk, chunk + kChunk);
    if (i == n) return std::string(reinterpret_cast<const char*>(chunk), produced);
    std::string result;
    result.reserve(std::max(n, produced + (n - i)));
    for (;;) {
        if (result.size() + produced > result.capacity())
            result.reserve(result.size() + produced + utf8Length(s + i, n - i));
        result.append(reinterpret_cast<const char*>(chunk), produced);
        if (i == n) return result;
        produced = encode(s, n, i, chunk, chunk + kChunk);
    }
}

} // namespace plumvale::text
