// SPDX-License-Identifier: MIT
// Point and line parameters (OpenGL ES 1.1, 3.3 and 3.4; GL_OES_point_size_array). Nothing reaches the backend here:
// the shaders write the point size, and line draws set the width.
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "state/fixed_vector.h"

namespace {

uint32_t valueCount(GLenum pname)
{
    switch (pname) {
    case GL_POINT_SIZE_MIN:
    case GL_POINT_SIZE_MAX:
    case GL_POINT_FADE_THRESHOLD_SIZE:
        return 1;
    case GL_POINT_DISTANCE_ATTENUATION:
        return 3;
    default:
        return 0;
    }
}

bool isAnyNegative(const GLfloat *values, uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
        if (values[i] < 0.0f) return true;
    return false;
}

GLfloat limitSize(GLfloat size)
{
    return size > kMaxPointSize ? kMaxPointSize : size;
}

void setAttenuation(GLIContext *ctx, const GLfloat *coefficients)
{
    PointLineState &point = ctx->pointLine;
    for (uint32_t i = 0; i < 3; ++i)
        point.distanceAttenuation[i] = coefficients[i];
    const uint32_t active = coefficients[0] != 1.0f || coefficients[1] != 0.0f || coefficients[2] != 0.0f;
    if (active != point.attenuationActive) ctx->lighting.change |= LIGHTING_POINT_ATTENUATION;
    point.attenuationActive = active;
}

} // namespace

GL_API void GL_APIENTRY glLineWidth(GLfloat width)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    // NaN passes.
    if (width <= 0.0f) return __glSetError(GL_INVALID_VALUE);

    ctx->pointLine.lineWidth = width;
}

GL_API void GL_APIENTRY glPointSize(GLfloat size)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    // NaN passes.
    if (size <= 0.0f) return __glSetError(GL_INVALID_VALUE);

    ctx->pointLine.pointSize = size;
}

GL_API void GL_APIENTRY glPointSizex(GLfixed size)
{
    glPointSize(floatFromFixed(size));
}

GL_API void GL_APIENTRY glPointSizePointerOES(GLenum type, GLsizei stride, const void *pointer)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (stride < 0) return __glSetError(GL_INVALID_VALUE);
    if (type != GL_FIXED && type != GL_FLOAT) return __glSetError(GL_INVALID_ENUM);

    ClientArray &array = ctx->arrays.pointSize;
    array.type = type;
    array.strideBytes = stride;
    array.pointer = pointer;
    array.buffer = ctx->arrays.arrayBuffer;
    ctx->dirty |= DIRTY_ARRAYS;
}

GL_API void GL_APIENTRY glPointParameterfv(GLenum pname, const GLfloat *params)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (isAnyNegative(params, valueCount(pname))) return __glSetError(GL_INVALID_VALUE);

    PointLineState &point = ctx->pointLine;
    switch (pname) {
    case GL_POINT_SIZE_MIN:
        point.pointSizeMin = limitSize(params[0]);
        // The minimum sets the maximum too.
        point.pointSizeMax = point.pointSizeMin;
        break;
    case GL_POINT_SIZE_MAX:
        point.pointSizeMax = limitSize(params[0]);
        break;
    case GL_POINT_FADE_THRESHOLD_SIZE:
        point.pointFadeThreshold = params[0];
        break;
    case GL_POINT_DISTANCE_ATTENUATION:
        setAttenuation(ctx, params);
        break;
    default:
        // The mark below is set also for a name that is none.
        __glSetError(GL_INVALID_ENUM);
    }
    ctx->dirty |= DIRTY_POINTS;
}

GL_API void GL_APIENTRY glPointParameterf(GLenum pname, GLfloat param)
{
    // The attenuation takes the one value as its constant term.
    const GLfloat params[3] = {param, 0.0f, 0.0f};
    glPointParameterfv(pname, params);
}

GL_API void GL_APIENTRY glPointParameterxv(GLenum pname, const GLfixed *params)
{
    if (!stateContext()) return;

    GLfloat converted[3] = {};
    floatsFromFixed(converted, params, valueCount(pname));
    glPointParameterfv(pname, converted);
}

GL_API void GL_APIENTRY glPointParameterx(GLenum pname, GLfixed param)
{
    glPointParameterf(pname, floatFromFixed(param));
}
