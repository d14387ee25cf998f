// SPDX-License-Identifier: MIT
// The shader tokenizer and translator, without a driver.
#include "line_geometry.h"
#include "shader_scan.h"
#include "tokenizer.h"
#include "translator.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

const DriverAbilities kLeast;
const DriverAbilities kEssl300 = {.fragmentHighp = true, .essl300 = true, .externalImageEssl300 = true};
const DriverAbilities kEverything = {
    .fragmentHighp = true, .essl300 = true, .externalImageEssl300 = true, .geometryEssl320 = true};

const std::string kRaisedDefaults =
    "precision highp float; precision highp int; precision highp sampler2D; precision highp samplerCube; ";

std::string joined(const std::vector<Token> &tokens)
{
    std::string text;
    for (const Token &token : tokens)
        text += token.text;
    return text;
}

// Kind letters of the tokens: s space, n line end, c comment, i identifier, 0 number, # hash, p punctuation.
std::string kinds(const std::string &source)
{
    std::string letters;
    for (const Token &token : tokenize(source))
        letters += "snci0#p"[static_cast<int>(token.kind)];
    return letters;
}

std::string vertexOnly(const std::string &source, const DriverAbilities &abilities)
{
    return translateShader(ShaderStage::Vertex, source, abilities);
}

std::string fragmentOnly(const std::string &source, const DriverAbilities &abilities)
{
    return translateShader(ShaderStage::Fragment, source, abilities);
}

// Number of the line in which `mark` stands, the way a compiler counts: from 1, set anew by #line.
int compilerLine(const std::string &text, const std::string &mark)
{
    int line = 1;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string content = text.substr(start, end - start);
        if (content.find(mark) != std::string::npos) return line;
        if (content.rfind("#line ", 0) == 0)
            line = std::stoi(content.substr(6));
        else
            ++line;
        start = end + 1;
    }
    return -1;
}

