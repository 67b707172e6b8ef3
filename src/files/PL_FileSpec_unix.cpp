// PL_FileSpec on Linux: status, listing, folder creation and the file operations.
#include <PlumvaleBaseCore/files/OSW_FileInfo.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>

#include "files/FileSystem.h"
#include "files/PathText.h"
#include "platform/Unix.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace plumvale::platform;

namespace {

// Rights of this process's user on a file, from its status: the owner, group or other bits
// that apply, or everything for root.
std::uint32_t rights(const struct stat& st) {
    static const uid_t uid = ::geteuid();
    static const gid_t gid = ::getegid();
    if (uid == 0) return PL_FileInfo::kReadable | PL_FileInfo::kWritable;
    mode_t read = S_IROTH, write = S_IWOTH;
    if (st.st_uid == uid)
        read = S_IRUSR, write = S_IWUSR;
    else if (st.st_gid == gid)
        read = S_IRGRP, write = S_IWGRP;
    return ((st.st_mode & read) ? PL_FileInfo::kReadable : 0u) |
           ((st.st_mode & write) ? PL_FileInfo::kWritable : 0u);
}

std::uint32_t typeBits(mode_t mode) {
    if (S_ISDIR(mode)) return PL_FileInfo::kFolder;
    if (S_ISREG(mode)) return PL_FileInfo::kFile;
    return 0;
}

// A ".lnk" file counts as a shortcut, and as a folder when its target is one.
std::uint32_t shortcutBits(const UT_String& path, std::uint32_t mode) {
    if (!plumvale::files::hasLinkSuffix(path)) return mode;
    mode |= PL_FileInfo::kShortcut;
    const QString target = OSW_FileInfo(path.ToQString()).readLink();
    struct stat st;
    if (!target.isEmpty() && ::stat(target.toLocal8Bit().constData(), &st) == 0 &&
        S_ISDIR(st.st_mode))
        mode = (mode & ~PL_FileInfo::kFile) | PL_FileInfo::kFolder;
    return mode;
}

// Status of `name` relative to the folder `dirFd` (AT_FDCWD for a full path). A symbolic
// link carries the shortcut flag and the type of its target; a dangling one is a shortcut
// of no type.
PL_FileInfo statAt(int dirFd, const char* name, const UT_String& path) {
    struct stat st;
    if (::fstatat(dirFd, name, &st, AT_SYMLINK_NOFOLLOW) != 0)
        return PL_FileInfo(0, 0, PL_FileInfo::kError);
    std::uint32_t link = 0;
    if (S_ISLNK(st.st_mode)) {
        link = PL_FileInfo::kShortcut;
        struct stat target;
        if (::fstatat(dirFd, name, &target, 0) != 0) return PL_FileInfo(st.st_mtime, 0, link);
        st = target;
    }
    const std::uint32_t mode = shortcutBits(path, typeBits(st.st_mode) | rights(st) | link);
    return PL_FileInfo(st.st_mtime, static_cast<unsigned>(st.st_size), mode);
}

} // namespace

// An open folder being listed; entries keep it alive until their status is complete.
struct PL_DirStream {
    UniqueFd fd;
    UT_String folder; // with a trailing '/'
    std::vector<char> buffer = std::vector<char>(64 * 1024);
    long used = 0;
    long offset = 0;

    // The next raw entry, or null at the end (or on an error).
    const struct dirent64* next() {
        if (offset >= used) {
            used =
                retryOnEintr([&] { return ::getdents64(fd.get(), buffer.data(), buffer.size()); });
            offset = 0;
            if (used <= 0) return nullptr;
        }
        const auto* entry = reinterpret_cast<const struct dirent64*>(buffer.data() + offset);
        offset += entry->d_reclen;
        return entry;
    }
};

