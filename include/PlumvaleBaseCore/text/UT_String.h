// UT_String: the library's growable string of 16-bit UTF-16 code units.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <type_traits>

class QString;

/// Random-access iterator over the units of a UT_String (a checked-free pointer wrapper, so
/// that a literal 0 never reads as an iterator in overloads such as `erase(0)`).
template <class T>
class UT_StringIterator {
public:
    /// @{
    /// The standard iterator types.
    using iterator_category = std::random_access_iterator_tag;
    using value_type = std::remove_const_t<T>;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;
    /// @}

    /// A singular iterator (null pointer): comparable, not dereferenceable.
    UT_StringIterator() noexcept = default;
    /// An iterator at `p`.
    explicit UT_StringIterator(T* p) noexcept : m_p(p) {}
    /// The const iterator of a mutable one.
    template <class U, class = std::enable_if_t<std::is_convertible<U*, T*>::value>>
    UT_StringIterator(const UT_StringIterator<U>& other) noexcept : m_p(other.ptr()) {}

    /// The unit pointer it wraps.
    T* ptr() const noexcept { return m_p; }
    /// @{
    /// Pointer arithmetic and comparison, unchecked: moving outside [begin(), end()] or
    /// comparing iterators of different strings is undefined, as for a raw pointer.
    T& operator*() const noexcept { return *m_p; }
    T* operator->() const noexcept { return m_p; }
    T& operator[](difference_type n) const noexcept { return m_p[n]; }
    UT_StringIterator& operator++() noexcept {
        ++m_p;
        return *this;
    }
    UT_StringIterator operator++(int) noexcept { return UT_StringIterator(m_p++); }
    UT_StringIterator& operator--() noexcept {
        --m_p;
        return *this;
    }
    UT_StringIterator operator--(int) noexcept { return UT_StringIterator(m_p--); }
    UT_StringIterator& operator+=(difference_type n) noexcept {
        m_p += n;
        return *this;
    }
    UT_StringIterator& operator-=(difference_type n) noexcept {
        m_p -= n;
        return *this;
    }
    friend UT_StringIterator operator+(UT_StringIterator it, difference_type n) noexcept {
        return UT_StringIterator(it.m_p + n);
    }
    friend UT_StringIterator operator+(difference_type n, UT_StringIterator it) noexcept {
        return UT_StringIterator(it.m_p + n);
    }
    friend UT_StringIterator operator-(UT_StringIterator it, difference_type n) noexcept {
        return UT_StringIterator(it.m_p - n);
    }
    template <class U>
    difference_type operator-(const UT_StringIterator<U>& o) const noexcept {
        return m_p - o.ptr();
    }
    template <class U>
    bool operator==(const UT_StringIterator<U>& o) const noexcept {
        return m_p == o.ptr();
    }
    template <class U>
    bool operator!=(const UT_StringIterator<U>& o) const noexcept {
        return m_p != o.ptr();
    }
    template <class U>
    bool operator<(const UT_StringIterator<U>& o) const noexcept {
        return m_p < o.ptr();
    }
    template <class U>
    bool operator>(const UT_StringIterator<U>& o) const noexcept {
        return m_p > o.ptr();
    }
    template <class U>
    bool operator<=(const UT_StringIterator<U>& o) const noexcept {
        return m_p <= o.ptr();
    }
    template <class U>
    bool operator>=(const UT_StringIterator<U>& o) const noexcept {
        return m_p >= o.ptr();
    }
    /// @}

private:
    T* m_p = nullptr;
};

