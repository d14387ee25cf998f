// SPDX-License-Identifier: MIT
// glGet*, glIsEnabled and glGetString (OpenGL ES 1.1, 6.1). Our names are one list; the rest is the backend's.
#include "query/state.h"

#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "query/convert.h"

namespace {

constexpr uint32_t kMaxValues = 16; // of one name: a matrix

struct Answer {
    const void *values;
    uint32_t count;
    QueryKind kind;
};

const float *floatMatrix(const GLIContext *ctx, uint32_t stack)
{
    const MatrixRecord *top = ctx->transform.top[stack];
    assertThat(top->flags & MATRIX_FLOAT, "float matrix for a query");
    return top->f;
}

void askBackend(GLenum pname, GLint *values)
{
    if (assertThat(glGetIntegerv_2_0 != nullptr, "glGetIntegerv_2_0")) glGetIntegerv_2_0(pname, values);
}

// The answer for one of our names; room takes integers that stand in no record. Null values for a name of the backend.
Answer answerFor(const GLIContext *ctx, GLenum pname, GLint room[kMaxValues])
{
    const uint32_t unit = ctx->current.activeUnit;
    const uint32_t client = ctx->arrays.clientUnit;
    switch (pname) {
#define QUERY_INTEGER(name, value)                                                                                     \
    case name:                                                                                                         \
        room[0] = static_cast<GLint>(value);                                                                           \
        return {room, 1, QUERY_KIND_INTEGER};
#define QUERY_INTEGERS(name, number, ...)                                                                              \
    case name: {                                                                                                       \
        const GLint list[number] = __VA_ARGS__;                                                                        \
        os_memcpy(room, list, sizeof(list));                                                                           \
        return {room, number, QUERY_KIND_INTEGER};                                                                     \
    }
#define QUERY_FLOATS(name, number, pointer)                                                                            \
    case name:                                                                                                         \
        return {pointer, number, QUERY_KIND_FLOAT};
#define QUERY_COLORS(name, number, pointer)                                                                            \
    case name:                                                                                                         \
        return {pointer, number, QUERY_KIND_NORMALISED};
#define QUERY_BACKEND(name, number, asked)                                                                             \
    case name:                                                                                                         \
        askBackend(asked, room);                                                                                       \
        return {room, number, QUERY_KIND_INTEGER};
#define QUERY_NOTHING(name)                                                                                            \
    case name:                                                                                                         \
        return {room, 0, QUERY_KIND_INTEGER};
#include "query/state_names.def"
    default:
        return {nullptr, 0, QUERY_KIND_INTEGER};
    }
}

// The device's own alpha test keeps its own state.
bool isBackendAlphaTest(const GLIContext *ctx, GLenum pname)
{
    return !ctx->backend.lacksAlphaFunc && pname >= GL_ALPHA_TEST && pname <= GL_ALPHA_TEST_REF;
}

} // namespace

uint32_t queryState(const GLIContext *ctx, uint32_t output, GLenum pname, void *out)
{
    GLint room[kMaxValues] = {};
    const Answer answer = answerFor(ctx, pname, room);
    if (!answer.values) return 0;
    convertQueryValues(answer.values, answer.count, answer.kind, output, out);
    return 1;
}

GL_API void GL_APIENTRY glGetBooleanv(GLenum pname, GLboolean *params)
{
    const GLIContext *ctx = currentContext();
    if (!ctx || !assertThat(glGetBooleanv_2_0 != nullptr, "glGetBooleanv_2_0")) return;

    if (!isBackendAlphaTest(ctx, pname) && queryState(ctx, QUERY_OUTPUT_BOOLEAN, pname, params)) return;
    glGetBooleanv_2_0(pname, params);
}

GL_API void GL_APIENTRY glGetIntegerv(GLenum pname, GLint *params)
{
    const GLIContext *ctx = currentContext();
    if (!ctx || !assertThat(glGetIntegerv_2_0 != nullptr, "glGetIntegerv_2_0")) return;

    if (!isBackendAlphaTest(ctx, pname) && queryState(ctx, QUERY_OUTPUT_INTEGER, pname, params)) return;
    glGetIntegerv_2_0(pname, params);
}

GL_API void GL_APIENTRY glGetFloatv(GLenum pname, GLfloat *params)
{
    const GLIContext *ctx = currentContext();
    if (!ctx || !assertThat(glGetFloatv_2_0 != nullptr, "glGetFloatv_2_0")) return;

    if (!isBackendAlphaTest(ctx, pname) && queryState(ctx, QUERY_OUTPUT_FLOAT, pname, params)) return;
    glGetFloatv_2_0(pname, params);
}

GL_API void GL_APIENTRY glGetFixedv(GLenum pname, GLfixed *params)
{
    const GLIContext *ctx = currentContext();
    if (!ctx) return;

    if (!isBackendAlphaTest(ctx, pname) && queryState(ctx, QUERY_OUTPUT_FIXED, pname, params)) return;
    if (!glGetFixedvQRN_2_0) return __glSetError(GL_INVALID_ENUM);
    glGetFixedvQRN_2_0(pname, params);
}

GL_API GLboolean GL_APIENTRY glIsEnabled(GLenum cap)
{
    const GLIContext *ctx = currentContext();
    if (!ctx || !assertThat(glIsEnabled_2_0 != nullptr, "glIsEnabled_2_0")) return GL_FALSE;

    // Any of our names is answered; the first value decides. A matrix has sixteen.
    GLboolean values[kMaxValues] = {};
    const bool ours = cap != GL_ALPHA_TEST || ctx->backend.lacksAlphaFunc;
    if (ours && queryState(ctx, QUERY_OUTPUT_BOOLEAN, cap, values)) return values[0];
    return glIsEnabled_2_0(cap);
}

GL_API const GLubyte *GL_APIENTRY glGetString(GLenum name)
{
    if (!currentContext()) return nullptr;

    const char *text = nullptr;
    switch (name) {
    case GL_VENDOR:
        text = "Quorvane, Inc.";
        break;
    case GL_RENDERER:
        text = "QRN N614";
        break;
    case GL_VERSION:
        text = "OpenGL ES-CM 1.1";
        break;
    case GL_EXTENSIONS:
        text = "GL_QRN_compressed_R2X_texture GL_QRN_compressed_ZTC_texture GL_QRN_performance_monitor "
               "GL_ZEK_compressed_texture_zektc GL_ZEK_texture_compression_zektc GL_OES_blend_equation_separate "
               "GL_OES_blend_func_separate GL_OES_blend_subtract GL_OES_compressed_ETC1_RGB8_texture "
               "GL_OES_compressed_paletted_texture GL_OES_draw_texture GL_OES_extended_matrix_palette "
               "GL_OES_EGL_image GL_OES_EGL_image_external GL_OES_framebuffer_object GL_OES_matrix_palette "
               "GL_OES_point_size_array GL_OES_point_sprite GL_OES_read_format GL_OES_stencil_wrap "
               "GL_OES_texture_cube_map GL_OES_texture_env_crossbar GL_OES_texture_mirrored_repeat ";
        break;
    default:
        __glSetError(GL_INVALID_ENUM);
        return nullptr;
    }
    return reinterpret_cast<const GLubyte *>(text);
}
