// SPDX-License-Identifier: MIT
// Texels read back with glGetTexSubImageZEK from an ES 1.1 context.
#include "es1_fixture.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext.h>
#include <GLES/glext_trl20.h>

#include <cstring>
#include <numeric>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

struct ReadBack : Es1Test {
    void SetUp() override
    {
        Es1Test::SetUp();
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glBindTexture(GL_TEXTURE_2D, 1);
        glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 2);
    }

    static void upload(GLenum target, GLint level, GLsizei width, GLsizei height, GLenum format, const Bytes &texels,
                       GLenum type = GL_UNSIGNED_BYTE)
    {
        glTexImage2D(target, level, static_cast<GLint>(format), width, height, 0, format, type, texels.data());
    }

    static Bytes read(GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height, size_t size,
                      GLenum format = GL_RGBA, GLenum type = GL_UNSIGNED_BYTE)
    {
        Bytes texels(size, 0xEE);
        glGetTexSubImageZEK(target, level, x, y, 0, width, height, 1, format, type, texels.data());
        return texels;
    }

    static GLenum errorOf(GLenum target, GLint level, GLint x, GLint y, GLint z, GLsizei width, GLsizei height,
                          GLsizei depth, GLenum format, GLenum type)
    {
        Bytes texels(1024, 0xEE);
        glGetTexSubImageZEK(target, level, x, y, z, width, height, depth, format, type, texels.data());
        const GLenum error = glGetError();
        EXPECT_TRUE(error == GL_NO_ERROR || texels == Bytes(1024, 0xEE)) << "written in spite of an error";
        return error;
    }
};

// Different bytes, none of them twice.
Bytes counting(size_t size)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), uint8_t(7));
    return bytes;
}

Bytes wordsAsBytes(const std::vector<uint16_t> &words)
{
    Bytes bytes(words.size() * 2);
    memcpy(bytes.data(), words.data(), bytes.size());
    return bytes;
}

TEST_F(ReadBack, EveryFormatComesBackAsItWasGiven)
{
    const struct {
        const char *label;
        GLenum format;
        GLenum type;
        Bytes texels; // 4 x 2
    } cases[] = {
        {"RGBA", GL_RGBA, GL_UNSIGNED_BYTE, counting(32)},
        {"RGB", GL_RGB, GL_UNSIGNED_BYTE, counting(24)},
        {"alpha", GL_ALPHA, GL_UNSIGNED_BYTE, counting(8)},
        {"luminance", GL_LUMINANCE, GL_UNSIGNED_BYTE, counting(8)},
        {"luminance and alpha", GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, counting(16)},
        {"4444", GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4,
         wordsAsBytes({0x0000, 0xFFFF, 0x1234, 0xF0F0, 0x8001, 0x0F00, 0xABCD, 0x7777})},
        {"5551", GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1,
         wordsAsBytes({0x0000, 0xFFFF, 0x0001, 0xFFFE, 0x8421, 0x1234, 0xABCD, 0x7BDE})},
        {"565", GL_RGB, GL_UNSIGNED_SHORT_5_6_5,
         wordsAsBytes({0x0000, 0xFFFF, 0xF800, 0x07E0, 0x001F, 0x1234, 0xABCD, 0x8410})},
    };
    for (const auto &c : cases) {
        upload(GL_TEXTURE_2D, 0, 4, 2, c.format, c.texels, c.type);
        EXPECT_EQ(read(GL_TEXTURE_2D, 0, 0, 0, 4, 2, c.texels.size(), c.format, c.type), c.texels) << c.label;
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << c.label;
    }
}

