// The whole-string UTF-8 kernels, compiled once per instruction set (internal linkage).
//
// Included by exactly two files: Utf8Codec.cpp (baseline SSE2) and Utf8KernelsAvx2.cpp
// (built with -mavx2, chosen at run time). Everything here is static so that no AVX2 code
// can be merged into the baseline build by the linker.
#pragma once

#include "Utf8Rules.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(__SSSE3__) || defined(__AVX2__)
#include <immintrin.h>
#endif

namespace {

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
    o = emitUtf16(ch, o);
    return p + extra + 1;
}

/// Not used by the AVX-512 build, which only encodes: decoding stays with the AVX2 build.
[[maybe_unused]] std::size_t decodeUtf8(const unsigned char* s, std::size_t n,
                                        unsigned short* out) {
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
#if defined(__AVX2__)
            // Inside an ASCII run: 32 bytes a step while it lasts.
            while (end - p >= 32) {
                const __m256i w = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
                if (_mm256_movemask_epi8(w) != 0) break;
                _mm256_storeu_si256(reinterpret_cast<__m256i*>(o),
                                    _mm256_cvtepu8_epi16(_mm256_castsi256_si128(w)));
                _mm256_storeu_si256(reinterpret_cast<__m256i*>(o + 16),
                                    _mm256_cvtepu8_epi16(_mm256_extracti128_si256(w, 1)));
                p += 32;
                o += 32;
            }
#endif
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

/// Longest scalar stretch of encodeSpan, in units.
constexpr std::size_t kEncodeMaxStretch = 48;
/// Bytes one pass of encodeSpan's loop may write past `limit`: an ASCII prefix of up to 15
/// bytes, then the longest stretch at three bytes a unit, a closing pair and the one byte
/// a wide store overwrites.
constexpr std::size_t kEncodeMaxStep = 15 + 3 * kEncodeMaxStretch + 4 + 1;

/// Encodes s[i] (and its low surrogate when one follows before n). Multi-byte forms are
/// written with one 16- or 32-bit store, so up to one byte past the form is overwritten.
inline void spanEncodeOne(const unsigned short* s, std::size_t& i, std::size_t n,
                          unsigned char*& o) {
    std::uint32_t u = s[i++];
    if (u < 0x80) {
        *o++ = static_cast<unsigned char>(u);
        return;
    }
    if (u < 0x800) {
        auto two = static_cast<std::uint16_t>((0xC0 | (u >> 6)) | ((0x80 | (u & 0x3F)) << 8));
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        two = __builtin_bswap16(two);
#endif
        std::memcpy(o, &two, 2);
        o += 2;
        return;
    }
    std::uint32_t bytes;
    int length;
    if (isHighSurrogate(u) && i < n && isLowSurrogate(s[i])) {
        u = combineSurrogates(u, s[i++]);
        bytes = (0xF0 | (u >> 18)) | ((0x80 | ((u >> 12) & 0x3F)) << 8) |
                ((0x80 | ((u >> 6) & 0x3F)) << 16) | ((0x80 | (u & 0x3F)) << 24);
        length = 4;
    } else {
        bytes =
            (0xE0 | (u >> 12)) | ((0x80 | ((u >> 6) & 0x3F)) << 8) | ((0x80 | (u & 0x3F)) << 16);
        length = 3;
    }
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    bytes = __builtin_bswap32(bytes);
#endif
    std::memcpy(o, &bytes, 4);
    o += length;
}

#if defined(__SSSE3__)
/// Byte gathers that compact per-unit UTF-8 forms, one per index:
/// - Units = 8: a vector of eight units, two bytes each; index bit k marks unit k as taking
///   both of its bytes (else only the first).
/// - Units = 4: four units' first two bytes in bytes 0-7 and their third bytes in 8-11;
///   index bits 0-3 mark units of two bytes or more, bits 4-7 units of three.
template <unsigned Units>
struct Compaction {
    alignas(16) unsigned char shuffle[256][16] = {};
    unsigned char length[256] = {};
    constexpr Compaction() {
        for (unsigned index = 0; index < 256; ++index) {
            unsigned k = 0;
            for (unsigned unit = 0; unit < Units; ++unit) {
                const bool three = Units == 4 && (index & (16u << unit));
                const bool two = three || (index & (1u << unit));
                shuffle[index][k++] = static_cast<unsigned char>(2 * unit);
                if (two) shuffle[index][k++] = static_cast<unsigned char>(2 * unit + 1);
                if (three) shuffle[index][k++] = static_cast<unsigned char>(8 + unit);
            }
            length[index] = static_cast<unsigned char>(k);
            for (; k < 16; ++k)
                shuffle[index][k] = 0x80;
        }
    }
};

constexpr Compaction<8> kTwoByteCompaction{};
constexpr Compaction<4> kHalfCompaction{};
#endif

#if defined(__AVX2__)
/// Copies ASCII units 32 at a time while whole blocks of them remain and o < limit.
inline void encodeAsciiRun(const unsigned short* s, std::size_t& i, std::size_t n,
                           unsigned char*& o, const unsigned char* limit) {
    const __m256i notAscii = _mm256_set1_epi16(static_cast<short>(0xFF80));
    while (n - i >= 32 && o < limit) {
        const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i));
        const __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i + 16));
        if (!_mm256_testz_si256(_mm256_or_si256(x, y), notAscii)) return;
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(o),
                            _mm256_permute4x64_epi64(_mm256_packus_epi16(x, y), 0xD8));
        i += 32;
        o += 32;
    }
}
#endif

