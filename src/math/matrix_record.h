// SPDX-License-Identifier: MIT
// The matrix of the stacks: 16 elements, float or s15.16, and what is known of them. Loads, conversions between the two
// kinds, and products of any mix of kinds.
#pragma once

#include "math/fp_matrix.h"
#include "math/math_api.h"

/// Bits of MatrixRecord::flags above the MatrixClass. Plain integers, so that they combine with the enumerators of
/// that.
constexpr uint32_t MATRIX_FLOAT = 0x10;     // the elements are floats; clear = s15.16
constexpr uint32_t MATRIX_UNROTATED = 0x20; // identity or scaled identity; kept by scaling only, every other writer
                                            // drops it

/// One matrix, column-major, translation in elements 12 to 14. Copied whole.
struct MatrixRecord {
    union {
        float f[16];   // when MATRIX_FLOAT is set
        int32_t x[16]; // s15.16, when it is clear
    };
    uint32_t flags; // MatrixClass, MATRIX_FLOAT, MATRIX_UNROTATED
};
static_assert(sizeof(MatrixRecord) == 68);

/// Identity of either kind: class MATRIX_IDENTITY, unrotated.
MATH_API void matrixfSetIdentity(MatrixRecord *out);
MATH_API void matrixxSetIdentity(MatrixRecord *out);

/// Copies 16 elements and classifies them cheaply: row 3 other than 0, 0, 0, 1 gives class 0, unequal diagonal elements
/// class 1, everything else class 2, whatever stands off the diagonal. Never class 4 or 8. m must not lie in out.
MATH_API void matrixfLoad(const float *m, MatrixRecord *out);
MATH_API void matrixxLoad(const int32_t *m, MatrixRecord *out);

/// out = transpose of m, 16 words of either kind each; out may be m.
MATH_API void matrixTranspose(const void *m, void *out);

/// out = the s15.16 record m as floats, each the nearest; out may be m. The class and MATRIX_UNROTATED are kept.
/// The second form converts the upper 3x3 and sets the other seven elements, 15 too, to 0.
/// Errors: a float record is an assertion.
MATH_API void matrixxToMatrixf_4(const MatrixRecord *m, MatrixRecord *out);
MATH_API void matrixxToMatrixf_3(const MatrixRecord *m, MatrixRecord *out);

/// out = the float record m as s15.16, rounded toward zero and saturated, NaN as 0; out may be m. The class and
/// MATRIX_UNROTATED are kept. The second form converts the upper 3x3 and sets the other seven elements, 15 too, to 0.
/// Errors: an s15.16 record is an assertion.
MATH_API void matrixfToMatrixx_4(const MatrixRecord *m, MatrixRecord *out);
MATH_API void matrixfToMatrixx_3(const MatrixRecord *m, MatrixRecord *out);

/// out = a b for any mix of kinds; out must be neither. An identity operand gives a copy of the other record, flags
/// too. Otherwise two s15.16 operands give an s15.16 result and a float operand a float one, without MATRIX_UNROTATED.
MATH_API void matrixMultiply(const MatrixRecord *a, const MatrixRecord *b, MatrixRecord *out);
/// a = a b in the same way. a and b may be the same record.
MATH_API void matrixMultiplyInPlace(MatrixRecord *a, const MatrixRecord *b);
