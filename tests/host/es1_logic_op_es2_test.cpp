// SPDX-License-Identifier: MIT
// Logic operations over a driver that cannot do them: OpenGL ES 2.0 alone, without framebuffer fetch.
#include "es1_fixture.h"

#include <cstdlib>

namespace {

constexpr Pixel kSource = {0xCA, 0x35, 0xF0, 0x81};
constexpr Pixel kBuffer = {0xA6, 0x5A, 0x3C, 0xE7};

struct LogicOpsOverEs2 : Es1Test {
    static void SetUpTestSuite()
    {
        setenv("TRL20_DRIVER_LIMIT", "es2", 1);
    }

    static Pixel drawWith(GLenum operation)
    {
        clear(kBuffer);
        glColor4ub(kSource[0], kSource[1], kSource[2], kSource[3]);
        glLogicOp(operation);
        drawSquare();
        return pixelAt(8, 8);
    }
};

TEST_F(LogicOpsOverEs2, AreAcceptedAndIgnoredAndToldOnce)
{
    testing::internal::CaptureStderr();
    glEnable(GL_COLOR_LOGIC_OP);
    EXPECT_EQ(drawWith(GL_COPY), kSource);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "a copy is no loss";

    testing::internal::CaptureStderr();
    EXPECT_EQ(drawWith(GL_XOR), kSource);
    EXPECT_EQ(drawWith(GL_INVERT), kSource);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "trl20: this driver has no logic operations; colours are written as they are\n");

    GLint mode = 0;
    glGetIntegerv(GL_LOGIC_OP_MODE, &mode);
    EXPECT_EQ(mode, GL_INVERT);
    EXPECT_TRUE(glIsEnabled(GL_COLOR_LOGIC_OP));
}

TEST_F(LogicOpsOverEs2, ACopyTakesThePlaceOfBlending)
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_ZERO, GL_ONE); // would leave the buffer alone
    glEnable(GL_COLOR_LOGIC_OP);
    EXPECT_EQ(drawWith(GL_COPY), kSource);
    EXPECT_EQ(drawWith(GL_XOR), kBuffer) << "an operation that is ignored leaves blending as it is";
    glDisable(GL_COLOR_LOGIC_OP);
    EXPECT_EQ(drawWith(GL_COPY), kBuffer);
}

} // namespace
