// SPDX-License-Identifier: MIT
// Lighting of rectangles: with and without lights, through a turned model, switched and changed between draws.
#include "pictures/lighting_reference.h"

namespace {

constexpr Vec3 kFacing = {0, 0, 1};

void fullRectangle()
{
    glNormal3f(0, 0, 1);
    drawRectangle(-1, -1, 1, 1);
}

void defaultLight()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    fullRectangle();
}

const Material kGlowing = {.diffuse = {0.8, 0.8, 0.8, 0.5}, .emission = {0.1, 0, 0.3, 1}};

void noLights()
{
    setLights({});
    setMaterial(kGlowing);
    fullRectangle();
}

// Eight directional lights: only then does the shader leave normals in object space.
std::vector<Light> eightLights()
{
    std::vector<Light> lights;
    for (int i = 0; i < 8; ++i)
        lights.push_back({.diffuse = {0.1, i % 2 ? 0.05 : 0.0, 0, 1},
                          .specular = {0, 0, i % 3 ? 0.1 : 0.0, 1},
                          .position = {0.1 * i, 0.05 * i, 1}});
    return lights;
}

const Material kShiny = {.specular = {1, 1, 1, 1}, .shininess = 3};

void eightLightsFacing()
{
    setLights(eightLights());
    setMaterial(kShiny);
    fullRectangle();
}

void eightLightsRotated()
{
    setLights(eightLights());
    setMaterial(kShiny);
    glRotatef(-30, 1, 0, 0);
    fullRectangle();
}

// Scaled: the matrix is not orthogonal, and normals go to eye space, where this one has length one half.
void eightLightsScaled()
{
    setLights(eightLights());
    setMaterial(kShiny);
    glScalef(1, 1, 2);
    fullRectangle();
}

// A normal of length 2 in one light of both kinds of reflection.
void longNormal()
{
    setLights({{.diffuse = {0.2, 0.2, 0.2, 1}, .specular = {0.25, 0.25, 0.25, 1}}});
    setMaterial(kShiny);
    glNormal3f(0, 0, 2);
    drawRectangle(-1, -1, 1, 1);
}

void colourMaterial()
{
    glEnable(GL_COLOR_MATERIAL);
    glColor4f(0.25f, 0.5f, 1, 0.5f);
    defaultLight();
}

void litThenUnlit()
{
    const GLfloat green[] = {0, 0.5f, 0, 1};
    defaultLight();
    glDisable(GL_LIGHTING);
    glColor4f(0, 0, 1, 1);
    drawRectangle(-1, -1, 0, 1);
    glEnable(GL_LIGHTING);
    glDisable(GL_LIGHT0);
    glEnable(GL_LIGHT1);
    glLightfv(GL_LIGHT1, GL_DIFFUSE, green);
    drawRectangle(-1, -1, 0, 0);
}

const Colour kRed = {0.5, 0, 0, 1};
const Colour kGreen = {0, 0.5, 0, 1};

void materialBetweenDraws()
{
    const GLfloat green[] = {0, 0.5f, 0, 1};
    setLights({{}});
    setMaterial({.ambient = kRed, .diffuse = kRed});
    drawRectangle(-1, -1, 0, 1);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, green);
    drawRectangle(0, -1, 1, 1);
}

// Colours are lit at the corners and weighed in between.
void smoothlyLit()
{
    const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    const GLfloat normals[] = {-0.8f, 0, 0.6f, 0.8f, 0, 0.6f, -0.8f, 0, 0.6f, 0.8f, 0, 0.6f};
    setLights({{.position = {0.6, 0, 0.8}}});
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glNormalPointer(GL_FLOAT, 0, normals);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// At pixel x between the colour of the left and that of the right corners.
Colour smoothColour(int x)
{
    const Light light = {.position = {0.6, 0, 0.8}};
    const Colour left = litColour({light}, {}, {}, {-0.8, 0, 0.6});
    const Colour right = litColour({light}, {}, {}, {0.8, 0, 0.6});
    const double weight = (x + 0.5) / kPictureSize;
    return {left.r + (right.r - left.r) * weight, left.g + (right.g - left.g) * weight,
            left.b + (right.b - left.b) * weight, 1};
}

} // namespace

std::vector<Scene> lightingScenes()
{
    const NativeMatch close = {.tolerance = 3};
    const Light start = {};
    const Light green = {.diffuse = kGreen, .specular = {0, 0, 0, 1}};
    const double c = 0.8660254037844387; // cosine of 30 degrees
    const Colour turned = litColour(eightLights(), kShiny, {}, {0, 0.5, c});
    return {
        {"DefaultLight",
         defaultLight,
         {probeOf(64, 64, litColour({start}, {}, {}, kFacing), "0.2 * 0.2 + 0.8")},
         close},
        {"NoLights",
         noLights,
         {probeOf(64, 64, litColour({}, kGlowing, {}, kFacing), "emission and ambient, alpha of the diffuse")},
         close},
        {"EightLights",
         eightLightsFacing,
         {probeOf(64, 64, litColour(eightLights(), kShiny, {}, kFacing), "a sum of eight")},
         close},
        {"EightLightsRotated", eightLightsRotated, {probeOf(64, 64, turned, "a turned normal")}, close},
        {"EightLightsScaled",
         eightLightsScaled,
         {probeOf(64, 64, litColour(eightLights(), kShiny, {}, {0, 0, 0.5}), "a normal of length one half")},
         close},
        {"LongNormal",
         longNormal,
         // Ambient, twice the diffuse light, and the specular light as for a product of normal and half vector of 1.
         {probeOf(64, 64, {0.04 + 0.32 + 0.25, 0.04 + 0.32 + 0.25, 0.04 + 0.32 + 0.25, 1}, "a highlight of 1, not 8")},
         {.instead = "the base of a highlight is limited to 1, see docs/behaviour.md"}},
        {"ColourMaterial",
         colourMaterial,
         {probeOf(64, 64, {0.25 * 1.2, 0.5 * 1.2, 1, 1},
                  "colour times ambient and light; the emission's alpha of 1 is added to the colour's")},
         {.instead = "the emission's alpha is added to the colour's under colour material, see docs/behaviour.md"}},
        {"LitThenUnlit",
         litThenUnlit,
         {probeOf(96, 64, litColour({start}, {}, {}, kFacing), "light 0"), probeOf(32, 96, {0, 0, 1, 1}, "no lighting"),
          probeOf(32, 32, litColour({green}, {}, {}, kFacing), "light 1 alone")},
         close},
        {"MaterialBetweenDraws",
         materialBetweenDraws,
         {probeOf(32, 64, litColour({start}, {.ambient = kRed, .diffuse = kRed}, {}, kFacing), "red material"),
          probeOf(96, 64, litColour({start}, {.ambient = kGreen, .diffuse = kGreen}, {}, kFacing), "green material")},
         close},
        {"SmoothlyLit",
         smoothlyLit,
         {probeOf(20, 64, smoothColour(20), "weighed"), probeOf(64, 64, smoothColour(64), "weighed"),
          probeOf(110, 64, smoothColour(110), "weighed")},
         close},
    };
}