#if defined(__AVX512VBMI2__) && defined(__AVX512VBMI__) && defined(__AVX512BW__) &&                \
    defined(__AVX512VL__) && defined(__AVX512CD__)
#define PLUMVALE_UTF8_AVX512_ENCODE 1
static_assert(kEncodeMaxStep >= 64, "encodeBlock16 always stores 64 bytes");

/// Byte tables indexed by a code point's count of leading zero bits (11 to 32 occur). Entry
/// 0 stays 0: a lane's upper index bytes are zero and must look up nothing.
struct FormTables {
    alignas(64) unsigned char shift[64] = {}; ///< 8 bits for each byte the form has below four
    alignas(64) unsigned char lead[64] = {};  ///< added to 0x80 | top group, gives the lead byte
    constexpr FormTables() {
        for (unsigned zeros = 11; zeros <= 32; ++zeros) {
            const unsigned length = zeros >= 25 ? 1 : zeros >= 21 ? 2 : zeros >= 16 ? 3 : 4;
            shift[zeros] = static_cast<unsigned char>(8 * (4 - length));
            lead[zeros] = static_cast<unsigned char>(0x80 - (0x80 >> (length - 1)));
        }
    }
};
constexpr FormTables kFormTables{};

/// Encodes min(16, n - i) units from s[i] with one 64-byte store at o, moves both, and
/// returns the bytes written. A high surrogate in the last lane takes its low half from
/// beyond the block; `pending` says that s[i] is such a low half, already written, and is
/// set for the next block. The step never depends on the data, so blocks do not wait on
/// each other. Units past n are never read (masked loads), so this also finishes a text.
inline unsigned encodeBlock16(const unsigned short* s, std::size_t& i, std::size_t n,
                              unsigned char*& o, __mmask16& pending) {
    const std::size_t left = n - i;
    const __mmask16 here = left >= 16 ? 0xFFFF : static_cast<__mmask16>((1u << left) - 1);
    const __mmask16 ahead = static_cast<__mmask16>(here >> 1 | (left >= 17 ? 0x8000 : 0));
    const __m256i units = _mm256_maskz_loadu_epi16(here, s + i);
    const __m256i next = _mm256_maskz_loadu_epi16(ahead, s + i + 1);
    const __m256i tagBits = _mm256_set1_epi16(static_cast<short>(0xFC00));
    const __mmask16 pair = _mm256_cmpeq_epi16_mask(_mm256_and_si256(units, tagBits),
                                                   _mm256_set1_epi16(static_cast<short>(0xD800))) &
                           _mm256_cmpeq_epi16_mask(_mm256_and_si256(next, tagBits),
                                                   _mm256_set1_epi16(static_cast<short>(0xDC00)));
    // A pair's low half writes nothing, and neither do lanes past the end.
    const __mmask16 silent =
        _kor_mask16(_knot_mask16(here), _kor_mask16(_kshiftli_mask16(pair, 1), pending));
    pending = _kshiftri_mask16(pair, 15);

    // One code point per 32-bit lane: hi * 1024 + lo less the offset of the pair ranges.
    const __m512i unit = _mm512_cvtepu16_epi32(units);
    const __m512i code = _mm512_mask_sub_epi32(
        unit, pair, _mm512_add_epi32(_mm512_slli_epi32(unit, 10), _mm512_cvtepu16_epi32(next)),
        _mm512_set1_epi32(0x35FDC00));
    const __m512i zeros = _mm512_lzcnt_epi32(code);
    __m512i shift = _mm512_permutexvar_epi8(
        zeros, _mm512_load_si512(reinterpret_cast<const void*>(kFormTables.shift)));
    const __m512i lead = _mm512_permutexvar_epi8(
        zeros, _mm512_load_si512(reinterpret_cast<const void*>(kFormTables.lead)));
    // The four 6-bit groups, top group first, each marked 0x80: a four-byte form once its
    // lead is added, and shorter forms are the same shifted down by their missing bytes.
    const __m512i marked = _mm512_or_si512(
        _mm512_and_si512(_mm512_multishift_epi64_epi8(_mm512_set1_epi64(0x20262C3200060C12), code),
                         _mm512_set1_epi32(0x3F3F3F3F)),
        _mm512_set1_epi32(static_cast<int>(0x80808080)));
    // A code point below 0x80 is its own form (the marked one lost its bit 6).
    const __m512i forms =
        _mm512_mask_mov_epi32(_mm512_add_epi32(_mm512_srlv_epi32(marked, shift), lead),
                              _mm512_cmplt_epu32_mask(code, _mm512_set1_epi32(0x80)), code);
    // A shift of 32 empties a lane's byte mask.
    shift = _mm512_mask_mov_epi32(shift, silent, _mm512_set1_epi32(32));
    const __mmask64 used = _mm512_movepi8_mask(_mm512_srlv_epi32(_mm512_set1_epi32(-1), shift));
    _mm512_storeu_si512(o, _mm512_maskz_compress_epi8(used, forms));
    const auto written = static_cast<unsigned>(_mm_popcnt_u64(used));
    o += written;
    i += left >= 16 ? 16 : left;
    return written;
}
#endif

