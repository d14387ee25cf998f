// SPDX-License-Identifier: MIT
// Scalar steps that the float functions share.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

constexpr uint32_t kFloatSignBit = 0x80000000u;

inline float negated(float a)
{
    return std::bit_cast<float>(std::bit_cast<uint32_t>(a) ^ kFloatSignBit);
}

/// The root in double precision, rounded to a float: the same as the correctly rounded float root, because a double has
/// more than twice the bits.
inline float roundedRoot(float a)
{
    return static_cast<float>(std::sqrt(static_cast<double>(a)));
}

/// 1 / a, and 0 for a zero of either sign.
inline float reciprocalOrZero(float a)
{
    if (a == 0.0f) [[unlikely]]
        return 0.0f;
    return 1.0f / a;
}
