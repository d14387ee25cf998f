// SPDX-License-Identifier: MIT
#include "paletted.h"

#include "compressed_images.h"

#include <algorithm>
#include <cstring>

// clang-format off
static constexpr PalettedFormat kFormats[] = {
    {GL_PALETTE4_RGB8_OES,     4, 3, GL_RGB,  GL_UNSIGNED_BYTE},
    {GL_PALETTE4_RGBA8_OES,    4, 4, GL_RGBA, GL_UNSIGNED_BYTE},
    {GL_PALETTE4_R5_G6_B5_OES, 4, 2, GL_RGB,  GL_UNSIGNED_SHORT_5_6_5},
    {GL_PALETTE4_RGBA4_OES,    4, 2, GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4},
    {GL_PALETTE4_RGB5_A1_OES,  4, 2, GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1},
    {GL_PALETTE8_RGB8_OES,     8, 3, GL_RGB,  GL_UNSIGNED_BYTE},
    {GL_PALETTE8_RGBA8_OES,    8, 4, GL_RGBA, GL_UNSIGNED_BYTE},
    {GL_PALETTE8_R5_G6_B5_OES, 8, 2, GL_RGB,  GL_UNSIGNED_SHORT_5_6_5},
    {GL_PALETTE8_RGBA4_OES,    8, 2, GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4},
    {GL_PALETTE8_RGB5_A1_OES,  8, 2, GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1},
};
// clang-format on

const PalettedFormat *findPalettedFormat(GLenum format)
{
    const auto row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                  [&](const PalettedFormat &candidate) { return candidate.format == format; });
    return row == std::end(kFormats) ? nullptr : row;
}

static size_t paletteSize(const PalettedFormat &format)
{
    return (size_t(1) << format.indexBits) * static_cast<size_t>(format.entryBytes);
}

// Levels start at whole bytes.
static size_t indexSize(const PalettedFormat &format, size_t texels)
{
    return (texels * static_cast<size_t>(format.indexBits) + 7) / 8;
}

static size_t texelsOfLevel(int width, int height, int level)
{
    return static_cast<size_t>(std::max(width >> level, 1)) * static_cast<size_t>(std::max(height >> level, 1));
}

size_t palettedSize(const PalettedFormat &format, int width, int height, int levels)
{
    size_t size = paletteSize(format);
    for (int level = 0; level < levels; ++level)
        size += indexSize(format, texelsOfLevel(width, height, level));
    return size;
}

std::vector<uint8_t> expandPaletted(const PalettedFormat &format, const uint8_t *palette, const uint8_t *indices,
                                    size_t texels)
{
    const size_t entry = static_cast<size_t>(format.entryBytes);
    std::vector<uint8_t> out(texels * entry);
    for (size_t i = 0; i < texels; ++i) {
        size_t index = indices[i];
        if (format.indexBits == 4) index = i % 2 ? indices[i / 2] & 15u : indices[i / 2] >> 4;
        memcpy(&out[i * entry], palette + index * entry, entry);
    }
    return out;
}

// A chain can go on to the level of one texel, no further.
static int mostLevels(int width, int height)
{
    int levels = 1;
    while (std::max(width, height) >> levels)
        ++levels;
    return levels;
}

void uploadPaletted(GLenum target, GLint level, GLenum internalFormat, GLsizei width, GLsizei height, GLint border,
                    GLsizei size, const void *bytes)
{
    const PalettedFormat &format = *findPalettedFormat(internalFormat);
    GLint largest = 0;
    driver.glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (level > 0 || width < 0 || height < 0 || width > largest || height > largest || border != 0)
        return raiseError(GL_INVALID_VALUE);
    if (level < -(mostLevels(width, height) - 1)) return raiseError(GL_INVALID_VALUE);
    const int levels = 1 - level;
    if (width == 0 || height == 0) // no texels, but the level comes into being
        return uploadPacked(target, 0, format.upload, format.uploadType, width, height, nullptr);
    if (size < 0 || static_cast<size_t>(size) != palettedSize(format, width, height, levels) || !bytes)
        return raiseError(GL_INVALID_VALUE);

    const uint8_t *palette = static_cast<const uint8_t *>(bytes);
    const uint8_t *indices = palette + paletteSize(format);
    for (int i = 0; i < levels; ++i) {
        const size_t texels = texelsOfLevel(width, height, i);
        const std::vector<uint8_t> image = expandPaletted(format, palette, indices, texels);
        uploadPacked(target, i, format.upload, format.uploadType, std::max(width >> i, 1), std::max(height >> i, 1),
                     image.data());
        indices += indexSize(format, texels);
    }
}
