// SPDX-License-Identifier: MIT
// Compressed images: the ten paletted formats with their chains of levels, and ETC1.
#include "pictures/textures.h"

#include <cmath>
#include <cstdint>

namespace {

// A paletted format: bits of each channel of a palette entry, in the order of the entry, and of an index.
struct Paletted {
    const char *name;
    GLenum format;
    int indexBits;
    int red, green, blue, alpha; // bits; 8-bit channels are bytes in this order, others one 16-bit word
};
constexpr Paletted kPaletted[] = {
    {"Palette4Rgb8", GL_PALETTE4_RGB8_OES, 4, 8, 8, 8, 0},
    {"Palette4Rgba8", GL_PALETTE4_RGBA8_OES, 4, 8, 8, 8, 8},
    {"Palette4R5G6B5", GL_PALETTE4_R5_G6_B5_OES, 4, 5, 6, 5, 0},
    {"Palette4Rgba4", GL_PALETTE4_RGBA4_OES, 4, 4, 4, 4, 4},
    {"Palette4Rgb5A1", GL_PALETTE4_RGB5_A1_OES, 4, 5, 5, 5, 1},
    {"Palette8Rgb8", GL_PALETTE8_RGB8_OES, 8, 8, 8, 8, 0},
    {"Palette8Rgba8", GL_PALETTE8_RGBA8_OES, 8, 8, 8, 8, 8},
    {"Palette8R5G6B5", GL_PALETTE8_R5_G6_B5_OES, 8, 5, 6, 5, 0},
    {"Palette8Rgba4", GL_PALETTE8_RGBA4_OES, 8, 4, 4, 4, 4},
    {"Palette8Rgb5A1", GL_PALETTE8_RGB5_A1_OES, 8, 5, 5, 5, 1},
};

// Channels of palette entry i, each the first bits of a number that differs from entry to entry.
uint32_t channelOf(int entry, int channel, int bits)
{
    const uint32_t scrambled = static_cast<uint32_t>(entry) * (37 + 54 * static_cast<uint32_t>(channel)) + 90;
    return bits ? (scrambled & 0xFF) >> (8 - bits) : 0;
}

Colour entryColour(const Paletted &p, int entry)
{
    const auto level = [&](int channel, int bits) {
        return bits ? channelOf(entry, channel, bits) / (std::pow(2.0, bits) - 1) : 1.0;
    };
    return {level(0, p.red), level(1, p.green), level(2, p.blue), level(3, p.alpha)};
}

void appendEntry(std::vector<GLubyte> &bytes, const Paletted &p, int entry)
{
    const int bits[] = {p.red, p.green, p.blue, p.alpha};
    if (p.red == 8) {
        for (int channel = 0; channel < 4; ++channel)
            if (bits[channel]) bytes.push_back(static_cast<GLubyte>(channelOf(entry, channel, 8)));
        return;
    }
    uint32_t word = 0;
    for (int channel = 0; channel < 4; ++channel)
        word = word << bits[channel] | channelOf(entry, channel, bits[channel]);
    bytes.push_back(static_cast<GLubyte>(word & 0xFF));
    bytes.push_back(static_cast<GLubyte>(word >> 8));
}

constexpr int kPalettedSize = 8; // levels of 8, 4, 2 and 1 texels
constexpr int kPalettedLevels = 4;

int indexOf(const Paletted &p, int level, int texel)
{
    const int entries = 1 << p.indexBits;
    return (level * 5 + texel * 3 + texel / 7) % entries;
}

std::vector<GLubyte> palettedImage(const Paletted &p)
{
    std::vector<GLubyte> bytes;
    for (int entry = 0; entry < 1 << p.indexBits; ++entry)
        appendEntry(bytes, p, entry);
    for (int level = 0; level < kPalettedLevels; ++level) {
        const int texels = (kPalettedSize >> level) * (kPalettedSize >> level);
        for (int i = 0; i < texels; i += 8 / p.indexBits) {
            if (p.indexBits == 8) {
                bytes.push_back(static_cast<GLubyte>(indexOf(p, level, i)));
                continue;
            }
            // The first texel in the high half; the single texel of the last level leaves the low half unused.
            const int second = i + 1 < texels ? indexOf(p, level, i + 1) : 0;
            bytes.push_back(static_cast<GLubyte>(indexOf(p, level, i) << 4 | second));
        }
    }
    return bytes;
}

// A few texels of every level of one image.
Scene palettedScene(const Paletted &p)
{
    std::vector<Cell> cells;
    for (int level = 0; level < kPalettedLevels; ++level) {
        const int size = kPalettedSize >> level;
        for (int i = 0; i < 4; ++i) {
            const int x = (i * 5 + 1) % size;
            const int y = (i * 3 + 2) % size;
            cells.push_back({"level " + std::to_string(level),
                             [=](const Place &place) {
                                 const std::vector<GLubyte> image = palettedImage(p);
                                 bindNew(GL_NEAREST_MIPMAP_NEAREST);
                                 glCompressedTexImage2D(GL_TEXTURE_2D, 1 - kPalettedLevels, p.format, kPalettedSize,
                                                        kPalettedSize, 0, static_cast<GLsizei>(image.size()),
                                                        image.data());
                                 drawLevelTexel(place, kPalettedSize, level, x, y);
                             },
                             [=](const Place &) { return entryColour(p, indexOf(p, level, y * size + x)); }});
        }
    }
    return boardScene(p.name, std::move(cells));
}

// ETC1 blocks, most significant byte first. Pixels are numbered down the columns.
// Two halves side by side: base colours of 4 bits each, tables 0 and 7.
//   red 15 | 0, green 0 | 15, blue 3 | 3; indices: 0 everywhere but pixel 0 (3), 5 (1), 10 (2), 15 (3).
constexpr GLubyte kSideBySide[] = {0xF0, 0x0F, 0x33, 0x1C, 0x84, 0x01, 0x80, 0x21};
// Two halves one above the other: base 16, 8, 31 of 5 bits, second less by 2, more by 3, less by 4; tables 3 and 1.
constexpr GLubyte kAbove[] = {0x86, 0x43, 0xFC, 0x67, 0x00, 0x00, 0x00, 0x00};

// Modifiers: table 0 is 2 and 8, table 7 is 47 and 183; indices 0 +small, 1 +large, 2 -small, 3 -large.
Colour bytes(int r, int g, int b)
{
    return {r / 255.0, g / 255.0, b / 255.0, 1};
}

struct Texel {
    int x, y;
    Colour colour;
    const char *why;
};

const Texel kSideBySideTexels[] = {
    {1, 0, bytes(255, 2, 53), "left half, +2"}, {0, 0, bytes(247, 0, 43), "pixel 0, -8"},
    {1, 1, bytes(255, 8, 59), "pixel 5, +8"},   {3, 0, bytes(47, 255, 98), "right half, +47"},
    {2, 2, bytes(0, 208, 4), "pixel 10, -47"},  {3, 3, bytes(0, 72, 0), "pixel 15, -183"},
};
// 16 -> 132, 8 -> 66, 31 -> 255; 14 -> 115, 11 -> 90, 27 -> 222; table 3 adds 13, table 1 adds 5.
const Texel kAboveTexels[] = {
    {0, 0, bytes(145, 79, 255), "upper half, +13"},
    {3, 1, bytes(145, 79, 255), "upper half, +13"},
    {0, 2, bytes(120, 95, 227), "lower half, +5"},
    {3, 3, bytes(120, 95, 227), "lower half, +5"},
};

void etcImage(int level, int size, std::initializer_list<const GLubyte *> blocks)
{
    std::vector<GLubyte> image;
    for (const GLubyte *block : blocks)
        image.insert(image.end(), block, block + 8);
    glCompressedTexImage2D(GL_TEXTURE_2D, level, GL_ETC1_RGB8_OES, size, size, 0, static_cast<GLsizei>(image.size()),
                           image.data());
}

std::vector<Cell> etcCells()
{
    std::vector<Cell> cells;
    const auto cell = [&](const Texel &texel, const GLubyte *block) {
        cells.push_back({texel.why,
                         [=](const Place &place) {
                             bindNew(GL_NEAREST);
                             etcImage(0, 4, {block});
                             drawTexel(place, (texel.x + 0.5) / 4, (texel.y + 0.5) / 4);
                         },
                         [colour = texel.colour](const Place &) { return colour; }});
    };
    for (const Texel &texel : kSideBySideTexels)
        cell(texel, kSideBySide);
    for (const Texel &texel : kAboveTexels)
        cell(texel, kAbove);
    return cells;
}

// Four blocks, and levels down to one texel, each a block.
std::vector<Cell> etcLevelCells()
{
    std::vector<Cell> cells;
    const auto cell = [&](int level, int x, int y, const Colour &colour) {
        cells.push_back({"level " + std::to_string(level),
                         [=](const Place &place) {
                             bindNew(GL_NEAREST_MIPMAP_NEAREST);
                             etcImage(0, 8, {kSideBySide, kAbove, kAbove, kSideBySide});
                             etcImage(1, 4, {kAbove});
                             etcImage(2, 2, {kSideBySide});
                             etcImage(3, 1, {kAbove});
                             drawLevelTexel(place, 8, level, x, y);
                         },
                         [=](const Place &) { return colour; }});
    };
    cell(0, 1, 0, kSideBySideTexels[0].colour);
    cell(0, 4, 0, kAboveTexels[0].colour);
    cell(0, 0, 6, kAboveTexels[2].colour);
    cell(0, 6, 6, kSideBySideTexels[4].colour);
    cell(1, 3, 1, kAboveTexels[0].colour);
    cell(1, 2, 3, kAboveTexels[2].colour);
    cell(2, 0, 0, kSideBySideTexels[1].colour);
    cell(2, 1, 1, kSideBySideTexels[2].colour);
    cell(3, 0, 0, kAboveTexels[0].colour);
    return cells;
}

// A paletted RGBA image blends like one with alpha, a paletted RGB image like one without.
std::vector<Cell> baseFormatCells()
{
    std::vector<Cell> cells;
    for (const Paletted &p : kPaletted) {
        const Colour texel = entryColour(p, indexOf(p, 0, 0));
        cells.push_back({p.name,
                         [&p](const Place &place) {
                             const std::vector<GLubyte> image = palettedImage(p);
                             bindNew(GL_NEAREST);
                             setEnv(GL_TEXTURE_ENV_MODE, GL_MODULATE);
                             glColor4f(0.5f, 0.5f, 0.5f, 0.5f);
                             glCompressedTexImage2D(GL_TEXTURE_2D, 1 - kPalettedLevels, p.format, kPalettedSize,
                                                    kPalettedSize, 0, static_cast<GLsizei>(image.size()), image.data());
                             drawTexel(place, 0.5 / kPalettedSize, 0.5 / kPalettedSize);
                         },
                         [texel](const Place &) {
                             return Colour{texel.r / 2, texel.g / 2, texel.b / 2, texel.a / 2};
                         }});
    }
    return cells;
}

} // namespace

std::vector<Scene> compressedScenes()
{
    std::vector<Scene> scenes;
    for (const Paletted &p : kPaletted)
        scenes.push_back(palettedScene(p));
    scenes.push_back(boardScene("PalettedBaseFormats", baseFormatCells()));
    scenes.push_back(boardScene("Etc1Blocks", etcCells()));
    scenes.push_back(boardScene("Etc1Levels", etcLevelCells()));
    return scenes;
}
