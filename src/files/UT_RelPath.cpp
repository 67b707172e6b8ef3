// UT_RelPath: validation, joining, extensions and relative paths between folders.
#include <PlumvaleBaseCore/files/UT_Path.h>
#include <PlumvaleBaseCore/files/UT_RelPath.h>

#include "files/PathText.h"

#include <QStringList>

namespace {

constexpr char16_t kSlash = u'/';

// The '/'-separated sections of a path turned into a folder text the way UT_Path reads it.
QStringList sections(const UT_String& text) {
    const QString base = UT_Path(text.ToQString(), true).GetBasePath(true);
    return base.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

UT_String joined(const QStringList& parts) {
    return UT_String(parts.join(QLatin1Char('/')));
}

} // namespace

void UT_RelPath::SetString(const UT_String& text) {
    UT_String t = text;
    for (auto& c : t)
        c = plumvale::files::filteredPathUnit(c, false);
    // The leading "./" goes first, so that "./" alone ends empty rather than as ".". Each one
    // goes: "././a" must not keep a leading "./" (validating again would then change it).
    while (t.size() >= 2 && t[0] == u'.' && t[1] == kSlash) {
        UT_String::size_type i = 1;
        while (i < t.size() && t[i] == kSlash)
            ++i;
        t.erase(0, i);
    }
    while (t.size() > 1 && t.back() == kSlash)
        t.pop_back();
    m_text = t;
}

UT_RelPath& UT_RelPath::Add(const UT_String& other) {
    if (m_text.empty()) {
        m_text = other;
    } else {
        m_text += kSlash;
        m_text += other;
    }
    return *this;
}

UT_RelPath UT_RelPath::operator+(const UT_RelPath& other) const {
    UT_String t = m_text;
    t += kSlash;
    t += other.m_text;
    return UT_RelPath(t);
}

void UT_RelPath::Up() {
    const UT_String::size_type slash = m_text.rfind(kSlash);
    if (slash == UT_String::npos)
        m_text.clear();
    else
        m_text.erase(slash);
}

UT_String UT_RelPath::GetFilename() const {
    const UT_String::size_type slash = m_text.rfind(kSlash);
    return slash == UT_String::npos ? m_text : m_text.substr(slash + 1);
}

UT_String UT_RelPath::GetBaseName() const {
    const UT_String name = GetFilename();
    const UT_String::size_type dot = name.rfind(u'.');
    return dot == UT_String::npos ? name : name.substr(0, dot);
}

UT_String UT_RelPath::GetExtension() const {
    const UT_String::size_type dot = m_text.rfind(u'.');
    const UT_String::size_type slash = m_text.rfind(kSlash);
    if (dot == UT_String::npos || (slash != UT_String::npos && dot < slash) ||
        dot + 1 == m_text.size())
        return UT_String();
    return m_text.substr(dot + 1);
}

void UT_RelPath::SetFilename(const UT_String& name) {
    const UT_String::size_type slash = m_text.rfind(kSlash);
    if (slash == UT_String::npos)
        m_text = name;
    else
        m_text = m_text.substr(0, slash + 1) + name;
    SetString(m_text);
}

void UT_RelPath::SetExtension(const UT_String& ext) {
    UT_String e;
    if (!ext.empty()) {
        e += u'.';
        e += ext;
    }
    const UT_String::size_type dot = m_text.rfind(u'.');
    const UT_String::size_type slash = m_text.rfind(kSlash);
    if (m_text.empty())
        m_text = e;
    else if (dot == UT_String::npos || (slash != UT_String::npos && dot < slash))
        m_text += e;
    else
        m_text = m_text.substr(0, dot) + e;
}

void UT_RelPath::AddExtension(const UT_String& ext) {
    if (ext.empty()) return;
    m_text += u'.';
    m_text += ext;
}

void UT_RelPath::ReplaceOrAddExtension(const std::vector<UT_String>& known, const UT_String& ext) {
    const UT_String current = GetExtension();
    for (const UT_String& k : known) {
        if (k == current) {
            SetExtension(ext);
            return;
        }
    }
    AddExtension(ext);
}

void UT_RelPath::makeRelativeToPath(const UT_RelPath& target, const UT_RelPath& base) {
    const QStringList t = sections(target.m_text);
    const QStringList b = sections(base.m_text);
    int common = 0;
    while (common < t.size() && common < b.size() && t[common] == b[common])
        ++common;
    QStringList parts;
    for (int i = common; i < b.size(); ++i)
        parts.append(QStringLiteral(".."));
    for (int i = common; i < t.size(); ++i)
        parts.append(t[i]);
    SetString(joined(parts));
}

void UT_RelPath::fillRelativePath(const UT_RelPath& other) {
    const QStringList mine = sections(m_text);
    const QStringList theirs = sections(other.m_text);
    QStringList parts = mine;
    for (int i = mine.size(); i < theirs.size(); ++i)
        parts.append(theirs[i]);
    SetString(joined(parts));
}
