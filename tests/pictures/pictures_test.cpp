// SPDX-License-Identifier: MIT
// Every scene drawn twice, by the drop-in pair and by the machine's own ES 1.1: the pair's picture must have the
// colours worked out for it and must look like the machine's. Pictures that fail stay behind, with their difference.
#include "pictures/image.h"
#include "pictures/scene.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

// Given by the build: folder of the drop-in pair, path of render_scenes, where pictures go.
static const std::string kPairFolder = PAIR_FOLDER;
static const std::string kRenderer = RENDERER;
static const std::string kPictureFolder = pictureFolder(PICTURE_FOLDER);

namespace {

void printPath(const std::string &path)
{
    std::printf("  %s\n", path.c_str());
}

// Runs the renderer once per side and program run.
bool renderAll(const std::string &side, const std::string &environment, const std::string &option = "")
{
    const std::string folder = kPictureFolder + "/" + side;
    std::filesystem::create_directories(folder);
    return std::system((environment + " '" + kRenderer + "' " + option + " '" + folder + "'").c_str()) == 0;
}

bool haveOurs()
{
    static const bool drawn = renderAll("ours", "LD_LIBRARY_PATH='" + kPairFolder + "' VSP_ASSERT=abort");
    return drawn;
}

bool haveNative()
{
    static const bool drawn = renderAll("native", "env -u LD_LIBRARY_PATH", "--compared");
    return drawn;
}

// Whether the renderer wrote the scene down as one that leaves a GL error.
bool leavesError(const std::string &side, const std::string &name)
{
    std::ifstream errors(kPictureFolder + "/" + side + "/errors.txt");
    for (std::string line; std::getline(errors, line);)
        if (line == name) return true;
    return !errors.eof();
}

class Picture : public testing::TestWithParam<Scene> {};

std::string probeText(const uint8_t *pixel)
{
    char text[64];
    std::snprintf(text, sizeof(text), "(%d, %d, %d, %d)", pixel[0], pixel[1], pixel[2], pixel[3]);
    return text;
}

} // namespace

static void PrintTo(const Scene &scene, std::ostream *out)
{
    *out << scene.name;
}

TEST_P(Picture, HasTheColoursWorkedOutForIt)
{
    const Scene &scene = GetParam();
    ASSERT_TRUE(haveOurs()) << "the renderer failed on the drop-in pair";
    EXPECT_FALSE(leavesError("ours", scene.name)) << "a GL error is pending after the scene";
    const std::string path = kPictureFolder + "/ours/" + scene.name + ".png";
    const Image image = readPng(path);
    ASSERT_EQ(image.width, kPictureSize) << path;
    for (const Probe &probe : scene.probes) {
        const uint8_t *pixel = image.at(probe.x, probe.y);
        const double expected[4] = {probe.red, probe.green, probe.blue, probe.alpha};
        for (int channel = 0; channel < 4; ++channel) {
            EXPECT_LE(std::abs(pixel[channel] - expected[channel]), scene.probeTolerance + 0.5)
                << "pixel " << probe.x << ", " << probe.y << " is " << probeText(pixel) << ", expected (" << probe.red
                << ", " << probe.green << ", " << probe.blue << ", " << probe.alpha << "): " << probe.why << "; see "
                << path;
        }
    }
}

TEST_P(Picture, LooksLikeTheMachinesOwn)
{
    const Scene &scene = GetParam();
    if (scene.native.instead) {
        ASSERT_FALSE(scene.probes.empty()) << "neither compared nor worked out";
        return;
    }
    ASSERT_TRUE(haveOurs() && haveNative());
    const Image ours = readPng(kPictureFolder + "/ours/" + scene.name + ".png");
    const Image native = readPng(kPictureFolder + "/native/" + scene.name + ".png");
    ASSERT_EQ(native.width, kPictureSize);
    const Difference difference = compareImages(ours, native, scene.native.tolerance);
    EXPECT_LE(difference.pixels, scene.native.differingPixels) << "largest difference " << difference.most;
    if (difference.pixels > scene.native.differingPixels) {
        const std::string base = kPictureFolder + "/";
        writePng(base + scene.name + ".difference.png", differenceImage(ours, native));
        std::printf("expected, actual and difference (times 8):\n");
        printPath(base + "native/" + scene.name + ".png");
        printPath(base + "ours/" + scene.name + ".png");
        printPath(base + scene.name + ".difference.png");
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, Picture, testing::ValuesIn(allScenes()),
                         [](const auto &scene) { return scene.param.name; });
