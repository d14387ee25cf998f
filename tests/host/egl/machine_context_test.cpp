// SPDX-License-Identifier: MIT
// The machine's own APIs through the drop-in: they draw, share and answer as if it were not there.
#include "dropin.h"

#include <GLES2/gl2.h>

#include <array>

using MachineContext = DropInTest;

namespace {

using Pixel = std::array<uint8_t, 4>;

// Clears the surface to green by functions of eglGetProcAddress and reads a pixel back.
Pixel clearedPixel()
{
    procAddress<decltype(&glClearColor)>("glClearColor")(0, 1, 0, 1);
    procAddress<decltype(&glClear)>("glClear")(GL_COLOR_BUFFER_BIT);
    Pixel pixel = {};
    procAddress<decltype(&glReadPixels)>("glReadPixels")(3, 3, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

const char *versionString()
{
    return reinterpret_cast<const char *>(procAddress<decltype(&glGetString)>("glGetString")(GL_VERSION));
}

TEST_F(MachineContext, Es2ClearsAndReadsBack)
{
    ASSERT_TRUE(makeCurrent(createEs2()));
    EXPECT_EQ(clearedPixel(), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(fakeEs1().created, fakeEs1().destroyed) << "the ES 1.1 library is not asked";
    EXPECT_EQ(std::string(versionString()).rfind("OpenGL ES ", 0), 0u) << versionString();
}

TEST_F(MachineContext, DesktopGlClearsAndReadsBack)
{
    ASSERT_TRUE(egl.eglBindAPI(EGL_OPENGL_API));
    const EGLint criteria[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_NONE};
    EGLConfig glConfig = nullptr;
    EGLint count = 0;
    ASSERT_TRUE(egl.eglChooseConfig(display, criteria, &glConfig, 1, &count));
    ASSERT_EQ(count, 1);
    const EGLContext context = egl.eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    ASSERT_NE(context, EGL_NO_CONTEXT) << "no client version is no request for ES 1.x under this API";
    ASSERT_TRUE(makeCurrent(context));
    EXPECT_EQ(fakeEs1().created, fakeEs1().destroyed);
    EXPECT_EQ(clearedPixel(), (Pixel{0, 255, 0, 255}));
    EXPECT_NE(std::string(versionString()).rfind("OpenGL ES", 0), 0u) << versionString();
    EXPECT_EQ(egl.eglGetCurrentContext(), context);
    ASSERT_TRUE(makeCurrent(EGL_NO_CONTEXT));
}

TEST_F(MachineContext, AnswersQueriesOfItself)
{
    EGLint value = 0;
    EXPECT_TRUE(egl.eglQueryContext(display, createEs2(), EGL_CONTEXT_CLIENT_VERSION, &value));
    EXPECT_GE(value, 2);
}

TEST_F(MachineContext, SharesTheObjectsOfAnEs1Context)
{
    const EGLContext es1 = createEs1();
    const EGLContext es2 = createEs2(es1);
    ASSERT_NE(es2, EGL_NO_CONTEXT) << "an ES 1.x context that was never current can be shared with";
    EXPECT_EQ(egl.eglGetCurrentContext(), EGL_NO_CONTEXT);

    ASSERT_TRUE(makeCurrent(es2));
    GLuint texture = 0;
    procAddress<decltype(&glGenTextures)>("glGenTextures")(1, &texture);
    procAddress<decltype(&glBindTexture)>("glBindTexture")(GL_TEXTURE_2D, texture);
    const EGLContext second = createEs2(es1);
    ASSERT_TRUE(makeCurrent(second));
    // The stand-in has no glIsTexture, so a second ES 2.0 context of the share group looks.
    EXPECT_TRUE(procAddress<decltype(&glIsTexture)>("glIsTexture")(texture));
}

TEST_F(MachineContext, StaysCurrentWhileAnEs1ContextIsUnwrapped)
{
    const EGLContext es1 = createEs1(), es2 = createEs2();
    ASSERT_TRUE(makeCurrent(es2));
    ASSERT_NE(createEs2(es1), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetCurrentContext(), es2);
    EXPECT_EQ(egl.eglGetCurrentSurface(EGL_DRAW), surface);
    EXPECT_EQ(egl.eglGetCurrentSurface(EGL_READ), surface);
}

TEST_F(MachineContext, ImagesAreMadeOfAnEs1ContextsTextures)
{
    // A texture of the share group, made through the ES 2.0 side, which the stand-in's context shares.
    const EGLContext es1 = createEs1(), es2 = createEs2(es1);
    ASSERT_TRUE(makeCurrent(es2));
    GLuint texture = 0;
    procAddress<decltype(&glGenTextures)>("glGenTextures")(1, &texture);
    procAddress<decltype(&glBindTexture)>("glBindTexture")(GL_TEXTURE_2D, texture);
    procAddress<decltype(&glTexImage2D)>("glTexImage2D")(GL_TEXTURE_2D, 0, GL_RGBA, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                                                         nullptr);
    procAddress<decltype(&glTexParameteri)>("glTexParameteri")(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    procAddress<decltype(&glFinish)>("glFinish")();
    ASSERT_TRUE(makeCurrent(es1));

    const auto buffer = reinterpret_cast<EGLClientBuffer>(uintptr_t(texture));
    const EGLImage image = egl.eglCreateImage(display, es1, EGL_GL_TEXTURE_2D, buffer, nullptr);
    EXPECT_NE(image, EGL_NO_IMAGE) << std::hex << egl.eglGetError();
    EXPECT_TRUE(egl.eglDestroyImage(display, image));
    const auto createImageKhr = procAddress<PFNEGLCREATEIMAGEKHRPROC>("eglCreateImageKHR");
    const EGLImage khrImage = createImageKhr(display, es1, EGL_GL_TEXTURE_2D, buffer, nullptr);
    EXPECT_NE(khrImage, EGL_NO_IMAGE) << std::hex << egl.eglGetError();
    EXPECT_TRUE(egl.eglDestroyImage(display, khrImage));

    EXPECT_EQ(egl.eglCreateImage(EGL_NO_DISPLAY, es1, EGL_GL_TEXTURE_2D, buffer, nullptr), EGL_NO_IMAGE);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_DISPLAY);
}

TEST_F(MachineContext, ErrorsAreTheMachines)
{
    EXPECT_FALSE(egl.eglDestroyContext(display, reinterpret_cast<EGLContext>(&config)));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONTEXT);
    EXPECT_FALSE(egl.eglBindAPI(EGL_NONE));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_PARAMETER);
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    EXPECT_FALSE(makeCurrent(reinterpret_cast<EGLContext>(&config)));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONTEXT);
}

} // namespace
