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
    /// Sets the filter flag, then SetPath(path); a path that fails validation leaves it empty.
    UT_Path(const QString& path, bool filter = true);

    /// @{
    /// Compare the folder texts only, exactly and case-sensitively: paths differing only in
    /// drive or name are equal. Deliberate, and kept.
    bool operator==(const UT_Path& o) const { return m_folder == o.m_folder; }
    bool operator!=(const UT_Path& o) const { return m_folder != o.m_folder; }
    bool operator<(const UT_Path& o) const { return m_folder < o.m_folder; }
    /// @}

    /// @{
    /// The folder is empty; the name is empty; the folder is exactly "/" (drive and name not
    /// looked at); the folder is non-empty and does not start with '/'.
    bool IsEmpty() const { return m_folder.isEmpty(); }
    bool IsFolderPath() const { return m_name.isEmpty(); }
    bool isRoot() const { return m_folder == QLatin1String("/"); }
    bool IsRelative() const { return !m_folder.isEmpty() && m_folder[0] != QLatin1Char('/'); }
    /// @}

    /// The drive: empty, "C:" or "//server/share".
    const QString& GetDrive() const { return m_drive; }
    /// @{
    /// Texts of the parts. GetPath: drive (unless relative) + folder, then the name; with
    /// `withName` and no name, a trailing '/' is dropped from a text of two or more characters
    /// ("/" stays, "C:/a/" gives "C:/a"). GetBasePath: the folder without the drive, then the
    /// name. GetFileName/GetBaseName/GetExtension cut the name at its last '.', or its first
    /// with `fromFirstDot`; a name without '.' has no extension.
    QString GetPath(bool withName = true) const;
    QString GetBasePath(bool withName = true) const;
    QString GetFileName(bool withExtension = true, bool fromFirstDot = false) const;
    QString GetBaseName(bool fromFirstDot = false) const {
        return GetFileName(false, fromFirstDot);
    }
    QString GetExtension(bool fromFirstDot = false) const;
    /// @}

    /// @{
    /// Parse and normalise: '\' to '/', the filter, the drive ("//name/name" or one letter and
    /// ':'; "ab:" fails), "." and ".." resolved. A text without a drive keeps the current
    /// drive. SetFolderPath keeps the current name and drops the text's; SetFolder reads the
    /// whole text as a folder. False, with nothing changed, when the drive does not validate.
    bool SetPath(const QString& path);
    bool SetFolderPath(const QString& path);
    bool SetFolder(const QString& folder);
    bool SetFolder(const UT_Path& other) { return SetFolder(other.GetPath(true)); }
    /// @}
    /// False on a relative path or for a drive that does not validate; else replaces it.
    bool SetDrive(const QString& drive);
    /// Filters `name` as a component (':' too); false when it still holds a '/'.
    bool SetFileName(const QString& name);
    /// @{
    /// Moves the current name (if any) into the folder and takes `name` (UTF-8 for char*) as
    /// the new name, unfiltered; false when it starts with '/'.
    bool AddName(const QString& name);
    bool AddName(const char* utf8) { return AddName(QString::fromUtf8(utf8)); }
    /// @}
    /// @{
    /// Appends a filtered relative folder text and cleans the result (false for a text starting
    /// with '/'); the UT_Path form needs both drives equal and appends other's whole path.
    bool AddFolder(const QString& folder);
    bool AddFolder(const char* utf8) { return AddFolder(QString::fromUtf8(utf8)); }
    bool AddFolder(const UT_Path& other);
    /// @}
    /// Appends "." + ext (no second '.' when the name already ends with one); empty ext does
    /// nothing.
    bool AddExtension(const QString& ext);
    /// Replaces what follows the name's last (or first) '.', or appends "." + ext; false when
    /// ext (one leading '.' dropped) is not made of \w runs joined by single dots.
    bool SetExtension(const QString& ext, bool fromFirstDot = false);
    /// Goes one level up: clears the name when there is one; else drops the folder's trailing
    /// '/' first, then its last component ("/a/b/" -> "/a/b" -> "/a" -> "/"). False at "/" or
    /// with an empty folder.
    bool Up();
    /// Numbers the name ("scene_1.old.txt", ...) until it names nothing that exists; false
    /// after 999 tries.
    bool MakeUniqueFileName();

    /// @{
    /// The file specification of GetPath(true), built on first use and rebuilt after each change;
    /// an iterator over this folder's entries.
    const PL_FileSpec& GetFileSpec() const;
    UT_PathIterator GetFolderIterator() const;
    /// @}

    /// @{
    /// File-system questions through GetFileSpec(); each is false (or 0, or null) when the path
    /// cannot be examined.
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
    /// @}
    /// The path with symbolic links resolved; empty when it does not exist.
    QString GetResolvedPath() const;

    /// @{
    /// Changes on disk through GetFileSpec(): Rename (false when the path does not exist),
    /// Delete, CreateFolder (true when already a folder). False when the system refuses.
    bool Rename(const QString& newName);
    bool Delete();
    bool CreateFolder();
    /// @}

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
    /// The first entry of `folder`; at the end at once when it cannot be listed or is empty.
    explicit UT_PathIterator(const UT_Path& folder);

    /// @{
    /// Whether the listing is done; the current entry as a path inside the folder; the next.
    bool IsEnd() const { return m_current == m_end; }
    const UT_Path& operator*() const { return m_path; }
    const UT_Path* operator->() const { return &m_path; }
    UT_PathIterator& operator++();
    /// @}

private:
    PL_FileSpec::iterator m_current;
    PL_FileSpec::iterator m_end;
    UT_Path m_path;
    PL_FileSpec m_entry;
};
