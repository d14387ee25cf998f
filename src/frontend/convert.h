// SPDX-License-Identifier: MIT
// Scalar conversions of entry-point arguments.
#pragma once

#include "frontend/gl_headers.h"

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
