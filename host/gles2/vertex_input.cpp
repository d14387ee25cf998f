// SPDX-License-Identifier: MIT
// Buffers and vertex attributes. The library above binds every attribute anew at every draw; the driver is called only
// for what it does not have. The array-buffer binding itself is no state of a draw, so it waits for a call that reads
// it.
#include "vertex_input.h"

#include <cstring>

void initAttributes(Context *context)
{
    for (AttributeArray &array : context->attributes.arrays)
        array = {.pointer = nullptr,
                 .buffer = 0,
                 .size = 4,
                 .type = GL_FLOAT,
                 .strideBytes = 0,
                 .normalized = GL_FALSE,
                 .known = true};
    for (GLfloat(&value)[4] : context->attributes.values)
        value[3] = 1.0f;
}

// Buffers were deleted by another context of the group. A name may stand for a new buffer by now, while an attribute
// here still holds the old one, so nothing that names a buffer is known any longer. The array binding may have been
// asked for since; the element binding has not, and keeps its buffer alive until the next bind.
[[gnu::noinline]] static void forgetBuffers(Context *context, uint32_t deletions)
{
    BufferState &buffers = context->buffers;
    buffers.deletedSeen = deletions;
    memset(buffers.seen, 0, sizeof buffers.seen);
    for (AttributeArray &array : context->attributes.arrays)
        if (array.buffer) array.known = false;
    driver.glBindBuffer(GL_ARRAY_BUFFER, buffers.array);
    buffers.driverArray = buffers.array;
    buffers.elementOld = true;
}

static void noticeDeletions(Context *context)
{
    const uint32_t deletions = context->group->buffersDeleted.load(std::memory_order_relaxed);
    if (deletions != context->buffers.deletedSeen) [[unlikely]]
        forgetBuffers(context, deletions);
}

void expectDeletions(Context *context)
{
    context->buffers.deletedSeen = context->group->buffersDeleted.load(std::memory_order_relaxed) - 1;
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
[[gnu::noinline]] static void bindNewArrayBuffer(Context *context, GLuint buffer)
{
    BufferState &buffers = context->buffers;
    noteBuffer(context, buffer);
    buffers.seen[buffer % kSeenBufferCount] = buffer;
    buffers.driverArray = buffer;
    driver.glBindBuffer(GL_ARRAY_BUFFER, buffer);
}

[[gnu::noinline]] static void bindOtherBuffer(Context *context, GLenum target, GLuint buffer)
{
    noticeDeletions(context);
    noteBuffer(context, buffer);
    BufferState &buffers = context->buffers;
    if (target == GL_ELEMENT_ARRAY_BUFFER) {
        if (buffers.element == buffer && !buffers.elementOld) return;
        buffers.element = buffer;
        buffers.elementOld = false;
    }
    driver.glBindBuffer(target, buffer);
}

// Deletions by other contexts are noticed by whatever reads the array binding, not here.
void GL_APIENTRY glBindBuffer(GLenum target, GLuint buffer)
{
    Context *context = currentContext;
    if (!context) [[unlikely]]
        return;
    if (target != GL_ARRAY_BUFFER) return bindOtherBuffer(context, target, buffer);
    BufferState &buffers = context->buffers;
    if (buffers.array == buffer) return;
    buffers.array = buffer;
    if (buffer != 0 && buffers.seen[buffer % kSeenBufferCount] != buffer) bindNewArrayBuffer(context, buffer);
}

// A deleted buffer's bindings in this context go back to 0, here as in the driver.
static void forgetBuffer(Context *context, GLuint buffer)
{
    if (buffer == 0) return;
    BufferState &buffers = context->buffers;
    if (buffers.array == buffer) buffers.array = 0;
    if (buffers.driverArray == buffer) buffers.driverArray = 0;
    if (buffers.element == buffer) buffers.element = 0;
    GLuint &seen = buffers.seen[buffer % kSeenBufferCount];
    if (seen == buffer) seen = 0;
    for (AttributeArray &array : context->attributes.arrays)
        if (array.buffer == buffer) array.known = false;
}

static void forgetCopies(ShareGroup *group, GLsizei n, const GLuint *names)
{
    const std::lock_guard<std::mutex> guard(group->lock);
    for (GLsizei i = 0; i < n; ++i)
        group->copies.bytes.erase(names[i]);
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
    if (context->group->copies.kept) forgetCopies(context->group, n, names);
    const uint32_t before = context->group->buffersDeleted.fetch_add(1, std::memory_order_relaxed);
    // Where another context deleted something in between, the next look at the count finds the difference.
    if (before == context->buffers.deletedSeen) context->buffers.deletedSeen = before + 1;
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
    const std::lock_guard<std::mutex> guard(context->group->lock);
    copyBuffer(context->group->copies, boundBuffer(context, target), size, bytes, usage);
}

void GL_APIENTRY glBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, const void *bytes)
{
    if (currentContext) syncArrayBuffer(currentContext);
    driver.glBufferSubData(target, offset, size, bytes);
    Context *context = currentContext;
    if (!context || !context->group->copies.kept) return;
    const std::lock_guard<std::mutex> guard(context->group->lock);
    copyIntoBuffer(context->group->copies, boundBuffer(context, target), offset, size, bytes);
}

