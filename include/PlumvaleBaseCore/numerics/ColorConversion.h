// Conversions of packed RGB colours to and from HSV and HLS, and derived drawing colours.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

// Packed colour: red in bits 0-7, green in bits 8-15, blue in bits 16-23; higher bits are
// ignored on input and zero on output. Every HSV and HLS component, hue included, is on the
// 0-1 scale: hue is the fraction of a full turn from red (0) through green (1/3) and blue
// (2/3), in [0, 1). HSV is the single hexcone, HLS the double hexcone. Channels convert
// back to 8 bits by rounding to nearest.

/// A colour in the single hexcone: hue, saturation and value, each on the 0-1 scale.
struct HSV {
    float hue;        ///< fraction of a turn from red, in [0, 1)
    float saturation; ///< 0 grey to 1 pure
    float value;      ///< 0 black to 1 brightest
};

/// A colour in the double hexcone: hue, lightness and saturation, each on the 0-1 scale.
struct HLS {
    float hue;        ///< fraction of a turn from red, in [0, 1)
    float lightness;  ///< 0 black, 1/2 pure, 1 white
    float saturation; ///< 0 grey to 1 pure
};

/// value = largest channel / 255; saturation = (largest - smallest) / largest (0 for black);
/// hue 0 when the saturation is 0.
PLUMVALE_EXPORT void RGBtoHSV(unsigned long colour, HSV& hsv);
/// Inverse of RGBtoHSV; hue is taken modulo 1 and the other components clamped to [0, 1].
PLUMVALE_EXPORT void HSVtoRGB(const HSV& hsv, unsigned long& colour);
/// lightness = (largest + smallest) / 2; saturation = spread / (largest + smallest) up to a
/// lightness of 1/2, spread / (2 - largest - smallest) above; hue as RGBtoHSV.
PLUMVALE_EXPORT void RGBtoHLS(unsigned long colour, HLS& hls);
/// Inverse of RGBtoHLS.
PLUMVALE_EXPORT void HLStoRGB(const HLS& hls, unsigned long& colour);
/// One channel of the double hexcone: between the bounds n1 and n2 as the hue (any real,
/// taken modulo 1) runs around the circle.
PLUMVALE_EXPORT float ComputeValue(float n1, float n2, float hue);
/// Two grey colours for drawing over `colour`: `gray` has the colour's luminance
/// (0.299 R + 0.587 G + 0.114 B, rounded); `contrast` lies halfway from it to white when that
/// luminance is below 128, else halfway to black.
PLUMVALE_EXPORT void ExtractTwoGrayIntensity(unsigned long colour, unsigned long& gray,
                                             unsigned long& contrast);
/// The colour with its HLS lightness raised by `amount` (lowered when negative), clamped.
PLUMVALE_EXPORT unsigned long HightLightColor(unsigned long colour, float amount);
