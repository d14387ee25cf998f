// SPDX-License-Identifier: MIT
// Cube maps: which face and texel a direction meets, both kinds of generated coordinates, levels, two units.
#include "pictures/extensions.h"
#include "pictures/lighting_reference.h"
#include "pictures/textures.h"

#include <cmath>

namespace {

const Colour kFaces[6] = {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}, {1, 1, 0, 1}, {0, 1, 1, 1}, {1, 0, 1, 1}};

// A face of 2 x 2 texels in its colour, the later ones darker: 1, 0.8, 0.6, 0.4.
Colour faceTexel(int face, int texel)
{
    const double light = 1 - 0.2 * texel;
    const Colour &c = kFaces[face];
    return {c.r * light, c.g * light, c.b * light, 1};
}

void cubeMap()
{
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, name);
    nearestFilter(GL_TEXTURE_CUBE_MAP_OES);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (int face = 0; face < 6; ++face) {
        std::vector<GLubyte> texels;
        for (int texel = 0; texel < 4; ++texel) {
            const Colour colour = faceTexel(face, texel);
            for (const double channel : {colour.r, colour.g, colour.b})
                texels.push_back(static_cast<GLubyte>(std::lround(byteOf(channel))));
        }
        glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + static_cast<GLenum>(face), 0, GL_RGB, 2, 2, 0, GL_RGB,
                     GL_UNSIGNED_BYTE, texels.data());
    }
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
}

// The major axis chooses the face; sc and tc of the standard's table choose the texel.
Colour lookup(const Vec3 &d)
{
    const double x = std::abs(d.x);
    const double y = std::abs(d.y);
    const double z = std::abs(d.z);
    int face;
    double sc, tc, major;
    if (x >= y && x >= z)
        face = d.x > 0 ? 0 : 1, sc = d.x > 0 ? -d.z : d.z, tc = -d.y, major = x;
    else if (y >= z)
        face = d.y > 0 ? 2 : 3, sc = d.x, tc = d.y > 0 ? d.z : -d.z, major = y;
    else
        face = d.z > 0 ? 4 : 5, sc = d.z > 0 ? d.x : -d.x, tc = -d.y, major = z;
    const int s = (sc / major + 1) / 2 < 0.5 ? 0 : 1;
    const int t = (tc / major + 1) / 2 < 0.5 ? 0 : 1;
    return faceTexel(face, 2 * t + s);
}

// All texels of all faces: each axis with offsets to either side along the two others.
std::vector<Cell> directionCells()
{
    std::vector<Cell> cells;
    for (int axis = 0; axis < 6; ++axis) {
        for (int corner = 0; corner < 4; ++corner) {
            double d[3];
            d[axis / 2] = axis % 2 ? -1 : 1;
            d[(axis / 2 + 1) % 3] = corner % 2 ? 0.5 : -0.4;
            d[(axis / 2 + 2) % 3] = corner / 2 ? 0.6 : -0.3;
            const Vec3 direction = {d[0], d[1], d[2]};
            cells.push_back({"a direction",
                             [=](const Place &place) {
                                 const GLfloat positions[] = {place.left, place.bottom, place.right, place.bottom,
                                                              place.left, place.top,    place.right, place.top};
                                 cubeMap();
                                 glMultiTexCoord4f(GL_TEXTURE0, static_cast<GLfloat>(direction.x),
                                                   static_cast<GLfloat>(direction.y), static_cast<GLfloat>(direction.z),
                                                   1);
                                 glEnableClientState(GL_VERTEX_ARRAY);
                                 glVertexPointer(2, GL_FLOAT, 0, positions);
                                 glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
                             },
                             [=](const Place &) { return lookup(direction); }});
        }
    }
    return cells;
}

const Vec3 kNormals[] = {{1, 0.1, 0.2},   {-1, 0.2, -0.3}, {0.2, 1, -0.1},   {-0.2, -1, 0.3},  {0.3, -0.2, 1},
                         {-0.1, 0.3, -1}, {0.6, 0.5, 0.4}, {-0.4, 0.5, 0.6}, {0.4, -0.6, -0.5}};

// The generated coordinates are the eye normal; the texture matrix works on them.
std::vector<Cell> normalMapCells()
{
    std::vector<Cell> cells;
    for (const Vec3 &normal : kNormals) {
        cells.push_back({"the normal",
                         [=](const Place &place) {
                             cubeMap();
                             texGeni(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_NORMAL_MAP_OES);
                             glEnable(GL_TEXTURE_GEN_STR_OES);
                             drawLitPoint(place, normal);
                         },
                         [=](const Place &) { return lookup(normal); }});
    }
    return cells;
}

// Turned by 90 degrees about y: x becomes -z.
void turnedNormalMap()
{
    cubeMap();
    glEnable(GL_TEXTURE_GEN_STR_OES);
    glRotatef(90, 0, 1, 0);
    drawLitPoint({-1, -1, 1, 1}, {1, 0.2, 0.3});
}

void normalisedNormalMap()
{
    cubeMap();
    texGenx(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_NORMAL_MAP_OES);
    glEnable(GL_TEXTURE_GEN_STR_OES);
    glEnable(GL_NORMALIZE);
    glMatrixMode(GL_TEXTURE);
    glTranslatef(0, 0, 0.75f); // more than the unit normal's x, less than the long one's
    glMatrixMode(GL_MODELVIEW);
    drawLitPoint({-1, -1, 1, 1}, {9, 1.5, 12});
}

