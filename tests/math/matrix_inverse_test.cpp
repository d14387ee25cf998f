// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "math/fp_matrix.h"
#include "math/plain_matrix.h"
#include "support/fake_platform.h"

using namespace expected;
using namespace plain;

namespace {

// a b - c d, every step rounded.
float minor(float a, float b, float c, float d)
{
    return sub(mul(a, b), mul(c, d));
}

float dot(float a1, float b1, float a0, float b0, float a2, float b2)
{
    return add(add(mul(a1, b1), mul(a0, b0)), mul(a2, b2));
}

// The translation of an affine inverse whose 3x3 is in place.
void expectTranslation(Matrix &out, const Matrix &m)
{
    for (int r = 0; r < 3; ++r)
        out[12 + r] = neg(dot(out[4 + r], m[13], out[r], m[12], out[8 + r], m[14]));
}

// Cofactors of the upper 3x3 at the places of their elements, spelled out.
std::array<float, 9> cofactors3(const Matrix &m)
{
    return {minor(m[5], m[10], m[6], m[9]), minor(m[6], m[8], m[4], m[10]), minor(m[4], m[9], m[5], m[8]),
            minor(m[9], m[2], m[10], m[1]), minor(m[10], m[0], m[8], m[2]), minor(m[8], m[1], m[9], m[0]),
            minor(m[1], m[6], m[2], m[5]),  minor(m[2], m[4], m[0], m[6]),  minor(m[0], m[5], m[1], m[4])};
}

Matrix expectedAnisoscale(const Matrix &m)
{
    const std::array<float, 9> c = cofactors3(m);
    const float factor = div(1.0f, dot(m[1], c[1], m[0], c[0], m[2], c[2]));
    Matrix out = m;
    for (int column = 0; column < 3; ++column)
        for (int row = 0; row < 3; ++row)
            out[4 * column + row] = mul(c[3 * row + column], factor);
    expectTranslation(out, m);
    return out;
}

Matrix expectedIsoscale(const Matrix &m)
{
    const float factor = div(1.0f, dot(m[4], m[4], m[0], m[0], m[8], m[8]));
    Matrix out = m;
    for (int column = 0; column < 3; ++column)
        for (int row = 0; row < 3; ++row)
            out[4 * column + row] = mul(m[4 * row + column], factor);
    expectTranslation(out, m);
    return out;
}

Matrix expectedTransrot(const Matrix &m)
{
    Matrix out = m;
    for (int column = 0; column < 3; ++column)
        for (int row = 0; row < 3; ++row)
            out[4 * column + row] = m[4 * row + column];
    for (int j = 0; j < 3; ++j)
        out[12 + j] = neg(dot(m[4 * j + 1], m[13], m[4 * j], m[12], m[4 * j + 2], m[14]));
    return out;
}

// The inverse of the upper 3x3 or of all 16 elements in double, by elimination with pivots.
template <int n>
bool eliminate(const Matrix &m, double inverse[n][n])
{
    double a[n][n];
    for (int r = 0; r < n; ++r)
        for (int c = 0; c < n; ++c) {
            a[r][c] = m[4 * c + r];
            inverse[r][c] = r == c;
        }
    for (int c = 0; c < n; ++c) {
        int pivot = c;
        for (int r = c; r < n; ++r)
            if (std::abs(a[r][c]) > std::abs(a[pivot][c])) pivot = r;
        if (std::abs(a[pivot][c]) < 0.1) return false;
        std::swap(a[c], a[pivot]);
        std::swap(inverse[c], inverse[pivot]);
        const double factor = 1 / a[c][c];
        for (int k = 0; k < n; ++k) {
            a[c][k] *= factor;
            inverse[c][k] *= factor;
        }
        for (int r = 0; r < n; ++r) {
            if (r == c) continue;
            const double weight = a[r][c];
            for (int k = 0; k < n; ++k) {
                a[r][k] -= weight * a[c][k];
                inverse[r][k] -= weight * inverse[c][k];
            }
        }
    }
    return true;
}

Matrix rigidMatrix(Random &random)
{
    Matrix m;
    fp_matrix_build_rotate(m.data(), plainFloat(random) * 40, plainFloat(random), plainFloat(random), 1);
    for (int i = 12; i < 15; ++i)
        m[i] = plainFloat(random);
    return m;
}

Matrix diagonal(float x, float y, float z, float w = 1)
{
    return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, w};
}

struct MatrixInverse : testing::Test {
    MatrixInverse()
    {
        resetFakePlatform();
    }
};

} // namespace

