// SPDX-License-Identifier: MIT
// Lines as rectangles: for wide ones, and so that a fragment of a smooth one knows how far it is from the line's
// middle. The corners are made by a geometry shader or, where there is none, by a vertex shader that knows both ends.
#pragma once

#include "shader_scan.h"

#include <string>

/// Put before a varying's name on the way from the vertex to the geometry shader, which hands it on under its own name.
inline constexpr const char *kVertexVaryingPrefix = "trl20_v_";

/// Input of the fragment shader: gl_LineCoord times w, w in the last component. Divided by that component it is linear
/// on the screen, which plain interpolation between ends of different depth is not.
inline constexpr const char *kLineCoordVarying = "trl20_LineCoord";

enum class LineEnds {
    Square,  // smooth lines: rectangles at right angles to the line
    Upright, // other lines: ends cut along the axis that the line is farther from, as rows or columns of fragments are
};

/// Declarations of the viewport's size and the line's width, and functions over both ends' clip coordinates:
///   bool trl20_isOutside(vec4 a, vec4 b)    the whole line lies beyond one side of the view volume, the far one aside
///   vec2 trl20_lineOffset(vec4 a, vec4 b)   from the line's middle to one rim, in normalised device coordinates
std::string lineFunctions(LineEnds ends);

/// The geometry shader's text, behind `header` (its #version and #extension lines), for a vertex shader with these
/// varyings.
std::string lineGeometryShader(const std::string &header, const std::vector<Varying> &varyings, LineEnds ends);
