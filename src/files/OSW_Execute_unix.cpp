// OSW_Execute on POSIX: posix_spawn, close-on-exec pipes, and one poll loop that keeps the
// child's output while the parent writes or waits.
#include <PlumvaleBaseCore/files/OSW_Execute.h>

#include "files/Process.h"
#include "platform/Unix.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

extern char** environ;

using plumvale::platform::retryOnEintr;
using plumvale::platform::UniqueFd;

struct OSW_Execute::Private {
    bool detached = false;
    bool stdio = false;
    QString workingDirectory;
    pid_t pid = 0;
    bool reaped = false; // the child's end was collected: its pid may belong to another
    int exitCode = 0;
    UniqueFd in, out, err; // the parent's ends
    std::set<void*> inherited;
    QByteArray keptOut, keptErr; // output taken while writing or waiting, read first
    QString commandLine;

    void collect(int status) {
        reaped = true;
        exitCode = WIFEXITED(status)     ? WEXITSTATUS(status)
                   : WIFSIGNALED(status) ? 128 + WTERMSIG(status)
                                         : 0;
    }
    bool keep(UniqueFd& fd, QByteArray& kept);
    void keepOutputWhile(int writeFd, const char* data, unsigned n, unsigned& written);
    void keepOutputUntilEnd();
};

namespace {

// A close-on-exec pipe of 1 MiB; false when the system refuses.
bool makePipe(UniqueFd& readEnd, UniqueFd& writeEnd) {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) return false;
    readEnd.reset(fds[0]);
    writeEnd.reset(fds[1]);
    ::fcntl(fds[1], F_SETPIPE_SZ, 1 << 20); // a smaller pipe still works
    return true;
}

// SIGPIPE held back for one write, so that a child that has gone yields EPIPE instead of
// ending the parent; a SIGPIPE raised by the write is taken back before unblocking.
class NoSigpipe {
public:
    NoSigpipe() {
        sigemptyset(&m_set);
        sigaddset(&m_set, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &m_set, &m_old);
    }
    ~NoSigpipe() {
        if (!m_wasPending) {
            const struct timespec zero = {0, 0};
            while (sigtimedwait(&m_set, nullptr, &zero) < 0 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &m_old, nullptr);
    }

private:
    sigset_t m_set, m_old;
    bool m_wasPending = false;
};

// Whether the pipes are there; without them the call is reported as a debug message.
bool stdioEnabled(bool enabled) {
    if (!enabled) plumvale::files::reportStdioNotEnabled();
    return enabled;
}

} // namespace

// Reads what `fd` has now into `kept`; false (and the descriptor closed) at its end.
bool OSW_Execute::Private::keep(UniqueFd& fd, QByteArray& kept) {
    char chunk[65536];
    const ssize_t n = retryOnEintr([&] { return ::read(fd.get(), chunk, sizeof chunk); });
    if (n <= 0) {
        fd.reset();
        return false;
    }
    kept.append(chunk, static_cast<int>(n));
    return true;
}

// Writes to the child's input while keeping its output, so that neither side waits on a
// full pipe.
void OSW_Execute::Private::keepOutputWhile(int writeFd, const char* data, unsigned n,
                                           unsigned& written) {
    NoSigpipe guard;
    while (written < n) {
        struct pollfd fds[3] = {
            {writeFd, POLLOUT, 0}, {out.get(), POLLIN, 0}, {err.get(), POLLIN, 0}};
        if (retryOnEintr([&] { return ::poll(fds, 3, -1); }) < 0) return;
        if (fds[1].revents) keep(out, keptOut);
        if (fds[2].revents) keep(err, keptErr);
        if (fds[0].revents & (POLLERR | POLLNVAL)) return;
        if (fds[0].revents & (POLLOUT | POLLHUP)) {
            const std::size_t piece = std::min<unsigned>(n - written, 2048);
            const ssize_t w = retryOnEintr([&] { return ::write(writeFd, data + written, piece); });
            if (w <= 0) return; // the child has gone (EPIPE) or refuses
            written += static_cast<unsigned>(w);
        }
    }
}

// Keeps the child's output until the child has ended, then what it left in the pipes.
void OSW_Execute::Private::keepOutputUntilEnd() {
    // A process descriptor becomes readable when the child ends (Linux 5.3 on); without it
    // the loop looks every 10 ms.
    const UniqueFd process(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)));
    for (bool ended = false; out || err;) {
        struct pollfd fds[3] = {{out.get(), POLLIN, 0},
                                {err.get(), POLLIN, 0},
                                {ended ? -1 : process.get(), POLLIN, 0}};
        const int timeout = ended ? 0 : process ? -1 : 10;
        const int ready = retryOnEintr([&] { return ::poll(fds, 3, timeout); });
        if (ready < 0) return;
        if (ready == 0 && ended) return; // the pipes are empty (a grandchild may hold them)
        if (fds[0].revents) keep(out, keptOut);
        if (fds[1].revents) keep(err, keptErr);
        if (ended) continue;
        if (process) {
            ended = fds[2].revents != 0;
        } else {
            int status = 0;
            if (::waitpid(pid, &status, WNOHANG) == pid) {
                collect(status);
                ended = true;
            }
        }
    }
}

OSW_Execute::OSW_Execute() : d(new Private) {}

OSW_Execute::~OSW_Execute() {
    int status = 0;
    if (d->pid && !d->reaped && ::waitpid(d->pid, &status, WNOHANG) == d->pid) d->collect(status);
}

void OSW_Execute::setDetached(bool detached) {
    d->detached = detached;
}

bool OSW_Execute::detached() const {
    return d->detached;
}

