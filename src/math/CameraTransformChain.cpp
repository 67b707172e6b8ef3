// CameraTransformChain: settings, the lazy cache, conversions, the discretization scale.
#include <PlumvaleBaseCore/math/CameraTransformChain.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace Math {

namespace {

constexpr unsigned kProjectionDependents =
    CameraTransformChain::StaleProduct | CameraTransformChain::StaleProductInverse |
    CameraTransformChain::StalePlaneProjection | CameraTransformChain::StaleScale;

// Inverts m into out; false when it is singular.
bool invert(const Matrix4x4& m, Matrix4x4& out) {
    try {
        out = m.getInverse();
        return true;
    } catch (const Matrix4x4::Singularity&) {
        return false;
    }
}

// p divided by its w; false at infinity.
bool divide(const Point4d& p, Point3d& out) {
    if (std::fabs(p.w) < TUMaths::epsilon()) return false;
    out = Point3d(p.x / p.w, p.y / p.w, p.z / p.w);
    return true;
}

// crosses(s, d, k): a conversion from s to d goes over the boundary between k and k + 1.
bool crosses(int s, int d, int k) {
    return (s <= k && d > k) || (d <= k && s > k);
}

} // namespace

// --- settings ---

void CameraTransformChain::setObjectMatrix(const Matrix2x3& m) {
    m_data.objectMatrix = m;
    markStale(StaleObjectInverse);
}

void CameraTransformChain::setModelMatrix(const Matrix4x4& m) {
    m_data.modelMatrix = m;
    markStale(StaleModelInverse | kProjectionDependents);
}

void CameraTransformChain::applyMatrixToModel(const Matrix4x4& m) {
    m_data.modelMatrix *= m;
    markStale(StaleModelInverse | kProjectionDependents);
}

void CameraTransformChain::setViewMatrix(const Matrix4x4& m) {
    m_data.viewMatrix = m;
    markStale(StaleViewInverse | kProjectionDependents);
}

void CameraTransformChain::setProjectionMatrix(const Matrix4x4& m) {
    m_data.projectionMatrix = m;
    markStale(StaleProjectionInverse | kProjectionDependents);
}

void CameraTransformChain::setViewport(const Rect2d& window) {
    m_data.window = window;
    markStale(StalePlaneProjection | StaleScale);
}

void CameraTransformChain::setClipRegion(const Rect2d& region) {
    m_data.clipRegion = region;
    m_data.fullWindow = false;
}

void CameraTransformChain::setFullWindow() {
    m_data.fullWindow = true;
}

void CameraTransformChain::viewportMatrix(Matrix2x3& out) const {
    const Rect2d& w = m_data.window;
    out = Matrix2x3::CreateTranslate({(w.left + w.right) / 2, (w.top + w.bottom) / 2}) *
          Matrix2x3::CreateScale({(w.right - w.left) / 2, -(w.bottom - w.top) / 2});
}

void CameraTransformChain::viewportMatrix(Matrix4x4& out) const {
    const Rect2d& w = m_data.window;
    out = Matrix4x4();
    out.translate((w.left + w.right) / 2, (w.top + w.bottom) / 2, 0);
    out.scale((w.right - w.left) / 2, -(w.bottom - w.top) / 2, 1);
}

// --- the cache ---

bool CameraTransformChain::makeMatrixValid(int source, int destination) const {
    MutableData& c = m_cache;
    if (c.stale & StaleScale) {
        c.discretizationScale = -1;
        c.stale = static_cast<unsigned char>(c.stale & ~StaleScale);
    }
    if (c.stale == 0 || source == destination) return true;
    const auto rebuilt = [&c](unsigned bit) {
        c.stale = static_cast<unsigned char>(c.stale & ~bit);
        for (int i = 0; i < 8; ++i)
            if (bit == 1u << i) ++c.rebuilds[i];
    };
    const bool productNeeded =
        (source >= 6 && destination <= 3) || (source < 2 && destination >= 6);
    if (productNeeded && (c.stale & StaleProduct)) {
        c.product = m_data.projectionMatrix * m_data.viewMatrix * m_data.modelMatrix;
        rebuilt(StaleProduct);
    }
    if (source >= destination) return true;
    if (crosses(source, destination, 6) && (c.stale & StaleObjectInverse)) {
        if (!c.objectInverse.MatrixInverse(m_data.objectMatrix)) return false;
        rebuilt(StaleObjectInverse);
    }
    if (crosses(source, destination, 5) && (c.stale & StaleModelInverse)) {
        if (!invert(m_data.modelMatrix, c.modelInverse)) return false;
        rebuilt(StaleModelInverse);
    }
    if (crosses(source, destination, 4) && (c.stale & StaleViewInverse)) {
        if (!invert(m_data.viewMatrix, c.viewInverse)) return false;
        rebuilt(StaleViewInverse);
    }
    if (crosses(source, destination, 2) && (c.stale & StaleProjectionInverse)) {
        if (!invert(m_data.projectionMatrix, c.projectionInverse)) return false;
        rebuilt(StaleProjectionInverse);
    }
    if (source < 2 && destination >= 6 && (c.stale & StalePlaneProjection)) {
        Matrix4x4 viewport;
        viewportMatrix(viewport);
        c.planeProjection = PlaneProjection(viewport * c.product, true);
        rebuilt(StalePlaneProjection);
    }
    // From the three inverses just made valid, rather than by inverting the product.
    if (source <= 2 && destination >= 6 && (c.stale & StaleProductInverse)) {
        c.productInverse = c.modelInverse * c.viewInverse * c.projectionInverse;
        rebuilt(StaleProductInverse);
    }
    return true;
}

