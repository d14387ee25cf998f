// SPDX-License-Identifier: MIT
// The alpha test in all eight functions and the user clip plane from both sides.
#include "pictures/textures.h"

#include <cmath>

namespace {

bool passes(GLenum function, double alpha, double reference)
{
    switch (function) {
    case GL_NEVER:
        return false;
    case GL_LESS:
        return alpha < reference;
    case GL_EQUAL:
        return alpha == reference;
    case GL_LEQUAL:
        return alpha <= reference;
    case GL_GREATER:
        return alpha > reference;
    case GL_NOTEQUAL:
        return alpha != reference;
    case GL_GEQUAL:
        return alpha >= reference;
    default:
        return true;
    }
}

// Every function below, at and above its reference; the values are exact in binary.
std::vector<Cell> alphaFunctionCells()
{
    std::vector<Cell> cells;
    for (GLenum function = GL_NEVER; function <= GL_ALWAYS; ++function) {
        for (const double alpha : {0.25, 0.5, 0.75}) {
            const Colour colour = {1, 0.5, 0, alpha};
            cells.push_back(filledCell(
                "alpha below, at and above the reference",
                [=] {
                    glEnable(GL_ALPHA_TEST);
                    glAlphaFunc(function, 0.5f);
                    glColor4f(1, 0.5f, 0, static_cast<GLfloat>(alpha));
                },
                passes(function, alpha, 0.5) ? colour : kEmpty));
        }
    }
    return cells;
}

std::vector<Cell> alphaReferenceCells()
{
    std::vector<Cell> cells;
    const auto cell = [&](std::string why, std::function<void()> set, double alpha, bool kept) {
        cells.push_back(filledCell(
            std::move(why),
            [=] {
                set();
                glColor4f(0, 1, 0, static_cast<GLfloat>(alpha));
            },
            kept ? Colour{0, 1, 0, alpha} : kEmpty));
    };
    cell(
        "fixed reference, passed", [] { glEnable(GL_ALPHA_TEST), glAlphaFuncx(GL_GREATER, 0x4000); }, 0.5, true);
    cell(
        "fixed reference, failed", [] { glAlphaFuncx(GL_GREATER, 0xC000); }, 0.5, false);
    cell(
        "a reference above 1 is 1", [] { glAlphaFunc(GL_GEQUAL, 7); }, 1, true);
    cell(
        "a reference below 0 is 0", [] { glAlphaFunc(GL_LEQUAL, -7); }, 0, true);
    cell(
        "another reference, the same function", [] { glAlphaFunc(GL_LEQUAL, 0.75f); }, 0.5, true);
    cell(
        "another function, the same reference", [] { glAlphaFunc(GL_GREATER, 0.75f); }, 0.5, false);
    cell(
        "disabled", [] { glDisable(GL_ALPHA_TEST); }, 0.5, true);
    cell(
        "enabled again with what was set", [] { glEnable(GL_ALPHA_TEST); }, 0.5, false);
    return cells;
}

// The alpha that is tested is the texture environment's.
void alphaOfTexture()
{
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0.3f);
    glColor4f(1, 1, 1, 0.5f);
    plainTexture(GL_RGBA, Colour{1, 0, 0, 0.8});
    drawRectangle(-1, -1, 0, 1);
    plainTexture(GL_ALPHA, Colour{0, 0, 0, 0.4});
    drawRectangle(0, -1, 1, 1);
}

// Alpha runs from 0 at the left to 1 at the right.
void alphaRamp()
{
    const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    const GLfloat colours[] = {1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1};
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GEQUAL, 0.5f);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glColorPointer(4, GL_FLOAT, 0, colours);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void setPlane(float a, float b, float c, float d)
{
    const GLfloat plane[] = {a, b, c, d};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    glEnable(GL_CLIP_PLANE0);
}

void fill(float r, float g, float b)
{
    glColor4f(r, g, b, 1);
    drawRectangle(-1, -1, 1, 1);
}

void clipRight()
{
    setPlane(1, 0, 0, 0);
    fill(1, 1, 0);
}

void clipLower()
{
    setPlane(0, -1, 0, 0.5f);
    fill(1, 1, 0);
}

void clipSlanted()
{
    setPlane(1, 1, 0, -0.5f);
    fill(1, 1, 0);
}

// A negative first coefficient: the library stores the plane turned, and the sign uniform turns the test.
void clipLeft()
{
    setPlane(-1, 0, 0, 0);
    fill(1, 1, 0);
}

void clipLeftGivenForEveryDraw()
{
    clipLeft();
    setPlane(-1, 0, 0, 0.5f);
    fill(0, 1, 1);
}

void clipLeftTwice()
{
    clipLeft();
    fill(0, 0, 1);
}

// The plane moves with the modelview of the time when it is given, not with later ones.
void clipMovedWithModelview()
{
    glTranslatef(0.5f, 0, 0);
    setPlane(1, 0, 0, 0);
    glLoadIdentity();
    fill(1, 0, 1);
}

