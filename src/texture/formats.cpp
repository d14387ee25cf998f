// SPDX-License-Identifier: MIT
// Which texture decides a unit's fragment code, and its base format.
#include "frontend/context.h"
#include "texture/texture_state.h"

namespace {

// The object that the unit samples: external before cube map before 2D; null for a disabled unit.
const TextureObject *sampledObject(const GLIContext *ctx, uint32_t unit)
{
    const EnableState &enables = ctx->enables;
    if (enables.textureExternal[unit]) return ctx->bindings.textureExternal[unit];
    if (enables.textureCubeMap[unit]) return ctx->bindings.textureCubeMap[unit];
    if (enables.texture2D[unit]) return ctx->bindings.texture2D[unit];
    return nullptr;
}

void refreshUnitFormat(GLIContext *ctx, uint32_t unit)
{
    const TextureObject *object = sampledObject(ctx, unit);
    if (object) recordUnitFormat(ctx, unit, object->internalFormat[0]);
}

bool decidesFormat(const EnableState &enables, uint32_t unit, GLenum target, uint32_t face)
{
    const bool on2D = enables.texture2D[unit];
    const bool onCubeMap = enables.textureCubeMap[unit];
    const bool onExternal = enables.textureExternal[unit];
    switch (target) {
    case GL_TEXTURE_CUBE_MAP_OES:
        return face == 0 && onCubeMap && !onExternal;
    case GL_TEXTURE_2D:
        return on2D && !onCubeMap && !onExternal;
    case GL_TEXTURE_EXTERNAL_OES:
        // Unlike the cube map, it does not win over an enabled 2D target.
        return onExternal && !on2D && !onCubeMap;
    default:
        return false;
    }
}

} // namespace

GLenum normalizeInternalFormat(GLenum format)
{
    switch (format) {
    case GL_ALPHA:
    case GL_RGB:
    case GL_RGBA:
    case GL_LUMINANCE:
    case GL_LUMINANCE_ALPHA:
        return format;
    case GL_PALETTE4_RGBA8_OES:
    case GL_PALETTE4_RGBA4_OES:
    case GL_PALETTE4_RGB5_A1_OES:
    case GL_PALETTE8_RGBA8_OES:
    case GL_PALETTE8_RGBA4_OES:
    case GL_PALETTE8_RGB5_A1_OES:
    case GL_ZTC_RGBA_INTERPOLATED_ALPHA_QRN:
    case GL_ZTC_RGBA_EXPLICIT_ALPHA_QRN:
        return GL_RGBA;
    default:
        return GL_RGB;
    }
}

void recordUnitFormat(GLIContext *ctx, uint32_t unit, GLenum format)
{
    if (ctx->bindings.unitFormat[unit] == format) return;

    ctx->bindings.unitFormat[unit] = format;
    ctx->derivedFor = 0;
    ctx->dirty |= DIRTY_TEXTURE_FORMAT;
    ctx->keyDirty |= keyDirtyEnv(unit);
}

void updateInternalFormat(GLIContext *ctx, GLenum target, GLenum format, uint32_t face)
{
    const uint32_t unit = ctx->current.activeUnit;
    if (decidesFormat(ctx->enables, unit, target, face)) recordUnitFormat(ctx, unit, format);
}

void refreshOtherUnits(GLIContext *ctx, const TextureObject *object)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit)
        if (unit != ctx->current.activeUnit && sampledObject(ctx, unit) == object) refreshUnitFormat(ctx, unit);
}

void refreshUnitFormats(GLIContext *ctx)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit)
        refreshUnitFormat(ctx, unit);
}

void updateTextureEnables(GLIContext *ctx, uint32_t unit)
{
    const EnableState &enables = ctx->enables;
    TextureUnitKey &key = ctx->key.unit[unit];
    const uint32_t wasEnabled = key.enabled;
    key.enabled = enables.texture2D[unit] | enables.textureCubeMap[unit] | enables.textureExternal[unit];
    key.cubeMap = enables.textureCubeMap[unit] && !enables.textureExternal[unit];
    key.external = enables.textureExternal[unit];

    // A disabled unit's part of the key is dropped and its marks are lost: all of it is derived again.
    if (key.enabled && !wasEnabled) ctx->keyDirty |= keyDirtyEnv(unit) | keyDirtyTexGen(unit) | keyDirtyTexMatrix(unit);
    refreshUnitFormat(ctx, unit);
}
