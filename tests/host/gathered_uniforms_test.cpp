// SPDX-License-Identifier: MIT
// Uniforms of vertex shaders as places in one array: the texts, without a driver.
#include "tokenizer.h"
#include "translator.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

const DriverAbilities kGathering = {.gatheredVectors = 64};
const DriverAbilities kGatheringEssl300 = {.fragmentHighp = true, .essl300 = true, .gatheredVectors = 64};

const std::string kWhite = "varying mediump vec4 v;\nvoid main()\n{\n    gl_FragColor = v;\n}\n";

TranslatedProgram translate(const std::string &vertex, const std::string &fragment = kWhite,
                            const DriverAbilities &abilities = kGathering)
{
    return translateProgram(vertex, fragment, abilities);
}

// "name type[elements]@vector" of each gathered uniform; a single value has no brackets.
std::string places(const TranslatedProgram &program)
{
    std::string text;
    for (const GatheredUniform &uniform : program.gathered)
        text += (text.empty() ? "" : " ") + uniform.name + ":" + uniform.type +
                (uniform.isArray ? "[" + std::to_string(uniform.elements) + "]" : "") + "@" +
                std::to_string(uniform.vector);
    return text;
}

TEST(GatheredUniforms, EveryTypeGetsItsPlace)
{
    const TranslatedProgram program = translate("attribute vec4 p;\n"
                                                "uniform vec4 a;\n"
                                                "uniform mediump vec3 b[2]; // two\n"
                                                "uniform mat4 m;\n"
                                                "uniform mat3 n;\n"
                                                "uniform mat2 k; uniform vec2 d; uniform float s;\n"
                                                "varying vec4 v;\n"
                                                "void main()\n"
                                                "{\n"
                                                "    int i = int(p.x);\n"
                                                "    v = a + vec4(b[0] + b[i + 1], s) * m[2] + m[i];\n"
                                                "    gl_Position = m * vec4(n * p.xyz, d.y) + vec4(k[1], n[0].xy);\n"
                                                "}\n");
    EXPECT_EQ(program.vertex,
              "attribute vec4 p;\n"
              "uniform highp vec4 trl20_Uniforms[14];\n"
              " // two\n"
              "\n"
              "\n"
              "  \n"
              "varying vec4 v;\n"
              "void main()\n"
              "{\n"
              "    int i = int(p.x);\n"
              "    v = trl20_Uniforms[0] + vec4(trl20_Uniforms[1].xyz + trl20_Uniforms[1 + (i + 1)].xyz, "
              "trl20_Uniforms[13].x) * trl20_Uniforms[5] + trl20_Uniforms[3 + (i)];\n"
              "    gl_Position = mat4(trl20_Uniforms[3], trl20_Uniforms[4], trl20_Uniforms[5], trl20_Uniforms[6]) * "
              "vec4(mat3(trl20_Uniforms[7].xyz, trl20_Uniforms[8].xyz, trl20_Uniforms[9].xyz) * p.xyz, "
              "trl20_Uniforms[12].xy.y) + vec4(trl20_Uniforms[11].xy, trl20_Uniforms[7].xyz.xy);\n"
              "}\n");
    EXPECT_EQ(places(program), "a:vec4@0 b:vec3[2]@1 m:mat4@3 n:mat3@7 k:mat2@10 d:vec2@12 s:float@13");
}

TEST(GatheredUniforms, UsedMembersOfStructuresGetPlaces)
{
    const TranslatedProgram program =
        translate("struct Light {\n    vec4 color; // c\n    highp vec3 from;\n    float unused;\n};\n"
                  "uniform Light light;\nuniform\n  vec4\n  a;\nvarying vec4 v;\n"
                  "void main()\n{\n    v = light.color + a;\n    gl_Position = vec4(light . from, 1.0);\n}\n");
    EXPECT_EQ(program.vertex, "struct Light {\n    vec4 color; // c\n    highp vec3 from;\n    float unused;\n};\n"
                              "uniform highp vec4 trl20_Uniforms[3];\n\n\n\nvarying vec4 v;\n"
                              "void main()\n{\n    v = trl20_Uniforms[0] + trl20_Uniforms[2];\n"
                              "    gl_Position = vec4(trl20_Uniforms[1].xyz, 1.0);\n}\n");
    EXPECT_EQ(places(program), "light.color:vec4@0 light.from:vec3@1 a:vec4@2");
}

