// SPDX-License-Identifier: MIT
#include "shadergen/uniforms.h"

#include "shadergen/pipeline/pipeline_test.h"

#include <cmath>
#include <limits>

namespace {

class DrawUniforms : public PipelineTest {
protected:
    /// What uploadDrawUniforms loads for the state of the context.
    Calls uploads(GLenum mode = GL_TRIANGLES)
    {
        draw(mode);
        const ShaderStateBitfield drawn = ctx->key;
        takeCalls();
        ctx->key = drawn;
        uploadDrawUniforms(ctx);
        return takeCalls();
    }
    const std::string alphaRef = load("glUniform1f", "gles_AlphaRef", "0");
};

class TransformUniforms : public PipelineTest {
protected:
    Calls uploads()
    {
        draw();
        takeCalls();
        uploadTransformUniforms(ctx);
        return takeCalls();
    }
    void loadModelview(const Matrix16 &matrix)
    {
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(matrix.m);
    }
};

class LightUniforms : public PipelineTest {
protected:
    Calls uploads()
    {
        draw();
        takeCalls();
        uploadLightUniforms(ctx);
        return takeCalls();
    }
    /// Arguments of the load of one uniform; "" when it was not loaded.
    std::string loaded(const Calls &calls, const std::string &name)
    {
        const std::string head = locationArgument(name) + "1, ";
        for (const std::string &call : calls) {
            const size_t at = call.find(head);
            if (at != std::string::npos) return call.substr(at + head.size(), call.size() - at - head.size() - 1);
        }
        return "";
    }
    // Eight lights from eye x. The modelview takes object y to eye -x, so eye x comes from object -y.
    void lightFromEyeXOverAQuarterTurn()
    {
        enableLights(8);
        for (GLenum light = GL_LIGHT0; light <= GL_LIGHT7; ++light)
            setLight(light, GL_POSITION, 1, 0, 0, 0);
        glMatrixMode(GL_MODELVIEW);
        const Matrix16 turn = {{0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 3, 4, 5, 1}};
        glLoadMatrixf(turn.m);
    }
    static void setLight(GLenum light, GLenum pname, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
    {
        const GLfloat values[] = {x, y, z, w};
        glLightfv(light, pname, values);
    }
};

std::string identityText()
{
    return "{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}";
}

} // namespace

TEST_F(DrawUniforms, PlainStateLoadsTheAlphaReferenceOnly)
{
    EXPECT_EQ(uploads(), Calls{alphaRef});
    glAlphaFunc(GL_LESS, 0.25f);
    EXPECT_EQ(uploads(), Calls{load("glUniform1f", "gles_AlphaRef", "0.25")});
}

TEST_F(DrawUniforms, EachEnabledUnitGetsItsSamplerAndBothUnitsTheirColours)
{
    const GLfloat color0[] = {0.25f, 0.5f, 0.75f, 1};
    const GLfloat color1[] = {1, 0, 0.5f, 0.125f};
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, color0);
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, 2);
    glActiveTexture(GL_TEXTURE1);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, color1);
    glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, 4);
    const Calls common = {load("glUniform4fv", "gles_TexEnvColor", "2, {0.25, 0.5, 0.75, 1, 1, 0, 0.5, 0.125}"),
                          load("glUniform4fv", "gles_TexEnvColorScale", "2, {2, 2, 2, 1, 1, 1, 1, 4}"), alphaRef};
    const std::string sampler0 = load("glUniform1i", "gles_sampler0", "0");
    const std::string sampler1 = load("glUniform1i", "gles_sampler1", "1");
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(uploads(), (Calls{sampler1, common[0], common[1], common[2]}));
    glActiveTexture(GL_TEXTURE0);
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(uploads(), (Calls{sampler0, sampler1, common[0], common[1], common[2]}));
    glActiveTexture(GL_TEXTURE1);
    glDisable(GL_TEXTURE_2D);
    EXPECT_EQ(uploads(), (Calls{sampler0, common[0], common[1], common[2]}));
}

