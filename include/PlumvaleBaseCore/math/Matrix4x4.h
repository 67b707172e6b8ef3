// The 4x4 homogeneous matrix: products, transforms, projection builders, LU inverse, queries.
#pragma once

#include <PlumvaleBaseCore/math/Matrix2x3.h>

#include <cstring>

namespace Math {

/// 4x4 homogeneous matrix of doubles.
///
/// Conventions:
/// - Storage is column by column: element (row r, column k) is entry r + 4k, so the
///   translation of a transform sits in entries 12, 13, 14.
/// - Points are column vectors, p' = M p, and `a * b` applies b first.
/// - Every builder (translate, scale, rotate..., lookAt, the projections) post-multiplies
///   the receiver: M = M T, so T acts on points before the existing transform.
/// - Angles are radians unless the name says degrees; rotations are counter-clockwise
///   looking down the axis towards the origin (right-handed).
/// - The identity flag is set only on matrices known to be the identity; products and
///   transforms short-cut on it. Writing an element through an accessor clears it.
class PLUMVALE_EXPORT Matrix4x4 {
public:
    /// Raised by the LU decomposition when the matrix cannot be inverted.
    class Singularity {};

    /// The identity entries in storage order.
    static const double _identityPattern[16];

    /// The identity, with the identity flag set.
    Matrix4x4();
    /// The 2D affine map in the x/y block and the translation column.
    explicit Matrix4x4(const Matrix2x3& m);
    /// @{
    /// Sixteen values in storage order (column by column).
    explicit Matrix4x4(const double values[16]);
    explicit Matrix4x4(const float values[16]);
    /// @}
    /// Sixteen values in reading order: row 0 first.
    Matrix4x4(double m00, double m01, double m02, double m03, double m10, double m11, double m12,
              double m13, double m20, double m21, double m22, double m23, double m30, double m31,
              double m32, double m33);
    /// A plane frame: the rotation taking the z axis onto the (normalised) normal by the
    /// shortest arc, followed by a translation to `point`. Maps the plane z = 0 onto the plane.
    Matrix4x4(const Vector3d& normal, const Point3d& point);
    /// Columns: the three axes and the origin.
    Matrix4x4(const Vector3d& xAxis, const Vector3d& yAxis, const Vector3d& zAxis,
              const Point3d& origin);

    /// Sixteen values in reading order; clears the identity flag.
    void setMatrix(double m00, double m01, double m02, double m03, double m10, double m11,
                   double m12, double m13, double m20, double m21, double m22, double m23,
                   double m30, double m31, double m32, double m33);

    /// Element (row, column), unchecked: both must be below 4.
    double operator()(unsigned row, unsigned column) const { return m[row + 4 * column]; }
    /// Element access for writing; clears the identity flag.
    double& operator()(unsigned row, unsigned column) {
        m_identity = false;
        return m[row + 4 * column];
    }
    /// Element (r, c) by the named row and column.
    double operator()(Row r, Column c) const { return m[r + 4 * c]; }
    /// The sixteen entries in storage order.
    const double* asArray() const { return m; }
    /// Copies the sixteen entries in storage order.
    void getValues(double out[16]) const;
    /// Narrowed to float.
    void getValues(float out[16]) const;

    /// @{
    /// Letters of the 2D projective layout: x' = a x + c y + e, y' = b x + d y + f,
    /// w' = g x + h y + w, and z is the (2, 2) entry.
    double getA() const { return m[0]; }
    double getB() const { return m[1]; }
    double getC() const { return m[4]; }
    double getD() const { return m[5]; }
    double getE() const { return m[12]; }
    double getF() const { return m[13]; }
    double getG() const { return m[3]; }
    double getH() const { return m[7]; }
    double getZ() const { return m[10]; }
    double getW() const { return m[15]; }
    void setA(double v) { set(0, v); }
    void setB(double v) { set(1, v); }
    void setC(double v) { set(4, v); }
    void setD(double v) { set(5, v); }
    void setE(double v) { set(12, v); }
    void setF(double v) { set(13, v); }
    void setG(double v) { set(3, v); }
    void setH(double v) { set(7, v); }
    void setZ(double v) { set(10, v); }
    void setW(double v) { set(15, v); }
    /// @}

