// PlaneProjection (the 3x3 inverse on the plane z = 0) and PlanarDepthBuffer.
#include <PlumvaleBaseCore/math/PlaneProjection.h>

#include <cfloat>
#include <cmath>

namespace Math {

namespace {

constexpr double kZero = 1e-09;

} // namespace

PlaneProjection::PlaneProjection() : PlaneProjection(Matrix4x4(), true) {}

PlaneProjection::PlaneProjection(const Matrix4x4& m, bool clipBehindEye) : m_clip(clipBehindEye) {
    // The plane point (x, y, 0, 1) meets only columns x, y and w; of the image, rows x, y, w.
    const unsigned rows[3] = {0, 1, 3}, cols[3] = {0, 1, 3};
    double h[3][3];
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            h[r][c] = m(rows[r], cols[c]);
    for (int c = 0; c < 3; ++c)
        m_row[c] = h[2][c];
    const double cof[9] = {
        h[1][1] * h[2][2] - h[1][2] * h[2][1], h[0][2] * h[2][1] - h[0][1] * h[2][2],
        h[0][1] * h[1][2] - h[0][2] * h[1][1], h[1][2] * h[2][0] - h[1][0] * h[2][2],
        h[0][0] * h[2][2] - h[0][2] * h[2][0], h[0][2] * h[1][0] - h[0][0] * h[1][2],
        h[1][0] * h[2][1] - h[1][1] * h[2][0], h[0][1] * h[2][0] - h[0][0] * h[2][1],
        h[0][0] * h[1][1] - h[0][1] * h[1][0]};
    const double det = h[0][0] * cof[0] + h[0][1] * cof[3] + h[0][2] * cof[6];
    m_invertible = std::fabs(det) >= kZero;
    for (int i = 0; i < 9; ++i)
        m_inverse[i] = m_invertible ? cof[i] / det : 0;
}

PlaneProjection::InverseProjectionResult
PlaneProjection::getClippedInverseProjection(const Point2d& image, Point2d& plane) const {
    if (!m_invertible) return NoInverse;
    const double* a = m_inverse;
    const double x = a[0] * image.x + a[1] * image.y + a[2];
    const double y = a[3] * image.x + a[4] * image.y + a[5];
    const double w = a[6] * image.x + a[7] * image.y + a[8];
    if (std::fabs(w) < kZero) return AtHorizon;
    plane = Point2d(x / w, y / w);
    if (m_clip && imageWeight(plane) <= kZero) return BehindEye;
    return Projected;
}

PlanarDepthBuffer::PlanarDepthBuffer(const Matrix4x4& planeFrame, const Matrix4x4& modelToWindow,
                                     int originX, int originY)
    : m_planeToWindow(modelToWindow * planeFrame), m_projection(m_planeToWindow, true),
      m_originX(originX), m_originY(originY) {}

float PlanarDepthBuffer::getZ(const Point2d& p) const {
    Point2d onPlane;
    const Point2d window(p.x + m_originX, p.y + m_originY);
    if (m_projection.getClippedInverseProjection(window, onPlane) != PlaneProjection::Projected)
        return FLT_MAX;
    const Point4d h = m_planeToWindow * Point4d(onPlane);
    const double z = h.z / h.w;
    if (std::isnan(z)) return FLT_MAX;
    if (z >= FLT_MAX) return FLT_MAX;
    if (z <= -FLT_MAX) return -FLT_MAX;
    return static_cast<float>(z);
}

} // namespace Math
