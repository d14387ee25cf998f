// SPDX-License-Identifier: MIT
#include "etc1.h"

#include <algorithm>

static constexpr int kSide = 4; // texels
static constexpr size_t kBlockBytes = 8;

// What is added to the base colour, by table and by the texel's two bits, the low one first.
static constexpr int kModifiers[8][4] = {
    {2, 8, -2, -8},     {5, 17, -5, -17},   {9, 29, -9, -29},     {13, 42, -13, -42},
    {18, 60, -18, -60}, {24, 80, -24, -80}, {33, 106, -33, -106}, {47, 183, -47, -183},
};

static int expand4(int value)
{
    return value << 4 | value;
}

static int expand5(int value)
{
    return value << 3 | value >> 2;
}

// Base colours of the two halves, eight bits a component. Bit 1 of the fourth byte says how they are written.
static void readBaseColours(const uint8_t block[8], int (&colours)[2][3])
{
    const bool differential = block[3] & 2;
    for (int i = 0; i < 3; ++i) {
        if (!differential) {
            colours[0][i] = expand4(block[i] >> 4);
            colours[1][i] = expand4(block[i] & 15);
            continue;
        }
        const int base = block[i] >> 3;
        const int difference = (block[i] & 7) - (block[i] & 4 ? 8 : 0); // -4 to 3
        colours[0][i] = expand5(base);
        colours[1][i] =
            expand5((base + difference) & 31); // no encoder leaves the range; then as many bits as there are
    }
}

size_t etc1Size(int width, int height)
{
    const size_t across = (static_cast<size_t>(width) + kSide - 1) / kSide;
    const size_t down = (static_cast<size_t>(height) + kSide - 1) / kSide;
    return across * down * kBlockBytes;
}

void decodeEtc1Block(const uint8_t block[8], uint8_t texels[48])
{
    int colours[2][3];
    readBaseColours(block, colours);
    const int tables[2] = {block[3] >> 5, block[3] >> 2 & 7};
    const bool above = block[3] & 1; // the halves lie above each other, not side by side
    const unsigned highBits = static_cast<unsigned>(block[4]) << 8 | block[5];
    const unsigned lowBits = static_cast<unsigned>(block[6]) << 8 | block[7];
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const int bit = x * kSide + y; // columns come first
            const int half = (above ? y : x) / 2;
            const unsigned index = (highBits >> bit & 1) << 1 | (lowBits >> bit & 1);
            for (int i = 0; i < 3; ++i) {
                const int value = colours[half][i] + kModifiers[tables[half]][index];
                *texels++ = static_cast<uint8_t>(std::clamp(value, 0, 255));
            }
        }
    }
}

std::vector<uint8_t> decodeEtc1(const uint8_t *blocks, int width, int height)
{
    const size_t rowBytes = static_cast<size_t>(width) * 3;
    std::vector<uint8_t> image(rowBytes * static_cast<size_t>(height));
    for (int top = 0; top < height; top += kSide) {
        for (int left = 0; left < width; left += kSide, blocks += kBlockBytes) {
            uint8_t texels[48];
            decodeEtc1Block(blocks, texels);
            const int columns = std::min(kSide, width - left);
            const int rows = std::min(kSide, height - top);
            for (int y = 0; y < rows; ++y) {
                const size_t at = static_cast<size_t>(top + y) * rowBytes + static_cast<size_t>(left) * 3;
                std::copy_n(texels + y * kSide * 3, columns * 3, image.begin() + static_cast<ptrdiff_t>(at));
            }
        }
    }
    return image;
}