void clipFixed()
{
    const GLfixed plane[] = {0, 0x10000, 0, 0x8000};
    glClipPlanex(GL_CLIP_PLANE0, plane);
    glEnable(GL_CLIP_PLANE0);
    fill(1, 1, 1);
}

void clipByDepth()
{
    setPlane(0, 0, 1, 0);
    glColor4f(1, 0, 0, 1);
    drawRectangle(-1, -1, 0, 1, 0.5f);
    glColor4f(0, 1, 0, 1);
    drawRectangle(0, -1, 1, 1, -0.5f);
}

void clipInPerspective()
{
    glMatrixMode(GL_PROJECTION);
    glFrustumf(-1, 1, -1, 1, 1, 10);
    glMatrixMode(GL_MODELVIEW);
    setPlane(1, 0, 0, 1); // x above -1 in eye coordinates: -0.5 of the picture at twice the near distance
    glTranslatef(0, 0, -2);
    glScalef(2, 2, 1);
    fill(0, 1, 0);
}

void clipLitAndTextured()
{
    plainTexture(GL_RGB, Colour{1, 0.5, 0, 1});
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setPlane(1, 0, 0, 0);
    glNormal3f(0, 0, 1);
    fill(0, 0, 0);
}

void clipOnAndOff()
{
    setPlane(1, 0, 0, 0);
    fill(1, 0, 0);
    glDisable(GL_CLIP_PLANE0);
    glColor4f(0, 0, 1, 1);
    drawRectangle(-1, -1, 1, 0);
    glEnable(GL_CLIP_PLANE0);
    glColor4f(0, 1, 0, 1);
    drawRectangle(-1, -1, 1, -0.5f);
}

} // namespace

std::vector<Scene> alphaAndClipScenes()
{
    const Colour yellow = {1, 1, 0, 1};
    const auto cut = [](const char *name, void (*draw)(), Probe kept, Probe clipped) {
        return Scene{name, draw, {kept, clipped}};
    };
    const auto clipped = [](int x, int y) { return probeOf(x, y, kEmpty, "clipped"); };
    const double lit = 0.84; // 0.2 * 0.2 + 0.8
    return {
        boardScene("AlphaFunctions", alphaFunctionCells()),
        boardScene("AlphaReferences", alphaReferenceCells()),
        {"AlphaOfTexture",
         alphaOfTexture,
         {probeOf(32, 64, {1, 0, 0, 0.4}, "0.8 * 0.5 is kept"), probeOf(96, 64, kEmpty, "0.4 * 0.5 is not")}},
        {"AlphaRamp",
         alphaRamp,
         {probeOf(70, 64, {1, 1, 1, 70.5 / 128}, "above one half"), probeOf(58, 64, kEmpty, "below one half")}},
        cut("ClipRight", clipRight, probeOf(66, 64, yellow, "x above 0"), clipped(61, 64)),
        cut("ClipLower", clipLower, probeOf(64, 93, yellow, "y below 0.5"), clipped(64, 98)),
        cut("ClipSlanted", clipSlanted, probeOf(84, 84, yellow, "x + y above 0.5"), clipped(76, 76)),
        cut("ClipLeft", clipLeft, probeOf(61, 64, yellow, "x below 0"), clipped(66, 64)),
        {"ClipLeftGivenForEveryDraw",
         clipLeftGivenForEveryDraw,
         {probeOf(80, 64, {0, 1, 1, 1}, "x below 0.5"), clipped(100, 64)}},
        {"ClipLeftTwice",
         clipLeftTwice,
         {probeOf(32, 64, yellow, "the first draw clips right"),
          probeOf(96, 64, {0, 0, 1, 1}, "the second clips left")},
         {.instead = "the stored plane stays turned after the first draw, see docs/behaviour.md"}},
        cut("ClipMovedWithModelview", clipMovedWithModelview, probeOf(98, 64, {1, 0, 1, 1}, "x above 0.5"),
            clipped(93, 64)),
        cut("ClipFixed", clipFixed, probeOf(64, 34, {1, 1, 1, 1}, "y above -0.5"), clipped(64, 29)),
        cut("ClipByDepth", clipByDepth, probeOf(32, 64, {1, 0, 0, 1}, "z above 0"), clipped(96, 64)),
        cut("ClipInPerspective", clipInPerspective, probeOf(34, 64, {0, 1, 0, 1}, "right of -0.5"), clipped(29, 64)),
        {"ClipLitAndTextured",
         clipLitAndTextured,
         {probeOf(96, 64, {lit, lit / 2, 0, 1}, "lit texture"), clipped(32, 64)},
         {.tolerance = 3}},
        {"ClipOnAndOff",
         clipOnAndOff,
         {probeOf(96, 96, {1, 0, 0, 1}, "the first"), clipped(32, 96), probeOf(32, 48, {0, 0, 1, 1}, "no plane"),
          probeOf(32, 16, {0, 0, 1, 1}, "the plane again"), probeOf(96, 16, {0, 1, 0, 1}, "the last")}},
    };
}
