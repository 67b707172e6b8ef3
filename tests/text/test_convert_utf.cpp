// Tests of the buffer transcoding routines: pointer rules at both ends and round trips.
#include <PlumvaleBaseCore/text/ConvertUTF.h>

#include <QString>

#include <gtest/gtest.h>

#include <vector>

namespace {
using u8 = unsigned char;
using u16 = unsigned short;
using u32 = unsigned int;
} // namespace

TEST(ConvertUtf, Utf16ToUtf8StopsBeforeASequenceThatDoesNotFit) {
    const u16 src[] = {'a', 0x20AC, 'b'}; // "a€b": 1 + 3 + 1 bytes
    u8 out[3];
    const u16* s = src;
    u8* t = out;
    EXPECT_EQ(ConvertUTF16toUTF8(&s, src + 3, &t, out + 3), targetExhausted);
    EXPECT_EQ(s, src + 1); // "€" not consumed
    EXPECT_EQ(t, out + 1); // and nothing of it written
    u8 big[8];
    t = big;
    EXPECT_EQ(ConvertUTF16toUTF8(&s, src + 3, &t, big + 8), conversionOK);
    EXPECT_EQ(std::vector<u8>(big, t), (std::vector<u8>{0xE2, 0x82, 0xAC, 'b'}));
}

TEST(ConvertUtf, SurrogatePairOnlyWhenBothHalvesAreInTheInput) {
    const u16 pair[] = {0xD83D, 0xDE00};
    u32 out[2];
    const u16* s = pair;
    u32* t = out;
    EXPECT_EQ(ConvertUTF16toUCS4(&s, pair + 2, &t, out + 2), conversionOK);
    EXPECT_EQ(t - out, 1);
    EXPECT_EQ(out[0], 0x1F600u);
    s = pair; // the input ends after the high half: it passes through alone
    t = out;
    EXPECT_EQ(ConvertUTF16toUCS4(&s, pair + 1, &t, out + 2), conversionOK);
    EXPECT_EQ(out[0], 0xD83Du);
    const u16 reversed[] = {0xDE00, 0xD83D};
    s = reversed;
    t = out;
    EXPECT_EQ(ConvertUTF16toUCS4(&s, reversed + 2, &t, out + 2), conversionOK);
    EXPECT_EQ(std::vector<u32>(out, t), (std::vector<u32>{0xDE00, 0xD83D}));
}

TEST(ConvertUtf, Utf8ToUtf16PairWithOneUnitOfRoomConsumesTheSequence) {
    const u8 src[] = {'x', 0xF0, 0x9F, 0x98, 0x80, 'y'};
    u16 out[2];
    const u8* s = src;
    u16* t = out;
    EXPECT_EQ(ConvertUTF8toUTF16(&s, src + 6, &t, out + 2), targetExhausted);
    EXPECT_EQ(t, out + 1);
    EXPECT_EQ(s, src + 5); // after the 4-byte sequence, which was not written
    // With no room at all the source stays on the lead byte.
    s = src + 1;
    t = out + 2;
    EXPECT_EQ(ConvertUTF8toUTF16(&s, src + 6, &t, out + 2), targetExhausted);
    EXPECT_EQ(s, src + 1);
}

TEST(ConvertUtf, TruncatedUtf8LeavesTheSourceOnTheLeadByte) {
    const u8 src[] = {'a', 0xE2, 0x82};
    u16 out16[4];
    u32 out32[4];
    const u8* s = src;
    u16* t16 = out16;
    EXPECT_EQ(ConvertUTF8toUTF16(&s, src + 3, &t16, out16 + 4), sourceExhausted);
    EXPECT_EQ(s, src + 1);
    EXPECT_EQ(t16, out16 + 1);
    s = src;
    u32* t32 = out32;
    EXPECT_EQ(ConvertUTF8toUCS4(&s, src + 3, &t32, out32 + 4), sourceExhausted);
    EXPECT_EQ(s, src + 1);
}

TEST(ConvertUtf, Ucs4ToUtf8UsesFiveBytesBelow2Pow26AndReplacesAbove) {
    struct Case {
        u32 value;
        std::vector<u8> bytes;
    };
    const Case cases[] = {
        {0x7F, {0x7F}},
        {0x80, {0xC2, 0x80}},
        {0x7FF, {0xDF, 0xBF}},
        {0xFFFF, {0xEF, 0xBF, 0xBF}},
        {0x10FFFF, {0xF4, 0x8F, 0xBF, 0xBF}},
        {0x1FFFFF, {0xF7, 0xBF, 0xBF, 0xBF}},
        {0x200000, {0xF8, 0x88, 0x80, 0x80, 0x80}},
        {0x3FFFFFF, {0xFB, 0xBF, 0xBF, 0xBF, 0xBF}},
        {0x4000000, {0xEF, 0xBF, 0xBD}},
    };
    for (const auto& c : cases) {
        u8 out[8];
        const u32* s = &c.value;
        u8* t = out;
        EXPECT_EQ(ConvertUCS4toUTF8(&s, s + 1, &t, out + 8), conversionOK);
        EXPECT_EQ(std::vector<u8>(out, t), c.bytes) << std::hex << c.value;
        // The five-byte forms decode back to their value; UCS-4 output caps at U+10FFFF.
        const u8* back = out;
        u32 value = 0;
        u32* v = &value;
        ConvertUTF8toUCS4(&back, t, &v, &value + 1);
        EXPECT_EQ(value, c.value > 0x10FFFF ? 0xFFFDu : c.value);
    }
}

// Every scalar value through UCS-4 -> UTF-8 -> UTF-16 -> UCS-4, with the UTF-8 bytes
// checked against Qt's encoder.
TEST(ConvertUtf, AllScalarValuesRoundTripAndMatchQt) {
    for (u32 cp = 0; cp <= 0x10FFFF; cp += (cp < 0x800 ? 1 : 13)) {
        if (cp >= 0xD800 && cp <= 0xDFFF) continue;
        u8 utf8[8];
        const u32* s32 = &cp;
        u8* t8 = utf8;
        ASSERT_EQ(ConvertUCS4toUTF8(&s32, &cp + 1, &t8, utf8 + 8), conversionOK);
        const char32_t c = cp;
        const QByteArray qt = QString::fromUcs4(&c, 1).toUtf8();
        ASSERT_EQ(QByteArray(reinterpret_cast<const char*>(utf8), int(t8 - utf8)), qt) << cp;

        u16 utf16[2];
        const u8* s8 = utf8;
        u16* t16 = utf16;
        ASSERT_EQ(ConvertUTF8toUTF16(&s8, t8, &t16, utf16 + 2), conversionOK);
        u32 back = 0;
        const u16* s16 = utf16;
        u32* tb = &back;
        ASSERT_EQ(ConvertUTF16toUCS4(&s16, t16, &tb, &back + 1), conversionOK);
        ASSERT_EQ(back, cp);
    }
}

TEST(ConvertUtf, NullArgumentsConvertNothing) {
    const u8* s = nullptr;
    u16 out[1];
    u16* t = out;
    EXPECT_EQ(ConvertUTF8toUTF16(&s, nullptr, &t, out + 1), conversionOK);
    EXPECT_EQ(ConvertUTF16toUTF8(nullptr, nullptr, nullptr, nullptr), conversionOK);
    EXPECT_EQ(t, out);
}
