// SPDX-License-Identifier: MIT
// Texture environments by the tables of OpenGL ES 1.1 section 3.7.12, in double precision, and the calls that set the
// same state.
#pragma once

#include "pictures/textures.h"

/// Source and operand of one argument.
struct Argument {
    GLenum source, operand;
};

/// Environment of one unit. Start values are the standard's.
struct Environment {
    GLenum mode = GL_MODULATE;
    GLenum rgb = GL_MODULATE;
    GLenum alpha = GL_MODULATE;
    Argument rgbArguments[3] = {{GL_TEXTURE, GL_SRC_COLOR}, {GL_PREVIOUS, GL_SRC_COLOR}, {GL_CONSTANT, GL_SRC_ALPHA}};
    Argument alphaArguments[3] = {{GL_TEXTURE, GL_SRC_ALPHA}, {GL_PREVIOUS, GL_SRC_ALPHA}, {GL_CONSTANT, GL_SRC_ALPHA}};
    double rgbScale = 1;
    double alphaScale = 1;
    Colour constant = {0, 0, 0, 0};
};

/// A unit with a plain texture.
struct Unit {
    bool enabled = false;
    GLenum format = GL_RGBA; // base format of the texture
    Colour texel = {1, 1, 1, 1};
    Environment environment = {};
};

/// What both units make of a primary colour.
Colour textured(const Unit (&units)[2], const Colour &primary);

/// Sets both units, with textures of their own, and the current colour. Unit 0 is active afterwards.
void setUnits(const Unit (&units)[2], const Colour &primary);

/// A cell filled with what these units make of that colour.
Cell unitsCell(std::string why, const Unit &unit0, const Unit &unit1, const Colour &primary);
