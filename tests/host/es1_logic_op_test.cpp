// SPDX-License-Identifier: MIT
// Logic operations in an ES 1.1 context, over this machine's driver.
#include "es1_fixture.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext.h>

#include <functional>

namespace {

using Operation = std::function<unsigned(unsigned s, unsigned d)>;

const struct {
    const char *label;
    GLenum name;
    Operation result;
} kOperations[] = {
    {"clear", GL_CLEAR, [](unsigned, unsigned) { return 0u; }},
    {"and", GL_AND, [](unsigned s, unsigned d) { return s & d; }},
    {"and reverse", GL_AND_REVERSE, [](unsigned s, unsigned d) { return s & ~d; }},
    {"copy", GL_COPY, [](unsigned s, unsigned) { return s; }},
    {"and inverted", GL_AND_INVERTED, [](unsigned s, unsigned d) { return ~s & d; }},
    {"noop", GL_NOOP, [](unsigned, unsigned d) { return d; }},
    {"xor", GL_XOR, [](unsigned s, unsigned d) { return s ^ d; }},
    {"or", GL_OR, [](unsigned s, unsigned d) { return s | d; }},
    {"nor", GL_NOR, [](unsigned s, unsigned d) { return ~(s | d); }},
    {"equiv", GL_EQUIV, [](unsigned s, unsigned d) { return ~(s ^ d); }},
    {"invert", GL_INVERT, [](unsigned, unsigned d) { return ~d; }},
    {"or reverse", GL_OR_REVERSE, [](unsigned s, unsigned d) { return s | ~d; }},
    {"copy inverted", GL_COPY_INVERTED, [](unsigned s, unsigned) { return ~s; }},
    {"or inverted", GL_OR_INVERTED, [](unsigned s, unsigned d) { return ~s | d; }},
    {"nand", GL_NAND, [](unsigned s, unsigned d) { return ~(s & d); }},
    {"set", GL_SET, [](unsigned, unsigned) { return ~0u; }},
};

// Every pair of bits is in these, at the low end and at the high end.
constexpr Pixel kSource = {0xCA, 0x35, 0xF0, 0x81};
constexpr Pixel kBuffer = {0xA6, 0x5A, 0x3C, 0xE7};

struct LogicOps : Es1Test {
    void SetUp() override
    {
        Es1Test::SetUp();
        clear(kBuffer);
        glColor4ub(kSource[0], kSource[1], kSource[2], kSource[3]);
        glEnable(GL_COLOR_LOGIC_OP);
    }

    static Pixel drawWith(GLenum operation)
    {
        clear(kBuffer);
        glLogicOp(operation);
        drawSquare();
        return pixelAt(8, 8);
    }

    static Pixel combined(const Operation &operation, const Pixel &s = kSource, const Pixel &d = kBuffer)
    {
        Pixel result;
        for (size_t i = 0; i < 4; ++i)
            result[i] = static_cast<uint8_t>(operation(s[i], d[i]));
        return result;
    }

    static Pixel xored(const Pixel &s = kSource, const Pixel &d = kBuffer)
    {
        return combined([](unsigned a, unsigned b) { return a ^ b; }, s, d);
    }
};

TEST_F(LogicOps, EveryOperationCombinesTheBits)
{
    for (const auto &operation : kOperations)
        EXPECT_EQ(drawWith(operation.name), combined(operation.result)) << operation.label;
}

TEST_F(LogicOps, EveryPairOfColoursIsExact)
{
    glLogicOp(GL_XOR);
    for (unsigned s = 0; s < 256; s += 5) {
        for (unsigned d = 0; d < 256; d += 15) {
            const auto colour = [](unsigned value) {
                const uint8_t byte = static_cast<uint8_t>(value);
                return Pixel{byte, static_cast<uint8_t>(255 - byte), byte, byte};
            };
            const Pixel source = colour(s), buffer = colour(d);
            clear(buffer);
            glColor4ub(source[0], source[1], source[2], source[3]);
            drawSquare();
            ASSERT_EQ(pixelAt(3, 3), xored(source, buffer)) << s << " and " << d;
        }
    }
}

TEST_F(LogicOps, TurnedOffTheColourIsWritten)
{
    drawWith(GL_XOR);
    glDisable(GL_COLOR_LOGIC_OP);
    EXPECT_EQ(drawWith(GL_XOR), kSource);
    glEnable(GL_COLOR_LOGIC_OP);
    EXPECT_EQ(drawWith(GL_XOR), xored());
    EXPECT_EQ(drawWith(GL_COPY), kSource);
}

TEST_F(LogicOps, TakeThePlaceOfBlending)
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_ZERO, GL_ONE); // would leave the buffer alone
    EXPECT_EQ(drawWith(GL_COPY), kSource);
    EXPECT_EQ(drawWith(GL_XOR), xored());
    glDisable(GL_COLOR_LOGIC_OP);
    EXPECT_EQ(drawWith(GL_XOR), kBuffer) << "blending is back";
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
}

TEST_F(LogicOps, DrawnTwiceExclusiveOrIsNothing)
{
    glLogicOp(GL_XOR);
    static const GLfloat twice[] = {-1, -1, 3, -1, -1, 3, -1, -1, 3, -1, -1, 3};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, twice);
    clear(kBuffer);
    glDrawArrays(GL_TRIANGLES, 0, 6); // both in one draw
    EXPECT_EQ(pixelAt(8, 8), kBuffer);
    const GLubyte indices[] = {0, 1, 2};
    glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_BYTE, indices);
    EXPECT_EQ(pixelAt(8, 8), xored());
}

