// SPDX-License-Identifier: MIT
// Uniforms of a text whose declaration and every use are understood so well that they can be written in another way.
#pragma once

#include "shader_scan.h"

/// A type of floats.
struct FloatType {
    std::string_view name;
    int columns;           // vectors of one element
    std::string_view part; // of each vector
};

/// A member of a structure, or a uniform itself.
struct Member {
    std::string_view name; // empty for the uniform itself
    const FloatType *type;
    int vector; // its place; -1: nothing uses it
};

/// How a uniform is used.
enum class UseKind {
    Whole,   // all of it
    Indexed, // with an index that is a number
    Chosen,  // with one that the shader computes
};

/// One use. The last three are indices of tokens.
struct Use {
    UseKind kind;
    size_t member;
    int index;
    size_t begin;
    size_t end;   // just behind the use; with Chosen, behind the [
    size_t close; // the ] of Chosen
};

/// A uniform by its declaration, which ends with its ;
struct UnderstoodUniform {
    std::string_view name;
    std::vector<Member> members;
    int declared; // elements; 0 for a single value
    int elements; // that are used
    size_t begin; // of its declaration
    size_t end;
    std::vector<Use> uses;
};

/// The uniforms of the text that are of floats and understood: declared alone, as a single value, an array of numbers
/// or vectors, or a structure of single values, and used as values alone, arrays by element and structures by member.
/// None where the text has conditionals, macros that are more than expressions, or parentheses that do not match.
std::vector<UnderstoodUniform> understoodUniforms(const ShaderScan &scan);
