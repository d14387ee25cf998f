// SPDX-License-Identifier: MIT
#include "math/fp_matrix.h"
#include "math/matrix_commands.h"

#include <algorithm>

#include "math/fp_scalar_inline.h"
#include "math/fp_trig_inline.h"
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

// The elements of a rotation, three at a time.
struct RotationElements {
    Column diagonal; // elements 0, 5, 10
    Column more;     // elements 1, 6, 8: of the axis' product of two, plus a component times the sine
    Column less;     // elements 4, 9, 2: minus it
};

// About the axis in components 0 to 2, of any length, by the angle in component 3, in degrees (OpenGL ES 1.1, 2.10.2).
// The elements' fourth components have no meaning.
inline RotationElements rotationElements(Column axisAndAngle)
{
    const Column lengths = axisAndAngle * axisAndAngle;
    const Column axis =
        axisAndAngle * reciprocalOrZero(roundedRoot(broadcast<1>(lengths)[0] + lengths[0] + broadcast<2>(lengths)[0]));
    const Column both = sineCosine(broadcast<3>(axisAndAngle)[0]);
    const Column sine = broadcast<0>(both);
    const Column cosine = broadcast<1>(both);

    const Column squares = axis * axis;
    const Column mixed = axis * swizzled<1, 2, 0, 3>(axis) * (1.0f - cosine); // x y, y z, z x
    const Column turned = swizzled<2, 0, 1, 3>(axis) * sine;                  // z, x, y
    return {squares + (1.0f - squares) * cosine, mixed + turned, mixed - turned};
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
    translateMatrix(m, Column{x, y, z, 0.0f}, matrixClass);
    matrixClass &= kMatrixClassBits;
    return matrixClass == MATRIX_IDENTITY ? MATRIX_TRANSROT : matrixClass; // also of what is no class
}

void fp_matrix_build_rotate(float *out, float angle, float x, float y, float z)
{
    const RotationElements r = rotationElements(Column{x, y, z, angle});
    constexpr Column kNoFourth = {0.0f, 0.0f, 0.0f, 0.0f};
    const Column less = firstThree(r.less, kNoFourth);                           // the zero of all three columns
    const Column low = __builtin_shufflevector(r.diagonal, r.more, 0, 4, 1, 5);  // d0, m0, d1, m1
    const Column high = __builtin_shufflevector(r.more, r.diagonal, 2, 6, 3, 7); // m2, d2
    const Column second = __builtin_shufflevector(less, low, 0, 3, 6, 7);        // l0, 0, d1, m1
    const Column third = __builtin_shufflevector(less, high, 1, 3, 4, 5);        // l1, 0, m2, d2
    storeColumn(out, __builtin_shufflevector(low, less, 0, 1, 6, 7));            // d0, m0, l2, 0
    storeColumn(out + 4, __builtin_shufflevector(second, second, 0, 2, 3, 1));   // l0, d1, m1, 0
    storeColumn(out + 8, __builtin_shufflevector(third, third, 2, 0, 3, 1));     // m2, l1, d2, 0
    storeColumn(out + 12, Column{0.0f, 0.0f, 0.0f, 1.0f});
}

uint32_t translateMatrix(float *m, Column v, uint32_t matrixClass)
{
    matrixClass &= kMatrixClassBits;
    const MatrixColumns columns = loadColumns(m);
    Column move = (columns.c[1] * broadcast<1>(v) + columns.c[0] * broadcast<0>(v)) + columns.c[2] * broadcast<2>(v);
    // The last element of an affine matrix stays what it is: adding -0 changes no number. The column is stored whole,
    // because the next command loads it whole and would wait for smaller stores.
    if (matrixClass != MATRIX_GENERAL) [[likely]]
        move = firstThree(move, Column{0.0f, 0.0f, 0.0f, -0.0f});
    storeColumn(m + 12, columns.c[3] + move);
    return std::min<uint32_t>(matrixClass, MATRIX_TRANSROT);
}

uint32_t rotateMatrix(float *m, Column axisAndAngle, uint32_t matrixClass)
{
    matrixClass &= kMatrixClassBits;
    if (matrixClass == MATRIX_GENERAL) [[unlikely]] {
        float rotation[16];
        fp_matrix_build_rotate(rotation, axisAndAngle[3], axisAndAngle[0], axisAndAngle[1], axisAndAngle[2]);
        return fp_matrix_postmul(m, rotation, MATRIX_GENERAL, MATRIX_TRANSROT);
    }
    const RotationElements r = rotationElements(axisAndAngle);
    const MatrixColumns left = loadColumns(m);
    MatrixColumns product;
    product.c[0] =
        left.c[0] * broadcast<0>(r.diagonal) + left.c[1] * broadcast<0>(r.more) + left.c[2] * broadcast<2>(r.less);
    product.c[1] =
        left.c[0] * broadcast<0>(r.less) + left.c[1] * broadcast<1>(r.diagonal) + left.c[2] * broadcast<1>(r.more);
    product.c[2] =
        left.c[0] * broadcast<2>(r.more) + left.c[1] * broadcast<1>(r.less) + left.c[2] * broadcast<2>(r.diagonal);
    storeColumns(m, affine(product, combineFour(left, Column{0.0f, 0.0f, 0.0f, 1.0f})));
    return std::min<uint32_t>(matrixClass, MATRIX_TRANSROT);
}

void fp_matrix3_load_identity(float *out)
{
    for (uint32_t i = 0; i < 9; ++i)
        out[i] = i % 4 == 0 ? 1.0f : 0.0f;
}
