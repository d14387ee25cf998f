// SPDX-License-Identifier: MIT
// A vertex shader that runs its main twice, with two sets of attributes: its own vertex', and those of another vertex
// of its primitive. So it knows what GLSL ES 1.00 without geometry shaders cannot know: the value that a flat varying
// has at the primitive's last vertex, or where the other end of a line is.
//
// The text's attributes become plain variables, loaded from either set before main runs:
//
//   attribute vec4 A;    becomes    attribute vec4 trl20_own_A; attribute vec4 trl20_other_A; vec4 A;
//   main                 becomes    trl20_main, called by the new main
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

/// True when the text's attributes can be doubled.
bool canDouble(const ShaderScan &scan);

/// Declarations of the text's attributes in the second set and as variables, to stand behind that of the first set.
std::string secondDeclarations(const std::vector<Attribute> &attributes);

/// The new main for flat shading: the other vertex is the primitive's last one, and gives the flat varyings.
std::string flatMain(const ShaderScan &scan, const std::set<std::string_view> &flatNames);

/// The new main for lines: the other vertex is the line's other end, and the position one of the line's corners.
/// Flat varyings take the value of the line's second end.
std::string lineMain(const ShaderScan &scan, const std::set<std::string_view> &flatNames, LineEnds ends);
