// SPDX-License-Identifier: MIT
#include "pictures/lighting_reference.h"

#include <algorithm>
#include <cmath>
#include <numbers>

double dot(const Vec3 &a, const Vec3 &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec3 unit(const Vec3 &v)
{
    const double length = std::sqrt(dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

namespace {

// Factors of one light at one vertex.
struct Factors {
    double ambient, diffuse, specular;
};

Factors factorsOf(const Light &light, double shininess, const Vec3 &position, const Vec3 &normal)
{
    double strength = 1;
    Vec3 toLight = unit(light.position);
    if (light.w != 0) {
        const Vec3 way = {light.position.x / light.w - position.x, light.position.y / light.w - position.y,
                          light.position.z / light.w - position.z};
        const double d = std::sqrt(dot(way, way));
        toLight = unit(way);
        strength = 1 / (light.attenuation[0] + light.attenuation[1] * d + light.attenuation[2] * d * d);
        if (light.spotCutoff != 180) {
            const double cosine = -dot(toLight, unit(light.spotDirection));
            const bool inside = cosine >= std::cos(light.spotCutoff * std::numbers::pi / 180);
            strength *= inside ? std::pow(cosine, light.spotExponent) : 0;
        }
    }
    const double facing = std::max(0.0, dot(normal, toLight));
    const Vec3 half = unit({toLight.x, toLight.y, toLight.z + 1});
    const double gloss = facing > 0 ? std::pow(std::max(0.0, dot(normal, half)), shininess) : 0;
    return {strength, strength * facing, strength * gloss};
}

std::vector<GLfloat> floats(const Colour &c)
{
    return {static_cast<GLfloat>(c.r), static_cast<GLfloat>(c.g), static_cast<GLfloat>(c.b), static_cast<GLfloat>(c.a)};
}

} // namespace

Colour litColour(const std::vector<Light> &lights, const Material &material, const Vec3 &position, const Vec3 &normal,
                 const Colour &sceneAmbient)
{
    Colour sum = {material.emission.r + sceneAmbient.r * material.ambient.r,
                  material.emission.g + sceneAmbient.g * material.ambient.g,
                  material.emission.b + sceneAmbient.b * material.ambient.b, material.diffuse.a};
    for (const Light &light : lights) {
        const Factors f = factorsOf(light, material.shininess, position, normal);
        const auto add = [&](double &channel, double Colour::*which) {
            channel += f.ambient * light.ambient.*which * material.ambient.*which +
                       f.diffuse * light.diffuse.*which * material.diffuse.*which +
                       f.specular * light.specular.*which * material.specular.*which;
        };
        add(sum.r, &Colour::r);
        add(sum.g, &Colour::g);
        add(sum.b, &Colour::b);
    }
    return sum;
}

void setLight(GLenum name, const Light &light)
{
    glEnable(name);
    glLightfv(name, GL_AMBIENT, floats(light.ambient).data());
    glLightfv(name, GL_DIFFUSE, floats(light.diffuse).data());
    glLightfv(name, GL_SPECULAR, floats(light.specular).data());
    const Vec3 &p = light.position;
    const Vec3 &d = light.spotDirection;
    glLightfv(name, GL_POSITION, floats({p.x, p.y, p.z, light.w}).data());
    glLightfv(name, GL_SPOT_DIRECTION, floats({d.x, d.y, d.z, 0}).data());
    glLightf(name, GL_SPOT_EXPONENT, static_cast<GLfloat>(light.spotExponent));
    glLightf(name, GL_SPOT_CUTOFF, static_cast<GLfloat>(light.spotCutoff));
    glLightf(name, GL_CONSTANT_ATTENUATION, static_cast<GLfloat>(light.attenuation[0]));
    glLightf(name, GL_LINEAR_ATTENUATION, static_cast<GLfloat>(light.attenuation[1]));
    glLightf(name, GL_QUADRATIC_ATTENUATION, static_cast<GLfloat>(light.attenuation[2]));
}

void setMaterial(const Material &material)
{
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, floats(material.ambient).data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, floats(material.diffuse).data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, floats(material.specular).data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, floats(material.emission).data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, static_cast<GLfloat>(material.shininess));
}

void setLights(const std::vector<Light> &lights)
{
    glEnable(GL_LIGHTING);
    for (GLenum i = 0; i < 8; ++i) {
        if (i < lights.size())
            setLight(GL_LIGHT0 + i, lights[i]);
        else
            glDisable(GL_LIGHT0 + i);
    }
}

void drawLitPoint(const Place &place, const Vec3 &normal, float z)
{
    const GLfloat position[] = {middleX(place), middleY(place), z};
    glPointSize(10); // even: no edge through the middle of a pixel
    glNormal3f(static_cast<GLfloat>(normal.x), static_cast<GLfloat>(normal.y), static_cast<GLfloat>(normal.z));
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, position);
    glDrawArrays(GL_POINTS, 0, 1);
    glDisableClientState(GL_VERTEX_ARRAY);
}