/// Encodes from s[position] while units remain and fewer than `room` bytes were written;
/// returns the bytes written and moves `position`. `out` must hold room + kEncodeMaxStep.
#if defined(PLUMVALE_UTF8_AVX512_ENCODE)
std::size_t encodeSpan(const unsigned short* s, std::size_t n, std::size_t& position,
                       unsigned char* out, std::size_t room) {
    const unsigned char* const limit = out + room;
    std::size_t i = position; // local: stores through `o` may alias `position`
    unsigned char* o = out;
    // The previous call may have ended on a pair whose low half is s[i].
    __mmask16 pending = i > 0 && i < n && isHighSurrogate(s[i - 1]) && isLowSurrogate(s[i]);
    bool ascii = true; // the last block was ASCII: worth trying a run again
    while (i < n && o < limit) {
        // A run never starts while `pending` is set: s[i] is then a low surrogate.
        if (ascii) {
            encodeAsciiRun(s, i, n, o, limit);
            if (i == n || o >= limit) break;
        }
        // Sixteen bytes from sixteen units: ASCII, or near enough to try a run.
        ascii = encodeBlock16(s, i, n, o, pending) == 16;
    }
    position = i;
    return std::size_t(o - out);
}
#else
std::size_t encodeSpan(const unsigned short* s, std::size_t n, std::size_t& position,
                       unsigned char* out, std::size_t room) {
    const unsigned char* const limit = out + room;
    // A local index: byte stores through `o` may alias anything, `position` included, which
    // would otherwise force it through memory on every step.
    std::size_t i = position;
    unsigned char* o = out;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i notAscii = _mm_set1_epi16(static_cast<short>(0xFF80));
#endif
#if defined(__SSSE3__)
    const Compaction<8>& twoBytes = kTwoByteCompaction;
    const __m128i notTwoByte = _mm_set1_epi16(static_cast<short>(0xF800));
    const __m128i surrogate = _mm_set1_epi16(static_cast<short>(0xD800));
    const __m128i low6 = _mm_set1_epi16(0x3F);
    const __m128i continuation = _mm_set1_epi16(0x80);
    const __m128i lead2 = _mm_set1_epi16(0xC0);
    const __m128i lead3 = _mm_set1_epi16(0xE0);
    const __m128i lead4 = _mm_set1_epi16(0xF0);
    const __m128i surrogateBits = _mm_set1_epi16(static_cast<short>(0xFC00));
    const __m128i lowSurrogate = _mm_set1_epi16(static_cast<short>(0xDC00));
    const __m128i low10 = _mm_set1_epi16(0x3FF);
    const __m128i low4 = _mm_set1_epi16(0xF);
    const __m128i low2 = _mm_set1_epi16(0x3);
    // Three bytes per unit: lead and middle bytes from one vector, the last from another.
    const __m128i gatherA0 = _mm_setr_epi8(0, 1, -1, 2, 3, -1, 4, 5, -1, 6, 7, -1, -1, -1, -1, -1);
    const __m128i gatherB0 =
        _mm_setr_epi8(-1, -1, 0, -1, -1, 2, -1, -1, 4, -1, -1, 6, -1, -1, -1, -1);
    const __m128i gatherA1 =
        _mm_setr_epi8(8, 9, -1, 10, 11, -1, 12, 13, -1, 14, 15, -1, -1, -1, -1, -1);
    const __m128i gatherB1 =
        _mm_setr_epi8(-1, -1, 8, -1, -1, 10, -1, -1, 12, -1, -1, 14, -1, -1, -1, -1);
#endif
    unsigned misses = 0; // vector attempts failed in a row
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
#if defined(__AVX2__)
                // A run of ASCII: 32 units a step while it lasts, then 16.
                encodeAsciiRun(s, i, n, o, limit);
                if (n - i < 16 || o >= limit) continue;
                a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
                b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 8));
                if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(_mm_or_si128(a, b), notAscii),
                                                      zero)) != 0xFFFF)
                    continue;
