// One build of the UTF-8 kernels as the fuzz target sees it: its two entry points.
#pragma once

#include <cstddef>

namespace fuzz {

struct KernelBuild {
    const char* name;
    /// Whether this CPU can run the build.
    bool (*available)();
    /// The whole-buffer decoder: `out` has room for `n` units; returns the units written.
    std::size_t (*decode)(const unsigned char* s, std::size_t n, unsigned short* out);
    /// The span encoder: writes from position `i` into `out` (room + maxStep bytes) and
    /// moves `i`; returns the bytes written.
    std::size_t (*encode)(const unsigned short* s, std::size_t n, std::size_t& i,
                          unsigned char* out, std::size_t room);
    std::size_t maxStep;
};

KernelBuild baselineBuild();
KernelBuild avx2Build();
KernelBuild avx512Build();

} // namespace fuzz
