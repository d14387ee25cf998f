// SPDX-License-Identifier: MIT
#include "math/fixed_matrix.h"

#include <array>
#include <cstring>

#include <gtest/gtest.h>

#include "math/fixed.h"
#include "math/rounded.h"
#include "support/fake_platform.h"

using namespace expected;

namespace {

using Words = std::array<int32_t, 16>;

constexpr uint32_t kClasses[] = {MATRIX_GENERAL, MATRIX_ANISOSCALE, MATRIX_ISOSCALE, MATRIX_TRANSROT, MATRIX_IDENTITY};

struct FixedMatrix : testing::Test {
    FixedMatrix()
    {
        resetFakePlatform();
    }
};

Words anyWords(Random &random)
{
    Words m;
    for (int32_t &v : m)
        v = anyWord(random);
    return m;
}

MatrixRecord recordOf(const Words &m, uint32_t flags)
{
    MatrixRecord out;
    std::copy(m.begin(), m.end(), out.x);
    out.flags = flags;
    return out;
}

Words wordsOf(const MatrixRecord &m)
{
    Words out;
    std::copy(m.x, m.x + 16, out.begin());
    return out;
}

// Sum over k of row r times v, terms cut one by one.
int32_t rowSum(const Words &m, int r, const int32_t *v, int count, int32_t offset = 0)
{
    int64_t sum = offset;
    for (int k = 0; k < count; ++k)
        sum += fixedMul(m[4 * k + r], v[k]);
    return low32(sum);
}

Words product(const Words &a, const Words &b, bool affine)
{
    Words out = {};
    out[15] = 0x10000;
    for (int c = 0; c < 4; ++c)
        for (int r = 0; r < (affine ? 3 : 4); ++r)
            out[4 * c + r] = affine ? rowSum(a, r, &b[4 * c], 3, c == 3 ? a[12 + r] : 0) : rowSum(a, r, &b[4 * c], 4);
    return out;
}

Words expectedRotation(int32_t angle, int32_t x, int32_t y, int32_t z)
{
    int32_t axis[3] = {x, y, z};
    normalizex(axis);
    x = axis[0], y = axis[1], z = axis[2];
    int32_t c, s;
    fixedTrig_s1516(angle, &c, &s);
    const int64_t one = 0x10000;
    const int32_t t = low32(one - c);
    auto diagonal = [&](int32_t v) {
        const int64_t square = fixedMul(v, v);
        return low32(square + fixedMul(c, low32(one - square)));
    };
    auto off = [&](int32_t v, int32_t w, int32_t u, int sign) {
        return low32(static_cast<int64_t>(fixedMul(fixedMul(v, w), t)) + sign * static_cast<int64_t>(fixedMul(u, s)));
    };
    return {diagonal(x),
            off(x, y, z, 1),
            off(x, z, y, -1),
            0,
            off(x, y, z, -1),
            diagonal(y),
            off(y, z, x, 1),
            0,
            off(x, z, y, 1),
            off(y, z, x, -1),
            diagonal(z),
            0,
            0,
            0,
            0,
            0x10000};
}

} // namespace

TEST_F(FixedMatrix, ProductsCutEveryTerm)
{
    Random random(35);
    for (int round = 0; round < 1000; ++round) {
        const Words a = anyWords(random), b = anyWords(random);
        for (uint32_t classA : kClasses)
            for (uint32_t classB : kClasses) {
                const bool affine = classA && classB;
                const uint32_t want = affine ? std::min(classA, classB) : 0;
                const MatrixRecord left = recordOf(a, classA | MATRIX_UNROTATED);
                const MatrixRecord right = recordOf(b, classB | MATRIX_UNROTATED);
                MatrixRecord out;
                ASSERT_EQ(matrixxMultiply(&left, &right, &out), want);
                ASSERT_EQ(out.flags, want);
                ASSERT_EQ(wordsOf(out), product(a, b, affine));
                out = left;
                ASSERT_EQ(matrixxMultiplyInPlace(&out, &right), want);
                ASSERT_EQ(out.flags, want);
                ASSERT_EQ(wordsOf(out), product(a, b, affine));
            }
    }
}

