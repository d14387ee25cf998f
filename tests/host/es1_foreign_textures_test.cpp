// SPDX-License-Identifier: MIT
// Textures that an ES 2 or desktop context of the share group has given their images, in an ES 1.1 context.
#include "es1_fixture.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext.h>

#include <vector>

namespace {

// Vendor-neutral names that the headers of ES 1.1 lack.
constexpr GLenum kLuminance8 = 0x8040, kLuminance8Alpha8 = 0x8045, kRgba8 = 0x8058;

struct Upload {
    GLenum format;
    std::vector<uint8_t> texel;
    GLenum internalFormat = format;
};

// The functions of whatever API is current.
template <typename Function>
Function named(const char *name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}
#define NAMED(function) named<decltype(&function)>(#function)

class ForeignTexture : public SurfaceTest {
protected:
    void TearDown() override
    {
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "left by the test";
        SurfaceTest::TearDown();
    }

    // Gives a texture, or all faces of one, an image of 2 x 2 equal texels in the current context.
    static void give(const Upload &upload, GLuint texture, GLenum target = GL_TEXTURE_2D)
    {
        std::vector<uint8_t> texels;
        for (int i = 0; i < 4; ++i)
            texels.insert(texels.end(), upload.texel.begin(), upload.texel.end());
        NAMED(glBindTexture)(target, texture);
        NAMED(glTexParameteri)(target, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        NAMED(glPixelStorei)(GL_UNPACK_ALIGNMENT, 1);
        const bool cube = target == GL_TEXTURE_CUBE_MAP_OES;
        const auto specify = NAMED(glTexImage2D);
        for (GLenum face = 0; face < (cube ? 6u : 1u); ++face)
            specify(cube ? GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face : target, 0,
                    static_cast<GLint>(upload.internalFormat), 2, 2, 0, upload.format, GL_UNSIGNED_BYTE, texels.data());
        NAMED(glFinish)();
        EXPECT_EQ(NAMED(glGetError)(), static_cast<GLenum>(GL_NO_ERROR)) << upload.internalFormat;
    }

    // The same in a context of the machine's. The ES 1.1 context is current afterwards.
    void giveIn(EGLContext other, const Upload &upload, GLuint texture, GLenum target = GL_TEXTURE_2D)
    {
        ASSERT_TRUE(makeCurrent(other));
        give(upload, texture, target);
        ASSERT_TRUE(makeCurrent(es1));
    }

    // A pixel drawn in colour 100, 100, 100, 51 with the texture bound and replacing.
    static Pixel drawReplaced(GLuint texture, GLenum target = GL_TEXTURE_2D)
    {
        clear({0, 0, 0, 0});
        glEnable(target);
        glBindTexture(target, texture);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        glMultiTexCoord4f(GL_TEXTURE0, 0.25f, 0.25f, 0.25f, 1.0f);
        glColor4ub(100, 100, 100, 51);
        drawSquare();
        glDisable(target);
        return pixelAt(8, 8);
    }

    EGLContext es1 = EGL_NO_CONTEXT;
};

struct Replaced {
    const char *label;
    Upload upload;
    Pixel expected; // OpenGL ES 1.1, table 3.15: what an image lacks is the fragment's
};

const Replaced kReplaced[] = {
    {"RGBA", {GL_RGBA, {10, 20, 30, 153}}, {10, 20, 30, 153}},
    {"RGB", {GL_RGB, {10, 20, 30}}, {10, 20, 30, 51}},
    {"luminance and alpha", {GL_LUMINANCE_ALPHA, {40, 153}}, {40, 40, 40, 153}},
    {"luminance", {GL_LUMINANCE, {40}}, {40, 40, 40, 51}},
    {"alpha", {GL_ALPHA, {153}}, {100, 100, 100, 153}},
};

TEST_F(ForeignTexture, OfAnEs2ContextHasItsFormat)
{
    const EGLContext es2 = create(2);
    es1 = create(1, es2);
    GLuint texture = 20;
    for (const Replaced &c : kReplaced) {
        giveIn(es2, c.upload, ++texture);
        EXPECT_EQ(drawReplaced(texture), c.expected) << c.label;
    }
}

TEST_F(ForeignTexture, OfAContextThatJoinsLaterHasItsFormat)
{
    es1 = create(1);
    giveIn(create(2, es1), kReplaced[0].upload, 5);
    EXPECT_EQ(drawReplaced(5), kReplaced[0].expected);
    makeCurrent(es1 = create(1, es1));
    EXPECT_EQ(drawReplaced(5), kReplaced[0].expected) << "in another context of the group";
}

TEST_F(ForeignTexture, OfADesktopContextHasItsFormat)
{
    es1 = create(1);
    ASSERT_TRUE(eglBindAPI(EGL_OPENGL_API));
    const EGLContext desktop = eglCreateContext(display, config, es1, nullptr);
    ASSERT_TRUE(eglBindAPI(EGL_OPENGL_ES_API));
    ASSERT_NE(desktop, EGL_NO_CONTEXT);
    const Replaced cases[] = {
        {"RGBA8", {GL_RGBA, {10, 20, 30, 153}, kRgba8}, {10, 20, 30, 153}},
        {"LUMINANCE8", {GL_LUMINANCE, {40}, kLuminance8}, {40, 40, 40, 51}},
        {"LUMINANCE8_ALPHA8", {GL_LUMINANCE_ALPHA, {40, 153}, kLuminance8Alpha8}, {40, 40, 40, 153}},
    };
    GLuint texture = 20;
    for (const Replaced &c : cases) {
        giveIn(desktop, c.upload, ++texture);
        EXPECT_EQ(drawReplaced(texture), c.expected) << c.label;
    }
}

TEST_F(ForeignTexture, OfACubeMapHasItsFormat)
{
    const EGLContext es2 = create(2);
    es1 = create(1, es2);
    giveIn(es2, kReplaced[2].upload, 3, GL_TEXTURE_CUBE_MAP_OES);
    EXPECT_EQ(drawReplaced(3, GL_TEXTURE_CUBE_MAP_OES), kReplaced[2].expected);
}

// Its size is known as well: a crop rectangle of one texel is a quarter of it.
TEST_F(ForeignTexture, IsDrawnByItsCropRectangle)
{
    const EGLContext es2 = create(2);
    es1 = create(1, es2);
    giveIn(es2, kReplaced[0].upload, 3);
    clear({0, 0, 0, 0});
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, 3);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    const GLint crop[] = {1, 1, 1, 1};
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop);
    glDrawTexiOES(0, 0, 0, 8, 8);
    EXPECT_EQ(pixelAt(4, 4), kReplaced[0].expected);
    EXPECT_EQ(pixelAt(12, 4), (Pixel{0, 0, 0, 0}));
}

