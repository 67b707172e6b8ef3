// Internal: a reader of INI profile files with the rules of the system's profile-string calls.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace plumvale::files {

/// An INI file read once into memory. Not QSettings: backslashes and commas are plain
/// characters here, as share names need.
///
/// Rules: "[name]" opens a section (name trimmed, matched exactly); "key=value" lines set
/// keys, matched without regard to ASCII case; keys and values are trimmed of blanks, and a
/// value wholly inside one pair of double quotes loses them; the first of duplicate sections
/// or keys wins; lines starting with ';' are comments; CR LF and LF both end lines; a value
/// keeps at most 1023 bytes (the 1024-byte buffers of the callers); the section list holds
/// the names that fit in 16384 bytes, each with its terminating zero, plus a final zero.
/// Text is UTF-8.
class ProfileFile {
public:
    /// The sections and keys of `bytes`.
    static ProfileFile parse(const QByteArray& bytes);

    /// The section names, in file order, as far as they fit the 16384-byte list.
    QStringList sectionNames() const;
    /// Whether `section` appears in sectionNames().
    bool listsSection(const QString& section) const;
    /// The value of `key` in the first section named `section`; empty when absent.
    QString value(const QString& section, const QString& key) const;

private:
    struct Entry {
        QByteArray key; // lower-cased
        QByteArray value;
    };
    struct Section {
        QByteArray name;
        std::vector<Entry> entries;
    };
    std::vector<Section> m_sections;
};

} // namespace plumvale::files
