// SPDX-License-Identifier: MIT
// Letters and icons as strokes of a round pen, for any size.
#ifndef DEMO_STROKES_H
#define DEMO_STROKES_H

#include <GLES/gl.h>

enum { MAX_SEGMENTS = 128, FIRST_LETTER = ' ', LAST_LETTER = 127, DEGREE_SIGN = 127 };

/// Heights of the letters, in units. Small letters reach from the baseline to 12, the lowest descenders to 0.
enum { BASELINE = 4, CAPITAL_HEIGHT = 12, LINE_TOP = 18 };

struct Strokes {
    GLfloat segments[MAX_SEGMENTS][4]; // x, y, x, y, in units
    int count;
    GLfloat width; // units from 0 to the rightmost point
};

/// Reads strokes from text: lines separated by spaces, each a row of points, each point two digits of base 36, x and y.
/// A line that starts with '~' is a smooth curve: it touches the middles of the lines between its points, and is closed
/// when it ends where it starts. Example: "04840c04" is a triangle, "~04848c0c04" nearly an ellipse.
struct Strokes readStrokes(const char *text);

/// The strokes of a character, FIRST_LETTER to LAST_LETTER, in the notation of readStrokes.
const char *letterStrokes(int character);

/// How much of the pixel around (x, y) the pen covers, 0 to 1. x, y and thickness are in units.
GLfloat strokeCoverage(const struct Strokes *strokes, GLfloat x, GLfloat y, GLfloat thickness, GLfloat pixelsPerUnit);

#endif
