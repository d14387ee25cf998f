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

/// Puts a program without users into the keeper, or frees it. The group's lock must be held.
void retireLinked(ShareGroup *group, LinkedProgram *linked);

/// Deletes what the group's keeper has more of than this, and programs that it cannot keep. A context of the group must
/// be current, and its lock held.
void trimKeeper(ShareGroup *group, size_t kept = kKeptPrograms);

/// Deletes the programs and shaders made through a context, of which nobody will know the names any more: contexts of
/// the library above share none. What is in use or attached elsewhere goes when it is let go of. The group's lock must
/// be held.
void deleteProgramsOf(const Context *context);
void deleteShadersOf(const Context *context);

/// Takes one user away. The group's lock must be held.
inline void releaseLinked(ShareGroup *group, LinkedProgram *linked)
{
    if (--linked->users == 0) retireLinked(group, linked);
}

/// Compiles the stages and links them, with attributes bound to these indices, or loads what an earlier run kept of
/// that. Returns the driver's program, 0 when a stage or the linking failed. `stages` receives what the compiler said
/// of the vertex and the fragment shader. A context must be current.
GLuint buildDriverProgram(const TranslatedProgram &texts, const AttributeBindings &bindings, BuildResult &result,
                          BuildResult (&stages)[2]);

/// The abilities of GLSL ES 1.00 alone, for a driver whose higher versions refuse what they should accept.
DriverAbilities plainAbilities(const DriverAbilities &abilities);

/// The uniforms of a linked program of the driver, without those of the expansion.
std::vector<ActiveUniform> activeUniforms(GLuint driverProgram);

/// None for a type that OpenGL ES 2.0 does not have.
UniformKind kindOf(GLenum type);

inline constexpr size_t kMaxUniformWords = 16; // of one value

/// Words of 32 bits in one value.
uint32_t wordsOf(UniformKind kind);

/// Columns of a matrix; 1 for other kinds.
uint32_t columnsOf(UniformKind kind);

/// Loads one value, in words, into the driver's program in use.
void loadUniform(UniformKind kind, GLint location, const void *value);

/// Finds the program's uniforms, all at the value zero. False when the driver has placed them so that loads of gathered
/// ones would not find them.
bool readUniforms(LinkedProgram *linked, const std::vector<GatheredUniform> &gathered);

/// The location of a uniform as the application asks for it, also of an array's element; -1 for one that is not active.
GLint uniformLocation(const LinkedProgram *linked, const std::string &name);

/// Copies the value at a slot without the gaps that a gathered one has.
void copyHeld(const UniformSlot &slot, uint32_t (&value)[kMaxUniformWords]);

/// Puts every uniform back to zero, as after linking. Changes the driver's program in use.
void zeroUniforms(LinkedProgram *linked);

/// Copies a text as glGet*InfoLog does: at most `size` characters with the closing zero, the length without it.
void copyText(const std::string &text, GLsizei size, GLsizei *length, GLchar *out);

/// Frees a group without contexts. The driver's objects have gone with them.
void freeShareGroup(ShareGroup *group);
