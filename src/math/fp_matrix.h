// SPDX-License-Identifier: MIT
// 4x4 float matrices: products, builders and inverses. Matrices are 16 floats, column-major, translation in 12 to 14.
// Each operation is told the class of its operands and returns that of its result, so that special matrices take short
// paths. Class arguments may be whole flags words: only the low four bits are read. See docs/math.md.
#pragma once

#include "math/math_api.h"

/// What is known of a matrix, from general to most special. The product of two affine matrices has the smaller class.
enum MatrixClass : uint32_t {
    MATRIX_GENERAL = 0,    // any 4x4
    MATRIX_ANISOSCALE = 1, // affine: row 3 is 0, 0, 0, 1
    MATRIX_ISOSCALE = 2,   // affine, the 3x3 a rotation times a uniform scale
    MATRIX_TRANSROT = 4,   // rotation and translation
    MATRIX_IDENTITY = 8,
};

constexpr uint32_t kMatrixClassBits = 0xF;

/// out = a b. out must not overlap a or b. Returns the class of out.
MATH_API uint32_t fp_matrix_mul(const float *a, const float *b, float *out, uint32_t classA, uint32_t classB);
/// a = b a. a and b may be the same matrix. Returns the class of the result.
MATH_API uint32_t fp_matrix_premul(float *a, const float *b, uint32_t classA, uint32_t classB);
/// a = a b. a and b may be the same matrix. Returns the class of the result.
MATH_API uint32_t fp_matrix_postmul(float *a, const float *b, uint32_t classA, uint32_t classB);

/// m = m diag(x, y, z, 1). Returns the new class: 2 for equal factors and a class of at least 2, even when they are 1.
MATH_API uint32_t fp_matrix_scale(float *m, float x, float y, float z, uint32_t matrixClass);
/// m = m translation(x, y, z). Returns the new class.
MATH_API uint32_t fp_matrix_translate(float *m, float x, float y, float z, uint32_t matrixClass);
/// out = rotation by an angle in degrees about an axis of any length. A zero axis gives diag(c, c, c, 1), c the cosine.
MATH_API void fp_matrix_build_rotate(float *out, float angle, float x, float y, float z);

/// out = inverse of m; out may be m. Returns 1, or 0 for a singular m (out is then unchanged).
/// MATRIX_IDENTITY: returns 1 and leaves out unwritten. Errors: an unknown class is an assertion and returns 0.
MATH_API uint32_t fp_matrix_inverse(float *out, const float *m, uint32_t matrixClass);
/// out = transpose of the upper 3x3 of the inverse of m: 9 floats, column-major; out may be m. Returns 1, or 0 for a
/// singular m (out is then unchanged). Errors: an unknown class is an assertion and returns 0.
MATH_API uint32_t fp_matrix3_inverse_transpose(float *out, const float *m, uint32_t matrixClass);
/// out = 3x3 identity, 9 floats.
MATH_API void fp_matrix3_load_identity(float *out);

/// The methods of fp_matrix_inverse, one per class. Return 1, or 0 for a singular m.
MATH_API uint32_t _fp_matrix_inv_general(float *out, const float *m);
MATH_API uint32_t _fp_matrix_inv_anisoscale(float *out, const float *m);
MATH_API uint32_t _fp_matrix_inv_isoscale(float *out, const float *m);
MATH_API uint32_t _fp_matrix_inv_transrot(float *out, const float *m);

/// The methods of fp_matrix3_inverse_transpose, one per class. Return 1, or 0 for a singular m.
MATH_API uint32_t _fp_matrix_invtps_general(float *out, const float *m);
MATH_API uint32_t _fp_matrix_invtps_anisoscale(float *out, const float *m);
MATH_API uint32_t _fp_matrix_invtps_isoscale(float *out, const float *m);
MATH_API uint32_t _fp_matrix_invtps_transrot(float *out, const float *m);
