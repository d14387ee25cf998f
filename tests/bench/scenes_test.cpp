// SPDX-License-Identifier: MIT
// The benchmark's scenes: the three ways to draw them give one picture, else their costs could not be compared.
#include "bench/json_reader.h"
#include "es1/measure.h"
#include "es1/profile.h"
#include "pictures/image.h"
#include "support/working_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace {

// Given by the build: where es1table and its programs are, and the drop-in pair.
const Build kBuild = {.programs = PROGRAM_FOLDER, .libraries = PAIR_FOLDER};

#define SCENE(name, title, budget) SceneRow{#name, title, budget},
const SceneRow kRows[] = {
#include "es1/scenes.def"
};
#undef SCENE

// The three ways as the tests start them: a failed assertion of the library ends the program.
class BenchScene : public testing::TestWithParam<SceneRow> {
protected:
    static void SetUpTestSuite()
    {
        setenv("VSP_ASSERT", "abort", 1);
    }

    // The picture of a side. Empty without one; then the run says why.
    Image draw(Side side, Outcome &run)
    {
        const std::string file = folder.path / kSideNames[side];
        run = drawPicture(kBuild, side, GetParam(), file);
        return run.status == 0 ? readPng(file) : Image();
    }

    void expectLikeOurs(const Image &other)
    {
        Outcome run;
        const Image ours = draw(OURS, run);
        ASSERT_EQ(ours.width, kSceneSize) << run.text;
        ASSERT_EQ(other.width, kSceneSize);
        const Difference difference = compareImages(ours, other, kPictureTolerance);
        EXPECT_LE(difference.pixels, kDifferingPixels) << "largest difference " << difference.most;
        EXPECT_TRUE(showsSomething(ours));
    }

private:
    // Not only the colour it was cleared to, which shows in one of the corners or nowhere.
    static bool showsSomething(const Image &image)
    {
        for (size_t i = 4; i < image.pixels.size(); ++i)
            if (image.pixels[i] != image.pixels[i - 4]) return true;
        return false;
    }

    TemporaryFolder folder;
};

std::string program(const std::string &name)
{
    return "'" + kBuild.programs + "/" + name + "'";
}

} // namespace

static void PrintTo(const SceneRow &scene, std::ostream *out)
{
    *out << scene.name;
}

TEST_P(BenchScene, LooksLikeHandWrittenEs2)
{
    Outcome run;
    const Image image = draw(ES2, run);
    ASSERT_EQ(run.status, 0) << run.text;
    expectLikeOurs(image);
}

TEST_P(BenchScene, LooksLikeTheMachinesOwnEs1)
{
    Outcome run;
    const Image image = draw(NATIVE, run);
    if (run.status == kSceneUnavailable) {
        // Such a driver is to be named by what it lacks, and only this scene may need more than ES 1.1 itself has.
        EXPECT_EQ(std::string(GetParam().name), "skinning");
        EXPECT_EQ(valueOf(run.text, "unavailable"), "GL_OES_matrix_palette");
        return;
    }
    ASSERT_EQ(run.status, 0) << run.text;
    expectLikeOurs(image);
}

INSTANTIATE_TEST_SUITE_P(Scenes, BenchScene, testing::ValuesIn(kRows),
                         [](const auto &scene) { return std::string(scene.param.name); });

TEST(ScenePrograms, NameTheSameScenesInTheSameOrder)
{
    std::string names;
    for (const SceneRow &row : kRows)
        names += std::string(row.name) + "\n";
    for (const char *name : {"es1bench", "es2bench"})
        EXPECT_EQ(runCommand(program(name) + " --list").text, names) << name;
}

TEST(ScenePrograms, RefuseAnUnknownScene)
{
    for (const char *name : {"es1bench", "es2bench"}) {
        const Outcome run = runCommand(program(name) + " --scene nowhere");
        EXPECT_EQ(run.status, 2) << name;
        EXPECT_NE(run.text.find("no scene is called 'nowhere'"), std::string::npos) << run.text;
    }
}

TEST(ScenePrograms, RefuseOptionsThatMakeNoSense)
{
    for (const char *options : {"", "--scene same --draws 0", "--scene same --draws 5x", "--scene", "--fast"})
        EXPECT_EQ(runCommand(program("es1bench") + " " + options).status, 2) << options;
}

TEST(SceneTable, RefusesAnUnknownScene)
{
    TemporaryFolder folder;
    const Outcome run = runCommand(program("es1table") + " --out " + folder.path.string() + " --scene nowhere");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.text.find("no scene is called 'nowhere'"), std::string::npos) << run.text;
}

TEST(SceneTable, WritesItsTimesAsJson)
{
    TemporaryFolder folder;
    const std::string options = " --scene same --scene skinning --rounds 1 --no-instructions --out ";
    const Outcome run = runCommand(program("es1table") + options + folder.path.string());
    ASSERT_EQ(run.status, 0) << run.text;

    JsonValues values;
    const std::string text = readFile(folder.path / "es1bench.json");
    ASSERT_TRUE(readJson(text, values)) << text;
    EXPECT_EQ(values["scenes[0].name"], "same");
    EXPECT_EQ(values["scenes[1].name"], "skinning");
    EXPECT_EQ(values.count("scenes[2].name"), 0u);
    EXPECT_EQ(values["scenes[0].budget"], "800");
    EXPECT_EQ(values["scenes[0].reached"], "null") << "without instructions nobody knows";
    for (const std::string side : {"native", "es2", "ours"}) {
        EXPECT_GT(std::stod(values["scenes[0]." + side + ".wall_ns"]), 0.0) << side;
        EXPECT_GT(std::stod(values["scenes[0]." + side + ".cpu_ns"]), 0.0) << side;
        EXPECT_EQ(values["scenes[0]." + side + ".instructions"], "null") << side;
    }
    EXPECT_EQ(values["scenes[0].pictures_agree"], "true");
}