TEST_F(ReadBack, OtherFormatsThanTheTexturesAreMadeOfWhatItSamples)
{
    const struct {
        const char *label;
        GLenum uploaded;
        Bytes texel;
        GLenum asked;
        GLenum type;
        Bytes expected;
    } cases[] = {
        {"alpha as RGBA", GL_ALPHA, {90}, GL_RGBA, GL_UNSIGNED_BYTE, {0, 0, 0, 90}},
        {"luminance as RGBA", GL_LUMINANCE, {90}, GL_RGBA, GL_UNSIGNED_BYTE, {90, 90, 90, 255}},
        {"luminance, alpha as RGBA", GL_LUMINANCE_ALPHA, {90, 17}, GL_RGBA, GL_UNSIGNED_BYTE, {90, 90, 90, 17}},
        {"RGB as RGBA", GL_RGB, {1, 2, 3}, GL_RGBA, GL_UNSIGNED_BYTE, {1, 2, 3, 255}},
        {"RGBA as alpha", GL_RGBA, {1, 2, 3, 4}, GL_ALPHA, GL_UNSIGNED_BYTE, {4}},
        {"RGBA as luminance", GL_RGBA, {1, 2, 3, 4}, GL_LUMINANCE, GL_UNSIGNED_BYTE, {1}},
        {"RGBA as luminance, alpha", GL_RGBA, {1, 2, 3, 4}, GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, {1, 4}},
        {"RGBA as RGB", GL_RGBA, {1, 2, 3, 4}, GL_RGB, GL_UNSIGNED_BYTE, {1, 2, 3}},
        // 128 of 255 is 15.56 of 31, 31.6 of 63, 7.53 of 15; 127 is 15.44, 31.4 and 7.47.
        {"as 565, up", GL_RGBA, {128, 128, 128, 0}, GL_RGB, GL_UNSIGNED_SHORT_5_6_5, wordsAsBytes({0x8410})},
        {"as 565, down", GL_RGBA, {127, 127, 127, 0}, GL_RGB, GL_UNSIGNED_SHORT_5_6_5, wordsAsBytes({0x7BEF})},
        {"as 4444", GL_RGBA, {128, 127, 255, 0}, GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4, wordsAsBytes({0x87F0})},
        {"as 5551, alpha up", GL_RGBA, {0, 0, 0, 128}, GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1, wordsAsBytes({0x0001})},
        {"as 5551, alpha down", GL_RGBA, {0, 0, 0, 127}, GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1, wordsAsBytes({0})},
    };
    for (const auto &c : cases) {
        upload(GL_TEXTURE_2D, 0, 1, 1, c.uploaded, c.texel);
        EXPECT_EQ(read(GL_TEXTURE_2D, 0, 0, 0, 1, 1, c.expected.size(), c.asked, c.type), c.expected) << c.label;
    }
}

TEST_F(ReadBack, APartHasTheTexelsOfItsPlace)
{
    for (const GLenum format : {GL_RGBA, GL_LUMINANCE}) { // by reading, by drawing
        Bytes texels(8 * 4 * (format == GL_RGBA ? 4 : 1));
        for (size_t i = 0; i < texels.size(); ++i)
            texels[i] = static_cast<uint8_t>(format == GL_RGBA ? (i % 4 == 0 ? i / 4 : 255) : i);
        upload(GL_TEXTURE_2D, 0, 8, 4, format, texels);
        // Red tells the place: x + 8 y.
        EXPECT_EQ(read(GL_TEXTURE_2D, 0, 5, 1, 3, 2, 6, GL_LUMINANCE), (Bytes{13, 14, 15, 21, 22, 23})) << format;
        EXPECT_EQ(read(GL_TEXTURE_2D, 0, 7, 3, 1, 1, 1, GL_LUMINANCE), Bytes{31}) << format;
    }
}

TEST_F(ReadBack, RowsBeginAtThePackAlignment)
{
    upload(GL_TEXTURE_2D, 0, 4, 2, GL_RGB, {1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0, 0, 0, 0, 0});
    const Bytes first = {1, 2, 3, 4, 5, 6}, second = {7, 8, 9, 10, 11, 12};
    for (const auto &[alignment, step] : {std::pair{1, 6u}, {2, 6u}, {4, 8u}, {8, 8u}}) {
        glPixelStorei(GL_PACK_ALIGNMENT, alignment);
        Bytes expected(16, 0xEE);
        std::copy(first.begin(), first.end(), expected.begin());
        std::copy(second.begin(), second.end(), expected.begin() + step);
        EXPECT_EQ(read(GL_TEXTURE_2D, 0, 0, 0, 2, 2, 16, GL_RGB), expected) << alignment;
        GLint after = 0;
        glGetIntegerv(GL_PACK_ALIGNMENT, &after);
        EXPECT_EQ(after, alignment);
    }
}

TEST_F(ReadBack, EveryLevelIsReached)
{
    for (const GLenum format : {GL_RGBA, GL_LUMINANCE_ALPHA}) {
        // OpenGL ES 2.0 gives no way to one level alone that cannot be rendered to.
        if (overEs2() && format == GL_LUMINANCE_ALPHA) continue;
        const size_t texel = format == GL_RGBA ? 4 : 2;
        upload(GL_TEXTURE_2D, 0, 4, 4, format, Bytes(16 * texel, 10));
        upload(GL_TEXTURE_2D, 1, 2, 2, format, Bytes(4 * texel, 20));
        upload(GL_TEXTURE_2D, 2, 1, 1, format, Bytes(texel, 30));
        EXPECT_EQ(read(GL_TEXTURE_2D, 0, 3, 3, 1, 1, 1, GL_ALPHA), Bytes{10}) << format;
        EXPECT_EQ(read(GL_TEXTURE_2D, 1, 0, 0, 2, 2, 4, GL_ALPHA), Bytes(4, 20)) << format;
        EXPECT_EQ(read(GL_TEXTURE_2D, 2, 0, 0, 1, 1, 1, GL_ALPHA), Bytes{30}) << format;
    }
}

