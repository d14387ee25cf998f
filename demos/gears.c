// SPDX-License-Identifier: MIT
// A gear train: matrices, one positional light, flat and smooth shading, arrays in buffer objects and in client memory.
#include "frame.h"

#include <math.h>
#include <stddef.h>

#define PI 3.14159265f

enum { GEARS = 5, STATIONS = 4, MAX_VERTICES = 14000 };

struct Vertex {
    GLfloat position[3];
    GLfloat normal[3];
    GLubyte colour[4];
};

struct Gear {
    int teeth;
    int driver;               // index of the gear that turns this one, -1: the motor
    int onSameAxle;           // 1: in front of its driver on one axle, 0: their teeth mesh
    GLfloat directionDegrees; // where this gear lies, seen from its driver
    int inBuffer;             // 1: vertices in a buffer object, 0: in client memory
    GLubyte colour[4];
    // Worked out at the start:
    GLfloat x, y, z;                // centre
    GLuint buffer;                  // 0: client memory
    GLsizei smoothCount, flatCount; // the smooth part's vertices lie first
};

static struct Gear gears[GEARS] = {
    {.teeth = 36, .driver = -1, .inBuffer = 1, .colour = {214, 52, 38, 255}, .x = -2.0f, .y = -0.25f},
    {.teeth = 14, .driver = 0, .directionDegrees = 55.0f, .colour = {236, 176, 48, 255}},
    {.teeth = 24, .driver = 1, .directionDegrees = -25.0f, .inBuffer = 1, .colour = {64, 124, 210, 255}},
    {.teeth = 12, .driver = 2, .onSameAxle = 1, .colour = {200, 204, 214, 255}},
    {.teeth = 28, .driver = 3, .directionDegrees = -70.0f, .inBuffer = 1, .colour = {48, 166, 96, 255}},
};

// Gears mesh when they share the module: the pitch diameter of one tooth.
static const GLfloat kModule = 0.1f, kHalfThickness = 0.22f, kBevel = 0.03f, kHalfShaft = 0.36f;

static struct Vertex vertices[GEARS][MAX_VERTICES];

static GLfloat pitchRadius(const struct Gear *gear)
{
    return 0.5f * kModule * (GLfloat)gear->teeth;
}

static struct Vertex polar(GLfloat radius, GLfloat angle, GLfloat z)
{
    return (struct Vertex){.position = {radius * cosf(angle), radius * sinf(angle), z}};
}

// The four corners run counter-clockwise seen from outside; all get the normal of the plane through them.
static void addQuad(struct Vertex **end, const GLubyte *colour, struct Vertex a, struct Vertex b, struct Vertex c,
                    struct Vertex d)
{
    GLfloat u[3], v[3], normal[3], squared = 0.0f;
    for (int i = 0; i < 3; ++i) {
        u[i] = c.position[i] - a.position[i];
        v[i] = d.position[i] - b.position[i];
    }
    for (int i = 0; i < 3; ++i) {
        normal[i] = u[(i + 1) % 3] * v[(i + 2) % 3] - u[(i + 2) % 3] * v[(i + 1) % 3];
        squared += normal[i] * normal[i];
    }
    const struct Vertex corners[6] = {a, b, c, a, c, d};
    for (int i = 0; i < 6; ++i, ++*end) {
        **end = corners[i];
        for (int k = 0; k < 3; ++k)
            (*end)->normal[k] = normal[k] / sqrtf(squared);
        for (int k = 0; k < 4; ++k)
            (*end)->colour[k] = colour[k];
    }
}

