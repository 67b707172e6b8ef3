// The UTF-8 kernels as built for the baseline instruction set.
#include "Utf8KernelChecks.h"

TEST(Utf8Kernels, BaselineBuildAgreesWithBufferRoutines) {
    checkKernelsAgainstBufferRoutines();
}
