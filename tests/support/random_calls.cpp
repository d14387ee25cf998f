// SPDX-License-Identifier: MIT
#include "support/random_calls.h"

#include "frontend/gl_headers.h"

#include <random>

namespace {

std::mt19937 randomNumbers; // of the call under way

uint32_t upTo(uint32_t count)
{
    return randomNumbers() % count;
}

template <typename T, size_t N>
T oneOf(const T (&values)[N])
{
    return values[upTo(N)];
}

void switchCapability(GLenum capability)
{
    if (upTo(2)) {
        glEnable(capability);
    } else {
        glDisable(capability);
    }
}

void switchArray(GLenum array)
{
    if (upTo(2)) {
        glEnableClientState(array);
    } else {
        glDisableClientState(array);
    }
}

// All of them, shining along their directions: then lighting may be computed in object space.
void switchAllLights()
{
    const GLfloat direction[] = {0, 1, 2, 0};
    for (GLenum light = GL_LIGHT0; light <= GL_LIGHT7; ++light) {
        glEnable(light);
        glLightfv(light, GL_POSITION, direction);
    }
}

void switchLight()
{
    if (upTo(6) == 0) return switchAllLights();
    const GLenum light = GL_LIGHT0 + upTo(8);
    switchCapability(light);
    const GLfloat position[] = {0, 1, 2, static_cast<GLfloat>(upTo(2))};
    glLightfv(light, GL_POSITION, position);
    glLightf(light, GL_SPOT_CUTOFF, upTo(2) ? 180.0f : 30.0f);
    const GLfloat color[] = {static_cast<GLfloat>(upTo(2)), 0, 0, 1};
    glLightfv(light, oneOf<GLenum>({GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR}), color);
}

void changeMaterialColor()
{
    const GLfloat color[] = {static_cast<GLfloat>(upTo(2)), 0, 0, 1};
    glMaterialfv(GL_FRONT_AND_BACK, oneOf<GLenum>({GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION}), color);
}

void changeMaterial()
{
    changeMaterialColor();
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, static_cast<GLfloat>(upTo(2)));
}

void changeFog()
{
    switchCapability(GL_FOG);
    glFogf(GL_FOG_MODE, static_cast<GLfloat>(oneOf<GLenum>({GL_LINEAR, GL_EXP, GL_EXP2})));
    glFogf(GL_FOG_COORDINATE_SOURCE_QRN,
           static_cast<GLfloat>(oneOf<GLenum>({GL_FOG_COORDINATE_QRN, GL_FRAGMENT_DEPTH_QRN})));
}

void changeMatrix()
{
    static const GLfloat shear[16] = {1, 2, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 3, 0, 0, 1};
    static const GLfloat projective[16] = {1, 0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    switch (upTo(12)) {
    case 0:
    case 1:
        return glLoadIdentity();
    case 2:
        return glTranslatef(1, 2, 0);
    case 3:
        return glScalef(2, 3, 1);
    case 4:
    case 5:
        return glRotatef(30, 0, 0, 1);
    case 6:
        return glRotatef(30, 1, 2, 3);
    case 7:
        return glFrustumf(-1, 1, -1, 1, 1, 10);
    case 8:
        return glLoadMatrixf(upTo(2) ? shear : projective);
    case 9:
        return glMultMatrixf(upTo(2) ? shear : projective);
    case 10:
        return glPushMatrix();
    default:
        return glPopMatrix();
    }
}

// The modelview most of the time, as programs do.
void changeMatrices()
{
    const GLenum modes[] = {GL_MODELVIEW, GL_MODELVIEW, GL_MODELVIEW, GL_PROJECTION, GL_TEXTURE, GL_MATRIX_PALETTE_OES};
    if (upTo(2)) glMatrixMode(oneOf(modes));
    changeMatrix();
    glGetError(); // full and empty stacks
}

void changeTexture()
{
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    const GLenum target = oneOf<GLenum>({GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES});
    switchCapability(target);
    const GLenum format = oneOf<GLenum>({GL_ALPHA, GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB, GL_RGBA});
    if (target == GL_TEXTURE_2D) {
        glBindTexture(target, upTo(4));
        glTexImage2D(target, 0, static_cast<GLint>(format), 4, 4, 0, format, GL_UNSIGNED_BYTE, nullptr);
    } else if (target == GL_TEXTURE_CUBE_MAP_OES) {
        glBindTexture(target, upTo(2) * 10);
    }
}

void changeTexGen()
{
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    switchCapability(GL_TEXTURE_GEN_STR_OES);
    glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES,
                 static_cast<GLint>(oneOf<GLenum>({GL_NORMAL_MAP_OES, GL_REFLECTION_MAP_OES})));
}

void setEnvironment(GLenum name, GLenum value)
{
    glTexEnvi(GL_TEXTURE_ENV, name, static_cast<GLint>(value));
}

