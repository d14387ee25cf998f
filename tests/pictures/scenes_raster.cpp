// SPDX-License-Identifier: MIT
// Fog, alpha test, clip plane, points, lines.
#include "pictures/scene.h"

#include <cmath>

namespace {

// Eye depth 2 in an orthographic view; the fog's distance.
void foggedRectangle(GLenum mode, float density, bool eyeCoordinates)
{
    const GLfloat fogColour[] = {0, 0, 1, 1};
    glMatrixMode(GL_PROJECTION);
    glOrthof(-1, 1, -1, 1, 0, 4);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0, 0, -2);
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, static_cast<GLfloat>(mode));
    glFogf(GL_FOG_DENSITY, density);
    glFogf(GL_FOG_START, 1);
    glFogf(GL_FOG_END, 5);
    glFogfv(GL_FOG_COLOR, fogColour);
    if (eyeCoordinates) {
        const GLfloat everything[] = {0, 0, 0, 1};
        glClipPlanef(GL_CLIP_PLANE0, everything);
        glEnable(GL_CLIP_PLANE0);
    }
    glColor4f(1, 0, 0, 1);
    drawRectangle(-1, -1, 1, 1);
}

void linearFog()
{
    foggedRectangle(GL_LINEAR, 1, false);
}
void exponentialFog()
{
    foggedRectangle(GL_EXP, 0.5f, false);
}
void squaredFog()
{
    foggedRectangle(GL_EXP2, 0.5f, false);
}
void linearFogWithClipPlane()
{
    foggedRectangle(GL_LINEAR, 1, true);
}
void fogOffAgain()
{
    linearFog();
    glDisable(GL_FOG);
    drawRectangle(-1, -1, 0, 1);
}

// Alpha runs from 0 at the left to 1 at the right.
void alphaTest(GLenum func, float ref)
{
    const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    const GLfloat colours[] = {1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1};
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(func, ref);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glColorPointer(4, GL_FLOAT, 0, colours);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void alphaNever()
{
    alphaTest(GL_NEVER, 0);
}
void alphaLess()
{
    alphaTest(GL_LESS, 0.5f);
}
void alphaLequal()
{
    alphaTest(GL_LEQUAL, 0.25f);
}
void alphaGreater()
{
    alphaTest(GL_GREATER, 0.75f);
}
void alphaGequal()
{
    alphaTest(GL_GEQUAL, 0.5f);
}
void alphaAlways()
{
    alphaTest(GL_ALWAYS, 0.5f);
}
void alphaEqualAndNotEqual()
{
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_EQUAL, 1);
    glColor4f(1, 0, 0, 1);
    drawRectangle(-1, -1, 0, 1);
    glAlphaFunc(GL_NOTEQUAL, 1);
    glColor4f(0, 1, 0, 1);
    drawRectangle(-1, -1, 0, 0);
    glColor4f(0, 0, 1, 0.5f);
    drawRectangle(0, -1, 1, 1);
}

void clipPlane(float a, float b, float d)
{
    const GLfloat plane[] = {a, b, 0, d};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    glEnable(GL_CLIP_PLANE0);
    glColor4f(1, 1, 0, 1);
    drawRectangle(-1, -1, 1, 1);
}

void clipRight()
{
    clipPlane(1, 0, 0);
}
void clipUpper()
{
    clipPlane(0, 1, 0.5f);
}
// A negative first coefficient: the library stores the plane turned, and the sign uniform turns the test.
void clipLeft()
{
    clipPlane(-1, 0, 0);
}
void clipLeftTwice()
{
    clipLeft();
    glColor4f(0, 0, 1, 1);
    drawRectangle(-1, -1, 1, 1);
}

void bigPoint(float size)
{
    const GLfloat position[] = {0, 0};
    glPointSize(size);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, position);
    glDrawArrays(GL_POINTS, 0, 1);
}

void squarePoint()
{
    bigPoint(32);
}

void smoothPoint()
{
    glEnable(GL_POINT_SMOOTH);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    bigPoint(32);
}

void pointSizeArray()
{
    static const GLfloat positions[] = {-0.5f, 0, 0.5f, 0};
    static const GLfloat sizes[] = {8, 40};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_POINT_SIZE_ARRAY_OES);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glPointSizePointerOES(GL_FLOAT, 0, sizes);
    glDrawArrays(GL_POINTS, 0, 2);
}

