// The UTF-8 encoder as built for AVX-512 (this file is compiled with the AVX-512 options).
#include "Utf8KernelChecks.h"

TEST(Utf8Kernels, Avx512BuildAgreesWithBufferRoutines) {
    if (!__builtin_cpu_supports("avx512bw") || !__builtin_cpu_supports("avx512vl") ||
        !__builtin_cpu_supports("avx512cd") || !__builtin_cpu_supports("avx512vbmi") ||
        !__builtin_cpu_supports("avx512vbmi2"))
        GTEST_SKIP() << "this CPU lacks the AVX-512 byte instructions";
    checkKernelsAgainstBufferRoutines();
}
