// SPDX-License-Identifier: MIT
#include "attribute_use.h"

#include <algorithm>
#include <map>

using Names = std::set<std::string_view>;

// What each name depends on. A function's name stands for its result, its arguments and the conditions in it.
struct Dependencies {
    std::map<std::string_view, Names> of;
    Names functions;          // defined in the text
    bool complete = true;     // false: the text has something that is not understood here
    std::string_view current; // function being read; empty outside
};

static bool isWord(std::string_view word)
{
    static constexpr std::string_view words[] = {
        "attribute", "bool",    "const", "else", "float", "for",  "highp", "if",      "in",        "int",
        "ivec2",     "ivec3",   "ivec4", "lowp", "mat2",  "mat3", "mat4",  "mediump", "return",    "struct",
        "uniform",   "varying", "vec2",  "vec3", "vec4",  "void", "while", "flat",    "invariant",
    };
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

// Solid tokens of one statement, up to and without its ; { or }.
using Statement = std::vector<std::string_view>;

static bool isName(std::string_view word)
{
    const char first = word.empty() ? '\0' : word[0];
    const bool letter = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z') || first == '_';
    return letter && !isWord(word);
}

// The variables and functions among the tokens from `begin` to before `end`; no fields, swizzles and keywords.
static Names namesIn(const Statement &statement, size_t begin, size_t end)
{
    Names names;
    for (size_t at = begin; at < end; ++at) {
        if (isName(statement[at]) && (at == 0 || statement[at - 1] != ".")) names.insert(statement[at]);
    }
    return names;
}

// Index of the assigning = of a statement, its size when there is none.
static size_t assignmentIn(const Statement &statement)
{
    static constexpr std::string_view comparing = "=<>!";
    for (size_t at = 1; at < statement.size(); ++at) {
        if (statement[at] != "=") continue;
        const bool compares = comparing.find(statement[at - 1]) != std::string_view::npos ||
                              (at + 1 < statement.size() && statement[at + 1] == "=");
        if (!compares) return at;
    }
    return statement.size();
}

static void addDependencies(Dependencies &dependencies, std::string_view name, const Names &on)
{
    dependencies.of[name].insert(on.begin(), on.end());
}

static void readStatement(Dependencies &dependencies, const Statement &statement)
{
    if (statement.empty()) return;
    const size_t assignment = assignmentIn(statement);
    const bool assigns = assignment < statement.size();
    const Names all = namesIn(statement, 0, statement.size());
    if (assigns) {
        for (const std::string_view target : namesIn(statement, 0, assignment)) {
            addDependencies(dependencies, target, all);
            if (!dependencies.current.empty()) addDependencies(dependencies, target, {dependencies.current});
        }
    } else if (!dependencies.current.empty()) {
        addDependencies(dependencies, dependencies.current, all); // a condition, a result, a call
    }
    const Names passed = assigns ? namesIn(statement, assignment, statement.size()) : all;
    for (const std::string_view name : passed)
        if (dependencies.functions.count(name)) addDependencies(dependencies, name, passed);
}

// A definition's head: "type name ( parameters )". The parameters are what callers pass, and so the function's.
static void readHead(Dependencies &dependencies, const Statement &head)
{
    const auto open = std::find(head.begin(), head.end(), "(");
    if (open == head.begin() || open == head.end()) return;
    dependencies.current = *(open - 1);
    const size_t parameters = static_cast<size_t>(open - head.begin());
    for (const std::string_view parameter : namesIn(head, parameters, head.size()))
        addDependencies(dependencies, parameter, {dependencies.current});
}

// A macro and the names in it stand for each other.
static void readMacro(Dependencies &dependencies, const ShaderScan &scan, size_t hash)
{
    const std::string_view name = directiveWord(scan.tokens, hash, 1);
    if (directiveWord(scan.tokens, hash, 0) != "define" || !isName(name)) return;
    Statement body;
    for (size_t at = hash; at < directiveEnd(scan.tokens, hash); ++at)
        if (!isBlank(scan.tokens[at])) body.push_back(scan.tokens[at].text);
    for (const std::string_view inside : namesIn(body, 3, body.size())) {
        addDependencies(dependencies, name, {inside});
        addDependencies(dependencies, inside, {name});
    }
}

// Names that are followed by a ( outside of all braces.
static Names functionsOf(const ShaderScan &scan)
{
    Names names;
    int depth = 0;
    for (size_t at = 0; at < scan.tokens.size(); ++at) {
        const Token &token = scan.tokens[at];
        if (token.inDirective) continue;
        if (token.text == "{") ++depth;
        if (token.text == "}") --depth;
        if (depth > 0 || token.kind != TokenKind::Identifier || isWord(token.text)) continue;
        const size_t next = nextSolid(scan.tokens, at + 1);
        if (next < scan.tokens.size() && scan.tokens[next].text == "(") names.insert(token.text);
    }
    return names;
}

static Dependencies readDependencies(const ShaderScan &scan)
{
    Dependencies dependencies;
    dependencies.functions = functionsOf(scan);
    Statement statement;
    int depth = 0;
    for (size_t at = 0; at < scan.tokens.size(); ++at) {
        const Token &token = scan.tokens[at];
        if (token.kind == TokenKind::Hash) readMacro(dependencies, scan, at);
        if (token.inDirective || isBlank(token)) continue;
        // Values that come back through parameters are not followed.
        if (token.text == "out" || token.text == "inout") dependencies.complete = false;
        if (token.text == "{" && depth++ == 0) {
            readHead(dependencies, statement);
            statement.clear();
        } else if (token.text == "{" || token.text == ";" || token.text == "}") {
            readStatement(dependencies, statement);
            statement.clear();
            if (token.text == "}" && --depth == 0) dependencies.current = {};
        } else {
            statement.push_back(token.text);
        }
    }
    return dependencies;
}

static Names reachedFrom(const Dependencies &dependencies, const Names &results)
{
    Names reached = results;
    std::vector<std::string_view> open(results.begin(), results.end());
    while (!open.empty()) {
        const auto found = dependencies.of.find(open.back());
        open.pop_back();
        if (found == dependencies.of.end()) continue;
        for (const std::string_view name : found->second)
            if (reached.insert(name).second) open.push_back(name);
    }
    return reached;
}

std::set<std::string_view> namesFor(const ShaderScan &scan, const std::set<std::string_view> &results)
{
    return reachedFrom(readDependencies(scan), results);
}

std::set<std::string_view> attributesFor(const ShaderScan &scan, const std::set<std::string_view> &results)
{
    const Dependencies dependencies = readDependencies(scan);
    const Names reached = reachedFrom(dependencies, results);
    Names attributes;
    for (const Attribute &attribute : scan.attributes)
        if (!dependencies.complete || reached.count(attribute.name)) attributes.insert(attribute.name);
    return attributes;
}
