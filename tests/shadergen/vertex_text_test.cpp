// SPDX-License-Identifier: MIT
// Complete vertex texts. Most are golden/plain.vert or another written-out text with the named edits.
#include "shadergen/text_test.h"
#include "state/lighting_state.h"

namespace {

using VertexText = TextTest;

const std::string kMvpDeclaration = "uniform mat4       gles_ModelViewProjectionMatrix;\n";
const std::string kMvpBody = "    return gles_Vertex * gles_ModelViewProjectionMatrix;\n";
const std::string kPosition = "\n    gl_Position = es_ftransform();\n";
const std::string kEyeCoordinates = "    vec4  ecPosition = ftransform_to_eyecoord();\n"
                                    "    vec3  transformedNormal = fnormal(gles_Normal);\n";
const std::string kFogUniforms = "varying float      gles_FogFactor;\n"
                                 "uniform float      gles_FogEnd;\n"
                                 "uniform float      gles_FogInvRange;\n"
                                 "uniform float      gles_FogDensity;\n";

// plain.vert with declarations after its last one, and its main function's body around the position.
std::string plainWith(const std::string &declarations, const std::string &beforePosition,
                      const std::string &afterPosition)
{
    return edited(golden("plain.vert"), {{kMvpDeclaration, kMvpDeclaration + declarations},
                                         {kPosition, beforePosition + kPosition + afterPosition}});
}

// The key of lit_all_kinds.vert.
void lightByAllKinds(ProgramKey &key)
{
    enableLighting(key);
    addLight(key, 1, LIGHT_SPOT);
    addLight(key, 3, LIGHT_DIRECTIONAL);
    addLight(key, 4, LIGHT_POINT);
    addLight(key, 7, LIGHT_POINT);
    key.state.normalizeNormal = 1;
    key.state.alphaFactor = 1;
    key.state.twoSided = 1;
    key.state.colorMaterial = 1;
    key.state.flatShading = 1;
    key.state.mvpForm = MVP_SCALE_TRANSLATE;
}

} // namespace

TEST_F(VertexText, PlainStateTransformsOnly)
{
    EXPECT_EQ(vertexText(key), golden("plain.vert"));
}

TEST_F(VertexText, ColorIsCopiedClamped)
{
    key.state.perVertexColor = 1;
    EXPECT_EQ(vertexText(key), plainWith("attribute vec4     gles_Color;\nvarying vec4       gles_FragColor;\n",
                                         "    gles_FragColor = clamp(gles_Color, 0.0, 1.0);\n", ""));
}

TEST_F(VertexText, AlphaFactorMultipliesTheCopiedAlpha)
{
    key.state.perVertexColor = 1;
    key.state.alphaFactor = 1;
    EXPECT_EQ(vertexText(key), plainWith("attribute vec4     gles_Color;\nvarying vec4       gles_FragColor;\n"
                                         "uniform float      gles_alphaFactor;\n",
                                         "    vec4 temp = clamp(gles_Color, 0.0, 1.0);\n"
                                         "    gles_FragColor = vec4(temp.rgb, temp.a * gles_alphaFactor);\n",
                                         ""));
}

TEST_F(VertexText, FlatShadingDeclaresFlatVaryings)
{
    key.state.perVertexColor = 1;
    key.state.flatShading = 1;
    EXPECT_EQ(vertexText(key), "#pragma GL_QRN_flat_varying\n\n" +
                                   plainWith("attribute vec4     gles_Color;\nflat varying vec4  gles_FragColor;\n",
                                             "    gles_FragColor = clamp(gles_Color, 0.0, 1.0);\n", ""));
}

TEST_F(VertexText, MatrixRowsOfTheIdentityPassComponentsThrough)
{
    const struct {
        uint32_t form;
        const char *body;
    } cases[] = {
        {0, "    return vec4(gles_Vertex.x,\n                gles_Vertex.y,\n                gles_Vertex.z,\n"
            "                gles_Vertex.w);\n"},
        {1, "    return vec4(dot(gles_ModelViewProjectionMatrix[0],gles_Vertex),\n                gles_Vertex.y,\n"
            "                gles_Vertex.z,\n                gles_Vertex.w);\n"},
        {2, "    return vec4(dot(gles_ModelViewProjectionMatrix[0],gles_Vertex),\n"
            "                dot(gles_ModelViewProjectionMatrix[1],gles_Vertex),\n                gles_Vertex.z,\n"
            "                gles_Vertex.w);\n"},
        {3, "    return vec4(dot(gles_ModelViewProjectionMatrix[0],gles_Vertex),\n"
            "                dot(gles_ModelViewProjectionMatrix[1],gles_Vertex),\n"
            "                dot(gles_ModelViewProjectionMatrix[2],gles_Vertex),\n                gles_Vertex.w);\n"},
    };
    for (const auto &c : cases) {
        key.state.mvpForm = c.form & 7;
        EXPECT_EQ(vertexText(key), edited(golden("plain.vert"), {{kMvpBody, c.body}})) << "form " << c.form;
    }
}

