// SPDX-License-Identifier: MIT
// Primitives taken apart into vertices of their own, each with another vertex of its primitive: the form in which draws
// reach the driver whose vertex shader runs its main twice.
#pragma once

#include "gl_api.h"

#include <cstdint>
#include <vector>

struct PairedVertex {
    uint32_t own;   // index into the application's arrays
    uint32_t other; // the primitive's last vertex, or the line's other end
};

/// Primitives of their own: GL_LINES or GL_TRIANGLES.
struct PairedVertices {
    GLenum mode;
    std::vector<PairedVertex> vertices;
};

/// Corners per line in cornersOfLines.
inline constexpr int kCornersPerLine = 6;

/// x is 0 at the line's first and 1 at its second end, y is -1 or 1 for the side. Two triangles.
inline constexpr float kLineCorners[kCornersPerLine][2] = {{0, -1}, {1, -1}, {0, 1}, {0, 1}, {1, -1}, {1, 1}};

/// True for the modes of lines, and for those of triangles.
bool isLineMode(GLenum mode);
bool isTriangleMode(GLenum mode);

/// Lines or triangles, in the order and with the facing that `mode` gives them. The other vertex is the last one.
/// Empty for points.
PairedVertices pairWithLast(GLenum mode, const std::vector<uint32_t> &indices);

/// Lines as triangles, kCornersPerLine vertices each, in the order of kLineCorners. The other vertex is the other end.
PairedVertices cornersOfLines(GLenum mode, const std::vector<uint32_t> &indices);
