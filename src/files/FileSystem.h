// Internal: the file-system calls that the portable file code asks of the platform.
#pragma once

#include <PlumvaleBaseCore/text/UT_String.h>

#include <QByteArray>
#include <QString>

#include <cstddef>

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

} // namespace plumvale::files
