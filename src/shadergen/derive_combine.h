// SPDX-License-Identifier: MIT
// A unit's texture environment as the key holds it.
#pragma once

#include "shadergen/key.h"

struct GLIContext;

/// The combine block of an enabled unit. What its mode does not read is zero: arguments and scale belong to GL_COMBINE.
CombineBlock deriveCombine(const GLIContext *ctx, uint32_t unit);
