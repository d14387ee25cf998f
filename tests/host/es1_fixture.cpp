// SPDX-License-Identifier: MIT
#include "es1_fixture.h"

#include <EGL/eglext.h>

#include <cstdlib>
#include <string_view>

void SurfaceTest::SetUp()
{
    display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    ASSERT_TRUE(eglInitialize(display, nullptr, nullptr));
    const EGLint criteria[] = {EGL_SURFACE_TYPE,    EGL_PBUFFER_BIT,   EGL_RED_SIZE, 8, EGL_ALPHA_SIZE, 8,
                               EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT, EGL_NONE};
    EGLint count = 0;
    ASSERT_TRUE(eglChooseConfig(display, criteria, &config, 1, &count) && count == 1);
    const EGLint size[] = {EGL_WIDTH, kSurfaceSize, EGL_HEIGHT, kSurfaceSize, EGL_NONE};
    surface = eglCreatePbufferSurface(display, config, size);
    ASSERT_TRUE(surface);
}

void SurfaceTest::TearDown()
{
    EXPECT_TRUE(eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
    EXPECT_TRUE(eglTerminate(display));
}

EGLContext SurfaceTest::create(EGLint version, EGLContext share)
{
    const EGLint attributes[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    return eglCreateContext(display, config, share, attributes);
}

bool SurfaceTest::makeCurrent(EGLContext context)
{
    return eglMakeCurrent(display, surface, surface, context);
}

void Es1Test::SetUp()
{
    SurfaceTest::SetUp();
    context = create(1);
    ASSERT_TRUE(makeCurrent(context));
}

void Es1Test::TearDown()
{
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "left by the test";
    SurfaceTest::TearDown();
}

bool overEs2()
{
    const char *limit = std::getenv("TRL20_DRIVER_LIMIT");
    return limit && std::string_view(limit) == "es2";
}

Pixel pixelAt(int x, int y)
{
    Pixel pixel = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

void clear(const Pixel &colour)
{
    glClearColor(colour[0] / 255.0f, colour[1] / 255.0f, colour[2] / 255.0f, colour[3] / 255.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

void drawSquare()
{
    static const GLfloat corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, corners);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}
