// SPDX-License-Identifier: MIT
#include "shadergen/pipeline/pipeline_test.h"

#include <bit>
#include <cstring>

namespace {

class TextureKey : public PipelineTest {
protected:
    void enableUnit(uint32_t unit)
    {
        glActiveTexture(GL_TEXTURE0 + unit);
        glEnable(GL_TEXTURE_2D);
    }
    void setTexCoordSize(uint32_t unit, GLint size)
    {
        glClientActiveTexture(GL_TEXTURE0 + unit);
        glTexCoordPointer(size, GL_FLOAT, 0, nullptr);
    }
    void loadTextureMatrix(uint32_t unit, const Matrix16 &matrix)
    {
        glActiveTexture(GL_TEXTURE0 + unit);
        glMatrixMode(GL_TEXTURE);
        glLoadMatrixf(matrix.m);
    }
    static bool isZero(const CombineBlock &block)
    {
        constexpr CombineBlock kZero = {};
        return std::memcmp(&block, &kZero, sizeof(kZero)) == 0;
    }
};

class LightingKey : public PipelineTest {};
class OutputKey : public PipelineTest {};

} // namespace

TEST_F(TextureKey, TexGenFollowsModeAndEnable)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        enableUnit(unit);
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.unit[unit].texGen, uint32_t(TEXGEN_NONE));
        EXPECT_EQ(ctx->key.noTexGen, 1u);
        glEnable(GL_TEXTURE_GEN_STR_OES);
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.unit[unit].texGen, uint32_t(TEXGEN_NORMAL_MAP));
        EXPECT_EQ(ctx->key.noTexGen, 0u);
        glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES);
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.unit[unit].texGen, uint32_t(TEXGEN_REFLECTION_MAP));
        glDisable(GL_TEXTURE_GEN_STR_OES);
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.unit[unit].texGen, uint32_t(TEXGEN_NONE));
        EXPECT_EQ(ctx->key.noTexGen, 1u);
    }
}

TEST_F(TextureKey, UnknownTexGenModeIsAnAssertionAndNone)
{
    enableUnit(0);
    ctx->enables.texGen[0] = 1;
    ctx->texGen[0].mode = GL_REFLECTION_MAP_OES + 1;
    deriveShaderState(ctx);
    EXPECT_EQ(takeAssertions().size(), 1u);
    EXPECT_EQ(ctx->key.unit[0].texGen, uint32_t(TEXGEN_NONE));
}

TEST_F(TextureKey, MatrixFormAndProjectionFollowTheMatrix)
{
    struct Case {
        const char *label;
        Matrix16 matrix;
        uint32_t form;
        uint32_t projective; // with two components; with four it is always 1
    };
    const Case cases[] = {
        {"loaded identity", kIdentity, TEX_MATRIX_IDENTITY, 0},
        {"scale of x", identityWith(0, 2), TEX_MATRIX_SCALE, 0},
        {"scale of z", identityWith(10, 0.5f), TEX_MATRIX_SCALE, 0},
        {"scale by zero", identityWith(5, 0), TEX_MATRIX_SCALE, 0},
        {"scale of q", identityWith(15, 2), TEX_MATRIX_GENERAL, 1},
        {"translation of x", identityWith(12, 3), TEX_MATRIX_TWO_COORDS, 0},
        {"translation of z", identityWith(14, 3), TEX_MATRIX_TWO_COORDS, 0},
        {"y into x", identityWith(4, 1), TEX_MATRIX_GENERAL, 0},
        {"z into y", identityWith(9, 1), TEX_MATRIX_GENERAL, 0},
        {"x into q", identityWith(3, 1), TEX_MATRIX_GENERAL, 1},
        {"y into q", identityWith(7, 1), TEX_MATRIX_GENERAL, 1},
        {"z into q", identityWith(11, 1), TEX_MATRIX_GENERAL, 1},
        {"loaded identity after others", kIdentity, TEX_MATRIX_IDENTITY, 0},
    };
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        enableUnit(unit);
        for (const Case &c : cases) {
            SCOPED_TRACE(std::string(c.label) + ", unit " + std::to_string(unit));
            loadTextureMatrix(unit, c.matrix);
            for (const GLint size : {2, 3, 4}) {
                setTexCoordSize(unit, size);
                deriveShaderState(ctx);
                EXPECT_EQ(ctx->key.unit[unit].texMatrixForm, c.form);
                EXPECT_EQ(ctx->key.unit[unit].projective, size == 4 ? 1u : c.projective) << size << " components";
            }
        }
    }
}

