// Trimming and case mapping of UT_String.
#include <PlumvaleBaseCore/text/UT_String.h>

#include "UT_StringAccess.h"
#include "Utf8Rules.h"

#include <algorithm>
#include <cwctype>

namespace {

using unit = UT_String::value_type;
using size_type = UT_String::size_type;

const unit kBlanks[] = {u' ', u'\t', u'\n'};

/// The C library's case mapping of one unit in the current locale (which may differ from
/// ASCII even below 0x80, as Turkish does); surrogate halves are left alone.
template <bool Upper>
unit mapUnit(unit u) noexcept {
    if (isSurrogate(u)) return u;
    const std::wint_t m = Upper ? std::towupper(u) : std::towlower(u);
    return m <= 0xFFFF ? static_cast<unit>(m) : u;
}

template <bool Upper>
UT_String mapCopy(const UT_String& s) {
    UT_String r(s);
    for (unit& u : r)
        u = mapUnit<Upper>(u);
    return r;
}

} // namespace

using plumvale::text::unitLength;

UT_String& UT_String::trimLeftSet(const value_type* set, size_type count) {
    const size_type first = find_first_not_of(set, 0, count);
    erase(0, first == npos ? m_size : first);
    return *this;
}

UT_String& UT_String::trimRightSet(const value_type* set, size_type count) {
    const size_type last = find_last_not_of(set, npos, count);
    setSize(last == npos ? 0 : last + 1);
    return *this;
}

UT_String& UT_String::TrimLeft() {
    return trimLeftSet(kBlanks, 3);
}
UT_String& UT_String::TrimRight() {
    return trimRightSet(kBlanks, 3);
}
UT_String& UT_String::TrimLeft(value_type unit) {
    return trimLeftSet(&unit, 1);
}
UT_String& UT_String::TrimRight(value_type unit) {
    return trimRightSet(&unit, 1);
}

// The set is read in full before anything is erased, so it may alias this string.
UT_String& UT_String::TrimLeft(const value_type* set) {
    return trimLeftSet(set, unitLength(set));
}
UT_String& UT_String::TrimRight(const value_type* set) {
    return trimRightSet(set, unitLength(set));
}
UT_String& UT_String::TrimLeft(const UT_String& set) {
    return trimLeftSet(set.m_data, set.m_size);
}
UT_String& UT_String::TrimRight(const UT_String& set) {
    return trimRightSet(set.m_data, set.m_size);
}

UT_String UT_String::upper() const {
    return mapCopy<true>(*this);
}
UT_String UT_String::lower() const {
    return mapCopy<false>(*this);
}

int UT_String::compare_nocase(const UT_String& s) const {
    const size_type n = std::min(m_size, s.m_size);
    for (size_type i = 0; i < n; ++i) {
        const unit a = mapUnit<false>(m_data[i]);
        const unit b = mapUnit<false>(s.m_data[i]);
        if (a != b) return a < b ? -1 : 1;
    }
    return m_size < s.m_size ? -1 : (m_size > s.m_size ? 1 : 0);
}
