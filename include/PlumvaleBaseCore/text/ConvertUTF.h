// Low-level transcoding between UTF-8, UTF-16 and UCS-4 buffers.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

/// Outcome of a transcoding routine. There is no result for illegal input: these routines
/// never reject input.
enum ConversionResult {
    conversionOK = 0,    ///< the whole source was converted
    sourceExhausted = 1, ///< the source ends inside a multi-byte sequence, left unconsumed
    targetExhausted = 2  ///< the target is full; the source pointer tells where to resume
};

// Every routine takes (address of the source pointer, source end, address of the target
// pointer, target end) and advances both pointers past what it converted. Null arguments
// convert nothing and give conversionOK.
//
// Rules shared by all five:
// - UTF-16 input: a high surrogate followed, within the input, by a low surrogate is one
//   code point; any other surrogate unit passes through as its own value.
// - UTF-8 input: the lead byte announces the trailing-byte count (0xC0-0xDF one, 0xE0-0xEF
//   two, 0xF0-0xF7 three, 0xF8-0xFB four, 0xFC-0xFF five, others none); continuation bytes
//   are not checked; the value is the plain 6-bit accumulation (32-bit, wrapping) less the
//   offset of the sequence's length. A sequence running past the source end stops the call
//   with sourceExhausted, the source pointer on its lead byte.
// - UTF-8 output: 1 byte below 0x80, 2 below 0x800, 3 below 0x10000, 4 below 0x200000,
//   5 below 0x4000000 (larger UCS-4 values are written as U+FFFD). A sequence that does not
//   fit is not written at all: targetExhausted, the source pointer before it.
// - UTF-16 output: values below 0x10000 are one unit (surrogate values included), values
//   above 0x10FFFF become U+FFFD, others a surrogate pair. When only one unit of room is
//   left for a pair, the call stops with targetExhausted and the source pointer AFTER the
//   sequence that was read (so that code point is not written); when no room is left at
//   all, the source pointer stays before the sequence.
// - UCS-4 output: values above 0x10FFFF become U+FFFD.

/// @{
/// Each routine converts [*sourceStart, sourceEnd) into [*targetStart, targetEnd) by the rules
/// above, advancing both pointers past what it converted. Null pointers or ends convert
/// nothing and return conversionOK.
PLUMVALE_EXPORT ConversionResult ConvertUTF16toUTF8(const unsigned short** sourceStart,
                                                    const unsigned short* sourceEnd,
                                                    unsigned char** targetStart,
                                                    unsigned char* targetEnd);
PLUMVALE_EXPORT ConversionResult ConvertUTF8toUTF16(const unsigned char** sourceStart,
                                                    const unsigned char* sourceEnd,
                                                    unsigned short** targetStart,
                                                    unsigned short* targetEnd);
PLUMVALE_EXPORT ConversionResult ConvertUTF16toUCS4(const unsigned short** sourceStart,
                                                    const unsigned short* sourceEnd,
                                                    unsigned int** targetStart,
                                                    unsigned int* targetEnd);
PLUMVALE_EXPORT ConversionResult ConvertUTF8toUCS4(const unsigned char** sourceStart,
                                                   const unsigned char* sourceEnd,
                                                   unsigned int** targetStart,
                                                   unsigned int* targetEnd);
PLUMVALE_EXPORT ConversionResult ConvertUCS4toUTF8(const unsigned int** sourceStart,
                                                   const unsigned int* sourceEnd,
                                                   unsigned char** targetStart,
                                                   unsigned char* targetEnd);
/// @}
