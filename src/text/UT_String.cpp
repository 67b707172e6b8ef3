// Storage, construction and editing of UT_String.
#include <PlumvaleBaseCore/text/UT_String.h>

#include "UT_StringAccess.h"
#include "Utf8Codec.h"

#include <QString>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

namespace {

using unit = UT_String::value_type;
using size_type = UT_String::size_type;

[[noreturn]] void throwPosition() {
    throw std::out_of_range("invalid string position");
}
[[noreturn]] void throwLength() {
    throw std::length_error("string too long");
}

void copyUnits(unit* dst, const unit* src, size_type n) noexcept {
    if (n) std::memcpy(dst, src, n * sizeof(unit));
}

// Units are plain data: malloc and free serve them directly, measurably cheaper than the
// global array operators for the short strings that dominate.
unit* allocateUnits(size_type capacity) {
    void* p = std::malloc((std::size_t(capacity) + 1) * sizeof(unit));
    if (!p) throw std::bad_alloc();
    return static_cast<unit*>(p);
}

// The capacity that holds `newSize` units: doubling keeps appends amortised constant time,
// never less than asked and never past max_size().
size_type grownCapacity(size_type capacity, size_type newSize) noexcept {
    const size_type doubled =
        capacity > UT_String::max_size() / 2 ? UT_String::max_size() : capacity * 2;
    return std::max(newSize, doubled);
}

} // namespace

using plumvale::text::unitLength;

// --- storage ------------------------------------------------------------------------------

UT_String::value_type* UT_String::growTo(size_type newSize, size_type keep) {
    if (newSize <= m_capacity) return m_data;
    if (newSize > max_size()) throwLength();
    const size_type newCapacity = grownCapacity(m_capacity, newSize);
    unit* fresh = allocateUnits(newCapacity);
    copyUnits(fresh, m_data, keep);
    if (!isLocal()) std::free(m_data);
    m_data = fresh;
    m_capacity = newCapacity;
    return m_data;
}

UT_String::value_type* UT_String::openGap(size_type pos, size_type removed, size_type added) {
    const size_type tail = m_size - pos - removed;
    if (added > max_size() - (m_size - removed)) throwLength();
    const size_type newSize = m_size - removed + added;
    if (newSize <= m_capacity) {
        if (removed != added && tail)
            std::memmove(m_data + pos + added, m_data + pos + removed, tail * sizeof(unit));
    } else {
        const size_type newCapacity = grownCapacity(m_capacity, newSize);
        unit* fresh = allocateUnits(newCapacity);
        copyUnits(fresh, m_data, pos);
        copyUnits(fresh + pos + added, m_data + pos + removed, tail);
        if (!isLocal()) std::free(m_data);
        m_data = fresh;
        m_capacity = newCapacity;
    }
    setSize(newSize);
    return m_data + pos;
}

UT_String::size_type UT_String::offsetOf(const_iterator p) const {
    const std::ptrdiff_t d = p.ptr() - m_data;
    if (d < 0 || d > std::ptrdiff_t(m_size)) throwPosition();
    return static_cast<size_type>(d);
}

UT_String::size_type UT_String::checkedDistance(const value_type* first, const value_type* last) {
    if (!first || !last || last < first) return 0;
    const std::ptrdiff_t d = last - first;
    if (d > std::ptrdiff_t(max_size())) throwLength();
    return static_cast<size_type>(d);
}

// --- construction -------------------------------------------------------------------------

UT_String::UT_String(const value_type* s) : UT_String(s, unitLength(s)) {}

UT_String::UT_String(const value_type* s, size_type count) : UT_String() {
    if (!s) return;
    copyUnits(growTo(count, 0), s, count);
    setSize(count);
}

UT_String::UT_String(size_type count, value_type unit) : UT_String() {
    append(count, unit);
}

UT_String::UT_String(const UT_String& other, size_type pos, size_type count) : UT_String() {
    append(other, pos, count);
}

UT_String::UT_String(const QString& s) : UT_String() {
    *this = s;
}

UT_String::UT_String(const char* utf8) : UT_String() {
    *this = utf8;
}

UT_String::UT_String(const char16_t* s) : UT_String() {
    if (!s) return;
    std::size_t n = 0;
    while (s[n])
        ++n;
    if (n > max_size()) throwLength();
    std::memcpy(growTo(size_type(n), 0), s, n * sizeof(unit));
    setSize(size_type(n));
}

UT_String::UT_String(const std::u16string& s) : UT_String() {
    assign(s);
}

UT_String::UT_String(const UT_String& other) : UT_String() {
    copyUnits(growTo(other.m_size, 0), other.m_data, other.m_size);
    setSize(other.m_size);
}

UT_String::UT_String(UT_String&& other) noexcept : UT_String() {
    swap(other);
}

UT_String::~UT_String() {
    if (!isLocal()) std::free(m_data);
}

