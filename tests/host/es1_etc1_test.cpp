// SPDX-License-Identifier: MIT
// ETC1 textures in an ES 1.1 context: decoded by this machine's driver, or by the backend over OpenGL ES 2.0 alone.
#include "es1_fixture.h"
#include "host/gles2/etc1.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext.h>
#include <GLES/glext_trl20.h>

#include <climits>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

// A base colour of the second half outside the five bits is left open by the extension.
bool hasOpenColour(const uint8_t *block)
{
    if (!(block[3] & 2)) return false;
    for (int i = 0; i < 3; ++i) {
        const int second = (block[i] >> 3) + (block[i] & 7) - (block[i] & 4 ? 8 : 0);
        if (second < 0 || second > 31) return true;
    }
    return false;
}

Bytes randomBlocks(size_t size, std::mt19937 &random)
{
    Bytes blocks(size);
    for (size_t at = 0; at < size; at += 8) {
        do {
            for (size_t i = 0; i < 8; ++i)
                blocks[at + i] = static_cast<uint8_t>(random());
        } while (hasOpenColour(&blocks[at]));
    }
    return blocks;
}

struct Etc1Texture : Es1Test {
    void SetUp() override
    {
        Es1Test::SetUp();
        glBindTexture(GL_TEXTURE_2D, 1);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    }

    static GLenum upload(GLint level, GLsizei width, GLsizei height, const Bytes &blocks, GLenum target = GL_TEXTURE_2D,
                         GLint border = 0)
    {
        glCompressedTexImage2D(target, level, GL_ETC1_RGB8_OES, width, height, border,
                               static_cast<GLsizei>(blocks.size()), blocks.data());
        return glGetError();
    }

    // The texture's texels as drawn over the surface of the same size.
    static Bytes drawn()
    {
        glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        static const GLfloat corners[] = {0, 0, 1, 0, 0, 1, 1, 1};
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, 0, corners);
        drawSquare();
        Bytes rgba(kSurfaceSize * kSurfaceSize * 4), rgb;
        glReadPixels(0, 0, kSurfaceSize, kSurfaceSize, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
        for (size_t i = 0; i < rgba.size(); i += 4)
            rgb.insert(rgb.end(), &rgba[i], &rgba[i] + 3);
        return rgb;
    }
};

// The decoder of the tests above is the backend's; the driver's is somebody else's.
TEST_F(Etc1Texture, RandomBlocksLookAlikeToTheLastBit)
{
    std::mt19937 random(20);
    for (int round = 0; round < 50; ++round) {
        const Bytes blocks = randomBlocks(etc1Size(kSurfaceSize, kSurfaceSize), random);
        ASSERT_EQ(upload(0, kSurfaceSize, kSurfaceSize, blocks), static_cast<GLenum>(GL_NO_ERROR));
        ASSERT_EQ(drawn(), decodeEtc1(blocks.data(), kSurfaceSize, kSurfaceSize)) << "round " << round;
    }
}

TEST_F(Etc1Texture, SizesNeedNotBeWholeBlocks)
{
    std::mt19937 random(21);
    for (const auto &[width, height] : {std::pair{1, 1}, {2, 2}, {3, 5}, {6, 4}, {4, 7}, {13, 9}}) {
        const Bytes blocks = randomBlocks(etc1Size(width, height), random);
        const Bytes expected = decodeEtc1(blocks.data(), width, height);
        Bytes texels(expected.size());
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        EXPECT_EQ(upload(0, width, height, blocks), static_cast<GLenum>(GL_NO_ERROR));
        glGetTexSubImageZEK(GL_TEXTURE_2D, 0, 0, 0, 0, width, height, 1, GL_RGB, GL_UNSIGNED_BYTE, texels.data());
        EXPECT_EQ(texels, expected) << width << " x " << height;
    }
}

TEST_F(Etc1Texture, LevelsAreUploadedOneByOne)
{
    std::mt19937 random(22);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST_MIPMAP_NEAREST);
    Bytes levels[6];
    for (int level = 0; level < 6; ++level) {
        const int side = 32 >> level;
        levels[level] = randomBlocks(etc1Size(side, side), random);
        EXPECT_EQ(upload(level, side, side, levels[level]), static_cast<GLenum>(GL_NO_ERROR)) << level;
    }
    EXPECT_EQ(drawn(), decodeEtc1(levels[1].data(), 16, 16)) << "the level of the surface's size";
}

TEST_F(Etc1Texture, FacesOfACubeMapMayBeEtc1)
{
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 2);
    std::mt19937 random(23);
    const Bytes blocks = randomBlocks(etc1Size(4, 4), random);
    for (GLenum face = 0; face < 6; ++face)
        EXPECT_EQ(upload(0, 4, 4, blocks, GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face), static_cast<GLenum>(GL_NO_ERROR));
    Bytes texels(48);
    glGetTexSubImageZEK(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y_OES, 0, 0, 0, 0, 4, 4, 1, GL_RGB, GL_UNSIGNED_BYTE,
                        texels.data());
    EXPECT_EQ(texels, decodeEtc1(blocks.data(), 4, 4));
}

TEST_F(Etc1Texture, WhatIsNoImageIsRefused)
{
    EXPECT_EQ(upload(0, 8, 4, Bytes(16)), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_EQ(upload(0, 8, 4, Bytes(15)), static_cast<GLenum>(GL_INVALID_VALUE)) << "too few bytes";
    EXPECT_EQ(upload(0, 8, 4, Bytes(17)), static_cast<GLenum>(GL_INVALID_VALUE)) << "too many bytes";
    EXPECT_EQ(upload(0, 9, 4, Bytes(16)), static_cast<GLenum>(GL_INVALID_VALUE)) << "a begun block counts";
    EXPECT_EQ(upload(0, -4, 4, Bytes(8)), static_cast<GLenum>(GL_INVALID_VALUE)) << "negative";
    EXPECT_EQ(upload(-1, 4, 4, Bytes(8)), static_cast<GLenum>(GL_INVALID_VALUE)) << "level";
    EXPECT_EQ(upload(0, 0, INT_MAX, {}), static_cast<GLenum>(GL_INVALID_VALUE)) << "too high, without a texel";
    EXPECT_EQ(upload(0, INT_MAX, 0, {}), static_cast<GLenum>(GL_INVALID_VALUE)) << "too wide, without a texel";
    EXPECT_EQ(upload(0, 4, 4, Bytes(8), GL_TEXTURE_2D, 1), static_cast<GLenum>(GL_INVALID_VALUE)) << "border";
    EXPECT_EQ(upload(0, 4, 4, Bytes(8), GL_TEXTURE_CUBE_MAP_OES), static_cast<GLenum>(GL_INVALID_ENUM)) << "target";
}

// Mesa allows it by GL_EXT_compressed_ETC1_RGB8_sub_texture; where the backend decodes, it is not allowed.
TEST_F(Etc1Texture, DecodedImagesCannotBeChangedInPart)
{
    upload(0, 8, 4, Bytes(16));
    const Bytes block(8);
    glCompressedTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 4, 4, GL_ETC1_RGB8_OES, 8, block.data());
    EXPECT_EQ(glGetError(), static_cast<GLenum>(overEs2() ? GL_INVALID_OPERATION : GL_NO_ERROR));
}

} // namespace
