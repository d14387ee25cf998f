// SPDX-License-Identifier: MIT
// Every kind of light and every parameter of a light, each looked at in single vertices.
#include "pictures/lighting_reference.h"

namespace {

constexpr Vec3 kFacing = {0, 0, 1};
constexpr Material kGlossy = {.ambient = {0.5, 0.25, 0.75, 1},
                              .diffuse = {0.6, 0.7, 0.5, 0.5},
                              .specular = {0.5, 0.25, 0.75, 1},
                              .emission = {0.05, 0, 0.1, 1},
                              .shininess = 8};

// A point lit by these lights.
Cell litCell(std::string why, std::vector<Light> lights, Material material = kGlossy, Vec3 normal = kFacing)
{
    return {std::move(why),
            [=](const Place &place) {
                setLights(lights);
                setMaterial(material);
                drawLitPoint(place, normal);
            },
            [=](const Place &place) {
                return litColour(lights, material, {middleX(place), middleY(place), 0}, normal);
            }};
}

const Colour kNone = {0, 0, 0, 1};

Light directional(Vec3 direction)
{
    return {.specular = {0.5, 0.5, 0.5, 1}, .position = direction};
}

Light point(Vec3 position)
{
    return {.specular = {0.5, 0.5, 0.5, 1}, .position = position, .w = 1};
}

std::vector<Cell> directionalCells()
{
    std::vector<Cell> cells;
    cells.push_back(litCell("ambient only", {{.ambient = {0.5, 1, 0.25, 1}, .diffuse = kNone, .specular = kNone}}));
    cells.push_back(litCell("diffuse only", {{.diffuse = {0.5, 1, 0.25, 1}, .specular = kNone}}));
    cells.push_back(litCell("specular only", {{.diffuse = kNone, .specular = {0.5, 1, 0.25, 1}}}));
    cells.push_back(litCell("all three", {{.ambient = {0.1, 0.2, 0.3, 1}, .diffuse = {0.4, 0.3, 0.2, 1}}}));
    cells.push_back(litCell("colours above 1", {{.diffuse = {3, 0.1, 0.1, 1}, .specular = kNone}}));
    cells.push_back(litCell("negative colours", {{.diffuse = {-1, 1, 0.5, 1}, .specular = kNone}}));
    cells.push_back(litCell("no light at all", {{.diffuse = kNone, .specular = kNone}}));
    for (const Vec3 direction : {Vec3{1, 0, 1}, Vec3{-1, 2, 3}, Vec3{0, 0, 100}, Vec3{0.01, 0, 0.01}, Vec3{4, -3, 0.5}})
        cells.push_back(litCell("a direction of any length", {directional(direction)}));
    for (const double shininess : {0.0, 1.0, 2.5, 32.0, 128.0}) {
        Material material = kGlossy;
        material.shininess = shininess;
        cells.push_back(litCell("shininess", {directional({0.3, 0.2, 1})}, material));
    }
    cells.push_back(litCell("a slanted normal", {directional({1, 1, 1})}, kGlossy, {0.6, 0, 0.8}));
    cells.push_back(litCell("a normal turned away, no specular light",
                            {{.ambient = {0.5, 0.5, 0.5, 1}, .specular = kNone}}, kGlossy, {0, 0, -1}));
    return cells;
}

std::vector<Cell> pointCells()
{
    std::vector<Cell> cells;
    const double attenuations[][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.5, 0.5, 0.5}, {4, 0, 0}, {0.1, 2, 0.3}};
    for (const auto &attenuation : attenuations) {
        Light light = point({0.2, -0.3, 0.75});
        light.ambient = {0.2, 0.4, 0.1, 1};
        for (int i = 0; i < 3; ++i)
            light.attenuation[i] = attenuation[i];
        cells.push_back(litCell("attenuation", {light}));
    }
    for (const double w : {0.5, 1.0, 2.0, 4.0, -1.0}) {
        Light light = point({0.5, 0.5, w < 0 ? -1.0 : 1.0});
        light.w = w;
        cells.push_back(litCell("the position divided by w", {light}));
    }
    cells.push_back(litCell("far away", {point({100, 50, 300})}));
    cells.push_back(litCell("behind the point: the ambient light alone",
                            {{.ambient = {0.5, 0.25, 1, 1}, .position = {0, 0, -1}, .w = 1}}));
    cells.push_back(litCell("a slanted normal", {point({0.1, 0.9, 0.4})}, kGlossy, {-0.48, 0.6, 0.64}));
    Material dull = kGlossy;
    dull.specular = {0, 0, 0, 1};
    cells.push_back(litCell("no specular material", {point({0.1, 0.9, 0.4})}, dull));
    cells.push_back(litCell("glossy again", {point({0.1, 0.9, 0.4})}));
    return cells;
}

