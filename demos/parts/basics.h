// SPDX-License-Identifier: MIT
// Small parts of several demos: textures worked out by a function, repeatable chance, the camera.
#ifndef DEMO_BASICS_H
#define DEMO_BASICS_H

#include <GLES/gl.h>

#define PI 3.14159265f

/// The colour of a texel; x and y are its centre, from 0 to 1. Writes red, green, blue and alpha, each 0 to 1.
typedef void TexelColour(GLfloat x, GLfloat y, GLfloat *rgba);

/// Makes a repeating, mipmapped texture of size x size texels (a power of two, at most 512) and leaves it bound.
/// format: any of the five base formats; alpha comes from rgba[3], luminance from rgba[0].
GLuint makeTexture(GLenum format, int size, TexelColour *colour);

/// The same chance, from 0 up to 1, for the same seed on every machine.
GLfloat chance(unsigned seed);

/// Smooth noise from 0 to 1 that repeats after `period` units in both directions.
GLfloat noise(GLfloat x, GLfloat y, int period);

/// The value at `at`, from 0 below `from` to 1 above `to`, without corners. from may be the larger one.
GLfloat smoothStep(GLfloat from, GLfloat to, GLfloat at);

/// Loads the projection of a camera and leaves GL_MODELVIEW current and identity.
/// heightDegrees: the angle of view from the lower to the upper edge.
void lookAhead(GLfloat heightDegrees, int width, int height, GLfloat nearest, GLfloat farthest);

#endif
