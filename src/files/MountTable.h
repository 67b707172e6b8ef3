// Internal: the system's table of mounted file systems, and questions asked of it.
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace plumvale::files {

/// One mounted file system.
struct Mount {
    QString folder; ///< where it is mounted
    QString type;   ///< "ext4", "cifs", "nfs4", "fuse.sshfs" ...
    QString source; ///< what is mounted: a device, or "//server/share" for a share
};

/// The entries of a Linux mountinfo text, in order; malformed lines are skipped. Octal
/// escapes (\040 for a blank) are decoded.
std::vector<Mount> parseMountInfo(const QByteArray& text);

/// Whether a file-system type reaches over the network (SMB, NFS, SSHFS, and the like).
bool isNetworkFileSystem(const QString& type);

/// The mount holding the absolute '/'-separated `path`: the one with the longest folder that
/// is `path` or a parent of it, the last mounted among equals; null when none is.
const Mount* mountOf(const std::vector<Mount>& mounts, const QString& path);

} // namespace plumvale::files
