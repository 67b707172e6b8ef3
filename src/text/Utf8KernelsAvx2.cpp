// The whole-string UTF-8 kernels built for AVX2, chosen at run time on CPUs that have it.
#include "Utf8Kernels.h"

namespace plumvale::text {

std::size_t decodeUtf8Avx2(const unsigned char* s, std::size_t n, unsigned short* out) {
    return decodeUtf8(s, n, out);
}

std::size_t encodeUtf8SpanAvx2(const unsigned short* s, std::size_t n, std::size_t& i,
                               unsigned char* out, std::size_t room) {
    return encodeSpan(s, n, i, out, room);
}

} // namespace plumvale::text
