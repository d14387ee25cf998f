// SPDX-License-Identifier: MIT
// Current attribute values, used where an array is disabled, and the active texture unit.
#pragma once

#include "frontend/gl_headers.h"
#include "frontend/gl_limits.h"

/// Bit of the context dirty word: the current colour was set.
constexpr uint32_t DIRTY_CURRENT_COLOR = 0x1;

struct CurrentState {
    GLfloat color[4];                   // red, green, blue, alpha; not clamped; start 1, 1, 1, 1
    GLfloat normal[4];                  // x, y, z and a fourth word that only queries show; start 0, 0, 1, 0
    GLfloat texCoord[kTextureUnits][4]; // s, t, r, q; start 0, 0, 0, 1
    uint32_t activeUnit;                // 0 or 1: server active texture unit
};
