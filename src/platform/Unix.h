// Internal: the Unix support layer: EINTR retry, -errno results and descriptor ownership.
//
// Conventions for every `_unix` file of the library:
// - every system call goes through retryOnEintr(), which retries it after a signal and
//   lets a test's call hook make it fail (setCallHook());
// - a failure is returned as the negated errno (negatedErrno()), success as 0 or a count;
// - every descriptor is opened close-on-exec (openFd() adds O_CLOEXEC) and held by a
//   UniqueFd, so that each error path closes it exactly once.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <sys/types.h>
#include <utility>

namespace plumvale::platform {

/// A test's view of the library's system calls: called before each call made through
/// retryOnEintr() with the number of calls seen since the hook was set (from 1). It returns
/// 0 to let the call run, or an errno value that the call then fails with, unmade. It may
/// also act on the disk (swap a folder for a link) or end the process. Calls made by the
/// hook itself are not seen.
using CallHook = int (*)(long call, void* context);

/// Sets (or, with null, removes) the process's call hook; a test seam, not for applications.
PLUMVALE_EXPORT void setCallHook(CallHook hook, void* context);

namespace detail {
extern std::atomic<bool> g_callHookSet;
/// Runs the hook, when one is set and the thread is not already inside it.
int runCallHook() noexcept;
} // namespace detail

/// Calls `call()` again while it fails with EINTR; returns its first other result. `call`
/// returns a signed count or status where a negative value means failure with `errno` set.
/// With a call hook set, the hook may fail the call first.
template <typename Call>
auto retryOnEintr(Call call) {
    if (detail::g_callHookSet.load(std::memory_order_relaxed)) {
        if (const int error = detail::runCallHook()) {
            errno = error;
            return decltype(call())(-1);
        }
    }
    for (;;) {
        const auto r = call();
        if (r >= 0 || errno != EINTR) return r;
    }
}

/// The current `errno` negated; -1 when a failed call left `errno` at 0.
inline int negatedErrno() noexcept {
    return errno > 0 ? -errno : -1;
}

/// The owner of one open descriptor: closes it once, on destruction, reset() or close().
/// Move-only; a moved-from owner holds nothing (-1).
class UniqueFd {
public:
    UniqueFd() noexcept = default;
    /// Takes ownership of `fd` (a negative value holds nothing).
    explicit UniqueFd(int fd) noexcept : m_fd(fd < 0 ? -1 : fd) {}
    ~UniqueFd() { reset(); }
    UniqueFd(UniqueFd&& other) noexcept : m_fd(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    /// The descriptor, or -1.
    int get() const noexcept { return m_fd; }
    /// Whether a descriptor is held.
    explicit operator bool() const noexcept { return m_fd >= 0; }
    /// Gives the descriptor up without closing it; the owner then holds nothing.
    int release() noexcept { return std::exchange(m_fd, -1); }
    /// Closes the held descriptor (errors ignored) and takes `fd` instead.
    void reset(int fd = -1) noexcept;
    /// Closes the held descriptor: 0, or the negated errno of `close` (the descriptor is
    /// released either way, so an EINTR is not retried). 0 when nothing is held.
    int close() noexcept;

private:
    int m_fd = -1;
};

/// `open(path, flags | O_CLOEXEC, mode)` retried on EINTR; an empty owner on failure, with
/// `errno` set.
UniqueFd openFd(const char* path, int flags, mode_t mode = 0);

/// `openat` relative to the folder `dirFd` (AT_FDCWD for the working folder), as openFd().
UniqueFd openFdAt(int dirFd, const char* path, int flags, mode_t mode = 0);

/// `read` retried on EINTR: the count read (0 at the end), or the negated errno.
ssize_t readSome(int fd, void* buffer, std::size_t size) noexcept;

/// Writes all `size` bytes, continuing after short writes and EINTR: 0, or the negated errno
/// of the write that failed (some bytes may have been written by then).
int writeAll(int fd, const void* data, std::size_t size) noexcept;

} // namespace plumvale::platform
