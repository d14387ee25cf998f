// SPDX-License-Identifier: MIT
// Points: sizes from the current value and from arrays, attenuation and its limits, coverage, sprites.
#include "pictures/textures.h"

#include <algorithm>
#include <cmath>

namespace {

// Pixels of the picture as the coordinates; eye depth as given.
void deepPixelProjection()
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrthof(0, kPictureSize, 0, kPictureSize, 0, 100);
    glMatrixMode(GL_MODELVIEW);
}

void drawPoint(float x, float y, float depth = 0)
{
    const GLfloat position[] = {x, y, -depth};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, position);
    glDrawArrays(GL_POINTS, 0, 1);
}

// Along a row, whether exactly `width` pixels around the middle x of a point are covered.
std::vector<Probe> widthProbes(int middle, int y, int width, const Colour &colour)
{
    const int left = middle - width / 2; // first covered pixel; the middle is between pixels for an even width
    const std::string why = std::to_string(width) + " pixels wide";
    return {probeOf(left, y, colour, why), probeOf(left + width - 1, y, colour, why), probeOf(left - 1, y, kEmpty, why),
            probeOf(left + width, y, kEmpty, why)};
}

void append(std::vector<Probe> &probes, const std::vector<Probe> &more)
{
    probes.insert(probes.end(), more.begin(), more.end());
}

// Even sizes are centred between pixels, odd ones on a pixel's centre.
float middleFor(int size, int pixel)
{
    return static_cast<float>(pixel) + (size % 2 ? 0.5f : 0.0f);
}

Scene sizes()
{
    struct Point {
        int size, x, y;
    };
    static const Point points[] = {{1, 8, 8},   {2, 20, 8},   {3, 32, 8},   {5, 48, 8},    {8, 64, 8},
                                   {13, 84, 8}, {24, 16, 32}, {33, 54, 40}, {48, 100, 40}, {60, 40, 94}};
    std::vector<Probe> probes;
    for (const Point &p : points)
        append(probes, widthProbes(p.x, p.y, p.size, kWhite));
    const auto draw = [] {
        deepPixelProjection();
        for (const Point &p : points) {
            glPointSize(static_cast<GLfloat>(p.size));
            drawPoint(middleFor(p.size, p.x), middleFor(p.size, p.y));
        }
    };
    return {"PointSizes", draw, probes};
}

void biggestPoint()
{
    glPointSizex(128 << 16);
    deepPixelProjection();
    drawPoint(64, 64);
}

// One draw with a size of its own per vertex, from floats, fixed numbers, a stride and a buffer.
Scene sizeArrays()
{
    const auto draw = [] {
        static const GLfloat positions[] = {20, 20, 64, 20, 108, 20};
        static const GLfloat floats[] = {4, 12, 20};
        static const GLfixed fixed[] = {4 << 16, 12 << 16, 20 << 16};
        static const GLfloat strided[] = {4, 0, 12, 0, 20, 0};
        deepPixelProjection();
        glPointSize(1);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_POINT_SIZE_ARRAY_OES);
        glVertexPointer(2, GL_FLOAT, 0, positions);
        glPointSizePointerOES(GL_FLOAT, 0, floats);
        glDrawArrays(GL_POINTS, 0, 3);
        glTranslatef(0, 28, 0);
        glPointSizePointerOES(GL_FIXED, 0, fixed);
        glDrawArrays(GL_POINTS, 0, 3);
        glTranslatef(0, 28, 0);
        glPointSizePointerOES(GL_FLOAT, 8, strided);
        glDrawArrays(GL_POINTS, 0, 3);
        GLuint buffer;
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, sizeof(floats), floats, GL_STATIC_DRAW);
        glPointSizePointerOES(GL_FLOAT, 0, nullptr);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glTranslatef(0, 28, 0);
        glDrawArrays(GL_POINTS, 0, 3);
        glDisableClientState(GL_POINT_SIZE_ARRAY_OES);
        glTranslatef(0.5f, 16.5f, 0);
        glDrawArrays(GL_POINTS, 0, 3); // the current size again
    };
    std::vector<Probe> probes;
    for (const int y : {20, 48, 76, 104}) {
        append(probes, widthProbes(20, y, 4, kWhite));
        append(probes, widthProbes(64, y, 12, kWhite));
        append(probes, widthProbes(108, y, 20, kWhite));
    }
    return {"PointSizeArrays", draw, probes};
}

struct Attenuation {
    float a, b, c;
    float depth, size;
    int pixels; // size / sqrt(a + b d + c d^2), with d the distance of 64, 64 from the eye, limited
};

// The eye lies behind the point it looks at: x and y are 0 there, so the distance is the depth.
void attenuated(const Attenuation &a)
{
    const GLfloat coefficients[] = {a.a, a.b, a.c};
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrthof(-64, 64, -64, 64, 0, 100);
    glMatrixMode(GL_MODELVIEW);
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, coefficients);
    glPointSize(a.size);
    drawPoint(0, 0, a.depth);
}

