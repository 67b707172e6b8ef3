// Whole-string UTF-8 <-> UTF-16 conversions, dispatched to the best kernels for the CPU.
#include "Utf8Codec.h"

#include "Utf8Kernels.h"

#include <algorithm>

namespace plumvale::text {

#if defined(PLUMVALE_HAVE_AVX2_KERNELS)
std::size_t decodeUtf8Avx2(const unsigned char* s, std::size_t n, unsigned short* out);
std::size_t encodeUtf8SpanAvx2(const unsigned short* s, std::size_t n, std::size_t& i,
                               unsigned char* out, std::size_t room);
std::size_t encodeUtf8SpanAvx512(const unsigned short* s, std::size_t n, std::size_t& i,
                                 unsigned char* out, std::size_t room);
#endif

namespace {

using SpanEncoder = std::size_t (*)(const unsigned short*, std::size_t, std::size_t&,
                                    unsigned char*, std::size_t);
using Decoder = std::size_t (*)(const unsigned char*, std::size_t, unsigned short*);

bool hasAvx2() {
#if defined(PLUMVALE_HAVE_AVX2_KERNELS)
    static const bool has = __builtin_cpu_supports("avx2");
    return has;
#else
    return false;
#endif
}

bool hasAvx512Compress() {
#if defined(PLUMVALE_HAVE_AVX2_KERNELS)
    static const bool has =
        __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512cd") &&
        __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2");
    return has;
#else
    return false;
#endif
}

SpanEncoder spanEncoder() {
#if defined(PLUMVALE_HAVE_AVX2_KERNELS)
    if (hasAvx512Compress()) return &encodeUtf8SpanAvx512;
    if (hasAvx2()) return &encodeUtf8SpanAvx2;
#endif
    return &encodeSpan;
}

Decoder decoder() {
#if defined(PLUMVALE_HAVE_AVX2_KERNELS)
    if (hasAvx2()) return &decodeUtf8Avx2;
#endif
    return &decodeUtf8;
}

/// Exact UTF-8 length of n units: 1, 2 or 3 bytes by value, less 2 for each high surrogate
/// directly followed by a low one (the pair takes 4 bytes, not 6).
std::size_t utf8Length(const unsigned short* s, std::size_t n) {
    std::size_t length = 0;
    std::size_t i = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i notAscii = _mm_set1_epi16(static_cast<short>(0xFF80));
    const __m128i notTwoByte = _mm_set1_epi16(static_cast<short>(0xF800));
    const __m128i surrogateBits = _mm_set1_epi16(static_cast<short>(0xFC00));
    const __m128i high = _mm_set1_epi16(static_cast<short>(0xD800));
    const __m128i low = _mm_set1_epi16(static_cast<short>(0xDC00));
    // Lanes gather -1 per "shorter than 3 bytes" and -2 per pair: at most -2 a step, so a
    // 16-bit lane holds 4096 steps.
    while (n - i >= 9) {
        const std::size_t steps = std::min<std::size_t>((n - i - 1) / 8, 4096);
        __m128i acc = zero;
        for (std::size_t k = 0; k < steps; ++k, i += 8) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
            const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 1));
            acc = _mm_add_epi16(acc, _mm_cmpeq_epi16(_mm_and_si128(v, notAscii), zero));
            acc = _mm_add_epi16(acc, _mm_cmpeq_epi16(_mm_and_si128(v, notTwoByte), zero));
            const __m128i pair =
                _mm_and_si128(_mm_cmpeq_epi16(_mm_and_si128(v, surrogateBits), high),
                              _mm_cmpeq_epi16(_mm_and_si128(next, surrogateBits), low));
            acc = _mm_add_epi16(acc, _mm_add_epi16(pair, pair));
        }
        const __m128i sums = _mm_madd_epi16(acc, _mm_set1_epi16(1));
        alignas(16) std::int32_t lanes[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(lanes), sums);
        const long long saved =
            -(static_cast<long long>(lanes[0]) + lanes[1] + lanes[2] + lanes[3]);
        length += 24 * steps - static_cast<std::size_t>(saved);
    }
