// The system queries of oswUtil on Linux: host names, users, disks, memory and the loader.
#include "files/SystemInfo.h"

#include "platform/Unix.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/types.h>
#include <unistd.h>

namespace plumvale::files {

bool hostName(std::string& out) {
    char buf[256] = {};
    if (::gethostname(buf, sizeof buf - 1) != 0) return false;
    out = buf;
    return true;
}

namespace {

bool lookup(const char* host, int family, std::vector<unsigned char>& out) {
    addrinfo hints{};
    hints.ai_family = family;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    const int rc = ::getaddrinfo(host, nullptr, &hints, &list);
    if (rc != 0 || !list) return false;
    const sockaddr* address = list->ai_addr;
    if (address->sa_family == AF_INET) {
        const auto* in = reinterpret_cast<const sockaddr_in*>(address);
        const auto* bytes = reinterpret_cast<const unsigned char*>(&in->sin_addr);
        out.assign(bytes, bytes + sizeof in->sin_addr);
    } else if (address->sa_family == AF_INET6) {
        const auto* in6 = reinterpret_cast<const sockaddr_in6*>(address);
        const auto* bytes = reinterpret_cast<const unsigned char*>(&in6->sin6_addr);
        out.assign(bytes, bytes + sizeof in6->sin6_addr);
    } else {
        out.clear();
    }
    ::freeaddrinfo(list);
    return true;
}

} // namespace

bool firstHostAddress(const char* host, std::vector<unsigned char>& out) {
    // IPv4 first, as the family's machines name each other by it; IPv6-only hosts still work.
    return host && (lookup(host, AF_INET, out) || lookup(host, AF_UNSPEC, out));
}

QString effectiveUserName() {
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buf(16384);
    if (::getpwuid_r(::geteuid(), &entry, buf.data(), buf.size(), &found) != 0 || !found)
        return QString();
    return QString::fromLocal8Bit(found->pw_name);
}

bool isSuperUser() {
    return ::geteuid() == 0;
}

int addOwnerWrite(const char* path) {
    struct stat st {};
    if (::stat(path, &st) != 0) return platform::negatedErrno();
    if (::chmod(path, (st.st_mode & 07777) | S_IWUSR) != 0) return platform::negatedErrno();
    return 0;
}

int diskSpace(const QString& path, DiskSpace& out) {
    const QByteArray name = QFile::encodeName(path);
    struct statvfs vfs {};
    if (platform::retryOnEintr([&] { return ::statvfs(name.constData(), &vfs); }) != 0)
        return platform::negatedErrno();
    out.total = static_cast<std::uint64_t>(vfs.f_blocks) * vfs.f_frsize;
    out.available = static_cast<std::uint64_t>(vfs.f_bavail) * vfs.f_frsize;
    return 0;
}

unsigned setFileCreationMask(unsigned mask) {
    return static_cast<unsigned>(::umask(static_cast<mode_t>(mask & 0777)));
}

int writeWholeFile(const QString& path, const QByteArray& bytes) {
    const QByteArray name = QFile::encodeName(path);
    const platform::UniqueFd fd =
        platform::openFd(name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY, 0666);
    if (!fd) return platform::negatedErrno();
    return platform::writeAll(fd.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

int makeSymbolicLink(const QString& target, const QString& link) {
    if (::symlink(QFile::encodeName(target).constData(), QFile::encodeName(link).constData()) != 0)
        return platform::negatedErrno();
    return 0;
}

QByteArray readMountTable() {
    QFile file(QStringLiteral("/proc/self/mountinfo"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int probeFolder(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat st {};
    if (platform::retryOnEintr([&] { return ::stat(name.constData(), &st); }) != 0)
        return platform::negatedErrno();
    return S_ISDIR(st.st_mode) ? 0 : -ENOTDIR;
}

bool memoryStatus(MemoryStatus& out) {
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return false;
    bool sawTotal = false;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 2) continue;
        const std::uint64_t kib = fields[1].toULongLong();
        const QByteArray& key = fields[0];
        if (key == "MemTotal:") {
            out.totalPhysical = kib * 1024;
            sawTotal = true;
        } else if (key == "MemAvailable:") {
            out.availablePhysical = kib * 1024;
        } else if (key == "SwapTotal:") {
            out.totalSwap = kib * 1024;
        } else if (key == "SwapFree:") {
            out.freeSwap = kib * 1024;
        }
    }
    return sawTotal;
}

void* openLibrary(const std::string& path) {
    return ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* librarySymbol(void* module, const char* name) {
    return module && name ? ::dlsym(module, name) : nullptr;
}

int closeLibrary(void* module) {
    return module ? ::dlclose(module) : -1;
}

std::string takeLibraryError() {
    const char* text = ::dlerror();
    return text ? std::string(text) : std::string();
}

} // namespace plumvale::files
