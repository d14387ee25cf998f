// SPDX-License-Identifier: MIT
// State queries: the driver's answers, but for the few values that are kept here.
#include "capabilities.h"
#include "vertex_input.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

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

// A query of values of one type, with the driver's function for what is not answered here.
template <auto function, typename Value>
static void query(GLenum pname, Value *params)
{
    GLint value = 0;
    if (!currentContext) return;
    if (!answerHere(pname, value)) return (driver.*function)(pname, params);
    if constexpr (std::is_same_v<Value, GLboolean>)
        *params = value != 0;
    else
        *params = static_cast<Value>(value);
}

void GL_APIENTRY glGetBooleanv(GLenum pname, GLboolean *params)
{
    query<&Driver::glGetBooleanv>(pname, params);
}

void GL_APIENTRY glGetFloatv(GLenum pname, GLfloat *params)
{
    query<&Driver::glGetFloatv>(pname, params);
}

void GL_APIENTRY glGetIntegerv(GLenum pname, GLint *params)
{
    query<&Driver::glGetIntegerv>(pname, params);
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
    constexpr int most = 16; // values of a name that is not in the list, such as one of a later version
    std::vector<GLfloat> values(static_cast<size_t>(std::max(count, most)));
    // Names that the driver refuses leave the caller's values alone.
    constexpr GLfloat unanswered = -0x1.badbadp+99f;
    values[0] = unanswered;
    glGetFloatv(pname, values.data());
    if (values[0] == unanswered) return;
    for (int i = 0; i < count; ++i)
        params[i] = fixedFromFloat(values[static_cast<size_t>(i)]);
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
