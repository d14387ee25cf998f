// SPDX-License-Identifier: MIT
#include "math/matrix_record.h"

#include <cstring>

#include <gtest/gtest.h>

#include "math/fixed_matrix.h"
#include "math/plain_matrix.h"
#include "support/fake_platform.h"

using namespace expected;
using namespace plain;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct Record : testing::Test {
    Record()
    {
        resetFakePlatform();
    }
};

bool sameRecord(const MatrixRecord &a, const MatrixRecord &b)
{
    return std::memcmp(&a, &b, sizeof(a)) == 0;
}

MatrixRecord floatRecord(const Matrix &m, uint32_t matrixClass)
{
    MatrixRecord out;
    std::copy(m.begin(), m.end(), out.f);
    out.flags = matrixClass | MATRIX_FLOAT;
    return out;
}

MatrixRecord fixedRecord(Random &random, uint32_t matrixClass)
{
    MatrixRecord out;
    for (int32_t &v : out.x)
        v = plainWord(random);
    if (matrixClass) {
        out.x[3] = out.x[7] = out.x[11] = 0;
        out.x[15] = 0x10000;
    }
    out.flags = matrixClass;
    return out;
}

float converted(int32_t v)
{
    return v == 0 ? 0.0f : std::bit_cast<float>(std::bit_cast<uint32_t>(static_cast<float>(v)) - 0x08000000);
}

int32_t converted(float v)
{
    if (std::isnan(v)) return 0;
    return static_cast<int32_t>(std::clamp(std::trunc(v * 65536.0), -0x1p31, 0x1p31 - 1));
}

MatrixRecord asFloat(const MatrixRecord &m)
{
    MatrixRecord out;
    for (int i = 0; i < 16; ++i)
        out.f[i] = converted(m.x[i]);
    out.flags = m.flags | MATRIX_FLOAT;
    return out;
}

} // namespace

TEST_F(Record, IdentitySettersWriteEverything)
{
    MatrixRecord f, x;
    std::memset(&f, 0xFF, sizeof(f));
    std::memset(&x, 0xFF, sizeof(x));
    matrixfSetIdentity(&f);
    matrixxSetIdentity(&x);
    EXPECT_EQ(f.flags, 0x38u);
    EXPECT_EQ(x.flags, 0x28u);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(Bits{f.f[i]}, Bits{i % 5 == 0 ? 1.0f : 0.0f}) << i;
        EXPECT_EQ(x.x[i], i % 5 == 0 ? 0x10000 : 0) << i;
    }
}

TEST_F(Record, LoadsClassifyByTheLastRowAndTheDiagonal)
{
    struct {
        const char *label;
        int element;
        float value;
        uint32_t matrixClass;
    } const kCases[] = {
        {"identity", 0, 1, 2},    {"shear", 4, 5, 2},         {"translation", 12, 5, 2}, {"element 3", 3, 0.5, 0},
        {"element 7", 7, 0.5, 0}, {"element 11", 11, 0.5, 0}, {"element 15", 15, 2, 0},  {"element 15 zero", 15, 0, 0},
        {"element 0", 0, 2, 1},   {"element 5", 5, 2, 1},     {"element 10", 10, 2, 1}};
    for (const auto &c : kCases) {
        SCOPED_TRACE(c.label);
        Matrix m = kIdentity;
        m[c.element] = c.value;
        std::array<int32_t, 16> fixed;
        for (int i = 0; i < 16; ++i)
            fixed[i] = static_cast<int32_t>(m[i] * 65536);
        MatrixRecord out;
        matrixfLoad(m.data(), &out);
        EXPECT_EQ(out.flags, 0x10 + c.matrixClass);
        EXPECT_EQ(std::memcmp(out.f, m.data(), 64), 0);
        matrixxLoad(fixed.data(), &out);
        EXPECT_EQ(out.flags, c.matrixClass);
        EXPECT_EQ(std::memcmp(out.x, fixed.data(), 64), 0);
    }
}

TEST_F(Record, LoadTakesNegativeZeroAsZeroAndNanAsGeneral)
{
    MatrixRecord out;
    Matrix m = kIdentity;
    m[3] = m[7] = -0.0f;
    matrixfLoad(m.data(), &out);
    EXPECT_EQ(out.flags, 0x12u);
    m = kIdentity;
    m[15] = NAN;
    matrixfLoad(m.data(), &out);
    EXPECT_EQ(out.flags, 0x10u);
    m = kIdentity;
    m[0] = m[5] = m[10] = NAN;
    matrixfLoad(m.data(), &out);
    EXPECT_EQ(out.flags, 0x11u);
    std::array<int32_t, 16> fixed = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0x10001};
    matrixxLoad(fixed.data(), &out);
    EXPECT_EQ(out.flags, 0u) << "element 15 is not 1.0";
}

