// SPDX-License-Identifier: MIT
#include "expanded_program.h"

#include "doubled_vertex.h"
#include "explain.h"
#include "programs.h"

#include <algorithm>
#include <cstring>

LineUniforms findLineUniforms(GLuint driverProgram)
{
    return {.viewportSizeLocation = driver.glGetUniformLocation(driverProgram, kViewportSizeUniform),
            .lineWidthLocation = driver.glGetUniformLocation(driverProgram, kLineWidthUniform),
            .loadedViewportSize = {},
            .loadedLineWidth = 0.0f};
}

static GLint countAttributes(GLuint driverProgram)
{
    GLint count = 0;
    driver.glGetProgramiv(driverProgram, GL_ACTIVE_ATTRIBUTES, &count);
    return count;
}

// The attributes of both sets. False when one lies where its state is not remembered and could not be put back.
static bool placeAttributes(ExpandedProgram *expanded, const std::vector<AttributeLocation> &given)
{
    const auto locate = [&](const std::string &name) {
        return driver.glGetAttribLocation(expanded->driverProgram, name.c_str());
    };
    expanded->cornerLocation = locate(kCornerAttribute);
    GLint last = expanded->cornerLocation;
    for (const auto &[name, location] : given) {
        if (location < 0) continue; // the language's own
        const DoubledAttribute attribute = {.given = static_cast<GLuint>(location),
                                            .own = locate(kOwnAttributePrefix + name),
                                            .other = locate(kOtherAttributePrefix + name)};
        expanded->attributes.push_back(attribute);
        last = std::max({last, location, attribute.own, attribute.other});
    }
    return last < kMaxAttributes;
}

// Pairs the values of one uniform with those of the linked program.
static void shareUniform(ExpandedProgram *expanded, const LinkedProgram *linked, const ActiveUniform &uniform)
{
    const UniformKind kind = kindOf(uniform.type);
    const bool isArray = uniform.name.ends_with("[0]");
    const std::string base = uniform.name.substr(0, uniform.name.size() - (isArray ? 3 : 0));
    for (GLint i = 0; i < uniform.elements; ++i) {
        const std::string name = isArray ? base + "[" + std::to_string(i) + "]" : base;
        const GLint given = uniformLocation(linked, name);
        const GLint location = driver.glGetUniformLocation(expanded->driverProgram, name.c_str());
        if (given < 0 || location < 0) continue;
        expanded->uniforms.push_back(
            {.kind = kind, .given = given, .location = location, .held = expanded->values.size()});
        expanded->values.resize(expanded->values.size() + wordsOf(kind));
    }
}

// What an expanded program is for, as its file is named.
static std::string nameUse(Expansion expansion, bool logicOp)
{
    std::string use = expansion == Expansion::Lines ? "lines" : expansion == Expansion::FlatShading ? "flat" : "";
    if (logicOp) use += use.empty() ? "logic" : "-logic";
    return use;
}

static bool buildExpanded(ExpandedProgram *expanded, const LinkedProgram *linked, Expansion expansion, bool logicOp,
                          const DriverAbilities &abilities)
{
    const std::string vertex = linked->key.c_str(); // up to the zero that ends it
    const std::string fragment = linked->key.c_str() + vertex.size() + 1;
    // What the linked program lost in spite of the abilities, it would lose again.
    const bool lost = linked->plain || linked->flatLost || linked->lineCoordLost;
    DriverAbilities wanted = lost ? plainAbilities(abilities) : abilities;
    wanted.gatheredVectors = 0; // each uniform is loaded by itself, from the linked program's value
    TranslatedProgram texts = translateProgram(vertex, fragment, wanted, expansion);
    expanded->doubled = texts.doubled;
    if (expansion != Expansion::None && !expanded->doubled && texts.geometry.empty()) return false;
    if (logicOp && !addLogicOp(texts, abilities)) return false;

    AttributeBindings bindings;
    for (const auto &[name, location] : linked->attributes)
        if (location >= 0)
            bindings[(expanded->doubled ? kOwnAttributePrefix : "") + name] = static_cast<GLuint>(location);
    BuildResult result{};
    BuildResult stages[2];
    expanded->driverProgram = buildDriverProgram(texts, bindings, result, stages);
    if (linked->explained)
        explainExpanded(linked->explained, nameUse(expansion, logicOp),
                        {.texts = texts, .stages = stages, .result = result});
    if (!expanded->driverProgram) return false;
    if (expanded->doubled && !placeAttributes(expanded, linked->attributes)) return false;
    if (countAttributes(expanded->driverProgram) > abilities.vertexAttributes) return false;

    for (const ActiveUniform &uniform : activeUniforms(expanded->driverProgram))
        shareUniform(expanded, linked, uniform);
    expanded->expandsLines = expansion == Expansion::Lines || !texts.geometry.empty();
    if (expanded->expandsLines) expanded->lines = findLineUniforms(expanded->driverProgram);
    expanded->logicOp = findLogicOpUniforms(expanded->driverProgram);
    return true;
}

