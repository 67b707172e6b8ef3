// Per-sequence UTF-8 and UTF-16 rules shared by the transcoders and the whole-string kernels.
//
// Everything has internal linkage: the kernels are also built for AVX2 in their own file,
// and no function compiled there may be merged by the linker into baseline code.
#pragma once

#include <cstdint>

namespace {

/// Trailing-byte count announced by each lead byte (0xC0-0xDF one, ... 0xFC-0xFF five).
inline int trailingBytes(unsigned char lead) noexcept {
    if (lead < 0xC0) return 0;
    if (lead < 0xE0) return 1;
    if (lead < 0xF0) return 2;
    if (lead < 0xF8) return 3;
    if (lead < 0xFC) return 4;
    return 5;
}

/// Value of a sequence of 1 + extra bytes: the plain accumulation (32-bit, wrapping) less
/// the offset of its length. Continuation bytes are deliberately not validated.
inline std::uint32_t decodeSequence(const unsigned char* p, int extra) noexcept {
    static constexpr std::uint32_t offsets[6] = {0x00000000u, 0x00003080u, 0x000E2080u,
                                                 0x03C82080u, 0xFA082080u, 0x82082080u};
    std::uint32_t ch = 0;
    for (int i = 0; i <= extra; ++i)
        ch = (ch << 6) + p[i];
    return ch - offsets[extra];
}

/// Bytes of the UTF-8 form of a value (values from 0x4000000 are written as U+FFFD).
inline int encodedLength(std::uint32_t ch) noexcept {
    if (ch < 0x80) return 1;
    if (ch < 0x800) return 2;
    if (ch < 0x10000) return 3;
    if (ch < 0x200000) return 4;
    if (ch < 0x4000000) return 5;
    return 3;
}

/// Writes the `len`-byte form of `ch` (len from encodedLength).
inline void encodeSequence(std::uint32_t ch, int len, unsigned char* out) noexcept {
    static constexpr unsigned char leadMarks[6] = {0x00, 0x00, 0xC0, 0xE0, 0xF0, 0xF8};
    if (ch >= 0x4000000) ch = 0xFFFD;
    for (int i = len - 1; i > 0; --i) {
        out[i] = static_cast<unsigned char>(0x80 | (ch & 0x3F));
        ch >>= 6;
    }
    out[0] = static_cast<unsigned char>(ch | leadMarks[len]);
}

/// Whether a unit is either half of a surrogate pair (0xD800-0xDFFF).
inline bool isSurrogate(std::uint32_t u) noexcept {
    return u >= 0xD800 && u <= 0xDFFF;
}
inline bool isHighSurrogate(std::uint32_t u) noexcept {
    return u >= 0xD800 && u <= 0xDBFF;
}
inline bool isLowSurrogate(std::uint32_t u) noexcept {
    return u >= 0xDC00 && u <= 0xDFFF;
}
inline std::uint32_t combineSurrogates(std::uint32_t hi, std::uint32_t lo) noexcept {
    return ((hi - 0xD800) << 10) + (lo - 0xDC00) + 0x10000;
}

/// Units of the UTF-16 form that emitUtf16 writes for `ch`: 2 for U+10000-U+10FFFF, else 1.
inline int utf16Length(std::uint32_t ch) noexcept {
    return ch >= 0x10000 && ch <= 0x10FFFF ? 2 : 1;
}

/// Writes one code point as UTF-16: one unit below 0x10000 (surrogate values included),
/// U+FFFD above 0x10FFFF, else a surrogate pair. Returns the position after it.
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
