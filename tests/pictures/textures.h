// SPDX-License-Identifier: MIT
// Small textures and texture state that many scenes share.
#pragma once

#include "pictures/board.h"

#include <initializer_list>

/// Nearest filtering of the texture bound to a target, so that a picture shows texels as they are.
void nearestFilter(GLenum target = GL_TEXTURE_2D);

/// A new texture without images, bound to GL_TEXTURE_2D of the active unit, which it replaces the colour in. Rows of
/// images are read unpadded from now on.
void bindNew(GLenum minFilter = GL_NEAREST);

/// A new texture of 4 x 4 equal texels of unsigned bytes, bound to GL_TEXTURE_2D of the active unit. Returns its name.
GLuint plainTexture(GLenum format, std::initializer_list<GLubyte> texel);

/// The same from a colour: the components that the format has, rounded to bytes.
GLuint plainTexture(GLenum format, const Colour &texel);

/// A new 4 x 4 RGBA texture, left half red, right half green, bound to GL_TEXTURE_2D of the active unit.
GLuint halvesTexture();

/// A new 2 x 2 RGBA texture, red and green below, blue and white above, bound to GL_TEXTURE_2D of the active unit.
GLuint quartersTexture();
constexpr Colour kQuarterColours[4] = {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}, {1, 1, 1, 1}};

/// glTexEnvi of GL_TEXTURE_ENV.
void setEnv(GLenum pname, GLenum value);

/// What a texture of this base format gives to the environment for a texel: absent colours are 0, absent alpha is 1.
Colour sampled(GLenum format, const Colour &texel);

/// Fills a place with one texel: s and t are the same everywhere, so that no level but 0 is looked at.
void drawTexel(const Place &place, double s, double t);

/// Fills a place so that a square texture of that size shows level `level`, with the middle of texel x, y of that level
/// in the pixel in the middle of the place. The texture repeats.
void drawLevelTexel(const Place &place, int size, int level, int x, int y);
