// SPDX-License-Identifier: MIT
// A walk through a colonnade at dusk: fog, a directional light and seven lamps, mipmapped stone, a wet floor that
// mirrors everything because it is blended over the scene drawn upside down.
#include "basics.h"
#include "frame.h"
#include "temple_model.h"

#include <math.h>
#include <stddef.h>
#include <string.h>

enum { LAMPS = 7 };

static const GLfloat kFogDensity = 0.05f;
#define DUSK 0.58f, 0.46f, 0.50f
#define EVENING 0.30f, 0.29f, 0.44f
#define NIGHT 0.08f, 0.10f, 0.22f

// The positions are transformed as everything else: upside down while the mirrored scene is drawn.
static void light(GLfloat walked)
{
    static const GLfloat kFire[] = {1.0f, 0.62f, 0.26f, 1.0f}, kNone[] = {0.0f, 0.0f, 0.0f, 1.0f};
    static const GLfloat kMoon[] = {-0.5f, 0.7f, 0.5f, 0.0f}, kMoonlight[] = {0.20f, 0.24f, 0.34f, 1.0f};
    glLightfv(GL_LIGHT0, GL_POSITION, kMoon);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, kMoonlight);
    glLightfv(GL_LIGHT0, GL_SPECULAR, kNone);
    for (int i = 0; i < LAMPS; ++i) {
        GLfloat position[4];
        lampPosition(i, walked, position);
        glLightfv(GL_LIGHT1 + i, GL_POSITION, position);
        glLightfv(GL_LIGHT1 + i, GL_DIFFUSE, kFire);
        glLightfv(GL_LIGHT1 + i, GL_SPECULAR, kFire);
        glLightf(GL_LIGHT1 + i, GL_QUADRATIC_ATTENUATION, 0.20f);
    }
}

static void setMaterial(GLfloat diffuse, GLfloat specular, GLfloat shininess, GLfloat alpha)
{
    const GLfloat body[] = {diffuse, diffuse, diffuse, alpha}, shine[] = {specular, specular, specular, 1.0f};
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, body);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, shine);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
}

static void drawMoved(const struct Sheet *sheet, GLfloat x, GLfloat y, GLfloat z)
{
    glPushMatrix();
    glTranslatef(x, y, z);
    drawSheet(sheet);
    glPopMatrix();
}

// Squares that face the viewer add the glow to what lies behind; fog would add its own colour, so they fade instead.
static void drawHalos(GLfloat walked)
{
    static const GLfloat kCorners[][2] = {{-1.0f, -1.0f}, {1.0f, -1.0f}, {-1.0f, 1.0f}, {1.0f, 1.0f}};
    static const GLfloat kTexture[][2] = {{0.0f, 0.0f}, {1.0f, 0.0f}, {0.0f, 1.0f}, {1.0f, 1.0f}};
    glDisable(GL_FOG);
    glDisable(GL_CULL_FACE);
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_ONE, GL_ONE);
    glBindTexture(GL_TEXTURE_2D, temple.glow);
    glVertexPointer(2, GL_FLOAT, 0, kCorners);
    glTexCoordPointer(2, GL_FLOAT, 0, kTexture);
    for (int i = 0; i < BAYS; ++i) {
        GLfloat position[4];
        lampPosition(i, walked, position);
        const GLfloat fade = expf(-powf(kFogDensity * position[2], 2.0f));
        glColor4f(0.75f * fade, 0.46f * fade, 0.20f * fade, 1.0f);
        glPushMatrix();
        glTranslatef(position[0], position[1], position[2] + 0.13f);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glPopMatrix();
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
    glEnable(GL_CULL_FACE);
    glEnable(GL_FOG);
}

