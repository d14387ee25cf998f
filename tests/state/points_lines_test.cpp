// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class Points : public StateTest {};
class Lines : public StateTest {};

} // namespace

TEST_F(Points, StartAsTheStandardSays)
{
    EXPECT_EQ(ctx->pointLine.pointSize, 1.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMin, 0.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 128.0f);
    EXPECT_EQ(ctx->pointLine.pointFadeThreshold, 1.0f);
    EXPECT_EQ(values(ctx->pointLine.distanceAttenuation), (Vec3{1, 0, 0}));
    EXPECT_EQ(ctx->pointLine.attenuationActive, 0u);
    EXPECT_EQ(ctx->pointLine.lineWidth, 1.0f);
    EXPECT_EQ(ctx->alphaTest.func, GLenum(GL_ALWAYS));
    EXPECT_EQ(ctx->alphaTest.ref, 0.0f);
}

TEST_F(Lines, WidthMustBeAboveZeroAndStaysInTheLibrary)
{
    expectAccepted([] { glLineWidth(0.001f); });
    EXPECT_EQ(ctx->pointLine.lineWidth, 0.001f);
    for (const GLfloat bad : {0.0f, -0.0f, -1.0f})
        expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glLineWidth(bad); });
    expectAccepted([] { glLineWidth(kNaN); });
    EXPECT_TRUE(std::isnan(ctx->pointLine.lineWidth));
    EXPECT_EQ(callsOf("glLineWidth"), std::vector<std::string>{});
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Points, SizeMustBeAboveZero)
{
    expectAccepted([] { glPointSize(500.0f); });
    EXPECT_EQ(ctx->pointLine.pointSize, 500.0f);
    for (const GLfloat bad : {0.0f, -1.0f})
        expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glPointSize(bad); });
    expectAccepted([] { glPointSize(kNaN); });
    EXPECT_TRUE(std::isnan(ctx->pointLine.pointSize));
    EXPECT_EQ(ctx->dirty, 0u);
    glPointSizex(0x28000);
    EXPECT_EQ(ctx->pointLine.pointSize, 2.5f);
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glPointSizex(0); });
}

TEST_F(Points, SizeArrayChecksStrideBeforeType)
{
    int data = 0;
    expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glPointSizePointerOES(GL_BYTE, -1, &data); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glPointSizePointerOES(GL_SHORT, 0, &data); });

    glBindBuffer(GL_ARRAY_BUFFER, 9);
    expectAccepted([&] { glPointSizePointerOES(GL_FIXED, 12, &data); });
    EXPECT_EQ(ctx->arrays.pointSize.type, GLenum(GL_FIXED));
    EXPECT_EQ(ctx->arrays.pointSize.strideBytes, 12);
    EXPECT_EQ(ctx->arrays.pointSize.pointer, &data);
    EXPECT_EQ(ctx->arrays.pointSize.buffer, 9u);
    EXPECT_EQ(ctx->arrays.pointSize.enabled, 0u);
    EXPECT_EQ(ctx->dirty, 0x8u);
    expectAccepted([&] { glPointSizePointerOES(GL_FLOAT, 0, nullptr); });
}

TEST_F(Points, TheMinimumOverwritesTheMaximum)
{
    glPointParameterf(GL_POINT_SIZE_MAX, 60.0f);
    glPointParameterf(GL_POINT_SIZE_MIN, 20.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMin, 20.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 20.0f);
    glPointParameterf(GL_POINT_SIZE_MAX, 60.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMin, 20.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 60.0f);
}

TEST_F(Points, TheOtherParametersAreKeptApart)
{
    const GLfloat coefficients[3] = {4, 5, 6};
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, coefficients);
    glPointParameterf(GL_POINT_FADE_THRESHOLD_SIZE, 7.0f);
    EXPECT_EQ(values(ctx->pointLine.distanceAttenuation), (Vec3{4, 5, 6}));
    glPointParameterf(GL_POINT_SIZE_MAX, 60.0f);
    EXPECT_EQ(ctx->pointLine.pointFadeThreshold, 7.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 60.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMin, 0.0f);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Points, ScalarFormOfTheAttenuationSetsItsConstantTerm)
{
    expectAccepted([] { glPointParameterf(GL_POINT_DISTANCE_ATTENUATION, 2.0f); });
    EXPECT_EQ(values(ctx->pointLine.distanceAttenuation), (Vec3{2, 0, 0}));
    expectAccepted([] { glPointParameterx(GL_POINT_DISTANCE_ATTENUATION, 0x10000); });
    EXPECT_EQ(values(ctx->pointLine.distanceAttenuation), (Vec3{1, 0, 0}));
    EXPECT_EQ(ctx->pointLine.attenuationActive, 0u);
}