TEST_F(VertexText, ScaleAndTranslationNeedTwoVectors)
{
    key.state.mvpForm = MVP_SCALE_TRANSLATE;
    EXPECT_EQ(vertexText(key),
              edited(golden("plain.vert"),
                     {{kMvpDeclaration, "uniform vec4       gles_ModelViewProjectionMatrix[2];\n"},
                      {kMvpBody, "    /* scale + translation */\n    return gles_Vertex * "
                                 "gles_ModelViewProjectionMatrix[0]+gles_ModelViewProjectionMatrix[1];\n"}}));
}

TEST_F(VertexText, ImpossibleTransformFormIsAnAssertionAndLeavesItsPiecesOut)
{
    for (const uint32_t form : {6u, 7u}) {
        key.state.mvpForm = form & 7;
        EXPECT_EQ(vertexText(key), edited(golden("plain.vert"), {{kMvpDeclaration, ""}, {kMvpBody, ""}}));
        EXPECT_EQ(takeAssertions().size(), 2u);
    }
}

TEST_F(VertexText, OneDirectionalLightWithSpecular)
{
    enableLighting(key);
    addLight(key, 0, LIGHT_DIRECTIONAL);
    EXPECT_EQ(vertexText(key), golden("lit_directional.vert"));
}

TEST_F(VertexText, WithoutSpecularTheSpecularTermsAreMissing)
{
    enableLighting(key);
    addLight(key, 7, LIGHT_DIRECTIONAL);
    key.state.noSpecular = 1;
    EXPECT_EQ(
        vertexText(key),
        edited(golden("lit_directional.vert"),
               {{"    Specular += specular * pow(clamp(dot(normal, vp1), 0.0, 1.0), gles_Material.shininess);\n", ""},
                {"    Specular = vec4(0.0);\n", ""},
                {"    color.rgb += Specular.rgb;\n", ""}}));
}

TEST_F(VertexText, LightSlotsCountEnabledLightsOnly)
{
    enableLighting(key);
    addLight(key, 2, LIGHT_DIRECTIONAL);
    addLight(key, 5, LIGHT_DIRECTIONAL);
    const std::string call0 = "    processDirectionalLight(gles_LSambient[0], gles_LSdiffuse[0], gles_LSspecular[0], "
                              "gles_LSposition0[0], gles_LSposition1[0], normal);\n";
    const std::string call1 = "    processDirectionalLight(gles_LSambient[1], gles_LSdiffuse[1], gles_LSspecular[1], "
                              "gles_LSposition0[1], gles_LSposition1[1], normal);\n";
    EXPECT_EQ(vertexText(key),
              edited(golden("lit_directional.vert"),
                     {{"#define gles_MaxLights    1\n", "#define gles_MaxLights    2\n"}, {call0, call0 + call1}}));
}

TEST_F(VertexText, AllKindsTwoSidedFlatWithColorMaterialAndAlphaFactor)
{
    lightByAllKinds(key);
    EXPECT_EQ(vertexText(key), golden("lit_all_kinds.vert"));
}

TEST_F(VertexText, SpotAndPointWithoutSpecular)
{
    lightByAllKinds(key);
    key.state.noSpecular = 1;
    const std::string halfVector =
        "        float nDotHV = clamp(dot(normal, normalize(VP + vec3(0.0, 0.0, 1.0))), 0.0, 1.0); // normal . ";
    const std::string specular = "        Specular += attenuation * specular * pow(nDotHV, gles_Material.shininess);\n";
    EXPECT_EQ(
        vertexText(key),
        edited(golden("lit_all_kinds.vert"),
               {{"    Specular += specular * pow(clamp(dot(normal, vp1), 0.0, 1.0), gles_Material.shininess);\n", ""},
                {halfVector + "light half vector\n" + specular, ""},
                {halfVector + "light_half_vector\n" + specular + "\n", ""},
                {"    Specular = vec4(0.0);\n", ""},
                {"    color.rgb += Specular.rgb;\n", ""}}));
}

