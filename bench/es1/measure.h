// SPDX-License-Identifier: MIT
// Runs the scenes as processes of their own, by each of the three ways to draw them, and reads what they cost.
#pragma once

#include "es1/frame.h"

#include <string>

/// The ways to draw a scene. All three rest on the machine's driver.
enum Side { NATIVE, ES2, OURS, SIDES };
constexpr const char *kSideNames[SIDES] = {"native", "es2", "ours"};

/// One row of scenes.def.
struct SceneRow {
    const char *name;
    const char *title;
    int budget; // instructions per draw, 0: none
};

/// Whose instructions they are. The library is ours with libvsp; the driver is everything that is not of this build:
/// the driver's libraries, the C library and Mesa's generated jump table.
enum Part { PROGRAM, LIBRARY, BACKEND, DRIVER, PARTS };

/// Cost of a draw. 0: not measured.
struct Cost {
    double instructions = 0.0;
    double parts[PARTS] = {}; // of the instructions
    double wallNs = 0.0;      // median of several runs
    double cpuNs = 0.0;       // of all threads, median
};

/// Where the programs and the libraries of the build are.
struct Build {
    std::string programs, libraries;
};

/// What a program printed, and how it ended.
struct Outcome {
    int status = -1; // exit status, -1: ended by a signal or not started
    std::string text;
};

/// Runs a shell command; its standard error belongs to the text.
Outcome runCommand(const std::string &command);

// Pictures of the sides may differ along edges: in a thousandth of the pixels, by more than a step of a 5-bit channel.
constexpr int kPictureTolerance = 8, kDifferingPixels = kSceneSize * kSceneSize / 1000;

/// Draws the scene once by a side, into a picture file. Its status is kSceneUnavailable where the driver cannot.
Outcome drawPicture(const Build &build, Side side, const SceneRow &scene, const std::string &file);

/// Value of KEY=VALUE in the output of a scene program; empty when there is none.
std::string valueOf(const std::string &text, const std::string &key);

/// Why instructions cannot be counted here; empty when they can.
std::string whyNotCounted(const Build &build);

/// Instructions of a draw over the driver that draws nothing: callgrind's count of the program's loop and of all that
/// it calls, in every thread, divided by the draws. As many draws before it have compiled every program; they, start-up
/// and the end are not counted. Leaves callgrind's profile in the file. Throws std::runtime_error when the run fails.
Cost countInstructions(const Build &build, Side side, const SceneRow &scene, const std::string &profile);

/// Draws that take about a tenth of a second by the side. Throws std::runtime_error when the run fails.
int drawsForTiming(const Build &build, Side side, const SceneRow &scene);

/// Time of a draw over the real driver, of one run, after as many draws to warm up. Throws as above.
Cost timeDraws(const Build &build, Side side, const SceneRow &scene, int draws);
