// SPDX-License-Identifier: MIT
#include "math/fp_vector.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "math/rounded.h"

using namespace expected;

namespace {

using Vec4 = std::array<float, 4>;
using Matrix = std::array<float, 16>;

constexpr float kGuard = 77.0f; // stands behind an output

template <size_t n>
std::array<float, n> anyArray(Random &random)
{
    std::array<float, n> out;
    for (float &v : out)
        v = anyFloat(random);
    return out;
}

void expectSame(const float *got, const float *want, int count, const char *what)
{
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(Bits{got[i]}, Bits{want[i]}) << what << " " << i;
}

// Sum of columns 0 .. count - 1 of row r, weighted by v.
float columnSum(const Matrix &m, int r, const Vec4 &v, int count)
{
    float sum = mul(m[r], v[0]);
    for (int j = 1; j < count; ++j)
        sum = add(sum, mul(v[j], m[4 * j + r]));
    return sum;
}

float rowDot(const Matrix &m, int r, const Vec4 &v, int count)
{
    float sum = add(add(mul(m[4 + r], v[1]), mul(m[r], v[0])), mul(m[8 + r], v[2]));
    return count == 4 ? add(sum, mul(m[12 + r], v[3])) : sum;
}

} // namespace

TEST(Vector, ComponentFunctionsRoundEveryStep)
{
    Random random(4);
    for (int round = 0; round < 4000; ++round) {
        const Vec4 a = anyArray<4>(random), b = anyArray<4>(random), c = anyArray<4>(random);
        const float s = anyFloat(random);
        Vec4 product, scaled, smadd, madd;
        for (int i = 0; i < 4; ++i) {
            product[i] = mul(a[i], b[i]);
            scaled[i] = mul(a[i], s);
            smadd[i] = add(c[i], mul(s, a[i]));
            madd[i] = add(c[i], mul(a[i], b[i]));
        }
        Vec4 out = {0, 0, 0, kGuard};
        fp_vec3_mul(a.data(), b.data(), out.data());
        expectSame(out.data(), product.data(), 3, "vec3_mul");
        fp_vec3_smul(a.data(), s, out.data());
        expectSame(out.data(), scaled.data(), 3, "vec3_smul");
        EXPECT_EQ(out[3], kGuard);
        fp_vec4_mul(a.data(), b.data(), out.data());
        expectSame(out.data(), product.data(), 4, "vec4_mul");
        fp_vec4_smul(a.data(), s, out.data());
        expectSame(out.data(), scaled.data(), 4, "vec4_smul");
        out = c;
        fp_vec3_smadd(a.data(), s, out.data());
        expectSame(out.data(), smadd.data(), 3, "vec3_smadd");
        ASSERT_EQ(Bits{out[3]}, Bits{c[3]});
        out = c;
        fp_vec4_smadd(a.data(), s, out.data());
        expectSame(out.data(), smadd.data(), 4, "vec4_smadd");
        out = c;
        fp_vec4_madd(a.data(), b.data(), out.data());
        expectSame(out.data(), madd.data(), 4, "vec4_madd");
    }
}

TEST(Vector, CrossAndDotProductsKeepTheirOrder)
{
    Random random(5);
    for (int round = 0; round < 4000; ++round) {
        const Vec4 a = anyArray<4>(random), b = anyArray<4>(random);
        const float cross[3] = {sub(mul(a[1], b[2]), mul(a[2], b[1])), sub(mul(a[2], b[0]), mul(a[0], b[2])),
                                sub(mul(a[0], b[1]), mul(a[1], b[0]))};
        Vec4 out = {0, 0, 0, kGuard};
        fp_vec3_cross(a.data(), b.data(), out.data());
        expectSame(out.data(), cross, 3, "cross");
        EXPECT_EQ(out[3], kGuard);
        const float dot3 = add(add(mul(a[1], b[1]), mul(a[0], b[0])), mul(a[2], b[2]));
        ASSERT_EQ(Bits{fp_vec3_dotp(a.data(), b.data())}, Bits{dot3});
        ASSERT_EQ(Bits{fp_vec4_dotp(a.data(), b.data())}, Bits{add(dot3, mul(a[3], b[3]))});
    }
}

TEST(Vector, NormalizeRoundsTheLengthBeforeItDivides)
{
    Random random(6);
    for (int round = 0; round < 8000; ++round) {
        Vec4 v = anyArray<4>(random);
        const float length = root(add(add(mul(v[0], v[0]), mul(v[1], v[1])), mul(v[2], v[2])));
        const float factor = length == 0.0f ? 0.0f : div(1.0f, length);
        Vec4 want = {mul(v[0], factor), mul(v[1], factor), mul(v[2], factor), v[3]};
        fp_vec3_normalize(v.data());
        expectSame(v.data(), want.data(), 4, "normalize");
    }
}

