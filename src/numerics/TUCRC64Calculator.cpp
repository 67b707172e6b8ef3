// TUCRC64Calculator: table construction and the accelerated computation.
#include <PlumvaleBaseCore/numerics/TUCRC64Calculator.h>

#include "Crc64Kernels.h"

using namespace plumvale::numerics;

namespace {
/// Below this the byte loop over the object's own table beats starting a bulk kernel.
constexpr std::size_t kBulkThreshold = 16;
} // namespace

TUCRC64Calculator::TUCRC64Calculator() {
    for (unsigned i = 0; i < 256; ++i) {
        const std::uint64_t v = crc64TableEntry(i);
        m_high[i] = static_cast<std::uint32_t>(v >> 32);
        m_low[i] = static_cast<std::uint32_t>(v);
    }
}

std::uint64_t TUCRC64Calculator::update(std::uint64_t crc, const void* data,
                                        std::size_t length) const {
    if (!data) return crc;
    const auto* p = static_cast<const unsigned char*>(data);
    if (length >= kBulkThreshold) return crc64Fast(crc, p, length);
    for (; length > 0; --length, ++p)
        crc = tableEntry(static_cast<unsigned char>((crc ^ *p) & 0xFF)) ^ (crc >> 8);
    return crc;
}

std::pair<std::uint32_t, std::uint32_t> TUCRC64Calculator::compute(const std::string& bytes) const {
    const std::uint64_t crc = update(0, bytes.data(), bytes.size());
    return {static_cast<std::uint32_t>(crc >> 32), static_cast<std::uint32_t>(crc)};
}
