// SPDX-License-Identifier: MIT
#include "math/matrix_classify.h"

#include <gtest/gtest.h>

#include "math/matrix_inline.h"
#include "math/plain_matrix.h"
#include "support/fake_platform.h"

using namespace expected;
using namespace plain;

namespace {

constexpr uint32_t kIdentityMask = 0x84217BDE;

struct Classify : testing::Test {
    Classify()
    {
        resetFakePlatform();
    }
};

MatrixRecord recordOf(const Matrix &m)
{
    MatrixRecord out;
    std::copy(m.begin(), m.end(), out.f);
    out.flags = MATRIX_FLOAT;
    return out;
}

MatrixRecord identityWith(int element, float value)
{
    Matrix m = kIdentity;
    m[element] = value;
    return recordOf(m);
}

} // namespace

TEST_F(Classify, MaskOfTheIdentity)
{
    const MatrixRecord m = recordOf(kIdentity);
    EXPECT_EQ(getMatrixZeroOneMask(&m), kIdentityMask);
}

TEST_F(Classify, EveryElementHasItsZeroAndItsOneBit)
{
    for (int i = 0; i < 16; ++i) {
        Matrix m;
        m.fill(3.0f);
        for (float zero : {0.0f, -0.0f}) {
            m[i] = zero;
            const MatrixRecord record = recordOf(m);
            EXPECT_EQ(getMatrixZeroOneMask(&record), 1u << i);
        }
        m[i] = 1.0f;
        const MatrixRecord record = recordOf(m);
        EXPECT_EQ(getMatrixZeroOneMask(&record), 0x10000u << i);
        for (float other : {-1.0f, NAN, 0x1p-149f, std::nextafter(1.0f, 0.0f)}) {
            m[i] = other;
            const MatrixRecord neither = recordOf(m);
            EXPECT_EQ(getMatrixZeroOneMask(&neither), 0u) << other;
        }
    }
}

TEST_F(Classify, MaskEqualsItsPlainReference)
{
    Random random(33);
    for (int round = 0; round < 20000; ++round) {
        Matrix m;
        for (float &v : m)
            v = random() % 2 ? anyFloat(random) : static_cast<float>(random() % 2);
        uint32_t want = 0;
        for (int i = 0; i < 16; ++i) {
            const uint32_t word = std::bit_cast<uint32_t>(m[i]);
            if ((word & 0x7FFFFFFF) == 0) want |= 1u << i;
            if (word == 0x3F800000) want |= 1u << (16 + i);
        }
        const MatrixRecord record = recordOf(m);
        ASSERT_EQ(getMatrixZeroOneMask(&record), want);
        ASSERT_EQ(zeroOneMaskPlain(m.data()), want);
    }
}

TEST_F(Classify, ScalesHaveAnythingInThreeDiagonalElements)
{
    for (int i = 0; i < 16; ++i) {
        const MatrixRecord m = identityWith(i, 7.0f);
        EXPECT_EQ(isMatrixScale(&m), i == 0 || i == 5 || i == 10 ? 1u : 0u) << i;
    }
    const MatrixRecord zero = identityWith(5, 0.0f);
    EXPECT_EQ(isMatrixScale(&zero), 1u);
}

TEST_F(Classify, IsoscaleComparesTheFirstDiagonalElements)
{
    const Matrix scale = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1};
    const MatrixRecord m = recordOf(scale), one = recordOf(kIdentity), shear = identityWith(4, 1.0f);
    const int counts[] = {-1, 0, 1, 2, 3, 4, 5, INT32_MAX};
    const uint32_t ofScale[] = {1, 1, 1, 1, 0, 0, 0, 0};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(isMatrixIsoscale(&m, counts[i]), ofScale[i]) << counts[i];
        EXPECT_EQ(isMatrixIsoscale(&one, counts[i]), 1u) << counts[i];
        EXPECT_EQ(isMatrixIsoscale(&shear, counts[i]), 0u) << counts[i];
    }
    const Matrix uniform = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    const MatrixRecord u = recordOf(uniform);
    EXPECT_EQ(isMatrixIsoscale(&u, 3), 1u);
    EXPECT_EQ(isMatrixIsoscale(&u, 4), 0u) << "element 15 is 1";
}

