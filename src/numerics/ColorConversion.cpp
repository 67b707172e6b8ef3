// Hexcone colour-space conversions of packed RGB colours.
#include <PlumvaleBaseCore/numerics/ColorConversion.h>

#include <algorithm>
#include <cmath>

namespace {

struct Rgb {
    float r, g, b;
};

Rgb unpack(unsigned long c) {
    return {float(c & 0xFF) / 255.0f, float((c >> 8) & 0xFF) / 255.0f,
            float((c >> 16) & 0xFF) / 255.0f};
}

unsigned long channel(float v) {
    if (!(v > 0.0f)) return 0; // NaN included
    if (v >= 1.0f) return 255;
    return static_cast<unsigned long>(std::lround(v * 255.0f));
}

unsigned long pack(float r, float g, float b) {
    return channel(r) | (channel(g) << 8) | (channel(b) << 16);
}

float clamp01(float v) {
    return v > 1.0f ? 1.0f : (v > 0.0f ? v : 0.0f);
}

float wrap01(float h) {
    if (!std::isfinite(h)) return 0.0f;
    h -= std::floor(h);
    return h >= 1.0f ? 0.0f : h;
}

/// Hue of the hexcone, in [0, 1), for a colour whose spread (max - min) is not zero.
float hexconeHue(const Rgb& c, float largest, float spread) {
    float h;
    if (c.r == largest)
        h = (c.g - c.b) / spread;
    else if (c.g == largest)
        h = 2.0f + (c.b - c.r) / spread;
    else
        h = 4.0f + (c.r - c.g) / spread;
    return wrap01(h / 6.0f);
}

} // namespace

void RGBtoHSV(unsigned long colour, HSV& hsv) {
    const Rgb c = unpack(colour);
    const float largest = std::max({c.r, c.g, c.b});
    const float smallest = std::min({c.r, c.g, c.b});
    hsv.value = largest;
    hsv.saturation = largest > 0.0f ? (largest - smallest) / largest : 0.0f;
    hsv.hue = hsv.saturation == 0.0f ? 0.0f : hexconeHue(c, largest, largest - smallest);
}

void HSVtoRGB(const HSV& hsv, unsigned long& colour) {
    const float v = clamp01(hsv.value);
    const float s = clamp01(hsv.saturation);
    if (s == 0.0f) {
        colour = pack(v, v, v);
        return;
    }
    const float h = wrap01(hsv.hue) * 6.0f;
    const int sector = std::min(static_cast<int>(h), 5);
    const float f = h - float(sector);
    const float p = v * (1.0f - s);
    const float q = v * (1.0f - s * f);
    const float t = v * (1.0f - s * (1.0f - f));
    switch (sector) {
    case 0:
        colour = pack(v, t, p);
        break;
    case 1:
        colour = pack(q, v, p);
        break;
    case 2:
        colour = pack(p, v, t);
        break;
    case 3:
        colour = pack(p, q, v);
        break;
    case 4:
        colour = pack(t, p, v);
        break;
    default:
        colour = pack(v, p, q);
        break;
    }
}

void RGBtoHLS(unsigned long colour, HLS& hls) {
    const Rgb c = unpack(colour);
    const float largest = std::max({c.r, c.g, c.b});
    const float smallest = std::min({c.r, c.g, c.b});
    const float spread = largest - smallest;
    hls.lightness = (largest + smallest) / 2.0f;
    if (spread == 0.0f) {
        hls.saturation = 0.0f;
        hls.hue = 0.0f;
        return;
    }
    hls.saturation = hls.lightness <= 0.5f ? spread / (largest + smallest)
                                           : spread / (2.0f - largest - smallest);
    hls.hue = hexconeHue(c, largest, spread);
}

float ComputeValue(float n1, float n2, float hue) {
    hue = wrap01(hue);
    if (hue < 1.0f / 6.0f) return n1 + (n2 - n1) * hue * 6.0f;
    if (hue < 0.5f) return n2;
    if (hue < 2.0f / 3.0f) return n1 + (n2 - n1) * (2.0f / 3.0f - hue) * 6.0f;
    return n1;
}

void HLStoRGB(const HLS& hls, unsigned long& colour) {
    const float l = clamp01(hls.lightness);
    const float s = clamp01(hls.saturation);
    if (s == 0.0f) {
        colour = pack(l, l, l);
        return;
    }
    const float m2 = l <= 0.5f ? l * (1.0f + s) : l + s - l * s;
    const float m1 = 2.0f * l - m2;
    colour = pack(ComputeValue(m1, m2, hls.hue + 1.0f / 3.0f), ComputeValue(m1, m2, hls.hue),
                  ComputeValue(m1, m2, hls.hue - 1.0f / 3.0f));
}

void ExtractTwoGrayIntensity(unsigned long colour, unsigned long& gray, unsigned long& contrast) {
    const double r = double(colour & 0xFF);
    const double g = double((colour >> 8) & 0xFF);
    const double b = double((colour >> 16) & 0xFF);
    const auto level = static_cast<unsigned long>(std::lround(0.299 * r + 0.587 * g + 0.114 * b));
    const unsigned long other = level < 128 ? level + (255 - level) / 2 : level / 2;
    gray = level | (level << 8) | (level << 16);
    contrast = other | (other << 8) | (other << 16);
}

unsigned long HightLightColor(unsigned long colour, float amount) {
    HLS hls;
    RGBtoHLS(colour, hls);
    hls.lightness = clamp01(hls.lightness + amount);
    unsigned long result;
    HLStoRGB(hls, result);
    return result;
}
