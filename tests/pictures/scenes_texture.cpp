// SPDX-License-Identifier: MIT
// Textures, environments, combiners, two units, texture matrices, cube maps, draw-texture.
#include "pictures/extensions.h"
#include "pictures/textures.h"

#include <algorithm>

namespace {

void full()
{
    drawRectangle(-1, -1, 1, 1);
}

void replaced()
{
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    full();
}

const std::initializer_list<GLubyte> kRgba = {204, 102, 51, 128};
const std::initializer_list<GLubyte> kRgb = {204, 102, 51};
const std::initializer_list<GLubyte> kLuminance = {153};
const std::initializer_list<GLubyte> kLuminanceAlpha = {153, 128};
const std::initializer_list<GLubyte> kAlpha = {128};

void envBoard(GLenum mode)
{
    const GLfloat envColour[] = {0.25f, 0.5f, 0.75f, 1};
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, mode);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, envColour);
    glColor4f(0.5f, 0.25f, 1, 0.5f);
    unitSquareProjection();
    plainTexture(GL_RGBA, kRgba);
    drawRectangle(0, 0.8f, 1, 1);
    plainTexture(GL_RGB, kRgb);
    drawRectangle(0, 0.6f, 1, 0.8f);
    plainTexture(GL_LUMINANCE, kLuminance);
    drawRectangle(0, 0.4f, 1, 0.6f);
    plainTexture(GL_LUMINANCE_ALPHA, kLuminanceAlpha);
    drawRectangle(0, 0.2f, 1, 0.4f);
    plainTexture(GL_ALPHA, kAlpha);
    drawRectangle(0, 0, 1, 0.2f);
}

void modulateBoard()
{
    envBoard(GL_MODULATE);
}
void replaceBoard()
{
    envBoard(GL_REPLACE);
}
void decalBoard()
{
    envBoard(GL_DECAL);
}
void addBoard()
{
    envBoard(GL_ADD);
}
void blendBoard()
{
    envBoard(GL_BLEND);
}

// OpenGL ES 1.1 table 3.15 for the five base formats, from the top down.
constexpr double kColour[] = {0.5, 0.25, 1, 0.5};
constexpr double kEnv[] = {0.25, 0.5, 0.75};
struct Base {
    double colour[3], alpha;
    bool hasColour, hasAlpha;
    int y;
};
constexpr Base kBases[] = {
    {{0.8, 0.4, 0.2}, 128 / 255.0, true, true, 115}, {{0.8, 0.4, 0.2}, 1, true, false, 90},
    {{0.6, 0.6, 0.6}, 1, true, false, 64},           {{0.6, 0.6, 0.6}, 128 / 255.0, true, true, 38},
    {{0, 0, 0}, 128 / 255.0, false, true, 12},
};

std::vector<Probe> envProbes(GLenum mode, bool withAlphaOnly = true)
{
    std::vector<Probe> probes;
    for (const Base &base : kBases) {
        if (!base.hasColour && !withAlphaOnly) continue;
        if (mode == GL_DECAL && base.colour[0] == base.colour[1]) continue; // undefined for luminance in the standard
        double out[4] = {kColour[0], kColour[1], kColour[2], kColour[3]};
        for (int i = 0; i < 3 && base.hasColour; ++i) {
            const double texture = base.colour[i];
            if (mode == GL_MODULATE) out[i] = kColour[i] * texture;
            if (mode == GL_REPLACE) out[i] = texture;
            if (mode == GL_DECAL)
                out[i] = base.hasAlpha ? kColour[i] * (1 - base.alpha) + texture * base.alpha : texture;
            if (mode == GL_ADD) out[i] = kColour[i] + texture;
            if (mode == GL_BLEND) out[i] = kColour[i] * (1 - texture) + kEnv[i] * texture;
        }
        if (base.hasAlpha && mode == GL_REPLACE) out[3] = base.alpha;
        if (base.hasAlpha && mode != GL_REPLACE && mode != GL_DECAL) out[3] = kColour[3] * base.alpha;
        probes.push_back(
            {64, base.y, byteOf(out[0]), byteOf(out[1]), byteOf(out[2]), byteOf(out[3]), "environment table"});
    }
    return probes;
}

void combine(GLenum rgb, GLenum alpha)
{
    plainTexture(GL_RGBA, kRgba);
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_COMBINE);
    setEnv(GL_COMBINE_RGB, rgb);
    setEnv(GL_COMBINE_ALPHA, alpha);
    const GLfloat envColour[] = {0.25f, 0.5f, 0.75f, 0.25f};
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, envColour);
    glColor4f(0.5f, 0.25f, 1, 0.5f);
    full();
}

