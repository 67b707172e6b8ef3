// Points that carry texture coordinates: TexturedPoint2d and TexturedPoint4d.
#pragma once

#include <PlumvaleBaseCore/math/Vector2d.h>
#include <PlumvaleBaseCore/math/Vector3d.h>

namespace Math {

/// A 2D position and its texture coordinates (u in `texture.x`, v in `texture.y`).
class PLUMVALE_EXPORT TexturedPoint2d {
public:
    /// @{
    /// The position, and the texture coordinates (u, v).
    Point2d point;
    Point2d texture;
    /// @}

    /// @{
    /// Everything 0, or the position and texture coordinates given.
    constexpr TexturedPoint2d() = default;
    constexpr TexturedPoint2d(const Point2d& p, const Point2d& uv) : point(p), texture(uv) {}
    /// @}

    /// Position and texture coordinates both a + t (b - a).
    static TexturedPoint2d interpolate(double t, const TexturedPoint2d& a,
                                       const TexturedPoint2d& b) {
        return {Point2d::Interpolate(t, a.point, b.point),
                Point2d::Interpolate(t, a.texture, b.texture)};
    }

    /// @{
    /// Exact on all four values.
    bool operator==(const TexturedPoint2d& p) const {
        return point == p.point && texture == p.texture;
    }
    bool operator!=(const TexturedPoint2d& p) const { return !(*this == p); }
    /// @}
};

/// A homogeneous position and its texture coordinates (u in `texture.x`, v in `texture.y`).
/// Transforms move the position only; the texture coordinates are carried unchanged.
class PLUMVALE_EXPORT TexturedPoint4d {
public:
    /// @{
    /// The homogeneous position, and the texture coordinates (u, v).
    Point4d point;
    Point2d texture;
    /// @}

    /// @{
    /// Everything 0 (w too), or the position and texture coordinates given.
    constexpr TexturedPoint4d() = default;
    constexpr TexturedPoint4d(const Point4d& p, const Point2d& uv) : point(p), texture(uv) {}
    /// @}

    /// All four coordinates and the texture coordinates a + t (b - a), undivided.
    static TexturedPoint4d interpolate(double t, const TexturedPoint4d& a,
                                       const TexturedPoint4d& b) {
        return {Point4d::interpolate(t, a.point, b.point),
                Point2d::Interpolate(t, a.texture, b.texture)};
    }

    /// @{
    /// Exact on all six values.
    bool operator==(const TexturedPoint4d& p) const {
        return point == p.point && texture == p.texture;
    }
    bool operator!=(const TexturedPoint4d& p) const { return !(*this == p); }
    /// @}
};

} // namespace Math
