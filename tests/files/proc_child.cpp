// Helper of the process and pipe tests: behaves as its first argument says.
#include <PlumvaleBaseCore/files/OSW_Pipe.h>
#include <PlumvaleBaseCore/files/PL_FileSpec.h>
#include <PlumvaleBaseCore/files/PL_FileUtil.h>
#include <PlumvaleBaseCore/files/tufile.h>

#include "platform/Unix.h"

#include <dirent.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

void writeAll(int fd, const char* data, std::size_t n) {
    while (n > 0) {
        const ssize_t w = ::write(fd, data, n);
        if (w <= 0) std::exit(90);
        data += w;
        n -= static_cast<std::size_t>(w);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 100;
    const std::string mode = argv[1];
    if (mode == "args") { // each argument, NUL-terminated
        for (int i = 2; i < argc; ++i)
            writeAll(1, argv[i], std::strlen(argv[i]) + 1);
        return 0;
    }
    if (mode == "exit") return argc > 2 ? std::atoi(argv[2]) : 0;
    if (mode == "signal") std::raise(SIGTERM);
    if (mode == "cwd") {
        char buffer[4096];
        if (!::getcwd(buffer, sizeof buffer)) return 91;
        writeAll(1, buffer, std::strlen(buffer));
        return 0;
    }
    if (mode == "echo") { // standard input to both output streams
        std::vector<char> chunk(65536);
        for (;;) {
            const ssize_t n = ::read(0, chunk.data(), chunk.size());
            if (n <= 0) return n == 0 ? 0 : 92;
            writeAll(1, chunk.data(), std::size_t(n));
            writeAll(2, chunk.data(), std::size_t(n));
        }
    }
    if (mode == "flood") { // more than any pipe holds, on both streams
        const std::size_t total = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0;
        const std::vector<char> chunk(4096, 'f');
        for (std::size_t done = 0; done < total; done += chunk.size()) {
            writeAll(1, chunk.data(), std::min(chunk.size(), total - done));
            writeAll(2, chunk.data(), std::min(chunk.size(), total - done));
        }
        return 0;
    }
    if (mode == "fds") { // the open descriptors, the listing's own left out
        DIR* dir = ::opendir("/proc/self/fd");
        if (!dir) return 93;
        std::string list;
        while (const dirent* entry = ::readdir(dir)) {
            if (entry->d_name[0] == '.' || std::atoi(entry->d_name) == ::dirfd(dir)) continue;
            list += entry->d_name;
            list += ' ';
        }
        ::closedir(dir);
        writeAll(1, list.data(), list.size());
        return 0;
    }
    if (mode == "sleep") {
        ::sleep(60);
        return 0;
    }
    if (mode == "pipe-writer" && argc > 2) { // three messages to the named pipe
        OSW_Pipe pipe;
        if (!pipe.openNamedPipe(PL_FileSpec(UT_String(argv[2])), OSW_Pipe::Write)) return 94;
        const std::string big(3000, 'x');
        const bool ok = pipe.writeData("one", 3) && pipe.writeData(big.data(), 3000) &&
                        pipe.writeData("three", 5);
        return ok ? 0 : 95;
    }
    if (mode == "lock" && argc > 2) { // holds an exclusive lock until its input ends
        PL_FileUtil::FileLocker locker(QString::fromLocal8Bit(argv[2]), PL_FileUtil::ExclusiveLock);
        if (!locker.isLocked()) return 96;
        writeAll(1, "locked\n", 7);
        char c;
        while (::read(0, &c, 1) > 0) {
        }
        ::usleep(200000); // the parent is already waiting by now
        return 0;
    }
    if (mode == "replace" && argc > 3) { // updateFile, killed at the Nth system call
        static long killAt = std::atol(argv[3]);
        plumvale::platform::setCallHook(
            [](long call, void*) {
                if (call == killAt) std::raise(SIGKILL);
                return 0;
            },
            nullptr);
        tufile::updateFile(QString::fromLocal8Bit(argv[2]), "old", "new");
        return 0;
    }
    return 101;
}
