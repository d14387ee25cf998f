// SPDX-License-Identifier: MIT
// One cell of the combiner board, and the two units that colour it.
#ifndef DEMO_COMBINERS_CELL_H
#define DEMO_COMBINERS_CELL_H

#include <GLES/gl.h>

enum { CELL_WIDTH = 92, CELL_HEIGHT = 46 };

/// Makes the unit active, with this texture, this environment mode and the board's constant colour.
void useUnit(int unit, GLuint texture, GLenum mode);

/// Makes the unit active and disables its texture.
void turnOffUnit(int unit);

/// Draws the rectangle of the cell whose lower left corner is at x, y, in the board's primary colours, which also vary
/// in alpha. repeats: of both textures over its width.
void drawRectangle(GLfloat x, GLfloat y, GLfloat repeats);

#endif
