// SPDX-License-Identifier: MIT
// What both programs draw: meshes, texels, colours, places. Where a scene has a value, it has it from here, so that the
// pictures are equal.
#pragma once

#include <cstdint>
#include <vector>

struct Vertex {
    float position[3];
    float normal[3]; // of length 1
    float coord[2];
    uint8_t colour[4];
};

/// Arrays of a mesh that a scene uses beside its positions.
enum Parts : unsigned { NORMALS = 1, COORDS = 2, COLOURS = 4 };

struct Mesh {
    std::vector<Vertex> vertices;
    std::vector<uint16_t> indices; // triangles; empty: the vertices in their order
};

/// Draws spread over a grid of four by four cells.
constexpr int kCells = 16;

/// Centre of a draw's cell, -1.5 to 1.5, and how far its object is turned.
constexpr float cellX(int number)
{
    return static_cast<float>(number % 4) - 1.5f;
}
constexpr float cellY(int number)
{
    return static_cast<float>(number / 4 % 4) - 1.5f;
}
constexpr float angleDegrees(int number)
{
    return 17.0f * static_cast<float>(number % 32);
}
/// Axis of all turns, of length 1.
constexpr float kAxis[3] = {0.48f, 0.6f, 0.64f};

// The camera: half the width of the near plane, both planes' distances, and how far back it stands from the cells.
constexpr float kHalfWidth = 1.0f, kNear = 4.0f, kFar = 40.0f, kDistance = 8.0f;

/// A pyramid of four sides around the origin, or one in each cell: kGemVertices vertices each, without indices.
constexpr int kGemVertices = 12;
Mesh makeGem();
Mesh makeGemGrid();

/// A ring of 97 by 65 vertices around the origin, 0.9 wide.
Mesh makeTorus();

/// A pyramid of six sides in a cell, smaller or larger with its number, indexed.
Mesh makeCone(int number);

/// An upright tube of 33 rings of 8 vertices from y = -1.5 to 1.5.
constexpr int kTubeRings = 33;
Mesh makeTube();

/// A square from (-1, -1) to (1, 1), and one from (0, 0) to (1, 1), as triangle strips of 4 vertices.
Mesh makeSquare();
Mesh makeUnitSquare();

/// RGBA texels of one of four patterns, kTextureSize squared. Some are transparent.
constexpr int kTextures = 4, kTextureSize = 64;
std::vector<uint8_t> makeTexels(int pattern);

struct Light {
    float position[4]; // in eye space; w = 0: a direction of length 1
    float diffuse[4];
    float specular[4];
};
extern const Light kLights[3];
constexpr float kSceneAmbient[4] = {0.2f, 0.2f, 0.2f, 1.0f};

/// Ambient and diffuse colours of materials; all share the highlight.
constexpr int kMaterials = 8;
extern const float kMaterialColours[kMaterials][4];
constexpr float kSpecular[4] = {0.5f, 0.5f, 0.5f, 1.0f};
constexpr float kShininess = 12.0f;

constexpr float kFogColour[4] = {0.5f, 0.55f, 0.6f, 1.0f};
constexpr float kFogStart = 6.0f, kFogEnd = 10.0f; // distances from the eye

/// One of sixteen combinations of states, all of them in sixteen draws; neighbours differ in two to four bits.
constexpr int kCombinations = 16;
constexpr int combination(int number)
{
    return number * 5 % kCombinations;
}

// Sprites and rectangles of draw-texture, in pixels of the surface.
constexpr int kSpriteSize = 24;
constexpr float spriteX(int number)
{
    return static_cast<float>(number * 37 % 232);
}
constexpr float spriteY(int number)
{
    return static_cast<float>(number * 53 % 231);
}

/// Distance of a full-screen layer from the eye.
constexpr float layerDistance(int number)
{
    return 6.25f + static_cast<float>(number % 4);
}

// A skinned tube: four bones lie along it, each turned about the z axis.
constexpr int kBones = 4;
constexpr float boneDegrees(int number, int bone)
{
    return static_cast<float>((number * 7 + bone * 13) % 40 - 20);
}
/// Two weights and two bone numbers for each vertex of the tube.
struct Binding {
    float weights[2];
    uint8_t bones[2];
};
std::vector<Binding> makeTubeBindings();