TEST_F(MatrixInverse, AffineMethodsFollowTheirRulesToTheBit)
{
    Random random(17);
    for (int round = 0; round < 4000; ++round) {
        const Matrix m = ordinaryMatrix(random); // row 3 is carried over, whatever it holds
        Matrix out;
        ASSERT_EQ(fp_matrix_inverse(out.data(), m.data(), MATRIX_ANISOSCALE | 0x30), 1u);
        expectSame(out, expectedAnisoscale(m), "anisoscale");
        ASSERT_EQ(fp_matrix_inverse(out.data(), m.data(), MATRIX_ISOSCALE | 0x10), 1u);
        expectSame(out, expectedIsoscale(m), "isoscale");
        ASSERT_EQ(fp_matrix_inverse(out.data(), m.data(), MATRIX_TRANSROT), 1u);
        expectSame(out, expectedTransrot(m), "transrot");
    }
}

TEST_F(MatrixInverse, GeneralMethodInverts)
{
    Random random(18);
    int checked = 0;
    for (int round = 0; round < 4000; ++round) {
        const Matrix m = ordinaryMatrix(random);
        double want[4][4];
        if (!eliminate<4>(m, want)) continue;
        double largest = 0;
        for (auto &row : want)
            for (double v : row)
                largest = std::max(largest, std::abs(v));
        Matrix out;
        ASSERT_EQ(fp_matrix_inverse(out.data(), m.data(), MATRIX_GENERAL), 1u);
        // Cofactors of elements up to 8 carry errors near 8^3 * 2^-22; the determinant divides them.
        for (int i = 0; i < 16; ++i)
            ASSERT_NEAR(out[i], want[i % 4][i / 4], 1e-3 * std::max(1.0, largest * largest)) << i;
        ++checked;
    }
    EXPECT_GT(checked, 3000);
}

TEST_F(MatrixInverse, GeneralMethodIsExactOnSmallIntegers)
{
    // Determinant 1: products of unit triangular matrices; all steps are exact.
    Random random(19);
    for (int round = 0; round < 500; ++round) {
        Matrix lower = kIdentity, upper = kIdentity, m, out, product;
        for (int c = 0; c < 4; ++c)
            for (int r = 0; r < 4; ++r)
                (r > c ? lower : upper)[4 * c + r] =
                    r == c ? 1.0f : static_cast<float>(static_cast<int>(random() % 7) - 3);
        for (int c = 0; c < 4; ++c)
            for (int r = c + 1; r < 4; ++r)
                upper[4 * c + r] = 0.0f;
        fp_matrix_mul(lower.data(), upper.data(), m.data(), 0, 0);
        ASSERT_EQ(_fp_matrix_inv_general(out.data(), m.data()), 1u);
        fp_matrix_mul(out.data(), m.data(), product.data(), 0, 0);
        for (int i = 0; i < 16; ++i)
            ASSERT_EQ(product[i], kIdentity[i]);
    }
}

TEST_F(MatrixInverse, RigidAndUniformMethodsInvertTheirMatrices)
{
    Random random(20);
    for (int round = 0; round < 500; ++round) {
        Matrix m = rigidMatrix(random), out, product;
        ASSERT_EQ(_fp_matrix_inv_transrot(out.data(), m.data()), 1u);
        fp_matrix_mul(out.data(), m.data(), product.data(), 0, 0);
        for (int i = 0; i < 16; ++i)
            ASSERT_NEAR(product[i], kIdentity[i], 1e-4); // the rotation itself is table-made
        fp_matrix_scale(m.data(), 3, 3, 3, MATRIX_TRANSROT);
        ASSERT_EQ(_fp_matrix_inv_isoscale(out.data(), m.data()), 1u);
        fp_matrix_mul(out.data(), m.data(), product.data(), 0, 0);
        for (int i = 0; i < 16; ++i)
            ASSERT_NEAR(product[i], kIdentity[i], 1e-4);
    }
}

TEST_F(MatrixInverse, IdentityIsLeftUnwritten)
{
    Matrix out;
    out.fill(5.0f);
    EXPECT_EQ(fp_matrix_inverse(out.data(), kIdentity.data(), 0x38), 1u);
    for (float v : out)
        EXPECT_EQ(v, 5.0f);
}

TEST_F(MatrixInverse, UnknownClassesAreAnAssertion)
{
    for (uint32_t matrixClass : {3u, 5u, 6u, 7u, 9u, 10u, 12u, 15u}) {
        resetFakePlatform();
        Matrix out;
        out.fill(5.0f);
        EXPECT_EQ(fp_matrix_inverse(out.data(), kIdentity.data(), matrixClass), 0u);
        EXPECT_EQ(fakePlatform().assertions.size(), 1u) << matrixClass;
        EXPECT_EQ(fp_matrix3_inverse_transpose(out.data(), kIdentity.data(), matrixClass), 0u);
        EXPECT_EQ(fakePlatform().assertions.size(), 2u) << matrixClass;
        EXPECT_EQ(out[0], 5.0f);
    }
}