std::vector<Cell> spotCells()
{
    std::vector<Cell> cells;
    const Light base = {.ambient = {0.3, 0.1, 0.2, 1}, .position = {0, 0, 1}, .w = 1, .spotCutoff = 45};
    for (const double exponent : {0.0, 1.0, 5.5, 128.0}) {
        Light light = base;
        light.spotExponent = exponent;
        cells.push_back(litCell("exponent", {light}));
    }
    // Cones that are clearly narrower and wider than the angle of their cell.
    for (const double cutoff : {2.0, 20.0, 60.0, 89.0, 90.0, 180.0}) {
        Light light = base;
        light.spotCutoff = cutoff;
        light.spotExponent = 2;
        cells.push_back(litCell("cutoff", {light}));
    }
    for (const Vec3 direction : {Vec3{0, 0, -5}, Vec3{0.3, 0.2, -1}, Vec3{0.1, 0.1, -0.1}, Vec3{0, 0, 1}}) {
        Light light = base;
        light.spotDirection = direction;
        light.spotExponent = 3;
        cells.push_back(litCell("a direction of any length", {light}));
    }
    Light attenuated = base;
    attenuated.attenuation[1] = 0.5;
    attenuated.spotExponent = 4;
    cells.push_back(litCell("with attenuation", {attenuated}));
    Light distant = base;
    distant.w = 0;
    cells.push_back(litCell("a directional light knows no cone", {distant}));
    return cells;
}

// Lights of every kind together; the i-th has a colour of its own.
std::vector<Light> mixedLights(size_t count)
{
    std::vector<Light> lights;
    for (size_t i = 0; i < count; ++i) {
        const double n = static_cast<double>(i);
        Light light = {.ambient = {0.01 * n, 0.02, 0, 1},
                       .diffuse = {0.1 + 0.01 * n, 0.15 - 0.01 * n, 0.05, 1},
                       .specular = {0.05, 0.02 * n, 0.1, 1},
                       .position = {0.3 * n - 1, 0.5 - 0.2 * n, 1},
                       .w = i % 3 == 0 ? 0.0 : 1.0};
        if (i % 3 == 2) light.spotCutoff = 80;
        lights.push_back(light);
    }
    return lights;
}

std::vector<Cell> countCells()
{
    std::vector<Cell> cells;
    for (size_t count = 0; count <= 8; ++count)
        cells.push_back(litCell("that many lights", mixedLights(count)));
    return cells;
}

// Every light by itself under its own name, and pairs that leave gaps: the shader's arrays hold the enabled ones only.
std::vector<Cell> nameCells()
{
    std::vector<Cell> cells;
    const std::vector<Light> all = mixedLights(8);
    const auto cell = [&](std::vector<int> names) {
        std::vector<Light> lights;
        for (const int name : names)
            lights.push_back(all[name]);
        cells.push_back({"the enabled lights",
                         [=](const Place &place) {
                             setLights({});
                             for (size_t i = 0; i < names.size(); ++i)
                                 setLight(GL_LIGHT0 + names[i], lights[i]);
                             setMaterial(kGlossy);
                             drawLitPoint(place, kFacing);
                         },
                         [=](const Place &place) {
                             return litColour(lights, kGlossy, {middleX(place), middleY(place), 0}, kFacing);
                         }});
    };
    for (int name = 0; name < 8; ++name)
        cell({name});
    cell({2, 5});
    cell({0, 7});
    cell({1, 3, 6});
    cell({4, 5, 6, 7});
    return cells;
}

// Positions and directions are moved by the modelview of the time when they are given.
void movedLights()
{
    const GLfloat position[] = {0, 0, 0.5f, 1};
    const GLfloat direction[] = {0, 0, -1};
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glLightf(GL_LIGHT0, GL_SPOT_CUTOFF, 70);
    glLightf(GL_LIGHT0, GL_SPOT_EXPONENT, 2);
    glPushMatrix();
    glTranslatef(0.5f, 0, 0);
    glRotatef(30, 0, 1, 0);
    glScalef(2, 2, 2);
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    glLightfv(GL_LIGHT0, GL_SPOT_DIRECTION, direction);
    glPopMatrix();
    drawLitPoint({-1, -1, 1, 1}, kFacing);
}

