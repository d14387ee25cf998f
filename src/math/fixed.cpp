// SPDX-License-Identifier: MIT
#include "math/fixed.h"

#include <bit>

#include "math/fixed_inline.h"
#include "math/tables.h"

namespace {

constexpr int32_t kStepsPerDegree = 46603;     // 256 / 360, rounded down
constexpr int32_t kRadiansPerStep = 1608;      // pi / 128
constexpr int32_t kDegreesPerRadian = 3754936; // 180 / pi
constexpr int32_t kTan15 = 17560;
constexpr int32_t kTan30 = 37837;
constexpr int32_t kRightAngle = 0x5A0000;  // 90.0
constexpr int32_t kThirtyDegrees = 34314;  // pi / 6; one less than the nearest value, kept so that results stay
constexpr int32_t kNinetyDegrees = 102943; // pi / 2; one less than the nearest value, likewise

// Half of y * (3 - x * y * y): one Newton step toward 1 / sqrt(x).
int32_t refineInvSqrt(int32_t x, int32_t y)
{
    const int32_t t = fixedMul(fixedMul(y, x), y);
    return fixedMul(fixedSub(3 * kFixedOne, t), y) >> 1;
}

// The arc tangent in radians for values up to tan 15 degrees, by a quotient of polynomials. A square is not negative,
// so the divisor is not 0.
int64_t smallArcTangent(int32_t a)
{
    const int32_t square = fixedMul(a, a);
    const int32_t p = fixedMul(square, 28694) + 110543;
    return (static_cast<int64_t>(fixedMul(p, a)) * kFixedOne) / (square + 110543);
}

} // namespace

int32_t fixedInvSqrt_s1516(int32_t x)
{
    // The seed table has the top five or six bits of x after an even shift, so that the root shifts by a whole number.
    const uint32_t bits = static_cast<uint32_t>(x);
    const int32_t highest = bits ? std::bit_width(bits) - 1 : 0;
    const int32_t shift = highest < 4 ? 0 : (highest & 0xFE) - 4;
    int32_t y = kInvSqrtSeeds[bits >> shift] >> (shift / 2);
    y = refineInvSqrt(x, y);
    return refineInvSqrt(x, y);
}

void fixedTrig_s1516(int32_t angle, int32_t *cosine, int32_t *sine)
{
    // Steps of a 256th of a turn in s15.16; the mask wraps any angle to one turn.
    const uint32_t steps = static_cast<uint32_t>(static_cast<int64_t>(angle) * kStepsPerDegree >> 16) & 0x00FFFFFF;
    const uint32_t i = (steps >> 16) & 63;
    const uint32_t quadrant = steps >> 22;
    const uint32_t fraction = steps & 0xFFFF;

    // In the odd quadrants the quarter table is read from its end.
    const uint32_t sineIndex = quadrant & 1 ? 64 - i : i;
    const int32_t s = quadrant & 2 ? -kFixedSines[sineIndex] : kFixedSines[sineIndex];
    const int32_t c = (quadrant + 1) & 2 ? -kFixedSines[64 - sineIndex] : kFixedSines[64 - sineIndex];

    const int32_t d = static_cast<int32_t>(fraction * kRadiansPerStep >> 16);
    const int32_t h = d * d >> 17;
    *sine = s + fixedMul(d, c) - fixedMul(s, h);
    *cosine = c - fixedMul(d, s) - fixedMul(c, h);
}

int32_t fixedAtan_s1516(int32_t x)
{
    // The magnitude of the smallest integer only fits unsigned.
    uint32_t a = x < 0 ? 0u - static_cast<uint32_t>(x) : static_cast<uint32_t>(x);
    const bool inverted = a > static_cast<uint32_t>(kFixedOne);
    if (inverted) a = static_cast<uint32_t>((INT64_C(1) << 32) / a);

    int64_t radians;
    const int32_t reduced = static_cast<int32_t>(a); // at most 1.0
    if (reduced > kTan15) {
        const int64_t numerator = static_cast<int64_t>(reduced - kTan30) * kFixedOne;
        const int64_t shifted = numerator / (kFixedOne + fixedMul(reduced, kTan30));
        radians = smallArcTangent(static_cast<int32_t>(shifted)) + kThirtyDegrees;
    } else {
        radians = smallArcTangent(reduced);
    }
    if (inverted) radians = kNinetyDegrees - radians;
    if (x < 0) radians = -radians;
    return static_cast<int32_t>(radians * kDegreesPerRadian >> 16);
}

int32_t fixedAsin_s1516(int32_t x)
{
    if (x == -kFixedOne) return -kRightAngle;
    if (x == kFixedOne) return kRightAngle;
    const int32_t reciprocalCosine = fixedInvSqrt_s1516(fixedSub(kFixedOne, fixedMul(x, x)));
    return fixedAtan_s1516(fixedMul(reciprocalCosine, x));
}

int32_t fixedAcos_s1516(int32_t x)
{
    return fixedSub(kRightAngle, fixedAsin_s1516(x));
}

int32_t normalizerx(const int32_t *v)
{
    // Squares in units of 2^-32; unsigned, so that a sum too large for 63 bits wraps.
    uint64_t sum = 0;
    for (uint32_t i = 0; i < 3; ++i)
        sum += static_cast<uint64_t>(static_cast<int64_t>(v[i]) * v[i]);
    const int64_t s = static_cast<int64_t>(sum);

    // The root wants s15.16 in 31 bits: the sum as it is, its middle or its high word, with the root of the factor
    // made up for in the result.
    if (s >= 0 && s <= INT32_MAX) {
        const int32_t root = fixedInvSqrt_s1516(static_cast<int32_t>(s));
        return static_cast<int32_t>(static_cast<uint32_t>(root) << 8);
    }
    const int32_t high = static_cast<int32_t>(s >> 32);
    if (high > 32767) return fixedInvSqrt_s1516(high) >> 8;
    return fixedInvSqrt_s1516(static_cast<int32_t>(s >> 16));
}

int32_t normalizex(int32_t *v)
{
    const int32_t factor = normalizerx(v);
    for (uint32_t i = 0; i < 3; ++i)
        v[i] = fixedMul(v[i], factor);
    return v[2];
}

float normalizef(float *v)
{
    int32_t fixed[3];
    for (uint32_t i = 0; i < 3; ++i)
        fixed[i] = fixedWordFromFloat(v[i]);
    normalizex(fixed);
    for (uint32_t i = 0; i < 3; ++i)
        v[i] = floatFromFixedWord(fixed[i]);
    return v[2];
}

uint32_t pow2dim(uint32_t n)
{
    if ((n & (n - 1)) == 0) return n;
    if (static_cast<int32_t>(n) < 0) return 2;
    return std::bit_ceil(n);
}

uint32_t log2exact(uint32_t n)
{
    return n < 2 ? 0 : static_cast<uint32_t>(std::bit_width(n)) - 1;
}
