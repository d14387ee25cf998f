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
    uint32_t columns;
};

static constexpr UniformType kTypes[] = {
    {GL_FLOAT, UniformKind::Float1, 1, 1},        {GL_FLOAT_VEC2, UniformKind::Float2, 2, 1},
    {GL_FLOAT_VEC3, UniformKind::Float3, 3, 1},   {GL_FLOAT_VEC4, UniformKind::Float4, 4, 1},
    {GL_FLOAT_MAT2, UniformKind::Matrix2, 4, 2},  {GL_FLOAT_MAT3, UniformKind::Matrix3, 9, 3},
    {GL_FLOAT_MAT4, UniformKind::Matrix4, 16, 4}, {GL_INT, UniformKind::Int1, 1, 1},
    {GL_INT_VEC2, UniformKind::Int2, 2, 1},       {GL_INT_VEC3, UniformKind::Int3, 3, 1},
    {GL_INT_VEC4, UniformKind::Int4, 4, 1},       {GL_BOOL, UniformKind::Int1, 1, 1},
    {GL_BOOL_VEC2, UniformKind::Int2, 2, 1},      {GL_BOOL_VEC3, UniformKind::Int3, 3, 1},
    {GL_BOOL_VEC4, UniformKind::Int4, 4, 1},      {GL_SAMPLER_2D, UniformKind::Int1, 1, 1},
    {GL_SAMPLER_CUBE, UniformKind::Int1, 1, 1},   {GL_SAMPLER_EXTERNAL_OES, UniformKind::Int1, 1, 1},
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

// None has no words.
static const UniformType &typeOf(UniformKind kind)
{
    static constexpr UniformType none = {0, UniformKind::None, 0, 1};
    const auto row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [&](const UniformType &candidate) { return candidate.kind == kind; });
    return row == std::end(kTypes) ? none : *row;
}

uint32_t wordsOf(UniformKind kind)
{
    return typeOf(kind).words;
}

uint32_t columnsOf(UniformKind kind)
{
    return typeOf(kind).columns;
}

// The name of an element. A single value is its own only element.
static std::string elementName(const ActiveUniform &uniform, GLint element)
{
    if (!uniform.name.ends_with("[0]")) return uniform.name;
    return uniform.name.substr(0, uniform.name.size() - 2) + std::to_string(element) + "]";
}

// Whether the driver gives the elements consecutive locations, as drivers do without having promised it.
static bool isConsecutive(GLuint driverProgram, const ActiveUniform &uniform)
{
    for (GLint i = 1; i < uniform.elements; ++i)
        if (driver.glGetUniformLocation(driverProgram, elementName(uniform, i).c_str()) != uniform.location + i)
            return false;
    return true;
}

static void addSlots(LinkedProgram *linked, const ActiveUniform &uniform, bool gathered)
{
    const UniformKind kind = kindOf(uniform.type);
    const size_t first = static_cast<size_t>(uniform.location);
    const size_t end = first + static_cast<size_t>(uniform.elements);
    if (linked->uniforms.size() < end) linked->uniforms.resize(end);
    for (GLint i = 0; i < uniform.elements; ++i)
        linked->uniforms[first + static_cast<size_t>(i)] = {
            .kind = kind,
            .heldKind = kind,
            .isArray = uniform.name.ends_with("[0]"),
            .isSampler = isSampler(uniform.type),
            .gathered = gathered,
            .element = static_cast<int16_t>(i),
            .elementsLeft = static_cast<int16_t>(uniform.elements - i),
            .held = nullptr,
        };
}

// Adds the elements of one of the driver's uniforms. Elements without consecutive locations are left out, and false is
// returned: loads of them go through, and what they hold is not known.
static bool addUniform(LinkedProgram *linked, const ActiveUniform &uniform)
{
    if (uniform.location < 0) return true; // the language's own, which nothing can load
    if (kindOf(uniform.type) == UniformKind::None || uniform.location + uniform.elements > kMaxRememberedLocation ||
        !isConsecutive(linked->driverProgram, uniform))
        return false;
    addSlots(linked, uniform, false);
    return true;
}

static GLenum typeNamed(const std::string &name)
{
    static constexpr struct {
        const char *name;
        GLenum type;
    } rows[] = {
        {"float", GL_FLOAT},     {"vec2", GL_FLOAT_VEC2}, {"vec3", GL_FLOAT_VEC3}, {"vec4", GL_FLOAT_VEC4},
        {"mat2", GL_FLOAT_MAT2}, {"mat3", GL_FLOAT_MAT3}, {"mat4", GL_FLOAT_MAT4},
    };
    return std::find_if(std::begin(rows), std::end(rows), [&](const auto &row) { return name == row.name; })->type;
}

// Adds the gathered uniforms behind the driver's own. What the driver has cut off the array's end is not used.
static void addGathered(LinkedProgram *linked, const ActiveUniform &array, const std::vector<GatheredUniform> &gathered)
{
    linked->gathered = {.location = static_cast<GLint>(linked->uniforms.size()),
                        .driverLocation = array.location,
                        .vectors = 0,
                        .held = nullptr};
    for (const GatheredUniform &given : gathered) {
        if (given.vector >= array.elements) continue;
        const ActiveUniform uniform{
            .name = given.name + (given.isArray ? "[0]" : ""),
            .type = typeNamed(given.type),
            .elements = given.isArray ? std::min(given.elements, array.elements - given.vector) : 1,
            .location = linked->gathered.location + given.vector,
        };
        addSlots(linked, uniform, true);
        linked->activeUniforms.push_back(uniform);
        const GLint columns = static_cast<GLint>(columnsOf(kindOf(uniform.type)));
        linked->gathered.vectors = given.vector + columns * uniform.elements;
    }
}

