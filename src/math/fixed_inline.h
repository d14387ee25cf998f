// SPDX-License-Identifier: MIT
// Steps of the s15.16 arithmetic: sums and products wrap to 32 bits, nothing rounds to nearest, nothing saturates.
#pragma once

#include <cstdint>

constexpr int32_t kFixedOne = 0x10000;

/// a + b, a - b, -a, with wrap-around.
inline int32_t fixedAdd(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

inline int32_t fixedSub(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

inline int32_t fixedNegate(int32_t a)
{
    return fixedSub(0, a);
}

/// The exact product, rounded toward minus infinity by the shift, low 32 bits.
inline int32_t fixedMul(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<int64_t>(a) * b >> 16);
}

/// The nearest float; 0 gives +0. Equals lowering the exponent of the converted integer by 16.
inline float floatFromFixedWord(int32_t value)
{
    return static_cast<float>(value) * 0x1p-16f;
}

/// Rounds toward zero and saturates; NaN gives 0.
inline int32_t fixedWordFromFloat(float value)
{
    const float scaled = value * 0x1p16f;
    if (scaled >= 0x1p31f) return INT32_MAX;
    if (scaled < -0x1p31f) return INT32_MIN;
    return scaled == scaled ? static_cast<int32_t>(scaled) : 0;
}
