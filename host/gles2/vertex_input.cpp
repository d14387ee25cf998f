// SPDX-License-Identifier: MIT
// Buffers and vertex attributes. The library above binds every attribute anew at every draw; the driver is called only
// for what it does not have. The array-buffer binding itself is no state of a draw, so it waits for a call that reads
// it.
#include "vertex_input.h"

#include "equal_words.h"

#include <cstring>

void initAttributes(Context *context)
{
    for (AttributeArray &array : context->attributes.arrays)
        array = {
            .pointer = nullptr, .buffer = 0, .size = 4, .type = GL_FLOAT, .strideBytes = 0, .normalized = GL_FALSE};
    context->attributes.arraysHeld = kMaxAttributes;
    for (GLfloat(&value)[4] : context->attributes.values)
        value[3] = 1.0f;
}

// Buffers were deleted by another context of the group. A name may stand for a new buffer by now, while an attribute
// here still holds the old one, so nothing that names a buffer is known any longer. The array binding may have been
// asked for since; the element binding has not, and keeps its buffer alive until the next bind.
[[gnu::noinline]] static void forgetBuffers(Context *context)
{
    // First, so that a deletion meanwhile is found the next time.
    context->attributes.arraysHeld.exchange(kMaxAttributes);
    BufferState &buffers = context->buffers;
    for (std::atomic<GLuint> &name : context->seenBuffers.names)
        name.store(0, std::memory_order_relaxed);
    for (AttributeArray &array : context->attributes.arrays)
        if (array.buffer != 0) array.buffer = kUnknownBuffer;
    driver.glBindBuffer(GL_ARRAY_BUFFER, buffers.array);
    buffers.driverArray = buffers.array;
    buffers.elementOld = true;
}

static void noticeDeletions(Context *context)
{
    if (context->attributes.arraysHeld.load(std::memory_order_relaxed) == 0) [[unlikely]]
        forgetBuffers(context);
}

void expectDeletions(Context *context)
{
    context->attributes.arraysHeld = 0;
}

void syncArrayBuffer(Context *context)
{
    noticeDeletions(context);
    BufferState &buffers = context->buffers;
    if (buffers.driverArray == buffers.array) return;
    driver.glBindBuffer(GL_ARRAY_BUFFER, buffers.array);
    buffers.driverArray = buffers.array;
}

static void noteBuffer(Context *context, GLuint buffer)
{
    if (!context->seenBuffers.has(buffer))
        noteName(context->group->names, &SharedNames::buffers, context->seenBuffers, buffer);
}

// The first bind of a name makes its buffer, which other contexts and queries can see.
[[gnu::noinline]] static void bindNewArrayBuffer(GLuint buffer)
{
    Context *context = currentContext;
    if (!context) return;
    BufferState &buffers = context->buffers;
    buffers.array = buffer;
    if (buffer == 0) return;
    noteBuffer(context, buffer);
    buffers.driverArray = buffer;
    driver.glBindBuffer(GL_ARRAY_BUFFER, buffer);
}

[[gnu::noinline]] static void bindNewElementBuffer(GLuint buffer)
{
    Context *context = currentContext;
    if (!context) return;
    noticeDeletions(context);
    noteBuffer(context, buffer);
    BufferState &buffers = context->buffers;
    if (buffers.element == buffer && !buffers.elementOld) return;
    buffers.element = buffer;
    buffers.elementOld = false;
    driver.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
}

static void bindElementBuffer(GLuint buffer)
{
    HeldState &state = *heldState;
    const bool deletions = state.attributes.arraysHeld.load(std::memory_order_relaxed) == 0;
    if (deletions || !state.seenBuffers.has(buffer)) [[unlikely]]
        return bindNewElementBuffer(buffer);
    BufferState &buffers = state.buffers;
    if (buffers.element == buffer && !buffers.elementOld) return;
    buffers.element = buffer;
    buffers.elementOld = false;
    driver.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
}

// For targets of newer drivers, and those that are errors.
static void bindOtherBuffer(GLenum target, GLuint buffer)
{
    Context *context = currentContext;
    if (!context) return;
    driver.glBindBuffer(target, buffer);
    if (driver.glIsBuffer(buffer)) noteBuffer(context, buffer);
}

// Deletions by other contexts are noticed by whatever reads the array binding, not here.
static void bindArrayBuffer(GLuint buffer)
{
    HeldState &state = *heldState;
    if (state.buffers.array == buffer) return;
    if (!state.seenBuffers.has(buffer)) [[unlikely]]
        return bindNewArrayBuffer(buffer);
    state.buffers.array = buffer;
}

void GL_APIENTRY glBindBuffer(GLenum target, GLuint buffer)
{
    if (target == GL_ARRAY_BUFFER) [[likely]]
        return bindArrayBuffer(buffer);
    if (target == GL_ELEMENT_ARRAY_BUFFER) return bindElementBuffer(buffer);
    bindOtherBuffer(target, buffer);
}

