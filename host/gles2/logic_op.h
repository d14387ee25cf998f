// SPDX-License-Identifier: MIT
// Logic operations between the bits of a fragment's colour and of the colour buffer (OpenGL ES 1.1, section 4.1.9), by
// fragment shaders that read the buffer. A program gets a second version with the operation at its end; the operation
// itself is in uniforms, so that one version serves all sixteen.
#pragma once

#include "context.h"

/// How a draw in the context's present state gets its logic operation.
enum class LogicOp {
    Off,     // none is enabled, or the driver has no way of doing it
    Copy,    // the colour goes to the buffer as it is; only blending is left out
    Program, // by the program's version with the operation
};

/// The way for the present state. The group's abilities must be known.
LogicOp findLogicOp(const Context *context);

/// Uniforms of a program with a logic operation; -1 in one without.
struct LogicOpUniforms {
    GLint termsLocation;
    GLint mostLocation;
};

/// Adds the operation to a program's fragment shader. False, with nothing changed, for a text that writes no colour or
/// is in a version of its own.
bool addLogicOp(TranslatedProgram &texts, const DriverAbilities &abilities);

LogicOpUniforms findLogicOpUniforms(GLuint driverProgram);

/// Loads the present operation, and the depth of the buffer drawn to, into the program in use in the driver.
void loadLogicOp(const Context *context, const LogicOpUniforms &uniforms);