Scene attenuation(const char *name, const Attenuation &a, std::function<void()> limits, NativeMatch native = {})
{
    return {name,
            [a, limits = std::move(limits)] {
                limits();
                attenuated(a);
            },
            widthProbes(64, 64, a.pixels, kWhite), native};
}

void sizeLimits(float least, float most)
{
    glPointParameterf(GL_POINT_SIZE_MIN, least);
    glPointParameterf(GL_POINT_SIZE_MAX, most);
}

// Attenuation (1, 0, 0) is no attenuation, and the limits do not hold then.
void limitsWithoutAttenuation()
{
    sizeLimits(1, 8);
    deepPixelProjection();
    glPointSize(20);
    drawPoint(64, 64);
}

void minimumOverwritesMaximum()
{
    sizeLimits(0, 64);
    glPointParameterf(GL_POINT_SIZE_MIN, 4);
    attenuated({0, 0, 1, 2, 40, 4});
}

// Size array and attenuation together: both count.
void arrayUnderAttenuation()
{
    static const GLfloat sizes[] = {40};
    glEnableClientState(GL_POINT_SIZE_ARRAY_OES);
    glPointSizePointerOES(GL_FLOAT, 0, sizes);
    attenuated({0, 0, 1, 2, 8, 20});
}

constexpr float kSmoothSize = 40;

void smoothPoint()
{
    glEnable(GL_POINT_SMOOTH);
    glPointSize(kSmoothSize);
    glColor4f(1, 0.5f, 0.25f, 0.5f);
    deepPixelProjection();
    drawPoint(64, 64);
}

void smoothAttenuatedPoint()
{
    glEnable(GL_POINT_SMOOTH);
    attenuated({0, 0, 1, 2, 2 * kSmoothSize, 40});
}

// Coverage falls from 1 at one half pixel inside the rim to 0 at one half outside, as a Hermite step of the squared
// distance over the point sprite, which is a pixel wider than the point.
double smoothCoverage(double x, double y)
{
    const double wide = kSmoothSize + 1;
    const double inner = std::pow((kSmoothSize - 1) / (2 * wide), 2);
    const double dx = (x - 64) / wide;
    const double dy = (y - 64) / wide;
    const double t = std::clamp((dx * dx + dy * dy - inner) / (0.25 - inner), 0.0, 1.0);
    return 1 - t * t * (3 - 2 * t);
}

std::vector<Probe> smoothProbes(const Colour &colour)
{
    std::vector<Probe> probes;
    for (int x = 40; x < 66; ++x) {
        for (const int y : {64, 73, 79}) {
            const double coverage = smoothCoverage(x + 0.5, y + 0.5);
            const Colour covered = {colour.r, colour.g, colour.b, colour.a * coverage};
            probes.push_back(probeOf(x, y, coverage > 0 ? covered : kEmpty, "coverage in alpha"));
        }
    }
    return probes;
}

// A sprite of 64 pixels in the middle with the four quarters of the texture; t runs down a sprite.
void sprite(bool unit0, bool unit1, bool replace0, bool replace1)
{
    glPointSize(64);
    glEnable(GL_POINT_SPRITE_OES);
    const auto unit = [](GLenum name, bool enabled, bool replace) {
        glActiveTexture(name);
        quartersTexture();
        if (enabled) glEnable(GL_TEXTURE_2D);
        setEnv(GL_TEXTURE_ENV_MODE, GL_MODULATE);
        glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, replace);
        glMultiTexCoord4f(name, 0.25f, 0.25f, 0, 1); // red without replacement
    };
    unit(GL_TEXTURE1, unit1, replace1);
    unit(GL_TEXTURE0, unit0, replace0);
    deepPixelProjection();
    drawPoint(64, 64);
}

Scene spriteScene(const char *name, bool unit0, bool unit1, bool replace0, bool replace1)
{
    std::vector<Probe> probes;
    for (int quarter = 0; quarter < 4; ++quarter) {
        const bool right = quarter % 2;
        const bool up = quarter / 2;
        const Colour &seen = kQuarterColours[(up ? 0 : 2) + (right ? 1 : 0)];
        Colour colour = kWhite;
        const auto modulate = [&](bool enabled, bool replaced) {
            if (!enabled) return;
            const Colour &texel = replaced ? seen : kQuarterColours[0];
            colour = {colour.r * texel.r, colour.g * texel.g, colour.b * texel.b, colour.a * texel.a};
        };
        modulate(unit0, replace0);
        modulate(unit1, replace1);
        probes.push_back(probeOf(right ? 80 : 48, up ? 80 : 48, colour, "t runs down a sprite"));
    }
    return {name, [=] { sprite(unit0, unit1, replace0, replace1); }, probes};
}

