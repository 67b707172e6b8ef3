// Umbrella header of the numerics subsystem.
#pragma once

#include <PlumvaleBaseCore/numerics/ColorConversion.h>
#include <PlumvaleBaseCore/numerics/Jacobi.h>
#include <PlumvaleBaseCore/numerics/TUCRC64Calculator.h>
#include <PlumvaleBaseCore/numerics/TUMaths.h>
#include <PlumvaleBaseCore/numerics/TUMatrix.h>
