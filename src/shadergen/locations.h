// SPDX-License-Identifier: MIT
// Locations of a freshly linked program.
#pragma once

#include "frontend/gl_headers.h"
#include "shadergen/program_cache.h"

/// Fills the entry's locations from the backend for what the context's state makes the generators declare; all others
/// are -1.
void setVariableLocation(GLIContext *ctx, ShaderProgramEntry *entry);

/// Location of the uniform whose name is format with its one %i replaced by index; -1 when the program has none.
GLint getUniformLocationf(GLuint program, const char *format, int index);
