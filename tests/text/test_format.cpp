// Tests of UT_FormatMessage against the C library's printf, and of UT_FormatFrame.
#include <PlumvaleBaseCore/text/UT_Format.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

/// printf of the same 8-bit format and arguments, widened byte by byte.
template <class... Args>
UT_String cFormat(const char* format, Args... args) {
    char buffer[512];
    const int n = std::snprintf(buffer, sizeof buffer, format, args...);
    UT_String out;
    for (int i = 0; i < n; ++i)
        out.push_back(
            static_cast<unsigned short>(static_cast<short>(static_cast<signed char>(buffer[i]))));
    return out;
}

#define EXPECT_LIKE_PRINTF(format, ...)                                                            \
    EXPECT_EQ(UT_FormatMessage(format, __VA_ARGS__).utf8(), cFormat(format, __VA_ARGS__).utf8())   \
        << format

} // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
#pragma GCC diagnostic ignored "-Wformat-extra-args"

TEST(Format, NumericConversionsMatchTheCLibrary) {
    EXPECT_LIKE_PRINTF("%d|%i|%5d|%-5d|%05d|%+d|% d", 42, -7, 3, 3, -3, 9, 9);
    EXPECT_LIKE_PRINTF("%o|%#o|%u|%x|%#X|%.4x|%8.3d", 8u, 8u, 4000000000u, 255u, 255u, 10u, 5);
    EXPECT_LIKE_PRINTF("%hd|%hu|%ld|%lx", 70000, 70000, -1234567890123L, 0xFFFFFFFFFFL);
    EXPECT_LIKE_PRINTF("%e|%E|%f|%.2f|%g|%G|%10.3e|%-12g|", 1.5e-7, 123456.789, 3.14159, 2.005,
                       1e20, 1e-20, -0.5, 100.0);
    EXPECT_LIKE_PRINTF("%c%c|%5c|%p", 'o', 'k', 'x', static_cast<void*>(nullptr));
    EXPECT_LIKE_PRINTF("%*d|%-*d|%.*f|%*d", 6, 1, 4, 2, 3, 2.0 / 3.0, -6, 7);
    EXPECT_LIKE_PRINTF("%f|%e|%g", 1.0 / 0.0, -1.0 / 0.0, 0.0 / 0.0);
    int local = 0;
    EXPECT_LIKE_PRINTF("%p", static_cast<void*>(&local));
}

TEST(Format, SixtyFourBitAndOldUpperCaseForms) {
    EXPECT_EQ(UT_FormatMessage("%qd %qx %lld", -9000000000000000000LL, 0xABCDEF0123456789ULL, 123LL)
                  .utf8(),
              "-9000000000000000000 abcdef0123456789 123");
    EXPECT_EQ(UT_FormatMessage("%D %O %U", -5L, 8L, 7L).utf8(), "-5 10 7");
}

TEST(Format, PositionalArgumentsAreReadOnceByPosition) {
    EXPECT_EQ(UT_FormatMessage("%2$s %1$d %2$s", 7, "x").utf8(), "x 7 x");
    EXPECT_EQ(UT_FormatMessage("%1$*2$d|", 5, 4).utf8(), "   5|");
    EXPECT_EQ(UT_FormatMessage("%3$.*2$f %1$s", "t", 2, 3.14159).utf8(), "3.14 t");
    // More than the table's first twenty slots, named in reverse order.
    std::string format, expected;
    for (int k = 22; k >= 1; --k) {
        format.append(1, '%').append(std::to_string(k)).append("$d ");
        expected.append(std::to_string(k * 10)).append(1, ' ');
    }
    EXPECT_EQ(UT_FormatMessage(format.c_str(), 10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120,
                               130, 140, 150, 160, 170, 180, 190, 200, 210, 220)
                  .utf8(),
              expected);
    // A slot nothing names has no known type: it and those after it are not read.
    EXPECT_EQ(UT_FormatMessage("%3$d %1$d", 1, 2, 3).utf8(), "0 1");
}

TEST(Format, StringKindsAreWidenedHere) {
    const unsigned short wide[] = {'w', 0x20AC, 0};
    EXPECT_EQ(UT_FormatMessage("[%S|%@|%C|%lc]", wide, wide, 0x263A, 0x263B).toU16String(),
              u"[w\u20ac|w\u20ac|\u263a|\u263b]");
    // 8-bit text is widened with sign extension: 0xE9 becomes 0xFFE9.
    EXPECT_EQ(UT_FormatMessage("%s", "\xE9t\xE9").toU16String(), u"\uffe9t\uffe9");
    const unsigned char pascal[] = {3, 'a', 'b', 'c', 'd'};
    EXPECT_EQ(UT_FormatMessage("<%P>", pascal).utf8(), "<abc>");
    EXPECT_EQ(UT_FormatMessage("%s|%S", static_cast<const char*>(nullptr),
                               static_cast<const unsigned short*>(nullptr))
                  .utf8(),
              "(null)|(null)");
    EXPECT_EQ(UT_FormatMessage("[%5s|%-5s|%.2s|%ls]", "ab", "ab", "abcdef", wide).toU16String(),
              u"[   ab|ab   |ab|w\u20ac]");
}

