// SPDX-License-Identifier: MIT
// Uniform loads. The library above loads all its uniforms at every draw; the driver is called only for values it does
// not have, and for gathered uniforms once per draw.
#include "equal_words.h"
#include "programs.h"
#include "waiting_loads.h"

#include <cstring>
#include <type_traits>

// A load in another form than the uniform's own, such as floats for a bool: what the driver makes of it is not known.
static void forgetUniform(LinkedProgram *program, GLint location)
{
    UniformSlot *slot = &program->slots[location];
    const int elements = slot->element + slot->elementsLeft;
    slot -= slot->element;
    for (int i = 0; i < elements; ++i)
        slot[i].heldKind = UniformKind::None;
}

// The driver refuses texture units it does not have and keeps the value before, so those are not to be remembered.
static bool namesUsualUnits(const GLint *units, GLsizei count)
{
    return std::all_of(units, units + count, [](GLint unit) { return unit >= 0 && unit < 8; });
}

// Loads a gathered uniform in a way that is not plain.
static void loadGathered(const UniformSlot &slot, GLint location, UniformKind kind, GLsizei count, const void *values)
{
    if (count < 0) return raiseError(GL_INVALID_VALUE);
    if (slot.kind != kind || (count > 1 && !slot.isArray)) return raiseError(GL_INVALID_OPERATION);
    const uint32_t columns = static_cast<uint32_t>(std::min<GLsizei>(count, slot.elementsLeft)) * columnsOf(kind);
    const uint32_t words = wordsOf(kind) / columnsOf(kind);
    const auto *given = static_cast<const uint32_t *>(values);
    bool changed = false;
    for (uint32_t column = 0; column < columns; ++column) {
        const size_t size = words * sizeof(uint32_t);
        changed = changed || memcmp(slot.held + 4 * column, given + words * column, size) != 0;
        memcpy(slot.held + 4 * column, given + words * column, size);
    }
    if (changed) loadWithNextDraw(location, static_cast<GLsizei>(columns));
}

// Where the driver's value of a uniform is remembered, for loads of its own kind; null for everything unusual.
[[gnu::always_inline]] static inline const UniformSlot *heldSlot(GLint location, UniformKind kind)
{
    const HeldState &state = *heldState;
    if (static_cast<uint32_t>(location) >= state.uniformCount) [[unlikely]]
        return nullptr;
    const UniformSlot *slot = &state.uniformSlots[location];
    return slot->heldKind == kind ? slot : nullptr;
}

// True when the driver has to be called for a load that does not fit the uniform, or is of a gathered one.
[[gnu::noinline]] static bool mustLoadUnusual(LinkedProgram *program, GLint location, UniformKind kind, GLsizei count,
                                              const void *values)
{
    const bool known =
        static_cast<size_t>(location) < program->slotCount && program->slots[location].kind != UniformKind::None;
    if (known && program->slots[location].gathered) {
        loadGathered(program->slots[location], location, kind, count, values);
        return false;
    }
    if (known) forgetUniform(program, location);
    // All locations are known where uniforms are gathered. In the driver, another one may be that of their array.
    if (known || program->gathered.vectors == 0) return true;
    raiseError(GL_INVALID_OPERATION);
    return false;
}

// True when the driver has to be called for a load that is not plainly held; the values are then remembered. `words`
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
    const bool known = static_cast<size_t>(location) < program->slotCount;
    UniformSlot *found = known ? &program->slots[location] : nullptr;
    if (!found || found->kind != kind || found->gathered || count < 1 || (count > 1 && !found->isArray))
        return mustLoadUnusual(program, location, kind, count, values);
    UniformSlot &slot = *found;
    if constexpr (kind == UniformKind::Int1) {
        if (slot.isSampler && !namesUsualUnits(static_cast<const GLint *>(values), count)) return true;
    }
    const size_t size = static_cast<size_t>(std::min<GLsizei>(count, slot.elementsLeft)) * words * sizeof(uint32_t);
    if (slot.heldKind == kind && memcmp(slot.held, values, size) == 0) return false;
    memcpy(slot.held, values, size);
    return true;
}