TEST_F(ForeignTexture, OfANameThatWasDeletedHereHasItsFormat)
{
    const EGLContext es2 = create(2);
    es1 = create(1, es2);
    const GLuint texture = 3;
    ASSERT_TRUE(makeCurrent(es1));
    for (const size_t i : {4, 0, 2}) {
        give(kReplaced[1].upload, texture);
        EXPECT_EQ(drawReplaced(texture), kReplaced[1].expected);
        glDeleteTextures(1, &texture);
        giveIn(es2, kReplaced[i].upload, texture);
        EXPECT_EQ(drawReplaced(texture), kReplaced[i].expected) << kReplaced[i].label;
        glDeleteTextures(1, &texture);
    }
}

TEST_F(ForeignTexture, LeavesPendingErrorsAlone)
{
    const EGLContext es2 = create(2);
    es1 = create(1, es2);
    giveIn(es2, kReplaced[0].upload, 3);
    giveIn(es2, kReplaced[0].upload, 4);
    glEnable(GL_TEXTURE); // the library's error
    glBindTexture(GL_TEXTURE_2D, 3);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    glClear(0xFFFFFFFF); // the backend's
    glBindTexture(GL_TEXTURE_2D, 4);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

// docs/behaviour.md, "Images": the format is asked for when a name is first bound.
TEST_F(ForeignTexture, ThatWasBoundHereBeforeItHadAnImageStaysAlphaOnly)
{
    es1 = create(1);
    const EGLContext es2 = create(2, es1);
    ASSERT_TRUE(makeCurrent(es1));
    glBindTexture(GL_TEXTURE_2D, 3);
    giveIn(es2, kReplaced[0].upload, 3);
    EXPECT_EQ(drawReplaced(3), (Pixel{100, 100, 100, 153}));
}

} // namespace
