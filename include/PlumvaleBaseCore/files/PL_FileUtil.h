// PL_FileUtil: advisory file locks shared by the family's programs, and the safe
// replacement of a file through a backup and a new copy.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

class PL_FileSpec;

namespace PL_FileUtil {

/// The kinds of lock.
enum LockType : int {
    SharedLock = 0,   ///< several holders at once
    ExclusiveLock = 1 ///< one holder only
};

/// An advisory lock on a file, respected by every program that locks the same way: the one
/// byte at offset 0x3FFFFFFE, far past any real content, so that ordinary reads and writes
/// of the file are never in the way.
///
/// Conventions: the lock belongs to the object's own open descriptor, so two lockers in one
/// process are two holders and conflict as two processes would; closing another descriptor
/// of the file does not drop it. The path is read as Latin-1 (other characters are not
/// supported) and the lock file is created when missing (mode 0600) and never deleted.
/// Failures return false; only an invalid type is reported (a trace). Not thread-safe.
class PLUMVALE_EXPORT FileLocker {
public:
    /// Holds nothing.
    FileLocker();
    /// Lock(path, type, true): waits for the lock.
    FileLocker(const QString& path, LockType type);
    /// Unlock().
    ~FileLocker();
    FileLocker(const FileLocker&) = delete;
    FileLocker& operator=(const FileLocker&) = delete;

    /// Opens (or creates) `path` and takes the lock, waiting for it when `wait`, else
    /// failing at once when another holder is in the way. A file that is not readable and
    /// writable is given owner read and write first. A lock held before is released first.
    bool Lock(const QString& path, LockType type, bool wait);
    /// Releases the lock and closes the descriptor; nothing when nothing is held.
    void Unlock();
    /// Whether a lock is held.
    bool isLocked() const { return m_fd >= 0; }
    /// The path given last.
    QString path() const { return m_path; }

private:
    int m_fd = -1;
    QString m_path;
};

/// Renames the file to its backup "<name>~" (an old backup is deleted first), after
/// syncing the new copy NewFileSpec() when there is one, and syncs the folder. True when the
/// file is not readable (nothing to save) or every step succeeded; a failed sync is a
/// failure, since the bytes may not have reached the disk.
PLUMVALE_EXPORT bool BackupFile(const PL_FileSpec& file);
/// Copies the backup back over the file (`overwrite` as PL_FileSpec::Copy takes it); false
/// when there is no readable backup or the copy fails.
PLUMVALE_EXPORT bool RestoreBackupFile(const PL_FileSpec& file, bool overwrite);
/// Where new content is written: the same folder, the name followed by "+".
PLUMVALE_EXPORT PL_FileSpec NewFileSpec(const PL_FileSpec& file);
/// Renames the synced new copy "<name>+" to the name, when it is readable and the name is
/// not (BackupFile moved the old file away), then syncs the folder; false otherwise (a
/// failed sync included).
///
/// The sequence: write NewFileSpec(f), BackupFile(f), RenameNewFile(f), and on failure
/// RestoreBackupFile(f, true). A crash at any step leaves the old or the new bytes under the
/// name or its backup.
PLUMVALE_EXPORT bool RenameNewFile(const PL_FileSpec& file);

} // namespace PL_FileUtil

/// The MD5 digest of a file's whole content, to tell whether the file changed.
///
/// Conventions: an empty or unreadable file has no signature (not computed). Two signatures
/// without a digest are equal, and each is less than the other (kept on purpose); one
/// without a digest is less than one with.
class PLUMVALE_EXPORT PL_FileSignature {
public:
    /// Not computed.
    PL_FileSignature() = default;
    /// Computes the digest of the file, read in pieces; returns whether it was computed (a
    /// file whose length changes while it is read has none).
    bool computeSignature(const PL_FileSpec& file);
    /// Whether a digest is held.
    bool isComputed() const { return m_computed; }
    /// The 16 digest bytes (meaningful when computed).
    const unsigned char* digest() const { return m_digest; }
    /// Equal flags, and equal digests when computed.
    bool operator==(const PL_FileSignature& o) const;
    bool operator!=(const PL_FileSignature& o) const { return !(*this == o); }
    /// See the class comment; computed digests compare as unsigned bytes.
    bool operator<(const PL_FileSignature& o) const;

private:
    bool m_computed = false;
    unsigned char m_digest[16] = {};
};
