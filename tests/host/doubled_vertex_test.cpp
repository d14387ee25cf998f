// SPDX-License-Identifier: MIT
// Vertex shaders that run their main twice, and which attributes that takes; without a driver.
#include "attribute_use.h"
#include "translator.h"

#include <gtest/gtest.h>
#include <string>

namespace {

const DriverAbilities kLeast;
const DriverAbilities kEverything = {
    .fragmentHighp = true, .essl300 = true, .externalImageEssl300 = true, .geometryEssl320 = true};

const std::string kVertex = "attribute vec4 gles_Vertex;\n"
                            "attribute vec4 gles_Color, gles_Coord;\n"
                            "attribute float unused;\n"
                            "flat varying vec4 c;\n"
                            "varying vec4 t;\n"
                            "void main(void)\n{\n    c = gles_Color;\n    t = gles_Coord;\n"
                            "    gl_Position = gles_Vertex;\n}\n";
const std::string kFragment = "flat varying lowp vec4 c;\nvarying lowp vec4 t;\n"
                              "void main()\n{\n    gl_FragColor = gl_FrontFacing ? c : t;\n}\n";
const std::string kSmoothFragment = "varying lowp vec4 t;\nvoid main()\n{\n    gl_FragColor = t * gl_LineCoord.y;\n}\n";

bool has(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

std::string namesOf(const std::set<std::string_view> &names)
{
    std::string out;
    for (const std::string_view name : names)
        out += (out.empty() ? "" : " ") + std::string(name);
    return out;
}

std::string attributesOf(const std::string &text, const std::set<std::string_view> &results)
{
    const ShaderScan scan = scanShader(text);
    return namesOf(attributesFor(scan, results));
}

} // namespace

TEST(DoubledVertex, FlatShadingTakesColoursFromTheOtherVertexAndTheRestFromTheOwn)
{
    const TranslatedProgram program = translateProgram(kVertex, kFragment, kLeast, Expansion::FlatShading);
    EXPECT_TRUE(program.doubled);
    EXPECT_FALSE(program.flatLost);
    EXPECT_EQ(program.version, 100);
    EXPECT_EQ(program.vertex, "attribute vec4 trl20_own_gles_Vertex; vec4 gles_Vertex; \n"
                              "attribute vec4 trl20_other_gles_Color; vec4 gles_Color; "
                              "attribute vec4 trl20_own_gles_Coord; vec4 gles_Coord; \n"
                              "float unused; \n"
                              "varying vec4 c;\n"
                              "varying vec4 t;\n"
                              "void trl20_main(void)\n{\n    c = gles_Color;\n    t = gles_Coord;\n"
                              "    gl_Position = gles_Vertex;\n}\n"
                              "\nvoid main()\n{\n"
                              "    gles_Vertex = vec4(0.0);\n"
                              "    gles_Color = trl20_other_gles_Color;\n"
                              "    gles_Coord = vec4(0.0);\n"
                              "    unused = float(0.0);\n"
                              "    trl20_main();\n"
                              "    vec4 trl20_flat_c = c;\n"
                              "    gles_Vertex = trl20_own_gles_Vertex;\n"
                              "    gles_Color = vec4(0.0);\n"
                              "    gles_Coord = trl20_own_gles_Coord;\n"
                              "    unused = float(0.0);\n"
                              "    trl20_main();\n"
                              "    c = trl20_flat_c;\n"
                              "}\n");
    EXPECT_TRUE(has(program.fragment, "gl_FrontFacing")) << "triangles have two sides";
}

TEST(DoubledVertex, LinesTakePositionAndFlatColoursFromBothEnds)
{
    const TranslatedProgram program = translateProgram(kVertex, kFragment, kLeast, Expansion::Lines);
    EXPECT_TRUE(program.doubled);
    EXPECT_TRUE(program.geometry.empty());
    for (const char *part :
         {"attribute vec4 trl20_own_gles_Vertex; attribute vec4 trl20_other_gles_Vertex; vec4 gles_Vertex;",
          "attribute vec4 trl20_own_gles_Color; attribute vec4 trl20_other_gles_Color; vec4 gles_Color;",
          "attribute vec4 trl20_own_gles_Coord; vec4 gles_Coord;", "attribute vec2 trl20_Corner;",
          "vec4 trl20_far = gl_Position;", "if (!trl20_second) {\n    c = trl20_flat_c;\n    }\n",
          "abs(along.x) >= abs(along.y)"})
        EXPECT_TRUE(has(program.vertex, part)) << part;
    EXPECT_FALSE(has(program.fragment, "gl_FrontFacing")) << "lines have one side";
    EXPECT_TRUE(has(program.fragment, "varying mediump vec4 trl20_LineCoord;"));
    EXPECT_TRUE(has(program.fragment, "discard;\n    trl20_main();"));
}

TEST(DoubledVertex, SmoothLinesAreSquare)
{
    const TranslatedProgram plain = translateProgram(kVertex, kSmoothFragment, kLeast);
    EXPECT_TRUE(plain.lineCoordLost);
    const TranslatedProgram program = translateProgram(kVertex, kSmoothFragment, kLeast, Expansion::Lines);
    EXPECT_FALSE(program.lineCoordLost);
    EXPECT_TRUE(has(program.vertex, "normalize(vec2(-along.y, along.x))"));
    EXPECT_TRUE(has(program.fragment, "(trl20_LineCoord / trl20_LineCoord.w).y"));
}

TEST(DoubledVertex, GeometryShadersDoLinesWithoutASecondSet)
{
    const TranslatedProgram program = translateProgram(kVertex, kFragment, kEverything, Expansion::Lines);
    EXPECT_FALSE(program.doubled);
    EXPECT_EQ(program.version, 320);
    EXPECT_TRUE(has(program.geometry, "abs(along.x) >= abs(along.y)"));
    EXPECT_TRUE(has(program.vertex, "in vec4 gles_Vertex;"));
}

TEST(DoubledVertex, TheNewerLanguageIsFlatByItself)
{
    const TranslatedProgram program = translateProgram(kVertex, kFragment, kEverything, Expansion::FlatShading);
    EXPECT_FALSE(program.doubled);
    EXPECT_EQ(program.version, 300);
}

TEST(DoubledVertex, TextsThatCannotBeDoubledStayAsTheyAre)
{
    const std::string rest = "flat varying vec4 c;\nvoid main() { c = a; gl_Position = a; }\n";
    for (const std::string &vertex :
         {"#if X\nattribute vec4 a;\n#endif\n" + rest, "attribute mat4 m;\nattribute vec4 a;\n" + rest,
          "#define A attribute vec4\nA a;\n" + rest, "attribute vec4 a[2];\n" + rest,
          std::string("attribute vec4 a;\nflat varying vec4 c;\n"), rest}) {
        const TranslatedProgram program = translateProgram(vertex, kFragment, kLeast, Expansion::FlatShading);
        EXPECT_FALSE(program.doubled) << vertex;
        EXPECT_TRUE(program.flatLost) << vertex;
    }
}

TEST(AttributeUse, FollowsWhatResultsAreMadeOf)
{
    const std::string head = "attribute vec4 a, b, c, d;\nvarying vec4 v;\n";
    const struct {
        const char *what;
        std::string text;
        const char *expected;
    } cases[] = {
        {"an assignment", head + "void main() { v = a; gl_Position = b; }", "b"},
        {"through variables", head + "vec4 x;\nvoid main() { x = a + b; vec4 y = x.xyzw; gl_Position = y; }", "a b"},
        {"added to", head + "void main() { gl_Position = a; gl_Position.x += b.y; }", "a b"},
        {"through a function's result", head + "vec4 f() { return c; }\nvoid main() { gl_Position = f(); v = a; }",
         "c"},
        {"through its argument", head + "vec4 f(vec4 p) { return p; }\nvoid main() { gl_Position = f(d); v = a; }",
         "d"},
        {"through what it writes", head + "vec4 g;\nvoid f(vec4 p) { g = p; }\nvoid main() { f(b); gl_Position = g; }",
         "b"},
        {"under a condition",
         head + "vec4 f() { if (a.x > 0.0) { return b; } return c; }\n"
                "void main() { gl_Position = f(); v = d; }",
         "a b c"},
        {"a condition around an assignment", head + "void main() { if (c.x == 1.0) gl_Position = b; v = a; }", "b c"},
        {"through a macro", head + "#define P v.xy\nvoid main() { P = a.xy; gl_Position = v + b; }", "a b"},
        {"an index", head + "uniform mat4 m[3];\nvoid main() { gl_Position = m[int(d.x)] * a; }", "a d"},
        {"comparisons assign nothing",
         head + "void main() { bool q = a == b; gl_Position = c; if (d.x >= 1.0) { v = a; } }", "c d"},
        {"comments do nothing", head + "void main() { gl_Position = a; // b\n v = c; /* d */ }", "a"},
        {"fields are not names", head + "void main() { gl_Position = a.b; }", "a"},
        {"values that come back are not followed",
         head + "void f(out vec4 p) { p = a; }\nvoid main() { f(gl_Position); }", "a b c d"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(attributesOf(c.text, {"gl_Position"}), c.expected) << c.what;
}

TEST(AttributeUse, NothingWantedNeedsNothing)
{
    EXPECT_EQ(attributesOf(kVertex, {}), "");
    EXPECT_EQ(attributesOf(kVertex, {"c", "t"}), "gles_Color gles_Coord");
}