TEST_F(FixedMatrix, ARecordCanBeMultipliedByItself)
{
    Random random(36);
    const Words m = anyWords(random);
    MatrixRecord record = recordOf(m, MATRIX_GENERAL);
    matrixxMultiplyInPlace(&record, &record);
    EXPECT_EQ(wordsOf(record), product(m, m, false));
}

TEST_F(FixedMatrix, TranslationMovesThreeRowsOrFour)
{
    Random random(37);
    for (int round = 0; round < 1000; ++round) {
        const Words m = anyWords(random);
        const int32_t v[3] = {anyWord(random), anyWord(random), anyWord(random)};
        for (uint32_t matrixClass : kClasses) {
            Words want = m;
            for (int r = 0; r < (matrixClass ? 3 : 4); ++r)
                want[12 + r] = rowSum(m, r, v, 3, m[12 + r]);
            MatrixRecord out = recordOf(m, matrixClass | MATRIX_UNROTATED);
            matrixxTranslate(&out, v[0], v[1], v[2]);
            ASSERT_EQ(wordsOf(out), want);
            ASSERT_EQ(out.flags, matrixClass == 8 ? 4 : matrixClass);
        }
    }
}

TEST_F(FixedMatrix, ScaleMultipliesTheFirstThreeColumns)
{
    Random random(38);
    for (int round = 0; round < 1000; ++round) {
        const Words m = anyWords(random);
        const int32_t s[3] = {anyWord(random), anyWord(random), anyWord(random)};
        for (uint32_t matrixClass : kClasses) {
            Words want = m;
            for (int i = 0; i < 12; ++i)
                if (i % 4 != 3 || matrixClass == 0) want[i] = fixedMul(m[i], s[i / 4]);
            MatrixRecord out = recordOf(m, matrixClass);
            matrixxScale(&out, s[0], s[1], s[2]);
            ASSERT_EQ(wordsOf(out), want);
        }
    }
}

TEST_F(FixedMatrix, ScaleKeepsTheUnrotatedBit)
{
    struct {
        uint32_t before;
        bool equal;
        uint32_t after;
    } const kCases[] = {{0x28, true, 0x22}, {0x28, false, 0x21}, {0x22, true, 0x22}, {0x22, false, 0x21},
                        {0x21, true, 0x22}, {0x21, false, 0x21}, {4, true, 2},       {4, false, 1},
                        {2, true, 2},       {1, true, 1},        {1, false, 1},      {0, true, 0},
                        {0x20, true, 0x20}, {8, true, 2}};
    for (const auto &c : kCases) {
        MatrixRecord m;
        matrixxSetIdentity(&m);
        m.flags = c.before;
        matrixxScale(&m, 0x20000, 0x20000, c.equal ? 0x20000 : 0x30000);
        EXPECT_EQ(m.flags, c.after) << std::hex << c.before << c.equal;
    }
}

TEST_F(FixedMatrix, RotationIsBuiltFromFixedSteps)
{
    Random random(39);
    for (int round = 0; round < 2000; ++round) {
        const Words m = anyWords(random);
        const int32_t angle = anyWord(random), x = anyWord(random), y = anyWord(random), z = anyWord(random);
        for (uint32_t matrixClass : kClasses) {
            MatrixRecord out = recordOf(m, matrixClass | MATRIX_UNROTATED);
            matrixxRotate(&out, angle, x, y, z);
            ASSERT_EQ(wordsOf(out), product(m, expectedRotation(angle, x, y, z), matrixClass != 0));
            ASSERT_EQ(out.flags, std::min<uint32_t>(matrixClass, 4));
        }
    }
}

TEST_F(FixedMatrix, RotationTurnsTheXAxisTowardsY)
{
    MatrixRecord m;
    matrixxSetIdentity(&m);
    matrixxRotate(&m, 0x5A0000, 0, 0, 0x30000);
    EXPECT_NEAR(m.x[0], 0, 4);
    EXPECT_NEAR(m.x[1], 0x10000, 4);
    EXPECT_NEAR(m.x[4], -0x10000, 4);
    EXPECT_NEAR(m.x[10], 0x10000, 4);
    EXPECT_EQ(m.flags, 4u);
}

