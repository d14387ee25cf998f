// SPDX-License-Identifier: MIT
// The matrix stacks and the matrix commands (OpenGL ES 1.1, 2.10.2; OES_matrix_palette for the fifth target). Every
// entry is a float matrix with its class; fixed-point commands convert their arguments.
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "math/fp_matrix.h"
#include "math/matrix_commands.h"

namespace {

// Entries above the bottom one, at most. None for the palette, which is never pushed.
constexpr uint32_t kStackRoom[STACK_COUNT] = {kModelviewDepth - 1, kProjectionDepth - 1, kTextureMatrixDepth - 1,
                                              kTextureMatrixDepth - 1, 0};
constexpr uint32_t kStackDirty[STACK_COUNT] = {DIRTY_TRANSFORM, DIRTY_TRANSFORM, DIRTY_TEXTURE_MATRIX0,
                                               DIRTY_TEXTURE_MATRIX1, DIRTY_PALETTE};

// What follows a change of any stack but the modelview's. Out of line: most changes are the modelview's.
[[gnu::noinline]] void notifyOtherChange(GLIContext *ctx)
{
    const uint32_t stack = ctx->transform.currentStack;
    ctx->derivedFor = 0;
    if (stack == STACK_PROJECTION) {
        gliAdjustProjectionMatrix(ctx);
    } else if (stack == STACK_PALETTE) {
        markPaletteMatrix(ctx, ctx->palette.currentIndex);
    } else {
        ctx->keyDirty |= keyDirtyTexMatrix(stack - STACK_TEXTURE0);
    }
    ctx->dirty |= kStackDirty[stack];
    ctx->transform.uniformDirty |= kStackDirty[stack];
}

MatrixRecord *currentTop(const GLIContext *ctx)
{
    return ctx->transform.top[ctx->transform.currentStack];
}

// Marks everything that depends on the current stack after its top entry changed.
void notifyChange(GLIContext *ctx)
{
    if (ctx->transform.currentStack != STACK_MODELVIEW) [[unlikely]]
        return notifyOtherChange(ctx);
    ctx->dirty |= DIRTY_TRANSFORM;
    ctx->transform.uniformDirty |= DIRTY_TRANSFORM;
}

// Lets a command's arguments wait in memory, as one vector, while the context is read: registers that survive that call
// would have to be saved and restored, one for each.
void waitInMemory(Column &arguments)
{
    asm("" : "+m"(arguments));
}

// A vector with that first component and any others. An argument lies in the first of such a register already, which
// GCC does not see by itself.
Column withFirst(float first)
{
#if defined(__SSE2__) && !defined(__clang__)
    Column column;
    asm("" : "=x"(column) : "0"(first));
    return column;
#else
    return __builtin_shufflevector(Column{first}, Column{first}, 0, -1, -1, -1);
#endif
}

// top = top x factor. The class word of a product carries no other flags.
void multiplyTop(GLIContext *ctx, const MatrixRecord &factor, uint32_t factorClass)
{
    MatrixRecord *top = currentTop(ctx);
    top->flags = fp_matrix_postmul(top->f, factor.f, top->flags, factorClass) | MATRIX_FLOAT;
    notifyChange(ctx);
}

// False for a full stack. The callers give the most frequent stack as a constant.
[[gnu::always_inline]] inline bool push(TransformState &transform, uint32_t stack)
{
    if (transform.depth[stack] == kStackRoom[stack]) return false;
    transform.top[stack][1] = transform.top[stack][0];
    ++transform.top[stack];
    ++transform.depth[stack];
    return true;
}

// False for a stack of one entry.
[[gnu::always_inline]] inline bool pop(GLIContext *ctx, uint32_t stack)
{
    TransformState &transform = ctx->transform;
    if (transform.depth[stack] == 0) return false;
    --transform.top[stack];
    --transform.depth[stack];
    notifyChange(ctx);
    return true;
}

void initStack(TransformState &transform, MatrixStack stack, MatrixRecord *bottom)
{
    matrixfSetIdentity(bottom);
    transform.top[stack] = bottom;
    transform.depth[stack] = 0;
}

} // namespace