TEST_F(TextureKey, FlaggedIdentityIsNeverProjective)
{
    enableUnit(0);
    loadTextureMatrix(0, identityWith(3, 1));
    setTexCoordSize(0, 4);
    deriveShaderState(ctx);
    ASSERT_EQ(ctx->key.unit[0].projective, 1u);
    glLoadIdentity();
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.unit[0].texMatrixForm, uint32_t(TEX_MATRIX_IDENTITY));
    EXPECT_EQ(ctx->key.unit[0].projective, 0u);
}

TEST_F(TextureKey, OnlyMarkedPartsAreDerivedAndEveryMarkIsConsumed)
{
    enableUnit(0);
    enableUnit(1);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->keyDirty, 0u);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        ctx->texEnv[unit].mode = GL_DECAL;
        ctx->enables.texGen[unit] = 1;
        ctx->transform.top[STACK_TEXTURE0 + unit]->flags = MATRIX_FLOAT;
        ctx->transform.top[STACK_TEXTURE0 + unit]->f[0] = 2;
    }
    ctx->alphaTest = {.enabled = 1, .func = GL_LESS, .ref = 0};
    for (uint32_t bit = 0; bit < 7; ++bit) {
        SCOPED_TRACE("mark " + std::to_string(bit));
        const ShaderStateBitfield before = ctx->key;
        ctx->keyDirty = static_cast<uint8_t>(1u << bit);
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->keyDirty, 0u);
        EXPECT_EQ(ctx->key.combine[0].envRgb, uint32_t(ENV_DECAL));
        EXPECT_EQ(ctx->key.combine[1].envRgb, bit >= 1 ? uint32_t(ENV_DECAL) : uint32_t(ENV_MODULATE));
        EXPECT_EQ(ctx->key.unit[0].texGen, bit >= 2 ? uint32_t(TEXGEN_NORMAL_MAP) : uint32_t(TEXGEN_NONE));
        EXPECT_EQ(ctx->key.unit[1].texGen, bit >= 3 ? uint32_t(TEXGEN_NORMAL_MAP) : uint32_t(TEXGEN_NONE));
        EXPECT_EQ(ctx->key.unit[0].texMatrixForm, bit >= 4 ? uint32_t(TEX_MATRIX_SCALE) : uint32_t(0));
        EXPECT_EQ(ctx->key.unit[1].texMatrixForm, bit >= 5 ? uint32_t(TEX_MATRIX_SCALE) : uint32_t(0));
        EXPECT_EQ(ctx->key.alphaFunc, bit >= 6 ? 2u : 0u);
        EXPECT_NE(std::memcmp(&before, &ctx->key, sizeof(before)), 0);
    }
}

TEST_F(TextureKey, DisabledUnitKeepsFourBitsOfItsWord)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        std::memset(&ctx->key.combine[unit], 0xFF, sizeof(CombineBlock));
        ctx->key.unit[unit] = std::bit_cast<TextureUnitKey>(0xFFFFFFFEu);
    }
    deriveShaderState(ctx);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        EXPECT_TRUE(isZero(ctx->key.combine[unit]));
        EXPECT_EQ(std::bit_cast<uint32_t>(ctx->key.unit[unit]), 0x86u);
    }
}