TEST(GatheredUniforms, ArraysTakeAsManyPlacesAsAreUsed)
{
    const std::string text = "#define COUNT 8\nuniform vec4 a[COUNT];\nuniform vec4 b[4];\nuniform vec4 c;\n"
                             "void main()\n{\n    gl_Position = a[2] + a[0] + b[int(c.x)];\n}\n";
    EXPECT_EQ(places(translate(text)), "a:vec4[3]@0 b:vec4[4]@3 c:vec4@7");
}

TEST(GatheredUniforms, TheConstantColourComesLast)
{
    const std::string fragment = "uniform mediump vec4 gles_FragColor;\nvoid main()\n{\n"
                                 "    gl_FragColor = gles_FragColor;\n}\n";
    const TranslatedProgram program = translate("attribute vec4 p;\nuniform vec4 m[2];\nvoid main()\n{\n"
                                                "    gl_Position = p * m[0] + m[1];\n}\n",
                                                fragment, kGatheringEssl300);
    EXPECT_EQ(program.vertex, "#version 300 es\n#line 1\nflat out highp vec4 trl20_FlatColor; in vec4 p;\n"
                              "uniform highp vec4 trl20_Uniforms[3];\nvoid trl20_main()\n{\n"
                              "    gl_Position = p * trl20_Uniforms[0] + trl20_Uniforms[1];\n}\n"
                              "\nvoid main()\n{\n    trl20_main();\n    trl20_FlatColor = trl20_Uniforms[2];\n}\n");
    EXPECT_EQ(places(program), "m:vec4[2]@0 gles_FragColor:vec4@2");
}

TEST(GatheredUniforms, MatrixAndColourAreGatheredInTheOldestLanguageApart)
{
    const std::string fragment = "uniform mediump vec4 gles_FragColor;\nvoid main()\n{\n"
                                 "    gl_FragColor = gles_FragColor;\n}\n";
    const TranslatedProgram program =
        translate("uniform vec4 m[2];\nvoid main()\n{\n    gl_Position = m[0] + m[1];\n}\n", fragment);
    EXPECT_EQ(places(program), "m:vec4[2]@0") << "the colour is a constant of the fragments";
}

// The rest of the text lets two others be gathered; the one in question, x, must not be.
TEST(GatheredUniforms, WhatIsNotUnderstoodStaysAlone)
{
    const struct {
        const char *what;
        const char *declaration;
        const char *use; // in main
        const char *elsewhere = "";
    } cases[] = {
        {"an array of matrices", "uniform mat4 x[4];", "x[1] * a"},
        {"another type", "uniform ivec4 x;", "vec4(x)"},
        {"a sampler", "uniform sampler2D x;", "texture2D(x, a.xy)"},
        {"two at once", "uniform vec4 x, y;", "x + y"},
        {"an array as a whole", "uniform vec4 x[2];", "f(x)", "vec4 f(vec4 q[2]) { return q[0]; }\n"},
        {"an index that is too large", "uniform vec4 x[2];", "x[2]"},
        {"a column that is too large", "uniform mat4 x;", "x[4]"},
        {"a local variable of the name", "uniform vec4 x;", "x; { vec4 x = a; gl_Position = x; } gl_Position += a"},
        {"a declared list", "uniform vec4 x;", "x; { vec4 q = a, x = b; gl_Position = x; } gl_Position += a"},
        {"a list in a for", "uniform vec4 x;", "a; for (float q = 0.0, x; q < 1.0; ++q) {} gl_Position += x"},
        {"a parameter of the name", "uniform vec4 x;", "f(x)", "vec4 f(vec4 x) { return x; }\n"},
        {"a member of the name", "uniform vec4 x;", "x", "struct S { vec4 x; };\n"},
        {"a function of the name", "uniform vec4 x;", "x(a)", "vec4 x(vec4 q) { return q; }\n"},
        {"a macro that names it", "uniform vec4 x;", "M", "#define M x.xyzw\n"},
        {"a second declaration", "uniform vec4 x; uniform vec4 x;", "x"},
        {"an assignment", "uniform vec4 x;", "x = a"},
        {"an unknown size", "uniform vec4 x[2 * 2];", "x[0]"},
        {"a whole structure", "struct S { vec4 m; }; uniform S x;", "f(x)", "vec4 f(S s) { return s.m; }\n"},
        {"an array in a structure", "struct S { vec4 m[2]; }; uniform S x;", "x.m[1]"},
        {"an array of structures", "struct S { vec4 m; }; uniform S x[2];", "x[1].m"},
        {"a structure without a name", "uniform struct { vec4 m; } x;", "x.m"},
        {"no use", "uniform vec4 x;", "a"},
        {"a use in a function that is not called", "uniform vec4 x;", "a", "vec4 f() { return x; }\n"},
    };
    for (const auto &c : cases) {
        const std::string text = std::string("uniform vec4 a; uniform vec4 b;\n") + c.declaration + "\n" + c.elsewhere +
                                 "void main()\n{\n    gl_Position = a + b;\n    gl_Position += " + c.use + ";\n}\n";
        const TranslatedProgram program = translate(text);
        EXPECT_EQ(places(program), "a:vec4@0 b:vec4@1") << c.what;
        EXPECT_NE(program.vertex.find(c.declaration), std::string::npos) << c.what;
    }
}