TEST_F(FixedMatrix, ZeroAxisScalesByTheCosine)
{
    MatrixRecord m;
    matrixxSetIdentity(&m);
    matrixxRotate(&m, 0x3C0000, 0, 0, 0);
    int32_t c, s;
    fixedTrig_s1516(0x3C0000, &c, &s);
    const Words want = {c, 0, 0, 0, 0, c, 0, 0, 0, 0, c, 0, 0, 0, 0, 0x10000};
    EXPECT_EQ(wordsOf(m), want);
}

TEST_F(FixedMatrix, VectorsOfEachShapeAreTransformed)
{
    Random random(40);
    for (int round = 0; round < 2000; ++round) {
        const Words m = anyWords(random);
        const MatrixRecord record = recordOf(m, 0);
        std::array<int32_t, 4> v[2], full[2], point[2], linear[2];
        for (int k = 0; k < 2; ++k)
            for (int i = 0; i < 4; ++i)
                v[k][i] = anyWord(random);
        for (int k = 0; k < 2; ++k)
            for (int r = 0; r < 4; ++r) {
                full[k][r] = rowSum(m, r, v[k].data(), 4);
                point[k][r] = r < 3 ? rowSum(m, r, v[k].data(), 3, m[12 + r]) : v[k][3]; // the fourth is not written
                linear[k][r] = r < 3 ? rowSum(m, r, v[k].data(), 3) : v[k][3];
            }
        auto out = v[0]; // in place
        matrixxMultVector_4_4(&record, out.data(), out.data());
        ASSERT_EQ(out, full[0]);
        out = v[0];
        matrixxMultVector_4_3(&record, out.data(), out.data());
        ASSERT_EQ(out, point[0]);
        out = v[0];
        matrixxMultVector_3_3(&record, out.data(), out.data());
        ASSERT_EQ(out, linear[0]);
        auto first = v[0], second = v[1];
        matrixxMultVector_2_4_4(&record, v[0].data(), v[1].data(), first.data(), second.data());
        ASSERT_EQ(first, full[0]);
        ASSERT_EQ(second, full[1]);
        first = v[0], second = v[1];
        matrixxMultVector_2_4_3(&record, v[0].data(), v[1].data(), first.data(), second.data());
        ASSERT_EQ(first, point[0]);
        ASSERT_EQ(second, point[1]);
    }
}

TEST_F(FixedMatrix, InverseTransposeOfScalesIsExact)
{
    struct {
        int32_t scale, inverse;
    } const kCases[] = {{0x10000, 0x10000}, {0x20000, 0x8000},  {0x8000, 0x20000}, {-0x40000, -0x4000},
                        {0x100, 0x1000000}, {0x1000000, 0x100}, {0x40000000, 4},   {4, 0x40000000}};
    for (const auto &c : kCases) {
        Words m = {c.scale, 0, 0, 0, 0, c.scale, 0, 0, 0, 0, c.scale, 0, 5, 6, 7, 0x10000};
        const MatrixRecord record = recordOf(m, MATRIX_ISOSCALE);
        int32_t out[10];
        out[9] = 77;
        ASSERT_EQ(matrixxInverseTranspose(&record, out), 1u) << c.scale;
        for (int i = 0; i < 9; ++i)
            EXPECT_EQ(out[i], i % 4 == 0 ? c.inverse : 0) << c.scale << " " << i;
        EXPECT_EQ(out[9], 77);
    }
}

TEST_F(FixedMatrix, InverseTransposeIsNearTheTrueOne)
{
    Random random(41);
    int checked = 0;
    for (int round = 0; round < 5000; ++round) {
        Words m;
        const int shift = static_cast<int>(random() % 8);
        for (int32_t &v : m)
            v = plainWord(random) * (1 << shift);
        long double a[3][3], cofactor[3][3];
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c)
                a[r][c] = m[4 * c + r] / 65536.0L;
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c)
                cofactor[r][c] = a[(r + 1) % 3][(c + 1) % 3] * a[(r + 2) % 3][(c + 2) % 3] -
                                 a[(r + 1) % 3][(c + 2) % 3] * a[(r + 2) % 3][(c + 1) % 3];
        const long double determinant = a[0][0] * cofactor[0][0] + a[1][0] * cofactor[1][0] + a[2][0] * cofactor[2][0];
        const long double size = std::ldexp(1.0L, 3 * shift);
        if (std::abs(determinant) < size) continue;
        int32_t out[9];
        const MatrixRecord record = recordOf(m, 0);
        ASSERT_EQ(matrixxInverseTranspose(&record, out), 1u);
        for (int i = 0; i < 9; ++i)
            ASSERT_NEAR(out[i], static_cast<double>(cofactor[i % 3][i / 3] / determinant * 65536), 1.0) << i;
        ++checked;
    }
    EXPECT_GT(checked, 3000);
}