namespace {

// Appends a file name given in UTF-8; ASCII names, the common case, skip the decoder.
void appendName(UT_String& path, const char* name) {
    UT_String::value_type units[256];
    std::size_t n = 0;
    for (; name[n] != '\0'; ++n) {
        const auto byte = static_cast<unsigned char>(name[n]);
        if (byte >= 0x80 || n == sizeof units / sizeof units[0]) {
            path += UT_String(name);
            return;
        }
        units[n] = byte;
    }
    path.append(units, static_cast<UT_String::size_type>(n));
}

} // namespace

const PL_FileInfo& PL_FileSpec::GetFileInfo() const {
    if (m_lazyDir) {
        // A listed entry: its type is known, the rest is read relative to its folder.
        const std::string name = GetName(true).utf8();
        const PL_FileInfo full = statAt(m_lazyDir->fd.get(), name.c_str(), m_path);
        const unsigned char hidden = m_info.GetHiddenState();
        m_info = full;
        m_info.SetHiddenState(hidden);
        m_lazyDir.reset();
    } else if (!m_info.IsInit()) {
        m_info = m_path.empty() ? PL_FileInfo(0, 0, PL_FileInfo::kError)
                                : statAt(AT_FDCWD, m_path.utf8().c_str(), m_path);
    }
    return m_info;
}

void PL_FileSpec::ResetInfo() const {
    m_info.Clear();
    m_lazyDir.reset();
}

PL_FileSpec_iterator::PL_FileSpec_iterator(const PL_FileSpec& folder) {
    if (!folder.IsValid()) return;
    UniqueFd fd = openFd(folder.GetFilePath().utf8().c_str(), O_RDONLY | O_DIRECTORY);
    if (!fd) return;
    m_stream = std::make_shared<PL_DirStream>();
    m_stream->fd = std::move(fd);
    m_stream->folder = folder.GetFilePath();
    if (m_stream->folder.back() != u'/') m_stream->folder += u'/';
    ++*this;
}

PL_FileSpec_iterator& PL_FileSpec_iterator::operator++() {
    if (!m_stream) {
        m_current.IFileSpec();
        return *this;
    }
    while (const struct dirent64* e = m_stream->next()) {
        const char* name = e->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) continue;
        // The path is rebuilt in the entry's own buffer, which keeps its capacity.
        UT_String& path = m_current.m_path;
        path.assign(m_stream->folder);
        appendName(path, name);
        m_current.m_info.Clear();
        // The type comes from the listing; links, unknown types and ".lnk" names need a
        // status call to tell a folder from a file.
        if ((e->d_type != DT_DIR && e->d_type != DT_REG) || plumvale::files::hasLinkSuffix(path)) {
            m_current.m_info = statAt(m_stream->fd.get(), name, path);
            m_current.m_lazyDir.reset();
            return *this;
        }
        m_current.m_info =
            PL_FileInfo(0, 0, e->d_type == DT_DIR ? PL_FileInfo::kFolder : PL_FileInfo::kFile);
        if (m_current.m_lazyDir != m_stream) m_current.m_lazyDir = m_stream;
        return *this;
    }
    m_stream.reset();
    m_current.IFileSpec();
    return *this;
}

