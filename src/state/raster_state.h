// SPDX-License-Identifier: MIT
// Fog, alpha test, points, lines, hints, and the enables that live in no other record or key field.
#pragma once

#include "frontend/gl_headers.h"
#include "frontend/gl_limits.h"

struct GLIContext;

/// Bits of the context dirty word.
enum RasterDirty : uint32_t {
    DIRTY_ENABLES = 0x4,   // a capability switch, light or material changed
    DIRTY_TEXUNIT0 = 0x20, // crop rectangle or texture generation of unit 0
    DIRTY_TEXUNIT1 = 0x40,
    DIRTY_TEXENV0 = 0x1000, // texture environment of unit 0
    DIRTY_TEXENV1 = 0x2000,
    DIRTY_TEXTURE_FORMAT = 0x4000, // a unit's texture format
    DIRTY_ALPHA_TEST = 0x4000,     // shares the bit
    DIRTY_POINTS = 0x8000,         // point sprite, smoothing, size, attenuation
    DIRTY_COORD_REPLACE = 0x8000,  // shares the bit
    DIRTY_FOG = 0x10000,
};

struct FogState {
    uint32_t enabled;   // 0 or 1
    GLenum mode;        // GL_EXP, GL_EXP2 or GL_LINEAR; start GL_EXP
    GLenum coordSource; // GL_FOG_COORDINATE_QRN or GL_FRAGMENT_DEPTH_QRN; start the latter
    GLfloat density;    // start 1
    GLfloat start;      // start 0
    GLfloat end;        // start 1
    GLfloat color[4];   // not clamped; start 0, 0, 0, 0
};

struct AlphaTestState {
    uint32_t enabled; // 0 or 1
    GLenum func;      // start GL_ALWAYS
    GLfloat ref;      // 0..1; start 0
};

struct PointLineState {
    GLfloat lineWidth;              // pixels; start 1
    GLfloat pointSize;              // pixels; start 1
    GLfloat pointSizeMin;           // pixels; start 0
    GLfloat pointSizeMax;           // pixels; start 128
    GLfloat pointFadeThreshold;     // stored only; start 1
    GLfloat distanceAttenuation[3]; // constant, linear, quadratic; start 1, 0, 0
    uint32_t attenuationActive;     // distanceAttenuation differs from 1, 0, 0
};

/// Places of HintState::mode, in the order of their enums.
enum Hint : uint32_t {
    HINT_PERSPECTIVE_CORRECTION,
    HINT_POINT_SMOOTH,
    HINT_LINE_SMOOTH,
    HINT_FOG,
    HINT_GENERATE_MIPMAP,
    HINT_COUNT,
};

struct HintState {
    GLenum mode[HINT_COUNT]; // GL_FASTEST, GL_NICEST or GL_DONT_CARE; start GL_DONT_CARE; no drawing reads them
};

/// Enables that are neither a key field nor part of another record; 0 or 1 each.
struct EnableState {
    uint32_t lineSmooth;
    uint32_t pointSmooth;
    uint32_t pointSprite;
    uint32_t rescaleNormal;
    uint32_t sampleAlphaToOne;
    uint32_t texture2D[kTextureUnits];
    uint32_t textureCubeMap[kTextureUnits];
    uint32_t textureExternal[kTextureUnits];
    uint32_t texGen[kTextureUnits];
};

/// Point, line, fog and alpha-test start values that are not zero. (The records start zero-filled.)
void initRaster(GLIContext *ctx);

/// Sets the key's fogMode and fogCoordinate from the fog state. Run after any of enable, mode and source changes.
void updateFogKey(GLIContext *ctx);