static void drawBuilding(GLfloat walked)
{
    light(walked);
    glEnable(GL_LIGHTING);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, temple.marble);
    setMaterial(0.75f, 0.25f, 24.0f, 1.0f);
    for (int i = -1; i < 2 * BAYS - 1; ++i)
        drawMoved(&temple.column, (i + 1) % 2 ? AISLE : -AISLE, 0.0f, walked - BAY * (GLfloat)((i + 1) / 2 - 1));
    drawMoved(&temple.beam, AISLE, 0.0f, walked);
    glPushMatrix();
    glScalef(-1.0f, 1.0f, 1.0f);
    glDisable(GL_CULL_FACE);
    drawMoved(&temple.beam, AISLE, 0.0f, walked);
    glEnable(GL_CULL_FACE);
    glPopMatrix();

    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glColor4f(1.0f, 0.95f, 0.80f, 1.0f);
    for (int i = 0; i < BAYS; ++i) {
        GLfloat position[4];
        lampPosition(i, walked, position);
        drawMoved(&temple.lamp, position[0], position[1], position[2]);
    }
    drawHalos(walked);
}

// From the colour of the fog, as high as the far end of the beams, to the night above; the same mirrored below.
static void drawSky(void)
{
    static const GLfloat kBands[][4] = {{-1.0f, NIGHT}, {-0.55f, EVENING}, {-0.16f, DUSK},
                                        {0.16f, DUSK},  {0.55f, EVENING},  {1.0f, NIGHT}};
    GLfloat corners[12][3], colours[12][4];
    for (int i = 0; i < 12; ++i) {
        const GLfloat *band = kBands[i / 2], corner[] = {i % 2 ? 1.0f : -1.0f, band[0], 0.999f};
        memcpy(corners[i], corner, sizeof corner);
        memcpy(colours[i], band + 1, 3 * sizeof *band);
        colours[i][3] = 1.0f;
    }
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_FOG);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, corners);
    glColorPointer(4, GL_FLOAT, 0, colours);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 12);
    glDisableClientState(GL_COLOR_ARRAY);
    glEnable(GL_FOG);
}

static void draw(int milliseconds, int width, int height)
{
    static const GLfloat kDusk[] = {DUSK, 1.0f}, kAmbient[] = {0.20f, 0.20f, 0.30f, 1.0f};
    const GLfloat walked = fmodf((GLfloat)milliseconds * 0.0012f, 2.0f * BAY);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    glEnable(GL_NORMALIZE);
    glEnable(GL_FOG);
    for (int i = 0; i <= LAMPS; ++i)
        glEnable(GL_LIGHT0 + i);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glFogf(GL_FOG_MODE, GL_EXP2);
    glFogf(GL_FOG_DENSITY, kFogDensity);
    glFogfv(GL_FOG_COLOR, kDusk);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, kAmbient);

    drawSky();
    lookAhead(52.0f, width, height, 0.3f, 60.0f);
    glRotatef(2.0f, 1.0f, 0.0f, 0.0f);
    glRotatef(9.0f, 0.0f, 1.0f, 0.0f);
    glTranslatef(0.5f, -1.7f, -1.5f);

    glPushMatrix();
    glScalef(1.0f, -1.0f, 1.0f);
    glFrontFace(GL_CW);
    drawBuilding(walked);
    glFrontFace(GL_CCW);
    glPopMatrix();

    light(walked);
    glEnable(GL_LIGHTING);
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glBindTexture(GL_TEXTURE_2D, temple.paving);
    setMaterial(0.85f, 0.4f, 40.0f, 0.62f);
    drawMoved(&temple.ground, 0.0f, 0.0f, walked);
    glDisable(GL_BLEND);
    drawBuilding(walked);
}

int main(int argc, char **argv)
{
    static const struct Demo demo = {
        .name = "temple",
        .title = "A temple at dusk",
        .about = "Seven lamps and the last daylight on mipmapped stone that vanishes in fog, mirrored by a wet floor "
                 "that is blended over the scene upside down.",
        .start = makeTemple,
        .draw = draw,
        .posterMilliseconds = 1000,
    };
    return runDemo(&demo, argc, argv);
}
