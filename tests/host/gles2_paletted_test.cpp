// SPDX-License-Identifier: MIT
// Paletted textures through glCompressedTexImage2D: expanded levels, read back through a framebuffer.
#include "backend_fixture.h"

#include <vector>

namespace {

struct Paletted : BackendTest {
    void SetUp() override
    {
        BackendTest::SetUp();
        gl.glGenTextures(1, &texture);
        gl.glBindTexture(GL_TEXTURE_2D, texture);
        gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    }

    // Texels of a level, row after row.
    std::vector<Pixel> readLevel(GLint level, int width, int height)
    {
        GLuint framebuffer;
        GLint before = 0;
        gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING, &before);
        gl.glGenFramebuffers(1, &framebuffer);
        gl.glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        gl.glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, level);
        std::vector<Pixel> pixels(static_cast<size_t>(width * height));
        gl.glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        gl.glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(before));
        gl.glDeleteFramebuffers(1, &framebuffer);
        return pixels;
    }

    GLuint texture = 0;
};

// One texel of palette entry 1, entry given as its bytes in memory; a 16-bit entry is a native number.
TEST_F(Paletted, EveryFormatsEntries)
{
    const auto word = [](unsigned value) {
        uint16_t native = static_cast<uint16_t>(value);
        const uint8_t *bytes = reinterpret_cast<const uint8_t *>(&native);
        return std::vector<uint8_t>(bytes, bytes + 2);
    };
    const struct {
        GLenum format;
        std::vector<uint8_t> entry;
        Pixel pixel;
    } cases[] = {
        {GL_PALETTE4_RGB8_OES, {10, 20, 30}, {10, 20, 30, 255}},
        {GL_PALETTE4_RGBA8_OES, {10, 20, 30, 40}, {10, 20, 30, 40}},
        {GL_PALETTE4_R5_G6_B5_OES, word(0xF81F), {255, 0, 255, 255}},
        {GL_PALETTE4_RGBA4_OES, word(0xF05A), {255, 0, 0x55, 0xAA}},
        {GL_PALETTE4_RGB5_A1_OES, word(0x07C1), {0, 255, 0, 255}},
        {GL_PALETTE8_RGB8_OES, {10, 20, 30}, {10, 20, 30, 255}},
        {GL_PALETTE8_RGBA8_OES, {10, 20, 30, 40}, {10, 20, 30, 40}},
        {GL_PALETTE8_R5_G6_B5_OES, word(0x07E0), {0, 255, 0, 255}},
        {GL_PALETTE8_RGBA4_OES, word(0x0F5A), {0, 255, 0x55, 0xAA}},
        {GL_PALETTE8_RGB5_A1_OES, word(0xF800), {255, 0, 0, 0}},
    };
    for (const auto &c : cases) {
        const bool four = c.format <= GL_PALETTE4_RGB5_A1_OES;
        std::vector<uint8_t> image(c.entry.size() * (four ? 16 : 256));
        std::copy(c.entry.begin(), c.entry.end(), image.begin() + static_cast<long>(c.entry.size()));
        image.push_back(four ? 0x10 : 1);
        gl.glCompressedTexImage2D(GL_TEXTURE_2D, 0, c.format, 1, 1, 0, static_cast<GLsizei>(image.size()),
                                  image.data());
        ASSERT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << c.format;
        EXPECT_EQ(readLevel(0, 1, 1)[0], c.pixel) << c.format;
    }
}

// 4x2 with two more levels: 8, 2 and 1 texels of four bits take 4, 1 and 1 bytes.
TEST_F(Paletted, ANegativeLevelBringsTheWholeChain)
{
    std::vector<uint8_t> image(16 * 4);
    for (size_t i = 0; i < 16; ++i) {
        image[4 * i] = static_cast<uint8_t>(i * 10);
        image[4 * i + 3] = 255;
    }
    for (uint8_t indices : {0x01, 0x23, 0x45, 0x67, 0x89, 0xA0})
        image.push_back(indices);
    gl.glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    gl.glCompressedTexImage2D(GL_TEXTURE_2D, -2, GL_PALETTE4_RGBA8_OES, 4, 2, 0, static_cast<GLsizei>(image.size()),
                              image.data());
    ASSERT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    GLint alignment = 0;
    gl.glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    EXPECT_EQ(alignment, 8) << "the application's";

    const auto reds = [&](GLint level, int width, int height) {
        std::vector<int> values;
        for (const Pixel &pixel : readLevel(level, width, height))
            values.push_back(pixel[0]);
        return values;
    };
    EXPECT_EQ(reds(0, 4, 2), (std::vector<int>{0, 10, 20, 30, 40, 50, 60, 70}));
    EXPECT_EQ(reds(1, 2, 1), (std::vector<int>{80, 90}));
    EXPECT_EQ(reds(2, 1, 1), (std::vector<int>{100}));
}

TEST_F(Paletted, BadArgumentsAreInvalidValues)
{
    std::vector<uint8_t> image(16 * 3 + 100);
    const struct {
        const char *what;
        GLint level;
        GLsizei width, height;
        GLint border;
        GLsizei size;
        GLenum error;
    } cases[] = {
        {"right", 0, 4, 2, 0, 52, GL_NO_ERROR},
        {"one byte short", 0, 4, 2, 0, 51, GL_INVALID_VALUE},
        {"one byte more", 0, 4, 2, 0, 53, GL_INVALID_VALUE},
        {"positive level", 1, 4, 2, 0, 52, GL_INVALID_VALUE},
        {"last level of the chain", -2, 4, 2, 0, 54, GL_NO_ERROR},
        {"a level more than there are", -3, 4, 2, 0, 55, GL_INVALID_VALUE},
        {"border", 0, 4, 2, 1, 52, GL_INVALID_VALUE},
        {"negative size", 0, -1, 2, 0, 52, GL_INVALID_VALUE},
        {"negative bytes", 0, 4, 2, 0, -1, GL_INVALID_VALUE},
        {"too large", 0, 1 << 20, 2, 0, 52, GL_INVALID_VALUE},
    };
    for (const auto &c : cases) {
        gl.glCompressedTexImage2D(GL_TEXTURE_2D, c.level, GL_PALETTE4_RGB8_OES, c.width, c.height, c.border, c.size,
                                  image.data());
        EXPECT_EQ(gl.glGetError(), c.error) << c.what;
    }
}

TEST_F(Paletted, PartsCannotBeReplacedAndOtherFormatsAreTheDrivers)
{
    uint8_t bytes[64] = {};
    gl.glCompressedTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_PALETTE4_RGB8_OES, 49, bytes);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    gl.glCompressedTexImage2D(GL_TEXTURE_2D, 0, GL_PALETTE8_RGB5_A1_OES + 1, 1, 1, 0, 8, bytes);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    gl.glCompressedTexImage2D(GL_TEXTURE_2D, 0, GL_PALETTE4_RGB8_OES - 1, 1, 1, 0, 8, bytes);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

TEST_F(Paletted, CubeFacesAndBadTargets)
{
    GLuint cube;
    std::vector<uint8_t> image(256 * 3 + 1);
    gl.glGenTextures(1, &cube);
    gl.glBindTexture(GL_TEXTURE_CUBE_MAP, cube);
    gl.glCompressedTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, 0, GL_PALETTE8_RGB8_OES, 1, 1, 0, 769, image.data());
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    gl.glCompressedTexImage2D(GL_FLOAT, 0, GL_PALETTE8_RGB8_OES, 1, 1, 0, 769, image.data());
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

} // namespace
