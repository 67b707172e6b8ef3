// Internal: the file-system calls that the portable file code asks of the platform.
#pragma once

#include <PlumvaleBaseCore/text/UT_String.h>

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <vector>

namespace plumvale::files {

/// This user's own temporary root: $TMPDIR, else a private folder of this user that the
/// platform creates (on Linux /tmp/plumvale-<uid>, mode 0700, used only when it is a real
/// folder owned by this user). Empty when no safe folder exists.
QString userTempRoot();

/// Creates the one folder `path` (its parent must exist): 0 when made or already a folder,
/// -ENOTDIR when something else has the name, the negated system error otherwise.
int makeFolder(const UT_String& path);

/// Reads at most `limit` bytes of the regular file `path` into `out`. Never follows a
/// symbolic link and never blocks on a FIFO, socket or device: false for anything that is
/// not a regular file, and on a read error.
bool readRegularFile(const UT_String& path, std::size_t limit, QByteArray& out);

/// Reads the file `path` (links followed) as its length announces, in pieces of at most
/// 1 MiB, stopping early at a short read. False when it cannot be opened or is a folder,
/// or on a read error; a FIFO or device, whose length is 0, reads as empty.
bool readWholeFile(const UT_String& path, QByteArray& out);

/// Flushes the file or folder `path` to the disk (fsync): 0, or the negated errno.
int syncPath(const UT_String& path);

/// What copyFile does with a target that exists.
enum class ExistingTarget {
    Refuse,    ///< fail with -EEXIST
    Overwrite, ///< truncate and write it in place (its inode, links and owner stay)
    Replace    ///< write a synced copy beside it, then rename that over it: the name holds the
               ///< old or the new bytes at every moment, never a part
};

/// Copies the regular file `from` (links followed) to `to`, with the source's permission
/// bits: 0, or the negated errno of the step that failed (-EISDIR for a folder source).
/// A failed Replace leaves the target untouched and no temporary file behind.
int copyFile(const UT_String& from, const UT_String& to, ExistingTarget existing);

/// Renames `from` to `to`. An existing `to` is replaced when `replace` (a file only), else
/// the move fails with -EEXIST without a gap in which another name could slip in. Across
/// file systems (-EXDEV) a regular file is copied as copyFile (synced) and the source then
/// removed; a folder is not moved (-EXDEV). 0 or the negated errno; on a failure the source
/// is still there.
int moveFile(const UT_String& from, const UT_String& to, bool replace);

/// Deletes the file or link `path` (not a folder: -EISDIR): 0 or the negated errno.
int removeFile(const UT_String& path);

/// Writes `data` as the whole content of `path` (created or truncated) and syncs it, with
/// the permission bits of the file `modeOf` (0666 less the umask when that cannot be
/// read): 0 or the negated errno of the step that failed.
int writeWholeFile(const UT_String& path, const QByteArray& data, const UT_String& modeOf);

/// Removes `path`: a file or a link itself (never its target), or a folder with everything
/// in it. The walk opens each folder without following links, relative to its parent, so a
/// folder swapped for a link during the walk only loses the link. 0, or the negated errno
/// of the first failure (the walk goes on past it; what could be removed is gone). A tree
/// deeper than the descriptors a process may open fails with -EMFILE.
int removeTree(const UT_String& path);

/// The names in the folder `path` ("." and ".." left out), in the order the system lists
/// them: 0, or the negated errno when it cannot be listed.
int listFolder(const UT_String& path, std::vector<UT_String>& names);

/// Removes the empty folder `path`: 0 or the negated errno.
int removeFolder(const UT_String& path);

} // namespace plumvale::files