TEST_F(Classify, RotationsAreOrthogonalWhereverTheyMove)
{
    Random random(34);
    for (int round = 0; round < 500; ++round) {
        Matrix m;
        fp_matrix_build_rotate(m.data(), plainFloat(random) * 45, plainFloat(random), plainFloat(random), 1);
        for (int i = 12; i < 15; ++i)
            m[i] = anyFloat(random);
        MatrixRecord record = recordOf(m);
        ASSERT_EQ(isMatrixOrthogonal(&record), 1u);
        for (int i = 0; i < 16; ++i) {
            if (i >= 12 && i < 15) continue;
            MatrixRecord moved = record;
            moved.f[i] += 0.2f;
            ASSERT_EQ(isMatrixOrthogonal(&moved), 0u) << i;
            moved.f[i] = NAN;
            ASSERT_EQ(isMatrixOrthogonal(&moved), 0u) << i;
        }
    }
}

TEST_F(Classify, OrthogonalUpToAThousandth)
{
    // The last element of row 3 whose square is not above 1e-6, and the next.
    float last = 0.00099f;
    while (mul(std::nextafter(last, 1.0f), std::nextafter(last, 1.0f)) <= 1e-6f)
        last = std::nextafter(last, 1.0f);
    EXPECT_NEAR(last, 0.001, 1e-9);
    for (int i : {3, 7, 11}) {
        for (float sign : {1.0f, -1.0f}) {
            const MatrixRecord inside = identityWith(i, sign * last);
            const MatrixRecord outside = identityWith(i, sign * std::nextafter(last, 1.0f));
            EXPECT_EQ(isMatrixOrthogonal(&inside), 1u) << i;
            EXPECT_EQ(isMatrixOrthogonal(&outside), 0u) << i;
        }
    }
    struct {
        int element;
        float value;
        uint32_t result;
    } const kCases[] = {{15, 1.0009f, 1}, {15, 1.0011f, 0}, {15, 0.9991f, 1}, {15, 0.9989f, 0}, {0, 1.0004f, 1},
                        {0, 1.0006f, 0},  {5, 1.0004f, 1},  {5, 1.0006f, 0},  {10, 0.9996f, 1}, {10, 0.9994f, 0},
                        {4, 0.0009f, 1},  {4, 0.0011f, 0},  {8, -0.0009f, 1}, {8, -0.0011f, 0}, {9, 0.0009f, 1},
                        {9, 0.0011f, 0},  {1, 0.0011f, 0},  {2, 0.0011f, 0},  {6, 0.0011f, 0},  {12, 50.0f, 1}};
    for (const auto &c : kCases) {
        const MatrixRecord m = identityWith(c.element, c.value);
        EXPECT_EQ(isMatrixOrthogonal(&m), c.result) << c.element << " " << c.value;
    }
}

TEST_F(Classify, SignificantRowsEndAboveIdentityRows)
{
    EXPECT_EQ(signicantRows(kIdentityMask), 0u);
    for (int i = 0; i < 16; ++i) {
        const MatrixRecord m = identityWith(i, 5.0f);
        EXPECT_EQ(signicantRows(getMatrixZeroOneMask(&m)), static_cast<uint32_t>(i % 4 + 1)) << i;
        // A zero for a one and a one for a zero spoil a row as well.
        const MatrixRecord other = identityWith(i, i % 5 == 0 ? 0.0f : 1.0f);
        EXPECT_EQ(signicantRows(getMatrixZeroOneMask(&other)), static_cast<uint32_t>(i % 4 + 1)) << i;
    }
    MatrixRecord two = identityWith(12, 5.0f);
    two.f[14] = 2.0f;
    EXPECT_EQ(signicantRows(getMatrixZeroOneMask(&two)), 3u);
    EXPECT_EQ(signicantRows(0), 4u);
}

TEST_F(Classify, FloatFunctionsAssertTheirKind)
{
    MatrixRecord m = recordOf(kIdentity);
    getMatrixZeroOneMask(&m);
    isMatrixScale(&m);
    isMatrixIsoscale(&m, 3);
    isMatrixOrthogonal(&m);
    EXPECT_TRUE(fakePlatform().assertions.empty());
    m.flags = 0;
    getMatrixZeroOneMask(&m);
    isMatrixScale(&m);
    isMatrixIsoscale(&m, 3);
    isMatrixOrthogonal(&m);
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>(4, "float matrix"));
}

TEST_F(Classify, FixedFormsAreAssertionsOnly)
{
    MatrixRecord m;
    matrixxSetIdentity(&m);
    EXPECT_EQ(isIsoscalex(&m), 0u);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    EXPECT_EQ(isMatrixOrthogonalx(&m), 0u);
    EXPECT_EQ(fakePlatform().assertions.size(), 2u);
}
