// SPDX-License-Identifier: MIT
// Texture objects over their lives: names of every size, deletion while bound elsewhere, formats that change, arrays
// that change their sizes between draws.
#include "pictures/extensions.h"
#include "pictures/sequences.h"
#include "pictures/textures.h"

namespace {

constexpr GLenum kFormats[] = {GL_RGBA, GL_ALPHA, GL_LUMINANCE, GL_RGB, GL_LUMINANCE_ALPHA};

Colour colourOf(GLuint n)
{
    return {(n * 37 % 100) / 100.0, (n * 59 % 100) / 100.0, (n * 83 % 100) / 100.0, (30 + n * 31 % 70) / 100.0};
}

// A 1 x 1 image of that number for the texture bound to the active unit.
void image(GLuint n, GLenum format)
{
    const Colour c = sampled(format, colourOf(n));
    const auto byte = [](double channel) { return static_cast<GLubyte>(byteOf(channel)); };
    std::vector<GLubyte> texel = {byte(c.r), byte(c.g), byte(c.b), byte(c.a)};
    if (format == GL_ALPHA) texel = {byte(c.a)};
    if (format == GL_LUMINANCE_ALPHA) texel = {byte(c.r), byte(c.a)};
    nearestFilter();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), 1, 1, 0, format, GL_UNSIGNED_BYTE, texel.data());
}

void drawQuad()
{
    glColor4f(0.9f, 0.8f, 0.7f, 0.6f);
    drawRectangle(-0.8f, -0.8f, 0.8f, 0.8f);
}

// One unit with an image of that number.
std::function<void()> oneUnit(GLuint n, GLenum format)
{
    return [=] {
        glEnable(GL_TEXTURE_2D);
        image(n, format);
    };
}

// Names around the sizes of every table, first in one order, then bound again in others.
void names(Stage &stage)
{
    const GLuint order[] = {300, 17, 256, 200, 255, 1, 16, 15, 4000, 31, 32, 254, 257, 65536};
    newContext(stage);
    glEnable(GL_TEXTURE_2D);
    for (const GLuint name : order) {
        glBindTexture(GL_TEXTURE_2D, name);
        image(name, kFormats[name % 5]);
        compare(stage, "new name " + std::to_string(name), drawQuad, oneUnit(name, kFormats[name % 5]));
    }
    for (size_t i = 0; i < std::size(order); ++i) {
        const GLuint name = order[i * 5 % std::size(order)];
        glBindTexture(GL_TEXTURE_2D, name);
        compare(stage, "name again " + std::to_string(name), drawQuad, oneUnit(name, kFormats[name % 5]));
    }
    // Every other one goes; the rest stay, and the names come back with other images.
    for (size_t i = 0; i < std::size(order); i += 2)
        glDeleteTextures(1, &order[i]);
    for (size_t i = 0; i < std::size(order); ++i) {
        const GLuint name = order[i];
        const GLuint n = i % 2 ? name : name + 1;
        glBindTexture(GL_TEXTURE_2D, name);
        if (i % 2 == 0) image(n, kFormats[n % 5]);
        compare(stage, "after deletions " + std::to_string(name), drawQuad, oneUnit(n, kFormats[n % 5]));
    }
}

// Both units textured by these images, each with its format.
std::function<void()> twoUnits(GLuint n0, GLuint n1)
{
    return [=] {
        glActiveTexture(GL_TEXTURE1);
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, 2);
        image(n1, kFormats[n1 % 5]);
        glActiveTexture(GL_TEXTURE0);
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, 1);
        image(n0, kFormats[n0 % 5]);
    };
}

