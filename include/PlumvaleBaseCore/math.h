// Umbrella header of the geometry subsystem (namespace Math).
#pragma once

#include <PlumvaleBaseCore/math/Box.h>
#include <PlumvaleBaseCore/math/CameraTransformChain.h>
#include <PlumvaleBaseCore/math/Circle2d.h>
#include <PlumvaleBaseCore/math/Line.h>
#include <PlumvaleBaseCore/math/MathFwd.h>
#include <PlumvaleBaseCore/math/Matrix2x3.h>
#include <PlumvaleBaseCore/math/Matrix4x4.h>
#include <PlumvaleBaseCore/math/Plane3d.h>
#include <PlumvaleBaseCore/math/PlaneProjection.h>
#include <PlumvaleBaseCore/math/Polyline.h>
#include <PlumvaleBaseCore/math/Quat.h>
#include <PlumvaleBaseCore/math/Segment2d.h>
#include <PlumvaleBaseCore/math/Segment3d.h>
#include <PlumvaleBaseCore/math/TexturedPoint.h>
#include <PlumvaleBaseCore/math/TiledBox2di.h>
#include <PlumvaleBaseCore/math/Vector2d.h>
#include <PlumvaleBaseCore/math/Vector3d.h>
