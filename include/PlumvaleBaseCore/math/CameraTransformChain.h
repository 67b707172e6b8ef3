// The camera transform chain: object to window and back, with a lazily rebuilt cache.
#pragma once

#include <PlumvaleBaseCore/math/Line.h>
#include <PlumvaleBaseCore/math/PlaneProjection.h>
#include <PlumvaleBaseCore/math/Polyline.h>

#include <set>

namespace Math {

/// Carries coordinates between the eight reference frames of a drawing, from its own object
/// space out to the viewport window and back.
///
/// Conventions:
/// - Frames, outermost first: 0 window, 1 normalised device, 2 clip (homogeneous, after the
///   projection), 3 eye, 4 camera, 5 world, 6 model, 7 object. Going outward (to a lower
///   number) applies the object matrix (7 to 6), the model matrix (6 to 5), the view matrix
///   (5 to 4), nothing (4 to 3: the same space), the projection (3 to 2), the division by w
///   (2 to 1) and the viewport matrix (1 to 0). Inward conversions apply the inverses.
/// - Matrices act on column vectors; `compoundMatrix` returns the product that does a whole
///   crossing, the division by w left to the caller.
/// - The window and the clip region are in window coordinates; y of the window runs the
///   opposite way from y of normalised device space.
/// - A 2D point stands for (x, y, 0, 1) in its frame; from the window or device frames into
///   model or object space it is instead the point of the model plane z = 0 seen there.
/// - Conversions return false when a needed inverse does not exist or a result is at
///   infinity (|w| < 1e-07); outputs are then unspecified. The cache is rebuilt lazily and
///   only for what a conversion crosses; a failed rebuild keeps its stale bits.
class PLUMVALE_EXPORT CameraTransformChain {
public:
    /// @{
    /// The frames, as sources and as destinations (same numbers).
    enum SourceReferenceFrame_e {
        SourceWindow = 0,
        SourceNormalizedDevice = 1,
        SourceClip = 2,
        SourceEye = 3,
        SourceCamera = 4,
        SourceWorld = 5,
        SourceModel = 6,
        SourceObject = 7
    };
    enum DestinationReferenceFrame_e {
        DestinationWindow = 0,
        DestinationNormalizedDevice = 1,
        DestinationClip = 2,
        DestinationEye = 3,
        DestinationCamera = 4,
        DestinationWorld = 5,
        DestinationModel = 6,
        DestinationObject = 7
    };
    /// @}

    /// The settings.
    struct Data {
        Rect2d window{0, 0, 100, 100};
        bool fullWindow = true;
        Rect2d clipRegion{0, 0, 1, 1};
        Matrix2x3 objectMatrix;
        Matrix4x4 modelMatrix;
        Matrix4x4 viewMatrix;
        Matrix4x4 projectionMatrix;
    };

    /// Staleness bits of the cache: a set bit means the item must be rebuilt before use.
    enum Stale : unsigned char {
        StaleObjectInverse = 1,
        StaleModelInverse = 2,
        StaleViewInverse = 4,
        StaleProjectionInverse = 8,
        StaleProduct = 16,        ///< projection * view * model
        StaleProductInverse = 32, ///< its inverse
        StalePlaneProjection = 64,
        StaleScale = 128 ///< the discretization scale
    };

    /// The cache. `rebuilds[i]` counts the rebuilds of the item of bit 1 << i (for the scale:
    /// its computations), so that a caller can see what a change cost.
    struct MutableData {
        unsigned char stale = 0xFF;
        Matrix2x3 objectInverse;
        Matrix4x4 modelInverse;
        Matrix4x4 viewInverse;
        Matrix4x4 projectionInverse;
        Matrix4x4 product;
        Matrix4x4 productInverse;
        PlaneProjection planeProjection;
        double discretizationScale = -1;
        unsigned rebuilds[8] = {};
    };

    class Scope;

    /// Identity everywhere, window (0, 0, 100, 100), every cache item stale.
    CameraTransformChain() = default;

    /// @{
    /// Setters; each marks stale what depends on it: the object matrix its inverse; the
    /// model, view or projection matrix its inverse, the product and its inverse, the plane
    /// projection and the scale; the viewport the plane projection and the scale. The clip
    /// region clears the full-window flag, setFullWindow() sets it; neither is cached.
    void setObjectMatrix(const Matrix2x3& m);
    void setModelMatrix(const Matrix4x4& m);
    void setViewMatrix(const Matrix4x4& m);
    void setProjectionMatrix(const Matrix4x4& m);
    void setViewport(const Rect2d& window);
    void setClipRegion(const Rect2d& region);
    void setFullWindow();
    /// @}
    /// The model matrix becomes model * m (m applies first).
    void applyMatrixToModel(const Matrix4x4& m);

    /// @{
    /// The settings.
    const Data& data() const { return m_data; }
    const Matrix2x3& objectMatrix() const { return m_data.objectMatrix; }
    const Matrix4x4& modelMatrix() const { return m_data.modelMatrix; }
    const Matrix4x4& viewMatrix() const { return m_data.viewMatrix; }
    const Matrix4x4& projectionMatrix() const { return m_data.projectionMatrix; }
    const Rect2d& viewport() const { return m_data.window; }
    const Rect2d& clipRegion() const { return m_data.clipRegion; }
    bool isFullWindow() const { return m_data.fullWindow; }
    /// @}
    /// The cache as it stands (for tests and diagnostics).
    const MutableData& cache() const { return m_cache; }
    /// projection * view * model (rebuilt when stale).
    Matrix4x4 modelViewProjectionMatrix() const;
    /// Its inverse into `out`; false when it has none.
    bool modelViewProjectionInvMatrix(Matrix4x4& out) const;
    /// @{
    /// Normalised device to window: translate by the window centre, then scale by
    /// ((right - left) / 2, -(bottom - top) / 2).
    void viewportMatrix(Matrix2x3& out) const;
    void viewportMatrix(Matrix4x4& out) const;
    /// @}
    /// The single matrix carrying `source` to `destination` (homogeneous, undivided); false
    /// when a needed inverse does not exist.
    bool compoundMatrix(SourceReferenceFrame_e source, DestinationReferenceFrame_e destination,
                        Matrix4x4& out) const;

