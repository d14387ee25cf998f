// SPDX-License-Identifier: MIT
// The matrix palette and its two vertex arrays (GL_OES_matrix_palette).
#include "transform/palette_state.h"

#include "frontend/current.h"
#include "frontend/error.h"

namespace {

constexpr GLint kMaxArraySize = static_cast<GLint>(kMaxVertexUnits);

bool isWeightType(GLenum type)
{
    return type == GL_BYTE || type == GL_SHORT || type == GL_FLOAT || type == GL_FIXED;
}

bool isIndexType(GLenum type)
{
    return type == GL_UNSIGNED_BYTE || type == GL_UNSIGNED_SHORT;
}

void movePointer(GLIContext *ctx, ClientArray &array, GLsizei strideBytes, const void *pointer)
{
    array.strideBytes = strideBytes;
    array.pointer = pointer;
    ctx->dirty |= DIRTY_ARRAYS;
}

void describeArray(GLIContext *ctx, ClientArray &array, GLint size, GLenum type)
{
    if (size != array.size) ctx->transform.uniformDirty |= DIRTY_PALETTE;
    array.size = size;
    array.type = type;
}

} // namespace

void initPalette(GLIContext *ctx)
{
    PaletteState &palette = ctx->palette;
    for (MatrixRecord &matrix : palette.matrices)
        matrixfSetIdentity(&matrix);
    palette.currentIndex = 0;
    palette.secondWord = 0;
    palette.dirty = kAllPaletteMatrices;
    palette.normalsDirty = kAllPaletteMatrices;
    palette.nonOrthogonal = 0;
}

void markPaletteMatrix(GLIContext *ctx, uint32_t index)
{
    if (index < 32) ctx->palette.dirty |= 1u << index;
}

void markAllPaletteMatrices(GLIContext *ctx)
{
    ctx->palette.dirty |= kAllPaletteMatrices;
}

uint32_t paletteUnits(const GLIContext *ctx)
{
    const GLint size = ctx->arrays.weight.size;
    if (size < 0) return 0;
    return size < kMaxArraySize ? static_cast<uint32_t>(size) : kMaxVertexUnits;
}

GL_API void GL_APIENTRY glCurrentPaletteMatrixOES(GLuint index)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (index >= kPaletteMatrices) return __glSetError(GL_INVALID_VALUE);

    ctx->palette.currentIndex = index;
    ctx->transform.top[STACK_PALETTE] = &ctx->palette.matrices[index];
}

GL_API void GL_APIENTRY glLoadPaletteFromModelViewMatrixOES(void)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;

    const uint32_t index = ctx->palette.currentIndex;
    ctx->palette.matrices[index] = *ctx->transform.top[STACK_MODELVIEW];
    ctx->dirty |= DIRTY_TRANSFORM;
    markPaletteMatrix(ctx, index);
}

GL_API void GL_APIENTRY glWeightPointerOES(GLint size, GLenum type, GLsizei stride, const void *pointer)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    ClientArray &array = ctx->arrays.weight;
    // Recorded before any check, also by a call that then fails.
    array.buffer = ctx->arrays.arrayBuffer;
    if (type == array.type && size == array.size) return movePointer(ctx, array, stride, pointer);
    // Size 0 and negative sizes are kept; such draws blend no matrix.
    if (size > kMaxArraySize) return __glSetError(GL_INVALID_VALUE);
    if (!isWeightType(type)) return __glSetError(GL_INVALID_ENUM);

    describeArray(ctx, array, size, type);
    movePointer(ctx, array, stride, pointer);
}

GL_API void GL_APIENTRY glMatrixIndexPointerOES(GLint size, GLenum type, GLsizei stride, const void *pointer)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (!isIndexType(type)) return __glSetError(GL_INVALID_ENUM);
    ClientArray &array = ctx->arrays.matrixIndex;
    // Recorded before the size is checked.
    array.buffer = ctx->arrays.arrayBuffer;
    if (type == array.type && size == array.size) return movePointer(ctx, array, stride, pointer);
    if (size > kMaxArraySize) return __glSetError(GL_INVALID_VALUE);

    describeArray(ctx, array, size, type);
    movePointer(ctx, array, stride, pointer);
}
