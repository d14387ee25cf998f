// SPDX-License-Identifier: MIT
// Uniform loads. The library above loads all its uniforms at every draw; the driver is called only for values it does
// not have.
#include "context.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

// A load in another form than the uniform's own, such as floats for a bool: what the driver makes of it is not known.
static void forgetUniform(LinkedProgram *program, GLint location)
{
    UniformSlot *slot = &program->slots[location];
    const int elements = slot->element + slot->elementsLeft;
    slot -= slot->element;
    for (int i = 0; i < elements; ++i)
        slot[i].known = false;
}

// The driver refuses texture units it does not have and keeps the value before, so those are not to be remembered.
static bool namesUsualUnits(const GLint *units, GLsizei count)
{
    return std::all_of(units, units + count, [](GLint unit) { return unit >= 0 && unit < 8; });
}

// Bits are compared, since -0.0 and NaN are values like others.
template <size_t words>
static inline bool isEqual(const uint32_t *held, const void *values)
{
    const auto pair = [](const void *from, size_t at) {
        uint64_t two;
        memcpy(&two, static_cast<const uint32_t *>(from) + at, sizeof two);
        return two;
    };
    uint64_t difference = 0;
    for (size_t at = 0; at + 1 < words; at += 2)
        difference |= pair(held, at) ^ pair(values, at);
    if constexpr (words % 2) {
        uint32_t last;
        memcpy(&last, static_cast<const uint32_t *>(values) + words - 1, sizeof last);
        difference |= held[words - 1] ^ last;
    }
    return difference == 0;
}

// True when a load needs nothing: it goes nowhere, or the driver has its values. Everything unusual answers false and
// is left to mustLoad. Nothing here calls a function, so that no register has to be saved.
template <UniformKind kind, size_t words>
[[gnu::always_inline]] static inline bool isHeld(GLint location, GLsizei count, const void *values)
{
    if (location == -1) return true;
    const Context *context = currentContext;
    if (!context || !context->program) [[unlikely]]
        return false;
    const LinkedProgram &program = *context->program;
    if (static_cast<size_t>(location) >= program.slotCount) [[unlikely]]
        return false;
    const UniformSlot &slot = program.slots[location];
    if (slot.kind != kind || !slot.known) [[unlikely]]
        return false;
    if (count == 1) [[likely]]
        return isEqual<words>(slot.held, values);
    if (count < 1 || !slot.isArray) return false;
    // Elements behind the array's end are ignored. A compiler drops the last ones when nothing reads them.
    const GLsizei elements = std::min(count, slot.elementsLeft);
    if (elements == 1) return isEqual<words>(slot.held, values);
    return elements == 2 && isEqual<2 * words>(slot.held, values);
}

// True when the driver has to be called for a load that isHeld did not stop; the values are then remembered. `words`
// per element.
template <UniformKind kind, size_t words>
static bool mustLoad(GLint location, GLsizei count, const void *values)
{
    Context *context = currentContext;
    if (!context) return false;
    LinkedProgram *program = context->program;
    if (!program) {
        raiseError(GL_INVALID_OPERATION);
        return false;
    }
    if (static_cast<size_t>(location) >= program->slotCount) return true;
    UniformSlot &slot = program->slots[location];
    if (slot.kind != kind || count < 1 || (count > 1 && !slot.isArray)) {
        if (slot.kind != UniformKind::None) forgetUniform(program, location);
        return true;
    }
    if constexpr (kind == UniformKind::Int1) {
        if (slot.isSampler && !namesUsualUnits(static_cast<const GLint *>(values), count)) return true;
    }
    const size_t size = static_cast<size_t>(std::min(count, slot.elementsLeft)) * words * sizeof(uint32_t);
    if (slot.known && memcmp(slot.held, values, size) == 0) return false;
    memcpy(slot.held, values, size);
    return true;
}

// The two forms of a load that changes something. Out of line and with the arguments of their callers, so that those
// are a test and a jump.
template <auto function, UniformKind kind, size_t words, typename... Value>
[[gnu::noinline]] static void loadValues(GLint location, Value... given)
{
    const std::common_type_t<Value...> values[] = {given...};
    if (mustLoad<kind, words>(location, 1, values)) (driver.*function)(location, 1, values);
}

template <auto function, UniformKind kind, size_t words, typename Value>
[[gnu::noinline]] static void loadArray(GLint location, GLsizei count, const Value *values)
{
    if (mustLoad<kind, words>(location, count, values)) (driver.*function)(location, count, values);
}

void GL_APIENTRY glUniform1i(GLint location, GLint x)
{
    if (!isHeld<UniformKind::Int1, 1>(location, 1, &x))
        loadValues<&Driver::glUniform1iv, UniformKind::Int1, 1>(location, x);
}

void GL_APIENTRY glUniform2i(GLint location, GLint x, GLint y)
{
    const GLint values[] = {x, y};
    if (!isHeld<UniformKind::Int2, 2>(location, 1, values))
        loadValues<&Driver::glUniform2iv, UniformKind::Int2, 2>(location, x, y);
}

