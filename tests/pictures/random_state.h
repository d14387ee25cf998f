// SPDX-License-Identifier: MIT
// A model of the state that a random sequence changes: how to set it in a fresh context, and how to change one thing of
// it in the model and in the current context.
#pragma once

#include <GLES/gl.h>

#include <cstdint>
#include <random>
#include <vector>

constexpr uint32_t kPoolSize = 5; // textures of a random sequence

/// A texture: 2 x 2 texels of one of five formats.
struct PoolTexture {
    GLuint name;      // as the application chose it
    uint32_t format;  // index into the formats
    uint32_t content; // what the texels are made of
};

struct RandomUnit {
    bool enabled2D;
    uint32_t texture; // index into the pool
    uint32_t mode;    // index into the environment modes; the last is GL_COMBINE
    uint32_t rgb, alpha;
    uint32_t source[3], operand[3], alphaSource[3], alphaOperand[3];
    uint32_t rgbScale, alphaScale; // powers of two
    uint32_t constant;
    uint32_t matrix;
    bool coordReplace;
    bool coordArray;
    uint32_t coordSize; // components: 2 to 4
};

/// Numbers choose among variants, 0 the start value.
struct RandomState {
    uint32_t capabilities; // a bit per capability, lights included
    RandomUnit units[2];
    PoolTexture pool[kPoolSize];
    uint32_t lights[8]; // variant of position, colour and cone
    uint32_t material, lightModel;
    uint32_t fogMode, fogVariant;
    uint32_t alphaFunction, alphaReference;
    uint32_t clipPlane;
    uint32_t shadeModel;
    uint32_t modelview, projection;
    uint32_t colour, normal;
    uint32_t pointSize, lineWidth, attenuation;
    bool colourArray, normalArray, pointSizeArray, byteColours;
    uint32_t paletteUnits; // 1 to 4 while the palette is enabled
    uint32_t palette;      // variant of the palette's matrices
};

/// What a picture is drawn with.
enum class RandomDraw : uint32_t { TRIANGLES, ELEMENTS, POINTS, LINES, DRAW_TEXTURE };

/// The start: a pool of textures with one bound to each unit, and light 0 enabled.
RandomState startState();

/// Puts a fresh context into a state, with no call for what has its start value.
void setState(const RandomState &state);

/// Changes one thing at random, in the state and, by ordinary calls, in the current context.
void changeState(RandomState &state, std::mt19937 &random);

/// Draws with a state that the current context is in.
void drawState(const RandomState &state, RandomDraw draw);
