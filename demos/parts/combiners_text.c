// SPDX-License-Identifier: MIT
#include "combiners_text.h"

#include "atlas.h"

enum { MAX_LETTERS = 4000 };

static const struct {
    GLfloat capitals, thickness; // units of the page, units of the pen
} kSizes[TEXT_SIZES] = {{7.5f, 1.8f}, {9.0f, 2.2f}, {17.0f, 2.0f}};

static struct {
    GLfloat position[2], texture[2];
    GLubyte colour[4];
} corners[6 * MAX_LETTERS];
static GLsizei cornerCount;
static GLubyte ink[4] = {255, 255, 255, 255};

static struct Lettering letterings[TEXT_SIZES];
static GLfloat unit; // in pixels
static GLuint texture;

void startText(GLfloat pixelsPerUnit)
{
    static struct Atlas atlas;
    cornerCount = 0;
    if (pixelsPerUnit == unit) return;
    unit = pixelsPerUnit;
    atlas.x = atlas.y = atlas.rowHeight = 0;
    for (int i = 0; i < TEXT_SIZES; ++i)
        letterings[i] = addLettering(&atlas, kSizes[i].capitals * unit, kSizes[i].thickness);
    if (!texture) glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    uploadAtlas(&atlas);
}

void setInk(GLubyte red, GLubyte green, GLubyte blue)
{
    ink[0] = red;
    ink[1] = green;
    ink[2] = blue;
}

static void addLetter(const struct Piece *piece, GLfloat x, GLfloat y)
{
    static const int kCorners[6][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}};
    if (cornerCount == 6 * MAX_LETTERS) return;
    for (int i = 0; i < 6; ++i, ++cornerCount) {
        const GLfloat right = (GLfloat)(kCorners[i][0] * piece->width), up = (GLfloat)(kCorners[i][1] * piece->height);
        corners[cornerCount].position[0] = x + right;
        corners[cornerCount].position[1] = y + up;
        corners[cornerCount].texture[0] = ((GLfloat)piece->x + right) / ATLAS_SIZE;
        corners[cornerCount].texture[1] = ((GLfloat)piece->y + up) / ATLAS_SIZE;
        for (int k = 0; k < 4; ++k)
            corners[cornerCount].colour[k] = ink[k];
    }
}

void writeLine(enum TextSize size, const char *text, GLfloat x, GLfloat y)
{
    drawText(&letterings[size], text, x * unit, y * unit, addLetter);
}

void writeCentred(enum TextSize size, const char *text, GLfloat x, GLfloat y)
{
    drawText(&letterings[size], text, x * unit - 0.5f * textWidth(&letterings[size], text), y * unit, addLetter);
}

void drawWriting(void)
{
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glVertexPointer(2, GL_FLOAT, sizeof *corners, corners[0].position);
    glTexCoordPointer(2, GL_FLOAT, sizeof *corners, corners[0].texture);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof *corners, corners[0].colour);
    glDrawArrays(GL_TRIANGLES, 0, cornerCount);
}