    /// a * b: b applies first. An identity-flagged operand returns the other one unchanged.
    Matrix4x4 operator*(const Matrix4x4& b) const {
        if (b.m_identity) return *this;
        if (m_identity) return b;
        Matrix4x4 r(false);
        product(m, b.m, r.m);
        return r;
    }
    /// this = this * b; returns at once when b is flagged identity, copies b (flag included)
    /// when this is.
    Matrix4x4& operator*=(const Matrix4x4& b);
    /// The same as *= b.
    Matrix4x4& multiply(const Matrix4x4& b) { return *this *= b; }

    /// Divided by the resulting w, with no guard against w = 0.
    Point3d operator*(const Point3d& p) const;
    /// As a Point3d with z = 0.
    Point3d operator*(const Point2d& p) const;
    /// The linear part only (no translation, no division).
    Vector3d operator*(const Vector3d& v) const;
    /// The undivided homogeneous product.
    Point4d operator*(const Point4d& p) const;
    /// The box of the eight transformed corners; empty stays empty.
    Box3d operator*(const Box3d& b) const;
    /// Both ends as by the Point3d product (divided by w).
    Segment3d operator*(const Segment3d& s) const;
    /// The position as by the Point4d product (undivided); texture coordinates unchanged.
    TexturedPoint4d operator*(const TexturedPoint4d& p) const;
    /// @{
    /// The undivided product of (x, y, z, 1), and of (x, y, z, 0) for a vector.
    Point4d homogeneousTransform(const Point3d& p) const { return *this * Point4d(p); }
    Point4d homogeneousTransform(const Vector3d& v) const { return *this * Point4d(v); }
    /// @}
    /// @{
    /// in/out hold x, y, z; the point form adds the translation and divides by w.
    void multiplyPoint(const double in[3], double out[3]) const;
    void multiplyVector(const double in[3], double out[3]) const;
    /// @}

    /// @{
    /// Post-multiplies by a translation, or by a scale along the axes.
    void translate(const Vector3d& v) { translate(v.x, v.y, v.z); }
    void translate(double x, double y, double z);
    void scale(double sx, double sy, double sz);
    /// @}
    /// @{
    /// Post-multiplies by a rotation about a coordinate axis.
    void rotateDegrees(double degrees, Axis3d axis);
    void rotateRadians(double radians, Axis3d axis);
    /// @}
    /// @{
    /// About an arbitrary axis through the origin (need not be unit length; a zero axis
    /// leaves the matrix unchanged).
    void rotateDegrees(double degrees, const Vector3d& axis);
    void rotateRadians(double radians, const Vector3d& axis);
    /// @}
    /// The shear x' = x + s y.
    void skew(double s);
    /// The viewing transform of an eye at `eye` looking at `centre`, `up` giving the
    /// vertical: the eye ends at the origin looking down -z with up along +y.
    void lookAt(const Point3d& eye, const Point3d& centre, const Vector3d& up);
    /// Maps the box [left, right] x [bottom, top] x [-near, -far] onto the cube [-1, 1]^3.
    void orthogonalProject(double left, double right, double bottom, double top, double near,
                           double far);
    /// Perspective with a vertical field of view in degrees; depth maps to [-1, 1].
    void perspectiveProject(double fovyDegrees, double aspect, double near, double far);
    /// The frustum with these bounds on the near plane; depth maps to [-1, 1].
    void perspectiveProject(double left, double right, double bottom, double top, double near,
                            double far);
    /// Post-multiplies by the plane frame Matrix4x4(normal, point).
    void rotatePlane(const Vector3d& normal, const Point3d& point);

