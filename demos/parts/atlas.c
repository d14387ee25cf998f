// SPDX-License-Identifier: MIT
#include "atlas.h"

#include <math.h>
#include <string.h>

enum { GAP_UNITS = 4 }; // between letters, from middle to middle of the pen

struct Pen {
    struct Strokes strokes;
    GLfloat thickness, pixelsPerUnit;
    int margin;
};

struct Piece addPiece(struct Atlas *atlas, int width, int height, PaintTexel *paint, const void *what)
{
    if (atlas->x + width > ATLAS_SIZE) {
        atlas->y += atlas->rowHeight + 1; // a texel apart, so that linear filters keep to their piece
        atlas->x = atlas->rowHeight = 0;
    }
    if (width > ATLAS_SIZE || atlas->y + height > ATLAS_SIZE) return (struct Piece){0, 0, 0, 0};
    const struct Piece piece = {atlas->x, atlas->y, width, height};
    for (int i = 0; i < width * height; ++i) {
        GLfloat rgba[4] = {1.0f, 1.0f, 1.0f, 1.0f};
        paint(what, (GLfloat)(i % width) + 0.5f, (GLfloat)(i / width) + 0.5f, rgba);
        for (int k = 0; k < 4; ++k)
            atlas->texels[piece.y + i / width][piece.x + i % width][k] =
                (GLubyte)(fminf(fmaxf(rgba[k], 0.0f), 1.0f) * 255.0f + 0.5f);
    }
    atlas->x += width + 1;
    if (height > atlas->rowHeight) atlas->rowHeight = height;
    return piece;
}

static void paintLetter(const void *what, GLfloat x, GLfloat y, GLfloat *rgba)
{
    const struct Pen *pen = what;
    rgba[3] = strokeCoverage(&pen->strokes, (x - (GLfloat)pen->margin) / pen->pixelsPerUnit,
                             (y - (GLfloat)pen->margin) / pen->pixelsPerUnit, pen->thickness, pen->pixelsPerUnit);
}

struct Lettering addLettering(struct Atlas *atlas, GLfloat capitalPixels, GLfloat thickness)
{
    struct Lettering lettering = {.pixelsPerUnit = capitalPixels / CAPITAL_HEIGHT};
    struct Pen pen = {.thickness = thickness, .pixelsPerUnit = lettering.pixelsPerUnit};
    pen.margin = lettering.margin = (int)ceilf(0.5f * thickness * pen.pixelsPerUnit) + 1;
    const int height = (int)ceilf(LINE_TOP * pen.pixelsPerUnit) + 2 * pen.margin;
    for (int i = 0; i <= LAST_LETTER - FIRST_LETTER; ++i) {
        pen.strokes = readStrokes(letterStrokes(FIRST_LETTER + i));
        const int width = (int)ceilf(pen.strokes.width * pen.pixelsPerUnit) + 2 * pen.margin;
        lettering.pieces[i] = addPiece(atlas, width, height, paintLetter, &pen);
        lettering.advances[i] = roundf((pen.strokes.width + GAP_UNITS) * pen.pixelsPerUnit);
    }
    return lettering;
}

void uploadAtlas(const struct Atlas *atlas)
{
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, ATLAS_SIZE, ATLAS_SIZE, 0, GL_RGBA, GL_UNSIGNED_BYTE, atlas->texels);
}

static int indexOf(char character)
{
    return character >= FIRST_LETTER ? character - FIRST_LETTER : '?' - FIRST_LETTER;
}

GLfloat textWidth(const struct Lettering *lettering, const char *text)
{
    GLfloat width = 0.0f;
    for (; *text; ++text)
        width += lettering->advances[indexOf(*text)];
    return width > 0.0f ? width - GAP_UNITS * lettering->pixelsPerUnit : 0.0f;
}

void drawText(const struct Lettering *lettering, const char *text, GLfloat x, GLfloat y, DrawPiece *draw)
{
    // Whole pixels keep the letters as crisp as they were painted.
    const GLfloat bottom = floorf(y - BASELINE * lettering->pixelsPerUnit - (GLfloat)lettering->margin + 0.5f);
    for (x = floorf(x + 0.5f) - (GLfloat)lettering->margin; *text; ++text) {
        draw(&lettering->pieces[indexOf(*text)], x, bottom);
        x += lettering->advances[indexOf(*text)];
    }
}
