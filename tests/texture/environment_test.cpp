// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class TexEnv : public StateTest {
protected:
    const TexEnvState &env(uint32_t unit = 0) const
    {
        return ctx->texEnv[unit];
    }
    void expectEnvironmentMarks(uint32_t unit = 0)
    {
        EXPECT_EQ(ctx->dirty, 0x1000u << unit);
        EXPECT_EQ(ctx->keyDirty, 1u << unit);
        clearMarks(ctx);
    }
};

class TexGen : public StateTest {};

} // namespace

TEST_F(TexEnv, StartsAsModulateWithTheUnitsOwnTextureByNumber)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        const TexEnvState &e = env(unit);
        EXPECT_EQ(e.coordReplace, 0u);
        EXPECT_EQ(values(e.scale), (Vec4{1, 1, 1, 1}));
        EXPECT_EQ(values(e.color), (Vec4{0, 0, 0, 0}));
        EXPECT_EQ(e.mode, GLenum(GL_MODULATE));
        EXPECT_EQ(e.combineRgb, GLenum(GL_MODULATE));
        EXPECT_EQ(e.combineAlpha, GLenum(GL_MODULATE));
        for (const GLenum *source : {e.srcRgb, e.srcAlpha}) {
            EXPECT_EQ(source[0], GL_TEXTURE0 + unit);
            EXPECT_EQ(source[1], GLenum(GL_PREVIOUS));
            EXPECT_EQ(source[2], GLenum(GL_CONSTANT));
        }
        EXPECT_EQ(e.operandRgb[0], GLenum(GL_SRC_COLOR));
        EXPECT_EQ(e.operandRgb[1], GLenum(GL_SRC_COLOR));
        EXPECT_EQ(e.operandRgb[2], GLenum(GL_SRC_ALPHA));
        for (const GLenum operand : e.operandAlpha)
            EXPECT_EQ(operand, GLenum(GL_SRC_ALPHA));
        EXPECT_EQ(ctx->texGen[unit].mode, GLenum(GL_NORMAL_MAP_OES));
    }
    EXPECT_EQ(ctx->current.activeUnit, 0u);
    EXPECT_EQ(ctx->error, GLenum(GL_NO_ERROR));
}

TEST_F(TexEnv, AcceptsTheSixModes)
{
    for (const GLenum mode : {GL_REPLACE, GL_ADD, GL_BLEND, GL_MODULATE, GL_DECAL, GL_COMBINE}) {
        expectAccepted([&] { glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, static_cast<GLint>(mode)); });
        EXPECT_EQ(env().mode, mode);
        expectEnvironmentMarks();
    }
    expectAccepted([] { glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE + 0.75f); });
    EXPECT_EQ(env().mode, GLenum(GL_REPLACE));
}

TEST_F(TexEnv, TheSameModeStillMarks)
{
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    expectEnvironmentMarks();
}

TEST_F(TexEnv, RefusedValuesLeaveTheStateButMark)
{
    struct Case {
        GLenum pname;
        GLenum value;
    };
    const Case cases[] = {
        {GL_TEXTURE_ENV_MODE, GL_SUBTRACT},
        {GL_TEXTURE_ENV_MODE, 0},
        {GL_COMBINE_RGB, GL_DECAL},
        {GL_COMBINE_RGB, GL_DOT3_RGBA + 1},
        {GL_COMBINE_ALPHA, GL_DOT3_RGB},
        {GL_COMBINE_ALPHA, GL_DOT3_RGBA},
        {GL_SRC0_RGB, GL_TEXTURE0 - 1},
        {GL_SRC1_ALPHA, GL_TEXTURE0 + 2},
        {GL_SRC2_RGB, GL_CONSTANT - 1},
        {GL_SRC0_ALPHA, GL_PREVIOUS + 1},
        {GL_OPERAND0_RGB, GL_ONE_MINUS_SRC_ALPHA + 1},
        {GL_OPERAND2_RGB, 1},
        {GL_OPERAND1_ALPHA, GL_SRC_COLOR},
        {GL_OPERAND2_ALPHA, GL_ONE_MINUS_SRC_COLOR},
        {GL_TEXTURE_ENV, GL_MODULATE},
        {GL_COORD_REPLACE_OES, 1},
        {0x857F, GL_TEXTURE},
        {0x8583, GL_TEXTURE},
        {0x8587, GL_TEXTURE},
        {0x858B, GL_TEXTURE},
        {0x858F, GL_SRC_ALPHA},
        {0x8593, GL_SRC_ALPHA},
        {0x8597, GL_SRC_ALPHA},
        {0x859B, GL_SRC_ALPHA},
    };
    glActiveTexture(GL_TEXTURE1);
    clearMarks(ctx);
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.pname << " " << c.value);
        const TexEnvState before = env(1);
        glTexEnvi(GL_TEXTURE_ENV, c.pname, static_cast<GLint>(c.value));
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
        EXPECT_EQ(std::memcmp(&before, &env(1), sizeof(before)), 0);
        expectEnvironmentMarks(1);
    }
}

