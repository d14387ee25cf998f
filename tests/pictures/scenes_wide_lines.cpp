// SPDX-License-Identifier: MIT
// Wide and smooth lines in all directions, at the edges of the view volume and behind the eye, and with everything that
// runs along them.
#include "pictures/extensions.h"
#include "pictures/lighting_reference.h"
#include "pictures/textures.h"

#include <cmath>
#include <numbers>

namespace {

void drawLines(GLenum mode, GLint components, const std::vector<GLfloat> &positions)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(components, GL_FLOAT, 0, positions.data());
    glDrawArrays(mode, 0, static_cast<GLsizei>(positions.size()) / components);
}

constexpr int kRays = 12;
constexpr float kRayStart = 20; // pixels from the middle
constexpr float kRayEnd = 60;

// Away from pixel edges, so that every implementation rounds alike.
float rayAngle(int ray)
{
    return (static_cast<float>(ray) + 0.3f) / kRays * 2 * std::numbers::pi_v<float>;
}

std::vector<GLfloat> rays()
{
    std::vector<GLfloat> positions;
    for (int ray = 0; ray < kRays; ++ray)
        for (const float radius : {kRayStart, kRayEnd}) {
            positions.push_back(64.2f + radius * std::cos(rayAngle(ray)));
            positions.push_back(64.3f + radius * std::sin(rayAngle(ray)));
        }
    return positions;
}

Probe rayProbe(int ray, float radius, const Colour &colour, const std::string &why)
{
    const int x = static_cast<int>(64.2f + radius * std::cos(rayAngle(ray)));
    const int y = static_cast<int>(64.3f + radius * std::sin(rayAngle(ray)));
    return probeOf(x, y, colour, why + ", ray " + std::to_string(ray));
}

std::vector<Probe> rayProbes()
{
    std::vector<Probe> probes;
    for (int ray = 0; ray < kRays; ++ray) {
        probes.push_back(rayProbe(ray, 22, kWhite, "its start"));
        probes.push_back(rayProbe(ray, 58, kWhite, "its end"));
        probes.push_back(rayProbe(ray, 14, kEmpty, "before its start"));
    }
    return probes;
}

void starOfWideLines()
{
    pixelProjection();
    glLineWidth(5);
    drawLines(GL_LINES, 2, rays());
}

void starOfSmoothLines()
{
    pixelProjection();
    glEnable(GL_LINE_SMOOTH);
    glLineWidth(4);
    drawLines(GL_LINES, 2, rays());
}

void frustum()
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustumf(-1, 1, -1, 1, 1, 10);
    glMatrixMode(GL_MODELVIEW);
}

// Rails from below the eye to the distance: their near ends lie behind the eye, on either side of the list.
void railsBehindTheEye()
{
    frustum();
    glLineWidth(6);
    glColor4f(1, 0, 0, 1);
    drawLines(GL_LINES, 3, {-0.6f, -0.8f, 2, -0.6f, -0.8f, -9, 0.6f, -0.8f, -9, 0.6f, -0.8f, 2});
    glColor4f(0, 1, 0, 1);
    drawLines(GL_LINE_STRIP, 3, {-3, 1.5f, 1, -3, 1.5f, -4, 3, 1.5f, -4, 3, 1.5f, 1});
    glColor4f(0, 0, 1, 1);
    drawLines(GL_LINES, 3, {0, 0, 5, 0.2f, 0.1f, 2}); // wholly behind the eye
}

// A rail's middle is at x / z and y / z; the strip's middle piece at z = -4.
std::vector<Probe> railProbes()
{
    const auto at = [](double x, double y, double depth) {
        return std::pair{static_cast<int>((x / depth + 1) * 64), static_cast<int>((y / depth + 1) * 64)};
    };
    const auto [leftX, leftY] = at(-0.6, -0.8, 2);
    const auto [rightX, rightY] = at(0.6, -0.8, 1.2);
    const auto [topX, topY] = at(0.5, 1.5, 4);
    return {probeOf(leftX, leftY, {1, 0, 0, 1}, "the left rail"),
            probeOf(rightX, rightY, {1, 0, 0, 1}, "the right rail"), probeOf(topX, topY, {0, 1, 0, 1}, "across"),
            probeOf(64, 64, kEmpty, "nothing from behind")};
}

// A line along each edge: its middle inside, on the way out, or wholly outside.
void linesAtTheEdges()
{
    pixelProjection();
    glLineWidth(9);
    drawLines(GL_LINES, 2, {10, 2.5f, 60, 2.5f, 125.5f, 10, 125.5f, 60});     // half of the width is inside
    drawLines(GL_LINES, 2, {70, -2.5f, 118, -2.5f, 130.5f, 70, 130.5f, 118}); // the middle is outside
    drawLines(GL_LINES, 2, {-30, 90, 40, 150});                               // a corner is cut off
    drawLines(GL_LINES, 2, {-20, 40.5f, 20, 40.5f, 100, 40.5f, 200, 40.5f});
}

void depthTestedLines()
{
    pixelProjection();
    glEnable(GL_DEPTH_TEST);
    glLineWidth(7);
    glColor4f(1, 0, 0, 1);
    drawLines(GL_LINES, 3, {10, 64.5f, 0.9f, 118, 64.5f, -0.9f});
    glColor4f(0, 0, 1, 1);
    drawLines(GL_LINES, 3, {30.5f, 10, 0, 30.5f, 118, 0, 98.5f, 10, 0, 98.5f, 118, 0});
}