Colour movedLightsColour()
{
    const double c = 0.8660254037844387;
    // 0, 0, 0.5 scaled by 2, turned by 30 degrees about y, moved; -z turned and scaled.
    const Light light = {.position = {0.5 + 0.5, 0, c},
                         .w = 1,
                         .spotDirection = {-2 * 0.5, 0, -2 * c},
                         .spotExponent = 2,
                         .spotCutoff = 70};
    return litColour({light}, {}, {0, 0, 0}, kFacing);
}

void fixedPointCalls()
{
    const GLfixed diffuse[] = {0x8000, 0x4000, 0xC000, 0x10000};
    const GLfixed position[] = {0x10000, 0, 0x10000, 0x20000};
    const GLfixed direction[] = {0, 0, -0x10000};
    const GLfixed ambient[] = {0x8000, 0, 0x4000, 0x10000};
    const GLfixed material[] = {0x8000, 0x10000, 0x8000, 0x8000};
    const GLfixed emission[] = {0, 0, 0x1000, 0};
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glLightxv(GL_LIGHT0, GL_DIFFUSE, diffuse);
    glLightxv(GL_LIGHT0, GL_SPECULAR, diffuse);
    glLightxv(GL_LIGHT0, GL_POSITION, position);
    glLightxv(GL_LIGHT0, GL_SPOT_DIRECTION, direction);
    glLightx(GL_LIGHT0, GL_SPOT_CUTOFF, 60 << 16);
    glLightx(GL_LIGHT0, GL_SPOT_EXPONENT, 3 << 15);
    glLightx(GL_LIGHT0, GL_LINEAR_ATTENUATION, 0x8000);
    glLightModelxv(GL_LIGHT_MODEL_AMBIENT, ambient);
    glMaterialxv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, material);
    glMaterialxv(GL_FRONT_AND_BACK, GL_SPECULAR, material);
    glMaterialxv(GL_FRONT_AND_BACK, GL_EMISSION, emission);
    glMaterialx(GL_FRONT_AND_BACK, GL_SHININESS, 5 << 15);
    drawLitPoint({-1, -1, 1, 1}, kFacing);
}

Colour fixedPointColour()
{
    const Light light = {.diffuse = {0.5, 0.25, 0.75, 1},
                         .specular = {0.5, 0.25, 0.75, 1},
                         .position = {1, 0, 1},
                         .w = 2,
                         .spotExponent = 1.5,
                         .spotCutoff = 60,
                         .attenuation = {1, 0.5, 0}};
    const Colour colour = {0.5, 1, 0.5, 0.5};
    const Material material = {
        .ambient = colour, .diffuse = colour, .specular = colour, .emission = {0, 0, 0.0625, 0}, .shininess = 2.5};
    return litColour({light}, material, {0, 0, 0}, kFacing, {0.5, 0, 0.25, 1});
}

// A light behind the surface whose half vector still meets the normal: 60 degrees of normal against 100 of the light.
void highlightOnTurnedFace()
{
    setLights({{.diffuse = kNone, .position = {1, 0, 0.1}}});
    setMaterial({.specular = {1, 1, 1, 1}, .shininess = 1});
    drawLitPoint({-1, -1, 1, 1}, {-0.28, 0, 0.96});
}

Colour turnedFaceColour()
{
    const Vec3 toLight = unit({1, 0, 0.1});
    const double gloss = dot(unit({toLight.x, toLight.y, toLight.z + 1}), {-0.28, 0, 0.96});
    return {0.04 + gloss, 0.04 + gloss, 0.04 + gloss, 1};
}

} // namespace

std::vector<Scene> lightScenes()
{
    const NativeMatch close = {.tolerance = 3};
    return {
        boardScene("DirectionalLights", directionalCells(), close),
        boardScene("PointLights", pointCells(), close),
        boardScene("SpotLights", spotCells(), close),
        boardScene("NoneToEightLights", countCells(), close),
        boardScene("LightsByName", nameCells(), close),
        {"MovedLights", movedLights, {probeOf(64, 64, movedLightsColour(), "moved by the modelview")}, close},
        {"FixedPointLights", fixedPointCalls, {probeOf(64, 64, fixedPointColour(), "n / 65536")}, close},
        {"HighlightOnTurnedFace",
         highlightOnTurnedFace,
         {probeOf(64, 64, turnedFaceColour(), "normal times half vector, though the light is behind")},
         {.instead = "a directional light's highlight also shows on faces turned away, see docs/behaviour.md"}},
    };
}
