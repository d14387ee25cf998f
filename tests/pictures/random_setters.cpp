// SPDX-License-Identifier: MIT
#include "pictures/random_setters.h"

#include "pictures/extensions.h"
#include "pictures/textures.h"

namespace {

// A number between 0 and 1 made of two numbers; the same for the same two.
GLfloat made(uint32_t a, uint32_t b)
{
    return static_cast<GLfloat>((a * 2654435761u ^ (b + 1) * 40503u) % 997) / 997;
}

void loadVariant(uint32_t n)
{
    glLoadIdentity();
    if (n % 5 == 1) glTranslatef(0.2f, -0.1f, 0);
    if (n % 5 == 2) glRotatef(25, 0, 0.3f, 1);
    if (n % 5 == 3) glScalef(0.7f, 0.7f, 0.7f);
    if (n % 5 == 4) glScalef(0.6f, 0.9f, 0.5f), glRotatef(10, 1, 0, 0);
}

} // namespace

void setCapability(uint32_t bit, bool on)
{
    (on ? glEnable : glDisable)(kCapabilities[bit]);
}

void upload(const PoolTexture &texture)
{
    GLubyte texels[16];
    for (uint32_t i = 0; i < 16; ++i)
        texels[i] = static_cast<GLubyte>(255 * made(texture.content * 16 + i, 3));
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    const GLenum format = kFormats[texture.format];
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), 2, 2, 0, format, GL_UNSIGNED_BYTE, texels);
}

void bindUnit(uint32_t unit, GLuint name)
{
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, name);
}

void setMode(const RandomUnit &u)
{
    setEnv(GL_TEXTURE_ENV_MODE, kModes[u.mode]);
}

void setCombiner(const RandomUnit &u)
{
    setEnv(GL_COMBINE_RGB, kRgb[u.rgb]);
    setEnv(GL_COMBINE_ALPHA, kRgb[u.alpha]);
    for (GLenum i = 0; i < 3; ++i) {
        setEnv(GL_SRC0_RGB + i, kSources[u.source[i]]);
        setEnv(GL_OPERAND0_RGB + i, kOperands[u.operand[i]]);
        setEnv(GL_SRC0_ALPHA + i, kSources[u.alphaSource[i]]);
        setEnv(GL_OPERAND0_ALPHA + i, kAlphaOperands[u.alphaOperand[i]]);
    }
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, static_cast<GLfloat>(1u << u.rgbScale));
    glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, static_cast<GLfloat>(1u << u.alphaScale));
}

void setConstant(const RandomUnit &u)
{
    const uint32_t n = u.constant;
    const GLfloat colour[] = {n ? made(n, 1) : 0, n ? made(n, 2) : 0, n ? made(n, 3) : 0, n ? made(n, 4) : 0};
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, colour);
}

// 0: identity, then a scale, a move, a turn, a projective one.
void setTextureMatrix(uint32_t variant)
{
    const GLfloat projective[] = {1, 0, 0, 0.2f, 0, 1, 0, 0.1f, 0, 0, 1, 0, 0.3f, 0.1f, 0, 1.2f};
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    if (variant == 1) glScalef(1.5f, 0.5f, 1);
    if (variant == 2) glTranslatef(0.25f, 0.75f, 0);
    if (variant == 3) glRotatef(30, 0, 0, 1);
    if (variant == 4) glLoadMatrixf(projective);
    glMatrixMode(GL_MODELVIEW);
}

void setCoordReplace(const RandomUnit &u)
{
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, u.coordReplace);
}