    /// @{
    /// Point conversions; 2D and 3D results are divided by w.
    bool transform(SourceReferenceFrame_e source, const Point2d& p,
                   DestinationReferenceFrame_e destination, Point2d& out) const;
    bool transform(SourceReferenceFrame_e source, const Point3d& p,
                   DestinationReferenceFrame_e destination, Point3d& out) const;
    bool transform(SourceReferenceFrame_e source, const Point4d& p,
                   DestinationReferenceFrame_e destination, Point4d& out) const;
    /// @}
    /// @{
    /// Both ends converted (boundaries kept); false when either fails.
    bool transform(SourceReferenceFrame_e source, const Segment2d& s,
                   DestinationReferenceFrame_e destination, Segment2d& out) const;
    bool transform(SourceReferenceFrame_e source, const Segment3d& s,
                   DestinationReferenceFrame_e destination, Segment3d& out) const;
    /// @}
    /// @{
    /// Boxes. Across the projection outward, the box's outline (the six faces of a Box3d) is
    /// clipped to the view volume and the part left boxed again, so that a box reaching
    /// behind the eye still gives its visible extent; false (and an empty box) when nothing is
    /// visible. Otherwise the corners are converted and boxed. An empty box gives an empty box
    /// and true. Results have closed sides.
    bool transform(SourceReferenceFrame_e source, const Box2d& b,
                   DestinationReferenceFrame_e destination, Box2d& out) const;
    bool transform(SourceReferenceFrame_e source, const Box3d& b,
                   DestinationReferenceFrame_e destination, Box3d& out) const;
    /// @}
    /// Every point mapped by compoundMatrix, undivided and unclipped.
    bool transform(SourceReferenceFrame_e source, const Polyline4d& p,
                   DestinationReferenceFrame_e destination, Polyline4d& out) const;

    /// The window point of p; false as transform().
    bool project(SourceReferenceFrame_e source, const Point3d& p, Point2d& out) const;
    /// @{
    /// The window box of b; an empty box when the conversion fails.
    Box2d project(SourceReferenceFrame_e source, const Box2d& b) const;
    Box2d project(SourceReferenceFrame_e source, const Box3d& b) const;
    /// @}
    /// Inserts the window points of the corners of b that are in front of the eye; false when
    /// none is (or b is empty).
    bool project(SourceReferenceFrame_e source, const Box3d& b, std::set<Point2d>& out) const;
    /// The line of sight through a window point, in `destination` (eye space or further in):
    /// from its point on the near plane towards its point on the far plane.
    bool getLine3d(const Point2d& windowPoint, DestinationReferenceFrame_e destination,
                   Line3d& out) const;
    /// The window box of a model box meets the clip region (the whole window when the
    /// full-window flag is set).
    bool modelBoxIntersectsClipRegion(const Box2d& modelBox) const;
    /// How finely to sample model curves on screen: a power of two from 0.0625 to 8, twice
    /// the linear magnification of model space at its origin rounded down (in single
    /// precision); 4 above a magnification of 4, 0.0625 at or below 0.0625, and 0.0625 when the
    /// origin is behind or beyond the view. Cached until a setting it depends on changes.
    double discretizationScale() const;
    /// Writes the settings to standard output: name, window, full-window flag, a line when the
    /// object matrix is the identity, then the model, view and projection matrices.
    void print(const char* name) const;

private:
    friend class Scope;
    bool makeMatrixValid(int source, int destination) const;
    bool outwardMatrix(int source, int destination, Matrix4x4& out) const;
    bool inwardMatrix(int source, int destination, Matrix4x4& out) const;
    bool windowToModelPlane(int source, const Point2d& p, int destination, Point2d& out) const;
    void markStale(unsigned bits) {
        m_cache.stale = static_cast<unsigned char>(m_cache.stale | bits);
    }

    Data m_data;
    mutable MutableData m_cache;
};

/// Saves a chain's settings and its discretization scale; restores them when destroyed.
/// Scopes nest: each restores exactly what it saw, in reverse order of creation.
class PLUMVALE_EXPORT CameraTransformChain::Scope {
public:
    explicit Scope(CameraTransformChain& chain);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    /// @{
    /// The saved settings.
    const Rect2d& window() const { return m_saved.window; }
    const Rect2d& clipRegion() const { return m_saved.clipRegion; }
    bool isFullWindow() const { return m_saved.fullWindow; }
    const Matrix2x3& objectMatrix() const { return m_saved.objectMatrix; }
    const Matrix4x4& modelMatrix() const { return m_saved.modelMatrix; }
    const Matrix4x4& viewMatrix() const { return m_saved.viewMatrix; }
    const Matrix4x4& projectionMatrix() const { return m_saved.projectionMatrix; }
    /// @}

private:
    CameraTransformChain& m_chain;
    CameraTransformChain::Data m_saved;
    double m_scale; // -1 when the chain's cached scale was already stale
};

} // namespace Math
