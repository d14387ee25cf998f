// SPDX-License-Identifier: MIT
// Draw-texture: every form of the call, crop rectangles, depth, what surrounds it, two units.
#include "pictures/extensions.h"
#include "pictures/textures.h"

namespace {

void crop(GLint u, GLint v, GLint width, GLint height)
{
    const GLint rectangle[] = {u, v, width, height};
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, rectangle);
}

void replacedQuarters()
{
    quartersTexture();
    crop(0, 0, 2, 2);
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
}

// The rectangle 32, 48 to 96, 80 with every form of call, over and over: each draws it after a clear.
using Call = void (*)();
void asFloats()
{
    drawTexf(32, 48, 0, 64, 32);
}
void asFloatVector()
{
    const GLfloat v[] = {32, 48, 0, 64, 32};
    drawTexfv(v);
}
void asInts()
{
    drawTexi(32, 48, 0, 64, 32);
}
void asIntVector()
{
    const GLint v[] = {32, 48, 0, 64, 32};
    drawTexiv(v);
}
void asShorts()
{
    drawTexs(32, 48, 0, 64, 32);
}
void asShortVector()
{
    const GLshort v[] = {32, 48, 0, 64, 32};
    drawTexsv(v);
}
void asFixed()
{
    drawTexx(32 << 16, 48 << 16, 0, 64 << 16, 32 << 16);
}
void asFixedVector()
{
    const GLfixed v[] = {32 << 16, 48 << 16, 0, 64 << 16, 32 << 16};
    drawTexxv(v);
}

Scene callScene(const char *name, Call call)
{
    return {name,
            [call] {
                replacedQuarters();
                call();
            },
            {probeOf(33, 49, kQuarterColours[0], "lower left"), probeOf(94, 49, kQuarterColours[1], "lower right"),
             probeOf(33, 78, kQuarterColours[2], "upper left"), probeOf(94, 78, kQuarterColours[3], "upper right"),
             probeOf(31, 64, kEmpty, "left of it"), probeOf(96, 64, kEmpty, "right of it"),
             probeOf(64, 47, kEmpty, "below it"), probeOf(64, 80, kEmpty, "above it")}};
}

// Parts of a texture, wholly inside it, mirrored by negative sizes, and wrapping around.
Scene cropScene(const char *name, GLint u, GLint v, GLint width, GLint height, const size_t (&quarters)[4])
{
    std::vector<Probe> probes;
    for (size_t i = 0; i < 4; ++i)
        probes.push_back(probeOf(i % 2 ? 96 : 32, i / 2 ? 96 : 32, kQuarterColours[quarters[i]], "cropped"));
    return {name,
            [=] {
                replacedQuarters();
                crop(u, v, width, height);
                drawTexi(0, 0, 0, 128, 128);
            },
            probes};
}

// Against a plane at a depth of 0.75 of a depth range of 0 to 1. z becomes a depth between those of the range, and that
// goes through the range as vertices do: 0.5 + z / 2.
void depthTested()
{
    glEnable(GL_DEPTH_TEST);
    glColor4f(0.5f, 0.5f, 0.5f, 1);
    drawRectangle(-1, -1, 1, 1, 0.5f);
    replacedQuarters();
    drawTexf(0, 0, -3, 32, 128);     // nearest: 0.5
    drawTexf(32, 0, 0.25f, 32, 128); // 0.625
    drawTexf(64, 0, 0.75f, 32, 128); // 0.875
    drawTexf(96, 0, 7, 32, 128);     // farthest: 1
}

// With a range of 0.2 to 0.8, z runs from 0.2 to 0.8 and then from 0.56 to 0.74.
void depthInRange()
{
    glDepthRangef(0.2f, 0.8f);
    glEnable(GL_DEPTH_TEST);
    glColor4f(0.5f, 0.5f, 0.5f, 1);
    drawRectangle(-1, -1, 1, 1, 0.5f); // 0.65
    replacedQuarters();
    drawTexf(0, 0, -3, 32, 128);    // 0.56
    drawTexf(32, 0, 0.4f, 32, 128); // 0.2 + 0.24 -> 0.632
    drawTexf(64, 0, 0.6f, 32, 128); // 0.2 + 0.36 -> 0.668
    drawTexf(96, 0, 7, 32, 128);    // 0.74
}