void combineModulate()
{
    combine(GL_MODULATE, GL_REPLACE);
}
void combineAddSigned()
{
    combine(GL_ADD_SIGNED, GL_ADD);
}
void combineSubtract()
{
    combine(GL_SUBTRACT, GL_SUBTRACT);
}
// Texture times constant alpha plus colour times the rest.
void combineInterpolate()
{
    combine(GL_INTERPOLATE, GL_INTERPOLATE);
}
void combineDot3()
{
    combine(GL_DOT3_RGB, GL_REPLACE);
}
void combineDot3Rgba()
{
    combine(GL_DOT3_RGBA, GL_REPLACE);
}
void combineScaled()
{
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, 2);
    glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, 4);
    combine(GL_MODULATE, GL_MODULATE);
}
void combineOperands()
{
    setEnv(GL_OPERAND0_RGB, GL_ONE_MINUS_SRC_COLOR);
    setEnv(GL_SRC1_RGB, GL_CONSTANT);
    setEnv(GL_OPERAND1_RGB, GL_SRC_ALPHA);
    setEnv(GL_SRC0_ALPHA, GL_PRIMARY_COLOR);
    setEnv(GL_OPERAND0_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    combine(GL_ADD, GL_REPLACE);
}

void twoUnits()
{
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE1);
    plainTexture(GL_RGB, {128, 128, 128});
    glEnable(GL_TEXTURE_2D);
    full();
    // Unit 1 alone.
    glActiveTexture(GL_TEXTURE0);
    glDisable(GL_TEXTURE_2D);
    drawRectangle(-1, -1, 1, 0);
}

void textureMatrixScale()
{
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glMatrixMode(GL_TEXTURE);
    glScalef(2, 1, 1);
    glMatrixMode(GL_MODELVIEW);
    full();
}

void textureMatrixMoved()
{
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glMatrixMode(GL_TEXTURE);
    glTranslatef(0.5f, 0, 0);
    glMatrixMode(GL_MODELVIEW);
    full();
}

void projectiveCoordinates()
{
    static const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    static const GLfloat coordinates[] = {0, 0, 0, 2, 2, 0, 0, 2, 0, 2, 0, 2, 2, 2, 0, 2};
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glMatrixMode(GL_TEXTURE);
    glTranslatef(0.5f, 0, 0); // a matrix that is not the identity: the lookup divides by q
    glMatrixMode(GL_MODELVIEW);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glTexCoordPointer(4, GL_FLOAT, 0, coordinates);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void currentTexCoord()
{
    static const GLfloat positions[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glMultiTexCoord4f(GL_TEXTURE0, 0.75f, 0.5f, 0, 1);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void cubeMapNormals(GLenum mode)
{
    static const GLubyte faces[6][3] = {{255, 0, 0},   {0, 255, 0},   {0, 0, 255},
                                        {255, 255, 0}, {0, 255, 255}, {255, 0, 255}};
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, name);
    glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (GLenum face = 0; face < 6; ++face)
        glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face, 0, GL_RGB, 1, 1, 0, GL_RGB, GL_UNSIGNED_BYTE,
                     faces[face]);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    texGeni(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, static_cast<GLint>(mode));
    glEnable(GL_TEXTURE_GEN_STR_OES);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glNormal3f(1, 0, 0);
    drawRectangle(-1, -1, 0, 1, -0.5f);
    glNormal3f(0, -1, 0);
    drawRectangle(0, -1, 1, 1, -0.5f);
}

void cubeNormalMap()
{
    cubeMapNormals(GL_NORMAL_MAP_OES);
}

void drawTexture()
{
    const GLint crop[] = {0, 0, 4, 4};
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop);
    drawTexi(32, 32, 0, 64, 64);
}

// The state around a draw-texture must not disturb the draws before and after it.
void drawTextureBetweenDraws()
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_END, 1000);
    glNormal3f(0, 0, 1);
    drawRectangle(-1, -1, 1, -0.5f);
    glDisable(GL_LIGHTING);
    drawTexture();
    glDisable(GL_TEXTURE_2D);
    glColor4f(0, 0, 1, 1);
    drawRectangle(-1, 0.5f, 1, 1);
}

void pointSprite()
{
    const GLfloat position[] = {0, 0};
    halvesTexture();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_POINT_SPRITE_OES);
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, GL_TRUE);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glPointSize(64);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, position);
    glDrawArrays(GL_POINTS, 0, 1);
}

void imageAfterBind()
{
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glColor4f(0, 0, 1, 0.5f);
    plainTexture(GL_RGB, kRgb);
    drawRectangle(-1, -1, 0, 1);
    glDisable(GL_TEXTURE_2D);
    plainTexture(GL_ALPHA, kAlpha);
    glEnable(GL_TEXTURE_2D);
    drawRectangle(0, -1, 1, 1);
}

Scene boardScene(const char *name, void (*draw)(), GLenum mode)
{
    Scene scene = {name, draw, envProbes(mode, mode != GL_DECAL)};
    if (mode == GL_DECAL)
        scene.native.instead = "decal of an alpha-only texture takes its colour, see docs/behaviour.md";
    return scene;
}

} // namespace

