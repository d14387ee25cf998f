// SPDX-License-Identifier: MIT
// Products, transforms and the inverse-transpose of s15.16 matrix records. Every term of a sum is a fixed-point product
// of its own, rounded down to 2^-16, and sums wrap to 32 bits, so the order of the terms is without effect. Classes
// follow the float functions of fp_matrix.h. Errors, all functions: a float record is an assertion.
#pragma once

#include "math/matrix_record.h"

/// out = a b; out must be neither. Flags: the class of the product alone. Returns the class.
MATH_API uint32_t matrixxMultiply(const MatrixRecord *a, const MatrixRecord *b, MatrixRecord *out);
/// a = a b; a and b may be the same record. Flags: the class of the product alone. Returns the class.
MATH_API uint32_t matrixxMultiplyInPlace(MatrixRecord *a, const MatrixRecord *b);

/// m = m translation(x, y, z). Flags: class 4 for an identity, otherwise the class as it was; nothing else.
MATH_API void matrixxTranslate(MatrixRecord *m, int32_t x, int32_t y, int32_t z);
/// m = m diag(x, y, z, 1). Keeps MATRIX_UNROTATED. A class of 0 stays; otherwise it is 2 for equal factors when it was
/// at least 2 or the record was unrotated, else 1.
MATH_API void matrixxScale(MatrixRecord *m, int32_t x, int32_t y, int32_t z);
/// m = m rotation by an angle in degrees about an axis of any length. A zero axis gives diag(c, c, c, 1), c the cosine.
/// Flags: the class of the product with a rigid matrix alone.
MATH_API void matrixxRotate(MatrixRecord *m, int32_t angle, int32_t x, int32_t y, int32_t z);

/// out = m v: four components, three with the translation, three without; out may be v. Row 3 counts for the first
/// only.
MATH_API void matrixxMultVector_4_4(const MatrixRecord *m, const int32_t *v, int32_t *out);
MATH_API void matrixxMultVector_4_3(const MatrixRecord *m, const int32_t *v, int32_t *out);
MATH_API void matrixxMultVector_3_3(const MatrixRecord *m, const int32_t *v, int32_t *out);
/// The same for two vectors, the first before the second.
MATH_API void matrixxMultVector_2_4_4(const MatrixRecord *m, const int32_t *v1, const int32_t *v2, int32_t *out1,
                                      int32_t *out2);
MATH_API void matrixxMultVector_2_4_3(const MatrixRecord *m, const int32_t *v1, const int32_t *v2, int32_t *out1,
                                      int32_t *out2);

/// out = transpose of the inverse of the upper 3x3 of m, whatever its class: 9 words, column-major. Returns 1; 0 with
/// out untouched when the determinant is 0, or so small that the largest element has no place in 32 bits by far.
MATH_API uint32_t matrixxInverseTranspose(const MatrixRecord *m, int32_t *out);
