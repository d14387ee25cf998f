// SPDX-License-Identifier: MIT
// From the fixed-function state to the shader key, at each draw.
#pragma once

#include <cstdint>

struct GLIContext;

/// What may have changed since the key was derived.
enum DeriveScope : uint32_t {
    DERIVE_ALL,
    DERIVE_TRANSFORM, // the modelview matrix only
};

/// Brings ctx->key up to date from the state and its change marks; computes the draw's matrices; sets the backend's
/// line width for line draws.
void deriveShaderState(GLIContext *ctx, DeriveScope scope = DERIVE_ALL);

/// Last step of deriveShaderState: the modelview-projection and normal matrices, or the palette's upload arrays, and
/// the key fields orthogonalTransform, mvpForm and vertexUnits.
void updateTransformState(GLIContext *ctx);