// Matrices, arrays, lights and face winding play no part; blending, scissor and alpha test do.
void fragmentState()
{
    glMatrixMode(GL_PROJECTION);
    glScalef(0.1f, 0.1f, 0.1f);
    glMatrixMode(GL_TEXTURE);
    glScalef(9, 9, 9);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(5, 5, 5);
    glEnable(GL_LIGHTING);
    replacedQuarters();
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 64, 128);
    drawTexi(0, 0, 0, 128, 128);
}

void blended()
{
    glClearColor(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    plainTexture(GL_RGBA, Colour{1, 0, 0, 0.4});
    crop(0, 0, 4, 4);
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0.3f);
    drawTexi(0, 0, 0, 64, 128);
    glAlphaFunc(GL_GREATER, 0.5f);
    drawTexi(64, 0, 0, 64, 128);
}

// The current colour is the fragment's, also when it was set after the last draw, and not the lit one.
void modulated()
{
    plainTexture(GL_RGBA, Colour{0.8, 0.4, 1, 0.6});
    crop(0, 0, 4, 4);
    glEnable(GL_TEXTURE_2D);
    glColor4f(1, 1, 1, 1);
    drawTexi(0, 0, 0, 64, 128);
    glColor4f(0.5f, 0.5f, 0.25f, 0.5f);
    drawTexi(64, 0, 0, 64, 128);
}

// Unit 0 shows texture 0, unit 1 multiplies texture 1: both cropped by the active unit's rectangle.
void twoUnits(GLenum active)
{
    replacedQuarters();
    glActiveTexture(GL_TEXTURE1);
    halvesTexture();
    crop(0, 0, 2, 4); // red alone
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(active);
    drawTexi(0, 0, 0, 128, 128);
}

void twoUnitsFromUnit0()
{
    twoUnits(GL_TEXTURE0);
}

void twoUnitsFromUnit1()
{
    twoUnits(GL_TEXTURE1);
}

// x and y count from the viewport's corner.
void movedViewport()
{
    replacedQuarters();
    glViewport(64, 64, 64, 64);
    drawTexi(0, 0, 0, 64, 64);
}

void culled()
{
    replacedQuarters();
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    drawTexi(0, 0, 0, 64, 128);
    glFrontFace(GL_CW);
    drawTexi(64, 0, 0, 64, 128);
}

void fogAndClipPlane()
{
    const GLfloat plane[] = {1, 0, 0, 0};
    glEnable(GL_FOG);
    glFogf(GL_FOG_DENSITY, 100);
    glClipPlanef(GL_CLIP_PLANE0, plane);
    glEnable(GL_CLIP_PLANE0);
    replacedQuarters();
    drawTexf(0, 0, 0.5f, 128, 128);
    // Fog and plane hold again for what is drawn by vertices: black fog on the right half, nothing on the left.
    glDisable(GL_TEXTURE_2D);
    drawRectangle(-1, -1, 1, -0.5f, -1);
}

// An ordinary draw after it has its own arrays, buffers and program again.
void betweenDraws()
{
    static const GLfloat positions[] = {-1, -1, 1, -1, -1, -0.5f, 1, -0.5f};
    GLuint buffer;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof(positions), positions, GL_STATIC_DRAW);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, nullptr);
    glColor4f(0, 1, 1, 1);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    replacedQuarters();
    drawTexi(32, 48, 0, 64, 32);
    glDisable(GL_TEXTURE_2D);
    glTranslatef(0, 1.5f, 0);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glTexCoordPointer(2, GL_FLOAT, 0, nullptr); // the buffer is still bound
    GLint bound;
    glGetIntegerv(GL_TEXTURE_COORD_ARRAY_BUFFER_BINDING, &bound);
    if (static_cast<GLuint>(bound) != buffer) glClear(GL_COLOR_BUFFER_BIT);
}

// Nothing but an error for a size that is none.
void emptySizes()
{
    replacedQuarters();
    drawTexi(0, 0, 0, 0, 64);
    if (glGetError() == GL_INVALID_VALUE) drawTexi(0, 0, 0, 32, 64);
    drawTexx(0, 0, 0, 0x10000, -0x10000);
    if (glGetError() == GL_INVALID_VALUE) drawTexi(64, 0, 0, 32, 64);
}

} // namespace

