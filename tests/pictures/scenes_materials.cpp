// SPDX-License-Identifier: MIT
// Materials, colour material, two sides, and what becomes of normals on their way to eye coordinates.
#include "pictures/lighting_reference.h"

#include <cmath>
#include <numbers>

namespace {

constexpr Vec3 kFacing = {0, 0, 1};
const Light kSoft = {.ambient = {0.2, 0.1, 0.3, 1}, .diffuse = {0.6, 0.7, 0.5, 1}, .specular = {0, 0, 0, 1}};

std::vector<Cell> materialCells()
{
    std::vector<Cell> cells;
    const auto cell = [&](std::string why, Material material, Colour sceneAmbient = {0.2, 0.2, 0.2, 1}) {
        Light light = kSoft;
        light.specular = {0.5, 0.25, 1, 1};
        light.position = {0.5, 0.25, 1};
        cells.push_back({std::move(why),
                         [=](const Place &place) {
                             const GLfloat ambient[] = {
                                 static_cast<GLfloat>(sceneAmbient.r), static_cast<GLfloat>(sceneAmbient.g),
                                 static_cast<GLfloat>(sceneAmbient.b), static_cast<GLfloat>(sceneAmbient.a)};
                             glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
                             setLights({light});
                             setMaterial(material);
                             drawLitPoint(place, kFacing);
                         },
                         [=](const Place &) { return litColour({light}, material, {}, kFacing, sceneAmbient); }});
    };
    cell("start values", {});
    cell("ambient", {.ambient = {1, 0.5, 0, 1}});
    cell("diffuse, with its alpha", {.diffuse = {0, 0.5, 1, 0.25}});
    cell("specular", {.specular = {0.5, 1, 0.25, 0}, .shininess = 10});
    cell("emission, whose alpha counts nothing", {.emission = {0.25, 0, 0.5, 0.5}});
    cell("all", {.ambient = {0.1, 0.2, 0.3, 0.4},
                 .diffuse = {0.4, 0.3, 0.2, 0.6},
                 .specular = {0.3, 0.2, 0.1, 1},
                 .emission = {0.05, 0.1, 0.15, 1},
                 .shininess = 3});
    cell("more than white", {.emission = {2, 0.5, 0.5, 1}});
    cell("scene ambient", {}, {1, 0.5, 0.25, 1});
    cell("no scene ambient", {}, {0, 0, 0, 0});
    return cells;
}

// Colour material: ambient and diffuse follow the current colour or the colour array.
void colourMaterial(const Place &place, bool array, const Colour &colour)
{
    const GLfloat values[] = {static_cast<GLfloat>(colour.r), static_cast<GLfloat>(colour.g),
                              static_cast<GLfloat>(colour.b), static_cast<GLfloat>(colour.a)};
    setLights({kSoft});
    setMaterial({.emission = {0, 0.1, 0, 0}});
    glEnable(GL_COLOR_MATERIAL);
    if (array) {
        glColor4f(1, 1, 1, 1);
        glEnableClientState(GL_COLOR_ARRAY);
        glColorPointer(4, GL_FLOAT, 0, values);
    } else {
        glColor4f(values[0], values[1], values[2], values[3]);
    }
    drawLitPoint(place, kFacing);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisable(GL_COLOR_MATERIAL);
}

std::vector<Cell> colourMaterialCells()
{
    std::vector<Cell> cells;
    for (const bool array : {false, true}) {
        for (const Colour colour : {Colour{1, 0.5, 0.25, 1}, Colour{0.25, 1, 0.5, 0.5}}) {
            cells.push_back({array ? "colour array" : "current colour",
                             [=](const Place &place) { colourMaterial(place, array, colour); },
                             [=](const Place &) {
                                 return litColour({kSoft},
                                                  {.ambient = colour, .diffuse = colour, .emission = {0, 0.1, 0, 0}},
                                                  {}, kFacing);
                             }});
        }
    }
    // The material's own colours count again once colour material is off, whatever the colour is.
    cells.push_back({"without colour material",
                     [](const Place &place) {
                         setLights({kSoft});
                         setMaterial({});
                         glColor4f(0, 1, 0, 0.5f);
                         drawLitPoint(place, kFacing);
                     },
                     [](const Place &) { return litColour({kSoft}, {}, {}, kFacing); }});
    return cells;
}

// A rectangle seen from its front or its back.
void sided(const Place &place, const std::vector<Light> &lights, bool twoSided, bool back)
{
    setLights(lights);
    setMaterial({.specular = {0.5, 0.5, 0.5, 1}, .shininess = 4});
    const GLfloat two[] = {twoSided ? 1.0f : 0.0f};
    glLightModelfv(GL_LIGHT_MODEL_TWO_SIDE, two);
    glFrontFace(back ? GL_CW : GL_CCW);
    glNormal3f(0, 0.6f, 0.8f);
    drawRectangle(place.left, place.bottom, place.right, place.top);
}

std::vector<Cell> sideCells()
{
    std::vector<Cell> cells;
    const Light front = {.diffuse = {0.7, 0.2, 0.1, 1}, .specular = {0, 0, 0, 1}, .position = {0, 0.2, 1}};
    const Light behind = {.ambient = {0.1, 0.1, 0, 1},
                          .diffuse = {0.1, 0.2, 0.7, 1},
                          .specular = {0, 0, 0, 1},
                          .position = {0, -0.3, -1}};
    const std::vector<Light> lights = {front, behind};
    for (const bool twoSided : {true, false}) {
        for (const bool back : {false, true}) {
            const double sign = twoSided && back ? -1 : 1;
            const Vec3 normal = {0, 0.6 * sign, 0.8 * sign};
            cells.push_back({twoSided ? "two sides" : "one side",
                             [=](const Place &place) { sided(place, lights, twoSided, back); },
                             [=](const Place &) {
                                 return litColour(lights, {.specular = {0.5, 0.5, 0.5, 1}, .shininess = 4}, {}, normal);
                             }});
        }
    }
    return cells;
}

// Scale, normal, and what is enabled about normals.
struct NormalCase {
    std::string why;
    Vec3 scale;
    double degrees; // about y, before the scaling
    Vec3 normal;    // as given
    bool normalize, rescale;
};

Vec3 eyeNormal(const NormalCase &c)
{
    // The inverse transpose of rotation times scaling: scale by the reciprocals, then turn.
    const double angle = c.degrees * std::numbers::pi / 180;
    const Vec3 scaled = {c.normal.x / c.scale.x, c.normal.y / c.scale.y, c.normal.z / c.scale.z};
    Vec3 turned = {scaled.x * std::cos(angle) + scaled.z * std::sin(angle), scaled.y,
                   scaled.z * std::cos(angle) - scaled.x * std::sin(angle)};
    // Rescaling uses the third row of the inverse modelview: the third column of the scaled inverse rotation.
    if (c.rescale) {
        const double row =
            std::sqrt(std::pow(std::sin(angle) / c.scale.z, 2) + std::pow(std::cos(angle) / c.scale.z, 2));
        turned = {turned.x / row, turned.y / row, turned.z / row};
    }
    return c.normalize ? unit(turned) : turned;
}

const Light kOblique = {.diffuse = {0.5, 0.6, 0.7, 1}, .specular = {0, 0, 0, 1}, .position = {0.5, 0.5, 1}};

Cell normalCell(const NormalCase &c)
{
    const auto draw = [c](const Place &place) {
        setLights({kOblique});
        setMaterial({});
        (c.normalize ? glEnable : glDisable)(GL_NORMALIZE);
        (c.rescale ? glEnable : glDisable)(GL_RESCALE_NORMAL);
        glPushMatrix();
        glTranslatef(middleX(place), middleY(place), 0);
        glRotatef(static_cast<GLfloat>(c.degrees), 0, 1, 0);
        glScalef(static_cast<GLfloat>(c.scale.x), static_cast<GLfloat>(c.scale.y), static_cast<GLfloat>(c.scale.z));
        drawLitPoint({0, 0, 0, 0}, c.normal);
        glPopMatrix();
    };
    return {c.why, draw, [c](const Place &) { return litColour({kOblique}, {}, {}, eyeNormal(c)); }};
}

std::vector<Cell> normalCells()
{
    std::vector<Cell> cells;
    for (const NormalCase &c : {
             NormalCase{"as it is", {1, 1, 1}, 0, {0, 0, 1}, false, false},
             NormalCase{"turned", {1, 1, 1}, 30, {0, 0, 1}, false, false},
             NormalCase{"shortened by the scaling", {2, 2, 2}, 30, {0, 0, 1}, false, false},
             NormalCase{"rescaled", {2, 2, 2}, 30, {0, 0, 1}, false, true},
             NormalCase{"rescaled up", {0.5, 0.5, 0.5}, -20, {0.6, 0, 0.8}, false, true},
             NormalCase{"rescaling keeps a given length", {2, 2, 2}, 0, {0, 0, 0.5}, false, true},
             NormalCase{"normalised", {2, 2, 2}, 30, {0, 0, 3}, true, false},
             NormalCase{"normalised under unequal scaling", {1, 3, 0.5}, 40, {1, 1, 1}, true, false},
             NormalCase{"slanted under unequal scaling", {2, 1, 1}, 0, {0.6, 0, 0.8}, false, false},
             NormalCase{"both", {4, 4, 4}, 10, {2, 0, 2}, true, true},
             NormalCase{"a long normal", {1, 1, 1}, 0, {0, 0, 1.25}, false, false},
             NormalCase{"rescaled by the third row alone", {1, 3, 2}, 0, {0, 0.6, 0.8}, false, true},
         })
        cells.push_back(normalCell(c));
    return cells;
}

// Arrays of normals in every type, whose values are small whole numbers or fixed-point.
template <typename T>
void normalArray(const Place &place, GLenum type, T x, T y, T z)
{
    // Three components with room to a multiple of four bytes.
    const T normals[4] = {x, y, z, 0};
    setLights({kOblique});
    setMaterial({});
    glDisable(GL_RESCALE_NORMAL);
    glEnableClientState(GL_NORMAL_ARRAY);
    glNormalPointer(type, sizeof(normals), normals);
    drawLitPoint(place, {0, 1, 0});
    glDisableClientState(GL_NORMAL_ARRAY);
}

std::vector<Cell> normalTypeCells()
{
    const auto lit = [](Vec3 normal) {
        return [normal](const Place &) { return litColour({kOblique}, {}, {}, normal); };
    };
    const Vec3 slanted = unit({1, 2, 3});
    return {
        {"floats, normalised",
         [](const Place &p) {
             glEnable(GL_NORMALIZE);
             normalArray<GLfloat>(p, GL_FLOAT, 1, 2, 3);
         },
         lit(slanted)},
        {"fixed, normalised", [](const Place &p) { normalArray<GLfixed>(p, GL_FIXED, 1 << 16, 2 << 16, 3 << 16); },
         lit(slanted)},
        {"bytes, normalised", [](const Place &p) { normalArray<GLbyte>(p, GL_BYTE, 40, 80, 120); }, lit(slanted)},
        {"shorts, normalised", [](const Place &p) { normalArray<GLshort>(p, GL_SHORT, 10000, 20000, 30000); },
         lit(slanted)},
        {"fixed",
         [](const Place &p) {
             glDisable(GL_NORMALIZE);
             normalArray<GLfixed>(p, GL_FIXED, 0, 0x8000, 0x8000);
         },
         lit({0, 0.5, 0.5})},
    };
}

// Bytes and shorts are whole numbers: a normal of 0, 0, 1 has length 1, not 1 / 127.
std::vector<Cell> wholeNormalCells()
{
    const auto facing = [](const Place &) { return litColour({kOblique}, {}, {}, kFacing); };
    return {{"bytes", [](const Place &p) { normalArray<GLbyte>(p, GL_BYTE, 0, 0, 1); }, facing},
            {"shorts", [](const Place &p) { normalArray<GLshort>(p, GL_SHORT, 0, 0, 1); }, facing}};
}

// One colour per triangle: that of its last vertex.
void flatLit()
{
    const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    const GLfloat normals[] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0.6f, 0.8f};
    setLights({kOblique});
    glShadeModel(GL_FLAT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glNormalPointer(GL_FLOAT, 0, normals);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

} // namespace

std::vector<Scene> materialScenes()
{
    const NativeMatch close = {.tolerance = 3};
    return {
        boardScene("Materials", materialCells(), close),
        boardScene("ColourMaterials", colourMaterialCells(), close),
        boardScene("Sides", sideCells(), close),
        boardScene("Normals", normalCells(), close),
        boardScene("NormalTypes", normalTypeCells(), close),
        boardScene("WholeNormals", wholeNormalCells(),
                   {.instead = "byte and short normals are taken as whole numbers, see docs/behaviour.md"}),
        {"FlatLit",
         flatLit,
         {probeOf(20, 20, litColour({kOblique}, {}, {}, kFacing), "the third vertex"),
          probeOf(110, 110, litColour({kOblique}, {}, {}, {0, 0.6, 0.8}), "the fourth vertex")},
         close},
    };
}
