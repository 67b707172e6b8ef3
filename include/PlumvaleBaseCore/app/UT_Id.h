// UT_Id and UT_IdZero: 64-bit object identifiers, unique across processes, kept in scene files.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

#include <cstdint>
#include <iosfwd>
#include <string>

class TULex;

/// A 64-bit identifier, stored as its low word then its signed high word.
///
/// Conventions: a new identifier is the low 44 bits of a clock stamp of the process's first
/// identifier (UTC date and time to the millisecond, fields deliberately overlapping) above
/// a 20-bit sequence number; after 2^20 identifiers a new stamp is taken. So identifiers
/// made one after the other differ by one, and uniqueness between runs rests on the stamp's
/// millisecond. Ordering compares the signed high word, then the unsigned low word. The
/// text form is exactly 16 lower-case hexadecimal digits, high word first. Any thread may
/// make identifiers.
class PLUMVALE_EXPORT UT_Id {
public:
    /// A new unique identifier.
    UT_Id();
    /// `value` sign-extended to 64 bits.
    explicit UT_Id(int value) : UT_Id(static_cast<std::int64_t>(value), 0) {}
    /// The identifier of the 64-bit `value` (the name is spelled so).
    static UT_Id FromtInt64(long long& value) { return UT_Id(value, 0); }

    /// @{
    /// Equality of the values; ordering by signed high word, then unsigned low word.
    bool operator==(const UT_Id& o) const { return m_low == o.m_low && m_high == o.m_high; }
    bool operator!=(const UT_Id& o) const { return !(*this == o); }
    bool operator<(const UT_Id& o) const {
        return m_high < o.m_high || (m_high == o.m_high && m_low < o.m_low);
    }
    bool operator>(const UT_Id& o) const { return o < *this; }
    /// @}

    /// @{
    /// The value, and its two words.
    std::int64_t value() const {
        return static_cast<std::int64_t>(
            (static_cast<std::uint64_t>(static_cast<std::uint32_t>(m_high)) << 32) | m_low);
    }
    std::uint32_t low() const { return m_low; }
    std::int32_t high() const { return m_high; }
    /// @}

    /// 16 lower-case hexadecimal digits: the high word, then the low word.
    std::string AsString() const;
    /// Characters 8 to 15 read as hexadecimal into the low word, 0 to 7 into the high word;
    /// a character that is not a hexadecimal digit ends its word's scan (a word without
    /// digits is 0). Never fails.
    static UT_Id FromString(const std::string& text);
    /// Writes AsString(), honouring the stream's width and fill.
    void write(std::ostream& out) const;
    /// Reads the lexer's token: when it is not 16 characters long, the syntax error "Invalid
    /// Secret Color Name" (wording kept on purpose) and false; otherwise the value is read,
    /// the lexer advances and true is returned.
    bool parse(TULex& lex);
    /// Reads a 16-character `text` as FromString does; any other length leaves the
    /// identifier unchanged, silently.
    void parseXml(const QString& text);

private:
    UT_Id(std::int64_t value, int)
        : m_low(static_cast<std::uint32_t>(value)),
          m_high(static_cast<std::int32_t>(static_cast<std::uint64_t>(value) >> 32)) {}

    std::uint32_t m_low;
    std::int32_t m_high;
};

/// The null identifier (value 0).
class PLUMVALE_EXPORT UT_IdZero : public UT_Id {
public:
    /// Value 0.
    UT_IdZero() : UT_Id(0) {}
};