TEST_F(DrawUniforms, TextureMatricesGoAsDiagonalOrWhole)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        start(false);
        const std::string name = "gles_Texture" + std::to_string(unit) + "Matrix";
        glActiveTexture(GL_TEXTURE0 + unit);
        glEnable(GL_TEXTURE_2D);
        glMatrixMode(GL_TEXTURE);
        EXPECT_EQ(uploads().size(), 4u); // sampler, colours, scales, alpha reference
        glScalef(2, 3, 4);
        EXPECT_EQ(uploads().at(1), load("glUniform4fv", name, "1, {2, 3, 4, 1}"));
        glTranslatef(1, 1, 1);
        EXPECT_EQ(uploads().at(1), load("glUniformMatrix4fv", name,
                                        "1, 0, {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, "
                                        "2, 3, 4, 1}"));
        const Matrix16 general = {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
        glLoadMatrixf(general.m);
        EXPECT_EQ(uploads().at(1), load("glUniformMatrix4fv", name,
                                        "1, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, "
                                        "13, 14, 15, 16}"));
    }
}

TEST_F(DrawUniforms, AlphaFactorIsLoadedWhenItIsOn)
{
    ctx->vendor.alphaFactor = 0.5f;
    EXPECT_EQ(uploads(), Calls{alphaRef});
    ctx->key.alphaFactor = 1;
    EXPECT_EQ(uploads(), (Calls{load("glUniform1f", "gles_alphaFactor", "0.5"), alphaRef}));
}

TEST_F(DrawUniforms, FogLoadsItsRangeDensityAndColour)
{
    const GLfloat color[] = {0.25f, 0.5f, 0.75f, 0.125f};
    glFogf(GL_FOG_START, 1);
    glFogf(GL_FOG_END, 5);
    glFogf(GL_FOG_DENSITY, 0.5f);
    glFogfv(GL_FOG_COLOR, color);
    EXPECT_EQ(uploads(), Calls{alphaRef});
    glEnable(GL_FOG);
    const Calls range = {load("glUniform1f", "gles_FogEnd", "5"), load("glUniform1f", "gles_FogInvRange", "0.25"),
                         load("glUniform1f", "gles_FogDensity", "0.5")};
    const std::string shaderColor = load("glUniform3fv", "gles_FogColor", "1, {0.25, 0.5, 0.75}");
    EXPECT_EQ(uploads(), (Calls{range[0], range[1], range[2], shaderColor, alphaRef}));
    ctx->vendor.fogCoord = 7;
    glFogf(GL_FOG_COORDINATE_SOURCE_QRN, GL_FOG_COORDINATE_QRN);
    EXPECT_EQ(uploads(),
              (Calls{range[0], range[1], range[2], load("glUniform1f", "gles_FogCoord", "7"), shaderColor, alphaRef}));
}

TEST_F(DrawUniforms, FogColourGoesToABackendThatBlendsFog)
{
    start(true);
    glEnable(GL_FOG);
    const Calls calls = uploads();
    ASSERT_EQ(calls.size(), 5u);
    EXPECT_EQ(calls[3], "glFogfvQRN(0x0b66, ptr)");
    EXPECT_EQ(ctx->currentEntry->key.inputs.fogBlendInShader, 0u);
    EXPECT_EQ(ctx->currentEntry->locations.fogColor, -1);
    start(false);
    glEnable(GL_FOG);
    draw();
    EXPECT_EQ(ctx->currentEntry->key.inputs.fogBlendInShader, 1u);
}

// The backend ignores them.
TEST_F(TransformUniforms, UniformsThatTheProgramLacksAreLoadedAllTheSame)
{
    for (const char *name : {"gles_ModelViewMatrix", "gles_ProjectionMatrix", "gles_NormalMatrix"})
        fakeBackend().unknownLocations[name] = -1;
    const Calls calls = uploads();
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[1], "glUniformMatrix4fv(-1, 1, 0, " + identityText() + ")");
    EXPECT_EQ(calls[2], "glUniformMatrix4fv(-1, 1, 0, " + identityText() + ")");
    EXPECT_EQ(calls[3].substr(0, 22), "glUniformMatrix3fv(-1,");
}