// A deleted buffer's bindings in this context go back to 0, here as in the driver.
static void forgetBuffer(Context *context, GLuint buffer)
{
    if (buffer == 0) return;
    BufferState &buffers = context->buffers;
    if (buffers.array == buffer) buffers.array = 0;
    if (buffers.driverArray == buffer) buffers.driverArray = 0;
    if (buffers.element == buffer) buffers.element = 0;
    for (AttributeArray &array : context->attributes.arrays)
        if (array.buffer == buffer) array.buffer = kUnknownBuffer;
}

void GL_APIENTRY glDeleteBuffers(GLsizei n, const GLuint *names)
{
    Context *context = currentContext;
    if (!context) return;
    noticeDeletions(context);
    driver.glDeleteBuffers(n, names);
    for (GLsizei i = 0; i < n; ++i)
        forgetBuffer(context, names[i]);
    forgetNames(context->group->names, &SharedNames::buffers, n, names);
    const std::lock_guard guard(context->group->lock);
    for (GLsizei i = 0; i < n; ++i)
        context->group->copies.bytes.erase(names[i]);
    for (Context *member : context->group->members)
        if (member != context) expectDeletions(member);
}

GLboolean GL_APIENTRY glIsBuffer(GLuint buffer)
{
    if (currentContext) syncArrayBuffer(currentContext); // binding a name makes its buffer
    return driver.glIsBuffer(buffer);
}

// 0 for targets that do not exist.
static GLuint boundBuffer(const Context *context, GLenum target)
{
    if (target == GL_ARRAY_BUFFER) return context->buffers.array;
    return target == GL_ELEMENT_ARRAY_BUFFER ? context->buffers.element : 0;
}

void GL_APIENTRY glBufferData(GLenum target, GLsizeiptr size, const void *bytes, GLenum usage)
{
    if (currentContext) syncArrayBuffer(currentContext);
    driver.glBufferData(target, size, bytes, usage);
    Context *context = currentContext;
    if (!context || !context->group->copies.kept) return;
    const std::lock_guard guard(context->group->lock);
    copyBuffer(context->group->copies, boundBuffer(context, target), size, bytes, usage);
}

void GL_APIENTRY glBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, const void *bytes)
{
    if (currentContext) syncArrayBuffer(currentContext);
    driver.glBufferSubData(target, offset, size, bytes);
    Context *context = currentContext;
    if (!context || !context->group->copies.kept) return;
    const std::lock_guard guard(context->group->lock);
    copyIntoBuffer(context->group->copies, boundBuffer(context, target), offset, size, bytes);
}

void GL_APIENTRY glGetBufferParameteriv(GLenum target, GLenum pname, GLint *params)
{
    if (currentContext) syncArrayBuffer(currentContext);
    driver.glGetBufferParameteriv(target, pname, params);
}

static bool isSwitched(GLuint index, bool enabled)
{
    return index < kMaxAttributes && ((heldState->attributes.enabled >> index & 1) != 0) == enabled;
}

[[gnu::noinline]] static void enableArray(GLuint index)
{
    Context *context = currentContext;
    if (!context) return;
    if (index < kMaxAttributes) context->attributes.enabled |= 1u << index;
    driver.glEnableVertexAttribArray(index);
}

[[gnu::noinline]] static void disableArray(GLuint index)
{
    Context *context = currentContext;
    if (!context) return;
    if (index < kMaxAttributes) context->attributes.enabled &= ~(1u << index);
    driver.glDisableVertexAttribArray(index);
}

void GL_APIENTRY glEnableVertexAttribArray(GLuint index)
{
    if (!isSwitched(index, true)) enableArray(index);
}

void GL_APIENTRY glDisableVertexAttribArray(GLuint index)
{
    if (!isSwitched(index, false)) disableArray(index);
}

// Arguments that every driver takes; others may be refused, and then change nothing.
static bool isPlainArray(GLint size, GLenum type, GLsizei stride)
{
    if (size < 1 || size > 4 || stride < 0) return false;
    return (type >= GL_BYTE && type <= GL_UNSIGNED_SHORT) || type == GL_FLOAT || type == GL_FIXED;
}

// The two that follow are out of line and with their caller's arguments, so that the caller is tests and a jump.
[[gnu::noinline]] static void setUnusualArray(GLuint index, GLint size, GLenum type, GLboolean normalized,
                                              GLsizei stride, const void *pointer)
{
    Context *context = currentContext;
    if (!context) return;
    syncArrayBuffer(context);
    if (index < kMaxAttributes)
        context->attributes.arrays[index] = {.pointer = pointer,
                                             .buffer = isPlainArray(size, type, stride) ? context->buffers.array
                                                                                        : kUnknownBuffer,
                                             .size = size,
                                             .type = type,
                                             .strideBytes = stride,
                                             .normalized = normalized};
    driver.glVertexAttribPointer(index, size, type, normalized, stride, pointer);
}

