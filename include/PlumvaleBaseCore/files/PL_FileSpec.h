// PL_FileInfo, PL_FileSpec and PL_FileSpec_iterator: a file's name, its cached status, listings.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

class UT_RelPath;
class PL_FileSpec_iterator;
struct PL_DirStream;

/// A file's cached status. Mode bits: 0x8000 regular file, 0x4000 folder, 0x0100 readable and
/// 0x0080 writable by this user, 0x10000 shortcut (a symbolic link, or a ".lnk" file). Mode 0
/// means not read yet, 0xFFFFFFFF that the file could not be examined (every query then
/// answers false or 0). Times are seconds since 1970-01-01 UTC.
class PLUMVALE_EXPORT PL_FileInfo {
public:
    /// @{
    /// The mode bits, and kError, the whole mode of a file that could not be examined.
    static constexpr std::uint32_t kError = 0xFFFFFFFFu;
    static constexpr std::uint32_t kFile = 0x8000;
    static constexpr std::uint32_t kFolder = 0x4000;
    static constexpr std::uint32_t kReadable = 0x0100;
    static constexpr std::uint32_t kWritable = 0x0080;
    static constexpr std::uint32_t kShortcut = 0x10000;
    /// @}

    /// @{
    /// "Not read yet" (mode 0), or a status as given.
    PL_FileInfo() = default;
    PL_FileInfo(long long time, unsigned length, unsigned mode)
        /// @}
        : m_mode(mode), m_time(time), m_length(length) {}

    /// @{
    /// Questions on the mode: read at all, failed, regular file, folder, either of the two,
    /// shortcut, readable and writable by this user. Every one but IsInit/IsError is false
    /// for kError.
    bool IsInit() const { return m_mode != 0; }
    bool IsError() const { return m_mode == kError; }
    bool IsFile() const { return has(kFile); }
    bool IsFolder() const { return has(kFolder); }
    bool IsExists() const { return IsFile() || IsFolder(); }
    bool IsSymbolicLink() const { return has(kShortcut); }
    bool CanRead() const { return has(kReadable); }
    bool CanWrite() const { return has(kWritable); }
    /// @}
    /// @{
    /// Modification time, length in bytes (0 for kError; lengths of 4 GiB and more are cut to
    /// their low 32 bits) and the raw mode.
    long long GetModifTime() const { return IsError() ? 0 : m_time; }
    unsigned GetFileLength() const { return IsError() ? 0 : m_length; }
    std::uint32_t GetMode() const { return m_mode; }
    /// @}
    /// 0 unknown, 1 not hidden, 2 hidden.
    unsigned char GetHiddenState() const { return m_hidden; }
    /// Records the hidden state (0, 1 or 2 as above).
    void SetHiddenState(unsigned char state) { m_hidden = state; }
    /// Back to "not read yet".
    void Clear() { *this = PL_FileInfo(); }

private:
    bool has(std::uint32_t bit) const { return m_mode != kError && (m_mode & bit) != 0; }

    std::uint32_t m_mode = 0;
    long long m_time = 0;
    std::uint32_t m_length = 0;
    unsigned char m_hidden = 0;
};

/// The platform name of one file or folder: a path with '/' separators (no trailing '/'
/// except on roots) and its lazily filled PL_FileInfo. Integer results are 0 on success and
/// a negative value on failure: -1, or the negated errno of the failing system call.
class PLUMVALE_EXPORT PL_FileSpec {
public:
    /// The folders and names IFileSpec(SpecialFolderType) resolves; any other value fails.
    enum SpecialFolderType : int {
        TempFile = 1,   ///< a new temporary file name (the file is not created)
        UserFolder = 2, ///< 2 to 6 all resolve to the user's documents folder
        DocumentsFolder = 3,
        PicturesFolder = 4,
        MusicFolder = 5,
        MoviesFolder = 6,
        AppDataFolder = 7,    ///< the per-user application data folder
        SessionTempFolder = 8 ///< "PlumvaleSessionTempDir" in this user's temporary folder
    };

    /// A persistent identity: the UTF-16 code units of a path, two bytes each (little
    /// endian), relative to a reference folder when one was given and a relative form exists.
    struct PLUMVALE_EXPORT SavableID {
        /// The stored form: two bytes per unit, low byte first.
        std::vector<unsigned char> bytes;
        /// The path text back from the bytes (an odd last byte is ignored).
        UT_String path() const;
        /// Byte-wise equality.
        bool operator==(const SavableID& o) const { return bytes == o.bytes; }
    };

