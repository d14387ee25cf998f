// SPDX-License-Identifier: MIT
// Lights and materials, against OpenGL ES 1.1 equation 2.5 in double precision. Every rectangle has one normal, and
// spot and positional effects are looked at in one pixel, whose object position is worked out.
#include "pictures/scene.h"

#include <algorithm>
#include <cmath>

namespace {

struct Vec {
    double x, y, z;
};

double dot(Vec a, Vec b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec unit(Vec v)
{
    const double length = std::sqrt(dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

double power(double base, double exponent)
{
    return base <= 0 && exponent > 0 ? 0 : std::pow(base, exponent);
}

// One colour channel of one light: attenuation * spot * (ambient + N.L * diffuse + (N.H)^shininess * specular).
double lightTerm(Vec normal, Vec toLight, double attenuation, double ambient, double diffuse, double specular,
                 double shininess)
{
    const Vec direction = unit(toLight);
    const Vec half = unit({direction.x, direction.y, direction.z + 1});
    const double lambert = std::max(0.0, dot(normal, direction));
    const double gloss = lambert > 0 ? power(std::max(0.0, dot(normal, half)), shininess) : 0;
    return attenuation * (ambient + lambert * diffuse + gloss * specular);
}

double toByte(double value)
{
    return 255 * std::clamp(value, 0.0, 1.0);
}

void setLight(GLenum light, GLenum pname, float a, float b, float c, float d)
{
    const GLfloat values[] = {a, b, c, d};
    glLightfv(light, pname, values);
}

void setMaterial(GLenum pname, float a, float b, float c, float d)
{
    const GLfloat values[] = {a, b, c, d};
    glMaterialfv(GL_FRONT_AND_BACK, pname, values);
}

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

void noLights()
{
    glEnable(GL_LIGHTING);
    setMaterial(GL_EMISSION, 0.1f, 0, 0.3f, 1);
    setMaterial(GL_DIFFUSE, 0.8f, 0.8f, 0.8f, 0.5f);
    fullRectangle();
}

void obliqueDirectional()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_POSITION, 1, 0, 1, 0);
    setLight(GL_LIGHT0, GL_DIFFUSE, 1, 0.5f, 0.25f, 1);
    setMaterial(GL_SPECULAR, 0.5f, 0.5f, 0.5f, 1);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 10);
    fullRectangle();
}

double obliqueChannel(double lightDiffuse)
{
    return toByte(0.2 * 0.2 + lightTerm({0, 0, 1}, {1, 0, 1}, 1, 0, 0.8 * lightDiffuse, 0.5, 10));
}

// Lights 2 and 5: the shader's arrays hold only these two.
void lightsTwoAndFive()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT2);
    glEnable(GL_LIGHT5);
    setLight(GL_LIGHT2, GL_DIFFUSE, 0.5f, 0, 0, 1);
    setLight(GL_LIGHT2, GL_POSITION, 0, 0, 1, 0);
    setLight(GL_LIGHT5, GL_DIFFUSE, 0, 0.25f, 0, 1);
    setLight(GL_LIGHT5, GL_POSITION, 0, 0, 1, 0);
    fullRectangle();
}

void eightLights()
{
    glEnable(GL_LIGHTING);
    for (int i = 0; i < 8; ++i) {
        glEnable(GL_LIGHT0 + i);
        setLight(GL_LIGHT0 + i, GL_DIFFUSE, 0.1f, i % 2 ? 0.05f : 0.0f, 0, 1);
        setLight(GL_LIGHT0 + i, GL_SPECULAR, 0, 0, 0, 1);
        setLight(GL_LIGHT0 + i, GL_POSITION, 0, 0, 1, 0);
    }
    fullRectangle();
}

// All eight directional, the modelview a pure rotation: light vectors go to object space, normals stay.
void eightLightsRotated()
{
    glRotatef(30, 0, 1, 0);
    eightLights();
}

constexpr double kPixel = 2.0 / kPictureSize;