TEST_F(TextureKey, TurningAUnitOffDropsItFromTheKeyWithoutAnyOtherChange)
{
    enableUnit(1);
    glEnable(GL_TEXTURE_GEN_STR_OES);
    loadTextureMatrix(1, identityWith(12, 3));
    deriveShaderState(ctx);
    ASSERT_FALSE(isZero(ctx->key.combine[1]));
    ASSERT_EQ(ctx->key.noTexGen, 0u);
    ASSERT_EQ(ctx->key.eyeCoordinates, 1u);

    glDisable(GL_TEXTURE_2D);
    deriveShaderState(ctx);
    EXPECT_TRUE(isZero(ctx->key.combine[1]));
    EXPECT_EQ(ctx->key.unit[1].texGen, 0u);
    EXPECT_EQ(ctx->key.unit[1].texMatrixForm, 0u);
    EXPECT_EQ(ctx->key.noTexGen, 1u);
    EXPECT_EQ(ctx->key.eyeCoordinates, 0u);
}

TEST_F(TextureKey, KeysThatDifferInADisabledUnitAreEqual)
{
    enableUnit(1);
    deriveShaderState(ctx);
    glDisable(GL_TEXTURE_2D);
    deriveShaderState(ctx);
    const ShaderStateBitfield modulate = ctx->key;
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, GL_SUBTRACT);
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, 4);
    deriveShaderState(ctx);
    EXPECT_EQ(std::memcmp(&modulate, &ctx->key, sizeof(modulate)), 0);
}

TEST_F(TextureKey, UnitTurnedOnAgainIsDerivedWhole)
{
    enableUnit(0);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    loadTextureMatrix(0, identityWith(0, 2));
    deriveShaderState(ctx);
    const ShaderStateBitfield before = ctx->key;
    glDisable(GL_TEXTURE_2D);
    deriveShaderState(ctx);
    glEnable(GL_TEXTURE_2D);
    deriveShaderState(ctx);
    EXPECT_EQ(std::memcmp(&before, &ctx->key, sizeof(before)), 0);
}

TEST_F(TextureKey, ClassicEnvironmentsHaveTheirCodeAndNoCombineFields)
{
    const std::pair<GLenum, uint32_t> modes[] = {
        {GL_MODULATE, 1}, {GL_DECAL, 2}, {GL_ADD, 3}, {GL_BLEND, 4}, {GL_REPLACE, 5},
    };
    const std::pair<GLenum, uint32_t> formats[] = {
        {GL_ALPHA, 0}, {GL_LUMINANCE, 1}, {GL_LUMINANCE_ALPHA, 2}, {GL_RGB, 3}, {GL_RGBA, 4},
    };
    enableUnit(0);
    ctx->texEnv[0].scale[0] = 2; // belongs to GL_COMBINE
    for (const auto &[mode, code] : modes) {
        for (const auto &[format, formatCode] : formats) {
            ctx->texEnv[0].mode = mode;
            ctx->bindings.unitFormat[0] = format;
            ctx->keyDirty = 1;
            deriveShaderState(ctx);
            CombineBlock expected = {};
            expected.envRgb = code & 0xF;
            expected.formatClass = formatCode & 7;
            EXPECT_EQ(std::memcmp(&ctx->key.combine[0], &expected, sizeof(expected)), 0)
                << "mode " << mode << ", format " << format;
        }
    }
}

TEST_F(TextureKey, CombineFunctionsHaveTheirCodes)
{
    const std::pair<GLenum, uint32_t> functions[] = {
        {GL_REPLACE, 6},      {GL_MODULATE, 7},  {GL_ADD, 8},       {GL_ADD_SIGNED, 9},
        {GL_INTERPOLATE, 10}, {GL_SUBTRACT, 11}, {GL_DOT3_RGB, 12}, {GL_DOT3_RGBA, 13},
    };
    enableUnit(1);
    ctx->texEnv[1].mode = GL_COMBINE;
    for (const auto &[rgb, rgbCode] : functions) {
        for (const auto &[alpha, alphaCode] : functions) {
            if (alphaCode > 11) continue; // no alpha function
            ctx->texEnv[1].combineRgb = rgb;
            ctx->texEnv[1].combineAlpha = alpha;
            ctx->keyDirty = 2;
            deriveShaderState(ctx);
            EXPECT_EQ(ctx->key.combine[1].envRgb, rgbCode);
            EXPECT_EQ(ctx->key.combine[1].envAlpha, alphaCode);
            EXPECT_EQ(ctx->key.combine[1].scaled, 0u);
        }
    }
}

