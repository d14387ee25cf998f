// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class Fog : public StateTest {};

} // namespace

TEST_F(Fog, StartsAsTheStandardSays)
{
    EXPECT_EQ(ctx->fog.enabled, 0u);
    EXPECT_EQ(ctx->fog.mode, GLenum(GL_EXP));
    EXPECT_EQ(ctx->fog.coordSource, 0x8452u);
    EXPECT_EQ(ctx->fog.density, 1.0f);
    EXPECT_EQ(ctx->fog.start, 0.0f);
    EXPECT_EQ(ctx->fog.end, 1.0f);
    EXPECT_EQ(values(ctx->fog.color), (Vec4{0, 0, 0, 0}));
}

TEST_F(Fog, DensityMayNotBeNegative)
{
    expectAccepted([] { glFogf(GL_FOG_DENSITY, 0.0f); });
    expectAccepted([] { glFogf(GL_FOG_DENSITY, 2.5f); });
    EXPECT_EQ(ctx->fog.density, 2.5f);
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_FOG));
    ctx->dirty = 0;
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFogf(GL_FOG_DENSITY, -0.001f); });
    expectAccepted([] { glFogf(GL_FOG_DENSITY, kNaN); });
    EXPECT_TRUE(std::isnan(ctx->fog.density));
}

TEST_F(Fog, EverySuccessMarksTheFog)
{
    const struct {
        GLenum pname;
        GLfloat value;
    } cases[] = {{GL_FOG_DENSITY, 1},   {GL_FOG_START, 1}, {GL_FOG_END, 1},
                 {GL_FOG_MODE, GL_EXP}, {GL_FOG_COLOR, 1}, {0x8450, 0x8452}};
    for (const auto &c : cases) {
        ctx->dirty = 0;
        glFogf(c.pname, c.value);
        EXPECT_EQ(ctx->dirty, 0x10000u) << std::hex << c.pname;
    }
}

TEST_F(Fog, EachParameterIsKeptApart)
{
    const GLfloat color[4] = {5, 6, 7, 8};
    glFogf(GL_FOG_END, 4.0f);
    glFogf(GL_FOG_START, 3.0f);
    glFogf(GL_FOG_DENSITY, 2.0f);
    EXPECT_EQ(ctx->fog.density, 2.0f);
    EXPECT_EQ(ctx->fog.start, 3.0f);
    EXPECT_EQ(ctx->fog.end, 4.0f);
    EXPECT_EQ(values(ctx->fog.color), (Vec4{0, 0, 0, 0}));
    glFogfv(GL_FOG_COLOR, color);
    EXPECT_EQ(values(ctx->fog.color), (Vec4{5, 6, 7, 8}));
    EXPECT_EQ(ctx->fog.mode, GLenum(GL_EXP));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Fog, StartAndEndMayBeNegative)
{
    expectAccepted([] { glFogf(GL_FOG_START, -4.0f); });
    expectAccepted([] { glFogf(GL_FOG_END, -2.0f); });
    EXPECT_EQ(ctx->fog.start, -4.0f);
    EXPECT_EQ(ctx->fog.end, -2.0f);
}

TEST_F(Fog, ColorIsNotClamped)
{
    const GLfloat color[4] = {-1, 2, 0.5f, 3};
    glFogfv(GL_FOG_COLOR, color);
    EXPECT_EQ(values(ctx->fog.color), (Vec4{-1, 2, 0.5f, 3}));
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_FOG));
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(Fog, ModeIsTruncatedBeforeItIsChecked)
{
    struct Case {
        GLfloat value;
        GLenum mode; // 0: refused
    };
    const Case cases[] = {{2048, GL_EXP}, {2048.9f, GL_EXP}, {2049.7f, GL_EXP2}, {2050, 0},
                          {2047.9f, 0},   {9729, GL_LINEAR}, {9730, 0},          {9728.9f, 0},
                          {-2048, 0},     {kNaN, 0},         {1e20f, 0}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.value);
        if (c.mode != 0) {
            expectAccepted([&] { glFogf(GL_FOG_MODE, c.value); });
            EXPECT_EQ(ctx->fog.mode, c.mode);
        } else {
            expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glFogf(GL_FOG_MODE, c.value); });
        }
    }
}

TEST_F(Fog, KeyFollowsModeAndEnable)
{
    glFogf(GL_FOG_MODE, GL_LINEAR);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_NONE));
    glEnable(GL_FOG);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_LINEAR));
    glFogf(GL_FOG_MODE, GL_EXP);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_EXP));
    glFogf(GL_FOG_MODE, GL_EXP2);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_EXP2));
    glDisable(GL_FOG);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_NONE));
}

TEST_F(Fog, KeyFollowsTheCoordinateSourceWhileEnabled)
{
    glFogf(0x8450, 0x8451);
    EXPECT_EQ(ctx->fog.coordSource, 0x8451u);
    EXPECT_EQ(ctx->key.fogCoordinate, 0u);
    glEnable(GL_FOG);
    EXPECT_EQ(ctx->key.fogCoordinate, 1u);
    glFogf(0x8450, 0x8452);
    EXPECT_EQ(ctx->key.fogCoordinate, 0u);
    for (const GLfloat bad : {GLfloat(0x8450), GLfloat(0x8453)})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glFogf(0x8450, bad); });
}

TEST_F(Fog, AnUnknownStoredModeIsAnAssertionAndNoFog)
{
    ctx->fog.enabled = 1;
    ctx->fog.mode = GL_ADD;
    updateFogKey(ctx);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_NONE));
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{"fog mode"});
}

TEST_F(Fog, UnknownNamesAreInvalidEnum)
{
    for (const GLenum pname : {0x0B61, 0x0B67, 0x8451})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glFogf(pname, 1.0f); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glFogxv(0x0B61, nullptr); });
}

TEST_F(Fog, FixedFormsDivideNumbersAndKeepEnums)
{
    glFogx(GL_FOG_DENSITY, 0x8000);
    glFogx(GL_FOG_START, -0x10000);
    glFogx(GL_FOG_END, 0x30000);
    const GLfixed color[4] = {0x10000, 0x4000, 0, 0x8000};
    glFogxv(GL_FOG_COLOR, color);
    glFogx(GL_FOG_MODE, GL_LINEAR);
    glFogx(0x8450, 0x8451);
    EXPECT_EQ(ctx->fog.density, 0.5f);
    EXPECT_EQ(ctx->fog.start, -1.0f);
    EXPECT_EQ(ctx->fog.end, 3.0f);
    EXPECT_EQ(values(ctx->fog.color), (Vec4{1, 0.25f, 0, 0.5f}));
    EXPECT_EQ(ctx->fog.mode, GLenum(GL_LINEAR));
    EXPECT_EQ(ctx->fog.coordSource, 0x8451u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFogx(GL_FOG_DENSITY, -1); });
}

TEST_F(Fog, ScalarFormOfTheColorSetsItsRed)
{
    glFogf(GL_FOG_COLOR, 0.5f);
    EXPECT_EQ(values(ctx->fog.color), (Vec4{0.5f, 0, 0, 0}));
    glFogx(GL_FOG_COLOR, 0x4000);
    EXPECT_EQ(values(ctx->fog.color), (Vec4{0.25f, 0, 0, 0}));
}

TEST_F(Fog, IsInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glFogfv(GL_FOG_COLOR, nullptr); },
                              [] { glFogxv(GL_FOG_COLOR, nullptr); },
                              [] { glFogf(GL_FOG_DENSITY, -1); },
                              [] { glFogx(0, 0); },
                          });
}