void pointLight()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_POSITION, 0, 0, 0.5f, 1);
    glLightf(GL_LIGHT0, GL_CONSTANT_ATTENUATION, 0.5f);
    glLightf(GL_LIGHT0, GL_LINEAR_ATTENUATION, 1);
    glLightf(GL_LIGHT0, GL_QUADRATIC_ATTENUATION, 2);
    // One pixel, lit at its corners: nearly its centre's light.
    glNormal3f(0, 0, 1);
    drawRectangle(0.5f, 0.5f, 0.5f + 2 / 128.0f, 0.5f + 2 / 128.0f);
}

double pointLightChannel()
{
    const double at = 0.5 + kPixel / 2;
    const double distance = std::sqrt(2 * at * at + 0.25);
    const double attenuation = 1 / (0.5 + distance + 2 * distance * distance);
    return toByte(0.04 + lightTerm({0, 0, 1}, {-at, -at, 0.5}, attenuation, 0, 0.8, 0, 0));
}

void spotLight(float cutoff, float exponent)
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_POSITION, 0, 0, 1, 1);
    glLightf(GL_LIGHT0, GL_SPOT_CUTOFF, cutoff);
    glLightf(GL_LIGHT0, GL_SPOT_EXPONENT, exponent);
    glNormal3f(0, 0, 1);
    drawRectangle(0.25f, 0, 0.25f + 2 / 128.0f, 2 / 128.0f);
    drawRectangle(0.75f, 0, 0.75f + 2 / 128.0f, 2 / 128.0f);
}

void narrowSpot()
{
    spotLight(30, 4);
}

double narrowSpotChannel()
{
    const double x = 0.25 + kPixel / 2;
    const double y = kPixel / 2;
    const double cosine = unit({-x, -y, 1}).z;
    return toByte(0.04 + lightTerm({0, 0, 1}, {-x, -y, 1}, power(cosine, 4), 0, 0.8, 0, 0));
}

void colourMaterial()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glEnable(GL_COLOR_MATERIAL);
    glColor4f(0.25f, 0.5f, 1, 0.5f);
    fullRectangle();
}

void twoSided()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_POSITION, 0, 0, -1, 0);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glFrontFace(GL_CW); // the rectangle shows its back
    fullRectangle();
}

void oneSided()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_POSITION, 0, 0, -1, 0);
    glFrontFace(GL_CW);
    fullRectangle();
}

void normalizeScaled()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_DIFFUSE, 0.5f, 0.5f, 0.5f, 1);
    glEnable(GL_NORMALIZE);
    glScalef(1, 1, 4);
    glNormal3f(0, 0, 3);
    drawRectangle(-1, -1, 1, 1);
}

void rescaleUniform()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_DIFFUSE, 0.5f, 0.5f, 0.5f, 1);
    glEnable(GL_RESCALE_NORMAL);
    glScalef(2, 2, 2);
    glNormal3f(0, 0, 1);
    drawRectangle(-0.5f, -0.5f, 0.5f, 0.5f);
}

void unscaledNormal()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    setLight(GL_LIGHT0, GL_DIFFUSE, 0.5f, 0.5f, 0.5f, 1);
    glScalef(2, 2, 2);
    glNormal3f(0, 0, 1);
    drawRectangle(-0.5f, -0.5f, 0.5f, 0.5f);
}

void litThenUnlit()
{
    defaultLight();
    glDisable(GL_LIGHTING);
    glColor4f(0, 0, 1, 1);
    drawRectangle(-1, -1, 0, 1);
    glEnable(GL_LIGHTING);
    glDisable(GL_LIGHT0);
    glEnable(GL_LIGHT1);
    setLight(GL_LIGHT1, GL_DIFFUSE, 0, 0.5f, 0, 1);
    drawRectangle(-1, -1, 0, 0);
}

