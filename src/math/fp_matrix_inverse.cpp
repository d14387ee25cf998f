// SPDX-License-Identifier: MIT
// Inverses by the class of the matrix. Each method computes everything before it stores, so that out may be m and a
// singular matrix leaves out unchanged.
#include "math/fp_matrix.h"

#include "math/fp_scalar_inline.h"
#include "math/matrix_inline.h"
#include "vsp.h"

namespace {

constexpr float kSingularDeterminant = 1e-9f;    // determinants inside the open interval of both signs are singular
constexpr float kSingularSquaredLength = 1e-37f; // a uniform scale below its root is singular

// NaN is not singular: it reaches the result.
bool isSingular(float determinant)
{
    return determinant > -kSingularDeterminant && determinant < kSingularDeterminant;
}

// A 3x3 block as its columns.
struct Block3 {
    float c[3][3];
};

// Cofactors, in the place of the element that each belongs to, and the determinant.
struct Cofactors3 {
    Block3 block;
    float determinant;
};

Cofactors3 cofactors3(const float *m)
{
    Cofactors3 out;
    for (uint32_t column = 0; column < 3; ++column) {
        const float *next = m + 4 * ((column + 1) % 3);
        const float *last = m + 4 * ((column + 2) % 3);
        for (uint32_t row = 0; row < 3; ++row) {
            const uint32_t nextRow = (row + 1) % 3;
            const uint32_t lastRow = (row + 2) % 3;
            out.block.c[column][row] = next[nextRow] * last[lastRow] - next[lastRow] * last[nextRow];
        }
    }
    const float *first = out.block.c[0];
    out.determinant = m[1] * first[1] + m[0] * first[0] + m[2] * first[2];
    return out;
}

// The 2x2 minors of two columns, named by their rows.
struct Minors {
    float rows01, rows02, rows03, rows12, rows13, rows23;
};

Minors minorsOf(const float *a, const float *b)
{
    return {.rows01 = a[0] * b[1] - a[1] * b[0],
            .rows02 = a[0] * b[2] - a[2] * b[0],
            .rows03 = a[0] * b[3] - a[3] * b[0],
            .rows12 = a[1] * b[2] - a[2] * b[1],
            .rows13 = a[1] * b[3] - a[3] * b[1],
            .rows23 = a[2] * b[3] - a[3] * b[2]};
}

// Cofactors of one column of a 4x4 matrix, given the third column that takes part and the minors of the two others.
// They have the signs of columns 0 and 2; for columns 1 and 3 they are negated.
void cofactorColumn(const float *v, const Minors &n, float out[4])
{
    out[0] = v[1] * n.rows23 - v[2] * n.rows13 + v[3] * n.rows12;
    out[1] = v[2] * n.rows03 - v[0] * n.rows23 - v[3] * n.rows02;
    out[2] = v[0] * n.rows13 - v[1] * n.rows03 + v[3] * n.rows01;
    out[3] = v[1] * n.rows02 - v[0] * n.rows12 - v[2] * n.rows01;
}

float determinantOf(const float *m, const float first[4])
{
    return m[1] * first[1] + m[0] * first[0] + m[2] * first[2] + m[3] * first[3];
}

// Translation of an affine inverse: -(block times the translation of m).
void invertTranslation(const Block3 &inverse, const float *m, float out[3])
{
    for (uint32_t row = 0; row < 3; ++row)
        out[row] = negated(inverse.c[1][row] * m[13] + inverse.c[0][row] * m[12] + inverse.c[2][row] * m[14]);
}

// Stores an affine inverse; row 3 is taken over from m.
void storeAffineInverse(float *out, const Block3 &inverse, const float *m)
{
    const float lastRow[4] = {m[3], m[7], m[11], m[15]};
    float translation[3];
    invertTranslation(inverse, m, translation);
    for (uint32_t column = 0; column < 3; ++column)
        storeColumn(out + 4 * column,
                    Column{inverse.c[column][0], inverse.c[column][1], inverse.c[column][2], lastRow[column]});
    storeColumn(out + 12, Column{translation[0], translation[1], translation[2], lastRow[3]});
}

void storeBlock(float *out, const Block3 &block)
{
    for (uint32_t i = 0; i < 9; ++i)
        out[i] = block.c[i / 3][i % 3];
}

Block3 blockOf(const float *m)
{
    Block3 out;
    for (uint32_t column = 0; column < 3; ++column)
        for (uint32_t row = 0; row < 3; ++row)
            out.c[column][row] = m[4 * column + row];
    return out;
}

Block3 transposed(const Block3 &block)
{
    Block3 out;
    for (uint32_t column = 0; column < 3; ++column)
        for (uint32_t row = 0; row < 3; ++row)
            out.c[column][row] = block.c[row][column];
    return out;
}

Block3 scaled(const Block3 &block, float factor)
{
    Block3 out;
    for (uint32_t i = 0; i < 9; ++i)
        out.c[i / 3][i % 3] = block.c[i / 3][i % 3] * factor;
    return out;
}

// The squared length of row 0 of the 3x3, which is the square of a uniform scale.
float squaredScale(const float *m)
{
    return m[4] * m[4] + m[0] * m[0] + m[8] * m[8];
}

uint32_t rejectClass()
{
    os_assert_hook(0, "matrix class 0, 1, 2, 4 or 8");
    return 0;
}

} // namespace

