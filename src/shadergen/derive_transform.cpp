// SPDX-License-Identifier: MIT
// The draw's matrices and the key fields that describe them.
#include "frontend/assert.h"
#include "frontend/context.h"
#include "math/fp_matrix.h"
#include "math/fp_scalar.h"
#include "math/matrix_classify.h"
#include "math/matrix_inline.h"
#include "shadergen/derive.h"

#include <bit>

namespace {

// Zero-one mask (see getMatrixZeroOneMask): the elements off the diagonal of the first three columns are zero.
constexpr uint32_t kMaskScaleTranslate = 0xBDE;

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

// Most products are loaded transposed: made while the product is at hand.
[[gnu::always_inline]] inline void keepTransposed(TransformState &transform, const MatrixColumns &product)
{
    storeColumns(transform.mvpUpload, transposed(product));
    transform.mvpUploadKind = MVP_UPLOAD_TRANSPOSED;
}

[[gnu::noinline]] void followAffineProduct(TransformState &transform)
{
    const uint32_t mask = getMatrixZeroOneMask(&transform.modelViewProjection);
    const uint32_t rows = signicantRows(mask); // 0 for the identity
    const bool scaleTranslate = rows != 0 && (mask & kMaskScaleTranslate) == kMaskScaleTranslate;
    transform.mvpForm[0] = static_cast<uint8_t>(scaleTranslate ? MVP_SCALE_TRANSLATE : rows);
    transform.mvpForm[1] = static_cast<uint8_t>(rows); // w need not be 1
    if (scaleTranslate) {
        transform.mvpUploadKind = MVP_UPLOAD_STALE;
    } else {
        keepTransposed(transform, loadColumns(transform.modelViewProjection.f));
    }
}

// What follows from a new product: its forms for vertices of up to three components and of four, and what is loaded.
[[gnu::always_inline]] inline void followProduct(TransformState &transform, const MatrixColumns &product)
{
    if (broadcast<3>(product.c[2])[0] == 0.0f) return followAffineProduct(transform);
    // A perspective: row 3 counts, and no mask has to tell it.
    transform.mvpForm[0] = transform.mvpForm[1] = MVP_GENERAL;
    keepTransposed(transform, product);
}

void assertFloatMatrices(const TransformState &transform)
{
    assertThat(transform.top[STACK_PROJECTION]->flags & MATRIX_FLOAT, "float projection matrix");
    assertThat(transform.top[STACK_MODELVIEW]->flags & MATRIX_FLOAT, "float modelview matrix");
}

// Of an affine projection or an identity, which are rarer.
[[gnu::noinline]] void updateOtherProduct(TransformState &transform)
{
    MatrixRecord &out = transform.modelViewProjection;
    matrixMultiply(transform.top[STACK_PROJECTION], transform.top[STACK_MODELVIEW], &out);
    followProduct(transform, loadColumns(out.f));
}

[[gnu::always_inline]] inline void updateModelViewProjection(TransformState &transform)
{
    const MatrixRecord &projection = *transform.top[STACK_PROJECTION];
    const MatrixRecord &modelview = *transform.top[STACK_MODELVIEW];
    const bool general = (projection.flags & kMatrixClassBits) == MATRIX_GENERAL;
    if (general && !(modelview.flags & MATRIX_IDENTITY)) [[likely]] { // as matrixMultiply does, in registers
        const MatrixColumns product = generalProduct(loadColumns(projection.f), loadColumns(modelview.f));
        storeColumns(transform.modelViewProjection.f, product);
        transform.modelViewProjection.flags = MATRIX_FLOAT | MATRIX_GENERAL;
        followProduct(transform, product);
    } else {
        updateOtherProduct(transform);
    }
    transform.normalMatrixStale = 1;
    transform.uniformDirty &= ~static_cast<uint32_t>(DIRTY_TRANSFORM);
}

// Out of line, like the palette's part: most draws do without.
[[gnu::noinline]] void updateNormalMatrix(GLIContext *ctx)
{
    TransformState &transform = ctx->transform;
    const uint32_t rescale = ctx->enables.rescaleNormal;
    computeNormalMatrix(*transform.top[STACK_MODELVIEW], rescale != 0, transform.normalMatrix);
    transform.normalMatrixStale = 0;
    transform.normalMatrixRescaled = rescale;
}

// Light vectors are given in object space only when every normal may stay there too.
bool wantsObjectSpaceLights(const ShaderStateBitfield &key)
{
    return key.lighting && key.directionalLight && key.noTexGen;
}

uint32_t keepsLightsInObjectSpace(const GLIContext *ctx)
{
    return wantsObjectSpaceLights(ctx->key) && isMatrixOrthogonal(ctx->transform.top[STACK_MODELVIEW]);
}

uint32_t mvpForm(const GLIContext *ctx)
{
    return ctx->transform.mvpForm[ctx->arrays.vertex.size >= 4];
}

// The rest of followModelview where lights, texture generation, clip planes or point sizes need eye coordinates.
[[gnu::noinline]] bool followEyeCoordinates(GLIContext *ctx)
{
    updateNormalMatrix(ctx);
    return ctx->key.orthogonalTransform == keepsLightsInObjectSpace(ctx);
}

// Brings the upload arrays of the marked matrices up to date.
void updatePaletteUploads(GLIContext *ctx)
{
    PaletteState &palette = ctx->palette;
    const bool objectSpaceLights = wantsObjectSpaceLights(ctx->key);
    palette.normalsDirty |= palette.dirty;
    const uint32_t normals = ctx->key.eyeCoordinates ? palette.normalsDirty : 0;
    for (uint32_t left = palette.dirty | normals; left != 0; left &= left - 1) {
        const auto i = static_cast<uint32_t>(std::countr_zero(left));
        const uint32_t bit = 1u << i;
        const MatrixRecord &matrix = palette.matrices[i];
        if (normals & bit) computeNormalMatrix(matrix, ctx->enables.rescaleNormal != 0, palette.normalUpload[i]);
        if (!(palette.dirty & bit)) continue;
        if (objectSpaceLights && isMatrixOrthogonal(&matrix)) {
            palette.nonOrthogonal &= ~bit;
        } else {
            palette.nonOrthogonal |= bit;
        }
        os_memcpy(palette.upload[i], matrix.f, sizeof(palette.upload[i]));
    }
    palette.normalsDirty &= ~normals;
    palette.dirty = 0;
}

[[gnu::noinline]] void updatePaletteState(GLIContext *ctx)
{
    ShaderStateBitfield &key = ctx->key;
    updatePaletteUploads(ctx);
    key.orthogonalTransform = ctx->palette.nonOrthogonal == 0;
    key.mvpForm = MVP_GENERAL;
    key.vertexUnits = paletteUnits(ctx);
}

} // namespace

void updateTransformState(GLIContext *ctx)
{
    TransformState &transform = ctx->transform;
    assertFloatMatrices(transform);
    if (transform.uniformDirty & DIRTY_TRANSFORM) updateModelViewProjection(transform);

    ShaderStateBitfield &key = ctx->key;
    if (key.matrixPalette) return updatePaletteState(ctx);

    if (key.eyeCoordinates &&
        (transform.normalMatrixStale || transform.normalMatrixRescaled != ctx->enables.rescaleNormal))
        updateNormalMatrix(ctx);
    key.orthogonalTransform = keepsLightsInObjectSpace(ctx);
    key.mvpForm = mvpForm(ctx) & 7;
    key.vertexUnits = 0;
}

bool followModelview(GLIContext *ctx)
{
    assertFloatMatrices(ctx->transform);
    updateModelViewProjection(ctx->transform);
    const ShaderStateBitfield &key = ctx->key;
    if (key.mvpForm != mvpForm(ctx) || key.matrixPalette) return false;
    return !key.eyeCoordinates || followEyeCoordinates(ctx);
}
