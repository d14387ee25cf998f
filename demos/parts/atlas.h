// SPDX-License-Identifier: MIT
// Many small pictures in one texture: lettering, icons, panels.
#ifndef DEMO_ATLAS_H
#define DEMO_ATLAS_H

#include "strokes.h"

enum { ATLAS_SIZE = 1024 };

/// A rectangle of the atlas in texels; y counts from the texture's first row.
struct Piece {
    int x, y, width, height;
};

struct Atlas {
    GLubyte texels[ATLAS_SIZE][ATLAS_SIZE][4];
    int x, y, rowHeight; // where the next piece goes
};

/// All letters in one size and weight.
struct Lettering {
    struct Piece pieces[LAST_LETTER - FIRST_LETTER + 1]; // the pen's start lies `margin` inside the left edge
    GLfloat advances[LAST_LETTER - FIRST_LETTER + 1];    // pixels to the next letter
    GLfloat pixelsPerUnit;
    int margin; // texels around every letter
};

/// The colour of a texel of a piece. x and y: its centre in texels from the piece's lower left corner. what: given by
/// addPiece's caller. rgba: 0 to 1, opaque white at first.
typedef void PaintTexel(const void *what, GLfloat x, GLfloat y, GLfloat *rgba);

/// Draws a piece with its lower left corner at x, y, in pixels.
typedef void DrawPiece(const struct Piece *piece, GLfloat x, GLfloat y);

/// Adds a piece; one that no longer fits stays empty (width and height 0).
struct Piece addPiece(struct Atlas *atlas, int width, int height, PaintTexel *paint, const void *what);

/// Adds all letters, white with the pen's coverage as alpha. capitalPixels: height of capitals; thickness: of the pen,
/// in units (CAPITAL_HEIGHT of them are a capital's height).
struct Lettering addLettering(struct Atlas *atlas, GLfloat capitalPixels, GLfloat thickness);

/// Gives the texels to the bound texture, which has no mipmaps.
void uploadAtlas(const struct Atlas *atlas);

/// Width of a line of text in pixels.
GLfloat textWidth(const struct Lettering *lettering, const char *text);

/// Draws a line of text from x on, its baseline at y.
void drawText(const struct Lettering *lettering, const char *text, GLfloat x, GLfloat y, DrawPiece *draw);

#endif
