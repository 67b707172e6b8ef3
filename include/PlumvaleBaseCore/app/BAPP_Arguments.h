// BAPP_Arguments and BAPP_ArgumentIterator: the command line, consumed option by option.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>
#include <QStringList>

class BAPP_ArgumentIterator;

/// The running application's arguments, without the program name.
///
/// Conventions: copies share the list until one of them changes (Qt's copy on write), so
/// they are independent. Reading at or past the end gives an empty string, never a failure;
/// negative indexes are the caller's error and are not checked.
///
/// The consuming loop every option parser of the family uses:
///
///     for (BAPP_ArgumentIterator it = args.begin(); it.hasMoreArgument(1);) {
///         if (*it == "-size" && it.hasMoreArgument(2)) { use(it[1]); it.handled(2); }
///         else if (*it == "-quiet") { quiet = true; it.handled(1); }
///         else ++it; // someone else's, or an option missing its value
///     }
class PLUMVALE_EXPORT BAPP_Arguments {
public:
    /// An empty list.
    BAPP_Arguments() = default;
    /// Shares `list`.
    BAPP_Arguments(const QStringList& list) : m_list(list) {}

    /// @{
    /// The number of arguments (one operation, two names).
    int size() const { return static_cast<int>(m_list.size()); }
    int count() const { return size(); }
    /// @}
    /// @{
    /// A copy of argument `i`; an empty string when `i` is not below size().
    QString operator[](int i) const { return at(i); }
    QString at(int i) const { return i < size() ? m_list.at(i) : QString(); }
    /// @}
    /// Removes argument `i` (the rest shift down); nothing when `i` is not below size().
    void erase(int i);
    /// @{
    /// Iterators at index 0 and at index size().
    BAPP_ArgumentIterator begin();
    BAPP_ArgumentIterator end();
    /// @}
    /// The remaining arguments, shared.
    const QStringList& list() const { return m_list; }

private:
    QStringList m_list;
};

/// A position in a BAPP_Arguments it does not own; equal to end() when the index is the size.
class PLUMVALE_EXPORT BAPP_ArgumentIterator {
public:
    /// Index `index` of `arguments`.
    BAPP_ArgumentIterator(BAPP_Arguments* arguments, int index)
        : m_arguments(arguments), m_index(index) {}

    /// @{
    /// One step forward or back, without a bounds check.
    BAPP_ArgumentIterator& operator++() {
        ++m_index;
        return *this;
    }
    BAPP_ArgumentIterator& operator--() {
        --m_index;
        return *this;
    }
    /// @}
    /// @{
    /// Equal when both the list and the index are equal.
    bool operator==(const BAPP_ArgumentIterator& o) const {
        return m_arguments == o.m_arguments && m_index == o.m_index;
    }
    bool operator!=(const BAPP_ArgumentIterator& o) const { return !(*this == o); }
    /// @}
    /// @{
    /// The argument at the current index, or `offset` after it; empty past the end.
    QString operator*() const { return m_arguments->at(m_index); }
    QString operator->() const { return **this; }
    QString operator[](int offset) const { return m_arguments->at(m_index + offset); }
    /// @}
    /// Whether `n` arguments exist from the current one on (index + n <= size()); true for
    /// n = 0 even at end().
    bool hasMoreArgument(int n) const { return m_index + n <= m_arguments->size(); }
    /// Consumes the `n` arguments from the current one on: the index stays, and then names
    /// the first argument after them. Past the end nothing more is removed.
    void handled(int n);
    /// The current index.
    int index() const { return m_index; }

private:
    BAPP_Arguments* m_arguments;
    int m_index;
};