/// A sequence of unsigned 16-bit UTF-16 code units, always followed by a zero unit.
///
/// Conventions a caller must know:
/// - Indices and counts are in code units. `size_type` is an unsigned 32-bit integer and
///   `npos` is 0xFFFFFFFF; `max_size()` is 0xFFFFFFFE.
/// - Units are kept as given: no normalisation, unpaired surrogates allowed.
/// - 8-bit `const char*` input is UTF-8, decoded leniently (see ConvertUTF.h); a sequence
///   cut off at the end of the input is dropped.
/// - A null unit or char pointer is read as an empty text (never dereferenced).
/// - A position past `size()` throws `std::out_of_range("invalid string position")`
///   (`substr` throws "UT_String::substr pos out of range"); a result longer than
///   `max_size()` throws `std::length_error("string too long")`.
/// - Copies are deep: no sharing between strings.
class PLUMVALE_EXPORT UT_String {
public:
    /// @{
    /// The standard container types; units are `unsigned short`, sizes 32-bit unsigned.
    using value_type = unsigned short;
    using size_type = std::uint32_t;
    using difference_type = std::ptrdiff_t;
    using reference = value_type&;
    using const_reference = const value_type&;
    using pointer = value_type*;
    using const_pointer = const value_type*;
    using iterator = UT_StringIterator<value_type>;
    using const_iterator = UT_StringIterator<const value_type>;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;
    /// @}

    /// The not-found position of the searches, and "to the end" as a count.
    static constexpr size_type npos = 0xFFFFFFFFu;

    // --- construction -------------------------------------------------------------------
    /// The empty string; never allocates (up to 7 units are held inside the object).
    UT_String() noexcept { m_local[0] = 0; }
    /// @{
    /// The zero-terminated units of `s` (null gives an empty string), the first `count`
    /// units of `s` (zeros included), or `count` copies of `unit`. A count above
    /// max_size() throws `std::length_error`.
    UT_String(const value_type* s);
    UT_String(const value_type* s, size_type count);
    UT_String(size_type count, value_type unit);
    /// @}
    /// Units [pos, pos + count) of `other`, cut at its end; throws `std::out_of_range` when
    /// `pos > other.size()`.
    UT_String(const UT_String& other, size_type pos, size_type count = npos);
    /// The units of [first, last), each element converted to a 16-bit unit.
    template <class InputIt, class = std::enable_if_t<!std::is_integral<InputIt>::value>>
    UT_String(InputIt first, InputIt last) : UT_String() {
        append(first, last);
    }
    /// Copies the units of `s`.
    UT_String(const QString& s);
    /// Decodes zero-terminated UTF-8 (null gives an empty string).
    UT_String(const char* utf8);
    /// @{
    /// Copies UTF-16 units as they are (null gives an empty string).
    UT_String(const char16_t* s);
    UT_String(const std::u16string& s);
    /// @}
    /// @{
    /// Deep copy; a move leaves `other` empty.
    UT_String(const UT_String& other);
    UT_String(UT_String&& other) noexcept;
    /// @}
    /// Frees the units.
    ~UT_String();

    // --- assignment ---------------------------------------------------------------------
    /// @{
    /// Replaces the contents with the units given, as the matching constructor takes them;
    /// a move leaves `other` empty.
    UT_String& operator=(const UT_String& other);
    UT_String& operator=(UT_String&& other) noexcept;
    UT_String& operator=(const std::u16string& s) { return assign(s); }
    UT_String& operator=(const value_type* s) { return assign(s); }
    UT_String& operator=(value_type unit) { return assign(1, unit); }
    /// @}
    /// Decodes zero-terminated UTF-8, as the constructor does.
    UT_String& operator=(const char* utf8);
    /// Copies the units of `s`.
    UT_String& operator=(const QString& s);

    /// @{
    /// Replaces the contents, taking the arguments as the matching constructor does; the
    /// (other, pos, count) form throws `std::out_of_range` when `pos > other.size()`.
    UT_String& assign(const UT_String& other) { return *this = other; }
    UT_String& assign(const UT_String& other, size_type pos, size_type count = npos);
    UT_String& assign(const value_type* s);
    UT_String& assign(const value_type* s, size_type count);
    UT_String& assign(size_type count, value_type unit);
    UT_String& assign(const std::u16string& s);
    UT_String& assign(const QString& s) { return *this = s; }
    UT_String& assign(const char* utf8) { return *this = utf8; }
    template <class InputIt, class = std::enable_if_t<!std::is_integral<InputIt>::value>>
    UT_String& assign(InputIt first, InputIt last) {
        UT_String tmp(first, last);
        swap(tmp);
        return *this;
    }
    /// @}

