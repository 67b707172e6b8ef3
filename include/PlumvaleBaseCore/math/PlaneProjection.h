// Inverting a projection of the plane z = 0, and the depth of a plane seen through it.
#pragma once

#include <PlumvaleBaseCore/math/Matrix4x4.h>

namespace Math {

/// The inverse of a homogeneous map restricted to the plane z = 0: given a point of the image
/// (for example of the window), the point (x, y) of the plane that maps onto it.
///
/// Conventions: the 3x3 map kept is rows x, y, w and columns x, y, w of the matrix; every
/// magnitude below 1e-09 (its determinant, a homogeneous weight) counts as zero.
class PLUMVALE_EXPORT PlaneProjection {
public:
    /// Outcome of getClippedInverseProjection.
    enum InverseProjectionResult {
        Projected = 0, ///< `plane` holds the point
        BehindEye = 1, ///< the plane point lies behind the eye (its image weight <= 1e-09);
                       ///< reported only when clipping was asked for
        AtHorizon = 2, ///< the image point is on the plane's horizon: no finite plane point
        NoInverse = 3  ///< the plane is seen edge-on (the 3x3 map is singular)
    };

    /// The identity map, clipping on.
    PlaneProjection();
    /// Inverts `m` on the plane z = 0; with `clipBehindEye`, points behind the eye are
    /// reported as BehindEye.
    PlaneProjection(const Matrix4x4& m, bool clipBehindEye);

    /// The plane point seen at `image`. `plane` is written for Projected and BehindEye only.
    InverseProjectionResult getClippedInverseProjection(const Point2d& image, Point2d& plane) const;
    /// The image weight w of the plane point (x, y): row w of the matrix applied to (x, y, 0, 1).
    double imageWeight(const Point2d& plane) const {
        return m_row[0] * plane.x + m_row[1] * plane.y + m_row[2];
    }

private:
    double m_inverse[9]; // row by row
    double m_row[3];     // the matrix's w row on columns x, y, w
    bool m_invertible;
    bool m_clip;
};

/// The depth (window z after division) of a plane at each point of a view, for hidden-surface
/// tests against a flat layer.
class PLUMVALE_EXPORT PlanarDepthBuffer {
public:
    /// `planeFrame` maps the plane's own z = 0 into model space, `modelToWindow` model space to
    /// the window (viewport times projection, view and model); (originX, originY) is the window
    /// position of the buffer's point (0, 0).
    PlanarDepthBuffer(const Matrix4x4& planeFrame, const Matrix4x4& modelToWindow, int originX,
                      int originY);
    /// The plane's depth at buffer point p, clamped to +-3.4028234663852886e+38 (the float
    /// range). Where the plane is not visible (behind the eye, beyond its horizon, edge-on)
    /// the answer is the far value +3.4028234663852886e+38.
    float getZ(const Point2d& p) const;

private:
    Matrix4x4 m_planeToWindow;
    PlaneProjection m_projection;
    int m_originX;
    int m_originY;
};

} // namespace Math
