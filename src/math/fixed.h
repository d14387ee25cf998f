// SPDX-License-Identifier: MIT
// s15.16 functions, and the integer helpers about powers of two. Fixed results that do not fit wrap. Angles are in
// degrees.
#pragma once

#include "math/math_api.h"

/// 1 / sqrt(x) from a table and two Newton steps. 0 and negative arguments have no guard: 0 gives 0xDFFFFFFD, negative
/// ones take their seed from the unsigned bit pattern.
MATH_API int32_t fixedInvSqrt_s1516(int32_t x);

/// Cosine and sine by interpolation in a table of 256 steps per turn. Not exact at the quarter turns: the number of
/// steps per degree is rounded down.
MATH_API void fixedTrig_s1516(int32_t angle, int32_t *cosine, int32_t *sine);

/// Arc functions in degrees. Arc sine and cosine outside -1..1 give what fixedInvSqrt_s1516 makes of a negative value.
MATH_API int32_t fixedAtan_s1516(int32_t x);
MATH_API int32_t fixedAsin_s1516(int32_t x);
MATH_API int32_t fixedAcos_s1516(int32_t x);

/// Reciprocal length of a vector of 3 s15.16. A zero vector gives the reciprocal square root of 0. A sum of squares
/// from 2^63 on, as of three components of 26755.0, wraps and gives no useful length.
MATH_API int32_t normalizerx(const int32_t *v);
/// Scales v, 3 s15.16, to length 1 in place. Returns the new z.
MATH_API int32_t normalizex(int32_t *v);
/// As normalizex for 3 floats, through s15.16: components saturate at the limits of that format.
MATH_API float normalizef(float *v);

/// n itself for 0 and powers of two, otherwise the next larger power of two. n is halved as a signed number: without
/// being a power of two, one with the top bit set gives 2.
MATH_API uint32_t pow2dim(uint32_t n);
/// floor(log2 n); 0 for n < 2.
MATH_API uint32_t log2exact(uint32_t n);