namespace plumvale::files {

QString userTempRoot() {
    const QByteArray env = qgetenv("TMPDIR");
    if (!env.isEmpty()) return QString::fromLocal8Bit(env);
    const uid_t uid = ::geteuid();
    const std::string dir = "/tmp/plumvale-" + std::to_string(uid);
    if (::mkdir(dir.c_str(), 0700) != 0 && errno != EEXIST) return QString();
    struct stat st;
    if (::lstat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != uid ||
        (st.st_mode & 0077) != 0)
        return QString();
    return QString::fromStdString(dir);
}

int makeFolder(const UT_String& path) {
    const std::string bytes = path.utf8();
    if (retryOnEintr([&] { return ::mkdir(bytes.c_str(), 0777); }) == 0) return 0;
    const int error = errno;
    struct stat st;
    if (error != EEXIST) return -error;
    return ::stat(bytes.c_str(), &st) == 0 && S_ISDIR(st.st_mode) ? 0 : -ENOTDIR;
}

namespace {

// Reads up to `size` bytes in pieces of at most 1 MiB, stopping at the end of the file.
bool readUpTo(int fd, std::size_t size, QByteArray& out) {
    out.resize(static_cast<qsizetype>(size));
    std::size_t got = 0;
    while (got < size) {
        const std::size_t piece = std::min<std::size_t>(size - got, 0x100000);
        const ssize_t n = readSome(fd, out.data() + got, piece);
        if (n < 0) return false;
        got += static_cast<std::size_t>(n);
        if (static_cast<std::size_t>(n) < piece) break;
    }
    out.truncate(static_cast<qsizetype>(got));
    return true;
}

std::size_t lengthOf(const struct stat& st) {
    return static_cast<std::size_t>(std::max<off_t>(st.st_size, 0));
}

} // namespace

bool readRegularFile(const UT_String& path, std::size_t limit, QByteArray& out) {
    out.clear();
    const std::string bytes = path.utf8();
    struct stat st;
    // Checked before opening, so that a FIFO or a device is never opened at all, and again
    // on the descriptor, in case the name was replaced in between.
    if (::lstat(bytes.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    const UniqueFd fd = openFd(bytes.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!fd || ::fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    return readUpTo(fd.get(), std::min(limit, lengthOf(st)), out);
}

bool readWholeFile(const UT_String& path, QByteArray& out) {
    out.clear();
    // Non-blocking, so that opening a FIFO without a writer does not wait for one.
    const UniqueFd fd = openFd(path.utf8().c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat st;
    if (!fd || ::fstat(fd.get(), &st) != 0 || S_ISDIR(st.st_mode)) return false;
    return readUpTo(fd.get(), S_ISREG(st.st_mode) ? lengthOf(st) : 0, out);
}

int syncPath(const UT_String& path) {
    const UniqueFd fd = openFd(path.utf8().c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!fd) return negatedErrno();
    return retryOnEintr([&] { return ::fsync(fd.get()); }) == 0 ? 0 : negatedErrno();
}

} // namespace plumvale::files

int PL_FileSpec::Delete() const {
    const std::string path = m_path.utf8();
    ResetInfo();
    if (retryOnEintr([&] { return ::unlink(path.c_str()); }) == 0) return 0;
    const int error = errno;
    struct stat st;
    // unlink refuses folders (EISDIR on Linux, EPERM by POSIX): those go through rmdir.
    if ((error == EISDIR || error == EPERM) && ::lstat(path.c_str(), &st) == 0 &&
        S_ISDIR(st.st_mode))
        return retryOnEintr([&] { return ::rmdir(path.c_str()); }) == 0 ? 0 : negatedErrno();
    return -error;
}

int PL_FileSpec::Move(const PL_FileSpec& to) const {
    ResetInfo();
    to.ResetInfo();
    const std::string from = m_path.utf8(), target = to.m_path.utf8();
    return retryOnEintr([&] { return ::rename(from.c_str(), target.c_str()); }) == 0
               ? 0
               : negatedErrno();
}

int PL_FileSpec::Copy(const PL_FileSpec& to, bool overwrite) const {
    using plumvale::files::ExistingTarget;
    const int result = plumvale::files::copyFile(
        m_path, to.m_path, overwrite ? ExistingTarget::Overwrite : ExistingTarget::Refuse);
    to.ResetInfo();
    return result;
}

int PL_FileSpec::Exchange(const PL_FileSpec& other) const {
    ResetInfo();
    other.ResetInfo();
    return ::renameat2(AT_FDCWD, m_path.utf8().c_str(), AT_FDCWD, other.m_path.utf8().c_str(),
                       RENAME_EXCHANGE) == 0
               ? 0
               : negatedErrno();
}

std::FILE* PL_FileSpec::get_fs(const char* mode) const {
    if (!mode) return nullptr;
    const std::string m = std::string(mode) + "e";
    return std::fopen(m_path.utf8().c_str(), m.c_str());
}
