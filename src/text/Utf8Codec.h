// Whole-string UTF-8 <-> UTF-16 conversions used by UT_String.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace plumvale::text {

/// Decodes n bytes of UTF-8 into `out`, which must have room for n units; returns the
/// units written. Same results as ConvertUTF8toUTF16 with an unbounded target; a sequence
/// cut off at the end is dropped.
std::size_t utf8ToUtf16(const unsigned char* s, std::size_t n, unsigned short* out) noexcept;

/// UTF-8 form of n units, as ConvertUTF16toUTF8 with an unbounded target.
std::string utf16ToUtf8(const unsigned short* s, std::size_t n);

} // namespace plumvale::text
