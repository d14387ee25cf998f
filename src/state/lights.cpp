// SPDX-License-Identifier: MIT
// Lights (OpenGL ES 1.1, 2.12.1). Positions and directions go to eye space when they are given.
#include "frontend/assert.h"
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "math/fp_vector.h"
#include "state/fixed_vector.h"

#include <cmath>

namespace {

constexpr GLfloat kNoCutoff = 180.0f;    // degrees: the light is no spot
constexpr GLfloat kMaxCutoff = 90.0f;    // degrees, of a spot
constexpr GLfloat kMaxExponent = 128.0f; // of a spot

// Places of Light::packed0 and packed1.
enum { SPOT_EXPONENT = 0, SPOT_CUTOFF = 1, SPOT_COS_CUTOFF = 2 };

void setVector(GLfloat *to, const GLfloat *from, uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
        to[i] = from[i];
}

void setPosition(Light &light, const GLfloat eye[4])
{
    setVector(light.position, eye, 4);
    setVector(light.positionGiven, eye, 4);
    const GLfloat w = eye[3];
    if (w == 0.0f) {
        setVector(light.direction, eye, 3);
        fp_vec3_normalize(light.direction);
        // Half way to a viewer at infinity on the z axis.
        setVector(light.halfVector, light.direction, 3);
        light.halfVector[2] += 1.0f;
        fp_vec3_normalize(light.halfVector);
    } else if (w != 1.0f) {
        for (uint32_t i = 0; i < 3; ++i)
            light.position[i] /= w;
    }
}

void setSpotDirection(Light &light, const GLfloat eye[3])
{
    setVector(light.spotDirection, eye, 3);
    setVector(light.spotDirectionUnit, eye, 3);
    fp_vec3_normalize(light.spotDirectionUnit);
}

void setSpotCutoff(Light &light, GLfloat degrees)
{
    light.packed0[SPOT_CUTOFF] = degrees;
    light.packed0[SPOT_COS_CUTOFF] = static_cast<GLfloat>(std::cos(degrees * 3.1415927 / 180.0));
}

const MatrixRecord &modelview(const GLIContext *ctx)
{
    const MatrixRecord &matrix = *ctx->transform.top[STACK_MODELVIEW];
    assertThat(matrix.flags & MATRIX_FLOAT, "float modelview matrix");
    return matrix;
}

void givePosition(GLIContext *ctx, Light &light, const GLfloat *position)
{
    const MatrixRecord &matrix = modelview(ctx);
    if (matrix.flags & MATRIX_IDENTITY) return setPosition(light, position);

    GLfloat eye[4];
    fp_vec4_xform4(matrix.f, position, eye);
    setPosition(light, eye);
}

void giveSpotDirection(GLIContext *ctx, Light &light, const GLfloat *direction)
{
    const MatrixRecord &matrix = modelview(ctx);
    if (matrix.flags & MATRIX_IDENTITY) return setSpotDirection(light, direction);

    GLfloat eye[3];
    fp_vec3_xform3(matrix.f, direction, eye);
    setSpotDirection(light, eye);
}

// Values that a parameter takes; 0 for a name that is none.
uint32_t valueCount(GLenum pname)
{
    switch (pname) {
    case GL_AMBIENT:
    case GL_DIFFUSE:
    case GL_SPECULAR:
    case GL_POSITION:
        return 4;
    case GL_SPOT_DIRECTION:
        return 3;
    case GL_SPOT_EXPONENT:
    case GL_SPOT_CUTOFF:
    case GL_CONSTANT_ATTENUATION:
    case GL_LINEAR_ATTENUATION:
    case GL_QUADRATIC_ATTENUATION:
        return 1;
    default:
        return 0;
    }
}

// The range checks of the scalar parameters, written so that NaN passes each of them.
bool isInvalidValue(GLenum pname, GLfloat value)
{
    switch (pname) {
    case GL_SPOT_EXPONENT:
        return value < 0.0f || value > kMaxExponent;
    case GL_SPOT_CUTOFF:
        return value != kNoCutoff && (value < 0.0f || value > kMaxCutoff);
    case GL_CONSTANT_ATTENUATION:
    case GL_LINEAR_ATTENUATION:
    case GL_QUADRATIC_ATTENUATION:
        return value < 0.0f;
    default:
        return false;
    }
}

void giveColor(GLIContext *ctx, uint32_t index, GLfloat to[4], const GLfloat *color)
{
    setVector(to, color, 4);
    markLightColors(ctx->lighting, 1u << index);
}

void storeParameter(GLIContext *ctx, uint32_t index, GLenum pname, const GLfloat *params)
{
    Light &light = ctx->lighting.lights[index];
    switch (pname) {
    case GL_AMBIENT:
        return giveColor(ctx, index, light.ambient, params);
    case GL_DIFFUSE:
        return giveColor(ctx, index, light.diffuse, params);
    case GL_SPECULAR:
        return giveColor(ctx, index, light.specular, params);
    case GL_POSITION:
        givePosition(ctx, light, params);
        ctx->lighting.geometryDirty |= 1u << index;
        return;
    case GL_SPOT_DIRECTION:
        return giveSpotDirection(ctx, light, params);
    case GL_SPOT_EXPONENT:
        light.packed0[SPOT_EXPONENT] = params[0];
        return;
    case GL_SPOT_CUTOFF:
        setSpotCutoff(light, params[0]);
        ctx->lighting.geometryDirty |= 1u << index;
        return;
    default:
        light.packed1[pname - GL_CONSTANT_ATTENUATION] = params[0];
    }
}

void initLight(Light &light, bool first)
{
    constexpr GLfloat kBlack[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    constexpr GLfloat kWhite[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    constexpr GLfloat kTowardsViewer[4] = {0.0f, 0.0f, 1.0f, 0.0f};
    constexpr GLfloat kAwayFromViewer[3] = {0.0f, 0.0f, -1.0f};
    light = {};
    setVector(light.ambient, kBlack, 4);
    setVector(light.diffuse, first ? kWhite : kBlack, 4);
    setVector(light.specular, first ? kWhite : kBlack, 4);
    setPosition(light, kTowardsViewer);
    setSpotDirection(light, kAwayFromViewer);
    setSpotCutoff(light, kNoCutoff);
    light.packed1[0] = 1.0f;
}

void markEverything(LightingState &lighting)
{
    lighting.geometryDirty = kAllLights;
    markLightColors(lighting, kAllLights);
    lighting.sceneColorDirty = 1;
}

} // namespace

void initLighting(GLIContext *ctx)
{
    LightingState &lighting = ctx->lighting;
    lighting.model = {.twoSide = 0, .ambient = {0.2f, 0.2f, 0.2f, 1.0f}};
    for (uint32_t i = 0; i < kMaxLights; ++i)
        initLight(lighting.lights[i], i == 0);

    markEverything(lighting);
    deriveLights(ctx);
    for (uint32_t i = 0; i < kMaxLights; ++i)
        deriveLightProducts(lighting, i, false);
    markEverything(lighting);
}

void wipeLighting(GLIContext *ctx)
{
    ctx->lighting = {};
}

GL_API void GL_APIENTRY glLightfv(GLenum light, GLenum pname, const GLfloat *params)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    const uint32_t index = light - GL_LIGHT0;
    if (index >= kMaxLights || valueCount(pname) == 0) return __glSetError(GL_INVALID_ENUM);
    if (isInvalidValue(pname, params[0])) return __glSetError(GL_INVALID_VALUE);

    storeParameter(ctx, index, pname, params);
    markLitDraws(ctx);
}

GL_API void GL_APIENTRY glLightf(GLenum light, GLenum pname, GLfloat param)
{
    // A vector parameter takes the one value as its first component.
    const GLfloat params[4] = {param, 0.0f, 0.0f, 0.0f};
    glLightfv(light, pname, params);
}

GL_API void GL_APIENTRY glLightxv(GLenum light, GLenum pname, const GLfixed *params)
{
    if (!stateContext()) return;

    GLfloat converted[4] = {};
    floatsFromFixed(converted, params, valueCount(pname));
    glLightfv(light, pname, converted);
}

GL_API void GL_APIENTRY glLightx(GLenum light, GLenum pname, GLfixed param)
{
    glLightf(light, pname, floatFromFixed(param));
}
