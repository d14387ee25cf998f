// SPDX-License-Identifier: MIT
// Viewport, depth range, user clip plane and logic operation. The backend gets the caller's values; the context keeps
// what queries and draws read.
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "math/fp_matrix.h"
#include "math/fp_vector.h"

#include <climits>

namespace {

struct ViewportDims {
    GLint width, height;
};

ViewportDims maxViewportDims()
{
    GLint dims[2] = {INT_MAX, INT_MAX};
    if (assertThat(glGetIntegerv_2_0 != nullptr, "glGetIntegerv_2_0")) glGetIntegerv_2_0(GL_MAX_VIEWPORT_DIMS, dims);
    return {dims[0], dims[1]};
}

} // namespace

GL_API void GL_APIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if ((width | height) < 0) return __glSetError(GL_INVALID_VALUE);

    const ViewportDims limit = maxViewportDims();
    ctx->viewport.x = x;
    ctx->viewport.y = y;
    ctx->viewport.width = width < limit.width ? width : limit.width;
    ctx->viewport.height = height < limit.height ? height : limit.height;
    if (assertThat(glViewport_2_0 != nullptr, "glViewport_2_0")) glViewport_2_0(x, y, width, height);
}

GL_API void GL_APIENTRY glDepthRangef(GLfloat n, GLfloat f)
{
    // Also in interface-only mode.
    GLIContext *ctx = currentContext();
    if (!ctx) return;

    ctx->viewport.depthNear = clampToUnit(n);
    ctx->viewport.depthFar = clampToUnit(f);
    if (assertThat(glDepthRangef_2_0 != nullptr, "glDepthRangef_2_0")) glDepthRangef_2_0(n, f);
}

GL_API void GL_APIENTRY glDepthRangex(GLfixed n, GLfixed f)
{
    glDepthRangef(floatFromFixed(n), floatFromFixed(f));
}

GL_API void GL_APIENTRY glClipPlanef(GLenum plane, const GLfloat *equation)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;
    if (plane != GL_CLIP_PLANE0) return __glSetError(GL_INVALID_ENUM);

    // OpenGL ES 1.1, 2.11: the plane in eye space is the row vector equation x inverse of the modelview. A singular
    // modelview gives whatever its inversion leaves.
    MatrixRecord inverse = *ctx->transform.top[STACK_MODELVIEW];
    fp_matrix_inverse(inverse.f, inverse.f, inverse.flags);
    MatrixRecord transposed;
    matrixTranspose(inverse.f, transposed.f);
    fp_vec4_xform4(transposed.f, equation, ctx->viewport.clipPlaneEye);
    for (uint32_t i = 0; i < 4; ++i)
        ctx->viewport.clipPlane[i] = equation[i];
    ctx->dirty |= DIRTY_CLIP_PLANE;
}

GL_API void GL_APIENTRY glClipPlanex(GLenum plane, const GLfixed *equation)
{
    if (!stateContext()) return;

    GLfloat converted[4];
    for (uint32_t i = 0; i < 4; ++i)
        converted[i] = floatFromFixed(equation[i]);
    glClipPlanef(plane, converted);
}

GL_API void GL_APIENTRY glLogicOp(GLenum opcode)
{
    // Also in interface-only mode; the backend keeps it.
    if (!currentContext()) return;
    if (assertThat(glLogicOpQRN_2_0 != nullptr, "glLogicOpQRN_2_0")) glLogicOpQRN_2_0(opcode);
}
