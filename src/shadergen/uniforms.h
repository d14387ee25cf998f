// SPDX-License-Identifier: MIT
// Loads of the current program's uniforms; all of them need ctx->currentEntry.
#pragma once

struct GLIContext;

/// Texture units, alpha factor, fog, point and line parameters, alpha reference.
void uploadDrawUniforms(GLIContext *ctx);

/// Matrices and the user clip plane.
void uploadTransformUniforms(GLIContext *ctx);

/// Material, scene colour and the enabled lights; only with lighting on.
void uploadLightUniforms(GLIContext *ctx);
