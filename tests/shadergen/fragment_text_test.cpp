// SPDX-License-Identifier: MIT
// Complete fragment texts. Most are golden/plain.frag or golden/one_unit.frag with the named edits.
#include "shadergen/generators.h"
#include "shadergen/text_test.h"

namespace {

using FragmentText = TextTest;

const std::string kExternalExtension = "#extension GL_OES_EGL_image_external : require\n";
const std::string kScaleDeclaration = "uniform mediump vec4        gles_TexEnvColorScale[2];\n";
const std::string kCurrentColor = "mediump         vec4        currentColor;\n\n";
const std::string kStartColor = "    currentColor = gles_FragColor;\n";
const std::string kModulate = "    currentColor *= texture1; // GL_MODULATE\n";
const std::string kResult = "    gl_FragColor = currentColor;\n}\n";
const std::string kClamp = "    currentColor = clamp(currentColor, 0.0, 1.0);\n\n";

// golden/one_unit.frag's key: unit 1 and a colour per vertex.
ProgramKey oneUnitKey()
{
    ProgramKey key = plainKey();
    key.state.perVertexColor = 1;
    enableUnit(key, 1);
    return key;
}

// one_unit.frag with another statement in place of its stage.
std::string oneUnitWith(const std::string &stage)
{
    return edited(golden("one_unit.frag"), {{kModulate, stage}});
}

// Sets argument i of a unit's combiner.
void setArgument(ProgramKey &key, uint32_t unit, uint32_t i, uint32_t rgbSource, uint32_t rgbOperand,
                 uint32_t alphaSource, uint32_t alphaOperand)
{
    key.state.combine[unit].rgbArg[i] = {.operand = rgbOperand & 3, .source = rgbSource & 7, .reservedArg = 0};
    key.state.combine[unit].alphaArg[i] = {.operand = alphaOperand & 3, .source = alphaSource & 7, .reservedArg = 0};
}

// one_unit.frag's key with a combiner on unit 1 whose arguments are the texture, the previous colour and the constant.
ProgramKey combineKey(uint32_t rgbFunction, uint32_t alphaFunction)
{
    ProgramKey key = oneUnitKey();
    key.state.combine[1].envRgb = rgbFunction & 0xF;
    key.state.combine[1].envAlpha = alphaFunction & 0xF;
    setArgument(key, 1, 0, SOURCE_TEXTURE, OPERAND_SRC_COLOR, SOURCE_TEXTURE, OPERAND_SRC_ALPHA);
    setArgument(key, 1, 1, SOURCE_PREVIOUS, OPERAND_SRC_COLOR, SOURCE_PREVIOUS, OPERAND_SRC_ALPHA);
    setArgument(key, 1, 2, SOURCE_CONSTANT, OPERAND_SRC_ALPHA, SOURCE_CONSTANT, OPERAND_SRC_ALPHA);
    return key;
}

const std::string kArg0 = "    arg0 = vec4(texture1.rgba);\n";
const std::string kArg1 = "    arg1 = vec4(currentColor.rgba);\n";
const std::string kArg2 = "    arg2 = vec4(vec3(gles_TexEnvColor[1].a), gles_TexEnvColor[1].a);\n";

} // namespace

TEST_F(FragmentText, PlainStateWritesTheUniformColor)
{
    EXPECT_EQ(fragmentText(key), golden("plain.frag"));
}

TEST_F(FragmentText, OneUnitWithColorPerVertex)
{
    EXPECT_EQ(fragmentText(oneUnitKey()), golden("one_unit.frag"));
}

TEST_F(FragmentText, FlatColor)
{
    key = oneUnitKey();
    key.state.flatShading = 1;
    EXPECT_EQ(fragmentText(key), edited(golden("one_unit.frag"),
                                        {{kExternalExtension, "#pragma GL_QRN_flat_varying\n" + kExternalExtension},
                                         {"varying mediump vec4        gles_FragColor;\n",
                                          "flat varying mediump vec4   gles_FragColor;\n"}}));
}

