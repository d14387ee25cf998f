// SPDX-License-Identifier: MIT
#include "tokenizer.h"

// The C library's classes follow the locale; shader text does not.
static bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

static bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

static bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\f' || c == '\v';
}

// Length of the line end at `at`, 0 when there is none.
static size_t lineEndLength(std::string_view s, size_t at)
{
    if (at >= s.size()) return 0;
    if (s[at] == '\n') return 1;
    if (s[at] != '\r') return 0;
    return at + 1 < s.size() && s[at + 1] == '\n' ? 2 : 1;
}

// Length of a backslash with the line end it hides, 0 when there is none.
static size_t continuationLength(std::string_view s, size_t at)
{
    if (at >= s.size() || s[at] != '\\') return 0;
    const size_t end = lineEndLength(s, at + 1);
    return end ? end + 1 : 0;
}

static size_t spaceEnd(std::string_view s, size_t at)
{
    while (at < s.size()) {
        const size_t continued = continuationLength(s, at);
        if (!continued && !isSpace(s[at])) break;
        at += continued ? continued : 1;
    }
    return at;
}

static size_t lineCommentEnd(std::string_view s, size_t at)
{
    while (at < s.size() && !lineEndLength(s, at)) {
        const size_t continued = continuationLength(s, at); // such a comment goes on in the next line
        at += continued ? continued : 1;
    }
    return at;
}

static size_t blockCommentEnd(std::string_view s, size_t at)
{
    const size_t close = s.find("*/", at + 2);
    return close == std::string_view::npos ? s.size() : close + 2;
}

static size_t identifierEnd(std::string_view s, size_t at)
{
    while (at < s.size() && (isLetter(s[at]) || isDigit(s[at])))
        ++at;
    return at;
}

// Preprocessing numbers: digits, letters and points, and a sign behind an exponent's e. Hexadecimal numbers have no
// exponent: 0xE+1 is a sum.
static size_t numberEnd(std::string_view s, size_t at)
{
    const bool hexadecimal = s[at] == '0' && at + 1 < s.size() && (s[at + 1] == 'x' || s[at + 1] == 'X');
    while (at < s.size()) {
        const bool exponent = !hexadecimal && (s[at] == 'e' || s[at] == 'E');
        if (!isLetter(s[at]) && !isDigit(s[at]) && s[at] != '.') break;
        ++at;
        if (exponent && at < s.size() && (s[at] == '+' || s[at] == '-')) ++at;
    }
    return at;
}

// Kind and end of the token at `at`; the caller turns a # at the start of a line into a Hash.
static TokenKind scanToken(std::string_view s, size_t at, size_t &end)
{
    const char c = s[at];
    const char next = at + 1 < s.size() ? s[at + 1] : '\0';
    if (const size_t length = lineEndLength(s, at)) {
        end = at + length;
        return TokenKind::LineEnd;
    }
    if (isSpace(c) || continuationLength(s, at)) {
        end = spaceEnd(s, at);
        return TokenKind::Space;
    }
    if (c == '/' && (next == '/' || next == '*')) {
        end = next == '/' ? lineCommentEnd(s, at) : blockCommentEnd(s, at);
        return TokenKind::Comment;
    }
    if (isLetter(c)) {
        end = identifierEnd(s, at);
        return TokenKind::Identifier;
    }
    if (isDigit(c) || (c == '.' && isDigit(next))) {
        end = numberEnd(s, at);
        return TokenKind::Number;
    }
    end = at + 1;
    return TokenKind::Punctuation;
}

std::vector<Token> tokenize(std::string_view source)
{
    std::vector<Token> tokens;
    bool lineStart = true; // nothing but blanks so far on this line
    bool inDirective = false;
    for (size_t at = 0; at < source.size();) {
        size_t end = at;
        TokenKind kind = scanToken(source, at, end);
        if (kind == TokenKind::LineEnd) {
            lineStart = true;
            inDirective = false;
        } else if (kind == TokenKind::Punctuation && source[at] == '#' && lineStart) {
            kind = TokenKind::Hash;
            inDirective = true;
        }
        const Token token{kind, inDirective, source.substr(at, end - at)};
        if (kind != TokenKind::LineEnd && !isBlank(token)) lineStart = false;
        tokens.push_back(token);
        at = end;
    }
    return tokens;
}

bool isBlank(const Token &token)
{
    return token.kind == TokenKind::Space || token.kind == TokenKind::LineEnd || token.kind == TokenKind::Comment;
}

int countLineEnds(std::string_view text)
{
    int count = 0;
    for (size_t at = 0; at < text.size();) {
        const size_t length = lineEndLength(text, at);
        count += length != 0;
        at += length ? length : 1;
    }
    return count;
}