TEST_F(VertexText, LightingWithoutLightsIsTheClampedSceneColor)
{
    enableLighting(key);
    const std::string lit = golden("lit_directional.vert");
    const size_t arrays = lit.find("uniform vec4 gles_LSambient");
    const size_t function = lit.find("vec4 flight(");
    ASSERT_NE(arrays, std::string::npos);
    ASSERT_NE(function, std::string::npos);
    const std::string withoutLights = lit.substr(0, arrays) + "\n" + lit.substr(function);
    EXPECT_EQ(
        vertexText(key),
        edited(withoutLights, {{"#define gles_MaxLights    1\n", ""},
                               {"    processDirectionalLight(gles_LSambient[0], gles_LSdiffuse[0], gles_LSspecular[0], "
                                "gles_LSposition0[0], gles_LSposition1[0], normal);\n",
                                ""},
                               {"    color.rgb += AmbientDiffuse.rgb;\n", ""},
                               {"    color.rgb += Specular.rgb;\n", ""}}));
}

TEST_F(VertexText, ColorMaterialWithoutLights)
{
    enableLighting(key);
    key.state.colorMaterial = 1;
    const std::string text = vertexText(key);
    EXPECT_NE(text.find("\n    vec4 color = gles_LightModelProduct.sceneColor;\n"
                        "    color = color * gles_Color + gles_Material.emission;\n"
                        "    return clamp(color, 0.0, 1.0);\n}\n\n"),
              std::string::npos);
}

TEST_F(VertexText, LightCountThatDiffersFromTheKindsIsAnAssertion)
{
    enableLighting(key);
    addLight(key, 0, LIGHT_DIRECTIONAL);
    key.state.lightCount = 2;
    expectedAssertions = {"shader key: lightCount is the number of enabled lights"};
    EXPECT_EQ(vertexText(key), edited(golden("lit_directional.vert"),
                                      {{"#define gles_MaxLights    1\n", "#define gles_MaxLights    2\n"}}));
}

TEST_F(VertexText, ObjectSpaceLightsLeaveTheNormalAsItIs)
{
    const std::string transformed = "    vec3 normal = gles_NormalMatrix * v;\n";
    key.state.orthogonalTransform = 1;
    key.state.directionalLight = 1;
    EXPECT_EQ(vertexText(key), edited(golden("plain.vert"), {{transformed, "    vec3 normal = v;\n"}}));

    // Each of the three alone missing brings the normal matrix back.
    key.state.orthogonalTransform = 0;
    EXPECT_EQ(vertexText(key), golden("plain.vert"));
    key.state.orthogonalTransform = 1;
    key.state.directionalLight = 0;
    EXPECT_EQ(vertexText(key), golden("plain.vert"));
    key.state.directionalLight = 1;
    key.state.noTexGen = 0;
    EXPECT_EQ(vertexText(key), golden("plain.vert"));
}

TEST_F(VertexText, NormalizeRenormalizesForLightingAndForTextureGeneration)
{
    const std::string expected =
        edited(golden("plain.vert"), {{"    return normal;\n", "    return normalize(normal);\n"}});
    key.state.normalizeNormal = 1;
    EXPECT_EQ(vertexText(key), expected);
    key.state.normalizeNormal = 0;
    key.inputs.normalizeForTexGen = 1;
    EXPECT_EQ(vertexText(key), expected);
}

TEST_F(VertexText, FogModesByDepthWithoutEyeCoordinates)
{
    const struct {
        FogCode mode;
        const char *line;
    } cases[] = {
        {FOG_LINEAR, "    gles_FogFactor = clamp((gles_FogEnd - z) * gles_FogInvRange, 0.0, 1.0);\n"},
        {FOG_EXP, "    gles_FogFactor = clamp(exp2(-gles_FogDensity * z * invloge2), 0.0, 1.0);\n"},
        {FOG_EXP2, "    gles_FogFactor = clamp(exp2(-gles_FogDensity * z * gles_FogDensity * z * invloge2), 0.0, "
                   "1.0);\n"},
    };
    for (const auto &c : cases) {
        key.state.fogMode = c.mode;
        EXPECT_EQ(
            vertexText(key),
            edited(golden("plain.vert"),
                   {{kMvpDeclaration + "\n",
                     kMvpDeclaration + "\n" + kFogUniforms + "\nvoid apply_fog(in float z)\n{\n" + c.line + "}\n"},
                    {kPosition, kPosition + "    float fogz = abs(gles_ModelViewMatrix[0].z*gles_Vertex.x + "
                                            "gles_ModelViewMatrix[1].z*gles_Vertex.y + "
                                            "gles_ModelViewMatrix[2].z*gles_Vertex.z + "
                                            "gles_ModelViewMatrix[3].z*gles_Vertex.w);\n    apply_fog(fogz);\n"}}))
            << "mode " << c.mode;
    }
}

