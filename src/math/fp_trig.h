// SPDX-License-Identifier: MIT
// Trigonometry in single precision. Angles are in degrees.
#pragma once

#include "math/math_api.h"

/// Cosine and sine of an angle by interpolation in a table of 256 steps per turn (error below 3.5e-6 within one turn).
/// Angles of 2^31 steps and more are whole turns in this format; infinities and NaN give NaN.
MATH_API void fp_trigftn(float angle, float *cosine, float *sine);

/// Arc functions in degrees. Outside -1..1 the arc sine and cosine are NaN.
MATH_API float fp_atan(float a);
MATH_API float fp_asin(float a);
MATH_API float fp_acos(float a);
