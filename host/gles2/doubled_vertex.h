// SPDX-License-Identifier: MIT
// A vertex shader that runs its main twice, with two sets of attributes: its own vertex', and those of another vertex
// of its primitive. So it knows what GLSL ES 1.00 without geometry shaders cannot know: the value that a flat varying
// has at the primitive's last vertex, or where the other end of a line is.
//
// The text's attributes become plain variables, loaded from either set before main runs:
//
//   attribute vec4 A;    becomes    attribute vec4 trl20_own_A; attribute vec4 trl20_other_A; vec4 A;
//   main                 becomes    trl20_main, called by the new main
//
// Attributes that a run's results do not need are left out of its set.
#pragma once

#include "line_geometry.h"
#include "shader_scan.h"

#include <set>
#include <string>

inline constexpr const char *kOwnAttributePrefix = "trl20_own_";
inline constexpr const char *kOtherAttributePrefix = "trl20_other_";
inline constexpr const char *kGivenMain = "trl20_main";

/// Attribute of a line's corners, a vec2: x is 0 at the line's first and 1 at its second end, y is -1 or 1 for the
/// side.
inline constexpr const char *kCornerAttribute = "trl20_Corner";

/// What a doubled vertex shader is made of.
struct Doubling {
    std::set<std::string_view> flatNames; // varyings that are flat in either stage
    std::set<std::string_view> own;       // attributes in the own set
    std::set<std::string_view> other;     // attributes in the other set
};

/// True when the text's attributes can be doubled.
bool canDouble(const ShaderScan &scan);

/// Chooses the sets for flat shading or for lines, from which flatMain or lineMain follows.
Doubling planFlat(const ShaderScan &scan, const std::set<std::string_view> &flatNames);
Doubling planLines(const ShaderScan &scan, const std::set<std::string_view> &flatNames);

/// What becomes of the declaration of these attributes; one line.
std::string doubledDeclarations(const Doubling &doubling, const std::vector<Attribute> &attributes);

/// The new main for flat shading: the other vertex is the primitive's last one, and gives the flat varyings.
std::string flatMain(const ShaderScan &scan, const Doubling &doubling);

/// The new main for lines: the other vertex is the line's other end, and the position one of the line's corners.
/// Flat varyings take the value of the line's second end.
std::string lineMain(const ShaderScan &scan, const Doubling &doubling, LineEnds ends);

/// The new main of the fragment shader for lines: drops what lies beside the line.
std::string lineFragmentMain();
