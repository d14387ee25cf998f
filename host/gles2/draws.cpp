// SPDX-License-Identifier: MIT
// Draws, and the line expansion around some of them.
#include "capabilities.h"

#include <cstring>

void GL_APIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    if (currentContext && width >= 0 && height >= 0) {
        const GLint viewport[4] = {x, y, width, height};
        memcpy(currentContext->viewport, viewport, sizeof viewport);
    }
    driver.glViewport(x, y, width, height);
}

void GL_APIENTRY glLineWidth(GLfloat width)
{
    Context *context = currentContext;
    if (!context || context->lineWidth == width) return;
    if (width > 0.0f) context->lineWidth = width; // other widths are the driver's error
    driver.glLineWidth(width);
}

static void loadLineUniforms(const Context *context, LinkedProgram *program)
{
    const GLfloat size[2] = {static_cast<GLfloat>(context->viewport[2]), static_cast<GLfloat>(context->viewport[3])};
    if (memcmp(size, program->loadedViewportSize, sizeof size) != 0) {
        memcpy(program->loadedViewportSize, size, sizeof size);
        driver.glUniform2fv(program->viewportSizeLocation, 1, size);
    }
    if (program->loadedLineWidth != context->lineWidth) {
        program->loadedLineWidth = context->lineWidth;
        driver.glUniform1f(program->lineWidthLocation, context->lineWidth);
    }
}

// The rectangles made of lines are neither culled nor offset: they are lines. Returns the switches turned off for them.
static uint32_t beginLines(const Context *context)
{
    loadLineUniforms(context, context->program);
    const uint32_t off = context->capabilities.driver & (DRIVER_CULL_FACE | DRIVER_POLYGON_OFFSET_FILL);
    if (off & DRIVER_CULL_FACE) driver.glDisable(GL_CULL_FACE);
    if (off & DRIVER_POLYGON_OFFSET_FILL) driver.glDisable(GL_POLYGON_OFFSET_FILL);
    return off;
}

static void endLines(uint32_t off)
{
    if (off & DRIVER_CULL_FACE) driver.glEnable(GL_CULL_FACE);
    if (off & DRIVER_POLYGON_OFFSET_FILL) driver.glEnable(GL_POLYGON_OFFSET_FILL);
}

static bool expandsLines()
{
    const Context *context = currentContext;
    return context && context->program && context->program->expandsLines;
}

// Kept out of line, so that other draws are a test and a jump.
[[gnu::noinline]] static void drawArraysOfLines(GLenum mode, GLint first, GLsizei count)
{
    const uint32_t off = beginLines(currentContext);
    driver.glDrawArrays(mode, first, count);
    endLines(off);
}

[[gnu::noinline]] static void drawElementsOfLines(GLenum mode, GLsizei count, GLenum type, const void *indices)
{
    const uint32_t off = beginLines(currentContext);
    driver.glDrawElements(mode, count, type, indices);
    endLines(off);
}

void GL_APIENTRY glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    if (expandsLines()) [[unlikely]]
        return drawArraysOfLines(mode, first, count);
    driver.glDrawArrays(mode, first, count);
}

void GL_APIENTRY glDrawElements(GLenum mode, GLsizei count, GLenum type, const void *indices)
{
    if (expandsLines()) [[unlikely]]
        return drawElementsOfLines(mode, count, type, indices);
    driver.glDrawElements(mode, count, type, indices);
}
