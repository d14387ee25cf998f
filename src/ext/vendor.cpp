// SPDX-License-Identifier: MIT
// Vendor entry points. Most go to the backend, which may not have them.
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/current.h"
#include "frontend/error.h"

// A row becomes:
// GL_API void GL_APIENTRY glGetTexturesQRN(GLuint *textures, GLint maxTextures, GLint *numTextures)
// {
//     if (!currentContext() || !glGetTexturesQRN_2_0) return void();
//     return glGetTexturesQRN_2_0(textures, maxTextures, numTextures);
// }
#define VENDOR_SILENT(name, result, arguments, call, pointer)                                                          \
    GL_API result GL_APIENTRY name arguments                                                                           \
    {                                                                                                                  \
        if (!currentContext() || !pointer) return result();                                                            \
        return pointer call;                                                                                           \
    }
#define VENDOR_LOUD(name, arguments, call, pointer)                                                                    \
    GL_API void GL_APIENTRY name arguments                                                                             \
    {                                                                                                                  \
        if (!currentContext()) return;                                                                                 \
        if (pointer) return pointer call;                                                                              \
        __glSetError(GL_INVALID_OPERATION);                                                                            \
        assertThat(false, #pointer);                                                                                   \
    }
#include "ext/vendor_forward.def"

GL_API void GL_APIENTRY glFogCoordf(GLfloat coord)
{
    if (GLIContext *ctx = currentContext()) ctx->vendor.fogCoord = coord;
}

GL_API void GL_APIENTRY glAlphaFactorfZEK(GLfloat factor)
{
    if (GLIContext *ctx = currentContext()) ctx->vendor.alphaFactor = factor;
}

GL_API void GL_APIENTRY glGetBufferPointervZEK(GLenum target, void **params)
{
    if (!currentContext()) return;
    if (target != GL_ARRAY_BUFFER && target != GL_ELEMENT_ARRAY_BUFFER) {
        *params = nullptr;
        return __glSetError(GL_INVALID_ENUM);
    }
    if (!glGetBufferPointervZEK_2_0) {
        *params = nullptr;
        __glSetError(GL_INVALID_OPERATION);
        assertThat(false, "glGetBufferPointervZEK_2_0");
        return;
    }
    glGetBufferPointervZEK_2_0(target, params);
}

// The hints say what kind of matrix is given; the load finds out itself.
GL_API void GL_APIENTRY glMultMatrixfWithHintZEK(const GLfloat *m, ...)
{
    glMultMatrixf(m);
}

GL_API void GL_APIENTRY glLoadMatrixfWithHintZEK(const GLfloat *m, ...)
{
    glLoadMatrixf(m);
}
