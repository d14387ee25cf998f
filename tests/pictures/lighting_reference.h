// SPDX-License-Identifier: MIT
// Lighting by OpenGL ES 1.1 equation 2.5, in double precision, and the calls that set the same state.
#pragma once

#include "pictures/board.h"

struct Vec3 {
    double x, y, z;
};

double dot(const Vec3 &a, const Vec3 &b);
Vec3 unit(const Vec3 &v);

/// Start values are those of GL_LIGHT0.
struct Light {
    Colour ambient = {0, 0, 0, 1};
    Colour diffuse = {1, 1, 1, 1};
    Colour specular = {1, 1, 1, 1};
    Vec3 position = {0, 0, 1}; // eye coordinates; the direction to the light when w is 0
    double w = 0;
    Vec3 spotDirection = {0, 0, -1}; // eye coordinates, any length
    double spotExponent = 0;
    double spotCutoff = 180; // degrees
    double attenuation[3] = {1, 0, 0};
};

struct Material {
    Colour ambient = {0.2, 0.2, 0.2, 1};
    Colour diffuse = {0.8, 0.8, 0.8, 1};
    Colour specular = {0, 0, 0, 1};
    Colour emission = {0, 0, 0, 1};
    double shininess = 0;
};

/// The lit colour, not clamped, of a vertex in eye coordinates. The viewer is not local. Alpha is the diffuse one.
Colour litColour(const std::vector<Light> &lights, const Material &material, const Vec3 &position, const Vec3 &normal,
                 const Colour &sceneAmbient = {0.2, 0.2, 0.2, 1});

/// Sets a light to these values and enables it. The modelview must be the identity.
void setLight(GLenum name, const Light &light);
void setMaterial(const Material &material);

/// Only these lights enabled, from GL_LIGHT0 up, and lighting itself.
void setLights(const std::vector<Light> &lights);

/// A point in the middle of a place, which is lit in exactly one position: x and y of the middle, z as given.
void drawLitPoint(const Place &place, const Vec3 &normal, float z = 0);
