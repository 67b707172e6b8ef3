// Forward declarations of the geometry types, with the axis and boundary enumerations.
#pragma once

namespace Math {

/// @{
/// Coordinate indices, in storage order.
enum class Axis2d { X = 0, Y = 1 };
enum class Axis3d { X = 0, Y = 1, Z = 2 };
enum class Axis4d { X = 0, Y = 1, Z = 2, W = 3 };
/// @}

namespace Constants {
/// Whether a box side's own coordinate belongs to the box.
enum Boundary {
    Open = 0,  ///< the side's coordinate is outside
    Closed = 1 ///< the side's coordinate is inside
};
} // namespace Constants

/// @{
/// Row and column indices of the matrices, from 0.
enum Row { Row0 = 0, Row1 = 1, Row2 = 2, Row3 = 3 };
enum Column { Column0 = 0, Column1 = 1, Column2 = 2, Column3 = 3 };
/// @}

/// @{
/// The geometry classes, declared for headers that only name them.
class Vector2d;
class Point2d;
class Vector3d;
class Point3d;
class Point4d;
class Angle3d;
class Point2di;
class Size2di;
class Box2d;
class Box3d;
class Box2di;
class Rect2d;
class Matrix2x2;
class Matrix2x3;
class Matrix4x4;
class Quat;
class Segment2d;
class Segment3d;
class Line2d;
class Line3d;
class Circle2d;
class Plane3d;
class TexturedPoint2d;
class TexturedPoint4d;
/// @}

} // namespace Math
