// TUMaths: rounding with saturation, clamping, interpolation, angles and powers of two.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <cmath>
#include <cstdint>
#include <string>

/// Static numeric helpers. Integer conversions saturate: above 2147483647 (or NaN) gives
/// 2147483647, below -2147483648 gives -2147483648. Angles are in radians.
class PLUMVALE_EXPORT TUMaths {
public:
    /// @{
    /// The library's shared tolerance.
    static constexpr double _epsilon = 1e-7;
    static constexpr double epsilon() { return _epsilon; }
    /// @}

    /// @{
    /// The library's angle constants, its one home for them: pi and the factors between
    /// degrees and radians (each the double nearest the exact value).
    static constexpr double pi = 3.14159265358979323846;
    static constexpr double radiansPerDegree = 0.017453292519943295;
    static constexpr double degreesPerRadian = 57.29577951308232;
    /// @}

    /// @{
    /// floor(x) and ceil(x) as saturated ints.
    static int ifloor(double x) { return saturate(std::floor(x)); }
    static int iceiling(double x) { return saturate(std::ceil(x)); }
    /// @}
    /// floor(x + 0.5): round(2.5) is 3, round(-2.5) is -2.
    static int round(double x) { return saturate(std::floor(x + 0.5)); }
    /// floor(10^digits * x + 0.5) / 10^digits.
    static double round(double x, int digits) {
        const double scale = std::pow(10.0, digits);
        return std::floor(scale * x + 0.5) / scale;
    }

    /// @{
    /// The larger and the smaller of two ints.
    static int imax(int a, int b) { return a > b ? a : b; }
    static int imin(int a, int b) { return a < b ? a : b; }
    /// @}
    /// `a` only when a > b: ties and NaN give `b`.
    static double dmax(double a, double b) { return a > b ? a : b; }
    /// `a` only when a < b: ties and NaN give `b`.
    static double dmin(double a, double b) { return a < b ? a : b; }

    /// -1, 0 or 1.
    static int sign(int x) { return x < 0 ? -1 : (x > 0 ? 1 : 0); }
    /// -1 below 0, 0 at 0, 1 otherwise (NaN included).
    static int sign(double x) { return x < 0 ? -1 : (x == 0 ? 0 : 1); }
    /// INT_MIN stays INT_MIN (two's complement has no positive counterpart).
    static int abs(int x) { return x < 0 ? static_cast<int>(0u - static_cast<unsigned>(x)) : x; }
    /// |x|; NaN stays NaN.
    static double abs(double x) { return std::fabs(x); }

    /// @{
    /// `hi` when x > hi, else `lo` when x < lo, else x (NaN passes through).
    static int clipToRange(int x, int lo, int hi) { return x > hi ? hi : (x < lo ? lo : x); }
    static double clipToRange(double x, double lo, double hi) {
        return x > hi ? hi : (x < lo ? lo : x);
    }
    /// @}

    /// @{
    /// x * x, wrapping in 32 bits for ints as the hardware does.
    static int square(int x) {
        return static_cast<int>(static_cast<unsigned>(x) * static_cast<unsigned>(x));
    }
    static double square(double x) { return x * x; }
    /// @}

    /// @{
    /// sqrt(a² + b²) with the sum in 32-bit integers, truncated to int.
    static int length(int a, int b) {
        return static_cast<int>(std::sqrt(static_cast<double>(square(a) + 0u + square(b))));
    }
    static double length(double a, double b) { return std::sqrt(a * a + b * b); }
    /// @}

    /// Result in [-pi, pi); infinities and NaN are returned unchanged.
    static double wrapAngleToMinusPiToPi(double a);
    /// Result in [0, 2 pi); -0.0, infinities and NaN are returned unchanged.
    static double wrapAngleTo0To2Pi(double a);

    /// d * radiansPerDegree.
    static double convertDegreesToRadians(double d) { return d * radiansPerDegree; }
    /// r * degreesPerRadian.
    static double convertRadiansToDegrees(double r) { return r * degreesPerRadian; }

    /// lo <= x <= hi.
    static bool between(double x, double lo, double hi) { return lo <= x && x <= hi; }

    /// @{
    /// NaN; +/- infinity; either (not finite).
    static bool isNan(double x) { return std::isnan(x); }
    static bool isInfinity(double x) { return std::isinf(x); }
    static bool isNanOrInfinity(double x) { return !std::isfinite(x); }
    /// @}

    /// `b` exactly when t == 1, else t * (b - a) + a.
    static double interpolate(double t, double a, double b) { return t == 1 ? b : t * (b - a) + a; }
    /// 0 when x == a or b == a, 1 when x == b, else (x - a) / (b - a).
    static double interpolateInverse(double x, double a, double b) {
        if (x == a || b == a) return 0;
        if (x == b) return 1;
        return (x - a) / (b - a);
    }
    /// interpolateInverse clamped to [0, 1]; NaN and infinities give 0.
    static double clampedInterpolateInverse(double x, double a, double b) {
        const double t = interpolateInverse(x, a, b);
        if (!(t > 0) || !std::isfinite(t)) return 0;
        return t >= 1 ? 1 : t;
    }

    /// @{
    /// 0 for 0; n when n is a power of two; else the next power of two above n. Negative
    /// inputs are read as unsigned (bit 31 set), whose next power of two wraps to 0.
    static int nearestPowerOfTwo(int n) { return nextPowerOfTwo(n); }
    static int nextPowerOfTwo(int n) {
        std::uint32_t v = static_cast<std::uint32_t>(n);
        if (v == 0) return 0;
        --v;
        v |= v >> 1;
        v |= v >> 2;
        v |= v >> 4;
        v |= v >> 8;
        v |= v >> 16;
        return static_cast<int>(v + 1);
    }
    /// @}
    /// n & (n - 1) == 0, so 0 counts as a power of two.
    static bool isPowerOfTwo(int n) {
        const auto v = static_cast<std::uint32_t>(n);
        return (v & (v - 1)) == 0;
    }

    /// False for null or empty; else whether s[0] is a digit, or s[0] is '-' and s[1] is.
    static bool isDigit(const std::string* s);

    /// @{
    /// floor(x / q) * q, ceil(x / q) * q, floor(x / q + 0.5) * q. A step of 0 gives NaN
    /// or an infinity, as the division does.
    static double quantumFloor(double x, double q) { return std::floor(x / q) * q; }
    static double quantumCeiling(double x, double q) { return std::ceil(x / q) * q; }
    static double quantumRound(double x, double q) { return std::floor(x / q + 0.5) * q; }
    /// @}

    /// Next value of the process-wide 48-bit generator (multiplier 0x5DEECE66D, increment
    /// 0xB, first state 0x1234ABCD330E, as the C library's unseeded lrand48): bits 47..17
    /// of the state, in [0, 2^31). Thread-safe.
    static long lrand48();

private:
    static int saturate(double v) {
        if (v >= 2147483647.0 || std::isnan(v)) return 2147483647;
        if (v <= -2147483648.0) return -2147483647 - 1;
        return static_cast<int>(v);
    }
};