    /// Every element equals the identity's.
    bool isIdentity() const;
    /// Whether the identity flag is set (the elements may be the identity without it).
    bool isIdentityFlag() const { return m_identity; }
    /// Every element is 0.
    bool isEmpty() const;
    /// False for an identity-flagged matrix; otherwise whether the LU decomposition fails.
    bool isSingular() const;
    /// The x and y columns carry no z or w component (relative to |(3,3)|, within 1e-05).
    bool isTransform2d() const;
    /// The last row is (0, 0, -1, 0) within 1e-05, as perspectiveProject builds.
    bool isPerspectiveProjection() const;
    /// Points of the plane z = 0 all map to one depth: (2,0), (2,1), (3,0), (3,1) are 0.
    bool isConstantZ() const;
    /// The plane z = 0 maps through a true projective (non-affine) quad map: (3,0) or
    /// (3,1) is non-zero.
    bool hasQuadmap() const;
    /// @{
    /// Whether an element is NaN, or an infinity.
    bool hasNan() const;
    bool hasInfinity() const;
    /// @}
    /// The translation column.
    Point3d origin() const { return {m[12], m[13], m[14]}; }
    /// A column of the linear part.
    Vector3d axis(Axis3d a) const {
        const int k = 4 * static_cast<int>(a);
        return {m[k], m[k + 1], m[k + 2]};
    }
    /// This matrix with the translation removed.
    Matrix4x4 rotation() const;
    /// The x/y affine part.
    Matrix2x3 getTransform2d() const { return {m[0], m[1], m[4], m[5], m[12], m[13]}; }
    /// sqrt(|a d - b c|): the linear magnification of the x/y block.
    double scaleFactor() const;
    /// 1 / w' of the origin, the size change a perspective gives at the model origin;
    /// 0 when that w' is below TUMaths::epsilon().
    double truckFactor() const;
    /// Decomposes M = T Rz Ry Rx S (column vectors; rotation angles in radians about x,
    /// then y, then z). False for a projective matrix, |(3,3)| <= 2^-19, or a scale with
    /// magnitude <= 2^-19. A mirror shows as negative scales.
    bool extractParameters(Vector3d& translation, Angle3d& rotation, Vector3d& scale) const;
    /// As above with a shear: M = T Rz Ry Rx H S where H is upper unit-triangular with
    /// (0,1) = shear.x, (0,2) = shear.y, (1,2) = shear.z.
    bool extractParameters(Vector3d& translation, Angle3d& rotation, Vector3d& scale,
                           Vector3d& shear) const;

    /// -1, 0 or 1 comparing the entries in storage order.
    int compare(const Matrix4x4& b) const;
    /// @{
    /// Compares the elements only.
    bool operator==(const Matrix4x4& b) const;
    bool operator!=(const Matrix4x4& b) const { return !(*this == b); }
    /// @}

    /// @{
    /// Transposes in place, or returns the transpose (the identity flag is kept).
    void transpose();
    Matrix4x4 getTranspose() const;
    /// @}
    /// Nothing for an identity-flagged matrix; throws Singularity, leaving the matrix
    /// unchanged, when it cannot be inverted.
    void inverse();
    /// The inverse as a new matrix; throws Singularity when there is none.
    Matrix4x4 getInverse() const;
    /// All elements 0, identity flag cleared.
    void clear();
    /// Divides every element by (3,3) when |(3,3)| >= TUMaths::epsilon().
    void normalize();

    /// Writes the rows to standard output under `name` ("Matrix" when null or empty).
    void print(const char* name = nullptr) const;

private:
    /// Leaves the elements uninitialised unless `identity` is true.
    explicit Matrix4x4(bool identity) : m_identity(identity) {
        if (identity) std::memcpy(m, _identityPattern, sizeof m);
    }
    /// r = a * b on column-major arrays; r must not alias a or b. Inline so that products
    /// in callers' loops compile to straight vector code.
    static void product(const double* a, const double* b, double* r) {
        typedef double Pair __attribute__((vector_size(16)));
        Pair col[4][2];
        for (int k = 0; k < 4; ++k) {
            col[k][0] = Pair{a[4 * k], a[4 * k + 1]};
            col[k][1] = Pair{a[4 * k + 2], a[4 * k + 3]};
        }
        for (int k = 0; k < 4; ++k) {
            const double* bk = b + 4 * k;
            for (int h = 0; h < 2; ++h) {
                const Pair v = (col[0][h] * bk[0] + col[1][h] * bk[1]) +
                               (col[2][h] * bk[2] + col[3][h] * bk[3]);
                r[4 * k + 2 * h] = v[0];
                r[4 * k + 2 * h + 1] = v[1];
            }
        }
    }
    void set(int index, double v) {
        m[index] = v;
        m_identity = false;
    }

    double m[16];
    bool m_identity;
};

} // namespace Math
