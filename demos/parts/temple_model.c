// SPDX-License-Identifier: MIT
#include "temple_model.h"

#include "basics.h"

#include <math.h>
#include <stddef.h>

struct Temple temple;

static void columnSurface(int band, GLfloat within, GLfloat across, GLfloat *position)
{
    static const GLfloat kProfile[][2] = {
        {0.66f, 0.00f}, {0.66f, 0.18f}, {0.56f, 0.18f}, {0.60f, 0.26f}, {0.60f, 0.34f}, {0.50f, 0.40f}, {0.45f, 0.50f},
        {0.45f, 0.62f}, {0.44f, 1.20f}, {0.43f, 1.80f}, {0.42f, 2.40f}, {0.40f, 3.00f}, {0.38f, 3.60f}, {0.38f, 3.70f},
        {0.46f, 3.74f}, {0.46f, 3.80f}, {0.42f, 3.84f}, {0.50f, 3.96f}, {0.62f, 4.02f}, {0.62f, 4.20f}};
    const GLfloat *from = kProfile[band], *to = kProfile[band + 1], angle = across * 2.0f * PI;
    const GLfloat flute = band >= 7 && band < 12 ? 0.08f * powf(sinf(8.0f * angle), 2.0f) : 0.0f;
    const GLfloat radius = (from[0] + (to[0] - from[0]) * within) * (1.0f - flute);
    position[0] = radius * sinf(angle);
    position[1] = from[1] + (to[1] - from[1]) * within;
    position[2] = radius * cosf(angle);
}

// The beam over a row of columns, seen from the way between them.
static void beamSurface(int band, GLfloat within, GLfloat across, GLfloat *position)
{
    static const GLfloat kProfile[][2] = {{0.58f, 4.20f},  {-0.55f, 4.20f}, {-0.55f, 4.50f}, {-0.62f, 4.50f},
                                          {-0.62f, 4.80f}, {-0.82f, 5.00f}, {-0.82f, 5.20f}};
    const GLfloat *from = kProfile[band], *to = kProfile[band + 1];
    position[0] = from[0] + (to[0] - from[0]) * within;
    position[1] = from[1] + (to[1] - from[1]) * within;
    position[2] = 2.0f * BAY - across * BAY * (BAYS + 2);
}

static void groundSurface(int band, GLfloat within, GLfloat across, GLfloat *position)
{
    const GLfloat aside = ((GLfloat)band + within) / 20.0f - 1.0f; // finer in the middle, where the lamps are
    position[0] = 22.0f * aside * fabsf(aside) + 4.0f * aside;
    position[1] = 0.0f;
    position[2] = 2.0f * BAY - across * BAY * (BAYS + 2);
}

static void lampSurface(int band, GLfloat within, GLfloat across, GLfloat *position)
{
    const GLfloat height = (((GLfloat)band + within) / 8.0f - 0.5f) * PI, angle = across * 2.0f * PI;
    position[0] = 0.13f * cosf(height) * sinf(angle);
    position[1] = 0.13f * sinf(height);
    position[2] = 0.13f * cosf(height) * cosf(angle);
}

static void marbleColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    const GLfloat cloud = 0.6f * noise(4.0f * x, 4.0f * y, 4) + 0.4f * noise(16.0f * x, 16.0f * y, 16);
    const GLfloat vein = 1.0f - fabsf(sinf(2.0f * PI * (x + y + 0.5f * cloud))),
                  grain = noise(64.0f * x, 64.0f * y, 64);
    const GLfloat bright = 0.82f + 0.14f * cloud - 0.28f * powf(vein, 10.0f) + 0.06f * grain;
    rgba[0] = bright;
    rgba[1] = 0.97f * bright;
    rgba[2] = 0.92f * bright;
}

// Two by two slabs of two stones, with dark joints.
static void pavingColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    const GLfloat u = 2.0f * x, v = 2.0f * y, cloud = noise(8.0f * x, 8.0f * y, 8) - noise(32.0f * x, 32.0f * y, 32);
    const GLfloat joint = fminf(fminf(u - floorf(u), ceilf(u) - u), fminf(v - floorf(v), ceilf(v) - v));
    const int dark = ((int)u + (int)v) % 2;
    const GLfloat bright = ((dark ? 0.40f : 0.92f) + 0.10f * cloud) * (0.35f + 0.65f * smoothStep(0.01f, 0.05f, joint));
    rgba[0] = bright * (dark ? 0.92f : 1.0f);
    rgba[1] = bright * (dark ? 0.96f : 0.94f);
    rgba[2] = bright * (dark ? 1.05f : 0.84f);
}

static void glowColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    const GLfloat far = 2.0f * hypotf(x - 0.5f, y - 0.5f);
    rgba[0] = powf(fmaxf(1.0f - far, 0.0f), 3.0f);
}

void lampPosition(int index, GLfloat walked, GLfloat *position)
{
    position[0] = index % 2 ? 1.25f : -1.25f;
    position[1] = 2.55f;
    position[2] = walked - BAY * ((GLfloat)index + 0.5f);
    position[3] = 1.0f;
}

const char *makeTemple(void)
{
    makeSheet(&temple.column, columnSurface, 19, 64, 4.0f, 1);
    makeSheet(&temple.beam, beamSurface, 6, 2 * (BAYS + 2), BAY * (BAYS + 2) * 0.5f, 1);
    makeSheet(&temple.ground, groundSurface, 40, 4 * (BAYS + 2), BAY * (BAYS + 2) * 0.5f, 0);
    makeSheet(&temple.lamp, lampSurface, 8, 16, 1.0f, 1);
    temple.marble = makeTexture(GL_RGB, 256, marbleColour);
    temple.paving = makeTexture(GL_RGB, 256, pavingColour);
    temple.glow = makeTexture(GL_LUMINANCE, 64, glowColour);
    return NULL;
}
