// SPDX-License-Identifier: MIT
// External textures in an ES 1.1 context: what the backend tells of their images, and what the library makes of it.
#include "es1_fixture.h"

#define EGL_EGLEXT_PROTOTYPES 1
#include <EGL/eglext.h>
#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext.h>
#include <GLES/glext_trl20.h>

#include <vector>

namespace {

struct External : Es1Test {
    // An external texture, bound, that is the image of another of 8 x 4 equal texels.
    GLuint makeExternal(GLenum format, const std::vector<uint8_t> &texel)
    {
        GLuint names[2];
        glGenTextures(2, names);
        std::vector<uint8_t> texels;
        for (int i = 0; i < 8 * 4; ++i)
            texels.insert(texels.end(), texel.begin(), texel.end());
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glBindTexture(GL_TEXTURE_2D, names[0]);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), 8, 4, 0, format, GL_UNSIGNED_BYTE, texels.data());

        const auto createImage = reinterpret_cast<PFNEGLCREATEIMAGEKHRPROC>(eglGetProcAddress("eglCreateImageKHR"));
        const auto destroyImage = reinterpret_cast<PFNEGLDESTROYIMAGEKHRPROC>(eglGetProcAddress("eglDestroyImageKHR"));
        const auto buffer = reinterpret_cast<EGLClientBuffer>(static_cast<uintptr_t>(names[0]));
        const EGLImageKHR image = createImage(display, context, EGL_GL_TEXTURE_2D_KHR, buffer, nullptr);
        EXPECT_NE(image, EGL_NO_IMAGE_KHR);
        glBindTexture(GL_TEXTURE_EXTERNAL_OES, names[1]);
        glTexParameteri(GL_TEXTURE_EXTERNAL_OES, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glEGLImageTargetTexture2DOES(GL_TEXTURE_EXTERNAL_OES, image);
        destroyImage(display, image);
        return names[1];
    }

    static GLint level(GLuint texture, GLenum name)
    {
        GLint value = -1;
        glGetTexLevelParameterivQRN(texture, 0, 0, name, &value);
        return value;
    }

    // A pixel drawn in colour 1, 1, 1 and alpha 51 with the external texture replacing.
    static Pixel drawReplaced()
    {
        clear({0, 0, 0, 0});
        glDisable(GL_TEXTURE_2D);
        glEnable(GL_TEXTURE_EXTERNAL_OES);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        glColor4ub(255, 255, 255, 51);
        drawSquare();
        return pixelAt(8, 8);
    }
};

TEST_F(External, AnImageWithAlphaIsKnownByItsSizeAndFormat)
{
    const GLuint texture = makeExternal(GL_RGBA, {10, 20, 30, 153});
    EXPECT_EQ(level(texture, GL_TEXTURE_WIDTH_QRN), 8);
    EXPECT_EQ(level(texture, GL_TEXTURE_HEIGHT_QRN), 4);
    EXPECT_EQ(level(texture, GL_TEXTURE_INTERNAL_FORMAT_QRN), GL_RGBA);
    EXPECT_EQ(drawReplaced(), (Pixel{10, 20, 30, 153}));
}

// As for every texture of format GL_RGB: the fragment keeps its alpha (OpenGL ES 1.1, table 3.15).
TEST_F(External, AnImageWithoutAlphaLeavesTheFragmentsAlone)
{
    const GLuint texture = makeExternal(GL_RGB, {10, 20, 30});
    EXPECT_EQ(level(texture, GL_TEXTURE_WIDTH_QRN), 8);
    EXPECT_EQ(level(texture, GL_TEXTURE_HEIGHT_QRN), 4);
    EXPECT_EQ(level(texture, GL_TEXTURE_INTERNAL_FORMAT_QRN), GL_RGB);
    EXPECT_EQ(drawReplaced(), (Pixel{10, 20, 30, 51}));
}

TEST_F(External, AnotherImageCountsFromThenOn)
{
    const GLuint texture = makeExternal(GL_RGBA, {10, 20, 30, 153});
    makeExternal(GL_RGB, {1, 2, 3});
    EXPECT_EQ(level(texture, GL_TEXTURE_INTERNAL_FORMAT_QRN), GL_RGBA) << "each texture has its own";
    glEGLImageTargetTexture2DOES(GL_TEXTURE_EXTERNAL_OES, nullptr);
    EXPECT_EQ(drawReplaced(), (Pixel{1, 2, 3, 51})) << "a refused image changes nothing";
}

TEST_F(External, ADeletedTexturesNameStartsAnew)
{
    const GLuint texture = makeExternal(GL_RGBA, {10, 20, 30, 153});
    glDeleteTextures(1, &texture);
    glBindTexture(GL_TEXTURE_EXTERNAL_OES, texture);
    EXPECT_EQ(level(texture, GL_TEXTURE_WIDTH_QRN), 0);
}

TEST_F(External, TheTextureOfTheOrdinaryKindStaysBound)
{
    makeExternal(GL_RGBA, {10, 20, 30, 153});
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(bound, 1);
    GLint count = 0;
    glGetTexturesQRN(nullptr, 0, &count);
    EXPECT_EQ(count, 2) << "looking at an image leaves no texture behind";
}

TEST_F(External, TexelsCanBeReadBack)
{
    makeExternal(GL_RGBA, {10, 20, 30, 153});
    std::vector<uint8_t> texels(8 * 4, 0);
    glGetTexSubImageZEK(GL_TEXTURE_EXTERNAL_OES, 0, 5, 2, 0, 3, 2, 1, GL_ALPHA, GL_UNSIGNED_BYTE, texels.data());
    EXPECT_EQ(std::vector<uint8_t>(texels.begin(), texels.begin() + 3), std::vector<uint8_t>(3, 153));
    glGetTexSubImageZEK(GL_TEXTURE_EXTERNAL_OES, 0, 6, 2, 0, 3, 2, 1, GL_ALPHA, GL_UNSIGNED_BYTE, texels.data());
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    EXPECT_EQ(drawReplaced(), (Pixel{10, 20, 30, 153}));
}

} // namespace
