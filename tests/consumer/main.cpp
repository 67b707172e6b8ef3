// Uses the installed library through its umbrella header, as an application would.
#include <PlumvaleBaseCore/PlumvaleBaseCore.h>

#include <cinttypes>
#include <cstdio>

int main() {
    const TUCRC64Calculator calc;
    const auto crc = calc.compute("123456789");
    std::printf("crc64 %08" PRIx32 "%08" PRIx32 "\n", crc.first, crc.second);
    const UT_String text("d\xC3\xA9j\xC3\xA0");
    std::printf("units %u utf8 %s timecode %s\n", text.size(), text.utf8().c_str(),
                UT_FormatFrame(86400, 24).utf8().c_str());
    std::printf("round %d version %s\n", TUMaths::round(-2.5), PLUMVALE_VERSION_STRING);
    return text.size() == 4 ? 0 : 1;
}
