// SPDX-License-Identifier: MIT
// Arrays, buffers, primitives, shading.
#include "pictures/scene.h"

#include <cstddef>
#include <cstdint>

namespace {

// Screen corners of the lower-left half of the picture in normalised device coordinates.
constexpr GLfloat kHalf[] = {-1, -1, 1, -1, -1, 1};

void drawHalf(GLenum mode = GL_TRIANGLES)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, kHalf);
    glDrawArrays(mode, 0, 3);
}

void currentColour()
{
    glColor4f(0.2f, 0.4f, 0.6f, 0.8f);
    drawHalf();
}

void byteColour()
{
    glColor4ub(255, 0, 128, 64);
    drawHalf();
}

void fixedColour()
{
    glColor4x(0x4000, 0x8000, 0xC000, 0x10000);
    drawHalf();
}

void colourOutsideRange()
{
    glColor4f(2.0f, -1.0f, 0.5f, 3.0f);
    drawHalf();
}

constexpr GLfloat kCornerColours[] = {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 1};

void smoothTriangle()
{
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(4, GL_FLOAT, 0, kCornerColours);
    drawHalf();
}

void flatTriangle()
{
    glShadeModel(GL_FLAT);
    smoothTriangle();
}

void flatThenSmooth()
{
    flatTriangle();
    glShadeModel(GL_SMOOTH);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 64, 128);
    smoothTriangle();
}

void unsignedByteColours()
{
    static const GLubyte colours[] = {255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 255};
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, colours);
    drawHalf();
}

void fixedArrays()
{
    static const GLfixed positions[] = {-0x8000, -0x8000, 0x8000, -0x8000, -0x8000, 0x8000, 0x8000, 0x8000};
    static const GLfixed colours[] = {0x8000, 0, 0, 0x10000, 0x8000, 0, 0, 0x10000,
                                      0x8000, 0, 0, 0x10000, 0x8000, 0, 0, 0x10000};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(2, GL_FIXED, 0, positions);
    glColorPointer(4, GL_FIXED, 0, colours);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void byteAndShortPositions()
{
    static const GLbyte bytes[] = {-1, -1, 0, 0, -1, 0, -1, 1, 0, 0, 1, 0};
    static const GLshort shorts[] = {0, -1, 1, -1, 0, 1, 1, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glColor4f(0, 1, 0, 1);
    glVertexPointer(3, GL_BYTE, 0, bytes);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glColor4f(0, 0, 1, 1);
    glVertexPointer(2, GL_SHORT, 0, shorts);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

struct Vertex {
    GLfloat position[3];
    GLubyte colour[4];
};
constexpr Vertex kQuad[] = {{{-0.5f, -0.5f, 0}, {255, 255, 0, 255}},
                            {{0.5f, -0.5f, 0}, {255, 255, 0, 255}},
                            {{-0.5f, 0.5f, 0}, {255, 255, 0, 255}},
                            {{0.5f, 0.5f, 0}, {255, 255, 0, 255}}};
constexpr GLushort kQuadIndices[] = {0, 1, 2, 2, 1, 3};

void describeQuad(const void *base)
{
    const auto address = reinterpret_cast<uintptr_t>(base);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(Vertex), reinterpret_cast<const void *>(address));
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(Vertex),
                   reinterpret_cast<const void *>(address + offsetof(Vertex, colour)));
}

void interleavedElements()
{
    describeQuad(kQuad);
    glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, kQuadIndices);
}

void buffersForAll()
{
    GLuint names[2];
    glGenBuffers(2, names);
    glBindBuffer(GL_ARRAY_BUFFER, names[0]);
    glBufferData(GL_ARRAY_BUFFER, sizeof(kQuad), kQuad, GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, names[1]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof(kQuadIndices), kQuadIndices, GL_STATIC_DRAW);
    describeQuad(nullptr);
    glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, nullptr);
}

