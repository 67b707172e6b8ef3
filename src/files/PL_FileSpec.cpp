// PL_FileSpec text operations: names, extensions, relative paths and saved identities.
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/UT_RelPath.h>

#include "files/PathText.h"

#include <vector>

namespace {

constexpr char16_t kSlash = u'/';
using size_type = UT_String::size_type;

// Start of the name: after the last '/', one trailing '/' ignored.
size_type nameStart(const UT_String& path, size_type& nameEnd) {
    nameEnd = path.size();
    if (nameEnd > 1 && path[nameEnd - 1] == kSlash) --nameEnd;
    const size_type slash = nameEnd == 0 ? UT_String::npos : path.rfind(kSlash, nameEnd - 1);
    return slash == UT_String::npos ? 0 : slash + 1;
}

using plumvale::files::rootLength;

std::vector<UT_String> components(const UT_String& p, size_type from) {
    std::vector<UT_String> parts;
    size_type i = from;
    while (i < p.size()) {
        size_type j = p.find(kSlash, i);
        if (j == UT_String::npos) j = p.size();
        if (j > i) parts.push_back(p.substr(i, j - i));
        i = j + 1;
    }
    return parts;
}

bool sameUnitsIgnoringAsciiCase(const UT_String& a, const UT_String& b) {
    if (a.size() != b.size()) return false;
    for (size_type i = 0; i < a.size(); ++i) {
        unsigned x = a[i], y = b[i];
        if (x >= u'A' && x <= u'Z') x += 32;
        if (y >= u'A' && y <= u'Z') y += 32;
        if (x != y) return false;
    }
    return true;
}

} // namespace

UT_String PL_FileSpec::SavableID::path() const {
    UT_String out;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        out.push_back(static_cast<UT_String::value_type>(bytes[i] | (bytes[i + 1] << 8)));
    return out;
}

PL_FileSpec::PL_FileSpec(const UT_RelPath& path) {
    IFileSpec(path.ToString());
}

void PL_FileSpec::IFileSpec() {
    m_path.clear();
    m_info.Clear();
    m_lazyDir.reset();
}

void PL_FileSpec::IFileSpec(const UT_String& path) {
    IFileSpec();
    m_path = path;
    for (auto& c : m_path)
        if (c == u'\\') c = kSlash;
    const size_type root = rootLength(m_path);
    while (m_path.size() > root && m_path.size() > 1 && m_path.back() == kSlash)
        m_path.pop_back();
}

void PL_FileSpec::IFileSpec(const UT_String& path, const PL_FileInfo& info) {
    IFileSpec(path);
    m_info = info;
}

void PL_FileSpec::IFileSpec(const UT_String& rel, const PL_FileSpec& base) {
    PL_FileSpec r(rel);
    if (rootLength(r.m_path) > 0 || !base.IsValid()) {
        *this = r;
        return;
    }
    UT_String joinedPath = base.m_path;
    const size_type root = rootLength(joinedPath);
    std::vector<UT_String> parts = components(joinedPath, root);
    for (const UT_String& part : components(r.m_path, 0)) {
        if (part == UT_String(u".")) continue;
        if (part == UT_String(u"..")) {
            if (!parts.empty()) parts.pop_back();
            continue;
        }
        parts.push_back(part);
    }
    UT_String out = joinedPath.substr(0, root);
    // A bare drive ("C:x" is x in the drive's current folder) takes no '/' after it: that
    // would move the path to the drive's root.
    const bool bareDrive = root == 2 && joinedPath[1] == u':';
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!out.empty() && out.back() != kSlash && !(bareDrive && out.size() == 2)) out += kSlash;
        out += parts[i];
    }
    IFileSpec(out);
}

void PL_FileSpec::IFileSpec(const SavableID& id, const PL_FileSpec* base) {
    const UT_String text = id.path();
    if (base)
        IFileSpec(text, *base);
    else
        IFileSpec(text);
}

std::u16string PL_FileSpec::GetWchartFileName() const {
    return std::u16string(m_path.begin(), m_path.end());
}

UT_String PL_FileSpec::GetName(bool withExtension) const {
    size_type end = 0;
    const size_type start = nameStart(m_path, end);
    UT_String name = m_path.substr(start, end - start);
    if (!withExtension) {
        const size_type dot = name.rfind(u'.');
        if (dot != UT_String::npos) name.erase(dot);
    }
    return name;
}

UT_String PL_FileSpec::GetExtension() const {
    const UT_String name = GetName(true);
    const size_type dot = name.rfind(u'.');
    return dot == UT_String::npos ? UT_String() : name.substr(dot + 1);
}

bool PL_FileSpec::GetExtension(UT_String& out) const {
    out = GetExtension();
    return !out.empty();
}

bool PL_FileSpec::HasExtension(const UT_String& ext) const {
    UT_String wanted = ext;
    if (!wanted.empty() && wanted[0] == u'.') wanted.erase(0, 1);
    return sameUnitsIgnoringAsciiCase(GetExtension(), wanted);
}

