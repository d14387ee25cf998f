// SPDX-License-Identifier: MIT
// The pairs of format and type that images of OpenGL ES 1.1 come in, and texels written in them.
#pragma once

#include "gl_api.h"

#include <stddef.h>

struct TexelFormat {
    GLenum format;
    GLenum type;
    size_t bytes;                                     // of one texel
    void (*write)(const uint8_t *rgba, uint8_t *out); // one texel from eight-bit components, rounded to the nearest
};

/// The row of a pair; null, with the error GL asks for in `error`, for every other: GL_INVALID_ENUM for an unknown
/// format or type, GL_INVALID_OPERATION for two that do not go together.
const TexelFormat *findTexelFormat(GLenum format, GLenum type, GLenum &error);
