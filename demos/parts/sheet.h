// SPDX-License-Identifier: MIT
// Curved surfaces as one triangle strip each, with normals and texture coordinates.
#ifndef DEMO_SHEET_H
#define DEMO_SHEET_H

#include <GLES/gl.h>

enum { SHEET_VERTICES = 12000 };

struct SheetVertex {
    GLfloat position[3];
    GLfloat normal[3];
    GLfloat texture[2];
};

struct Sheet {
    struct SheetVertex vertices[SHEET_VERTICES];
    GLsizei count;
};

/// A point of a surface. band: the strip's row, within: 0 to 1 along it, across: 0 to 1 over the whole width.
typedef void Surface(int band, GLfloat within, GLfloat across, GLfloat *position);

/// Makes the strip of `bands` rows of `steps` quads. The surface may have an edge between two bands; seen from outside,
/// `across` grows to the right of growing bands. repeats: how often the texture repeats across; along the bands the
/// second texture coordinate is half the position's coordinate `axis`.
void makeSheet(struct Sheet *sheet, Surface *surface, int bands, int steps, GLfloat repeats, int axis);

/// Draws it from client memory. GL_VERTEX_ARRAY, GL_NORMAL_ARRAY and GL_TEXTURE_COORD_ARRAY are enabled by the caller.
void drawSheet(const struct Sheet *sheet);

#endif
