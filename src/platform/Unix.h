// Internal: the Unix support layer: EINTR retry, -errno results and descriptor ownership.
//
// Conventions for every `_unix` file of the library:
// - a call that can be interrupted by a signal goes through retryOnEintr();
// - a failure is returned as the negated errno (negatedErrno()), success as 0 or a count;
// - every descriptor is opened close-on-exec (openFd() adds O_CLOEXEC) and held by a
//   UniqueFd, so that each error path closes it exactly once.
#pragma once

#include <cerrno>
#include <cstddef>
#include <sys/types.h>
#include <utility>

namespace plumvale::platform {

/// Calls `call()` again while it fails with EINTR; returns its first other result. `call`
/// returns a signed count or status where a negative value means failure with `errno` set.
template <typename Call>
auto retryOnEintr(Call call) {
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