#endif
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
                misses = 0;
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
                    _mm_load_si128(reinterpret_cast<const __m128i*>(twoBytes.shuffle[mask]));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_shuffle_epi8(bytes, gather));
                o += twoBytes.length[mask];
                i += 8;
                misses = 0;
                continue;
            }
            const __m128i isSurrogate = _mm_cmpeq_epi16(high, surrogate);
            const __m128i notThree = _mm_or_si128(below800, isSurrogate);
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
                misses = 0;
                continue;
            }
            {
                // Any mix of 1-, 2- and 3-byte units and surrogate pairs, with no lone
                // surrogate before the last lane. A pair's four bytes are split two per lane:
                // the low lane takes two bits of the high unit from its neighbour.
                const __m128i tag = _mm_and_si128(a, surrogateBits);
                const __m128i isHigh = _mm_cmpeq_epi16(tag, surrogate);
                const __m128i isLow = _mm_cmpeq_epi16(tag, lowSurrogate);
                const unsigned high8 =
                    static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(isHigh, isHigh))) &
                    0xFF;
                const unsigned low8 =
                    static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(isLow, isLow))) & 0xFF;
                if (low8 == ((high8 << 1) & 0xFF)) {
                    const __m128i ascii = _mm_cmpeq_epi16(_mm_and_si128(a, notAscii), zero);
                    const __m128i last = _mm_or_si128(_mm_and_si128(a, low6), continuation);
                    const __m128i two = _mm_or_si128(_mm_or_si128(_mm_srli_epi16(a, 6), lead2),
                                                     _mm_slli_epi16(last, 8));
                    const __m128i three = _mm_or_si128(
                        _mm_or_si128(_mm_srli_epi16(a, 12), lead3),
                        _mm_slli_epi16(
                            _mm_or_si128(_mm_and_si128(_mm_srli_epi16(a, 6), low6), continuation),
                            8));
                    // High unit: t = ((u & 0x3FF) >> 2) + 0x10 carries the plane.
                    const __m128i t = _mm_add_epi16(_mm_srli_epi16(_mm_and_si128(a, low10), 2),
                                                    _mm_set1_epi16(0x10));
                    const __m128i highBytes = _mm_or_si128(
                        _mm_or_si128(_mm_srli_epi16(t, 6), lead4),
                        _mm_slli_epi16(_mm_or_si128(_mm_and_si128(t, low6), continuation), 8));
                    const __m128i previous = _mm_slli_si128(a, 2);
                    const __m128i lowBytes = _mm_or_si128(
                        _mm_or_si128(continuation,
                                     _mm_or_si128(_mm_slli_epi16(_mm_and_si128(previous, low2), 4),
                                                  _mm_and_si128(_mm_srli_epi16(a, 6), low4))),
                        _mm_slli_epi16(last, 8));
                    const auto pick = [](__m128i mask, __m128i yes, __m128i no) {
                        return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
                    };
                    __m128i first = pick(below800, two, three);
                    first = pick(isHigh, highBytes, first);
                    first = pick(isLow, lowBytes, first);
                    first = pick(ascii, a, first);
                    const __m128i threeLanes =
                        _mm_andnot_si128(_mm_or_si128(below800, isSurrogate), _mm_set1_epi16(-1));
                    const unsigned long2 =
                        ~static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(ascii, ascii))) &
                        0xFF;
                    const unsigned long3 = static_cast<unsigned>(_mm_movemask_epi8(
                                               _mm_packs_epi16(threeLanes, threeLanes))) &
                                           0xFF;
                    const __m128i thirds = _mm_packus_epi16(last, last);
                    const __m128i half0 = _mm_unpacklo_epi64(first, thirds);
                    const __m128i half1 = _mm_unpackhi_epi64(first, _mm_srli_si128(thirds, 4));
                    const unsigned index0 = (long2 & 0xF) | ((long3 & 0xF) << 4);
                    const unsigned index1 = (long2 >> 4) | (long3 & 0xF0);
                    const Compaction<4>& halves = kHalfCompaction;
                    _mm_storeu_si128(
                        reinterpret_cast<__m128i*>(o),
                        _mm_shuffle_epi8(half0, _mm_load_si128(reinterpret_cast<const __m128i*>(
                                                    halves.shuffle[index0]))));
                    o += halves.length[index0];
                    _mm_storeu_si128(
                        reinterpret_cast<__m128i*>(o),
                        _mm_shuffle_epi8(half1, _mm_load_si128(reinterpret_cast<const __m128i*>(
                                                    halves.shuffle[index1]))));
                    o += halves.length[index1];
                    // A high surrogate in the last lane waits for its low half: drop its two
                    // bytes and take it again at the start of the next block.
                    const bool cut = high8 & 0x80;
                    o -= cut ? 2 : 0;
                    i += cut ? 7 : 8;
                    misses = 0;
                    continue;
                }
            }
#endif
            // Mixed text: copy the ASCII prefix, then a scalar stretch long enough to pay
            // for the vector attempt that failed, longer when they keep failing.
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_packus_epi16(a, b));
            const int k = __builtin_ctz(~(asciiA | (asciiB << 16))) / 2;
            i += std::size_t(k);
            o += k;
            ++misses;
            stretch = misses < 3 ? 16 : kEncodeMaxStretch;
        }
#endif
        const std::size_t stop = n - i > stretch ? i + stretch : n;
        while (i < stop)
            spanEncodeOne(s, i, n, o);
    }
    position = i;
    return std::size_t(o - out);
}
#endif

} // namespace
