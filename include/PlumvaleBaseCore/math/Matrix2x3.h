// The 2D linear matrix Matrix2x2 and the 2D affine matrix Matrix2x3.
#pragma once

#include <PlumvaleBaseCore/math/Box.h>

namespace Math {

/// 2x2 linear map stored column by column: entries (0,0), (1,0), (0,1), (1,1).
/// Points are column vectors; `a * b` applies b first. The default is the identity.
class PLUMVALE_EXPORT Matrix2x2 {
public:
    /// The identity.
    Matrix2x2() : m{1, 0, 0, 1} {}
    /// The two columns.
    Matrix2x2(const Vector2d& xAxis, const Vector2d& yAxis)
        : m{xAxis.x, xAxis.y, yAxis.x, yAxis.y} {}
    /// @{
    /// Four values in storage order.
    explicit Matrix2x2(const double values[4]) : m{values[0], values[1], values[2], values[3]} {}
    explicit Matrix2x2(const float values[4]) : m{values[0], values[1], values[2], values[3]} {}
    /// @}

    /// @{
    /// Element (r, c), and the four entries in storage order.
    double& operator()(Row r, Column c) { return m[r + 2 * c]; }
    double operator()(Row r, Column c) const { return m[r + 2 * c]; }
    double* asArray() { return m; }
    const double* asArray() const { return m; }
    /// @}
    /// A column.
    Vector2d axis(Axis2d a) const {
        return a == Axis2d::X ? Vector2d(m[0], m[1]) : Vector2d(m[2], m[3]);
    }

    /// Back to the identity.
    void clear() { *this = Matrix2x2(); }
    /// this = this * b.
    void multiply(const Matrix2x2& b) { *this = *this * b; }
    /// @{
    /// a * b (b applies first), in place with *=, and the map applied to a vector.
    Matrix2x2 operator*(const Matrix2x2& b) const;
    Matrix2x2& operator*=(const Matrix2x2& b) { return *this = *this * b; }
    Vector2d operator*(const Vector2d& v) const {
        return {m[0] * v.x + m[2] * v.y, m[1] * v.x + m[3] * v.y};
    }
    /// @}
    /// @{
    /// Post-multiplies by a counter-clockwise rotation.
    void rotateDegrees(double degrees);
    void rotateRadians(double radians);
    /// @}
    /// Post-multiplies by the scale (sx, sy).
    void scale(double sx, double sy);
    /// @{
    /// Transposes in place, or returns the transpose.
    void transpose() { *this = getTranspose(); }
    Matrix2x2 getTranspose() const;
    /// @}
    /// False, leaving the matrix unchanged, when the determinant is exactly 0.
    bool inverse();
    /// The inverse, or an unchanged copy when singular.
    Matrix2x2 getInverse() const;
    /// @{
    /// The determinant, and exact tests: singular when it is exactly 0; the identity when every
    /// entry is exactly the identity's.
    double determinant() const { return m[0] * m[3] - m[2] * m[1]; }
    bool isSingular() const { return determinant() == 0; }
    bool isIdentity() const { return m[0] == 1 && m[1] == 0 && m[2] == 0 && m[3] == 1; }
    /// @}
    /// @{
    /// Whether an entry is NaN, or an infinity.
    bool hasNan() const;
    bool hasInfinity() const;
    /// @}
    /// -1, 0 or 1 comparing the entries in storage order.
    int compare(const Matrix2x2& b) const;
    /// @{
    /// Equality through compare(): entries neither less nor greater count as equal, so -0.0
    /// equals 0.0 and a NaN entry equals any value.
    bool operator==(const Matrix2x2& b) const { return compare(b) == 0; }
    bool operator!=(const Matrix2x2& b) const { return compare(b) != 0; }
    /// @}

private:
    double m[4];
};

/// 2D affine map stored column by column as a, b, c, d, tx, ty: element (row r, column k)
/// is entry r + 2k, and a point maps to (a x + c y + tx, b x + d y + ty).
/// `a * b` applies b first. The builders (Translate, Scale, ...) post-multiply the receiver,
/// so the new transform applies to points before the existing one.
class PLUMVALE_EXPORT Matrix2x3 {
public:
    /// The identity.
    Matrix2x3() : m{1, 0, 0, 1, 0, 0} {}
    /// Columns: the two axes and the origin.
    Matrix2x3(const Vector2d& xAxis, const Vector2d& yAxis, const Point2d& origin = Point2d())
        : m{xAxis.x, xAxis.y, yAxis.x, yAxis.y, origin.x, origin.y} {}
    /// Six values in storage order.
    Matrix2x3(double a, double b, double c, double d, double tx, double ty)
        : m{a, b, c, d, tx, ty} {}