void GL_APIENTRY glUniform3i(GLint location, GLint x, GLint y, GLint z)
{
    const GLint values[] = {x, y, z};
    if (!isHeld<UniformKind::Int3, 3>(location, 1, values))
        loadValues<&Driver::glUniform3iv, UniformKind::Int3, 3>(location, x, y, z);
}

void GL_APIENTRY glUniform4i(GLint location, GLint x, GLint y, GLint z, GLint w)
{
    const GLint values[] = {x, y, z, w};
    if (!isHeld<UniformKind::Int4, 4>(location, 1, values))
        loadValues<&Driver::glUniform4iv, UniformKind::Int4, 4>(location, x, y, z, w);
}

void GL_APIENTRY glUniform1f(GLint location, GLfloat x)
{
    if (!isHeld<UniformKind::Float1, 1>(location, 1, &x))
        loadValues<&Driver::glUniform1fv, UniformKind::Float1, 1>(location, x);
}

void GL_APIENTRY glUniform2f(GLint location, GLfloat x, GLfloat y)
{
    const GLfloat values[] = {x, y};
    if (!isHeld<UniformKind::Float2, 2>(location, 1, values))
        loadValues<&Driver::glUniform2fv, UniformKind::Float2, 2>(location, x, y);
}

void GL_APIENTRY glUniform3f(GLint location, GLfloat x, GLfloat y, GLfloat z)
{
    const GLfloat values[] = {x, y, z};
    if (!isHeld<UniformKind::Float3, 3>(location, 1, values))
        loadValues<&Driver::glUniform3fv, UniformKind::Float3, 3>(location, x, y, z);
}

void GL_APIENTRY glUniform4f(GLint location, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    const GLfloat values[] = {x, y, z, w};
    if (!isHeld<UniformKind::Float4, 4>(location, 1, values))
        loadValues<&Driver::glUniform4fv, UniformKind::Float4, 4>(location, x, y, z, w);
}

void GL_APIENTRY glUniform1iv(GLint location, GLsizei count, const GLint *values)
{
    if (!isHeld<UniformKind::Int1, 1>(location, count, values))
        loadArray<&Driver::glUniform1iv, UniformKind::Int1, 1>(location, count, values);
}

void GL_APIENTRY glUniform2iv(GLint location, GLsizei count, const GLint *values)
{
    if (!isHeld<UniformKind::Int2, 2>(location, count, values))
        loadArray<&Driver::glUniform2iv, UniformKind::Int2, 2>(location, count, values);
}

void GL_APIENTRY glUniform3iv(GLint location, GLsizei count, const GLint *values)
{
    if (!isHeld<UniformKind::Int3, 3>(location, count, values))
        loadArray<&Driver::glUniform3iv, UniformKind::Int3, 3>(location, count, values);
}

void GL_APIENTRY glUniform4iv(GLint location, GLsizei count, const GLint *values)
{
    if (!isHeld<UniformKind::Int4, 4>(location, count, values))
        loadArray<&Driver::glUniform4iv, UniformKind::Int4, 4>(location, count, values);
}

void GL_APIENTRY glUniform1fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (!isHeld<UniformKind::Float1, 1>(location, count, values))
        loadArray<&Driver::glUniform1fv, UniformKind::Float1, 1>(location, count, values);
}

void GL_APIENTRY glUniform2fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (!isHeld<UniformKind::Float2, 2>(location, count, values))
        loadArray<&Driver::glUniform2fv, UniformKind::Float2, 2>(location, count, values);
}

void GL_APIENTRY glUniform3fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (!isHeld<UniformKind::Float3, 3>(location, count, values))
        loadArray<&Driver::glUniform3fv, UniformKind::Float3, 3>(location, count, values);
}

void GL_APIENTRY glUniform4fv(GLint location, GLsizei count, const GLfloat *values)
{
    if (!isHeld<UniformKind::Float4, 4>(location, count, values))
        loadArray<&Driver::glUniform4fv, UniformKind::Float4, 4>(location, count, values);
}

// OpenGL ES 2.0 refuses transposing loads; a newer driver takes them, and what it then holds is not remembered.
static void forgetTransposed(GLint location)
{
    LinkedProgram *program = currentContext ? currentContext->program : nullptr;
    if (!program || static_cast<size_t>(location) >= program->slotCount) return;
    if (program->slots[location].kind != UniformKind::None) forgetUniform(program, location);
}

template <auto function, UniformKind kind, size_t words>
[[gnu::noinline]] static void loadMatrix(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    if (transpose)
        forgetTransposed(location);
    else if (!mustLoad<kind, words>(location, count, values))
        return;
    (driver.*function)(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix2fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    if (transpose || !isHeld<UniformKind::Matrix2, 4>(location, count, values))
        loadMatrix<&Driver::glUniformMatrix2fv, UniformKind::Matrix2, 4>(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix3fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    if (transpose || !isHeld<UniformKind::Matrix3, 9>(location, count, values))
        loadMatrix<&Driver::glUniformMatrix3fv, UniformKind::Matrix3, 9>(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    if (transpose || !isHeld<UniformKind::Matrix4, 16>(location, count, values))
        loadMatrix<&Driver::glUniformMatrix4fv, UniformKind::Matrix4, 16>(location, count, transpose, values);
}
