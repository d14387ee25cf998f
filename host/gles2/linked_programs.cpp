// SPDX-License-Identifier: MIT
// Linked programs of the driver: made from the texts of two shaders, and kept when their program objects are gone.
// Compiling and linking takes a tenth of a second on a software driver, and the library above deletes the program it
// has used least whenever it needs a new one.
#include "expanded_program.h"
#include "explain.h"
#include "programs.h"

#include <string_view>

// Everything a linked program depends on. Texts hold no zero characters that a compiler would read past.
static std::string keyOf(const ProgramObject *program)
{
    std::string key = program->vertex->compiledSource + '\0' + program->fragment->compiledSource + '\0';
    for (const auto &[name, index] : program->attributeBindings)
        key += name + '\0' + std::to_string(index) + '\0';
    return key;
}

static void noteShaderResult(ShaderObject *shader, const BuildResult &result)
{
    if (shader->resultKnown) return;
    shader->result = result;
    shader->resultKnown = true;
}

DriverAbilities plainAbilities(const DriverAbilities &abilities)
{
    DriverAbilities plain;
    plain.fragmentHighp = abilities.fragmentHighp;
    plain.gatheredVectors = abilities.gatheredVectors;
    return plain;
}

static std::vector<AttributeLocation> activeAttributes(GLuint driverProgram)
{
    GLint count = 0;
    GLint longest = 0;
    driver.glGetProgramiv(driverProgram, GL_ACTIVE_ATTRIBUTES, &count);
    driver.glGetProgramiv(driverProgram, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, &longest);
    std::vector<AttributeLocation> attributes(static_cast<size_t>(count));
    for (GLuint i = 0; AttributeLocation & attribute : attributes) {
        std::string name(static_cast<size_t>(longest) + 1, '\0');
        GLint elements = 0;
        GLenum type = 0;
        driver.glGetActiveAttrib(driverProgram, i++, longest + 1, nullptr, &elements, &type, name.data());
        attribute.name = name.c_str();
        attribute.location = driver.glGetAttribLocation(driverProgram, name.c_str());
    }
    return attributes;
}

// What was handed to the driver, and what it said of the stages.
struct Handed {
    TranslatedProgram texts;
    BuildResult stages[2];
};

// Builds the driver's program with the texts for these abilities, and finds its uniforms.
static bool tryToBuild(LinkedProgram *linked, const ProgramObject *program, const DriverAbilities &abilities,
                       Handed &handed)
{
    handed.texts = translateProgram(program->vertex->compiledSource, program->fragment->compiledSource, abilities);
    handed.stages[0] = handed.stages[1] = linked->result = {};
    linked->driverProgram = buildDriverProgram(handed.texts, program->attributeBindings, linked->result, handed.stages);
    if (!linked->driverProgram) return false;
    linked->uniforms.clear();
    linked->activeUniforms.clear();
    if (readUniforms(linked, handed.texts.gathered)) return true;
    driver.glDeleteProgram(linked->driverProgram);
    linked->driverProgram = 0;
    return false;
}

// The same, without gathered uniforms where the driver does not want them: it is then not asked again.
static bool build(LinkedProgram *linked, const ProgramObject *program, DriverAbilities &abilities, Handed &handed)
{
    if (tryToBuild(linked, program, abilities, handed)) return true;
    if (handed.texts.gathered.empty()) return false;
    DriverAbilities fewer = abilities;
    fewer.gatheredVectors = 0;
    if (!tryToBuild(linked, program, fewer, handed)) return false;
    abilities = fewer;
    return true;
}

static void buildLinked(LinkedProgram *linked, const ProgramObject *program, DriverAbilities &abilities)
{
    Handed handed;
    BuildResult refused;
    if (!build(linked, program, abilities, handed) && handed.texts.version > 100) {
        refused = std::move(linked->result);
        linked->plain = true;
        DriverAbilities plain = plainAbilities(abilities);
        build(linked, program, plain, handed);
    }
    if (explains())
        linked->explained =
            explainBuild({.key = linked->key,
                          .vertex = program->vertex->compiledSource,
                          .fragment = program->fragment->compiledSource,
                          .refused = refused,
                          .handed = {.texts = handed.texts, .stages = handed.stages, .result = linked->result}});
    noteShaderResult(program->vertex, handed.stages[0]);
    noteShaderResult(program->fragment, handed.stages[1]);
    if (!linked->driverProgram) return;

    linked->attributes = activeAttributes(linked->driverProgram);
    linked->flatLost = handed.texts.flatLost;
    linked->lineCoordLost = handed.texts.lineCoordLost;
    linked->expandsLines = !handed.texts.geometry.empty();
    linked->drawsExpanded = linked->flatLost || linked->lineCoordLost || linked->expandsLines;
    if (linked->expandsLines) linked->lines = findLineUniforms(linked->driverProgram);
}

