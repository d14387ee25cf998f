// SPDX-License-Identifier: MIT
#include "math/fp_matrix.h"

#include <algorithm>

#include "math/fp_scalar_inline.h"
#include "math/fp_trig.h"
#include "math/fp_vector.h"
#include "math/matrix_inline.h"

namespace {

// a b into out, which may be either: everything is read before the first store.
uint32_t storeProduct(const float *a, const float *b, float *out, uint32_t classA, uint32_t classB)
{
    classA &= kMatrixClassBits;
    classB &= kMatrixClassBits;
    const MatrixColumns left = loadColumns(a);
    const MatrixColumns right = loadColumns(b);
    if (classA == MATRIX_GENERAL || classB == MATRIX_GENERAL) {
        storeColumns(out, generalProduct(left, right));
        return MATRIX_GENERAL;
    }
    storeColumns(out, affineProduct(left, right, combineThree(left, right.c[3]) + left.c[3]));
    return std::min(classA, classB);
}

} // namespace

uint32_t fp_matrix_mul(const float *a, const float *b, float *out, uint32_t classA, uint32_t classB)
{
    return storeProduct(a, b, out, classA, classB);
}

uint32_t fp_matrix_premul(float *a, const float *b, uint32_t classA, uint32_t classB)
{
    return storeProduct(b, a, a, classB, classA);
}

uint32_t fp_matrix_postmul(float *a, const float *b, uint32_t classA, uint32_t classB)
{
    classA &= kMatrixClassBits;
    classB &= kMatrixClassBits;
    const MatrixColumns left = loadColumns(a);
    const MatrixColumns right = loadColumns(b);
    if (classA == MATRIX_GENERAL || classB == MATRIX_GENERAL) {
        storeColumns(a, generalProduct(left, right));
        return MATRIX_GENERAL;
    }
    // Row sums of four products for the translation: b[15] is a factor here, where the other products take it as 1.
    storeColumns(a, affineProduct(left, right, combineFour(left, right.c[3])));
    return std::min(classA, classB);
}

uint32_t fp_matrix_scale(float *m, float x, float y, float z, uint32_t matrixClass)
{
    matrixClass &= kMatrixClassBits;
    if (matrixClass == MATRIX_GENERAL) {
        fp_vec4_smul(m, x, m);
        fp_vec4_smul(m + 4, y, m + 4);
        fp_vec4_smul(m + 8, z, m + 8);
        return MATRIX_GENERAL;
    }
    fp_vec3_smul(m, x, m);
    fp_vec3_smul(m + 4, y, m + 4);
    fp_vec3_smul(m + 8, z, m + 8);
    return matrixClass >= MATRIX_ISOSCALE && x == y && y == z ? MATRIX_ISOSCALE : MATRIX_ANISOSCALE;
}

uint32_t fp_matrix_translate(float *m, float x, float y, float z, uint32_t matrixClass)
{
    matrixClass &= kMatrixClassBits;
    Column move = (loadColumn(m + 4) * y + loadColumn(m) * x) + loadColumn(m + 8) * z;
    // The last element of an affine matrix stays what it is: adding -0 changes no number. The column is stored whole,
    // because the next command loads it whole and would wait for smaller stores.
    if (matrixClass != MATRIX_GENERAL) move = firstThree(move, Column{0.0f, 0.0f, 0.0f, -0.0f});
    storeColumn(m + 12, loadColumn(m + 12) + move);
    return matrixClass == MATRIX_IDENTITY ? MATRIX_TRANSROT : matrixClass;
}

void fp_matrix_build_rotate(float *out, float angle, float x, float y, float z)
{
    const float length = roundedRoot(y * y + x * x + z * z);
    const Column axis = Column{x, y, z, 0.0f} * reciprocalOrZero(length);
    float c, s;
    fp_trigftn(angle, &c, &s);
    const float t = 1.0f - c;

    // The nine elements three at a time, then sorted into columns. The fourth lane of `less` is the zero of all three.
    constexpr Column kNoFourth = {0.0f, 0.0f, 0.0f, 0.0f};
    const Column squares = axis * axis;
    const Column diagonal = squares + (1.0f - squares) * c;                          // x x, y y, z z
    const Column mixed = axis * __builtin_shufflevector(axis, axis, 1, 2, 0, 3) * t; // x y, y z, z x
    const Column turned = __builtin_shufflevector(axis, axis, 2, 0, 1, 3) * s;       // z, x, y
    const Column more = mixed + turned;
    const Column less = firstThree(mixed - turned, kNoFourth);
    const Column low = __builtin_shufflevector(diagonal, more, 0, 4, 1, 5);    // d0, m0, d1, m1
    const Column high = __builtin_shufflevector(more, diagonal, 2, 6, 3, 7);   // m2, d2
    const Column second = __builtin_shufflevector(less, low, 0, 3, 6, 7);      // l0, 0, d1, m1
    const Column third = __builtin_shufflevector(less, high, 1, 3, 4, 5);      // l1, 0, m2, d2
    storeColumn(out, __builtin_shufflevector(low, less, 0, 1, 6, 7));          // d0, m0, l2, 0
    storeColumn(out + 4, __builtin_shufflevector(second, second, 0, 2, 3, 1)); // l0, d1, m1, 0
    storeColumn(out + 8, __builtin_shufflevector(third, third, 2, 0, 3, 1));   // m2, l1, d2, 0
    storeColumn(out + 12, Column{0.0f, 0.0f, 0.0f, 1.0f});
}

void fp_matrix3_load_identity(float *out)
{
    for (uint32_t i = 0; i < 9; ++i)
        out[i] = i % 4 == 0 ? 1.0f : 0.0f;
}