void UT_String::swap(UT_String& other) noexcept {
    if (this == &other) return;
    if (!isLocal() && !other.isLocal()) {
        std::swap(m_data, other.m_data);
    } else if (isLocal() && other.isLocal()) {
        std::swap(m_local, other.m_local);
    } else {
        UT_String& local = isLocal() ? *this : other;
        UT_String& heap = isLocal() ? other : *this;
        unit* heapData = heap.m_data;
        std::memcpy(heap.m_local, local.m_local, sizeof(m_local));
        heap.m_data = heap.m_local;
        local.m_data = heapData;
    }
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
}

// --- assignment ---------------------------------------------------------------------------

UT_String& UT_String::operator=(const UT_String& other) {
    if (this != &other) assign(other.m_data, other.m_size);
    return *this;
}

UT_String& UT_String::operator=(UT_String&& other) noexcept {
    if (this != &other) {
        UT_String tmp(std::move(other));
        swap(tmp);
    }
    return *this;
}

UT_String& UT_String::operator=(const char* utf8) {
    const std::size_t n = utf8 ? std::strlen(utf8) : 0;
    if (n > max_size()) throwLength();
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
    const auto* mine = reinterpret_cast<const unsigned char*>(m_data);
    if (bytes + n > mine && bytes < mine + (std::size_t(m_capacity) + 1) * sizeof(unit)) {
        // The text lives in our own buffer, which decoding would overwrite.
        UT_String decoded(utf8);
        swap(decoded);
        return *this;
    }
    // Decoding never yields more units than bytes, so n units of room suffice.
    unit* out = UT_StringAccess::prepare(*this, size_type(n));
    UT_StringAccess::commit(*this, size_type(plumvale::text::utf8ToUtf16(bytes, n, out)));
    return *this;
}

UT_String& UT_String::operator=(const QString& s) {
    const auto n = s.size();
    if (std::size_t(n) > max_size()) throwLength();
    std::memcpy(growTo(size_type(n), 0), s.constData(), std::size_t(n) * sizeof(unit));
    setSize(size_type(n));
    return *this;
}

UT_String& UT_String::assign(const UT_String& other, size_type pos, size_type count) {
    if (pos > other.m_size) throwPosition();
    return assign(other.m_data + pos, std::min(count, other.m_size - pos));
}

UT_String& UT_String::assign(const value_type* s) {
    return assign(s, unitLength(s));
}

UT_String& UT_String::assign(const value_type* s, size_type count) {
    if (!s) count = 0;
    return replace(0, m_size, s, count);
}

UT_String& UT_String::assign(size_type count, value_type unit) {
    value_type* p = growTo(count, 0);
    std::fill_n(p, count, unit);
    setSize(count);
    return *this;
}

UT_String& UT_String::assign(const std::u16string& s) {
    if (s.size() > max_size()) throwLength();
    std::memcpy(growTo(size_type(s.size()), 0), s.data(), s.size() * sizeof(unit));
    setSize(size_type(s.size()));
    return *this;
}

// --- append / insert ----------------------------------------------------------------------

UT_String& UT_String::append(const UT_String& s, size_type pos, size_type count) {
    if (pos > s.m_size) throwPosition();
    return append(s.m_data + pos, std::min(count, s.m_size - pos));
}

UT_String& UT_String::append(const value_type* s, size_type count) {
    return replace(m_size, 0, s, count);
}

UT_String& UT_String::append(const value_type* s) {
    return append(s, unitLength(s));
}

UT_String& UT_String::append(size_type count, value_type unit) {
    return replace(m_size, 0, count, unit);
}

void UT_String::push_back(value_type unit) {
    if (m_size == m_capacity) growTo(m_size + 1, m_size);
    m_data[m_size] = unit;
    setSize(m_size + 1);
}

void UT_String::pop_back() {
    if (m_size) setSize(m_size - 1);
}

UT_String& UT_String::insert(size_type pos, const UT_String& s, size_type spos, size_type count) {
    if (spos > s.m_size) throwPosition();
    return insert(pos, s.m_data + spos, std::min(count, s.m_size - spos));
}

UT_String& UT_String::insert(size_type pos, const value_type* s, size_type count) {
    return replace(pos, 0, s, count);
}

UT_String& UT_String::insert(size_type pos, const value_type* s) {
    return insert(pos, s, unitLength(s));
}

UT_String& UT_String::insert(size_type pos, size_type count, value_type unit) {
    return replace(pos, 0, count, unit);
}

UT_String::iterator UT_String::insert(const_iterator p, value_type unit) {
    return insert(p, 1, unit);
}

UT_String::iterator UT_String::insert(const_iterator p, size_type count, value_type unit) {
    const size_type pos = offsetOf(p);
    replace(pos, 0, count, unit);
    return begin() + pos;
}

// --- erase / replace ----------------------------------------------------------------------

UT_String& UT_String::erase(size_type pos, size_type count) {
    return replace(pos, count, static_cast<const value_type*>(nullptr), 0);
}

UT_String::iterator UT_String::erase(const_iterator p) {
    const size_type pos = offsetOf(p);
    if (pos == m_size) throwPosition();
    erase(pos, 1);
    return begin() + pos;
}