// An array in client memory, or in the buffer that the driver has bound.
[[gnu::noinline]] static void setArray(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                                       const void *pointer)
{
    HeldState &state = *heldState;
    const bool held = index < state.attributes.arraysHeld.load(std::memory_order_relaxed);
    if (!held || state.buffers.driverArray != state.buffers.array || !isPlainArray(size, type, stride))
        return setUnusualArray(index, size, type, normalized, stride, pointer);
    state.attributes.arrays[index] = {.pointer = pointer,
                                      .buffer = state.buffers.array,
                                      .size = size,
                                      .type = type,
                                      .strideBytes = stride,
                                      .normalized = normalized};
    driver.glVertexAttribPointer(index, size, type, normalized, stride, pointer);
}

void GL_APIENTRY glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                                       const void *pointer)
{
    HeldState &state = *heldState;
    if (index < state.attributes.arraysHeld.load(std::memory_order_relaxed)) [[likely]] {
        // The comparison of the buffers is the last, since it may take the register of the state.
        const AttributeArray &array = state.attributes.arrays[index];
        if (array.size == size && array.type == type && array.strideBytes == stride && array.normalized == normalized &&
            array.pointer == pointer && array.buffer == state.buffers.array)
            return;
    }
    setArray(index, size, type, normalized, stride, pointer);
}

[[gnu::noinline]] static void setNewValue(GLuint index, const GLfloat *value)
{
    Context *context = currentContext;
    if (!context) return;
    if (index < kMaxAttributes) memcpy(context->attributes.values[index], value, sizeof context->attributes.values[0]);
    driver.glVertexAttrib4fv(index, value);
}

static void setValue(GLuint index, const GLfloat *value)
{
    if (index < kMaxAttributes) [[likely]] {
        const GLfloat *held = heldState->attributes.values[index];
        if (isEqual<4>(reinterpret_cast<const uint32_t *>(held), value)) return;
    }
    setNewValue(index, value);
}

static void setValue(GLuint index, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    const GLfloat value[4] = {x, y, z, w};
    setValue(index, value);
}

void GL_APIENTRY glVertexAttrib1f(GLuint index, GLfloat x)
{
    setValue(index, x, 0.0f, 0.0f, 1.0f);
}

void GL_APIENTRY glVertexAttrib2f(GLuint index, GLfloat x, GLfloat y)
{
    setValue(index, x, y, 0.0f, 1.0f);
}

void GL_APIENTRY glVertexAttrib3f(GLuint index, GLfloat x, GLfloat y, GLfloat z)
{
    setValue(index, x, y, z, 1.0f);
}

void GL_APIENTRY glVertexAttrib4f(GLuint index, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    setValue(index, x, y, z, w);
}

void GL_APIENTRY glVertexAttrib1fv(GLuint index, const GLfloat *v)
{
    setValue(index, v[0], 0.0f, 0.0f, 1.0f);
}

void GL_APIENTRY glVertexAttrib2fv(GLuint index, const GLfloat *v)
{
    setValue(index, v[0], v[1], 0.0f, 1.0f);
}

void GL_APIENTRY glVertexAttrib3fv(GLuint index, const GLfloat *v)
{
    setValue(index, v[0], v[1], v[2], 1.0f);
}

void GL_APIENTRY glVertexAttrib4fv(GLuint index, const GLfloat *v)
{
    setValue(index, v);
}

// An array whose state is not known reads a buffer that is gone: nothing can be read for it, before or after.
static void putBackAttribute(const AttributeState &attributes, GLuint location)
{
    const AttributeArray &array = attributes.arrays[location];
    const bool known = array.buffer != kUnknownBuffer;
    driver.glBindBuffer(GL_ARRAY_BUFFER, known ? static_cast<GLuint>(array.buffer) : 0);
    if (known)
        driver.glVertexAttribPointer(location, array.size, array.type, array.normalized, array.strideBytes,
                                     array.pointer);
    else
        driver.glVertexAttribPointer(location, 4, GL_FLOAT, GL_FALSE, 0, nullptr);
    if (attributes.enabled & (1u << location))
        driver.glEnableVertexAttribArray(location);
    else
        driver.glDisableVertexAttribArray(location);
    driver.glVertexAttrib4fv(location, attributes.values[location]);
}

void putBackAttributes(const Context *context, uint32_t locations)
{
    for (GLuint location = 0; location < kMaxAttributes; ++location)
        if (locations & (1u << location)) putBackAttribute(context->attributes, location);
    driver.glBindBuffer(GL_ARRAY_BUFFER, context->buffers.driverArray);
}
