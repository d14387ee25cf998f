// SPDX-License-Identifier: MIT
// The draw's matrices and the key fields that describe them.
#include "frontend/assert.h"
#include "frontend/context.h"
#include "math/fp_matrix.h"
#include "math/fp_scalar.h"
#include "math/matrix_classify.h"
#include "shadergen/derive.h"

namespace {

constexpr uint32_t kMaskIdentity = 0x84217BDE;  // zero-one mask of the identity matrix
constexpr uint32_t kMaskScaleTranslate = 0xBDE; // the elements off the diagonal of the leading 4x3 block are zero

// Normal matrix of a modelview (OpenGL ES 1.1, 2.10.3): transpose of the inverse of its upper 3x3.
void computeNormalMatrix(const MatrixRecord &modelview, bool rescale, float out[9])
{
    if (!fp_matrix3_inverse_transpose(out, modelview.f, modelview.flags)) {
        // A singular or very small matrix has no inverse here. Its own 3x3 turns normals the right way for rotations
        // with a uniform scale.
        for (uint32_t column = 0; column < 3; ++column)
            for (uint32_t row = 0; row < 3; ++row)
                out[3 * column + row] = modelview.f[4 * column + row];
    }
    if (!rescale) return;

    // GL_RESCALE_NORMAL: 1 / length of the third row of the inverse, which is the third column here.
    const float *row3 = out + 6;
    const float length = fp_sqrt(row3[0] * row3[0] + row3[1] * row3[1] + row3[2] * row3[2]);
    const float factor = fp_recp(length);
    for (uint32_t i = 0; i < 9; ++i)
        out[i] *= factor;
}

void updateModelViewProjection(TransformState &transform)
{
    if (!(transform.uniformDirty & DIRTY_TRANSFORM)) return;

    matrixMultiply(transform.top[STACK_PROJECTION], transform.top[STACK_MODELVIEW], &transform.modelViewProjection);
    transform.mvpMask = getMatrixZeroOneMask(&transform.modelViewProjection);
    transform.normalMatrixStale = 1;
    transform.uniformDirty &= ~static_cast<uint32_t>(DIRTY_TRANSFORM);
}

void updateNormalMatrix(GLIContext *ctx)
{
    TransformState &transform = ctx->transform;
    const uint32_t rescale = ctx->enables.rescaleNormal;
    if (!transform.normalMatrixStale && transform.normalMatrixRescaled == rescale) return;

    computeNormalMatrix(*transform.top[STACK_MODELVIEW], rescale != 0, transform.normalMatrix);
    transform.normalMatrixStale = 0;
    transform.normalMatrixRescaled = rescale;
}

uint32_t mvpForm(const GLIContext *ctx)
{
    const uint32_t mask = ctx->transform.mvpMask;
    if (mask == kMaskIdentity) return 0;
    if (ctx->arrays.vertex.size < 4 && (mask & kMaskScaleTranslate) == kMaskScaleTranslate) return MVP_SCALE_TRANSLATE;
    return signicantRows(mask);
}

// Light vectors are given in object space only when every normal may stay there too.
bool wantsObjectSpaceLights(const ShaderStateBitfield &key)
{
    return key.lighting && key.directionalLight && key.noTexGen;
}

void updatePalette(GLIContext *ctx)
{
    PaletteState &palette = ctx->palette;
    const bool objectSpaceLights = wantsObjectSpaceLights(ctx->key);
    palette.normalsDirty |= palette.dirty;
    for (uint32_t i = 0; i < kPaletteMatrices; ++i) {
        const MatrixRecord &matrix = palette.matrices[i];
        const uint32_t bit = 1u << i;
        if (ctx->key.eyeCoordinates && (palette.normalsDirty & bit))
            computeNormalMatrix(matrix, ctx->enables.rescaleNormal != 0, palette.normalUpload[i]);
        if (!(palette.dirty & bit)) continue;
        if (objectSpaceLights && isMatrixOrthogonal(&matrix)) {
            palette.nonOrthogonal &= ~bit;
        } else {
            palette.nonOrthogonal |= bit;
        }
        os_memcpy(palette.upload[i], matrix.f, sizeof(palette.upload[i]));
    }
    if (ctx->key.eyeCoordinates) palette.normalsDirty = 0;
    palette.dirty = 0;
}

} // namespace

void updateTransformState(GLIContext *ctx)
{
    TransformState &transform = ctx->transform;
    const MatrixRecord &modelview = *transform.top[STACK_MODELVIEW];
    assertThat(transform.top[STACK_PROJECTION]->flags & MATRIX_FLOAT, "float projection matrix");
    assertThat(modelview.flags & MATRIX_FLOAT, "float modelview matrix");
    updateModelViewProjection(transform);

    ShaderStateBitfield &key = ctx->key;
    if (key.matrixPalette) {
        updatePalette(ctx);
        key.orthogonalTransform = ctx->palette.nonOrthogonal == 0;
        key.mvpForm = MVP_GENERAL;
        key.vertexUnits = paletteUnits(ctx);
        return;
    }
    if (key.eyeCoordinates) updateNormalMatrix(ctx);
    key.orthogonalTransform = wantsObjectSpaceLights(key) && isMatrixOrthogonal(&modelview);
    key.mvpForm = mvpForm(ctx);
    key.vertexUnits = 0;
}
