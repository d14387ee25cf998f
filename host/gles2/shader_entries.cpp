// SPDX-License-Identifier: MIT
// Shader objects. They hold texts; the driver sees one when a program is linked or its compile status is asked for.
#include "programs.h"

#include <algorithm>
#include <cstring>

using Guard = std::lock_guard<GroupLock>;

ShaderObject *findShader(const Context *context, GLuint name)
{
    const auto found = context->group->shaders.find(name);
    if (found != context->group->shaders.end()) return found->second;
    raiseError(context->group->programs.count(name) ? GL_INVALID_OPERATION : GL_INVALID_VALUE);
    return nullptr;
}

static void freeShader(ShareGroup *group, ShaderObject *shader)
{
    group->shaders.erase(shader->name);
    delete shader;
}

static void deleteObject(ShareGroup *group, ShaderObject *shader)
{
    shader->deleted = true;
    if (shader->attachments == 0) freeShader(group, shader);
}

void deleteShadersOf(const Context *context)
{
    ShareGroup *group = context->group;
    for (auto at = group->shaders.begin(); at != group->shaders.end();) {
        ShaderObject *shader = (at++)->second; // may be erased
        if (shader->maker != context) continue;
        shader->maker = nullptr;
        deleteObject(group, shader);
    }
}

void detachShader(ShareGroup *group, ShaderObject *shader)
{
    if (shader && --shader->attachments == 0 && shader->deleted) freeShader(group, shader);
}

void copyText(const std::string &text, GLsizei size, GLsizei *length, GLchar *out)
{
    if (size < 0) return raiseError(GL_INVALID_VALUE);
    const size_t copied = size > 0 && out ? std::min(text.size(), static_cast<size_t>(size) - 1) : 0;
    if (size > 0 && out) {
        memcpy(out, text.data(), copied);
        out[copied] = '\0';
    }
    if (length) *length = static_cast<GLsizei>(copied);
}

void ensureCompiled(const ShareGroup *group, ShaderObject *shader)
{
    if (!shader->compileAsked || shader->resultKnown) return;
    const ShaderStage stage = shader->type == GL_VERTEX_SHADER ? ShaderStage::Vertex : ShaderStage::Fragment;
    const GLuint compiled = compileForDriver(
        shader->type, translateShader(stage, shader->compiledSource, group->abilities), shader->result);
    driver.glDeleteShader(compiled);
    shader->resultKnown = true;
}

GLuint GL_APIENTRY glCreateShader(GLenum type)
{
    Context *context = currentContext;
    if (!context) return 0;
    if (type != GL_VERTEX_SHADER && type != GL_FRAGMENT_SHADER) {
        raiseError(GL_INVALID_ENUM);
        return 0;
    }
    const Guard guard(context->group->lock);
    ShaderObject *shader = new ShaderObject{};
    shader->name = ++context->group->lastName;
    shader->maker = context;
    shader->type = type;
    context->group->shaders[shader->name] = shader;
    return shader->name;
}

void GL_APIENTRY glDeleteShader(GLuint name)
{
    Context *context = currentContext;
    if (!context || name == 0) return;
    const Guard guard(context->group->lock);
    if (ShaderObject *shader = findShader(context, name)) deleteObject(context->group, shader);
}

void GL_APIENTRY glShaderSource(GLuint name, GLsizei count, const GLchar *const *strings, const GLint *lengths)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ShaderObject *shader = findShader(context, name);
    if (!shader) return;
    if (count < 0) return raiseError(GL_INVALID_VALUE);

    shader->source.clear();
    for (GLsizei i = 0; i < count; ++i) {
        if (lengths && lengths[i] >= 0)
            shader->source.append(strings[i], static_cast<size_t>(lengths[i]));
        else
            shader->source.append(strings[i]);
    }
}

void GL_APIENTRY glCompileShader(GLuint name)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ShaderObject *shader = findShader(context, name);
    if (!shader || (shader->compileAsked && shader->compiledSource == shader->source)) return;
    shader->compiledSource = shader->source;
    shader->compileAsked = true;
    shader->resultKnown = false;
}

static GLint lengthWithZero(const std::string &text)
{
    return text.empty() ? 0 : static_cast<GLint>(text.size()) + 1;
}

void GL_APIENTRY glGetShaderiv(GLuint name, GLenum pname, GLint *params)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ShaderObject *shader = findShader(context, name);
    if (!shader) return;
    switch (pname) {
    case GL_SHADER_TYPE:
        *params = static_cast<GLint>(shader->type);
        return;
    case GL_DELETE_STATUS:
        *params = shader->deleted;
        return;
    case GL_COMPILE_STATUS:
        ensureCompiled(context->group, shader);
        *params = shader->compileAsked && shader->result.ok;
        return;
    case GL_INFO_LOG_LENGTH:
        ensureCompiled(context->group, shader);
        *params = lengthWithZero(shader->result.log);
        return;
    case GL_SHADER_SOURCE_LENGTH:
        *params = lengthWithZero(shader->source);
        return;
    default:
        raiseError(GL_INVALID_ENUM);
    }
}

void GL_APIENTRY glGetShaderInfoLog(GLuint name, GLsizei size, GLsizei *length, GLchar *log)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ShaderObject *shader = findShader(context, name);
    if (!shader) return;
    ensureCompiled(context->group, shader);
    copyText(shader->result.log, size, length, log);
}

void GL_APIENTRY glGetShaderSource(GLuint name, GLsizei size, GLsizei *length, GLchar *source)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    if (const ShaderObject *shader = findShader(context, name)) copyText(shader->source, size, length, source);
}
