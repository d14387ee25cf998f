// SPDX-License-Identifier: MIT
// Fog parameters (OpenGL ES 1.1, 3.8).
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "state/fixed_vector.h"

namespace {

bool isFogMode(GLenum mode)
{
    return mode == GL_EXP || mode == GL_EXP2 || mode == GL_LINEAR;
}

bool isCoordSource(GLenum source)
{
    return source == GL_FOG_COORDINATE_QRN || source == GL_FRAGMENT_DEPTH_QRN;
}

} // namespace

GL_API void GL_APIENTRY glFogfv(GLenum pname, const GLfloat *params)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;

    FogState &fog = ctx->fog;
    switch (pname) {
    case GL_FOG_DENSITY:
        // NaN passes.
        if (params[0] < 0.0f) return __glSetError(GL_INVALID_VALUE);
        fog.density = params[0];
        break;
    case GL_FOG_START:
        fog.start = params[0];
        break;
    case GL_FOG_END:
        fog.end = params[0];
        break;
    case GL_FOG_COLOR:
        for (uint32_t i = 0; i < 4; ++i)
            fog.color[i] = params[i];
        break;
    case GL_FOG_MODE: {
        const GLenum mode = truncateToUnsigned(params[0]);
        if (!isFogMode(mode)) return __glSetError(GL_INVALID_ENUM);
        fog.mode = mode;
        updateFogKey(ctx);
        break;
    }
    case GL_FOG_COORDINATE_SOURCE_QRN: {
        const GLenum source = truncateToUnsigned(params[0]);
        if (!isCoordSource(source)) return __glSetError(GL_INVALID_ENUM);
        fog.coordSource = source;
        updateFogKey(ctx);
        break;
    }
    default:
        return __glSetError(GL_INVALID_ENUM);
    }
    ctx->dirty |= DIRTY_FOG;
}

GL_API void GL_APIENTRY glFogf(GLenum pname, GLfloat param)
{
    // The colour takes the one value as its red.
    const GLfloat params[4] = {param, 0.0f, 0.0f, 0.0f};
    glFogfv(pname, params);
}

GL_API void GL_APIENTRY glFogxv(GLenum pname, const GLfixed *params)
{
    if (!stateContext()) return;

    GLfloat converted[4] = {};
    switch (pname) {
    case GL_FOG_DENSITY:
    case GL_FOG_START:
    case GL_FOG_END:
        converted[0] = floatFromFixed(params[0]);
        break;
    case GL_FOG_COLOR:
        floatsFromFixed(converted, params, 4);
        break;
    case GL_FOG_MODE:
    case GL_FOG_COORDINATE_SOURCE_QRN:
        // Enums come unscaled.
        converted[0] = static_cast<GLfloat>(params[0]);
        break;
    default:
        break;
    }
    glFogfv(pname, converted);
}

GL_API void GL_APIENTRY glFogx(GLenum pname, GLfixed param)
{
    const GLfixed params[4] = {param, 0, 0, 0};
    glFogxv(pname, params);
}
