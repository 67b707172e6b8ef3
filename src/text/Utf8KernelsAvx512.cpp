// The whole-string UTF-8 kernels built for AVX-512 with byte compression (VBMI2), chosen
// at run time on CPUs that have it.
#include "Utf8Kernels.h"

static_assert(PLUMVALE_UTF8_AVX512_ENCODE, "this file must be built with the AVX-512 options");

namespace plumvale::text {

std::size_t encodeUtf8SpanAvx512(const unsigned short* s, std::size_t n, std::size_t& i,
                                 unsigned char* out, std::size_t room) {
    return encodeSpan(s, n, i, out, room);
}

} // namespace plumvale::text