Matrix4x4 CameraTransformChain::modelViewProjectionMatrix() const {
    makeMatrixValid(SourceModel, DestinationClip);
    return m_cache.product;
}

bool CameraTransformChain::modelViewProjectionInvMatrix(Matrix4x4& out) const {
    if (!makeMatrixValid(SourceWindow, DestinationModel)) return false;
    out = m_cache.productInverse;
    return true;
}

// The product of the outward steps from source down to destination (source > destination).
bool CameraTransformChain::outwardMatrix(int source, int destination, Matrix4x4& out) const {
    out = Matrix4x4();
    if (destination == 0) viewportMatrix(out);
    if (source >= 6 && destination <= 2) {
        out *= m_cache.product;
    } else {
        if (crosses(source, destination, 2)) out *= m_data.projectionMatrix;
        if (crosses(source, destination, 4)) out *= m_data.viewMatrix;
        if (crosses(source, destination, 5)) out *= m_data.modelMatrix;
    }
    if (source == 7) out *= Matrix4x4(m_data.objectMatrix);
    return true;
}

// The product of the inward steps from source up to destination (source < destination).
bool CameraTransformChain::inwardMatrix(int source, int destination, Matrix4x4& out) const {
    out = Matrix4x4();
    if (destination == 7) out = Matrix4x4(m_cache.objectInverse);
    if (source <= 2 && destination >= 6) {
        out *= m_cache.productInverse;
    } else {
        if (crosses(source, destination, 5)) out *= m_cache.modelInverse;
        if (crosses(source, destination, 4)) out *= m_cache.viewInverse;
        if (crosses(source, destination, 2)) out *= m_cache.projectionInverse;
    }
    if (source == 0) {
        Matrix4x4 viewport, inverse;
        viewportMatrix(viewport);
        if (!invert(viewport, inverse)) return false;
        out *= inverse;
    }
    return true;
}

bool CameraTransformChain::compoundMatrix(SourceReferenceFrame_e source,
                                          DestinationReferenceFrame_e destination,
                                          Matrix4x4& out) const {
    const int s = source, d = destination;
    if (!makeMatrixValid(s, d)) return false;
    if (s == d) {
        out = Matrix4x4();
        return true;
    }
    return s > d ? outwardMatrix(s, d, out) : inwardMatrix(s, d, out);
}

// --- conversions ---

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Point4d& p,
                                     DestinationReferenceFrame_e destination, Point4d& out) const {
    Matrix4x4 m;
    if (!compoundMatrix(source, destination, m)) return false;
    out = m * p;
    return true;
}

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Point3d& p,
                                     DestinationReferenceFrame_e destination, Point3d& out) const {
    Point4d h;
    return transform(source, Point4d(p), destination, h) && divide(h, out);
}

