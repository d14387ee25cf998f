// SPDX-License-Identifier: MIT
// From the fixed-function state to the shader key, at each draw.
#pragma once

struct GLIContext;

/// Brings ctx->key up to date from the state and its change marks; computes the draw's matrices; sets the backend's
/// line width for line draws.
void deriveShaderState(GLIContext *ctx);

/// Step of deriveShaderState: the marked lights' kinds, colour products and masks, the scene colour, and the key fields
/// they decide. Enough where only the material changed since the last derivation.
void deriveLighting(GLIContext *ctx);

/// Last step of deriveShaderState: the modelview-projection and normal matrices, or the palette's upload arrays, and
/// the key fields orthogonalTransform, mvpForm and vertexUnits.
void updateTransformState(GLIContext *ctx);

/// The same where only the modelview matrix changed since the last derivation, and the key is kept: false when another
/// one is needed, or may be, and everything has to be derived.
bool followModelview(GLIContext *ctx);
