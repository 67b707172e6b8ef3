// The UTF-8 encoder built for AVX-512 (this file is compiled with the AVX-512 options), for
// the fuzz target.
#include "Utf8KernelBuild.h"

#include "text/Utf8Kernels.h"

namespace fuzz {

KernelBuild avx512Build() {
    return {"avx512",
            [] {
                return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
                       __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512vbmi") &&
                       __builtin_cpu_supports("avx512vbmi2");
            },
            decodeUtf8, encodeSpan, kEncodeMaxStep};
}

} // namespace fuzz
