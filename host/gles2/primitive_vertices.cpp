// SPDX-License-Identifier: MIT
#include "primitive_vertices.h"

#include <stddef.h>
#include <utility>

bool isLineMode(GLenum mode)
{
    return mode == GL_LINES || mode == GL_LINE_LOOP || mode == GL_LINE_STRIP;
}

bool isTriangleMode(GLenum mode)
{
    return mode == GL_TRIANGLES || mode == GL_TRIANGLE_STRIP || mode == GL_TRIANGLE_FAN;
}

struct Line {
    uint32_t first;
    uint32_t second;
};

static std::vector<Line> linesOf(GLenum mode, const std::vector<uint32_t> &indices)
{
    std::vector<Line> lines;
    const size_t step = mode == GL_LINES ? 2 : 1;
    for (size_t at = 0; at + 1 < indices.size(); at += step)
        lines.push_back({indices[at], indices[at + 1]});
    if (mode == GL_LINE_LOOP && indices.size() > 1) lines.push_back({indices.back(), indices.front()});
    return lines;
}

static void addTriangle(std::vector<PairedVertex> &vertices, uint32_t first, uint32_t second, uint32_t last)
{
    vertices.insert(vertices.end(), {{first, last}, {second, last}, {last, last}});
}

static void addTriangles(std::vector<PairedVertex> &vertices, GLenum mode, const std::vector<uint32_t> &indices)
{
    const size_t step = mode == GL_TRIANGLES ? 3 : 1;
    for (size_t at = 0; at + 2 < indices.size(); at += step) {
        uint32_t first = mode == GL_TRIANGLE_FAN ? indices[0] : indices[at];
        uint32_t second = indices[at + 1];
        if (mode == GL_TRIANGLE_STRIP && at % 2) std::swap(first, second); // keeps the facing
        addTriangle(vertices, first, second, indices[at + 2]);
    }
}

PairedVertices pairWithLast(GLenum mode, const std::vector<uint32_t> &indices)
{
    if (isTriangleMode(mode)) {
        PairedVertices triangles{.mode = GL_TRIANGLES, .vertices = {}};
        addTriangles(triangles.vertices, mode, indices);
        return triangles;
    }
    PairedVertices lines{.mode = GL_LINES, .vertices = {}};
    if (!isLineMode(mode)) return lines;
    for (const Line &line : linesOf(mode, indices))
        lines.vertices.insert(lines.vertices.end(), {{line.first, line.second}, {line.second, line.second}});
    return lines;
}

PairedVertices cornersOfLines(GLenum mode, const std::vector<uint32_t> &indices)
{
    PairedVertices corners{.mode = GL_TRIANGLES, .vertices = {}};
    if (!isLineMode(mode)) return corners;
    for (const Line &line : linesOf(mode, indices)) {
        for (const float(&corner)[2] : kLineCorners) {
            const bool second = corner[0] > 0.5f;
            corners.vertices.push_back(second ? PairedVertex{line.second, line.first}
                                              : PairedVertex{line.first, line.second});
        }
    }
    return corners;
}
