// SPDX-License-Identifier: MIT
// The uniforms of a linked program and the values the driver has for them.
#include "programs.h"

#include <algorithm>
#include <cstring>
#include <string_view>

static constexpr GLint kMaxRememberedLocation = 4096; // drivers with scattered locations would need huge tables

struct UniformType {
    GLenum type;
    UniformKind kind;
    uint32_t words;
};

static constexpr UniformType kTypes[] = {
    {GL_FLOAT, UniformKind::Float1, 1},        {GL_FLOAT_VEC2, UniformKind::Float2, 2},
    {GL_FLOAT_VEC3, UniformKind::Float3, 3},   {GL_FLOAT_VEC4, UniformKind::Float4, 4},
    {GL_FLOAT_MAT2, UniformKind::Matrix2, 4},  {GL_FLOAT_MAT3, UniformKind::Matrix3, 9},
    {GL_FLOAT_MAT4, UniformKind::Matrix4, 16}, {GL_INT, UniformKind::Int1, 1},
    {GL_INT_VEC2, UniformKind::Int2, 2},       {GL_INT_VEC3, UniformKind::Int3, 3},
    {GL_INT_VEC4, UniformKind::Int4, 4},       {GL_BOOL, UniformKind::Int1, 1},
    {GL_BOOL_VEC2, UniformKind::Int2, 2},      {GL_BOOL_VEC3, UniformKind::Int3, 3},
    {GL_BOOL_VEC4, UniformKind::Int4, 4},      {GL_SAMPLER_2D, UniformKind::Int1, 1},
    {GL_SAMPLER_CUBE, UniformKind::Int1, 1},   {GL_SAMPLER_EXTERNAL_OES, UniformKind::Int1, 1},
};

static bool isSampler(GLenum type)
{
    return type == GL_SAMPLER_2D || type == GL_SAMPLER_CUBE || type == GL_SAMPLER_EXTERNAL_OES;
}

// Adds the elements of one uniform. Elements without consecutive locations are left out, and false is returned: loads
// of them go through, and what they hold is not known.
static bool addUniform(LinkedProgram *linked, const UniformType &type, std::string name, GLint elements)
{
    const bool isArray = name.ends_with("[0]");
    if (isArray) name.resize(name.size() - 3);
    const GLint first = driver.glGetUniformLocation(linked->driverProgram, name.c_str());
    if (first < 0 || first + elements > kMaxRememberedLocation) return false;
    for (GLint i = 1; i < elements; ++i) {
        const std::string element = name + "[" + std::to_string(i) + "]";
        if (driver.glGetUniformLocation(linked->driverProgram, element.c_str()) != first + i) return false;
    }

    const size_t end = static_cast<size_t>(first + elements);
    if (linked->uniforms.size() < end) linked->uniforms.resize(end);
    for (GLint i = 0; i < elements; ++i) {
        linked->uniforms[static_cast<size_t>(first + i)] = {
            .kind = type.kind,
            .heldKind = type.kind,
            .isArray = isArray,
            .isSampler = isSampler(type.type),
            .element = i,
            .elementsLeft = elements - i,
            .held = nullptr,
        };
    }
    linked->values.resize(linked->values.size() + type.words * static_cast<size_t>(elements));
    return true;
}

static uint32_t wordsOf(UniformKind kind)
{
    const auto row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [&](const UniformType &candidate) { return candidate.kind == kind; });
    return row == std::end(kTypes) ? 0 : row->words;
}

// Gives every location its place, once the memory of neither list moves any longer.
static void placeValues(LinkedProgram *linked)
{
    linked->slots = linked->uniforms.data();
    linked->slotCount = linked->uniforms.size();
    uint32_t *next = linked->values.data();
    for (UniformSlot &slot : linked->uniforms) {
        slot.held = next;
        next += wordsOf(slot.kind);
    }
}

void readUniforms(LinkedProgram *linked)
{
    GLint count = 0;
    GLint longest = 0;
    driver.glGetProgramiv(linked->driverProgram, GL_ACTIVE_UNIFORMS, &count);
    driver.glGetProgramiv(linked->driverProgram, GL_ACTIVE_UNIFORM_MAX_LENGTH, &longest);
    std::string name;
    linked->keepable = true;
    for (GLint i = 0; i < count; ++i) {
        GLsizei length = 0;
        GLint elements = 0;
        GLenum type = 0;
        name.assign(static_cast<size_t>(longest) + 1, '\0');
        driver.glGetActiveUniform(linked->driverProgram, static_cast<GLuint>(i), longest + 1, &length, &elements, &type,
                                  name.data());
        name.resize(static_cast<size_t>(length));
        if (name == kViewportSizeUniform || name == kLineWidthUniform) continue; // loaded by the draw itself
        const auto known = std::find_if(std::begin(kTypes), std::end(kTypes),
                                        [&](const UniformType &row) { return row.type == type; });
        if (known == std::end(kTypes) || !addUniform(linked, *known, name, elements)) linked->keepable = false;
    }
    placeValues(linked);
}

static void zeroUniform(UniformKind kind, GLint location)
{
    static constexpr GLfloat zeros[16] = {};
    static constexpr GLint zeroInts[4] = {};
    switch (kind) {
    case UniformKind::None:
        return;
    case UniformKind::Int1:
        return driver.glUniform1iv(location, 1, zeroInts);
    case UniformKind::Int2:
        return driver.glUniform2iv(location, 1, zeroInts);
    case UniformKind::Int3:
        return driver.glUniform3iv(location, 1, zeroInts);
    case UniformKind::Int4:
        return driver.glUniform4iv(location, 1, zeroInts);
    case UniformKind::Float1:
        return driver.glUniform1fv(location, 1, zeros);
    case UniformKind::Float2:
        return driver.glUniform2fv(location, 1, zeros);
    case UniformKind::Float3:
        return driver.glUniform3fv(location, 1, zeros);
    case UniformKind::Float4:
        return driver.glUniform4fv(location, 1, zeros);
    case UniformKind::Matrix2:
        return driver.glUniformMatrix2fv(location, 1, GL_FALSE, zeros);
    case UniformKind::Matrix3:
        return driver.glUniformMatrix3fv(location, 1, GL_FALSE, zeros);
    case UniformKind::Matrix4:
        return driver.glUniformMatrix4fv(location, 1, GL_FALSE, zeros);
    }
}

void zeroUniforms(LinkedProgram *linked)
{
    driver.glUseProgram(linked->driverProgram);
    for (size_t location = 0; location < linked->uniforms.size(); ++location) {
        zeroUniform(linked->uniforms[location].kind, static_cast<GLint>(location));
        linked->uniforms[location].heldKind = linked->uniforms[location].kind;
    }
    std::fill(linked->values.begin(), linked->values.end(), 0u);
}