TEST_F(VertexText, FogByEyeDepth)
{
    key.state.fogMode = FOG_EXP;
    key.state.eyeCoordinates = 1;
    EXPECT_EQ(vertexText(key),
              edited(golden("plain.vert"),
                     {{kMvpDeclaration + "\n",
                       kMvpDeclaration + "\n" + kFogUniforms +
                           "\nvoid apply_fog(in float z)\n{\n"
                           "    gles_FogFactor = clamp(exp2(-gles_FogDensity * z * invloge2), 0.0, 1.0);\n}\n"},
                      {kPosition,
                       kEyeCoordinates + kPosition + "    float fogz = abs(ecPosition.z);\n    apply_fog(fogz);\n"}}));
}

TEST_F(VertexText, FogByFogCoordinate)
{
    key.state.fogMode = FOG_LINEAR;
    key.state.fogCoordinate = 1;
    EXPECT_EQ(vertexText(key),
              edited(golden("plain.vert"),
                     {{kMvpDeclaration + "\n",
                       kMvpDeclaration + "\nuniform float      gles_FogCoord;\n" + kFogUniforms +
                           "\nvoid apply_fog(in float z)\n{\n"
                           "    gles_FogFactor = clamp((gles_FogEnd - z) * gles_FogInvRange, 0.0, 1.0);\n}\n"},
                      {kPosition, kPosition + "    float fogz = gles_FogCoord;\n    apply_fog(fogz);\n"}}));
}

TEST_F(VertexText, PaletteWithClipPlaneAndFog)
{
    key.state.matrixPalette = 1;
    key.state.vertexUnits = 3;
    key.inputs.paletteUnits = 3;
    key.state.perVertexColor = 1;
    key.state.userClip = 1;
    key.state.eyeCoordinates = 1;
    key.state.fogMode = FOG_LINEAR;
    EXPECT_EQ(vertexText(key), golden("palette_clip_fog.vert"));
}

TEST_F(VertexText, PaletteSumsHaveOneTermPerUnit)
{
    const char *const position[] = {"        mpalette_weight[0] * MV_palette[int(mpalette_index[0])] ",
                                    "        mpalette_weight[1] * MV_palette[int(mpalette_index[1])] ",
                                    "        mpalette_weight[2] * MV_palette[int(mpalette_index[2])] ",
                                    "        mpalette_weight[3] * MV_palette[int(mpalette_index[3])] "};
    const char *const normal[] = {"        mpalette_weight[0] * MVI_palette[int(mpalette_index[0])]",
                                  "        mpalette_weight[1] * MVI_palette[int(mpalette_index[1])]",
                                  "        mpalette_weight[2] * MVI_palette[int(mpalette_index[2])]",
                                  "        mpalette_weight[3] * MVI_palette[int(mpalette_index[3])]"};
    const std::string three = golden("palette_clip_fog.vert");
    const std::string endOfThree = std::string(position[2]) + ";\n";
    const std::string endOfThreeNormals = std::string(normal[2]) + ") * v;\n";

    key.state.matrixPalette = 1;
    key.state.perVertexColor = 1;
    key.state.userClip = 1;
    key.state.eyeCoordinates = 1;
    key.state.fogMode = FOG_LINEAR;
    key.inputs.paletteUnits = 4;
    EXPECT_EQ(vertexText(key),
              edited(three, {{endOfThree, std::string(position[2]) + "+\n" + position[3] + ";\n"},
                             {endOfThreeNormals, std::string(normal[2]) + " + \n" + normal[3] + ") * v;\n"}}));
    key.inputs.paletteUnits = 2;
    EXPECT_EQ(
        vertexText(key),
        edited(three, {{std::string(position[1]) + "+\n" + endOfThree, std::string(position[1]) + ";\n"},
                       {std::string(normal[1]) + " + \n" + endOfThreeNormals, std::string(normal[1]) + ") * v;\n"}}));
    key.inputs.paletteUnits = 1;
    const std::string one = edited(
        three, {{std::string(position[0]) + "+\n" + position[1] + "+\n" + endOfThree, std::string(position[0]) + ";\n"},
                {std::string(normal[0]) + " + \n" + normal[1] + " + \n" + endOfThreeNormals,
                 std::string(normal[0]) + ") * v;\n"}});
    EXPECT_EQ(vertexText(key), one);

    // Without units the sums stay unfinished; the cache never asks for such a program.
    key.inputs.paletteUnits = 0;
    EXPECT_EQ(vertexText(key),
              edited(one, {{std::string(position[0]) + ";\n", ""}, {std::string(normal[0]) + ") * v;\n", ""}}));
}

