// Bulk kernels of the reflected CRC-64: slicing-by-8 tables and carry-less multiplication.
#include "Crc64Kernels.h"

#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define PLUMVALE_CRC_X86 1
#endif

namespace plumvale::numerics {

namespace {

constexpr std::uint64_t kPolynomial = 0xD800000000000000ull;

struct SlicingTables {
    std::uint64_t t[8][256];
    SlicingTables() {
        for (unsigned i = 0; i < 256; ++i)
            t[0][i] = crc64TableEntry(i);
        for (int k = 1; k < 8; ++k)
            for (unsigned i = 0; i < 256; ++i)
                t[k][i] = (t[k - 1][i] >> 8) ^ t[0][t[k - 1][i] & 0xFF];
    }
};

const SlicingTables& tables() {
    static const SlicingTables instance;
    return instance;
}

/// x^k mod P in the reflected representation (bit 63 is x^0, bit 0 is x^63).
std::uint64_t xPowerModP(unsigned k) {
    std::uint64_t r = 0x8000000000000000ull; // x^0
    for (unsigned i = 0; i < k; ++i)
        r = (r >> 1) ^ ((r & 1) ? kPolynomial : 0);
    return r;
}

} // namespace

std::uint64_t crc64TableEntry(unsigned i) noexcept {
    std::uint64_t v = i;
    for (int bit = 0; bit < 8; ++bit)
        v = (v >> 1) ^ ((v & 1) ? kPolynomial : 0);
    return v;
}

std::uint64_t crc64Slicing(std::uint64_t crc, const unsigned char* p, std::size_t n) noexcept {
    const auto& t = tables().t;
    for (; n >= 8; n -= 8, p += 8) {
        std::uint64_t v;
        std::memcpy(&v, p, 8);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        v = __builtin_bswap64(v);
#endif
        v ^= crc;
        crc = t[7][v & 0xFF] ^ t[6][(v >> 8) & 0xFF] ^ t[5][(v >> 16) & 0xFF] ^
              t[4][(v >> 24) & 0xFF] ^ t[3][(v >> 32) & 0xFF] ^ t[2][(v >> 40) & 0xFF] ^
              t[1][(v >> 48) & 0xFF] ^ t[0][v >> 56];
    }
    for (; n > 0; --n, ++p)
        crc = t[0][(crc ^ *p) & 0xFF] ^ (crc >> 8);
    return crc;
}

#if defined(PLUMVALE_CRC_X86)

namespace {

// A 128-bit block loaded little-endian is, reflected, the polynomial H x^64 + L with H in
// the low half. Shifting it D bits along the message: H x^(64+D) + L x^D (mod P). A
// carry-less product of two reflected 64-bit values carries an extra factor x, hence the
// constants x^(D+63) and x^(D-1).
struct FoldConstants {
    std::uint64_t lo128, hi128, lo512, hi512;
    FoldConstants()
        : lo128(xPowerModP(128 + 63)), hi128(xPowerModP(128 - 1)), lo512(xPowerModP(512 + 63)),
          hi512(xPowerModP(512 - 1)) {}
};

const FoldConstants& foldConstants() {
    static const FoldConstants instance;
    return instance;
}

__attribute__((target("pclmul,sse2"))) inline __m128i fold(__m128i a, __m128i k) {
    return _mm_xor_si128(_mm_clmulepi64_si128(a, k, 0x00), _mm_clmulepi64_si128(a, k, 0x11));
}

} // namespace

bool crc64HasClmul() noexcept {
    static const bool has = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse2");
    return has;
}

__attribute__((target("pclmul,sse2"))) std::uint64_t
crc64Clmul(std::uint64_t crc, const unsigned char* p, std::size_t n) noexcept {
    if (n < 64) return crc64Slicing(crc, p, n);
    const FoldConstants& c = foldConstants();
    const __m128i k128 =
        _mm_set_epi64x(static_cast<long long>(c.hi128), static_cast<long long>(c.lo128));
    const __m128i k512 =
        _mm_set_epi64x(static_cast<long long>(c.hi512), static_cast<long long>(c.lo512));
    auto load = [](const unsigned char* q) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(q));
    };
    // The running CRC enters as an XOR over the first eight message bytes.
    __m128i x0 = _mm_xor_si128(load(p), _mm_set_epi64x(0, static_cast<long long>(crc)));
    __m128i x1 = load(p + 16);
    __m128i x2 = load(p + 32);
    __m128i x3 = load(p + 48);
    p += 64;
    n -= 64;
    for (; n >= 64; n -= 64, p += 64) {
        x0 = _mm_xor_si128(fold(x0, k512), load(p));
        x1 = _mm_xor_si128(fold(x1, k512), load(p + 16));
        x2 = _mm_xor_si128(fold(x2, k512), load(p + 32));
        x3 = _mm_xor_si128(fold(x3, k512), load(p + 48));
    }
    x1 = _mm_xor_si128(x1, fold(x0, k128));
    x2 = _mm_xor_si128(x2, fold(x1, k128));
    x3 = _mm_xor_si128(x3, fold(x2, k128));
    for (; n >= 16; n -= 16, p += 16)
        x3 = _mm_xor_si128(fold(x3, k128), load(p));
    // What is left of the 128 bits is reduced as plain message bytes from a zero CRC.
    unsigned char block[16];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(block), x3);
    return crc64Slicing(crc64Slicing(0, block, 16), p, n);
}

#else

bool crc64HasClmul() noexcept {
    return false;
}

std::uint64_t crc64Clmul(std::uint64_t crc, const unsigned char* p, std::size_t n) noexcept {
    return crc64Slicing(crc, p, n);
}

#endif

std::uint64_t crc64Fast(std::uint64_t crc, const unsigned char* p, std::size_t n) noexcept {
    return crc64HasClmul() ? crc64Clmul(crc, p, n) : crc64Slicing(crc, p, n);
}

} // namespace plumvale::numerics
