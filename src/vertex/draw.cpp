// SPDX-License-Identifier: MIT
// Draws: validation, attribute binding, submission.
#include "vertex/draw.h"

#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/current.h"
#include "settings/dumps.h"
#include "shadergen/derive.h"
#include "shadergen/program_cache.h"
#include "shadergen/uniforms.h"

#include <cstring>

namespace {

// Position, normal and coordinate arrays are given as they are; colours are scaled to 0..1.
void bindArray(GLint location, const ClientArray &array, GLint size, GLboolean normalized)
{
    glBindBuffer_2_0(GL_ARRAY_BUFFER, array.buffer);
    glEnableVertexAttribArray_2_0(static_cast<GLuint>(location));
    glVertexAttribPointer_2_0(static_cast<GLuint>(location), size, array.type, normalized, array.strideBytes,
                              array.pointer);
}

void bindPosition(const ClientArray &array, GLint location)
{
    // The array's own enable does not count: a described array is used.
    if (array.buffer != 0 || array.pointer != nullptr) {
        glEnableVertexAttribArray_2_0(static_cast<GLuint>(location));
    } else {
        glDisableVertexAttribArray_2_0(static_cast<GLuint>(location));
    }
    glBindBuffer_2_0(GL_ARRAY_BUFFER, array.buffer);
    glVertexAttribPointer_2_0(static_cast<GLuint>(location), array.size, array.type, GL_FALSE, array.strideBytes,
                              array.pointer);
}

void bindColor(const GLIContext *ctx, const ProgramLocations &locations)
{
    const GLint location = ctx->key.perVertexColor ? locations.colorAttrib : locations.colorUniform;
    if (location == -1) return;

    if (ctx->arrays.color.enabled) {
        bindArray(location, ctx->arrays.color, ctx->arrays.color.size, GL_TRUE);
    } else if (ctx->key.perVertexColor) {
        glVertexAttrib4fv_2_0(static_cast<GLuint>(location), ctx->current.color);
        glDisableVertexAttribArray_2_0(static_cast<GLuint>(location));
    } else {
        glUniform4fv_2_0(location, 1, ctx->current.color);
    }
}

void bindTexCoord(const GLIContext *ctx, const ProgramLocations &locations, uint32_t unit)
{
    if (!ctx->key.unit[unit].enabled) return;
    const GLint location = locations.texCoordAttrib[unit];
    if (location == -1) return;

    const ClientArray &array = ctx->arrays.texCoord[unit];
    if (array.enabled) {
        bindArray(location, array, array.size, GL_FALSE);
    } else {
        glVertexAttrib4fv_2_0(static_cast<GLuint>(location), ctx->current.texCoord[unit]);
        glDisableVertexAttribArray_2_0(static_cast<GLuint>(location));
    }
}

void bindNormal(const GLIContext *ctx, GLint location)
{
    if (location == -1) return;

    if (ctx->arrays.normal.enabled) {
        bindArray(location, ctx->arrays.normal, 3, GL_FALSE);
    } else {
        glVertexAttrib3fv_2_0(static_cast<GLuint>(location), ctx->current.normal);
        glDisableVertexAttribArray_2_0(static_cast<GLuint>(location));
    }
}

void bindPointSize(const GLIContext *ctx, GLint location)
{
    if (location == -1) return;

    if (ctx->arrays.pointSize.enabled) {
        bindArray(location, ctx->arrays.pointSize, 1, GL_FALSE);
    } else {
        glVertexAttrib1f_2_0(static_cast<GLuint>(location), ctx->pointLine.pointSize);
        glDisableVertexAttribArray_2_0(static_cast<GLuint>(location));
    }
}

void bindPaletteArray(const ClientArray &array, GLint location)
{
    if (location == -1) return;

    if (!array.enabled) {
        glDisableVertexAttribArray_2_0(static_cast<GLuint>(location));
        return;
    }
    glBindBuffer_2_0(GL_ARRAY_BUFFER, array.buffer);
    glVertexAttribPointer_2_0(static_cast<GLuint>(location), array.size, array.type, GL_FALSE, array.strideBytes,
                              array.pointer);
    glEnableVertexAttribArray_2_0(static_cast<GLuint>(location));
}

// Starts from none: a draw-texture that was skipped leaves its own flag behind.
void markPrimitive(GLIContext *ctx, GLenum mode)
{
    ctx->primitiveFlags = 0;
    if (mode > GL_LINE_STRIP) [[likely]]
        return;
    ctx->primitiveFlags = mode == GL_POINTS ? PRIMITIVE_POINTS : PRIMITIVE_LINES;
}

// The derived key and the program serve the next draw too when nothing that may decide them was called between (see
// keepsProgram for what they follow), and the primitives are of the same class.
uint8_t derivedMark(const GLIContext *ctx)
{
    return static_cast<uint8_t>(ctx->primitiveFlags + 1);
}

// The first word of the key, which has all that the material decides by itself.
uint32_t generalWord(const ShaderStateBitfield &key)
{
    uint32_t word;
    std::memcpy(&word, &key, sizeof(word));
    return word;
}

// Follows the material where the derived key holds but for it. True when it holds altogether.
bool followMaterial(GLIContext *ctx)
{
    const uint32_t before = generalWord(ctx->key);
    deriveLighting(ctx);
    return generalWord(ctx->key) == before;
}

bool keepsProgram(GLIContext *ctx)
{
    const LightingState &lighting = ctx->lighting;
    if (ctx->key.lighting && (lighting.change | lighting.colorDirty[0] | lighting.sceneColorDirty)) {
        if (!followMaterial(ctx)) return false;
    }
    return !(ctx->transform.uniformDirty & DIRTY_TRANSFORM) || followModelview(ctx);
}

// Derives everything and selects the program; false when there is none. Out of line: most draws go on with the last
// one's.
[[gnu::noinline]] bool findProgram(GLIContext *ctx)
{
    ctx->derivedFor = 0; // until there is a program: a failed draw leaves nothing to go on from
    deriveShaderState(ctx);
    gliSetShaderProgram(ctx);
    if (!ctx->currentEntry || ctx->currentEntry->program == 0) return false;
    // Lines are derived every time: that loads their width.
    if (!(ctx->primitiveFlags & PRIMITIVE_LINES)) ctx->derivedFor = derivedMark(ctx);
    return true;
}

void finishDraw(GLIContext *ctx)
{
    ctx->dirty = 0;
    ctx->primitiveFlags = 0;
}

// Part of each draw call rather than a call of its own, as are the functions that it calls: what a draw reads again and
// again stays in registers.
[[gnu::always_inline]] inline uint32_t validate(GLIContext *ctx)
{
    if (ctx->key.matrixPalette) [[unlikely]] {
        // OES_matrix_palette: a vertex without weights or indices has no position. Blending no matrix gives none
        // either.
        if (!ctx->arrays.matrixIndex.enabled || !ctx->arrays.weight.enabled) return 0;
        if (paletteUnits(ctx) == 0) return 0;
    }
    if (ctx->derivedFor != derivedMark(ctx) || !keepsProgram(ctx)) [[unlikely]] {
        if (!findProgram(ctx)) return 0;
    } else {
        ++ctx->shaderCache->hitCount;
    }

    uploadDrawUniforms(ctx);
    uploadTransformUniforms(ctx);
    setVariableAttributes(ctx);
    if (ctx->key.matrixPalette) bindPaletteInputs(ctx);
    if (ctx->key.lighting) uploadLightUniforms(ctx);
    return 1;
}

} // namespace

