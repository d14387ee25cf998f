// SPDX-License-Identifier: MIT
// Client arrays (OpenGL ES 1.1, 2.8 and 2.9). Nothing reaches the backend here: draws read the records.
#include "frontend/assert.h"
#include "frontend/current.h"
#include "frontend/error.h"

namespace {

bool isCoordinateType(GLenum type)
{
    return type == GL_BYTE || type == GL_SHORT || type == GL_FIXED || type == GL_FLOAT;
}

bool isColorType(GLenum type)
{
    return type == GL_UNSIGNED_BYTE || type == GL_FIXED || type == GL_FLOAT;
}

void describeArray(GLIContext *ctx, ClientArray &array, GLint size, GLenum type, GLsizei strideBytes,
                   const void *pointer)
{
    if (array.size != size) ctx->derivedFor = 0;
    array = {.enabled = array.enabled,
             .type = type,
             .size = size,
             .strideBytes = strideBytes,
             .pointer = pointer,
             .buffer = ctx->arrays.arrayBuffer};
    ctx->dirty |= DIRTY_ARRAYS;
}

// The record that an array enum names; null for any other enum.
ClientArray *findArray(GLIContext *ctx, GLenum array)
{
    ArrayState &arrays = ctx->arrays;
    switch (array) {
    case GL_VERTEX_ARRAY:
        return &arrays.vertex;
    case GL_NORMAL_ARRAY:
        return &arrays.normal;
    case GL_COLOR_ARRAY:
        return &arrays.color;
    case GL_TEXTURE_COORD_ARRAY:
        return &arrays.texCoord[arrays.clientUnit];
    case GL_MATRIX_INDEX_ARRAY_OES:
        return &arrays.matrixIndex;
    case GL_WEIGHT_ARRAY_OES:
        return &arrays.weight;
    case GL_POINT_SIZE_ARRAY_OES:
        return &arrays.pointSize;
    default:
        return nullptr;
    }
}

void setClientState(GLenum name, uint32_t enabled)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    ClientArray *array = findArray(ctx, name);
    if (!array) return __glSetError(GL_INVALID_ENUM);
    if (array->enabled == enabled) return;

    array->enabled = enabled;
    ctx->derivedFor = 0;
    ctx->dirty |= DIRTY_ARRAYS;
    if (name == GL_COLOR_ARRAY) updatePerVertexColor(ctx);
}

void forgetBuffer(ClientArray &array, GLuint buffer)
{
    if (array.buffer != buffer) return;
    array.buffer = 0;
    array.pointer = nullptr;
}

} // namespace

void initVertexArray(GLIContext *ctx)
{
    constexpr ClientArray kFourFloats = {
        .enabled = 0, .type = GL_FLOAT, .size = 4, .strideBytes = 0, .pointer = nullptr, .buffer = 0};
    ctx->arrays = {.arrayBuffer = 0,
                   .elementArrayBuffer = 0,
                   .vertex = kFourFloats,
                   .normal = kFourFloats,
                   .color = kFourFloats,
                   .texCoord = {kFourFloats, kFourFloats},
                   .matrixIndex = kFourFloats,
                   .weight = kFourFloats,
                   .pointSize = kFourFloats,
                   .vertexType = GL_FLOAT,
                   .clientUnit = 0};
    ctx->arrays.normal.size = 3;
    ctx->arrays.pointSize.size = 0;
}

void updatePerVertexColor(GLIContext *ctx)
{
    ctx->key.perVertexColor = ctx->arrays.color.enabled || ctx->key.lighting;
}

void bindBufferName(GLIContext *ctx, GLenum target, GLuint buffer)
{
    if (target == GL_ARRAY_BUFFER) {
        ctx->arrays.arrayBuffer = buffer;
    } else if (target == GL_ELEMENT_ARRAY_BUFFER) {
        ctx->arrays.elementArrayBuffer = buffer;
    }
}

void forgetBufferName(GLIContext *ctx, GLuint buffer)
{
    if (buffer == 0) return;

    ArrayState &arrays = ctx->arrays;
    if (arrays.arrayBuffer == buffer) arrays.arrayBuffer = 0;
    if (arrays.elementArrayBuffer == buffer) arrays.elementArrayBuffer = 0;
    ClientArray *const all[] = {&arrays.vertex,      &arrays.normal,      &arrays.color,  &arrays.texCoord[0],
                                &arrays.texCoord[1], &arrays.matrixIndex, &arrays.weight, &arrays.pointSize};
    for (ClientArray *array : all)
        forgetBuffer(*array, buffer);
    ctx->dirty |= DIRTY_ARRAYS;
}

GL_API void GL_APIENTRY glVertexPointer(GLint size, GLenum type, GLsizei stride, const void *pointer)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    if (size < 2 || size > 4 || stride < 0) return __glSetError(GL_INVALID_VALUE);
    if (!isCoordinateType(type)) return __glSetError(GL_INVALID_ENUM);

    describeArray(ctx, ctx->arrays.vertex, size, type, stride, pointer);
    ctx->arrays.vertexType = type;
}

GL_API void GL_APIENTRY glNormalPointer(GLenum type, GLsizei stride, const void *pointer)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    if (stride < 0) return __glSetError(GL_INVALID_VALUE);
    if (!isCoordinateType(type)) return __glSetError(GL_INVALID_ENUM);

    describeArray(ctx, ctx->arrays.normal, 3, type, stride, pointer);
}

GL_API void GL_APIENTRY glColorPointer(GLint size, GLenum type, GLsizei stride, const void *pointer)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    if (size != 4 || stride < 0) return __glSetError(GL_INVALID_VALUE);
    if (!isColorType(type)) return __glSetError(GL_INVALID_ENUM);

    describeArray(ctx, ctx->arrays.color, size, type, stride, pointer);
}

GL_API void GL_APIENTRY glTexCoordPointer(GLint size, GLenum type, GLsizei stride, const void *pointer)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const uint32_t unit = ctx->arrays.clientUnit;
    if (!assertThat(unit < kTextureUnits, "client active unit in range")) return;
    if (size < 2 || size > 4 || stride < 0) return __glSetError(GL_INVALID_VALUE);
    if (!isCoordinateType(type)) return __glSetError(GL_INVALID_ENUM);

    ClientArray &array = ctx->arrays.texCoord[unit];
    // Four components make the lookup projective, which the key derives together with the texture matrix.
    if (array.size != size) ctx->keyDirty |= keyDirtyTexMatrix(unit);
    describeArray(ctx, array, size, type, stride, pointer);
}

GL_API void GL_APIENTRY glEnableClientState(GLenum array)
{
    setClientState(array, 1);
}

GL_API void GL_APIENTRY glDisableClientState(GLenum array)
{
    setClientState(array, 0);
}

GL_API void GL_APIENTRY glClientActiveTexture(GLenum texture)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const uint32_t unit = texture - GL_TEXTURE0;
    if (unit >= kTextureUnits) return __glSetError(GL_INVALID_ENUM);

    ctx->arrays.clientUnit = unit;
}
