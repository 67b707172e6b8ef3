// PL_FileUtil::FileLocker on Linux: open-file-description locks.
//
// Classic POSIX record locks would be wrong: they never conflict within one process, and
// closing any descriptor of the file drops them all. An open-file-description lock belongs
// to the locker's own descriptor, so two lockers in one process are two holders.
#include <PlumvaleBaseCore/files/PL_FileUtil.h>
#include <PlumvaleBaseCore/text/MSG_Text.h>

#include "platform/Unix.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The byte every program of the family locks.
constexpr off_t kLockOffset = 0x3FFFFFFE;

int setLock(int fd, short type, bool wait) {
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = kLockOffset;
    lock.l_len = 1;
    lock.l_pid = 0; // required for open-file-description locks
    return plumvale::platform::retryOnEintr(
        [&] { return ::fcntl(fd, wait ? F_OFD_SETLKW : F_OFD_SETLK, &lock); });
}

} // namespace

namespace PL_FileUtil {

FileLocker::FileLocker() = default;

FileLocker::FileLocker(const QString& path, LockType type) {
    Lock(path, type, true);
}

FileLocker::~FileLocker() {
    Unlock();
}

bool FileLocker::Lock(const QString& path, LockType type, bool wait) {
    if (type != SharedLock && type != ExclusiveLock) {
        MSG_Scope(MSG_Text("PL_FileUtil::FileLocker", "Invalid lock type"), MSG_Scope::Trace,
                  ErrorCode::NoError);
        return false;
    }
    Unlock();
    m_path = path;
    // Latin-1 only: other characters become '?', as the family's other programs see them.
    const QByteArray name = QFile::encodeName(QString::fromLatin1(path.toLatin1()));
    if (::access(name.constData(), F_OK) == 0 && ::access(name.constData(), R_OK | W_OK) != 0)
        ::chmod(name.constData(), 0600);
    plumvale::platform::UniqueFd fd =
        plumvale::platform::openFd(name.constData(), O_RDWR | O_CREAT, 0600);
    if (!fd || setLock(fd.get(), type == ExclusiveLock ? F_WRLCK : F_RDLCK, wait) != 0)
        return false;
    m_fd = fd.release();
    return true;
}

void FileLocker::Unlock() {
    if (m_fd < 0) return;
    setLock(m_fd, F_UNLCK, false);
    plumvale::platform::UniqueFd(m_fd).close();
    m_fd = -1;
}

} // namespace PL_FileUtil
