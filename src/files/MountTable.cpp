// Parsing of the mount table and the questions the remapper asks of it.
#include "files/MountTable.h"

#include <QList>

namespace plumvale::files {

namespace {

QString unescaped(const QByteArray& field) {
    const char* f = field.constData();
    QByteArray out;
    for (qsizetype i = 0; i < field.size(); ++i) {
        const auto octal = [f](qsizetype k) { return f[k] >= '0' && f[k] <= '7'; };
        if (f[i] == '\\' && i + 3 < field.size() && octal(i + 1) && octal(i + 2) && octal(i + 3)) {
            out.append(static_cast<char>(((f[i + 1] - '0') << 6) | ((f[i + 2] - '0') << 3) |
                                         (f[i + 3] - '0')));
            i += 3;
        } else {
            out.append(f[i]);
        }
    }
    return QString::fromUtf8(out);
}

} // namespace

std::vector<Mount> parseMountInfo(const QByteArray& text) {
    std::vector<Mount> mounts;
    for (const QByteArray& line : text.split('\n')) {
        // id parent major:minor root folder options [optional fields...] - type source ...
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (fields.size() < 5 || dash < 6 || dash + 2 >= fields.size()) continue;
        mounts.push_back(
            {unescaped(fields[4]), unescaped(fields[dash + 1]), unescaped(fields[dash + 2])});
    }
    return mounts;
}

bool isNetworkFileSystem(const QString& type) {
    static const char* const kNetwork[] = {"cifs",  "smb3",  "smbfs",     "nfs",    "nfs4",
                                           "9p",    "afs",   "ceph",      "lustre", "gfs2",
                                           "ocfs2", "davfs", "glusterfs", "beegfs"};
    for (const char* name : kNetwork)
        if (type == QLatin1String(name)) return true;
    // FUSE file systems over the network: sshfs, glusterfs, s3fs, rclone ...
    return type.startsWith(QLatin1String("fuse.")) &&
           (type.endsWith(QLatin1String("sshfs")) || type.endsWith(QLatin1String("glusterfs")) ||
            type.endsWith(QLatin1String("s3fs")) || type.endsWith(QLatin1String("rclone")));
}

const Mount* mountOf(const std::vector<Mount>& mounts, const QString& path) {
    const Mount* best = nullptr;
    for (const Mount& m : mounts) {
        const bool holds = m.folder == QLatin1String("/") || path == m.folder ||
                           path.startsWith(m.folder + QLatin1Char('/'));
        if (holds && (!best || m.folder.size() >= best->folder.size())) best = &m;
    }
    return best;
}

} // namespace plumvale::files