TEST_F(DrawUniforms, EmptyFogRangeHasAnInfiniteInverse)
{
    glEnable(GL_FOG);
    glFogf(GL_FOG_START, 3);
    glFogf(GL_FOG_END, 3);
    EXPECT_EQ(uploads().at(1), load("glUniform1f", "gles_FogInvRange", "inf"));
    glFogf(GL_FOG_END, 2);
    EXPECT_EQ(uploads().at(1), load("glUniform1f", "gles_FogInvRange", "-1"));
}

TEST_F(DrawUniforms, AttenuationLoadsItsThreeUniformsForEveryPrimitive)
{
    const GLfloat attenuation[] = {0.5f, 1, 2};
    glPointParameterf(GL_POINT_SIZE_MIN, 2);
    glPointParameterf(GL_POINT_SIZE_MAX, 9);
    EXPECT_EQ(uploads(GL_POINTS), Calls{alphaRef});
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, attenuation);
    const Calls expected = {load("glUniform3fv", "gles_PointDistanceAttenuation", "1, {0.5, 1, 2}"),
                            load("glUniform1f", "gles_PointMinSize", "2"),
                            load("glUniform1f", "gles_PointMaxSize", "9"), alphaRef};
    EXPECT_EQ(uploads(GL_POINTS), expected);
    EXPECT_EQ(uploads(GL_TRIANGLES), expected);
}

TEST_F(DrawUniforms, SmoothLinesGetTheirWidthAndOne)
{
    glLineWidth(3);
    EXPECT_EQ(uploads(GL_LINES), Calls{alphaRef});
    glEnable(GL_LINE_SMOOTH);
    EXPECT_EQ(uploads(GL_TRIANGLES), Calls{alphaRef});
    EXPECT_EQ(uploads(GL_LINES), (Calls{load("glUniform1f", "gles_LineWidth", "4"), alphaRef}));
}