// The loads that need a closer look, out of line and with the arguments of their callers, so that no register has to be
// saved in those.
template <auto function, UniformKind kind, size_t words, typename... Value>
[[gnu::noinline]] static void loadUnusualValues(GLint location, Value... given)
{
    const std::common_type_t<Value...> values[] = {given...};
    if (mustLoad<kind, words>(location, 1, values)) (driver.*function)(location, 1, values);
}

template <auto function, UniformKind kind, size_t words, typename Value>
[[gnu::noinline]] static void loadUnusualArray(GLint location, GLsizei count, const Value *values)
{
    if (mustLoad<kind, words>(location, count, values)) (driver.*function)(location, count, values);
}

// Single values given one by one.
template <auto function, UniformKind kind, typename... Value>
[[gnu::always_inline]] static inline void loadValues(GLint location, Value... given)
{
    constexpr size_t words = sizeof...(Value);
    const std::common_type_t<Value...> values[] = {given...};
    if (location == -1) return;
    if (const UniformSlot *slot = heldSlot(location, kind)) [[likely]] {
        if (isEqual<words>(slot->held, values)) return;
        if (slot->gathered) {
            memcpy(slot->held, values, sizeof values);
            return loadWithNextDraw(location, 1);
        }
    }
    loadUnusualValues<function, kind, words>(location, given...);
}

// Values in memory: nothing for those the driver has, and nothing but the call for a single new one.
template <auto function, UniformKind kind, size_t words, typename Value>
[[gnu::always_inline]] static inline void loadArray(GLint location, GLsizei count, const Value *values)
{
    if (location == -1) return;
    if (const UniformSlot *slot = heldSlot(location, kind)) [[likely]] {
        if (count == 1) [[likely]] {
            if (isEqual<words>(slot->held, values)) return;
            if (kind != UniformKind::Int1) { // those may be samplers
                memcpy(slot->held, values, words * sizeof(uint32_t));
                if (slot->gathered) return loadWithNextDraw(location, 1);
                return (driver.*function)(location, count, values);
            }
        } else if (count == 2 && slot->elementsLeft == 1 && slot->isArray) {
            // A compiler drops the last elements when nothing reads them, and loads of those are ignored.
            if (isEqual<words>(slot->held, values)) return;
        } else if (words == 4 && count == 2 && slot->elementsLeft >= 2) {
            if (isEqual<words, 2>(slot->held, values)) return;
            memcpy(slot->held, values, 2 * words * sizeof(uint32_t));
            if (slot->gathered) return loadWithNextDraw(location, 2);
            return (driver.*function)(location, count, values);
        }
    }
    loadUnusualArray<function, kind, words>(location, count, values);
}

void GL_APIENTRY glUniform1i(GLint location, GLint x)
{
    loadValues<&Driver::glUniform1iv, UniformKind::Int1>(location, x);
}

void GL_APIENTRY glUniform2i(GLint location, GLint x, GLint y)
{
    loadValues<&Driver::glUniform2iv, UniformKind::Int2>(location, x, y);
}

void GL_APIENTRY glUniform3i(GLint location, GLint x, GLint y, GLint z)
{
    loadValues<&Driver::glUniform3iv, UniformKind::Int3>(location, x, y, z);
}

void GL_APIENTRY glUniform4i(GLint location, GLint x, GLint y, GLint z, GLint w)
{
    loadValues<&Driver::glUniform4iv, UniformKind::Int4>(location, x, y, z, w);
}

void GL_APIENTRY glUniform1f(GLint location, GLfloat x)
{
    loadValues<&Driver::glUniform1fv, UniformKind::Float1>(location, x);
}

void GL_APIENTRY glUniform2f(GLint location, GLfloat x, GLfloat y)
{
    loadValues<&Driver::glUniform2fv, UniformKind::Float2>(location, x, y);
}

void GL_APIENTRY glUniform3f(GLint location, GLfloat x, GLfloat y, GLfloat z)
{
    loadValues<&Driver::glUniform3fv, UniformKind::Float3>(location, x, y, z);
}

void GL_APIENTRY glUniform4f(GLint location, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    loadValues<&Driver::glUniform4fv, UniformKind::Float4>(location, x, y, z, w);
}

void GL_APIENTRY glUniform1iv(GLint location, GLsizei count, const GLint *values)
{
    loadArray<&Driver::glUniform1iv, UniformKind::Int1, 1>(location, count, values);
}

