// SPDX-License-Identifier: MIT
// Float to integer where a float argument carries an enum or a whole number.
#pragma once

#include "frontend/gl_headers.h"

#include <cstdint>

/// Truncates toward zero. Saturates outside the range of an integer, where the language leaves a cast undefined; NaN
/// gives 0.
inline GLint truncateToInt(GLfloat value)
{
    if (value != value) return 0;
    if (value >= 0x1p31f) return INT32_MAX;
    if (value <= -0x1p31f) return INT32_MIN;
    return static_cast<GLint>(value);
}

/// The same for an unsigned integer: everything below 1 gives 0.
inline GLuint truncateToUnsigned(GLfloat value)
{
    if (!(value >= 1.0f)) return 0;
    if (value >= 0x1p32f) return UINT32_MAX;
    return static_cast<GLuint>(value);
}
