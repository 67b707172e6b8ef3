// Whole-file operations on Linux: copies, moves across file systems and tree removal.
#include "files/FileSystem.h"
#include "platform/Unix.h"

#include <atomic>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace plumvale::platform;

namespace plumvale::files {

namespace {

// Copies the rest of `in` to `out`: in the kernel where the file systems allow it, else
// through a buffer. 0 or the negated errno.
int copyContents(int in, int out) {
    for (;;) {
        const ssize_t n =
            retryOnEintr([&] { return ::copy_file_range(in, nullptr, out, nullptr, 1 << 30, 0); });
        if (n == 0) return 0;
        if (n > 0) continue;
        if (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP) break;
        return negatedErrno();
    }
    std::vector<char> buffer(1 << 20);
    for (;;) {
        const ssize_t n = readSome(in, buffer.data(), buffer.size());
        if (n <= 0) return static_cast<int>(n);
        if (const int r = writeAll(out, buffer.data(), static_cast<std::size_t>(n))) return r;
    }
}

// Copies into the open `out`, sets the permission bits and closes it (syncing first when
// asked): 0 or the first negated errno.
int fillTarget(int in, UniqueFd out, mode_t mode, bool sync) {
    int result = copyContents(in, out.get());
    // The target's permissions follow the source's, whatever the umask did at creation.
    if (result == 0 && retryOnEintr([&] { return ::fchmod(out.get(), mode); }) != 0)
        result = negatedErrno();
    if (result == 0 && sync && retryOnEintr([&] { return ::fsync(out.get()); }) != 0)
        result = negatedErrno();
    const int closed = out.close();
    return result != 0 ? result : closed;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// A new file beside `target`, named ".<name>.<pid>-<n>.tmp", created exclusively.
UniqueFd createBeside(const std::string& target, mode_t mode, std::string& name) {
    static std::atomic<unsigned> counter{0};
    const std::size_t slash = target.find_last_of('/');
    const std::string prefix =
        slash == std::string::npos ? std::string() : target.substr(0, slash + 1);
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = prefix + "." + base + "." + std::to_string(::getpid()) + "-" +
               std::to_string(++counter) + ".tmp";
        UniqueFd fd = openFd(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        if (fd || errno != EEXIST) return fd;
    }
    return UniqueFd();
}

int syncFolder(const std::string& path) {
    const UniqueFd fd = openFd(path.c_str(), O_RDONLY | O_DIRECTORY);
    if (!fd) return negatedErrno();
    return retryOnEintr([&] { return ::fsync(fd.get()); }) == 0 ? 0 : negatedErrno();
}

int replaceWithCopy(int in, const std::string& to, mode_t mode) {
    std::string temporary;
    UniqueFd out = createBeside(to, mode, temporary);
    if (!out) return negatedErrno();
    int result = fillTarget(in, std::move(out), mode, true);
    if (result == 0 && retryOnEintr([&] { return ::rename(temporary.c_str(), to.c_str()); }) != 0)
        result = negatedErrno();
    if (result != 0) {
        ::unlink(temporary.c_str());
        return result;
    }
    return syncFolder(folderOf(to));
}

} // namespace

int copyFile(const UT_String& from, const UT_String& to, ExistingTarget existing) {
    const UniqueFd in = openFd(from.utf8().c_str(), O_RDONLY);
    if (!in) return negatedErrno();
    struct stat st;
    if (::fstat(in.get(), &st) != 0) return negatedErrno();
    if (S_ISDIR(st.st_mode)) return -EISDIR;
    const mode_t mode = st.st_mode & 07777;
    const std::string target = to.utf8();
    if (existing == ExistingTarget::Replace) return replaceWithCopy(in.get(), target, mode);
    const int flags = O_WRONLY | O_CREAT | (existing == ExistingTarget::Refuse ? O_EXCL : O_TRUNC);
    UniqueFd out = openFd(target.c_str(), flags, mode);
    if (!out) return negatedErrno();
    const int result = fillTarget(in.get(), std::move(out), mode, false);
    // A target made here (exclusively) is not left behind half written.
    if (result != 0 && existing == ExistingTarget::Refuse) ::unlink(target.c_str());
    return result;
}

namespace {

// rename, or with `replace` false renameat2's no-replace rename; a file system without that
// gets a check then a rename.
int renamePath(const char* from, const char* to, bool replace) {
    if (replace) return retryOnEintr([&] { return ::rename(from, to); });
    const int r =
        retryOnEintr([&] { return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE); });
    if (r == 0 || (errno != EINVAL && errno != ENOSYS)) return r;
    struct stat st;
    if (::lstat(to, &st) == 0) {
        errno = EEXIST;
        return -1;
    }
    return retryOnEintr([&] { return ::rename(from, to); });
}

} // namespace

int moveFile(const UT_String& from, const UT_String& to, bool replace) {
    const std::string source = from.utf8();
    const std::string target = to.utf8();
    if (renamePath(source.c_str(), target.c_str(), replace) == 0) return 0;
    if (errno != EXDEV) return negatedErrno();
    struct stat st;
    if (::lstat(source.c_str(), &st) != 0) return negatedErrno();
    if (!S_ISREG(st.st_mode)) return -EXDEV;
    if (replace) {
        if (const int r = copyFile(from, to, ExistingTarget::Replace)) return r;
    } else {
        if (const int r = copyFile(from, to, ExistingTarget::Refuse)) return r;
        // The copy reaches the disk before the source goes; else it is taken back.
        if (const int r = syncPath(to)) {
            ::unlink(target.c_str());
            return r;
        }
    }
    return removeFile(from);
}

int removeFile(const UT_String& path) {
    const std::string bytes = path.utf8();
    return retryOnEintr([&] { return ::unlink(bytes.c_str()); }) == 0 ? 0 : negatedErrno();
}

int writeWholeFile(const UT_String& path, const QByteArray& data, const UT_String& modeOf) {
    struct stat st;
    const bool known = ::stat(modeOf.utf8().c_str(), &st) == 0;
    UniqueFd out = openFd(path.utf8().c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (!out) return negatedErrno();
    int result = writeAll(out.get(), data.constData(), static_cast<std::size_t>(data.size()));
    if (result == 0 && known &&
        retryOnEintr([&] { return ::fchmod(out.get(), st.st_mode & 07777); }) != 0)
        result = negatedErrno();
    if (result == 0 && retryOnEintr([&] { return ::fsync(out.get()); }) != 0)
        result = negatedErrno();
    const int closed = out.close();
    return result != 0 ? result : closed;
}

int removeFolder(const UT_String& path) {
    const std::string bytes = path.utf8();
    return retryOnEintr([&] { return ::rmdir(bytes.c_str()); }) == 0 ? 0 : negatedErrno();
}

namespace {

// The names in the open folder `dirFd`, without "." and "..": read whole before anything is
// removed, since removing entries while listing may skip some.
int listNames(int dirFd, std::vector<std::string>& names) {
    std::vector<char> buffer(32 * 1024);
    ::lseek(dirFd, 0, SEEK_SET);
    for (;;) {
        const long used =
            retryOnEintr([&] { return ::getdents64(dirFd, buffer.data(), buffer.size()); });
        if (used < 0) return negatedErrno();
        if (used == 0) return 0;
        for (long offset = 0; offset < used;) {
            const auto* e = reinterpret_cast<const struct dirent64*>(buffer.data() + offset);
            offset += e->d_reclen;
            const char* n = e->d_name;
            if (n[0] == '.' && (n[1] == '\0' || (n[1] == '.' && n[2] == '\0'))) continue;
            names.emplace_back(n);
        }
    }
}

// Removes `name` in the folder `dirFd`: unlinked when it is not a folder; otherwise opened
// without following a link, emptied, and removed. 0 or the first negated errno.
int removeAt(int dirFd, const char* name) {
    if (retryOnEintr([&] { return ::unlinkat(dirFd, name, 0); }) == 0) return 0;
    if (errno != EISDIR && errno != EPERM) return negatedErrno();
    UniqueFd folder = openFdAt(dirFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!folder) {
        // Replaced by a link or a file since the unlink: that is removed as it is now.
        if (errno != ENOTDIR && errno != ELOOP) return negatedErrno();
        return retryOnEintr([&] { return ::unlinkat(dirFd, name, 0); }) == 0 ? 0 : negatedErrno();
    }
    std::vector<std::string> names;
    int result = listNames(folder.get(), names);
    for (const std::string& entry : names) {
        const int r = removeAt(folder.get(), entry.c_str());
        if (result == 0) result = r;
    }
    folder.reset();
    if (retryOnEintr([&] { return ::unlinkat(dirFd, name, AT_REMOVEDIR); }) != 0 && result == 0)
        result = negatedErrno();
    return result;
}

} // namespace

int listFolder(const UT_String& path, std::vector<UT_String>& names) {
    names.clear();
    const UniqueFd folder = openFd(path.utf8().c_str(), O_RDONLY | O_DIRECTORY);
    if (!folder) return negatedErrno();
    std::vector<std::string> bytes;
    const int result = listNames(folder.get(), bytes);
    for (const std::string& name : bytes)
        names.emplace_back(name.c_str());
    return result;
}

int removeTree(const UT_String& path) {
    std::string bytes = path.utf8();
    while (bytes.size() > 1 && bytes.back() == '/')
        bytes.pop_back();
    return removeAt(AT_FDCWD, bytes.c_str());
}

} // namespace plumvale::files
