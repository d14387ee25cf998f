// SPDX-License-Identifier: MIT
// Uniform loads. The library above loads all its uniforms at every draw; the driver is called only for values it does
// not have. Each function here decides in a few instructions, so they are written out rather than shared.
#include "context.h"

#include <algorithm>
#include <cstring>

// A load in another form than the uniform's own, such as floats for a bool: what the driver makes of it is not known.
static void forgetUniform(LinkedProgram *program, GLint location)
{
    const UniformSlot slot = program->uniforms[static_cast<size_t>(location)];
    const size_t first = static_cast<size_t>(location - slot.element);
    for (int i = 0; i < slot.element + slot.elementsLeft; ++i)
        program->uniforms[first + static_cast<size_t>(i)].known = false;
}

// The driver refuses texture units it does not have and keeps the value before, so those are not to be remembered.
static bool namesUsualUnits(const GLint *units, GLsizei count)
{
    return std::all_of(units, units + count, [](GLint unit) { return unit >= 0 && unit < 8; });
}

// True when the driver has to be called; its values are then remembered. `words` per element. Bits are compared, since
// -0.0 and NaN are values like others.
template <UniformKind kind, size_t words>
static bool mustLoad(GLint location, GLsizei count, const void *values)
{
    if (location == -1) return false;
    Context *context = currentContext;
    if (!context) return false;
    LinkedProgram *program = context->program;
    if (!program) [[unlikely]] {
        raiseError(GL_INVALID_OPERATION);
        return false;
    }
    if (static_cast<size_t>(location) >= program->uniforms.size()) [[unlikely]]
        return true;
    const UniformSlot &slot = program->uniforms[static_cast<size_t>(location)];
    if (slot.kind != kind || count < 1 || (count > 1 && !slot.isArray)) [[unlikely]] {
        if (slot.kind != UniformKind::None) forgetUniform(program, location);
        return true;
    }

    // Elements behind the array's end are ignored, as the driver does.
    const size_t elements = static_cast<size_t>(std::min(count, slot.elementsLeft));
    uint32_t *held = program->values.data() + slot.offset;
    if (elements == 1) {
        if (slot.known && memcmp(held, values, words * sizeof(uint32_t)) == 0) return false;
    } else if (slot.known && memcmp(held, values, elements * words * sizeof(uint32_t)) == 0) {
        return false;
    }
    if constexpr (kind == UniformKind::Int1) {
        if (slot.isSampler && !namesUsualUnits(static_cast<const GLint *>(values), count)) return true;
    }
    memcpy(held, values, elements * words * sizeof(uint32_t));
    return true;
}

void GL_APIENTRY glUniform1i(GLint location, GLint x)
{
    if (mustLoad<UniformKind::Int1, 1>(location, 1, &x)) driver.glUniform1i(location, x);
}

void GL_APIENTRY glUniform2i(GLint location, GLint x, GLint y)
{
    const GLint values[] = {x, y};
    if (mustLoad<UniformKind::Int2, 2>(location, 1, values)) driver.glUniform2i(location, x, y);
}

void GL_APIENTRY glUniform3i(GLint location, GLint x, GLint y, GLint z)
{
    const GLint values[] = {x, y, z};
    if (mustLoad<UniformKind::Int3, 3>(location, 1, values)) driver.glUniform3i(location, x, y, z);
}

void GL_APIENTRY glUniform4i(GLint location, GLint x, GLint y, GLint z, GLint w)
{
    const GLint values[] = {x, y, z, w};
    if (mustLoad<UniformKind::Int4, 4>(location, 1, values)) driver.glUniform4i(location, x, y, z, w);
}

void GL_APIENTRY glUniform1f(GLint location, GLfloat x)
{
    if (mustLoad<UniformKind::Float1, 1>(location, 1, &x)) driver.glUniform1f(location, x);
}

void GL_APIENTRY glUniform2f(GLint location, GLfloat x, GLfloat y)
{
    const GLfloat values[] = {x, y};
    if (mustLoad<UniformKind::Float2, 2>(location, 1, values)) driver.glUniform2f(location, x, y);
}

void GL_APIENTRY glUniform3f(GLint location, GLfloat x, GLfloat y, GLfloat z)
{
    const GLfloat values[] = {x, y, z};
    if (mustLoad<UniformKind::Float3, 3>(location, 1, values)) driver.glUniform3f(location, x, y, z);
}

void GL_APIENTRY glUniform4f(GLint location, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    const GLfloat values[] = {x, y, z, w};
    if (mustLoad<UniformKind::Float4, 4>(location, 1, values)) driver.glUniform4f(location, x, y, z, w);
}

void GL_APIENTRY glUniform1iv(GLint location, GLsizei count, const GLint *values)
{
    if (mustLoad<UniformKind::Int1, 1>(location, count, values)) driver.glUniform1iv(location, count, values);
}

void GL_APIENTRY glUniform2iv(GLint location, GLsizei count, const GLint *values)
{
    if (mustLoad<UniformKind::Int2, 2>(location, count, values)) driver.glUniform2iv(location, count, values);
}

void GL_APIENTRY glUniform3iv(GLint location, GLsizei count, const GLint *values)
{
    if (mustLoad<UniformKind::Int3, 3>(location, count, values)) driver.glUniform3iv(location, count, values);
}

void GL_APIENTRY glUniform4iv(GLint location, GLsizei count, const GLint *values)
{
    if (mustLoad<UniformKind::Int4, 4>(location, count, values)) driver.glUniform4iv(location, count, values);
}

void GL_APIENTRY glUniform1fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (mustLoad<UniformKind::Float1, 1>(location, count, values)) driver.glUniform1fv(location, count, values);
}

void GL_APIENTRY glUniform2fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (mustLoad<UniformKind::Float2, 2>(location, count, values)) driver.glUniform2fv(location, count, values);
}

void GL_APIENTRY glUniform3fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (mustLoad<UniformKind::Float3, 3>(location, count, values)) driver.glUniform3fv(location, count, values);
}

void GL_APIENTRY glUniform4fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (mustLoad<UniformKind::Float4, 4>(location, count, values)) driver.glUniform4fv(location, count, values);
}

// OpenGL ES 2.0 refuses transposing loads; a newer driver takes them, and what it then holds is not remembered.
static bool isTransposed(GLint location, GLboolean transpose)
{
    if (!transpose) [[likely]]
        return false;
    LinkedProgram *program = currentContext ? currentContext->program : nullptr;
    if (program && static_cast<size_t>(location) < program->uniforms.size()) forgetUniform(program, location);
    return true;
}

void GL_APIENTRY glUniformMatrix2fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    if (isTransposed(location, transpose) || mustLoad<UniformKind::Matrix2, 4>(location, count, values))
        driver.glUniformMatrix2fv(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix3fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    if (isTransposed(location, transpose) || mustLoad<UniformKind::Matrix3, 9>(location, count, values))
        driver.glUniformMatrix3fv(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    if (isTransposed(location, transpose) || mustLoad<UniformKind::Matrix4, 16>(location, count, values))
        driver.glUniformMatrix4fv(location, count, transpose, values);
}
