// SPDX-License-Identifier: MIT
// Texture coordinate generation for cube maps (GL_OES_texture_cube_map).
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"

GL_API void GL_APIENTRY glTexGenivOES(GLenum coord, GLenum pname, const GLint *params)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (coord != GL_TEXTURE_GEN_STR_OES || pname != GL_TEXTURE_GEN_MODE_OES) return __glSetError(GL_INVALID_ENUM);
    const uint32_t unit = ctx->current.activeUnit;
    const auto mode = static_cast<GLenum>(params[0]);
    if (mode == ctx->texGen[unit].mode) return;
    if (mode != GL_NORMAL_MAP_OES && mode != GL_REFLECTION_MAP_OES) return __glSetError(GL_INVALID_ENUM);

    ctx->texGen[unit].mode = mode;
    ctx->keyDirty |= keyDirtyTexGen(unit);
}

GL_API void GL_APIENTRY glTexGeniOES(GLenum coord, GLenum pname, GLint param)
{
    glTexGenivOES(coord, pname, &param);
}

GL_API void GL_APIENTRY glTexGenfvOES(GLenum coord, GLenum pname, const GLfloat *params)
{
    if (!stateContext()) return;

    const GLint mode = truncateToInt(params[0]);
    glTexGenivOES(coord, pname, &mode);
}

GL_API void GL_APIENTRY glTexGenfOES(GLenum coord, GLenum pname, GLfloat param)
{
    glTexGenfvOES(coord, pname, &param);
}

GL_API void GL_APIENTRY glTexGenxvOES(GLenum coord, GLenum pname, const GLfixed *params)
{
    // Enums come unscaled.
    glTexGenivOES(coord, pname, params);
}

GL_API void GL_APIENTRY glTexGenxOES(GLenum coord, GLenum pname, GLfixed param)
{
    glTexGenivOES(coord, pname, &param);
}
