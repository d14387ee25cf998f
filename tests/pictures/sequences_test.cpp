// SPDX-License-Identifier: MIT
// Every sequence played by the drop-in pair: each of its draws must look exactly as in a fresh context.
#include "pictures/image.h"
#include "pictures/sequences.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

// Given by the build: folder of the drop-in pair, path of run_sequences, where pictures go.
static const std::string kPairFolder = PAIR_FOLDER;
static const std::string kPlayer = PLAYER;
static const std::string kPictureFolder = pictureFolder(PICTURE_FOLDER);

namespace {

class Played : public testing::TestWithParam<Sequence> {};

bool play(const std::string &name)
{
    std::filesystem::create_directories(kPictureFolder);
    const std::string environment = "LD_LIBRARY_PATH='" + kPairFolder + "' VSP_ASSERT=abort ";
    return std::system((environment + "'" + kPlayer + "' '" + kPictureFolder + "' " + name).c_str()) == 0;
}

std::vector<std::string> linesOf(const std::string &path)
{
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

// Pixels of a tile that differ between two sheets.
int differingPixels(const Image &a, const Image &b, size_t tile)
{
    const int columns = a.width / kTileSize;
    const int left = static_cast<int>(tile) % columns * kTileSize;
    const int bottom = static_cast<int>(tile) / columns * kTileSize;
    int count = 0;
    for (int y = bottom; y < bottom + kTileSize; ++y) {
        for (int x = left; x < left + kTileSize; ++x)
            count += !std::equal(a.at(x, y), a.at(x, y) + 4, b.at(x, y));
    }
    return count;
}

// Whether something was drawn into a tile: not one colour all over.
bool shows(const Image &sheet, size_t tile)
{
    const int columns = sheet.width / kTileSize;
    const int left = static_cast<int>(tile) % columns * kTileSize;
    const int bottom = static_cast<int>(tile) / columns * kTileSize;
    const uint8_t *corner = sheet.at(left, bottom);
    for (int y = bottom; y < bottom + kTileSize; ++y) {
        for (int x = left; x < left + kTileSize; ++x)
            if (!std::equal(corner, corner + 4, sheet.at(x, y))) return true;
    }
    return false;
}

} // namespace

static void PrintTo(const Sequence &sequence, std::ostream *out)
{
    *out << sequence.name;
}

TEST_P(Played, DrawsAsAFreshContextDoes)
{
    const Sequence &sequence = GetParam();
    ASSERT_TRUE(play(sequence.name)) << "the player failed on the drop-in pair";
    const std::string base = kPictureFolder + "/" + sequence.name;
    const std::vector<std::string> draws = linesOf(base + ".txt");
    ASSERT_EQ(draws.size(), sequence.draws);
    const Image played = readPng(base + ".png");
    const Image fresh = readPng(base + ".fresh.png");
    ASSERT_GT(played.width, 0);
    ASSERT_EQ(played.pixels.size(), fresh.pixels.size());
    for (size_t i = 0; i < draws.size(); ++i)
        EXPECT_EQ(differingPixels(played, fresh, i), 0)
            << "picture " << i << " (" << draws[i] << ") of " << base << ".png and .fresh.png";

    // Random alpha tests and planes leave some pictures empty; most must show what is compared.
    size_t shown = 0;
    for (size_t i = 0; i < draws.size(); ++i)
        shown += shows(played, i);
    EXPECT_GE(shown, draws.size() * 3 / 4);
}

INSTANTIATE_TEST_SUITE_P(Sequences, Played, testing::ValuesIn(allSequences()),
                         [](const auto &sequence) { return sequence.param.name; });
