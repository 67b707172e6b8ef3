// Process and kernel thread identifiers on Linux.
#include "app/SystemIds.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace plumvale {

long currentProcessId() {
    return static_cast<long>(::getpid());
}

// glibc 2.30 has gettid(); the system call works on every version.
long currentKernelThreadId() {
    return static_cast<long>(::syscall(SYS_gettid));
}

} // namespace plumvale
