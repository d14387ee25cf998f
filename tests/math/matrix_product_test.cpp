// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "math/fp_matrix.h"
#include "math/fp_trig.h"
#include "math/matrix_commands.h"
#include "math/plain_matrix.h"

using namespace expected;
using namespace plain;

namespace {

constexpr uint32_t kClasses[] = {MATRIX_GENERAL, MATRIX_ANISOSCALE, MATRIX_ISOSCALE, MATRIX_TRANSROT, MATRIX_IDENTITY};

constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Rotation, step by step.
Matrix expectedRotation(float angle, float x, float y, float z)
{
    const float length = root(add(add(mul(y, y), mul(x, x)), mul(z, z)));
    const float q = length == 0.0f ? 0.0f : div(1.0f, length);
    x = mul(x, q);
    y = mul(y, q);
    z = mul(z, q);
    float c, s;
    fp_trigftn(angle, &c, &s);
    const float t = sub(1.0f, c);
    auto diagonal = [&](float v) { return add(mul(v, v), mul(c, sub(1.0f, mul(v, v)))); };
    auto cross = [&](float v, float w) { return mul(mul(v, w), t); };
    return {diagonal(x),
            add(cross(x, y), mul(z, s)),
            sub(cross(x, z), mul(y, s)),
            0,
            sub(cross(x, y), mul(z, s)),
            diagonal(y),
            add(cross(y, z), mul(x, s)),
            0,
            add(cross(x, z), mul(y, s)),
            sub(cross(y, z), mul(x, s)),
            diagonal(z),
            0,
            0,
            0,
            0,
            1};
}

} // namespace

TEST(MatrixProduct, EveryFormEqualsThePlainOrderForAllClasses)
{
    Random random(11);
    for (int round = 0; round < 2000; ++round) {
        const bool ordinary = round % 2;
        const Matrix a = ordinary ? affineMatrix(random) : anyMatrix(random);
        const Matrix b = ordinary ? affineMatrix(random) : anyMatrix(random);
        for (uint32_t classA : kClasses)
            for (uint32_t classB : kClasses) {
                const bool affine = classA && classB;
                const uint32_t want = affine ? std::min(classA, classB) : 0;
                Matrix out;
                ASSERT_EQ(fp_matrix_mul(a.data(), b.data(), out.data(), classA | 0x30, classB | 0x10), want);
                expectSame(out, productByColumns(a, b, affine), "mul");
                out = a;
                ASSERT_EQ(fp_matrix_premul(out.data(), b.data(), classA, classB | 0x20), want);
                expectSame(out, productByColumns(b, a, affine), "premul");
                out = a;
                ASSERT_EQ(fp_matrix_postmul(out.data(), b.data(), classA | 0x10, classB), want);
                expectSame(out, productByRows(a, b, affine), "postmul");
            }
    }
}

TEST(MatrixProduct, BothOrdersAgreeOnTrueAffineMatrices)
{
    // Only the first addition is turned round, and addition commutes.
    Random random(12);
    for (int round = 0; round < 2000; ++round) {
        const Matrix a = affineMatrix(random), b = affineMatrix(random);
        expectSame(productByColumns(a, b, true), productByRows(a, b, true), "orders");
    }
}

TEST(MatrixProduct, AMatrixCanBeMultipliedByItself)
{
    Random random(13);
    for (uint32_t matrixClass : {MATRIX_GENERAL, MATRIX_ANISOSCALE}) {
        const Matrix m = affineMatrix(random);
        Matrix want, out = m;
        fp_matrix_mul(m.data(), m.data(), want.data(), matrixClass, matrixClass);
        fp_matrix_premul(out.data(), out.data(), matrixClass, matrixClass);
        expectSame(out, want, "premul");
        out = m;
        fp_matrix_postmul(out.data(), out.data(), matrixClass, matrixClass);
        expectSame(out, want, "postmul");
    }
}

TEST(MatrixProduct, ClassOfAProductIsTheSmallerOfTwoAffineOnes)
{
    Matrix out;
    const float *i = kIdentity.data();
    EXPECT_EQ(fp_matrix_mul(i, i, out.data(), 4, 2), 2u);
    EXPECT_EQ(fp_matrix_mul(i, i, out.data(), 8, 0), 0u);
    EXPECT_EQ(fp_matrix_mul(i, i, out.data(), 8, 8), 8u);
    EXPECT_EQ(fp_matrix_mul(i, i, out.data(), 0x38, 0x34), 4u);
}

TEST(MatrixScale, MultipliesTheFirstThreeColumns)
{
    Random random(14);
    for (int round = 0; round < 1000; ++round) {
        const Matrix m = anyMatrix(random);
        const float s[3] = {anyFloat(random), anyFloat(random), anyFloat(random)};
        for (uint32_t matrixClass : kClasses) {
            Matrix want = m, out = m;
            for (int i = 0; i < 12; ++i)
                if (i % 4 != 3 || matrixClass == 0) want[i] = mul(m[i], s[i / 4]);
            fp_matrix_scale(out.data(), s[0], s[1], s[2], matrixClass | 0x30);
            expectSame(out, want, "scale");
        }
    }
}

