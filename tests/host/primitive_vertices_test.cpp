// SPDX-License-Identifier: MIT
// Primitives taken apart, without a driver.
#include "host/gles2/primitive_vertices.h"

#include <gtest/gtest.h>
#include <string>

namespace {

// "own>other" per vertex, a blank between them.
std::string text(const PairedVertices &paired)
{
    std::string out;
    for (const PairedVertex &vertex : paired.vertices)
        out += (out.empty() ? "" : " ") + std::to_string(vertex.own) + ">" + std::to_string(vertex.other);
    return out;
}

struct Case {
    const char *what;
    GLenum mode;
    std::vector<uint32_t> indices;
    const char *expected;
};

} // namespace

TEST(PrimitiveVertices, EveryVertexGoesWithTheLastOneOfItsPrimitive)
{
    const Case cases[] = {
        {"separate triangles", GL_TRIANGLES, {7, 8, 9, 4, 5, 6}, "7>9 8>9 9>9 4>6 5>6 6>6"},
        {"one vertex left over", GL_TRIANGLES, {1, 2, 3, 4}, "1>3 2>3 3>3"},
        {"two left over", GL_TRIANGLES, {1, 2, 3, 4, 5}, "1>3 2>3 3>3"},
        {"a strip keeps its facing", GL_TRIANGLE_STRIP, {1, 2, 3, 4, 5}, "1>3 2>3 3>3 3>4 2>4 4>4 3>5 4>5 5>5"},
        {"a fan", GL_TRIANGLE_FAN, {9, 1, 2, 3}, "9>2 1>2 2>2 9>3 2>3 3>3"},
        {"too few for a strip", GL_TRIANGLE_STRIP, {1, 2}, ""},
        {"too few for a fan", GL_TRIANGLE_FAN, {1, 2}, ""},
        {"separate lines", GL_LINES, {1, 2, 3, 4}, "1>2 2>2 3>4 4>4"},
        {"half a line left over", GL_LINES, {1, 2, 3}, "1>2 2>2"},
        {"a line strip", GL_LINE_STRIP, {1, 2, 3}, "1>2 2>2 2>3 3>3"},
        {"a loop closes", GL_LINE_LOOP, {1, 2, 3}, "1>2 2>2 2>3 3>3 3>1 1>1"},
        {"a loop of two goes there and back", GL_LINE_LOOP, {1, 2}, "1>2 2>2 2>1 1>1"},
        {"a loop of one is nothing", GL_LINE_LOOP, {1}, ""},
        {"nothing", GL_LINE_LOOP, {}, ""},
        {"points", GL_POINTS, {1, 2, 3}, ""},
    };
    for (const Case &c : cases) {
        const PairedVertices paired = pairWithLast(c.mode, c.indices);
        EXPECT_EQ(text(paired), c.expected) << c.what;
        if (c.mode != GL_POINTS) {
            EXPECT_EQ(paired.mode, static_cast<GLenum>(isLineMode(c.mode) ? GL_LINES : GL_TRIANGLES)) << c.what;
        }
    }
}

TEST(PrimitiveVertices, CornersOfALineKnowItsOtherEnd)
{
    const Case cases[] = {
        {"one line", GL_LINES, {3, 5}, "3>5 5>3 3>5 3>5 5>3 5>3"},
        {"a strip", GL_LINE_STRIP, {1, 2, 3}, "1>2 2>1 1>2 1>2 2>1 2>1 2>3 3>2 2>3 2>3 3>2 3>2"},
        {"triangles have none", GL_TRIANGLES, {1, 2, 3}, ""},
    };
    for (const Case &c : cases) {
        const PairedVertices corners = cornersOfLines(c.mode, c.indices);
        EXPECT_EQ(text(corners), c.expected) << c.what;
        EXPECT_EQ(corners.mode, static_cast<GLenum>(GL_TRIANGLES)) << c.what;
    }
}

// Two triangles of one orientation that fill the rectangle between the corners.
TEST(PrimitiveVertices, TheCornersMakeARectangle)
{
    double area = 0;
    for (int triangle = 0; triangle < 2; ++triangle) {
        const float(*c)[2] = &kLineCorners[3 * triangle];
        const double twice = (c[1][0] - c[0][0]) * (c[2][1] - c[0][1]) - (c[2][0] - c[0][0]) * (c[1][1] - c[0][1]);
        EXPECT_GT(twice, 0) << triangle;
        area += twice / 2;
    }
    EXPECT_EQ(area, 2.0); // 1 along, from -1 to 1 across
}
