// SPDX-License-Identifier: MIT
#include "frontend/error.h"

#include "frontend/backend.h"
#include "frontend/current.h"

static GLenum backendError()
{
    return glGetError_2_0 ? glGetError_2_0() : GLenum(GL_NO_ERROR);
}

void __glSetError(GLenum error)
{
    GLIContext *ctx = currentContext();
    if (!ctx || ctx->error != GL_NO_ERROR) return;

    const GLenum pending = backendError();
    ctx->error = pending != GL_NO_ERROR ? pending : error;
}

GL_API GLenum GL_APIENTRY glGetError(void)
{
    GLIContext *ctx = currentContext();
    if (!ctx) return GL_NO_ERROR;

    const GLenum error = ctx->error != GL_NO_ERROR ? ctx->error : backendError();
    ctx->error = GL_NO_ERROR;
    return error;
}