// Lights keep clear of the surface; the modelview is out of the way while they are placed.
void setLight(uint32_t light, uint32_t variant)
{
    const GLenum name = GL_LIGHT0 + light;
    const GLfloat w = variant % 3 == 0 ? 0.0f : 1.0f;
    const GLfloat position[] = {made(variant, 5) - 0.5f, made(variant, 6) - 0.5f, 0.8f + made(variant, 7), w};
    const GLfloat diffuse[] = {made(variant, 8), made(variant, 9), made(variant, 10), 1};
    const GLfloat ambient[] = {variant % 2 ? 0.1f : 0.0f, 0, 0, 1};
    const GLfloat specular[] = {variant % 5 < 2 ? 0.4f : 0.0f, 0, 0, 1};
    glPushMatrix();
    glLoadIdentity();
    glLightfv(name, GL_POSITION, position);
    glPopMatrix();
    glLightfv(name, GL_DIFFUSE, diffuse);
    glLightfv(name, GL_AMBIENT, ambient);
    glLightfv(name, GL_SPECULAR, specular);
    glLightf(name, GL_SPOT_CUTOFF, variant % 3 == 2 ? 60.0f : 180.0f);
    glLightf(name, GL_LINEAR_ATTENUATION, 0.25f * static_cast<GLfloat>(variant % 4));
}

void setMaterial(uint32_t n)
{
    const GLfloat diffuse[] = {made(n, 11), made(n, 12), made(n, 13), 0.8f};
    const GLfloat ambient[] = {made(n, 14), 0.2f, 0.1f, 1};
    const GLfloat specular[] = {n % 2 ? 0.5f : 0.0f, n % 2 ? made(n, 15) : 0.0f, 0, 1};
    const GLfloat emission[] = {0, n % 3 ? 0.1f : 0.0f, 0, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, diffuse);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, ambient);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular);
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, emission);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 1 + static_cast<GLfloat>(n % 4) * 5);
}

void setLightModel(uint32_t n)
{
    const GLfloat ambient[] = {n ? made(n, 16) : 0.2f, 0.2f, 0.2f, 1};
    const GLfloat twoSide[] = {static_cast<GLfloat>(n % 2)};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
    glLightModelfv(GL_LIGHT_MODEL_TWO_SIDE, twoSide);
}

void setFog(uint32_t mode, uint32_t n)
{
    const GLfloat colour[] = {made(n, 17), made(n, 18), made(n, 19), 1};
    glFogf(GL_FOG_MODE, static_cast<GLfloat>(kFogModes[mode]));
    glFogf(GL_FOG_DENSITY, 0.5f + made(n, 20));
    glFogf(GL_FOG_START, -made(n, 21));
    glFogf(GL_FOG_END, 1 + made(n, 22));
    glFogfv(GL_FOG_COLOR, colour);
}

void setAlphaTest(uint32_t function, uint32_t reference)
{
    glAlphaFunc(kAlphaFunctions[function], 0.2f * static_cast<GLfloat>(reference));
}

// The first coefficient is never negative: such planes stay turned after a draw.
void setClipPlane(uint32_t n)
{
    const GLfloat plane[] = {made(n, 23), made(n, 24) - 0.5f, 0.1f, made(n, 25)};
    glPushMatrix();
    glLoadIdentity();
    glClipPlanef(GL_CLIP_PLANE0, plane);
    glPopMatrix();
}

void setModelview(uint32_t n)
{
    loadVariant(n);
}

void setProjection(uint32_t n)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    if (n == 1) glOrthof(-1.2f, 1.1f, -1, 1.3f, -2, 2);
    if (n == 2) glScalef(0.9f, 0.9f, 0.9f);
    if (n == 3) glFrustumf(-1, 1, -1, 1, 1, 5), glTranslatef(0, 0, -1.5f);
    glMatrixMode(GL_MODELVIEW);
}

void setColour(uint32_t n)
{
    glColor4f(made(n, 26), made(n, 27), made(n, 28), 0.3f + 0.7f * made(n, 29));
}

void setNormal(uint32_t n)
{
    glNormal3f(made(n, 30) - 0.5f, made(n, 31) - 0.5f, 0.7f);
}

void setAttenuation(uint32_t n)
{
    const GLfloat coefficients[] = {n == 2 ? 0.5f : 1.0f, n == 1 ? 0.5f : 0.0f, n == 2 ? 0.25f : 0.0f};
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, coefficients);
}

void setPalette(uint32_t n)
{
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    for (GLuint i = 0; i < 4; ++i) {
        currentPaletteMatrix(i * 5 + 4);
        loadVariant(n + i);
    }
    glMatrixMode(GL_MODELVIEW);
}