TEST_F(ReadBack, ALevelOfABrokenChainIsReachedFromEs3OnOnly)
{
    for (const GLenum format : {GL_RGBA, GL_LUMINANCE_ALPHA}) {
        const size_t texel = format == GL_RGBA ? 4 : 2;
        upload(GL_TEXTURE_2D, 0, 4, 4, format, Bytes(16 * texel, 10));
        upload(GL_TEXTURE_2D, 1, 2, 2, format, Bytes(4 * texel, 20));
        const Bytes found = read(GL_TEXTURE_2D, 1, 1, 1, 1, 1, 1, GL_ALPHA);
        EXPECT_EQ(found, Bytes{static_cast<uint8_t>(overEs2() ? 0xEE : 20)}) << format;
        EXPECT_EQ(glGetError(), static_cast<GLenum>(overEs2() ? GL_INVALID_OPERATION : GL_NO_ERROR)) << format;
    }
}

TEST_F(ReadBack, EveryFaceOfACubeMapHasItsTexels)
{
    for (const GLenum format : {GL_RGBA, GL_LUMINANCE}) {
        for (GLenum face = 0; face < 6; ++face) {
            Bytes texels(16 * (format == GL_RGBA ? 4 : 1), 255);
            for (size_t i = 0; i < 16; ++i)
                texels[i * (format == GL_RGBA ? 4 : 1)] = static_cast<uint8_t>(face * 16 + i);
            upload(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face, 0, 4, 4, format, texels);
        }
        for (GLenum face = 0; face < 6; ++face) {
            Bytes expected(16);
            std::iota(expected.begin(), expected.end(), static_cast<uint8_t>(face * 16));
            EXPECT_EQ(read(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face, 0, 0, 0, 4, 4, 16, GL_LUMINANCE), expected)
                << "format " << format << ", face " << face;
        }
    }
}

TEST_F(ReadBack, PalettedImagesComeBackExpanded)
{
    Bytes image = {255, 0, 0, 0, 255, 0}; // palette of 16 colours, of which two are used
    image.resize(16 * 3);
    image.insert(image.end(), {0x01, 0x10}); // four texels: 0 1 / 1 0
    glCompressedTexImage2D(GL_TEXTURE_2D, 0, GL_PALETTE4_RGB8_OES, 2, 2, 0, static_cast<GLsizei>(image.size()),
                           image.data());
    EXPECT_EQ(read(GL_TEXTURE_2D, 0, 0, 0, 2, 2, 12, GL_RGB), (Bytes{255, 0, 0, 0, 255, 0, 0, 255, 0, 255, 0, 0}));
}

TEST_F(ReadBack, LeavesTheStateAsItWas)
{
    const Bytes texels = {200, 100};
    upload(GL_TEXTURE_2D, 0, 2, 1, GL_LUMINANCE, texels);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    GLuint framebuffer = 0, target = 3;
    glBindTexture(GL_TEXTURE_2D, target);
    upload(GL_TEXTURE_2D, 0, 16, 16, GL_RGBA, Bytes(1024, 0));
    glGenFramebuffersOES(1, &framebuffer);
    glBindFramebufferOES(GL_FRAMEBUFFER_OES, framebuffer);
    glFramebufferTexture2DOES(GL_FRAMEBUFFER_OES, GL_COLOR_ATTACHMENT0_OES, GL_TEXTURE_2D, target, 0);
    glBindTexture(GL_TEXTURE_2D, 1);
    glColor4f(0, 1, 0, 1);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 8, 16);
    drawSquare();

    EXPECT_EQ(read(GL_TEXTURE_2D, 0, 0, 0, 2, 1, 2, GL_LUMINANCE), texels);

    const struct {
        GLenum name;
        GLint value;
    } expected[] = {{GL_FRAMEBUFFER_BINDING_OES, static_cast<GLint>(framebuffer)},
                    {GL_TEXTURE_BINDING_2D, 1},
                    {GL_TEXTURE_BINDING_CUBE_MAP_OES, 2},
                    {GL_PACK_ALIGNMENT, 1}};
    for (const auto &e : expected) {
        GLint value = -1;
        glGetIntegerv(e.name, &value);
        EXPECT_EQ(value, e.value) << e.name;
    }
    EXPECT_EQ(pixelAt(4, 4), (Pixel{0, 255, 0, 255}));
    glColor4f(0, 0, 1, 1);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{0, 0, 255, 255})) << "the application's program and arrays draw on";
    EXPECT_EQ(pixelAt(12, 4), (Pixel{0, 0, 0, 0})) << "inside its scissor";

    // Between two texels, and repeated: the texture's own filter and wrap are back.
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glMultiTexCoord4f(GL_TEXTURE0, 1.5f, 0, 0, 1);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4)[0], 150);
    glBindFramebufferOES(GL_FRAMEBUFFER_OES, 0);
}

