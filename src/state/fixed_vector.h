// SPDX-License-Identifier: MIT
// Vectors of fixed-point arguments.
#pragma once

#include "frontend/convert.h"

#include <cstdint>

/// Converts count values; count 0 reads nothing.
inline void floatsFromFixed(GLfloat *to, const GLfixed *from, uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
        to[i] = floatFromFixed(from[i]);
}
