// SPDX-License-Identifier: MIT
// The matrix palette, which the machine's own ES 1.1 has not: every colour and place is worked out here.
#include "pictures/extensions.h"
#include "pictures/lighting_reference.h"
#include "pictures/textures.h"

#include <cmath>
#include <numbers>

namespace {

const NativeMatch kNoPalette = {.instead = "the machine's own ES 1.1 has no matrix palette"};

// Palette matrix i moves by a step of its own; the others stay the identity.
void loadMove(GLuint index, float x, float y)
{
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    currentPaletteMatrix(index);
    glLoadIdentity();
    glTranslatef(x, y, 0);
    glMatrixMode(GL_MODELVIEW);
}

// A square of that half size around the origin whose vertices all have these weights and matrices.
void drawSkinned(float half, const std::vector<GLfloat> &weights, const std::vector<GLubyte> &indices)
{
    const GLfloat positions[] = {-half, -half, half, -half, -half, half, half, half};
    const auto units = static_cast<GLint>(weights.size());
    std::vector<GLfloat> allWeights;
    std::vector<GLubyte> allIndices;
    for (int vertex = 0; vertex < 4; ++vertex) {
        allWeights.insert(allWeights.end(), weights.begin(), weights.end());
        allIndices.insert(allIndices.end(), indices.begin(), indices.end());
    }
    glEnable(GL_MATRIX_PALETTE_OES);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    weightPointer(units, GL_FLOAT, 0, allWeights.data());
    matrixIndexPointer(units, GL_UNSIGNED_BYTE, 0, allIndices.data());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

struct Step {
    double x, y;
};
constexpr Step kSteps[] = {{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}};

int pixelOf(double coordinate)
{
    return static_cast<int>((coordinate + 1) / 2 * kPictureSize);
}

// One to four matrices per vertex: the square lies at the weighted mean of the steps.
Scene blendScene(const char *name, const std::vector<GLfloat> &weights)
{
    const auto draw = [weights] {
        std::vector<GLubyte> indices;
        for (size_t i = 0; i < weights.size(); ++i) {
            const auto matrix = static_cast<GLubyte>(3 + 4 * i);
            indices.push_back(matrix);
            loadMove(matrix, static_cast<float>(kSteps[i].x), static_cast<float>(kSteps[i].y));
        }
        drawSkinned(0.25f, weights, indices);
    };
    Step at = {0, 0};
    double sum = 0;
    for (size_t i = 0; i < weights.size(); ++i) {
        at.x += weights[i] * kSteps[i].x;
        at.y += weights[i] * kSteps[i].y;
        sum += weights[i];
    }
    // Weights that do not add up to 1 scale w as well: the place is the mean, the size stays.
    at = {at.x / sum, at.y / sum};
    std::vector<Probe> probes;
    for (const int sign : {-1, 1}) {
        probes.push_back(probeOf(pixelOf(at.x + 0.23 * sign), pixelOf(at.y + 0.23 * sign), {1, 1, 1, 1}, "inside"));
        if (std::abs(at.x + 0.28 * sign) < 1)
            probes.push_back(probeOf(pixelOf(at.x + 0.28 * sign), pixelOf(at.y), kEmpty, "outside"));
    }
    return {name, draw, probes, kNoPalette};
}

// All twenty: a grid of squares, each drawn with one matrix.
Scene allTwenty()
{
    const auto cell = [](int i) { return Step{-0.8 + 0.4 * (i % 5), -0.75 + 0.5 * (i / 5)}; };
    const auto draw = [cell] {
        for (int i = 0; i < 20; ++i)
            loadMove(static_cast<GLuint>(i), static_cast<float>(cell(i).x), static_cast<float>(cell(i).y));
        for (int i = 0; i < 20; ++i) {
            glColor4f(1, static_cast<GLfloat>(i) / 20, 0, 1);
            drawSkinned(0.1f, {1}, {static_cast<GLubyte>(i)});
        }
    };
    std::vector<Probe> probes;
    for (int i = 0; i < 20; ++i)
        probes.push_back(probeOf(pixelOf(cell(i).x), pixelOf(cell(i).y), {1, i / 20.0, 0, 1}, "matrix of that number"));
    return {"SkinnedByAllTwenty", draw, probes, kNoPalette};
}

// Weights that differ along one strip: a bent bar.
void bentBar()
{
    static const GLfloat positions[] = {-0.2f, -0.8f, 0.2f, -0.8f, -0.2f, 0, 0.2f, 0, -0.2f, 0.8f, 0.2f, 0.8f};
    static const GLfloat weights[] = {1, 0, 1, 0, 0.5f, 0.5f, 0.5f, 0.5f, 0, 1, 0, 1};
    static const GLubyte indices[] = {0, 19, 0, 19, 0, 19, 0, 19, 0, 19, 0, 19};
    loadMove(0, 0, 0);
    loadMove(19, 0.6f, 0);
    glEnable(GL_MATRIX_PALETTE_OES);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    weightPointer(2, GL_FLOAT, 0, weights);
    matrixIndexPointer(2, GL_UNSIGNED_BYTE, 0, indices);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 6);
}

// The same numbers in other types, from a buffer, and through the modelview copied into the palette.
void otherTypes()
{
    static const GLfloat positions[] = {-0.2f, -0.2f, 0.2f, -0.2f, -0.2f, 0.2f, 0.2f, 0.2f};
    static const GLfixed weights[] = {0x4000, 0xC000, 0x4000, 0xC000, 0x4000, 0xC000, 0x4000, 0xC000};
    static const GLushort indices[] = {7, 8, 7, 8, 7, 8, 7, 8};
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    currentPaletteMatrix(7);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(-0.6f, 0, 0);
    loadPaletteFromModelView();
    glLoadIdentity();
    glTranslatef(0.6f, 0.4f, 0);
    currentPaletteMatrix(8);
    loadPaletteFromModelView();
    glLoadIdentity();
    glTranslatef(0, -9, 0); // the modelview itself plays no part
    GLuint buffer;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof(weights), weights, GL_STATIC_DRAW);
    weightPointer(2, GL_FIXED, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    matrixIndexPointer(2, GL_UNSIGNED_SHORT, 0, indices);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glEnable(GL_MATRIX_PALETTE_OES);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// Matrices for the normal: turned about y by these degrees, and scaled.
struct Bone {
    double degrees, scale;
};

void loadBone(GLuint index, const Bone &bone)
{
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    currentPaletteMatrix(index);
    glLoadIdentity();
    glRotatef(static_cast<GLfloat>(bone.degrees), 0, 1, 0);
    glScalef(static_cast<GLfloat>(bone.scale), static_cast<GLfloat>(bone.scale), static_cast<GLfloat>(bone.scale));
    glMatrixMode(GL_MODELVIEW);
}

// The facing normal through one bone: turned, and divided by the scale unless normals are rescaled.
Vec3 boneNormal(const Bone &bone, bool rescale)
{
    const double angle = bone.degrees * std::numbers::pi / 180;
    const double length = rescale ? 1 : 1 / bone.scale;
    return {std::sin(angle) * length, 0, std::cos(angle) * length};
}

enum class Normals { AS_THEY_ARE, NORMALIZED, RESCALED };

Scene litScene(const char *name, const std::vector<Bone> &bones, const std::vector<GLfloat> &weights, Normals normals,
               const std::vector<Light> &lights, float half = 0.9f)
{
    const auto draw = [=] {
        setLights(lights);
        if (normals == Normals::NORMALIZED) glEnable(GL_NORMALIZE);
        if (normals == Normals::RESCALED) glEnable(GL_RESCALE_NORMAL);
        std::vector<GLubyte> indices;
        for (size_t i = 0; i < bones.size(); ++i) {
            const auto matrix = static_cast<GLubyte>(19 - 5 * i);
            indices.push_back(matrix);
            loadBone(matrix, bones[i]);
        }
        glNormal3f(0, 0, 1);
        drawSkinned(half, weights, indices);
    };
    Vec3 normal = {0, 0, 0};
    for (size_t i = 0; i < bones.size(); ++i) {
        const Vec3 n = boneNormal(bones[i], normals == Normals::RESCALED);
        normal = {normal.x + weights[i] * n.x, 0, normal.z + weights[i] * n.z};
    }
    if (normals == Normals::NORMALIZED) normal = unit(normal);
    return {name, draw, {probeOf(64, 64, litColour(lights, {}, {0, 0, 0}, normal), "blended normal")}, kNoPalette};
}

// Bones changed between draws, and skinning on and off.
void changedBetweenDraws()
{
    unitSquareProjection();
    loadMove(2, 0.25f, 0.25f);
    glColor4f(1, 0, 0, 1);
    drawSkinned(0.2f, {1}, {2});
    loadMove(2, 0.75f, 0.25f);
    glColor4f(0, 1, 0, 1);
    drawSkinned(0.2f, {1}, {2});
    glDisable(GL_MATRIX_PALETTE_OES);
    glTranslatef(0.25f, 0.75f, 0);
    glColor4f(0, 0, 1, 1);
    const GLfloat square[] = {-0.2f, -0.2f, 0.2f, -0.2f, -0.2f, 0.2f, 0.2f, 0.2f};
    glVertexPointer(2, GL_FLOAT, 0, square);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    loadMove(11, 0.75f, 0.75f);
    glColor4f(1, 1, 1, 1);
    drawSkinned(0.2f, {0.5f, 0.5f}, {11, 11});
}

// With textures, fog by eye depth and a clip plane in eye coordinates.
void texturedAndFogged()
{
    const GLfloat plane[] = {1, 0, 0, 0};
    const GLfloat fogColour[] = {0, 0, 1, 1};
    plainTexture(GL_RGB, Colour{1, 0.5, 0, 1});
    glEnable(GL_TEXTURE_2D);
    glClipPlanef(GL_CLIP_PLANE0, plane);
    glEnable(GL_CLIP_PLANE0);
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_END, 2);
    glFogf(GL_FOG_START, 0);
    glFogfv(GL_FOG_COLOR, fogColour);
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    currentPaletteMatrix(5);
    glTranslatef(0, 0, -0.5f);
    glMatrixMode(GL_MODELVIEW);
    drawSkinned(0.9f, {1}, {5});
}

// Without its arrays a skinned draw draws nothing and tells nothing.
void withoutArrays()
{
    loadMove(0, 0, 0);
    drawSkinned(0.9f, {1}, {0});
    glClear(GL_COLOR_BUFFER_BIT);
    glDisableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    const GLfloat square[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glVertexPointer(2, GL_FLOAT, 0, square);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

} // namespace

std::vector<Scene> skinningScenes()
{
    const Light oblique = {.diffuse = {0.6, 0.7, 0.8, 1}, .specular = {0, 0, 0, 1}, .position = {0.4, 0.2, 1}};
    const Light near = {.diffuse = {0.6, 0.7, 0.8, 1}, .specular = {0, 0, 0, 1}, .position = {0.2, 0.1, 0.75}, .w = 1};
    const Colour white = {1, 1, 1, 1};
    Light eighth = oblique;
    eighth.diffuse = {0.08, 0.09, 0.1, 1};
    const std::vector<Light> eight(8, eighth);
    return {
        blendScene("SkinnedByOne", {1}),
        blendScene("SkinnedByTwo", {0.25f, 0.75f}),
        blendScene("SkinnedByThree", {0.5f, 0.25f, 0.25f}),
        blendScene("SkinnedByFour", {0.125f, 0.5f, 0.125f, 0.25f}),
        blendScene("SkinnedByHalfWeights", {0.25f, 0.25f}),
        allTwenty(),
        {"BentBar",
         bentBar,
         {probeOf(64, 14, white, "bottom"), probeOf(pixelOf(0.3), 64, white, "half way"),
          probeOf(pixelOf(0.6), 112, white, "top"), probeOf(64, 112, kEmpty, "moved away")},
         kNoPalette},
        {"SkinningTypes",
         otherTypes,
         {probeOf(pixelOf(0.3), pixelOf(0.3), white, "-0.6 a quarter, 0.6 three quarters"),
          probeOf(pixelOf(-0.6), pixelOf(0), kEmpty, "not with one matrix")},
         kNoPalette},
        litScene("SkinnedLitByOne", {{30, 1}}, {1}, Normals::AS_THEY_ARE, {oblique}),
        litScene("SkinnedLitByTwo", {{30, 1}, {-60, 1}}, {0.75f, 0.25f}, Normals::AS_THEY_ARE, {oblique}),
        litScene("SkinnedLitByThree", {{0, 1}, {20, 1}, {40, 1}}, {0.25f, 0.25f, 0.5f}, Normals::NORMALIZED, {oblique}),
        litScene("SkinnedLitByFour", {{0, 1}, {20, 1}, {-40, 1}, {10, 1}}, {0.1f, 0.2f, 0.3f, 0.4f},
                 Normals::AS_THEY_ARE, {near}, 0.02f),
        litScene("SkinnedLitScaled", {{10, 2}, {30, 0.8}}, {0.5f, 0.5f}, Normals::AS_THEY_ARE, {oblique}),
        litScene("SkinnedLitRescaled", {{10, 2}, {30, 0.8}}, {0.5f, 0.5f}, Normals::RESCALED, {oblique}),
        litScene("SkinnedLitByEightLights", {{30, 1}, {-60, 1}}, {0.75f, 0.25f}, Normals::AS_THEY_ARE, eight),
        {"SkinningChanges",
         changedBetweenDraws,
         {probeOf(32, 32, {1, 0, 0, 1}, "first place"), probeOf(96, 32, {0, 1, 0, 1}, "second place"),
          probeOf(32, 96, {0, 0, 1, 1}, "not skinned"), probeOf(96, 96, white, "two matrices")},
         kNoPalette},
        {"SkinnedTexturedAndFogged",
         texturedAndFogged,
         {probeOf(96, 64, {0.75, 0.375, 0.25, 1}, "fog 0.75"), probeOf(32, 64, kEmpty, "clipped")},
         kNoPalette},
        {"SkinnedWithoutArrays", withoutArrays, {probeOf(64, 64, kEmpty, "nothing")}, kNoPalette},
    };
}
