// SPDX-License-Identifier: MIT
#include "interface_draw.h"

#include "frame.h"

#include <GLES/glext.h>
#include <math.h>
#include <stddef.h>

enum { LARGEST_SCALE = 2 };

static PFNGLDRAWTEXFOESPROC drawTex;
struct Art art;

static GLfloat unit;           // texels of one unit of the page
static GLfloat zoom;           // pixels of one texel
static GLfloat leftEdge, base; // where the page begins, in pixels

const char *startDrawing(void)
{
    drawTex = (PFNGLDRAWTEXFOESPROC)findFunction("GL_OES_draw_texture", "glDrawTexfOES");
    if (!drawTex) return "this driver has no GL_OES_draw_texture";
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    static const GLenum kModulate[][2] = {{GL_TEXTURE_ENV_MODE, GL_COMBINE}, {GL_COMBINE_RGB, GL_MODULATE},
                                          {GL_SRC0_RGB, GL_TEXTURE},         {GL_SRC1_RGB, GL_CONSTANT},
                                          {GL_COMBINE_ALPHA, GL_MODULATE},   {GL_SRC0_ALPHA, GL_TEXTURE},
                                          {GL_SRC1_ALPHA, GL_CONSTANT}};
    for (size_t i = 0; i < sizeof kModulate / sizeof *kModulate; ++i)
        glTexEnvi(GL_TEXTURE_ENV, kModulate[i][0], (GLint)kModulate[i][1]);
    return NULL;
}

void fitPage(int width, int height)
{
    static struct Atlas atlas;
    const GLfloat scale = fminf((GLfloat)width / PAGE_WIDTH, (GLfloat)height / PAGE_HEIGHT);
    const GLfloat wanted = fminf(scale, LARGEST_SCALE);
    zoom = scale / wanted;
    leftEdge = floorf(0.5f * ((GLfloat)width - PAGE_WIDTH * scale));
    base = floorf(0.5f * ((GLfloat)height - PAGE_HEIGHT * scale));
    if (wanted == unit) return;
    unit = wanted;
    atlas.x = atlas.y = atlas.rowHeight = 0;
    art = paintArt(&atlas, unit);
    uploadAtlas(&atlas);
}

// As the environment's constant colour, because the native driver draws textures with a stale current colour.
void tint(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha)
{
    const GLfloat colour[] = {red, green, blue, alpha};
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, colour);
}

// Draws a rectangle of the atlas, given in texels, at a place and in a size given in texels of the page.
static void drawCrop(int cropX, int cropY, int cropWidth, int cropHeight, GLfloat x, GLfloat y, GLfloat width,
                     GLfloat height)
{
    const GLint crop[] = {cropX, cropY, cropWidth, cropHeight};
    if (width <= 0.0f || height <= 0.0f) return;
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop);
    drawTex(leftEdge + x * zoom, base + y * zoom, 0.0f, width * zoom, height * zoom);
}

static void drawPiece(const struct Piece *piece, GLfloat x, GLfloat y)
{
    drawCrop(piece->x, piece->y, piece->width, piece->height, x, y, (GLfloat)piece->width, (GLfloat)piece->height);
}

void place(const struct Piece *piece, GLfloat x, GLfloat y)
{
    drawPiece(piece, roundf(x * unit), roundf(y * unit));
}

// Without its outermost texels, which the filter would mix with the atlas's other pieces.
void placeAcross(const struct Piece *piece, GLfloat x, GLfloat y, GLfloat width, GLfloat height)
{
    drawCrop(piece->x + 1, piece->y + 1, piece->width - 2, piece->height - 2, roundf(x * unit), roundf(y * unit),
             roundf(width * unit), roundf(height * unit));
}

void placeCut(const struct Piece *piece, GLfloat x, GLfloat y, GLfloat width, GLfloat height)
{
    const GLfloat rows = fminf(roundf(height * unit), (GLfloat)piece->height);
    drawCrop(piece->x, piece->y, piece->width, (int)rows, roundf(x * unit), roundf(y * unit), roundf(width * unit),
             rows);
}

// A negative width of the crop rectangle mirrors.
void placeMirrored(const struct Piece *piece, GLfloat x, GLfloat y)
{
    drawCrop(piece->x + piece->width, piece->y, -piece->width, piece->height, roundf(x * unit), roundf(y * unit),
             (GLfloat)piece->width, (GLfloat)piece->height);
}

// The corners keep their size, the two texels in the middle are stretched.
void placeStretched(const struct Piece *piece, GLfloat x, GLfloat y, GLfloat width, GLfloat height)
{
    const int half = piece->width / 2;
    const int cropAt[] = {0, half - 1, piece->width - half}, cropSize[] = {half, 2, half};
    const GLfloat left = roundf(x * unit), low = roundf(y * unit), corner = (GLfloat)half;
    const GLfloat inX = roundf(width * unit) - 2.0f * corner, inY = roundf(height * unit) - 2.0f * corner;
    const GLfloat atX[] = {left, left + corner, left + corner + inX}, sizeX[] = {corner, inX, corner};
    const GLfloat atY[] = {low, low + corner, low + corner + inY}, sizeY[] = {corner, inY, corner};
    for (int i = 0; i < 9; ++i)
        drawCrop(piece->x + cropAt[i % 3], piece->y + cropAt[i / 3], cropSize[i % 3], cropSize[i / 3], atX[i % 3],
                 atY[i / 3], sizeX[i % 3], sizeY[i / 3]);
}

void text(const struct Lettering *lettering, const char *string, GLfloat x, GLfloat y)
{
    drawText(lettering, string, x * unit, y * unit, drawPiece);
}

void textCentred(const struct Lettering *lettering, const char *string, GLfloat x, GLfloat y)
{
    drawText(lettering, string, x * unit - 0.5f * textWidth(lettering, string), y * unit, drawPiece);
}

void textRight(const struct Lettering *lettering, const char *string, GLfloat x, GLfloat y)
{
    drawText(lettering, string, x * unit - textWidth(lettering, string), y * unit, drawPiece);
}