TEST_F(TexEnv, CombinerParametersTakeEveryValueOfTheirSet)
{
    const std::vector<GLenum> alphaFunctions = {GL_REPLACE,    GL_MODULATE,    GL_ADD,
                                                GL_ADD_SIGNED, GL_INTERPOLATE, GL_SUBTRACT};
    std::vector<GLenum> rgbFunctions = alphaFunctions;
    rgbFunctions.insert(rgbFunctions.end(), {GL_DOT3_RGB, GL_DOT3_RGBA});
    const std::vector<GLenum> sources = {GL_TEXTURE,  GL_TEXTURE0,      GL_TEXTURE1,
                                         GL_CONSTANT, GL_PRIMARY_COLOR, GL_PREVIOUS};
    const std::vector<GLenum> alphaOperands = {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA};
    const std::vector<GLenum> rgbOperands = {GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR, GL_SRC_ALPHA,
                                             GL_ONE_MINUS_SRC_ALPHA};
    TexEnvState &e = ctx->texEnv[0];
    struct Case {
        GLenum pname;
        const std::vector<GLenum> &accepted;
        const GLenum &place;
    };
    const Case cases[] = {
        {GL_COMBINE_RGB, rgbFunctions, e.combineRgb},
        {GL_COMBINE_ALPHA, alphaFunctions, e.combineAlpha},
        {GL_SRC0_RGB, sources, e.srcRgb[0]},
        {GL_SRC1_RGB, sources, e.srcRgb[1]},
        {GL_SRC2_RGB, sources, e.srcRgb[2]},
        {GL_SRC0_ALPHA, sources, e.srcAlpha[0]},
        {GL_SRC1_ALPHA, sources, e.srcAlpha[1]},
        {GL_SRC2_ALPHA, sources, e.srcAlpha[2]},
        {GL_OPERAND0_RGB, rgbOperands, e.operandRgb[0]},
        {GL_OPERAND1_RGB, rgbOperands, e.operandRgb[1]},
        {GL_OPERAND2_RGB, rgbOperands, e.operandRgb[2]},
        {GL_OPERAND0_ALPHA, alphaOperands, e.operandAlpha[0]},
        {GL_OPERAND1_ALPHA, alphaOperands, e.operandAlpha[1]},
        {GL_OPERAND2_ALPHA, alphaOperands, e.operandAlpha[2]},
    };
    for (const Case &c : cases) {
        for (const GLenum value : c.accepted) {
            SCOPED_TRACE(testing::Message() << std::hex << c.pname << " " << value);
            expectAccepted([&] { glTexEnvi(GL_TEXTURE_ENV, c.pname, static_cast<GLint>(value)); });
            EXPECT_EQ(c.place, value);
            expectEnvironmentMarks();
        }
    }
}

TEST_F(TexEnv, ScalesTakeAnyFloat)
{
    for (const GLfloat scale : {3.0f, -0.5f, 0.0f, 4.0f}) {
        expectAccepted([&] { glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, scale); });
        EXPECT_EQ(env().scale[0], scale);
        EXPECT_EQ(env().scale[1], scale);
        EXPECT_EQ(env().scale[2], scale);
        EXPECT_EQ(env().scale[3], 1.0f);
    }
    glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, 2.0f);
    EXPECT_EQ(env().scale[3], 2.0f);
    expectEnvironmentMarks();
    glTexEnvi(GL_TEXTURE_ENV, GL_RGB_SCALE, 4);
    EXPECT_EQ(env().scale[0], 4.0f);
    glTexEnvx(GL_TEXTURE_ENV, GL_ALPHA_SCALE, 0x8000);
    EXPECT_EQ(env().scale[3], 0.5f);
}

TEST_F(TexEnv, ColorIsClampedAndMarksOnce)
{
    const GLfloat color[4] = {-0.5f, 1.5f, 0.25f, kNaN};
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, color);
    EXPECT_EQ(values(env().color), (Vec4{0, 1, 0.25f, 1}));
    expectEnvironmentMarks();
}

TEST_F(TexEnv, IntegerColorsConvertByValue)
{
    const GLint color[4] = {128, 0, -5, 1};
    glTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, color);
    EXPECT_EQ(values(env().color), (Vec4{1, 0, 0, 1}));
}

TEST_F(TexEnv, FixedColorsDivideAllFourComponentsAndEnumsStay)
{
    const GLfixed color[4] = {0x8000, 0x4000, 0, 0x20000};
    glTexEnvxv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, color);
    EXPECT_EQ(values(env().color), (Vec4{0.5f, 0.25f, 0, 1}));
    const GLfixed mode = GL_DECAL;
    glTexEnvxv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &mode);
    EXPECT_EQ(env().mode, GLenum(GL_DECAL));
    glTexEnvx(GL_TEXTURE_ENV, GL_SRC1_RGB, GL_PRIMARY_COLOR);
    EXPECT_EQ(env().srcRgb[1], GLenum(GL_PRIMARY_COLOR));
}

