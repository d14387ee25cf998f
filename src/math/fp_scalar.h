// SPDX-License-Identifier: MIT
// Scalar functions in IEEE single precision: every step rounds to a float, nothing is fused.
#pragma once

#include "math/math_api.h"

/// a with the sign bit cleared, and with it flipped; zeros and NaN too.
MATH_API float fp_abs(float a);
MATH_API float fp_negate(float a);

/// a + b, a - b, a * b, a / b.
MATH_API float fp_add(float a, float b);
MATH_API float fp_sub(float a, float b);
MATH_API float fp_mul(float a, float b);
MATH_API float fp_div(float a, float b);

/// (a + a) * b.
MATH_API float fp_mul2ab(float a, float b);
/// c + a * b.
MATH_API float fp_madd(float a, float b, float c);
/// a - b * c.
MATH_API float fp_msub(float a, float b, float c);

/// 1 / a; +0 for a zero of either sign. Both are the same function.
MATH_API float fp_recp(float a);
MATH_API float fp_recp_prec(float a);

/// Square root, correctly rounded. A result of NaN is made by the C library's sqrt, so that a negative argument sets
/// errno to EDOM. Both are the same function.
MATH_API float fp_sqrt(float a);
MATH_API float fp_sqrt_prec(float a);

/// 1 / fp_sqrt(a); a zero gives infinity of its sign. Both are the same function.
MATH_API float fp_recpsqrt(float a);
MATH_API float fp_recpsqrt_prec(float a);

/// (1 - t) * a + b * t.
MATH_API float fp_interpolate(float a, float b, float t);
