// SPDX-License-Identifier: MIT
// Vectors of three and four floats and their transforms by 16-float column-major matrices. An output may be the same
// array as an input vector.
#pragma once

#include "math/math_api.h"

/// out[i] = a[i] * b[i].
MATH_API void fp_vec3_mul(const float *a, const float *b, float *out);
MATH_API void fp_vec4_mul(const float *a, const float *b, float *out);
/// out[i] = v[i] * s.
MATH_API void fp_vec3_smul(const float *v, float s, float *out);
MATH_API void fp_vec4_smul(const float *v, float s, float *out);
/// acc[i] = acc[i] + s * v[i].
MATH_API void fp_vec3_smadd(const float *v, float s, float *acc);
MATH_API void fp_vec4_smadd(const float *v, float s, float *acc);
/// acc[i] = acc[i] + a[i] * b[i].
MATH_API void fp_vec4_madd(const float *a, const float *b, float *acc);

/// out = a x b.
MATH_API void fp_vec3_cross(const float *a, const float *b, float *out);
/// (a1 b1 + a0 b0) + a2 b2, and for four components + a3 b3.
MATH_API float fp_vec3_dotp(const float *a, const float *b);
MATH_API float fp_vec4_dotp(const float *a, const float *b);
/// Scales v to length 1 in place. The length is rounded to a float before it divides; a length of 0 gives zeros.
MATH_API void fp_vec3_normalize(float *v);

/// out = upper 3x3 of m times v: column 0 times v[0], plus column 1 times v[1], plus column 2 times v[2].
MATH_API void fp_vec3_xform3(const float *m, const float *v, float *out);
/// As fp_vec3_xform3, plus the translation: a point with w = 1. Row 3 is not used.
MATH_API void fp_vec3_xform4(const float *m, const float *v, float *out);
/// out = m times v, four components; columns are added in order.
MATH_API void fp_vec4_xform4(const float *m, const float *v, float *out);

/// Row of a matrix times v: (p[4] v[1] + p[0] v[0]) + p[8] v[2], and + p[12] v[3]. p points to the row's first element.
MATH_API float _fp_matrix_rowdot3(const float *p, const float *v);
MATH_API float _fp_matrix_rowdot4(const float *p, const float *v);

/// x and y of m times (v, 1), or of m times v, divided by w. Two outputs are written; w = 0 gives infinities or NaN.
MATH_API void fp_vec3_xform4_normalize(const float *m, const float *v, float *out);
MATH_API void fp_vec4_xform4_normalize(const float *m, const float *v, float *out);
