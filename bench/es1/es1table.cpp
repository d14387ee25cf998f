// SPDX-License-Identifier: MIT
// The table of the scenes: native ES 1.1, hand-written ES 2 and this library side by side, from one run. Checks that
// all three drew the same picture.
#include "es1/frame.h"
#include "es1/measure.h"
#include "es1/report.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <future>
#include <stdexcept>

namespace {

#define SCENE(name, title, budget) {#name, title, budget},
constexpr SceneRow kRows[] = {
#include "es1/scenes.def"
};
#undef SCENE

struct Options {
    std::string out;                 // folder of the results
    std::vector<std::string> scenes; // empty: all
    int rounds = 5;                  // timed runs of each side; 0: no times
    bool instructions = true;
};

void printUsage()
{
    std::printf("usage: es1table --out FOLDER [--scene NAME]... [--rounds N] [--no-instructions]\n"
                "  --out FOLDER       where es1bench.json, pictures and profiles go\n"
                "  --scene NAME       this scene only, or these\n"
                "  --rounds N         timed runs of each side, 5 when not given; 0: no times\n"
                "  --no-instructions  times only\n");
}

// Returns false after a line on standard error.
bool isScene(const std::string &name)
{
    std::string names;
    for (const SceneRow &row : kRows) {
        if (name == row.name) return true;
        names += std::string(" ") + row.name;
    }
    std::fprintf(stderr, "es1table: no scene is called '%s'; there are:%s\n", name.c_str(), names.c_str());
    return false;
}

// Returns false after a line on standard error.
bool readOptions(Options &options, int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i], value = i + 1 < argc ? argv[i + 1] : "";
        char rest = 0;
        bool known = true;
        if (option == "--no-instructions") {
            options.instructions = false;
            continue;
        }
        if (option == "--out" && !value.empty()) {
            options.out = value;
        } else if (option == "--scene" && !value.empty()) {
            if (!isScene(value)) return false;
            options.scenes.push_back(value);
        } else if (option == "--rounds") {
            known = std::sscanf(value.c_str(), "%d%c", &options.rounds, &rest) == 1 && options.rounds >= 0;
        } else {
            known = false;
        }
        if (!known) {
            std::fprintf(stderr, "es1table: '%s %s' makes no sense; --help lists the options\n", option.c_str(),
                         value.c_str());
            return false;
        }
        ++i;
    }
    if (options.out.empty()) std::fprintf(stderr, "es1table: --out FOLDER is missing\n");
    return !options.out.empty();
}

// Draws the scene by all sides there are and compares. Returns the renderer of the machine's driver.
std::string comparePictures(const Build &build, const std::string &out, SceneResult &result)
{
    Image pictures[SIDES];
    std::string renderer;
    for (const Side side : {NATIVE, ES2, OURS}) {
        if (!result.unavailable[side].empty()) continue;
        const std::string file = out + "/" + result.scene.name + "." + kSideNames[side] + ".png";
        const Outcome run = drawPicture(build, side, result.scene, file);
        if (run.status == kSceneUnavailable && side == NATIVE) {
            result.unavailable[side] = valueOf(run.text, "unavailable");
            continue;
        }
        pictures[side] = readPng(file);
        if (run.status != 0 || pictures[side].pixels.empty())
            throw std::runtime_error(result.scene.name + std::string(" was not drawn by ") + kSideNames[side] + ":\n" +
                                     run.text);
        if (side != OURS) renderer = valueOf(run.text, "renderer");
    }
    for (const Side side : {NATIVE, ES2}) {
        if (!result.unavailable[side].empty()) continue;
        result.fromOurs[side] = compareImages(pictures[OURS], pictures[side], kPictureTolerance);
        if (result.fromOurs[side].pixels <= kDifferingPixels) continue;
        result.picturesAgree = false;
        std::fprintf(stderr, "es1table: %s by %s and by ours differ in %d pixels; see %s\n", result.scene.name,
                     kSideNames[side], result.fromOurs[side].pixels, out.c_str());
    }
    return renderer;
}

