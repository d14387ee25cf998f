// SPDX-License-Identifier: MIT
#include "math/matrix_classify.h"

#include <algorithm>

#include "math/matrix_inline.h"
#include "math/record_assert.h"

namespace {

constexpr uint32_t kMaskScale = 0x80007BDE; // off-diagonal elements zero, element 15 one

// Per row, the zero and one bits of its four elements, and what they are for the identity.
struct RowMask {
    uint32_t bits;
    uint32_t identity;
};

constexpr RowMask kRows[4] = {
    {.bits = 0x11111111, .identity = 0x00011110},
    {.bits = 0x22222222, .identity = 0x00202202},
    {.bits = 0x44444444, .identity = 0x04004044},
    {.bits = 0x88888888, .identity = 0x80000888},
};

// Written so that NaN is not near.
bool isNearZero(float value)
{
    return value * value <= 1e-6f;
}

// The dot product of two rows of the upper 3x3, each given by its first element.
float dotOfRows(const float *a, const float *b)
{
    return a[4] * b[4] + a[0] * b[0] + a[8] * b[8];
}

} // namespace

uint32_t getMatrixZeroOneMask(const MatrixRecord *m)
{
    assertFloat(m);
    return zeroOneMask(loadColumns(m->f));
}

uint32_t isMatrixScale(const MatrixRecord *m)
{
    return (getMatrixZeroOneMask(m) & kMaskScale) == kMaskScale;
}

uint32_t isMatrixIsoscale(const MatrixRecord *m, int32_t n)
{
    if (!isMatrixScale(m)) return 0;
    for (int32_t i = 1; i < std::min(n, 4); ++i)
        if (m->f[5 * i] != m->f[0]) return 0;
    return 1;
}

uint32_t isMatrixOrthogonal(const MatrixRecord *m)
{
    assertFloat(m);
    const float *f = m->f;
    return isNearZero(dotOfRows(f, f) - 1.0f) && isNearZero(dotOfRows(f + 1, f + 1) - 1.0f) &&
           isNearZero(dotOfRows(f + 2, f + 2) - 1.0f) && isNearZero(dotOfRows(f, f + 1)) &&
           isNearZero(dotOfRows(f + 1, f + 2)) && isNearZero(dotOfRows(f, f + 2)) && isNearZero(f[3]) &&
           isNearZero(f[7]) && isNearZero(f[11]) && isNearZero(f[15] - 1.0f);
}

uint32_t signicantRows(uint32_t zeroOneMask)
{
    for (uint32_t count = 4; count > 0; --count) {
        const RowMask &row = kRows[count - 1];
        if ((zeroOneMask & row.bits) != row.identity) return count;
    }
    return 0;
}

uint32_t isIsoscalex(const MatrixRecord *)
{
    os_assert_hook(0, "isIsoscalex: a float matrix and isMatrixIsoscale");
    return 0;
}

uint32_t isMatrixOrthogonalx(const MatrixRecord *)
{
    os_assert_hook(0, "isMatrixOrthogonalx: a float matrix and isMatrixOrthogonal");
    return 0;
}
