// SPDX-License-Identifier: MIT
// Uniforms of a vertex shader as places in one array of vectors, so that loads of several reach the driver in one call:
// a driver's call costs the same for one vector as for fifty.
//
//   uniform vec4 a; uniform vec3 b[2]; uniform mat4 m;    becomes    uniform highp vec4 trl20_Uniforms[7];
//   a                                                                trl20_Uniforms[0]
//   b[1]                                                             trl20_Uniforms[2].xyz
//   b[i]                                                             trl20_Uniforms[1 + (i)].xyz
//   m[3]                                                             trl20_Uniforms[6]
//   m                                                                mat4(trl20_Uniforms[3], trl20_Uniforms[4], ...)
//
// Members of structures get places of their own. What is declared and used in another shape stays as it is, and so do
// arrays of matrices, which are loaded whole, and what the fragment shader declares too: its constants are dear.
#pragma once

#include "shader_scan.h"
#include "translator.h"

#include <map>

/// What a run of tokens is written as. Its line ends are kept.
struct Rewriting {
    size_t end; // index just behind the last of them
    std::string text;
};

struct Gathering {
    std::vector<GatheredUniform> uniforms;
    int vectors = 0;                        // of the array; 0: nothing is gathered
    std::map<size_t, Rewriting> rewritings; // by the index of the first token
};

/// Chooses the vertex shader's uniforms that get a place, and writes down what becomes of their declarations and uses.
/// color: the name of a vec4 that is to have the last place without being in the text; empty for none. Nothing is
/// gathered into more than `most` vectors, and nothing of which one load alone could wait for a draw.
Gathering gatherUniforms(const ShaderScan &vertex, const ShaderScan &fragment, std::string_view color, int most);

/// The array's vector at a place, as an expression.
std::string gatheredVector(int vector);