void materialBetweenDraws()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glNormal3f(0, 0, 1);
    setMaterial(GL_AMBIENT_AND_DIFFUSE, 0.5f, 0, 0, 1);
    drawRectangle(-1, -1, 0, 1);
    setMaterial(GL_AMBIENT_AND_DIFFUSE, 0, 0.5f, 0, 1);
    drawRectangle(0, -1, 1, 1);
}

} // namespace

std::vector<Scene> lightingScenes()
{
    const double facing = toByte(0.2 * 0.2 + 0.8);
    const double half = toByte(0.04 + 0.4);
    const double ambientOnly = toByte(0.04);
    const double halfway = toByte(0.04 + 0.4 / 2);
    const double eight = toByte(0.04 + 8 * 0.08);
    const double eightGreen = toByte(0.04 + 4 * 0.04);
    const NativeMatch close = {.tolerance = 3};
    return {
        {"DefaultLight", defaultLight, {{64, 64, facing, facing, facing, 255, "0.2 * 0.2 + 0.8"}}, close},
        {"NoLights",
         noLights,
         {{64, 64, toByte(0.14), toByte(0.04), toByte(0.34), 127.5, "emission + ambient, alpha of the diffuse"}},
         close},
        {"ObliqueDirectional",
         obliqueDirectional,
         {{64, 64, obliqueChannel(1), obliqueChannel(0.5), obliqueChannel(0.25), 255,
           "diffuse and specular at 45 degrees"}},
         close},
        {"LightsTwoAndFive",
         lightsTwoAndFive,
         {{64, 64, toByte(0.44), toByte(0.24), ambientOnly, 255, "one each"}},
         close},
        {"EightLights", eightLights, {{64, 64, eight, eightGreen, ambientOnly, 255, "a sum of eight"}}, close},
        {"EightLightsRotated",
         eightLightsRotated,
         // The light is given after the rotation and turns with the rectangle: it faces it as before.
         {{64, 64, eight, eightGreen, ambientOnly, 255, "light and normal turn together"}},
         close},
        {"PointLight",
         pointLight,
         {{96, 96, pointLightChannel(), pointLightChannel(), pointLightChannel(), 255, "attenuated"}},
         close},
        {"NarrowSpot",
         narrowSpot,
         {{80, 64, narrowSpotChannel(), narrowSpotChannel(), narrowSpotChannel(), 255, "inside the cone"},
          {112, 64, ambientOnly, ambientOnly, ambientOnly, 255, "outside the cone"}},
         close},
        {"ColourMaterial",
         colourMaterial,
         {{64, 64, toByte(0.25 * 1.2), toByte(0.5 * 1.2), 255, 255,
           "colour times ambient and light; the emission's alpha of 1 is added to the colour's"}},
         {.instead = "the emission's alpha is added to the colour's under colour material, see docs/behaviour.md"}},
        {"TwoSided", twoSided, {{64, 64, facing, facing, facing, 255, "the back faces the light"}}, close},
        {"OneSided", oneSided, {{64, 64, ambientOnly, ambientOnly, ambientOnly, 255, "the light is behind"}}, close},
        {"NormalizeScaled", normalizeScaled, {{64, 64, half, half, half, 255, "unit normal"}}, close},
        {"RescaleUniform", rescaleUniform, {{64, 64, half, half, half, 255, "scaled back"}}, close},
        {"UnscaledNormal",
         unscaledNormal,
         {{64, 64, halfway, halfway, halfway, 255, "a normal of length one half"}},
         close},
        {"LitThenUnlit",
         litThenUnlit,
         {{96, 64, facing, facing, facing, 255, "light 0"},
          {32, 96, 0, 0, 255, 255, "no lighting"},
          {32, 32, ambientOnly, half, ambientOnly, 255, "light 1 alone"}},
         close},
        {"MaterialBetweenDraws",
         materialBetweenDraws,
         {{32, 64, toByte(0.1 + 0.5), 0, 0, 255, "red material"},
          {96, 64, 0, toByte(0.1 + 0.5), 0, 255, "green material"}},
         close},
    };
}