TEST_F(Record, TransposeMovesWordsOfAnyKind)
{
    uint32_t m[16], out[16];
    for (uint32_t i = 0; i < 16; ++i)
        m[i] = 0x7F800001 + i * 0x01010101; // signalling NaN among them
    matrixTranspose(m, out);
    for (int c = 0; c < 4; ++c)
        for (int r = 0; r < 4; ++r)
            EXPECT_EQ(out[4 * c + r], m[4 * r + c]);
    matrixTranspose(m, m);
    EXPECT_EQ(std::memcmp(m, out, sizeof(m)), 0);
}

TEST_F(Record, FixedToFloatIsTheNearestFloat)
{
    Random random(28);
    for (int round = 0; round < 5000; ++round) {
        MatrixRecord m, out, small;
        for (int32_t &v : m.x)
            v = anyWord(random);
        m.flags = MATRIX_ISOSCALE | MATRIX_UNROTATED;
        matrixxToMatrixf_4(&m, &out);
        matrixxToMatrixf_3(&m, &small);
        for (int i = 0; i < 16; ++i) {
            ASSERT_EQ(Bits{out.f[i]}, Bits{converted(m.x[i])}) << m.x[i];
            const bool inBlock = i < 11 && i % 4 != 3;
            ASSERT_EQ(Bits{small.f[i]}, Bits{inBlock ? converted(m.x[i]) : 0.0f}) << i;
        }
        ASSERT_EQ(out.flags, 0x32u);
        ASSERT_EQ(small.flags, 0x32u);
        MatrixRecord inPlace = m;
        matrixxToMatrixf_4(&inPlace, &inPlace);
        ASSERT_TRUE(sameRecord(inPlace, out));
        inPlace = m;
        matrixxToMatrixf_3(&inPlace, &inPlace);
        ASSERT_TRUE(sameRecord(inPlace, small));
    }
    EXPECT_EQ(converted(1), 0x1p-16f);
}

TEST_F(Record, FloatToFixedTruncatesAndSaturates)
{
    Random random(29);
    for (int round = 0; round < 5000; ++round) {
        MatrixRecord m, out, small;
        for (float &v : m.f)
            v = random() % 2 ? anyFloat(random) : plainFloat(random) * 5000;
        m.flags = MATRIX_FLOAT | MATRIX_ISOSCALE | MATRIX_UNROTATED;
        matrixfToMatrixx_4(&m, &out);
        matrixfToMatrixx_3(&m, &small);
        for (int i = 0; i < 16; ++i) {
            ASSERT_EQ(out.x[i], converted(m.f[i])) << m.f[i];
            const bool inBlock = i < 11 && i % 4 != 3;
            ASSERT_EQ(small.x[i], inBlock ? converted(m.f[i]) : 0) << i;
        }
        ASSERT_EQ(out.flags, 0x22u);
        ASSERT_EQ(small.flags, 0x22u);
        MatrixRecord inPlace = m;
        matrixfToMatrixx_4(&inPlace, &inPlace);
        ASSERT_TRUE(sameRecord(inPlace, out));
        inPlace = m;
        matrixfToMatrixx_3(&inPlace, &inPlace);
        ASSERT_TRUE(sameRecord(inPlace, small));
    }
}

TEST_F(Record, FloatToFixedAtTheLimits)
{
    struct {
        float from;
        int32_t to;
    } const kCases[] = {{40000.0f, INT32_MAX},
                        {32768.0f, INT32_MAX},
                        {0x1.fffffep14f, 0x7FFFFF80},
                        {-32768.0f, INT32_MIN},
                        {-32769.0f, INT32_MIN},
                        {kInfinity, INT32_MAX},
                        {-kInfinity, INT32_MIN},
                        {0x1p113f, INT32_MAX},
                        {-0x1.8p120f, INT32_MIN},
                        {NAN, 0},
                        {0.0f, 0},
                        {-0.0f, 0},
                        {0x1p-149f, 0},
                        {0x1p-16f, 1},
                        {-0x1.8p-16f, -1},
                        {0x1.fffffep-17f, 0}};
    for (const auto &c : kCases) {
        MatrixRecord m = floatRecord(kIdentity, 0);
        m.f[6] = c.from;
        matrixfToMatrixx_4(&m, &m);
        EXPECT_EQ(m.x[6], c.to) << c.from;
    }
}