// Gives every location its place in the values.
static void placeValues(LinkedProgram *linked)
{
    linked->slots = linked->uniforms.data();
    linked->slotCount = linked->uniforms.size();
    std::vector<size_t> places; // words, by location
    size_t word = 4 * static_cast<size_t>(linked->gathered.vectors);
    for (size_t location = 0; location < linked->slotCount; ++location) {
        const UniformSlot &slot = linked->slots[location];
        if (slot.gathered) {
            places.push_back(4 * (location - static_cast<size_t>(linked->gathered.location)));
            continue;
        }
        if (slot.element == 0) word = (word + 3) / 4 * 4;
        places.push_back(word);
        word += wordsOf(slot.kind);
    }
    linked->values.assign((word + 3) / 4 + 1, HeldVector{});
    linked->gathered.held = linked->values.data()->words;
    for (size_t location = 0; location < linked->slotCount; ++location)
        linked->slots[location].held = linked->gathered.held + places[location];
}

std::vector<ActiveUniform> activeUniforms(GLuint driverProgram)
{
    GLint count = 0;
    GLint longest = 0;
    driver.glGetProgramiv(driverProgram, GL_ACTIVE_UNIFORMS, &count);
    driver.glGetProgramiv(driverProgram, GL_ACTIVE_UNIFORM_MAX_LENGTH, &longest);
    std::vector<ActiveUniform> uniforms;
    for (GLint i = 0; i < count; ++i) {
        ActiveUniform uniform{
            .name = std::string(static_cast<size_t>(longest) + 1, '\0'), .type = 0, .elements = 0, .location = -1};
        GLsizei length = 0;
        driver.glGetActiveUniform(driverProgram, static_cast<GLuint>(i), longest + 1, &length, &uniform.elements,
                                  &uniform.type, uniform.name.data());
        uniform.name.resize(static_cast<size_t>(length));
        uniform.location = driver.glGetUniformLocation(driverProgram, uniform.name.c_str());
        // Those are loaded by the draw itself.
        if (uniform.name != kViewportSizeUniform && uniform.name != kLineWidthUniform)
            uniforms.push_back(std::move(uniform));
    }
    return uniforms;
}

// Whether a uniform of the driver is the array of the gathered ones, or an element of that.
static bool isGatheredArray(std::string_view name)
{
    return name.substr(0, name.find('[')) == kGatheredUniforms;
}

bool readUniforms(LinkedProgram *linked, const std::vector<GatheredUniform> &gathered)
{
    linked->keepable = true;
    ActiveUniform array{};
    for (const ActiveUniform &uniform : activeUniforms(linked->driverProgram)) {
        if (!gathered.empty() && isGatheredArray(uniform.name)) {
            array = uniform;
            continue;
        }
        if (!addUniform(linked, uniform)) linked->keepable = false;
        linked->activeUniforms.push_back(uniform);
    }
    if (array.elements > 0) {
        // A location beside the remembered ones could not be told from a gathered uniform's.
        if (!linked->keepable || !isConsecutive(linked->driverProgram, array)) return false;
        addGathered(linked, array, gathered);
    }
    placeValues(linked);
    return true;
}

GLint uniformLocation(const LinkedProgram *linked, const std::string &name)
{
    const GatheredArray &gathered = linked->gathered;
    if (gathered.vectors == 0) return driver.glGetUniformLocation(linked->driverProgram, name.c_str());
    for (const ActiveUniform &uniform : linked->activeUniforms) {
        if (uniform.location < gathered.location) continue;
        if (name + "[0]" == uniform.name) return uniform.location;
        for (GLint element = 0; element < uniform.elements; ++element)
            if (elementName(uniform, element) == name) return uniform.location + element;
    }
    return isGatheredArray(name) ? -1 : driver.glGetUniformLocation(linked->driverProgram, name.c_str());
}

void copyHeld(const UniformSlot &slot, uint32_t (&value)[kMaxUniformWords])
{
    const uint32_t columns = slot.gathered ? columnsOf(slot.kind) : 1;
    const uint32_t words = wordsOf(slot.kind) / columns;
    for (uint32_t column = 0; column < columns; ++column)
        memcpy(value + column * words, slot.held + 4 * column, words * sizeof(uint32_t));
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
        UniformSlot &slot = linked->uniforms[location];
        if (!slot.gathered) loadUniform(slot.kind, static_cast<GLint>(location), zeros);
        slot.heldKind = slot.kind;
    }
    std::fill(linked->values.begin(), linked->values.end(), HeldVector{});
    const GatheredArray &gathered = linked->gathered;
    if (gathered.vectors > 0)
        driver.glUniform4fv(gathered.driverLocation, gathered.vectors,
                            reinterpret_cast<const GLfloat *>(gathered.held));
    linked->waiting = {};
}
