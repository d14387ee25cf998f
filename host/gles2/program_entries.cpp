// SPDX-License-Identifier: MIT
// Program objects: attachments, linking, use, and queries.
#include "programs.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using Guard = std::lock_guard<GroupLock>;

// The place of a program among those found last.
static ProgramObject *&recentProgram(ShareGroup *group, GLuint name)
{
    return group->recentPrograms[name % kRecentPrograms];
}

ProgramObject *findProgram(const Context *context, GLuint name)
{
    ProgramObject *&recent = recentProgram(context->group, name);
    if (recent && recent->name == name) return recent;
    const auto found = context->group->programs.find(name);
    if (found != context->group->programs.end()) return recent = found->second;
    raiseError(context->group->shaders.count(name) ? GL_INVALID_OPERATION : GL_INVALID_VALUE);
    return nullptr;
}

// The linked program behind a name, for queries; null with an error when there is none.
static const LinkedProgram *findLinked(const Context *context, GLuint name)
{
    const ProgramObject *program = findProgram(context, name);
    if (!program) return nullptr;
    if (program->linkOk) return program->linked;
    raiseError(GL_INVALID_OPERATION);
    return nullptr;
}

static void freeProgram(ShareGroup *group, ProgramObject *program)
{
    detachShader(group, program->vertex);
    detachShader(group, program->fragment);
    if (program->linked) releaseLinked(group, program->linked);
    ProgramObject *&recent = recentProgram(group, program->name);
    if (recent == program) recent = nullptr;
    group->programs.erase(program->name);
    delete program;
}

static void deleteObject(ShareGroup *group, ProgramObject *program)
{
    program->deleted = true;
    if (program->uses == 0) freeProgram(group, program);
}

void deleteProgramsOf(const Context *context)
{
    ShareGroup *group = context->group;
    for (auto at = group->programs.begin(); at != group->programs.end();) {
        ProgramObject *program = (at++)->second; // may be erased
        if (program->maker != context) continue;
        program->maker = nullptr;
        deleteObject(group, program);
    }
}

GLuint GL_APIENTRY glCreateProgram(void)
{
    Context *context = currentContext;
    if (!context) return 0;
    const Guard guard(context->group->lock);
    ProgramObject *program = new ProgramObject{};
    program->name = ++context->group->lastName;
    program->maker = context;
    context->group->programs[program->name] = program;
    return program->name;
}

void GL_APIENTRY glDeleteProgram(GLuint name)
{
    Context *context = currentContext;
    if (!context || name == 0) return;
    const Guard guard(context->group->lock);
    if (ProgramObject *program = findProgram(context, name)) deleteObject(context->group, program);
}

static ShaderObject *&attachmentOf(ProgramObject *program, const ShaderObject *shader)
{
    return shader->type == GL_VERTEX_SHADER ? program->vertex : program->fragment;
}

void GL_APIENTRY glAttachShader(GLuint programName, GLuint shaderName)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ProgramObject *program = findProgram(context, programName);
    ShaderObject *shader = program ? findShader(context, shaderName) : nullptr;
    if (!shader) return;
    if (attachmentOf(program, shader)) return raiseError(GL_INVALID_OPERATION);
    attachmentOf(program, shader) = shader;
    ++shader->attachments;
}

void GL_APIENTRY glDetachShader(GLuint programName, GLuint shaderName)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ProgramObject *program = findProgram(context, programName);
    ShaderObject *shader = program ? findShader(context, shaderName) : nullptr;
    if (!shader) return;
    if (attachmentOf(program, shader) != shader) return raiseError(GL_INVALID_OPERATION);
    attachmentOf(program, shader) = nullptr;
    detachShader(context->group, shader);
}

void GL_APIENTRY glBindAttribLocation(GLuint name, GLuint index, const GLchar *attribute)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ProgramObject *program = findProgram(context, name);
    if (!program) return;
    if (strncmp(attribute, "gl_", 3) == 0) return raiseError(GL_INVALID_OPERATION);
    GLint limit = 0;
    driver.glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, &limit);
    if (index >= static_cast<GLuint>(limit)) return raiseError(GL_INVALID_VALUE);
    program->attributeBindings[attribute] = index;
}

static void setLinkedProgram(Context *context, LinkedProgram *linked)
{
    context->program = linked;
    context->uniformSlots = linked ? linked->slots : nullptr;
    context->uniformCount = linked ? static_cast<uint32_t>(linked->slotCount) : 0;
    context->specialDraws = expandedDraws(context, linked);
    // Loads may wait from before the program was last taken out of use, also in another context.
    if (linked && linked->waiting.first < linked->waiting.end) [[unlikely]]
        context->specialDraws |= DRAWS_LOADED;
}

