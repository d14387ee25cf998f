// SPDX-License-Identifier: MIT
// What stands between a draw call and the backend's draw.
#pragma once

#include "frontend/gl_headers.h"

struct GLIContext;

/// Brings key, program, uniforms and attributes up to date for the draw whose primitiveFlags are set. Returns 1 when
/// the draw may go ahead, 0 when it must be skipped: palette without its arrays, or no usable program.
uint32_t validateShadowState(GLIContext *ctx);

/// Binds position, colour, texture coordinates, normal and point size to the current program's attributes.
void setVariableAttributes(GLIContext *ctx);

/// Binds the palette's weight and index arrays and loads all palette matrices.
void bindPaletteInputs(GLIContext *ctx);
