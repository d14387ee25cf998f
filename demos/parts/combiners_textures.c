// SPDX-License-Identifier: MIT
#include "combiners_textures.h"

#include "basics.h"

#include <math.h>

// A flower on blue, transparent outside a soft disc. Red is the luminance of the formats that have one.
static void flowerColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    const GLfloat u = 2.0f * x - 1.0f, v = 2.0f * y - 1.0f, far = hypotf(u, v), angle = atan2f(v, u);
    const GLfloat petal = smoothStep(0.06f, -0.06f, far - 0.55f - 0.25f * cosf(6.0f * angle));
    const GLfloat heart = smoothStep(0.30f, 0.20f, far);
    rgba[0] = 0.10f + 0.85f * petal - 0.40f * heart;
    rgba[1] = 0.25f + (0.35f + 0.4f * far) * petal - 0.35f * heart;
    rgba[2] = 0.65f - 0.50f * petal;
    rgba[3] = smoothStep(1.0f, 0.7f, far);
}

static void stripesColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    const GLfloat wave = 0.5f + 0.5f * sinf(2.0f * PI * (2.0f * x + y));
    rgba[0] = 0.15f + 0.75f * wave;
    rgba[1] = 0.80f - 0.55f * wave;
    rgba[2] = 0.35f + 0.30f * wave;
    rgba[3] = 0.25f + 0.75f * wave;
}

// The directions of a dome's surface, -1..1 written as 0..1.
static void bumpsColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    const GLfloat u = 2.4f * (x - 0.5f), v = 2.4f * (y - 0.5f), squared = u * u + v * v;
    rgba[0] = squared < 1.0f ? 0.5f + 0.5f * u : 0.5f;
    rgba[1] = squared < 1.0f ? 0.5f + 0.5f * v : 0.5f;
    rgba[2] = squared < 1.0f ? 0.5f + 0.5f * sqrtf(1.0f - squared) : 1.0f;
}

static void checksColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    rgba[0] = (x < 0.5f) == (y < 0.5f) ? 0.46f : 0.32f;
}

void makeBoardTextures(struct BoardTextures *textures)
{
    for (int i = 0; i < FORMATS; ++i)
        textures->paintings[i] = makeTexture(kFormats[i].format, 64, flowerColour);
    textures->stripes = makeTexture(GL_RGBA, 64, stripesColour);
    textures->bumps = makeTexture(GL_RGB, 64, bumpsColour);
    textures->checks = makeTexture(GL_LUMINANCE, 16, checksColour);
}
