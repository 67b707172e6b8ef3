// PL_FileSpec on Linux: status, listing, temporary and special folders, file operations.
#include <PlumvaleBaseCore/files/OSW_FileInfo.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>

#include <QStandardPaths>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <typename Call>
auto retryOnEintr(Call call) {
    for (;;) {
        const auto r = call();
        if (r >= 0 || errno != EINTR) return r;
    }
}

int negatedErrno() {
    return errno > 0 ? -errno : -1;
}

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

bool endsWithLnk(const UT_String& path) {
    const std::size_t n = path.size();
    return n >= 4 && path[n - 4] == u'.' && path[n - 3] == u'l' && path[n - 2] == u'n' &&
           path[n - 1] == u'k';
}

// A ".lnk" file counts as a shortcut, and as a folder when its target is one.
std::uint32_t shortcutBits(const UT_String& path, std::uint32_t mode) {
    if (!endsWithLnk(path)) return mode;
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

QString userTempRoot();

} // namespace

// An open folder being listed; entries keep it alive until their status is complete.
struct PL_DirStream {
    int fd = -1;
    UT_String folder; // with a trailing '/'
    std::vector<char> buffer = std::vector<char>(64 * 1024);
    long used = 0;
    long offset = 0;

    ~PL_DirStream() {
        if (fd >= 0) ::close(fd);
    }