// r = u - 2 n (n . u), with u from the eye to the vertex.
Vec3 reflected(const Vec3 &position, const Vec3 &normal)
{
    const Vec3 u = unit(position);
    const double along = 2 * dot(normal, u);
    return {u.x - along * normal.x, u.y - along * normal.y, u.z - along * normal.z};
}

std::vector<Cell> reflectionMapCells()
{
    constexpr double kDepth = -0.9;
    std::vector<Cell> cells;
    for (const Vec3 &direction : kNormals) {
        const Vec3 normal = unit(direction);
        cells.push_back({"the reflection",
                         [=](const Place &place) {
                             cubeMap();
                             texGenf(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES,
                                     static_cast<GLfloat>(GL_REFLECTION_MAP_OES));
                             glEnable(GL_TEXTURE_GEN_STR_OES);
                             drawLitPoint(place, normal, static_cast<float>(kDepth));
                         },
                         [=](const Place &place) {
                             return lookup(reflected({middleX(place), middleY(place), kDepth}, normal));
                         }});
    }
    return cells;
}

// Generated on one unit only; lighting counts beside it.
void litReflection()
{
    static const GLint mode[] = {GL_REFLECTION_MAP_OES};
    cubeMap();
    setEnv(GL_TEXTURE_ENV_MODE, GL_MODULATE);
    texGeniv(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, mode);
    glEnable(GL_TEXTURE_GEN_STR_OES);
    setLights({{}});
    drawLitPoint({-1, -1, 1, 1}, {0, 0, 1}, -0.9f);
}

// The cube map wins over a 2D texture enabled beside it, and the 2D one comes back.
void cubeBesideTexture()
{
    quartersTexture();
    glEnable(GL_TEXTURE_2D);
    glMultiTexCoord4f(GL_TEXTURE0, 0.25f, 0.1f, 0.1f, 1);
    cubeMap();
    const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisable(GL_TEXTURE_CUBE_MAP_OES);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 64, 128);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// A cube map on unit 1 behind a plain texture on unit 0.
void cubeOnUnit1()
{
    plainTexture(GL_RGB, Colour{0.5, 0.5, 0.5, 1});
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE1);
    cubeMap();
    setEnv(GL_TEXTURE_ENV_MODE, GL_MODULATE);
    texGeni(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES);
    glEnable(GL_TEXTURE_GEN_STR_OES);
    drawLitPoint({-1, -1, 1, 1}, {0, 0, 1}, -0.9f);
}

// Mipmaps of two red and two blue texels a face appear with the sixth face.
void generatedCubeMipmaps()
{
    static const GLubyte texels[] = {255, 0, 0, 0, 0, 255, 255, 0, 0, 0, 0, 255};
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, name);
    nearestFilter(GL_TEXTURE_CUBE_MAP_OES);
    glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_MIN_FILTER, GL_NEAREST_MIPMAP_NEAREST);
    glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, GL_GENERATE_MIPMAP, GL_TRUE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (GLenum face = 0; face < 6; ++face)
        glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face, 0, GL_RGB, 2, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, texels);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    // Two pixels that see several faces: far more texels than pixels.
    static const GLfloat positions[] = {0, 0, 0.03125f, 0, 0, 0.03125f, 0.03125f, 0.03125f};
    static const GLfloat directions[] = {1, -8, -8, 1, -8, 8, 1, 8, -8, 1, 8, 8};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glTexCoordPointer(3, GL_FLOAT, 0, directions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

} // namespace

std::vector<Scene> cubeMapScenes()
{
    const NativeMatch normals = {.instead = "the machine's own normal maps set the S coordinate only"};
    const Colour facing = lookup(reflected({0, 0, -0.9}, {0, 0, 1}));
    return {
        boardScene("CubeDirections", directionCells()),
        boardScene("CubeNormalMap", normalMapCells(), normals),
        {"TurnedCubeNormalMap",
         turnedNormalMap,
         {probeOf(64, 64, lookup({0.3, 0.2, -1}), "the normal turned about y")},
         normals},
        {"NormalisedCubeNormalMap",
         normalisedNormalMap,
         // 9, 1.5, 12 has length 15.07: 0.597, 0.0995, 0.796, moved to 1.546 along z.
         {probeOf(64, 64, lookup({0.597, 0.0995, 1.546}), "a unit normal, moved by the texture matrix")},
         normals},
        boardScene("CubeReflectionMap", reflectionMapCells()),
        {"LitCubeReflection",
         litReflection,
         {probeOf(64, 64, {facing.r * 0.84, facing.g * 0.84, facing.b * 0.84, 1}, "0.84 times the face")},
         {.tolerance = 3}},
        {"CubeBesideTexture",
         cubeBesideTexture,
         {probeOf(96, 64, lookup({0.25, 0.1, 0.1}), "the cube map"), probeOf(32, 64, kQuarterColours[0], "2D again")}},
        {"CubeOnUnit1",
         cubeOnUnit1,
         {probeOf(64, 64, {facing.r * 128 / 255, facing.g * 128 / 255, facing.b * 128 / 255, 1}, "half the face")}},
        {"GeneratedCubeMipmaps",
         generatedCubeMipmaps,
         {probeOf(64, 64, {0.5, 0, 0.5, 1}, "the mean of two colours")},
         {},
         2},
    };
}