TEST_F(TransformUniforms, MatricesAreLoadedInOrder)
{
    const Matrix16 modelview = {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
    loadModelview(modelview);
    const std::string text = "1, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}";
    const std::string transposed = "1, 0, {1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16}";
    EXPECT_EQ(uploads(), (Calls{load("glUniformMatrix4fv", "gles_ModelViewProjectionMatrix", transposed),
                                load("glUniformMatrix4fv", "gles_ModelViewMatrix", text),
                                load("glUniformMatrix4fv", "gles_ProjectionMatrix", "1, 0, " + identityText()),
                                load("glUniformMatrix3fv", "gles_NormalMatrix", "1, 0, {1, 0, 0, 0, 1, 0, 0, 0, 1}")}));
}

TEST_F(TransformUniforms, EveryFormBelowFiveLoadsTheTranspose)
{
    glVertexPointer(4, GL_FLOAT, 0, nullptr);
    for (const uint32_t element : {12u, 13u, 14u, 7u}) { // rows 0 to 3
        loadModelview(identityWith(element, 2));
        const uint32_t transposedElement = element % 4 * 4 + element / 4;
        std::string expected = "1, 0, {";
        for (uint32_t i = 0; i < 16; ++i) {
            if (i) expected += ", ";
            expected += i == transposedElement ? "2" : i % 5 == 0 ? "1" : "0";
        }
        EXPECT_EQ(uploads().at(0), load("glUniformMatrix4fv", "gles_ModelViewProjectionMatrix", expected + "}"));
        EXPECT_EQ(ctx->key.mvpForm, element % 4 + 1);
    }
}

TEST_F(TransformUniforms, ScaleAndTranslationGoAsTwoVectors)
{
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    const Matrix16 matrix = {{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 5, 6, 7, 8}};
    loadModelview(matrix);
    EXPECT_EQ(uploads().at(0), load("glUniform4fv", "gles_ModelViewProjectionMatrix", "2, {2, 3, 4, 8, 5, 6, 7, 0}"));
}

TEST_F(TransformUniforms, VertexSizeAloneChangesWhatIsLoaded)
{
    loadModelview(identityWith(12, 2));
    const std::string asVectors = load("glUniform4fv", "gles_ModelViewProjectionMatrix", "2, {1, 1, 1, 1, 2, 0, 0, 0}");
    const std::string asMatrix = load("glUniformMatrix4fv", "gles_ModelViewProjectionMatrix",
                                      "1, 0, {1, 0, 0, 2, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}");
    for (int round = 0; round < 2; ++round) {
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
        EXPECT_EQ(uploads().at(0), asVectors);
        glVertexPointer(4, GL_FLOAT, 0, nullptr);
        EXPECT_EQ(uploads().at(0), asMatrix);
        enablePalette();
        EXPECT_EQ(uploads().at(0), asMatrix);
        glDisable(GL_MATRIX_PALETTE_OES);
    }
    glLoadMatrixf(identityWith(12, 3).m);
    EXPECT_NE(uploads().at(0), asMatrix);
}

TEST_F(TransformUniforms, UnknownFormIsAnAssertionAndLoadsTheOthers)
{
    draw();
    takeCalls();
    ctx->key.mvpForm = 6;
    uploadTransformUniforms(ctx);
    EXPECT_EQ(takeCalls().size(), 3u);
    EXPECT_EQ(takeAssertions().size(), 1u);
}

TEST_F(TransformUniforms, ClipPlaneWithANegativeCoefficientIsTurnedOnceAndStays)
{
    const GLfloat plane[] = {-1, 2, -3, 4};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    EXPECT_EQ(uploads().size(), 4u); // off
    glEnable(GL_CLIP_PLANE0);
    takeCalls();
    draw();
    const std::string turned = load("glUniform4fv", "userClipPlaneEye", "1, {1, -2, 3, -4}");
    EXPECT_EQ(callsOf("glUniform1i"), Calls{load("glUniform1i", "userClipNeg", "1")});
    EXPECT_EQ(callsOf("glUniform4fv").at(0), turned);
    EXPECT_EQ(ctx->viewport.clipPlaneEye[0], 1.0f);
    EXPECT_EQ(ctx->viewport.clipPlaneEye[3], -4.0f);
    const Calls second = uploads();
    EXPECT_EQ(second.at(4), load("glUniform1i", "userClipNeg", "0"));
    EXPECT_EQ(second.at(5), turned);
    glClipPlanef(GL_CLIP_PLANE0, plane);
    EXPECT_EQ(drawCalls("glUniform1i"), Calls{load("glUniform1i", "userClipNeg", "1")});
}

TEST_F(TransformUniforms, ClipPlaneWithZeroOrNanFirstKeepsItsSign)
{
    glEnable(GL_CLIP_PLANE0);
    for (const GLfloat first : {0.0f, -0.0f, 1.0f, std::numeric_limits<GLfloat>::quiet_NaN()}) {
        ctx->viewport.clipPlaneEye[0] = first;
        ctx->viewport.clipPlaneEye[1] = -2;
        EXPECT_EQ(uploads().at(4), load("glUniform1i", "userClipNeg", "0"));
        EXPECT_EQ(ctx->viewport.clipPlaneEye[1], -2.0f);
    }
}

TEST_F(TransformUniforms, PaletteDrawsLoadAllTwentyOfBothKinds)
{
    enablePalette();
    takeCalls();
    draw();
    const std::string head = "glUniformMatrix4fv" + locationArgument("MV_palette") + "20, 0, ";
    const std::string normals = "glUniformMatrix3fv" + locationArgument("MVI_palette") + "20, 0, ";
    size_t found = 0;
    for (const std::string &call : takeCalls())
        found += call.rfind(head, 0) == 0 || call.rfind(normals, 0) == 0;
    EXPECT_EQ(found, 2u);
}

TEST_F(LightUniforms, MaterialAndSceneColourComeFirst)
{
    const GLfloat emission[] = {0.5f, 0.25f, 0, 0.125f};
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, emission);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 16);
    const GLfloat ambient[] = {0.5f, 1, 0, 1};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
    const GLfloat materialAmbient[] = {1, 0.5f, 1, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, materialAmbient);
    const GLfloat diffuse[] = {0, 0, 0, 0.75f};
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, diffuse);
    glEnable(GL_LIGHTING);
    EXPECT_EQ(uploads(), (Calls{load("glUniform4fv", "gles_Material.emission", "1, {0.5, 0.25, 0, 0.125}"),
                                load("glUniform1f", "gles_Material.shininess", "16"),
                                load("glUniform4fv", "gles_LightModelProduct.sceneColor", "1, {1, 0.75, 0, 0.75}")}));
    glEnable(GL_COLOR_MATERIAL);
    EXPECT_EQ(uploads().at(2), load("glUniform4fv", "gles_LightModelProduct.sceneColor", "1, {0.5, 1, 0, 1}"));
    glDisable(GL_COLOR_MATERIAL);
    EXPECT_EQ(uploads().at(2), load("glUniform4fv", "gles_LightModelProduct.sceneColor", "1, {1, 0.75, 0, 0.75}"));
}

