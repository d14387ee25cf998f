// SPDX-License-Identifier: MIT
#include "uniform_uses.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

static constexpr FloatType kTypes[] = {
    {"float", 1, ".x"}, {"vec2", 1, ".xy"},  {"vec3", 1, ".xyz"}, {"vec4", 1, ""},
    {"mat2", 2, ".xy"}, {"mat3", 3, ".xyz"}, {"mat4", 4, ""},
};

// Words with a meaning of their own in what is read, and in what is written for it: a macro must not have their names.
static constexpr std::string_view kWords[] = {
    "uniform", "struct", "lowp", "mediump", "highp", "float", "vec2", "vec3", "vec4",
    "mat2",    "mat3",   "mat4", "return",  "for",   "x",     "xy",   "xyz",
};

template <typename Range, typename Value>
static bool contains(const Range &range, const Value &value)
{
    return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

static const FloatType *findType(std::string_view name)
{
    const auto found =
        std::find_if(std::begin(kTypes), std::end(kTypes), [&](const FloatType &t) { return t.name == name; });
    return found == std::end(kTypes) ? nullptr : found;
}

struct Structure {
    std::string_view name;
    std::vector<Member> members;
};

struct Candidate : UnderstoodUniform {
    bool certain; // everything seen of it so far is understood
};

// The tokens that are neither blank nor in a directive.
struct Solids {
    const std::vector<Token> &tokens;
    std::vector<size_t> at; // indices of tokens

    std::string_view text(size_t i) const
    {
        return i < at.size() ? tokens[at[i]].text : std::string_view();
    }
    bool isName(size_t i) const
    {
        return i < at.size() && tokens[at[i]].kind == TokenKind::Identifier;
    }
};

struct Macros {
    bool understood = true;                // nothing in the directives can change what is read here
    std::set<std::string_view> names;      // in all of them
    std::map<std::string_view, int> sizes; // those that stand for a number
};

// True for a plain decimal number.
static bool readNumber(std::string_view text, int &number)
{
    if (text.size() > 1 && text[0] == '0') return false; // octal, hexadecimal
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// A macro without parameters that stands for an expression, or a part of one.
static bool isExpressionMacro(const std::vector<Token> &tokens, size_t name, size_t end)
{
    if (name + 1 < end && tokens[name + 1].text == "(") return false;
    int depth = 0;
    for (size_t at = name + 1; at < end && depth >= 0; ++at) {
        if (contains(std::string_view("{};=[]#"), tokens[at].text[0]) && tokens[at].text.size() == 1) return false;
        depth += (tokens[at].text == "(") - (tokens[at].text == ")");
    }
    return depth == 0;
}

static void readMacro(Macros &macros, const std::vector<Token> &tokens, size_t hash)
{
    const size_t end = directiveEnd(tokens, hash);
    const size_t name = nextSolid(tokens, nextSolid(tokens, hash + 1) + 1);
    if (name >= end || contains(kWords, tokens[name].text) || macros.names.count(tokens[name].text) ||
        !isExpressionMacro(tokens, name, end)) {
        macros.understood = false;
        return;
    }
    int number = 0;
    if (readNumber(directiveWord(tokens, hash, 2), number) && directiveWord(tokens, hash, 3).empty())
        macros.sizes[tokens[name].text] = number;
    for (size_t at = name; at < end; ++at)
        if (tokens[at].kind == TokenKind::Identifier) macros.names.insert(tokens[at].text);
}

static Macros readMacros(const std::vector<Token> &tokens)
{
    static constexpr std::string_view kHarmless[] = {"pragma", "extension", "version"};
    Macros macros;
    for (size_t at = 0; at < tokens.size(); ++at) {
        if (tokens[at].kind != TokenKind::Hash) continue;
        const std::string_view directive = directiveWord(tokens, at, 0);
        if (directive == "define")
            readMacro(macros, tokens, at);
        else if (!contains(kHarmless, directive))
            macros.understood = false;
    }
    return macros;
}

static Solids findSolids(const std::vector<Token> &tokens)
{
    Solids solids{.tokens = tokens, .at = {}};
    for (size_t at = 0; at < tokens.size(); ++at)
        if (!isBlank(tokens[at]) && !tokens[at].inDirective) solids.at.push_back(at);
    return solids;
}

// --- declarations

static size_t skipPrecision(const Solids &solids, size_t i)
{
    return isPrecision(solids.text(i)) ? i + 1 : i;
}

// "struct name { type member; ... };" at `i`. Structures of another shape are left out.
static void readStructure(const Solids &solids, size_t i, std::vector<Structure> &structures)
{
    if (!solids.isName(i + 1) || solids.text(i + 2) != "{") return;
    Structure structure{.name = solids.text(i + 1), .members = {}};
    for (i += 3; solids.text(i) != "}"; i += 3) {
        i = skipPrecision(solids, i);
        const FloatType *type = findType(solids.text(i));
        if (!type || !solids.isName(i + 1) || solids.text(i + 2) != ";") return;
        structure.members.push_back({.name = solids.text(i + 1), .type = type, .vector = -1});
    }
    if (solids.text(i + 1) == ";") structures.push_back(std::move(structure));
}

// The members of a uniform of this type; none for a type that is not gathered.
static std::vector<Member> membersOf(std::string_view type, const std::vector<Structure> &structures)
{
    if (const FloatType *known = findType(type)) return {{.name = {}, .type = known, .vector = -1}};
    for (const Structure &structure : structures)
        if (structure.name == type) return structure.members;
    return {};
}

// "uniform [precision] type name;" or "... name[size];" at `i`.
static void readUniform(const Solids &solids, size_t i, const Macros &macros, const std::vector<Structure> &structures,
                        std::vector<Candidate> &candidates)
{
    const size_t begin = i;
    i = skipPrecision(solids, i + 1);
    Candidate candidate{};
    candidate.members = membersOf(solids.text(i), structures);
    candidate.name = solids.text(i + 1);
    candidate.certain = solids.isName(i + 1) && !candidate.members.empty();
    i += 2;
    if (solids.text(i) == "[") {
        const std::string_view size = solids.text(i + 1);
        const auto macro = macros.sizes.find(size);
        if (macro != macros.sizes.end())
            candidate.declared = macro->second;
        else if (!readNumber(size, candidate.declared))
            return;
        const bool vectors = candidate.members.size() == 1 && candidate.members[0].name.empty() &&
                             candidate.members[0].type->columns == 1;
        if (!vectors || candidate.declared < 1 || solids.text(i + 2) != "]") return;
        i += 3;
    }
    if (!candidate.certain || solids.text(i) != ";") return;
    candidate.begin = solids.at[begin];
    candidate.end = solids.at[i] + 1;
    for (Candidate &other : candidates)
        if (other.name == candidate.name) other.certain = candidate.certain = false;
    candidates.push_back(std::move(candidate));
}

static bool isHidden(const Candidate &candidate, const Macros &macros)
{
    return macros.names.count(candidate.name) ||
           std::any_of(candidate.members.begin(), candidate.members.end(),
                       [&](const Member &member) { return macros.names.count(member.name) != 0; });
}

static std::vector<Candidate> readDeclarations(const Solids &solids, const Macros &macros)
{
    std::vector<Structure> structures;
    std::vector<Candidate> candidates;
    int depth = 0;
    for (size_t i = 0; i < solids.at.size(); ++i) {
        const std::string_view word = solids.text(i);
        depth += (word == "{") - (word == "}");
        const bool first = i == 0 || solids.text(i - 1) == ";" || solids.text(i - 1) == "}";
        if (depth > 0 || !first) continue;
        if (word == "struct") readStructure(solids, i, structures);
        if (word == "uniform") readUniform(solids, i, macros, structures, candidates);
    }
    for (Candidate &candidate : candidates)
        candidate.certain = candidate.certain && !isHidden(candidate, macros);
    return candidates;
}

// --- uses

// Where a word stands.
struct Nesting {
    int braces = 0;
    std::vector<bool> parentheses; // and brackets, the open ones; true for that of a for

    // False when nothing opens what the word closes.
    bool follow(std::string_view word, std::string_view before)
    {
        if (word == "(" || word == "[") parentheses.push_back(before == "for");
        if (word == ")" || word == "]") {
            if (parentheses.empty()) return false;
            parentheses.pop_back();
        }
        const bool brace = word == "{" || word == "}";
        braces += (word == "{") - (word == "}");
        return braces >= 0 && !(brace && !parentheses.empty());
    }
};

// Whether a name at this place is a value in an expression, and not something new of the same name.
static bool isValue(const Solids &solids, size_t i, const Nesting &nesting)
{
    static constexpr std::string_view kBefore = "(,=+-*/%<>!&|^?:[";
    static constexpr std::string_view kAfter = ")],;.[+-*/%<>!&|^?:=";
    const std::string_view before = solids.text(i - 1);
    const std::string_view after = solids.text(i + 1);
    if (nesting.braces == 0 || after.size() != 1 || !contains(kAfter, after[0])) return false;
    if (after == "=" && solids.text(i + 2) != "=") return false;
    if (before == "return") return true;
    if (before.size() != 1 || !contains(kBefore, before[0])) return false;
    // The comma between declared names, which may come in the head of a for, too.
    return before != "," || !(nesting.parentheses.empty() || nesting.parentheses.back());
}

// Index of the ] that closes the [ at `i`; the number of solids when there is none.
static size_t closingBracket(const Solids &solids, size_t i)
{
    int depth = 0;
    for (; i < solids.at.size(); ++i) {
        depth += (solids.text(i) == "[") - (solids.text(i) == "]");
        if (depth == 0) return i;
    }
    return i;
}

// The use of an array's element or a matrix' column, with the [ at `i`. `count`: of elements or columns.
static bool readIndex(const Solids &solids, size_t i, int count, Use &use)
{
    const size_t close = closingBracket(solids, i);
    if (close >= solids.at.size() || close == i + 1) return false;
    use.kind = UseKind::Chosen;
    use.end = solids.at[i] + 1;
    use.close = solids.at[close];
    if (close != i + 2 || !readNumber(solids.text(i + 1), use.index)) return true;
    use.kind = UseKind::Indexed;
    use.end = use.close + 1;
    return use.index < count; // otherwise the compiler is to complain
}

// Reads the use of a candidate by its name at `i`. False when it is not understood.
static bool readUse(const Solids &solids, size_t i, Candidate &candidate)
{
    Use use{
        .kind = UseKind::Whole, .member = 0, .index = 0, .begin = solids.at[i], .end = solids.at[i] + 1, .close = 0};
    if (!candidate.members[0].name.empty()) {
        if (solids.text(i + 1) != ".") return false;
        i += 2;
        const auto member = std::find_if(candidate.members.begin(), candidate.members.end(),
                                         [&](const Member &m) { return m.name == solids.text(i); });
        if (member == candidate.members.end()) return false;
        use.member = static_cast<size_t>(member - candidate.members.begin());
        use.end = solids.at[i] + 1;
    }
    const int columns = candidate.members[use.member].type->columns;
    const bool indexed = solids.text(i + 1) == "[";
    if (candidate.declared > 0 || (columns > 1 && indexed)) {
        if (!indexed || !readIndex(solids, i + 1, candidate.declared > 0 ? candidate.declared : columns, use))
            return false;
    }
    if (candidate.declared > 0)
        candidate.elements =
            std::max(candidate.elements, use.kind == UseKind::Indexed ? use.index + 1 : candidate.declared);
    candidate.uses.push_back(use);
    return true;
}

// False when the text's braces or parentheses do not match.
static bool readUses(const Solids &solids, std::vector<Candidate> &candidates)
{
    Nesting nesting;
    for (size_t i = 0; i < solids.at.size(); ++i) {
        const std::string_view word = solids.text(i);
        const std::string_view before = i > 0 ? solids.text(i - 1) : std::string_view();
        if (!nesting.follow(word, before)) return false;
        if (!solids.isName(i) || before == ".") continue; // a field
        for (Candidate &candidate : candidates) {
            if (candidate.name != word || (solids.at[i] >= candidate.begin && solids.at[i] < candidate.end)) continue;
            candidate.certain = candidate.certain && solids.at[i] > candidate.end && isValue(solids, i, nesting) &&
                                readUse(solids, i, candidate);
        }
    }
    return nesting.braces == 0 && nesting.parentheses.empty();
}

std::vector<UnderstoodUniform> understoodUniforms(const ShaderScan &scan)
{
    const Macros macros = readMacros(scan.tokens);
    const Solids solids = findSolids(scan.tokens);
    std::vector<Candidate> candidates = readDeclarations(solids, macros);
    if (!macros.understood || !readUses(solids, candidates)) return {};
    std::vector<UnderstoodUniform> uniforms;
    for (Candidate &candidate : candidates)
        if (candidate.certain) uniforms.push_back(std::move(candidate));
    return uniforms;
}
