// SPDX-License-Identifier: MIT
// Flat shading: every primitive has the colour of its last vertex, whatever its kind and wherever its vertices lie.
#include "pictures/lighting_reference.h"
#include "pictures/textures.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

struct Vertex {
    GLfloat x, y; // pixels
    GLubyte colour[4];
};

// Six vertices in zigzag from the left to the right in a band of 24 pixels, each of another colour.
std::array<Vertex, 6> zigzag(float bottom)
{
    constexpr GLubyte colours[6][4] = {{255, 0, 0, 255},   {0, 255, 0, 255},   {0, 0, 255, 255},
                                       {255, 255, 0, 255}, {255, 0, 255, 255}, {0, 255, 255, 255}};
    std::array<Vertex, 6> vertices{};
    for (size_t i = 0; i < 6; ++i) {
        vertices[i] = {.x = 8 + 20 * static_cast<float>(i), .y = bottom + (i % 2 ? 24.0f : 0.0f), .colour = {}};
        std::memcpy(vertices[i].colour, colours[i], 4);
    }
    return vertices;
}

Colour colourOf(const Vertex &vertex)
{
    return {vertex.colour[0] / 255.0, vertex.colour[1] / 255.0, vertex.colour[2] / 255.0, vertex.colour[3] / 255.0};
}

// The middle of a triangle of the zigzag must have the last vertex' colour.
Probe probeTriangle(float bottom, size_t a, size_t b, size_t last, const std::string &why)
{
    const auto v = zigzag(bottom);
    const int x = static_cast<int>((v[a].x + v[b].x + v[last].x) / 3);
    const int y = static_cast<int>((v[a].y + v[b].y + v[last].y) / 3);
    return probeOf(x, y, colourOf(v[last]), why);
}

void beginPixels()
{
    pixelProjection();
    glShadeModel(GL_FLAT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
}

// `base`: client memory, or an offset in the bound buffer.
void describe(const void *base)
{
    glVertexPointer(2, GL_FLOAT, sizeof(Vertex), base);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(Vertex), static_cast<const GLubyte *>(base) + offsetof(Vertex, colour));
}

const void *offsetOf(size_t bytes)
{
    return reinterpret_cast<const void *>(static_cast<uintptr_t>(bytes));
}

void drawArraysAt(float bottom, GLenum mode, GLint first, GLsizei count)
{
    const auto vertices = zigzag(bottom);
    describe(vertices.data());
    glDrawArrays(mode, first, count);
}

template <typename Index>
void drawElementsAt(float bottom, GLenum mode, GLenum type, const std::vector<Index> &indices)
{
    const auto vertices = zigzag(bottom);
    describe(vertices.data());
    glDrawElements(mode, static_cast<GLsizei>(indices.size()), type, indices.data());
}

void arrays()
{
    beginPixels();
    drawArraysAt(4, GL_TRIANGLE_STRIP, 0, 6);
    drawArraysAt(36, GL_TRIANGLE_FAN, 1, 5);
    drawArraysAt(68, GL_TRIANGLES, 0, 6);
    drawArraysAt(100, GL_TRIANGLE_STRIP, 2, 4);
}

void elements()
{
    beginPixels();
    drawElementsAt<GLubyte>(4, GL_TRIANGLE_STRIP, GL_UNSIGNED_BYTE, {5, 4, 3, 2, 1, 0});
    drawElementsAt<GLushort>(36, GL_TRIANGLE_FAN, GL_UNSIGNED_SHORT, {0, 1, 2, 3});
    drawElementsAt<GLushort>(68, GL_TRIANGLES, GL_UNSIGNED_SHORT, {1, 2, 0, 3, 4, 5, 5}); // the last one is left over
    drawElementsAt<GLubyte>(100, GL_TRIANGLES, GL_UNSIGNED_BYTE, {2, 1, 0, 5, 4, 3});
}