TEST_F(VertexText, PaletteIgnoresTheTransformFormInItsFunctions)
{
    key.state.matrixPalette = 1;
    key.inputs.paletteUnits = 1;
    const std::string general = vertexText(key);
    key.state.mvpForm = MVP_SCALE_TRANSLATE;
    EXPECT_EQ(vertexText(key),
              edited(general, {{kMvpDeclaration, "uniform vec4       gles_ModelViewProjectionMatrix[2];\n"}}));
}

TEST_F(VertexText, UserClipPlaneDistance)
{
    key.state.userClip = 1;
    key.state.eyeCoordinates = 1;
    EXPECT_EQ(
        vertexText(key),
        edited(
            golden("plain.vert"),
            {{kMvpDeclaration + "\n", kMvpDeclaration + "\n\n// variables used when user clip plane is enabled\n"
                                                        "uniform vec4       userClipPlaneEye;\n"
                                                        "varying float      userClipDotVeye;\n\n"},
             {kPosition, kEyeCoordinates + "    userClipDotVeye = dot(userClipPlaneEye, ecPosition);\n" + kPosition}}));
}

TEST_F(VertexText, TextureMatricesByForm)
{
    const struct {
        TexMatrixForm form;
        const char *declaration;
        const char *product;
    } cases[] = {
        {TEX_MATRIX_IDENTITY, "", ""},
        {TEX_MATRIX_SCALE, "uniform vec4       gles_Texture1Matrix;\n", "gles_Texture1Matrix * "},
        {TEX_MATRIX_TWO_COORDS, "uniform mat4       gles_Texture1Matrix;\n", "gles_Texture1Matrix * "},
        {TEX_MATRIX_GENERAL, "uniform mat4       gles_Texture1Matrix;\n", "gles_Texture1Matrix * "},
    };
    enableUnit(key, 1);
    for (const auto &c : cases) {
        key.state.unit[1].texMatrixForm = c.form;
        EXPECT_EQ(vertexText(key),
                  plainWith("attribute vec4     gles_MultiTexCoord1;\nvarying vec4       gles_TexCoord1;\n" +
                                std::string(c.declaration),
                            "    gles_TexCoord1 = " + std::string(c.product) + "gles_MultiTexCoord1;\n", ""))
            << "form " << c.form;
    }
}

TEST_F(VertexText, PackedCoordinatesWithTwoMatrixRows)
{
    enableUnit(key, 0);
    enableUnit(key, 1);
    key.state.packedTexCoords = 1;
    key.state.mvpForm = 2;
    EXPECT_EQ(vertexText(key), golden("packed_coordinates.vert"));
}

TEST_F(VertexText, BothKindsOfTextureGeneration)
{
    enableUnit(key, 0);
    enableUnit(key, 1);
    key.state.noTexGen = 0;
    key.state.eyeCoordinates = 1;
    key.inputs.normalizeForTexGen = 1;
    key.state.unit[0].texGen = TEXGEN_REFLECTION_MAP;
    key.state.unit[0].texMatrixForm = TEX_MATRIX_SCALE;
    key.state.unit[1].texGen = TEXGEN_NORMAL_MAP;
    key.state.unit[1].texMatrixForm = TEX_MATRIX_GENERAL;
    EXPECT_EQ(vertexText(key), golden("texgen_both.vert"));
}

TEST_F(VertexText, TextureGenerationOfADisabledUnitIsIgnored)
{
    key.state.unit[0].texGen = TEXGEN_REFLECTION_MAP;
    key.state.unit[1].texGen = 3;
    EXPECT_EQ(vertexText(key), golden("plain.vert"));
}

