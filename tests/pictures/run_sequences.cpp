// SPDX-License-Identifier: MIT
// Plays sequences with the EGL and ES 1.1 libraries it is started with. For each it writes into a folder NAME.png, a
// sheet of all its pictures, NAME.fresh.png, the same from fresh contexts, and NAME.txt, a line per picture.
//   run_sequences DIR [NAME...]    RandomN: any seed, also one that is not among the tests
#include "pictures/extensions.h"
#include "pictures/headless.h"
#include "pictures/sequences.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kColumns = 16;

Image sheetOf(const std::vector<Tile> &tiles, Image Tile::*side)
{
    const int rows = (static_cast<int>(tiles.size()) + kColumns - 1) / kColumns;
    Image sheet = {kColumns * kTileSize, rows * kTileSize, {}};
    sheet.pixels.resize(4 * static_cast<size_t>(sheet.width) * static_cast<size_t>(sheet.height));
    for (size_t i = 0; i < tiles.size(); ++i) {
        const int left = static_cast<int>(i) % kColumns * kTileSize;
        const int bottom = static_cast<int>(i) / kColumns * kTileSize;
        for (int y = 0; y < kTileSize; ++y) {
            const uint8_t *row = (tiles[i].*side).at(0, y);
            std::copy(row, row + 4 * kTileSize,
                      &sheet.pixels[4 * (static_cast<size_t>(bottom + y) * sheet.width + left)]);
        }
    }
    return sheet;
}

bool writeTiles(const std::string &base, const std::vector<Tile> &tiles)
{
    std::FILE *lines = std::fopen((base + ".txt").c_str(), "w");
    if (!lines) return false;
    for (const Tile &tile : tiles)
        std::fprintf(lines, "%s\n", tile.what.c_str());
    std::fclose(lines);
    return writePng(base + ".png", sheetOf(tiles, &Tile::played)) &&
           writePng(base + ".fresh.png", sheetOf(tiles, &Tile::fresh));
}

void clearStage(Stage &stage)
{
    makeCurrent(stage, EGL_NO_CONTEXT);
    while (!stage.contexts.empty())
        destroyContext(stage, stage.contexts.back());
    stage.tiles.clear();
}

// The named sequences, or all.
std::vector<Sequence> chosen(char **first, char **past)
{
    if (first == past) return allSequences();
    std::vector<Sequence> sequences;
    for (char **name = first; name != past; ++name) {
        unsigned seed;
        if (std::sscanf(*name, "Random%u", &seed) == 1) {
            sequences.push_back(randomSequence(seed));
            continue;
        }
        for (const Sequence &sequence : allSequences())
            if (sequence.name == *name) sequences.push_back(sequence);
    }
    return sequences;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: run_sequences DIR [NAME...]\n");
        return 2;
    }
    Stage stage;
    stage.display = openDisplay();
    stage.config = chooseConfig(stage.display);
    if (const char *missing = loadExtensions()) failEgl(missing);
    for (const Sequence &sequence : chosen(argv + 2, argv + argc)) {
        sequence.play(stage);
        const std::string base = std::string(argv[1]) + "/" + sequence.name;
        if (!writeTiles(base, stage.tiles)) {
            std::fprintf(stderr, "run_sequences: cannot write %s\n", base.c_str());
            return 1;
        }
        clearStage(stage);
    }
    eglTerminate(stage.display);
    return 0;
}
