// Tests of the locale-encoding conversions, number parsing and collation.
#include <PlumvaleBaseCore/text/UT_Encoding.h>

#include "LocaleGuard.h"

#include <gtest/gtest.h>

#include <climits>

TEST(Encoding, AsciiLocaleReplacesEachUnmappableCharacterByOneQuestionMark) {
    LocaleGuard c("C");
    const unsigned short text[] = {'a', 0xE9, 0xD83D, 0xDE00, 'b', 0xDC00, 'c', 0};
    EXPECT_EQ(UT_W2S(UT_String(text)), "a??b?c"); // the pair is one character
    std::string out;
    EXPECT_EQ(UT_W2S(UT_String(u"plain"), out), "plain");
    EXPECT_EQ(out, "plain");
    // A decomposed accent is composed first, so it costs one '?', not "e?".
    EXPECT_EQ(UT_W2S(UT_String(u"e\u0301")), "?");
    EXPECT_EQ(UT_A2W("x\xE9y").toU16String(), u"x\ufffdy");
}

TEST(Encoding, Utf8LocaleRoundTripsEverything) {
    LocaleGuard utf8("C.UTF-8");
    if (!utf8.ok()) GTEST_SKIP() << "no C.UTF-8 locale";
    const UT_String text(u"d\u00e9j\u00e0 \u20ac \U0001F600");
    const std::string bytes = UT_W2S(text);
    EXPECT_EQ(bytes, "d\xC3\xA9j\xC3\xA0 \xE2\x82\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(UT_A2W(bytes.c_str()), text);
    EXPECT_EQ(UT_S2W(bytes), text);
    // Decomposed text is left decomposed in UTF-8 (file names must keep their bytes).
    EXPECT_EQ(UT_W2S(UT_String(u"e\u0301")), "e\xCC\x81");
    EXPECT_EQ(UT_A2W("a\xFF"
                     "b")
                  .toU16String(),
              u"a\ufffdb");
    EXPECT_EQ(UT_A2W("a\xE2\x82").toU16String(), u"a\ufffd\ufffd"); // cut off: one per byte
    EXPECT_EQ(UT_W2S(UT_String(u"\xd800")), "?");
}

TEST(Encoding, ConversionsKeepEmbeddedZerosOnlyWhereDocumented) {
    LocaleGuard c("C");
    const unsigned short text[] = {'a', 0, 'b'};
    EXPECT_EQ(UT_W2S(UT_String(text, 3)), std::string("a\0b", 3));
    EXPECT_EQ(UT_S2W(std::string("a\0b", 3)), UT_String(u"a"));
    EXPECT_TRUE(UT_A2W(nullptr).empty());
}

TEST(Encoding, W2IntParsesLikeAtoiOverTheLowBytes) {
    struct Case {
        const char16_t* text;
        int value;
    };
    const Case cases[] = {
        {u"12abc", 12},
        {u"  -7", -7},
        {u"\t+3", 3},
        {u"abc", 0},
        {u"", 0},
        {u"- 5", 0},
        {u"99999999999", INT_MAX},
        {u"-99999999999", INT_MIN},
        {u"-2147483648", INT_MIN},
        {u"\u0131\u0132", 12}, // low bytes 0x31 0x32
        {u"4\u01002", 4},      // 0x0100 narrows to a zero byte, which ends the text
    };
    for (const auto& c : cases)
        EXPECT_EQ(UT_W2Int(UT_String(c.text)), c.value) << UT_String(c.text).utf8();
}

TEST(Encoding, W2FloatReadsCommaAsPointInAnyLocale) {
    struct Case {
        const char16_t* text;
        double value;
    };
    const Case cases[] = {
        {u"2,25", 2.25}, {u"1.5", 1.5}, {u"  -0,5x", -0.5}, {u"1e3", 1000.0},
        {u"abc", 0.0},   {u"", 0.0},    {u"3,", 3.0},
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(UT_W2Float(UT_String(c.text)), c.value) << UT_String(c.text).utf8();
    LocaleGuard utf8("C.UTF-8");
    EXPECT_DOUBLE_EQ(UT_W2Float(UT_String(u"1,5")), 1.5);
}

TEST(Encoding, CollationOrdersAndFoldsCase) {
    LocaleGuard c("C");
    EXPECT_LT(UT_Compare(UT_String(u"abc"), UT_String(u"abd")), 0);
    EXPECT_GT(UT_Compare(UT_String(u"b"), UT_String(u"abc")), 0);
    EXPECT_EQ(UT_Compare(UT_String(u"same"), UT_String(u"same")), 0);
    EXPECT_NE(UT_Compare(UT_String(u"ABC"), UT_String(u"abc")), 0);
    EXPECT_EQ(UT_CompareNoCase(UT_String(u"ABC"), UT_String(u"abc")), 0);
    EXPECT_LT(UT_CompareNoCase(UT_String(u"ABC"), UT_String(u"abd")), 0);
    // Characters beyond the BMP are compared as whole code points.
    EXPECT_GT(UT_Compare(UT_String(u"\U0001F600"), UT_String(u"\uffff")), 0);
}
