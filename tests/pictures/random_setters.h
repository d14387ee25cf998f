// SPDX-License-Identifier: MIT
// The calls behind the numbers of a random state, and what the numbers choose among.
#pragma once

#include "pictures/random_state.h"

#include <GLES/glext.h>

inline constexpr GLenum kCapabilities[] = {GL_LIGHTING,
                                           GL_COLOR_MATERIAL,
                                           GL_NORMALIZE,
                                           GL_RESCALE_NORMAL,
                                           GL_FOG,
                                           GL_ALPHA_TEST,
                                           GL_CLIP_PLANE0,
                                           GL_POINT_SPRITE_OES,
                                           GL_POINT_SMOOTH,
                                           GL_LINE_SMOOTH,
                                           GL_MATRIX_PALETTE_OES,
                                           GL_BLEND,
                                           GL_LIGHT0,
                                           GL_LIGHT1,
                                           GL_LIGHT2,
                                           GL_LIGHT3,
                                           GL_LIGHT4,
                                           GL_LIGHT5,
                                           GL_LIGHT6,
                                           GL_LIGHT7};
inline constexpr uint32_t kPaletteBit = 1 << 10;
inline constexpr GLenum kFormats[] = {GL_RGBA, GL_ALPHA, GL_LUMINANCE, GL_RGB, GL_LUMINANCE_ALPHA};
inline constexpr GLenum kModes[] = {GL_MODULATE, GL_REPLACE, GL_DECAL, GL_BLEND, GL_ADD, GL_COMBINE};
inline constexpr GLenum kRgb[] = {GL_MODULATE,    GL_REPLACE,  GL_ADD,      GL_ADD_SIGNED,
                                  GL_INTERPOLATE, GL_SUBTRACT, GL_DOT3_RGB, GL_DOT3_RGBA};
inline constexpr GLenum kSources[] = {GL_TEXTURE, GL_CONSTANT, GL_PRIMARY_COLOR, GL_PREVIOUS, GL_TEXTURE0, GL_TEXTURE1};
inline constexpr GLenum kOperands[] = {GL_SRC_COLOR, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_COLOR, GL_ONE_MINUS_SRC_ALPHA};
inline constexpr GLenum kAlphaOperands[] = {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA};
inline constexpr GLenum kFogModes[] = {GL_EXP, GL_LINEAR, GL_EXP2};
inline constexpr GLenum kAlphaFunctions[] = {GL_ALWAYS,  GL_LESS,     GL_EQUAL,  GL_LEQUAL,
                                             GL_GREATER, GL_NOTEQUAL, GL_GEQUAL, GL_NEVER};

/// Enables or disables a capability by its bit.
void setCapability(uint32_t bit, bool on);
/// An image for the texture bound to the active unit.
void upload(const PoolTexture &texture);
void bindUnit(uint32_t unit, GLuint name);
void setMode(const RandomUnit &u);
void setCombiner(const RandomUnit &u);
void setConstant(const RandomUnit &u);
void setTextureMatrix(uint32_t variant);
void setCoordReplace(const RandomUnit &u);
void setLight(uint32_t light, uint32_t variant);
void setMaterial(uint32_t n);
void setLightModel(uint32_t n);
void setFog(uint32_t mode, uint32_t n);
void setAlphaTest(uint32_t function, uint32_t reference);
void setClipPlane(uint32_t n);
void setModelview(uint32_t n);
void setProjection(uint32_t n);
void setColour(uint32_t n);
void setNormal(uint32_t n);
void setAttenuation(uint32_t n);
void setPalette(uint32_t n);