TEST(GatheredUniforms, FieldsOfTheNameAreFields)
{
    const TranslatedProgram program =
        translate("struct S { vec4 q; };\nuniform vec4 x; uniform vec4 y;\nvoid main()\n{\n    S s; s.q = x;\n"
                  "    gl_Position = s.q + s.q.y * y;\n}\n");
    EXPECT_EQ(program.vertex,
              "struct S { vec4 q; };\nuniform highp vec4 trl20_Uniforms[2]; \nvoid main()\n{\n"
              "    S s; s.q = trl20_Uniforms[0];\n    gl_Position = s.q + s.q.y * trl20_Uniforms[1];\n}\n");
}

TEST(GatheredUniforms, TextsThatAreNotUnderstoodStayAsTheyAre)
{
    const std::string body = "uniform vec4 a;\nuniform vec4 b;\nvoid main()\n{\n    gl_Position = a + b;\n}\n";
    ASSERT_FALSE(translate(body).gathered.empty());
    for (const std::string &text : {
             "#if 1\n" + body + "#endif\n",
             "#define F(q) q\n" + body,
             "#define vec4 vec3\n" + body,
             "#define xyz rgb\n" + body,
             "#define x a\n" + body,
             "#define E }\n" + body,
             "#define E 1\n#define E 2\n" + body,
             "#line 7\n" + body,
             "#undef X\n" + body,
             body + "}\n",
             body + ")\n",
             "float trl20_Uniforms;\n" + body,
         }) {
        const TranslatedProgram program = translate(text);
        EXPECT_EQ(program.vertex, text);
        EXPECT_TRUE(program.gathered.empty()) << text;
    }
}

TEST(GatheredUniforms, WhatTheFragmentsDeclareTooStaysAlone)
{
    const std::string vertex = "uniform vec4 a; uniform vec4 b; uniform vec4 c;\nvoid main()\n{\n"
                               "    gl_Position = a + b + c;\n}\n";
    const TranslatedProgram program =
        translate(vertex, "uniform highp vec4 b;\nvoid main()\n{\n    gl_FragColor = b;\n}\n");
    EXPECT_EQ(places(program), "a:vec4@0 c:vec4@1");
}

TEST(GatheredUniforms, OneLoadAloneIsNotGathered)
{
    EXPECT_TRUE(translate("uniform mat4 a;\nvoid main()\n{\n    gl_Position = a[0];\n}\n").gathered.empty());
    EXPECT_TRUE(translate("uniform vec4 a[2];\nvoid main()\n{\n    gl_Position = a[0];\n}\n").gathered.empty());
    EXPECT_FALSE(translate("uniform vec4 a[2];\nvoid main()\n{\n    gl_Position = a[1];\n}\n").gathered.empty());
}

TEST(GatheredUniforms, NoMoreVectorsAreTakenThanAllowed)
{
    const std::string vertex = "uniform mat4 a; uniform vec4 b;\nvoid main()\n{\n    gl_Position = a * b;\n}\n";
    EXPECT_EQ(places(translate(vertex, kWhite, {.gatheredVectors = 5})), "a:mat4@0 b:vec4@4");
    EXPECT_EQ(translate(vertex, kWhite, {.gatheredVectors = 4}).vertex, vertex);
    EXPECT_EQ(translate(vertex, kWhite, {}).vertex, vertex);
}

TEST(GatheredUniforms, ProgramsWithADoubledMainAreLeftAlone)
{
    const std::string vertex = "attribute vec4 p;\nuniform vec4 a; uniform vec4 b;\nflat varying vec4 v;\n"
                               "void main()\n{\n    v = a;\n    gl_Position = p + b;\n}\n";
    const std::string fragment = "flat " + kWhite;
    const TranslatedProgram program = translateProgram(vertex, fragment, kGathering, Expansion::FlatShading);
    EXPECT_TRUE(program.doubled);
    EXPECT_TRUE(program.gathered.empty());
    EXPECT_FALSE(translateProgram(vertex, fragment, kGathering).gathered.empty());
}