void initTransform(GLIContext *ctx)
{
    TransformState &transform = ctx->transform;
    transform.matrixMode = GL_MODELVIEW;
    transform.currentStack = STACK_MODELVIEW;
    initStack(transform, STACK_MODELVIEW, transform.modelview);
    initStack(transform, STACK_PROJECTION, transform.projection);
    initStack(transform, STACK_TEXTURE0, transform.texture[0]);
    initStack(transform, STACK_TEXTURE1, transform.texture[1]);
    fp_matrix3_load_identity(transform.normalMatrix);
    initPalette(ctx);
    transform.top[STACK_PALETTE] = &ctx->palette.matrices[0];
    transform.normalMatrixStale = 1;
    transform.uniformDirty |= DIRTY_TRANSFORM;
    ctx->dirty |= DIRTY_TRANSFORM;
}

void gliAdjustProjectionMatrix(GLIContext *ctx)
{
    TransformState &transform = ctx->transform;
    const MatrixRecord *projection = transform.top[STACK_PROJECTION];
    if (transform.projectionAdjustment.flags & MATRIX_IDENTITY) {
        transform.effectiveProjection = *projection;
    } else {
        matrixMultiply(&transform.projectionAdjustment, projection, &transform.effectiveProjection);
    }
}

void followActiveTexture(GLIContext *ctx, uint32_t oldUnit, uint32_t newUnit)
{
    if (ctx->transform.currentStack == STACK_TEXTURE0 + oldUnit) ctx->transform.currentStack = STACK_TEXTURE0 + newUnit;
}

GL_API void GL_APIENTRY glMatrixMode(GLenum mode)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    uint32_t stack;
    switch (mode) {
    case GL_MODELVIEW:
        stack = STACK_MODELVIEW;
        break;
    case GL_PROJECTION:
        stack = STACK_PROJECTION;
        break;
    case GL_TEXTURE:
        stack = STACK_TEXTURE0 + ctx->current.activeUnit;
        break;
    case GL_MATRIX_PALETTE_OES:
        stack = STACK_PALETTE;
        break;
    default:
        return __glSetError(GL_INVALID_ENUM);
    }

    ctx->transform.currentStack = stack;
    ctx->transform.matrixMode = mode;
}

GL_API void GL_APIENTRY glPushMatrix(void)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const uint32_t stack = ctx->transform.currentStack;
    const bool pushed = stack == STACK_MODELVIEW ? push(ctx->transform, STACK_MODELVIEW) : push(ctx->transform, stack);
    if (!pushed) __glSetError(GL_STACK_OVERFLOW);
}

GL_API void GL_APIENTRY glPopMatrix(void)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const uint32_t stack = ctx->transform.currentStack;
    const bool popped = stack == STACK_MODELVIEW ? pop(ctx, STACK_MODELVIEW) : pop(ctx, stack);
    if (!popped) __glSetError(GL_STACK_UNDERFLOW);
}

GL_API void GL_APIENTRY glLoadIdentity(void)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    matrixfSetIdentity(currentTop(ctx));
    notifyChange(ctx);
}

GL_API void GL_APIENTRY glLoadMatrixf(const GLfloat *m)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    matrixfLoad(m, currentTop(ctx));
    notifyChange(ctx);
}

GL_API void GL_APIENTRY glLoadMatrixx(const GLfixed *m)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    MatrixRecord *top = currentTop(ctx);
    matrixxLoad(m, top);
    matrixxToMatrixf_4(top, top);
    notifyChange(ctx);
}

GL_API void GL_APIENTRY glMultMatrixf(const GLfloat *m)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    MatrixRecord factor;
    matrixfLoad(m, &factor);
    multiplyTop(ctx, factor, factor.flags);
}

GL_API void GL_APIENTRY glMultMatrixx(const GLfixed *m)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    MatrixRecord factor;
    matrixxLoad(m, &factor);
    matrixxToMatrixf_4(&factor, &factor);
    multiplyTop(ctx, factor, factor.flags);
}

GL_API void GL_APIENTRY glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z)
{
    Column axisAndAngle = {x, y, z, angle};
    waitInMemory(axisAndAngle);
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    MatrixRecord *top = currentTop(ctx);
    top->flags = rotateMatrix(top->f, axisAndAngle, top->flags) | MATRIX_FLOAT;
    notifyChange(ctx);
}

