// SPDX-License-Identifier: MIT
// Operations on shader and program objects that more than one file needs.
#pragma once

#include "context.h"

/// The object of a name in the current context's group, or null with the error GL asks for: GL_INVALID_VALUE for an
/// unknown name, GL_INVALID_OPERATION for a name of the other kind. The group's lock must be held.
ShaderObject *findShader(const Context *context, GLuint name);
ProgramObject *findProgram(const Context *context, GLuint name);

/// Lets go of an attachment; a deleted shader without any is freed. The group's lock must be held.
void detachShader(ShareGroup *group, ShaderObject *shader);

/// Gives the driver a shader's final text. Returns the driver's shader, compiled or not as `result` says.
GLuint compileForDriver(GLenum type, const std::string &text, BuildResult &result);

/// Compiles a shader by itself when its result is asked for and not known yet. A context must be current.
void ensureCompiled(const ShareGroup *group, ShaderObject *shader);

/// Takes the context's program out of use, for this layer; the driver is not told.
void leaveProgram(Context *context);

/// A linked program for the program object's present texts and bindings: one kept from before with its uniforms at
/// zero, or a new one. It has one user. A failed one has no driver program and is the caller's to delete.
/// A context must be current, and the group's lock held.
LinkedProgram *linkProgram(Context *context, ProgramObject *program);

/// Takes one user away; without any the program goes to the keeper. The group's lock must be held.
void releaseLinked(ShareGroup *group, LinkedProgram *linked);

/// Finds the program's uniforms, all at the value zero.
void readUniforms(LinkedProgram *linked);

/// Puts every uniform back to zero, as after linking. Changes the driver's program in use.
void zeroUniforms(LinkedProgram *linked);

/// Copies a text as glGet*InfoLog does: at most `size` characters with the closing zero, the length without it.
void copyText(const std::string &text, GLsizei size, GLsizei *length, GLchar *out);

/// Frees a group without contexts. The driver's objects have gone with them.
void freeShareGroup(ShareGroup *group);
