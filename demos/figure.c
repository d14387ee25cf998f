// SPDX-License-Identifier: MIT
// Three runners: one lit mesh, its vertices bound to up to four matrices of the palette, drawn in three phases of the
// stride. With --cpu-skinning the processor moves the vertices, as a driver without the palette needs it.
#include "basics.h"
#include "figure_skin.h"
#include "frame.h"

#include <math.h>
#include <string.h>

enum { RUNNERS = 3 };

#define BACKGROUND 0.22f, 0.28f, 0.40f

// Where the sunlight comes from.
#define SUN_X 0.5f
#define SUN_Y 0.9f
#define SUN_Z 0.55f
static const GLfloat kSun[] = {SUN_X, SUN_Y, SUN_Z, 0.0f};

static int cpuSkinning;

static const char *start(void)
{
    return startFigure(cpuSkinning);
}

static void drawRunners(GLfloat seconds)
{
    static const GLfloat kPlaces[RUNNERS][2] = {{0.20f, 0.32f}, {-1.10f, 0.20f}, {0.50f, -1.05f}}; // x, z
    for (int i = 0; i < RUNNERS; ++i) {
        const GLfloat phase = 9.0f * seconds + 2.1f * (GLfloat)i;
        glPushMatrix();
        glTranslatef(kPlaces[i][0], 0.05f * fabsf(cosf(phase)), kPlaces[i][1]);
        drawFigure(phase);
        glPopMatrix();
    }
}

// A disc around the runners.
static void drawDisc(const GLfloat *middle, const GLfloat *rim)
{
    enum { CORNERS = 64 };
    GLfloat corners[CORNERS + 2][3], colours[CORNERS + 2][4];
    for (int i = 0; i < CORNERS + 2; ++i) {
        const GLfloat angle = (GLfloat)i * 2.0f * PI / CORNERS, radius = i ? 9.0f : 0.0f;
        const GLfloat corner[] = {radius * sinf(angle), 0.0f, radius * cosf(angle)};
        memcpy(corners[i], corner, sizeof corner);
        memcpy(colours[i], i ? rim : middle, sizeof colours[i]);
    }
    glVertexPointer(3, GL_FLOAT, 0, corners);
    glColorPointer(4, GL_FLOAT, 0, colours);
    glDrawArrays(GL_TRIANGLE_FAN, 0, CORNERS + 2);
}

// The shadows lie under the ground's colours: first white and the shadows' grey, then the colours multiplied with both.
static void drawGround(GLfloat seconds)
{
    static const GLfloat kWhite[] = {1.0f, 1.0f, 1.0f, 1.0f}, kFloor[] = {0.88f, 0.87f, 0.84f, 1.0f};
    static const GLfloat kRim[] = {BACKGROUND, 1.0f};
    // Everything flat on y = 0, along the rays of the sun.
    static const GLfloat kFlatten[16] = {1.0f, 0.0f, 0.0f, 0.0f, -SUN_X / SUN_Y, 0.0f, -SUN_Z / SUN_Y, 0.0f,
                                         0.0f, 0.0f, 1.0f, 0.0f, 0.0f,           0.0f, 0.0f,           1.0f};
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    drawDisc(kWhite, kWhite);
    glDisableClientState(GL_COLOR_ARRAY);
    glColor4f(0.55f, 0.58f, 0.66f, 1.0f);
    glPushMatrix();
    glMultMatrixf(kFlatten);
    drawRunners(seconds);
    glPopMatrix();
    glEnableClientState(GL_COLOR_ARRAY);
    glEnable(GL_BLEND);
    glBlendFunc(GL_DST_COLOR, GL_ZERO);
    drawDisc(kFloor, kRim);
    glDisable(GL_BLEND);
}

static void draw(int milliseconds, int width, int height)
{
    static const GLfloat kWarm[] = {0.72f, 0.68f, 0.60f, 1.0f}, kCool[] = {0.22f, 0.30f, 0.46f, 1.0f};
    static const GLfloat kAmbient[] = {0.26f, 0.27f, 0.32f, 1.0f}, kShine[] = {0.22f, 0.22f, 0.22f, 1.0f};
    static const GLfloat kSky[] = {-0.8f, 0.3f, -0.6f, 0.0f};
    const GLfloat seconds = (GLfloat)milliseconds * 0.001f;
    glClearColor(BACKGROUND, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_NORMALIZE);
    glEnable(GL_COLOR_MATERIAL);
    glEnable(GL_LIGHT0);
    glEnable(GL_LIGHT1);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);

    lookAhead(26.0f, width, height, 0.5f, 40.0f);
    glTranslatef(0.0f, -0.85f, -5.6f);
    glRotatef(13.0f, 1.0f, 0.0f, 0.0f);
    glRotatef(-36.0f, 0.0f, 1.0f, 0.0f);
    glLightfv(GL_LIGHT0, GL_POSITION, kSun);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, kWarm);
    glLightfv(GL_LIGHT0, GL_SPECULAR, kWarm);
    glLightfv(GL_LIGHT1, GL_POSITION, kSky);
    glLightfv(GL_LIGHT1, GL_DIFFUSE, kCool);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, kAmbient);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, kShine);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 24.0f);

    drawGround(seconds);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_LIGHTING);
    drawRunners(seconds);
}

int main(int argc, char **argv)
{
    static const struct Demo demo = {
        .name = "figure",
        .title = "Runners",
        .about = "One lit mesh on thirteen bones, every vertex bound to up to four matrices of the palette, drawn in "
                 "three phases of the stride.",
        .ownOption = "--cpu-skinning",
        .ownMeaning = "let the processor move the vertices, without GL_OES_matrix_palette",
        .ownGiven = &cpuSkinning,
        .start = start,
        .draw = draw,
        .posterMilliseconds = 400,
    };
    return runDemo(&demo, argc, argv);
}