// Everything inside the tooth roots, a body of revolution: the shaft, the hub, a thin web, the rim.
static void addBody(struct Vertex **end, const struct Gear *gear, GLfloat root)
{
    static const GLubyte kSteel[] = {170, 174, 184, 255};
    // Beside the tooth's foot and in the middle of tooth and gap, so that the outline meets the teeth.
    static const GLfloat kStations[STATIONS + 1] = {-0.30f, 0.0f, 0.30f, 0.5f, 0.70f};
    const GLfloat bore = 0.15f + 0.15f * pitchRadius(gear), hub = bore + 0.16f, rim = root - 0.15f;
    const GLfloat full = kHalfThickness, web = 0.45f * kHalfThickness, pitch = 2.0f * PI / (GLfloat)gear->teeth;
    const GLfloat profile[][2] = {{0.0f, kHalfShaft}, {bore, kHalfShaft}, {bore, full}, {hub, full},
                                  {hub, web},         {rim, web},         {rim, full},  {root, full}};
    for (int i = 0; i < 7 * STATIONS * gear->teeth; ++i) {
        const int band = i / (STATIONS * gear->teeth), station = i % STATIONS;
        const GLfloat *in = profile[band], *out = profile[band + 1], middle = pitch * (GLfloat)(i / STATIONS);
        const GLfloat from = middle + pitch * kStations[station], to = middle + pitch * kStations[station + 1];
        const GLubyte *colour = band < 2 ? kSteel : gear->colour;
        struct Vertex *quad = *end;
        addQuad(end, colour, polar(in[0], from, in[1]), polar(out[0], from, out[1]), polar(out[0], to, out[1]),
                polar(in[0], to, in[1]));
        addQuad(end, colour, polar(in[0], to, -in[1]), polar(out[0], to, -out[1]), polar(out[0], from, -out[1]),
                polar(in[0], from, -in[1]));
        if (in[0] != out[0]) continue; // a ring is flat as it is; a cylinder's normals turn with its surface
        const GLfloat facing = quad->normal[0] * quad->position[0] + quad->normal[1] * quad->position[1];
        for (; quad != *end; ++quad)
            for (int k = 0; k < 2; ++k)
                quad->normal[k] = copysignf(1.0f, facing) * quad->position[k] / in[0];
    }
}

static void addTeeth(struct Vertex **end, const struct Gear *gear, GLfloat root, GLfloat tip)
{
    const GLfloat pitch = 2.0f * PI / (GLfloat)gear->teeth, z = kHalfThickness, zTip = z - kBevel, low = tip - kBevel;
    const GLubyte *colour = gear->colour;
    for (int i = 0; i < gear->teeth; ++i) {
        const GLfloat middle = pitch * (GLfloat)i, a0 = middle - 0.30f * pitch, a1 = middle - 0.12f * pitch;
        const GLfloat a2 = middle + 0.12f * pitch, a3 = middle + 0.30f * pitch;
        const GLfloat gap = middle + 0.5f * pitch, next = middle + 0.70f * pitch;
        const struct Vertex foot = polar(root, a0, z), footBack = polar(root, a0, -z);
        const struct Vertex crest = polar(tip, a1, zTip), crestBack = polar(tip, a1, -zTip);
        const struct Vertex endCrest = polar(tip, a2, zTip), endCrestBack = polar(tip, a2, -zTip);
        const struct Vertex endFoot = polar(root, a3, z), endFootBack = polar(root, a3, -z);
        // The front and the back with their bevels, both flanks and the crest, the floor of the gap behind.
        addQuad(end, colour, foot, polar(low, a1, z), polar(low, a2, z), endFoot);
        addQuad(end, colour, endFootBack, polar(low, a2, -z), polar(low, a1, -z), footBack);
        addQuad(end, colour, polar(low, a1, z), crest, endCrest, polar(low, a2, z));
        addQuad(end, colour, polar(low, a2, -z), endCrestBack, crestBack, polar(low, a1, -z));
        addQuad(end, colour, foot, footBack, crestBack, crest);
        addQuad(end, colour, endCrest, endCrestBack, endFootBack, endFoot);
        addQuad(end, colour, crest, crestBack, endCrestBack, endCrest);
        addQuad(end, colour, endFoot, endFootBack, polar(root, gap, -z), polar(root, gap, z));
        addQuad(end, colour, polar(root, gap, z), polar(root, gap, -z), polar(root, next, -z), polar(root, next, z));
    }
}