TEST_F(MatrixInverse, DeterminantsInsideTheOpenIntervalAreSingular)
{
    const float below = std::nextafter(1e-9f, 0.0f);
    ASSERT_EQ(std::bit_cast<uint32_t>(1e-9f), 0x3089705Fu);
    struct {
        float determinant;
        uint32_t result;
    } const kCases[] = {{0, 0}, {5e-10f, 0}, {below, 0}, {-below, 0}, {1e-9f, 1}, {-1e-9f, 1}, {1e-8f, 1}, {NAN, 1}};
    for (const auto &c : kCases) {
        const Matrix m = diagonal(1, c.determinant, 1);
        for (uint32_t matrixClass : {MATRIX_GENERAL, MATRIX_ANISOSCALE}) {
            Matrix out;
            out.fill(5.0f);
            EXPECT_EQ(fp_matrix_inverse(out.data(), m.data(), matrixClass), c.result) << c.determinant;
            EXPECT_EQ(out[0] == 5.0f, c.result == 0);
            out.fill(5.0f);
            EXPECT_EQ(fp_matrix3_inverse_transpose(out.data(), m.data(), matrixClass), c.result) << c.determinant;
            EXPECT_EQ(out[0] == 5.0f, c.result == 0);
        }
    }
    Matrix out;
    const Matrix lastRow = diagonal(1, 1, 1, 5e-10f);
    EXPECT_EQ(fp_matrix_inverse(out.data(), lastRow.data(), MATRIX_GENERAL), 0u);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(MatrixInverse, UniformScalesWhoseSquareIsTooSmallAreSingular)
{
    ASSERT_EQ(std::bit_cast<uint32_t>(1e-37f), 0x02081CEAu);
    float invertible = 3.2e-19f;
    while (mul(invertible, invertible) >= 1e-37f)
        invertible = std::nextafter(invertible, 0.0f);
    const float singular = invertible;
    invertible = std::nextafter(singular, 1.0f);
    ASSERT_GE(mul(invertible, invertible), 1e-37f);
    struct {
        float scale;
        uint32_t result;
    } const kCases[] = {{0, 0}, {1e-19f, 0}, {singular, 0}, {invertible, 1}, {1e-18f, 1}, {2, 1}, {NAN, 1}};
    for (const auto &c : kCases) {
        const Matrix m = diagonal(c.scale, c.scale, c.scale);
        Matrix out;
        EXPECT_EQ(fp_matrix_inverse(out.data(), m.data(), MATRIX_ISOSCALE), c.result) << c.scale;
        EXPECT_EQ(fp_matrix3_inverse_transpose(out.data(), m.data(), MATRIX_ISOSCALE), c.result) << c.scale;
    }
}

TEST_F(MatrixInverse, InPlaceGivesTheSameBits)
{
    Random random(21);
    for (int round = 0; round < 200; ++round) {
        const Matrix m = ordinaryMatrix(random);
        for (uint32_t matrixClass : {MATRIX_GENERAL, MATRIX_ANISOSCALE, MATRIX_ISOSCALE, MATRIX_TRANSROT}) {
            Matrix apart = m, inPlace = m;
            fp_matrix_inverse(apart.data(), m.data(), matrixClass);
            fp_matrix_inverse(inPlace.data(), inPlace.data(), matrixClass);
            expectSame(inPlace, apart, "inverse");
            apart = inPlace = m;
            fp_matrix3_inverse_transpose(apart.data(), m.data(), matrixClass);
            fp_matrix3_inverse_transpose(inPlace.data(), inPlace.data(), matrixClass);
            expectSame(inPlace, apart, "inverse-transpose"); // elements 9 to 15 stay those of m
        }
    }
}

TEST_F(MatrixInverse, InverseTransposeIsTheTransposedBlockOfTheInverse)
{
    Random random(22);
    for (int round = 0; round < 4000; ++round) {
        const Matrix m = ordinaryMatrix(random);
        for (uint32_t matrixClass : {MATRIX_GENERAL, MATRIX_ANISOSCALE, MATRIX_ISOSCALE, MATRIX_TRANSROT}) {
            Matrix inverse;
            float want[10], out[10];
            ASSERT_EQ(fp_matrix_inverse(inverse.data(), m.data(), matrixClass), 1u);
            for (int i = 0; i < 9; ++i)
                want[i] = inverse[4 * (i % 3) + i / 3];
            want[9] = out[9] = 7.0f;
            ASSERT_EQ(fp_matrix3_inverse_transpose(out, m.data(), matrixClass | 0x30), 1u);
            expectSame(out, want, 10, "inverse-transpose");
        }
    }
}

TEST_F(MatrixInverse, InverseTransposeOfTheIdentityIsWritten)
{
    float out[9] = {};
    Matrix rubbish;
    rubbish.fill(9.0f);
    EXPECT_EQ(fp_matrix3_inverse_transpose(out, rubbish.data(), 0x38), 1u);
    const float want[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    expectSame(out, want, 9, "identity");
}
