// SPDX-License-Identifier: MIT
// The ETC1 decoder: blocks worked out by hand from the extension's tables.
#include "host/gles2/etc1.h"

#include <array>
#include <gtest/gtest.h>

namespace {

using Texel = std::array<int, 3>;

// A block from its bits, highest first: three colour bytes, tables of the halves, the two flags, and per texel (in the
// order of its columns) one of two bits.
std::array<uint8_t, 8> block(Texel colours, int table0, int table1, int differential, int flip, unsigned high,
                             unsigned low)
{
    const auto byte = [](auto value) { return static_cast<uint8_t>(value); };
    return {byte(colours[0]), byte(colours[1]),
            byte(colours[2]), byte(table0 << 5 | table1 << 2 | differential << 1 | flip),
            byte(high >> 8),  byte(high),
            byte(low >> 8),   byte(low)};
}

struct Decoded {
    explicit Decoded(const std::array<uint8_t, 8> &from)
    {
        decodeEtc1Block(from.data(), texels);
    }
    Texel at(int x, int y) const
    {
        const uint8_t *texel = texels + (y * 4 + x) * 3;
        return {texel[0], texel[1], texel[2]};
    }
    uint8_t texels[48];
};

TEST(Etc1, IndividualColoursHaveFourBitsForEachHalf)
{
    // 0x4 is 68, 0xA is 170, 0x5 is 85, 0x0 is 0, 0xC is 204, 0x8 is 136; table 0 adds 2 to every texel.
    const Decoded decoded(block({0x4A, 0x50, 0xC8}, 0, 0, 0, 0, 0, 0));
    for (int y = 0; y < 4; ++y) {
        EXPECT_EQ(decoded.at(0, y), (Texel{70, 87, 206}));
        EXPECT_EQ(decoded.at(1, y), (Texel{70, 87, 206}));
        EXPECT_EQ(decoded.at(2, y), (Texel{172, 2, 138}));
        EXPECT_EQ(decoded.at(3, y), (Texel{172, 2, 138}));
    }
}

TEST(Etc1, TheFlipFlagPutsTheHalvesAboveEachOther)
{
    const Decoded decoded(block({0x4A, 0x50, 0xC8}, 0, 0, 0, 1, 0, 0));
    for (int x = 0; x < 4; ++x) {
        EXPECT_EQ(decoded.at(x, 0), (Texel{70, 87, 206}));
        EXPECT_EQ(decoded.at(x, 1), (Texel{70, 87, 206}));
        EXPECT_EQ(decoded.at(x, 2), (Texel{172, 2, 138}));
        EXPECT_EQ(decoded.at(x, 3), (Texel{172, 2, 138}));
    }
}

TEST(Etc1, DifferentialColoursHaveFiveBitsAndASignedDifference)
{
    // Red 16 and +3, green 16 and -4, blue 10 and -1. Five bits become eight by repeating the high three:
    // 16 is 132, 19 is 156, 12 is 99, 10 is 82, 9 is 74.
    const Decoded decoded(block({16 << 3 | 3, 16 << 3 | 4, 10 << 3 | 7}, 0, 0, 1, 0, 0, 0));
    EXPECT_EQ(decoded.at(0, 0), (Texel{134, 134, 84}));
    EXPECT_EQ(decoded.at(2, 0), (Texel{158, 101, 76}));
}

TEST(Etc1, ADifferenceMayReachTheEndsOfTheRange)
{
    // 28 + 3 is 31, which is 255; 4 - 4 is 0.
    const Decoded decoded(block({28 << 3 | 3, 4 << 3 | 4, 0}, 0, 0, 1, 0, 0xFFFF, 0));
    EXPECT_EQ(decoded.at(2, 0), (Texel{253, 0, 0})) << "table 0 takes 2 away";
}

// The extension leaves it open; what counts is that the colour is made of the five bits there are.
TEST(Etc1, ADifferenceBeyondTheRangeGoesRound)
{
    // 31 + 1 is 0, 0 - 1 is 31, 29 + 3 is 0.
    const Decoded decoded(block({31 << 3 | 1, 0 << 3 | 7, 29 << 3 | 3}, 0, 0, 1, 0, 0, 0));
    EXPECT_EQ(decoded.at(2, 0), (Texel{2, 255, 2}));
}

TEST(Etc1, EveryTableHasItsFourModifiers)
{
    // 0x8 is 136. The columns of each half, from the top: indices 0, 1, 2, 3 (bits: high, low).
    const struct {
        int table;
        std::array<int, 4> values;
    } cases[] = {
        {0, {138, 144, 134, 128}}, {1, {141, 153, 131, 119}}, {2, {145, 165, 127, 107}},
        {3, {149, 178, 123, 94}},  {4, {154, 196, 118, 76}},  {5, {160, 216, 112, 56}},
        {6, {169, 242, 103, 30}},  {7, {183, 255, 89, 0}}, // 136 + 183 and 136 - 183 stop at the ends
    };
    for (const auto &c : cases) {
        for (const bool second : {false, true}) {
            const Decoded decoded(
                block({0x88, 0x88, 0x88}, second ? 0 : c.table, second ? c.table : 0, 0, 0, 0xCCCC, 0xAAAA));
            for (int y = 0; y < 4; ++y) {
                const int value = c.values[static_cast<size_t>(y)];
                EXPECT_EQ(decoded.at(second ? 3 : 1, y), (Texel{value, value, value}))
                    << "table " << c.table << ", index " << y;
                const int other = cases[0].values[static_cast<size_t>(y)];
                EXPECT_EQ(decoded.at(second ? 1 : 3, y), (Texel{other, other, other}));
            }
        }
    }
}

TEST(Etc1, ComponentsStopAtTheEndsOneByOne)
{
    // 0xF is 255, 0x0 is 0, 0x8 is 136; table 7 adds 47 and takes 47.
    const auto colours = Texel{0xFF, 0x00, 0x88};
    EXPECT_EQ(Decoded(block(colours, 7, 7, 0, 0, 0, 0)).at(0, 0), (Texel{255, 47, 183}));
    EXPECT_EQ(Decoded(block(colours, 7, 7, 0, 0, 0xFFFF, 0)).at(0, 0), (Texel{208, 0, 89}));
}

TEST(Etc1, TexelBitsRunDownTheColumns)
{
    // Bit 0 is the texel at (0, 0), bit 3 at (0, 3), bit 4 at (1, 0), bit 15 at (3, 3).
    for (int bit = 0; bit < 16; ++bit) {
        const Decoded decoded(block({0x88, 0x88, 0x88}, 0, 0, 0, 0, 1u << bit, 0));
        for (int other = 0; other < 16; ++other)
            EXPECT_EQ(decoded.at(other / 4, other % 4)[0], other == bit ? 134 : 138) << bit << ", " << other;
    }
}

TEST(Etc1, SizesCountBegunBlocks)
{
    EXPECT_EQ(etc1Size(4, 4), 8u);
    EXPECT_EQ(etc1Size(1, 1), 8u);
    EXPECT_EQ(etc1Size(5, 4), 16u);
    EXPECT_EQ(etc1Size(4, 5), 16u);
    EXPECT_EQ(etc1Size(8, 8), 32u);
    EXPECT_EQ(etc1Size(0, 8), 0u);
}

TEST(Etc1, AnImageIsCutToItsSize)
{
    // Two blocks beside each other and two below, of one colour each: 0x1 is 17, 0x2 is 34, 0x3 is 51, 0x4 is 68.
    std::vector<uint8_t> blocks;
    for (int colour : {0x11, 0x22, 0x33, 0x44}) {
        const auto one = block({colour, colour, colour}, 0, 0, 0, 0, 0, 0);
        blocks.insert(blocks.end(), one.begin(), one.end());
    }
    const std::vector<uint8_t> image = decodeEtc1(blocks.data(), 6, 5);
    ASSERT_EQ(image.size(), 6u * 5u * 3u);
    for (size_t y = 0; y < 5; ++y) {
        for (size_t x = 0; x < 6; ++x) {
            const int expected = (y < 4 ? x < 4 ? 17 : 34 : x < 4 ? 51 : 68) + 2;
            for (size_t i = 0; i < 3; ++i)
                EXPECT_EQ(image[(y * 6 + x) * 3 + i], expected) << x << ", " << y;
        }
    }
    EXPECT_EQ(decodeEtc1(blocks.data(), 0, 4).size(), 0u);
}

} // namespace