uint32_t _fp_matrix_inv_general(float *out, const float *m)
{
    const Minors right = minorsOf(m + 8, m + 12);
    float cofactors[4][4];
    cofactorColumn(m + 4, right, cofactors[0]);
    const float determinant = determinantOf(m, cofactors[0]);
    if (isSingular(determinant)) return 0;

    const Minors left = minorsOf(m, m + 4);
    cofactorColumn(m, right, cofactors[1]);
    cofactorColumn(m + 12, left, cofactors[2]);
    cofactorColumn(m + 8, left, cofactors[3]);
    const float factor = 1.0f / determinant;
    for (uint32_t column = 0; column < 4; ++column)
        for (uint32_t row = 0; row < 4; ++row) {
            const float cofactor = cofactors[row][column];
            out[4 * column + row] = (row % 2 ? negated(cofactor) : cofactor) * factor;
        }
    return 1;
}

uint32_t _fp_matrix_inv_anisoscale(float *out, const float *m)
{
    const Cofactors3 cofactors = cofactors3(m);
    if (isSingular(cofactors.determinant)) return 0;
    storeAffineInverse(out, transposed(scaled(cofactors.block, 1.0f / cofactors.determinant)), m);
    return 1;
}

uint32_t _fp_matrix_inv_isoscale(float *out, const float *m)
{
    const float square = squaredScale(m);
    if (square < kSingularSquaredLength) return 0;
    storeAffineInverse(out, transposed(scaled(blockOf(m), 1.0f / square)), m);
    return 1;
}

uint32_t _fp_matrix_inv_transrot(float *out, const float *m)
{
    storeAffineInverse(out, transposed(blockOf(m)), m);
    return 1;
}

uint32_t fp_matrix_inverse(float *out, const float *m, uint32_t matrixClass)
{
    switch (matrixClass & kMatrixClassBits) {
    case MATRIX_GENERAL:
        return _fp_matrix_inv_general(out, m);
    case MATRIX_ANISOSCALE:
        return _fp_matrix_inv_anisoscale(out, m);
    case MATRIX_ISOSCALE:
        return _fp_matrix_inv_isoscale(out, m);
    case MATRIX_TRANSROT:
        return _fp_matrix_inv_transrot(out, m);
    case MATRIX_IDENTITY:
        return 1;
    default:
        return rejectClass();
    }
}

uint32_t _fp_matrix_invtps_general(float *out, const float *m)
{
    const Minors right = minorsOf(m + 8, m + 12);
    float cofactors[3][4];
    cofactorColumn(m + 4, right, cofactors[0]);
    const float determinant = determinantOf(m, cofactors[0]);
    if (isSingular(determinant)) return 0;

    cofactorColumn(m, right, cofactors[1]);
    cofactorColumn(m + 12, minorsOf(m, m + 4), cofactors[2]);
    const float factor = 1.0f / determinant;
    for (uint32_t column = 0; column < 3; ++column)
        for (uint32_t row = 0; row < 3; ++row) {
            const float cofactor = cofactors[column][row];
            out[3 * column + row] = (column == 1 ? negated(cofactor) : cofactor) * factor;
        }
    return 1;
}

uint32_t _fp_matrix_invtps_anisoscale(float *out, const float *m)
{
    const Cofactors3 cofactors = cofactors3(m);
    if (isSingular(cofactors.determinant)) return 0;
    storeBlock(out, scaled(cofactors.block, 1.0f / cofactors.determinant));
    return 1;
}

uint32_t _fp_matrix_invtps_isoscale(float *out, const float *m)
{
    const float square = squaredScale(m);
    if (square < kSingularSquaredLength) return 0;
    storeBlock(out, scaled(blockOf(m), 1.0f / square));
    return 1;
}

uint32_t _fp_matrix_invtps_transrot(float *out, const float *m)
{
    storeBlock(out, blockOf(m));
    return 1;
}

uint32_t fp_matrix3_inverse_transpose(float *out, const float *m, uint32_t matrixClass)
{
    switch (matrixClass & kMatrixClassBits) {
    case MATRIX_GENERAL:
        return _fp_matrix_invtps_general(out, m);
    case MATRIX_ANISOSCALE:
        return _fp_matrix_invtps_anisoscale(out, m);
    case MATRIX_ISOSCALE:
        return _fp_matrix_invtps_isoscale(out, m);
    case MATRIX_TRANSROT:
        return _fp_matrix_invtps_transrot(out, m);
    case MATRIX_IDENTITY:
        fp_matrix3_load_identity(out);
        return 1;
    default:
        return rejectClass();
    }
}
