// SPDX-License-Identifier: MIT
#include "gathered_uniforms.h"

#include "attribute_use.h"
#include "uniform_uses.h"

#include <algorithm>
#include <set>

static std::map<std::string_view, int> countNames(const ShaderScan &scan)
{
    std::map<std::string_view, int> counts;
    for (const Token &token : scan.tokens)
        if (token.kind == TokenKind::Identifier) ++counts[token.text];
    return counts;
}

// What the vertex shader's results depend on; a compiler drops uniforms beside that.
static std::set<std::string_view> neededNames(const ShaderScan &vertex,
                                              const std::map<std::string_view, int> &fragmentNames)
{
    std::set<std::string_view> results = {"gl_Position", "gl_PointSize"};
    for (const Varying &varying : vertex.varyings) {
        const auto read = fragmentNames.find(varying.name);
        if (read != fragmentNames.end() && read->second > 1) results.insert(varying.name);
    }
    return namesFor(vertex, results);
}

// Gives the used members of a uniform places behind those of others.
static void placeMembers(Gathering &gathering, UnderstoodUniform &uniform)
{
    for (const Use &use : uniform.uses)
        uniform.members[use.member].vector = 0;
    for (Member &member : uniform.members) {
        if (member.vector < 0) continue;
        member.vector = gathering.vectors;
        const int elements = std::max(uniform.elements, 1);
        gathering.uniforms.push_back(
            {.name = std::string(uniform.name) + (member.name.empty() ? "" : ".") + std::string(member.name),
             .type = std::string(member.type->name),
             .elements = elements,
             .isArray = uniform.declared > 0,
             .vector = member.vector});
        gathering.vectors += elements * member.type->columns;
    }
}

std::string gatheredVector(int vector)
{
    return std::string(kGatheredUniforms) + "[" + std::to_string(vector) + "]";
}

static std::string wholeText(const Member &member)
{
    const FloatType &type = *member.type;
    std::string text;
    for (int column = 0; column < type.columns; ++column)
        text += (column > 0 ? ", " : "") + gatheredVector(member.vector + column) + std::string(type.part);
    return type.columns == 1 ? text : std::string(type.name) + "(" + text + ")";
}

static void rewriteUse(Gathering &gathering, const Member &member, const Use &use)
{
    const std::string part(member.type->part);
    switch (use.kind) {
    case UseKind::Whole:
        gathering.rewritings[use.begin] = {.end = use.end, .text = wholeText(member)};
        return;
    case UseKind::Indexed:
        gathering.rewritings[use.begin] = {.end = use.end, .text = gatheredVector(member.vector + use.index) + part};
        return;
    case UseKind::Chosen:
        gathering.rewritings[use.begin] = {
            .end = use.end, .text = std::string(kGatheredUniforms) + "[" + std::to_string(member.vector) + " + ("};
        gathering.rewritings[use.close] = {.end = use.close + 1, .text = ")]" + part};
        return;
    }
}

// The first of the declarations becomes the array's.
static void rewriteDeclaration(Gathering &gathering, const UnderstoodUniform &uniform)
{
    const std::string array =
        "uniform highp vec4 " + std::string(kGatheredUniforms) + "[" + std::to_string(gathering.vectors) + "];";
    gathering.rewritings[uniform.begin] = {.end = uniform.end, .text = gathering.rewritings.empty() ? array : ""};
}

static int countElements(const Gathering &gathering)
{
    int elements = 0;
    for (const GatheredUniform &uniform : gathering.uniforms)
        elements += uniform.elements;
    return elements;
}

Gathering gatherUniforms(const ShaderScan &vertex, const ShaderScan &fragment, std::string_view color, int most)
{
    if (countNames(vertex).count(kGatheredUniforms)) return {};
    std::vector<UnderstoodUniform> uniforms = understoodUniforms(vertex);
    const auto fragmentNames = countNames(fragment);
    const std::set<std::string_view> needed = neededNames(vertex, fragmentNames);
    std::erase_if(uniforms, [&](const UnderstoodUniform &uniform) {
        return uniform.uses.empty() || !needed.count(uniform.name) || fragmentNames.count(uniform.name);
    });
    Gathering gathering{};
    for (UnderstoodUniform &uniform : uniforms)
        placeMembers(gathering, uniform);
    if (!color.empty() && !uniforms.empty())
        gathering.uniforms.push_back({.name = std::string(color),
                                      .type = "vec4",
                                      .elements = 1,
                                      .isArray = false,
                                      .vector = gathering.vectors++});
    if (gathering.vectors > most || countElements(gathering) < 2) return {};

    for (const UnderstoodUniform &uniform : uniforms)
        rewriteDeclaration(gathering, uniform);
    for (const UnderstoodUniform &uniform : uniforms)
        for (const Use &use : uniform.uses)
            rewriteUse(gathering, uniform.members[use.member], use);
    return gathering;
}