TEST(MatrixScale, EqualFactorsKeepAtMostClassTwo)
{
    struct {
        uint32_t before;
        float x, y, z;
        uint32_t after;
    } const kCases[] = {{8, 2, 2, 2, 2},     {8, 2, 3, 2, 1},       {8, 2, 2, 3, 1},   {8, 1, 1, 1, 2}, {4, 2, 2, 2, 2},
                        {4, 2, 2, 1, 1},     {2, 2, 2, 2, 2},       {2, 3, 2, 2, 1},   {1, 2, 2, 2, 1}, {0, 2, 2, 2, 0},
                        {8, 0, -0.0f, 0, 2}, {8, NAN, NAN, NAN, 1}, {0x38, 2, 2, 2, 2}};
    for (const auto &c : kCases) {
        Matrix m = kIdentity;
        EXPECT_EQ(fp_matrix_scale(m.data(), c.x, c.y, c.z, c.before), c.after) << c.before << " by " << c.x;
    }
}

TEST(MatrixTranslate, AddsTheMovedOriginInOrder)
{
    Random random(15);
    for (int round = 0; round < 1000; ++round) {
        const Matrix m = anyMatrix(random);
        const float x = anyFloat(random), y = anyFloat(random), z = anyFloat(random);
        for (uint32_t matrixClass = 0; matrixClass <= kMatrixClassBits; ++matrixClass) { // also what is no class
            Matrix want = m, out = m;
            for (int i = 0; i < (matrixClass ? 3 : 4); ++i)
                want[12 + i] = add(m[12 + i], add(add(mul(y, m[4 + i]), mul(x, m[i])), mul(z, m[8 + i])));
            const uint32_t newClass = fp_matrix_translate(out.data(), x, y, z, matrixClass | 0x30);
            expectSame(out, want, "translate");
            ASSERT_EQ(newClass, matrixClass == 8 ? 4 : matrixClass);
        }
    }
}

TEST(MatrixTranslate, AnInfiniteDistanceLeavesTheLastRowOfAnAffineMatrix)
{
    Matrix m = kIdentity;
    EXPECT_EQ(fp_matrix_translate(m.data(), kInfinity, 0, 0, MATRIX_IDENTITY), 4u);
    EXPECT_EQ(m[15], 1.0f);
    EXPECT_EQ(m[12], kInfinity);
}

TEST(MatrixRotate, FollowsTheRuleToTheBit)
{
    Random random(16);
    std::uniform_real_distribution<float> angles(-720.0f, 720.0f);
    for (int round = 0; round < 4000; ++round) {
        const float angle = angles(random), x = anyFloat(random), y = anyFloat(random), z = anyFloat(random);
        Matrix out;
        fp_matrix_build_rotate(out.data(), angle, x, y, z);
        expectSame(out, expectedRotation(angle, x, y, z), "rotate");
    }
}

TEST(MatrixRotate, ARotatedMatrixIsTheProductWithThatRotation)
{
    Random random(17);
    std::uniform_real_distribution<float> angles(-720.0f, 720.0f);
    for (int round = 0; round < 4000; ++round) {
        const Matrix m = round % 2 ? affineMatrix(random) : anyMatrix(random);
        const float angle = angles(random), x = anyFloat(random), y = anyFloat(random), z = anyFloat(random);
        const Matrix rotation = expectedRotation(angle, x, y, z);
        for (uint32_t matrixClass : kClasses) {
            Matrix out = m;
            ASSERT_EQ(rotateMatrix(out.data(), Column{x, y, z, angle}, matrixClass | 0x30), std::min(matrixClass, 4u));
            expectSame(out, productByRows(m, rotation, matrixClass != 0), "rotated");
        }
    }
}

TEST(MatrixRotate, ZeroAxisScalesByTheCosine)
{
    Matrix out;
    fp_matrix_build_rotate(out.data(), 60, 0, 0, 0);
    float c, s;
    fp_trigftn(60, &c, &s);
    EXPECT_NEAR(c, 0.5, 3.5e-6);
    const Matrix want = {c, 0, 0, 0, 0, c, 0, 0, 0, 0, c, 0, 0, 0, 0, 1};
    EXPECT_EQ(out, want);
}

TEST(MatrixRotate, TurnsTheXAxisTowardsY)
{
    Matrix out;
    fp_matrix_build_rotate(out.data(), 90, 0, 0, 5);
    const Matrix want = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(out[i], want[i], 4e-6) << i;
}

TEST(Matrix3, IdentityHasNineElements)
{
    float out[10];
    std::fill(out, out + 10, 7.0f);
    fp_matrix3_load_identity(out);
    const float want[10] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 7};
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(out[i], want[i]) << i;
}