TEST_F(FragmentText, TwoSidedColorIsChosenByTheFace)
{
    key = oneUnitKey();
    key.state.twoSided = 1;
    const std::string color = "varying mediump vec4        gles_FragColor;\n";
    EXPECT_EQ(fragmentText(key),
              edited(golden("one_unit.frag"), {{color, color + "varying mediump vec4        gles_FragColorBack;\n"},
                                               {kStartColor, "    if (gl_FrontFacing)\n"
                                                             "    {\n"
                                                             "        currentColor = gles_FragColor;\n"
                                                             "    }\n"
                                                             "    else\n"
                                                             "    {\n"
                                                             "        currentColor = gles_FragColorBack;\n"
                                                             "    }\n"}}));
}

TEST_F(FragmentText, EverythingOnFlatSmoothLines)
{
    key.state.flatShading = 1;
    key.state.perVertexColor = 1;
    key.state.twoSided = 1;
    key.state.fogMode = FOG_EXP;
    key.state.lineSmooth = 1;
    key.state.userClip = 1;
    key.state.alphaFunc = 5;
    key.state.packedTexCoords = 1;
    enableUnit(key, 0);
    key.state.unit[0].external = 1;
    key.state.combine[0].envRgb = ENV_BLEND;
    key.state.combine[0].formatClass = FORMAT_RGB;
    enableUnit(key, 1);
    key.state.combine[1].envRgb = COMBINE_INTERPOLATE;
    key.state.combine[1].envAlpha = COMBINE_MODULATE;
    key.state.combine[1].scaled = 1;
    setArgument(key, 1, 0, SOURCE_TEXTURE1, OPERAND_SRC_COLOR, SOURCE_TEXTURE1, OPERAND_SRC_ALPHA);
    setArgument(key, 1, 1, SOURCE_PREVIOUS, OPERAND_ONE_MINUS_SRC_COLOR, SOURCE_TEXTURE0, OPERAND_SRC_ALPHA);
    setArgument(key, 1, 2, SOURCE_CONSTANT, OPERAND_SRC_ALPHA, SOURCE_PRIMARY_COLOR, OPERAND_ONE_MINUS_SRC_ALPHA);
    EXPECT_EQ(fragmentText(key), golden("flat_lines_combine.frag"));
}

TEST_F(FragmentText, SpritesOfBothUnitsWithFogBlendedInTheShader)
{
    key.state.perVertexColor = 1;
    key.state.pointSize = 1;
    key.state.pointSpriteReplace = 3;
    key.state.fogMode = FOG_LINEAR;
    key.inputs.fogBlendInShader = 1;
    enableUnit(key, 0);
    key.state.unit[0].cubeMap = 1;
    key.state.combine[0].envRgb = ENV_ADD;
    enableUnit(key, 1);
    key.state.unit[1].projective = 1; // a replaced coordinate has no q to divide by
    key.state.combine[1].envRgb = ENV_DECAL;
    key.state.combine[1].formatClass = FORMAT_RGB;
    EXPECT_EQ(fragmentText(key), golden("sprites_fog_cube.frag"));
}

TEST_F(FragmentText, SpriteBitsBelongToTheirUnit)
{
    const std::string unit0 = "    texture0 = texture2D(gles_sampler0, gl_PointCoord.xy);\n"
                              "    texture1 = texture2D(gles_sampler1, gles_TexCoord1.xy);\n";
    const std::string unit1 = "    texture0 = texture2D(gles_sampler0, gles_TexCoord0.xy);\n"
                              "    texture1 = texture2D(gles_sampler1, gl_PointCoord.xy);\n";
    enableUnit(key, 0);
    enableUnit(key, 1);
    key.state.pointSpriteReplace = 1;
    EXPECT_NE(fragmentText(key).find(unit0), std::string::npos);
    key.state.pointSpriteReplace = 2;
    EXPECT_NE(fragmentText(key).find(unit1), std::string::npos);
}

TEST_F(FragmentText, SmoothPoints)
{
    key.state.pointSize = 1;
    key.state.pointSmooth = 1;
    EXPECT_EQ(fragmentText(key), golden("smooth_points.frag"));
}

