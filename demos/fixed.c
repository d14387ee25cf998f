// SPDX-License-Identifier: MIT
// A carousel of faceted solids without one floating-point number: every value that GL receives is fixed-point.
#include "frame.h"

#include <stddef.h>
#include <stdint.h>

enum { WEDGES = 24, SEATS = 8, MAX_FACES = 20, WEDGE_DEGREES = 360 / WEDGES };

// Fixed-point from a constant, worked out when the demo is compiled.
#define FX(value) ((GLfixed)((value)*65536 + ((value) < 0 ? -0.5 : 0.5)))

struct Corner {
    GLfixed position[3];
    GLfixed normal[3];
};

struct Solid {
    const GLfixed (*points)[3];
    const GLubyte (*faces)[3]; // counter-clockwise seen from outside
    int faceCount;
    struct Corner corners[3 * MAX_FACES]; // made at the start, the face's normal at all three
};

// clang-format off
static const GLfixed kTetrahedron[][3] = {
    {FX(0.7), FX(0.7), FX(0.7)}, {FX(-0.7), FX(-0.7), FX(0.7)}, {FX(-0.7), FX(0.7), FX(-0.7)}, {FX(0.7), FX(-0.7), FX(-0.7)}};
static const GLubyte kTetrahedronFaces[][3] = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
static const GLfixed kOctahedron[][3] = {
    {FX(1), 0, 0}, {FX(-1), 0, 0}, {0, FX(1.2), 0}, {0, FX(-1.2), 0}, {0, 0, FX(1)}, {0, 0, FX(-1)}};
static const GLubyte kOctahedronFaces[][3] = {
    {0, 2, 4}, {4, 2, 1}, {1, 2, 5}, {5, 2, 0}, {4, 3, 0}, {1, 3, 4}, {5, 3, 1}, {0, 3, 5}};
static const GLfixed kCube[][3] = {
    {FX(-0.7), FX(-0.7), FX(-0.7)}, {FX(0.7), FX(-0.7), FX(-0.7)}, {FX(0.7), FX(0.7), FX(-0.7)}, {FX(-0.7), FX(0.7), FX(-0.7)},
    {FX(-0.7), FX(-0.7), FX(0.7)},  {FX(0.7), FX(-0.7), FX(0.7)},  {FX(0.7), FX(0.7), FX(0.7)},  {FX(-0.7), FX(0.7), FX(0.7)}};
static const GLubyte kCubeFaces[][3] = {
    {4, 5, 6}, {4, 6, 7}, {1, 0, 3}, {1, 3, 2}, {5, 1, 2}, {5, 2, 6}, {0, 4, 7}, {0, 7, 3}, {7, 6, 2}, {7, 2, 3}, {0, 1, 5}, {0, 5, 4}};
// The twelve corners lie on three golden rectangles.
#define SHORT FX(0.5257)
#define LONG FX(0.8507)
static const GLfixed kIcosahedron[][3] = {
    {-SHORT, LONG, 0}, {SHORT, LONG, 0}, {-SHORT, -LONG, 0}, {SHORT, -LONG, 0}, {0, -SHORT, LONG}, {0, SHORT, LONG},
    {0, -SHORT, -LONG}, {0, SHORT, -LONG}, {LONG, 0, -SHORT}, {LONG, 0, SHORT}, {-LONG, 0, -SHORT}, {-LONG, 0, SHORT}};
static const GLubyte kIcosahedronFaces[][3] = {
    {0, 11, 5}, {0, 5, 1}, {0, 1, 7}, {0, 7, 10}, {0, 10, 11}, {1, 5, 9}, {5, 11, 4}, {11, 10, 2}, {10, 7, 6}, {7, 1, 8},
    {3, 9, 4}, {3, 4, 2}, {3, 2, 6}, {3, 6, 8}, {3, 8, 9}, {4, 9, 5}, {2, 4, 11}, {6, 2, 10}, {8, 6, 7}, {9, 8, 1}};
// clang-format on

static struct Solid solids[] = {{kIcosahedron, kIcosahedronFaces, 20, {{{0}, {0}}}},
                                {kCube, kCubeFaces, 12, {{{0}, {0}}}},
                                {kOctahedron, kOctahedronFaces, 8, {{{0}, {0}}}},
                                {kTetrahedron, kTetrahedronFaces, 4, {{{0}, {0}}}}};

