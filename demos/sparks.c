// SPDX-License-Identifier: MIT
// Three fountains of sparks over wet ground: point sprites with a size array, added up by blending. Every spark's place
// follows from the time alone.
#include "basics.h"
#include "frame.h"

#include <math.h>
#include <stddef.h>

enum { JETS = 3, SPARKS = 560, TRAIL = 14, STARS = 260, MAX_POINTS = JETS * SPARKS * TRAIL + STARS };

struct Point {
    GLfloat position[3];
    GLfloat sizePixels;
    GLubyte colour[4];
};

static const struct {
    GLfloat x, z;
    GLfloat lean;               // mean speed to the right
    GLfloat colour[3], pool[3]; // of the sparks, of the lit ground
} kJets[JETS] = {{-2.6f, -0.8f, 0.35f, {0.10f, 0.50f, 1.0f}, {0.02f, 0.12f, 0.26f}},
                 {0.0f, 0.0f, 0.0f, {1.0f, 0.50f, 0.10f}, {0.30f, 0.14f, 0.03f}},
                 {2.6f, -0.8f, -0.35f, {0.95f, 0.12f, 0.55f}, {0.24f, 0.04f, 0.15f}}};

static const GLfloat kAngleDegrees = 36.0f, kDistance = 8.6f, kEyeHeight = 1.7f, kGravity = 5.5f;
static GLuint disc;

static void discColour(GLfloat x, GLfloat y, GLfloat *rgba)
{
    const GLfloat rim = 1.0f - 2.0f * hypotf(x - 0.5f, y - 0.5f);
    rgba[3] = rim > 0.0f ? 0.75f * powf(rim, 1.6f) + smoothStep(0.45f, 0.8f, rim) : 0.0f;
}

static const char *start(void)
{
    disc = makeTexture(GL_ALPHA, 64, discColour);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return NULL;
}

// Where a spark is `age` seconds after it left the jet: a throw, and a lower one after each time it hits the ground.
static void fly(const GLfloat *velocity, GLfloat age, GLfloat *position)
{
    GLfloat up = velocity[1], forward = 1.0f, before = 0.0f, left = age;
    for (GLfloat whole = 2.0f * up / kGravity; left > whole && up > 0.05f; whole = 2.0f * up / kGravity) {
        left -= whole;
        before += forward * whole;
        up *= 0.42f;
        forward *= 0.6f;
    }
    const GLfloat travelled = before + forward * left;
    position[0] = velocity[0] * travelled;
    position[1] = fmaxf(up * left - 0.5f * kGravity * left * left, 0.0f);
    position[2] = velocity[2] * travelled;
}

static void setPoint(struct Point *point, GLfloat diameter, const GLfloat *colour, GLfloat brightness, int height)
{
    // The native driver draws no size array under distance attenuation, so the perspective is worked out here.
    const GLfloat depth = kDistance - point->position[2];
    point->sizePixels = diameter * (GLfloat)height / (2.0f * depth * tanf(kAngleDegrees * PI / 360.0f));
    for (int i = 0; i < 3; ++i)
        point->colour[i] = (GLubyte)(fminf(colour[i], 1.0f) * 255.0f + 0.5f);
    point->colour[3] = (GLubyte)(fminf(brightness, 1.0f) * 255.0f + 0.5f);
}

// One spark and its trail. Each life has another direction. Returns the end of the points.
static struct Point *addSpark(struct Point *end, int jet, int spark, GLfloat seconds, int height)
{
    const unsigned name = (unsigned)(jet * SPARKS + spark);
    const GLfloat life = 2.0f + 1.2f * chance(4 * name), shifted = seconds + life * chance(4 * name + 1) + life;
    const GLfloat age = fmodf(shifted, life);
    const unsigned seed = 0x10000u * (unsigned)(shifted / life) + 4 * name;
    const GLfloat heading = 2.0f * PI * chance(seed + 2), aside = 0.08f + 0.82f * sqrtf(chance(seed + 3));
    const GLfloat pulse = 0.9f + 0.1f * sinf(2.0f * (seconds - age) + (GLfloat)jet);
    const GLfloat velocity[] = {kJets[jet].lean + aside * cosf(heading),
                                pulse * (jet == 1 ? 6.5f : 5.6f) * (0.66f + 0.34f * chance(seed)),
                                aside * sinf(heading)};
    for (int i = 0; i < TRAIL; ++i) {
        const GLfloat then = age - 0.008f * (GLfloat)i, heat = 1.0f - then / life;
        if (then < 0.0f) break;
        const GLfloat white = 0.85f * smoothStep(0.6f, 1.0f, heat), dim = 1.0f - (GLfloat)i / TRAIL;
        GLfloat colour[3];
        for (int k = 0; k < 3; ++k)
            colour[k] = kJets[jet].colour[k] + (1.0f - kJets[jet].colour[k]) * white;
        fly(velocity, then, end->position);
        end->position[0] += kJets[jet].x;
        end->position[2] += kJets[jet].z;
        setPoint(end, 0.085f * (0.4f + 0.6f * heat) * (0.35f + 0.65f * dim), colour,
                 smoothStep(0.0f, 0.4f, heat) * dim * dim * 0.55f, height);
        ++end;
    }
    return end;
}

