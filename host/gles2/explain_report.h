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
    int builds; // by the driver's compiler, of other programs for the same texts, too
    int failures;
    int loads;                // from files of earlier runs
    double buildMilliseconds; // of all builds and loads
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

/// What was handed to the driver, and what it said.
struct ExplainedTexts {
    const TranslatedProgram &texts;
    const BuildResult (&stages)[2]; // of the vertex and the fragment shader
    const BuildResult &result;      // of the program
};

/// One build: what went into it and what came out.
struct ExplainedBuild {
    const std::string &key;      // everything the program depends on
    const std::string &vertex;   // as generated
    const std::string &fragment; // as generated
    const BuildResult &refused;  // of a higher language version, which was given up; with an empty log for none
    ExplainedTexts handed;
};

/// The name of a program's file. `use` is what another program for the same texts is for, such as "lines"; empty for
/// the program itself.
std::string explainedFileName(int number, const std::string &use = {});

/// True for a name that explainedFileName can give.
bool isExplainedFileName(const std::string &name);

/// The content of a program's file.
std::string explainedFile(const ExplainedProgram &program, const ExplainedBuild &build);

/// The content of the file of another program for the texts of `program`.
std::string explainedExpansionFile(const ExplainedProgram &program, const std::string &use,
                                   const ExplainedTexts &handed);

/// The content of summary.txt.
std::string explainedSummary(const ExplainedRun &run);
