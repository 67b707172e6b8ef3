// The UTF-16 to UTF-8 encoding loop, compiled once per instruction set (internal linkage).
//
// Included by exactly two files: Utf8Codec.cpp (baseline) and Utf8EncodeSsse3.cpp (built
// with -mssse3). Everything here is static so that no SSSE3 code can be merged into the
// baseline build by the linker.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(__SSSE3__)
#include <tmmintrin.h>
#endif

namespace {

/// Bytes one pass of encodeSpan's loop may write past `limit` (a 16-byte store, or up to 16
/// units of three bytes and a trailing pair).
constexpr std::size_t kEncodeMaxStep = 80;

inline bool spanIsHigh(std::uint32_t u) { return (u & 0xFC00) == 0xD800; }
inline bool spanIsLow(std::uint32_t u) { return (u & 0xFC00) == 0xDC00; }

/// Encodes s[i] (and its low surrogate when one follows before n).
inline void spanEncodeOne(const unsigned short* s, std::size_t& i, std::size_t n,
                          unsigned char*& o) {
    std::uint32_t u = s[i++];
    if (u < 0x80) {
        *o++ = static_cast<unsigned char>(u);
    } else if (u < 0x800) {
        o[0] = static_cast<unsigned char>(0xC0 | (u >> 6));
        o[1] = static_cast<unsigned char>(0x80 | (u & 0x3F));
        o += 2;
    } else if (spanIsHigh(u) && i < n && spanIsLow(s[i])) {
        u = ((u - 0xD800) << 10) + (s[i++] - 0xDC00) + 0x10000;
        o[0] = static_cast<unsigned char>(0xF0 | (u >> 18));
        o[1] = static_cast<unsigned char>(0x80 | ((u >> 12) & 0x3F));
        o[2] = static_cast<unsigned char>(0x80 | ((u >> 6) & 0x3F));
        o[3] = static_cast<unsigned char>(0x80 | (u & 0x3F));
        o += 4;
    } else {
        o[0] = static_cast<unsigned char>(0xE0 | (u >> 12));
        o[1] = static_cast<unsigned char>(0x80 | ((u >> 6) & 0x3F));
        o[2] = static_cast<unsigned char>(0x80 | (u & 0x3F));
        o += 3;
    }
}

#if defined(__SSSE3__)
/// For each mask of 2-byte units among eight (bit k: unit k takes two bytes), the byte
/// gather that keeps the low byte of every unit and the high byte of the 2-byte ones.
struct PairCompaction {
    alignas(16) unsigned char shuffle[256][16] = {};
    unsigned char length[256] = {};
    constexpr PairCompaction() {
        for (unsigned mask = 0; mask < 256; ++mask) {
            unsigned k = 0;
            for (unsigned unit = 0; unit < 8; ++unit) {
                shuffle[mask][k++] = static_cast<unsigned char>(2 * unit);
                if (mask & (1u << unit)) shuffle[mask][k++] = static_cast<unsigned char>(2 * unit + 1);
            }
            length[mask] = static_cast<unsigned char>(k);
            for (; k < 16; ++k)
                shuffle[mask][k] = 0x80;
        }
    }
};

constexpr PairCompaction kPairCompaction{};
#endif

/// Encodes from s[i] while units remain and `o` is below `limit`; returns the bytes
/// written. The caller keeps kEncodeMaxStep bytes of room beyond `limit`.
std::size_t encodeSpan(const unsigned short* s, std::size_t n, std::size_t& position,
                       unsigned char* out, const unsigned char* limit) {
    // A local index: byte stores through `o` may alias anything, `position` included, which
    // would otherwise force it through memory on every step.
    std::size_t i = position;
    unsigned char* o = out;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i notAscii = _mm_set1_epi16(static_cast<short>(0xFF80));
#endif
#if defined(__SSSE3__)
    const PairCompaction& pairs = kPairCompaction;
    const __m128i notTwoByte = _mm_set1_epi16(static_cast<short>(0xF800));
    const __m128i surrogate = _mm_set1_epi16(static_cast<short>(0xD800));
    const __m128i low6 = _mm_set1_epi16(0x3F);
    const __m128i continuation = _mm_set1_epi16(0x80);
    const __m128i lead2 = _mm_set1_epi16(0xC0);
    const __m128i lead3 = _mm_set1_epi16(0xE0);
    // Three bytes per unit: lead and middle bytes from one vector, the last from another.
    const __m128i gatherA0 = _mm_setr_epi8(0, 1, -1, 2, 3, -1, 4, 5, -1, 6, 7, -1, -1, -1, -1, -1);
    const __m128i gatherB0 = _mm_setr_epi8(-1, -1, 0, -1, -1, 2, -1, -1, 4, -1, -1, 6, -1, -1, -1, -1);
    const __m128i gatherA1 =
        _mm_setr_epi8(8, 9, -1, 10, 11, -1, 12, 13, -1, 14, 15, -1, -1, -1, -1, -1);
    const __m128i gatherB1 =
        _mm_setr_epi8(-1, -1, 8, -1, -1, 10, -1, -1, 12, -1, -1, 14, -1, -1, -1, -1);
#endif
    while (i < n && o < limit) {
        std::size_t stretch = 8;
#if defined(__SSE2__)
        if (n - i >= 16) {
            __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
            __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 8));
            unsigned asciiA = static_cast<unsigned>(
                _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(a, notAscii), zero)));
            unsigned asciiB = static_cast<unsigned>(
                _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(b, notAscii), zero)));
            if ((asciiA & asciiB) == 0xFFFF) {
                // A run of ASCII: 16 units a step for as long as it lasts.
                do {
                    _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_packus_epi16(a, b));
                    i += 16;
                    o += 16;
                    if (n - i < 16 || o >= limit) break;
                    a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
                    b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 8));
                } while (_mm_movemask_epi8(_mm_cmpeq_epi16(
                             _mm_and_si128(_mm_or_si128(a, b), notAscii), zero)) == 0xFFFF);
                continue;
            }
