// SPDX-License-Identifier: MIT
// Texture matrices of every form, on either unit, with coordinates of two to four components.
#include "pictures/textures.h"

#include <cmath>

namespace {

// 4 x 4 texels of which no two are alike.
Colour gridTexel(int x, int y)
{
    return {x / 3.0, y / 3.0, (x ^ y) / 3.0, 1};
}

void gridTexture()
{
    std::vector<GLubyte> texels;
    for (int i = 0; i < 16; ++i) {
        const Colour colour = gridTexel(i % 4, i / 4);
        for (const double channel : {colour.r, colour.g, colour.b, colour.a})
            texels.push_back(static_cast<GLubyte>(std::lround(byteOf(channel))));
    }
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    nearestFilter();
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
}

struct Coordinates {
    double s, t, r, q;
};

// The texel met by coordinates after their division by q; the texture repeats.
Colour lookup(const Coordinates &c)
{
    const auto texel = [](double at) { return static_cast<int>(std::floor((at - std::floor(at)) * 4)); };
    return gridTexel(texel(c.s / c.q), texel(c.t / c.q));
}

// Column-major, as the calls take it.
using Matrix = std::vector<GLfloat>;

Coordinates transformed(const Matrix &m, const Coordinates &c)
{
    const auto row = [&](size_t i) { return m[i] * c.s + m[4 + i] * c.t + m[8 + i] * c.r + m[12 + i] * c.q; };
    return {row(0), row(1), row(2), row(3)};
}

const Matrix kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const Matrix kScale = {2, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const Matrix kDepthScale = {0.5f, 0, 0, 0, 0, 0.25f, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1};
const Matrix kMove = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.25f, -0.5f, 0, 1};
const Matrix kTurn = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0, 1};
const Matrix kShear = {1, 0.5f, 0, 0, 0.25f, 1, 0, 0, 0.5f, 0, 1, 0, 0, 0, 0, 1};
const Matrix kDivide = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 2};
const Matrix kProjective = {1, 0, 0, 1, 0, 1, 0, 0.5f, 0, 0, 1, 0, 0, 0, 0, 1};
const Matrix kEverything = {0.5f, 0.25f, 0, 0.5f, -0.25f, 0.75f, 0, 0.25f, 0.5f, 0.5f, 1, 0, 0.125f, 0.5f, 0, 1.5f};

struct Form {
    const char *name;
    const Matrix *matrix;
};
const Form kForms[] = {{"identity", &kIdentity},
                       {"scale", &kScale},
                       {"scale of r", &kDepthScale},
                       {"move", &kMove},
                       {"turn", &kTurn},
                       {"shear", &kShear},
                       {"q alone", &kDivide},
                       {"projective", &kProjective},
                       {"everything", &kEverything}};

// One texel, looked up through a matrix with coordinates of that many components from an array.
void drawThrough(const Place &place, GLenum unit, const Matrix &matrix, const Coordinates &c, int components)
{
    const GLfloat positions[] = {place.left, place.bottom, place.right, place.bottom,
                                 place.left, place.top,    place.right, place.top};
    GLfloat coordinates[16];
    for (int i = 0; i < 4; ++i) {
        GLfloat *vertex = coordinates + i * components;
        const double values[] = {c.s, c.t, c.r, c.q};
        for (int k = 0; k < components; ++k)
            vertex[k] = static_cast<GLfloat>(values[k]);
    }
    glActiveTexture(unit);
    gridTexture();
    glMatrixMode(GL_TEXTURE);
    glLoadMatrixf(matrix.data());
    glMatrixMode(GL_MODELVIEW);
    glClientActiveTexture(unit);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glTexCoordPointer(components, GL_FLOAT, 0, coordinates);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glDisable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE0);
    glClientActiveTexture(GL_TEXTURE0);
}