void attenuatedPoint()
{
    const GLfloat attenuation[] = {0, 0, 1};
    glMatrixMode(GL_PROJECTION);
    glOrthof(-1, 1, -1, 1, 0, 8);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0, 0, -4);
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, attenuation);
    bigPoint(64); // 64 / sqrt(4 * 4) = 16
}

void wideLine()
{
    const GLfloat positions[] = {-1, 0, 1, 0};
    glLineWidth(10);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_LINES, 0, 2);
}

void smoothLine()
{
    glEnable(GL_LINE_SMOOTH);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    wideLine();
}

} // namespace

std::vector<Scene> rasterScenes()
{
    const double linear = 0.75; // (5 - 2) / (5 - 1)
    const double exponential = std::exp(-0.5 * 2);
    const double squared = std::exp(-1.0);
    const auto fogged = [](const char *name, void (*draw)(), double factor) {
        return Scene{name, draw, {{64, 64, 255 * factor, 0, 255 * (1 - factor), 255, "fog factor times colour"}}};
    };
    const auto halves = [](const char *name, void (*draw)(), bool left, bool right) {
        const double l = left ? 255 : 0;
        const double r = right ? 255 : 0;
        return Scene{name,
                     draw,
                     {{8, 64, l, l, l, left ? 255 * 8.5 / 128 : 0, "alpha 0.07"},
                      {120, 64, r, r, r, right ? 255 * 120.5 / 128 : 0, "alpha 0.94"}}};
    };
    return {
        fogged("LinearFog", linearFog, linear),
        fogged("ExponentialFog", exponentialFog, exponential),
        fogged("SquaredFog", squaredFog, squared),
        fogged("LinearFogWithClipPlane", linearFogWithClipPlane, linear),
        {"FogOffAgain",
         fogOffAgain,
         {{32, 64, 255, 0, 0, 255, "no fog"}, {96, 64, 255 * linear, 0, 255 * (1 - linear), 255, "fog"}}},
        halves("AlphaNever", alphaNever, false, false),
        halves("AlphaLess", alphaLess, true, false),
        halves("AlphaLequal", alphaLequal, true, false),
        halves("AlphaGreater", alphaGreater, false, true),
        halves("AlphaGequal", alphaGequal, false, true),
        halves("AlphaAlways", alphaAlways, true, true),
        {"AlphaEqualAndNotEqual",
         alphaEqualAndNotEqual,
         {{32, 32, 255, 0, 0, 255, "equal kept, not equal dropped"}, {96, 64, 0, 0, 255, 127.5, "not equal kept"}}},
        {"ClipRight", clipRight, {{96, 64, 255, 255, 0, 255, "x above 0"}, {32, 64, 0, 0, 0, 0, "clipped"}}},
        {"ClipUpper", clipUpper, {{64, 40, 255, 255, 0, 255, "y above -0.5"}, {64, 24, 0, 0, 0, 0, "clipped"}}},
        {"ClipLeft", clipLeft, {{32, 64, 255, 255, 0, 255, "x below 0"}, {96, 64, 0, 0, 0, 0, "clipped"}}},
        {"ClipLeftTwice",
         clipLeftTwice,
         {{32, 64, 255, 255, 0, 255, "the first draw clips right"}, {96, 64, 0, 0, 255, 255, "the second clips left"}},
         {.instead = "the stored plane stays turned after the first draw, see docs/behaviour.md"}},
        {"SquarePoint", squarePoint, {{50, 50, 255, 255, 255, 255, "inside 32 x 32"}, {46, 64, 0, 0, 0, 0, "outside"}}},
        {"SmoothPoint",
         smoothPoint,
         {{64, 64, 255, 255, 255, 255, "the middle is covered"}, {50, 50, 0, 0, 0, 0, "the corner is not"}},
         {.instead = "the machine's own smooth points have another ring of coverage"}},
        {"PointSizeArray",
         pointSizeArray,
         {{32, 64, 255, 255, 255, 255, "8 wide"},
          {24, 64, 0, 0, 0, 0, "no wider"},
          {80, 64, 255, 255, 255, 255, "40 wide"}}},
        {"AttenuatedPoint",
         attenuatedPoint,
         {{58, 64, 255, 255, 255, 255, "16 wide"}, {54, 64, 0, 0, 0, 0, "no wider"}}},
        {"WideLine", wideLine, {{64, 61, 255, 255, 255, 255, "10 wide"}, {64, 57, 0, 0, 0, 0, "no wider"}}},
        {"SmoothLine",
         smoothLine,
         {{64, 64, 255, 255, 255, 255, "the middle"}},
         {.instead = "the machine's own smooth lines have another falloff"}},
    };
}