// One fifteen-degree wedge of radius 1 around the axis; the carousel is 24 of them, each turned a little further.
#define ACROSS FX(0.131652) // tan 7.5 degrees
static const GLfixed kFloor[][3] = {{0, 0, 0}, {FX(1), 0, ACROSS}, {FX(1), 0, -ACROSS}};
static const GLfixed kRoof[][3] = {{0, FX(0.42), 0}, {FX(1), 0, ACROSS}, {FX(1), 0, -ACROSS}};
static const GLfixed kRim[][3] = {
    {FX(1), 0, ACROSS}, {FX(1), FX(-0.08), ACROSS}, {FX(1), 0, -ACROSS}, {FX(1), FX(-0.08), -ACROSS}};
#undef ACROSS

static const GLfixed kSeatColours[SEATS][4] = {
    {FX(0.95), FX(0.30), FX(0.25), FX(1)}, {FX(0.98), FX(0.62), FX(0.16), FX(1)}, {FX(0.95), FX(0.86), FX(0.25), FX(1)},
    {FX(0.42), FX(0.80), FX(0.33), FX(1)}, {FX(0.20), FX(0.72), FX(0.68), FX(1)}, {FX(0.26), FX(0.52), FX(0.92), FX(1)},
    {FX(0.52), FX(0.36), FX(0.86), FX(1)}, {FX(0.90), FX(0.40), FX(0.68), FX(1)}};

static GLfixed multiply(GLfixed a, GLfixed b)
{
    return (GLfixed)(((int64_t)a * b) >> 16);
}

static GLfixed squareRoot(int64_t squared)
{
    int64_t root = 0;
    for (int64_t bit = (int64_t)1 << 30; bit; bit >>= 1)
        if ((root + bit) * (root + bit) <= squared) root += bit;
    return (GLfixed)root;
}

// One swing up and down in 65536 steps, -1 to 1: two parabolas, close enough to a sine.
static GLfixed swing(GLfixed phase)
{
    const GLfixed half = (phase & 0x7fff) * 2, bow = multiply(4 * half, FX(1) - half);
    return phase & 0x8000 ? -bow : bow;
}

static const char *start(void)
{
    for (unsigned s = 0; s < sizeof solids / sizeof *solids; ++s) {
        struct Solid *solid = &solids[s];
        for (int face = 0; face < solid->faceCount; ++face) {
            struct Corner *corner = &solid->corners[3 * face];
            for (int i = 0; i < 9; ++i)
                corner[i / 3].position[i % 3] = solid->points[solid->faces[face][i / 3]][i % 3];
            GLfixed u[3], v[3], cross[3];
            int64_t squared = 0;
            for (int i = 0; i < 3; ++i) {
                u[i] = corner[1].position[i] - corner[0].position[i];
                v[i] = corner[2].position[i] - corner[0].position[i];
            }
            for (int i = 0; i < 3; ++i) {
                const int j = (i + 1) % 3, k = (i + 2) % 3;
                cross[i] = multiply(u[j], v[k]) - multiply(u[k], v[j]);
                squared += (int64_t)cross[i] * cross[i];
            }
            for (int i = 0; i < 9; ++i)
                corner[i / 3].normal[i % 3] = (GLfixed)((int64_t)cross[i % 3] * FX(1) / squareRoot(squared));
        }
    }
    return NULL;
}

static void drawSolid(const struct Solid *solid)
{
    glVertexPointer(3, GL_FIXED, sizeof(struct Corner), solid->corners[0].position);
    glNormalPointer(GL_FIXED, sizeof(struct Corner), solid->corners[0].normal);
    glEnableClientState(GL_NORMAL_ARRAY);
    glDrawArrays(GL_TRIANGLES, 0, 3 * solid->faceCount);
    glDisableClientState(GL_NORMAL_ARRAY);
}

// A whole turn of wedges, in two colours by turns.
static void drawRound(const GLfixed (*points)[3], GLsizei count, const GLfixed *even, const GLfixed *odd)
{
    glVertexPointer(3, GL_FIXED, 0, points);
    glPushMatrix();
    for (int i = 0; i < WEDGES; ++i) {
        const GLfixed *colour = i % 2 ? odd : even;
        glColor4x(colour[0], colour[1], colour[2], colour[3]);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, count);
        glRotatex(FX(WEDGE_DEGREES), 0, FX(1), 0);
    }
    glPopMatrix();
}

static void drawSeat(int seat, int milliseconds)
{
    static const GLfixed kPole[][3] = {{0, FX(-0.02), 0}, {0, FX(1.62), 0}};
    const GLfixed *colour = kSeatColours[seat];
    glPushMatrix();
    glRotatex(FX(360 / SEATS) * seat, 0, FX(1), 0);
    glTranslatex(FX(1.45), 0, 0);

    glDisable(GL_LIGHTING);
    glLineWidthx(FX(3));
    glColor4x(FX(0.85), FX(0.72), FX(0.42), FX(1));
    glVertexPointer(3, GL_FIXED, 0, kPole);
    glDrawArrays(GL_LINES, 0, 2);
    glEnable(GL_LIGHTING);

    glTranslatex(0, FX(0.78) + multiply(FX(0.18), swing((GLfixed)(milliseconds % 4096 * 16 + seat * FX(0.375)))), 0);
    glRotatex((GLfixed)((int64_t)milliseconds * FX(0.05) % FX(360)), FX(0.3), FX(1), FX(0.2));
    glScalex(FX(0.42), FX(0.42), FX(0.42));
    glColor4x(colour[0], colour[1], colour[2], colour[3]);
    drawSolid(&solids[(unsigned)seat % (sizeof solids / sizeof *solids)]);
    glPopMatrix();
}