TEST_F(Record, FunctionsOfOneKindAssertIt)
{
    MatrixRecord fixed, real, out;
    matrixxSetIdentity(&fixed);
    matrixfSetIdentity(&real);
    void (*const kOfFixed[])(const MatrixRecord *, MatrixRecord *) = {matrixxToMatrixf_4, matrixxToMatrixf_3};
    void (*const kOfFloat[])(const MatrixRecord *, MatrixRecord *) = {matrixfToMatrixx_4, matrixfToMatrixx_3};
    size_t count = 0;
    for (auto convert : kOfFixed) {
        convert(&fixed, &out);
        EXPECT_EQ(fakePlatform().assertions.size(), count);
        convert(&real, &out);
        EXPECT_EQ(fakePlatform().assertions.size(), ++count);
        EXPECT_EQ(fakePlatform().assertions.back(), "fixed-point matrix");
    }
    for (auto convert : kOfFloat) {
        convert(&real, &out);
        EXPECT_EQ(fakePlatform().assertions.size(), count);
        convert(&fixed, &out);
        EXPECT_EQ(fakePlatform().assertions.size(), ++count);
        EXPECT_EQ(fakePlatform().assertions.back(), "float matrix");
    }
}

TEST_F(Record, AnIdentityOperandGivesTheOtherRecordUnchanged)
{
    Random random(30);
    MatrixRecord identities[2];
    matrixfSetIdentity(&identities[0]);
    matrixxSetIdentity(&identities[1]);
    MatrixRecord others[2] = {floatRecord(affineMatrix(random), MATRIX_ISOSCALE | MATRIX_UNROTATED),
                              fixedRecord(random, MATRIX_ANISOSCALE)};
    others[1].flags |= MATRIX_UNROTATED;
    for (const MatrixRecord &identity : identities)
        for (const MatrixRecord &other : others) {
            MatrixRecord out;
            matrixMultiply(&identity, &other, &out);
            EXPECT_TRUE(sameRecord(out, other));
            matrixMultiply(&other, &identity, &out);
            EXPECT_TRUE(sameRecord(out, other));
            out = identity;
            matrixMultiplyInPlace(&out, &other);
            EXPECT_TRUE(sameRecord(out, other));
            out = other;
            matrixMultiplyInPlace(&out, &identity);
            EXPECT_TRUE(sameRecord(out, other));
        }
}

TEST_F(Record, AFloatOperandTurnsTheProductFloat)
{
    Random random(31);
    for (int round = 0; round < 2000; ++round) {
        const uint32_t classA = 1u << random() % 3 & 6, classB = 1u << random() % 3 & 6;
        MatrixRecord real = floatRecord(classA ? affineMatrix(random) : ordinaryMatrix(random), classA);
        MatrixRecord fixed = fixedRecord(random, classB);
        real.flags |= MATRIX_UNROTATED;
        fixed.flags |= MATRIX_UNROTATED;
        const MatrixRecord widened = asFloat(fixed);
        Matrix a, b;
        std::copy(real.f, real.f + 16, a.begin());
        std::copy(widened.f, widened.f + 16, b.begin());
        const bool affine = classA && classB;
        const uint32_t flags = (affine ? std::min(classA, classB) : 0) | MATRIX_FLOAT;

        MatrixRecord out;
        matrixMultiply(&real, &fixed, &out);
        expectSame(out.f, productByColumns(a, b, affine).data(), 16, "float x fixed");
        ASSERT_EQ(out.flags, flags);
        matrixMultiply(&fixed, &real, &out);
        expectSame(out.f, productByColumns(b, a, affine).data(), 16, "fixed x float");
        ASSERT_EQ(out.flags, flags);
        matrixMultiply(&real, &widened, &out);
        expectSame(out.f, productByColumns(a, b, affine).data(), 16, "float x float");
        ASSERT_EQ(out.flags, flags);

        out = real;
        matrixMultiplyInPlace(&out, &fixed);
        expectSame(out.f, productByRows(a, b, affine).data(), 16, "float x= fixed");
        ASSERT_EQ(out.flags, flags);
        out = fixed;
        matrixMultiplyInPlace(&out, &real);
        expectSame(out.f, productByRows(b, a, affine).data(), 16, "fixed x= float");
        ASSERT_EQ(out.flags, flags);
        out = real;
        matrixMultiplyInPlace(&out, &widened);
        expectSame(out.f, productByRows(a, b, affine).data(), 16, "float x= float");
        ASSERT_EQ(out.flags, flags);
    }
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Record, TwoFixedOperandsKeepTheProductFixed)
{
    Random random(32);
    const MatrixRecord a = fixedRecord(random, MATRIX_ISOSCALE), b = fixedRecord(random, MATRIX_ANISOSCALE);
    MatrixRecord want, out;
    matrixxMultiply(&a, &b, &want);
    matrixMultiply(&a, &b, &out);
    EXPECT_TRUE(sameRecord(out, want));
    EXPECT_EQ(out.flags, 1u);
    out = a;
    matrixMultiplyInPlace(&out, &b);
    EXPECT_TRUE(sameRecord(out, want));
}
