// UT_Path: parsing, normalisation and editing of drive/folder/name paths, and its iterator.
#include <PlumvaleBaseCore/files/UT_Path.h>

#include "files/PathText.h"

#include <QFileInfo>
#include <QRegularExpression>

using namespace plumvale::files;

namespace {

const QLatin1Char kSlash('/');

// \w matches Unicode letters and digits, as the family's path rules always did.
QRegularExpression unicodePattern(const char* pattern) {
    return QRegularExpression(QString::fromLatin1(pattern),
                              QRegularExpression::UseUnicodePropertiesOption);
}

// Cuts a leading drive off `path` into `drive`; false when nothing matched. A share is
// tried before letters, as the drive patterns are.
bool ExtractDrive(QString& path, QString& drive) {
    std::size_t length = namedShareLength(path);
    if (length == 0) length = letterDriveLength(path);
    if (length == 0) return false;
    drive = path.left(static_cast<int>(length));
    path.remove(0, static_cast<int>(length));
    return true;
}

// Position of the first or last '.' of `name`; -1 without one.
int dotPosition(const QString& name, bool fromFirstDot) {
    return fromFirstDot ? name.indexOf(QLatin1Char('.')) : name.lastIndexOf(QLatin1Char('.'));
}

} // namespace

UT_Path::UT_Path(const QString& path, bool filter) : m_filter(filter) {
    SetPath(path);
}

QString UT_Path::FilterPath(const QString& text, bool alsoColon) const {
    if (!m_filter) return text;
    QString out = text;
    for (QChar& c : out)
        c = QChar(filteredPathUnit(c.unicode(), alsoColon));
    return out;
}

QString UT_Path::cleanPath(const QString& folder) {
    if (folder.size() <= 1) return folder;
    const QStringList parts = folder.split(kSlash);
    QString result;
    int pending = 0;
    for (auto it = parts.crbegin(); it != parts.crend(); ++it) {
        if (it->isEmpty() || *it == QLatin1String(".")) continue;
        if (*it == QLatin1String("..")) {
            ++pending;
            continue;
        }
        if (pending > 0) {
            --pending;
            continue;
        }
        result.prepend(*it + kSlash);
    }
    for (; pending > 0; --pending)
        result.prepend(QLatin1String("../"));
    const bool absolute = folder.startsWith(kSlash);
    // A relative folder that cleans away to nothing stays relative (and empty).
    if (result.isEmpty() && !absolute) return result;
    if (absolute && !result.startsWith(kSlash)) result.prepend(kSlash);
    if (folder.endsWith(kSlash) && !result.endsWith(kSlash)) result.append(kSlash);
    return result;
}

bool UT_Path::ValidatePath(QString& drive, QString& path, QString& name) const {
    if (path.isEmpty()) return true;
    path = FilterPath(path, false);
    QString found;
    const bool hasDrive = ExtractDrive(path, found);
    if (hasDrive) {
        if (!isValidDrive(found)) return false;
        drive = found;
        if (path.isEmpty()) path = QString(kSlash);
    }
    path = FilterPath(path, true);
    if (path.endsWith(kSlash)) {
        name.clear();
    } else {
        const int slash = path.lastIndexOf(kSlash);
        name = path.mid(slash + 1);
        path.truncate(slash + 1);
    }
    path = cleanPath(path);
    // A relative folder that cleans away to nothing stays empty, but one after a drive is
    // the drive's root: "C:./x" is "C:/x", not "x".
    if (path.isEmpty() && hasDrive) path = QString(kSlash);
    if (!path.isEmpty() && !path.endsWith(kSlash)) path.append(kSlash);
    return true;
}

QString UT_Path::GetPath(bool withName) const {
    QString out = IsRelative() ? m_folder : m_drive + m_folder;
    if (withName) {
        if (m_name.isEmpty()) {
            if (out.size() >= 2 && out.endsWith(kSlash)) out.chop(1);
        } else {
            out += m_name;
        }
    }
    return out;
}

QString UT_Path::GetBasePath(bool withName) const {
    return withName ? m_folder + m_name : m_folder;
}

QString UT_Path::GetFileName(bool withExtension, bool fromFirstDot) const {
    if (withExtension) return m_name;
    const int dot = dotPosition(m_name, fromFirstDot);
    return dot < 0 ? m_name : m_name.left(dot);
}

QString UT_Path::GetExtension(bool fromFirstDot) const {
    const int dot = dotPosition(m_name, fromFirstDot);
    return dot < 0 ? QString() : m_name.mid(dot + 1);
}

bool UT_Path::SetPath(const QString& path) {
    QString drive = m_drive, folder = path, name;
    if (path.isEmpty()) {
        m_drive.clear(), m_folder.clear(), m_name.clear();
        resetSpec();
        return true;
    }
    if (!ValidatePath(drive, folder, name)) return false;
    m_drive = (folder.startsWith(kSlash)) ? drive : QString();
    m_folder = folder;
    m_name = name;
    resetSpec();
    return true;
}

bool UT_Path::SetFolderPath(const QString& path) {
    const QString name = m_name;
    if (!SetPath(path)) return false;
    m_name = name;
    return true;
}

