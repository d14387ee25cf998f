// SPDX-License-Identifier: MIT
// Binds that make objects, deletions, and the listings of what is there.
#include "object_names.h"

#include "context.h"

#include "vertex_input.h"

bool noteName(SharedNames &shared, NamesOfKind SharedNames::*kind, SeenNames &seen, GLuint name)
{
    const std::lock_guard<std::mutex> guard(shared.lock);
    seen.names[name % SeenNames::kCount].store(name, std::memory_order_relaxed);
    return (shared.*kind).noted.insert(name).second;
}

void forgetNames(SharedNames &shared, NamesOfKind SharedNames::*kind, GLsizei n, const GLuint *names)
{
    const std::lock_guard<std::mutex> guard(shared.lock);
    for (GLsizei i = 0; i < n; ++i) {
        (shared.*kind).noted.erase(names[i]);
        for (SeenNames *seen : (shared.*kind).seen)
            if (seen->has(names[i])) seen->names[names[i] % SeenNames::kCount].store(0, std::memory_order_relaxed);
    }
}

void joinNames(Context *context)
{
    SharedNames &shared = context->group->names;
    const std::lock_guard<std::mutex> guard(shared.lock);
    shared.textures.seen.push_back(&context->seenTextures);
    shared.buffers.seen.push_back(&context->seenBuffers);
    shared.renderbuffers.seen.push_back(&context->seenRenderbuffers);
}

void leaveNames(Context *context)
{
    SharedNames &shared = context->group->names;
    const std::lock_guard<std::mutex> guard(shared.lock);
    std::erase(shared.textures.seen, &context->seenTextures);
    std::erase(shared.buffers.seen, &context->seenBuffers);
    std::erase(shared.renderbuffers.seen, &context->seenRenderbuffers);
}

// Out of line and with the arguments of its caller, so that the usual bind is a comparison and a jump.
[[gnu::noinline]] static void bindNewTexture(GLenum target, GLuint texture)
{
    Context *context = currentContext;
    if (!context) return driver.glBindTexture(target, texture);
    // A texture that is there before anybody here has bound it is another API's, and so are its images.
    const bool isNew = noteName(context->group->names, &SharedNames::textures, context->seenTextures, texture);
    const bool foreign = isNew && context->imagesFound && driver.glIsTexture(texture);
    driver.glBindTexture(target, texture);
    if (foreign) context->imagesFound(target);
}

void GL_APIENTRY glBindTexture(GLenum target, GLuint texture)
{
    if (!heldState->seenTextures.has(texture)) [[unlikely]]
        return bindNewTexture(target, texture);
    driver.glBindTexture(target, texture);
}

void GL_APIENTRY glBindRenderbuffer(GLenum target, GLuint renderbuffer)
{
    Context *context = currentContext;
    if (context && !context->seenRenderbuffers.has(renderbuffer)) [[unlikely]]
        noteName(context->group->names, &SharedNames::renderbuffers, context->seenRenderbuffers, renderbuffer);
    driver.glBindRenderbuffer(target, renderbuffer);
}

void GL_APIENTRY glDeleteRenderbuffers(GLsizei n, const GLuint *renderbuffers)
{
    driver.glDeleteRenderbuffers(n, renderbuffers);
    if (currentContext) forgetNames(currentContext->group->names, &SharedNames::renderbuffers, n, renderbuffers);
}

// Framebuffers are not shared.
void GL_APIENTRY glBindFramebuffer(GLenum target, GLuint framebuffer)
{
    Context *context = currentContext;
    if (context && framebuffer != 0) context->framebuffers.insert(framebuffer);
    driver.glBindFramebuffer(target, framebuffer);
}

void GL_APIENTRY glDeleteFramebuffers(GLsizei n, const GLuint *framebuffers)
{
    driver.glDeleteFramebuffers(n, framebuffers);
    Context *context = currentContext;
    for (GLsizei i = 0; context && i < n; ++i)
        context->framebuffers.erase(framebuffers[i]);
}

// Writes the names that isObject holds for: at most `room` of them, and how many there are.
template <typename Names, typename IsObject>
static void list(const Names &names, IsObject isObject, GLuint *out, GLint room, GLint *count)
{
    if (room < 0) return raiseError(GL_INVALID_VALUE);
    GLint found = 0;
    for (const GLuint name : names) {
        if (!isObject(name)) continue;
        if (out && found < room) out[found] = name;
        ++found;
    }
    if (count) *count = found;
}

static void listShared(NamesOfKind SharedNames::*kind, GLboolean(GL_APIENTRY *isObject)(GLuint), GLuint *out,
                       GLint room, GLint *count)
{
    SharedNames &shared = currentContext->group->names;
    const std::lock_guard<std::mutex> guard(shared.lock);
    list((shared.*kind).noted, isObject, out, room, count);
}

void GL_APIENTRY glGetTexturesQRN(GLuint *textures, GLint room, GLint *count)
{
    if (currentContext) listShared(&SharedNames::textures, driver.glIsTexture, textures, room, count);
}

void GL_APIENTRY glGetBuffersQRN(GLuint *buffers, GLint room, GLint *count)
{
    Context *context = currentContext;
    if (!context) return;
    syncArrayBuffer(context); // binding a name makes its buffer
    listShared(&SharedNames::buffers, driver.glIsBuffer, buffers, room, count);
}

void GL_APIENTRY glGetRenderbuffersQRN(GLuint *renderbuffers, GLint room, GLint *count)
{
    if (currentContext) listShared(&SharedNames::renderbuffers, driver.glIsRenderbuffer, renderbuffers, room, count);
}

void GL_APIENTRY glGetFramebuffersQRN(GLuint *framebuffers, GLint room, GLint *count)
{
    if (currentContext) list(currentContext->framebuffers, driver.glIsFramebuffer, framebuffers, room, count);
}

// The names of a map of objects, in rising order.
template <typename Map>
static std::set<GLuint> namesOf(const Map &objects)
{
    std::set<GLuint> names;
    for (const auto &[name, object] : objects)
        names.insert(name);
    return names;
}

static bool isAny(GLuint)
{
    return true;
}

void GL_APIENTRY glGetShadersQRN(GLuint *shaders, GLint room, GLint *count)
{
    Context *context = currentContext;
    if (!context) return;
    const std::lock_guard guard(context->group->lock);
    list(namesOf(context->group->shaders), isAny, shaders, room, count);
}

void GL_APIENTRY glGetProgramsQRN(GLuint *programs, GLint room, GLint *count)
{
    Context *context = currentContext;
    if (!context) return;
    const std::lock_guard guard(context->group->lock);
    list(namesOf(context->group->programs), isAny, programs, room, count);
}

// Programs kept between runs are loaded as binaries. Like every question whether a name is something, it has no errors.
GLboolean GL_APIENTRY glIsProgramBinaryQRN(GLuint name)
{
    Context *context = currentContext;
    if (!context) return GL_FALSE;
    const std::lock_guard guard(context->group->lock);
    const auto found = context->group->programs.find(name);
    if (found == context->group->programs.end() || !found->second->linkOk) return GL_FALSE;
    return found->second->linked->result.loaded;
}
