// SPDX-License-Identifier: MIT
// The Khronos declarations with all prototypes, the vendor's entry points and numbers, and the client-API table.
#pragma once

// What these declare is what the library exports; everything else is hidden.
#pragma GCC visibility push(default)
#define GL_GLEXT_PROTOTYPES 1
#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>
#include <stdint.h>

// Names of OpenGL ES 1.1 that the ES 2.0 headers do not have.
inline constexpr GLenum GL_POINT_SMOOTH = 0x0B10;
inline constexpr GLenum GL_LINE_SMOOTH = 0x0B20;
inline constexpr GLenum GL_LOGIC_OP_MODE = 0x0BF0;
inline constexpr GLenum GL_COLOR_LOGIC_OP = 0x0BF2;
inline constexpr GLenum GL_MULTISAMPLE = 0x809D;
inline constexpr GLenum GL_SAMPLE_ALPHA_TO_ONE = 0x809F;
inline constexpr GLenum GL_PERSPECTIVE_CORRECTION_HINT = 0x0C50;
inline constexpr GLenum GL_POINT_SMOOTH_HINT = 0x0C51;
inline constexpr GLenum GL_LINE_SMOOTH_HINT = 0x0C52;
inline constexpr GLenum GL_FOG_HINT = 0x0C54;
inline constexpr GLenum GL_CLEAR_LOGIC_OP = 0x1500; // first of sixteen operations
inline constexpr GLenum GL_COPY_LOGIC_OP = 0x1503;
inline constexpr GLenum GL_SET_LOGIC_OP = 0x150F; // last of them

// Level queries of OpenGL ES 3.1.
inline constexpr GLenum GL_TEXTURE_WIDTH = 0x1000;
inline constexpr GLenum GL_TEXTURE_HEIGHT = 0x1001;
inline constexpr GLenum GL_TEXTURE_INTERNAL_FORMAT = 0x1003;
inline constexpr GLenum GL_TEXTURE_RED_SIZE = 0x805C;
inline constexpr GLenum GL_TEXTURE_ALPHA_SIZE = 0x805F;

// Parameter names of glGetTexLevelParameterivQRN.
inline constexpr GLenum GL_TEXTURE_WIDTH_QRN = 0x8BD2;
inline constexpr GLenum GL_TEXTURE_HEIGHT_QRN = 0x8BD3;
inline constexpr GLenum GL_TEXTURE_INTERNAL_FORMAT_QRN = 0x8BD5;

using GLfixed = int32_t;

extern "C" {
GL_APICALL void GL_APIENTRY glReleaseShaderCompilerOES(void);
GL_APICALL void GL_APIENTRY glGetFixedvQRN(GLenum pname, GLfixed *params);
GL_APICALL void GL_APIENTRY glLogicOpQRN(GLenum opcode);
GL_APICALL void GL_APIENTRY glGetBufferPointervZEK(GLenum target, void **params);
GL_APICALL void GL_APIENTRY glGetTexLevelParameterivQRN(GLuint texture, GLint face, GLint level, GLenum pname,
                                                        GLint *params);
GL_APICALL void ogl2GetClientAPIFunctions(void *table);
}
#pragma GCC visibility pop
