// The UTF-8 encoding loop built for SSSE3, chosen at run time on CPUs that have it.
#include "Utf8EncodeSpan.h"

namespace plumvale::text {

std::size_t encodeUtf8SpanSsse3(const unsigned short* s, std::size_t n, std::size_t& i,
                                unsigned char* out, const unsigned char* limit) {
    return encodeSpan(s, n, i, out, limit);
}

} // namespace plumvale::text