// Puts a linked program in use in the context, for this layer and the driver; null takes the present one out of use.
// The group's lock must be held.
[[gnu::always_inline]] static inline void enterProgram(Context *context, ProgramObject *program)
{
    ProgramObject *before = context->programObject;
    LinkedProgram *linkedBefore = context->program;
    context->programObject = program;
    setLinkedProgram(context, program ? program->linked : nullptr);
    if (program) {
        ++program->uses;
        ++program->linked->users;
        driver.glUseProgram(program->linked->driverProgram);
    } else {
        driver.glUseProgram(0);
    }
    if (!before) return;
    releaseLinked(context->group, linkedBefore);
    if (--before->uses == 0 && before->deleted) freeProgram(context->group, before);
}

void leaveProgram(Context *context)
{
    ProgramObject *before = context->programObject;
    if (!before) return;
    const Guard guard(context->group->lock);
    releaseLinked(context->group, context->program);
    context->programObject = nullptr;
    setLinkedProgram(context, nullptr);
    if (--before->uses == 0 && before->deleted) freeProgram(context->group, before);
}

[[gnu::noinline]] static void useOtherProgram(GLuint name)
{
    Context *context = currentContext;
    const Guard guard(context->group->lock);
    ProgramObject *program = recentProgram(context->group, name);
    if (!program || program->name != name) [[unlikely]] {
        program = name ? findProgram(context, name) : nullptr;
        if (name && !program) return;
    }
    if (program && !program->linkOk) return raiseError(GL_INVALID_OPERATION);
    enterProgram(context, program);
}

void GL_APIENTRY glUseProgram(GLuint name)
{
    const Context *context = currentContext;
    if (!context) return;
    const ProgramObject *present = context->programObject;
    // A program linked again through another context takes effect here at the next use.
    if (present ? present->name == name && present->linked == context->program && present->linkOk : name == 0) return;
    useOtherProgram(name);
}

void GL_APIENTRY glLinkProgram(GLuint name)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ProgramObject *program = findProgram(context, name);
    if (!program) return;

    LinkedProgram *linked = linkProgram(context, program);
    program->linkOk = linked->result.ok;
    program->log = linked->result.log;
    program->validated = false;
    if (!program->linkOk) {
        delete linked; // what is in use stays in use
        return;
    }
    if (program->linked) releaseLinked(context->group, program->linked);
    program->linked = linked;
    if (context->programObject == program) enterProgram(context, program);
}

void GL_APIENTRY glValidateProgram(GLuint name)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    ProgramObject *program = findProgram(context, name);
    if (!program) return;
    program->validated = false;
    if (!program->linkOk) return;
    GLint status = 0;
    driver.glValidateProgram(program->linked->driverProgram);
    driver.glGetProgramiv(program->linked->driverProgram, GL_VALIDATE_STATUS, &status);
    program->validated = status == GL_TRUE;
}

// Answers that come from the program object; false for those of the linked program.
static bool answerFromObject(const ProgramObject *program, GLenum pname, GLint *params)
{
    switch (pname) {
    case GL_DELETE_STATUS:
        *params = program->deleted;
        return true;
    case GL_LINK_STATUS:
        *params = program->linkOk;
        return true;
    case GL_VALIDATE_STATUS:
        *params = program->validated;
        return true;
    case GL_INFO_LOG_LENGTH:
        *params = program->log.empty() ? 0 : static_cast<GLint>(program->log.size()) + 1;
        return true;
    case GL_ATTACHED_SHADERS:
        *params = (program->vertex != nullptr) + (program->fragment != nullptr);
        return true;
    default:
        return false;
    }
}

// How many uniforms there are, or the longest name's length with its closing zero.
static GLint countUniforms(const std::vector<ActiveUniform> &uniforms, GLenum pname)
{
    if (pname == GL_ACTIVE_UNIFORMS) return static_cast<GLint>(uniforms.size());
    size_t longest = 0;
    for (const ActiveUniform &uniform : uniforms)
        longest = std::max(longest, uniform.name.size() + 1);
    return static_cast<GLint>(longest);
}

void GL_APIENTRY glGetProgramiv(GLuint name, GLenum pname, GLint *params)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    const ProgramObject *program = findProgram(context, name);
    if (!program || answerFromObject(program, pname, params)) return;
    const bool countsUniforms = pname == GL_ACTIVE_UNIFORMS || pname == GL_ACTIVE_UNIFORM_MAX_LENGTH;
    const bool counts = pname == GL_ACTIVE_ATTRIBUTES || pname == GL_ACTIVE_ATTRIBUTE_MAX_LENGTH || countsUniforms;
    if (program->linkOk && countsUniforms) {
        *params = countUniforms(program->linked->activeUniforms, pname);
        return;
    }
    if (program->linkOk) return driver.glGetProgramiv(program->linked->driverProgram, pname, params);
    if (counts)
        *params = 0;
    else
        raiseError(GL_INVALID_ENUM);
}

