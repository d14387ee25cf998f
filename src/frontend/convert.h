// SPDX-License-Identifier: MIT
// Scalar conversions of entry-point arguments.
#pragma once

#include "frontend/gl_headers.h"

#include <cstdint>

/// s15.16 to float: the integer rounded to the nearest float, then divided by 65536 exactly; 0 gives +0.
inline GLfloat floatFromFixed(GLfixed value)
{
    return static_cast<GLfloat>(value) * 0x1p-16f;
}

/// Limits to 0..1. NaN gives 1: the upper test is written so that it fails for NaN.
inline GLfloat clampToUnit(GLfloat value)
{
    if (value < 0.0f) return 0.0f;
    return value < 1.0f ? value : 1.0f;
}

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
