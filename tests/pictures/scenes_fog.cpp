// SPDX-License-Identifier: MIT
// Fog: the three modes with and without eye coordinates in the vertex shader, its parameters, and what it leaves alone.
#include "pictures/lighting_reference.h"
#include "pictures/textures.h"

#include <algorithm>
#include <cmath>

namespace {

struct Fog {
    GLenum mode = GL_EXP;
    double density = 1, start = 0, end = 1;
    Colour colour = {0, 0, 0, 0};
};

double factorOf(const Fog &fog, double distance)
{
    const double z = std::abs(distance);
    if (fog.mode == GL_LINEAR) return std::clamp((fog.end - z) / (fog.end - fog.start), 0.0, 1.0);
    if (fog.mode == GL_EXP) return std::exp(-fog.density * z);
    return std::exp(-fog.density * z * fog.density * z);
}

Colour fogged(const Fog &fog, double distance, const Colour &colour)
{
    const double f = factorOf(fog, distance);
    return {f * colour.r + (1 - f) * fog.colour.r, f * colour.g + (1 - f) * fog.colour.g,
            f * colour.b + (1 - f) * fog.colour.b, colour.a};
}

void setFog(const Fog &fog)
{
    const GLfloat colour[] = {static_cast<GLfloat>(fog.colour.r), static_cast<GLfloat>(fog.colour.g),
                              static_cast<GLfloat>(fog.colour.b), static_cast<GLfloat>(fog.colour.a)};
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, static_cast<GLfloat>(fog.mode));
    glFogf(GL_FOG_DENSITY, static_cast<GLfloat>(fog.density));
    glFogf(GL_FOG_START, static_cast<GLfloat>(fog.start));
    glFogf(GL_FOG_END, static_cast<GLfloat>(fog.end));
    glFogfv(GL_FOG_COLOR, colour);
}

// An orthographic view from 0 to 10 in front of the eye, and a rectangle at that depth.
void rectangleAtDepth(const Place &place, double depth)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrthof(-1, 1, -1, 1, 0, 10);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0, 0, static_cast<GLfloat>(-depth));
    drawRectangle(place.left, place.bottom, place.right, place.top);
}

const Fog kFogs[] = {{.mode = GL_LINEAR, .start = 1, .end = 5, .colour = {0, 0, 1, 1}},
                     {.mode = GL_EXP, .density = 0.4, .colour = {0, 0.5, 1, 0}},
                     {.mode = GL_EXP2, .density = 0.3, .colour = {0.25, 0, 1, 0.5}}};
constexpr double kDepths[] = {0.5, 1, 2, 4, 6};

enum class With { NOTHING, CLIP_PLANE, LIGHTING };

std::vector<Cell> fogCells(With with)
{
    std::vector<Cell> cells;
    for (const Fog &fog : kFogs) {
        for (const double depth : kDepths) {
            const auto draw = [=](const Place &place) {
                const GLfloat everything[] = {0, 0, 0, 1};
                glClipPlanef(GL_CLIP_PLANE0, everything);
                if (with == With::CLIP_PLANE) glEnable(GL_CLIP_PLANE0);
                if (with == With::LIGHTING) glEnable(GL_LIGHTING); // without lights: the scene's ambient
                glColor4f(1, 0.5f, 0, 0.5f);
                setFog(fog);
                rectangleAtDepth(place, depth);
            };
            const Colour colour = with == With::LIGHTING ? Colour{0.04, 0.04, 0.04, 1} : Colour{1, 0.5, 0, 0.5};
            cells.push_back({"fog", draw, [=](const Place &) { return fogged(fog, depth, colour); }});
        }
    }
    return cells;
}

std::vector<Cell> parameterCells()
{
    std::vector<Cell> cells;
    const auto cell = [&](std::string why, Fog fog, double depth) {
        cells.push_back({std::move(why),
                         [=](const Place &place) {
                             glColor4f(1, 1, 0, 1);
                             setFog(fog);
                             rectangleAtDepth(place, depth);
                         },
                         [=](const Place &) {
                             return fogged(fog, depth, {1, 1, 0, 1});
                         }});
    };
    cell("start values", {}, 1);
    cell("negative start", {.mode = GL_LINEAR, .start = -3, .end = 5, .colour = {0, 0, 1, 0}}, 2);
    cell("start behind end", {.mode = GL_LINEAR, .start = 6, .end = 2, .colour = {0, 0, 1, 0}}, 3);
    cell("no density", {.mode = GL_EXP2, .density = 0, .colour = {1, 1, 1, 1}}, 5);
    cell("thick", {.mode = GL_EXP, .density = 50, .colour = {0.5, 0.5, 0.5, 1}}, 2);
    cell("thick, squared", {.mode = GL_EXP2, .density = 50, .colour = {0.5, 0.25, 0.5, 1}}, 2);
    return cells;
}

