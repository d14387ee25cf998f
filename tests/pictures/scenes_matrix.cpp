// SPDX-License-Identifier: MIT
// Matrix stacks, classes of transformation and the forms of the modelview-projection product.
#include "pictures/scene.h"

namespace {

void square(float half)
{
    drawRectangle(-half, -half, half, half);
}

void identityMatrices()
{
    glColor4f(1, 0, 0, 1);
    square(0.5f);
}

void scaleAndTranslate()
{
    glTranslatef(0.5f, 0.5f, 0);
    glScalef(0.25f, 0.5f, 1);
    glColor4f(0, 1, 0, 1);
    square(1);
}

void rotated()
{
    glRotatef(45, 0, 0, 1);
    glColor4f(0, 0, 1, 1);
    square(0.5f);
}

void rotatedFixed()
{
    glRotatex(45 << 16, 0, 0, 0x10000);
    glScalex(0x8000, 0x8000, 0x10000);
    glTranslatex(0x8000, 0, 0);
    glColor4f(0, 0, 1, 1);
    square(0.5f);
}

// Only the first row differs from the identity: the shader computes one row.
void firstRowOnly()
{
    const GLfloat shear[] = {1, 0, 0, 0, 0.5f, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    glLoadMatrixf(shear);
    glColor4f(1, 1, 0, 1);
    square(0.5f);
}

void firstTwoRows()
{
    const GLfloat shear[] = {1, 0.25f, 0, 0, 0.5f, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    glLoadMatrixf(shear);
    glColor4f(1, 0, 1, 1);
    square(0.5f);
}

void perspective()
{
    glMatrixMode(GL_PROJECTION);
    glFrustumf(-1, 1, -1, 1, 1, 10);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0, 0, -2);
    glRotatef(40, 1, 0.5f, 0);
    glColor4f(0, 1, 1, 1);
    square(1);
}

void perspectiveFixed()
{
    glMatrixMode(GL_PROJECTION);
    glFrustumx(-0x10000, 0x10000, -0x10000, 0x10000, 0x10000, 10 << 16);
    glMatrixMode(GL_MODELVIEW);
    glTranslatex(0, 0, -2 * 0x10000);
    glColor4f(0, 1, 1, 1);
    square(1);
}

void pushAndPop()
{
    unitSquareProjection();
    glPushMatrix();
    glTranslatef(0.5f, 0, 0);
    glColor4f(1, 0, 0, 1);
    drawRectangle(0, 0, 0.5f, 0.5f);
    glPopMatrix();
    glColor4f(0, 1, 0, 1);
    drawRectangle(0, 0.5f, 0.5f, 1);
}

void multipliedMatrices()
{
    const GLfixed half[] = {0x8000, 0, 0, 0, 0, 0x8000, 0, 0, 0, 0, 0x10000, 0, 0, 0, 0, 0x10000};
    const GLfloat right[] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 1};
    glLoadMatrixx(half);
    glMultMatrixf(right);
    glMultMatrixx(half);
    glColor4f(1, 1, 1, 1);
    square(1);
}

void orthographic()
{
    glMatrixMode(GL_PROJECTION);
    glOrthof(0, 128, 128, 0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glColor4f(1, 0.5f, 0, 1);
    drawRectangle(16, 16, 48, 32);
}

void depthOrder()
{
    unitSquareProjection();
    glEnable(GL_DEPTH_TEST);
    glColor4f(1, 0, 0, 1);
    drawRectangle(0, 0, 0.75f, 0.75f, 0.5f);
    glColor4f(0, 1, 0, 1);
    drawRectangle(0.25f, 0.25f, 1, 1, -0.5f);
}

void depthRange()
{
    depthOrder();
    glDepthRangef(0, 0.1f);
    glColor4f(0, 0, 1, 1);
    drawRectangle(0.4f, 0.4f, 0.6f, 0.6f, -0.9f);
}

} // namespace

std::vector<Scene> matrixScenes()
{
    const Probe corner = {2, 125, 0, 0, 0, 0, "outside"};
    return {
        {"IdentityMatrices", identityMatrices, {{64, 64, 255, 0, 0, 255, "inside"}, {30, 64, 0, 0, 0, 0, "outside"}}},
        {"ScaleAndTranslate",
         scaleAndTranslate,
         {{96, 96, 0, 255, 0, 255, "centre 0.5, 0.5"},
          {76, 96, 0, 0, 0, 0, "left of 0.25"},
          {84, 70, 0, 255, 0, 255, "0.31, 0.09"}}},
        {"Rotated",
         rotated,
         {{64, 25, 0, 0, 255, 255, "the corner at -0.707"}, {30, 30, 0, 0, 0, 0, "no corner left there"}},
         {.differingPixels = 40}},
        {"RotatedFixed",
         rotatedFixed,
         {{80, 80, 0, 0, 255, 255, "centre 0.18, 0.18"}, corner},
         {.differingPixels = 40}},
        {"FirstRowOnly",
         firstRowOnly,
         {{100, 90, 255, 255, 0, 255, "sheared to the right"}, corner},
         {.differingPixels = 40}},
        {"FirstTwoRows", firstTwoRows, {{64, 64, 255, 0, 255, 255, "centre"}, corner}, {.differingPixels = 40}},
        {"Perspective", perspective, {{64, 64, 0, 255, 255, 255, "centre"}, corner}, {.differingPixels = 40}},
        {"PerspectiveFixed",
         perspectiveFixed,
         {{34, 64, 0, 255, 255, 255, "half size at twice the near distance"}, {28, 64, 0, 0, 0, 0, "outside"}}},
        {"PushAndPop",
         pushAndPop,
         {{96, 32, 255, 0, 0, 255, "moved"}, {32, 96, 0, 255, 0, 255, "moved back"}, {32, 32, 0, 0, 0, 0, "empty"}}},
        {"MultipliedMatrices",
         multipliedMatrices,
         {{96, 64, 255, 255, 255, 255, "centre 0.5"}, {100, 84, 0, 0, 0, 0, "above 0.25"}}},
        {"Orthographic",
         orthographic,
         {{20, 128 - 20, 255, 127.5, 0, 255, "y runs down"}, {20, 20, 0, 0, 0, 0, "not up"}}},
        // z = 0.5 of an orthographic -1..1 is nearer than z = -0.5.
        {"DepthOrder",
         depthOrder,
         {{64, 64, 255, 0, 0, 255, "the red one is nearer"}, {112, 112, 0, 255, 0, 255, "only green there"}}},
        {"DepthRange", depthRange, {{64, 64, 0, 0, 255, 255, "a nearer range wins"}}},
    };
}
