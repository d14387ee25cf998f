// SPDX-License-Identifier: MIT
// What a matrix looks like, for cheaper shader code.
#pragma once

#include "math/matrix_record.h"

/// Bit i (0..15) is set when element i equals 0.0 of either sign, bit 16 + i when it equals 1.0. The identity gives
/// 0x84217BDE. Errors: an s15.16 record is an assertion.
MATH_API uint32_t getMatrixZeroOneMask(const MatrixRecord *m);

/// 1 when the twelve elements off the diagonal are 0 and element 15 is 1, else 0.
/// Errors: an s15.16 record is an assertion.
MATH_API uint32_t isMatrixScale(const MatrixRecord *m);
/// 1 for such a matrix whose first n diagonal elements are equal, else 0. n beyond 4 means 4, below 2 any scale will
/// do. Errors: an s15.16 record is an assertion.
MATH_API uint32_t isMatrixIsoscale(const MatrixRecord *m, int32_t n);
/// 1 when the rows of the upper 3x3 have length 1 and right angles, and row 3 is 0, 0, 0, 1, each to 0.001; else 0.
/// The translation may be anything. NaN in the other elements gives 0. Errors: an s15.16 record is an assertion.
MATH_API uint32_t isMatrixOrthogonal(const MatrixRecord *m);

/// How many leading rows a shader must compute, given a zero-one mask: the rows below are those of the identity.
MATH_API uint32_t signicantRows(uint32_t zeroOneMask);

/// Not provided for s15.16 records: both are an assertion and return 0.
MATH_API uint32_t isIsoscalex(const MatrixRecord *m);
MATH_API uint32_t isMatrixOrthogonalx(const MatrixRecord *m);