bool CameraTransformChain::windowToModelPlane(int source, const Point2d& p, int destination,
                                              Point2d& out) const {
    Point2d window = p;
    if (source == SourceNormalizedDevice) {
        Matrix2x3 viewport;
        viewportMatrix(viewport);
        window = viewport.Transform(p);
    }
    if (m_cache.planeProjection.getClippedInverseProjection(window, out) !=
        PlaneProjection::Projected)
        return false;
    if (destination == DestinationObject) out = m_cache.objectInverse.Transform(out);
    return true;
}

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Point2d& p,
                                     DestinationReferenceFrame_e destination, Point2d& out) const {
    if (source < 2 && destination >= 6) {
        if (!makeMatrixValid(source, destination)) return false;
        return windowToModelPlane(source, p, destination, out);
    }
    Point3d q;
    if (!transform(source, Point3d(p, 0), destination, q)) return false;
    out = q.toPoint2d();
    return true;
}

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Segment2d& s,
                                     DestinationReferenceFrame_e destination,
                                     Segment2d& out) const {
    Point2d from, to;
    if (!transform(source, s.GetFromPoint(), destination, from) ||
        !transform(source, s.GetToPoint(), destination, to))
        return false;
    out = Segment2d(from, s.GetFromBoundary(), to, s.GetToBoundary());
    return true;
}

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Segment3d& s,
                                     DestinationReferenceFrame_e destination,
                                     Segment3d& out) const {
    Point3d from, to;
    if (!transform(source, s.getFromPoint(), destination, from) ||
        !transform(source, s.getToPoint(), destination, to))
        return false;
    out = Segment3d(from, to);
    return true;
}

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Polyline4d& p,
                                     DestinationReferenceFrame_e destination,
                                     Polyline4d& out) const {
    Matrix4x4 m;
    if (!compoundMatrix(source, destination, m)) return false;
    out = Polyline4d(p, m);
    return true;
}

namespace {

// Whether an outward conversion goes through the projection, where outlines are clipped.
bool throughProjection(int source, int destination) {
    return source >= 3 && destination <= 2;
}

} // namespace

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Box2d& b,
                                     DestinationReferenceFrame_e destination, Box2d& out) const {
    out = Box2d();
    if (b.IsEmpty()) return true;
    if (throughProjection(source, destination)) {
        Polyline4d outline(b);
        Matrix4x4 toClip, fromClip;
        if (!compoundMatrix(source, DestinationClip, toClip) ||
            !compoundMatrix(SourceClip, destination, fromClip))
            return false;
        outline.transform(toClip);
        outline.clip();
        if (outline.numPoints() == 0) return false;
        outline.transform(fromClip);
        out = outline.box2d();
        return true;
    }
    Point2d corners[4];
    b.asArray(corners);
    for (const Point2d& c : corners) {
        Point2d q;
        if (!transform(source, c, destination, q)) {
            out = Box2d();
            return false;
        }
        out.Add(q);
    }
    return true;
}

bool CameraTransformChain::transform(SourceReferenceFrame_e source, const Box3d& b,
                                     DestinationReferenceFrame_e destination, Box3d& out) const {
    out = Box3d();
    if (b.isEmpty()) return true;
    Point3d corners[8];
    b.asArray(corners);
    if (throughProjection(source, destination)) {
        Matrix4x4 toClip, fromClip;
        if (!compoundMatrix(source, DestinationClip, toClip) ||
            !compoundMatrix(SourceClip, destination, fromClip))
            return false;
        // The six faces, by corner index (x fastest, then y, then z).
        static const int kFaces[6][4] = {{0, 1, 3, 2}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                         {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 3, 7, 5}};
        for (const auto& face : kFaces) {
            Polyline4d outline(true);
            for (int i : face)
                outline.append(toClip * Point4d(corners[i]));
            outline.clip();
            outline.transform(fromClip);
            if (outline.numPoints() > 0) out.add(outline.box3d());
        }
        return !out.isEmpty();
    }
    for (const Point3d& c : corners) {
        Point3d q;
        if (!transform(source, c, destination, q)) {
            out = Box3d();
            return false;
        }
        out.add(q);
    }
    return true;
}

bool CameraTransformChain::project(SourceReferenceFrame_e source, const Point3d& p,
                                   Point2d& out) const {
    Point3d q;
    if (!transform(source, p, DestinationWindow, q)) return false;
    out = q.toPoint2d();
    return true;
}

Box2d CameraTransformChain::project(SourceReferenceFrame_e source, const Box2d& b) const {
    Box2d out;
    transform(source, b, DestinationWindow, out);
    return out;
}

Box2d CameraTransformChain::project(SourceReferenceFrame_e source, const Box3d& b) const {
    Box3d out;
    if (!transform(source, b, DestinationWindow, out)) return Box2d();
    return out.asBox2d();
}

bool CameraTransformChain::project(SourceReferenceFrame_e source, const Box3d& b,
                                   std::set<Point2d>& out) const {
    Point3d corners[8];
    Matrix4x4 m;
    if (!b.asArray(corners) || !compoundMatrix(source, DestinationWindow, m)) return false;
    bool any = false;
    for (const Point3d& c : corners) {
        const Point4d h = m * Point4d(c);
        if (!(h.w >= TUMaths::epsilon())) continue; // behind the eye, or at infinity
        out.insert(Point2d(h.x / h.w, h.y / h.w));
        any = true;
    }
    return any;
}

