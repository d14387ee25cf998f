// SPDX-License-Identifier: MIT
// What TRL20_EXPLAIN writes: the records that are kept of a run, and the texts made of them.
#pragma once

#include "program_objects.h"

#include <memory>
#include <span>

/// A moment of the run.
struct ExplainedMoment {
    uint64_t frame; // swaps before it
    uint64_t draw;  // number of the draw it belongs to, from 1
    double seconds; // since the backend was loaded
};

/// One program by its texts and attribute bindings, however often it was built.
struct ExplainedProgram {
    int number; // from 1, in the order of the first builds
    std::vector<std::string> state;
    int before; // the program drawn with before this one was built; 0 for none
    ExplainedMoment firstBuild;
    int builds; // by the driver's compiler
    int failures;
    double buildMilliseconds; // of all builds
    int kept;                 // times a linked program was there already
    bool fresh;               // asked for and not drawn with yet
    uint64_t draws;
    uint64_t vertices; // or indices
    uint32_t modes;    // one bit for each GL primitive drawn, 1 << GL_POINTS and so on
    GLenum firstMode;
    ExplainedMoment firstDraw;
    double firstDrawMilliseconds;
};

/// Frames with or without a program built in them.
struct ExplainedFrames {
    uint64_t count;
    double milliseconds;
};

/// The whole run.
struct ExplainedRun {
    std::string application;
    std::string driver; // renderer and version; empty before a context was current
    double seconds;
    uint64_t frames;
    uint64_t draws;
    uint64_t otherDraws;  // without a program
    uint64_t libraryHits; // draws with another program than the one before, which the library had
    double longestFrameMilliseconds;
    uint64_t longestFrame;
    ExplainedFrames building; // frames with a build
    ExplainedFrames plain;
    std::vector<std::unique_ptr<ExplainedProgram>> programs;
};

/// One build: what went into it and what came out.
struct ExplainedBuild {
    const std::string &key;          // everything the program depends on
    const std::string &vertex;       // as generated
    const std::string &fragment;     // as generated
    const TranslatedProgram &handed; // to the driver
    const std::string &refusedLog;   // the driver's log of a higher language version it refused; empty for none
    const BuildResult (&stages)[2];  // of the vertex and the fragment shader
    const BuildResult &result;       // of the program
    double milliseconds;             // it took
};

/// The name of a program's file.
std::string explainedFileName(int number);

/// The content of a program's file.
std::string explainedFile(const ExplainedProgram &program, const ExplainedBuild &build);

/// The content of summary.txt.
std::string explainedSummary(const ExplainedRun &run);
