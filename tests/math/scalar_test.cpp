// SPDX-License-Identifier: MIT
#include "math/fp_scalar.h"

#include <cerrno>

#include <gtest/gtest.h>

#include "math/rounded.h"

using namespace expected;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

uint32_t wordOf(float a)
{
    return std::bit_cast<uint32_t>(a);
}

} // namespace

TEST(Scalar, SignFunctionsTouchOnlyTheSignBit)
{
    for (uint32_t word : {0u, 0x80000000u, 0x3F800000u, 0xBF800000u, 0x7F800000u, 0x7FC00000u, 0xFFC00001u, 1u}) {
        const float a = std::bit_cast<float>(word);
        EXPECT_EQ(wordOf(fp_abs(a)), word & 0x7FFFFFFF);
        EXPECT_EQ(wordOf(fp_negate(a)), word ^ 0x80000000);
    }
    EXPECT_EQ(wordOf(fp_negate(0.0f)), 0x80000000u);
}

TEST(Scalar, ArithmeticRoundsEveryStep)
{
    Random random(1);
    for (int i = 0; i < 20000; ++i) {
        const float a = anyFloat(random), b = anyFloat(random), c = anyFloat(random);
        SCOPED_TRACE(testing::Message() << a << " " << b << " " << c);
        ASSERT_EQ(Bits{fp_add(a, b)}, Bits{add(a, b)});
        ASSERT_EQ(Bits{fp_sub(a, b)}, Bits{sub(a, b)});
        ASSERT_EQ(Bits{fp_mul(a, b)}, Bits{mul(a, b)});
        ASSERT_EQ(Bits{fp_div(a, b)}, Bits{div(a, b)});
        ASSERT_EQ(Bits{fp_mul2ab(a, b)}, Bits{mul(add(a, a), b)});
        ASSERT_EQ(Bits{fp_madd(a, b, c)}, Bits{add(c, mul(a, b))});
        ASSERT_EQ(Bits{fp_msub(a, b, c)}, Bits{sub(a, mul(b, c))});
        ASSERT_EQ(Bits{fp_interpolate(a, b, c)}, Bits{add(mul(sub(1.0f, c), a), mul(b, c))});
        const float reciprocal = a == 0.0f ? 0.0f : div(1.0f, a);
        ASSERT_EQ(Bits{fp_recp(a)}, Bits{reciprocal});
        ASSERT_EQ(Bits{fp_recp_prec(a)}, Bits{reciprocal});
        ASSERT_EQ(Bits{fp_sqrt(a)}, Bits{root(a)});
        ASSERT_EQ(Bits{fp_sqrt_prec(a)}, Bits{root(a)});
        ASSERT_EQ(Bits{fp_recpsqrt(a)}, Bits{div(1.0f, root(a))});
        ASSERT_EQ(Bits{fp_recpsqrt_prec(a)}, Bits{div(1.0f, root(a))});
    }
}

TEST(Scalar, MultiplyAddIsNotFused)
{
    // (1 + e)(1 - e) = 1 - e^2 rounds to 1; a fused form keeps -e^2.
    const float e = 0x1p-23f;
    EXPECT_EQ(fp_madd(1.0f + e, 1.0f - e, -1.0f), 0.0f);
    EXPECT_EQ(fp_msub(1.0f, 1.0f + e, 1.0f - e), 0.0f);
}

TEST(Scalar, ReciprocalOfEitherZeroIsPositiveZero)
{
    EXPECT_EQ(wordOf(fp_recp(0.0f)), 0u);
    EXPECT_EQ(wordOf(fp_recp(-0.0f)), 0u);
    EXPECT_EQ(wordOf(fp_recp_prec(-0.0f)), 0u);
    EXPECT_EQ(fp_recp(0x1p-149f), kInfinity);
    EXPECT_EQ(Bits{fp_recp(-kInfinity)}, Bits{-0.0f});
}

TEST(Scalar, ReciprocalRootHasNoGuardForZero)
{
    EXPECT_EQ(fp_recpsqrt(0.0f), kInfinity);
    EXPECT_EQ(fp_recpsqrt(-0.0f), -kInfinity);
    EXPECT_EQ(fp_recpsqrt_prec(0.0f), kInfinity);
    EXPECT_EQ(fp_recpsqrt(4.0f), 0.5f);
}

TEST(Scalar, RootOfANegativeNumberPassesThroughTheLibrary)
{
    errno = 0;
    EXPECT_EQ(Bits{fp_sqrt(4.0f)}, Bits{2.0f});
    EXPECT_EQ(Bits{fp_sqrt(-0.0f)}, Bits{-0.0f});
    EXPECT_EQ(errno, 0);
    EXPECT_EQ(Bits{fp_sqrt(-1.0f)}, Bits{kNan});
    EXPECT_EQ(errno, EDOM);
    errno = 0;
}
