// SPDX-License-Identifier: MIT
// The geometry shader that turns lines into rectangles, so that a fragment knows how far it is from the line's middle.
#pragma once

#include "shader_scan.h"

#include <string>

/// Put before a varying's name on the way from the vertex to the geometry shader, which hands it on under its own name.
inline constexpr const char *kVertexVaryingPrefix = "trl20_v_";

/// Output of the geometry shader: gl_LineCoord times w, w in the last component. Divided by that component it is linear
/// on the screen, which plain interpolation between ends of different depth is not.
inline constexpr const char *kLineCoordVarying = "trl20_LineCoord";

/// The text, behind `header` (its #version and #extension lines), for a vertex shader with these varyings.
std::string lineGeometryShader(const std::string &header, const std::vector<Varying> &varyings);