static void tellLoss(Expansion expansion, bool logicOp)
{
    if (logicOp)
        tellOnce("a program cannot be given a logic operation by this driver; its colours are written as they are");
    else if (expansion == Expansion::FlatShading)
        tellOnce(
            "this driver has no flat shading, and too few vertex attributes to make up for it; it is drawn smooth");
    else
        tellOnce("this driver has too few vertex attributes to widen lines; they are neither smooth nor wider than its "
                 "own");
}

ExpandedProgram *findExpanded(Context *context, Expansion expansion, bool logicOp)
{
    const LinkedProgram *linked = context->program;
    ExpandedProgram *&expanded =
        context->program->expanded[static_cast<size_t>(expansion) + (logicOp ? kExpansions : 0)];
    if (!expanded) {
        expanded = new ExpandedProgram{};
        if (!buildExpanded(expanded, linked, expansion, logicOp, context->group->abilities)) {
            driver.glDeleteProgram(expanded->driverProgram);
            expanded->driverProgram = 0;
            tellLoss(expansion, logicOp);
        }
    }
    return expanded->driverProgram ? expanded : nullptr;
}

// The linked program's value, as it is remembered or else as the driver tells it.
static const uint32_t *givenValue(const LinkedProgram *linked, const SharedUniform &uniform,
                                  uint32_t (&room)[kMaxUniformWords])
{
    const size_t given = static_cast<size_t>(uniform.given);
    if (given < linked->slotCount && linked->slots[given].heldKind == uniform.kind) {
        if (!linked->slots[given].gathered) return linked->slots[given].held;
        copyHeld(linked->slots[given], room);
        return room;
    }
    const bool integer = uniform.kind >= UniformKind::Int1 && uniform.kind <= UniformKind::Int4;
    if (integer)
        driver.glGetUniformiv(linked->driverProgram, uniform.given, reinterpret_cast<GLint *>(room));
    else
        driver.glGetUniformfv(linked->driverProgram, uniform.given, reinterpret_cast<GLfloat *>(room));
    return room;
}

void enterExpanded(const LinkedProgram *linked, ExpandedProgram *expanded)
{
    driver.glUseProgram(expanded->driverProgram);
    for (const SharedUniform &uniform : expanded->uniforms) {
        uint32_t room[kMaxUniformWords] = {};
        const uint32_t *value = givenValue(linked, uniform, room);
        uint32_t *held = &expanded->values[uniform.held];
        const size_t size = wordsOf(uniform.kind) * sizeof(uint32_t);
        if (memcmp(held, value, size) == 0) continue;
        memcpy(held, value, size);
        loadUniform(uniform.kind, uniform.location, value);
    }
}

bool needsBufferCopies(const DriverAbilities &abilities)
{
    const bool geometry = abilities.geometryEssl320 || !abilities.geometryExtensionEssl310.empty();
    return !abilities.essl300 || !geometry || !abilities.externalImageEssl300;
}
