// SPDX-License-Identifier: MIT
#include "combiners_cell.h"

static const GLfloat kConstant[] = {0.15f, 0.75f, 0.55f, 0.60f};

void useUnit(int unit, GLuint texture, GLenum mode)
{
    glActiveTexture(GL_TEXTURE0 + unit);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, (GLint)mode);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, kConstant);
}

void drawRectangle(GLfloat x, GLfloat y, GLfloat repeats)
{
    static const GLubyte kPrimary[4][4] = {
        {60, 90, 250, 90}, {250, 80, 130, 90}, {90, 220, 250, 255}, {255, 200, 90, 255}};
    const GLfloat texture[4][2] = {{0.0f, 0.0f}, {repeats, 0.0f}, {0.0f, 0.5f * repeats}, {repeats, 0.5f * repeats}};
    const GLfloat corners[4][2] = {
        {x, y}, {x + CELL_WIDTH, y}, {x, y + CELL_HEIGHT}, {x + CELL_WIDTH, y + CELL_HEIGHT}};
    glVertexPointer(2, GL_FLOAT, 0, corners);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, kPrimary);
    for (int unit = 0; unit < 2; ++unit) {
        glClientActiveTexture(GL_TEXTURE0 + unit);
        glTexCoordPointer(2, GL_FLOAT, 0, texture);
    }
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void turnOffUnit(int unit)
{
    glActiveTexture(GL_TEXTURE0 + unit);
    glDisable(GL_TEXTURE_2D);
}
