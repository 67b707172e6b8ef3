// The UTF-8 kernels built for AVX2 (this file is compiled with -mavx2), for the fuzz target.
#include "Utf8KernelBuild.h"

#include "text/Utf8Kernels.h"

namespace fuzz {

KernelBuild avx2Build() {
    return {"avx2", [] { return bool(__builtin_cpu_supports("avx2")); }, decodeUtf8, encodeSpan,
            kEncodeMaxStep};
}

} // namespace fuzz
