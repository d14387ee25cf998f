// SPDX-License-Identifier: MIT
// Values that vendor entry points set and the uniform loads read.
#pragma once

#include "frontend/gl_headers.h"

struct VendorState {
    GLfloat fogCoord;    // glFogCoordf; start 0
    GLfloat alphaFactor; // glAlphaFactorfZEK; start 1
};
