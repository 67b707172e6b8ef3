// Bulk kernels of the reflected CRC-64: slicing-by-8 tables and carry-less multiplication.
#pragma once

#include <cstddef>
#include <cstdint>

namespace plumvale::numerics {

/// Table entry i of the reflected polynomial 0xD800000000000000 (8 shift steps).
std::uint64_t crc64TableEntry(unsigned i) noexcept;
/// Eight bytes per step through eight derived tables.
std::uint64_t crc64Slicing(std::uint64_t crc, const unsigned char* p, std::size_t n) noexcept;
/// True when the CPU can run crc64Clmul.
bool crc64HasClmul() noexcept;
/// Folding with carry-less multiplication; only call when crc64HasClmul().
std::uint64_t crc64Clmul(std::uint64_t crc, const unsigned char* p, std::size_t n) noexcept;
/// The fastest kernel the CPU offers.
std::uint64_t crc64Fast(std::uint64_t crc, const unsigned char* p, std::size_t n) noexcept;

} // namespace plumvale::numerics
