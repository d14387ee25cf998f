// SPDX-License-Identifier: MIT
// State queries: the driver's answers, but for the few values that are kept here.
#include "capabilities.h"
#include "vertex_input.h"

#include <cmath>

static constexpr int kMaxValues = 64; // of one query; the lists of compressed formats are the longest

// Answers that are not the driver's: one integer. False for every other name, with the driver made ready to answer.
static bool answerHere(GLenum pname, GLint &value)
{
    Context *context = currentContext;
    if (const uint32_t tracked = trackedBit(pname)) {
        value = (context->capabilities.tracked & tracked) != 0;
        return true;
    }
    switch (pname) {
    case GL_CURRENT_PROGRAM:
        value = context->programObject ? static_cast<GLint>(context->programObject->name) : 0;
        return true;
    case GL_LOGIC_OP_MODE:
        value = static_cast<GLint>(context->capabilities.logicOp);
        return true;
    case GL_ARRAY_BUFFER_BINDING:
        syncArrayBuffer(context);
        return false;
    default:
        return false;
    }
}

void GL_APIENTRY glGetBooleanv(GLenum pname, GLboolean *params)
{
    GLint value = 0;
    if (!currentContext) return;
    if (answerHere(pname, value))
        *params = value != 0;
    else
        driver.glGetBooleanv(pname, params);
}

void GL_APIENTRY glGetFloatv(GLenum pname, GLfloat *params)
{
    GLint value = 0;
    if (!currentContext) return;
    if (answerHere(pname, value))
        *params = static_cast<GLfloat>(value);
    else
        driver.glGetFloatv(pname, params);
}

void GL_APIENTRY glGetIntegerv(GLenum pname, GLint *params)
{
    GLint value = 0;
    if (!currentContext) return;
    if (answerHere(pname, value))
        *params = value;
    else
        driver.glGetIntegerv(pname, params);
}

// Number of values a query writes.
static int valueCount(GLenum pname)
{
    GLint count = 1;
    switch (pname) {
    case GL_ALIASED_LINE_WIDTH_RANGE:
    case GL_ALIASED_POINT_SIZE_RANGE:
    case GL_DEPTH_RANGE:
    case GL_MAX_VIEWPORT_DIMS:
        return 2;
    case GL_BLEND_COLOR:
    case GL_COLOR_CLEAR_VALUE:
    case GL_COLOR_WRITEMASK:
    case GL_SCISSOR_BOX:
    case GL_VIEWPORT:
        return 4;
    case GL_COMPRESSED_TEXTURE_FORMATS:
        driver.glGetIntegerv(GL_NUM_COMPRESSED_TEXTURE_FORMATS, &count);
        return count;
    case GL_SHADER_BINARY_FORMATS:
        driver.glGetIntegerv(GL_NUM_SHADER_BINARY_FORMATS, &count);
        return count;
    default:
        return 1;
    }
}

// Values are multiplied by 65536 and kept within 32 bits.
static GLfixed fixedFromFloat(GLfloat value)
{
    const double scaled = std::trunc(static_cast<double>(value) * 65536.0);
    if (!(scaled > INT32_MIN)) return std::isnan(scaled) ? 0 : INT32_MIN;
    return scaled >= INT32_MAX ? INT32_MAX : static_cast<GLfixed>(scaled);
}

void GL_APIENTRY glGetFixedvQRN(GLenum pname, GLfixed *params)
{
    if (!currentContext) return;
    const int count = valueCount(pname);
    if (count > kMaxValues) return raiseError(GL_INVALID_ENUM);
    // Names that the driver refuses leave the caller's values alone.
    GLfloat values[kMaxValues];
    constexpr GLfloat unanswered = -0x1.badbadp+99f;
    values[0] = unanswered;
    glGetFloatv(pname, values);
    if (values[0] == unanswered) return;
    for (int i = 0; i < count; ++i)
        params[i] = fixedFromFloat(values[i]);
}

void GL_APIENTRY glGetBufferPointervZEK(GLenum target, void **params)
{
    Context *context = currentContext;
    if (!context) return;
    if (params) *params = nullptr; // what an error leaves
    if (!driver.glGetBufferPointervOES) return raiseError(GL_INVALID_OPERATION);
    syncArrayBuffer(context);
    driver.glGetBufferPointervOES(target, GL_BUFFER_MAP_POINTER_OES, params);
}