// Replacement counts only while sprites are enabled, and for points only.
void spriteState()
{
    sprite(true, false, true, false);
    glDisable(GL_POINT_SPRITE_OES);
    glPointSize(16);
    drawPoint(64, 64);
    glEnable(GL_POINT_SPRITE_OES);
    glLoadIdentity();
    const GLfloat corner[] = {0, 0, 24, 0, 0, 24, 24, 24};
    glVertexPointer(2, GL_FLOAT, 0, corner);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// Points of one draw with a colour each, clipped by their middle.
void colouredPoints()
{
    static const GLfloat positions[] = {32, 32, 96, 32, 32, 96, 96, 96};
    static const GLubyte colours[] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 0, 255};
    deepPixelProjection();
    glPointSize(16);
    glShadeModel(GL_FLAT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, colours);
    glDrawArrays(GL_POINTS, 0, 4);
}

// The first point's middle lies left of the window, the other two before the near and behind the far plane.
void pointsBesideTheView()
{
    deepPixelProjection();
    glPointSize(20);
    drawPoint(-4, 64);
    drawPoint(64, 32, -1);
    drawPoint(64, 96, 101);
}

} // namespace

std::vector<Scene> pointScenes()
{
    const NativeMatch minimum = {.instead = "the minimum also sets the maximum, see docs/behaviour.md"};
    const NativeMatch coverage = {.instead = "coverage is the library's own curve, see docs/behaviour.md"};
    return {
        sizes(),
        {"BiggestPoint", biggestPoint, {probeOf(1, 1, kWhite, "all of it"), probeOf(126, 126, kWhite, "all of it")}},
        sizeArrays(),
        attenuation("AttenuationConstant", {4, 0, 0, 7, 40, 20}, [] {}),
        attenuation("AttenuationLinear", {0, 1, 0, 16, 40, 10}, [] {}),
        attenuation("AttenuationQuadratic", {0, 0, 1, 4, 64, 16}, [] {}),
        attenuation("AttenuationOfAll", {3, 1, 0.25f, 10, 63.245553f, 10}, [] {}), // sqrt(3 + 10 + 25) = 6.3
        attenuation("AttenuationGrows", {0.25f, 0, 0, 1, 20, 40}, [] {}),
        attenuation("AttenuationToMinimum", {0, 0, 1, 20, 40, 12}, [] { sizeLimits(12, 64); }),
        attenuation("AttenuationToMaximum", {0, 0, 1, 1, 60, 30}, [] { sizeLimits(2, 30); }),
        attenuation("AttenuationFixed", {0, 0, 1, 2, 60, 24},
                    [] {
                        glPointParameterx(GL_POINT_SIZE_MIN, 1 << 16);
                        glPointParameterx(GL_POINT_SIZE_MAX, 24 << 16);
                    }),
        {"LimitsWithoutAttenuation",
         limitsWithoutAttenuation,
         widthProbes(64, 64, 20, kWhite),
         {.instead = "sizes are limited only under attenuation, see docs/behaviour.md"}},
        {"MinimumOverwritesMaximum", minimumOverwritesMaximum, widthProbes(64, 64, 4, kWhite), minimum},
        {"ArrayUnderAttenuation",
         arrayUnderAttenuation,
         widthProbes(64, 64, 20, kWhite),
         {.instead = "the machine's own ES 1.1 ignores the size array under attenuation"}},
        {"PointsBesideTheView",
         pointsBesideTheView,
         {probeOf(5, 64, kWhite, "reaches six pixels into the window"), probeOf(6, 64, kEmpty, "and no further"),
          probeOf(64, 32, kEmpty, "before the near plane"), probeOf(64, 96, kEmpty, "behind the far plane")},
         {.instead = "ES 2.0 clips points at the near and far planes only, see docs/behaviour.md"}},
        {"SmoothPoint", smoothPoint, smoothProbes({1, 0.5, 0.25, 0.5}), coverage},
        {"SmoothAttenuatedPoint", smoothAttenuatedPoint, smoothProbes(kWhite), coverage},
        spriteScene("SpriteOnUnit0", true, false, true, false),
        spriteScene("SpriteOnUnit1", false, true, false, true),
        spriteScene("SpriteOnBothUnits", true, true, true, true),
        spriteScene("SpriteOnUnit0OfTwo", true, true, true, false),
        spriteScene("SpriteOnUnit1OfTwo", true, true, false, true),
        spriteScene("SpriteWithoutReplacement", true, true, false, false),
        {"SpriteState",
         spriteState,
         {probeOf(80, 96 - 8, kQuarterColours[1], "the sprite"),
          probeOf(68, 68, kQuarterColours[0], "no sprite: the current coordinates"),
          probeOf(12, 12, kQuarterColours[0], "a triangle is no sprite")},
         {.instead = "the machine's own ES 1.1 lets sprite state spoil triangles"}},
        {"ColouredPoints",
         colouredPoints,
         {probeOf(32, 32, {1, 0, 0, 1}, "first"), probeOf(96, 32, {0, 1, 0, 1}, "second"),
          probeOf(32, 96, {0, 0, 1, 1}, "third"), probeOf(96, 96, {1, 1, 0, 1}, "fourth")}},
    };
}