TEST_F(FixedMatrix, InverseTransposeRejectsAZeroDeterminantAndLeavesTheDestination)
{
    Random random(42);
    for (int round = 0; round < 2000; ++round) {
        // The third column is the sum of the others: elements of up to 30 bits, all steps exact.
        Words m = anyWords(random);
        for (int r = 0; r < 3; ++r) {
            m[r] >>= 2;
            m[4 + r] >>= 2;
            m[8 + r] = m[r] + m[4 + r];
        }
        const MatrixRecord record = recordOf(m, 0);
        int32_t out[9];
        std::fill(out, out + 9, 77);
        ASSERT_EQ(matrixxInverseTranspose(&record, out), 0u);
        for (int32_t v : out)
            ASSERT_EQ(v, 77);
    }
    const MatrixRecord zero = recordOf({}, 0);
    int32_t out[9] = {};
    EXPECT_EQ(matrixxInverseTranspose(&zero, out), 0u);
}

TEST_F(FixedMatrix, InverseTransposeOfExtremeElementsIsDefined)
{
    Random random(43);
    for (int round = 0; round < 5000; ++round) {
        Words m;
        for (int32_t &v : m)
            v = random() % 2 ? kSpecialWords[random() % std::size(kSpecialWords)] : anyWord(random);
        const MatrixRecord record = recordOf(m, 0);
        int32_t out[9];
        ASSERT_LE(matrixxInverseTranspose(&record, out), 1u); // the sanitizer build watches the steps
    }
}

TEST_F(FixedMatrix, EveryFunctionAssertsFixedRecords)
{
    MatrixRecord m, fixed, out;
    matrixxSetIdentity(&fixed);
    int32_t v[4] = {}, w[9] = {};
    size_t count = 0;
    auto expectAssertion = [&](const char *what) {
        EXPECT_GT(fakePlatform().assertions.size(), count) << what;
        count = fakePlatform().assertions.size();
    };
    auto reset = [&] { matrixfSetIdentity(&m); };
    reset();
    matrixxMultiply(&m, &fixed, &out), expectAssertion("matrixxMultiply, left");
    matrixxMultiply(&fixed, &m, &out), expectAssertion("matrixxMultiply, right");
    matrixxMultiplyInPlace(&fixed, &m), expectAssertion("matrixxMultiplyInPlace, right");
    matrixxMultiplyInPlace(&m, &fixed), expectAssertion("matrixxMultiplyInPlace, left"), reset();
    matrixxTranslate(&m, 0, 0, 0), expectAssertion("matrixxTranslate"), reset();
    matrixxScale(&m, 0, 0, 0), expectAssertion("matrixxScale"), reset();
    matrixxRotate(&m, 0, 0, 0, 0), expectAssertion("matrixxRotate"), reset();
    matrixxMultVector_4_4(&m, v, v), expectAssertion("matrixxMultVector_4_4");
    matrixxMultVector_4_3(&m, v, v), expectAssertion("matrixxMultVector_4_3");
    matrixxMultVector_3_3(&m, v, v), expectAssertion("matrixxMultVector_3_3");
    matrixxMultVector_2_4_4(&m, v, v, v, w), expectAssertion("matrixxMultVector_2_4_4");
    matrixxMultVector_2_4_3(&m, v, v, v, w), expectAssertion("matrixxMultVector_2_4_3");
    matrixxInverseTranspose(&m, w), expectAssertion("matrixxInverseTranspose");
    resetFakePlatform();
    matrixxRotate(&fixed, 0, 0, 0, 0);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}
