// Internal: the portable face of the platform layer (error texts, process and thread ids).
//
// Every subsystem reaches the operating system through this header or through the Unix
// helpers of Unix.h (only `_unix` files include those); a Windows backend would provide the
// same functions in `Platform_win.cpp`.
#pragma once

#include <string>

namespace plumvale::platform {

/// The system's message text for an error code (an `errno` value here), in the locale's
/// 8-bit encoding, without a trailing newline. Never empty: a code the system does not know
/// gives the system's "Unknown error N" text.
std::string errorText(int code);

/// The calling thread's last system error code (`errno` here); 0 when there is none.
int lastError();

/// The process id, as the system's tools show it.
long processId();

/// The kernel's id of the calling thread (not `std::thread::id`): the number that `top`,
/// debuggers and the system logs show.
long threadId();

/// The running executable's absolute path, symbolic links resolved; empty when the system
/// cannot tell.
std::string executablePath();

/// Gives the rest of the calling thread's time slice to another ready thread, if any.
void yieldThread();

/// The monotonic clock's finest period in nanoseconds (at least 1).
long long monotonicResolutionNs();

/// A moment of the calendar in UTC, broken down as the system clock gives it.
struct UtcTime {
    int year;        ///< e.g. 2026
    int month;       ///< 1 to 12
    int day;         ///< 1 to 31
    int hour;        ///< 0 to 23
    int minute;      ///< 0 to 59
    int second;      ///< 0 to 60 (a leap second)
    int millisecond; ///< 0 to 999
};

/// The current time of the system's real-time clock, in UTC.
UtcTime utcNow();

} // namespace plumvale::platform
