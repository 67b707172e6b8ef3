// The INI reader behind the remapping configuration.
#include "files/ProfileFile.h"

namespace plumvale::files {

namespace {

constexpr qsizetype kValueLimit = 1023;
constexpr qsizetype kSectionListLimit = 16384;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

QByteArray trimmed(const QByteArray& text) {
    const char* d = text.constData();
    qsizetype begin = 0, end = text.size();
    while (begin < end && isBlank(d[begin]))
        ++begin;
    while (end > begin && isBlank(d[end - 1]))
        --end;
    return text.mid(begin, end - begin);
}

QByteArray asciiLower(QByteArray text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

} // namespace

ProfileFile ProfileFile::parse(const QByteArray& bytes) {
    ProfileFile file;
    Section* current = nullptr;
    for (const QByteArray& raw : bytes.split('\n')) {
        const QByteArray line = trimmed(raw);
        if (line.isEmpty() || line.startsWith(';')) continue;
        if (line.startsWith('[')) {
            const qsizetype close = line.indexOf(']');
            file.m_sections.push_back(
                {trimmed(line.mid(1, close < 0 ? line.size() - 1 : close - 1)), {}});
            current = &file.m_sections.back();
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!current || equals <= 0) continue;
        QByteArray value = trimmed(line.mid(equals + 1));
        if (value.size() >= 2 && value.startsWith('"') && value.endsWith('"'))
            value = value.mid(1, value.size() - 2);
        current->entries.push_back(
            {asciiLower(trimmed(line.left(equals))), value.left(kValueLimit)});
    }
    return file;
}

QStringList ProfileFile::sectionNames() const {
    QStringList names;
    qsizetype used = 1; // the list's final zero
    for (const Section& s : m_sections) {
        used += s.name.size() + 1;
        if (used > kSectionListLimit) break;
        names << QString::fromUtf8(s.name);
    }
    return names;
}

bool ProfileFile::listsSection(const QString& section) const {
    return sectionNames().contains(section);
}

QString ProfileFile::value(const QString& section, const QString& key) const {
    const QByteArray name = section.toUtf8();
    const QByteArray wanted = asciiLower(key.toUtf8());
    for (const Section& s : m_sections) {
        if (s.name != name) continue;
        for (const Entry& e : s.entries)
            if (e.key == wanted) return QString::fromUtf8(e.value);
        return QString();
    }
    return QString();
}

} // namespace plumvale::files
