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

UniformKind kindOf(GLenum type)
{
    const auto row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [&](const UniformType &candidate) { return candidate.type == type; });
    return row == std::end(kTypes) ? UniformKind::None : row->kind;
}

uint32_t wordsOf(UniformKind kind)
{
    const auto row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [&](const UniformType &candidate) { return candidate.kind == kind; });
    return row == std::end(kTypes) ? 0 : row->words;
}

// The room for the elements of one uniform. Each begins at a vector, so that it can be compared in vectors.
static size_t heldVectors(UniformKind kind, GLint elements)
{
    return (wordsOf(kind) * static_cast<size_t>(elements) + 3) / 4;
}

// Adds the elements of one uniform. Elements without consecutive locations are left out, and false is returned: loads
// of them go through, and what they hold is not known.
static bool addUniform(LinkedProgram *linked, const ActiveUniform &uniform)
{
    const UniformKind kind = kindOf(uniform.type);
    const GLint elements = uniform.elements;
    std::string name = uniform.name;
    const bool isArray = name.ends_with("[0]");
    if (isArray) name.resize(name.size() - 3);
    const GLint first = driver.glGetUniformLocation(linked->driverProgram, name.c_str());
    if (kind == UniformKind::None || first < 0 || first + elements > kMaxRememberedLocation) return false;
    for (GLint i = 1; i < elements; ++i) {
        const std::string element = name + "[" + std::to_string(i) + "]";
        if (driver.glGetUniformLocation(linked->driverProgram, element.c_str()) != first + i) return false;
    }

    const size_t end = static_cast<size_t>(first + elements);
    if (linked->uniforms.size() < end) linked->uniforms.resize(end);
    for (GLint i = 0; i < elements; ++i) {
        linked->uniforms[static_cast<size_t>(first + i)] = {
            .kind = kind,
            .heldKind = kind,
            .isArray = isArray,
            .isSampler = isSampler(uniform.type),
            .element = static_cast<int16_t>(i),
            .elementsLeft = static_cast<int16_t>(elements - i),
            .held = nullptr,
        };
    }
    linked->values.resize(linked->values.size() + heldVectors(kind, elements));
    return true;
}

// Gives every location its place, once the memory of neither list moves any longer.
static void placeValues(LinkedProgram *linked)
{
    linked->slots = linked->uniforms.data();
    linked->slotCount = linked->uniforms.size();
    size_t word = 0;
    for (UniformSlot &slot : linked->uniforms) {
        if (slot.element == 0) word = (word + 3) / 4 * 4;
        slot.held = linked->values.data()->words + word;
        word += wordsOf(slot.kind);
    }
}

std::vector<ActiveUniform> activeUniforms(GLuint driverProgram)
{
    GLint count = 0;
    GLint longest = 0;
    driver.glGetProgramiv(driverProgram, GL_ACTIVE_UNIFORMS, &count);
    driver.glGetProgramiv(driverProgram, GL_ACTIVE_UNIFORM_MAX_LENGTH, &longest);
    std::vector<ActiveUniform> uniforms;
    for (GLint i = 0; i < count; ++i) {
        ActiveUniform uniform{.name = std::string(static_cast<size_t>(longest) + 1, '\0'), .type = 0, .elements = 0};
        GLsizei length = 0;
        driver.glGetActiveUniform(driverProgram, static_cast<GLuint>(i), longest + 1, &length, &uniform.elements,
                                  &uniform.type, uniform.name.data());
        uniform.name.resize(static_cast<size_t>(length));
        // Those are loaded by the draw itself.
        if (uniform.name != kViewportSizeUniform && uniform.name != kLineWidthUniform)
            uniforms.push_back(std::move(uniform));
    }
    return uniforms;
}

void readUniforms(LinkedProgram *linked)
{
    linked->keepable = true;
    for (const ActiveUniform &uniform : activeUniforms(linked->driverProgram))
        if (!addUniform(linked, uniform)) linked->keepable = false;
    placeValues(linked);
}

void loadUniform(UniformKind kind, GLint location, const void *value)
{
    const GLfloat *floats = static_cast<const GLfloat *>(value);
    const GLint *integers = static_cast<const GLint *>(value);
    switch (kind) {
    case UniformKind::None:
        return;
    case UniformKind::Int1:
        return driver.glUniform1iv(location, 1, integers);
    case UniformKind::Int2:
        return driver.glUniform2iv(location, 1, integers);
    case UniformKind::Int3:
        return driver.glUniform3iv(location, 1, integers);
    case UniformKind::Int4:
        return driver.glUniform4iv(location, 1, integers);
    case UniformKind::Float1:
        return driver.glUniform1fv(location, 1, floats);
    case UniformKind::Float2:
        return driver.glUniform2fv(location, 1, floats);
    case UniformKind::Float3:
        return driver.glUniform3fv(location, 1, floats);
    case UniformKind::Float4:
        return driver.glUniform4fv(location, 1, floats);
    case UniformKind::Matrix2:
        return driver.glUniformMatrix2fv(location, 1, GL_FALSE, floats);
    case UniformKind::Matrix3:
        return driver.glUniformMatrix3fv(location, 1, GL_FALSE, floats);
    case UniformKind::Matrix4:
        return driver.glUniformMatrix4fv(location, 1, GL_FALSE, floats);
    }
}

void zeroUniforms(LinkedProgram *linked)
{
    static constexpr uint32_t zeros[kMaxUniformWords] = {}; // of floats as of integers
    driver.glUseProgram(linked->driverProgram);
    for (size_t location = 0; location < linked->uniforms.size(); ++location) {
        loadUniform(linked->uniforms[location].kind, static_cast<GLint>(location), zeros);
        linked->uniforms[location].heldKind = linked->uniforms[location].kind;
    }
    std::fill(linked->values.begin(), linked->values.end(), HeldVector{});
    linked->waiting.count = 0;
}
