// SPDX-License-Identifier: MIT
// Other programs for the texts of a linked one, made when a draw first needs them: see Expansion. The application does
// not see them. They get their uniforms from the linked program at every such draw.
#pragma once

#include "logic_op.h"

/// Where an attribute of the linked program is in the expanded one; -1 where it is not used.
struct DoubledAttribute {
    GLuint given; // in the linked program
    GLint own;
    GLint other;
};

/// One value of the linked program's uniforms: an array has one per element.
struct SharedUniform {
    UniformKind kind;
    GLint given; // location in the linked program
    GLint location;
    size_t held; // first word of what the driver has, in ExpandedProgram::values
};

struct ExpandedProgram {
    GLuint driverProgram; // 0: it cannot be made
    bool doubled;         // the draw brings both sets of attributes; otherwise the arrays stay as they are
    std::vector<DoubledAttribute> attributes; // when doubled
    GLint cornerLocation;                     // of lines, when doubled
    bool expandsLines;                        // by vertices or by a geometry shader
    LineUniforms lines;                       // with expandsLines
    LogicOpUniforms logicOp;
    std::vector<SharedUniform> uniforms;
    std::vector<uint32_t> values;
};

/// Locations of the line uniforms, with nothing loaded yet.
LineUniforms findLineUniforms(GLuint driverProgram);

/// The expanded program of the context's program in use, null when it cannot be made, which is told once. logicOp: with
/// a logic operation at the end of its fragment shader. The group's lock must be held.
ExpandedProgram *findExpanded(Context *context, Expansion expansion, bool logicOp);

/// Puts the expanded program in use in the driver, with the uniforms that the linked one has now.
void enterExpanded(const LinkedProgram *linked, ExpandedProgram *expanded);

/// True when draws over such a driver may need copies of what buffers hold.
bool needsBufferCopies(const DriverAbilities &abilities);
