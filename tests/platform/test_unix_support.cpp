// Contracts of the Unix support layer: EINTR retry, descriptor ownership, writes, error texts.
#include "platform/Platform.h"
#include "platform/Unix.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace plumvale::platform;

namespace {

bool isOpen(int fd) {
    return ::fcntl(fd, F_GETFD) != -1;
}

struct Pipe {
    UniqueFd read, write;
    Pipe() {
        int fds[2];
        if (::pipe2(fds, O_CLOEXEC) == 0) read.reset(fds[0]), write.reset(fds[1]);
    }
};

void onSignal(int) {}

} // namespace

TEST(UnixSupport, RetryRepeatsOnlyInterruptedCalls) {
    struct Case {
        std::vector<int> errors; // errno of each failing attempt; the last attempt returns 7
        bool succeeds;
        int expectedCalls;
    };
    const Case cases[] = {
        {{}, true, 1},        {{EINTR}, true, 2},       {{EINTR, EINTR, EINTR}, true, 4},
        {{EAGAIN}, false, 1}, {{EINTR, EIO}, false, 2},
    };
    for (const Case& c : cases) {
        std::size_t calls = 0;
        const long r = retryOnEintr([&]() -> long {
            const std::size_t i = calls++;
            if (i < c.errors.size()) {
                errno = c.errors[i];
                return -1;
            }
            return 7;
        });
        EXPECT_EQ(calls, static_cast<std::size_t>(c.expectedCalls));
        if (c.succeeds) {
            EXPECT_EQ(r, 7);
        } else {
            EXPECT_EQ(r, -1);
            EXPECT_EQ(negatedErrno(), -c.errors.back());
        }
    }
}

TEST(UnixSupport, ReadInterruptedBySignalIsResumed) {
    // A handler without SA_RESTART makes the blocked read fail with EINTR.
    struct sigaction action {
    }, previous{};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &previous), 0);
    Pipe p;
    ASSERT_TRUE(p.read && p.write);
    const pthread_t reader = ::pthread_self();
    std::atomic<int> calls{0};
    std::thread writer([&] {
        // Interrupt until the reader has been woken at least once, then give it data.
        while (calls.load() < 2) {
            ::pthread_kill(reader, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        EXPECT_EQ(writeAll(p.write.get(), "z", 1), 0);
    });
    char byte = 0;
    const ssize_t n = retryOnEintr([&] {
        ++calls;
        return ::read(p.read.get(), &byte, 1);
    });
    writer.join();
    ::sigaction(SIGUSR1, &previous, nullptr);
    EXPECT_EQ(n, 1);
    EXPECT_EQ(byte, 'z');
    EXPECT_GE(calls.load(), 2);
}

TEST(UnixSupport, OwnerClosesExactlyOnce) {
    UniqueFd a = openFd("/dev/null", O_RDONLY);
    ASSERT_TRUE(a);
    const int number = a.get();
    EXPECT_EQ(a.close(), 0);
    EXPECT_FALSE(isOpen(number));
    EXPECT_EQ(a.close(), 0); // nothing held: no second close
    // The lowest free number is reused: a second close by `a` would close `b`.
    UniqueFd b = openFd("/dev/null", O_RDONLY);
    ASSERT_EQ(b.get(), number);
    a.reset();
    { UniqueFd emptied(std::move(a)); }
    EXPECT_TRUE(isOpen(number));

    // Moving hands the descriptor on; the moved-from owner closes nothing.
    UniqueFd c(std::move(b));
    EXPECT_EQ(b.get(), -1);
    { UniqueFd gone(std::move(b)); }
    EXPECT_TRUE(isOpen(number));

    // Assignment closes what the target held; release gives up ownership.
    UniqueFd d = openFd("/dev/null", O_RDONLY);
    const int other = d.get();
    d = std::move(c);
    EXPECT_FALSE(isOpen(other));
    EXPECT_EQ(d.get(), number);
    const int released = d.release();
    { UniqueFd none(std::move(d)); }
    EXPECT_TRUE(isOpen(released));
    ::close(released);
    EXPECT_FALSE(isOpen(number));
}

TEST(UnixSupport, OpenIsCloseOnExecAndReportsErrno) {
    const UniqueFd fd = openFd("/dev/null", O_RDONLY);
    ASSERT_TRUE(fd);
    EXPECT_NE(::fcntl(fd.get(), F_GETFD) & FD_CLOEXEC, 0);
    const UniqueFd missing = openFd("/nonexistent-plumvale-dir/x", O_RDONLY);
    EXPECT_FALSE(missing);
    EXPECT_EQ(missing.get(), -1);
    EXPECT_EQ(negatedErrno(), -ENOENT);
    const UniqueFd folder = openFdAt(AT_FDCWD, "/", O_RDONLY | O_DIRECTORY);
    EXPECT_TRUE(folder);
}

TEST(UnixSupport, WriteAllCompletesShortWritesAndReportsBrokenPipe) {
    Pipe p;
    ASSERT_TRUE(p.read && p.write);
    // Far more than a pipe holds: writeAll must go on after each short write.
    std::vector<char> data(1 << 20);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<char>(i * 131 + (i >> 9));
    std::vector<char> received;
    std::thread reader([&] {
        char buf[4096];
        for (;;) {
            const ssize_t n = readSome(p.read.get(), buf, sizeof buf);
            if (n <= 0) break;
            received.insert(received.end(), buf, buf + n);
        }
    });
    EXPECT_EQ(writeAll(p.write.get(), data.data(), data.size()), 0);
    EXPECT_EQ(p.write.close(), 0);
    reader.join();
    EXPECT_EQ(received, data);

    Pipe broken;
    broken.read.reset();
    const auto old = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(writeAll(broken.write.get(), "x", 1), -EPIPE);
    std::signal(SIGPIPE, old);
    EXPECT_EQ(readSome(-1, data.data(), 1), -EBADF);
}

TEST(UnixSupport, ErrorTextsAreTheSystems) {
    // The "C" locale's texts, which every glibc gives in these words.
    EXPECT_EQ(errorText(ENOENT), "No such file or directory");
    EXPECT_EQ(errorText(EACCES), "Permission denied");
    EXPECT_EQ(errorText(EPIPE), "Broken pipe");
    EXPECT_EQ(errorText(123456), "Unknown error 123456");
    EXPECT_EQ(errorText(-3), "Unknown error -3");
    errno = EEXIST;
    EXPECT_EQ(lastError(), EEXIST);
}

TEST(UnixSupport, IdsNameTheProcessAndEachThread) {
    EXPECT_EQ(processId(), static_cast<long>(::getpid()));
    const long mine = threadId();
    long other = 0;
    std::thread([&] { other = threadId(); }).join();
    EXPECT_GT(mine, 0);
    EXPECT_GT(other, 0);
    EXPECT_NE(mine, other);
}