    // --- append / insert ----------------------------------------------------------------
    /// @{
    /// Adds units at the end, taking the arguments as the matching constructor does. A
    /// source position past its string throws `std::out_of_range`; a result longer than
    /// max_size() throws `std::length_error` and leaves the string unchanged. The source may
    /// lie inside this string.
    UT_String& append(const UT_String& s) { return append(s.data(), s.size()); }
    UT_String& append(const UT_String& s, size_type pos, size_type count = npos);
    UT_String& append(const value_type* s, size_type count);
    UT_String& append(const value_type* s);
    UT_String& append(size_type count, value_type unit);
    template <class InputIt, class = std::enable_if_t<!std::is_integral<InputIt>::value>>
    UT_String& append(InputIt first, InputIt last) {
        if constexpr (std::is_convertible<InputIt, const value_type*>::value) {
            return append(static_cast<const value_type*>(first),
                          checkedDistance(static_cast<const value_type*>(first),
                                          static_cast<const value_type*>(last)));
        } else if constexpr (std::is_convertible<InputIt, const_iterator>::value) {
            const const_iterator f = first, l = last;
            return append(f.ptr(), checkedDistance(f.ptr(), l.ptr()));
        } else {
            for (; first != last; ++first)
                push_back(static_cast<value_type>(*first));
            return *this;
        }
    }
    UT_String& operator+=(const UT_String& s) { return append(s); }
    UT_String& operator+=(const value_type* s) { return append(s); }
    UT_String& operator+=(value_type unit) {
        push_back(unit);
        return *this;
    }
    void push_back(value_type unit);
    /// @}
    /// Removes the last unit; on an empty string it does nothing.
    void pop_back();

    /// @{
    /// Inserts units before position `pos` (or iterator `p`), taking them as append() does.
    /// `pos > size()` throws `std::out_of_range`; the iterator forms return an iterator to
    /// the first inserted unit.
    UT_String& insert(size_type pos, const UT_String& s) { return insert(pos, s.data(), s.size()); }
    UT_String& insert(size_type pos, const UT_String& s, size_type spos, size_type count = npos);
    UT_String& insert(size_type pos, const value_type* s, size_type count);
    UT_String& insert(size_type pos, const value_type* s);
    UT_String& insert(size_type pos, size_type count, value_type unit);
    iterator insert(const_iterator p, value_type unit);
    iterator insert(const_iterator p, size_type count, value_type unit);
    template <class InputIt, class = std::enable_if_t<!std::is_integral<InputIt>::value>>
    iterator insert(const_iterator p, InputIt first, InputIt last) {
        const size_type pos = offsetOf(p);
        UT_String tmp(first, last);
        insert(pos, tmp.data(), tmp.size());
        return begin() + pos;
    }
    /// @}

    // --- erase / replace ----------------------------------------------------------------
    /// @{
    /// Removes units [pos, pos + count) cut at the end (`pos > size()` throws
    /// `std::out_of_range`), the unit at `p`, or [first, last); the iterator forms return an
    /// iterator to the unit that followed the removed ones.
    UT_String& erase(size_type pos = 0, size_type count = npos);
    iterator erase(const_iterator p);
    iterator erase(const_iterator first, const_iterator last);
    /// @}
    /// @{
    /// Replaces units [pos, pos + count) (cut at the end) or [first, last) with the units
    /// given, taken as append() takes them. `pos > size()` throws `std::out_of_range`.
    UT_String& replace(size_type pos, size_type count, const UT_String& s) {
        return replace(pos, count, s.data(), s.size());
    }
    UT_String& replace(size_type pos, size_type count, const UT_String& s, size_type spos,
                       size_type scount = npos);
    UT_String& replace(size_type pos, size_type count, const value_type* s, size_type scount);
    UT_String& replace(size_type pos, size_type count, const value_type* s);
    UT_String& replace(size_type pos, size_type count, size_type n, value_type unit);
    UT_String& replace(const_iterator first, const_iterator last, const UT_String& s);
    UT_String& replace(const_iterator first, const_iterator last, const value_type* s,
                       size_type scount);
    UT_String& replace(const_iterator first, const_iterator last, const value_type* s);
    UT_String& replace(const_iterator first, const_iterator last, size_type n, value_type unit);
    /// @}
    /// Empties the string; the capacity is kept.
    void clear() noexcept {
        m_size = 0;
        m_data[0] = 0;
    }