    /// @{
    /// Element (row, column), unchecked (row below 2, column below 3), and the six entries in
    /// storage order.
    double& operator()(unsigned row, unsigned column) { return m[row + 2 * column]; }
    double operator()(unsigned row, unsigned column) const { return m[row + 2 * column]; }
    double* AsArray() { return m; }
    const double* AsArray() const { return m; }
    /// @}
    /// The translation column.
    Point2d origin() const { return {m[4], m[5]}; }
    /// A column of the linear part.
    Vector2d axis(Axis2d a) const {
        return a == Axis2d::X ? Vector2d(m[0], m[1]) : Vector2d(m[2], m[3]);
    }

    /// @{
    /// Resets to the identity, and tests for it exactly.
    void Identity() { *this = Matrix2x3(); }
    bool IsIdentity() const;
    /// @}
    /// @{
    /// Post-multiply by the transform the matching Create function builds.
    void Translate(const Vector2d& v) { *this *= CreateTranslate(v); }
    void Scale(const Vector2d& v) { *this *= CreateScale(v); }
    void Rotate(double radians) { *this *= CreateRotate(radians); }
    void ShearX(double s) { *this *= CreateShearX(s); }
    void ShearY(double s) { *this *= CreateShearY(s); }
    /// @}
    /// @{
    /// A translation by v, and a scale by (v.x, v.y).
    static Matrix2x3 CreateTranslate(const Vector2d& v) { return {1, 0, 0, 1, v.x, v.y}; }
    static Matrix2x3 CreateScale(const Vector2d& v) { return {v.x, 0, 0, v.y, 0, 0}; }
    /// @}
    /// Counter-clockwise by `radians`.
    static Matrix2x3 CreateRotate(double radians);
    /// x' = x + s y.
    static Matrix2x3 CreateShearX(double s) { return {1, 0, s, 1, 0, 0}; }
    /// y' = y + s x.
    static Matrix2x3 CreateShearY(double s) { return {1, s, 0, 1, 0, 0}; }

    /// @{
    /// The determinant of the linear part; singular when it is exactly 0.
    double Determinant() const { return m[0] * m[3] - m[2] * m[1]; }
    bool isSingular() const { return Determinant() == 0; }
    /// @}
    /// Stores the inverse of `src`; false, leaving the receiver, when its determinant is 0.
    bool MatrixInverse(const Matrix2x3& src);
    /// Stores a * b.
    void Multiply(const Matrix2x3& a, const Matrix2x3& b) { *this = a * b; }
    /// @{
    /// a * b (b applies first), and in place.
    Matrix2x3 operator*(const Matrix2x3& b) const;
    Matrix2x3& operator*=(const Matrix2x3& b) { return *this = *this * b; }
    /// @}

    /// @{
    /// The map applied to a point, or its linear part to a vector (no translation).
    Point2d Transform(const Point2d& p) const {
        return {m[0] * p.x + m[2] * p.y + m[4], m[1] * p.x + m[3] * p.y + m[5]};
    }
    Vector2d Transform(const Vector2d& v) const {
        return {m[0] * v.x + m[2] * v.y, m[1] * v.x + m[3] * v.y};
    }
    /// @}
    /// The closed box of the four transformed corners; empty stays empty.
    Box2d Transform(const Box2d& box) const;
    /// The smallest integer box covering the transformed cell box; empty stays empty.
    Box2di Transform(const Box2di& box) const;

    /// @{
    /// Exact comparison of the six entries.
    bool operator==(const Matrix2x3& b) const;
    bool operator!=(const Matrix2x3& b) const { return !(*this == b); }
    /// @}
    /// A total order for sorted containers: an unsigned byte comparison of the storage,
    /// not a numeric order.
    bool operator<(const Matrix2x3& b) const;

    /// Writes the two rows to standard output under `name` ("Matrix" when null or empty).
    void print(const char* name = nullptr) const;

private:
    double m[6];
};

inline Vector2d Vector2d::operator*(const Matrix2x3& m) const {
    return m.Transform(*this);
}
inline Point2d Point2d::operator*(const Matrix2x3& m) const {
    return m.Transform(*this);
}

} // namespace Math
