// SPDX-License-Identifier: MIT
// Draws, and what the driver cannot do of them by itself: flat shading, smooth lines, wide lines, logic operations.
#include "capabilities.h"
#include "expanded_draws.h"
#include "primitive_vertices.h"
#include "waiting_loads.h"

#include <algorithm>
#include <cmath>
#include <cstring>

void GL_APIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    if (currentContext && width >= 0 && height >= 0) {
        const GLint viewport[4] = {x, y, width, height};
        memcpy(currentContext->viewport, viewport, sizeof viewport);
    }
    driver.glViewport(x, y, width, height);
}

// Lines that are not smooth have a whole number of pixels.
static GLfloat wholePixels(GLfloat width)
{
    return std::max(std::round(width), 1.0f);
}

void updateSpecialDraws(Context *context)
{
    context->drawsExpanded = context->wideLines || findLogicOp(context) != LogicOp::Off;
    context->specialDraws = (context->specialDraws & ~DRAWS_EXPANDED) | expandedDraws(context, context->program);
}

void GL_APIENTRY glLineWidth(GLfloat width)
{
    Context *context = currentContext;
    if (!context || context->lineWidth == width) return;
    if (width > 0.0f) { // other widths are the driver's error
        context->lineWidth = width;
        context->wideLines = wholePixels(width) > context->group->abilities.widestLine;
        updateSpecialDraws(context);
    }
    driver.glLineWidth(width);
}

// For the program in use in the driver.
static void loadLineUniforms(const Context *context, LineUniforms &lines, GLfloat width)
{
    const GLfloat size[2] = {static_cast<GLfloat>(context->viewport[2]), static_cast<GLfloat>(context->viewport[3])};
    if (memcmp(size, lines.loadedViewportSize, sizeof size) != 0) {
        memcpy(lines.loadedViewportSize, size, sizeof size);
        driver.glUniform2fv(lines.viewportSizeLocation, 1, size);
    }
    if (lines.loadedLineWidth != width) {
        lines.loadedLineWidth = width;
        driver.glUniform1f(lines.lineWidthLocation, width);
    }
}

// The rectangles made of lines are neither culled nor offset: they are lines. Returns the switches turned off for them.
static uint32_t beginLines(const Context *context)
{
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

static void drawInDriver(const DrawCall &call)
{
    if (call.type)
        driver.glDrawElements(call.mode, call.count, call.type, call.indices);
    else
        driver.glDrawArrays(call.mode, call.first, call.count);
}

// What the program in use does not bring to a draw of this mode by itself.
static Expansion missingExpansion(const Context *context, GLenum mode)
{
    const LinkedProgram *program = context->program;
    const bool narrow = program->lineCoordLost || (context->wideLines && !program->expandsLines);
    if (narrow && isLineMode(mode)) return Expansion::Lines;
    const bool points = mode == GL_POINTS; // have one vertex, and so its flat values
    return program->flatLost && !points ? Expansion::FlatShading : Expansion::None;
}

// False when the draw cannot be expanded; nothing is drawn then.
static bool drawWithExpanded(Context *context, const DrawCall &call, Expansion expansion, bool logicOp)
{
    const std::lock_guard guard(context->group->lock);
    ExpandedProgram *expanded = findExpanded(context, expansion, logicOp);
    if (!expanded) return false;
    enterExpanded(context->program, expanded);
    if (logicOp) loadLogicOp(context, expanded->logicOp);
    uint32_t off = 0;
    if (expanded->expandsLines) {
        const bool smooth = context->program->lineCoordLost || context->program->expandsLines;
        const GLfloat width = smooth ? context->lineWidth : wholePixels(context->lineWidth);
        loadLineUniforms(context, expanded->lines, width);
        off = beginLines(context);
    }
    bool drawn = true;
    if (expanded->doubled)
        drawn = drawPairedVertices(context, expanded, call, expansion);
    else
        drawInDriver(call);
    endLines(off);
    driver.glUseProgram(context->program->driverProgram);
    return drawn;
}

// A draw that is an error, or draws nothing, is the driver's to judge.
static bool canBeExpanded(const DrawCall &call)
{
    const bool known = call.type == 0 || call.type == GL_UNSIGNED_BYTE || call.type == GL_UNSIGNED_SHORT;
    return known && call.first >= 0 && call.count > 0 && call.mode <= GL_TRIANGLE_FAN;
}

static void drawExpanded(Context *context, const DrawCall &call, bool logicOp)
{
    if (!canBeExpanded(call)) return drawInDriver(call);
    const Expansion expansion = missingExpansion(context, call.mode);
    if (logicOp && drawWithExpanded(context, call, expansion, true)) return;
    if (expansion != Expansion::None && drawWithExpanded(context, call, expansion, false)) return;
    // Lines that cannot be widened may still have their flat colours.
    const bool flat = expansion == Expansion::Lines && context->program->flatLost;
    if (flat && drawWithExpanded(context, call, Expansion::FlatShading, false)) return;
    if (!context->program->expandsLines) return drawInDriver(call);

    loadLineUniforms(context, context->program->lines, context->lineWidth);
    const uint32_t off = beginLines(context);
    drawInDriver(call);
    endLines(off);
}

static void drawSpecially(Context *context, const DrawCall &call)
{
    const LogicOp logicOp = findLogicOp(context);
    // A logic operation takes the place of blending.
    const bool blends = logicOp != LogicOp::Off && context->capabilities.driver & DRIVER_BLEND;
    if (blends) driver.glDisable(GL_BLEND);
    drawExpanded(context, call, logicOp == LogicOp::Program);
    if (blends) driver.glEnable(GL_BLEND);
}

// Kept out of line, so that other draws are a test and a jump. What most of these need is no more than loads.
[[gnu::noinline]] static void drawArraysSpecially(GLenum mode, GLint first, GLsizei count)
{
    Context *context = currentContext;
    loadWaiting(context);
    if (!context->specialDraws) [[likely]]
        return driver.glDrawArrays(mode, first, count);
    drawSpecially(context, {.mode = mode, .first = first, .count = count, .type = 0, .indices = nullptr});
}

[[gnu::noinline]] static void drawElementsSpecially(GLenum mode, GLsizei count, GLenum type, const void *indices)
{
    Context *context = currentContext;
    loadWaiting(context);
    if (!context->specialDraws) [[likely]]
        return driver.glDrawElements(mode, count, type, indices);
    drawSpecially(context, {.mode = mode, .first = 0, .count = count, .type = type, .indices = indices});
}

void GL_APIENTRY glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    if (heldState->specialDraws) [[unlikely]]
        return drawArraysSpecially(mode, first, count);
    driver.glDrawArrays(mode, first, count);
}

void GL_APIENTRY glDrawElements(GLenum mode, GLsizei count, GLenum type, const void *indices)
{
    if (heldState->specialDraws) [[unlikely]]
        return drawElementsSpecially(mode, count, type, indices);
    driver.glDrawElements(mode, count, type, indices);
}