TEST_F(FragmentText, LookupsByTarget)
{
    const std::string sampler = "uniform         sampler2D gles_sampler1;\n";
    const std::string lookup = "    texture1 = texture2D(gles_sampler1, gles_TexCoord1.xy);\n";
    key = oneUnitKey();
    key.state.unit[1].external = 1;
    EXPECT_EQ(fragmentText(key),
              edited(golden("one_unit.frag"), {{sampler, "uniform         samplerExternalOES gles_sampler1;\n"}}));
    key = oneUnitKey();
    key.state.unit[1].projective = 1;
    EXPECT_EQ(fragmentText(key),
              edited(golden("one_unit.frag"),
                     {{lookup, "    texture1 = texture2DProj(gles_sampler1, gles_TexCoord1.xyzw);\n"}}));
    key.state.unit[1].cubeMap = 1; // before the projective form
    EXPECT_EQ(fragmentText(key),
              edited(golden("one_unit.frag"),
                     {{sampler, "uniform         samplerCube gles_sampler1;\n"},
                      {lookup, "    texture1 = textureCube(gles_sampler1, gles_TexCoord1.xyz);\n"}}));
}

TEST_F(FragmentText, Unit0HasItsOwnNames)
{
    enableUnit(key, 0);
    const struct {
        uint32_t cubeMap, projective, sprite;
        const char *lookup;
    } cases[] = {
        {0, 0, 0, "texture2D(gles_sampler0, gles_TexCoord0.xy)"},
        {1, 0, 0, "textureCube(gles_sampler0, gles_TexCoord0.xyz)"},
        {0, 1, 0, "texture2DProj(gles_sampler0, gles_TexCoord0.xyzw)"},
        {0, 0, 1, "texture2D(gles_sampler0, gl_PointCoord.xy)"},
        {1, 0, 1, "textureCube(gles_sampler0, vec3(gl_PointCoord.xy, 0.0))"},
    };
    for (const auto &c : cases) {
        key.state.unit[0].cubeMap = c.cubeMap & 1;
        key.state.unit[0].projective = c.projective & 1;
        key.state.pointSpriteReplace = c.sprite & 1;
        EXPECT_EQ(
            fragmentText(key),
            edited(golden("plain.frag"),
                   {{"uniform mediump vec4        gles_FragColor;\n",
                     "uniform mediump vec4        gles_FragColor;\nvarying mediump vec4        gles_TexCoord0;\n" +
                         std::string(c.cubeMap ? "uniform         samplerCube gles_sampler0;\n"
                                               : "uniform         sampler2D gles_sampler0;\n")},
                    {kStartColor, kStartColor + "    texture0 = " + c.lookup + ";\n" +
                                      "    currentColor *= texture0; // GL_MODULATE\n"}}));
    }
}

TEST_F(FragmentText, ClassicModesByFormat)
{
    const struct {
        EnvCode mode;
        const char *alphaOnly, *colorOnly, *both;
    } cases[] = {
        {ENV_MODULATE, "    currentColor.a *= texture1.a; // GL_MODULATE\n",
         "    currentColor.rgb *= texture1.rgb; // GL_MODULATE\n", "    currentColor *= texture1; // GL_MODULATE\n"},
        {ENV_DECAL, "    currentColor.rgb = texture1.rgb; // GL_DECAL\n",
         "    currentColor.rgb = texture1.rgb; // GL_DECAL\n",
         "    currentColor.rgb += (texture1.rgb - currentColor.rgb) * texture1.a; // GL_DECAL\n"},
        {ENV_ADD, "    currentColor.a *= texture1.a; // GL_ADD\n    currentColor = clamp(currentColor, 0.0, 1.0);\n\n",
         "    currentColor.rgb += texture1.rgb; // GL_ADD\n    currentColor = clamp(currentColor, 0.0, 1.0);\n\n",
         "    currentColor.rgb += texture1.rgb; // GL_ADD\n    currentColor.a *= texture1.a;     // GL_ADD\n"
         "    currentColor = clamp(currentColor, 0.0, 1.0);\n\n"},
        {ENV_BLEND, "    currentColor.a *= texture1.a; // GL_BLEND\n",
         "    currentColor.rgb += (gles_TexEnvColor[1].rgb - currentColor.rgb) * texture1.rgb; // GL_BLEND\n",
         "    currentColor = vec4(currentColor.rgb + (gles_TexEnvColor[1].rgb - currentColor.rgb) * texture1.rgb, "
         "currentColor.a * texture1.a); // GL_BLEND\n"},
        {ENV_REPLACE, "    currentColor.a = texture1.a; // GL_REPLACE\n",
         "    currentColor.rgb = texture1.rgb; // GL_REPLACE\n", "    currentColor = texture1; // GL_REPLACE\n"},
    };
    key = oneUnitKey();
    for (const auto &c : cases) {
        const char *const byFormat[] = {c.alphaOnly, c.colorOnly, c.both, c.colorOnly, c.both}; // by FormatClass
        for (uint32_t format = 0; format < 5; ++format) {
            key.state.combine[1].envRgb = c.mode;
            key.state.combine[1].formatClass = format & 7;
            EXPECT_EQ(fragmentText(key), oneUnitWith(byFormat[format])) << c.mode << ", format " << format;
        }
    }
}

