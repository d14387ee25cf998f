// SPDX-License-Identifier: MIT
// Small shaders for es2bench: one text, and a program for each combination of features that a scene needs.
#pragma once

#include <GLES2/gl2.h>

/// Attribute numbers, the same in every program.
enum Attribute : GLuint { POSITION, NORMAL, COORD, COLOUR, WEIGHTS, BONES };

struct Features {
    int lights = 0;   // 0: the colour comes from the vertex or from a uniform
    int textures = 0; // bit set of the units, modulated one after the other
    bool vertexColour = false;
    bool fog = false;
    bool skinned = false;
    bool rectangle = false; // the position is scaled and moved in the plane
};

/// A linked program and its uniforms; -1 where it has none of that name.
struct Es2Program {
    GLuint name;
    GLint modelViewProjection;   // unless lit or fogged
    GLint projection, modelView; // lit or fogged
    GLint normalMatrix;          // lit
    GLint materialColour;        // lit: ambient and diffuse
    GLint colour;                // neither lit nor from the vertex
    GLint rectangle;             // x, y, width, height
    GLint bones;                 // skinned: model to clip coordinates, one matrix a bone
};

/// Makes the program of a combination, leaves it current, and loads what never changes: lights, fog, texture units,
/// the projection and an unturned model view. Ends the program with the compiler's log when the text does not compile.
Es2Program makeProgram(const Features &features);