    // --- capacity -----------------------------------------------------------------------
    /// @{
    /// The number of units, without the terminating zero.
    size_type size() const noexcept { return m_size; }
    size_type length() const noexcept { return m_size; }
    /// @}
    /// Units the string holds before it must allocate again (7 without an allocation).
    size_type capacity() const noexcept { return m_capacity; }
    /// The longest string: 0xFFFFFFFE units (npos is never a valid size).
    static constexpr size_type max_size() noexcept { return npos - 1; }
    /// Whether size() is 0.
    bool empty() const noexcept { return m_size == 0; }
    /// Makes capacity() at least `n`; never shrinks. `n > max_size()` throws
    /// `std::length_error`.
    void reserve(size_type n = 0);
    /// Gives back unused capacity (non-binding; a short string returns to the inner buffer).
    void shrink_to_fit();
    /// @{
    /// Cuts to `n` units, or pads with `unit` (zero by default) up to `n`.
    void resize(size_type n) { resize(n, 0); }
    void resize(size_type n, value_type unit);
    /// @}
    /// Exchanges the contents in constant time.
    void swap(UT_String& other) noexcept;

    // --- access -------------------------------------------------------------------------
    /// @{
    /// Unchecked; `s[size()]` is the terminating zero.
    value_type& operator[](size_type i) noexcept { return m_data[i]; }
    const value_type& operator[](size_type i) const noexcept { return m_data[i]; }
    /// @}
    /// @{
    /// Checked access: `i >= size()` throws `std::out_of_range("invalid string position")`.
    value_type& at(size_type i);
    const value_type& at(size_type i) const;
    /// @}
    /// @{
    /// The first or last unit; unchecked, so undefined on an empty string.
    value_type& front() noexcept { return m_data[0]; }
    const value_type& front() const noexcept { return m_data[0]; }
    value_type& back() noexcept { return m_data[m_size - 1]; }
    const value_type& back() const noexcept { return m_data[m_size - 1]; }
    /// @}
    /// @{
    /// The units, always followed by a zero unit; valid until the string next changes.
    const value_type* c_str() const noexcept { return m_data; }
    const value_type* data() const noexcept { return m_data; }
    value_type* data() noexcept { return m_data; }
    /// @}
    /// Copies up to `count` units from `pos` into `dest` (no terminator); returns the count.
    /// `pos > size()` throws `std::out_of_range`.
    size_type copy(value_type* dest, size_type count, size_type pos = 0) const;

