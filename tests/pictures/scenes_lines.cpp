// SPDX-License-Identifier: MIT
// Lines: widths in both directions, loops and strips, colours along them, coverage of smooth ones.
#include "pictures/textures.h"

#include <algorithm>
#include <cmath>

namespace {

void drawLines(GLenum mode, const std::vector<GLfloat> &positions)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions.data());
    glDrawArrays(mode, 0, static_cast<GLsizei>(positions.size() / 2));
}

constexpr int kWidths[] = {1, 2, 3, 6, 9, 14, 20};

// Middle of the line of that number; odd widths are centred on a pixel, even ones between two.
float middleOf(size_t line)
{
    const float at = 6.0f + 16.0f * static_cast<float>(line) + static_cast<float>(line * line) / 3.0f;
    return std::floor(at) + (kWidths[line] % 2 ? 0.5f : 0.0f);
}

Scene widths(const char *name, bool upright)
{
    std::vector<Probe> probes;
    for (size_t i = 0; i < std::size(kWidths); ++i) {
        const int first = static_cast<int>(std::floor(middleOf(i) - static_cast<float>(kWidths[i]) / 2));
        const int past = first + kWidths[i];
        const auto probe = [&](int at, const Colour &colour) {
            const std::string why = std::to_string(kWidths[i]) + " wide";
            probes.push_back(upright ? probeOf(at, 64, colour, why) : probeOf(64, at, colour, why));
        };
        probe(first, kWhite);
        probe(past - 1, kWhite);
        probe(first - 1, kEmpty);
        probe(past, kEmpty);
    }
    const auto draw = [upright] {
        pixelProjection();
        for (size_t i = 0; i < std::size(kWidths); ++i) {
            const float at = middleOf(i);
            glLineWidth(static_cast<GLfloat>(kWidths[i]));
            if (upright)
                drawLines(GL_LINES, {at, 8, at, 120});
            else
                drawLines(GL_LINES, {8, at, 120, at});
        }
    };
    return {name, draw, probes};
}

void diagonal()
{
    pixelProjection();
    glLineWidthx(8 << 16);
    drawLines(GL_LINES, {10, 10, 118, 118});
}

void loopsAndStrips()
{
    pixelProjection();
    glLineWidth(4);
    glColor4f(1, 0, 0, 1);
    drawLines(GL_LINE_LOOP, {10, 10, 60, 10, 60, 60, 10, 60});
    glColor4f(0, 1, 0, 1);
    drawLines(GL_LINE_STRIP, {70, 70, 120, 70, 120, 120, 70, 120});
}

// From red to blue, smooth below and flat above: flat lines have the colour of their second vertex.
void coloursAlong()
{
    static const GLubyte colours[] = {255, 0, 0, 255, 0, 0, 255, 255};
    pixelProjection();
    glLineWidth(10);
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, colours);
    drawLines(GL_LINES, {0, 32, 128, 32});
    glShadeModel(GL_FLAT);
    drawLines(GL_LINES, {0, 96, 128, 96});
}

void texturedLine()
{
    static const GLfloat coordinates[] = {0, 0.5f, 1, 0.5f};
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    pixelProjection();
    glLineWidth(6);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glTexCoordPointer(2, GL_FLOAT, 0, coordinates);
    drawLines(GL_LINES, {0, 64, 128, 64});
}

// Smooth horizontal lines, not blended: coverage shows in alpha.
constexpr int kSmoothWidth = 10;

void smoothLine()
{
    pixelProjection();
    glEnable(GL_LINE_SMOOTH);
    glLineWidth(kSmoothWidth);
    glColor4f(1, 0.5f, 0, 0.8f);
    drawLines(GL_LINES, {8, 64, 120, 64});
}

void smoothFlatColouredLine()
{
    static const GLubyte colours[] = {255, 0, 0, 255, 0, 0, 255, 128};
    glShadeModel(GL_FLAT);
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, colours);
    smoothLine();
}

void smoothThenPlain()
{
    smoothLine();
    glDisable(GL_LINE_SMOOTH);
    drawLines(GL_LINES, {64, 8, 64, 120});
}

// The line is a pixel wider than asked for; across it coverage is the distance to the rim in pixels, at most 1.
std::vector<Probe> smoothProbes(const Colour &colour)
{
    std::vector<Probe> probes;
    const double wide = kSmoothWidth + 1;
    for (int y = 56; y < 72; ++y) {
        const double across = std::abs(y + 0.5 - 64) / wide;
        const double coverage = std::clamp((0.5 - across) * wide, 0.0, 1.0);
        const Colour covered = {colour.r, colour.g, colour.b, colour.a * coverage};
        // On the very rim either is right.
        if (std::abs(across - 0.5) * wide > 0.01)
            probes.push_back(probeOf(40, y, coverage > 0 ? covered : kEmpty, "coverage in alpha"));
    }
    return probes;
}

} // namespace

std::vector<Scene> lineScenes()
{
    const NativeMatch coverage = {.instead = "coverage is the library's own curve, see docs/behaviour.md"};
    const Colour red = {1, 0, 0, 1};
    const Colour green = {0, 1, 0, 1};
    return {
        widths("LineWidthsAcross", false),
        widths("LineWidthsUpright", true),
        {"DiagonalLine",
         diagonal,
         {probeOf(64, 64, kWhite, "on it"), probeOf(62, 65, kWhite, "beside it"), probeOf(50, 70, kEmpty, "off it")},
         {.differingPixels = 40}},
        {"LoopsAndStrips",
         loopsAndStrips,
         {probeOf(10, 35, red, "a loop closes"), probeOf(35, 10, red, "first side"), probeOf(95, 120, green, "strip"),
          probeOf(70, 95, kEmpty, "a strip does not close")}},
        {"ColoursAlongLines",
         coloursAlong,
         {probeOf(64, 32, {1 - 64.5 / 128, 0, 64.5 / 128, 1}, "half way"),
          probeOf(16, 96, {0, 0, 1, 1}, "the second vertex's colour")}},
        {"TexturedLine", texturedLine, {probeOf(32, 64, red, "left texels"), probeOf(96, 64, green, "right texels")}},
        {"SmoothLine", smoothLine, smoothProbes({1, 0.5, 0, 0.8}), coverage},
        {"SmoothFlatColouredLine", smoothFlatColouredLine, smoothProbes({0, 0, 1, 128 / 255.0}), coverage},
        {"SmoothThenPlainLine",
         smoothThenPlain,
         {probeOf(30, 64, {1, 0.5, 0, 0.8}, "smooth"), probeOf(59, 100, {1, 0.5, 0, 0.8}, "full to the rim"),
          probeOf(58, 100, kEmpty, "no wider")},
         coverage},
    };
}
