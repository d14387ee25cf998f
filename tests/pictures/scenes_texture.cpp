// SPDX-License-Identifier: MIT
// Textures in order of events: binding, images, enables and units around draws.
#include "pictures/extensions.h"
#include "pictures/textures.h"

namespace {

void full()
{
    drawRectangle(-1, -1, 1, 1);
}

void replaced()
{
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    full();
}

void twoUnits()
{
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE1);
    plainTexture(GL_RGB, {128, 128, 128});
    glEnable(GL_TEXTURE_2D);
    full();
    // Unit 1 alone.
    glActiveTexture(GL_TEXTURE0);
    glDisable(GL_TEXTURE_2D);
    drawRectangle(-1, -1, 1, 0);
}

void projectiveCoordinates()
{
    static const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    static const GLfloat coordinates[] = {0, 0, 0, 2, 2, 0, 0, 2, 0, 2, 0, 2, 2, 2, 0, 2};
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glMatrixMode(GL_TEXTURE);
    glTranslatef(0.5f, 0, 0); // a matrix that is not the identity: the lookup divides by q
    glMatrixMode(GL_MODELVIEW);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glTexCoordPointer(4, GL_FLOAT, 0, coordinates);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void currentTexCoord()
{
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    drawTexel({-1, -1, 1, 1}, 0.75, 0.5);
}

// The state around a draw-texture must not disturb the draws before and after it.
void drawTextureBetweenLitAndPlain()
{
    const GLint crop[] = {0, 0, 4, 4};
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_END, 1000);
    glNormal3f(0, 0, 1);
    drawRectangle(-1, -1, 1, -0.5f);
    glDisable(GL_LIGHTING);
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop);
    drawTexi(32, 32, 0, 64, 64);
    glDisable(GL_TEXTURE_2D);
    glColor4f(0, 0, 1, 1);
    drawRectangle(-1, 0.5f, 1, 1);
}

void imageAfterBind()
{
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glColor4f(0, 0, 1, 0.5f);
    plainTexture(GL_RGB, {204, 102, 51});
    drawRectangle(-1, -1, 0, 1);
    glDisable(GL_TEXTURE_2D);
    plainTexture(GL_ALPHA, {128});
    glEnable(GL_TEXTURE_2D);
    drawRectangle(0, -1, 1, 1);
}

} // namespace

std::vector<Scene> textureScenes()
{
    const Colour red = {1, 0, 0, 1};
    const Colour green = {0, 1, 0, 1};
    const double grey = 128 / 255.0;
    return {
        {"Replaced", replaced, {probeOf(32, 64, red, "left texels"), probeOf(96, 64, green, "right texels")}},
        {"TwoUnits",
         twoUnits,
         {probeOf(32, 96, {grey, 0, 0, 1}, "red times grey"), probeOf(96, 96, {0, grey, 0, 1}, "green times grey"),
          probeOf(64, 32, {grey, grey, grey, 1}, "unit 1 alone")}},
        // s' = s + 0.5 q, divided by q = 2: moved by one half.
        {"ProjectiveCoordinates",
         projectiveCoordinates,
         {probeOf(32, 64, green, "moved by one half"), probeOf(96, 64, red, "and repeated")}},
        {"CurrentTexCoord", currentTexCoord, {probeOf(32, 64, green, "s = 0.75 everywhere")}},
        {"DrawTextureBetweenLitAndPlain",
         drawTextureBetweenLitAndPlain,
         {probeOf(64, 10, {0.84, 0.84, 0.84, 1}, "lit before"), probeOf(48, 64, red, "texels"),
          probeOf(64, 120, {0, 0, 1, 1}, "plain after")},
         {.tolerance = 3}},
        {"ImageAfterBind",
         imageAfterBind,
         {probeOf(32, 64, {0.8, 0.4, 0.2, 0.5}, "colour of the RGB texture"),
          probeOf(96, 64, {0, 0, 1, grey}, "alpha of the alpha texture")}},
    };
}
