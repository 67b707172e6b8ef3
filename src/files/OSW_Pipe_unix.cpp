// OSW_Pipe on POSIX: Unix-domain SOCK_SEQPACKET sockets.
//
// Why packets: the pipes carry messages, and a packet socket keeps each write as one
// record that a reader never sees merged with the next, with any number of writers; it has
// a listen/accept step that is the server's wait for its client; and it needs no framing of
// our own. A record longer than the reader's buffer is taken whole and its rest kept for the
// following reads, as a message-mode pipe continues it.
#include <PlumvaleBaseCore/app/UT_Id.h>
#include <PlumvaleBaseCore/files/OSW_Pipe.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>

#include "files/FileSystem.h"
#include "files/Process.h"
#include "platform/Platform.h"
#include "platform/Unix.h"

#include <QByteArray>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>

using plumvale::platform::negatedErrno;
using plumvale::platform::retryOnEintr;
using plumvale::platform::UniqueFd;

struct OSW_Pipe::Private {
    UniqueFd read, write;
    std::string listening[2]; // the name a server slot is bound to, removed when it closes
    QByteArray rest;          // the unread part of the last record

    UniqueFd& slot(int mode) { return mode == Read ? read : write; }
    void closeSlot(int mode) {
        slot(mode).reset();
        if (!listening[mode].empty()) ::unlink(listening[mode].c_str());
        listening[mode].clear();
    }
};

namespace {

int fdOf(void* handle) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(handle));
}

void* handleOf(int fd) {
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(fd));
}

// The address of `path`. A path too long for sun_path is reached through its folder's
// descriptor (/proc/self/fd/N/name), which `folder` then holds while the address is used.
bool addressOf(const std::string& path, sockaddr_un& address, UniqueFd& folder) {
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    std::string reachable = path;
    if (reachable.size() >= sizeof address.sun_path) {
        const std::size_t slash = path.rfind('/');
        if (slash == std::string::npos) return false;
        folder =
            plumvale::platform::openFd(path.substr(0, slash + 1).c_str(), O_PATH | O_DIRECTORY);
        if (!folder) return false;
        reachable = "/proc/self/fd/" + std::to_string(folder.get()) + path.substr(slash);
        if (reachable.size() >= sizeof address.sun_path) {
            errno = ENAMETOOLONG;
            return false;
        }
    }
    std::memcpy(address.sun_path, reachable.c_str(), reachable.size() + 1);
    return true;
}

UniqueFd packetSocket() {
    return UniqueFd(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
}

// A listening socket bound to `path`: 0, or the negated errno. A name left by a server that
// has gone (nobody accepts on it) is taken over.
int listenAt(const std::string& path, UniqueFd& out) {
    sockaddr_un address;
    UniqueFd folder;
    if (!addressOf(path, address, folder)) return negatedErrno();
    UniqueFd fd = packetSocket();
    if (!fd) return negatedErrno();
    const auto* a = reinterpret_cast<const sockaddr*>(&address);
    if (::bind(fd.get(), a, sizeof address) != 0) {
        if (errno != EADDRINUSE) return negatedErrno();
        UniqueFd probe = packetSocket();
        if (!probe || ::connect(probe.get(), a, sizeof address) == 0 || errno != ECONNREFUSED)
            return -EADDRINUSE;
        ::unlink(path.c_str());
        if (::bind(fd.get(), a, sizeof address) != 0) return negatedErrno();
    }
    if (::listen(fd.get(), 255) != 0) {
        const int error = negatedErrno();
        ::unlink(path.c_str());
        return error;
    }
    out = std::move(fd);
    return 0;
}

// A client socket connected to `path`: 0, or the negated errno.
int connectTo(const std::string& path, UniqueFd& out) {
    sockaddr_un address;
    UniqueFd folder;
    if (!addressOf(path, address, folder)) return negatedErrno();
    UniqueFd fd = packetSocket();
    if (!fd) return negatedErrno();
    if (retryOnEintr([&] {
            return ::connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
        }) != 0)
        return negatedErrno();
    out = std::move(fd);
    return 0;
}

// Takes the next record: at most `n` bytes into `buffer`, the rest into `rest`. The count,
// 0 when the writer has closed, or the negated errno.
int takeRecord(int fd, char* buffer, unsigned n, QByteArray& rest) {
    const ssize_t length =
        retryOnEintr([&] { return ::recv(fd, nullptr, 0, MSG_PEEK | MSG_TRUNC); });
    if (length < 0) return negatedErrno();
    if (static_cast<std::size_t>(length) <= n) {
        const ssize_t got = retryOnEintr([&] { return ::recv(fd, buffer, n, 0); });
        return got < 0 ? negatedErrno() : static_cast<int>(got);
    }
    QByteArray whole(static_cast<int>(length), Qt::Uninitialized);
    const ssize_t got =
        retryOnEintr([&] { return ::recv(fd, whole.data(), static_cast<std::size_t>(length), 0); });
    if (got < 0) return negatedErrno();
    std::memcpy(buffer, whole.constData(), n);
    rest = whole.mid(static_cast<int>(n));
    return static_cast<int>(n);
}

} // namespace

OSW_Pipe::OSW_Pipe() : d(new Private) {}

OSW_Pipe::~OSW_Pipe() {
    close();
}