TEST_F(TextureKey, CombineArgumentsHaveTheirCodes)
{
    const std::pair<GLenum, uint32_t> sources[] = {
        {GL_TEXTURE, 1}, {GL_TEXTURE0, 2}, {GL_TEXTURE1, 3}, {GL_CONSTANT, 4}, {GL_PRIMARY_COLOR, 5}, {GL_PREVIOUS, 6},
    };
    const std::pair<GLenum, uint32_t> operands[] = {
        {GL_SRC_ALPHA, 0},
        {GL_ONE_MINUS_SRC_ALPHA, 1},
        {GL_SRC_COLOR, 2},
        {GL_ONE_MINUS_SRC_COLOR, 3},
    };
    enableUnit(0);
    TexEnvState &env = ctx->texEnv[0];
    env.mode = GL_COMBINE;
    env.combineRgb = env.combineAlpha = GL_INTERPOLATE; // reads three arguments
    for (uint32_t place = 0; place < 3; ++place) {
        for (const auto &[source, sourceCode] : sources) {
            for (const auto &[operand, operandCode] : operands) {
                env.srcRgb[place] = source;
                env.operandRgb[place] = operand;
                env.srcAlpha[place] = source;
                env.operandAlpha[place] = operandCode < 2 ? operand : GLenum(GL_SRC_ALPHA);
                ctx->keyDirty = 1;
                deriveShaderState(ctx);
                const CombineBlock &block = ctx->key.combine[0];
                EXPECT_EQ(std::bit_cast<uint32_t>(block.rgbArg[place]), sourceCode << 2 | operandCode);
                EXPECT_EQ(std::bit_cast<uint32_t>(block.alphaArg[place]),
                          sourceCode << 2 | (operandCode < 2 ? operandCode : 0));
            }
        }
    }
}

TEST_F(TextureKey, ArgumentsThatNoFunctionReadsAreZero)
{
    struct Case {
        GLenum rgb, alpha;
        uint32_t arguments;
    };
    enableUnit(0);
    TexEnvState &env = ctx->texEnv[0];
    env.mode = GL_COMBINE;
    for (const Case c :
         {Case{GL_REPLACE, GL_REPLACE, 1}, Case{GL_REPLACE, GL_MODULATE, 2}, Case{GL_DOT3_RGB, GL_REPLACE, 2},
          Case{GL_INTERPOLATE, GL_REPLACE, 3}, Case{GL_REPLACE, GL_INTERPOLATE, 3}}) {
        env.combineRgb = c.rgb;
        env.combineAlpha = c.alpha;
        ctx->keyDirty = 1;
        deriveShaderState(ctx);
        for (uint32_t i = 0; i < 3; ++i) {
            EXPECT_EQ(ctx->key.combine[0].rgbArg[i].source != 0, i < c.arguments);
            EXPECT_EQ(ctx->key.combine[0].alphaArg[i].source != 0, i < c.arguments);
        }
    }
}

TEST_F(TextureKey, EitherScaleOtherThanOneScales)
{
    enableUnit(0);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
    for (const GLfloat rgb : {1.0f, 2.0f}) {
        for (const GLfloat alpha : {1.0f, 4.0f}) {
            glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, rgb);
            glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, alpha);
            deriveShaderState(ctx);
            EXPECT_EQ(ctx->key.combine[0].scaled, rgb != 1.0f || alpha != 1.0f ? 1u : 0u) << rgb << ", " << alpha;
        }
    }
}