// Two zigzags behind another in one buffer and their indices in another, drawn from offsets.
void buffers()
{
    std::array<Vertex, 12> vertices{};
    std::memcpy(vertices.data(), zigzag(4).data(), sizeof(Vertex) * 6);
    std::memcpy(&vertices[6], zigzag(36).data(), sizeof(Vertex) * 6);
    const GLushort indices[] = {9, 9, 9, 0, 1, 2, 3, 4, 5};
    GLuint names[2];
    glGenBuffers(2, names);
    glBindBuffer(GL_ARRAY_BUFFER, names[0]);
    glBufferData(GL_ARRAY_BUFFER, sizeof vertices, nullptr, GL_DYNAMIC_DRAW);
    glBufferSubData(GL_ARRAY_BUFFER, 0, sizeof vertices, vertices.data());
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, names[1]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof indices, indices, GL_STATIC_DRAW);

    beginPixels();
    describe(offsetOf(0));
    glDrawElements(GL_TRIANGLE_STRIP, 6, GL_UNSIGNED_SHORT, offsetOf(3 * sizeof(GLushort)));
    describe(offsetOf(6 * sizeof(Vertex)));
    glDrawElements(GL_TRIANGLE_STRIP, 6, GL_UNSIGNED_SHORT, offsetOf(3 * sizeof(GLushort)));

    // Other contents under the same description, first in part and then as a whole.
    const auto third = zigzag(68);
    glBufferSubData(GL_ARRAY_BUFFER, 6 * sizeof(Vertex), 6 * sizeof(Vertex), third.data());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
    const auto fourth = zigzag(100);
    std::memcpy(&vertices[6], fourth.data(), sizeof(Vertex) * 6);
    glBufferData(GL_ARRAY_BUFFER, sizeof vertices, vertices.data(), GL_STATIC_DRAW);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
}

// Positions in a buffer and colours in client memory, then the other way round; then a plain draw from what is left.
void mixedSources()
{
    const auto first = zigzag(4);
    const auto second = zigzag(36);
    GLuint name;
    glGenBuffers(1, &name);
    glBindBuffer(GL_ARRAY_BUFFER, name);
    glBufferData(GL_ARRAY_BUFFER, sizeof first, first.data(), GL_STATIC_DRAW);
    beginPixels();
    describe(offsetOf(0));
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(Vertex), second[0].colour);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
    describe(second.data());
    glBindBuffer(GL_ARRAY_BUFFER, name);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(Vertex), offsetOf(offsetof(Vertex, colour)));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);

    glShadeModel(GL_SMOOTH);
    glDisableClientState(GL_COLOR_ARRAY);
    glColor4f(1, 1, 1, 1);
    glTranslatef(0, 32, 0);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
    glShadeModel(GL_FLAT);
    glColor4f(1, 0.5f, 0, 1);
    glTranslatef(0, 32, 0);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
}

// Types of positions and colours other than floats and bytes, packed tightly or not.
void types()
{
    const GLshort shorts[] = {8, 4, 28, 28, 48, 4, 68, 28};
    const GLfixed fixed[] = {8 << 16, 36 << 16, 28 << 16, 60 << 16, 48 << 16, 36 << 16, 68 << 16, 60 << 16};
    const GLbyte bytes[] = {8, 68, 0, 28, 92, 0, 48, 68, 0, 68, 92, 0};
    const GLfixed fixedColours[] = {1 << 16, 0, 0,       1 << 16, 0,       1 << 16, 0, 1 << 16,
                                    0,       0, 1 << 16, 1 << 16, 1 << 16, 1 << 16, 0, 1 << 16};
    const GLfloat floatColours[] = {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 1, 1, 1, 0, 1};
    beginPixels();
    glVertexPointer(2, GL_SHORT, 0, shorts);
    glColorPointer(4, GL_FIXED, 0, fixedColours);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glVertexPointer(2, GL_FIXED, 0, fixed);
    glColorPointer(4, GL_FLOAT, 0, floatColours);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glVertexPointer(3, GL_BYTE, 0, bytes);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

const Light kLight = {.diffuse = {0.7, 0.6, 0.5, 1}, .specular = {0.2, 0.2, 0.2, 1}, .position = {0.3, 0.5, 1}};

// Both sides of a lit strip: from the front, turned, and with either side culled.
void litSides()
{
    setLights({kLight});
    beginPixels();
    glDisableClientState(GL_COLOR_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    const GLfloat normals[] = {0, 0, 1, 0.6f, 0, 0.8f, 0, 0.6f, 0.8f, -0.6f, 0, 0.8f, 0, -0.6f, 0.8f, 0, 0, -1};
    glNormalPointer(GL_FLOAT, 0, normals);
    const auto vertices = zigzag(4);
    glVertexPointer(2, GL_FLOAT, sizeof(Vertex), vertices.data());
    const GLubyte turned[] = {1, 0, 3, 2, 5, 4};
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
    glTranslatef(0, 32, 0);
    glDrawElements(GL_TRIANGLE_STRIP, 6, GL_UNSIGNED_BYTE, turned);
    glEnable(GL_CULL_FACE);
    for (const GLenum face : {GL_BACK, GL_FRONT}) {
        glCullFace(face);
        glTranslatef(0, 32, 0);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
    }
}

// Texture coordinates and fog still run smoothly over each flat triangle, in perspective.
void texturedInPerspective()
{
    const GLfloat positions[] = {-1, -1, -1, 1, -1, -1, -2, 3, -4, 2, 3, -4};
    const GLfloat coordinates[] = {0, 0, 1, 0, 0, 1, 1, 1};
    const GLubyte colours[] = {255, 0, 0, 255, 0, 255, 0, 255, 255, 255, 128, 255, 128, 255, 255, 255};
    const GLfloat fogColour[] = {0.5f, 0.5f, 0.5f, 1};
    quartersTexture();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, 1);
    glFogf(GL_FOG_END, 8);
    glFogfv(GL_FOG_COLOR, fogColour);
    beginPixels();
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustumf(-1, 1, -1, 1, 1, 10);
    glMatrixMode(GL_MODELVIEW);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, positions);
    glTexCoordPointer(2, GL_FLOAT, 0, coordinates);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, colours);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// Lines take the colour of their second vertex, and the loop's last one that of the first vertex.
