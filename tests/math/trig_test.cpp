// SPDX-License-Identifier: MIT
#include "math/fp_trig.h"

#include <gtest/gtest.h>

#include "math/rounded.h"
#include "math/tables.h"

using namespace expected;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

float constant(uint32_t word)
{
    return std::bit_cast<float>(word);
}

struct Pair {
    float cosine, sine;
};

Pair trig(float angle)
{
    Pair out;
    fp_trigftn(angle, &out.cosine, &out.sine);
    return out;
}

// The rule step by step, for angles whose step number fits 64 bits.
Pair expectedTrig(float angle)
{
    const float x = mul(angle, constant(0x3F360B61));
    const int64_t k = static_cast<int64_t>(std::floor(static_cast<double>(x)));
    const int64_t i = k & 63;
    const int64_t q = (k >> 6) & 3;
    const float s[4] = {kSines[i], kSines[64 - i], -kSines[i], -kSines[64 - i]};
    const float c[4] = {kSines[64 - i], -kSines[i], -kSines[64 - i], kSines[i]};
    const float d = mul(sub(x, static_cast<float>(k)), constant(0x3CC90FDB));
    const float h = mul(mul(d, d), 0.5f);
    return {.cosine = sub(sub(c[q], mul(d, s[q])), mul(h, c[q])), .sine = sub(add(s[q], mul(d, c[q])), mul(h, s[q]))};
}

float quotient(float y)
{
    const float y2 = mul(y, y);
    return div(mul(add(mul(y2, constant(0x3EE02DD7)), constant(0x3FD7E7D9)), y), add(y2, constant(0x3FD7E7DC)));
}

float expectedAtan(float a)
{
    const bool negative = a < 0;
    if (negative) a = neg(a);
    const bool inverted = a > 1.0f;
    if (inverted) a = div(1.0f, a);
    float r;
    if (a > constant(0x3E8930A3))
        r = add(quotient(div(sub(a, constant(0x3F13CD3A)), add(mul(a, constant(0x3F13CD3A)), 1.0f))),
                constant(0x3F060A92));
    else
        r = quotient(a);
    if (inverted) r = sub(constant(0x3FC90FDB), r);
    if (negative) r = neg(r);
    return mul(r, constant(0x42652EE0));
}

float expectedAsin(float a)
{
    if (a == -1.0f) return -90.0f;
    if (a == 1.0f) return 90.0f;
    return expectedAtan(mul(a, div(1.0f, root(sub(1.0f, mul(a, a))))));
}

} // namespace

TEST(Trig, SineAndCosineFollowTheTableRuleToTheBit)
{
    Random random(2);
    std::uniform_real_distribution<float> turns(-1080.0f, 1080.0f), wide(-2e9f, 2e9f);
    for (int i = 0; i < 20000; ++i) {
        const float angle = i % 4 == 0 ? wide(random) : turns(random);
        const Pair got = trig(angle), want = expectedTrig(angle);
        ASSERT_EQ(Bits{got.cosine}, Bits{want.cosine}) << angle;
        ASSERT_EQ(Bits{got.sine}, Bits{want.sine}) << angle;
    }
    for (float angle : {0.0f, -0.0f, 30.0f, 45.0f, 90.0f, -90.0f, 180.0f, 270.0f, 360.0f, -1e-30f, 0x1p-149f}) {
        const Pair got = trig(angle), want = expectedTrig(angle);
        EXPECT_EQ(Bits{got.cosine}, Bits{want.cosine}) << angle;
        EXPECT_EQ(Bits{got.sine}, Bits{want.sine}) << angle;
    }
}

TEST(Trig, ErrorWithinATurnStaysBelowTheDocumentedBound)
{
    for (int i = -36000; i <= 36000; ++i) {
        const float angle = static_cast<float>(i) / 100;
        const Pair got = trig(angle);
        const double radians = static_cast<double>(angle) * M_PI / 180;
        ASSERT_NEAR(got.cosine, std::cos(radians), 3.5e-6) << angle;
        ASSERT_NEAR(got.sine, std::sin(radians), 3.5e-6) << angle;
    }
}