TEST_F(TextureKey, ImpossibleEnvironmentValuesAreAssertions)
{
    enableUnit(0);
    const TexEnvState good = [this] {
        TexEnvState env = ctx->texEnv[0];
        env.mode = GL_COMBINE;
        return env;
    }();
    const auto deriveWith = [this](const TexEnvState &env) {
        ctx->texEnv[0] = env;
        ctx->keyDirty = 1;
        deriveShaderState(ctx);
        return takeAssertions().size();
    };
    EXPECT_EQ(deriveWith(good), 0u);
    TexEnvState env = good;
    env.mode = 1;
    EXPECT_EQ(deriveWith(env), 1u);
    env = good;
    env.combineRgb = 1;
    EXPECT_EQ(deriveWith(env), 1u);
    env = good;
    env.srcRgb[1] = 1;
    EXPECT_EQ(deriveWith(env), 1u);
    env = good;
    env.operandAlpha[0] = 1;
    EXPECT_EQ(deriveWith(env), 1u);
    ctx->bindings.unitFormat[0] = 1;
    EXPECT_EQ(deriveWith(good), 1u);
}

TEST_F(TextureKey, AlphaFunctionsHaveTheirCodes)
{
    const std::pair<GLenum, uint32_t> functions[] = {
        {GL_NEVER, 1},   {GL_LESS, 2},     {GL_EQUAL, 3},  {GL_LEQUAL, 4},
        {GL_GREATER, 5}, {GL_NOTEQUAL, 6}, {GL_GEQUAL, 7}, {GL_ALWAYS, 0},
    };
    for (const auto &[function, code] : functions) {
        for (const uint32_t enabled : {0u, 1u}) {
            ctx->alphaTest = {.enabled = enabled, .func = function, .ref = 0};
            ctx->keyDirty = KEY_DIRTY_ALPHA_TEST;
            deriveShaderState(ctx);
            EXPECT_EQ(ctx->key.alphaFunc, enabled ? code : 0) << function;
            EXPECT_EQ(ctx->keyDirty, 0u);
        }
    }
}

TEST_F(TextureKey, UnknownAlphaFunctionIsAnAssertionAndNone)
{
    for (const GLenum function : {GLenum(GL_NEVER - 1), GLenum(GL_ALWAYS + 1)}) {
        ctx->key.alphaFunc = 3;
        ctx->alphaTest = {.enabled = 1, .func = function, .ref = 0};
        ctx->keyDirty = KEY_DIRTY_ALPHA_TEST;
        deriveShaderState(ctx);
        EXPECT_EQ(takeAssertions().size(), 1u);
        EXPECT_EQ(ctx->key.alphaFunc, 0u);
    }
}

TEST_F(LightingKey, SummaryBitsFollowTheMasks)
{
    struct Case {
        const char *label;
        uint32_t directional, spot, zeroAmbient, zeroDiffuse, zeroSpecular;
        uint32_t bits; // directionalLight 1, pointLight 2, disableSpot 4, noAmbient 8, noDiffuse 16, noSpecular 32
    };
    const Case cases[] = {
        {"nothing enabled", 0, 0, 0xFF, 0xFF, 0xFF, 2 | 4 | 8 | 16 | 32},
        {"all directional", 0xFF, 0, 0, 0, 0, 1 | 4},
        {"seven directional", 0x7F, 0, 0, 0, 0, 4},
        {"light 7 directional", 0x80, 0, 0, 0, 0, 4},
        {"one spot", 0, 0x10, 0xFE, 0xFE, 0xFE, 2},
        {"ambient only", 0x01, 0, 0xFE, 0xFF, 0xFF, 4 | 16 | 32},
        {"diffuse only", 0x01, 0, 0xFF, 0x7F, 0xFF, 4 | 8 | 32},
        {"specular only", 0x01, 0, 0xFF, 0xFF, 0xFE, 4 | 8 | 16},
    };
    ctx->key.lighting = 1;
    LightingState &lighting = ctx->lighting;
    for (const Case &c : cases) {
        lighting.geometryDirty = lighting.colorDirty[0] = lighting.colorDirty[1] = lighting.sceneColorDirty = 0;
        lighting.directionalMask = c.directional;
        lighting.spotMask = c.spot;
        lighting.zeroAmbientMask = c.zeroAmbient;
        lighting.zeroDiffuseMask = c.zeroDiffuse;
        lighting.zeroSpecularMask = c.zeroSpecular;
        deriveShaderState(ctx);
        const ShaderStateBitfield &key = ctx->key;
        EXPECT_EQ(key.directionalLight | key.pointLight << 1 | key.disableSpot << 2 | key.noAmbient << 3 |
                      key.noDiffuse << 4 | key.noSpecular << 5,
                  c.bits)
            << c.label;
    }
}

