// TUCRC64Calculator: the 64-bit CRC used as a content fingerprint.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

/// CRC-64 over the ISO 3309 polynomial x^64 + x^4 + x^3 + x + 1 in its reflected form
/// (constant 0xD800000000000000): initial value 0, reflected input and output, no final
/// XOR. This is NOT the common "CRC-64/GO-ISO" variant, which starts from and finishes
/// with all ones. Check value: "123456789" gives 0x46A5A9388A5BEFFE.
class PLUMVALE_EXPORT TUCRC64Calculator {
public:
    /// The reflected polynomial.
    static constexpr std::uint64_t polynomial = 0xD800000000000000ull;

    /// Builds the 256-entry table.
    TUCRC64Calculator();

    /// CRC of the bytes: first the high 32 bits, second the low 32 bits. Empty gives (0, 0).
    std::pair<std::uint32_t, std::uint32_t> compute(const std::string& bytes) const;
    /// Continues `crc` (0 to start) over `length` more bytes; feeding a text in pieces gives
    /// the same value as feeding it whole.
    std::uint64_t update(std::uint64_t crc, const void* data, std::size_t length) const;
    /// Table entry i as one 64-bit value.
    std::uint64_t tableEntry(unsigned char i) const {
        return (std::uint64_t(m_high[i]) << 32) | m_low[i];
    }

private:
    std::uint32_t m_high[256];
    std::uint32_t m_low[256];
};