TEST_F(VertexText, ImpossibleTextureGenerationIsAnAssertionAndUsesTheAttribute)
{
    enableUnit(key, 0);
    const std::string expected = vertexText(key);
    key.state.unit[0].texGen = 3;
    expectedAssertions = {"shader key: texGen is 0 to 2"};
    EXPECT_EQ(vertexText(key), expected);
}

TEST_F(VertexText, SmoothAttenuatedPoints)
{
    key.state.pointSize = 1;
    key.state.pointSmooth = 1;
    key.state.eyeCoordinates = 1;
    key.inputs.pointAttenuation = 1;
    EXPECT_EQ(vertexText(key), golden("smooth_attenuated_points.vert"));
}

TEST_F(VertexText, PlainPoints)
{
    key.state.pointSize = 1;
    EXPECT_EQ(vertexText(key),
              plainWith("", "", "    float pointSize = gles_PointSize;\n    gl_PointSize = pointSize;\n"));
}

TEST_F(VertexText, SmoothPointsStartTheNextFunctionOnTheirLine)
{
    key.state.pointSize = 1;
    key.state.pointSmooth = 1;
    const std::string expected =
        edited(golden("plain.vert"),
               {{kMvpDeclaration + "\n", kMvpDeclaration + "\nvarying float      aaInnerRing;"},
                {kPosition, kPosition + "    float pointSize = gles_PointSize;\n"
                                        "    gl_PointSize = pointSize + 1.0;\n"
                                        "    aaInnerRing  = (pointSize - 1.0) / (2.0 * (pointSize + 1.0));\n"
                                        "    aaInnerRing  *= aaInnerRing;\n"}});
    EXPECT_EQ(vertexText(key), expected);
    key.state.perVertexColor = 1;
    enableLighting(key);
    EXPECT_NE(vertexText(key).find("varying float      aaInnerRing;vec4 flight("), std::string::npos);
}

TEST_F(VertexText, AttenuationIsDeclaredAlsoWithoutPoints)
{
    key.inputs.pointAttenuation = 1;
    key.state.eyeCoordinates = 1;
    EXPECT_EQ(vertexText(key), plainWith("uniform vec3       gles_PointDistanceAttenuation;\n"
                                         "uniform float      gles_PointMinSize;\n"
                                         "uniform float      gles_PointMaxSize;\n",
                                         kEyeCoordinates, ""));
}

TEST_F(VertexText, SpritesLinesAlphaTestAndTargetsDoNotTouchIt)
{
    enableUnit(key, 0);
    const std::string expected = vertexText(key);
    key.state.pointSpriteReplace = 3;
    key.state.lineSmooth = 1;
    key.state.alphaFunc = 4;
    key.state.unit[0].cubeMap = 1;
    key.state.unit[0].external = 1;
    key.state.unit[0].projective = 1;
    key.state.combine[0].envRgb = COMBINE_DOT3_RGBA;
    key.inputs.fogBlendInShader = 1;
    EXPECT_EQ(vertexText(key), expected);
}

TEST_F(VertexText, PassThroughCopiesPositionAndCoordinates)
{
    key.state.passThrough = 1;
    enableUnit(key, 1);
    EXPECT_EQ(vertexText(key), golden("pass_through.vert"));
}

TEST_F(VertexText, PassThroughPackedWithColor)
{
    key.state.passThrough = 1;
    key.state.packedTexCoords = 1;
    key.state.perVertexColor = 1;
    enableUnit(key, 0);
    enableUnit(key, 1);
    EXPECT_EQ(vertexText(key), golden("pass_through_packed_color.vert"));
}

TEST_F(VertexText, PassThroughWithFlatColorAndAlphaFactor)
{
    key.state.passThrough = 1;
    key.state.perVertexColor = 1;
    key.state.flatShading = 1;
    key.state.alphaFactor = 1;
    EXPECT_EQ(vertexText(key),
              edited(golden("pass_through.vert"),
                     {{"void main(void)\n{\n", "flat varying vec4  gles_FragColor;\nvoid main(void)\n{\n"
                                               "    vec4 temp = clamp(gles_Color, 0.0, 1.0);\n"
                                               "    gles_FragColor = vec4(temp.rgb, temp.a * gles_alphaFactor);\n"},
                      {"    gles_TexCoord1 = gles_MultiTexCoord1;\n", ""}}));
}