// The texture of unit 1 deleted while unit 0 is active; then unit 1 gets another, and so the other way round.
void deletedOnTheOtherUnit(Stage &stage)
{
    newContext(stage);
    twoUnits(11, 23)();
    compare(stage, "both", drawQuad, twoUnits(11, 23));
    const GLuint second = 2;
    glDeleteTextures(1, &second);
    glActiveTexture(GL_TEXTURE1);
    GLint bound;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    glDisable(GL_TEXTURE_2D);
    compare(stage, "unit 1 disabled after its texture went", drawQuad, oneUnit(11, kFormats[11 % 5]));
    glBindTexture(GL_TEXTURE_2D, second);
    image(bound == 0 ? 24 : 25, kFormats[24 % 5]);
    glEnable(GL_TEXTURE_2D);
    compare(stage, "the name again", drawQuad, twoUnits(11, 24));
    const GLuint first = 1;
    glDeleteTextures(1, &first);
    drawQuad();
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 7);
    image(42, kFormats[42 % 5]);
    compare(stage, "another texture on unit 0", drawQuad, twoUnits(42, 24));
    // One texture on both units, deleted, and two new ones.
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, 7);
    compare(stage, "one on both", drawQuad, twoUnits(42, 42));
    const GLuint shared = 7;
    glDeleteTextures(1, &shared);
    glBindTexture(GL_TEXTURE_2D, 8);
    image(31, kFormats[31 % 5]);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 9);
    image(33, kFormats[33 % 5]);
    compare(stage, "two new ones", drawQuad, twoUnits(33, 31));
}

// An image of another format given through the other unit, on which the same texture is bound.
void formatChangedThroughTheOtherUnit(Stage &stage)
{
    newContext(stage);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, 5);
    for (GLuint n = 0; n < 10; ++n) {
        glActiveTexture(n % 2 ? GL_TEXTURE0 : GL_TEXTURE1);
        glBindTexture(GL_TEXTURE_2D, 5);
        image(n, kFormats[n * 3 % 5]);
        compare(stage, "format " + std::to_string(n * 3 % 5), drawQuad, oneUnit(n, kFormats[n * 3 % 5]));
    }
}

// A cube map and a 2D texture on one unit, each enabled and disabled around images of the other.
void targetsInTurn(Stage &stage)
{
    const auto cube = [](GLuint n) {
        glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 3);
        nearestFilter(GL_TEXTURE_CUBE_MAP_OES);
        const Colour c = colourOf(n);
        const GLubyte texel[] = {static_cast<GLubyte>(byteOf(c.r)), static_cast<GLubyte>(byteOf(c.g)),
                                 static_cast<GLubyte>(byteOf(c.b))};
        for (GLenum face = 0; face < 6; ++face)
            glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face, 0, GL_RGB, 1, 1, 0, GL_RGB, GL_UNSIGNED_BYTE,
                         texel);
    };
    const auto cubeState = [&](GLuint n) {
        return [=] {
            glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
            cube(n);
            glEnable(GL_TEXTURE_CUBE_MAP_OES);
        };
    };
    newContext(stage);
    glBindTexture(GL_TEXTURE_2D, 1);
    glEnable(GL_TEXTURE_2D);
    image(1, GL_ALPHA);
    compare(stage, "2D", drawQuad, oneUnit(1, GL_ALPHA));
    cube(7);
    compare(stage, "a cube map not enabled", drawQuad, oneUnit(1, GL_ALPHA));
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    compare(stage, "the cube map", drawQuad, cubeState(7));
    image(2, GL_LUMINANCE);
    compare(stage, "a 2D image behind it", drawQuad, cubeState(7));
    glDisable(GL_TEXTURE_2D);
    compare(stage, "2D disabled behind it", drawQuad, cubeState(7));
    glDisable(GL_TEXTURE_CUBE_MAP_OES);
    compare(stage, "neither", drawQuad, [] {});
    glEnable(GL_TEXTURE_2D);
    compare(stage, "2D again, with the image of meanwhile", drawQuad, oneUnit(2, GL_LUMINANCE));
    cube(9);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    glDisable(GL_TEXTURE_2D);
    compare(stage, "the cube map with other faces", drawQuad, cubeState(9));
}

