// SPDX-License-Identifier: MIT
// Textured rectangles of the window (GL_OES_draw_texture): four vertices in normalised device coordinates, drawn as a
// fan through the ordinary validation with the short pass-through vertex shader.
#include "frontend/backend.h"
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "settings/dumps.h"
#include "shadergen/program_cache.h"
#include "vertex/draw.h"

namespace {

struct QuadVertex {
    GLfloat position[3];
    GLfloat texCoord[kTextureUnits][4]; // s, t, 0, 1 of each unit
};
static_assert(sizeof(QuadVertex) == 44);

struct Rect {
    GLfloat left, bottom, right, top;
};

// Texture coordinates of one unit.
struct UnitCoords {
    Rect rect;
    GLint size; // components of the attribute
};

// To normalised device coordinates. The viewport's origin plays no part: x and y count from its lower left corner.
Rect windowRect(const ViewportState &viewport, GLfloat x, GLfloat y, GLfloat width, GLfloat height)
{
    const auto viewWidth = static_cast<GLfloat>(viewport.width);
    const auto viewHeight = static_cast<GLfloat>(viewport.height);
    return {.left = 2.0f * x / viewWidth - 1.0f,
            .bottom = 2.0f * y / viewHeight - 1.0f,
            .right = 2.0f * (x + width) / viewWidth - 1.0f,
            .top = 2.0f * (y + height) / viewHeight - 1.0f};
}

GLfloat windowDepth(const ViewportState &viewport, GLfloat z)
{
    if (z <= 0.0f) return viewport.depthNear;
    if (z >= 1.0f) return viewport.depthFar;
    return viewport.depthNear + (viewport.depthFar - viewport.depthNear) * z;
}

// a + b as the sum of a 32-bit machine, which wraps.
GLfloat floatSum(GLint a, GLint b)
{
    return static_cast<GLfloat>(static_cast<GLint>(static_cast<GLuint>(a) + static_cast<GLuint>(b)));
}

// The crop rectangle over the size of level 0. A texture without an image has size 0, and the quotients are what the
// float division gives.
Rect cropRect(const TextureObject *object)
{
    const GLint *crop = object->cropRect;
    const auto width = static_cast<GLfloat>(static_cast<GLuint>(object->width[0]));
    const auto height = static_cast<GLfloat>(static_cast<GLuint>(object->height[0]));
    return {.left = static_cast<GLfloat>(crop[0]) / width,
            .bottom = static_cast<GLfloat>(crop[1]) / height,
            .right = floatSum(crop[0], crop[2]) / width,
            .top = floatSum(crop[1], crop[3]) / height};
}

UnitCoords unitCoords(const GLIContext *ctx, uint32_t unit)
{
    // Every unit takes its rectangle from the active unit's textures, not from its own.
    const uint32_t active = ctx->current.activeUnit;
    if (ctx->enables.textureCubeMap[unit]) return {cropRect(ctx->bindings.textureCubeMap[active]), 3};
    if (ctx->enables.texture2D[unit]) return {cropRect(ctx->bindings.texture2D[active]), 2};
    return {{}, 2};
}

QuadVertex quadVertex(GLfloat x, GLfloat y, GLfloat z)
{
    return {.position = {x, y, z}, .texCoord = {{0.0f, 0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void setTexCoords(QuadVertex quad[4], uint32_t unit, const Rect &rect)
{
    const GLfloat corner[4][2] = {
        {rect.left, rect.bottom}, {rect.right, rect.bottom}, {rect.right, rect.top}, {rect.left, rect.top}};
    for (uint32_t i = 0; i < 4; ++i) {
        quad[i].texCoord[unit][0] = corner[i][0];
        quad[i].texCoord[unit][1] = corner[i][1];
    }
}

void bindFloats(GLint location, GLint size, const GLfloat *first)
{
    glVertexAttribPointer_2_0(static_cast<GLuint>(location), size, GL_FLOAT, GL_FALSE, sizeof(QuadVertex), first);
    glEnableVertexAttribArray_2_0(static_cast<GLuint>(location));
}

// The attributes stay enabled: the next ordinary draw binds all of its own.
void submitQuad(const GLIContext *ctx, const QuadVertex quad[4], const GLint coordSize[kTextureUnits])
{
    const GLuint program = ctx->currentEntry->program;
    const GLint vertexLocation = glGetAttribLocation_2_0(program, "gles_Vertex");
    const GLint colorLocation = glGetAttribLocation_2_0(program, "gles_Color");
    const GLint coordLocation[kTextureUnits] = {glGetAttribLocation_2_0(program, "gles_MultiTexCoord0"),
                                                glGetAttribLocation_2_0(program, "gles_MultiTexCoord1")};

    glBindBuffer_2_0(GL_ARRAY_BUFFER, 0);
    bindFloats(vertexLocation, 3, quad[0].position);
    if (colorLocation != -1) {
        glVertexAttrib4fv_2_0(static_cast<GLuint>(colorLocation), ctx->current.color);
        glDisableVertexAttribArray_2_0(static_cast<GLuint>(colorLocation));
    }
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit)
        if (coordLocation[unit] != -1) bindFloats(coordLocation[unit], coordSize[unit], quad[0].texCoord[unit]);
    glDrawArrays_2_0(GL_TRIANGLE_FAN, 0, 4);
    glBindBuffer_2_0(GL_ARRAY_BUFFER, ctx->arrays.arrayBuffer);
}

void drawTexture(GLIContext *ctx, GLfloat x, GLfloat y, GLfloat z, GLfloat width, GLfloat height)
{
    // Written so that NaN is refused. Checked in interface-only mode too.
    if (!(width > 0.0f) || !(height > 0.0f)) return __glSetError(GL_INVALID_VALUE);
    if (ctx->settings.interfaceOnly) return;

    ctx->primitiveFlags |= PRIMITIVE_DRAW_TEXTURE;
    ctx->dirty |= DIRTY_PALETTE;
    if (!validateShadowState(ctx)) return;
    if (ctx->settings.dumps) [[unlikely]]
        dumpDraw(ctx);

    const Rect window = windowRect(ctx->viewport, x, y, width, height);
    const GLfloat depth = windowDepth(ctx->viewport, z);
    QuadVertex quad[4] = {
        quadVertex(window.left, window.bottom, depth),
        quadVertex(window.right, window.bottom, depth),
        quadVertex(window.right, window.top, depth),
        quadVertex(window.left, window.top, depth),
    };
    GLint coordSize[kTextureUnits];
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        const UnitCoords coords = unitCoords(ctx, unit);
        setTexCoords(quad, unit, coords.rect);
        coordSize[unit] = coords.size;
    }
    submitQuad(ctx, quad, coordSize);

    ctx->primitiveFlags = 0;
    // Everything else was consumed; the arrays must be bound again.
    ctx->dirty = DIRTY_ARRAYS;
}

} // namespace

GL_API void GL_APIENTRY glDrawTexfOES(GLfloat x, GLfloat y, GLfloat z, GLfloat width, GLfloat height)
{
    if (GLIContext *ctx = changingContext()) drawTexture(ctx, x, y, z, width, height);
}

GL_API void GL_APIENTRY glDrawTexfvOES(const GLfloat *coords)
{
    if (currentContext()) glDrawTexfOES(coords[0], coords[1], coords[2], coords[3], coords[4]);
}

GL_API void GL_APIENTRY glDrawTexiOES(GLint x, GLint y, GLint z, GLint width, GLint height)
{
    glDrawTexfOES(static_cast<GLfloat>(x), static_cast<GLfloat>(y), static_cast<GLfloat>(z),
                  static_cast<GLfloat>(width), static_cast<GLfloat>(height));
}

GL_API void GL_APIENTRY glDrawTexivOES(const GLint *coords)
{
    if (currentContext()) glDrawTexiOES(coords[0], coords[1], coords[2], coords[3], coords[4]);
}

GL_API void GL_APIENTRY glDrawTexsOES(GLshort x, GLshort y, GLshort z, GLshort width, GLshort height)
{
    glDrawTexfOES(x, y, z, width, height);
}

GL_API void GL_APIENTRY glDrawTexsvOES(const GLshort *coords)
{
    if (currentContext()) glDrawTexsOES(coords[0], coords[1], coords[2], coords[3], coords[4]);
}

GL_API void GL_APIENTRY glDrawTexxOES(GLfixed x, GLfixed y, GLfixed z, GLfixed width, GLfixed height)
{
    glDrawTexfOES(floatFromFixed(x), floatFromFixed(y), floatFromFixed(z), floatFromFixed(width),
                  floatFromFixed(height));
}

GL_API void GL_APIENTRY glDrawTexxvOES(const GLfixed *coords)
{
    if (currentContext()) glDrawTexxOES(coords[0], coords[1], coords[2], coords[3], coords[4]);
}
