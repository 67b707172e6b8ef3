// UT_DynKey, process-local keys for in-memory maps, and UT_TriState, a three-valued flag.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

/// A key from a process-wide counter: the first is 1. Never saved; make keys from one
/// thread at a time.
class PLUMVALE_EXPORT UT_DynKey {
public:
    /// The next key.
    UT_DynKey();
    /// @{
    /// Signed comparison of the values.
    bool operator<(const UT_DynKey& o) const { return m_value < o.m_value; }
    bool operator==(const UT_DynKey& o) const { return m_value == o.m_value; }
    /// @}
    /// The value.
    int value() const { return m_value; }

private:
    int m_value;
};

/// On, off or unset: a flag summarised over a selection (all on, all off, or mixed).
class PLUMVALE_EXPORT UT_TriState {
public:
    /// Unset.
    UT_TriState() = default;
    /// On for true, off for false.
    UT_TriState(bool on) : m_value(on ? kOn : kOff) {}
    /// On for a value above 0, off otherwise (never unset).
    UT_TriState(int value) : m_value(value > 0 ? kOn : kOff) {}

    /// @{
    /// The state.
    bool isOn() const { return m_value == kOn; }
    bool isOff() const { return m_value == kOff; }
    bool isUnset() const { return m_value == kUnset; }
    /// @}
    /// @{
    /// Same state.
    bool operator==(const UT_TriState& o) const { return m_value == o.m_value; }
    bool operator!=(const UT_TriState& o) const { return m_value != o.m_value; }
    /// @}
    /// Keeps the state when `other` has the same, else becomes unset; returns itself.
    UT_TriState& combine(const UT_TriState& other) {
        if (m_value != other.m_value) m_value = kUnset;
        return *this;
    }

private:
    enum : int { kOff = 0, kOn = 1, kUnset = 2 };
    int m_value = kUnset;
};