void changeEnvironment()
{
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    setEnvironment(GL_TEXTURE_ENV_MODE, oneOf<GLenum>({GL_MODULATE, GL_DECAL, GL_ADD, GL_BLEND, GL_REPLACE, GL_COMBINE,
                                                       GL_COMBINE, GL_COMBINE}));
    setEnvironment(GL_COMBINE_RGB, oneOf<GLenum>({GL_REPLACE, GL_MODULATE, GL_ADD, GL_ADD_SIGNED, GL_INTERPOLATE,
                                                  GL_SUBTRACT, GL_DOT3_RGB, GL_DOT3_RGBA}));
    setEnvironment(GL_COMBINE_ALPHA,
                   oneOf<GLenum>({GL_REPLACE, GL_MODULATE, GL_ADD, GL_ADD_SIGNED, GL_INTERPOLATE, GL_SUBTRACT}));
    const GLenum sources[] = {GL_TEXTURE, GL_TEXTURE0, GL_TEXTURE1, GL_CONSTANT, GL_PRIMARY_COLOR, GL_PREVIOUS};
    const uint32_t argument = upTo(3);
    setEnvironment(GL_SRC0_RGB + argument, oneOf(sources));
    setEnvironment(GL_SRC0_ALPHA + argument, oneOf(sources));
    setEnvironment(GL_OPERAND0_RGB + argument,
                   oneOf<GLenum>({GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}));
    setEnvironment(GL_OPERAND0_ALPHA + argument, oneOf<GLenum>({GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}));
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, upTo(2) ? 1.0f : 2.0f);
}

void changePoints()
{
    switchCapability(oneOf<GLenum>({GL_POINT_SMOOTH, GL_POINT_SPRITE_OES, GL_LINE_SMOOTH}));
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, static_cast<GLint>(upTo(2)));
    const GLfloat attenuation[] = {1, upTo(3) ? 0.0f : 1.0f, 0};
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, attenuation);
}

void changeArrays()
{
    static const GLfloat coordinates[64] = {};
    switchArray(oneOf<GLenum>({GL_COLOR_ARRAY, GL_NORMAL_ARRAY}));
    glVertexPointer(static_cast<GLint>(2 + upTo(3)), GL_FLOAT, 0, coordinates);
    glColorPointer(4, GL_FLOAT, 0, coordinates);
    glNormalPointer(GL_FLOAT, 0, coordinates);
    for (uint32_t unit = 0; unit < 2; ++unit) {
        glClientActiveTexture(GL_TEXTURE0 + unit);
        switchArray(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(static_cast<GLint>(2 + upTo(3)), GL_FLOAT, 0, coordinates);
    }
}

void changePaletteMatrix()
{
    glCurrentPaletteMatrixOES(upTo(20));
    if (upTo(2)) glLoadPaletteFromModelViewMatrixOES();
}

void changePalette()
{
    static const GLfloat weights[64] = {};
    static const GLubyte indices[64] = {};
    switchCapability(GL_MATRIX_PALETTE_OES);
    if (upTo(2)) glDisable(GL_MATRIX_PALETTE_OES); // palettes are rare
    glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    const GLint units = static_cast<GLint>(upTo(5));
    glMatrixIndexPointerOES(units, GL_UNSIGNED_BYTE, 0, indices);
    glWeightPointerOES(units, GL_FLOAT, 0, weights);
}

void changeSwitches()
{
    switchCapability(oneOf<GLenum>({GL_LIGHTING, GL_COLOR_MATERIAL, GL_NORMALIZE, GL_RESCALE_NORMAL, GL_CLIP_PLANE0,
                                    GL_ALPHA_TEST, GL_ALPHA_FACTOR_ZEK}));
    glShadeModel(oneOf<GLenum>({GL_FLAT, GL_SMOOTH}));
    glAlphaFunc(GL_NEVER + upTo(8), 0.5f);
}

} // namespace

void changeAtRandom(uint32_t seed)
{
    randomNumbers.seed(seed);
    void (*const changes[])() = {switchLight,   changeMaterial, changeFog,         changeMatrices, changeMatrices,
                                 changeTexture, changeTexGen,   changeEnvironment, changePoints,   changePaletteMatrix,
                                 changeArrays,  changePalette,  changeSwitches,    changeSwitches};
    oneOf(changes)();
}

void changeValueAtRandom(uint32_t seed)
{
    randomNumbers.seed(seed);
    if (upTo(3) == 0) return changeMaterialColor();
    glMatrixMode(GL_MODELVIEW);
    changeMatrix();
    glGetError();
}

void drawAtRandom(uint32_t seed)
{
    randomNumbers.seed(seed);
    if (upTo(6) == 0) return glDrawTexfOES(0, 0, 0, 1, 1);
    glDrawArrays(oneOf<GLenum>({GL_POINTS, GL_LINES, GL_TRIANGLES, GL_TRIANGLES}), 0, 3);
}