bool UT_Path::SetFolder(const QString& folder) {
    QString text = folder;
    if (text.size() < 2 || !text.endsWith(kSlash)) text.append(kSlash);
    return SetPath(text);
}

bool UT_Path::SetDrive(const QString& drive) {
    if (IsRelative() || !isValidDrive(drive)) return false;
    m_drive = drive;
    resetSpec();
    return true;
}

bool UT_Path::SetFileName(const QString& name) {
    const QString filtered = FilterPath(name, true);
    if (filtered.contains(kSlash)) return false;
    m_name = filtered;
    resetSpec();
    return true;
}

bool UT_Path::AddName(const QString& name) {
    if (name.startsWith(kSlash)) return false;
    if (!m_name.isEmpty()) {
        if (!m_folder.isEmpty() && !m_folder.endsWith(kSlash)) m_folder.append(kSlash);
        m_folder += m_name + kSlash;
    }
    m_name = name;
    resetSpec();
    return true;
}

bool UT_Path::AddFolder(const QString& folder) {
    QString text = FilterPath(folder, true);
    if (text.startsWith(kSlash)) return false;
    if (text.isEmpty()) return true;
    QString joined = m_folder;
    if (!joined.isEmpty() && !joined.endsWith(kSlash)) joined.append(kSlash);
    joined += text;
    if (!joined.endsWith(kSlash)) joined.append(kSlash);
    m_folder = cleanPath(joined);
    resetSpec();
    return true;
}

bool UT_Path::AddFolder(const UT_Path& other) {
    if (m_drive != other.m_drive) return false;
    return AddFolder(other.GetPath(true));
}

bool UT_Path::AddExtension(const QString& ext) {
    if (ext.isEmpty()) return true;
    if (!m_name.endsWith(QLatin1Char('.'))) m_name.append(QLatin1Char('.'));
    m_name += ext;
    resetSpec();
    return true;
}

bool UT_Path::SetExtension(const QString& ext, bool fromFirstDot) {
    static const QRegularExpression pattern = unicodePattern("^[\\w_]+(\\.[\\w_]+)*$");
    QString e = FilterPath(ext, true);
    if (e.startsWith(QLatin1Char('.'))) e.remove(0, 1);
    if (!pattern.match(e).hasMatch()) return false;
    const int dot = dotPosition(m_name, fromFirstDot);
    if (dot < 0)
        m_name += QLatin1Char('.') + e;
    else
        m_name = m_name.left(dot + 1) + e;
    resetSpec();
    return true;
}

bool UT_Path::Up() {
    if (!m_name.isEmpty()) {
        m_name.clear();
        resetSpec();
        return true;
    }
    const int slash = m_folder.lastIndexOf(kSlash);
    if (slash > 0) {
        m_folder.truncate(slash);
    } else if (slash == 0) {
        if (m_folder == QLatin1String("/")) return false;
        m_folder = QString(kSlash);
    } else {
        if (m_folder.isEmpty()) return false;
        m_folder.clear();
    }
    resetSpec();
    return true;
}

bool UT_Path::MakeUniqueFileName() {
    if (!Exists()) return true;
    const QString extension = GetExtension(true);
    const QString base = GetFileName(false, true);
    for (int n = 1; n < 1000; ++n) {
        Up();
        AddName(QStringLiteral("%1_%2").arg(base).arg(n));
        AddExtension(extension);
        if (!Exists()) return true;
    }
    return false;
}

const PL_FileSpec& UT_Path::GetFileSpec() const {
    if (!m_spec.IsValid()) m_spec.IFileSpec(UT_String(GetPath(true)));
    return m_spec;
}

UT_PathIterator UT_Path::GetFolderIterator() const {
    return UT_PathIterator(*this);
}

bool UT_Path::IsHidden() const {
    return PL_FileSpec(UT_String(GetPath(true))).IsHidden();
}

QString UT_Path::GetResolvedPath() const {
    return QFileInfo(GetPath(true)).canonicalFilePath();
}

bool UT_Path::Rename(const QString& newName) {
    if (!Exists()) return false;
    const int result = GetFileSpec().Rename(UT_String(newName));
    resetSpec();
    return result == 0;
}

bool UT_Path::Delete() {
    const int result = GetFileSpec().Delete();
    resetSpec();
    return result == 0;
}

bool UT_Path::CreateFolder() {
    if (IsDirectory()) return true;
    if (GetPath(true).isEmpty()) return false;
    const int result = GetFileSpec().CreateFolder();
    resetSpec();
    return result == 0;
}

UT_PathIterator::UT_PathIterator(const UT_Path& folder) : m_path(folder) {
    const PL_FileSpec& listed = folder.GetFileSpec();
    if (!listed.IsValid()) return;
    m_current = listed.begin();
    m_end = listed.end();
    if (m_current != m_end) {
        m_entry = *m_current;
        m_path.AddName(m_entry.GetName().ToQString());
    }
}

UT_PathIterator& UT_PathIterator::operator++() {
    if (IsEnd()) return *this;
    ++m_current;
    if (!IsEnd()) {
        m_entry = *m_current;
        m_path.Up();
        m_path.AddName(m_entry.GetName().ToQString());
    }
    return *this;
}
