// Fuzz target: the wide printf with format texts from the fuzzer and a fixed argument list.
//
// Every one of the 64 arguments a format may name is the same pointer to a buffer that is
// safe whatever the conversion reads from it: a zero-terminated 8-bit and 16-bit text, and
// a count byte with the bytes it counts. So no conversion, however mismatched, reads outside
// what was passed. Input: byte 0 chooses the 8-bit (even) or the 16-bit (odd) form; the rest
// is the format.
#include "FuzzCheck.h"

#include <PlumvaleBaseCore/text/UT_Format.h>

#include <algorithm>

namespace {

// "ab" then zeros: "%s" prints "ab", "%S" reads the units 0x6261 and 0, "%P" reads a count
// of 97 and then 97 bytes, all inside the buffer.
alignas(8) const char kArgument[512] = "ab";

// A limit for the output: the longest a directive may print (a width or precision of 4096
// on a double of up to 309 digits) times the directives the format can hold.
std::size_t outputBound(std::size_t formatUnits) {
    return formatUnits * (4096 + 4096 + 400) + 16;
}

#define A8 kArgument, kArgument, kArgument, kArgument, kArgument, kArgument, kArgument, kArgument
#define A64 A8, A8, A8, A8, A8, A8, A8, A8

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    UT_String out;
    std::size_t formatUnits = 0;
    bool hasPercent = false;
    if (data[0] % 2 == 0) {
        const std::string format(reinterpret_cast<const char*>(data + 1), size - 1);
        const std::string text = format.substr(0, format.find('\0'));
        formatUnits = text.size();
        hasPercent = text.find('%') != std::string::npos;
        out = UT_FormatMessage(text.c_str(), A64);
        if (!hasPercent) FUZZ_CHECK(out.size() == text.size());
    } else {
        fuzz::Units format = fuzz::unitsOf(data + 1, size - 1);
        format.resize(std::find(format.begin(), format.end(), 0) - format.begin());
        formatUnits = format.size();
        hasPercent = std::find(format.begin(), format.end(), u'%') != format.end();
        format.push_back(0);
        out = UT_FormatMessage(format.data(), A64);
        if (!hasPercent)
            FUZZ_CHECK(out.size() == formatUnits &&
                       std::equal(out.begin(), out.end(), format.begin()));
    }
    FUZZ_CHECK(out.size() <= outputBound(formatUnits));
    return 0;
}
