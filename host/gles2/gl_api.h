// SPDX-License-Identifier: MIT
// The Khronos declarations with all prototypes, the vendor's entry points and numbers, and the client-API table.
#pragma once

// What these declare is what the library exports; everything else is hidden.
#pragma GCC visibility push(default)
#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext_trl20.h> // the names and numbers of ES 1.1 and of the vendor
#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>
#include <stdint.h>

// Of OpenGL ES 3.0.
inline constexpr GLenum GL_PROGRAM_BINARY_RETRIEVABLE_HINT = 0x8257;

// Level queries of OpenGL ES 3.1.
inline constexpr GLenum GL_TEXTURE_WIDTH = 0x1000;
inline constexpr GLenum GL_TEXTURE_HEIGHT = 0x1001;
inline constexpr GLenum GL_TEXTURE_INTERNAL_FORMAT = 0x1003;
inline constexpr GLenum GL_TEXTURE_RED_SIZE = 0x805C;
inline constexpr GLenum GL_TEXTURE_ALPHA_SIZE = 0x805F;

extern "C" {
GL_APICALL void GL_APIENTRY glReleaseShaderCompilerOES(void);
GL_APICALL void GL_APIENTRY glGetFixedvQRN(GLenum pname, GLfixed *params);
GL_APICALL void GL_APIENTRY glLogicOpQRN(GLenum opcode);
GL_APICALL void ogl2GetClientAPIFunctions(void *table);
}
#pragma GCC visibility pop
