// PL_FileUtil's safe replacement and PL_FileSignature: portable, over PL_FileSpec.
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/PL_FileUtil.h>

#include "files/FileSystem.h"

#include <QCryptographicHash>
#include <QFile>

#include <cstring>
#include <vector>

namespace {

PL_FileSpec withSuffix(const PL_FileSpec& file, const char* suffix) {
    return PL_FileSpec(UT_String(file.GetFilePath().ToQString() + QLatin1String(suffix)));
}

bool isReadable(const PL_FileSpec& file) {
    file.ResetInfo();
    return file.TestAccess(false) == 0;
}

// Makes a rename in the file's folder durable: true when it is.
bool syncFolderOf(const PL_FileSpec& file) {
    PL_FileSpec folder(file);
    return plumvale::files::syncPath(folder.Up() ? folder.GetFilePath() : UT_String(".")) == 0;
}

} // namespace

namespace PL_FileUtil {

PL_FileSpec NewFileSpec(const PL_FileSpec& file) {
    return withSuffix(file, "+");
}

bool BackupFile(const PL_FileSpec& file) {
    if (!isReadable(file)) return true;
    const PL_FileSpec backup = withSuffix(file, "~");
    backup.ResetInfo();
    if ((backup.IsExists() || backup.IsSymbolicLink()) && backup.Delete() != 0) return false;
    // The new bytes reach the disk before the old file leaves its name.
    const PL_FileSpec fresh = NewFileSpec(file);
    if (isReadable(fresh) && plumvale::files::syncPath(fresh.GetFilePath()) != 0) return false;
    return file.Move(backup) == 0 && syncFolderOf(file);
}

bool RestoreBackupFile(const PL_FileSpec& file, bool overwrite) {
    const PL_FileSpec backup = withSuffix(file, "~");
    return isReadable(backup) && backup.Copy(file, overwrite) == 0;
}

bool RenameNewFile(const PL_FileSpec& file) {
    const PL_FileSpec fresh = NewFileSpec(file);
    if (!isReadable(fresh) || isReadable(file)) return false;
    if (plumvale::files::syncPath(fresh.GetFilePath()) != 0) return false;
    return fresh.Move(file) == 0 && syncFolderOf(file);
}

} // namespace PL_FileUtil

bool PL_FileSignature::computeSignature(const PL_FileSpec& file) {
    m_computed = false;
    QFile in(file.GetFilePath().ToQString());
    if (!in.open(QIODevice::ReadOnly)) return false;
    // The length is taken first, as for one read of the whole file: an empty file, or one
    // that changes length while it is read, has no signature.
    const qint64 length = in.size();
    if (length <= 0) return false;
    QCryptographicHash md5(QCryptographicHash::Md5);
    std::vector<char> piece(std::size_t(1) << 20);
    qint64 total = 0;
    for (;;) {
        const qint64 got = in.read(piece.data(), static_cast<qint64>(piece.size()));
        if (got < 0) return false;
        if (got == 0) break;
        md5.addData(QByteArray::fromRawData(piece.data(), static_cast<int>(got)));
        total += got;
    }
    if (total != length) return false;
    const QByteArray digest = md5.result();
    std::memcpy(m_digest, digest.constData(), sizeof m_digest);
    m_computed = true;
    return true;
}

bool PL_FileSignature::operator==(const PL_FileSignature& o) const {
    if (m_computed != o.m_computed) return false;
    return !m_computed || std::memcmp(m_digest, o.m_digest, sizeof m_digest) == 0;
}

bool PL_FileSignature::operator<(const PL_FileSignature& o) const {
    if (m_computed != o.m_computed) return !m_computed;
    if (!m_computed) return true; // two without a digest: each is less than the other
    return std::memcmp(m_digest, o.m_digest, sizeof m_digest) < 0;
}
