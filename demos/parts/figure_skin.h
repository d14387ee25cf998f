// SPDX-License-Identifier: MIT
// A running figure, drawn by the matrix palette or with its vertices moved by the processor.
#ifndef DEMO_FIGURE_SKIN_H
#define DEMO_FIGURE_SKIN_H

#include <GLES/gl.h>

/// Makes the mesh. Returns null, or why the figure cannot be drawn: the palette is wanted and this driver has none.
const char *startFigure(int withoutPalette);

/// Draws the figure under the modelview matrix, with the vertex, normal and colour arrays as far as they are enabled.
/// phase: of the stride, in radians; a whole turn is a step with either leg.
void drawFigure(GLfloat phase);

#endif