#endif
    for (; i < n; ++i) {
        const std::uint32_t u = s[i];
        length += u < 0x80 ? 1 : (u < 0x800 ? 2 : 3);
        if (isHighSurrogate(u) && i + 1 < n && isLowSurrogate(s[i + 1])) length -= 2;
    }
    return length;
}

} // namespace

std::size_t utf8ToUtf16(const unsigned char* s, std::size_t n, unsigned short* out) noexcept {
#if defined(__SSE2__)
    // Short ASCII text, the common case for names and keys: widen it here, without the
    // dispatch and set-up of the kernels.
    if (n <= 64) {
        const __m128i zero = _mm_setzero_si128();
        std::size_t i = 0;
        for (; n - i >= 16; i += 16) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
            if (_mm_movemask_epi8(v)) break;
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_unpacklo_epi8(v, zero));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), _mm_unpackhi_epi8(v, zero));
        }
        while (i < n && s[i] < 0x80) {
            out[i] = s[i];
            ++i;
        }
        if (i == n) return n;
        return i + decoder()(s + i, n - i, out + i);
    }
#endif
    return decoder()(s, n, out);
}

namespace {

/// Short texts: one small buffer (a small stack frame), one allocation for the result.
std::string encodeShort(const unsigned short* s, std::size_t n, SpanEncoder encode) {
    constexpr std::size_t kMaxUnits = 256;
    unsigned char buffer[3 * kMaxUnits + kEncodeMaxStep];
    std::size_t i = 0;
    const std::size_t produced = encode(s, n, i, buffer, 3 * kMaxUnits);
    return std::string(reinterpret_cast<const char*>(buffer), produced);
}

/// Long texts: encoded into a chunk that stays in the first-level cache and appended to a
/// string reserved from the first chunk's bytes per unit; a text whose end is denser than
/// its start pays for one exact length pass.
std::string encodeLong(const unsigned short* s, std::size_t n, SpanEncoder encode) {
    constexpr std::size_t kChunk = 8192;
    unsigned char chunk[kChunk + kEncodeMaxStep];
    std::size_t i = 0;
    std::size_t produced = encode(s, n, i, chunk, kChunk);
    std::string result;
    const std::size_t rest = n - i;
    const std::size_t extra = i ? (produced - i) * rest / i : 0; // beyond one byte per unit
    result.reserve(produced + rest + extra + extra / 16);
    for (;;) {
        if (result.size() + produced > result.capacity())
            result.reserve(result.size() + produced + utf8Length(s + i, n - i));
        result.append(reinterpret_cast<const char*>(chunk), produced);
        if (i == n) return result;
        produced = encode(s, n, i, chunk, kChunk);
    }
}

} // namespace

std::string utf16ToUtf8(const unsigned short* s, std::size_t n) {
#if defined(__SSE2__)
    // Short ASCII text: narrow it here, without the dispatch and set-up of the kernels.
    if (n <= 64) {
        unsigned char buffer[64];
        const __m128i notAscii = _mm_set1_epi16(static_cast<short>(0xFF80));
        std::size_t i = 0;
        for (; n - i >= 8; i += 8) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
            if (_mm_movemask_epi8(
                    _mm_cmpeq_epi16(_mm_and_si128(v, notAscii), _mm_setzero_si128())) != 0xFFFF)
                break;
            _mm_storel_epi64(reinterpret_cast<__m128i*>(buffer + i), _mm_packus_epi16(v, v));
        }
        while (i < n && s[i] < 0x80) {
            buffer[i] = static_cast<unsigned char>(s[i]);
            ++i;
        }
        if (i == n) return std::string(reinterpret_cast<const char*>(buffer), n);
        // Not all ASCII: the kernels start again from the first unit. Handing the prefix over
        // would need the larger buffer in this frame, which measured slower for ASCII text.
    }
#endif
    const SpanEncoder encode = spanEncoder();
    return n <= 256 ? encodeShort(s, n, encode) : encodeLong(s, n, encode);
}

} // namespace plumvale::text