void GL_APIENTRY glGetBufferParameteriv(GLenum target, GLenum pname, GLint *params)
{
    if (currentContext) syncArrayBuffer(currentContext);
    driver.glGetBufferParameteriv(target, pname, params);
}

// True when the attribute's array is switched as asked for; otherwise it is marked so and the driver is to follow.
static bool isSwitched(GLuint index, bool enabled)
{
    Context *context = currentContext;
    if (!context) [[unlikely]]
        return true;
    if (index >= kMaxAttributes) return false;
    const uint32_t bit = 1u << index;
    if (((context->attributes.enabled & bit) != 0) == enabled) return true;
    context->attributes.enabled ^= bit;
    return false;
}

void GL_APIENTRY glEnableVertexAttribArray(GLuint index)
{
    if (!isSwitched(index, true)) driver.glEnableVertexAttribArray(index);
}

void GL_APIENTRY glDisableVertexAttribArray(GLuint index)
{
    if (!isSwitched(index, false)) driver.glDisableVertexAttribArray(index);
}

// Arguments that every driver takes; others may be refused, and then change nothing.
static bool isPlainArray(GLint size, GLenum type, GLsizei stride)
{
    if (size < 1 || size > 4 || stride < 0) return false;
    return (type >= GL_BYTE && type <= GL_UNSIGNED_SHORT) || type == GL_FLOAT || type == GL_FIXED;
}

// Out of line and with its caller's arguments, so that the caller is a test and a jump.
[[gnu::noinline]] static void setArray(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                                       const void *pointer)
{
    Context *context = currentContext;
    if (!context) return;
    syncArrayBuffer(context);
    if (index < kMaxAttributes)
        context->attributes.arrays[index] = {.pointer = pointer,
                                             .buffer = context->buffers.array,
                                             .size = size,
                                             .type = type,
                                             .strideBytes = stride,
                                             .normalized = normalized,
                                             .known = isPlainArray(size, type, stride)};
    driver.glVertexAttribPointer(index, size, type, normalized, stride, pointer);
}

void GL_APIENTRY glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                                       const void *pointer)
{
    const Context *context = currentContext;
    if (context && index < kMaxAttributes) [[likely]] {
        const AttributeArray &array = context->attributes.arrays[index];
        if (array.pointer == pointer && array.buffer == context->buffers.array && array.size == size &&
            array.type == type && array.strideBytes == stride && array.normalized == normalized && array.known &&
            context->buffers.deletedSeen == context->group->buffersDeleted.load(std::memory_order_relaxed))
            return;
    }
    setArray(index, size, type, normalized, stride, pointer);
}

static void setValue(GLuint index, GLfloat x, GLfloat y, GLfloat z, GLfloat w)
{
    Context *context = currentContext;
    if (!context) [[unlikely]]
        return;
    const GLfloat value[4] = {x, y, z, w};
    if (index < kMaxAttributes) [[likely]] {
        GLfloat *held = context->attributes.values[index];
        if (memcmp(held, value, sizeof value) == 0) return; // bits: -0.0 and NaN are values like others
        memcpy(held, value, sizeof value);
    }
    driver.glVertexAttrib4fv(index, value);
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
    setValue(index, v[0], v[1], v[2], v[3]);
}

// An array whose state is not known reads a buffer that is gone: nothing can be read for it, before or after.
static void putBackAttribute(const AttributeState &attributes, GLuint location)
{
    const AttributeArray &array = attributes.arrays[location];
    driver.glBindBuffer(GL_ARRAY_BUFFER, array.known ? array.buffer : 0);
    if (array.known)
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
