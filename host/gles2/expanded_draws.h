// SPDX-License-Identifier: MIT
// Draws taken apart by the processor for a program whose main runs twice.
#pragma once

#include "expanded_program.h"

/// The arguments of glDrawArrays or glDrawElements.
struct DrawCall {
    GLenum mode;
    GLint first; // of arrays
    GLsizei count;
    GLenum type; // of indices: GL_UNSIGNED_BYTE or GL_UNSIGNED_SHORT; 0: none
    const void *indices;
};

/// Draws with the program, which is in use in the driver, and puts the attributes back. Returns false, with nothing
/// drawn, when vertices or indices cannot be read here or do not fit into memory. The group's lock must be held.
bool drawPairedVertices(Context *context, const ExpandedProgram *expanded, const DrawCall &call, Expansion expansion);
