// SPDX-License-Identifier: MIT
#include "sheet.h"

#include <math.h>

static struct SheetVertex pointOf(Surface *surface, int band, GLfloat within, GLfloat across)
{
    // The normal comes from the steps to neighbours inside the band, so that its edges stay sharp.
    const GLfloat step = within < 0.5f ? 0.02f : -0.02f;
    GLfloat along[3], aside[3];
    struct SheetVertex vertex;
    surface(band, within, across, vertex.position);
    surface(band, within + step, across, along);
    surface(band, within, across + 0.0005f, aside);
    for (int i = 0; i < 3; ++i) {
        along[i] = (along[i] - vertex.position[i]) * copysignf(1.0f, step);
        aside[i] -= vertex.position[i];
    }
    for (int i = 0; i < 3; ++i)
        vertex.normal[i] = along[(i + 1) % 3] * aside[(i + 2) % 3] - along[(i + 2) % 3] * aside[(i + 1) % 3];
    const GLfloat *n = vertex.normal, length = sqrtf(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    for (int i = 0; i < 3; ++i)
        vertex.normal[i] /= length;
    return vertex;
}

void makeSheet(struct Sheet *sheet, Surface *surface, int bands, int steps, GLfloat repeats, int axis)
{
    struct SheetVertex *end = sheet->vertices;
    for (int i = 0; i < bands * 2 * (steps + 1); ++i) {
        const int band = i / (2 * (steps + 1)), inBand = i % (2 * (steps + 1));
        const GLfloat across = (GLfloat)(inBand / 2) / (GLfloat)steps;
        struct SheetVertex vertex = pointOf(surface, band, inBand % 2 ? 0.0f : 1.0f, across);
        vertex.texture[0] = across * repeats;
        vertex.texture[1] = vertex.position[axis] * 0.5f;
        // A vertex twice at both ends of a band joins the strips by triangles without area.
        for (int copies = inBand == 0 || inBand == 2 * steps + 1 ? 2 : 1; copies; --copies)
            *end++ = vertex;
    }
    sheet->count = (GLsizei)(end - sheet->vertices);
}

void drawSheet(const struct Sheet *sheet)
{
    const struct SheetVertex *first = sheet->vertices;
    glVertexPointer(3, GL_FLOAT, sizeof *first, first->position);
    glNormalPointer(GL_FLOAT, sizeof *first, first->normal);
    glTexCoordPointer(2, GL_FLOAT, sizeof *first, first->texture);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, sheet->count);
}