void OSW_Execute::enableStdioPipes(bool on) {
    d->stdio = on;
}

void OSW_Execute::setWorkingDirectory(const QString& folder) {
    d->workingDirectory = folder;
}

QString OSW_Execute::workingDirectory() const {
    return d->workingDirectory;
}

void OSW_Execute::addInheritedHandle(void* handle) {
    d->inherited.insert(handle);
}

QString OSW_Execute::commandLine() const {
    return d->commandLine;
}

int OSW_Execute::execm(const QStringList& args) {
    if (args.isEmpty())
        throw OSW_ExecuteException(
            0, MSG_Text("OSW_Execute", "OSW_Execute: no application to execute"), false, false);
    d->commandLine = plumvale::files::commandLineText(args);
    d->pid = 0;
    d->reaped = false;
    d->exitCode = 0;
    d->in.reset();
    d->out.reset();
    d->err.reset();
    d->keptOut.clear();
    d->keptErr.clear();

    std::vector<std::string> bytes;
    for (const QString& arg : args)
        bytes.push_back(arg.toUtf8().toStdString());
    std::vector<char*> argv;
    for (std::string& b : bytes)
        argv.push_back(b.data());
    argv.push_back(nullptr);

    UniqueFd childIn, childOut, childErr;
    if (d->stdio &&
        (!makePipe(childIn, d->in) || !makePipe(d->out, childOut) || !makePipe(d->err, childErr))) {
        d->in.reset();
        d->out.reset();
        d->err.reset();
        return 0;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (d->stdio) {
        // dup2 clears close-on-exec on 0, 1 and 2 only: the child sees no other descriptor.
        posix_spawn_file_actions_adddup2(&actions, childIn.get(), 0);
        posix_spawn_file_actions_adddup2(&actions, childOut.get(), 1);
        posix_spawn_file_actions_adddup2(&actions, childErr.get(), 2);
    }
    const std::string folder = d->workingDirectory.toUtf8().toStdString();
    if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, defaults;
    sigemptyset(&none);
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE); // the child gets the usual SIGPIPE whatever the parent did
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t pid = 0;
    const int started = ::posix_spawnp(&pid, argv[0], &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    // The child's ends are the child's alone: the parent's copies would keep its output
    // from ever ending.
    childIn.reset();
    childOut.reset();
    childErr.reset();
    if (started != 0) {
        d->in.reset();
        d->out.reset();
        d->err.reset();
        return 0;
    }
    d->pid = pid;
    if (d->detached) return 0;
    return waitForProcEnd();
}

unsigned OSW_Execute::pid() const {
    return static_cast<unsigned>(d->pid);
}

bool OSW_Execute::isRunning() {
    if (!d->pid || d->reaped) return false;
    int status = 0;
    const pid_t r = ::waitpid(d->pid, &status, WNOHANG);
    if (r == 0) return true;
    if (r == d->pid) d->collect(status);
    return false;
}

int OSW_Execute::waitForProcEnd() {
    if (!d->pid) return 0;
    if (d->reaped) return d->exitCode;
    // Nothing more can be written while waiting: the child sees the end of its input
    // instead of waiting for more.
    d->in.reset();
    if (d->out || d->err) d->keepOutputUntilEnd();
    if (d->reaped) return d->exitCode;
    int status = 0;
    if (retryOnEintr([&] { return ::waitpid(d->pid, &status, 0); }) == d->pid) d->collect(status);
    return d->exitCode;
}

void OSW_Execute::kill() {
    if (d->pid && !d->reaped) ::kill(d->pid, SIGKILL);
}

unsigned OSW_Execute::writeToStdin(unsigned n, const char* data) {
    if (!stdioEnabled(d->stdio)) return 0;
    unsigned written = 0;
    if (d->in && data) d->keepOutputWhile(d->in.get(), data, n, written);
    return written;
}

namespace {

unsigned readKeptFirst(UniqueFd& fd, QByteArray& kept, unsigned n, char* buffer) {
    if (n == 0 || !buffer) return 0;
    if (!kept.isEmpty()) {
        const unsigned k = std::min<unsigned>(n, static_cast<unsigned>(kept.size()));
        std::memcpy(buffer, kept.constData(), k);
        kept.remove(0, static_cast<int>(k));
        return k;
    }
    if (!fd) return 0;
    const ssize_t got = retryOnEintr([&] { return ::read(fd.get(), buffer, n); });
    return got > 0 ? static_cast<unsigned>(got) : 0;
}

unsigned readAllKeptFirst(UniqueFd& fd, QByteArray& kept, QByteArray& out) {
    char chunk[1024];
    while (const unsigned got = readKeptFirst(fd, kept, sizeof chunk, chunk))
        out.append(chunk, static_cast<int>(got));
    return static_cast<unsigned>(out.size());
}

} // namespace

unsigned OSW_Execute::readFromStdout(unsigned n, char* buffer) {
    return stdioEnabled(d->stdio) ? readKeptFirst(d->out, d->keptOut, n, buffer) : 0;
}

unsigned OSW_Execute::readFromStderr(unsigned n, char* buffer) {
    return stdioEnabled(d->stdio) ? readKeptFirst(d->err, d->keptErr, n, buffer) : 0;
}

unsigned OSW_Execute::readFromStdout(QByteArray& out) {
    return stdioEnabled(d->stdio) ? readAllKeptFirst(d->out, d->keptOut, out) : 0;
}

unsigned OSW_Execute::readFromStderr(QByteArray& out) {
    return stdioEnabled(d->stdio) ? readAllKeptFirst(d->err, d->keptErr, out) : 0;
}

void OSW_Execute::closeStdin() {
    d->in.reset();
}