void GL_APIENTRY glGetProgramInfoLog(GLuint name, GLsizei size, GLsizei *length, GLchar *log)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    if (const ProgramObject *program = findProgram(context, name)) copyText(program->log, size, length, log);
}

void GL_APIENTRY glGetActiveAttrib(GLuint name, GLuint index, GLsizei size, GLsizei *length, GLint *elements,
                                   GLenum *type, GLchar *out)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    const LinkedProgram *linked = findLinked(context, name);
    if (linked) driver.glGetActiveAttrib(linked->driverProgram, index, size, length, elements, type, out);
}

void GL_APIENTRY glGetActiveUniform(GLuint name, GLuint index, GLsizei size, GLsizei *length, GLint *elements,
                                    GLenum *type, GLchar *out)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    const LinkedProgram *linked = findLinked(context, name);
    if (!linked) return;
    if (size < 0 || index >= linked->activeUniforms.size()) return raiseError(GL_INVALID_VALUE);
    const ActiveUniform &uniform = linked->activeUniforms[index];
    copyText(uniform.name, size, length, out);
    *elements = uniform.elements;
    *type = uniform.type;
}

// -1 for one that is not active, as the driver answers.
static GLint attributeLocation(const LinkedProgram *linked, const GLchar *name)
{
    for (const AttributeLocation &attribute : linked->attributes)
        if (strcmp(attribute.name.c_str(), name) == 0) return attribute.location;
    return -1;
}

[[gnu::noinline]] static GLint attributeLocationOf(GLuint name, const GLchar *attribute)
{
    const Context *context = currentContext;
    const Guard guard(context->group->lock);
    const LinkedProgram *linked = findLinked(context, name);
    return linked ? attributeLocation(linked, attribute) : -1;
}

GLint GL_APIENTRY glGetAttribLocation(GLuint name, const GLchar *attribute)
{
    const Context *context = currentContext;
    if (!context) return -1;
    // The library asks for those of the program in use at every draw-texture.
    const ProgramObject *present = context->programObject;
    if (present && present->name == name && present->linked == context->program && present->linkOk)
        return attributeLocation(context->program, attribute);
    return attributeLocationOf(name, attribute);
}

GLint GL_APIENTRY glGetUniformLocation(GLuint name, const GLchar *uniform)
{
    Context *context = currentContext;
    if (!context) return -1;
    const Guard guard(context->group->lock);
    const LinkedProgram *linked = findLinked(context, name);
    return linked ? uniformLocation(linked, uniform) : -1;
}

// As queries convert: to the nearest integer, and within those there are.
static GLint nearestInteger(GLfloat value)
{
    if (std::isnan(value)) return 0;
    return static_cast<GLint>(std::clamp(std::nearbyint(static_cast<double>(value)), -2147483648.0, 2147483647.0));
}

// Whether the value at a location is held here: that of a gathered uniform.
static bool readGathered(const LinkedProgram *linked, GLint location, GLfloat (&value)[kMaxUniformWords])
{
    if (static_cast<size_t>(location) >= linked->slotCount || !linked->slots[location].gathered) return false;
    uint32_t words[kMaxUniformWords] = {};
    copyHeld(linked->slots[location], words);
    memcpy(value, words, sizeof value);
    return true;
}

void GL_APIENTRY glGetUniformfv(GLuint name, GLint location, GLfloat *params)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    const LinkedProgram *linked = findLinked(context, name);
    if (!linked) return;
    GLfloat value[kMaxUniformWords];
    if (!readGathered(linked, location, value)) return driver.glGetUniformfv(linked->driverProgram, location, params);
    std::copy_n(value, wordsOf(linked->slots[location].kind), params);
}

void GL_APIENTRY glGetUniformiv(GLuint name, GLint location, GLint *params)
{
    Context *context = currentContext;
    if (!context) return;
    const Guard guard(context->group->lock);
    const LinkedProgram *linked = findLinked(context, name);
    if (!linked) return;
    GLfloat value[kMaxUniformWords];
    if (!readGathered(linked, location, value)) return driver.glGetUniformiv(linked->driverProgram, location, params);
    std::transform(value, value + wordsOf(linked->slots[location].kind), params, nearestInteger);
}