void GL_APIENTRY glUniform2iv(GLint location, GLsizei count, const GLint *values)
{
    loadArray<&Driver::glUniform2iv, UniformKind::Int2, 2>(location, count, values);
}

void GL_APIENTRY glUniform3iv(GLint location, GLsizei count, const GLint *values)
{
    loadArray<&Driver::glUniform3iv, UniformKind::Int3, 3>(location, count, values);
}

void GL_APIENTRY glUniform4iv(GLint location, GLsizei count, const GLint *values)
{
    loadArray<&Driver::glUniform4iv, UniformKind::Int4, 4>(location, count, values);
}

void GL_APIENTRY glUniform1fv(GLint location, GLsizei count, const GLfloat *values)
{
    loadArray<&Driver::glUniform1fv, UniformKind::Float1, 1>(location, count, values);
}

void GL_APIENTRY glUniform2fv(GLint location, GLsizei count, const GLfloat *values)
{
    loadArray<&Driver::glUniform2fv, UniformKind::Float2, 2>(location, count, values);
}

void GL_APIENTRY glUniform3fv(GLint location, GLsizei count, const GLfloat *values)
{
    loadArray<&Driver::glUniform3fv, UniformKind::Float3, 3>(location, count, values);
}

void GL_APIENTRY glUniform4fv(GLint location, GLsizei count, const GLfloat *values)
{
    loadArray<&Driver::glUniform4fv, UniformKind::Float4, 4>(location, count, values);
}

// OpenGL ES 2.0 refuses transposing loads; a newer driver takes them, and what it then holds is not remembered.
static void forgetTransposed(GLint location)
{
    LinkedProgram *program = currentContext ? currentContext->program : nullptr;
    if (!program || static_cast<size_t>(location) >= program->slotCount) return;
    if (program->slots[location].kind != UniformKind::None) forgetUniform(program, location);
}

static bool isGathered(GLint location)
{
    const LinkedProgram *program = currentContext ? currentContext->program : nullptr;
    return program && static_cast<size_t>(location) < program->slotCount && program->slots[location].gathered;
}

template <auto function, UniformKind kind, size_t words>
[[gnu::noinline]] static void loadUnusualMatrix(GLint location, GLsizei count, GLboolean transpose,
                                                const GLfloat *values)
{
    if (transpose && isGathered(location)) return raiseError(GL_INVALID_VALUE);
    if (transpose)
        forgetTransposed(location);
    else if (!mustLoad<kind, words>(location, count, values))
        return;
    (driver.*function)(location, count, transpose, values);
}

template <auto function, UniformKind kind, size_t words>
[[gnu::always_inline]] static inline void loadMatrix(GLint location, GLsizei count, GLboolean transpose,
                                                     const GLfloat *values)
{
    if (!transpose) [[likely]] {
        if (location == -1) return;
        const UniformSlot *slot = count == 1 ? heldSlot(location, kind) : nullptr;
        if (slot && slot->gathered && kind == UniformKind::Matrix3) [[likely]] {
            if (isEqualColumns3(slot->held, values)) return;
            for (size_t column = 0; column < 3; ++column)
                memcpy(slot->held + 4 * column, values + 3 * column, 3 * sizeof(uint32_t));
            return loadWithNextDraw(location, 3);
        }
        if (slot && (kind != UniformKind::Matrix2 || !slot->gathered)) [[likely]] {
            if (isEqual<words>(slot->held, values)) return;
            memcpy(slot->held, values, words * sizeof(uint32_t));
            if (slot->gathered) return loadWithNextDraw(location, 4);
            return (driver.*function)(location, count, transpose, values);
        }
    }
    loadUnusualMatrix<function, kind, words>(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix2fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    loadMatrix<&Driver::glUniformMatrix2fv, UniformKind::Matrix2, 4>(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix3fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    loadMatrix<&Driver::glUniformMatrix3fv, UniformKind::Matrix3, 9>(location, count, transpose, values);
}

void GL_APIENTRY glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat *values)
{
    loadMatrix<&Driver::glUniformMatrix4fv, UniformKind::Matrix4, 16>(location, count, transpose, values);
}
