// SPDX-License-Identifier: MIT
// Current attribute values, the active unit, and the small state that stands beside them: shade model, hints, alpha
// function.
#include "frontend/current.h"
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/convert.h"
#include "frontend/error.h"

GL_API void GL_APIENTRY glActiveTexture(GLenum texture)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const uint32_t unit = texture - GL_TEXTURE0;
    if (unit >= kTextureUnits) return __glSetError(GL_INVALID_ENUM);

    if (unit != ctx->current.activeUnit) {
        followActiveTexture(ctx, ctx->current.activeUnit, unit);
        ctx->current.activeUnit = unit;
    }
    if (assertThat(glActiveTexture_2_0 != nullptr, "glActiveTexture_2_0")) glActiveTexture_2_0(texture);
}

GL_API void GL_APIENTRY glColor4f(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    GLfloat *color = ctx->current.color;
    color[0] = red;
    color[1] = green;
    color[2] = blue;
    color[3] = alpha;
    ctx->dirty |= DIRTY_CURRENT_COLOR;
}

GL_API void GL_APIENTRY glColor4ub(GLubyte red, GLubyte green, GLubyte blue, GLubyte alpha)
{
    glColor4f(red / 255.0f, green / 255.0f, blue / 255.0f, alpha / 255.0f);
}

GL_API void GL_APIENTRY glColor4x(GLfixed red, GLfixed green, GLfixed blue, GLfixed alpha)
{
    glColor4f(floatFromFixed(red), floatFromFixed(green), floatFromFixed(blue), floatFromFixed(alpha));
}

GL_API void GL_APIENTRY glNormal3f(GLfloat x, GLfloat y, GLfloat z)
{
    // Also in interface-only mode.
    GLIContext *ctx = currentContext();
    if (!ctx) return;

    GLfloat *normal = ctx->current.normal;
    normal[0] = x;
    normal[1] = y;
    normal[2] = z;
}

GL_API void GL_APIENTRY glNormal3x(GLfixed x, GLfixed y, GLfixed z)
{
    glNormal3f(floatFromFixed(x), floatFromFixed(y), floatFromFixed(z));
}

GL_API void GL_APIENTRY glMultiTexCoord4f(GLenum target, GLfloat s, GLfloat t, GLfloat r, GLfloat q)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const uint32_t unit = target - GL_TEXTURE0;
    if (unit >= kTextureUnits) return __glSetError(GL_INVALID_ENUM);

    GLfloat *texCoord = ctx->current.texCoord[unit];
    texCoord[0] = s;
    texCoord[1] = t;
    texCoord[2] = r;
    texCoord[3] = q;
}

GL_API void GL_APIENTRY glMultiTexCoord4x(GLenum target, GLfixed s, GLfixed t, GLfixed r, GLfixed q)
{
    glMultiTexCoord4f(target, floatFromFixed(s), floatFromFixed(t), floatFromFixed(r), floatFromFixed(q));
}

GL_API void GL_APIENTRY glShadeModel(GLenum mode)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (mode != GL_FLAT && mode != GL_SMOOTH) return __glSetError(GL_INVALID_ENUM);

    ctx->key.flatShading = mode == GL_FLAT;
}

GL_API void GL_APIENTRY glHint(GLenum target, GLenum mode)
{
    GLIContext *ctx = currentContext();
    if (!ctx) return;
    // Also in interface-only mode, although the hints themselves stay here.
    assertThat(glHint_2_0 != nullptr, "glHint_2_0");
    if (ctx->settings.interfaceOnly) return;
    if (mode != GL_FASTEST && mode != GL_NICEST && mode != GL_DONT_CARE) return __glSetError(GL_INVALID_ENUM);

    switch (target) {
    case GL_PERSPECTIVE_CORRECTION_HINT:
        ctx->hints.mode[HINT_PERSPECTIVE_CORRECTION] = mode;
        break;
    case GL_POINT_SMOOTH_HINT:
        ctx->hints.mode[HINT_POINT_SMOOTH] = mode;
        break;
    case GL_LINE_SMOOTH_HINT:
        ctx->hints.mode[HINT_LINE_SMOOTH] = mode;
        break;
    case GL_FOG_HINT:
        ctx->hints.mode[HINT_FOG] = mode;
        break;
    case GL_GENERATE_MIPMAP_HINT:
        ctx->hints.mode[HINT_GENERATE_MIPMAP] = mode;
        break;
    default:
        return __glSetError(GL_INVALID_ENUM);
    }
}

GL_API void GL_APIENTRY glAlphaFunc(GLenum func, GLfloat ref)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (func < GL_NEVER || func > GL_ALWAYS) return __glSetError(GL_INVALID_ENUM);

    if (!ctx->backend.lacksAlphaFunc) {
        if (assertThat(glAlphaFuncQRN_2_0 != nullptr, "glAlphaFuncQRN_2_0")) glAlphaFuncQRN_2_0(func, ref);
        return;
    }
    ctx->alphaTest.func = func;
    ctx->alphaTest.ref = clampToUnit(ref);
    ctx->keyDirty |= KEY_DIRTY_ALPHA_TEST;
}

GL_API void GL_APIENTRY glAlphaFuncx(GLenum func, GLclampx ref)
{
    glAlphaFunc(func, floatFromFixed(ref));
}
