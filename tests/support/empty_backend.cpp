// SPDX-License-Identifier: MIT
#include "support/empty_backend.h"

#include "frontend/backend.h"
#include "frontend/current.h"
#include "frontend/lifecycle.h"

namespace {

GLuint lastName = 0;     // of shaders and programs
GLint lastLocation = -1; // of the program made last

template <typename R, typename... A>
R GL_APIENTRY doNothing(A...)
{
    return R();
}

GLuint GL_APIENTRY createShader(GLenum)
{
    return ++lastName;
}

GLuint GL_APIENTRY createProgram()
{
    lastLocation = -1;
    return ++lastName;
}

GLint GL_APIENTRY nextLocation(GLuint, const GLchar *)
{
    return ++lastLocation;
}

} // namespace

void useEmptyBackend()
{
    // A row becomes: glClear_2_0 = doNothing;
#define BACKEND(name, result, arguments, visibility, group, need) name##_2_0 = doNothing;
#include "frontend/backend.def"
    glCreateShader_2_0 = createShader;
    glCreateProgram_2_0 = createProgram;
    glGetUniformLocation_2_0 = nextLocation;
    glGetAttribLocation_2_0 = nextLocation;
    glAlphaFuncQRN_2_0 = nullptr;
    glFogfvQRN_2_0 = nullptr;
}

GLIContext *createEmptyBackendContext()
{
    useEmptyBackend();
    auto *ctx = static_cast<GLIContext *>(os_malloc(sizeof(GLIContext)));
    if (!ctx) return nullptr;
    os_memset(ctx, 0, sizeof(GLIContext));
    if (!gliInitContext(ctx)) {
        gliDestroyContext(ctx);
        return nullptr;
    }
    ctx->initialised = 1;
    if (__gl_tls_index == 0) __gl_tls_index = os_tls_alloc();
    os_tls_write(__gl_tls_index, ctx);
    return ctx;
}
