// SPDX-License-Identifier: MIT
#include "shader_scan.h"

#include <algorithm>

size_t nextSolid(const std::vector<Token> &tokens, size_t at)
{
    while (at < tokens.size() && isBlank(tokens[at]))
        ++at;
    return at;
}

size_t directiveEnd(const std::vector<Token> &tokens, size_t hash)
{
    while (hash < tokens.size() && tokens[hash].inDirective)
        ++hash;
    return hash;
}

std::string_view directiveWord(const std::vector<Token> &tokens, size_t hash, int n)
{
    for (size_t at = hash + 1; at < tokens.size() && tokens[at].inDirective; ++at) {
        if (isBlank(tokens[at])) continue;
        if (n-- == 0) return tokens[at].text;
    }
    return {};
}

static bool isPassableType(std::string_view type)
{
    static constexpr std::string_view types[] = {"float", "vec2", "vec3", "vec4", "mat2", "mat3", "mat4"};
    return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

bool isPrecision(std::string_view word)
{
    return word == "lowp" || word == "mediump" || word == "highp";
}

struct Declaration {
    std::string_view type;
    std::vector<std::string_view> names;
};

// Reads "[precision] type name {, name} ;" behind the keyword at `keyword`. Returns false when the declaration has
// another shape; what was read up to there stays.
static bool readDeclaration(const std::vector<Token> &tokens, size_t keyword, Declaration &declaration)
{
    const auto wordAt = [&](size_t at) {
        const bool is = at < tokens.size() && tokens[at].kind == TokenKind::Identifier;
        return is ? tokens[at].text : std::string_view();
    };
    size_t at = nextSolid(tokens, keyword + 1);
    if (isPrecision(wordAt(at))) at = nextSolid(tokens, at + 1);
    declaration.type = wordAt(at);
    if (!isPassableType(declaration.type)) return false;

    for (;;) {
        at = nextSolid(tokens, at + 1);
        const std::string_view name = wordAt(at);
        if (name.empty()) return false;
        at = nextSolid(tokens, at + 1);
        if (at >= tokens.size()) return false;
        if (tokens[at].text != "," && tokens[at].text != ";") return false; // an array
        declaration.names.push_back(name);
        if (tokens[at].text == ";") return true;
    }
}

// Index of the word before `at` on the way back over blanks; tokens.size() when there is none.
static size_t previousSolid(const std::vector<Token> &tokens, size_t at)
{
    while (at-- > 0) {
        if (!isBlank(tokens[at])) return at;
    }
    return tokens.size();
}

static void scanVaryings(ShaderScan &scan, size_t keyword, bool unconditional)
{
    const size_t before = previousSolid(scan.tokens, keyword);
    const bool flat = before < scan.tokens.size() && scan.tokens[before].text == "flat";
    scan.flat |= flat;
    Declaration declaration;
    if (!readDeclaration(scan.tokens, keyword, declaration) || !unconditional) scan.varyingsAreSimple = false;
    for (const std::string_view name : declaration.names)
        scan.varyings.push_back({.type = declaration.type, .name = name, .flat = flat});
}

static void scanAttributes(ShaderScan &scan, size_t keyword, bool unconditional)
{
    Declaration declaration;
    const bool read = readDeclaration(scan.tokens, keyword, declaration);
    if (!read || !unconditional || declaration.type.starts_with("mat")) scan.attributesAreSimple = false;
    for (const std::string_view name : declaration.names)
        scan.attributes.push_back({.type = declaration.type, .name = name});
}

static void scanIdentifier(ShaderScan &scan, size_t at, int conditionalDepth)
{
    const Token &token = scan.tokens[at];
    if (token.text == "gl_LineCoord") scan.lineCoord = true;
    if (token.text == "gl_FogFactor") scan.fogFactor = true;
    if (token.text == "gl_FragColor") scan.fragColor = true;
    if (token.text == "gl_FragData") scan.fragData = true;
    if (token.text == "samplerExternalOES") scan.externalSampler = true;
    const bool unconditional = !token.inDirective && conditionalDepth == 0;
    if (token.text == "varying") scanVaryings(scan, at, unconditional);
    if (token.text == "attribute") scanAttributes(scan, at, unconditional);
}

ShaderScan scanShader(std::string_view source)
{
    ShaderScan scan{};
    scan.tokens = tokenize(source);
    scan.varyingsAreSimple = true;
    scan.attributesAreSimple = true;
    int depth = 0;
    bool placed = true; // declarationsAt lies behind the last #version and #extension, outside of any #if
    for (size_t at = 0; at < scan.tokens.size(); ++at) {
        const Token &token = scan.tokens[at];
        if (token.kind == TokenKind::Identifier) scanIdentifier(scan, at, depth);
        if (token.kind == TokenKind::Hash) {
            const std::string_view name = directiveWord(scan.tokens, at, 0);
            if (name == "if" || name == "ifdef" || name == "ifndef") ++depth;
            if (name == "endif" && depth > 0) --depth;
            if (name == "version" && directiveWord(scan.tokens, at, 1) != "100") scan.ownVersion = true;
            if (name == "version" || name == "extension") placed = false;
        }
        if (!placed && depth == 0 && token.kind == TokenKind::LineEnd) {
            scan.declarationsAt = at + 1;
            placed = true;
        }
    }
    if (!placed) scan.declarationsAt = scan.tokens.size();
    return scan;
}
