// Tests of the HSV and HLS conversions and the derived drawing colours.
#include <PlumvaleBaseCore/numerics/ColorConversion.h>

#include <gtest/gtest.h>

namespace {
unsigned long rgb(unsigned r, unsigned g, unsigned b) {
    return r | (g << 8) | (b << 16);
}
} // namespace

TEST(Color, KnownHsvValues) {
    struct Case {
        unsigned long colour;
        float h, s, v;
    };
    const Case cases[] = {
        {rgb(0, 0, 0), 0, 0, 0},
        {rgb(128, 128, 128), 0, 0, 128 / 255.0f},
        {rgb(255, 0, 0), 0, 1, 1},
        {rgb(0, 255, 0), 1 / 3.0f, 1, 1},
        {rgb(0, 0, 255), 2 / 3.0f, 1, 1},
        {rgb(255, 255, 0), 1 / 6.0f, 1, 1},
        {rgb(255, 0, 255), 5 / 6.0f, 1, 1},
        {rgb(255, 0, 128) | 0xFF000000ul, 1 - (128 / 255.0f) / 6, 1, 1}, // high bits ignored
    };
    for (const auto& c : cases) {
        HSV hsv;
        RGBtoHSV(c.colour, hsv);
        EXPECT_NEAR(hsv.hue, c.h, 1e-6) << std::hex << c.colour;
        EXPECT_NEAR(hsv.saturation, c.s, 1e-6) << std::hex << c.colour;
        EXPECT_NEAR(hsv.value, c.v, 1e-6) << std::hex << c.colour;
    }
}

TEST(Color, KnownHlsValues) {
    HLS hls;
    RGBtoHLS(rgb(255, 0, 0), hls);
    EXPECT_NEAR(hls.hue, 0, 1e-6);
    EXPECT_NEAR(hls.lightness, 0.5, 1e-6);
    EXPECT_NEAR(hls.saturation, 1, 1e-6);
    RGBtoHLS(rgb(64, 128, 64), hls); // green, darker half
    EXPECT_NEAR(hls.hue, 1 / 3.0f, 1e-6);
    EXPECT_NEAR(hls.lightness, 96 / 255.0f, 1e-6);
    EXPECT_NEAR(hls.saturation, 64.0f / 192.0f, 1e-6);
    RGBtoHLS(rgb(200, 255, 200), hls); // lighter half
    EXPECT_NEAR(hls.saturation, (55 / 255.0f) / (2 - 455 / 255.0f), 1e-6);
}

// Every 8-bit colour on a lattice survives both round trips exactly.
TEST(Color, RoundTripsAreExact) {
    for (unsigned r = 0; r < 256; r += 5)
        for (unsigned g = 0; g < 256; g += 3)
            for (unsigned b = 0; b < 256; b += 7) {
                const unsigned long c = rgb(r, g, b);
                HSV hsv;
                HLS hls;
                unsigned long back = 0;
                RGBtoHSV(c, hsv);
                HSVtoRGB(hsv, back);
                ASSERT_EQ(back, c) << r << "," << g << "," << b;
                RGBtoHLS(c, hls);
                HLStoRGB(hls, back);
                ASSERT_EQ(back, c) << r << "," << g << "," << b;
            }
}

TEST(Color, ComputeValueWalksTheDoubleHexcone) {
    EXPECT_FLOAT_EQ(ComputeValue(0.2f, 0.8f, 0.0f), 0.2f);
    EXPECT_FLOAT_EQ(ComputeValue(0.2f, 0.8f, 1 / 12.0f), 0.5f);
    EXPECT_FLOAT_EQ(ComputeValue(0.2f, 0.8f, 0.3f), 0.8f);
    EXPECT_FLOAT_EQ(ComputeValue(0.2f, 0.8f, 7 / 12.0f), 0.5f);
    EXPECT_FLOAT_EQ(ComputeValue(0.2f, 0.8f, 0.9f), 0.2f);
    EXPECT_FLOAT_EQ(ComputeValue(0.2f, 0.8f, 1.3f), 0.8f);  // wraps above 1
    EXPECT_FLOAT_EQ(ComputeValue(0.2f, 0.8f, -0.1f), 0.2f); // and below 0
}

TEST(Color, GreysAndHighlights) {
    unsigned long gray, contrast;
    ExtractTwoGrayIntensity(rgb(255, 255, 255), gray, contrast);
    EXPECT_EQ(gray, 0xFFFFFFul);
    EXPECT_EQ(contrast, 0x7F7F7Ful);
    ExtractTwoGrayIntensity(rgb(0, 0, 0), gray, contrast);
    EXPECT_EQ(gray, 0ul);
    EXPECT_EQ(contrast, 0x7F7F7Ful);
    ExtractTwoGrayIntensity(rgb(255, 0, 0), gray, contrast); // luminance 76
    EXPECT_EQ(gray, rgb(76, 76, 76));
    EXPECT_EQ(contrast, rgb(165, 165, 165));

    EXPECT_EQ(HightLightColor(rgb(255, 0, 0), 0.25f), rgb(255, 128, 128));
    EXPECT_EQ(HightLightColor(rgb(255, 0, 0), 1.0f), rgb(255, 255, 255));
    EXPECT_EQ(HightLightColor(rgb(255, 0, 0), -1.0f), rgb(0, 0, 0));
    EXPECT_EQ(HightLightColor(rgb(10, 20, 30), 0.0f), rgb(10, 20, 30));
}
