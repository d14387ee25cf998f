// SPDX-License-Identifier: MIT
#include "es1/measure.h"

#include "es1/profile.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

// A multiple of the rounds of every scene.
constexpr int kCountedDraws = 8192;

// A setting of Mesa's drivers.
const std::string kDrawNothing = "GALLIUM_NOOP=true";

std::string quoted(const std::string &path)
{
    return "'" + path + "'";
}

// The machine's own libraries are used without a library path; with it, the drop-in pair.
std::string sceneCommand(const Build &build, Side side, const SceneRow &scene, const std::string &before = "")
{
    const std::string path = side == OURS ? "LD_LIBRARY_PATH=" + quoted(build.libraries) : "-u LD_LIBRARY_PATH";
    const std::string program = build.programs + (side == ES2 ? "/es2bench" : "/es1bench");
    return "env " + path + " " + before + " " + quoted(program) + " --scene " + scene.name;
}

Outcome runOrThrow(const std::string &command)
{
    const Outcome run = runCommand(command);
    if (run.status != 0) throw std::runtime_error(command + " failed:\n" + run.text);
    return run;
}

Part partOf(const Build &build, const std::string &path)
{
    if (path.starts_with(build.programs + "/")) return PROGRAM;
    if (!path.starts_with(build.libraries + "/")) return DRIVER;
    return path.find("/libGLESv2.so") != std::string::npos ? BACKEND : LIBRARY;
}

double numberAfter(const std::string &text, const std::string &key)
{
    const std::string value = valueOf(text, key);
    if (value.empty()) throw std::runtime_error("no " + key + " in:\n" + text);
    return std::strtod(value.c_str(), nullptr);
}

} // namespace

Outcome runCommand(const std::string &command)
{
    Outcome run;
    std::FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return run;
    char part[4096];
    while (const size_t size = std::fread(part, 1, sizeof(part), pipe))
        run.text.append(part, size);
    const int ended = pclose(pipe);
    if (WIFEXITED(ended)) run.status = WEXITSTATUS(ended);
    return run;
}

std::string valueOf(const std::string &text, const std::string &key)
{
    const size_t found = text.find(key + "=");
    if (found == std::string::npos) return "";
    const size_t begin = found + key.size() + 1;
    // The renderer's name has blanks and comes last; all other values have none.
    return text.substr(begin, text.find_first_of(key == "renderer" ? "\n" : " \n", begin) - begin);
}

Outcome drawPicture(const Build &build, Side side, const SceneRow &scene, const std::string &file)
{
    return runCommand(sceneCommand(build, side, scene) + " --draws 64 --png " + quoted(file));
}

std::string whyNotCounted(const Build &build)
{
#if !__has_include(<valgrind/callgrind.h>)
    return "built without the header of valgrind";
#endif
    if (runCommand("valgrind --version").status != 0) return "no valgrind here";
    const SceneRow any = {.name = "same", .title = "", .budget = 0};
    const Outcome run = runCommand(sceneCommand(build, ES2, any, kDrawNothing));
    return valueOf(run.text, "renderer") == "NOOP" ? "" : "this driver cannot be told to draw nothing";
}

Cost countInstructions(const Build &build, Side side, const SceneRow &scene, const std::string &profile)
{
    // The program itself starts and stops the counting.
    const std::string counted = kDrawNothing + " valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file=";
    const std::string command = sceneCommand(build, side, scene, counted + quoted(profile));
    runOrThrow(command + " --time --draws " + std::to_string(kCountedDraws));

    Cost cost;
    std::ifstream file(profile);
    for (const auto &[path, instructions] : instructionsByFile(file)) {
        cost.parts[partOf(build, path)] += instructions / kCountedDraws;
        cost.instructions += instructions / kCountedDraws;
    }
    if (cost.parts[PROGRAM] <= 0.0) throw std::runtime_error("callgrind counted nothing in " + profile);
    return cost;
}

int drawsForTiming(const Build &build, Side side, const SceneRow &scene)
{
    constexpr double kWantedNs = 1e8;
    const double wallNs = timeDraws(build, side, scene, 64).wallNs;
    return static_cast<int>(std::clamp(kWantedNs / wallNs, 64.0, 20000.0));
}

Cost timeDraws(const Build &build, Side side, const SceneRow &scene, int draws)
{
    const std::string command = sceneCommand(build, side, scene) + " --time --draws " + std::to_string(draws);
    const std::string text = runOrThrow(command).text;
    Cost cost;
    cost.wallNs = numberAfter(text, "wall_ns");
    cost.cpuNs = numberAfter(text, "cpu_ns");
    return cost;
}