std::vector<Cell> formCells(GLenum unit)
{
    std::vector<Cell> cells;
    for (const Form &form : kForms) {
        for (int components = 2; components <= 4; ++components) {
            for (const Coordinates &given : {Coordinates{0.15, 0.65, 0.35, 2}, Coordinates{0.9, 0.3, -0.6, 0.75}}) {
                const Coordinates used = {given.s, given.t, components > 2 ? given.r : 0, components > 3 ? given.q : 1};
                cells.push_back(
                    {std::string(form.name) + " of " + std::to_string(components) + " components",
                     [=, &form](const Place &place) { drawThrough(place, unit, *form.matrix, used, components); },
                     [=, &form](const Place &) { return lookup(transformed(*form.matrix, used)); }});
            }
        }
    }
    return cells;
}

// Coordinates of bytes, shorts and fixed numbers: whole numbers as they are.
template <typename T>
void typedCoordinates(const Place &place, GLenum type, T s, T t)
{
    const GLfloat positions[] = {place.left, place.bottom, place.right, place.bottom,
                                 place.left, place.top,    place.right, place.top};
    const T coordinates[] = {s, t, 0, 0, s, t, 0, 0, s, t, 0, 0, s, t, 0, 0};
    gridTexture();
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glScalex(0x1000, 0x1000, 0x10000); // a sixteenth
    glMatrixMode(GL_MODELVIEW);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glTexCoordPointer(2, type, 4 * sizeof(T), coordinates);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

std::vector<Cell> typeCells()
{
    const auto expects = [](const Place &) { return lookup({6 / 16.0, 10 / 16.0, 0, 1}); };
    return {{"bytes", [](const Place &p) { typedCoordinates<GLbyte>(p, GL_BYTE, 6, 10); }, expects},
            {"shorts", [](const Place &p) { typedCoordinates<GLshort>(p, GL_SHORT, 6, 10); }, expects},
            {"fixed", [](const Place &p) { typedCoordinates<GLfixed>(p, GL_FIXED, 6 << 16, 10 << 16); }, expects},
            {"floats", [](const Place &p) { typedCoordinates<GLfloat>(p, GL_FLOAT, 6, 10); }, expects}};
}

// Stacks of the two units are apart, and each pops what it pushed.
void twoStacks()
{
    gridTexture();
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glTranslatef(0.25f, 0, 0);
    glActiveTexture(GL_TEXTURE1);
    gridTexture();
    setEnv(GL_TEXTURE_ENV_MODE, GL_ADD);
    glPushMatrix();
    glTranslatef(0, 0.5f, 0);
    glMatrixMode(GL_MODELVIEW);
    const GLfloat positions[] = {-1, -1, 0, -1, -1, 1, 0, 1};
    glMultiTexCoord4f(GL_TEXTURE0, 0.1f, 0.1f, 0, 1);
    glMultiTexCoord4f(GL_TEXTURE1, 0.1f, 0.1f, 0, 1);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glMatrixMode(GL_TEXTURE);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 0, 0);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// A matrix that is the identity, without ever having been another, does not divide by q.
void undividedIdentity()
{
    gridTexture();
    const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glMultiTexCoord4f(GL_TEXTURE0, 0.6f, 0.3f, 0, 2);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// Sums of two texels, alpha times alpha.
Colour sum(const Colour &a, const Colour &b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a * b.a};
}

} // namespace

std::vector<Scene> textureMatrixScenes()
{
    return {
        boardScene("TextureMatrices", formCells(GL_TEXTURE0)),
        boardScene("TextureMatricesOfUnit1", formCells(GL_TEXTURE1)),
        boardScene("TextureCoordinateTypes", typeCells()),
        {"TwoTextureStacks",
         twoStacks,
         {probeOf(32, 64, sum(gridTexel(1, 0), gridTexel(0, 2)), "each moved by its own"),
          probeOf(96, 64, sum(gridTexel(1, 0), gridTexel(0, 0)), "unit 1 popped")},
         {.instead = "the machine's own ES 1.1 forgets unit 0's matrix when only unit 1's changes"}},
        {"UndividedIdentity",
         undividedIdentity,
         {probeOf(64, 64, lookup({0.6, 0.3, 0, 1}), "q is not divided by")},
         {.instead = "q counts only under another texture matrix, see docs/behaviour.md"}},
    };
}
