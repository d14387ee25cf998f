// SPDX-License-Identifier: MIT
// From the fixed-function state to the shader key, at each draw.
#pragma once

#include <cstdint>

struct GLIContext;

/// Brings ctx->key up to date from the state and its change marks; computes the draw's matrices; sets the backend's
/// line width for line draws.
void deriveShaderState(GLIContext *ctx);

/// Last step of deriveShaderState: the modelview-projection and normal matrices, or the palette's upload arrays, and
/// the key fields orthogonalTransform, mvpForm and vertexUnits.
void updateTransformState(GLIContext *ctx);
