// SPDX-License-Identifier: MIT
#include "es1/measure.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

// Every scene's states are all met in the shorter run, and both are whole numbers of its rounds.
constexpr int kShortRun = 160, kLongRun = 160 + 4096;

std::string quoted(const std::string &path)
{
    return "'" + path + "'";
}

Run runCommand(const std::string &command)
{
    Run run;
    std::FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return run;
    char part[4096];
    while (const size_t size = std::fread(part, 1, sizeof(part), pipe))
        run.text.append(part, size);
    const int ended = pclose(pipe);
    if (WIFEXITED(ended)) run.status = WEXITSTATUS(ended);
    return run;
}

// The machine's own libraries are used without a library path; with it, the drop-in pair.
std::string sceneCommand(const Build &build, Side side, const SceneRow &scene, const std::string &before = "")
{
    const std::string path = side == OURS ? "LD_LIBRARY_PATH=" + quoted(build.libraries) : "-u LD_LIBRARY_PATH";
    const std::string program = build.programs + (side == ES2 ? "/es2bench" : "/es1bench");
    return "env " + path + " " + before + " " + quoted(program) + " --scene " + scene.name;
}

Run runOrThrow(const std::string &command)
{
    const Run run = runCommand(command);
    if (run.status != 0) throw std::runtime_error(command + " failed:\n" + run.text);
    return run;
}

double numberAfter(const std::string &text, const std::string &key)
{
    const std::string value = valueOf(text, key);
    if (value.empty()) throw std::runtime_error("no " + key + " in:\n" + text);
    return std::strtod(value.c_str(), nullptr);
}

double countRun(const Build &build, Side side, const SceneRow &scene, int draws)
{
    const std::string counted = "GALLIUM_NOOP=true valgrind --tool=callgrind --callgrind-out-file=/dev/null";
    const std::string text =
        runOrThrow(sceneCommand(build, side, scene, counted) + " --draws " + std::to_string(draws)).text;
    const std::string key = "Collected : ";
    const size_t found = text.find(key);
    if (found == std::string::npos) throw std::runtime_error("callgrind gave no count:\n" + text);
    if (text.find("renderer=llvmpipe") != std::string::npos)
        throw std::runtime_error("this driver has no form that draws nothing:\n" + text);
    return std::strtod(text.c_str() + found + key.size(), nullptr);
}

} // namespace

std::string valueOf(const std::string &text, const std::string &key)
{
    const size_t found = text.find(key + "=");
    if (found == std::string::npos) return "";
    const size_t begin = found + key.size() + 1;
    // The renderer's name has blanks and comes last; all other values have none.
    return text.substr(begin, text.find_first_of(key == "renderer" ? "\n" : " \n", begin) - begin);
}

Run drawPicture(const Build &build, Side side, const SceneRow &scene, const std::string &file)
{
    return runCommand(sceneCommand(build, side, scene) + " --draws 64 --png " + quoted(file));
}

bool haveCallgrind()
{
    return runCommand("valgrind --version").status == 0;
}

double countInstructions(const Build &build, Side side, const SceneRow &scene)
{
    return (countRun(build, side, scene, kLongRun) - countRun(build, side, scene, kShortRun)) / (kLongRun - kShortRun);
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
    return {.wallNs = numberAfter(text, "wall_ns"), .cpuNs = numberAfter(text, "cpu_ns")};
}
