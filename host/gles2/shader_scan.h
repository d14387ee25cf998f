// SPDX-License-Identifier: MIT
// What a shader's text uses of the things the translator has to decide about.
#pragma once

#include "tokenizer.h"

#include <string>
#include <string_view>
#include <vector>

struct Varying {
    std::string_view type; // a float, vector or matrix type
    std::string_view name;
    bool flat;
};

struct Attribute {
    std::string_view type; // float or a vector type
    std::string_view name;
};

struct ShaderScan {
    std::vector<Token> tokens;
    std::vector<Varying> varyings;
    std::vector<Attribute> attributes;
    bool varyingsAreSimple;   // every varying is in the list: none in a macro or an #if, no arrays, no structures
    bool attributesAreSimple; // the same of the attributes, and none is a matrix
    bool flat;                // has a flat varying
    bool lineCoord;           // reads gl_LineCoord
    bool fogFactor;           // writes gl_FogFactor
    bool fragColor;           // writes gl_FragColor
    bool fragData;            // writes gl_FragData
    bool externalSampler;     // names samplerExternalOES
    bool ownVersion;          // says #version, and not 100
    size_t declarationsAt;    // index of the token before which declarations can be added; may be tokens.size()
};

/// Scans one shader. The result's views point into `source`.
ShaderScan scanShader(std::string_view source);

/// Index of the first token at or behind `at` that is not blank; tokens.size() when there is none.
size_t nextSolid(const std::vector<Token> &tokens, size_t at);

/// Index just behind the last token of the directive whose Hash is at `hash`.
size_t directiveEnd(const std::vector<Token> &tokens, size_t hash);

/// The n-th word behind the # of a directive: 0 is its name. Empty when there are fewer.
std::string_view directiveWord(const std::vector<Token> &tokens, size_t hash, int n);

/// True for lowp, mediump and highp.
bool isPrecision(std::string_view word);
