// SPDX-License-Identifier: MIT
// A scene is a function of plain OpenGL ES 1.1 calls with what is known of its picture.
#pragma once

#include <GLES/gl.h>
#include <GLES/glext.h>

#include <functional>
#include <string>
#include <vector>

constexpr int kPictureSize = 128; // pixels, both ways; RGBA 8888, 24 bits of depth, 8 of stencil

/// A colour worked out from the equations of the standard, as 0..255 per channel.
struct Probe {
    int x, y; // pixel, from the lower left
    double red, green, blue, alpha;
    std::string why; // where the number comes from
};

/// How the picture compares with the same calls on the machine's own ES 1.1.
struct NativeMatch {
    int tolerance = 2;             // of 255, per channel: two roundings to 8 bits and mediump arithmetic
    int differingPixels = 0;       // that may be further off: edges rasterised from differently rounded positions
    const char *instead = nullptr; // not null: not compared, for this reason
};

struct Scene {
    std::string name;
    std::function<void()> draw; // from the start values of a context; the viewport is the whole picture
    std::vector<Probe> probes;
    NativeMatch native = {};
    int probeTolerance = 1; // of 255: one rounding to 8 bits
};

/// Every scene, from all files.
std::vector<Scene> allScenes();

// One list per file of scenes.
std::vector<Scene> drawingScenes();
std::vector<Scene> flatScenes();
std::vector<Scene> matrixScenes();
std::vector<Scene> lightingScenes();
std::vector<Scene> lightScenes();
std::vector<Scene> materialScenes();
std::vector<Scene> fogScenes();
std::vector<Scene> alphaAndClipScenes();
std::vector<Scene> pointScenes();
std::vector<Scene> lineScenes();
std::vector<Scene> wideLineScenes();
std::vector<Scene> textureScenes();
std::vector<Scene> formatScenes();
std::vector<Scene> compressedScenes();
std::vector<Scene> imageScenes();
std::vector<Scene> cubeMapScenes();
std::vector<Scene> environmentScenes();
std::vector<Scene> combinerScenes();
std::vector<Scene> textureMatrixScenes();
std::vector<Scene> drawTextureScenes();
std::vector<Scene> skinningScenes();
std::vector<Scene> targetScenes();

// Shared drawing.

/// Orthographic projection of the unit square onto the whole picture: 0..1 both ways, depth -1..1.
void unitSquareProjection();

/// Orthographic projection of pixels onto themselves: 0..kPictureSize both ways, depth -1..1.
void pixelProjection();

/// A rectangle in the current colour, at depth z, with normal (0, 0, 1) as the current normal and texture coordinates
/// 0..1 on both units.
void drawRectangle(float left, float bottom, float right, float top, float z = 0);