    /// A Windows file time: 100 ns ticks since 1601-01-01 UTC, split in two words.
    struct FILETIME {
        /// @{
        /// The low and high 32 bits of the tick count.
        std::uint32_t dwLowDateTime;
        std::uint32_t dwHighDateTime;
        /// @}
    };

    /// The listing iterator over a folder's entries.
    using iterator = PL_FileSpec_iterator;

    /// @{
    /// An empty specification (IsValid() false), or one made as the IFileSpec of the same
    /// arguments makes it; a UT_RelPath is taken as its text.
    PL_FileSpec() = default;
    PL_FileSpec(const UT_String& path) { IFileSpec(path); }
    PL_FileSpec(const UT_RelPath& path);
    PL_FileSpec(const UT_String& path, const PL_FileInfo& info) { IFileSpec(path, info); }
    /// @}

    /// @{
    /// Empties the specification and its cached status.
    void IFileSpec();
    /// '\' becomes '/' and trailing '/' are dropped (a root keeps its own).
    void IFileSpec(const UT_String& path);
    /// @}
    /// @{
    /// The path as above with a status already known (not read again), or a copy of `other`.
    void IFileSpec(const UT_String& path, const PL_FileInfo& info);
    void IFileSpec(const PL_FileSpec& other) { *this = other; }
    /// @}
    /// `rel` taken relative to the folder `base` ("./", "../" understood); an absolute `rel`
    /// is taken as it is.
    void IFileSpec(const UT_String& rel, const PL_FileSpec& base);
    /// The path stored in `id`, taken relative to `base` when one is given.
    void IFileSpec(const SavableID& id, const PL_FileSpec* base);
    /// 0, or a negative value with the path left empty (-1 for an unknown type).
    int IFileSpec(SpecialFolderType type);

    /// Whether the path is non-empty.
    bool IsValid() const { return !m_path.empty(); }
    /// @{
    /// Exact, case-sensitive comparison of the path texts (the status is not compared).
    bool operator==(const PL_FileSpec& o) const { return m_path == o.m_path; }
    bool operator!=(const PL_FileSpec& o) const { return !(m_path == o.m_path); }
    bool operator<(const PL_FileSpec& o) const { return m_path < o.m_path; }
    /// @}

    /// The path.
    const UT_String& GetFilePath() const { return m_path; }
    /// Native separators ('/' on this platform).
    UT_String GetDisplayFilePath() const { return m_path; }
    /// @{
    /// The path in UTF-8, or as UTF-16 units.
    std::string GetUTF8Path() const { return m_path.utf8(); }
    std::u16string GetWchartFileName() const;
    /// @}

    /// The text after the last '/', one trailing '/' ignored; without the extension the text
    /// is cut at its last '.'.
    UT_String GetName(bool withExtension = true) const;
    /// The name with its extension, for display.
    UT_String GetDisplayName() const { return GetName(true); }
    /// The text after the last '.' of the name; empty without one.
    UT_String GetExtension() const;
    /// The extension into `out`; false when there is none.
    bool GetExtension(UT_String& out) const;
    /// Case-insensitive comparison of the extension (without its dot).
    bool HasExtension(const UT_String& ext) const;
    /// Replaces the extension, or appends "." + ext when the name has none.
    void SetExtension(const UT_String& ext);
    /// Appends "." + ext to the name, whatever extension it has.
    void AddExtension(const UT_String& ext);
    /// Appends a component after a '/'.
    void Add(const UT_String& component);
    /// The parent folder; false at a root or for a bare name.
    bool Up();
    /// The path from `base` to this: "../" per level up, "./" in front when this lies inside
    /// `base`. -1 when the two have no common root.
    int GetRelativePath(UT_String& out, const PL_FileSpec& base) const;
    /// -1 when the file is not readable.
    int GetSavableID(SavableID& id, const PL_FileSpec* base) const;