std::multiset<std::string> namesIn(const std::string &text)
{
    std::multiset<std::string> names;
    for (const Token &token : tokenize(text))
        if (token.kind == TokenKind::Identifier) names.insert(std::string(token.text));
    return names;
}

// A random text of the shapes that are gathered: `count` uniforms u0, u1 ... and what is expected of them.
struct RandomText {
    std::string text;
    std::map<std::string, std::string> types; // by name
};

RandomText randomText(std::mt19937 &random)
{
    static const char *const types[] = {"float", "vec2", "vec3", "vec4", "mat2", "mat3", "mat4"};
    static const char *const asVec4[] = {"vec4(@)",          "vec4(@, 0.0, 0.0)",    "vec4(@, 1.0)", "@",
                                         "vec4(@[1], 0, 0)", "vec4((@)[2], @[0].x)", "@ * vec4(1.0)"};
    static const char *const gaps[] = {" ", "\n", "\t", " /* gap */ ", " // gap\n", "\r\n"};
    const auto gap = [&] { return std::string(gaps[random() % std::size(gaps)]); };
    RandomText made;
    std::string sum = "vec4(0.0)";
    const unsigned count = 2 + random() % 6;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned type = random() % std::size(types);
        const std::string name = "u" + std::to_string(i);
        const bool isArray = type < 4 && random() % 2;
        made.types[name] = types[type];
        made.text += "uniform" + gap() + (random() % 2 ? "mediump " : "") + types[type] + gap() + name +
                     (isArray ? gap() + "[" + gap() + "3" + gap() + "]" : "") + gap() + ";" + gap();
        const std::string indices[] = {"0", "2", "int(p.x)", "i + (i)"};
        std::string use = asVec4[type];
        for (size_t at = 0; (at = use.find('@')) != std::string::npos;)
            use.replace(at, 1, name + (isArray ? "[" + gap() + indices[random() % 4] + "]" : ""));
        sum += gap() + "+" + gap() + use;
    }
    made.text += "\nattribute vec4 p;\nvoid main()\n{\n    int i = 1;\n    gl_Position = " + sum + ";\n}\n";
    return made;
}

TEST(GatheredUniforms, RandomTextsAreRewrittenWhole)
{
    std::mt19937 random(31);
    for (int round = 0; round < 5000; ++round) {
        const RandomText given = randomText(random);
        const TranslatedProgram program = translate(given.text);
        ASSERT_EQ(program.gathered.size(), given.types.size()) << given.text;
        ASSERT_EQ(countLineEnds(program.vertex), countLineEnds(given.text)) << program.vertex;
        const std::multiset<std::string> names = namesIn(program.vertex);
        ASSERT_GE(names.count("trl20_Uniforms"), 1 + given.types.size());
        int vector = 0;
        std::set<std::string> seen;
        for (const GatheredUniform &uniform : program.gathered) {
            ASSERT_TRUE(seen.insert(uniform.name).second);
            ASSERT_EQ(uniform.type, given.types.at(uniform.name));
            ASSERT_EQ(names.count(uniform.name), 0u) << program.vertex;
            ASSERT_EQ(uniform.vector, vector) << "places follow each other";
            vector += uniform.elements * (uniform.type.starts_with("mat") ? uniform.type[3] - '0' : 1);
        }
        ASSERT_NE(program.vertex.find("trl20_Uniforms[" + std::to_string(vector) + "];"), std::string::npos);
    }
}

// Nothing may crash, and no line may move.
TEST(GatheredUniforms, DamagedTextsSurvive)
{
    const std::string words[] = {"[",  "]",     "(",       ")",   "{",        "}",          ";",      ",",
                                 ".",  "=",     "u0",      "u1[", "uniform ", "struct S {", "vec4 ",  "#define u2 ",
                                 "\n", "for (", "return ", "3",   "//",       "/*",         "#if 1\n"};
    std::mt19937 random(32);
    int gathered = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text = randomText(random).text;
        for (unsigned edit = random() % 4; edit > 0; --edit) {
            const size_t at = random() % (text.size() + 1);
            if (random() % 3 == 0)
                text.erase(at, random() % 12);
            else
                text.insert(at, words[random() % std::size(words)]);
        }
        const TranslatedProgram program = translate(text);
        ASSERT_EQ(countLineEnds(program.vertex), countLineEnds(text)) << text;
        gathered += !program.gathered.empty();
    }
    EXPECT_GT(gathered, 5000);
}

} // namespace