    /// @{
    /// Iterators over the units, invalidated by any change that reallocates.
    iterator begin() noexcept { return iterator(m_data); }
    iterator end() noexcept { return iterator(m_data + m_size); }
    const_iterator begin() const noexcept { return const_iterator(m_data); }
    const_iterator end() const noexcept { return const_iterator(m_data + m_size); }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }
    reverse_iterator rbegin() noexcept { return reverse_iterator(end()); }
    reverse_iterator rend() noexcept { return reverse_iterator(begin()); }
    const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }
    /// @}

    // --- search (results are positions, or npos) ----------------------------------------
    /// @{
    /// The standard string searches over units, with the needle given as a UT_String, a
    /// zero-terminated array (null reads as empty), an array with a count or one unit.
    /// Forward searches find the first match at or after `pos`, backward ones the last match
    /// starting at or before `pos`. Each returns the position found or npos and never
    /// throws; an empty needle is found at `pos` (forward, when `pos <= size()`).
    size_type find(const UT_String& s, size_type pos = 0) const noexcept {
        return find(s.data(), pos, s.size());
    }
    size_type find(const value_type* s, size_type pos, size_type count) const noexcept;
    size_type find(const value_type* s, size_type pos = 0) const noexcept;
    size_type find(value_type unit, size_type pos = 0) const noexcept;
    size_type rfind(const UT_String& s, size_type pos = npos) const noexcept {
        return rfind(s.data(), pos, s.size());
    }
    size_type rfind(const value_type* s, size_type pos, size_type count) const noexcept;
    size_type rfind(const value_type* s, size_type pos = npos) const noexcept;
    size_type rfind(value_type unit, size_type pos = npos) const noexcept;

    size_type find_first_of(const UT_String& s, size_type pos = 0) const noexcept {
        return find_first_of(s.data(), pos, s.size());
    }
    size_type find_first_of(const value_type* s, size_type pos, size_type count) const noexcept;
    size_type find_first_of(const value_type* s, size_type pos = 0) const noexcept;
    size_type find_first_of(value_type unit, size_type pos = 0) const noexcept {
        return find(unit, pos);
    }
    size_type find_last_of(const UT_String& s, size_type pos = npos) const noexcept {
        return find_last_of(s.data(), pos, s.size());
    }
    size_type find_last_of(const value_type* s, size_type pos, size_type count) const noexcept;
    size_type find_last_of(const value_type* s, size_type pos = npos) const noexcept;
    size_type find_last_of(value_type unit, size_type pos = npos) const noexcept {
        return rfind(unit, pos);
    }
    size_type find_first_not_of(const UT_String& s, size_type pos = 0) const noexcept {
        return find_first_not_of(s.data(), pos, s.size());
    }
    size_type find_first_not_of(const value_type* s, size_type pos, size_type count) const noexcept;
    size_type find_first_not_of(const value_type* s, size_type pos = 0) const noexcept;
    size_type find_first_not_of(value_type unit, size_type pos = 0) const noexcept {
        return find_first_not_of(&unit, pos, 1);
    }
    size_type find_last_not_of(const UT_String& s, size_type pos = npos) const noexcept {
        return find_last_not_of(s.data(), pos, s.size());
    }
    size_type find_last_not_of(const value_type* s, size_type pos, size_type count) const noexcept;
    size_type find_last_not_of(const value_type* s, size_type pos = npos) const noexcept;
    size_type find_last_not_of(value_type unit, size_type pos = npos) const noexcept {
        return find_last_not_of(&unit, pos, 1);
    }
    /// @}

    // --- comparison ---------------------------------------------------------------------
    /// @{
    /// Unit-by-unit ordinal comparison: <0, 0 or >0; a prefix sorts first. A null array
    /// compares as an empty text.
    int compare(const UT_String& s) const noexcept;
    int compare(const value_type* s) const noexcept;
    /// @}
    /// Ordinal comparison after the C library's `towlower` on each unit (surrogates kept).
    int compare_nocase(const UT_String& s) const;

    /// Units [pos, pos + count) cut to the end; `pos == size()` gives an empty string.
    UT_String substr(size_type pos = 0, size_type count = npos) const;

    // --- trimming (each returns *this) --------------------------------------------------
    /// @{
    /// Removes leading (TrimLeft) or trailing (TrimRight) units: space, tab and line feed
    /// without an argument (carriage return is kept, deliberately), else the given unit or
    /// any unit of the given set (a null or empty set removes nothing).
    UT_String& TrimLeft();
    UT_String& TrimRight();
    UT_String& TrimLeft(value_type unit);
    UT_String& TrimRight(value_type unit);
    UT_String& TrimLeft(const value_type* set);
    UT_String& TrimRight(const value_type* set);
    UT_String& TrimLeft(const UT_String& set);
    UT_String& TrimRight(const UT_String& set);
    /// @}

    // --- case -----------------------------------------------------------------------------
    /// @{
    /// A copy with each unit mapped by the C library's `towupper`/`towlower` in the current
    /// locale; surrogate halves are left alone, so letters outside the BMP keep their case.
    UT_String upper() const;
    UT_String lower() const;
    /// @}

    // --- conversion out -----------------------------------------------------------------
    /// UTF-8 encoding of the units; lone surrogates become 3-byte sequences.
    std::string utf8() const;
    /// @{
    /// The same units as a QString or a std::u16string.
    QString ToQString() const;
    std::u16string toU16String() const;
    /// @}

