// SPDX-License-Identifier: MIT
#include "math/matrix_record.h"

#include <cstring>

#include "math/fixed_inline.h"
#include "math/fixed_matrix.h"
#include "math/matrix_inline.h"
#include "math/record_assert.h"

namespace {

constexpr MatrixRecord kFloatIdentity = {
    .f = {1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f},
    .flags = MATRIX_IDENTITY | MATRIX_FLOAT | MATRIX_UNROTATED};

constexpr MatrixRecord kFixedIdentity = {
    .x = {kFixedOne, 0, 0, 0, 0, kFixedOne, 0, 0, 0, 0, kFixedOne, 0, 0, 0, 0, kFixedOne},
    .flags = MATRIX_IDENTITY | MATRIX_UNROTATED};

// Compares the diagonal only, deliberately: every matrix with three equal diagonal elements counts as a uniform scale.
// Written so that NaN leads to the more general class.
template <typename Element>
uint32_t classOfLoaded(const Element *m, Element one)
{
    const Element zero = 0;
    if (m[3] != zero || m[7] != zero || m[11] != zero || m[15] != one) return MATRIX_GENERAL;
    if (m[0] != m[5] || m[0] != m[10]) return MATRIX_ANISOSCALE;
    return MATRIX_ISOSCALE;
}

// Zero is the same word in both kinds.
void clearOutside3x3(MatrixRecord *out)
{
    out->x[3] = out->x[7] = 0;
    for (uint32_t i = 11; i < 16; ++i)
        out->x[i] = 0;
}

// The float form of a record: itself, or its conversion in `room`.
const MatrixRecord *asFloat(const MatrixRecord *m, MatrixRecord *room)
{
    if (m->flags & MATRIX_FLOAT) return m;
    matrixxToMatrixf_4(m, room);
    return room;
}

bool bothFixed(const MatrixRecord *a, const MatrixRecord *b)
{
    return !((a->flags | b->flags) & MATRIX_FLOAT);
}

} // namespace

void matrixfSetIdentity(MatrixRecord *out)
{
    *out = kFloatIdentity;
}

void matrixxSetIdentity(MatrixRecord *out)
{
    *out = kFixedIdentity;
}

void matrixfLoad(const float *m, MatrixRecord *out)
{
    std::memcpy(out->f, m, sizeof(out->f));
    out->flags = MATRIX_FLOAT | classOfLoaded(out->f, 1.0f);
}

void matrixxLoad(const int32_t *m, MatrixRecord *out)
{
    std::memcpy(out->x, m, sizeof(out->x));
    out->flags = classOfLoaded(out->x, kFixedOne);
}

void matrixTranspose(const void *m, void *out)
{
    MatrixColumns columns;
    std::memcpy(&columns, m, sizeof(columns));
    const MatrixColumns rows = transposed(columns);
    std::memcpy(out, &rows, sizeof(rows));
}

void matrixxToMatrixf_4(const MatrixRecord *m, MatrixRecord *out)
{
    assertFixed(m);
    for (uint32_t i = 0; i < 16; ++i)
        out->f[i] = floatFromFixedWord(m->x[i]);
    out->flags = m->flags | MATRIX_FLOAT;
}

void matrixxToMatrixf_3(const MatrixRecord *m, MatrixRecord *out)
{
    assertFixed(m);
    for (uint32_t i = 0; i < 11; ++i)
        out->f[i] = floatFromFixedWord(m->x[i]);
    clearOutside3x3(out);
    out->flags = m->flags | MATRIX_FLOAT;
}

void matrixfToMatrixx_4(const MatrixRecord *m, MatrixRecord *out)
{
    assertFloat(m);
    for (uint32_t i = 0; i < 16; ++i)
        out->x[i] = fixedWordFromFloat(m->f[i]);
    out->flags = m->flags & ~MATRIX_FLOAT;
}

void matrixfToMatrixx_3(const MatrixRecord *m, MatrixRecord *out)
{
    assertFloat(m);
    for (uint32_t i = 0; i < 11; ++i)
        out->x[i] = fixedWordFromFloat(m->f[i]);
    clearOutside3x3(out);
    out->flags = m->flags & ~MATRIX_FLOAT;
}

void matrixMultiply(const MatrixRecord *a, const MatrixRecord *b, MatrixRecord *out)
{
    if (a->flags & MATRIX_IDENTITY) {
        *out = *b;
        return;
    }
    if (b->flags & MATRIX_IDENTITY) {
        *out = *a;
        return;
    }
    if (bothFixed(a, b)) {
        matrixxMultiply(a, b, out);
        return;
    }
    MatrixRecord room; // one operand at most is converted
    const MatrixRecord *left = asFloat(a, &room);
    const MatrixRecord *right = asFloat(b, &room);
    out->flags = fp_matrix_mul(left->f, right->f, out->f, left->flags, right->flags) | MATRIX_FLOAT;
}

void matrixMultiplyInPlace(MatrixRecord *a, const MatrixRecord *b)
{
    if (a->flags & MATRIX_IDENTITY) {
        *a = *b;
        return;
    }
    if (b->flags & MATRIX_IDENTITY) return;
    if (bothFixed(a, b)) {
        matrixxMultiplyInPlace(a, b);
        return;
    }
    MatrixRecord room;
    const MatrixRecord *right = asFloat(b, &room);
    if (!(a->flags & MATRIX_FLOAT)) matrixxToMatrixf_4(a, a);
    a->flags = fp_matrix_postmul(a->f, right->f, a->flags, right->flags) | MATRIX_FLOAT;
}