// A copy of the table's program takes the programs beside it: here the real ones or scripts in their place.
class SceneTableOfScripts : public testing::Test {
protected:
    SceneTableOfScripts()
    {
        std::filesystem::create_directory(programs);
        std::filesystem::create_symlink(kBuild.libraries, folder.path / "lib");
        std::filesystem::copy(kBuild.programs + "/es1table", programs);
        for (const char *name : {"es1bench", "es2bench"})
            std::filesystem::create_symlink(kBuild.programs + "/" + name, programs / name);
    }

    void replaceProgram(const std::string &name, const std::string &script)
    {
        std::filesystem::remove(programs / name);
        writeFile(programs / name, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(programs / name, std::filesystem::perms::owner_all);
    }

    Outcome run(const std::string &options)
    {
        return runCommand((programs / "es1table").string() + " --no-instructions --out " + folder.path.string() + " " +
                          options);
    }

    std::string valueInJson(const std::string &path)
    {
        JsonValues values;
        const bool read = readJson(readFile(folder.path / "es1bench.json"), values);
        return read ? values[path] : "no JSON";
    }

    TemporaryFolder folder;
    const std::filesystem::path programs = folder.path / "bin";
};

TEST_F(SceneTableOfScripts, FailsWhenThePicturesDiffer)
{
    replaceProgram("es2bench", "shift 2\nexec " + program("es2bench") + " --scene lights \"$@\"");
    const Outcome outcome = run("--scene same --rounds 0");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.text.find("same by es2 and by ours differ"), std::string::npos) << outcome.text;
    EXPECT_EQ(valueInJson("scenes[0].pictures_agree"), "false");
}

TEST_F(SceneTableOfScripts, FailsWhenASceneIsNotDrawn)
{
    replaceProgram("es2bench", "echo broken\nexit 1");
    const Outcome outcome = run("--scene same --rounds 0");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.text.find("same was not drawn by es2:\nbroken"), std::string::npos) << outcome.text;
}

TEST_F(SceneTableOfScripts, ComparesTheOtherTwoWhereTheMachineHasNoEs1)
{
    replaceProgram("es1bench", "[ \"$LD_LIBRARY_PATH\" ] || exit 127\nexec " + program("es1bench") + " \"$@\"");
    const Outcome outcome = run("--scene same --rounds 1");
    EXPECT_EQ(outcome.status, 0) << outcome.text;
    EXPECT_NE(outcome.text.find("native: not drawn, no OpenGL ES 1.1 here"), std::string::npos) << outcome.text;
    EXPECT_EQ(valueInJson("scenes[0].native.unavailable"), "OpenGL ES 1.1");
    EXPECT_EQ(valueInJson("scenes[0].es2.differing_pixels"), "0");
}

// The pair in the place of the machine's own ES 1.1, which has the matrix palette then.
TEST_F(SceneTableOfScripts, ComparesAllThreeWhereTheMachineHasTheMatrixPalette)
{
    replaceProgram("es1bench", "LD_LIBRARY_PATH='" + kBuild.libraries + "' exec " + program("es1bench") + " \"$@\"");
    const Outcome outcome = run("--scene skinning --rounds 0");
    EXPECT_EQ(outcome.status, 0) << outcome.text;
    EXPECT_EQ(valueInJson("scenes[0].native.unavailable"), "");
    EXPECT_EQ(valueInJson("scenes[0].native.differing_pixels"), "0");
}

// As callgrind writes it: names in short from their second use on, costs of calls after "calls=".
TEST(Profile, CountsEachFileWithoutItsCalls)
{
    std::istringstream profile("events: Ir\n\n"
                               "ob=(1) /bin/program\nfl=(1) ???\nfn=(1) draw\n0 100\n+3 20\n"
                               "cob=(2) /lib/driver.so\ncfn=(2) glDraw\ncalls=5 0\n* 5000\n0 3\n\n"
                               "ob=(2)\nfn=(2)\n-1 4000\ncfn=(3) inner\ncalls=1 0\n0 1000\n\nfn=(3)\n0 1000\n\n"
                               "ob=(1)\nfn=(4) other\n7 1\n\ntotals: 5124\n");
    const std::map<std::string, double> expected = {{"/bin/program", 124}, {"/lib/driver.so", 5000}};
    EXPECT_EQ(instructionsByFile(profile), expected);
}

TEST(JsonReader, TellsJsonFromOtherTexts)
{
    JsonValues values;
    EXPECT_TRUE(readJson("{\"a\": [1, {\"b\": \"x\\\"y\"}], \"c\": null}\n", values));
    EXPECT_EQ(values["a[0]"], "1");
    EXPECT_EQ(values["a[1].b"], "x\"y");
    for (const char *text : {"", "{", "{\"a\": }", "{\"a\": 1,}", "[1 2]", "{\"a\": -}", "{} x", "[1], ", "nan"})
        EXPECT_FALSE(readJson(text, values)) << text;
}
