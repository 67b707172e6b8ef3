// The UTF-8 kernels as built for AVX2 (this file is compiled with -mavx2).
#include "Utf8KernelChecks.h"

TEST(Utf8Kernels, Avx2BuildAgreesWithBufferRoutines) {
    if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "this CPU has no AVX2";
    checkKernelsAgainstBufferRoutines();
}