TEST(Trig, AnglesBeyondTheIntegersAreWholeTurns)
{
    // 2^31 steps are 3019898880 degrees. Below, the step number still fits an integer.
    for (float angle : {3.02e9f, -3.02e9f, 1e20f, -1e20f, 0x1.fffffep127f}) {
        const Pair got = trig(angle);
        EXPECT_EQ(got.cosine, 1.0f) << angle;
        EXPECT_EQ(got.sine, 0.0f) << angle;
    }
    const Pair below = trig(3.019e9f), want = expectedTrig(3.019e9f);
    EXPECT_EQ(below.cosine, want.cosine);
    EXPECT_EQ(below.sine, want.sine);
}

TEST(Trig, InfiniteAnglesAndNanGiveNan)
{
    for (float angle : {kInfinity, -kInfinity, kNan}) {
        EXPECT_TRUE(std::isnan(trig(angle).cosine)) << angle;
        EXPECT_TRUE(std::isnan(trig(angle).sine)) << angle;
    }
}

TEST(Trig, ArcFunctionsFollowTheirRulesToTheBit)
{
    Random random(3);
    std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
    for (int i = 0; i < 20000; ++i) {
        const float a = anyFloat(random), u = unit(random);
        ASSERT_EQ(Bits{fp_atan(a)}, Bits{expectedAtan(a)}) << a;
        ASSERT_EQ(Bits{fp_atan(u)}, Bits{expectedAtan(u)}) << u;
        ASSERT_EQ(Bits{fp_asin(a)}, Bits{expectedAsin(a)}) << a;
        ASSERT_EQ(Bits{fp_asin(u)}, Bits{expectedAsin(u)}) << u;
        ASSERT_EQ(Bits{fp_acos(u)}, Bits{sub(90.0f, expectedAsin(u))}) << u;
    }
}

TEST(Trig, ArcFunctionsAgreeWithTheMathematicsLibrary)
{
    for (int i = -4000; i <= 4000; ++i) {
        const float a = static_cast<float>(i) / 1000;
        ASSERT_NEAR(fp_atan(a), std::atan(a) * 180 / M_PI, 2e-5) << a;
    }
    // Near the ends the slope of the arc sine multiplies the rounding of 1 - a * a.
    for (int i = -999; i <= 999; ++i) {
        const float a = static_cast<float>(i) / 1000;
        ASSERT_NEAR(fp_asin(a), std::asin(a) * 180 / M_PI, 1e-4) << a;
        ASSERT_NEAR(fp_acos(a), std::acos(a) * 180 / M_PI, 1e-4) << a;
    }
}

TEST(Trig, ArcFunctionsAtTheEndsAreExact)
{
    EXPECT_EQ(fp_asin(1.0f), 90.0f);
    EXPECT_EQ(fp_asin(-1.0f), -90.0f);
    EXPECT_EQ(fp_acos(1.0f), 0.0f);
    EXPECT_EQ(fp_acos(-1.0f), 180.0f);
    EXPECT_EQ(Bits{fp_atan(0.0f)}, Bits{0.0f});
    const float tan15 = constant(0x3E8930A3);
    for (float a : {std::nextafter(tan15, 0.0f), tan15, std::nextafter(tan15, 1.0f), std::nextafter(1.0f, 0.0f), 1.0f,
                    std::nextafter(1.0f, 2.0f)})
        EXPECT_EQ(Bits{fp_atan(a)}, Bits{expectedAtan(a)}) << a;
    EXPECT_NEAR(fp_atan(kInfinity), 90.0f, 1e-5);
    EXPECT_NEAR(fp_atan(-kInfinity), -90.0f, 1e-5);
    EXPECT_TRUE(std::isnan(fp_asin(1.5f)));
    EXPECT_TRUE(std::isnan(fp_acos(-1.5f)));
    EXPECT_TRUE(std::isnan(fp_atan(kNan)));
}
