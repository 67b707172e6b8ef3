// pvtool: command-line access to PlumvaleBaseCore (version, CRC-64 of files, timecodes).
#include <PlumvaleBaseCore/PlumvaleBaseCore.h>

#include <cerrno>
#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kExitFailure = 1; // a file could not be read
constexpr int kExitUsage = 2;   // bad command line

void usage(FILE* out) {
    std::fputs("usage: pvtool --version\n"
               "       pvtool crc64 FILE...        (\"-\" reads standard input)\n"
               "       pvtool timecode FRAMES FPS [--hours]\n",
               out);
}

/// Parses a whole decimal int; false for anything else (empty, trailing text, overflow).
bool parseInt(const char* text, int& value) {
    if (!text || !*text) return false;
    errno = 0;
    char* end = nullptr;
    const long v = std::strtol(text, &end, 10);
    if (errno != 0 || *end != '\0' || v < INT_MIN || v > INT_MAX) return false;
    value = static_cast<int>(v);
    return true;
}

/// CRC-64 of a whole stream, read in large blocks.
bool crcOfStream(FILE* in, const TUCRC64Calculator& calc, std::uint64_t& crc) {
    std::vector<unsigned char> buffer(1 << 20);
    crc = 0;
    for (;;) {
        const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), in);
        crc = calc.update(crc, buffer.data(), got);
        if (got < buffer.size()) return !std::ferror(in);
    }
}

int runCrc64(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("pvtool crc64: no file given\n", stderr);
        usage(stderr);
        return kExitUsage;
    }
    const TUCRC64Calculator calc;
    int status = 0;
    for (int i = 2; i < argc; ++i) {
        const bool isStdin = std::strcmp(argv[i], "-") == 0;
        FILE* in = isStdin ? stdin : std::fopen(argv[i], "rbe");
        if (!in) {
            std::fprintf(stderr, "pvtool crc64: %s: %s\n", argv[i], std::strerror(errno));
            status = kExitFailure;
            continue;
        }
        std::uint64_t crc = 0;
        const bool ok = crcOfStream(in, calc, crc);
        const int readError = errno;
        if (!isStdin) std::fclose(in);
        if (!ok) {
            std::fprintf(stderr, "pvtool crc64: %s: %s\n", argv[i], std::strerror(readError));
            status = kExitFailure;
            continue;
        }
        std::printf("%016" PRIx64 "  %s\n", crc, argv[i]);
    }
    return status;
}

int runTimecode(int argc, char** argv) {
    int frames = 0, fps = 0;
    bool hours = false;
    if (argc == 5 && std::strcmp(argv[4], "--hours") == 0) hours = true;
    if (argc != 4 && !(argc == 5 && hours)) {
        std::fputs("pvtool timecode: expected FRAMES FPS [--hours]\n", stderr);
        usage(stderr);
        return kExitUsage;
    }
    if (!parseInt(argv[2], frames)) {
        std::fprintf(stderr, "pvtool timecode: '%s' is not a whole number of frames\n", argv[2]);
        return kExitUsage;
    }
    if (!parseInt(argv[3], fps) || fps <= 0) {
        std::fprintf(stderr, "pvtool timecode: '%s' is not a positive frame rate\n", argv[3]);
        return kExitUsage;
    }
    std::printf("%s\n", UT_FormatFrame(frames, fps, hours).utf8().c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        usage(stderr);
        return kExitUsage;
    }
    const std::string command = argv[1];
    if (command == "--version" && argc == 2) {
        std::printf("pvtool (PlumvaleBaseCore) %s, Qt %d\n", PLUMVALE_VERSION_STRING,
                    PLUMVALE_QT_MAJOR_VERSION);
        return 0;
    }
    if (command == "--help" || command == "-h") {
        usage(stdout);
        return 0;
    }
    if (command == "crc64") return runCrc64(argc, argv);
    if (command == "timecode") return runTimecode(argc, argv);
    std::fprintf(stderr, "pvtool: unknown command '%s'\n", argv[1]);
    usage(stderr);
    return kExitUsage;
}