void PL_FileSpec::SetExtension(const UT_String& ext) {
    size_type end = 0;
    const size_type start = nameStart(m_path, end);
    const size_type dot = m_path.rfind(u'.', end == 0 ? 0 : end - 1);
    UT_String path = m_path.substr(0, end);
    if (dot != UT_String::npos && dot >= start) path.erase(dot);
    if (!ext.empty()) {
        path += u'.';
        path += ext;
    }
    IFileSpec(path);
}

void PL_FileSpec::AddExtension(const UT_String& ext) {
    UT_String path = m_path;
    path += u'.';
    path += ext;
    IFileSpec(path);
}

void PL_FileSpec::Add(const UT_String& component) {
    UT_String path = m_path;
    if (!path.empty() && path.back() != kSlash) path += kSlash;
    path += component;
    IFileSpec(path);
}

bool PL_FileSpec::Up() {
    const size_type root = rootLength(m_path);
    if (m_path.size() <= root) return false;
    const size_type slash = m_path.rfind(kSlash);
    if (slash == UT_String::npos || slash + 1 <= root) {
        if (root == 0) return false;
        IFileSpec(m_path.substr(0, root));
        return true;
    }
    IFileSpec(m_path.substr(0, slash));
    return true;
}

int PL_FileSpec::GetRelativePath(UT_String& out, const PL_FileSpec& base) const {
    const size_type root = rootLength(m_path);
    if (root != rootLength(base.m_path) || m_path.substr(0, root) != base.m_path.substr(0, root))
        return -1;
    const std::vector<UT_String> mine = components(m_path, root);
    const std::vector<UT_String> theirs = components(base.m_path, root);
    std::size_t common = 0;
    while (common < mine.size() && common < theirs.size() && mine[common] == theirs[common])
        ++common;
    out.clear();
    if (common == theirs.size()) out = UT_String(u".");
    for (std::size_t i = common; i < theirs.size(); ++i)
        out += UT_String(i == common ? u".." : u"/..");
    for (std::size_t i = common; i < mine.size(); ++i) {
        out += kSlash;
        out += mine[i];
    }
    return 0;
}

int PL_FileSpec::GetSavableID(SavableID& id, const PL_FileSpec* base) const {
    if (TestAccess(false) != 0) return -1;
    UT_String text = m_path;
    UT_String relative;
    if (base && base->IsValid() && GetRelativePath(relative, *base) == 0) text = relative;
    id.bytes.clear();
    id.bytes.reserve(text.size() * 2);
    for (const auto unit : text) {
        id.bytes.push_back(static_cast<unsigned char>(unit & 0xFF));
        id.bytes.push_back(static_cast<unsigned char>(unit >> 8));
    }
    return 0;
}

bool PL_FileSpec::IsShare() const {
    return plumvale::files::isShareRoot(m_path);
}

bool PL_FileSpec::GetFileTime(long long& time) const {
    const PL_FileInfo& info = GetFileInfo();
    if (info.IsError()) return false;
    time = info.GetModifTime();
    return true;
}

int PL_FileSpec::TestAccess(bool write) const {
    const PL_FileInfo& info = GetFileInfo();
    return (write ? info.CanWrite() : info.CanRead()) ? 0 : -1;
}

bool PL_FileSpec::IsHidden() const {
    if (m_info.GetHiddenState() == 0) {
        const UT_String name = GetName(true);
        m_info.SetHiddenState(!name.empty() && name[0] == u'.' ? 2 : 1);
    }
    return m_info.GetHiddenState() == 2;
}

void PL_FileSpec::ConvertFileTimeToTimeT(const FILETIME* time, long long& out) {
    // 1970-01-01 in 100 ns ticks since 1601-01-01.
    constexpr std::uint64_t kUnixEpoch = 116444736000000000ull;
    const std::uint64_t ticks =
        (static_cast<std::uint64_t>(time->dwHighDateTime) << 32) | time->dwLowDateTime;
    out = static_cast<long long>(ticks - kUnixEpoch) / 10000000;
}

int PL_FileSpec::Rename(const UT_String& newName) const {
    PL_FileSpec target;
    if (newName.find(u'/') != UT_String::npos) {
        target.IFileSpec(newName);
    } else {
        target = *this;
        target.Up();
        target.Add(newName);
    }
    return Move(target);
}

std::filebuf* PL_FileSpec::getFileBuf(const char* mode, bool& ok) const {
    ok = false;
    auto* buf = new std::filebuf;
    const std::string m = mode ? mode : "";
    std::ios_base::openmode flags = std::ios_base::openmode();
    if (m.find('r') != std::string::npos) flags |= std::ios_base::in;
    if (m.find('w') != std::string::npos) flags |= std::ios_base::out | std::ios_base::trunc;
    if (m.find('a') != std::string::npos) flags |= std::ios_base::out | std::ios_base::app;
    if (m.find('+') != std::string::npos) flags |= std::ios_base::in | std::ios_base::out;
    if (m.find('b') != std::string::npos) flags |= std::ios_base::binary;
    ok = buf->open(m_path.utf8(), flags) != nullptr;
    return buf;
}

PL_FileSpec::iterator PL_FileSpec::begin() const {
    return iterator(*this);
}

PL_FileSpec::iterator PL_FileSpec::end() const {
    return iterator();
}
