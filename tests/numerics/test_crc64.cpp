// Tests of the CRC-64: check value, a bit-by-bit reference, every kernel and piecewise use.
#include <PlumvaleBaseCore/numerics/TUCRC64Calculator.h>

#include "numerics/Crc64Kernels.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

/// Bit-serial reflected CRC straight from the polynomial: no table, no folding.
std::uint64_t bitwiseCrc(const unsigned char* p, std::size_t n, std::uint64_t crc = 0) {
    for (std::size_t i = 0; i < n; ++i) {
        crc ^= p[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) ? 0xD800000000000000ull : 0);
    }
    return crc;
}

std::string randomBytes(std::size_t n, std::mt19937& rng) {
    std::string s(n, '\0');
    for (auto& c : s)
        c = static_cast<char>(rng());
    return s;
}

} // namespace

TEST(Crc64, CheckValueAndTrivialInputs) {
    const TUCRC64Calculator calc;
    const auto check = calc.compute("123456789");
    EXPECT_EQ(check.first, 0x46a5a938u);
    EXPECT_EQ(check.second, 0x8a5beffeu);
    EXPECT_EQ(calc.compute(""), std::make_pair(0u, 0u));
    EXPECT_EQ(calc.compute(std::string(1, '\0')), std::make_pair(0u, 0u));
    EXPECT_EQ(calc.compute(std::string(100, '\0')), std::make_pair(0u, 0u));
}

TEST(Crc64, TableMatchesTheBitwiseDefinition) {
    const TUCRC64Calculator calc;
    for (unsigned i = 0; i < 256; ++i) {
        const unsigned char byte = static_cast<unsigned char>(i);
        // One byte from a zero CRC is exactly the table entry.
        ASSERT_EQ(calc.tableEntry(byte), bitwiseCrc(&byte, 1)) << i;
    }
    EXPECT_EQ(calc.tableEntry(1), 0x01B0000000000000ull); // the polynomial shifted 7 more times
}

// Every length around the 16- and 64-byte block sizes, at every alignment, through each
// kernel and through the class.
TEST(Crc64, EveryKernelAgreesWithTheBitwiseReference) {
    using namespace plumvale::numerics;
    std::mt19937 rng(2024);
    const TUCRC64Calculator calc;
    const std::string data = randomBytes(4096 + 16, rng);
    for (std::size_t offset = 0; offset < 16; offset += 5) {
        for (std::size_t n = 0; n < 600; n += (n < 200 ? 1 : 37)) {
            const auto* p = reinterpret_cast<const unsigned char*>(data.data()) + offset;
            const std::uint64_t seed = rng() % 2 ? 0 : (std::uint64_t(rng()) << 32 | rng());
            const std::uint64_t expected = bitwiseCrc(p, n, seed);
            ASSERT_EQ(crc64Slicing(seed, p, n), expected) << n;
            if (crc64HasClmul()) {
                ASSERT_EQ(crc64Clmul(seed, p, n), expected) << n;
            }
            ASSERT_EQ(calc.update(seed, p, n), expected) << n;
        }
    }
    const std::string big = randomBytes(1 << 20, rng);
    const auto* p = reinterpret_cast<const unsigned char*>(big.data());
    const std::uint64_t whole = bitwiseCrc(p, big.size());
    const auto pair = calc.compute(big);
    EXPECT_EQ((std::uint64_t(pair.first) << 32) | pair.second, whole);
}

TEST(Crc64, PiecewiseUpdatesEqualOneCall) {
    std::mt19937 rng(8);
    const TUCRC64Calculator calc;
    const std::string data = randomBytes(10000, rng);
    const std::uint64_t whole = calc.update(0, data.data(), data.size());
    std::uint64_t crc = 0;
    for (std::size_t at = 0; at < data.size();) {
        const std::size_t piece = std::min<std::size_t>(rng() % 300, data.size() - at);
        crc = calc.update(crc, data.data() + at, piece);
        at += piece;
    }
    EXPECT_EQ(crc, whole);
    EXPECT_EQ(calc.update(7, nullptr, 10), 7u);
}