    // The next raw entry, or null at the end (or on an error).
    const struct dirent64* next() {
        if (offset >= used) {
            used = retryOnEintr([&] { return ::getdents64(fd, buffer.data(), buffer.size()); });
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
        const PL_FileInfo full = statAt(m_lazyDir->fd, name.c_str(), m_path);
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
    const int fd = retryOnEintr([&] {
        return ::open(folder.GetFilePath().utf8().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    });
    if (fd < 0) return;
    m_stream = std::make_shared<PL_DirStream>();
    m_stream->fd = fd;
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
        if ((e->d_type != DT_DIR && e->d_type != DT_REG) || endsWithLnk(path)) {
            m_current.m_info = statAt(m_stream->fd, name, path);
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

namespace {

// This user's own temporary folder: $TMPDIR, else /tmp/plumvale-<uid> (mode 0700), used only
// when it is a real folder owned by this user. Empty when no safe folder exists.
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

UT_String underTemp(const char* component) {
    QString root = userTempRoot();
    if (root.isEmpty()) return UT_String();
    if (!root.endsWith(QLatin1Char('/'))) root += QLatin1Char('/');
    return UT_String(root + QString::fromLatin1(component));
}

// Deletes a folder and everything in it (links are removed, never followed).
int removeTree(const UT_String& path) {
    const PL_FileSpec tree(path);
    for (PL_FileSpec_iterator it(tree), end; it != end; ++it) {
        const bool folder = it->IsFolder() && !it->IsSymbolicLink();
        const int r = folder ? removeTree(it->GetFilePath()) : it->Delete();
        if (r != 0) return r;
    }
    return ::rmdir(path.utf8().c_str()) == 0 || errno == ENOENT ? 0 : negatedErrno();
}

UT_String standardLocation(QStandardPaths::StandardLocation location) {
    return UT_String(QStandardPaths::writableLocation(location));
}

} // namespace

int PL_FileSpec::IFileSpec(SpecialFolderType type) {
    IFileSpec();
    switch (type) {
    case TempFile: {
        static int s_status = 1; // 1 = not prepared yet
        static UT_String s_folder;
        static int s_counter = 0;
        if (s_status == 1) {
            s_folder = underTemp("PlumvaleStudioTempDir");
            if (s_folder.empty()) {
                s_status = -1;
            } else {
                removeTree(s_folder);
                s_status = PL_FileSpec(s_folder).CreateFolder();
            }
        }
        if (s_status != 0) return s_status;
        PL_FileSpec candidate;
        do {
            candidate.IFileSpec(s_folder);
            candidate.Add(UT_String(QStringLiteral("tmpfs_%1.tmp").arg(++s_counter)));
        } while (candidate.TestAccess(false) == 0);
        *this = candidate;
        return 0;
    }
    case UserFolder:
    case DocumentsFolder:
    case PicturesFolder:
    case MusicFolder:
    case MoviesFolder:
        IFileSpec(standardLocation(QStandardPaths::DocumentsLocation));
        return IsValid() ? 0 : -1;
    case AppDataFolder:
        IFileSpec(standardLocation(QStandardPaths::GenericDataLocation));
        return IsValid() ? 0 : -1;
    case SessionTempFolder: {
        static int s_status = 1;
        static UT_String s_folder;
        if (s_status == 1) {
            s_folder = underTemp("PlumvaleSessionTempDir");
            s_status = s_folder.empty() ? -1 : PL_FileSpec(s_folder).CreateFolder();
        }
        if (s_status != 0) return s_status;
        IFileSpec(s_folder);
        return 0;
    }
    }
    return -1;
}

UT_String PL_FileSpec::WindowsPublicDocumentPath() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 4, 0)
    return standardLocation(QStandardPaths::PublicShareLocation);
#else
    return UT_String();
#endif
}

int PL_FileSpec::CreateFolder() const {
    UT_String root;
    UT_String::size_type start = 0;
    if (m_path.size() >= 2 && m_path[0] == u'/' && m_path[1] == u'/') {
        // "//server/share" is kept as the root, a text rule.
        UT_String::size_type slash = m_path.find(u'/', 2);
        slash = slash == UT_String::npos ? UT_String::npos : m_path.find(u'/', slash + 1);
        start = slash == UT_String::npos ? m_path.size() : slash;
    } else if (!m_path.empty() && m_path[0] == u'/') {
        start = 1;
    } else {
        return -1;
    }
    root = m_path.substr(0, start);
    UT_String current = root;
    while (start < m_path.size()) {
        UT_String::size_type end = m_path.find(u'/', start);
        if (end == UT_String::npos) end = m_path.size();
        if (end > start) {
            if (!current.empty() && current.back() != u'/') current += u'/';
            current += m_path.substr(start, end - start);
            const std::string bytes = current.utf8();
            if (::mkdir(bytes.c_str(), 0777) != 0) {
                const int error = errno;
                struct stat st;
                if (error != EEXIST || ::stat(bytes.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
                    return error == EEXIST ? -ENOTDIR : -error;
            }
        }
        start = end + 1;
    }
    ResetInfo();
    return 0;
}

int PL_FileSpec::Delete() const {
    const std::string path = m_path.utf8();
    ResetInfo();
    if (::unlink(path.c_str()) == 0) return 0;
    const int error = errno;
    struct stat st;
    // unlink refuses folders (EISDIR on Linux, EPERM by POSIX): those go through rmdir.
    if ((error == EISDIR || error == EPERM) && ::lstat(path.c_str(), &st) == 0 &&
        S_ISDIR(st.st_mode))
        return ::rmdir(path.c_str()) == 0 ? 0 : negatedErrno();
    return -error;
}

int PL_FileSpec::Rename(const UT_String& newName) const {
    PL_FileSpec target;
    if (newName.find(u'/') != UT_String::npos) {
        target.IFileSpec(newName);
    } else {
        target = *this;
        target.Up();
        target.Add(newName);
    }
    return Move(target);
}

int PL_FileSpec::Move(const PL_FileSpec& to) const {
    ResetInfo();
    to.ResetInfo();
    return ::rename(m_path.utf8().c_str(), to.m_path.utf8().c_str()) == 0 ? 0 : negatedErrno();
}

int PL_FileSpec::Copy(const PL_FileSpec& to, bool overwrite) const {
    const int in =
        retryOnEintr([&] { return ::open(m_path.utf8().c_str(), O_RDONLY | O_CLOEXEC); });
    if (in < 0) return negatedErrno();
    struct stat st;
    if (::fstat(in, &st) != 0 || S_ISDIR(st.st_mode)) {
        const int error = S_ISDIR(st.st_mode) ? -EISDIR : negatedErrno();
        ::close(in);
        return error;
    }
    const std::string target = to.m_path.utf8();
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | (overwrite ? 0 : O_EXCL);
    const int out = retryOnEintr([&] { return ::open(target.c_str(), flags, st.st_mode & 07777); });
    if (out < 0) {
        const int error = negatedErrno();
        ::close(in);
        return error;
    }
    int result = 0;
    bool kernelCopy = true;
    std::vector<char> buffer;
    for (;;) {
        ssize_t n = -1;
        if (kernelCopy) {
            n = ::copy_file_range(in, nullptr, out, nullptr, 1 << 30, 0);
            if (n < 0 &&
                (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP)) {
                kernelCopy = false;
                continue;
            }
            if (n < 0 && errno == EINTR) continue;
        } else {
            buffer.resize(1 << 16);
            n = retryOnEintr([&] { return ::read(in, buffer.data(), buffer.size()); });
            for (ssize_t done = 0; n > 0 && done < n;) {
                const ssize_t w = retryOnEintr([&] {
                    return ::write(out, buffer.data() + done, static_cast<size_t>(n - done));
                });
                if (w < 0) {
                    n = -1;
                    break;
                }
                done += w;
            }
        }
        if (n < 0) {
            result = negatedErrno();
            break;
        }
        if (n == 0) break;
    }
    // The target's permissions follow the source's, whatever the umask did at creation.
    if (result == 0 && ::fchmod(out, st.st_mode & 07777) != 0) result = negatedErrno();
    if (::close(out) != 0 && result == 0) result = negatedErrno();
    ::close(in);
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

std::filebuf* PL_FileSpec::getFileBuf(const char* mode, bool& ok) const {
    ok = false;
    auto* buf = new std::filebuf;
    const std::string m = mode ? mode : "";
    std::ios_base::openmode flags = std::ios_base::openmode();
    if (m.find('r') != std::string::npos) flags |= std::ios_base::in;
    if (m.find('w') != std::string::npos) flags |= std::ios_base::out | std::ios_base::trunc;
    if (m.find('a') != std::string::npos) flags |= std::ios_base::out | std::ios_base::app;
    if (m.find('+') != std::string::npos) flags |= std::ios_base::in | std::ios_base::out;
    if (m.find('b') != std::string::npos) flags |= std::ios_base::binary;
    ok = buf->open(m_path.utf8(), flags) != nullptr;
    return buf;
}