TEST(Format, UnknownConversionsAreCopiedAndConsumeNothing) {
    EXPECT_EQ(UT_FormatMessage("%y %d", 5).utf8(), "%y 5");
    EXPECT_EQ(UT_FormatMessage("100%% %d%", 3).utf8(), "100% 3%");
    EXPECT_EQ(UT_FormatMessage("%-08.3k|%d", 4).utf8(), "%-08.3k|4");
    EXPECT_EQ(UT_FormatMessage("%5").utf8(), "%5");
    int untouched = 12345;
    EXPECT_EQ(UT_FormatMessage("a%nb%d", &untouched, 6).utf8(), "ab6");
    EXPECT_EQ(untouched, 12345);
}

TEST(Format, EightBitFormatIsWidenedWithSignExtension) {
    EXPECT_EQ(UT_FormatMessage("\xE9%d", 1).toU16String(), u"\uffe91");
    const unsigned short wideFormat[] = {0xE9, '%', 'd', 0};
    EXPECT_EQ(UT_FormatMessage(wideFormat, 1).toU16String(), u"\u00e91");
    EXPECT_EQ(UT_FormatMessage(u"%S!", u"ok").utf8(), "ok!");
}

TEST(Format, HostileFormatTextsAreCopiedNotObeyed) {
    // Each case: a format from an untrusted catalogue, with the fixed arguments 42 and "ab".
    struct Case {
        const char* format;
        const char* expected;
    };
    const Case cases[] = {
        {"%99999999$d|%1$d", "%99999999$d|42"}, // a position no call passes
        {"%65$d|%1$d", "%65$d|42"},
        {"%64$d|%1$d", "0|42"}, // the last slot allowed; nothing was passed for it
        {"%2147483647d|%d", "%2147483647d|42"},
        {"%.2147483647d|%1$d", "%.2147483647d|42"},
        {"%4097d", "%4097d"},
        {"%*99999$d|%d", "%*99999$d|42"},
        {"%2$.1s%1$d", "a42"},
        {"%z%d", "%z42"}, // an unknown conversion consumes no argument
        {"%*z%d", "%*z42"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(UT_FormatMessage(c.format, 42, "ab").utf8(), c.expected) << c.format;
    EXPECT_EQ(UT_FormatMessage("%4096d", 1).size(), 4096u);
    // A "*" value above the limit is refused when formatting; its arguments are spent.
    EXPECT_EQ(UT_FormatMessage("%*d|%d", 100000, 1, 2).utf8(), "%*d|2");
    EXPECT_EQ(UT_FormatMessage("%-*d|", -4096, 1).size(), 4097u);
}

TEST(Format, OneArgumentReadAsTwoKinds) {
    // As two integer kinds the argument is read whole: the string keeps its full pointer
    // (read as an int first, a pointer was once cut to 32 bits and crashed).
    const std::string both = UT_FormatMessage("%1$x|%1$s", "ab").utf8();
    EXPECT_EQ(both.substr(both.find('|')), "|ab");
    // An integer against a double is a conflict: the later specification is copied as text.
    EXPECT_EQ(UT_FormatMessage("%1$d %1$f|%2$d", 7, 8).utf8(), "7 %1$f|8");
    EXPECT_EQ(UT_FormatMessage("%1$.1f %*1$d|", 2.5).utf8(), "2.5 %*1$d|");
}

TEST(Format, PrecisionBoundsTheReadOfUnterminatedStrings) {
    // No terminating zero anywhere: printf reads at most `precision` elements.
    const char narrow[3] = {'a', 'b', 'c'};
    const unsigned short wide[3] = {u'x', u'y', u'z'};
    EXPECT_EQ(UT_FormatMessage("%.3s|%.2s|%5.1s", narrow, narrow, narrow).utf8(), "abc|ab|    a");
    EXPECT_EQ(UT_FormatMessage("%.3S|%.*S", wide, 2, wide).utf8(), "xyz|xy");
}

#pragma GCC diagnostic pop

namespace {
UT_String viaVaList(const char16_t* format, ...) {
    va_list args;
    va_start(args, format);
    UT_String out(u"old content");
    UT_DoFormatMessage(out, UT_String(format), args);
    va_end(args);
    return out;
}
} // namespace

TEST(Format, DoFormatMessageReplacesItsOutput) {
    EXPECT_EQ(viaVaList(u"%d-%d", 1, 2).utf8(), "1-2");
}

TEST(Format, FrameTimecodes) {
    struct Case {
        int frames, fps;
        bool hours;
        const char* text;
    };
    const Case cases[] = {
        {86400, 24, false, "01:00:00:00"},
        {25, 24, false, "01:01"},
        {25, 24, true, "00:00:01:01"},
        {1440, 24, false, "01:00:00"},
        {0, 24, false, "00:00"},
        {89999, 25, false, "59:59:24"},
        {90000, 25, false, "01:00:00:00"},
        {360000 * 30, 30, false, "100:00:00:00"},
        {7, 0, false, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(UT_FormatFrame(c.frames, c.fps, c.hours).utf8(), c.text)
            << c.frames << " @ " << c.fps;
}