TEST_F(LogicOps, FollowTheStateThatMakesTheColour)
{
    // Another program, a texture and uniforms that change between two draws.
    const Pixel texel = {0xFF, 0x0F, 0xFF, 0xFF};
    glBindTexture(GL_TEXTURE_2D, 1);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texel.data());
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    EXPECT_EQ(drawWith(GL_XOR), xored(texel));
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_BLEND); // of the fragment's colour to the environment's
    const GLfloat first[] = {0, 0, 0, 1}, second[] = {0, 0, 1, 1};
    glColor4f(1, 1, 1, 1);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, first);
    EXPECT_EQ(drawWith(GL_XOR), xored({0, 240, 0, 255}));
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, second);
    EXPECT_EQ(drawWith(GL_XOR), xored({0, 240, 255, 255}));
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 0, 0);
    EXPECT_EQ(drawWith(GL_XOR), xored({0, 240, 255, 255}));
    EXPECT_EQ(pixelAt(4, 8), kBuffer) << "moved to the right";
}

TEST_F(LogicOps, WorkWithFlatShadingPointsAndSmoothLines)
{
    glLogicOp(GL_XOR);
    glShadeModel(GL_FLAT);
    EXPECT_EQ(drawWith(GL_XOR), xored());
    glShadeModel(GL_SMOOTH);

    const GLfloat middle[] = {0, 0, -1, 0.0625f, 1, 0.0625f};
    glVertexPointer(2, GL_FLOAT, 0, middle);
    glPointSize(4);
    clear(kBuffer);
    glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(pixelAt(8, 8), xored());
    EXPECT_EQ(pixelAt(2, 2), kBuffer);

    glEnable(GL_LINE_SMOOTH);
    glLineWidth(6);
    glColor4ub(kSource[0], kSource[1], kSource[2], 255);
    clear(kBuffer);
    glDrawArrays(GL_LINES, 1, 2);
    EXPECT_EQ(pixelAt(8, 8), xored({kSource[0], kSource[1], kSource[2], 255})) << "the middle is wholly covered";
    EXPECT_EQ(pixelAt(8, 1), kBuffer);
}

TEST_F(LogicOps, FragmentsThatFailATestLeaveTheBuffer)
{
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_LESS, 0.5f); // alpha is 0x81
    EXPECT_EQ(drawWith(GL_XOR), kBuffer);
    glDisable(GL_ALPHA_TEST);
    glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_TRUE);
    Pixel expected = xored();
    glClear(0);
    drawSquare();
    expected[1] = kBuffer[1];
    EXPECT_EQ(pixelAt(8, 8), expected);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

TEST_F(LogicOps, AreExactInA16BitBuffer)
{
    GLuint framebuffer = 0, renderbuffer = 0;
    glGenFramebuffersOES(1, &framebuffer);
    glGenRenderbuffersOES(1, &renderbuffer);
    glBindFramebufferOES(GL_FRAMEBUFFER_OES, framebuffer);
    glBindRenderbufferOES(GL_RENDERBUFFER_OES, renderbuffer);
    glRenderbufferStorageOES(GL_RENDERBUFFER_OES, GL_RGB565_OES, kSurfaceSize, kSurfaceSize);
    glFramebufferRenderbufferOES(GL_FRAMEBUFFER_OES, GL_COLOR_ATTACHMENT0_OES, GL_RENDERBUFFER_OES, renderbuffer);
    ASSERT_EQ(glCheckFramebufferStatusOES(GL_FRAMEBUFFER_OES), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE_OES));
    // 21 of 31, 42 of 63, 10 of 31; exclusive or with 12, 20 and 31 gives 25, 62 and 21.
    glClearColor(21 / 31.0f, 42 / 63.0f, 10 / 31.0f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor4f(12 / 31.0f, 20 / 63.0f, 1, 1);
    glLogicOp(GL_XOR);
    drawSquare();
    const Pixel found = pixelAt(8, 8);
    EXPECT_EQ((found[0] * 31 + 127) / 255, 25);
    EXPECT_EQ((found[1] * 63 + 127) / 255, 62);
    EXPECT_EQ((found[2] * 31 + 127) / 255, 21);

    // Colours between those of the buffer are rounded to its bits before they are combined: 6 of 255 is nearest to 1 of
    // 31, and 1 & 21 is 1; 2 of 255 is nearest to 0 of 63, so nothing of 42 is inverted.
    glClear(GL_COLOR_BUFFER_BIT);
    glColor4ub(6, 2, 6, 255);
    glLogicOp(GL_AND);
    drawSquare();
    EXPECT_EQ((pixelAt(8, 8)[0] * 31 + 127) / 255, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glLogicOp(GL_AND_INVERTED);
    drawSquare();
    EXPECT_EQ((pixelAt(8, 8)[1] * 63 + 127) / 255, 42);
    glBindFramebufferOES(GL_FRAMEBUFFER_OES, 0);
}

TEST_F(LogicOps, AnUnknownOperationIsRefused)
{
    GLint mode = 0;
    glLogicOp(GL_NAND);
    glLogicOp(GL_SET + 1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    glGetIntegerv(GL_LOGIC_OP_MODE, &mode);
    EXPECT_EQ(mode, GL_NAND);
}

} // namespace
