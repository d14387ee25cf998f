// SPDX-License-Identifier: MIT
#include "math/fp_trig.h"

#include "math/fp_scalar.h"
#include "math/fp_scalar_inline.h"
#include "math/fp_trig_inline.h"

namespace {

constexpr float kDegreesPerRadian = 57.295776f; // one unit in the last place below the nearest float
constexpr float kTan15 = 0.2679492f;
constexpr float kTan30 = 0.57735026f;

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
    const Column both = sineCosine(angle);
    *sine = both[0];
    *cosine = both[1];
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