// Positions from a buffer, colours from client memory, and the other way round, in successive draws.
void mixedBuffersAndClientMemory()
{
    static const GLubyte white[16] = {255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
    GLuint name;
    glGenBuffers(1, &name);
    glBindBuffer(GL_ARRAY_BUFFER, name);
    glBufferData(GL_ARRAY_BUFFER, sizeof(kQuad), kQuad, GL_STATIC_DRAW);
    describeQuad(nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, white);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);

    static const GLfloat corner[] = {-1, -1, -0.5f, -1, -1, -0.5f, -0.5f, -0.5f};
    glBindBuffer(GL_ARRAY_BUFFER, name);
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(Vertex), reinterpret_cast<const void *>(offsetof(Vertex, colour)));
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glVertexPointer(2, GL_FLOAT, 0, corner);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void deletedBufferIsUnbound()
{
    buffersForAll();
    glClear(GL_COLOR_BUFFER_BIT);
    GLint names[2];
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &names[0]);
    glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &names[1]);
    const GLuint both[2] = {static_cast<GLuint>(names[0]), static_cast<GLuint>(names[1])};
    glDeleteBuffers(2, both);
    interleavedElements();
}

void byteIndices()
{
    static const GLubyte indices[] = {3, 2, 1, 0};
    describeQuad(kQuad);
    glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_BYTE, indices);
}

void primitives()
{
    static const GLfloat fan[] = {-0.9f, -0.9f, -0.1f, -0.9f, -0.1f, -0.1f, -0.9f, -0.1f};
    static const GLfloat loop[] = {0.1f, 0.1f, 0.9f, 0.1f, 0.9f, 0.9f, 0.1f, 0.9f};
    static const GLfloat strip[] = {-0.9f, 0.1f, -0.1f, 0.1f, -0.9f, 0.9f, -0.1f, 0.9f};
    static const GLfloat lines[] = {0.1f, -0.8f, 0.9f, -0.8f, 0.1f, -0.3f, 0.9f, -0.3f};
    glEnableClientState(GL_VERTEX_ARRAY);
    glColor4f(1, 0, 0, 1);
    glVertexPointer(2, GL_FLOAT, 0, fan);
    glDrawArrays(GL_TRIANGLE_FAN, 0, 4);
    glColor4f(0, 1, 0, 1);
    glVertexPointer(2, GL_FLOAT, 0, loop);
    glDrawArrays(GL_LINE_LOOP, 0, 4);
    glColor4f(0, 0, 1, 1);
    glVertexPointer(2, GL_FLOAT, 0, strip);
    glDrawArrays(GL_LINE_STRIP, 0, 4);
    glColor4f(1, 1, 0, 1);
    glVertexPointer(2, GL_FLOAT, 0, lines);
    glDrawArrays(GL_LINES, 0, 4);
    glColor4f(1, 1, 1, 1);
    glPointSize(9);
    glVertexPointer(2, GL_FLOAT, 0, lines);
    glDrawArrays(GL_POINTS, 0, 4);
}

void pointsThenTriangles()
{
    glPointSize(20);
    glColor4f(1, 0, 0, 1);
    drawHalf(GL_POINTS);
    glColor4f(0, 1, 0, 1);
    drawHalf();
}