TEST_F(LightingKey, DirectionalLightNeedsAllEightLights)
{
    enableLights(7);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.directionalLight, 0u);
    EXPECT_EQ(ctx->key.pointLight, 0u);
    glEnable(GL_LIGHT7);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.directionalLight, 1u);
    const GLfloat point[] = {0, 0, 1, 1};
    glLightfv(GL_LIGHT3, GL_POSITION, point);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.directionalLight, 0u);
}

TEST_F(LightingKey, PointLightIsSetWithoutAnyLight)
{
    enableLights(0);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.pointLight, 1u);
    EXPECT_EQ(ctx->key.disableSpot, 1u);
    EXPECT_EQ(ctx->key.lightCount, 0u);
}

TEST_F(LightingKey, SpotsAndPointsAreToldApartByTheCutoff)
{
    enableLights(1);
    const GLfloat point[] = {0, 0, 1, 1};
    glLightfv(GL_LIGHT0, GL_POSITION, point);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.disableSpot, 1u);
    EXPECT_EQ(ctx->lighting.lights[0].kind, LIGHT_POINT);
    glLightf(GL_LIGHT0, GL_SPOT_CUTOFF, 90);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.disableSpot, 0u);
    EXPECT_EQ(ctx->lighting.lights[0].kind, LIGHT_SPOT);
    glLightf(GL_LIGHT0, GL_SPOT_CUTOFF, 180);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.disableSpot, 1u);
}

TEST_F(LightingKey, NothingIsWorkedWhileLightingIsOff)
{
    glEnable(GL_LIGHT0);
    ctx->key.noDiffuse = 0;
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->lighting.geometryDirty, 0xFFu);
    EXPECT_EQ(ctx->lighting.sceneColorDirty, 1u);
    EXPECT_EQ(ctx->key.noDiffuse, 0u);
    glEnable(GL_LIGHTING);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->lighting.geometryDirty, 0u);
    EXPECT_EQ(ctx->lighting.colorDirty[0] | ctx->lighting.colorDirty[1], 0u);
    EXPECT_EQ(ctx->lighting.sceneColorDirty, 0u);
    EXPECT_EQ(ctx->lighting.directionalMask, 1u);
}

TEST_F(LightingKey, TwoSidedNeedsVertexColoursAndALightTerm)
{
    for (uint32_t bits = 0; bits < 32; ++bits) {
        const uint32_t lighting = bits & 1;
        const uint32_t twoSide = bits >> 1 & 1;
        const uint32_t vertexColor = bits >> 2 & 1;
        const uint32_t noDiffuse = bits >> 3 & 1;
        const uint32_t noSpecular = bits >> 4 & 1;
        ctx->key.lighting = lighting;
        ctx->key.perVertexColor = vertexColor;
        ctx->key.twoSided = 1;
        ctx->lighting.model.twoSide = twoSide;
        ctx->lighting.colorDirty[0] = ctx->lighting.colorDirty[1] = ctx->lighting.geometryDirty = 0;
        ctx->lighting.zeroDiffuseMask = noDiffuse ? 0xFF : 0xFE;
        ctx->lighting.zeroSpecularMask = noSpecular ? 0xFF : 0xFE;
        deriveShaderState(ctx);
        const bool expected = lighting && twoSide && vertexColor && !(noDiffuse && noSpecular);
        EXPECT_EQ(ctx->key.twoSided, expected ? 1u : 0u) << "combination " << bits;
    }
}

