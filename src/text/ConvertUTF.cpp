// The five buffer-to-buffer transcoding routines.
#include <PlumvaleBaseCore/text/ConvertUTF.h>

#include "Utf8Rules.h"

#include <cstdint>

namespace {

template <class S, class T>
bool badArguments(const S* const* source, const S* sourceEnd, T* const* target,
                  const T* targetEnd) {
    return !source || !target || !*source || !sourceEnd || !*target || !targetEnd;
}

/// Reads one code point from UTF-16 input; returns the units it took (1 or 2).
inline int readUtf16(const unsigned short* p, const unsigned short* end, std::uint32_t& ch) {
    ch = *p;
    if (isHighSurrogate(ch) && p + 1 < end && isLowSurrogate(p[1])) {
        ch = combineSurrogates(ch, p[1]);
        return 2;
    }
    return 1;
}

template <class Src>
ConversionResult toUtf8(const Src** sourceStart, const Src* sourceEnd, unsigned char** targetStart,
                        unsigned char* targetEnd,
                        int (*read)(const Src*, const Src*, std::uint32_t&)) {
    if (badArguments(sourceStart, sourceEnd, targetStart, targetEnd)) return conversionOK;
    const Src* s = *sourceStart;
    unsigned char* t = *targetStart;
    ConversionResult result = conversionOK;
    while (s < sourceEnd) {
        std::uint32_t ch;
        const int used = read(s, sourceEnd, ch);
        const int len = encodedLength(ch);
        if (targetEnd - t < len) {
            result = targetExhausted;
            break;
        }
        encodeSequence(ch, len, t);
        t += len;
        s += used;
    }
    *sourceStart = s;
    *targetStart = t;
    return result;
}

/// The decoding loop of both UTF-8 readers. `put(ch, t, targetEnd)` writes one code point
/// and returns false when it does not fit; the target has room for one unit when it is
/// called. A sequence that did not fit stays consumed: callers resuming there skip it.
template <class T, class Put>
ConversionResult fromUtf8(const unsigned char** sourceStart, const unsigned char* sourceEnd,
                          T** targetStart, T* targetEnd, Put put) {
    if (badArguments(sourceStart, sourceEnd, targetStart, targetEnd)) return conversionOK;
    const unsigned char* s = *sourceStart;
    T* t = *targetStart;
    ConversionResult result = conversionOK;
    while (s < sourceEnd) {
        const int extra = trailingBytes(*s);
        if (sourceEnd - s <= extra) {
            result = sourceExhausted;
            break;
        }
        if (t >= targetEnd) {
            result = targetExhausted;
            break;
        }
        const std::uint32_t ch = decodeSequence(s, extra);
        s += extra + 1;
        if (!put(ch, t, targetEnd)) {
            result = targetExhausted;
            break;
        }
    }
    *sourceStart = s;
    *targetStart = t;
    return result;
}

int readUcs4(const unsigned int* p, const unsigned int*, std::uint32_t& ch) {
    ch = *p;
    return 1;
}

int readUtf16Fn(const unsigned short* p, const unsigned short* end, std::uint32_t& ch) {
    return readUtf16(p, end, ch);
}

} // namespace

ConversionResult ConvertUTF16toUTF8(const unsigned short** sourceStart,
                                    const unsigned short* sourceEnd, unsigned char** targetStart,
                                    unsigned char* targetEnd) {
    return toUtf8(sourceStart, sourceEnd, targetStart, targetEnd, readUtf16Fn);
}

ConversionResult ConvertUCS4toUTF8(const unsigned int** sourceStart, const unsigned int* sourceEnd,
                                   unsigned char** targetStart, unsigned char* targetEnd) {
    return toUtf8(sourceStart, sourceEnd, targetStart, targetEnd, readUcs4);
}

ConversionResult ConvertUTF16toUCS4(const unsigned short** sourceStart,
                                    const unsigned short* sourceEnd, unsigned int** targetStart,
                                    unsigned int* targetEnd) {
    if (badArguments(sourceStart, sourceEnd, targetStart, targetEnd)) return conversionOK;
    const unsigned short* s = *sourceStart;
    unsigned int* t = *targetStart;
    ConversionResult result = conversionOK;
    while (s < sourceEnd) {
        if (t >= targetEnd) {
            result = targetExhausted;
            break;
        }
        std::uint32_t ch;
        s += readUtf16(s, sourceEnd, ch);
        *t++ = ch;
    }
    *sourceStart = s;
    *targetStart = t;
    return result;
}

ConversionResult ConvertUTF8toUTF16(const unsigned char** sourceStart,
                                    const unsigned char* sourceEnd, unsigned short** targetStart,
                                    unsigned short* targetEnd) {
    return fromUtf8(sourceStart, sourceEnd, targetStart, targetEnd,
                    [](std::uint32_t ch, unsigned short*& t, const unsigned short* end) {
                        if (end - t < utf16Length(ch)) return false;
                        t = emitUtf16(ch, t);
                        return true;
                    });
}

ConversionResult ConvertUTF8toUCS4(const unsigned char** sourceStart,
                                   const unsigned char* sourceEnd, unsigned int** targetStart,
                                   unsigned int* targetEnd) {
    return fromUtf8(sourceStart, sourceEnd, targetStart, targetEnd,
                    [](std::uint32_t ch, unsigned int*& t, const unsigned int*) {
                        *t++ = ch > 0x10FFFF ? 0xFFFDu : ch;
                        return true;
                    });
}