// Sizes and types of every array change from draw to draw.
struct Arrays {
    GLint positions, coordinates;
    bool fixed, colours, normals;
};

void drawArrays(const Arrays &a)
{
    constexpr float kCorners[4][4] = {
        {-0.8f, -0.8f, 0, 1}, {0.8f, -0.8f, 0.2f, 1}, {-0.8f, 0.8f, 0, 1}, {0.8f, 0.8f, 0.4f, 1}};
    constexpr float kTexCoords[4][4] = {{0, 0, 0, 1}, {1, 0, 0, 1}, {0, 1, 0.5f, 1}, {2, 2, 0, 2}};
    static const GLubyte colours[] = {255, 0, 0, 255, 0, 255, 0, 200, 0, 0, 255, 150, 255, 255, 255, 100};
    static const GLfloat normals[] = {0, 0, 1, 0.6f, 0, 0.8f, 0, 0.6f, 0.8f, 0, 0, 1};
    GLfloat floats[2][16];
    GLfixed fixed[2][16];
    const auto fill = [&](int which, const float(&values)[4][4], int size) {
        for (int i = 0; i < 4 * size; ++i) {
            floats[which][i] = values[i / size][i % size];
            fixed[which][i] = static_cast<GLfixed>(values[i / size][i % size] * 65536);
        }
    };
    fill(0, kCorners, a.positions);
    fill(1, kTexCoords, a.coordinates);
    const auto switchArray = [](bool on, GLenum array) { (on ? glEnableClientState : glDisableClientState)(array); };
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    switchArray(a.colours, GL_COLOR_ARRAY);
    switchArray(a.normals, GL_NORMAL_ARRAY);
    if (a.fixed) {
        glVertexPointer(a.positions, GL_FIXED, 0, fixed[0]);
        glTexCoordPointer(a.coordinates, GL_FIXED, 0, fixed[1]);
    } else {
        glVertexPointer(a.positions, GL_FLOAT, 0, floats[0]);
        glTexCoordPointer(a.coordinates, GL_FLOAT, 0, floats[1]);
    }
    if (a.colours) glColorPointer(4, GL_UNSIGNED_BYTE, 0, colours);
    if (a.normals) glNormalPointer(GL_FLOAT, 0, normals);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

constexpr size_t kArrayDraws = 36;

void arraySizes(Stage &stage)
{
    const auto prepare = [] {
        quartersTexture();
        glEnable(GL_TEXTURE_2D);
        glEnable(GL_LIGHTING);
        const GLfloat position[] = {1, 0.5f, 0.5f, 0};
        glEnable(GL_LIGHT0);
        glLightfv(GL_LIGHT0, GL_POSITION, position);
        glEnable(GL_COLOR_MATERIAL);
        glMatrixMode(GL_TEXTURE);
        glScalef(0.9f, 0.9f, 1);
        glMatrixMode(GL_MODELVIEW);
    };
    newContext(stage);
    prepare();
    for (uint32_t i = 0; i < kArrayDraws; ++i) {
        const Arrays arrays = {static_cast<GLint>(2 + i * 2 % 3), static_cast<GLint>(2 + i / 3 % 3), i % 5 < 2,
                               i % 4 > 1, i % 7 > 3};
        compare(
            stage,
            "positions of " + std::to_string(arrays.positions) + ", coordinates of " +
                std::to_string(arrays.coordinates),
            [=] { drawArrays(arrays); }, prepare);
    }
}

} // namespace

std::vector<Sequence> textureSequences()
{
    return {{"TextureNames", 42, names},
            {"DeletedOnTheOtherUnit", 6, deletedOnTheOtherUnit},
            {"FormatChangedThroughTheOtherUnit", 10, formatChangedThroughTheOtherUnit},
            {"TargetsInTurn", 8, targetsInTurn},
            {"ArraySizes", kArrayDraws, arraySizes}};
}