// Fog works on what the texture environment gives, and leaves alpha alone.
void foggedTexture()
{
    plainTexture(GL_RGBA, Colour{0.8, 0.4, 0.2, 0.4});
    glEnable(GL_TEXTURE_2D);
    glColor4f(1, 0.5f, 1, 0.5f);
    setFog(kFogs[0]);
    rectangleAtDepth({-1, -1, 1, 1}, 3);
}

void fixedPointFog()
{
    const GLfixed colour[] = {0, 0x8000, 0x10000, 0x10000};
    glEnable(GL_FOG);
    glFogx(GL_FOG_MODE, GL_LINEAR);
    glFogx(GL_FOG_START, 0x8000);
    glFogx(GL_FOG_END, 0x48000);
    glFogxv(GL_FOG_COLOR, colour);
    glColor4f(1, 0, 0, 1);
    rectangleAtDepth({-1, -1, 1, 0}, 2.5);
    glFogx(GL_FOG_MODE, GL_EXP);
    glFogx(GL_FOG_DENSITY, 0x4000);
    rectangleAtDepth({-1, 0, 1, 1}, 2.5);
}

// The distance is the eye's depth, not that of the projection: here a perspective with a turned model.
void perspectiveFog()
{
    const GLfloat positions[] = {-4, -4, -4, 4, -4, -4, -4, 4, -4, 4, 4, -4};
    setFog(kFogs[0]);
    glColor4f(1, 0, 0, 1);
    glMatrixMode(GL_PROJECTION);
    glFrustumf(-1, 1, -1, 1, 1, 20);
    glMatrixMode(GL_MODELVIEW);
    glRotatef(90, 0, 0, 1);
    glTranslatef(0, 0, 1);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// The distance is a number that the application sets.
void fogCoordinate()
{
    constexpr GLenum kFogCoordinateSource = 0x8450;
    constexpr GLenum kFogCoordinate = 0x8451;
    setFog(kFogs[0]);
    glFogf(kFogCoordinateSource, static_cast<GLfloat>(kFogCoordinate));
    glColor4f(1, 0, 0, 1);
    rectangleAtDepth({-1, -1, 1, 1}, 9);
}

void fogColourAboveOne()
{
    setFog({.mode = GL_LINEAR, .start = 1, .end = 5, .colour = {0, 0, 2, 1}});
    glColor4f(1, 0, 0, 1);
    rectangleAtDepth({-1, -1, 1, 1}, 2);
}

void fogOffAgain()
{
    glColor4f(1, 0, 0, 1);
    setFog(kFogs[0]);
    rectangleAtDepth({-1, -1, 1, 1}, 2);
    glDisable(GL_FOG);
    rectangleAtDepth({-1, -1, 0, 1}, 2);
}

} // namespace

std::vector<Scene> fogScenes()
{
    const Colour red = {1, 0, 0, 1};
    const Fog fixedLinear = {.mode = GL_LINEAR, .start = 0.5, .end = 4.5, .colour = {0, 0.5, 1, 1}};
    const Fog fixedExponential = {.mode = GL_EXP, .density = 0.25, .colour = {0, 0.5, 1, 1}};
    return {
        boardScene("FogWithoutEyeCoordinates", fogCells(With::NOTHING)),
        boardScene("FogWithClipPlane", fogCells(With::CLIP_PLANE)),
        boardScene("FogWithLighting", fogCells(With::LIGHTING), {.tolerance = 3}),
        boardScene("FogParameters", parameterCells()),
        {"FoggedTexture",
         foggedTexture,
         {probeOf(64, 64, fogged(kFogs[0], 3, {0.8, 0.2, 0.2, 0.2}), "fog after the texture")}},
        {"FixedPointFog",
         fixedPointFog,
         {probeOf(64, 32, fogged(fixedLinear, 2.5, red), "linear"),
          probeOf(64, 96, fogged(fixedExponential, 2.5, red), "exponential")}},
        {"PerspectiveFog", perspectiveFog, {probeOf(64, 64, fogged(kFogs[0], 3, red), "3 in front of the eye")}},
        {"FogCoordinate",
         fogCoordinate,
         {probeOf(64, 64, red, "the current coordinate is 0, nearer than the start")},
         {.instead = "the distance from a coordinate is a vendor's, see docs/behaviour.md"}},
        {"FogColourAboveOne",
         fogColourAboveOne,
         {probeOf(64, 64, {0.75, 0, 0.5, 1}, "a quarter of 2")},
         {.instead = "the fog colour is not clamped when it is set, see docs/behaviour.md"}},
        {"FogOffAgain",
         fogOffAgain,
         {probeOf(32, 64, red, "no fog"), probeOf(96, 64, fogged(kFogs[0], 2, red), "fog")}},
    };
}