    /// The complete status, read now if it was not yet.
    const PL_FileInfo& GetFileInfo() const;
    /// @{
    /// Type questions; a listed entry answers them from the listing without a status call.
    /// False when the file could not be examined.
    bool IsFile() const { return typeInfo().IsFile(); }
    bool IsFolder() const { return typeInfo().IsFolder(); }
    bool IsExists() const { return typeInfo().IsExists(); }
    bool IsSymbolicLink() const { return typeInfo().IsSymbolicLink(); }
    /// @}
    /// A name starting with '.'.
    bool IsHidden() const;
    /// The length in bytes; 0 when the file could not be examined.
    unsigned GetFileLength() const { return GetFileInfo().GetFileLength(); }
    /// False when the file could not be examined.
    bool GetFileTime(long long& time) const;
    /// 0 when readable (or writable), else -1.
    int TestAccess(bool write) const;
    /// "//server/share".
    bool IsShare() const;
    /// Forgets the cached status.
    void ResetInfo() const;

    /// Creates the folder and its missing parents (mode 0777 less the umask); an existing
    /// folder is success; a relative path fails with -1.
    int CreateFolder() const;
    /// unlink, or rmdir for a folder.
    int Delete() const;
    /// Renames to `newName` in the same folder (a text with '/' is a full new path).
    int Rename(const UT_String& newName) const;
    /// Renames to the path `to`, replacing a file there; fails across file systems (-EXDEV).
    int Move(const PL_FileSpec& to) const;
    /// Copies the bytes and the permission bits; an existing target is replaced only when
    /// `overwrite` is true (else -EEXIST).
    int Copy(const PL_FileSpec& to, bool overwrite) const;
    /// Swaps the two names atomically.
    int Exchange(const PL_FileSpec& other) const;

    /// fopen with close-on-exec; null on failure.
    std::FILE* get_fs(const char* mode) const;
    /// A new std::filebuf opened with an fopen-style mode; the caller owns it.
    std::filebuf* getFileBuf(const char* mode, bool& ok) const;
    /// @{
    /// getFileBuf("rb") and getFileBuf("wb").
    std::filebuf* getInFileBuf(bool& ok) const { return getFileBuf("rb", ok); }
    std::filebuf* getOutFileBuf(bool& ok) const { return getFileBuf("wb", ok); }
    /// @}

    /// @{
    /// Lists this folder (an empty listing when it cannot be opened) and the end iterator.
    iterator begin() const;
    iterator end() const;
    /// @}

    /// Seconds since 1970-01-01 UTC of a Windows file time (sub-second ticks dropped).
    static void ConvertFileTimeToTimeT(const FILETIME* time, long long& out);
    /// Paths have no short form here: returns the argument.
    static UT_String ConvertToLongName(const UT_String& path) { return path; }
    /// The XDG public share folder where Qt provides it, else empty.
    static UT_String WindowsPublicDocumentPath();

private:
    friend class PL_FileSpec_iterator;

    const PL_FileInfo& typeInfo() const { return m_lazyDir ? m_info : GetFileInfo(); }

    UT_String m_path;
    mutable PL_FileInfo m_info;
    /// The open folder a listed entry came from, kept until the entry's status is completed
    /// relative to it.
    mutable std::shared_ptr<PL_DirStream> m_lazyDir;
};

/// Lists a folder's entries ("." and ".." skipped). Each entry comes with its type from the
/// listing itself; its size, time and rights are read on first request. The end iterator is
/// the one whose current entry is empty.
class PLUMVALE_EXPORT PL_FileSpec_iterator {
public:
    /// @{
    /// The end iterator, or the first entry of `folder` (the end when it cannot be listed).
    PL_FileSpec_iterator() = default;
    explicit PL_FileSpec_iterator(const PL_FileSpec& folder);
    /// @}

    /// @{
    /// The current entry, valid until the next increment; ++ moves to the next entry or to the
    /// end.
    const PL_FileSpec& operator*() const { return m_current; }
    const PL_FileSpec* operator->() const { return &m_current; }
    PL_FileSpec_iterator& operator++();
    /// @}
    /// @{
    /// Iterators compare by their current entry's path, so any two at the end are equal.
    bool operator==(const PL_FileSpec_iterator& o) const { return m_current == o.m_current; }
    bool operator!=(const PL_FileSpec_iterator& o) const { return !(*this == o); }
    /// @}

private:
    std::shared_ptr<PL_DirStream> m_stream;
    PL_FileSpec m_current;
};
