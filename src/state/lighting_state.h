// SPDX-License-Identifier: MIT
// Lights, light model and material, with the values derived from them for the shaders.
#pragma once

#include "frontend/gl_headers.h"
#include "frontend/gl_limits.h"

struct GLIContext;

/// Kinds of light, as the shader generator names them. Bits 0-1 of the generation inputs' field per light.
enum LightKind : uint32_t { LIGHT_OFF = 0, LIGHT_DIRECTIONAL = 1, LIGHT_POINT = 2, LIGHT_SPOT = 3 };

/// Bits of LightingState::change, the lighting change word.
enum LightingChange : uint32_t {
    LIGHTING_SHININESS = 0x4,
    LIGHTING_POINT_ATTENUATION = 0x18,
    LIGHTING_TWO_SIDE = 0x1C,
    LIGHTING_AMBIENT = 0x400,
};

/// All eight bits of a light mask.
constexpr uint32_t kAllLights = (1u << kMaxLights) - 1;

struct Light {
    GLfloat position[4];      // eye space; x, y, z divided by w when w is neither 0 nor 1
    GLfloat positionGiven[4]; // eye space, before that division
    GLfloat direction[3];     // w = 0: unit vector to the light
    GLfloat halfVector[3];    // w = 0: unit vector between direction and the viewer at (0, 0, 1)
    GLfloat spotDirection[3]; // eye space
    GLfloat spotDirectionUnit[3];
    GLfloat packed0[4]; // spot exponent, cutoff in degrees, cosine of the cutoff, unused
    GLfloat packed1[4]; // constant, linear, quadratic attenuation, unused
    GLfloat ambient[4];
    GLfloat diffuse[4];
    GLfloat specular[4];
    GLfloat ambientProduct[4]; // with the material, as uploaded; see deriveLights
    GLfloat diffuseProduct[4];
    GLfloat specularProduct[4];
    uint32_t enabled; // 0 or 1
    LightKind kind;   // derived; LIGHT_OFF when disabled
};

struct Material {
    GLfloat ambient[4];
    GLfloat diffuse[4];
    GLfloat specular[4];
    GLfloat emission[4];
    GLfloat shininess; // 0..128
};

struct LightModel {
    uint32_t twoSide; // 0 or 1
    GLfloat ambient[4];
};

struct LightingState {
    Light lights[kMaxLights];
    Material material;
    LightModel model;
    GLfloat sceneColor[4];    // derived: gles_LightModelProduct.sceneColor
    uint32_t change;          // LightingChange bits
    uint32_t geometryDirty;   // bit L: kind of light L must be derived again
    uint32_t colorDirty[2];   // bit L: colour products of light L must be derived again; both words set together
    uint32_t sceneColorDirty; // 0 or 1
    uint32_t directionalMask; // bit L: light L is enabled and directional; likewise the next two
    uint32_t pointMask;
    uint32_t spotMask;
    uint32_t zeroAmbientMask; // bit L: light L is disabled or its ambient product is nowhere above 0
    uint32_t zeroDiffuseMask;
    uint32_t zeroSpecularMask;
};

/// The mask of the enabled lights, as of the last derivation.
inline uint32_t enabledLights(const LightingState &lighting)
{
    return lighting.directionalMask | lighting.pointMask | lighting.spotMask;
}

/// Start values of OpenGL ES 1.1 table 6.9; every light is marked, so that the first lit draw derives everything.
void initMaterial(GLIContext *ctx);
void initLighting(GLIContext *ctx);

/// Counterparts of the initialisers, called when a context goes.
void wipeMaterial(GLIContext *ctx);
void wipeLighting(GLIContext *ctx);

/// A light was switched on or off: its kind and its colour products must be derived again, and the key counts it.
void noteLightEnable(GLIContext *ctx, uint32_t light);

/// The colour products of the lights in lightMask must be derived again.
void markLightColors(LightingState &lighting, uint32_t lightMask);

/// Light, light model or material changed: marks the context, when lighting is on.
void markLitDraws(GLIContext *ctx);

/// Works the change marks: scene colour, then for marked lights 0 to 7 kind, colour products and the six masks.
void deriveLights(GLIContext *ctx);

/// The three colour products of one light with the material; under colour material ambient and diffuse are the light's
/// own. A disabled light's are only computed at initialisation.
void deriveLightProducts(LightingState &lighting, uint32_t index, bool colorMaterial);