static void deleteInDriver(const LinkedProgram *linked)
{
    driver.glDeleteProgram(linked->driverProgram);
    for (const ExpandedProgram *expanded : linked->expanded)
        if (expanded) driver.glDeleteProgram(expanded->driverProgram);
}

static void freeLinked(LinkedProgram *linked)
{
    if (!linked) return;
    for (ExpandedProgram *expanded : linked->expanded)
        delete expanded;
    delete linked;
}

// Takes a program made from the same texts out of the keeper; null when there is none.
static LinkedProgram *takeKept(ProgramKeeper &keeper, const std::string &key)
{
    const auto found = keeper.byKey.find(key);
    if (found == keeper.byKey.end()) return nullptr;
    LinkedProgram *linked = *found->second;
    keeper.idle.erase(found->second);
    keeper.byKey.erase(found);
    return linked;
}

// A context of its group must be current.
static void throwAway(LinkedProgram *linked)
{
    deleteInDriver(linked);
    freeLinked(linked);
}

static void throwRefusedAway(ProgramKeeper &keeper)
{
    for (LinkedProgram *linked : keeper.refused)
        throwAway(linked);
    keeper.refused.clear();
}

// The oldest ones go.
void trimKeeper(ShareGroup *group, size_t kept)
{
    ProgramKeeper &keeper = group->keeper;
    throwRefusedAway(keeper);
    while (keeper.idle.size() > kept) {
        const auto oldest = std::prev(keeper.idle.end());
        LinkedProgram *linked = *oldest;
        const auto [first, last] = keeper.byKey.equal_range(linked->key);
        for (auto at = first; at != last; ++at) {
            if (at->second != oldest) continue;
            keeper.byKey.erase(at);
            break;
        }
        keeper.idle.erase(oldest);
        throwAway(linked);
    }
}

static LinkedProgram *failedProgram(const char *log)
{
    LinkedProgram *linked = new LinkedProgram{};
    linked->result.log = log;
    return linked;
}

LinkedProgram *linkProgram(Context *context, ProgramObject *program)
{
    if (!program->vertex || !program->fragment) return failedProgram("a program needs a vertex and a fragment shader");
    if (!program->vertex->compileAsked || !program->fragment->compileAsked)
        return failedProgram("an attached shader has not been compiled");

    ShareGroup *group = context->group;
    std::string key = keyOf(program);
    LinkedProgram *linked = takeKept(group->keeper, key);
    if (linked) {
        if (linked->explained) explainKept(linked->explained);
        zeroUniforms(linked);
        driver.glUseProgram(context->program ? context->program->driverProgram : 0);
        noteShaderResult(program->vertex, {.ok = true, .log = {}});
        noteShaderResult(program->fragment, {.ok = true, .log = {}});
    } else {
        linked = new LinkedProgram{};
        linked->key = std::move(key);
        buildLinked(linked, program, group->abilities);
        trimKeeper(group);
    }
    linked->users = 1;
    return linked;
}

void retireLinked(ShareGroup *group, LinkedProgram *linked)
{
    if (!linked->keepable) {
        group->keeper.refused.push_back(linked);
        if (currentContext && currentContext->group == group) throwRefusedAway(group->keeper);
        return;
    }
    group->keeper.idle.push_front(linked);
    group->keeper.byKey.emplace(linked->key, group->keeper.idle.begin());
}

void freeShareGroup(ShareGroup *group)
{
    // Contexts have let go of their programs, so each linked one belongs to one program object or to the keeper.
    for (const auto &[name, program] : group->programs) {
        freeLinked(program->linked);
        delete program;
    }
    for (const auto &[name, shader] : group->shaders)
        delete shader;
    for (LinkedProgram *linked : group->keeper.idle)
        freeLinked(linked);
    for (LinkedProgram *linked : group->keeper.refused)
        freeLinked(linked);
    delete group;
}