TEST(Tokenizer, KindsOfTokens)
{
    const struct {
        const char *source;
        const char *kinds;
    } cases[] = {
        {"", ""},
        {"a b", "isi"},
        {"_a1 \t\fb", "isi"},
        {"a//c\nb", "icni"},
        {"a/* x\ny */b", "ici"},
        {"a/*/b", "ic"},
        {"a/*", "ic"},
        {"a/b", "ipi"},
        {"1.5e-3+x", "0pi"},
        {".5", "0"},
        {"x.y", "ipi"},
        {"1.x", "0"},
        {"0xE+1", "0p0"},
        {"1e+", "0"},
        {"\r\n\n\r", "nnn"},
        {"#version 100", "#is0"},
        {"  # define A", "s#sisi"},
        {"/* c */ #if 1", "cs#is0"},
        {"a # b", "ispsi"},
        {"a\\\nb", "isi"},
        {"a\\b", "ipi"},
        {"\xC3\xA4$", "ppp"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(kinds(c.source), c.kinds) << c.source;
}

TEST(Tokenizer, ADirectiveEndsWithItsLineAndGoesOnOverContinuations)
{
    const std::string source = "#define A \\\n 1 /* x\n y */ 2\nb";
    std::string inside;
    for (const Token &token : tokenize(source)) {
        if (token.inDirective) inside += token.text;
    }
    EXPECT_EQ(inside, "#define A \\\n 1 /* x\n y */ 2");
}

TEST(Tokenizer, TokensPutTogetherAreTheSource)
{
    const std::string source = "#pragma x\r\nvoid main(void)\n{\n  a = 1.0e3; // end\\\nstill\n}\n/*";
    EXPECT_EQ(joined(tokenize(source)), source);
}

TEST(Tokenizer, CountsLineEnds)
{
    EXPECT_EQ(countLineEnds(""), 0);
    EXPECT_EQ(countLineEnds("a\nb\r\nc\rd"), 3);
}

TEST(Translator, UnknownTextPassesUnchanged)
{
    const std::string sources[] = {
        "",
        "attribute vec4 p;\nvoid main() { gl_Position = p; }\n",
        "#pragma STDGL invariant(all)\n#extension GL_OES_texture_3D : enable\n",
        "uniform mediump vec4 c; // bool flat varying in a comment\n",
        "int flat, boolean; float mediump_ = 1.0;\n",
        "#version 100\nvoid main() {}\n",
        "}{ 12ab $$ \x01 \"unclosed",
    };
    for (const std::string &source : sources) {
        EXPECT_EQ(vertexOnly(source, kLeast), source);
        EXPECT_EQ(fragmentOnly(source, kLeast), source);
    }
}

TEST(Translator, AShaderOfAnotherVersionIsLeftAlone)
{
    const std::string source = "#version 300 es\nflat in highp vec4 c; uniform lowp bool b; out mediump vec4 o;\n";
    EXPECT_EQ(fragmentOnly(source, kEverything), source);
    const TranslatedProgram program = translateProgram(source, source, kEverything);
    EXPECT_EQ(program.vertex, source);
    EXPECT_EQ(program.fragment, source);
    EXPECT_EQ(program.version, 0);
}

TEST(Translator, DropsThePrecisionOfBooleans)
{
    EXPECT_EQ(fragmentOnly("uniform lowp    bool        userClipNeg;\n", kLeast), "uniform bool        userClipNeg;\n");
    EXPECT_EQ(vertexOnly("mediump/*x*/bvec3 a; highp\nbool b;", kLeast), "/*x*/bvec3 a; \nbool b;");
    EXPECT_EQ(vertexOnly("#define B lowp bool\n", kLeast), "#define B bool\n");
}

TEST(Translator, DropsTheDevicesDirectivesAndKeepsTheirLines)
{
    EXPECT_EQ(vertexOnly("#pragma GL_QRN_flat_varying\n#define A 1\n", kLeast), "\n#define A 1\n");
    EXPECT_EQ(fragmentOnly("#extension GL_QRN_fog_blend : require\n#extension GL_QRN_line_coord : require\nx", kLeast),
              "\n\nx");
    EXPECT_EQ(fragmentOnly(" # extension GL_QRN_fog_blend /* a\nb */ : require // c\nx", kLeast), " \n\nx");
    EXPECT_EQ(fragmentOnly("#extension GL_OTHER_fog_blend : require\nx", kLeast),
              "#extension GL_OTHER_fog_blend : require\nx");
}

TEST(Translator, RequestsExternalImagesOnlyForAnExternalSampler)
{
    const std::string request = "#extension GL_OES_EGL_image_external : require\n";
    EXPECT_EQ(fragmentOnly(request + "uniform sampler2D s;", kLeast), "\nuniform sampler2D s;");
    EXPECT_EQ(fragmentOnly(request + "uniform samplerExternalOES s;", kLeast),
              request + "uniform samplerExternalOES s;");
    EXPECT_EQ(fragmentOnly(request + "// samplerExternalOES", kLeast), "\n// samplerExternalOES");
}

TEST(Translator, RaisesPrecisionWhereFragmentsHaveHighp)
{
    EXPECT_EQ(fragmentOnly("precision mediump float; varying lowp vec2 v;", kEssl300),
              kRaisedDefaults + "precision highp float; varying highp vec2 v;");
    EXPECT_EQ(vertexOnly("uniform mediump vec4 c;", kEssl300), "uniform highp vec4 c;")
        << "a uniform of both stages must have one precision";
    EXPECT_EQ(fragmentOnly("uniform mediump vec4 c;", kLeast), "uniform mediump vec4 c;");
}

TEST(Translator, DefaultsStandBehindTheLastExtensionOutsideOfConditions)
{
    EXPECT_EQ(fragmentOnly("#extension GL_A : enable\n\nfloat f;", kEssl300),
              "#extension GL_A : enable\n" + kRaisedDefaults + "\nfloat f;");
    EXPECT_EQ(fragmentOnly("#ifdef A\n#extension GL_A : enable\n#endif\nfloat f;", kEssl300),
              "#ifdef A\n#extension GL_A : enable\n#endif\n" + kRaisedDefaults + "float f;");
    EXPECT_EQ(fragmentOnly("#version 100\nfloat f;", kEssl300), "#version 100\n" + kRaisedDefaults + "float f;");
    EXPECT_EQ(fragmentOnly("#extension GL_A : enable", kEssl300),
              "#extension GL_A : enable" + std::string("") + kRaisedDefaults)
        << "a text without a last line end has nothing to declare for";
}

TEST(Translator, DeclarationsBeforeADirectiveTakeALineThatDoesNotCount)
{
    EXPECT_EQ(fragmentOnly("\n#extension GL_A : enable\n#define B\n", kEssl300),
              "\n#extension GL_A : enable\n" + kRaisedDefaults + "\n#line 3\n#define B\n");
}

const std::string kFlatVertex =
    "#pragma GL_QRN_flat_varying\n\nattribute vec4 gles_Vertex;\nattribute vec4 gles_Color;\n"
    "flat varying vec4  gles_FragColor;\nvarying vec4 gles_TexCoord0;\n"
    "void main(void)\n{\n gl_Position = gles_Vertex; gles_FragColor = gles_Color;\n}\n";
const std::string kFlatFragment =
    "\n#pragma GL_QRN_flat_varying\n#extension GL_OES_EGL_image_external : require\n\n"
    "flat varying mediump vec4   gles_FragColor;\nvarying mediump vec4 gles_TexCoord0;\n"
    "uniform sampler2D gles_sampler0;\nuniform lowp    bool        userClipNeg;\n"
    "void main(void)\n{\n gl_FragColor = gles_FragColor * texture2D(gles_sampler0, gles_TexCoord0.xy)"
    " * texture2DProj(gles_sampler0, gles_TexCoord0.xyzw);\n}\n";

TEST(Translator, FlatVaryingsTakeBothShadersToVersion300)
{
    const TranslatedProgram program = translateProgram(kFlatVertex, kFlatFragment, kEssl300);
    EXPECT_EQ(program.version, 300);
    EXPECT_FALSE(program.flatLost);
    EXPECT_TRUE(program.geometry.empty());
    EXPECT_EQ(program.vertex, "#version 300 es\n#line 1\n\n\nin vec4 gles_Vertex;\nin vec4 gles_Color;\n"
                              "flat out vec4  gles_FragColor;\nout vec4 gles_TexCoord0;\n"
                              "void main(void)\n{\n gl_Position = gles_Vertex; gles_FragColor = gles_Color;\n}\n");
    EXPECT_EQ(program.fragment,
              "#version 300 es\n#line 1\n\n\n\n" + kRaisedDefaults +
                  "out highp vec4 trl20_FragColor; \n"
                  "flat in highp vec4   gles_FragColor;\nin highp vec4 gles_TexCoord0;\n"
                  "uniform sampler2D gles_sampler0;\nuniform bool        userClipNeg;\n"
                  "void main(void)\n{\n trl20_FragColor = gles_FragColor * texture(gles_sampler0, gles_TexCoord0.xy)"
                  " * textureProj(gles_sampler0, gles_TexCoord0.xyzw);\n}\n");
}

const std::string kColorFragment = "uniform mediump vec4        gles_FragColor;\nvoid main(void)\n{\n"
                                   "    gl_FragColor = gles_FragColor;\n}\n";

TEST(Translator, TheConstantColourGoesThroughTheVertexShader)
{
    const TranslatedProgram program =
        translateProgram("attribute vec4 gles_Vertex;\nvoid main(void)\n{\n    gl_Position = gles_Vertex;\n}\n",
                         kColorFragment, kEssl300);
    EXPECT_EQ(program.version, 300);
    EXPECT_EQ(program.vertex,
              "#version 300 es\n#line 1\n"
              "uniform highp vec4 gles_FragColor; flat out highp vec4 trl20_FlatColor; in vec4 gles_Vertex;\n"
              "void trl20_main(void)\n{\n    gl_Position = gles_Vertex;\n}\n"
              "\nvoid main()\n{\n    trl20_main();\n    trl20_FlatColor = gles_FragColor;\n}\n");
    EXPECT_EQ(program.fragment, "#version 300 es\n#line 1\n" + kRaisedDefaults +
                                    "out highp vec4 trl20_FragColor; flat in highp vec4        trl20_FlatColor;\n"
                                    "void main(void)\n{\n    trl20_FragColor = trl20_FlatColor;\n}\n");
    EXPECT_FALSE(program.flatLost);
}

TEST(Translator, TheConstantColourStaysWhereItCannotGoThroughTheVertexShader)
{
    const std::string vertex = "void main()\n{\n    gl_Position = vec4(0.0);\n}\n";
    const auto stays = [&](const std::string &vertexText, const std::string &fragment, const DriverAbilities &abilities,
                           Expansion expansion = Expansion::None) {
        const TranslatedProgram program = translateProgram(vertexText, fragment, abilities, expansion);
        return program.vertex.find("trl20_FlatColor") == std::string::npos &&
               program.fragment.find("vec4        gles_FragColor;") != std::string::npos;
    };
    EXPECT_FALSE(stays(vertex, kColorFragment, kEssl300));
    EXPECT_TRUE(stays(vertex, kColorFragment, kLeast));
    EXPECT_TRUE(stays("uniform vec4 gles_FragColor;\n" + vertex, kColorFragment, kEssl300));
    EXPECT_TRUE(stays(vertex, kColorFragment, kEverything, Expansion::Lines)) << "a geometry shader stands between";
    const std::string external = "#extension GL_OES_EGL_image_external : require\nuniform samplerExternalOES s;\n";
    EXPECT_TRUE(stays(vertex, external + kColorFragment, {.fragmentHighp = true, .essl300 = true}));
    for (const char *other : {"uniform vec3        gles_FragColor;", "uniform vec4        gles_FragColor[2];",
                              "varying vec4        gles_FragColor;", "uniform vec4        gles_FragColor, other;"}) {
        const TranslatedProgram program = translateProgram(vertex, other + std::string("\nvoid main() {}\n"), kEssl300);
        EXPECT_EQ(program.version, 100) << other;
        EXPECT_NE(program.fragment.find("gles_FragColor"), std::string::npos) << other;
    }
}

TEST(Translator, WithoutVersion300FlatBecomesSmoothAndIsReported)
{
    const TranslatedProgram program = translateProgram(kFlatVertex, kFlatFragment, kLeast);
    EXPECT_EQ(program.version, 100);
    EXPECT_TRUE(program.flatLost);
    EXPECT_EQ(program.vertex.find("flat varying"), std::string::npos);
    EXPECT_NE(program.vertex.find("\nvarying vec4  gles_FragColor;"), std::string::npos);
    EXPECT_NE(program.fragment.find("\nvarying mediump vec4   gles_FragColor;"), std::string::npos);
}

TEST(Translator, AFlatVaryingInOneStageIsFlatInBoth)
{
    const TranslatedProgram program =
        translateProgram("varying vec4 a, b; varying vec2 c;", "flat varying mediump vec4 b;", kEssl300);
    EXPECT_EQ(program.vertex, "#version 300 es\n#line 1\nflat out vec4 a, b; out vec2 c;");
    EXPECT_EQ(program.version, 300);
}

TEST(Translator, ExternalSamplersInVersion300NeedTheOtherExtension)
{
    const std::string fragment = "#extension GL_OES_EGL_image_external : require\nflat varying mediump vec4 c;\n"
                                 "uniform samplerExternalOES s;\nvoid main() { gl_FragColor = texture2D(s, c.xy); }\n";
    const TranslatedProgram program = translateProgram("flat varying vec4 c;", fragment, kEssl300);
    EXPECT_EQ(program.version, 300);
    EXPECT_NE(program.fragment.find("#extension GL_OES_EGL_image_external_essl3 : require\n"), std::string::npos);
    EXPECT_NE(program.fragment.find("precision highp samplerExternalOES; "), std::string::npos);

    DriverAbilities withoutIt = kEssl300;
    withoutIt.externalImageEssl300 = false;
    const TranslatedProgram smooth = translateProgram("flat varying vec4 c;", fragment, withoutIt);
    EXPECT_EQ(smooth.version, 100);
    EXPECT_TRUE(smooth.flatLost);
    EXPECT_NE(smooth.fragment.find("#extension GL_OES_EGL_image_external : require\n"), std::string::npos);
}

TEST(Translator, ExtensionsThatVersion300ContainsAreDropped)
{
    const std::string fragment = "#extension GL_OES_standard_derivatives : enable\nflat varying vec2 v;";
    EXPECT_EQ(fragmentOnly(fragment, kEssl300).find("GL_OES_standard_derivatives"), std::string::npos);
    EXPECT_NE(fragmentOnly("#extension GL_OES_standard_derivatives : enable\n", kEssl300)
                  .find("#extension GL_OES_standard_derivatives : enable\n"),
              std::string::npos);
}

TEST(Translator, TheFogFactorBecomesAVariable)
{
    const std::string fragment = "#extension GL_QRN_fog_blend : require\n"
                                 "varying mediump float f;\nvoid main() { gl_FogFactor = f; }\n";
    EXPECT_EQ(fragmentOnly(fragment, kLeast), "\nmediump float trl20_FogFactor; varying mediump float f;\n"
                                              "void main() { trl20_FogFactor = f; }\n");
}

const std::string kLineFragment = "#extension GL_QRN_line_coord : require\nvarying mediump vec4 c;\n"
                                  "void main() { if (gl_FrontFacing) gl_FragColor = c * abs(gl_LineCoord.y - 0.5); }\n";

TEST(Translator, WithoutGeometryShadersALineIsAllMiddle)
{
    const TranslatedProgram program = translateProgram("varying vec4 c;", kLineFragment, kEssl300);
    EXPECT_EQ(program.version, 100);
    EXPECT_TRUE(program.lineCoordLost);
    EXPECT_NE(program.fragment.find("abs(vec4(0.5).y - 0.5)"), std::string::npos);
    EXPECT_NE(program.fragment.find("if (gl_FrontFacing)"), std::string::npos);
}

TEST(Translator, GeometryShadersHandTheVaryingsOn)
{
    const std::string vertex = "flat varying vec4 c;\nvarying vec2 t;\nattribute vec4 p;\n"
                               "#define both c.xy + t\nvoid main() { c = p; t = both; gl_Position = p; }\n";
    const TranslatedProgram program = translateProgram(vertex, kLineFragment, kEverything);
    EXPECT_EQ(program.version, 320);
    EXPECT_FALSE(program.lineCoordLost);
    EXPECT_FALSE(program.flatLost);
    EXPECT_EQ(program.vertex, "#version 320 es\n#line 1\nflat out vec4 trl20_v_c;\nout vec2 trl20_v_t;\nin vec4 p;\n"
                              "#define both trl20_v_c.xy + trl20_v_t\n"
                              "void main() { trl20_v_c = p; trl20_v_t = both; gl_Position = p; }\n");
    EXPECT_EQ(program.geometry.rfind("#version 320 es\n", 0), 0u);
    EXPECT_NE(program.geometry.find("flat in vec4 trl20_v_c[];\nflat out vec4 c;\n"), std::string::npos);
    EXPECT_NE(program.geometry.find("in vec2 trl20_v_t[];\nout vec2 t;\n"), std::string::npos);
    EXPECT_NE(program.fragment.find("flat in highp vec4 c;"), std::string::npos);
    EXPECT_NE(program.fragment.find("in highp vec4 trl20_LineCoord;"), std::string::npos);
    EXPECT_NE(program.fragment.find("abs((trl20_LineCoord / trl20_LineCoord.w).y - 0.5)"), std::string::npos);
    EXPECT_NE(program.fragment.find("if (true)"), std::string::npos);
}

TEST(Translator, GeometryShadersAsAnExtensionOfVersion310)
{
    DriverAbilities abilities = kEssl300;
    abilities.geometryExtensionEssl310 = "GL_EXT_geometry_shader";
    const TranslatedProgram program = translateProgram("varying vec4 c;", kLineFragment, abilities);
    EXPECT_EQ(program.version, 310);
    EXPECT_EQ(program.vertex.rfind("#version 310 es\n", 0), 0u);
    EXPECT_EQ(program.geometry.rfind("#version 310 es\n#extension GL_EXT_geometry_shader : require\n", 0), 0u);
}

TEST(Translator, VaryingsThatCannotBeHandedOnKeepTheConstantMiddle)
{
    for (const char *vertex : {"varying vec4 c[2];", "#if A\nvarying vec4 c;\n#endif\n", "#define V varying vec4\nV c;",
                               "struct S { vec4 a; }; varying S c;", "varying vec4"}) {
        const TranslatedProgram program = translateProgram(vertex, kLineFragment, kEverything);
        EXPECT_TRUE(program.lineCoordLost) << vertex;
        EXPECT_TRUE(program.geometry.empty()) << vertex;
    }
}

TEST(Translator, LinesKeepTheirNumbersInEveryVersion)
{
    const std::string vertex = "#pragma GL_QRN_flat_varying\n#define A 1\nflat varying vec4 c;\nMARK\n";
    const std::string fragments[] = {
        "\n#pragma GL_QRN_flat_varying\n#extension GL_OES_EGL_image_external : require\n#define B\nvarying vec4 "
        "c;\nMARK",
        "\n#extension GL_QRN_fog_blend : require\n#extension GL_QRN_line_coord : require\n\ngl_LineCoord;\nMARK",
        "gl_FragColor;\n\n\n\nfloat f; lowp\nMARK bool",
    };
    for (const DriverAbilities &abilities : {kLeast, kEssl300, kEverything}) {
        for (const std::string &fragment : fragments) {
            const TranslatedProgram program = translateProgram(vertex, fragment, abilities);
            EXPECT_EQ(compilerLine(program.vertex, "MARK"), 4) << program.vertex;
            EXPECT_EQ(compilerLine(program.fragment, "MARK"), 6) << program.fragment;
        }
    }
}

// Random damage to real texts: nothing may crash, tokens stay whole, and line numbers stay right where the text has no
// #line of its own.
TEST(Translator, SurvivesDamagedTexts)
{
    const std::string alphabet = "#\n\r\\/* {};,\"flatvaryinglowpbool0x1e+.\xFF";
    const std::string words[] = {"flat varying ", "#if\n", "#endif\n",      "gl_LineCoord", "samplerExternalOES",
                                 "#extension ",   "lowp ", "bool ",         "varying ",     "/*",
                                 "#version 300",  "\\\n",  "gl_FogFactor=", "//",           "#version 100\n"};
    std::mt19937 random(20);
    for (int round = 0; round < 20000; ++round) {
        std::string texts[2] = {kFlatVertex, round % 2 ? kFlatFragment : kLineFragment};
        for (std::string &text : texts) {
            for (int edit = random() % 8; edit >= 0; --edit) {
                const size_t at = random() % (text.size() + 1);
                switch (random() % 3) {
                case 0:
                    text.insert(at, 1, alphabet[random() % alphabet.size()]);
                    break;
                case 1:
                    text.insert(at, words[random() % std::size(words)]);
                    break;
                case 2:
                    text.erase(at, random() % 20);
                    break;
                }
            }
            ASSERT_EQ(joined(tokenize(text)), text);
        }
        for (const DriverAbilities &abilities : {kLeast, kEverything}) {
            const TranslatedProgram program = translateProgram(texts[0], texts[1], abilities);
            ASSERT_GE(countLineEnds(program.vertex), program.version == 100 ? countLineEnds(texts[0]) : 0);
            for (Expansion expansion : {Expansion::FlatShading, Expansion::Lines})
                translateProgram(texts[0], texts[1], abilities, expansion);
        }
    }
}

} // namespace
