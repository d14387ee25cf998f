// SPDX-License-Identifier: MIT
// Binding, deleting and parameters of textures (OpenGL ES 1.1, 3.7.4 and 3.7.13; GL_OES_draw_texture's crop rectangle).
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "texture/objects.h"

namespace {

// Values that a parameter takes; 0 for a name that is none.
uint32_t valueCount(GLenum pname)
{
    switch (pname) {
    case GL_GENERATE_MIPMAP:
    case GL_TEXTURE_MAG_FILTER:
    case GL_TEXTURE_MIN_FILTER:
    case GL_TEXTURE_WRAP_S:
    case GL_TEXTURE_WRAP_T:
        return 1;
    case GL_TEXTURE_CROP_RECT_OES:
        return 4;
    default:
        return 0;
    }
}

void setCropRect(GLIContext *ctx, TextureObject *object, const GLint rect[4])
{
    for (uint32_t i = 0; i < 4; ++i)
        object->cropRect[i] = rect[i];
    ctx->dirty |= ctx->current.activeUnit == 0 ? DIRTY_TEXUNIT0 : DIRTY_TEXUNIT1;
}

void setGenerateMipmap(GLenum target, TextureObject *object, uint8_t value)
{
    // External images have one level only.
    if (target == GL_TEXTURE_EXTERNAL_OES && value) return __glSetError(GL_INVALID_ENUM);
    object->generateMipmap = value;
}

} // namespace

TextureObject **activeBinding(GLIContext *ctx, GLenum target)
{
    const uint32_t unit = ctx->current.activeUnit;
    if (target == GL_TEXTURE_2D) [[likely]]
        return &ctx->bindings.texture2D[unit];
    switch (target) {
    case GL_TEXTURE_CUBE_MAP_OES:
        return &ctx->bindings.textureCubeMap[unit];
    case GL_TEXTURE_EXTERNAL_OES:
        return &ctx->bindings.textureExternal[unit];
    default:
        return nullptr;
    }
}

GL_API void GL_APIENTRY glBindTexture(GLenum target, GLuint texture)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    TextureObject **binding = activeBinding(ctx, target);
    if (!binding) return __glSetError(GL_INVALID_ENUM);
    TextureObject *object = lookupTextureObject(ctx->textures, target, texture);
    if (!object) return __glSetError(GL_OUT_OF_MEMORY);

    bindTextureObject(*binding, object);
    const uint32_t unit = ctx->current.activeUnit;
    const GLenum format = object->internalFormat[0];
    if (ctx->bindings.unitFormat[unit] != format) updateInternalFormat(ctx, target, format, 0);
    if (assertThat(glBindTexture_2_0 != nullptr, "glBindTexture_2_0")) glBindTexture_2_0(target, texture);
    ctx->textures->unitBoundInBackend[unit] = 1;
}

GL_API void GL_APIENTRY glDeleteTextures(GLsizei n, const GLuint *textures)
{
    GLIContext *ctx = changingContext();
    if (!ctx) return;
    // Zero names are an error too.
    if (n < 1) return __glSetError(GL_INVALID_VALUE);

    // In interface-only mode the names are deleted in the backend only.
    if (!ctx->settings.interfaceOnly)
        for (GLsizei i = 0; i < n; ++i)
            deleteTextureName(ctx, textures[i]);
    if (assertThat(glDeleteTextures_2_0 != nullptr, "glDeleteTextures_2_0")) glDeleteTextures_2_0(n, textures);
}

GL_API void GL_APIENTRY glTexParameteriv(GLenum target, GLenum pname, const GLint *params)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    TextureObject **binding = activeBinding(ctx, target);
    if (!binding || valueCount(pname) == 0) return __glSetError(GL_INVALID_ENUM);

    switch (pname) {
    case GL_GENERATE_MIPMAP:
        return setGenerateMipmap(target, *binding, params[0] != 0);
    case GL_TEXTURE_CROP_RECT_OES:
        return setCropRect(ctx, *binding, params);
    default:
        // The backend checks the value and keeps it.
        if (assertThat(glTexParameteri_2_0 != nullptr, "glTexParameteri_2_0"))
            glTexParameteri_2_0(target, pname, params[0]);
    }
}

GL_API void GL_APIENTRY glTexParameterfv(GLenum target, GLenum pname, const GLfloat *params)
{
    if (!stateContext()) return;

    GLint converted[4] = {};
    const uint32_t count = valueCount(pname);
    for (uint32_t i = 0; i < count; ++i)
        converted[i] = truncateToInt(params[i]);
    // Any value but 0 is true, also one that truncates to 0.
    if (pname == GL_GENERATE_MIPMAP) converted[0] = params[0] != 0.0f;
    glTexParameteriv(target, pname, converted);
}

GL_API void GL_APIENTRY glTexParameteri(GLenum target, GLenum pname, GLint param)
{
    // The crop rectangle takes the one value as its left edge.
    const GLint params[4] = {param, 0, 0, 0};
    glTexParameteriv(target, pname, params);
}

GL_API void GL_APIENTRY glTexParameterf(GLenum target, GLenum pname, GLfloat param)
{
    const GLfloat params[4] = {param, 0.0f, 0.0f, 0.0f};
    glTexParameterfv(target, pname, params);
}

GL_API void GL_APIENTRY glTexParameterx(GLenum target, GLenum pname, GLfixed param)
{
    // Enums come unscaled.
    glTexParameteri(target, pname, param);
}

GL_API void GL_APIENTRY glTexParameterxv(GLenum target, GLenum pname, const GLfixed *params)
{
    // Unscaled too, the crop rectangle included.
    glTexParameteriv(target, pname, params);
}