static const char *start(void)
{
    for (int i = 0; i < GEARS; ++i) {
        struct Gear *gear = &gears[i];
        const GLfloat root = pitchRadius(gear) - 1.1f * kModule, tip = pitchRadius(gear) + 0.9f * kModule;
        struct Vertex *begin = vertices[i], *end = begin;
        addBody(&end, gear, root);
        gear->smoothCount = (GLsizei)(end - begin);
        addTeeth(&end, gear, root, tip);
        gear->flatCount = (GLsizei)(end - begin) - gear->smoothCount;
        if (gear->driver >= 0) {
            const struct Gear *driver = &gears[gear->driver];
            const GLfloat distance = gear->onSameAxle ? 0.0f : pitchRadius(gear) + pitchRadius(driver);
            gear->x = driver->x + distance * cosf(gear->directionDegrees * PI / 180.0f);
            gear->y = driver->y + distance * sinf(gear->directionDegrees * PI / 180.0f);
            gear->z = driver->z + (gear->onSameAxle ? 2.3f * kHalfThickness : 0.0f);
        }
        if (!gear->inBuffer) continue;
        glGenBuffers(1, &gear->buffer);
        glBindBuffer(GL_ARRAY_BUFFER, gear->buffer);
        glBufferData(GL_ARRAY_BUFFER, (end - begin) * (GLsizeiptr)sizeof *begin, begin, GL_STATIC_DRAW);
    }
    glClearColor(0.13f, 0.16f, 0.21f, 1.0f);
    return NULL;
}

// Where a tooth of the driver points at this gear, a gap of this gear points back.
static GLfloat angleDegrees(const struct Gear *gear, GLfloat motorDegrees)
{
    if (gear->driver < 0) return motorDegrees;
    const struct Gear *driver = &gears[gear->driver];
    const GLfloat driverDegrees = angleDegrees(driver, motorDegrees);
    if (gear->onSameAxle) return driverDegrees;
    const GLfloat teethPast = (gear->directionDegrees - driverDegrees) * (GLfloat)driver->teeth / 360.0f;
    return gear->directionDegrees + 180.0f - (0.5f - teethPast) * 360.0f / (GLfloat)gear->teeth;
}

static void drawGear(const struct Gear *gear, const struct Vertex *array, GLfloat motorDegrees)
{
    const char *base = gear->buffer ? NULL : (const char *)array;
    glBindBuffer(GL_ARRAY_BUFFER, gear->buffer);
    glVertexPointer(3, GL_FLOAT, sizeof *array, base + offsetof(struct Vertex, position));
    glNormalPointer(GL_FLOAT, sizeof *array, base + offsetof(struct Vertex, normal));
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof *array, base + offsetof(struct Vertex, colour));
    glPushMatrix();
    glTranslatef(gear->x, gear->y, gear->z);
    glRotatef(angleDegrees(gear, motorDegrees), 0.0f, 0.0f, 1.0f);
    glShadeModel(GL_SMOOTH);
    glDrawArrays(GL_TRIANGLES, 0, gear->smoothCount);
    glShadeModel(GL_FLAT);
    glDrawArrays(GL_TRIANGLES, gear->smoothCount, gear->flatCount);
    glPopMatrix();
}

static void draw(int milliseconds, int width, int height)
{
    static const GLfloat kPosition[] = {-3.0f, 5.0f, -8.0f, 1.0f}, kSpecular[] = {0.6f, 0.6f, 0.6f, 1.0f};
    const GLfloat halfHeight = 0.80f, halfWidth = halfHeight * (GLfloat)width / (GLfloat)height;
    static const GLenum kEnabled[] = {GL_DEPTH_TEST, GL_CULL_FACE, GL_LIGHTING, GL_LIGHT0, GL_COLOR_MATERIAL};
    for (size_t i = 0; i < sizeof kEnabled / sizeof *kEnabled; ++i)
        glEnable(kEnabled[i]);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustumf(-halfWidth, halfWidth, -halfHeight, halfHeight, 5.0f, 40.0f);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glLightfv(GL_LIGHT0, GL_POSITION, kPosition);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, kSpecular);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 20.0f);
    glTranslatef(0.35f, 0.0f, -18.5f);
    glRotatef(-28.0f, 1.0f, 0.0f, 0.0f);
    glRotatef(24.0f, 0.0f, 1.0f, 0.0f);
    for (int i = 0; i < GEARS; ++i)
        drawGear(&gears[i], vertices[i], 0.03f * (GLfloat)milliseconds);
}

int main(int argc, char **argv)
{
    static const struct Demo demo = {
        .name = "gears",
        .title = "Gears",
        .about = "A gear train with flat and smooth shading under one positional light, from buffer objects and from "
                 "client memory.",
        .start = start,
        .draw = draw,
        .posterMilliseconds = 1500,
    };
    return runDemo(&demo, argc, argv);
}