uint32_t validateShadowState(GLIContext *ctx)
{
    return validate(ctx);
}

void setVariableAttributes(GLIContext *ctx)
{
    const ProgramLocations &locations = ctx->currentEntry->locations;
    bindPosition(ctx->arrays.vertex, locations.vertexAttrib);
    bindColor(ctx, locations);
#pragma GCC unroll 2
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit)
        bindTexCoord(ctx, locations, unit);
    bindNormal(ctx, locations.normalAttrib);
    bindPointSize(ctx, locations.pointSizeAttrib);
    glBindBuffer_2_0(GL_ARRAY_BUFFER, ctx->arrays.arrayBuffer);
}

void bindPaletteInputs(GLIContext *ctx)
{
    const ProgramLocations &locations = ctx->currentEntry->locations;
    bindPaletteArray(ctx->arrays.weight, locations.paletteWeightAttrib);
    bindPaletteArray(ctx->arrays.matrixIndex, locations.paletteIndexAttrib);
    glBindBuffer_2_0(GL_ARRAY_BUFFER, ctx->arrays.arrayBuffer);
    glUniformMatrix4fv_2_0(locations.paletteMatrices, kPaletteMatrices, GL_FALSE, ctx->palette.upload[0]);
    glUniformMatrix3fv_2_0(locations.paletteInverseMatrices, kPaletteMatrices, GL_FALSE, ctx->palette.normalUpload[0]);
}

[[gnu::flatten]] GL_API void GL_APIENTRY glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    markPrimitive(ctx, mode);
    if (validate(ctx)) {
        if (ctx->settings.dumps) [[unlikely]]
            dumpDraw(ctx);
        if (assertThat(glDrawArrays_2_0 != nullptr, "glDrawArrays_2_0")) glDrawArrays_2_0(mode, first, count);
    }
    finishDraw(ctx);
}

[[gnu::flatten]] GL_API void GL_APIENTRY glDrawElements(GLenum mode, GLsizei count, GLenum type, const void *indices)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    markPrimitive(ctx, mode);
    if (validate(ctx)) {
        if (ctx->settings.dumps) [[unlikely]]
            dumpDrawElements(ctx, mode, count, type, indices);
        if (assertThat(glDrawElements_2_0 != nullptr, "glDrawElements_2_0"))
            glDrawElements_2_0(mode, count, type, indices);
    }
    finishDraw(ctx);
}
