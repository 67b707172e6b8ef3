// oswSystemErrorText: the system's message text for an error code.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <string>

/// The system's message text for the error code `code` (an `errno` value on Linux), in the
/// locale's 8-bit encoding, without a trailing newline, as the library's own failure lines
/// print it. Never empty: a code the system does not know gives "Unknown error N". Safe to
/// call from several threads at once.
PLUMVALE_EXPORT std::string oswSystemErrorText(int code);

/// The calling thread's last system error code (`errno` on Linux); 0 when there is none.
PLUMVALE_EXPORT int oswLastSystemError();