// Counts do not depend on the machine's load, so all sides are counted at once.
void countAll(const Build &build, const std::string &out, SceneResult &result)
{
    std::future<Cost> counts[SIDES];
    for (const Side side : {NATIVE, ES2, OURS}) {
        if (!result.unavailable[side].empty()) continue;
        const std::string profile = out + "/" + result.scene.name + "." + kSideNames[side] + ".callgrind";
        counts[side] = std::async(std::launch::async, countInstructions, build, side, result.scene, profile);
    }
    for (const Side side : {NATIVE, ES2, OURS})
        if (counts[side].valid()) result.costs[side] = counts[side].get();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : 0.5 * (values[middle - 1] + values[middle]);
}

// The sides take turns, so that a change of the machine's load meets all of them.
void timeAll(const Build &build, int rounds, SceneResult &result)
{
    const int draws = drawsForTiming(build, ES2, result.scene);
    std::vector<double> wall[SIDES], cpu[SIDES];
    for (int round = 0; round < rounds; ++round) {
        for (const Side side : {NATIVE, ES2, OURS}) {
            if (!result.unavailable[side].empty()) continue;
            const Cost cost = timeDraws(build, side, result.scene, draws);
            wall[side].push_back(cost.wallNs);
            cpu[side].push_back(cost.cpuNs);
        }
    }
    for (const Side side : {NATIVE, ES2, OURS}) {
        if (wall[side].empty()) continue;
        result.costs[side].wallNs = median(wall[side]);
        result.costs[side].cpuNs = median(cpu[side]);
    }
}

// Some drivers have no ES 1.1 at all.
bool haveNative(const Build &build, const std::string &pictures)
{
    const Outcome run = drawPicture(build, NATIVE, kRows[0], pictures + "/" + kRows[0].name + ".native.png");
    if (run.status != 0) std::printf("this machine's own ES 1.1 does not run: %s", run.text.c_str());
    return run.status == 0;
}

Build findBuild()
{
    const std::filesystem::path programs = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    return {.programs = programs, .libraries = programs.parent_path() / "lib"};
}

// Returns the exit status: 1 when pictures differ or the results cannot be written.
int measureAll(const Options &options)
{
    const Build build = findBuild();
    const std::string pictures = options.out + "/pictures";
    const std::string profiles = options.out + "/profiles";
    std::filesystem::create_directories(pictures);
    std::filesystem::create_directories(profiles);
    const std::string notCounted = options.instructions ? whyNotCounted(build) : "not asked for";
    if (!notCounted.empty()) std::printf("instructions are not counted: %s\n", notCounted.c_str());

    const std::string nativeLacks = haveNative(build, pictures) ? "" : "OpenGL ES 1.1";

    std::vector<SceneResult> results;
    std::string renderer;
    printCountHead();
    for (const SceneRow &row : kRows) {
        const std::vector<std::string> &wanted = options.scenes;
        if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), row.name) == wanted.end()) continue;
        SceneResult &result = results.emplace_back(SceneResult{.scene = row});
        result.unavailable[NATIVE] = nativeLacks;
        renderer = comparePictures(build, pictures, result);
        if (notCounted.empty()) countAll(build, profiles, result);
        printCountRow(result);
    }
    if (options.rounds) printTimeHead(options.rounds);
    for (SceneResult &result : results) {
        if (!options.rounds) break;
        timeAll(build, options.rounds, result);
        printTimeRow(result);
    }
    const std::string file = options.out + "/es1bench.json";
    if (!writeJson(file, describeMachine(renderer), results)) {
        std::fprintf(stderr, "es1table: cannot write %s\n", file.c_str());
        return 1;
    }
    std::printf("wrote %s\n", file.c_str());
    return std::all_of(results.begin(), results.end(), [](const SceneResult &r) { return r.picturesAgree; }) ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        printUsage();
        return 0;
    }
    Options options;
    if (!readOptions(options, argc, argv)) return 2;
    try {
        return measureAll(options);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "es1table: %s\n", error.what());
        return 1;
    }
}
