// SPDX-License-Identifier: MIT
// A developer's view of a run. With TRL20_EXPLAIN=DIR in the environment the backend writes one file for every program
// that is built, and a summary. Without it nothing here is called after startExplain.
#pragma once

#include "explain_report.h"

/// Looks for TRL20_EXPLAIN, once per process. When it names a folder that can be written to, draws and swaps pass
/// through counting functions from here on: they take the places of the driver's, which must be loaded.
void startExplain();

/// True when a folder is being written to.
bool explains();

/// A program was built, or failed. Writes its file at the first build. Returns its record, which lives as long as the
/// process. A context must be current.
ExplainedProgram *explainBuild(const ExplainedBuild &build);

/// Another program for the same texts was built, or failed. Writes its file. `use` as in explainedFileName.
void explainExpanded(ExplainedProgram *program, const std::string &use, const ExplainedTexts &handed);

/// A program was asked for that had been kept.
void explainKept(ExplainedProgram *program);

/// The driver's glDrawArrays for draws of the backend's own, which are no draws of the application's and not counted.
void drawUncounted(GLenum mode, GLint first, GLsizei count);
