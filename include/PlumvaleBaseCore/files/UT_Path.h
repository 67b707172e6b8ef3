// UT_Path, a normalised path held as drive, folder and name, and UT_PathIterator.
#pragma once

#include <PlumvaleBaseCore/files/PL_FileSpec.h>

#include <QString>

#include <cstdio>

class UT_PathIterator;

/// A path held as three texts: a drive ("C:" or "//server/share", never with a trailing
/// '/'), a folder (starting with '/' when absolute, ending with '/' once normalised) and a
/// name (empty for a folder path). '/' is the only separator; '\' is accepted on input.
/// The same text rules apply on every platform. Operations return false and leave the path
/// unchanged when they fail. Comparisons look at the folder texts only, on purpose.
class PLUMVALE_EXPORT UT_Path {
public:
    /// `filter` replaces characters that are illegal in file names on input.
    explicit UT_Path(bool filter = true) : m_filter(filter) {}
    UT_Path(const QString& path, bool filter = true);

    bool operator==(const UT_Path& o) const { return m_folder == o.m_folder; }
    bool operator!=(const UT_Path& o) const { return m_folder != o.m_folder; }
    bool operator<(const UT_Path& o) const { return m_folder < o.m_folder; }

    bool IsEmpty() const { return m_folder.isEmpty(); }
    bool IsFolderPath() const { return m_name.isEmpty(); }
    bool isRoot() const { return m_folder == QLatin1String("/"); }
    bool IsRelative() const { return !m_folder.isEmpty() && m_folder[0] != QLatin1Char('/'); }

    const QString& GetDrive() const { return m_drive; }
    QString GetPath(bool withName = true) const;
    QString GetBasePath(bool withName = true) const;
    QString GetFileName(bool withExtension = true, bool fromFirstDot = false) const;
    QString GetBaseName(bool fromFirstDot = false) const {
        return GetFileName(false, fromFirstDot);
    }
    QString GetExtension(bool fromFirstDot = false) const;

    bool SetPath(const QString& path);
    bool SetFolderPath(const QString& path);
    bool SetFolder(const QString& folder);
    bool SetFolder(const UT_Path& other) { return SetFolder(other.GetPath(true)); }
    bool SetDrive(const QString& drive);
    bool SetFileName(const QString& name);
    bool AddName(const QString& name);
    bool AddName(const char* utf8) { return AddName(QString::fromUtf8(utf8)); }
    bool AddFolder(const QString& folder);
    bool AddFolder(const char* utf8) { return AddFolder(QString::fromUtf8(utf8)); }
    bool AddFolder(const UT_Path& other);
    bool AddExtension(const QString& ext);
    bool SetExtension(const QString& ext, bool fromFirstDot = false);
    /// Clears the name, else removes the folder's last component (see the class tests).
    bool Up();
    /// Numbers the name ("scene_1.old.txt", ...) until it names nothing that exists; false
    /// after 999 tries.
    bool MakeUniqueFileName();

    const PL_FileSpec& GetFileSpec() const;
    UT_PathIterator GetFolderIterator() const;

    bool Exists() const { return GetFileSpec().IsExists(); }
    bool IsFile() const { return GetFileSpec().IsFile(); }
    bool IsDirectory() const { return GetFileSpec().IsFolder(); }
    bool IsFolder() const { return GetFileSpec().IsFolder(); }
    bool IsSymbolicLink() const { return GetFileSpec().IsSymbolicLink(); }
    bool IsHidden() const;
    bool CanRead() const { return GetFileSpec().TestAccess(false) == 0; }
    bool CanWrite() const { return GetFileSpec().TestAccess(true) == 0; }
    /// Readable, or writable as well when `write` is set.
    bool IsAccess(bool write = false) const { return GetFileSpec().TestAccess(write) == 0; }
    unsigned GetFileLength() const { return GetFileSpec().GetFileLength(); }
    bool GetFileTime(long long& time) const { return GetFileSpec().GetFileTime(time); }
    std::FILE* GetFileAccess(const char* mode) const { return GetFileSpec().get_fs(mode); }
    /// The path with symbolic links resolved; empty when it does not exist.
    QString GetResolvedPath() const;

    bool Rename(const QString& newName);
    bool Delete();
    bool CreateFolder();

    /// Replaces '\' by '/' and illegal characters by '_' (':' too when `alsoColon`), when
    /// filtering is on.
    QString FilterPath(const QString& text, bool alsoColon) const;
    /// Resolves "." and ".." and doubled '/' in a folder text (leading ".." are kept).
    static QString cleanPath(const QString& folder);

private:
    bool ValidatePath(QString& drive, QString& path, QString& name) const;
    void resetSpec() { m_spec.IFileSpec(); }

    bool m_filter = true;
    QString m_drive;
    QString m_folder;
    QString m_name;
    mutable PL_FileSpec m_spec;
};

/// Walks a folder's entries, each as a UT_Path.
class PLUMVALE_EXPORT UT_PathIterator {
public:
    explicit UT_PathIterator(const UT_Path& folder);

    bool IsEnd() const { return m_current == m_end; }
    const UT_Path& operator*() const { return m_path; }
    const UT_Path* operator->() const { return &m_path; }
    UT_PathIterator& operator++();

private:
    PL_FileSpec::iterator m_current;
    PL_FileSpec::iterator m_end;
    UT_Path m_path;
    PL_FileSpec m_entry;
};
