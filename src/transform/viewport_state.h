// SPDX-License-Identifier: MIT
// Viewport, depth range and the user clip plane.
#pragma once

#include "frontend/gl_headers.h"

/// Bit of the context dirty word: the user clip plane or its enable changed.
constexpr uint32_t DIRTY_CLIP_PLANE = 0x800;

struct ViewportState {
    GLint x, y;                  // as given
    GLint width, height;         // pixels, limited to GL_MAX_VIEWPORT_DIMS; the surface's size after make-current
    GLfloat depthNear, depthFar; // 0..1; start 0 and 1
    GLfloat clipPlaneEye[4];     // eye space; a draw may have turned its sign (see uploadTransformUniforms)
    GLfloat clipPlane[4];        // as given
};
