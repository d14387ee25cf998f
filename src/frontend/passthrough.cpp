// SPDX-License-Identifier: MIT
// Entry points that go straight to the backend. They also work in interface-only mode.
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/convert.h"
#include "frontend/current.h"
#include "vertex/array_state.h"

// A row becomes:
// GL_API void GL_APIENTRY glStencilMask(GLuint mask)
// {
//     if (!currentContext()) return void();
//     if (!assertThat(glStencilMask_2_0 != nullptr, "glStencilMask_2_0")) return void();
//     return glStencilMask_2_0(mask);
// }
#define FORWARD_ASSERTING(name, result, arguments, call, pointer, absent)                                              \
    GL_API result GL_APIENTRY name arguments                                                                           \
    {                                                                                                                  \
        if (!currentContext()) return absent;                                                                          \
        if (!assertThat(pointer != nullptr, #pointer)) return absent;                                                  \
        return pointer call;                                                                                           \
    }
#define FORWARD_EXTENSION(name, result, arguments, call, pointer, absent)                                              \
    GL_API result GL_APIENTRY name arguments                                                                           \
    {                                                                                                                  \
        if (!currentContext() || !pointer) return absent;                                                              \
        return pointer call;                                                                                           \
    }
#include "frontend/passthrough.def"

GL_API void GL_APIENTRY glBindBuffer(GLenum target, GLuint buffer)
{
    GLIContext *ctx = currentContext();
    if (!ctx) return;

    bindBufferName(ctx, target, buffer);
    if (glBindBuffer_2_0) glBindBuffer_2_0(target, buffer);
}

GL_API void GL_APIENTRY glDeleteBuffers(GLsizei n, const GLuint *buffers)
{
    GLIContext *ctx = currentContext();
    if (!ctx) return;
    if (!assertThat(glDeleteBuffers_2_0 != nullptr, "glDeleteBuffers_2_0")) return;

    for (GLsizei i = 0; i < n; ++i)
        forgetBufferName(ctx, buffers[i]);
    glDeleteBuffers_2_0(n, buffers);
}

GL_API void GL_APIENTRY glClearColorx(GLfixed red, GLfixed green, GLfixed blue, GLfixed alpha)
{
    if (!currentContext() || !glClearColor_2_0) return;
    glClearColor_2_0(floatFromFixed(red), floatFromFixed(green), floatFromFixed(blue), floatFromFixed(alpha));
}

GL_API void GL_APIENTRY glClearDepthx(GLfixed depth)
{
    if (currentContext()) glClearDepthf(floatFromFixed(depth));
}

GL_API void GL_APIENTRY glPolygonOffsetx(GLfixed factor, GLfixed units)
{
    if (currentContext()) glPolygonOffset(floatFromFixed(factor), floatFromFixed(units));
}

GL_API void GL_APIENTRY glSampleCoveragex(GLclampx value, GLboolean invert)
{
    if (currentContext()) glSampleCoverage(floatFromFixed(value), invert);
}

GL_API void GL_APIENTRY glLineWidthx(GLfixed width)
{
    if (currentContext()) glLineWidth(floatFromFixed(width));
}
