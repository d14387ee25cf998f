// SPDX-License-Identifier: MIT
// A program that runs for long: what it makes and deletes again in every frame leaves nothing behind.
#include "es1_fixture.h"

#define GL_GLEXT_PROTOTYPES
#include <GLES/glext.h>

#include <algorithm>
#include <limits>
#include <malloc.h>

namespace {

struct Memory : Es1Test {
    static size_t allocatedBytes()
    {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    }

    // Bytes that each frame leaves for ever. Drivers free later what they still draw with and enlarge tables now and
    // then, so the best of several rounds counts.
    template <typename Frame>
    static long bytesLeftPerFrame(Frame frame, long framesPerRound = 500)
    {
        constexpr long kRounds = 6;
        long least = std::numeric_limits<long>::max();
        size_t before = 0;
        for (long round = 0; round < kRounds; ++round) {
            for (long i = 0; i < framesPerRound; ++i)
                frame();
            glFinish();
            const size_t after = allocatedBytes();
            if (round > 0) least = std::min(least, static_cast<long>(after) - static_cast<long>(before));
            before = after;
        }
        return std::max(least, 0l) / framesPerRound;
    }
};

TEST_F(Memory, TexturesAndBuffersOfAFrameLeaveNothing)
{
    const GLubyte texels[8 * 8 * 4] = {};
    const GLfloat coordinates[] = {0, 0, 1, 0, 0, 1, 1, 1};
    glEnable(GL_TEXTURE_2D);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    EXPECT_EQ(bytesLeftPerFrame([&] {
                  GLuint texture = 0, buffer = 0;
                  glGenTextures(1, &texture);
                  glBindTexture(GL_TEXTURE_2D, texture);
                  glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
                  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 8, 8, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
                  glGenBuffers(1, &buffer);
                  glBindBuffer(GL_ARRAY_BUFFER, buffer);
                  glBufferData(GL_ARRAY_BUFFER, sizeof coordinates, coordinates, GL_STATIC_DRAW);
                  glTexCoordPointer(2, GL_FLOAT, 0, nullptr);
                  glBindBuffer(GL_ARRAY_BUFFER, 0);
                  drawSquare();
                  glDeleteTextures(1, &texture);
                  glDeleteBuffers(1, &buffer);
              }),
              0);
}

TEST_F(Memory, TargetsOfDrawingOfAFrameLeaveNothing)
{
    EXPECT_EQ(bytesLeftPerFrame([] {
                  GLuint framebuffer = 0, renderbuffer = 0;
                  glGenFramebuffersOES(1, &framebuffer);
                  glBindFramebufferOES(GL_FRAMEBUFFER_OES, framebuffer);
                  glGenRenderbuffersOES(1, &renderbuffer);
                  glBindRenderbufferOES(GL_RENDERBUFFER_OES, renderbuffer);
                  glRenderbufferStorageOES(GL_RENDERBUFFER_OES, GL_RGB565_OES, 8, 8);
                  glFramebufferRenderbufferOES(GL_FRAMEBUFFER_OES, GL_COLOR_ATTACHMENT0_OES, GL_RENDERBUFFER_OES,
                                               renderbuffer);
                  drawSquare();
                  glBindFramebufferOES(GL_FRAMEBUFFER_OES, 0);
                  glDeleteFramebuffersOES(1, &framebuffer);
                  glDeleteRenderbuffersOES(1, &renderbuffer);
              }),
              0);
}

// Each makes two programs, which the backend frees with it.
struct ContextMemory : Memory {
    // Makes contexts of ES 1.1 one after the other that share with a context, which is current while they go or not.
    void expectNothingLeft(EGLContext sharing, bool current, long contextsPerRound)
    {
        const auto useContext = [&] {
            const EGLContext brief = create(1, sharing);
            ASSERT_TRUE(makeCurrent(brief));
            drawSquare();
            glEnable(GL_FOG);
            drawSquare();
            ASSERT_TRUE(eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
            ASSERT_TRUE(!current || makeCurrent(sharing));
            ASSERT_TRUE(eglDestroyContext(display, brief));
        };
        EXPECT_EQ(bytesLeftPerFrame(useContext, contextsPerRound), 0);
    }
};

TEST_F(ContextMemory, ContextsOfALivingShareGroupLeaveNothing)
{
    expectNothingLeft(context, true, 35);
}

// Each is the last of its API in the group.
TEST_F(ContextMemory, ContextsThatShareWithAnotherApiLeaveNothing)
{
    const EGLContext es2 = create(2);
    expectNothingLeft(es2, false, 12);
    expectNothingLeft(es2, true, 12);

    // The other API still draws to its surface.
    const auto clearColor = reinterpret_cast<decltype(&glClearColor)>(eglGetProcAddress("glClearColor"));
    const auto clear = reinterpret_cast<decltype(&glClear)>(eglGetProcAddress("glClear"));
    clearColor(0.0f, 1.0f, 0.0f, 1.0f);
    clear(GL_COLOR_BUFFER_BIT);
    ASSERT_TRUE(makeCurrent(context));
    EXPECT_EQ(pixelAt(1, 1), (Pixel{0, 255, 0, 255}));
}

} // namespace
