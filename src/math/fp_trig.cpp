// SPDX-License-Identifier: MIT
#include "math/fp_trig.h"

#include "math/fp_scalar.h"
#include "math/fp_scalar_inline.h"
#include "math/tables.h"

namespace {

constexpr float kStepsPerDegree = 0.7111111f;   // 256 / 360
constexpr float kRadiansPerStep = 0.024543693f; // pi / 128
constexpr float kDegreesPerRadian = 57.295776f; // one unit in the last place below the nearest float
constexpr float kTan15 = 0.2679492f;
constexpr float kTan30 = 0.57735026f;

// The sine at every step of a whole turn, unfolded from the quarter. The cosine is the sine a quarter further.
struct Turn {
    float sine[256];
};

constexpr Turn kTurn = [] {
    Turn turn = {};
    for (uint32_t i = 0; i < 64; ++i) {
        turn.sine[i] = kSines[i];
        turn.sine[64 + i] = kSines[64 - i];
        turn.sine[128 + i] = -kSines[i];
        turn.sine[192 + i] = -kSines[64 - i];
    }
    return turn;
}();

float sineOfStep(uint32_t step)
{
    return kTurn.sine[step & 255];
}

// The arc tangent in radians for 0..tan 15 degrees, by a quotient of polynomials. The two constants near 1.68676
// differ in their last bits on purpose.
float smallArcTangent(float a)
{
    const float square = a * a;
    return ((square * 0.43784973f + 1.6867629f) * a) / (square + 1.6867633f);
}

} // namespace

void fp_trigftn(float angle, float *cosine, float *sine)
{
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

    const float s = sineOfStep(static_cast<uint32_t>(step));
    const float c = sineOfStep(static_cast<uint32_t>(step) + 64);
    const float d = (x - floorX) * kRadiansPerStep;
    const float h = d * d * 0.5f;
    *sine = s + d * c - h * s;
    *cosine = c - d * s - h * c;
}

float fp_atan(float a)
{
    const bool negative = a < 0.0f;
    if (negative) a = negated(a);
    const bool inverted = a > 1.0f;
    if (inverted) a = reciprocalOrZero(a);

    float radians;
    if (a > kTan15) {
        const float shifted = (a - kTan30) / (a * kTan30 + 1.0f);
        radians = smallArcTangent(shifted) + 0.52359879f; // pi / 6
    } else {
        radians = smallArcTangent(a);
    }
    if (inverted) radians = 1.5707964f - radians; // pi / 2
    if (negative) radians = negated(radians);
    return radians * kDegreesPerRadian;
}

float fp_asin(float a)
{
    if (a == -1.0f) return -90.0f;
    if (a == 1.0f) return 90.0f;
    return fp_atan(a * fp_recpsqrt(1.0f - a * a));
}

float fp_acos(float a)
{
    return 90.0f - fp_asin(a);
}
