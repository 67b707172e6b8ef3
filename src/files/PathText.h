// Internal: the text rules of paths (roots, shares, drives, filtered characters, ".lnk").
//
// One home for rules that several path classes apply. All work on UTF-16 units and never
// touch the file system; the same rules hold on every platform. Two share rules exist on
// purpose: the file specification takes any "//server/share" text as its root, while a
// UT_Path drive must be made of letters, digits, '_' and '-'.
#pragma once

#include <PlumvaleBaseCore/text/UT_String.h>

#include <QChar>
#include <QString>

#include <cstddef>

namespace plumvale::files {

/// A read-only run of UTF-16 units: a UT_String's or a QString's.
struct PathUnits {
    const unsigned short* units;
    std::size_t size;

    PathUnits(const UT_String& s) : units(s.data()), size(s.size()) {}
    PathUnits(const QString& s)
        : units(reinterpret_cast<const unsigned short*>(s.utf16())),
          size(static_cast<std::size_t>(s.size())) {}
    unsigned short operator[](std::size_t i) const { return units[i]; }
    bool startsWithTwoSlashes() const { return size >= 2 && units[0] == '/' && units[1] == '/'; }
    /// Position of the first '/' at or after `from`; `size` when there is none.
    std::size_t slashFrom(std::size_t from) const {
        while (from < size && units[from] != '/')
            ++from;
        return from;
    }
};

inline bool isAsciiLetter(unsigned short c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Length of a leading "//server/share" of any characters, up to the '/' after the share
/// name or the end of the text ("//srv" and "//" count whole); 0 without a leading "//",
/// and 0 for a third '/' (no server name): "///x" is an absolute path, not a share whose
/// server is empty, or its root would depend on what follows.
inline std::size_t shareRootLength(PathUnits p) {
    if (!p.startsWithTwoSlashes() || (p.size > 2 && p[2] == '/')) return 0;
    const std::size_t server = p.slashFrom(2);
    return server == p.size ? p.size : p.slashFrom(server + 1);
}

/// Length of the root of a file specification: a share root, "/", "C:/" or "C:"; 0 for a
/// relative path.
inline std::size_t rootLength(PathUnits p) {
    if (const std::size_t share = shareRootLength(p)) return share;
    if (p.size > 0 && p[0] == '/') return 1;
    if (p.size >= 2 && p[1] == ':' && isAsciiLetter(p[0]))
        return p.size >= 3 && p[2] == '/' ? 3 : 2;
    return 0;
}

/// Whether the whole text is a bare share root: "//", a server name not starting with '/',
/// '/', and a non-empty share name without another '/'.
inline bool isShareRoot(PathUnits p) {
    if (p.size < 4 || !p.startsWithTwoSlashes() || p[2] == '/') return false;
    const std::size_t slash = p.slashFrom(2);
    return slash + 1 < p.size && p.slashFrom(slash + 1) == p.size;
}

/// Units of the drive-name character at `i`: 1, or 2 for a surrogate pair; 0 when the
/// character is not a Unicode letter or digit (the \w of the family's path patterns), '_'
/// or '-'. Letters are code points, so those beyond the Basic Multilingual Plane count.
inline std::size_t driveNameCharAt(PathUnits p, std::size_t i) {
    const unsigned short c = p[i];
    if (c == '_' || c == '-') return 1;
    if (QChar::isHighSurrogate(c) && i + 1 < p.size && QChar::isLowSurrogate(p[i + 1]))
        return QChar::isLetterOrNumber(QChar::surrogateToUcs4(c, p[i + 1])) ? 2 : 0;
    return QChar::isLetterOrNumber(c) ? 1 : 0;
}

/// Length of a leading "//name/name" of drive-name characters (UT_Path's share drive); 0
/// without one.
inline std::size_t namedShareLength(PathUnits p) {
    const auto run = [&p](std::size_t from) {
        std::size_t i = from;
        while (i < p.size)
            if (const std::size_t n = driveNameCharAt(p, i))
                i += n;
            else
                break;
        return i - from;
    };
    if (p.size < 5 || !p.startsWithTwoSlashes()) return 0;
    const std::size_t server = run(2);
    if (server == 0 || 2 + server >= p.size || p[2 + server] != '/') return 0;
    const std::size_t share = run(3 + server);
    return share == 0 ? 0 : 3 + server + share;
}

/// Length of a leading run of ASCII letters followed by ':' ("C:", also "ab:"); 0 without.
inline std::size_t letterDriveLength(PathUnits p) {
    std::size_t i = 0;
    while (i < p.size && isAsciiLetter(p[i]))
        ++i;
    return i > 0 && i < p.size && p[i] == ':' ? i + 1 : 0;
}

/// Whether the whole text is a valid UT_Path drive: one letter and ':', or a named share.
inline bool isValidDrive(PathUnits p) {
    if (p.size == 2) return isAsciiLetter(p[0]) && p[1] == ':';
    return p.size > 0 && namedShareLength(p) == p.size;
}

/// The unit that the path filter puts in place of `c`: '/' for '\', '_' for each of
/// > < ? * " (and ':' when `alsoColon`), `c` itself otherwise.
inline unsigned short filteredPathUnit(unsigned short c, bool alsoColon) {
    switch (c) {
    case '\\':
        return '/';
    case '>':
    case '<':
    case '?':
    case '*':
    case '"':
        return '_';
    case ':':
        return alsoColon ? '_' : c;
    default:
        return c;
    }
}

/// Whether the text ends in ".lnk" exactly (lower case), the name of a Windows shell link.
inline bool hasLinkSuffix(PathUnits p) {
    return p.size >= 4 && p[p.size - 4] == '.' && p[p.size - 3] == 'l' && p[p.size - 2] == 'n' &&
           p[p.size - 1] == 'k';
}

} // namespace plumvale::files
