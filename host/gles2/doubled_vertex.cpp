// SPDX-License-Identifier: MIT
#include "doubled_vertex.h"

#include "attribute_use.h"

#include <algorithm>

bool canDouble(const ShaderScan &scan)
{
    const bool hasMain = std::any_of(scan.tokens.begin(), scan.tokens.end(),
                                     [](const Token &token) { return token.text == "main" && !token.inDirective; });
    return hasMain && scan.attributesAreSimple && scan.varyingsAreSimple && !scan.attributes.empty();
}

static Doubling planSets(const ShaderScan &scan, const std::set<std::string_view> &flatNames, bool ownFlat)
{
    std::set<std::string_view> ownResults = {"gl_Position", "gl_PointSize"};
    for (const Varying &varying : scan.varyings)
        if (ownFlat || !flatNames.count(varying.name)) ownResults.insert(varying.name);
    return {.flatNames = flatNames, .own = attributesFor(scan, ownResults), .other = {}};
}

Doubling planFlat(const ShaderScan &scan, const std::set<std::string_view> &flatNames)
{
    Doubling doubling = planSets(scan, flatNames, false);
    doubling.other = attributesFor(scan, flatNames);
    return doubling;
}

Doubling planLines(const ShaderScan &scan, const std::set<std::string_view> &flatNames)
{
    Doubling doubling = planSets(scan, flatNames, true);
    std::set<std::string_view> results = flatNames;
    results.insert("gl_Position");
    doubling.other = attributesFor(scan, results);
    return doubling;
}

std::string doubledDeclarations(const Doubling &doubling, const std::vector<Attribute> &attributes)
{
    std::string text;
    for (const Attribute &attribute : attributes) {
        const std::string type(attribute.type);
        const std::string name(attribute.name);
        if (doubling.own.count(name)) text += "attribute " + type + " " + kOwnAttributePrefix + name + "; ";
        if (doubling.other.count(name)) text += "attribute " + type + " " + kOtherAttributePrefix + name + "; ";
        text += type + " " + name + "; ";
    }
    return text;
}

// The given main, run with one of the sets.
static std::string runWith(const ShaderScan &scan, const std::string &prefix, const std::set<std::string_view> &set)
{
    std::string text;
    for (const Attribute &attribute : scan.attributes) {
        const std::string name(attribute.name);
        const std::string value = set.count(name) ? prefix + name : std::string(attribute.type) + "(0.0)";
        text += "    " + name + " = " + value + ";\n";
    }
    return text + "    " + kGivenMain + "();\n";
}

static std::string runOwn(const ShaderScan &scan, const Doubling &doubling)
{
    return runWith(scan, kOwnAttributePrefix, doubling.own);
}

static std::string runOther(const ShaderScan &scan, const Doubling &doubling)
{
    return runWith(scan, kOtherAttributePrefix, doubling.other);
}

// Local copies of the flat varyings, and back.
static std::string keepFlat(const ShaderScan &scan, const std::set<std::string_view> &flatNames)
{
    std::string text;
    for (const Varying &varying : scan.varyings) {
        if (!flatNames.count(varying.name)) continue;
        const std::string name(varying.name);
        text += "    " + std::string(varying.type) + " trl20_flat_" + name + " = " + name + ";\n";
    }
    return text;
}

static std::string restoreFlat(const ShaderScan &scan, const std::set<std::string_view> &flatNames)
{
    std::string text;
    for (const Varying &varying : scan.varyings) {
        const std::string name(varying.name);
        if (flatNames.count(varying.name)) text += "    " + name + " = trl20_flat_" + name + ";\n";
    }
    return text;
}

std::string flatMain(const ShaderScan &scan, const Doubling &doubling)
{
    return "\nvoid main()\n{\n" + runOther(scan, doubling) + keepFlat(scan, doubling.flatNames) +
           runOwn(scan, doubling) + restoreFlat(scan, doubling.flatNames) + "}\n";
}

static constexpr const char *kLineDeclarations = R"(
attribute vec2 trl20_Corner;
varying vec4 trl20_LineCoord;
)";

// Times w, the offset is the same number of pixels all along the line. With an end behind the eye the rims would cross
// where w is 0: the rectangle is then as wide as at the end in front, and the fragment shader cuts it to the line's
// width.
static constexpr const char *kCornerPosition = R"(    vec4 trl20_a = trl20_second ? trl20_far : gl_Position;
    vec4 trl20_b = trl20_second ? gl_Position : trl20_far;
    bool trl20_behind = trl20_a.w <= 0.0 || trl20_b.w <= 0.0;
    float trl20_half = trl20_Corner.y * (trl20_behind ? max(trl20_a.w, trl20_b.w) : gl_Position.w);
    trl20_LineCoord = vec4(trl20_Corner.x * gl_Position.w, 0.5 * (gl_Position.w + trl20_half), 0.0, gl_Position.w);
    gl_Position.xy += trl20_lineOffset(trl20_a, trl20_b) * trl20_half;
    if (trl20_isOutside(trl20_a, trl20_b)) gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
}
)";

std::string lineMain(const ShaderScan &scan, const Doubling &doubling, LineEnds ends)
{
    std::string text = kLineDeclarations + lineFunctions(ends);
    text += "\nvoid main()\n{\n" + runOther(scan, doubling) + keepFlat(scan, doubling.flatNames);
    text += "    vec4 trl20_far = gl_Position;\n" + runOwn(scan, doubling);
    text += "    bool trl20_second = trl20_Corner.x > 0.5;\n";
    const std::string restore = restoreFlat(scan, doubling.flatNames);
    if (!restore.empty()) text += "    if (!trl20_second) {\n" + restore + "    }\n";
    return text + kCornerPosition;
}

// The margin is for rounding, where the rectangle's rims are the line's own.
std::string lineFragmentMain()
{
    return R"(
void main()
{
    if (abs(trl20_LineCoord.y / trl20_LineCoord.w - 0.5) > 0.5005) discard;
    trl20_main();
}
)";
}
