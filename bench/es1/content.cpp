// SPDX-License-Identifier: MIT
#include "es1/content.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>

const Light kLights[3] = {
    {{0.0f, 0.6f, 0.8f, 0.0f}, {0.6f, 0.6f, 0.5f, 1.0f}, {0.3f, 0.3f, 0.3f, 1.0f}},
    {{-3.0f, 2.0f, -5.0f, 1.0f}, {0.5f, 0.2f, 0.2f, 1.0f}, {0.2f, 0.1f, 0.1f, 1.0f}},
    {{3.0f, -2.0f, -5.0f, 1.0f}, {0.2f, 0.3f, 0.5f, 1.0f}, {0.1f, 0.2f, 0.3f, 1.0f}},
};

const float kMaterialColours[kMaterials][4] = {
    {0.9f, 0.3f, 0.3f, 1.0f}, {0.3f, 0.9f, 0.3f, 1.0f}, {0.3f, 0.4f, 0.9f, 1.0f}, {0.9f, 0.8f, 0.3f, 1.0f},
    {0.8f, 0.4f, 0.8f, 1.0f}, {0.4f, 0.8f, 0.8f, 1.0f}, {0.8f, 0.8f, 0.8f, 1.0f}, {0.9f, 0.6f, 0.4f, 1.0f},
};

namespace {

constexpr float kTurn = 2.0f * std::numbers::pi_v<float>;

void paint(Vertex &vertex, int number)
{
    const uint8_t colour[4] = {static_cast<uint8_t>(80 + number * 61 % 176),
                               static_cast<uint8_t>(80 + number * 29 % 176),
                               static_cast<uint8_t>(80 + number * 97 % 176), 255};
    std::copy_n(colour, 4, vertex.colour);
}

// A side of a pyramid: from the rim at two angles to the tip towards the viewer.
void addSide(Mesh &mesh, const float *centre, float radius, float from, float to)
{
    const float height = 0.6f * radius, middle = 0.5f * (from + to);
    // The side leans: its normal has the rim's direction in proportion to the height.
    const float out = height / std::hypot(height, radius * std::cos(0.5f * (to - from)));
    const float normal[3] = {out * std::cos(middle), out * std::sin(middle), std::sqrt(1.0f - out * out)};
    const float corners[3][5] = {{std::cos(from), std::sin(from), 0.0f, 0.0f, 0.0f},
                                 {std::cos(to), std::sin(to), 0.0f, 1.0f, 0.0f},
                                 {0.0f, 0.0f, 0.6f, 0.5f, 1.0f}};
    for (const float *corner : corners) {
        Vertex vertex = {};
        for (int i = 0; i < 3; ++i)
            vertex.position[i] = centre[i] + radius * corner[i];
        std::copy_n(normal, 3, vertex.normal);
        std::copy_n(corner + 3, 2, vertex.coord);
        paint(vertex, static_cast<int>(mesh.vertices.size()));
        mesh.vertices.push_back(vertex);
    }
}

void addPyramid(Mesh &mesh, int sides, float radius, float x, float y)
{
    const float centre[3] = {x, y, 0.0f};
    for (int side = 0; side < sides; ++side) {
        const float step = kTurn / static_cast<float>(sides), from = step * (static_cast<float>(side) + 0.1f);
        addSide(mesh, centre, radius, from, from + step);
    }
}

// Indices of a grid of vertices, row after row.
void addGridIndices(Mesh &mesh, int columns, int rows)
{
    for (int row = 0; row + 1 < rows; ++row) {
        for (int column = 0; column + 1 < columns; ++column) {
            const int corner = row * columns + column;
            for (const int offset : {0, 1, columns, columns, 1, columns + 1})
                mesh.indices.push_back(static_cast<uint16_t>(corner + offset));
        }
    }
}

Mesh makeStrip(float low)
{
    Mesh mesh;
    for (const float y : {0.0f, 1.0f})
        for (const float x : {0.0f, 1.0f})
            mesh.vertices.push_back({.position = {x > 0 ? 1.0f : low, y > 0 ? 1.0f : low, 0.0f},
                                     .normal = {0.0f, 0.0f, 1.0f},
                                     .coord = {x, y},
                                     .colour = {255, 255, 255, 255}});
    return mesh;
}

} // namespace