TEST_F(LightUniforms, ProductsAreWithTheMaterialUnlessTheVertexColourReplacesIt)
{
    enableLights(1);
    setLight(GL_LIGHT0, GL_AMBIENT, 0.5f, 0.5f, 0.5f, 1);
    setLight(GL_LIGHT0, GL_DIFFUSE, 1, 0.5f, 0.25f, 1);
    setLight(GL_LIGHT0, GL_SPECULAR, 0.5f, 0.25f, 1, 1);
    const GLfloat half[] = {0.5f, 0.5f, 0.5f, 0.5f};
    for (const GLenum pname : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR})
        glMaterialfv(GL_FRONT_AND_BACK, pname, half);
    Calls calls = uploads();
    EXPECT_EQ(loaded(calls, "gles_LSambient[0]"), "{0.25, 0.25, 0.25, 0.5}");
    EXPECT_EQ(loaded(calls, "gles_LSdiffuse[0]"), "{0.5, 0.25, 0.125, 0.5}");
    EXPECT_EQ(loaded(calls, "gles_LSspecular[0]"), "{0.25, 0.125, 0.5, 0.5}");
    glEnable(GL_COLOR_MATERIAL);
    calls = uploads();
    EXPECT_EQ(loaded(calls, "gles_LSambient[0]"), "{0.5, 0.5, 0.5, 1}");
    EXPECT_EQ(loaded(calls, "gles_LSdiffuse[0]"), "{1, 0.5, 0.25, 1}");
    EXPECT_EQ(loaded(calls, "gles_LSspecular[0]"), "{0.25, 0.125, 0.5, 0.5}");
}

TEST_F(LightUniforms, EachKindOfLightLoadsInItsOrder)
{
    enableLights(2);
    setLight(GL_LIGHT0, GL_POSITION, 0, 0, 2, 0);
    setLight(GL_LIGHT1, GL_POSITION, 1, 2, 3, 1);
    setLight(GL_LIGHT1, GL_SPOT_DIRECTION, 0, 0, -4, 0);
    glLightf(GL_LIGHT1, GL_SPOT_CUTOFF, 60);
    glLightf(GL_LIGHT1, GL_SPOT_EXPONENT, 8);
    glLightf(GL_LIGHT1, GL_LINEAR_ATTENUATION, 0.5f);
    const Calls calls = uploads();
    const auto names = [](int slot, const Calls &fields) {
        Calls all;
        for (const std::string &field : fields)
            all.push_back("gles_LS" + field + "[" + std::to_string(slot) + "]");
        return all;
    };
    Calls order = {"gles_Material.emission", "gles_Material.shininess", "gles_LightModelProduct.sceneColor"};
    for (const std::string &name : names(0, {"ambient", "diffuse", "specular", "position0", "position1",
                                             "spotDirection", "position", "packed0", "packed1"}))
        order.push_back(name);
    for (const std::string &name :
         names(1, {"ambient", "diffuse", "specular", "spotDirection", "position", "packed0", "packed1"}))
        order.push_back(name);
    ASSERT_EQ(calls.size(), order.size());
    for (size_t i = 0; i < order.size(); ++i)
        EXPECT_NE(calls[i].find(locationArgument(order[i])), std::string::npos) << order[i];
    EXPECT_EQ(loaded(calls, "gles_LSposition0[0]"), "{0, 0, 1}");
    EXPECT_EQ(loaded(calls, "gles_LSposition1[0]"), "{0, 0, 1}");
    EXPECT_EQ(loaded(calls, "gles_LSposition[1]"), "{1, 2, 3}");
    EXPECT_EQ(loaded(calls, "gles_LSspotDirection[1]"), "{0, 0, -1}");
    EXPECT_EQ(loaded(calls, "gles_LSpacked0[1]").rfind("{8, 60, 0.5, ", 0), 0u);
    EXPECT_EQ(loaded(calls, "gles_LSpacked1[1]").rfind("{1, 0.5, 0, ", 0), 0u);
}