#if defined(__SSSE3__)
            const __m128i high = _mm_and_si128(a, notTwoByte);
            const __m128i below800 = _mm_cmpeq_epi16(high, zero);
            if (_mm_movemask_epi8(below800) == 0xFFFF) {
                // Eight units of one or two bytes each.
                const __m128i two = _mm_or_si128(
                    _mm_or_si128(_mm_srli_epi16(a, 6), lead2),
                    _mm_slli_epi16(_mm_or_si128(_mm_and_si128(a, low6), continuation), 8));
                const __m128i ascii = _mm_cmpeq_epi16(_mm_and_si128(a, notAscii), zero);
                const __m128i bytes =
                    _mm_or_si128(_mm_and_si128(ascii, a), _mm_andnot_si128(ascii, two));
                const unsigned mask =
                    ~static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(ascii, ascii))) & 0xFF;
                const __m128i gather =
                    _mm_load_si128(reinterpret_cast<const __m128i*>(pairs.shuffle[mask]));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_shuffle_epi8(bytes, gather));
                o += pairs.length[mask];
                i += 8;
                continue;
            }
            const __m128i notThree = _mm_or_si128(below800, _mm_cmpeq_epi16(high, surrogate));
            if (_mm_movemask_epi8(notThree) == 0) {
                // Eight units of three bytes each, no surrogates.
                const __m128i lead = _mm_or_si128(_mm_srli_epi16(a, 12), lead3);
                const __m128i middle =
                    _mm_or_si128(_mm_and_si128(_mm_srli_epi16(a, 6), low6), continuation);
                const __m128i top = _mm_or_si128(lead, _mm_slli_epi16(middle, 8));
                const __m128i last = _mm_or_si128(_mm_and_si128(a, low6), continuation);
                _mm_storeu_si128(reinterpret_cast<__m128i*>(o),
                                 _mm_or_si128(_mm_shuffle_epi8(top, gatherA0),
                                              _mm_shuffle_epi8(last, gatherB0)));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 12),
                                 _mm_or_si128(_mm_shuffle_epi8(top, gatherA1),
                                              _mm_shuffle_epi8(last, gatherB1)));
                o += 24;
                i += 8;
                continue;
            }
#endif
            // Mixed text: copy the ASCII prefix, then a scalar stretch long enough to pay
            // for the vector attempt that failed.
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_packus_epi16(a, b));
            const int k = __builtin_ctz(~(asciiA | (asciiB << 16))) / 2;
            i += std::size_t(k);
            o += k;
            stretch = 16;
        }
#endif
        const std::size_t stop = n - i > stretch ? i + stretch : n;
        while (i < stop)
            spanEncodeOne(s, i, n, o);
    }
    position = i;
    return std::size_t(o - out);
}

} // namespace
