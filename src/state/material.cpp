// SPDX-License-Identifier: MIT
// Material and light model (OpenGL ES 1.1, 2.12.1 and 2.12.2). There is one material for both faces.
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "state/fixed_vector.h"

namespace {

constexpr GLfloat kMaxShininess = 128.0f;

void setColor(GLfloat to[4], const GLfloat *from)
{
    for (uint32_t i = 0; i < 4; ++i)
        to[i] = from[i];
}

void setAmbient(LightingState &lighting, const GLfloat *color)
{
    setColor(lighting.material.ambient, color);
    lighting.change |= LIGHTING_AMBIENT;
    markLightColors(lighting, kAllLights);
    lighting.sceneColorDirty = 1;
}

void setDiffuse(LightingState &lighting, const GLfloat *color)
{
    setColor(lighting.material.diffuse, color);
    markLightColors(lighting, kAllLights);
    lighting.sceneColorDirty = 1; // its alpha is the diffuse alpha
}

void setSpecular(LightingState &lighting, const GLfloat *color)
{
    setColor(lighting.material.specular, color);
    markLightColors(lighting, kAllLights);
}

void setEmission(LightingState &lighting, const GLfloat *color)
{
    setColor(lighting.material.emission, color);
    lighting.change |= LIGHTING_AMBIENT;
    lighting.sceneColorDirty = 1;
}

uint32_t materialValueCount(GLenum pname)
{
    switch (pname) {
    case GL_AMBIENT:
    case GL_DIFFUSE:
    case GL_SPECULAR:
    case GL_EMISSION:
    case GL_AMBIENT_AND_DIFFUSE:
        return 4;
    case GL_SHININESS:
        return 1;
    default:
        return 0;
    }
}

uint32_t lightModelValueCount(GLenum pname)
{
    switch (pname) {
    case GL_LIGHT_MODEL_AMBIENT:
        return 4;
    case GL_LIGHT_MODEL_TWO_SIDE:
        return 1;
    default:
        return 0;
    }
}

} // namespace

void initMaterial(GLIContext *ctx)
{
    ctx->lighting.material = {.ambient = {0.2f, 0.2f, 0.2f, 1.0f},
                              .diffuse = {0.8f, 0.8f, 0.8f, 1.0f},
                              .specular = {0.0f, 0.0f, 0.0f, 1.0f},
                              .emission = {0.0f, 0.0f, 0.0f, 1.0f},
                              .shininess = 0.0f};
}

void wipeMaterial(GLIContext *ctx)
{
    ctx->lighting.material = {};
}

GL_API void GL_APIENTRY glMaterialfv(GLenum face, GLenum pname, const GLfloat *params)
{
    GLIContext *ctx = valueContext(); // marks what a lit draw derives again
    if (!ctx) return;
    if (face != GL_FRONT_AND_BACK) return __glSetError(GL_INVALID_ENUM);

    LightingState &lighting = ctx->lighting;
    switch (pname) {
    case GL_AMBIENT:
        setAmbient(lighting, params);
        break;
    case GL_DIFFUSE:
        setDiffuse(lighting, params);
        break;
    case GL_AMBIENT_AND_DIFFUSE:
        setAmbient(lighting, params);
        setDiffuse(lighting, params);
        break;
    case GL_SPECULAR:
        setSpecular(lighting, params);
        break;
    case GL_EMISSION:
        setEmission(lighting, params);
        break;
    case GL_SHININESS:
        if (params[0] == lighting.material.shininess) break;
        // Written so that NaN passes.
        if (params[0] < 0.0f || params[0] > kMaxShininess) return __glSetError(GL_INVALID_VALUE);
        lighting.material.shininess = params[0];
        lighting.change |= LIGHTING_SHININESS;
        break;
    default:
        return __glSetError(GL_INVALID_ENUM);
    }
    markLitDraws(ctx);
}

GL_API void GL_APIENTRY glMaterialf(GLenum face, GLenum pname, GLfloat param)
{
    // A vector parameter takes the one value as its first component.
    const GLfloat params[4] = {param, 0.0f, 0.0f, 0.0f};
    glMaterialfv(face, pname, params);
}

GL_API void GL_APIENTRY glMaterialxv(GLenum face, GLenum pname, const GLfixed *params)
{
    if (!valueContext()) return;

    GLfloat converted[4] = {};
    floatsFromFixed(converted, params, materialValueCount(pname));
    glMaterialfv(face, pname, converted);
}

GL_API void GL_APIENTRY glMaterialx(GLenum face, GLenum pname, GLfixed param)
{
    glMaterialf(face, pname, floatFromFixed(param));
}

GL_API void GL_APIENTRY glLightModelfv(GLenum pname, const GLfloat *params)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (lightModelValueCount(pname) == 0) return __glSetError(GL_INVALID_ENUM);

    LightingState &lighting = ctx->lighting;
    if (pname == GL_LIGHT_MODEL_AMBIENT) {
        setColor(lighting.model.ambient, params);
        lighting.change |= LIGHTING_AMBIENT;
        lighting.sceneColorDirty = 1;
    } else {
        const uint32_t twoSide = params[0] != 0.0f;
        if (twoSide != lighting.model.twoSide) {
            lighting.model.twoSide = twoSide;
            lighting.change |= LIGHTING_TWO_SIDE;
        }
    }
    markLitDraws(ctx);
}

GL_API void GL_APIENTRY glLightModelf(GLenum pname, GLfloat param)
{
    const GLfloat params[4] = {param, 0.0f, 0.0f, 0.0f};
    glLightModelfv(pname, params);
}

GL_API void GL_APIENTRY glLightModelxv(GLenum pname, const GLfixed *params)
{
    if (!stateContext()) return;

    GLfloat converted[4] = {};
    floatsFromFixed(converted, params, lightModelValueCount(pname));
    glLightModelfv(pname, converted);
}

GL_API void GL_APIENTRY glLightModelx(GLenum pname, GLfixed param)
{
    glLightModelf(pname, floatFromFixed(param));
}