TEST_F(ReadBack, WhatCannotBeReadIsAnErrorAndWritesNothing)
{
    upload(GL_TEXTURE_2D, 0, 4, 2, GL_RGBA, counting(32));
    const struct {
        const char *label;
        GLenum target;
        GLint level, x, y, z;
        GLsizei width, height, depth;
        GLenum format, type, error;
    } cases[] = {
        {"all of it", GL_TEXTURE_2D, 0, 0, 0, 0, 4, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_NO_ERROR},
        {"nothing", GL_TEXTURE_2D, 0, 4, 2, 1, 0, 0, 0, GL_RGBA, GL_UNSIGNED_BYTE, GL_NO_ERROR},
        {"too far right", GL_TEXTURE_2D, 0, 1, 0, 0, 4, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"too far up", GL_TEXTURE_2D, 0, 0, 1, 0, 4, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"left of it", GL_TEXTURE_2D, 0, -1, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"below it", GL_TEXTURE_2D, 0, 0, -1, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"negative width", GL_TEXTURE_2D, 0, 1, 0, 0, -1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"sum beyond an integer", GL_TEXTURE_2D, 0, 0x7FFFFFFF, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE,
         GL_INVALID_VALUE},
        {"second layer", GL_TEXTURE_2D, 0, 0, 0, 1, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"two layers", GL_TEXTURE_2D, 0, 0, 0, 0, 1, 1, 2, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"level not there", GL_TEXTURE_2D, 1, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"level below 0", GL_TEXTURE_2D, -1, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"level beyond all", GL_TEXTURE_2D, 99, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_VALUE},
        {"face not there", GL_TEXTURE_CUBE_MAP_NEGATIVE_Z_OES, 0, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE,
         GL_INVALID_VALUE},
        {"whole cube", GL_TEXTURE_CUBE_MAP_OES, 0, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_ENUM},
        {"no target", GL_RGBA, 0, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, GL_INVALID_ENUM},
        {"no format", GL_TEXTURE_2D, 0, 0, 0, 0, 1, 1, 1, GL_FLOAT, GL_UNSIGNED_BYTE, GL_INVALID_ENUM},
        {"no type", GL_TEXTURE_2D, 0, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_RGBA, GL_INVALID_ENUM},
        {"not a pair", GL_TEXTURE_2D, 0, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_SHORT_5_6_5, GL_INVALID_OPERATION},
    };
    for (const auto &c : cases)
        EXPECT_EQ(errorOf(c.target, c.level, c.x, c.y, c.z, c.width, c.height, c.depth, c.format, c.type), c.error)
            << c.label;
    glBindTexture(GL_TEXTURE_2D, 0);
    EXPECT_EQ(errorOf(GL_TEXTURE_2D, 0, 0, 0, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE),
              static_cast<GLenum>(GL_INVALID_OPERATION))
        << "texture 0";
}

// A destroyed surface lives until its context is released, which a read must not do.
TEST_F(ReadBack, ADestroyedSurfaceStaysCurrent)
{
    upload(GL_TEXTURE_2D, 0, 2, 2, GL_RGBA, counting(16));
    clear({255, 0, 0, 255});
    ASSERT_TRUE(eglDestroySurface(display, surface));
    EXPECT_EQ(errorOf(GL_TEXTURE_2D, 0, 0, 0, 0, 2, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE),
              static_cast<GLenum>(GL_INVALID_OPERATION));
    EXPECT_EQ(pixelAt(8, 8), (Pixel{255, 0, 0, 255}));
}

TEST_F(ReadBack, ADestroyedContextStaysCurrent)
{
    upload(GL_TEXTURE_2D, 0, 2, 2, GL_RGBA, counting(16));
    clear({255, 0, 0, 255});
    ASSERT_TRUE(eglDestroyContext(display, context));
    EXPECT_EQ(errorOf(GL_TEXTURE_2D, 0, 0, 0, 0, 2, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_EQ(pixelAt(8, 8), (Pixel{255, 0, 0, 255}));
}

TEST_F(ReadBack, AnEarlierErrorStays)
{
    upload(GL_TEXTURE_2D, 0, 1, 1, GL_RGBA, {1, 2, 3, 4});
    glClear(0xFFFFFFFF); // the backend's error
    EXPECT_EQ(read(GL_TEXTURE_2D, 0, 0, 0, 1, 1, 4), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

} // namespace