Mesh makeGem()
{
    Mesh mesh;
    addPyramid(mesh, 4, 0.45f, 0.0f, 0.0f);
    return mesh;
}

Mesh makeGemGrid()
{
    Mesh mesh;
    for (int cell = 0; cell < kCells; ++cell)
        addPyramid(mesh, 4, 0.45f, cellX(cell), cellY(cell));
    return mesh;
}

Mesh makeCone(int number)
{
    Mesh mesh;
    addPyramid(mesh, 6, 0.25f + 0.01f * static_cast<float>(number), cellX(number), cellY(number));
    for (size_t i = 0; i < mesh.vertices.size(); ++i)
        mesh.indices.push_back(static_cast<uint16_t>(i));
    return mesh;
}

Mesh makeTorus()
{
    constexpr int kAround = 97, kAcross = 65;
    Mesh mesh;
    for (int row = 0; row < kAround; ++row) {
        for (int column = 0; column < kAcross; ++column) {
            const float u = static_cast<float>(row) / (kAround - 1), v = static_cast<float>(column) / (kAcross - 1);
            const float inner = std::cos(kTurn * v), up = std::sin(kTurn * v), radius = 0.65f + 0.25f * inner;
            Vertex vertex = {.position = {radius * std::cos(kTurn * u), radius * std::sin(kTurn * u), 0.25f * up},
                             .normal = {inner * std::cos(kTurn * u), inner * std::sin(kTurn * u), up},
                             .coord = {u, v},
                             .colour = {}};
            paint(vertex, row);
            mesh.vertices.push_back(vertex);
        }
    }
    addGridIndices(mesh, kAcross, kAround);
    return mesh;
}

Mesh makeTube()
{
    constexpr int kCorners = 8;
    Mesh mesh;
    for (int ring = 0; ring < kTubeRings; ++ring) {
        for (int corner = 0; corner < kCorners; ++corner) {
            const float angle = kTurn * static_cast<float>(corner) / (kCorners - 1);
            const float y = 3.0f * static_cast<float>(ring) / (kTubeRings - 1) - 1.5f;
            Vertex vertex = {.position = {0.3f * std::cos(angle), y, 0.3f * std::sin(angle)},
                             .normal = {std::cos(angle), 0.0f, std::sin(angle)},
                             .coord = {},
                             .colour = {}};
            paint(vertex, ring / 4 * 3 + corner);
            mesh.vertices.push_back(vertex);
        }
    }
    addGridIndices(mesh, kCorners, kTubeRings);
    return mesh;
}

std::vector<Binding> makeTubeBindings()
{
    std::vector<Binding> bindings;
    const size_t perRing = makeTube().vertices.size() / kTubeRings;
    for (int ring = 0; ring < kTubeRings; ++ring) {
        const float along = (kBones - 1) * static_cast<float>(ring) / (kTubeRings - 1);
        const int bone = std::min(static_cast<int>(along), kBones - 2);
        const float second = along - static_cast<float>(bone);
        const Binding binding = {{1.0f - second, second}, {static_cast<uint8_t>(bone), static_cast<uint8_t>(bone + 1)}};
        bindings.insert(bindings.end(), perRing, binding);
    }
    return bindings;
}

Mesh makeSquare()
{
    return makeStrip(-1.0f);
}

Mesh makeUnitSquare()
{
    return makeStrip(0.0f);
}

std::vector<uint8_t> makeTexels(int pattern)
{
    std::vector<uint8_t> texels;
    for (int y = 0; y < kTextureSize; ++y) {
        for (int x = 0; x < kTextureSize; ++x) {
            const int stripe = (pattern & 1 ? x : y) / 8 % 2, corner = (x + y) * 2;
            const bool hole = (x / 16 + y / 16) % 4 == pattern;
            const int texel[4] = {pattern == 0 ? 255 : corner, 128 + 127 * stripe, pattern > 1 ? 255 : 255 - corner,
                                  hole ? 64 : 255};
            for (const int channel : texel)
                texels.push_back(static_cast<uint8_t>(channel));
        }
    }
    return texels;
}
