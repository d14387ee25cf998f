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
    const float factor = reciprocalOrZero(length);
    x *= factor;
    y *= factor;
    z *= factor;

    float c, s;
    fp_trigftn(angle, &c, &s);
    const float t = 1.0f - c;
    const float xx = x * x, yy = y * y, zz = z * z;
    const float xyt = x * y * t, xzt = x * z * t, yzt = y * z * t;
    const float xs = x * s, ys = y * s, zs = z * s;

    storeColumn(out, Column{xx + c * (1.0f - xx), xyt + zs, xzt - ys, 0.0f});
    storeColumn(out + 4, Column{xyt - zs, yy + (1.0f - yy) * c, yzt + xs, 0.0f});
    storeColumn(out + 8, Column{xzt + ys, yzt - xs, zz + (1.0f - zz) * c, 0.0f});
    storeColumn(out + 12, Column{0.0f, 0.0f, 0.0f, 1.0f});
}

void fp_matrix3_load_identity(float *out)
{
    for (uint32_t i = 0; i < 9; ++i)
        out[i] = i % 4 == 0 ? 1.0f : 0.0f;
}