UT_String::iterator UT_String::erase(const_iterator first, const_iterator last) {
    const size_type a = offsetOf(first);
    const size_type b = offsetOf(last);
    if (b < a) throwPosition();
    erase(a, b - a);
    return begin() + a;
}

UT_String& UT_String::replace(size_type pos, size_type count, const UT_String& s, size_type spos,
                              size_type scount) {
    if (spos > s.m_size) throwPosition();
    return replace(pos, count, s.m_data + spos, std::min(scount, s.m_size - spos));
}

UT_String& UT_String::replace(size_type pos, size_type count, const value_type* s,
                              size_type scount) {
    if (pos > m_size) throwPosition();
    if (!s) scount = 0;
    count = std::min(count, m_size - pos);
    if (scount && s >= m_data && s <= m_data + m_size) {
        // The source lies in our own buffer, which the gap is about to move.
        const UT_String copy(s, scount);
        return replace(pos, count, copy.m_data, scount);
    }
    copyUnits(openGap(pos, count, scount), s, scount);
    return *this;
}

UT_String& UT_String::replace(size_type pos, size_type count, const value_type* s) {
    return replace(pos, count, s, unitLength(s));
}

UT_String& UT_String::replace(size_type pos, size_type count, size_type n, value_type unit) {
    if (pos > m_size) throwPosition();
    count = std::min(count, m_size - pos);
    std::fill_n(openGap(pos, count, n), n, unit);
    return *this;
}

UT_String& UT_String::replace(const_iterator first, const_iterator last, const UT_String& s) {
    return replace(first, last, s.m_data, s.m_size);
}

UT_String& UT_String::replace(const_iterator first, const_iterator last, const value_type* s,
                              size_type scount) {
    const size_type a = offsetOf(first);
    const size_type b = offsetOf(last);
    if (b < a) throwPosition();
    return replace(a, b - a, s, scount);
}

UT_String& UT_String::replace(const_iterator first, const_iterator last, const value_type* s) {
    return replace(first, last, s, unitLength(s));
}

UT_String& UT_String::replace(const_iterator first, const_iterator last, size_type n,
                              value_type unit) {
    const size_type a = offsetOf(first);
    const size_type b = offsetOf(last);
    if (b < a) throwPosition();
    return replace(a, b - a, n, unit);
}

// --- capacity and access ------------------------------------------------------------------

void UT_String::reserve(size_type n) {
    growTo(n, m_size);
}

void UT_String::shrink_to_fit() {
    if (isLocal() || m_capacity == m_size) return;
    UT_String tight(*this);
    swap(tight);
}

void UT_String::resize(size_type n, value_type unit) {
    if (n <= m_size) {
        setSize(n);
        return;
    }
    append(n - m_size, unit);
}

UT_String::value_type& UT_String::at(size_type i) {
    if (i >= m_size) throwPosition();
    return m_data[i];
}

const UT_String::value_type& UT_String::at(size_type i) const {
    if (i >= m_size) throwPosition();
    return m_data[i];
}

UT_String::size_type UT_String::copy(value_type* dest, size_type count, size_type pos) const {
    if (pos > m_size) throwPosition();
    count = std::min(count, m_size - pos);
    if (dest) copyUnits(dest, m_data + pos, count);
    return dest ? count : 0;
}

UT_String UT_String::substr(size_type pos, size_type count) const {
    if (pos > m_size) throw std::out_of_range("UT_String::substr pos out of range");
    return UT_String(m_data + pos, std::min(count, m_size - pos));
}

// --- conversion out -----------------------------------------------------------------------

std::string UT_String::utf8() const {
    return plumvale::text::utf16ToUtf8(m_data, m_size);
}

QString UT_String::ToQString() const {
    return QString(reinterpret_cast<const QChar*>(m_data), static_cast<qsizetype>(m_size));
}

std::u16string UT_String::toU16String() const {
    std::u16string s(m_size, u'\0');
    std::memcpy(s.data(), m_data, std::size_t(m_size) * sizeof(unit));
    return s;
}

// --- free operators -----------------------------------------------------------------------

UT_String operator+(const UT_String& a, const UT_String& b) {
    UT_String r(a);
    return std::move(r.append(b));
}

UT_String operator+(const UT_String& a, const UT_String::value_type* b) {
    UT_String r(a);
    return std::move(r.append(b));
}

UT_String operator+(const UT_String::value_type* a, const UT_String& b) {
    UT_String r(a);
    return std::move(r.append(b));
}

UT_String operator+(const UT_String& a, UT_String::value_type b) {
    UT_String r(a);
    r.push_back(b);
    return r;
}

UT_String operator+(UT_String::value_type a, const UT_String& b) {
    UT_String r(1, a);
    return std::move(r.append(b));
}

std::size_t UT_StringHash(const UT_String& s) noexcept {
    std::uint64_t h = 0xcbf29ce484222325ull;
    for (const unit u : s) {
        h = (h ^ (u & 0xFFu)) * 0x100000001b3ull;
        h = (h ^ (u >> 8)) * 0x100000001b3ull;
    }
    return static_cast<std::size_t>(h);
}