TEST_F(Points, SizesAboveTheLimitAreCut)
{
    expectAccepted([] { glPointParameterf(GL_POINT_SIZE_MIN, 200.0f); });
    EXPECT_EQ(ctx->pointLine.pointSizeMin, 128.0f);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 128.0f);
    glPointParameterf(GL_POINT_SIZE_MAX, 127.5f);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 127.5f);
    glPointParameterf(GL_POINT_SIZE_MAX, 128.5f);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 128.0f);
}

TEST_F(Points, NegativeParametersAreInvalidValueAndMarkNothing)
{
    for (const GLenum pname :
         {GL_POINT_SIZE_MIN, GL_POINT_SIZE_MAX, GL_POINT_FADE_THRESHOLD_SIZE, GL_POINT_DISTANCE_ATTENUATION}) {
        expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glPointParameterf(pname, -0.001f); });
        expectAccepted([&] { glPointParameterf(pname, 0.0f); });
    }
    ctx->dirty = 0;
    for (uint32_t i = 0; i < 3; ++i) {
        GLfloat coefficients[3] = {1, 1, 1};
        coefficients[i] = -1;
        expectOnlyError(ctx, GL_INVALID_VALUE,
                        [&] { glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, coefficients); });
    }
}

TEST_F(Points, NaNParametersAreStored)
{
    glPointParameterf(GL_POINT_SIZE_MAX, kNaN);
    EXPECT_TRUE(std::isnan(ctx->pointLine.pointSizeMax));
    const GLfloat coefficients[3] = {1, kNaN, 0};
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, coefficients);
    EXPECT_EQ(ctx->pointLine.attenuationActive, 1u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Points, EverySuccessMarksThePoints)
{
    for (const GLenum pname :
         {GL_POINT_SIZE_MIN, GL_POINT_SIZE_MAX, GL_POINT_FADE_THRESHOLD_SIZE, GL_POINT_DISTANCE_ATTENUATION}) {
        ctx->dirty = 0;
        glPointParameterf(pname, 2.0f);
        EXPECT_EQ(ctx->dirty, 0x8000u);
    }
    EXPECT_EQ(ctx->pointLine.pointFadeThreshold, 2.0f);
}

TEST_F(Points, AnUnknownNameIsInvalidEnumAndStillMarksThePoints)
{
    for (const GLenum pname : {0x8125, 0x812A}) {
        ctx->dirty = 0;
        glPointParameterf(pname, -1.0f);
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
        EXPECT_EQ(ctx->dirty, 0x8000u);
    }
    glPointParameterxv(0x8125, nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
}

TEST_F(Points, AttenuationIsActiveUnlessItIsOneZeroZero)
{
    struct Case {
        GLfloat coefficients[3];
        uint32_t active;
        uint32_t change; // LightingChange bits
    };
    const Case cases[] = {{{1, 0, 0}, 0, 0},     {{1, 0, 0.5f}, 1, 0x18}, {{0, 0, 0}, 1, 0},
                          {{1, 0.25f, 0}, 1, 0}, {{1, 0, 0}, 0, 0x18},    {{2, 0, 0}, 1, 0x18}};
    for (const Case &c : cases) {
        ctx->lighting.change = 0;
        glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, c.coefficients);
        EXPECT_EQ(values(ctx->pointLine.distanceAttenuation), values(c.coefficients));
        EXPECT_EQ(ctx->pointLine.attenuationActive, c.active);
        EXPECT_EQ(ctx->lighting.change, c.change);
    }
}

TEST_F(Points, FixedFormsDivideBy65536)
{
    const GLfixed coefficients[3] = {0x8000, 0x10000, 0x20000};
    glPointParameterxv(GL_POINT_DISTANCE_ATTENUATION, coefficients);
    EXPECT_EQ(values(ctx->pointLine.distanceAttenuation), (Vec3{0.5f, 1, 2}));
    glPointParameterx(GL_POINT_SIZE_MAX, 5 << 16);
    EXPECT_EQ(ctx->pointLine.pointSizeMax, 5.0f);
    const GLfixed one = 0x18000;
    glPointParameterxv(GL_POINT_FADE_THRESHOLD_SIZE, &one);
    EXPECT_EQ(ctx->pointLine.pointFadeThreshold, 1.5f);
}

TEST_F(Points, AreInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glLineWidth(-1); },
                              [] { glPointSize(-1); },
                              [] { glPointSizex(0); },
                              [] { glPointSizePointerOES(0, -1, nullptr); },
                              [] { glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, nullptr); },
                              [] { glPointParameterxv(GL_POINT_DISTANCE_ATTENUATION, nullptr); },
                              [] { glPointParameterf(0, 0); },
                              [] { glPointParameterx(0, 0); },
                          });
}