std::vector<Scene> drawTextureScenes()
{
    const Colour grey = {0.5, 0.5, 0.5, 1};
    const Colour red = {1, 0, 0, 1};
    const Colour green = {0, 1, 0, 1};
    const Colour cyan = {0, 1, 1, 1};
    const std::vector<Probe> depths = {
        probeOf(8, 16, red, "nothing is nearer than the range"), probeOf(40, 16, red, "before the plane"),
        probeOf(72, 16, grey, "behind the plane"), probeOf(104, 16, grey, "nothing is farther than the range")};
    const NativeMatch constant = {
        .instead =
            "the active unit's rectangle crops both units, see docs/behaviour.md; the machine's own ES 1.1 gives "
            "unit 1 the same coordinates everywhere"};
    return {
        callScene("DrawTexf", asFloats),
        callScene("DrawTexfv", asFloatVector),
        callScene("DrawTexi", asInts),
        callScene("DrawTexiv", asIntVector),
        callScene("DrawTexs", asShorts),
        callScene("DrawTexsv", asShortVector),
        callScene("DrawTexx", asFixed),
        callScene("DrawTexxv", asFixedVector),
        cropScene("CropLowerHalf", 0, 0, 2, 1, {0, 1, 0, 1}),
        cropScene("CropUpperRight", 1, 1, 1, 1, {3, 3, 3, 3}),
        cropScene("CropMirrored", 2, 0, -2, 2, {1, 0, 3, 2}),
        cropScene("CropUpsideDown", 0, 2, 2, -2, {2, 3, 0, 1}),
        cropScene("CropWrapped", 1, 1, 2, 2, {3, 2, 1, 0}),
        {"DrawTextureDepth", depthTested, depths},
        {"DrawTextureDepthInRange",
         depthInRange,
         depths,
         {.instead = "the depth range is applied twice, see docs/behaviour.md"}},
        {"DrawTextureState",
         fragmentState,
         {probeOf(32, 32, red, "neither matrices nor lights count"), probeOf(96, 32, kEmpty, "the scissor box does")}},
        {"DrawTextureBlended",
         blended,
         {probeOf(32, 64, {0.4, 0, 0.6, 0.16 + 0.6}, "0.4 red over blue"),
          probeOf(96, 64, {0, 0, 1, 1}, "dropped by the alpha test")}},
        {"DrawTextureModulated",
         modulated,
         {probeOf(32, 64, {0.8, 0.4, 1, 0.6}, "white"), probeOf(96, 64, {0.4, 0.2, 0.25, 0.3}, "the colour of now")},
         {.instead = "the machine's own ES 1.1 takes a stale current colour"}},
        {"DrawTextureUnit0Crops",
         twoUnitsFromUnit0,
         {probeOf(32, 32, red, "red times red"), probeOf(96, 32, green, "green times green"),
          probeOf(32, 96, {0, 0, 0, 1}, "blue times red"), probeOf(96, 96, green, "white times green")},
         constant},
        {"DrawTextureUnit1Crops",
         twoUnitsFromUnit1,
         // Half the width of both: unit 0 shows its left texels only, unit 1 its red half.
         {probeOf(32, 32, red, "red times red"), probeOf(96, 32, red, "red times red"),
          probeOf(32, 96, {0, 0, 0, 1}, "blue times red"), probeOf(96, 96, {0, 0, 0, 1}, "blue times red")},
         constant},
        {"DrawTextureViewport",
         movedViewport,
         {probeOf(80, 80, red, "from the viewport's corner"), probeOf(112, 112, {1, 1, 1, 1}, "to the other"),
          probeOf(32, 32, kEmpty, "not from the window's")},
         {.instead = "x and y count from the viewport's corner, see docs/behaviour.md"}},
        {"DrawTextureCulled",
         culled,
         {probeOf(16, 32, red, "counter-clockwise faces the viewer"), probeOf(80, 32, kEmpty, "now it is a back")},
         {.instead = "the rectangle is culled like a triangle, see docs/behaviour.md"}},
        {"DrawTextureWithFogAndClipPlane",
         fogAndClipPlane,
         {probeOf(32, 48, red, "not clipped"), probeOf(96, 48, green, "not fogged"),
          probeOf(32, 16, red, "the plane clips what has vertices"),
          probeOf(96, 16, {0, 0, 0, 1}, "fog covers what has vertices")},
         {.instead = "neither fog nor the clip plane touch draw-texture, see docs/behaviour.md"}},
        {"DrawTextureBetweenDraws",
         betweenDraws,
         {probeOf(64, 16, cyan, "before"), probeOf(40, 52, red, "texels"), probeOf(64, 112, cyan, "after")}},
        {"DrawTextureEmptySizes",
         emptySizes,
         {probeOf(8, 16, red, "after the first error"), probeOf(72, 16, red, "after the second")}},
    };
}
