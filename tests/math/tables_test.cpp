// SPDX-License-Identifier: MIT
// Recomputes every table entry by its rule.
#include "math/tables.h"

#include <cmath>
#include <cstdint>

#include <gtest/gtest.h>

namespace {

// floor(sqrt(n)) by bits.
uint64_t integerRoot(uint64_t n)
{
    uint64_t root = 0;
    for (uint64_t bit = UINT64_C(1) << 31; bit; bit >>= 1)
        if ((root | bit) * (root | bit) <= n) root |= bit;
    return root;
}

// The sine by its power series; good to 18 digits up to a quarter turn.
long double series(long double x)
{
    long double term = x, sum = x;
    for (int n = 1; n < 20; ++n) {
        term *= -x * x / ((2 * n) * (2 * n + 1));
        sum += term;
    }
    return sum;
}

long double sineOfStep(int k)
{
    return series(3.14159265358979323846264338327950288L * k / 128);
}

} // namespace

TEST(Tables, InverseRootSeedsAreTheFloorOfTheRootButEntry18)
{
    EXPECT_EQ(kInvSqrtSeeds[0], INT32_MAX);
    for (uint64_t i = 1; i < 64; ++i) {
        const uint64_t rule = integerRoot((UINT64_C(1) << 48) / i);
        if (i == 18) {
            EXPECT_EQ(rule, 3954427u);
            EXPECT_EQ(kInvSqrtSeeds[i], 3954424) << "a deliberate exception";
        } else {
            EXPECT_EQ(kInvSqrtSeeds[i], static_cast<int32_t>(rule)) << i;
        }
    }
}

TEST(Tables, FixedSinesAreRoundedToNearestButEntry46)
{
    for (int k = 0; k <= 64; ++k) {
        const long rule = std::lround(sineOfStep(k) * 65536);
        if (k == 46) {
            EXPECT_EQ(rule, 59244);
            EXPECT_EQ(kFixedSines[k], 59240) << "a deliberate exception";
        } else {
            EXPECT_EQ(kFixedSines[k], rule) << k;
        }
    }
}

TEST(Tables, FloatSinesAreTheNearestFloats)
{
    for (int k = 0; k <= 64; ++k)
        EXPECT_EQ(kSines[k], static_cast<float>(sineOfStep(k))) << k;
}

TEST(Tables, TellingEntriesHold)
{
    EXPECT_EQ(kInvSqrtSeeds[1], 16777216);
    EXPECT_EQ(kInvSqrtSeeds[2], 11863283);
    EXPECT_EQ(kInvSqrtSeeds[3], 9686330);
    EXPECT_EQ(kInvSqrtSeeds[4], 8388608);
    EXPECT_EQ(kInvSqrtSeeds[16], 4194304);
    EXPECT_EQ(kInvSqrtSeeds[63], 2113730);
    EXPECT_EQ(kFixedSines[1], 1608);
    EXPECT_EQ(kFixedSines[32], 46341);
    EXPECT_EQ(kFixedSines[63], 65516);
    EXPECT_EQ(kFixedSines[64], 65536);
    EXPECT_EQ(kSines[64], 1.0f);
}
