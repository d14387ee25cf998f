// SPDX-License-Identifier: MIT
// The matrix commands' own forms of the exported builders and products, in one step and with their arguments in one
// vector. The results are the same to the bit, for the classes that a MatrixRecord can have.
#pragma once

#include "math/matrix_inline.h"

/// m = m translation(v[0], v[1], v[2]), as fp_matrix_translate. Returns the new class.
uint32_t translateMatrix(float *m, Column v, uint32_t matrixClass);

/// m = m r, r the rotation of fp_matrix_build_rotate about the axis in components 0 to 2 by component 3 in degrees; as
/// fp_matrix_postmul with class MATRIX_TRANSROT. Returns the new class.
uint32_t rotateMatrix(float *m, Column axisAndAngle, uint32_t matrixClass);
