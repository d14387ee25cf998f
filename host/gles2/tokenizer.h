// SPDX-License-Identifier: MIT
// Shader text as a list of tokens. Nothing is lost: the tokens' texts, put together, are the text they came from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

enum class TokenKind {
    Space,       // blanks, tabs, form feeds; a backslash that continues a line, with its line end
    LineEnd,     // one of \n, \r\n, \r
    Comment,     // a // comment without its line end, or a whole /* */ comment (also an unclosed one)
    Identifier,  // name or keyword
    Number,      // as the preprocessor sees numbers: 1, 0x1F, 1.5e-3
    Hash,        // the # that opens a directive: first on its line but for space and comments
    Punctuation, // any other single character
};

struct Token {
    TokenKind kind;
    bool inDirective; // from a Hash up to, not including, the line end that closes the directive
    std::string_view text;
};

/// Cuts a shader's text into tokens. The views point into `source`, which must outlive them. Any bytes are accepted.
std::vector<Token> tokenize(std::string_view source);

/// 1 for blank tokens: space, line ends and comments.
bool isBlank(const Token &token);

/// Line ends inside a text, as the compiler counts them; a continued line counts.
int countLineEnds(std::string_view text);
