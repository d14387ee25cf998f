// SPDX-License-Identifier: MIT
// Kernels of the 4x4 matrix functions. A column is one vector register; every lane does exactly the rounded steps of
// the scalar text, so the results do not depend on the machine.
#pragma once

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

using Column = float __attribute__((vector_size(16)));
using ColumnBits = uint32_t __attribute__((vector_size(16)));

struct MatrixColumns {
    Column c[4];
};

inline Column loadColumn(const float *v)
{
    Column column;
    std::memcpy(&column, v, sizeof(column));
    return column;
}

inline void storeColumn(float *out, Column column)
{
    std::memcpy(out, &column, sizeof(column));
}

/// Stores the first three components and leaves out[3] alone.
inline void storeThree(float *out, Column column)
{
    std::memcpy(out, &column, 2 * sizeof(float));
    out[2] = column[2];
}

/// The first three components of one column and the fourth of another, bit by bit.
inline Column firstThree(Column three, Column fourth)
{
    constexpr ColumnBits kFirstThree = {~0u, ~0u, ~0u, 0};
    return (Column)(((ColumnBits)three & kFirstThree) | ((ColumnBits)fourth & ~kFirstThree));
}

inline MatrixColumns loadColumns(const float *m)
{
    return {{loadColumn(m), loadColumn(m + 4), loadColumn(m + 8), loadColumn(m + 12)}};
}

inline void storeColumns(float *out, const MatrixColumns &m)
{
    for (uint32_t j = 0; j < 4; ++j)
        storeColumn(out + 4 * j, m.c[j]);
}

/// The columns of the transpose. Lanes are moved only, so any words will do.
inline MatrixColumns transposed(const MatrixColumns &m)
{
    const Column low01 = __builtin_shufflevector(m.c[0], m.c[1], 0, 4, 1, 5);
    const Column low23 = __builtin_shufflevector(m.c[2], m.c[3], 0, 4, 1, 5);
    const Column high01 = __builtin_shufflevector(m.c[0], m.c[1], 2, 6, 3, 7);
    const Column high23 = __builtin_shufflevector(m.c[2], m.c[3], 2, 6, 3, 7);
    return {{__builtin_shufflevector(low01, low23, 0, 1, 4, 5), __builtin_shufflevector(low01, low23, 2, 3, 6, 7),
             __builtin_shufflevector(high01, high23, 0, 1, 4, 5), __builtin_shufflevector(high01, high23, 2, 3, 6, 7)}};
}

/// The components in another order. Moved as bits: of these the compiler makes one instruction without a copy before
/// it.
template <int i0, int i1, int i2, int i3>
inline Column swizzled(Column v)
{
    return (Column)__builtin_shufflevector((ColumnBits)v, (ColumnBits)v, i0, i1, i2, i3);
}

/// One component in all four lanes.
template <int component>
inline Column broadcast(Column v)
{
    return swizzled<component, component, component, component>(v);
}

/// Columns 0 to 2 weighted by v, added in order. Row by row these are also the sums of _fp_matrix_rowdot3: it adds the
/// same first two products the other way round, and addition commutes.
inline Column combineThree(const MatrixColumns &m, Column v)
{
    return m.c[0] * broadcast<0>(v) + m.c[1] * broadcast<1>(v) + m.c[2] * broadcast<2>(v);
}

/// All four columns weighted by v, added in order; row by row the sums of _fp_matrix_rowdot4.
inline Column combineFour(const MatrixColumns &m, Column v)
{
    return combineThree(m, v) + m.c[3] * broadcast<3>(v);
}

inline MatrixColumns generalProduct(const MatrixColumns &left, const MatrixColumns &right)
{
    return {{combineFour(left, right.c[0]), combineFour(left, right.c[1]), combineFour(left, right.c[2]),
             combineFour(left, right.c[3])}};
}

/// The first three rows of three columns and of a translation, above the row (0, 0, 0, 1).
inline MatrixColumns affine(const MatrixColumns &m, Column translation)
{
    constexpr Column kZero = {0.0f, 0.0f, 0.0f, 0.0f};
    return {{firstThree(m.c[0], kZero), firstThree(m.c[1], kZero), firstThree(m.c[2], kZero),
             firstThree(translation, Column{0.0f, 0.0f, 0.0f, 1.0f})}};
}

/// The product of two matrices with row 3 = (0, 0, 0, 1), whatever that row holds. The two forms of product differ in
/// how they reach the translation.
inline MatrixColumns affineProduct(const MatrixColumns &left, const MatrixColumns &right, Column translation)
{
    MatrixColumns out = {};
    for (uint32_t j = 0; j < 3; ++j)
        out.c[j] = combineThree(left, right.c[j]);
    return affine(out, translation);
}

/// Row of a matrix times a 3-vector; p points to the row's first element.
inline float rowDot3(const float *p, const float *v)
{
    return p[4] * v[1] + p[0] * v[0] + p[8] * v[2];
}

/// Bit i is set when m[i] equals 0 of either sign, bit 16 + i when it equals 1. The reference of zeroOneMask.
inline uint32_t zeroOneMaskPlain(const float *m)
{
    uint32_t mask = 0;
    for (uint32_t i = 0; i < 16; ++i) {
        mask |= static_cast<uint32_t>(m[i] == 0.0f) << i;
        mask |= static_cast<uint32_t>(m[i] == 1.0f) << (16 + i);
    }
    return mask;
}

#if defined(__SSE2__)

/// Bit i is set when element i equals value.
inline uint32_t equalMask(const MatrixColumns &m, __m128 value)
{
    const __m128i c0 = _mm_castps_si128(_mm_cmpeq_ps(m.c[0], value));
    const __m128i c1 = _mm_castps_si128(_mm_cmpeq_ps(m.c[1], value));
    const __m128i c2 = _mm_castps_si128(_mm_cmpeq_ps(m.c[2], value));
    const __m128i c3 = _mm_castps_si128(_mm_cmpeq_ps(m.c[3], value));
    const __m128i bytes = _mm_packs_epi16(_mm_packs_epi32(c0, c1), _mm_packs_epi32(c2, c3));
    return static_cast<uint32_t>(_mm_movemask_epi8(bytes));
}

inline uint32_t zeroOneMask(const MatrixColumns &m)
{
    return equalMask(m, _mm_setzero_ps()) | equalMask(m, _mm_set1_ps(1.0f)) << 16;
}

#else

inline uint32_t zeroOneMask(const MatrixColumns &m)
{
    float elements[16];
    storeColumns(elements, m);
    return zeroOneMaskPlain(elements);
}

#endif