std::vector<Scene> textureScenes()
{
    const double a = 128 / 255.0;
    std::vector<Scene> scenes = {
        {"Replaced", replaced, {{32, 64, 255, 0, 0, 255, "left texels"}, {96, 64, 0, 255, 0, 255, "right texels"}}},
        boardScene("ModulateBoard", modulateBoard, GL_MODULATE),
        boardScene("ReplaceBoard", replaceBoard, GL_REPLACE),
        boardScene("DecalBoard", decalBoard, GL_DECAL),
        boardScene("AddBoard", addBoard, GL_ADD),
        boardScene("BlendBoard", blendBoard, GL_BLEND),
        {"CombineModulate",
         combineModulate,
         {{64, 64, byteOf(0.8 * 0.5), byteOf(0.4 * 0.25), byteOf(0.2), 128, "texture times colour; texture alpha"}}},
        {"CombineAddSigned",
         combineAddSigned,
         {{64, 64, byteOf(0.8), byteOf(0.15), byteOf(0.7), byteOf(a + 0.5), "sum less one half; sum"}}},
        {"CombineSubtract",
         combineSubtract,
         {{64, 64, byteOf(0.3), byteOf(0.15), 0, byteOf(a - 0.5), "texture less colour"}}},
        {"CombineInterpolate",
         combineInterpolate,
         {{64, 64, byteOf(0.8 * 0.25 + 0.5 * 0.75), byteOf(0.4 * 0.25 + 0.25 * 0.75), byteOf(0.2 * 0.25 + 0.75),
           byteOf(a * 0.25 + 0.5 * 0.75), "by the constant's alpha"}}},
        {"CombineDot3",
         combineDot3,
         {{64, 64, byteOf(4 * (0.3 * 0 + -0.1 * -0.25 + -0.3 * 0.5)), 0, 0, 128, "a negative product gives 0"}}},
        {"CombineDot3Rgba", combineDot3Rgba, {{64, 64, 0, 0, 0, 0, "all four components take the product"}}},
        {"CombineScaled",
         combineScaled,
         {{64, 64, byteOf(0.8), byteOf(0.2), byteOf(0.4), byteOf(4 * a * 0.5), "twice and four times"}}},
        {"CombineOperands",
         combineOperands,
         {{64, 64, byteOf(0.2 + 0.25), byteOf(0.6 + 0.25), byteOf(0.8 + 0.25), byteOf(0.5),
           "1 - texture + constant alpha"}}},
        {"TwoUnits",
         twoUnits,
         {{32, 96, 128, 0, 0, 255, "red times grey"},
          {96, 96, 0, 128, 0, 255, "green times grey"},
          {64, 32, 128, 128, 128, 255, "unit 1 alone"}}},
        {"TextureMatrixScale",
         textureMatrixScale,
         {{16, 64, 255, 0, 0, 255, "s = 0.25"},
          {48, 64, 0, 255, 0, 255, "s = 0.75"},
          {80, 64, 255, 0, 0, 255, "s = 1.25"}}},
        {"TextureMatrixMoved",
         textureMatrixMoved,
         {{32, 64, 0, 255, 0, 255, "s = 0.75"}, {96, 64, 255, 0, 0, 255, "s = 1.25"}}},
        {"ProjectiveCoordinates",
         projectiveCoordinates,
         // s' = s + 0.5 q, divided by q = 2: moved by one half.
         {{32, 64, 0, 255, 0, 255, "moved by one half"}, {96, 64, 255, 0, 0, 255, "and repeated"}}},
        {"CurrentTexCoord", currentTexCoord, {{32, 64, 0, 255, 0, 255, "s = 0.75 everywhere"}}},
        {"CubeNormalMap",
         cubeNormalMap,
         {{32, 64, 255, 0, 0, 255, "+x face"}, {96, 64, 255, 255, 0, 255, "-y face"}},
         {.instead = "the machine's own normal maps set the S coordinate only"}},
        {"DrawTexture",
         drawTexture,
         {{48, 64, 255, 0, 0, 255, "left texels"},
          {80, 64, 0, 255, 0, 255, "right texels"},
          {16, 64, 0, 0, 0, 0, "outside"}}},
        {"DrawTextureBetweenDraws",
         drawTextureBetweenDraws,
         {{64, 10, byteOf(0.84), byteOf(0.84), byteOf(0.84), 255, "lit before"},
          {48, 64, 255, 0, 0, 255, "texels"},
          {64, 120, 0, 0, 255, 255, "plain after"}},
         {.tolerance = 3}},
        {"PointSprite", pointSprite, {{48, 64, 255, 0, 0, 255, "left"}, {80, 64, 0, 255, 0, 255, "right"}}},
        {"ImageAfterBind",
         imageAfterBind,
         {{32, 64, 204, 102, 51, 127.5, "colour of the RGB texture"},
          {96, 64, 0, 0, 255, 128, "alpha of the alpha texture"}}},
    };
    return scenes;
}