private:
    static constexpr size_type kLocalCapacity = 7;

    bool isLocal() const noexcept { return m_data == m_local; }
    size_type offsetOf(const_iterator p) const;
    static size_type checkedDistance(const value_type* first, const value_type* last);
    /// Makes room for `newSize` units and returns the buffer; keeps units [0, keep).
    value_type* growTo(size_type newSize, size_type keep);
    /// Resizes the gap at `pos` from `removed` to `added` units; returns its start.
    value_type* openGap(size_type pos, size_type removed, size_type added);
    void setSize(size_type n) noexcept {
        m_size = n;
        m_data[n] = 0;
    }
    UT_String& trimLeftSet(const value_type* set, size_type count);
    UT_String& trimRightSet(const value_type* set, size_type count);

    friend struct UT_StringAccess;

    value_type* m_data = m_local;
    size_type m_size = 0;
    size_type m_capacity = kLocalCapacity;
    value_type m_local[kLocalCapacity + 1];
};

/// @{
/// Concatenation into a new string; a result longer than max_size() throws
/// `std::length_error`. A null array reads as an empty text.
PLUMVALE_EXPORT UT_String operator+(const UT_String& a, const UT_String& b);
PLUMVALE_EXPORT UT_String operator+(const UT_String& a, const UT_String::value_type* b);
PLUMVALE_EXPORT UT_String operator+(const UT_String::value_type* a, const UT_String& b);
PLUMVALE_EXPORT UT_String operator+(const UT_String& a, UT_String::value_type b);
PLUMVALE_EXPORT UT_String operator+(UT_String::value_type a, const UT_String& b);
inline UT_String operator+(UT_String&& a, const UT_String& b) {
    return std::move(a.append(b));
}
/// @}

/// @{
/// Ordinal comparison of the units, as compare() does.
inline bool operator==(const UT_String& a, const UT_String& b) noexcept {
    return a.size() == b.size() && a.compare(b) == 0;
}
inline bool operator!=(const UT_String& a, const UT_String& b) noexcept {
    return !(a == b);
}
inline bool operator<(const UT_String& a, const UT_String& b) noexcept {
    return a.compare(b) < 0;
}
inline bool operator>(const UT_String& a, const UT_String& b) noexcept {
    return a.compare(b) > 0;
}
inline bool operator<=(const UT_String& a, const UT_String& b) noexcept {
    return a.compare(b) <= 0;
}
inline bool operator>=(const UT_String& a, const UT_String& b) noexcept {
    return a.compare(b) >= 0;
}
inline bool operator==(const UT_String& a, const UT_String::value_type* b) noexcept {
    return a.compare(b) == 0;
}
inline bool operator!=(const UT_String& a, const UT_String::value_type* b) noexcept {
    return a.compare(b) != 0;
}
/// @}
/// Exchanges the contents in constant time.
inline void swap(UT_String& a, UT_String& b) noexcept {
    a.swap(b);
}

/// Hash of the units (FNV-1a over their little-endian bytes).
PLUMVALE_EXPORT std::size_t UT_StringHash(const UT_String& s) noexcept;

/// Lets UT_String key the standard unordered containers.
template <>
struct std::hash<UT_String> {
    std::size_t operator()(const UT_String& s) const noexcept { return UT_StringHash(s); }
};