GL_API void GL_APIENTRY glTranslatef(GLfloat x, GLfloat y, GLfloat z)
{
    const Column xy = __builtin_shufflevector(withFirst(x), withFirst(y), 0, 4, 1, 5);
    Column v = __builtin_shufflevector(xy, withFirst(z), 0, 1, 4, 5); // the fourth is not used
    waitInMemory(v);
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    MatrixRecord *top = currentTop(ctx);
    top->flags = translateMatrix(top->f, v, top->flags) | MATRIX_FLOAT;
    notifyChange(ctx);
}

GL_API void GL_APIENTRY glScalef(GLfloat x, GLfloat y, GLfloat z)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    MatrixRecord *top = currentTop(ctx);
    const uint32_t unrotated = top->flags & MATRIX_UNROTATED;
    top->flags = fp_matrix_scale(top->f, x, y, z, top->flags) | MATRIX_FLOAT | unrotated;
    notifyChange(ctx);
}

GL_API void GL_APIENTRY glOrthof(GLfloat l, GLfloat r, GLfloat b, GLfloat t, GLfloat n, GLfloat f)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const GLfloat width = r - l;
    const GLfloat height = t - b;
    const GLfloat depth = f - n;
    if (width == 0.0f || height == 0.0f || depth == 0.0f) return __glSetError(GL_INVALID_VALUE);

    // OpenGL ES 1.1, 2.10.2. Given as general although it is affine: the key then takes its general forms.
    MatrixRecord ortho;
    matrixfSetIdentity(&ortho);
    ortho.f[0] = 2.0f / width;
    ortho.f[12] = -(r + l) / width;
    ortho.f[5] = 2.0f / height;
    ortho.f[13] = -(t + b) / height;
    ortho.f[10] = -2.0f / depth;
    ortho.f[14] = -(n + f) / depth;
    multiplyTop(ctx, ortho, MATRIX_GENERAL);
}

GL_API void GL_APIENTRY glFrustumf(GLfloat l, GLfloat r, GLfloat b, GLfloat t, GLfloat n, GLfloat f)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;
    const GLfloat width = r - l;
    const GLfloat height = t - b;
    const GLfloat depth = f - n;
    if (n <= 0.0f || f <= 0.0f || width == 0.0f || height == 0.0f || depth == 0.0f)
        return __glSetError(GL_INVALID_VALUE);

    // OpenGL ES 1.1, 2.10.2.
    const GLfloat twiceNear = n + n;
    MatrixRecord frustum = {};
    frustum.f[0] = twiceNear / width;
    frustum.f[5] = twiceNear / height;
    frustum.f[8] = (r + l) / width;
    frustum.f[9] = (t + b) / height;
    frustum.f[10] = -(f + n) / depth;
    frustum.f[11] = -1.0f;
    frustum.f[14] = n * -2.0f * f / depth;
    multiplyTop(ctx, frustum, MATRIX_GENERAL);
}

GL_API void GL_APIENTRY glRotatex(GLfixed angle, GLfixed x, GLfixed y, GLfixed z)
{
    glRotatef(floatFromFixed(angle), floatFromFixed(x), floatFromFixed(y), floatFromFixed(z));
}

GL_API void GL_APIENTRY glTranslatex(GLfixed x, GLfixed y, GLfixed z)
{
    glTranslatef(floatFromFixed(x), floatFromFixed(y), floatFromFixed(z));
}

GL_API void GL_APIENTRY glScalex(GLfixed x, GLfixed y, GLfixed z)
{
    glScalef(floatFromFixed(x), floatFromFixed(y), floatFromFixed(z));
}

GL_API void GL_APIENTRY glOrthox(GLfixed l, GLfixed r, GLfixed b, GLfixed t, GLfixed n, GLfixed f)
{
    glOrthof(floatFromFixed(l), floatFromFixed(r), floatFromFixed(b), floatFromFixed(t), floatFromFixed(n),
             floatFromFixed(f));
}

GL_API void GL_APIENTRY glFrustumx(GLfixed l, GLfixed r, GLfixed b, GLfixed t, GLfixed n, GLfixed f)
{
    glFrustumf(floatFromFixed(l), floatFromFixed(r), floatFromFixed(b), floatFromFixed(t), floatFromFixed(n),
               floatFromFixed(f));
}
