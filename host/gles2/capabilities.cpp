// SPDX-License-Identifier: MIT
#include "capabilities.h"

static uint32_t driverBit(GLenum capability)
{
    switch (capability) {
    case GL_BLEND:
        return DRIVER_BLEND;
    case GL_CULL_FACE:
        return DRIVER_CULL_FACE;
    case GL_DEPTH_TEST:
        return DRIVER_DEPTH_TEST;
    case GL_DITHER:
        return DRIVER_DITHER;
    case GL_POLYGON_OFFSET_FILL:
        return DRIVER_POLYGON_OFFSET_FILL;
    case GL_SAMPLE_ALPHA_TO_COVERAGE:
        return DRIVER_SAMPLE_ALPHA_TO_COVERAGE;
    case GL_SAMPLE_COVERAGE:
        return DRIVER_SAMPLE_COVERAGE;
    case GL_SCISSOR_TEST:
        return DRIVER_SCISSOR_TEST;
    case GL_STENCIL_TEST:
        return DRIVER_STENCIL_TEST;
    default:
        return 0;
    }
}

uint32_t trackedBit(GLenum capability)
{
    switch (capability) {
    case GL_MULTISAMPLE:
        return TRACKED_MULTISAMPLE;
    case GL_SAMPLE_ALPHA_TO_ONE:
        return TRACKED_SAMPLE_ALPHA_TO_ONE;
    case GL_COLOR_LOGIC_OP:
        return TRACKED_COLOR_LOGIC_OP;
    case GL_POINT_SMOOTH:
        return TRACKED_POINT_SMOOTH;
    case GL_LINE_SMOOTH:
        return TRACKED_LINE_SMOOTH;
    default:
        return 0;
    }
}

// OpenGL ES starts with dithering and multisampling on.
void initCapabilities(Context *context)
{
    context->capabilities = {.driver = DRIVER_DITHER, .tracked = TRACKED_MULTISAMPLE, .logicOp = GL_COPY};
}

static void changeLogicOp(Context *context)
{
    updateSpecialDraws(context);
    const bool wanted =
        context->capabilities.tracked & TRACKED_COLOR_LOGIC_OP && context->capabilities.logicOp != GL_COPY;
    if (wanted && context->group->abilities.framebufferFetch.empty())
        tellOnce("this driver has no logic operations; colours are written as they are");
}

static void setCapability(GLenum capability, bool enabled)
{
    Context *context = currentContext;
    if (!context) return;
    if (const uint32_t bit = driverBit(capability)) {
        if (((context->capabilities.driver & bit) != 0) == enabled) return;
        context->capabilities.driver ^= bit;
    } else if (const uint32_t tracked = trackedBit(capability)) {
        context->capabilities.tracked = (context->capabilities.tracked & ~tracked) | (enabled ? tracked : 0);
        if (capability == GL_COLOR_LOGIC_OP) changeLogicOp(context);
        return;
    }
    if (enabled)
        driver.glEnable(capability);
    else
        driver.glDisable(capability);
}

void GL_APIENTRY glEnable(GLenum capability)
{
    setCapability(capability, true);
}

void GL_APIENTRY glDisable(GLenum capability)
{
    setCapability(capability, false);
}

GLboolean GL_APIENTRY glIsEnabled(GLenum capability)
{
    if (!currentContext) return GL_FALSE;
    const uint32_t tracked = trackedBit(capability);
    if (tracked) return (currentContext->capabilities.tracked & tracked) != 0;
    return driver.glIsEnabled(capability);
}

void GL_APIENTRY glLogicOpQRN(GLenum opcode)
{
    if (!currentContext) return;
    if (opcode < GL_CLEAR || opcode > GL_SET) return raiseError(GL_INVALID_ENUM);
    currentContext->capabilities.logicOp = opcode;
    changeLogicOp(currentContext);
}

// The hints of ES 1.1 have no meaning to the driver; they are taken without an error.
void GL_APIENTRY glHint(GLenum target, GLenum mode)
{
    switch (target) {
    case GL_PERSPECTIVE_CORRECTION_HINT:
    case GL_POINT_SMOOTH_HINT:
    case GL_LINE_SMOOTH_HINT:
    case GL_FOG_HINT:
        if (mode != GL_DONT_CARE && mode != GL_FASTEST && mode != GL_NICEST) raiseError(GL_INVALID_ENUM);
        return;
    default:
        driver.glHint(target, mode);
    }
}