TEST_F(OutputKey, CoordinatesPackWhenBothUnitsNeedAtMostTwo)
{
    const auto prepare = [this] {
        start(false);
        for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
            glActiveTexture(GL_TEXTURE0 + unit);
            glClientActiveTexture(GL_TEXTURE0 + unit);
            glEnable(GL_TEXTURE_2D);
            glTexCoordPointer(2, GL_FLOAT, 0, nullptr);
        }
    };
    const auto packed = [this] {
        deriveShaderState(ctx);
        return ctx->key.packedTexCoords;
    };
    prepare();
    EXPECT_EQ(packed(), 1u);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        SCOPED_TRACE("unit " + std::to_string(unit));
        prepare();
        glActiveTexture(GL_TEXTURE0 + unit);
        glDisable(GL_TEXTURE_2D);
        EXPECT_EQ(packed(), 0u) << "disabled";
        for (const GLint size : {3, 4}) {
            prepare();
            glClientActiveTexture(GL_TEXTURE0 + unit);
            glTexCoordPointer(size, GL_FLOAT, 0, nullptr);
            EXPECT_EQ(packed(), 0u) << size << " components";
        }
        prepare();
        glActiveTexture(GL_TEXTURE0 + unit);
        glMatrixMode(GL_TEXTURE);
        glLoadMatrixf(identityWith(0, 2).m);
        EXPECT_EQ(packed(), 0u) << "matrix";
        prepare();
        glActiveTexture(GL_TEXTURE0 + unit);
        glEnable(GL_TEXTURE_CUBE_MAP_OES);
        EXPECT_EQ(packed(), 0u) << "cube map";
    }
}

TEST_F(OutputKey, EyeCoordinatesAreComputedWhenSomethingReadsThem)
{
    for (uint32_t bits = 0; bits < 16; ++bits) {
        const uint32_t attenuation = bits & 1;
        const uint32_t lighting = bits >> 1 & 1;
        const uint32_t noTexGen = bits >> 2 & 1;
        const uint32_t userClip = bits >> 3 & 1;
        ctx->keyDirty = 0;
        ctx->pointLine.attenuationActive = attenuation;
        ctx->key.lighting = lighting;
        ctx->key.noTexGen = noTexGen;
        ctx->key.userClip = userClip;
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.eyeCoordinates, attenuation || lighting || !noTexGen || userClip ? 1u : 0u) << bits;
    }
}

TEST_F(OutputKey, PointsSetTheirFieldsOnly)
{
    struct Case {
        uint32_t sprite, smooth, replace0, replace1;
        uint32_t expectedSmooth, expectedReplace;
    };
    for (const Case c : {Case{0, 0, 0, 0, 0, 0}, Case{0, 1, 0, 0, 1, 0}, Case{0, 1, 1, 1, 1, 0}, Case{1, 1, 0, 0, 0, 0},
                         Case{1, 0, 1, 0, 0, 1}, Case{1, 0, 0, 1, 0, 2}, Case{1, 1, 7, 256, 0, 3}}) {
        ctx->enables.pointSprite = c.sprite;
        ctx->enables.pointSmooth = c.smooth;
        ctx->enables.lineSmooth = 1;
        ctx->texEnv[0].coordReplace = c.replace0;
        ctx->texEnv[1].coordReplace = c.replace1;
        ctx->primitiveFlags = PRIMITIVE_POINTS;
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.pointSize, 1u);
        EXPECT_EQ(ctx->key.pointSmooth, c.expectedSmooth);
        EXPECT_EQ(ctx->key.pointSpriteReplace, c.expectedReplace);
        EXPECT_EQ(ctx->key.lineSmooth, 0u);
        EXPECT_EQ(ctx->key.passThrough, 0u);
    }
    EXPECT_EQ(callsOf("glLineWidth"), Calls{});
}