// Culling and polygon offsets are for polygons.
void culledAndOffset()
{
    glEnable(GL_CULL_FACE);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(0, 1e8f);
    glCullFace(GL_FRONT_AND_BACK);
    depthTestedLines();
}

const Light kLight = {.diffuse = {0.7, 0.6, 0.5, 1}, .specular = {0, 0, 0, 1}, .position = {0.3, 0.5, 1}};

// Lit, textured and fogged at once, colours from the light at either end.
void litTexturedFogged()
{
    const GLfloat normals[] = {0, 0, 1, 0.6f, 0, 0.8f};
    const GLfloat coordinates[] = {0, 0.25f, 1, 0.25f};
    halvesTexture();
    setLights({kLight});
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, -1);
    glFogf(GL_FOG_END, 2);
    pixelProjection();
    glLineWidth(9);
    glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glNormalPointer(GL_FLOAT, 0, normals);
    glTexCoordPointer(2, GL_FLOAT, 0, coordinates);
    drawLines(GL_LINES, 3, {10, 64.5f, 0.5f, 118, 64.5f, -0.5f});
}

// Lines, loops and strips by indices out of buffers, at offsets, with widths that change between the draws.
void fromBuffers()
{
    const GLshort positions[] = {0, 0, 0, 0, 10, 10, 50, 10, 50, 50, 10, 50, 70, 70, 118, 70, 118, 118, 70, 118};
    const GLubyte indices[] = {9, 9, 2, 3, 4, 5, 6, 7, 8, 9};
    GLuint names[2];
    glGenBuffers(2, names);
    glBindBuffer(GL_ARRAY_BUFFER, names[0]);
    glBufferData(GL_ARRAY_BUFFER, sizeof positions, positions, GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, names[1]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof indices, indices, GL_STATIC_DRAW);
    pixelProjection();
    glTranslatef(0.5f, 0.5f, 0); // to the middle of pixels
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_SHORT, 0, nullptr);
    glLineWidth(5);
    glDrawElements(GL_LINE_LOOP, 4, GL_UNSIGNED_BYTE, reinterpret_cast<const void *>(2));
    glLineWidth(1);
    glColor4f(0, 1, 0, 1);
    glDrawElements(GL_LINE_LOOP, 4, GL_UNSIGNED_BYTE, reinterpret_cast<const void *>(6));
    glLineWidth(7);
    glColor4f(1, 0, 0, 1);
    glVertexPointer(2, GL_SHORT, 8, reinterpret_cast<const void *>(6 * 2 * sizeof(GLshort))); // every other vertex
    glDrawArrays(GL_LINES, 0, 2);
}

// The second end is moved by a matrix of its own.
void skinnedWideLine()
{
    const GLfloat weights[] = {1, 1};
    const GLubyte indices[] = {2, 5};
    glEnable(GL_MATRIX_PALETTE_OES);
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    for (const GLuint matrix : {2u, 5u}) {
        currentPaletteMatrix(matrix);
        glLoadIdentity();
        glTranslatef(matrix == 5 ? 0.5f : -0.5f, 0.25f, 0);
    }
    glMatrixMode(GL_MODELVIEW);
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    weightPointer(1, GL_FLOAT, 0, weights);
    matrixIndexPointer(1, GL_UNSIGNED_BYTE, 0, indices);
    glLineWidth(8);
    drawLines(GL_LINES, 2, {0, 0, 0, 0});
}

} // namespace

std::vector<Scene> wideLineScenes()
{
    // The standard lets an end be a row of fragments longer or shorter, and clipped corners are not the same
    // everywhere.
    const auto withEnds = [](int pixels) { return NativeMatch{.differingPixels = pixels}; };
    const Colour red = {1, 0, 0, 1};
    const Colour green = {0, 1, 0, 1};
    const Colour blue = {0, 0, 1, 1};
    const std::vector<Probe> crossings = {probeOf(30, 64, red, "the near part"),
                                          probeOf(98, 64, blue, "before the far part"),
                                          probeOf(64, 64, red, "nothing else")};
    return {
        {"StarOfWideLines", starOfWideLines, rayProbes(), withEnds(30)},
        {"StarOfSmoothLines",
         starOfSmoothLines,
         rayProbes(),
         {.instead = "coverage is the library's own curve, see docs/behaviour.md"}},
        {"RailsBehindTheEye", railsBehindTheEye, railProbes(), withEnds(15)},
        {"LinesAtTheEdges",
         linesAtTheEdges,
         {probeOf(30, 0, kWhite, "below"), probeOf(127, 30, kWhite, "right")},
         withEnds(15)},
        {"DepthTestedLines", depthTestedLines, crossings},
        {"CulledAndOffsetLines", culledAndOffset, crossings},
        {"LitTexturedFoggedLine", litTexturedFogged, {}, {.tolerance = 3}},
        {"LinesFromBuffers",
         fromBuffers,
         {probeOf(30, 10, kWhite, "wide"), probeOf(10, 30, kWhite, "closed"),
          probeOf(94, 94, red, "every other vertex"), probeOf(118, 94, green, "thin"),
          probeOf(116, 94, kEmpty, "no wider")},
         withEnds(12)},
        {"SkinnedWideLine",
         skinnedWideLine,
         {probeOf(34, 80, kWhite, "first end"), probeOf(94, 77, kWhite, "second end"),
          probeOf(64, 86, kEmpty, "above")},
         {.instead = "the machine's own ES 1.1 has no matrix palette"}},
    };
}
