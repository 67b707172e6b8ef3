// The platform layer on Linux: error texts, ids and the descriptor helpers of Unix.h.
#include "platform/Platform.h"
#include "platform/Unix.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace plumvale::platform {

std::string errorText(int code) {
    // The GNU strerror_r returns its text, which may be a static string rather than buf;
    // unlike strerror it is safe from several threads at once.
    char buf[256];
    const char* text = ::strerror_r(code, buf, sizeof buf);
    return text && *text ? std::string(text) : "Unknown error " + std::to_string(code);
}

int lastError() {
    return errno;
}

long processId() {
    return static_cast<long>(::getpid());
}

// glibc 2.30 has gettid(); the system call works on every version.
long threadId() {
    return static_cast<long>(::syscall(SYS_gettid));
}

std::string executablePath() {
    char buf[4096];
    const ssize_t n = ::readlink("/proc/self/exe", buf, sizeof buf);
    return n > 0 && static_cast<size_t>(n) < sizeof buf ? std::string(buf, static_cast<size_t>(n))
                                                        : std::string();
}

void yieldThread() {
    ::sched_yield();
}

long long monotonicResolutionNs() {
    struct timespec res;
    if (::clock_getres(CLOCK_MONOTONIC, &res) != 0) return 1;
    return std::max<long long>(1, res.tv_sec * 1000000000LL + res.tv_nsec);
}

UtcTime utcNow() {
    struct timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    struct tm parts;
    ::gmtime_r(&now.tv_sec, &parts);
    return {parts.tm_year + 1900,
            parts.tm_mon + 1,
            parts.tm_mday,
            parts.tm_hour,
            parts.tm_min,
            parts.tm_sec,
            static_cast<int>(now.tv_nsec / 1000000)};
}

namespace detail {

std::atomic<bool> g_callHookSet{false};

namespace {
std::atomic<CallHook> g_hook{nullptr};
std::atomic<void*> g_context{nullptr};
std::atomic<long> g_calls{0};
thread_local bool t_inHook = false;
} // namespace

int runCallHook() noexcept {
    const CallHook hook = g_hook.load();
    if (!hook || t_inHook) return 0;
    t_inHook = true;
    const int saved = errno;
    const int result = hook(++g_calls, g_context.load());
    errno = saved;
    t_inHook = false;
    return result;
}

} // namespace detail

void setCallHook(CallHook hook, void* context) {
    detail::g_hook.store(nullptr);
    detail::g_calls.store(0);
    detail::g_context.store(context);
    detail::g_hook.store(hook);
    detail::g_callHookSet.store(hook != nullptr);
}

void UniqueFd::reset(int fd) noexcept {
    if (m_fd >= 0) ::close(m_fd);
    m_fd = fd < 0 ? -1 : fd;
}

int UniqueFd::close() noexcept {
    if (m_fd < 0) return 0;
    // Linux releases the descriptor even when close fails, so it is never closed twice.
    const int r = ::close(release());
    return r == 0 ? 0 : negatedErrno();
}

UniqueFd openFd(const char* path, int flags, mode_t mode) {
    return openFdAt(AT_FDCWD, path, flags, mode);
}

UniqueFd openFdAt(int dirFd, const char* path, int flags, mode_t mode) {
    return UniqueFd(retryOnEintr([&] { return ::openat(dirFd, path, flags | O_CLOEXEC, mode); }));
}

ssize_t readSome(int fd, void* buffer, std::size_t size) noexcept {
    const ssize_t n = retryOnEintr([&] { return ::read(fd, buffer, size); });
    return n >= 0 ? n : negatedErrno();
}

int writeAll(int fd, const void* data, std::size_t size) noexcept {
    const auto* p = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t n = retryOnEintr([&] { return ::write(fd, p, size); });
        if (n < 0) return negatedErrno();
        p += n;
        size -= static_cast<std::size_t>(n);
    }
    return 0;
}

} // namespace plumvale::platform