TEST_F(FragmentText, CombineFunctions)
{
    const struct {
        EnvCode function;
        std::string arguments;
        const char *expression;
    } cases[] = {
        {COMBINE_REPLACE, kArg0, "arg0"},
        {COMBINE_MODULATE, kArg0 + kArg1, "(arg0 * arg1)"},
        {COMBINE_ADD, kArg0 + kArg1, "(arg0 + arg1)"},
        {COMBINE_ADD_SIGNED, kArg0 + kArg1, "(arg0 + arg1 - 0.5)"},
        {COMBINE_INTERPOLATE, kArg0 + kArg1 + kArg2, "(arg1 + arg2 * (arg0 - arg1))"},
        {COMBINE_SUBTRACT, kArg0 + kArg1, "(arg0 - arg1)"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(fragmentText(combineKey(c.function, c.function)),
                  oneUnitWith("    // GL_COMBINE\n" + c.arguments + "    currentColor.rgba = vec4(" + c.expression +
                              ");\n" + kClamp))
            << c.function;
    }
    // Every other pair of them: colour and alpha apart, as many arguments as the hungrier one needs.
    for (const auto &rgb : cases) {
        for (const auto &alpha : cases) {
            if (rgb.function == alpha.function) continue;
            const std::string &arguments =
                rgb.arguments.size() > alpha.arguments.size() ? rgb.arguments : alpha.arguments;
            EXPECT_EQ(fragmentText(combineKey(rgb.function, alpha.function)),
                      oneUnitWith("    // GL_COMBINE\n" + arguments + "    currentColor.rgb = vec3(" + rgb.expression +
                                  ");\n    currentColor.a = " + alpha.expression + ".a;\n" + kClamp))
                << rgb.function << ", " << alpha.function;
        }
    }
}

TEST_F(FragmentText, DotProductOfColorsLeavesAlphaToItsFunction)
{
    EXPECT_EQ(fragmentText(combineKey(COMBINE_DOT3_RGB, COMBINE_REPLACE)),
              oneUnitWith("    // GL_COMBINE\n" + kArg0 + kArg1 +
                          "    currentColor.rgb = vec3(4.0*dot(arg0.rgb - 0.5, arg1.rgb - 0.5));\n"
                          "    currentColor.a = arg0.a;\n" +
                          kClamp));
}

TEST_F(FragmentText, DotProductRgbaWritesAllFourComponents)
{
    const std::string dot = "    currentColor.rgba = vec4(4.0*dot(arg0.rgb - 0.5, arg1.rgb - 0.5));\n";
    for (const EnvCode alpha : {COMBINE_REPLACE, COMBINE_MODULATE, COMBINE_SUBTRACT}) {
        EXPECT_EQ(fragmentText(combineKey(COMBINE_DOT3_RGBA, alpha)),
                  oneUnitWith("    // GL_COMBINE\n" + kArg0 + kArg1 + dot + kClamp));
    }
    EXPECT_EQ(fragmentText(combineKey(COMBINE_DOT3_RGBA, COMBINE_INTERPOLATE)),
              oneUnitWith("    // GL_COMBINE\n" + kArg0 + kArg1 + kArg2 + dot + kClamp));
}

TEST_F(FragmentText, ScaleComesBeforeTheClamp)
{
    key = combineKey(COMBINE_REPLACE, COMBINE_REPLACE);
    key.state.combine[1].scaled = 1;
    EXPECT_EQ(fragmentText(key), oneUnitWith("    // GL_COMBINE\n" + kArg0 +
                                             "    currentColor.rgba = vec4(arg0);\n"
                                             "    currentColor.rgba *= gles_TexEnvColorScale[1];\n" +
                                             kClamp));
}

TEST_F(FragmentText, OperandsOfOneSource)
{
    const char *const expected[4][2] = {
        // by colour operand, then alpha operand
        {"vec4(vec3(texture1.a), texture1.a)", "vec4(vec3(texture1.a), 1.0 - texture1.a)"},
        {"vec4(vec3(1.0 - texture1.a), texture1.a)", "vec4(vec3(1.0 - texture1.a), 1.0 - texture1.a)"},
        {"vec4(texture1.rgba)", "vec4(texture1.rgb, 1.0 - texture1.a)"},
        {"vec4(1.0 - texture1.rgb, texture1.a)", "vec4(1.0 - texture1.rgba)"},
    };
    key = combineKey(COMBINE_REPLACE, COMBINE_REPLACE);
    for (uint32_t rgb = 0; rgb < 4; ++rgb) {
        for (uint32_t alpha = 0; alpha < 2; ++alpha) {
            setArgument(key, 1, 0, SOURCE_TEXTURE, rgb, SOURCE_TEXTURE, alpha);
            EXPECT_EQ(fragmentText(key),
                      oneUnitWith("    // GL_COMBINE\n    arg0 = " + std::string(expected[rgb][alpha]) +
                                  ";\n    currentColor.rgba = vec4(arg0);\n" + kClamp))
                << rgb << ", " << alpha;
        }
    }
}

TEST_F(FragmentText, DifferentSourcesAreNeverOnePiece)
{
    key = combineKey(COMBINE_REPLACE, COMBINE_REPLACE);
    setArgument(key, 1, 0, SOURCE_CONSTANT, OPERAND_SRC_COLOR, SOURCE_PREVIOUS, OPERAND_SRC_ALPHA);
    EXPECT_EQ(fragmentText(key), oneUnitWith("    // GL_COMBINE\n"
                                             "    arg0 = vec4(gles_TexEnvColor[1].rgb, currentColor.a);\n"
                                             "    currentColor.rgba = vec4(arg0);\n" +
                                             kClamp));
}

TEST_F(FragmentText, SourcesByUnit)
{
    ProgramKey both = plainKey();
    enableUnit(both, 0);
    enableUnit(both, 1);
    const char *const expected[7][2] = {
        {"", ""}, // 0 is no source
        {"texture0", "texture1"},
        {"texture0", "texture0"},
        {"texture1", "texture1"},
        {"gles_TexEnvColor[0]", "gles_TexEnvColor[1]"},
        {"gles_FragColor", "gles_FragColor"},
        {"currentColor", "currentColor"},
    };
    for (uint32_t source = SOURCE_TEXTURE; source <= SOURCE_PREVIOUS; ++source)
        for (uint32_t unit = 0; unit < 2; ++unit)
            EXPECT_STREQ(srcsel_str(both, source, unit), expected[source][unit]) << source << " on unit " << unit;
}

TEST_F(FragmentText, TextureOfADisabledUnitIsWhite)
{
    const char *const white = "vec4(1.0, 1.0, 1.0, 1.0)";
    ProgramKey only1 = plainKey();
    enableUnit(only1, 1);
    EXPECT_STREQ(srcsel_str(only1, SOURCE_TEXTURE0, 1), white);
    EXPECT_STREQ(srcsel_str(only1, SOURCE_TEXTURE1, 1), "texture1");
    ProgramKey only0 = plainKey();
    enableUnit(only0, 0);
    EXPECT_STREQ(srcsel_str(only0, SOURCE_TEXTURE1, 0), white);
    EXPECT_STREQ(srcsel_str(only0, SOURCE_TEXTURE0, 0), "texture0");

    key = combineKey(COMBINE_REPLACE, COMBINE_REPLACE);
    setArgument(key, 1, 0, SOURCE_TEXTURE0, OPERAND_SRC_COLOR, SOURCE_TEXTURE0, OPERAND_SRC_ALPHA);
    EXPECT_EQ(fragmentText(key), oneUnitWith("    // GL_COMBINE\n    arg0 = vec4(vec4(1.0, 1.0, 1.0, 1.0).rgba);\n"
                                             "    currentColor.rgba = vec4(arg0);\n" +
                                             kClamp));
}

TEST_F(FragmentText, StagesFollowEachOtherAfterBothLookups)
{
    key = oneUnitKey();
    enableUnit(key, 0);
    key.state.combine[0].envRgb = ENV_REPLACE;
    const std::string varying = "varying mediump vec4        gles_TexCoord";
    const std::string sampler = "uniform         sampler2D gles_sampler";
    const std::string lookup = "    texture1 = texture2D(gles_sampler1, gles_TexCoord1.xy);\n";
    EXPECT_EQ(fragmentText(key),
              edited(golden("one_unit.frag"),
                     {{varying + "1;\n", varying + "0;\n" + varying + "1;\n"},
                      {sampler + "1;\n", sampler + "0;\n" + sampler + "1;\n"},
                      {lookup, "    texture0 = texture2D(gles_sampler0, gles_TexCoord0.xy);\n" + lookup},
                      {kModulate, "    currentColor = texture0; // GL_REPLACE\n" + kModulate}}));
}

TEST_F(FragmentText, AlphaTestByFunction)
{
    const char *const lines[] = {
        "    discard;", // no line break
        "    if (!(currentColor.a  < gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a == gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a <= gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a  > gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a != gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a >= gles_AlphaRef)) discard;\n\n",
    };
    for (uint32_t function = 1; function <= 7; ++function) {
        key.state.alphaFunc = function & 7;
        EXPECT_EQ(fragmentText(key),
                  edited(golden("plain.frag"),
                         {{kScaleDeclaration, "uniform mediump float       gles_AlphaRef;\n" + kScaleDeclaration},
                          {kResult, lines[function - 1] + kResult}}))
            << "function " << function;
    }
}

TEST_F(FragmentText, UserClipPlane)
{
    key.state.userClip = 1;
    EXPECT_EQ(fragmentText(key),
              edited(golden("plain.frag"),
                     {{kScaleDeclaration, "uniform lowp    bool        userClipNeg;\n" + kScaleDeclaration},
                      {kCurrentColor, kCurrentColor + "varying highp   float       userClipDotVeye;\n"},
                      {kResult, "    if     (!userClipNeg && userClipDotVeye < 0.0 ) discard;\n"
                                "    else if (userClipNeg && userClipDotVeye >= 0.0) discard;\n" +
                                    kResult}}));
}

TEST_F(FragmentText, FogByTheDeviceOrInTheShader)
{
    for (const FogCode mode : {FOG_LINEAR, FOG_EXP, FOG_EXP2}) {
        const std::string declared =
            edited(golden("plain.frag"),
                   {{kScaleDeclaration, "uniform mediump vec3        gles_FogColor;\n" + kScaleDeclaration},
                    {kCurrentColor, kCurrentColor + "varying mediump float       gles_FogFactor;\n"}});
        key.state.fogMode = mode;
        key.inputs.fogBlendInShader = 0;
        EXPECT_EQ(fragmentText(key), edited(declared, {{kExternalExtension,
                                                        "#extension GL_QRN_fog_blend : require\n" + kExternalExtension},
                                                       {kResult, "    gl_FogFactor = gles_FogFactor;\n" + kResult}}));
        key.inputs.fogBlendInShader = 1;
        EXPECT_EQ(fragmentText(key),
                  edited(declared, {{kResult, "    currentColor.rgb = gles_FogColor + gles_FogFactor * "
                                              "(currentColor.rgb - gles_FogColor);\n\n" +
                                                  kResult}}));
    }
}

TEST_F(FragmentText, VertexStageFieldsDoNotTouchIt)
{
    key = oneUnitKey();
    key.state.lighting = 1;
    key.state.normalizeNormal = 1;
    key.state.lightCount = 8;
    key.state.eyeCoordinates = 1;
    key.state.alphaFactor = 1;
    key.state.colorMaterial = 1;
    key.state.mvpForm = MVP_SCALE_TRANSLATE;
    key.state.matrixPalette = 1;
    key.state.passThrough = 1;
    key.state.pointSize = 1;
    key.state.unit[1].texGen = TEXGEN_REFLECTION_MAP;
    key.state.unit[1].texMatrixForm = TEX_MATRIX_GENERAL;
    key.inputs.pointAttenuation = 1;
    EXPECT_EQ(fragmentText(key), golden("one_unit.frag"));
}

TEST_F(FragmentText, UnknownSourceIsAnAssertionAndEmpty)
{
    key = combineKey(COMBINE_REPLACE, COMBINE_REPLACE);
    for (const uint32_t source : {0u, 7u}) {
        setArgument(key, 1, 0, source, OPERAND_SRC_COLOR, source, OPERAND_SRC_ALPHA);
        EXPECT_EQ(fragmentText(key), oneUnitWith("    // GL_COMBINE\n    arg0 = vec4(.rgba);\n"
                                                 "    currentColor.rgba = vec4(arg0);\n" +
                                                 kClamp));
        EXPECT_EQ(takeAssertions(), std::vector<std::string>{"shader key: combiner source is 1 to 6"});
    }
}

TEST_F(FragmentText, ColorOperandForAlphaIsAnAssertionAndLeavesItsPieceOut)
{
    key = combineKey(COMBINE_REPLACE, COMBINE_REPLACE);
    for (const uint32_t operand : {2u, 3u}) {
        setArgument(key, 1, 0, SOURCE_TEXTURE, OPERAND_SRC_COLOR, SOURCE_TEXTURE, operand);
        EXPECT_EQ(fragmentText(key), oneUnitWith("    // GL_COMBINE\n    arg0 = vec4(texture1.rgb, "
                                                 "    currentColor.rgba = vec4(arg0);\n" +
                                                 kClamp));
        EXPECT_EQ(takeAssertions(), std::vector<std::string>{"shader key: an alpha operand is 0 or 1"});
    }
}

TEST_F(FragmentText, UnknownFormatIsAnAssertionAndSkipsClassicModes)
{
    key = oneUnitKey();
    for (const uint32_t format : {5u, 7u}) {
        key.state.combine[1].formatClass = format & 7;
        EXPECT_EQ(fragmentText(key), oneUnitWith(""));
        EXPECT_EQ(takeAssertions(), std::vector<std::string>{"shader key: formatClass is 0 to 4"});
    }
}

TEST_F(FragmentText, UnknownEnvironmentIsAnAssertionAndSkipsTheStage)
{
    key = oneUnitKey();
    for (const uint32_t code : {0u, 14u, 15u}) {
        key.state.combine[1].envRgb = code & 0xF;
        EXPECT_EQ(fragmentText(key), oneUnitWith(""));
        EXPECT_EQ(takeAssertions(), std::vector<std::string>{"shader key: environment code is 1 to 13"});
    }
}

TEST_F(FragmentText, UnknownAlphaFunctionIsAnAssertionAndEmpty)
{
    expectedAssertions = {"shader key: a combiner function is 6 to 13"};
    EXPECT_EQ(fragmentText(combineKey(COMBINE_REPLACE, 0)),
              oneUnitWith("    // GL_COMBINE\n" + kArg0 + kArg1 +
                          "    currentColor.rgb = vec3(arg0);\n    currentColor.a = .a;\n" + kClamp));
}
