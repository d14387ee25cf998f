// SPDX-License-Identifier: MIT
// A program that links the drop-in pair as it would link the machine's libraries: ES 1.1 drawing by the real library
// and backend, beside the machine's own ES 2.0.
#include "host/es1_fixture.h"

#include <EGL/eglext.h>
#include <GLES/glext.h>

#include <array>
#include <dlfcn.h>
#include <future>
#include <string>
#include <thread>

namespace {

constexpr Pixel kRed = {255, 0, 0, 255}, kGreen = {0, 255, 0, 255}, kBlue = {0, 0, 255, 255};

using LinkedPair = SurfaceTest;

// Covers the left half of the surface with the current colour, by the fixed-function pipeline.
void drawLeftHalf()
{
    static const GLfloat corners[] = {-1, -1, 0, -1, -1, 1, 0, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, corners);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

template <typename Function>
Function procAddress(const char *name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

std::string versionByProcAddress()
{
    const GLubyte *version = procAddress<decltype(&glGetString)>("glGetString")(GL_VERSION);
    return version ? reinterpret_cast<const char *>(version) : "";
}

TEST_F(LinkedPair, DrawsEs1)
{
    ASSERT_TRUE(makeCurrent(create(1)));
    clear(kBlue);
    glColor4f(1, 0, 0, 1);
    drawLeftHalf();
    EXPECT_EQ(pixelAt(4, 8), kRed);
    EXPECT_EQ(pixelAt(12, 8), kBlue);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_TRUE(eglSwapBuffers(display, surface));
    EXPECT_EQ(eglGetError(), EGL_SUCCESS);
}

TEST_F(LinkedPair, DrawsEs1ByProcAddress)
{
    ASSERT_TRUE(makeCurrent(create(1)));
    clear(kBlue);
    procAddress<decltype(&glColor4f)>("glColor4f")(0, 1, 0, 1);
    procAddress<decltype(&glMatrixMode)>("glMatrixMode")(GL_MODELVIEW);
    procAddress<decltype(&glTranslatex)>("glTranslatex")(0x10000, 0, 0);
    drawLeftHalf();
    EXPECT_EQ(pixelAt(4, 8), kBlue);
    EXPECT_EQ(pixelAt(12, 8), kGreen) << "the left half, moved to the right";
}

TEST_F(LinkedPair, AlternatesEs1AndEs2)
{
    const EGLContext es1 = create(1), es2 = create(2);
    for (int round = 0; round < 3; round++) {
        ASSERT_TRUE(makeCurrent(es1));
        EXPECT_EQ(versionByProcAddress().rfind("OpenGL ES-CM 1.1", 0), 0u) << versionByProcAddress();
        clear(kBlue);
        glColor4f(1, 0, 0, 1);
        drawLeftHalf();
        EXPECT_EQ(pixelAt(4, 8), kRed);

        ASSERT_TRUE(makeCurrent(es2));
        EXPECT_NE(versionByProcAddress().rfind("OpenGL ES-CM", 0), 0u) << versionByProcAddress();
        procAddress<decltype(&glClearColor)>("glClearColor")(0, 1, 0, 1);
        procAddress<decltype(&glClear)>("glClear")(GL_COLOR_BUFFER_BIT);
        Pixel pixel = {};
        procAddress<decltype(&glReadPixels)>("glReadPixels")(4, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
        EXPECT_EQ(pixel, kGreen);
    }
}

TEST_F(LinkedPair, FunctionsByNameServeThreeApisSideBySide)
{
    // All are looked up once, with nothing current, and then follow the context.
    const auto getString = procAddress<decltype(&glGetString)>("glGetString");
    const auto clearColor = procAddress<decltype(&glClearColor)>("glClearColor");
    const auto clearBuffers = procAddress<decltype(&glClear)>("glClear");
    const auto readPixels = procAddress<decltype(&glReadPixels)>("glReadPixels");
    const auto getIntegerv = procAddress<decltype(&glGetIntegerv)>("glGetIntegerv");
    const auto matrixMode = procAddress<decltype(&glMatrixMode)>("glMatrixMode"); // of ES 1.1 and desktop GL
    const auto getError = procAddress<decltype(&glGetError)>("glGetError");

    const EGLContext es1 = create(1), es2 = create(2);
    ASSERT_TRUE(eglBindAPI(EGL_OPENGL_API));
    const EGLContext desktop = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    ASSERT_TRUE(eglBindAPI(EGL_OPENGL_ES_API));
    const struct {
        const char *label;
        EGLContext context;
        GLfloat red;
        bool hasMatrices;
    } apis[] = {{"ES 1.1", es1, 1.0f, true}, {"ES 2", es2, 0.2f, false}, {"desktop GL", desktop, 0.6f, true}};
    std::array<std::string, 3> versions;
    for (int round = 0; round < 2; round++)
        for (size_t i = 0; i < 3; i++) {
            ASSERT_TRUE(makeCurrent(apis[i].context)) << apis[i].label;
            versions[i] = reinterpret_cast<const char *>(getString(GL_VERSION));
            clearColor(apis[i].red, 0, 0, 1);
            clearBuffers(GL_COLOR_BUFFER_BIT);
            Pixel pixel = {};
            readPixels(4, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
            EXPECT_EQ(pixel[0], uint8_t(apis[i].red * 255 + 0.5f)) << apis[i].label;
            if (!apis[i].hasMatrices) continue;
            matrixMode(GL_PROJECTION);
            GLint mode = 0;
            getIntegerv(GL_MATRIX_MODE, &mode);
            EXPECT_EQ(mode, GL_PROJECTION) << apis[i].label;
            EXPECT_EQ(getError(), GLenum(GL_NO_ERROR)) << apis[i].label;
        }
    EXPECT_EQ(versions[0].rfind("OpenGL ES-CM 1.1", 0), 0u) << versions[0];
    EXPECT_EQ(versions[1].rfind("OpenGL ES ", 0), 0u) << versions[1];
    EXPECT_NE(versions[2].rfind("OpenGL ES", 0), 0u) << versions[2];
}

TEST_F(LinkedPair, AContextOutlivesItsDisplayOnAnotherThread)
{
    std::promise<void> isCurrent, isTerminated;
    std::thread other([&] {
        const EGLContext context = create(1);
        ASSERT_TRUE(eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context));
        isCurrent.set_value();
        isTerminated.get_future().wait();
        EXPECT_EQ(eglGetCurrentContext(), context);
        glMatrixMode(GL_TEXTURE);
        GLint mode = 0;
        glGetIntegerv(GL_MATRIX_MODE, &mode);
        EXPECT_EQ(mode, GL_TEXTURE) << "still served";
        EXPECT_TRUE(eglReleaseThread());
        EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
    });
    isCurrent.get_future().wait();
    EXPECT_TRUE(eglTerminate(display));
    isTerminated.set_value();
    other.join();
    EXPECT_TRUE(eglInitialize(display, nullptr, nullptr));
}

TEST_F(LinkedPair, SharesTexturesAmongEs1AndWithEs2)
{
    const EGLContext first = create(1);
    ASSERT_TRUE(makeCurrent(first));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, kGreen.data());
    glFinish();

    ASSERT_TRUE(makeCurrent(create(1, first)));
    clear(kBlue);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    drawLeftHalf();
    EXPECT_EQ(pixelAt(4, 8), kGreen);

    const EGLContext es2 = create(2, first);
    ASSERT_TRUE(makeCurrent(es2));
    EXPECT_TRUE(procAddress<decltype(&glIsTexture)>("glIsTexture")(texture));
}

// An opaque texture of one texel, by the functions of whatever context is current.
GLuint makeTexture(const Pixel &colour)
{
    GLuint texture = 0;
    procAddress<decltype(&glGenTextures)>("glGenTextures")(1, &texture);
    procAddress<decltype(&glBindTexture)>("glBindTexture")(GL_TEXTURE_2D, texture);
    procAddress<decltype(&glTexParameteri)>("glTexParameteri")(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    procAddress<decltype(&glTexImage2D)>("glTexImage2D")(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                                                         colour.data());
    procAddress<decltype(&glFinish)>("glFinish")();
    return texture;
}

TEST_F(LinkedPair, SharesObjectsWithAnEs2ContextAndWithOthersThatDo)
{
    const EGLContext es2 = create(2);
    ASSERT_TRUE(makeCurrent(es2));
    const GLuint theirs = makeTexture(kRed);

    ASSERT_TRUE(makeCurrent(create(1, es2)));
    EXPECT_TRUE(glIsTexture(theirs));
    const GLuint ours = makeTexture(kGreen);
    EXPECT_NE(ours, theirs);

    ASSERT_TRUE(makeCurrent(create(1, es2)));
    clear(kBlue);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, ours);
    drawLeftHalf();
    EXPECT_EQ(pixelAt(4, 8), kGreen) << "the second ES 1.1 context knows the first's textures";
    EXPECT_EQ(pixelAt(12, 8), kBlue);
}

// ES 2.0 deletes a buffer and makes another of its name: the same pointer is then to the new one.
TEST_F(LinkedPair, DrawsFromABufferThatAnEs2ContextHasReplaced)
{
    const GLfloat left[] = {-1, -1, 0, -1, -1, 1, 0, 1};
    const GLfloat right[] = {0, -1, 1, -1, 0, 1, 1, 1};
    const EGLContext es2 = create(2);
    const EGLContext es1 = create(1, es2);
    ASSERT_TRUE(makeCurrent(es1));
    const auto fill = [](GLuint buffer, const GLfloat(&corners)[8]) {
        procAddress<decltype(&glBindBuffer)>("glBindBuffer")(GL_ARRAY_BUFFER, buffer);
        procAddress<decltype(&glBufferData)>("glBufferData")(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
    };
    const auto drawn = [](GLuint buffer) {
        clear(kBlue);
        glColor4f(0, 1, 0, 1);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glEnableClientState(GL_VERTEX_ARRAY);
        glVertexPointer(2, GL_FLOAT, 0, nullptr);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        return std::array{pixelAt(4, 8), pixelAt(12, 8)};
    };
    const GLuint buffer = 5;
    fill(buffer, left);
    EXPECT_EQ(drawn(buffer), (std::array{kGreen, kBlue}));

    ASSERT_TRUE(makeCurrent(es2));
    procAddress<decltype(&glDeleteBuffers)>("glDeleteBuffers")(1, &buffer);
    fill(buffer, right);
    ASSERT_TRUE(makeCurrent(es1));
    EXPECT_EQ(drawn(buffer), (std::array{kBlue, kGreen}));
}

TEST_F(LinkedPair, AnImageOfATextureIsSeenByAContextThatSharesNothing)
{
    const EGLContext owner = create(1);
    ASSERT_TRUE(makeCurrent(owner));
    GLuint passed[3];
    glGenTextures(3, passed); // so that the names of the two contexts differ
    const GLuint texture = makeTexture(kGreen);
    const EGLImage image = eglCreateImage(display, owner, EGL_GL_TEXTURE_2D,
                                          reinterpret_cast<EGLClientBuffer>(uintptr_t(texture)), nullptr);
    ASSERT_NE(image, EGL_NO_IMAGE);

    const EGLContext stranger = create(1);
    ASSERT_TRUE(makeCurrent(stranger));
    GLuint sibling = 0;
    glGenTextures(1, &sibling);
    EXPECT_NE(sibling, texture);
    glBindTexture(GL_TEXTURE_2D, sibling);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    procAddress<PFNGLEGLIMAGETARGETTEXTURE2DOESPROC>("glEGLImageTargetTexture2DOES")(GL_TEXTURE_2D, image);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_TRUE(eglDestroyImage(display, image)) << "the texture keeps what it shows";
    glEnable(GL_TEXTURE_2D);
    clear(kBlue);
    drawLeftHalf();
    EXPECT_EQ(pixelAt(4, 8), kGreen);

    // Texels that the owner changes later are seen as well.
    ASSERT_TRUE(makeCurrent(owner));
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, kRed.data());
    glFinish();
    ASSERT_TRUE(makeCurrent(stranger));
    glBindTexture(GL_TEXTURE_2D, sibling);
    drawLeftHalf();
    EXPECT_EQ(pixelAt(4, 8), kRed);
}

TEST_F(LinkedPair, DisplaysComeAndGo)
{
    for (int round = 0; round < 10; round++) {
        ASSERT_TRUE(makeCurrent(create(1)));
        clear(kBlue);
        glColor4f(1, 0, 0, 1);
        drawLeftHalf();
        ASSERT_EQ(pixelAt(4, 8), kRed) << round;
        create(1); // never current
        ASSERT_TRUE(round % 2 || eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
        ASSERT_TRUE(eglTerminate(display));
        ASSERT_TRUE(round % 2 || eglGetCurrentContext() == EGL_NO_CONTEXT);
        SetUp();
    }
}

TEST_F(LinkedPair, TakesASurfacesFormatForItsTexture)
{
    EGLint count = 0;
    EGLConfig rgb = nullptr;
    const EGLint criteria[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_BIND_TO_TEXTURE_RGBA, EGL_TRUE, EGL_NONE};
    ASSERT_TRUE(eglChooseConfig(display, criteria, &rgb, 1, &count));
    ASSERT_EQ(count, 1) << "Mesa's surfaceless display has such configurations";
    const EGLint attributes[] = {
        EGL_WIDTH,      8,       EGL_HEIGHT, 8, EGL_TEXTURE_FORMAT, EGL_TEXTURE_RGBA, EGL_TEXTURE_TARGET,
        EGL_TEXTURE_2D, EGL_NONE};
    const EGLSurface source = eglCreatePbufferSurface(display, rgb, attributes);
    ASSERT_TRUE(makeCurrent(create(1)));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glEnable(GL_TEXTURE_2D);
    ASSERT_TRUE(eglBindTexImage(display, source, EGL_BACK_BUFFER));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glColor4f(1, 0, 0, 1);
    clear(kBlue);
    drawLeftHalf();
    // What a cleared pbuffer holds is the machine's affair, but a texture with colours replaces the red.
    EXPECT_NE(pixelAt(4, 8)[0], 255) << "as a texture without colours it would keep the fragment's";
}

TEST_F(LinkedPair, DestroyedContextsLeaveTheOthersDrawing)
{
    const EGLContext kept = create(1);
    ASSERT_TRUE(makeCurrent(kept));
    drawLeftHalf();
    for (int round = 0; round < 3; round++) {
        const EGLContext passing = create(1, round == 1 ? kept : EGL_NO_CONTEXT);
        ASSERT_TRUE(makeCurrent(passing));
        glColor4f(0, 1, 0, 1);
        drawLeftHalf();
        const bool whileCurrent = round == 2;
        ASSERT_TRUE(!whileCurrent || eglDestroyContext(display, passing));
        ASSERT_TRUE(makeCurrent(kept));
        ASSERT_TRUE(whileCurrent || eglDestroyContext(display, passing));
        clear(kBlue);
        glColor4f(1, 0, 0, 1);
        drawLeftHalf();
        EXPECT_EQ(pixelAt(4, 8), kRed) << round;
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
}

TEST_F(LinkedPair, CallsWithoutAContextDoNothing)
{
    ASSERT_TRUE(makeCurrent(create(1)));
    ASSERT_TRUE(eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
    drawLeftHalf();
    clear(kRed);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
}

TEST_F(LinkedPair, DrawsOnSeveralThreads)
{
    std::array<std::thread, 4> threads;
    for (std::thread &thread : threads)
        thread = std::thread([this] {
            const EGLint size[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
            const EGLSurface own = eglCreatePbufferSurface(display, config, size);
            const EGLContext context = create(1);
            ASSERT_TRUE(eglMakeCurrent(display, own, own, context));
            for (int i = 0; i < 20; i++) {
                clear(kBlue);
                glColor4f(1, 0, 0, 1);
                drawLeftHalf();
                ASSERT_EQ(pixelAt(4, 8), kRed);
            }
            EXPECT_TRUE(eglDestroyContext(display, context));
            EXPECT_TRUE(eglReleaseThread());
        });
    for (std::thread &thread : threads)
        thread.join();
}

TEST_F(LinkedPair, FunctionsOfOneNameAreOneFunction)
{
    ASSERT_TRUE(makeCurrent(create(1)));
    EXPECT_EQ(eglGetProcAddress("glOrthox"), reinterpret_cast<void (*)()>(&glOrthox))
        << "the library EGL drives is the one the program links";
}

} // namespace
