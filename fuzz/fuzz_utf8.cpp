// Fuzz target: UTF-8 and UTF-16 through every kernel build this CPU runs and through
// UT_String, compared with the buffer routines byte for byte.
//
// Input: byte 0 sets the encoder's room per call (1 to 64 bytes, as the library's chunked
// callers use, or 8192 for 0); the rest is read both as UTF-8 and as UTF-16 units.
#include "FuzzCheck.h"
#include "Utf8KernelBuild.h"

#include <PlumvaleBaseCore/text/UT_String.h>

#include <algorithm>
#include <cstring>

namespace {

std::vector<fuzz::KernelBuild> runnableBuilds() {
    std::vector<fuzz::KernelBuild> builds;
    for (const fuzz::KernelBuild& b : {
             fuzz::baselineBuild(),
#if defined(PLUMVALE_FUZZ_X86_64)
                 fuzz::avx2Build(), fuzz::avx512Build()
#endif
         })
        if (b.available()) builds.push_back(b);
    return builds;
}

std::string kernelEncode(const fuzz::KernelBuild& b, const fuzz::Units& u, std::size_t room) {
    std::vector<unsigned char> chunk(room + b.maxStep);
    std::string out;
    std::size_t i = 0;
    while (i < u.size()) {
        const std::size_t before = i;
        const std::size_t produced = b.encode(u.data(), u.size(), i, chunk.data(), room);
        FUZZ_CHECK(i > before); // every call makes progress
        out.append(reinterpret_cast<const char*>(chunk.data()), produced);
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    static const std::vector<fuzz::KernelBuild> builds = runnableBuilds();
    const std::size_t room = data[0] % 65 == 0 ? 8192 : data[0] % 65;
    const unsigned char* bytes = data + 1;
    const std::size_t n = size - 1;

    const fuzz::Units expectedUnits = fuzz::referenceDecode(bytes, n);
    const fuzz::Units units = fuzz::unitsOf(bytes, n);
    const std::string expectedBytes = fuzz::referenceEncode(units.data(), units.size());
    for (const fuzz::KernelBuild& b : builds) {
        fuzz::Units decoded(n);
        decoded.resize(b.decode(bytes, n, decoded.data()));
        FUZZ_CHECK(decoded == expectedUnits);
        FUZZ_CHECK(kernelEncode(b, units, room) == expectedBytes);
    }

    // The public path, dispatched as applications get it: the text up to its first zero.
    const std::string text(reinterpret_cast<const char*>(bytes),
                           strnlen(reinterpret_cast<const char*>(bytes), n));
    const UT_String decoded(text.c_str());
    const fuzz::Units upToZero =
        fuzz::referenceDecode(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    FUZZ_CHECK(decoded.size() == upToZero.size() &&
               std::equal(upToZero.begin(), upToZero.end(), decoded.begin()));
    FUZZ_CHECK(decoded.utf8() == fuzz::referenceEncode(decoded.data(), decoded.size()));
    const UT_String wide(units.data(), UT_String::size_type(units.size()));
    FUZZ_CHECK(wide.utf8() == expectedBytes);
    return 0;
}