bool OSW_Pipe::createAnonymous() {
    if (isOpened()) return false;
    const std::string name =
        (plumvale::files::userTempRoot() +
         QStringLiteral("/anonymous_pipe_%1_").arg(plumvale::platform::processId()))
            .toUtf8()
            .toStdString() +
        UT_Id().AsString();
    UniqueFd server, reader, writer;
    if (const int error = listenAt(name, server)) {
        plumvale::files::printPipeFailure("create pseudo anonymous pipe", -error);
        return false;
    }
    const int error = connectTo(name, writer);
    if (!error)
        reader = UniqueFd(
            retryOnEintr([&] { return ::accept4(server.get(), nullptr, nullptr, SOCK_CLOEXEC); }));
    const int acceptError = reader ? 0 : negatedErrno();
    ::unlink(name.c_str()); // connected: the name is no longer needed
    if (error || acceptError) {
        plumvale::files::printPipeFailure("open pseudo anonymous pipe",
                                          error ? -error : -acceptError);
        return false;
    }
    // One way only, as the name says.
    ::shutdown(reader.get(), SHUT_WR);
    ::shutdown(writer.get(), SHUT_RD);
    d->read = std::move(reader);
    d->write = std::move(writer);
    return true;
}

bool OSW_Pipe::createNamedPipe(const PL_FileSpec& name, Mode_t mode) {
    if (isOpened() || (mode != Read && mode != Write)) return false;
    const std::string path = name.GetFilePath().utf8();
    UniqueFd server;
    if (const int error = listenAt(path, server)) {
        plumvale::files::printPipeFailure("create named pipe", -error);
        return false;
    }
    d->slot(mode) = std::move(server);
    d->listening[mode] = path;
    return true;
}

bool OSW_Pipe::openNamedPipe(const PL_FileSpec& name, Mode_t mode) {
    if (mode != Read && mode != Write) return false;
    UniqueFd& slot = d->slot(mode);
    if (slot && d->listening[mode].empty()) return true; // connected already
    if (slot) {
        // The server side: wait for a client (one that came first is taken at once).
        UniqueFd client(
            retryOnEintr([&] { return ::accept4(slot.get(), nullptr, nullptr, SOCK_CLOEXEC); }));
        if (!client) {
            plumvale::files::printPipeFailure("connect to named pipe", errno);
            return false;
        }
        d->closeSlot(mode);
        slot = std::move(client);
        return true;
    }
    UniqueFd client;
    if (const int error = connectTo(name.GetFilePath().utf8(), client)) {
        plumvale::files::printPipeFailure("open named pipe", -error);
        return false;
    }
    slot = std::move(client);
    return true;
}

bool OSW_Pipe::assign(void** read, void** write) {
    if (isOpened()) return false;
    if (read) d->read.reset(fdOf(*read));
    if (write) d->write.reset(fdOf(*write));
    return true;
}

int OSW_Pipe::readData(void* buffer, unsigned n) {
    if (!d->read) return -1;
    n = std::min<unsigned>(n, INT_MAX);
    if (!d->rest.isEmpty()) {
        const unsigned k = std::min<unsigned>(n, static_cast<unsigned>(d->rest.size()));
        std::memcpy(buffer, d->rest.constData(), k);
        d->rest.remove(0, static_cast<int>(k));
        return static_cast<int>(k);
    }
    const int got = takeRecord(d->read.get(), static_cast<char*>(buffer), n, d->rest);
    if (got < 0) {
        plumvale::files::printPipeFailure("read in pipe", -got);
        return -1;
    }
    return got;
}

int OSW_Pipe::readData(void* buffer, unsigned n, unsigned timeoutMs) {
    if (!d->read) return -1;
    if (d->rest.isEmpty()) {
        struct pollfd fd = {d->read.get(), POLLIN, 0};
        const int wait = static_cast<int>(std::min<unsigned>(timeoutMs, INT_MAX));
        const int ready = retryOnEintr([&] { return ::poll(&fd, 1, wait); });
        if (ready <= 0) {
            plumvale::files::printPipeFailure("read in pipe", ready == 0 ? ETIMEDOUT : errno);
            return -1;
        }
    }
    return readData(buffer, n);
}

bool OSW_Pipe::writeData(const void* buffer, unsigned n) {
    if (!d->write) return false;
    const ssize_t sent =
        retryOnEintr([&] { return ::send(d->write.get(), buffer, n, MSG_NOSIGNAL); });
    if (sent < 0) {
        plumvale::files::printPipeFailure("write in pipe", errno);
        return false;
    }
    return true;
}

bool OSW_Pipe::getReadHandle(void** out) const {
    if (!out || !d->read) return false;
    *out = handleOf(d->read.get());
    return true;
}

bool OSW_Pipe::getWriteHandle(void** out) const {
    if (!out || !d->write) return false;
    *out = handleOf(d->write.get());
    return true;
}

bool OSW_Pipe::isOpened() const {
    return d->read || d->write;
}

bool OSW_Pipe::isOpenedForReading() const {
    return static_cast<bool>(d->read);
}

bool OSW_Pipe::isOpenedForWriting() const {
    return static_cast<bool>(d->write);
}

void OSW_Pipe::closeRead() {
    d->closeSlot(Read);
    d->rest.clear();
}

void OSW_Pipe::closeWrite() {
    d->closeSlot(Write);
}

void OSW_Pipe::close() {
    closeRead();
    closeWrite();
}