void lines()
{
    beginPixels();
    for (const float width : {1.0f, 5.0f}) {
        glLineWidth(width);
        const float bottom = width > 1 ? 68 : 4;
        drawArraysAt(bottom, GL_LINE_STRIP, 0, 6);
        drawElementsAt<GLubyte>(bottom + 32, GL_LINE_LOOP, GL_UNSIGNED_BYTE, {0, 2, 5, 1});
    }
}

// Every triangle of four strips, one in each band.
std::vector<Probe> bandProbes()
{
    std::vector<Probe> probes;
    for (const auto &[bottom, why] : {std::pair{4.0f, "the buffer's first part"},
                                      {36.0f, "its second part"},
                                      {68.0f, "a part replaced"},
                                      {100.0f, "all replaced"}}) {
        for (size_t last = 2; last < 6; ++last)
            probes.push_back(probeTriangle(bottom, last - 2, last - 1, last, why));
    }
    return probes;
}

std::vector<Probe> lineProbes()
{
    const auto strip = zigzag(68);
    const auto loop = zigzag(100);
    const auto middle = [](const Vertex &a, const Vertex &b, const std::string &why) {
        return probeOf(static_cast<int>((a.x + b.x) / 2), static_cast<int>((a.y + b.y) / 2), colourOf(b), why);
    };
    return {middle(strip[0], strip[1], "the first of the strip"), middle(strip[4], strip[5], "its last"),
            middle(loop[0], loop[2], "the first of the loop"), middle(loop[1], loop[0], "its closing line")};
}

// Points have one vertex each.
void points()
{
    beginPixels();
    glPointSize(8);
    drawArraysAt(52, GL_POINTS, 0, 6);
}

} // namespace

std::vector<Scene> flatScenes()
{
    const auto pointProbe = zigzag(52);
    return {
        {"FlatArrays",
         arrays,
         {probeTriangle(4, 0, 1, 2, "strip"), probeTriangle(4, 3, 4, 5, "strip"),
          probeTriangle(36, 1, 4, 5, "the last of the fan"), probeTriangle(68, 0, 1, 2, "triangles"),
          probeTriangle(68, 3, 4, 5, "triangles"), probeTriangle(100, 2, 3, 4, "strip from the third vertex"),
          probeOf(20, 108, kEmpty, "before the third vertex")}},
        {"FlatElements",
         elements,
         {probeTriangle(4, 5, 4, 3, "backwards"), probeTriangle(4, 2, 1, 0, "backwards"),
          probeTriangle(36, 0, 1, 2, "fan"), probeTriangle(68, 1, 2, 0, "the first vertex is the last"),
          probeTriangle(68, 3, 4, 5, "the last is the last"), probeTriangle(100, 2, 1, 0, "bytes")}},
        {"FlatFromBuffers", buffers, bandProbes()},
        {"FlatFromMixedSources",
         mixedSources,
         {probeTriangle(4, 0, 1, 2, "positions from the buffer"), probeTriangle(36, 3, 4, 5, "colours from the buffer"),
          probeOf(48, 78, {1, 1, 1, 1}, "smooth afterwards"), probeOf(48, 110, {1, 0.5, 0, 1}, "one colour")}},
        {"FlatTypes",
         types,
         {probeTriangle(4, 0, 1, 2, "shorts"), probeTriangle(36, 1, 2, 3, "fixed"),
          probeTriangle(68, 0, 1, 2, "bytes")}},
        {"FlatLitSides", litSides, {}, {.tolerance = 3}},
        {"FlatTexturedInPerspective", texturedInPerspective, {}, {.tolerance = 3, .differingPixels = 6}},
        {"FlatLines", lines, lineProbes()},
        {"FlatPoints",
         points,
         {probeOf(static_cast<int>(pointProbe[3].x), static_cast<int>(pointProbe[3].y), colourOf(pointProbe[3]),
                  "its own colour")}},
    };
}