static void drawCarousel(int milliseconds)
{
    static const GLfixed kWood[] = {FX(0.62), FX(0.45), FX(0.30), FX(1)},
                         kPlank[] = {FX(0.50), FX(0.35), FX(0.23), FX(1)};
    static const GLfixed kRed[] = {FX(0.82), FX(0.18), FX(0.20), FX(1)},
                         kCream[] = {FX(0.98), FX(0.94), FX(0.84), FX(1)};
    static const GLfixed kGrass[] = {FX(0.36), FX(0.55), FX(0.34), FX(1)},
                         kMown[] = {FX(0.40), FX(0.60), FX(0.37), FX(1)};
    glNormal3x(0, FX(1), 0);
    glPushMatrix();
    glTranslatex(0, FX(-0.2), 0);
    glScalex(FX(9), FX(9), FX(9));
    drawRound(kFloor, 3, kGrass, kMown);
    glPopMatrix();

    glRotatex((GLfixed)((int64_t)milliseconds * FX(0.02) % FX(360)), 0, FX(1), 0);
    glPushMatrix();
    glScalex(FX(2), FX(2), FX(2));
    drawRound(kFloor, 3, kWood, kPlank);
    glNormal3x(FX(1), 0, 0);
    drawRound(kRim, 4, kPlank, kWood);
    glTranslatex(0, FX(0.81), 0);
    drawRound(kRim, 4, kCream, kRed);
    glNormal3x(FX(0.3872), FX(0.9220), 0);
    drawRound(kRoof, 3, kRed, kCream);
    glPopMatrix();
    for (int seat = 0; seat < SEATS; ++seat)
        drawSeat(seat, milliseconds);
}

static void draw(int milliseconds, int width, int height)
{
    static const GLfixed kSky[] = {FX(0.74), FX(0.84), FX(0.92), FX(1)}, kLamp[] = {FX(-2.5), FX(4), FX(2), FX(1)};
    static const GLfixed kWhite[] = {FX(1), FX(1), FX(0.94), FX(1)}, kShine[] = {FX(0.35), FX(0.35), FX(0.35), FX(1)};
    static const GLfixed kAmbient[] = {FX(0.38), FX(0.38), FX(0.42), FX(1)};
    const GLfixed halfHeight = FX(0.42), halfWidth = (GLfixed)((int64_t)halfHeight * width / height);
    glClearColorx(kSky[0], kSky[1], kSky[2], kSky[3]);
    glClearDepthx(FX(1));
    glDepthRangex(0, FX(1));
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glEnable(GL_COLOR_MATERIAL);
    glEnable(GL_RESCALE_NORMAL);
    glEnable(GL_FOG);
    glEnableClientState(GL_VERTEX_ARRAY);

    glFogx(GL_FOG_MODE, GL_LINEAR); // names are passed as they are
    glFogx(GL_FOG_START, FX(6));
    glFogx(GL_FOG_END, FX(15));
    glFogxv(GL_FOG_COLOR, kSky);
    glLightModelx(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glLightModelxv(GL_LIGHT_MODEL_AMBIENT, kAmbient);
    glMaterialxv(GL_FRONT_AND_BACK, GL_SPECULAR, kShine);
    glMaterialx(GL_FRONT_AND_BACK, GL_SHININESS, FX(16));

    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustumx(-halfWidth, halfWidth, -halfHeight, halfHeight, FX(1), FX(30));
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatex(0, FX(-0.85), FX(-6.4));
    glRotatex(FX(11), FX(1), 0, 0);
    glLightxv(GL_LIGHT0, GL_POSITION, kLamp);
    glLightxv(GL_LIGHT0, GL_DIFFUSE, kWhite);
    drawCarousel(milliseconds);
}

int main(int argc, char **argv)
{
    static const struct Demo demo = {
        .name = "fixed",
        .title = "A carousel in fixed point",
        .about = "Faceted solids, two-sided light and linear fog without one floating-point number.",
        .start = start,
        .draw = draw,
        .posterMilliseconds = 2300,
    };
    return runDemo(&demo, argc, argv);
}
