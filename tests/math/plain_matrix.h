// SPDX-License-Identifier: MIT
// The matrix products written plainly, one rounded step after the other, in each of the two prescribed orders. The
// library's four-lane kernels must give the same bits.
#pragma once

#include <array>

#include "math/rounded.h"

namespace plain {

using Matrix = std::array<float, 16>;

constexpr Matrix kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

inline void closeAffine(Matrix &m)
{
    m[3] = m[7] = m[11] = 0.0f;
    m[15] = 1.0f;
}

/// Column by column: column 0 times the first weight, plus the other columns in order.
inline Matrix productByColumns(const Matrix &a, const Matrix &b, bool affine)
{
    using namespace expected;
    Matrix out;
    for (int j = 0; j < 4; ++j)
        for (int r = 0; r < 4; ++r) {
            float sum = mul(a[r], b[4 * j]);
            sum = add(sum, mul(b[4 * j + 1], a[4 + r]));
            sum = add(sum, mul(b[4 * j + 2], a[8 + r]));
            if (!affine) sum = add(sum, mul(b[4 * j + 3], a[12 + r]));
            if (affine && j == 3) sum = add(sum, a[12 + r]);
            out[4 * j + r] = sum;
        }
    if (affine) closeAffine(out);
    return out;
}

/// Row by row: the second product first, then the first, the third and the fourth.
inline Matrix productByRows(const Matrix &a, const Matrix &b, bool affine)
{
    using namespace expected;
    Matrix out;
    for (int r = 0; r < 4; ++r)
        for (int j = 0; j < 4; ++j) {
            float sum = add(mul(a[4 + r], b[4 * j + 1]), mul(a[r], b[4 * j]));
            sum = add(sum, mul(a[8 + r], b[4 * j + 2]));
            if (!affine || j == 3) sum = add(sum, mul(a[12 + r], b[4 * j + 3]));
            out[4 * j + r] = sum;
        }
    if (affine) closeAffine(out);
    return out;
}

inline Matrix anyMatrix(Random &random)
{
    Matrix m;
    for (float &v : m)
        v = anyFloat(random);
    return m;
}

inline Matrix ordinaryMatrix(Random &random)
{
    Matrix m;
    for (float &v : m)
        v = plainFloat(random);
    return m;
}

inline Matrix affineMatrix(Random &random)
{
    Matrix m = ordinaryMatrix(random);
    closeAffine(m);
    return m;
}

inline void expectSame(const float *got, const float *want, int count, const char *what)
{
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(Bits{got[i]}, Bits{want[i]}) << what << " " << i;
}

inline void expectSame(const Matrix &got, const Matrix &want, const char *what)
{
    expectSame(got.data(), want.data(), 16, what);
}

} // namespace plain