bool CameraTransformChain::getLine3d(const Point2d& windowPoint,
                                     DestinationReferenceFrame_e destination, Line3d& out) const {
    Point3d nearPoint, farPoint;
    if (!transform(SourceWindow, Point3d(windowPoint, -1), destination, nearPoint) ||
        !transform(SourceWindow, Point3d(windowPoint, 1), destination, farPoint) ||
        nearPoint == farPoint)
        return false;
    out = Line3d(nearPoint, farPoint - nearPoint);
    return true;
}

bool CameraTransformChain::modelBoxIntersectsClipRegion(const Box2d& modelBox) const {
    const Box2d onScreen = project(SourceModel, modelBox);
    const Rect2d& region = m_data.fullWindow ? m_data.window : m_data.clipRegion;
    return onScreen.IsIntersecting(region.GetBox());
}

double CameraTransformChain::discretizationScale() const {
    constexpr double kDefault = 0.0625;
    if (m_cache.stale & StaleScale) makeMatrixValid(SourceModel, DestinationModel);
    if (m_cache.discretizationScale != -1) return m_cache.discretizationScale;
    Point4d origin;
    if (!transform(SourceModel, Point4d(0, 0, 0, 1), DestinationClip, origin)) return kDefault;
    if (std::fabs(origin.w) < 1e-07 || std::fabs(origin.z / origin.w) > 1) return kDefault;
    Point2d o, ex, ey;
    if (!transform(SourceModel, Point2d(0, 0), DestinationWindow, o) ||
        !transform(SourceModel, Point2d(1, 0), DestinationWindow, ex) ||
        !transform(SourceModel, Point2d(0, 1), DestinationWindow, ey))
        return kDefault;
    ++m_cache.rebuilds[7];
    const double s = std::sqrt(std::fabs((ex - o).GetDeterminant(ey - o)));
    double scale;
    if (s > 4) {
        scale = 4;
    } else if (s <= kDefault) {
        scale = kDefault;
    } else {
        // Twice the magnification rounded down to a power of two: keep the single-precision
        // exponent, clear the mantissa.
        float twice = static_cast<float>(2 * s);
        std::uint32_t bits;
        std::memcpy(&bits, &twice, sizeof bits);
        bits &= 0xFF800000u;
        std::memcpy(&twice, &bits, sizeof bits);
        scale = twice;
    }
    m_cache.discretizationScale = scale;
    return scale;
}

void CameraTransformChain::print(const char* name) const {
    const Rect2d& w = m_data.window;
    std::printf("CameraTransformChain: %s\n", name ? name : "");
    std::printf("window: %f %f %f %f\n", w.left, w.top, w.right, w.bottom);
    std::printf("full: %d\n", m_data.fullWindow ? 1 : 0);
    if (m_data.objectMatrix.IsIdentity()) std::printf("Object is identity\n");
    std::fflush(stdout);
    m_data.modelMatrix.print("ModelMatrix:");
    m_data.viewMatrix.print("ViewMatrix:");
    m_data.projectionMatrix.print("ProjectionMatrix:");
}

// --- Scope ---

CameraTransformChain::Scope::Scope(CameraTransformChain& chain)
    : m_chain(chain), m_saved(chain.m_data),
      m_scale((chain.m_cache.stale & StaleScale) ? -1 : chain.m_cache.discretizationScale) {}

CameraTransformChain::Scope::~Scope() {
    // Restoring a setting is setting it again: only what changed goes stale.
    Data& now = m_chain.m_data;
    unsigned stale = 0;
    if (!(now.objectMatrix == m_saved.objectMatrix)) stale |= StaleObjectInverse;
    if (now.modelMatrix != m_saved.modelMatrix) stale |= StaleModelInverse | kProjectionDependents;
    if (now.viewMatrix != m_saved.viewMatrix) stale |= StaleViewInverse | kProjectionDependents;
    if (now.projectionMatrix != m_saved.projectionMatrix)
        stale |= StaleProjectionInverse | kProjectionDependents;
    if (now.window != m_saved.window) stale |= StalePlaneProjection;
    now = m_saved;
    m_chain.markStale(stale);
    m_chain.m_cache.stale = static_cast<unsigned char>(m_chain.m_cache.stale & ~StaleScale);
    m_chain.m_cache.discretizationScale = m_scale;
}

} // namespace Math