TEST(Vector, NormalizeLeavesTheZeroVector)
{
    Vec4 v = {0, 0, 0, kGuard};
    fp_vec3_normalize(v.data());
    EXPECT_EQ(v, (Vec4{0, 0, 0, kGuard}));
    // The squares of these vanish, so that the length is 0 too.
    v = {1e-30f, -1e-30f, 0, kGuard};
    fp_vec3_normalize(v.data());
    EXPECT_EQ(v, (Vec4{0, 0, 0, kGuard}));
}

TEST(Vector, TransformsAddColumnsInOrder)
{
    Random random(7);
    for (int round = 0; round < 4000; ++round) {
        const Matrix m = anyArray<16>(random);
        const Vec4 v = anyArray<4>(random);
        Vec4 linear, point, full;
        for (int r = 0; r < 4; ++r) {
            linear[r] = columnSum(m, r, v, 3);
            point[r] = add(linear[r], m[12 + r]);
            full[r] = columnSum(m, r, v, 4);
        }
        Vec4 out = {0, 0, 0, kGuard};
        fp_vec3_xform3(m.data(), v.data(), out.data());
        expectSame(out.data(), linear.data(), 3, "xform3");
        fp_vec3_xform4(m.data(), v.data(), out.data());
        expectSame(out.data(), point.data(), 3, "xform4");
        EXPECT_EQ(out[3], kGuard);
        fp_vec4_xform4(m.data(), v.data(), out.data());
        expectSame(out.data(), full.data(), 4, "vec4_xform4");
    }
}

TEST(Vector, RowSumsStartWithTheSecondProduct)
{
    Random random(8);
    for (int round = 0; round < 4000; ++round) {
        const Matrix m = anyArray<16>(random);
        const Vec4 v = anyArray<4>(random);
        for (int r = 0; r < 4; ++r) {
            ASSERT_EQ(Bits{_fp_matrix_rowdot3(m.data() + r, v.data())}, Bits{rowDot(m, r, v, 3)});
            ASSERT_EQ(Bits{_fp_matrix_rowdot4(m.data() + r, v.data())}, Bits{rowDot(m, r, v, 4)});
        }
    }
}

TEST(Vector, ProjectedTransformsWriteTwoOutputs)
{
    Random random(9);
    for (int round = 0; round < 4000; ++round) {
        const Matrix m = anyArray<16>(random);
        const Vec4 v = anyArray<4>(random);
        const float q3 = div(1.0f, add(rowDot(m, 3, v, 3), m[15]));
        const float q4 = div(1.0f, rowDot(m, 3, v, 4));
        const float want3[2] = {mul(q3, add(rowDot(m, 0, v, 3), m[12])), mul(q3, add(rowDot(m, 1, v, 3), m[13]))};
        const float want4[2] = {mul(q4, rowDot(m, 0, v, 4)), mul(q4, rowDot(m, 1, v, 4))};
        Vec4 out = {0, 0, kGuard, kGuard};
        fp_vec3_xform4_normalize(m.data(), v.data(), out.data());
        expectSame(out.data(), want3, 2, "vec3");
        fp_vec4_xform4_normalize(m.data(), v.data(), out.data());
        expectSame(out.data(), want4, 2, "vec4");
        EXPECT_EQ(out[2], kGuard);
        EXPECT_EQ(out[3], kGuard);
    }
}

TEST(Vector, OutputMayBeTheInput)
{
    Random random(10);
    for (int round = 0; round < 500; ++round) {
        const Matrix m = anyArray<16>(random);
        const Vec4 a = anyArray<4>(random), b = anyArray<4>(random);
        Vec4 apart = a, inPlace = a;
        fp_vec3_cross(a.data(), b.data(), apart.data());
        fp_vec3_cross(inPlace.data(), b.data(), inPlace.data());
        expectSame(inPlace.data(), apart.data(), 3, "cross");
        inPlace = b;
        fp_vec3_cross(a.data(), inPlace.data(), inPlace.data());
        expectSame(inPlace.data(), apart.data(), 3, "cross, second");
        for (auto transform :
             {fp_vec3_xform3, fp_vec3_xform4, fp_vec4_xform4, fp_vec3_xform4_normalize, fp_vec4_xform4_normalize}) {
            apart = inPlace = a;
            transform(m.data(), a.data(), apart.data());
            transform(m.data(), inPlace.data(), inPlace.data());
            expectSame(inPlace.data(), apart.data(), 4, "transform");
        }
        for (auto combine : {fp_vec3_mul, fp_vec4_mul, fp_vec4_madd}) {
            apart = inPlace = a;
            combine(a.data(), b.data(), apart.data());
            combine(inPlace.data(), b.data(), inPlace.data());
            expectSame(inPlace.data(), apart.data(), 4, "components");
        }
    }
}
