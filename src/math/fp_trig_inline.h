// SPDX-License-Identifier: MIT
// The sine and cosine of one angle side by side.
#pragma once

#include "math/matrix_inline.h"
#include "math/tables.h"

#include <cmath>
#include <cstdint>

/// At every step of a whole turn, unfolded from the quarter: sine, cosine, and the derivatives of both.
struct Turn {
    Column step[256];
};

constexpr float sineOfStep(uint32_t step)
{
    const uint32_t inQuarter = step & 63;
    const float sine = step & 64 ? kSines[64 - inQuarter] : kSines[inQuarter];
    return step & 128 ? -sine : sine;
}

inline constexpr Turn kTurn = [] {
    Turn turn = {};
    for (uint32_t i = 0; i < 256; ++i) {
        const float sine = sineOfStep(i);
        const float cosine = sineOfStep(i + 64);
        turn.step[i] = Column{sine, cosine, cosine, -sine};
    }
    return turn;
}();

/// Sine and cosine of an angle in degrees as components 0 and 1; the others have no meaning. See fp_trigftn.
inline Column sineCosine(float angle)
{
    constexpr float kStepsPerDegree = 0.7111111f;   // 256 / 360
    constexpr float kRadiansPerStep = 0.024543693f; // pi / 128
    const float x = angle * kStepsPerDegree;

    // The floor as an integer. From 2^31 on a float is a multiple of 256 steps, so step 0 stands for it; x - x is then
    // 0, and NaN for an infinity or NaN, which reaches both results.
    int32_t step = 0;
    float floorX = x;
    if (std::abs(x) < 0x1p31f) [[likely]] {
        step = static_cast<int32_t>(x);
        step -= static_cast<float>(step) > x;
        floorX = static_cast<float>(step);
    }

    const Column at = kTurn.step[static_cast<uint32_t>(step) & 255];
    const Column slope = swizzled<2, 3, 2, 3>(at);
    const float d = (x - floorX) * kRadiansPerStep;
    const float h = d * d * 0.5f;
    return at + d * slope - h * at; // the cosine's d (-sine) rounds as its subtraction does
}
