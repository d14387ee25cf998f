// SPDX-License-Identifier: MIT
// Runs the scenes as processes of their own, by each of the three ways to draw them, and reads what they cost.
#pragma once

#include <string>

/// The ways to draw a scene. All three rest on the machine's driver.
enum Side { NATIVE, ES2, OURS, SIDES };
constexpr const char *kSideNames[SIDES] = {"native", "es2", "ours"};

/// One row of scenes.def.
struct SceneRow {
    const char *name;
    const char *title;
    int es2Reference, nativeReference; // instructions per draw, 0: no figure
    int budget;                        // instructions per draw, 0: none
};

/// Cost of a draw. 0: not measured.
struct Cost {
    double instructions = 0.0;
    double wallNs = 0.0; // median of several runs
    double cpuNs = 0.0;  // of all threads, median
};

/// Where the programs and the libraries of the build are.
struct Build {
    std::string programs, libraries;
};

/// Output of a program, and how it ended.
struct Run {
    int status = -1; // exit status, -1: ended by a signal or not started
    std::string text;
};

/// Draws the scene once by a side, into a picture file. Its status is kSceneUnavailable where the driver cannot.
Run drawPicture(const Build &build, Side side, const SceneRow &scene, const std::string &file);

/// Value of KEY=VALUE in the output of a scene program; empty when there is none.
std::string valueOf(const std::string &text, const std::string &key);

/// Whether instructions can be counted here.
bool haveCallgrind();

/// Instructions of a draw over the driver that draws nothing: two runs of different length, the difference of their
/// counts divided by the difference of their draws. So start-up, compiling and the end do not count; the loop of the
/// program, the libraries and the driver's front end do, in all threads. Throws std::runtime_error when a run fails.
double countInstructions(const Build &build, Side side, const SceneRow &scene);

/// Draws that take about a tenth of a second by the side. Throws std::runtime_error when the run fails.
int drawsForTiming(const Build &build, Side side, const SceneRow &scene);

/// Time of a draw over the real driver, of one run, after as many draws to warm up. Throws as above.
Cost timeDraws(const Build &build, Side side, const SceneRow &scene, int draws);