void describedButDisabledVertexArray()
{
    glVertexPointer(2, GL_FLOAT, 0, kHalf);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

void firstAndCount()
{
    static const GLfloat two[] = {-1, -1, 0, -1, -1, 1, 0, -1, 1, -1, 0, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, two);
    glDrawArrays(GL_TRIANGLES, 3, 3);
}

void homogeneousPositions()
{
    static const GLfloat positions[] = {-2, -2, 0, 2, 2, -2, 0, 2, -2, 2, 0, 2, 2, 2, 0, 2};
    glEnableClientState(GL_VERTEX_ARRAY);
    glColor4f(0, 1, 1, 1);
    glVertexPointer(4, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void viewportAndScissor()
{
    glViewport(32, 32, 64, 64);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 64, 128);
    static const GLfloat all[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, all);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void blendedOver()
{
    glClearColor(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(1, 0, 0, 0.25f);
    drawHalf();
}

void clearsFixed()
{
    glClearColorx(0x10000, 0x8000, 0, 0x10000);
    glClear(GL_COLOR_BUFFER_BIT);
}

void stencilMask()
{
    glEnable(GL_STENCIL_TEST);
    glStencilFunc(GL_ALWAYS, 1, 0xFF);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    drawHalf();
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glStencilFunc(GL_EQUAL, 0, 0xFF);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    static const GLfloat all[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glVertexPointer(2, GL_FLOAT, 0, all);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

} // namespace

std::vector<Scene> drawingScenes()
{
    const char *inside = "the current colour";
    const char *outside = "the clear colour";
    const Probe cleared = {120, 120, 0, 0, 0, 0, outside};
    return {
        {"CurrentColour", currentColour, {{20, 20, 51, 102, 153, 204, inside}, cleared}},
        {"ByteColour", byteColour, {{20, 20, 255, 0, 128, 64, "n / 255"}}},
        {"FixedColour", fixedColour, {{20, 20, 63.75, 127.5, 191.25, 255, "n / 65536"}}},
        {"ColourOutsideRange", colourOutsideRange, {{20, 20, 255, 0, 127.5, 255, "clamped by the colour buffer"}}},
        {"SmoothTriangle",
         smoothTriangle,
         // Barycentric weights of the centre of pixel 42, 42: (43.5 / 128 of either side), 1 - 2 * that for the first.
         {{42, 42, 255 - 2 * 255 * 42.5 / 128, 255 * 42.5 / 128, 255 * 42.5 / 128, 255, "weighted corner colours"},
          {0, 0, 255 - 255.0 / 128, 255 * 0.5 / 128, 255 * 0.5 / 128, 255, "next to the red corner"}}},
        {"FlatTriangle", flatTriangle, {{42, 42, 0, 0, 255, 255, "the last vertex's colour"}}},
        {"FlatThenSmooth",
         flatThenSmooth,
         {{100, 10, 0, 0, 255, 255, "flat outside the scissor box"},
          {42, 42, 255 - 2 * 255 * 42.5 / 128, 255 * 42.5 / 128, 255 * 42.5 / 128, 255, "smooth inside"}}},
        {"UnsignedByteColours", unsignedByteColours, {{42, 42, 255, 0, 0, 255, "normalised"}}},
        {"FixedArrays",
         fixedArrays,
         {{64, 64, 127.5, 0, 0, 255, "0x8000 is one half"}, {16, 64, 0, 0, 0, 0, "outside -0.5..0.5"}}},
        {"ByteAndShortPositions",
         byteAndShortPositions,
         {{30, 64, 0, 255, 0, 255, "bytes as whole numbers"}, {100, 64, 0, 0, 255, 255, "shorts as whole numbers"}}},
        {"InterleavedElements", interleavedElements, {{64, 64, 255, 255, 0, 255, inside}, cleared}},
        {"BuffersForAll", buffersForAll, {{64, 64, 255, 255, 0, 255, inside}, cleared}},
        {"MixedBuffersAndClientMemory",
         mixedBuffersAndClientMemory,
         {{64, 64, 255, 255, 255, 255, "client colours"}, {16, 16, 255, 255, 0, 255, "colours of the buffer"}}},
        {"DeletedBufferIsUnbound", deletedBufferIsUnbound, {{64, 64, 255, 255, 0, 255, inside}, cleared}},
        {"ByteIndices", byteIndices, {{64, 64, 255, 255, 0, 255, inside}, cleared}},
        {"Primitives", primitives, {{32, 32, 255, 0, 0, 255, "the fan"}}},
        {"PointsThenTriangles", pointsThenTriangles, {{42, 42, 0, 255, 0, 255, "the triangle is no point"}}},
        {"DescribedButDisabledVertexArray",
         describedButDisabledVertexArray,
         {{42, 42, 255, 255, 255, 255, "a described vertex array is used, enabled or not"}},
         {.instead = "the standard draws nothing then; ours draws, see docs/behaviour.md"}},
        {"FirstAndCount",
         firstAndCount,
         {{96, 20, 255, 255, 255, 255, "the second triangle"}, {20, 20, 0, 0, 0, 0, "not the first"}}},
        {"HomogeneousPositions", homogeneousPositions, {{5, 5, 0, 255, 255, 255, "2 / 2 reaches the corner"}}},
        {"ViewportAndScissor",
         viewportAndScissor,
         {{48, 64, 255, 255, 255, 255, "in both"},
          {80, 64, 0, 0, 0, 0, "outside the scissor box"},
          {16, 64, 0, 0, 0, 0, "outside the viewport"}}},
        {"BlendedOver", blendedOver, {{20, 20, 63.75, 0, 191.25, 255 * (0.0625 + 0.75), "0.25 red over blue"}}},
        {"ClearsFixed", clearsFixed, {{64, 64, 255, 127.5, 0, 255, "1, 0.5, 0, 1"}}},
        {"StencilMask", stencilMask, {{120, 120, 255, 255, 255, 255, "stencil 0"}, {20, 20, 0, 0, 0, 0, "stencil 1"}}},
    };
}
