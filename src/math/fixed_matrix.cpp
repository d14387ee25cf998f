// SPDX-License-Identifier: MIT
#include "math/fixed_matrix.h"

#include <algorithm>
#include <bit>

#include "math/fixed.h"
#include "math/fixed_inline.h"
#include "math/record_assert.h"

namespace {

uint32_t classOf(const MatrixRecord *m)
{
    return m->flags & kMatrixClassBits;
}

// Row of a matrix times a vector of `count` components; p points to the row's first element.
template <uint32_t count>
int32_t rowDot(const int32_t *p, const int32_t *v)
{
    int32_t sum = 0;
    for (uint32_t k = 0; k < count; ++k)
        sum = fixedAdd(sum, fixedMul(p[4 * k], v[k]));
    return sum;
}

// out = a b; out is neither.
uint32_t storeProduct(const int32_t *a, const int32_t *b, int32_t *out, uint32_t classA, uint32_t classB)
{
    if (classA == MATRIX_GENERAL || classB == MATRIX_GENERAL) {
        for (uint32_t i = 0; i < 16; ++i)
            out[i] = rowDot<4>(a + i % 4, b + i / 4 * 4);
        return MATRIX_GENERAL;
    }
    for (uint32_t row = 0; row < 3; ++row) {
        for (uint32_t column = 0; column < 4; ++column)
            out[4 * column + row] = rowDot<3>(a + row, b + 4 * column);
        out[12 + row] = fixedAdd(out[12 + row], a[12 + row]);
    }
    out[3] = out[7] = out[11] = 0;
    out[15] = kFixedOne;
    return std::min(classA, classB);
}

void buildRotation(MatrixRecord *out, int32_t angle, int32_t x, int32_t y, int32_t z)
{
    int32_t axis[3] = {x, y, z};
    normalizex(axis);
    x = axis[0];
    y = axis[1];
    z = axis[2];

    int32_t c, s;
    fixedTrig_s1516(angle, &c, &s);
    const int32_t t = kFixedOne - c;
    const int32_t xx = fixedMul(x, x), yy = fixedMul(y, y), zz = fixedMul(z, z);
    const int32_t xyt = fixedMul(fixedMul(x, y), t), xzt = fixedMul(fixedMul(x, z), t);
    const int32_t yzt = fixedMul(fixedMul(y, z), t);
    const int32_t xs = fixedMul(x, s), ys = fixedMul(y, s), zs = fixedMul(z, s);

    matrixxSetIdentity(out);
    out->x[0] = fixedAdd(xx, fixedMul(c, fixedSub(kFixedOne, xx)));
    out->x[1] = fixedAdd(xyt, zs);
    out->x[2] = fixedSub(xzt, ys);
    out->x[4] = fixedSub(xyt, zs);
    out->x[5] = fixedAdd(yy, fixedMul(fixedSub(kFixedOne, yy), c));
    out->x[6] = fixedAdd(yzt, xs);
    out->x[8] = fixedAdd(xzt, ys);
    out->x[9] = fixedSub(yzt, xs);
    out->x[10] = fixedAdd(zz, fixedMul(fixedSub(kFixedOne, zz), c));
    out->flags = MATRIX_TRANSROT;
}

// `count` rows of m, of `columns` columns each, times a vector, plus an offset when there is one.
template <uint32_t count, uint32_t columns>
void transformVector(const int32_t *m, const int32_t *v, const int32_t *offset, int32_t *out)
{
    int32_t sums[count];
    for (uint32_t row = 0; row < count; ++row)
        sums[row] = fixedAdd(rowDot<columns>(m + row, v), offset ? offset[row] : 0);
    std::copy(sums, sums + count, out);
}

// A 96-bit sum of products; the high part wraps.
struct WideSum {
    uint64_t high; // units of 2^32
    uint64_t low;
};

void addProduct(WideSum &sum, int32_t a, int64_t b)
{
    const int64_t lowProduct = static_cast<int64_t>(a) * static_cast<uint32_t>(b);
    const int64_t highProduct = static_cast<int64_t>(a) * (b >> 32);
    sum.high += static_cast<uint64_t>(highProduct) + static_cast<uint64_t>(lowProduct >> 32);
    sum.low += static_cast<uint32_t>(lowProduct);
}

} // namespace

uint32_t matrixxMultiply(const MatrixRecord *a, const MatrixRecord *b, MatrixRecord *out)
{
    assertFixed(a);
    assertFixed(b);
    out->flags = storeProduct(a->x, b->x, out->x, classOf(a), classOf(b));
    return out->flags;
}

uint32_t matrixxMultiplyInPlace(MatrixRecord *a, const MatrixRecord *b)
{
    assertFixed(a);
    assertFixed(b);
    MatrixRecord product;
    product.flags = storeProduct(a->x, b->x, product.x, classOf(a), classOf(b));
    *a = product;
    return a->flags;
}

