// Internal access to UT_String's buffer for codecs that write units in place.
#pragma once

#include <PlumvaleBaseCore/text/UT_String.h>

namespace plumvale::text {

/// Length of a zero-terminated unit array; a null pointer is an empty text.
inline UT_String::size_type unitLength(const UT_String::value_type* s) noexcept {
    if (!s) return 0;
    const UT_String::value_type* p = s;
    while (*p)
        ++p;
    return static_cast<UT_String::size_type>(p - s);
}

} // namespace plumvale::text

struct UT_StringAccess {
    /// Empties `s` and returns a buffer with room for `n` units, contents unspecified.
    static UT_String::value_type* prepare(UT_String& s, UT_String::size_type n) {
        s.m_size = 0;
        return s.growTo(n, 0);
    }
    /// Sets the size after `prepare` (n no more than what was prepared).
    static void commit(UT_String& s, UT_String::size_type n) noexcept { s.setSize(n); }
};
