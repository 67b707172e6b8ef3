// printf-style formatting into UT_String and frame-count timecodes.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <cstdarg>

// Format specifications: %[n$][flags][width][.precision][size]conversion
// - flags " #+-0"; width and precision as digits or "*" (the next argument, or "*n$").
// - size "h" (short), "l" (long, 64-bit here), "q" or "ll" (64-bit).
// - d i o u x X c e E f g G p: formatted by the C library's snprintf for that one
//   specification; D O U are the old long forms of d o u. "%n" writes nothing and consumes
//   its pointer argument.
// - s: zero-terminated 8-bit text, each byte widened with sign extension (0x80-0xFF become
//   0xFF80-0xFFFF); P: the same with a leading count byte; S and @: a zero-terminated
//   16-bit string; C: one 16-bit unit ("%ls" and "%lc" read as S and C). Width and precision
//   count units; a null string prints "(null)". With a precision, a string is read no
//   further than that many elements, so it need not be zero-terminated.
// - "%%" is one "%". Any other conversion character ends the specification, which is then
//   copied as text and consumes no argument.
// - Limits, since format texts come from catalogues: a specification naming an argument
//   past the 64th (as n$, *n$, or by counting), or with a width or precision above 4096
//   (written, or passed for "*"), is malformed and copied as text. Like an unknown
//   conversion it consumes no argument, except that a "*" found too wide at formatting
//   time has already taken its arguments.
// - Two specifications may read one argument: as two integer kinds (int, long, a pointer)
//   it is read whole and each takes its own width of it; a specification that reads as an
//   integer what another reads as a double (or the reverse) is copied as text.
// Arguments are read once, by position, before formatting; the caller's va_list is copied.

/// @{
/// Formats a zero-terminated 16-bit format.
PLUMVALE_EXPORT UT_String UT_FormatMessage(const unsigned short* format, ...);
PLUMVALE_EXPORT UT_String UT_FormatMessage(const char16_t* format, ...);
/// @}
/// Widens the 8-bit format byte by byte with sign extension, then formats it: 8-bit
/// formats are meant to be ASCII.
PLUMVALE_EXPORT UT_String UT_FormatMessage(const char* format, ...);
/// The formatter itself; replaces `out`.
PLUMVALE_EXPORT void UT_DoFormatMessage(UT_String& out, const UT_String& format, va_list args);

/// Timecode of a frame count: "hh:mm:ss:ff" when there are hours or `forceHours`, else
/// "mm:ss:ff" when there are minutes, else "ss:ff" (each field at least two digits).
/// A rate of 0 gives an empty string.
PLUMVALE_EXPORT UT_String UT_FormatFrame(int frames, int framesPerSecond, bool forceHours = false);