static struct Point *addStar(struct Point *end, unsigned seed, GLfloat seconds, int height)
{
    static const GLfloat kStarlight[] = {0.8f, 0.88f, 1.0f};
    const GLfloat twinkle = 0.65f + 0.35f * sinf(3.0f * seconds + 40.0f * chance(seed));
    end->position[0] = 70.0f * chance(seed + 1) - 35.0f;
    end->position[1] = 2.0f + 18.0f * chance(seed + 2);
    end->position[2] = -25.0f;
    setPoint(end, 0.10f + 0.22f * chance(seed + 3), kStarlight, 0.75f * twinkle * chance(seed + 4) + 0.1f, height);
    return end + 1;
}

// A disc on the ground that grows dark towards its rim; coloured triangles without a texture.
static void drawPool(const GLfloat *middle, const GLfloat *colour, GLfloat radius, GLfloat alpha)
{
    enum { CORNERS = 48 };
    GLfloat corners[CORNERS + 2][3], colours[CORNERS + 2][4];
    for (int i = 0; i < CORNERS + 2; ++i) {
        const GLfloat angle = (GLfloat)i * 2.0f * PI / CORNERS, out = i ? radius : 0.0f;
        corners[i][0] = middle[0] + out * cosf(angle);
        corners[i][1] = 0.0f;
        corners[i][2] = middle[1] + out * sinf(angle);
        for (int k = 0; k < 3; ++k)
            colours[i][k] = i ? 0.0f : colour[k];
        colours[i][3] = i ? 1.0f : alpha;
    }
    glVertexPointer(3, GL_FLOAT, 0, corners);
    glColorPointer(4, GL_FLOAT, 0, colours);
    glDrawArrays(GL_TRIANGLE_FAN, 0, CORNERS + 2);
}

// Sprite state is on here only: the native driver lets it spoil triangles.
static void drawPoints(const struct Point *points, GLsizei count)
{
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_POINT_SPRITE_OES);
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, GL_TRUE);
    glEnableClientState(GL_POINT_SIZE_ARRAY_OES);
    glVertexPointer(3, GL_FLOAT, sizeof *points, points->position);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof *points, points->colour);
    glPointSizePointerOES(GL_FLOAT, sizeof *points, &points->sizePixels);
    glDrawArrays(GL_POINTS, 0, count);
    glDisableClientState(GL_POINT_SIZE_ARRAY_OES);
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, GL_FALSE);
    glDisable(GL_POINT_SPRITE_OES);
    glDisable(GL_TEXTURE_2D);
}

static void draw(int milliseconds, int width, int height)
{
    static struct Point points[MAX_POINTS];
    static const GLfloat kNight[] = {0.030f, 0.040f, 0.085f}, kGround[] = {0.05f, 0.05f, 0.09f};
    const GLfloat seconds = (GLfloat)milliseconds * 0.001f, origin[] = {0.0f, 0.0f};
    struct Point *end = points;
    for (int i = 0; i < JETS * SPARKS; ++i)
        end = addSpark(end, i / SPARKS, i % SPARKS, seconds, height);
    for (unsigned i = 0; i < STARS; ++i)
        end = addStar(end, 100000 + 5 * i, seconds, height);

    glClearColor(kNight[0], kNight[1], kNight[2], 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_BLEND);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    lookAhead(kAngleDegrees, width, height, 0.5f, 60.0f);
    glRotatef(-1.5f, 1.0f, 0.0f, 0.0f);
    glTranslatef(0.0f, -kEyeHeight, -kDistance);

    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glPushMatrix();
    glScalef(1.0f, -1.0f, 1.0f);
    drawPoints(points, (GLsizei)(end - points));
    glPopMatrix();
    glBlendFunc(GL_ONE, GL_SRC_ALPHA); // the ground leaves a part of what it mirrors
    drawPool(origin, kGround, 30.0f, 0.4f);
    glBlendFunc(GL_ONE, GL_ONE);
    for (int i = 0; i < JETS; ++i)
        drawPool(&kJets[i].x, kJets[i].pool, 2.4f, 1.0f);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    drawPoints(points, (GLsizei)(end - points));
}

int main(int argc, char **argv)
{
    static const struct Demo demo = {
        .name = "sparks",
        .title = "Fountains of sparks",
        .about =
            "Thousands of point sprites with sizes from an array, added up by blending over ground that mirrors them.",
        .start = start,
        .draw = draw,
        .posterMilliseconds = 4000,
    };
    return runDemo(&demo, argc, argv);
}