void matrixxTranslate(MatrixRecord *m, int32_t x, int32_t y, int32_t z)
{
    assertFixed(m);
    const uint32_t matrixClass = classOf(m);
    const int32_t offset[3] = {x, y, z};
    const uint32_t rows = matrixClass == MATRIX_GENERAL ? 4 : 3;
    for (uint32_t row = 0; row < rows; ++row)
        m->x[12 + row] = fixedAdd(m->x[12 + row], rowDot<3>(m->x + row, offset));
    m->flags = matrixClass == MATRIX_IDENTITY ? MATRIX_TRANSROT : matrixClass;
}

void matrixxScale(MatrixRecord *m, int32_t x, int32_t y, int32_t z)
{
    assertFixed(m);
    const uint32_t matrixClass = classOf(m);
    const uint32_t unrotated = m->flags & MATRIX_UNROTATED;
    const int32_t factors[3] = {x, y, z};
    const uint32_t rows = matrixClass == MATRIX_GENERAL ? 4 : 3;
    for (uint32_t column = 0; column < 3; ++column)
        for (uint32_t row = 0; row < rows; ++row)
            m->x[4 * column + row] = fixedMul(m->x[4 * column + row], factors[column]);

    uint32_t newClass = MATRIX_GENERAL;
    if (matrixClass != MATRIX_GENERAL) {
        const bool uniform = x == y && y == z && (matrixClass >= MATRIX_ISOSCALE || unrotated);
        newClass = uniform ? MATRIX_ISOSCALE : MATRIX_ANISOSCALE;
    }
    m->flags = newClass | unrotated;
}

void matrixxRotate(MatrixRecord *m, int32_t angle, int32_t x, int32_t y, int32_t z)
{
    assertFixed(m);
    MatrixRecord rotation;
    buildRotation(&rotation, angle, x, y, z);
    matrixxMultiplyInPlace(m, &rotation);
}

void matrixxMultVector_4_4(const MatrixRecord *m, const int32_t *v, int32_t *out)
{
    assertFixed(m);
    transformVector<4, 4>(m->x, v, nullptr, out);
}

void matrixxMultVector_4_3(const MatrixRecord *m, const int32_t *v, int32_t *out)
{
    assertFixed(m);
    transformVector<3, 3>(m->x, v, m->x + 12, out);
}

void matrixxMultVector_3_3(const MatrixRecord *m, const int32_t *v, int32_t *out)
{
    assertFixed(m);
    transformVector<3, 3>(m->x, v, nullptr, out);
}

void matrixxMultVector_2_4_4(const MatrixRecord *m, const int32_t *v1, const int32_t *v2, int32_t *out1, int32_t *out2)
{
    matrixxMultVector_4_4(m, v1, out1);
    matrixxMultVector_4_4(m, v2, out2);
}

void matrixxMultVector_2_4_3(const MatrixRecord *m, const int32_t *v1, const int32_t *v2, int32_t *out1, int32_t *out2)
{
    matrixxMultVector_4_3(m, v1, out1);
    matrixxMultVector_4_3(m, v2, out2);
}

uint32_t matrixxInverseTranspose(const MatrixRecord *m, int32_t *out)
{
    assertFixed(m);

    // Cofactors in units of 2^-32; exact, the difference of two products fits 64 bits.
    int64_t cofactors[9];
    uint64_t magnitudes = 0;
    for (uint32_t i = 0; i < 9; ++i) {
        const int32_t *next = m->x + 4 * ((i / 3 + 1) % 3);
        const int32_t *last = m->x + 4 * ((i / 3 + 2) % 3);
        const uint32_t nextRow = (i + 1) % 3;
        const uint32_t lastRow = (i + 2) % 3;
        cofactors[i] =
            static_cast<int64_t>(next[nextRow]) * last[lastRow] - static_cast<int64_t>(next[lastRow]) * last[nextRow];
        magnitudes |= static_cast<uint64_t>(cofactors[i] < 0 ? -cofactors[i] : cofactors[i]);
    }

    // The determinant by column 0, in units of 2^-48 and 96 bits.
    WideSum sum = {};
    for (uint32_t row = 0; row < 3; ++row)
        addProduct(sum, m->x[row], cofactors[row]);
    sum.high += sum.low >> 32;
    sum.low &= 0xFFFFFFFF;

    // An element is cofactor * 2^32 / determinant. Both lose the same low bits, so many that they fit 64 bits; the
    // cofactors keep 61 bits of the largest one.
    const int32_t dropped = std::clamp<int32_t>(std::bit_width(magnitudes) - 29, 0, 32);
    const uint64_t determinantBits = sum.high << (32 - dropped) | sum.low >> dropped;
    const int64_t determinant = static_cast<int64_t>(determinantBits);
    if (determinant == 0) return 0;

    for (uint32_t i = 0; i < 9; ++i)
        out[i] = static_cast<int32_t>((cofactors[i] * (INT64_C(1) << (32 - dropped))) / determinant);
    return 1;
}