TEST_F(TexEnv, ScalarFormsOfTheColorSetItsRed)
{
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, 0.5f);
    EXPECT_EQ(values(env().color), (Vec4{0.5f, 0, 0, 0}));
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, 1);
    EXPECT_EQ(values(env().color), (Vec4{1, 0, 0, 0}));
    glTexEnvx(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, 0x4000);
    EXPECT_EQ(values(env().color), (Vec4{0.25f, 0, 0, 0}));
}

TEST_F(TexEnv, CoordReplaceIsKeptPerUnitAndMarksTheTransformWhenItChanges)
{
    glActiveTexture(GL_TEXTURE1);
    clearMarks(ctx);
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 1);
    EXPECT_EQ(env(1).coordReplace, 1u);
    EXPECT_EQ(env(0).coordReplace, 0u);
    EXPECT_EQ(ctx->dirty, 0x8000u);
    EXPECT_EQ(ctx->keyDirty, 0u);
    EXPECT_EQ(ctx->transform.uniformDirty, 0x18u);

    clearMarks(ctx);
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 1);
    EXPECT_EQ(ctx->dirty, 0x8000u);
    EXPECT_EQ(ctx->transform.uniformDirty, 0u);
}

TEST_F(TexEnv, CoordReplaceTruncatesAndTakesNegativesAsZero)
{
    glTexEnvf(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 2.9f);
    EXPECT_EQ(env().coordReplace, 2u);
    glTexEnvf(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 0.9f);
    EXPECT_EQ(env().coordReplace, 0u);
    glTexEnvf(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 1.0f);
    glTexEnvf(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, -3.0f);
    EXPECT_EQ(env().coordReplace, 0u);
    glTexEnvf(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 1e20f);
    EXPECT_EQ(env().coordReplace, 0xFFFFFFFFu);
}

TEST_F(TexEnv, BadTargetsAreInvalidEnumWithTheirOwnMarks)
{
    glTexEnvi(GL_POINT_SPRITE_OES, GL_TEXTURE_ENV_MODE, GL_DECAL);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(ctx->dirty, 0x8000u);
    EXPECT_EQ(ctx->keyDirty, 0u);
    clearMarks(ctx);
    glTexEnvi(GL_TEXTURE_2D, GL_TEXTURE_ENV_MODE, GL_DECAL);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(env().mode, GLenum(GL_MODULATE));
    expectEnvironmentMarks();
}

TEST_F(TexEnv, IsInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, nullptr); },
                              [] { glTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, nullptr); },
                              [] { glTexEnvxv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, nullptr); },
                              [] { glTexEnvf(0, 0, 0); },
                              [] { glTexEnvi(0, 0, 0); },
                              [] { glTexEnvx(0, 0, 0); },
                              [] { glTexGenivOES(0, 0, nullptr); },
                              [] { glTexGenfvOES(0, 0, nullptr); },
                              [] { glTexGenxvOES(0, 0, nullptr); },
                              [] { glTexGeniOES(0, 0, 0); },
                              [] { glTexGenfOES(0, 0, 0); },
                              [] { glTexGenxOES(0, 0, 0); },
                          });
}

TEST_F(TexGen, ModeIsPerUnitAndMarksOnlyChanges)
{
    glActiveTexture(GL_TEXTURE1);
    clearMarks(ctx);
    glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES);
    EXPECT_EQ(ctx->texGen[1].mode, GLenum(GL_REFLECTION_MAP_OES));
    EXPECT_EQ(ctx->texGen[0].mode, GLenum(GL_NORMAL_MAP_OES));
    EXPECT_EQ(ctx->keyDirty, 8u);
    clearMarks(ctx);
    glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES);
    EXPECT_EQ(ctx->keyDirty, 0u);
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(TexGen, AllFormsTakeTheEnumAsItIs)
{
    const GLfloat reflectionFloat = GL_REFLECTION_MAP_OES + 0.9f;
    const GLfixed normal = GL_NORMAL_MAP_OES;
    glTexGenfvOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &reflectionFloat);
    EXPECT_EQ(ctx->texGen[0].mode, GLenum(GL_REFLECTION_MAP_OES));
    glTexGenxvOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &normal);
    EXPECT_EQ(ctx->texGen[0].mode, GLenum(GL_NORMAL_MAP_OES));
    glTexGenfOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES);
    EXPECT_EQ(ctx->texGen[0].mode, GLenum(GL_REFLECTION_MAP_OES));
    glTexGenxOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_NORMAL_MAP_OES);
    EXPECT_EQ(ctx->texGen[0].mode, GLenum(GL_NORMAL_MAP_OES));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TexGen, BadArgumentsAreInvalidEnum)
{
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glTexGeniOES(0x2000, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glTexGeniOES(GL_TEXTURE_GEN_STR_OES, 0x2501, GL_REFLECTION_MAP_OES); });
    for (const GLint mode : {0x8510, 0x8513, 0x2400})
        expectOnlyError(ctx, GL_INVALID_ENUM,
                        [&] { glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, mode); });
}
