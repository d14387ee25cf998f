// SPDX-License-Identifier: MIT
// Draws pieces of the atlas by GL_OES_draw_texture. Places and sizes are in units of a page that fits into the window.
#ifndef DEMO_INTERFACE_DRAW_H
#define DEMO_INTERFACE_DRAW_H

#include "interface_art.h"

enum { PAGE_WIDTH = 480, PAGE_HEIGHT = 360 };

extern struct Art art;

/// Sets the state that all drawing here shares. Returns null, or why the driver cannot draw.
const char *startDrawing(void);

/// Places the page in the middle of the window and paints the atlas for its size, up to twice the page's units; in
/// larger windows the texels are enlarged.
void fitPage(int width, int height);

/// The colour that multiplies what is drawn from now on.
void tint(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha);

/// A piece in its own size, the same mirrored left to right, and stretched as a whole.
void place(const struct Piece *piece, GLfloat x, GLfloat y);
void placeMirrored(const struct Piece *piece, GLfloat x, GLfloat y);
void placeAcross(const struct Piece *piece, GLfloat x, GLfloat y, GLfloat width, GLfloat height);

/// The lowest `height` of a piece, stretched to `width` only.
void placeCut(const struct Piece *piece, GLfloat x, GLfloat y, GLfloat width, GLfloat height);

/// A square piece stretched in its middle alone, so that its corners keep their form.
void placeStretched(const struct Piece *piece, GLfloat x, GLfloat y, GLfloat width, GLfloat height);

/// A line of text with its baseline at y: from x on, with its middle at x, or ending at x.
void text(const struct Lettering *lettering, const char *string, GLfloat x, GLfloat y);
void textCentred(const struct Lettering *lettering, const char *string, GLfloat x, GLfloat y);
void textRight(const struct Lettering *lettering, const char *string, GLfloat x, GLfloat y);

#endif
