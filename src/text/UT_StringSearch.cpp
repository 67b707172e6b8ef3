// Search and ordinal comparison of UT_String.
#include <PlumvaleBaseCore/text/UT_String.h>

#include "UT_StringAccess.h"

#include <algorithm>

namespace {

using unit = UT_String::value_type;
using size_type = UT_String::size_type;

bool inSet(unit u, const unit* set, size_type count) noexcept {
    return std::find(set, set + count, u) != set + count;
}

int compareUnits(const unit* a, size_type na, const unit* b, size_type nb) noexcept {
    const size_type n = std::min(na, nb);
    for (size_type i = 0; i < n; ++i)
        if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
    return na < nb ? -1 : (na > nb ? 1 : 0);
}

} // namespace

using plumvale::text::unitLength;

UT_String::size_type UT_String::find(const value_type* s, size_type pos,
                                     size_type count) const noexcept {
    if (!s) count = 0;
    if (pos > m_size || count > m_size - pos) return npos;
    if (count == 0) return pos;
    const unit* const last = m_data + (m_size - count);
    for (const unit* p = m_data + pos; p <= last; ++p) {
        p = std::find(p, last + 1, s[0]);
        if (p > last) break;
        if (std::equal(s + 1, s + count, p + 1)) return static_cast<size_type>(p - m_data);
    }
    return npos;
}

UT_String::size_type UT_String::find(const value_type* s, size_type pos) const noexcept {
    return find(s, pos, unitLength(s));
}

UT_String::size_type UT_String::find(value_type unit, size_type pos) const noexcept {
    if (pos >= m_size) return npos;
    const auto* p = std::find(m_data + pos, m_data + m_size, unit);
    return p == m_data + m_size ? npos : static_cast<size_type>(p - m_data);
}

UT_String::size_type UT_String::rfind(const value_type* s, size_type pos,
                                      size_type count) const noexcept {
    if (!s) count = 0;
    if (count > m_size) return npos;
    size_type i = std::min(pos, m_size - count);
    for (;; --i) {
        if (std::equal(s, s + count, m_data + i)) return i;
        if (i == 0) return npos;
    }
}

UT_String::size_type UT_String::rfind(const value_type* s, size_type pos) const noexcept {
    return rfind(s, pos, unitLength(s));
}

UT_String::size_type UT_String::rfind(value_type unit, size_type pos) const noexcept {
    if (m_size == 0) return npos;
    for (size_type i = std::min(pos, m_size - 1);; --i) {
        if (m_data[i] == unit) return i;
        if (i == 0) return npos;
    }
}

UT_String::size_type UT_String::find_first_of(const value_type* s, size_type pos,
                                              size_type count) const noexcept {
    if (!s) count = 0;
    for (size_type i = pos; i < m_size; ++i)
        if (inSet(m_data[i], s, count)) return i;
    return npos;
}

UT_String::size_type UT_String::find_first_of(const value_type* s, size_type pos) const noexcept {
    return find_first_of(s, pos, unitLength(s));
}

UT_String::size_type UT_String::find_last_of(const value_type* s, size_type pos,
                                             size_type count) const noexcept {
    if (!s) count = 0;
    if (m_size == 0 || count == 0) return npos;
    for (size_type i = std::min(pos, m_size - 1);; --i) {
        if (inSet(m_data[i], s, count)) return i;
        if (i == 0) return npos;
    }
}

UT_String::size_type UT_String::find_last_of(const value_type* s, size_type pos) const noexcept {
    return find_last_of(s, pos, unitLength(s));
}

UT_String::size_type UT_String::find_first_not_of(const value_type* s, size_type pos,
                                                  size_type count) const noexcept {
    if (!s) count = 0;
    for (size_type i = pos; i < m_size; ++i)
        if (!inSet(m_data[i], s, count)) return i;
    return npos;
}

UT_String::size_type UT_String::find_first_not_of(const value_type* s,
                                                  size_type pos) const noexcept {
    return find_first_not_of(s, pos, unitLength(s));
}

UT_String::size_type UT_String::find_last_not_of(const value_type* s, size_type pos,
                                                 size_type count) const noexcept {
    if (!s) count = 0;
    if (m_size == 0) return npos;
    for (size_type i = std::min(pos, m_size - 1);; --i) {
        if (!inSet(m_data[i], s, count)) return i;
        if (i == 0) return npos;
    }
}

UT_String::size_type UT_String::find_last_not_of(const value_type* s,
                                                 size_type pos) const noexcept {
    return find_last_not_of(s, pos, unitLength(s));
}

int UT_String::compare(const UT_String& s) const noexcept {
    return compareUnits(m_data, m_size, s.m_data, s.m_size);
}

int UT_String::compare(const value_type* s) const noexcept {
    static const unit empty = 0;
    return compareUnits(m_data, m_size, s ? s : &empty, unitLength(s));
}