TEST_F(LightUniforms, ALightInBetweenMovesTheSlotsOfHigherOnes)
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT2);
    glEnable(GL_LIGHT5);
    setLight(GL_LIGHT2, GL_POSITION, 2, 0, 0, 1);
    setLight(GL_LIGHT3, GL_POSITION, 3, 0, 0, 1);
    setLight(GL_LIGHT5, GL_POSITION, 5, 0, 0, 1);
    Calls calls = uploads();
    EXPECT_EQ(loaded(calls, "gles_LSposition[0]"), "{2, 0, 0}");
    EXPECT_EQ(loaded(calls, "gles_LSposition[1]"), "{5, 0, 0}");
    EXPECT_EQ(loaded(calls, "gles_LSposition[2]"), "");
    glEnable(GL_LIGHT3);
    calls = uploads();
    EXPECT_EQ(loaded(calls, "gles_LSposition[1]"), "{3, 0, 0}");
    EXPECT_EQ(loaded(calls, "gles_LSposition[2]"), "{5, 0, 0}");
    glDisable(GL_LIGHT2);
    calls = uploads();
    EXPECT_EQ(loaded(calls, "gles_LSposition[0]"), "{3, 0, 0}");
    EXPECT_EQ(loaded(calls, "gles_LSposition[1]"), "{5, 0, 0}");
}

TEST_F(LightUniforms, EightDirectionalLightsGoToObjectSpace)
{
    lightFromEyeXOverAQuarterTurn();
    Calls calls = uploads();
    ASSERT_EQ(ctx->key.orthogonalTransform, 1u);
    EXPECT_EQ(loaded(calls, "gles_LSposition0[0]"), "{0, -1, 0}");
    EXPECT_EQ(loaded(calls, "gles_LSposition0[7]"), "{0, -1, 0}");
    // Half vector of (1, 0, 0) and (0, 0, 1), turned the same way.
    EXPECT_EQ(loaded(calls, "gles_LSposition1[3]"), "{0, -0.707107, 0.707107}");
    glDisable(GL_LIGHT3);
    calls = uploads();
    EXPECT_EQ(loaded(calls, "gles_LSposition0[0]"), "{1, 0, 0}");
    EXPECT_EQ(loaded(calls, "gles_LSposition1[0]"), "{0.707107, 0, 0.707107}");
}

TEST_F(LightUniforms, PaletteDrawsKeepLightsInEyeSpace)
{
    lightFromEyeXOverAQuarterTurn();
    enablePalette();
    const Calls calls = uploads();
    ASSERT_EQ(ctx->key.orthogonalTransform, 1u);
    EXPECT_EQ(loaded(calls, "gles_LSposition0[0]"), "{1, 0, 0}");
}

TEST_F(LightUniforms, WrongLightCountIsAnAssertion)
{
    enableLights(2);
    draw();
    ctx->key.lightCount = 3;
    uploadLightUniforms(ctx);
    EXPECT_EQ(takeAssertions().size(), 1u);
    ctx->key.lightCount = 2;
}

TEST_F(LightUniforms, AreLoadedOnlyWithLighting)
{
    glEnable(GL_LIGHT0);
    draw();
    for (const std::string &call : takeCalls())
        EXPECT_EQ(call.find(locationArgument("gles_Material.emission")), std::string::npos) << call;
    glEnable(GL_LIGHTING);
    draw();
    EXPECT_EQ(callsOf("glUniform4fv").size(), 7u); // emission, scene colour, three products, two packed
}
