# Compiler options of the kernels that are built once per x86-64 instruction set.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
    set(PLUMVALE_X86_64 ON)
else()
    set(PLUMVALE_X86_64 OFF)
endif()
set(PLUMVALE_AVX2_OPTIONS -mavx2)
# Byte compression (VBMI2) and multishift (VBMI) over 512-bit registers with byte masks (BW),
# masked 256-bit loads (VL) and leading-zero counts (CD).
# GCC 12 reports its own AVX-512 intrinsic headers as reading uninitialised values.
set(PLUMVALE_AVX512_OPTIONS -mavx2 -mavx512f -mavx512bw -mavx512vl -mavx512vbmi -mavx512vbmi2 -mavx512cd
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
