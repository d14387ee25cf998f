// SPDX-License-Identifier: MIT
// The matrix stacks and the matrices computed from them. Written by the matrix commands and by the draw's derivation.
#pragma once

#include "frontend/gl_headers.h"
#include "frontend/gl_limits.h"
#include "math/matrix_record.h"

struct GLIContext;

/// Numbers of the matrix stacks. The palette takes matrix commands like a stack but cannot be pushed or popped.
enum MatrixStack : uint32_t {
    STACK_MODELVIEW = 0,
    STACK_PROJECTION = 1,
    STACK_TEXTURE0 = 2,
    STACK_TEXTURE1 = 3,
    STACK_PALETTE = 4,
    STACK_COUNT = 5,
};

/// Bits of the context dirty word and of TransformState::uniformDirty.
enum TransformDirty : uint32_t {
    DIRTY_TRANSFORM = 0x2, // modelview, projection or palette load
    DIRTY_PALETTE = 0x10,  // palette matrix command; in uniformDirty also: a palette array changed its size
    DIRTY_TEXTURE_MATRIX0 = 0x80,
    DIRTY_TEXTURE_MATRIX1 = 0x100,
};

/// What TransformState::mvpUpload holds.
enum MvpUploadKind : uint16_t {
    MVP_UPLOAD_STALE = 0,           // nothing of the present product
    MVP_UPLOAD_TRANSPOSED = 1,      // 16 floats: its transpose
    MVP_UPLOAD_SCALE_TRANSLATE = 2, // 8 floats: its diagonal, then its translation and 0
};

struct TransformState {
    MatrixRecord modelview[kModelviewDepth]; // entry 0 is the bottom; every entry is float
    MatrixRecord projection[kProjectionDepth];
    MatrixRecord texture[kTextureUnits][kTextureMatrixDepth];
    uint32_t depth[STACK_COUNT];       // entries above the bottom one; 0 for the palette
    MatrixRecord *top[STACK_COUNT];    // current entry; for the palette the current palette matrix
    uint32_t currentStack;             // MatrixStack that commands act on
    GLenum matrixMode;                 // as last accepted by glMatrixMode
    float normalMatrix[9];             // column-major, for gles_NormalMatrix; see updateTransformState
    MatrixRecord effectiveProjection;  // projectionAdjustment x projection top
    MatrixRecord modelViewProjection;  // projection top x modelview top, as of the last draw
    MatrixRecord projectionAdjustment; // applied in front of the application's projection; identity unless a surface
                                       // needs its image flipped or turned
    uint32_t uniformDirty;             // TransformDirty bits and 0x8, 0x10 of the coordinate replacement; consumed by
                                       // updateTransformState, not by the draw
    uint8_t mvpForm[2];                // MvpForm of modelViewProjection for vertices of up to three components, of four
    MvpUploadKind mvpUploadKind;       // what mvpUpload holds of the present modelViewProjection
    float mvpUpload[16];               // for gles_ModelViewProjectionMatrix; made with the product or by the upload
    uint32_t normalMatrixStale;        // the modelview changed since normalMatrix was computed
    uint32_t normalMatrixRescaled;     // GL_RESCALE_NORMAL as normalMatrix was computed with
};

/// Sets the start values: identity matrices, depth 0, modelview mode, the palette's start values; marks the transform.
/// The projection adjustment and the effective projection are not touched.
void initTransform(GLIContext *ctx);

/// effectiveProjection = projectionAdjustment x projection top. Run after every change of the projection.
void gliAdjustProjectionMatrix(GLIContext *ctx);

/// Moves matrix commands to the other unit's texture stack when they act on oldUnit's; for glActiveTexture.
void followActiveTexture(GLIContext *ctx, uint32_t oldUnit, uint32_t newUnit);
