// Shared by the fuzz targets: a check that aborts (so the fuzzer records the input) and the
// buffer routines the library's kernels are compared against.
#pragma once

#include <PlumvaleBaseCore/text/ConvertUTF.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// Aborts with the failed condition when `cond` is false, in every build type.
#define FUZZ_CHECK(cond)                                                                           \
    do {                                                                                           \
        if (!(cond)) {                                                                             \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond);          \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

namespace fuzz {

using Units = std::vector<unsigned short>;

/// The input's bytes read as little-endian UTF-16 units (an odd last byte is dropped).
inline Units unitsOf(const unsigned char* data, std::size_t size) {
    Units u(size / 2);
    for (std::size_t k = 0; k < u.size(); ++k)
        u[k] = static_cast<unsigned short>(data[2 * k] | (data[2 * k + 1] << 8));
    return u;
}

/// UTF-16 to UTF-8 with the buffer routine, all at once.
inline std::string referenceEncode(const unsigned short* s, std::size_t n) {
    std::string out(n * 3 + 1, '\0');
    auto* t = reinterpret_cast<unsigned char*>(out.data());
    ConvertUTF16toUTF8(&s, s + n, &t, t + out.size());
    out.resize(std::size_t(t - reinterpret_cast<unsigned char*>(out.data())));
    return out;
}

/// UTF-8 to UTF-16 with the buffer routine, all at once.
inline Units referenceDecode(const unsigned char* s, std::size_t n) {
    Units out(n + 1);
    unsigned short* t = out.data();
    ConvertUTF8toUTF16(&s, s + n, &t, out.data() + out.size());
    out.resize(std::size_t(t - out.data()));
    return out;
}

} // namespace fuzz
