// SPDX-License-Identifier: MIT
// The writing of the combiner board: collected while the cells are drawn, then drawn as one array of triangles.
#ifndef DEMO_COMBINERS_TEXT_H
#define DEMO_COMBINERS_TEXT_H

#include <GLES/gl.h>

enum TextSize { TEXT_CAPTION, TEXT_HEADING, TEXT_TITLE, TEXT_SIZES };

/// Starts a page whose unit is `pixelsPerUnit` pixels; paints the letters when that has changed.
void startText(GLfloat pixelsPerUnit);

/// The colour of what is written from now on, 0 to 255.
void setInk(GLubyte red, GLubyte green, GLubyte blue);

/// Writes a line with its baseline at y, both in units; from x on, or with its middle at x.
void writeLine(enum TextSize size, const char *text, GLfloat x, GLfloat y);
void writeCentred(enum TextSize size, const char *text, GLfloat x, GLfloat y);

/// Draws everything written since startText under a projection in pixels; leaves its texture bound and enabled on the
/// active unit, and its arrays described.
void drawWriting(void);

#endif