TEST_F(OutputKey, LinesSetTheBackendWidth)
{
    ctx->enables.pointSmooth = 1;
    glLineWidth(2.5f);
    takeCalls();
    ctx->primitiveFlags = PRIMITIVE_LINES;
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.lineSmooth, 0u);
    EXPECT_EQ(takeCalls(), Calls{"glLineWidth(2.5)"});
    glEnable(GL_LINE_SMOOTH);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.lineSmooth, 1u);
    EXPECT_EQ(ctx->key.pointSmooth, 0u);
    EXPECT_EQ(takeCalls(), Calls{"glLineWidth(3.5)"});
}

TEST_F(OutputKey, PrimitiveFieldsAreClearedAndTheTwoKeptBitsStay)
{
    ctx->enables.lineSmooth = ctx->enables.pointSmooth = 1;
    for (const uint32_t kept : {0u, 1u, 2u, 3u}) {
        ctx->key.kept = kept & 3;
        ctx->key.passThrough = ctx->key.pointSize = ctx->key.pointSmooth = ctx->key.lineSmooth = 1;
        ctx->key.pointSpriteReplace = 3;
        ctx->primitiveFlags = 0;
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.passThrough | ctx->key.pointSize | ctx->key.pointSmooth | ctx->key.lineSmooth, 0u);
        EXPECT_EQ(ctx->key.pointSpriteReplace, 0u);
        EXPECT_EQ(ctx->key.kept, kept);
    }
    EXPECT_EQ(callsOf("glLineWidth"), Calls{});
}

TEST_F(OutputKey, DrawTextureTakesThePassThroughShader)
{
    ctx->primitiveFlags = PRIMITIVE_DRAW_TEXTURE;
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.passThrough, 1u);
    EXPECT_EQ(ctx->key.pointSize | ctx->key.lineSmooth, 0u);
}

TEST_F(OutputKey, EachModeOfADrawHasItsPrimitiveClass)
{
    struct Case {
        GLenum mode;
        uint32_t points, lines;
    };
    glEnable(GL_LINE_SMOOTH);
    for (const Case c :
         {Case{GL_POINTS, 1, 0}, Case{GL_LINES, 0, 1}, Case{GL_LINE_LOOP, 0, 1}, Case{GL_LINE_STRIP, 0, 1},
          Case{GL_TRIANGLES, 0, 0}, Case{GL_TRIANGLE_STRIP, 0, 0}, Case{GL_TRIANGLE_FAN, 0, 0}}) {
        draw(c.mode);
        EXPECT_EQ(ctx->key.pointSize, c.points) << c.mode;
        EXPECT_EQ(ctx->key.lineSmooth, c.lines) << c.mode;
        EXPECT_EQ(ctx->primitiveFlags, 0u);
        EXPECT_EQ(ctx->dirty, 0u);
    }
}

TEST_F(OutputKey, UnusedBitsStayZeroInEveryState)
{
    enableLights(8);
    glEnable(GL_FOG);
    glEnable(GL_ALPHA_TEST);
    glEnable(GL_CLIP_PLANE0);
    glEnable(GL_LINE_SMOOTH);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glEnable(GL_TEXTURE_2D);
        glEnable(GL_TEXTURE_GEN_STR_OES);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
    }
    for (const GLenum mode : {GL_POINTS, GL_LINES, GL_TRIANGLES}) {
        draw(mode);
        EXPECT_EQ(ctx->key.reservedGeneral, 0u);
        EXPECT_EQ(ctx->key.reservedOutput, 0u);
        for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
            EXPECT_EQ(ctx->key.unit[unit].reservedUnit, 0u);
            EXPECT_EQ(ctx->key.combine[unit].reservedCombine, 0u);
            for (uint32_t i = 0; i < 3; ++i) {
                EXPECT_EQ(ctx->key.combine[unit].rgbArg[i].reservedArg, 0u);
                EXPECT_EQ(ctx->key.combine[unit].alphaArg[i].reservedArg, 0u);
            }
        }
    }
}
