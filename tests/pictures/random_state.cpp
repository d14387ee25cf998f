// SPDX-License-Identifier: MIT
#include "pictures/random_state.h"

#include "pictures/extensions.h"
#include "pictures/textures.h"

#include <iterator>

namespace {

constexpr GLenum kCapabilities[] = {GL_LIGHTING,
                                    GL_COLOR_MATERIAL,
                                    GL_NORMALIZE,
                                    GL_RESCALE_NORMAL,
                                    GL_FOG,
                                    GL_ALPHA_TEST,
                                    GL_CLIP_PLANE0,
                                    GL_POINT_SPRITE_OES,
                                    GL_POINT_SMOOTH,
                                    GL_LINE_SMOOTH,
                                    GL_MATRIX_PALETTE_OES,
                                    GL_BLEND,
                                    GL_LIGHT0,
                                    GL_LIGHT1,
                                    GL_LIGHT2,
                                    GL_LIGHT3,
                                    GL_LIGHT4,
                                    GL_LIGHT5,
                                    GL_LIGHT6,
                                    GL_LIGHT7};
constexpr uint32_t kPaletteBit = 1 << 10;
constexpr GLenum kFormats[] = {GL_RGBA, GL_ALPHA, GL_LUMINANCE, GL_RGB, GL_LUMINANCE_ALPHA};
constexpr GLenum kModes[] = {GL_MODULATE, GL_REPLACE, GL_DECAL, GL_BLEND, GL_ADD, GL_COMBINE};
constexpr GLenum kRgb[] = {GL_MODULATE,    GL_REPLACE,  GL_ADD,      GL_ADD_SIGNED,
                           GL_INTERPOLATE, GL_SUBTRACT, GL_DOT3_RGB, GL_DOT3_RGBA};
constexpr GLenum kSources[] = {GL_TEXTURE, GL_CONSTANT, GL_PRIMARY_COLOR, GL_PREVIOUS, GL_TEXTURE0, GL_TEXTURE1};
constexpr GLenum kOperands[] = {GL_SRC_COLOR, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_COLOR, GL_ONE_MINUS_SRC_ALPHA};
constexpr GLenum kAlphaOperands[] = {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA};
constexpr GLenum kFogModes[] = {GL_EXP, GL_LINEAR, GL_EXP2};
constexpr GLenum kAlphaFunctions[] = {GL_ALWAYS,  GL_LESS,     GL_EQUAL,  GL_LEQUAL,
                                      GL_GREATER, GL_NOTEQUAL, GL_GEQUAL, GL_NEVER};

// A number between 0 and 1 made of two numbers; the same for the same two.
GLfloat made(uint32_t a, uint32_t b)
{
    return static_cast<GLfloat>((a * 2654435761u ^ (b + 1) * 40503u) % 997) / 997;
}

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

void loadVariant(uint32_t n)
{
    glLoadIdentity();
    if (n % 5 == 1) glTranslatef(0.2f, -0.1f, 0);
    if (n % 5 == 2) glRotatef(25, 0, 0.3f, 1);
    if (n % 5 == 3) glScalef(0.7f, 0.7f, 0.7f);
    if (n % 5 == 4) glScalef(0.6f, 0.9f, 0.5f), glRotatef(10, 1, 0, 0);
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

template <size_t N>
uint32_t pick(std::mt19937 &random, const GLenum (&)[N])
{
    return random() % N;
}

void randomCombiner(RandomUnit &u, std::mt19937 &random)
{
    u.rgb = pick(random, kRgb);
    u.alpha = random() % 6; // no dot products
    u.rgbScale = random() % 3;
    u.alphaScale = random() % 3;
    for (int i = 0; i < 3; ++i) {
        u.source[i] = pick(random, kSources);
        u.operand[i] = pick(random, kOperands);
        u.alphaSource[i] = pick(random, kSources);
        u.alphaOperand[i] = random() % 2;
    }
}

// Back to the start values of a context.
void startCombiner(RandomUnit &u, uint32_t unit)
{
    const uint32_t own = 4 + unit; // the unit's texture by its number
    for (int i = 0; i < 3; ++i)
        u.source[i] = u.alphaSource[i] = i == 0 ? own : i == 1 ? 3 : 1;
    u.operand[2] = 1;
}

// One texture goes; what was bound to it is bound to it again under its name with a new image, or elsewhere.
void replaceTexture(RandomState &state, std::mt19937 &random)
{
    PoolTexture &texture = state.pool[random() % kPoolSize];
    const auto index = static_cast<uint32_t>(&texture - state.pool);
    glDeleteTextures(1, &texture.name);
    texture.name = random() % 2 ? texture.name : 10 + random() % 300;
    for (const PoolTexture &other : state.pool)
        if (&other != &texture && other.name == texture.name) texture.name = 1000 + index;
    texture.format = pick(random, kFormats);
    texture.content = random() % 1000;
    const uint32_t unit = random() % 2;
    bindUnit(unit, texture.name);
    nearestFilter();
    upload(texture);
    state.units[unit].texture = index;
    if (state.units[1 - unit].texture == index) bindUnit(1 - unit, texture.name);
}

void changeTexture(RandomState &state, std::mt19937 &random)
{
    const uint32_t unit = random() % 2;
    RandomUnit &u = state.units[unit];
    glActiveTexture(GL_TEXTURE0 + unit);
    switch (random() % 9) {
    case 0:
        u.enabled2D = !u.enabled2D;
        (u.enabled2D ? glEnable : glDisable)(GL_TEXTURE_2D);
        return;
    case 1:
        u.texture = random() % kPoolSize;
        return bindUnit(unit, state.pool[u.texture].name);
    case 2: {
        PoolTexture &texture = state.pool[u.texture];
        texture.format = pick(random, kFormats);
        texture.content = random() % 1000;
        return upload(texture);
    }
    case 3:
        return replaceTexture(state, random);
    case 4:
        u.mode = pick(random, kModes);
        return setMode(u);
    case 5:
        u.mode = static_cast<uint32_t>(std::size(kModes)) - 1;
        setMode(u);
        randomCombiner(u, random);
        return setCombiner(u);
    case 6:
        u.constant = random() % 1000;
        return setConstant(u);
    case 7:
        u.matrix = random() % 5;
        return setTextureMatrix(u.matrix);
    default:
        u.coordReplace = random() % 2;
        u.coordArray = random() % 2;
        u.coordSize = 2 + random() % 3;
        return setCoordReplace(u);
    }
}

// Lighting and its modes, which show only together, in a third of the cases.
void changeCapability(RandomState &state, std::mt19937 &random)
{
    const auto bit = static_cast<uint32_t>(random() % 3 ? random() % std::size(kCapabilities) : random() % 4);
    state.capabilities ^= 1u << bit;
    setCapability(bit, state.capabilities >> bit & 1);
}

void changeLighting(RandomState &state, std::mt19937 &random)
{
    const uint32_t light = random() % 8;
    switch (random() % 4) {
    case 0:
        state.material = 1 + random() % 1000;
        return setMaterial(state.material);
    case 1:
        state.lightModel = random() % 1000;
        return setLightModel(state.lightModel);
    default:
        state.lights[light] = 1 + random() % 1000;
        return setLight(light, state.lights[light]);
    }
}

void changeFragments(RandomState &state, std::mt19937 &random)
{
    switch (random() % 3) {
    case 0:
        state.fogMode = pick(random, kFogModes);
        state.fogVariant = 1 + random() % 1000;
        return setFog(state.fogMode, state.fogVariant);
    case 1:
        state.alphaFunction = random() % 7; // not GL_NEVER
        state.alphaReference = random() % 4;
        return setAlphaTest(state.alphaFunction, state.alphaReference);
    default:
        state.clipPlane = 1 + random() % 1000;
        return setClipPlane(state.clipPlane);
    }
}

void changeVertices(RandomState &state, std::mt19937 &random)
{
    switch (random() % 9) {
    case 0:
        state.modelview = random() % 5;
        return setModelview(state.modelview);
    case 1:
        state.projection = random() % 4;
        return setProjection(state.projection);
    case 2:
        state.colour = 1 + random() % 1000;
        return setColour(state.colour);
    case 3:
        state.normal = 1 + random() % 1000;
        return setNormal(state.normal);
    case 4:
        state.pointSize = 1 + random() % 20;
        return glPointSize(static_cast<GLfloat>(state.pointSize));
    case 5:
        state.lineWidth = 1 + random() % 8;
        return glLineWidth(static_cast<GLfloat>(state.lineWidth));
    case 6:
        state.attenuation = random() % 3;
        return setAttenuation(state.attenuation);
    case 7:
        state.palette = random() % 100;
        state.paletteUnits = 1 + random() % 4;
        return setPalette(state.palette);
    default:
        state.shadeModel = random() % 2;
        state.colourArray = random() % 2;
        state.byteColours = random() % 2;
        state.normalArray = random() % 2;
        state.pointSizeArray = random() % 2;
        return glShadeModel(state.shadeModel ? GL_FLAT : GL_SMOOTH);
    }
}

// Arrays of every kind; a state enables some of them.
void setArrays(const RandomState &state)
{
    static const GLfloat positions[] = {-0.8f, -0.8f, 0.1f, 0.8f, -0.7f, 0.3f, -0.7f, 0.8f, -0.2f, 0.8f, 0.8f, 0};
    static const GLfloat colours[] = {1, 0.2f, 0, 1, 0, 1, 0.5f, 0.7f, 0.2f, 0, 1, 0.9f, 1, 1, 0, 0.5f};
    static const GLubyte bytes[] = {255, 50, 0, 255, 0, 255, 128, 180, 50, 0, 255, 230, 255, 255, 0, 128};
    static const GLfloat normals[] = {0, 0, 1, 0.6f, 0, 0.8f, 0, -0.6f, 0.8f, 0.3f, 0.3f, 0.9f};
    static const GLfloat sizes[] = {4, 9, 16, 25};
    static const GLfloat texCoords[][16] = {{0, 0, 1.5f, 0, 0, 1, 1, 1},
                                            {0, 0, 0.2f, 1, 0, 0, 0, 1.5f, 0, 1, 1, 0.3f},
                                            {0, 0, 0, 1, 2, 0, 0, 2, 0, 1, 0.2f, 1, 1.5f, 1.5f, 0, 1.5f}};
    static const GLfloat weights[] = {0.5f, 0.5f, 0, 0, 1, 0, 0, 0, 0.25f, 0.25f, 0.25f, 0.25f, 0.5f, 0, 0.5f, 0};
    static const GLubyte indices[] = {4, 9, 14, 19, 19, 14, 9, 4, 4, 9, 14, 19, 9, 9, 4, 14};
    const auto array = [](GLenum name, bool on) { (on ? glEnableClientState : glDisableClientState)(name); };
    array(GL_VERTEX_ARRAY, true);
    glVertexPointer(3, GL_FLOAT, 0, positions);
    array(GL_COLOR_ARRAY, state.colourArray);
    if (state.colourArray && state.byteColours) glColorPointer(4, GL_UNSIGNED_BYTE, 0, bytes);
    if (state.colourArray && !state.byteColours) glColorPointer(4, GL_FLOAT, 0, colours);
    array(GL_NORMAL_ARRAY, state.normalArray);
    if (state.normalArray) glNormalPointer(GL_FLOAT, 0, normals);
    array(GL_POINT_SIZE_ARRAY_OES, state.pointSizeArray);
    if (state.pointSizeArray) glPointSizePointerOES(GL_FLOAT, 0, sizes);
    for (uint32_t unit = 0; unit < 2; ++unit) {
        const RandomUnit &u = state.units[unit];
        glClientActiveTexture(GL_TEXTURE0 + unit);
        array(GL_TEXTURE_COORD_ARRAY, u.coordArray);
        if (u.coordArray) glTexCoordPointer(static_cast<GLint>(u.coordSize), GL_FLOAT, 0, texCoords[u.coordSize - 2]);
    }
    const bool palette = state.capabilities & kPaletteBit;
    array(GL_WEIGHT_ARRAY_OES, palette);
    array(GL_MATRIX_INDEX_ARRAY_OES, palette);
    if (!palette) return;
    const auto units = static_cast<GLint>(state.paletteUnits);
    weightPointer(units, GL_FLOAT, 4 * sizeof(GLfloat), weights);
    matrixIndexPointer(units, GL_UNSIGNED_BYTE, 4, indices);
}

} // namespace

RandomState startState()
{
    RandomState state = {};
    for (uint32_t i = 0; i < kPoolSize; ++i)
        state.pool[i] = {.name = 10 + 61 * i, .format = i % 5, .content = i};
    for (uint32_t unit = 0; unit < 2; ++unit) {
        startCombiner(state.units[unit], unit);
        state.units[unit].texture = unit;
        state.units[unit].coordSize = 2;
    }
    state.capabilities = 1u << 12; // GL_LIGHT0, for when there is lighting
    state.pointSize = 1;
    state.lineWidth = 1;
    state.paletteUnits = 1;
    return state;
}

void setState(const RandomState &state)
{
    const RandomState start = startState();
    for (const PoolTexture &texture : state.pool) {
        glBindTexture(GL_TEXTURE_2D, texture.name);
        nearestFilter();
        upload(texture);
    }
    for (const uint32_t unit : {1u, 0u}) {
        const RandomUnit &u = state.units[unit];
        bindUnit(unit, state.pool[u.texture].name);
        if (u.enabled2D) glEnable(GL_TEXTURE_2D);
        if (u.mode) setMode(u);
        setCombiner(u);
        if (u.constant) setConstant(u);
        if (u.matrix) setTextureMatrix(u.matrix);
        if (u.coordReplace) setCoordReplace(u);
    }
    for (uint32_t bit = 0; bit < std::size(kCapabilities); ++bit)
        if (state.capabilities >> bit & 1) setCapability(bit, true);
    for (uint32_t i = 0; i < 8; ++i)
        if (state.lights[i]) setLight(i, state.lights[i]);
    if (state.material) setMaterial(state.material);
    if (state.lightModel) setLightModel(state.lightModel);
    if (state.fogVariant) setFog(state.fogMode, state.fogVariant);
    if (state.alphaFunction) setAlphaTest(state.alphaFunction, state.alphaReference);
    if (state.clipPlane) setClipPlane(state.clipPlane);
    if (state.shadeModel) glShadeModel(GL_FLAT);
    if (state.modelview) setModelview(state.modelview);
    if (state.projection) setProjection(state.projection);
    if (state.colour) setColour(state.colour);
    if (state.normal) setNormal(state.normal);
    if (state.pointSize != start.pointSize) glPointSize(static_cast<GLfloat>(state.pointSize));
    if (state.lineWidth != start.lineWidth) glLineWidth(static_cast<GLfloat>(state.lineWidth));
    if (state.attenuation) setAttenuation(state.attenuation);
    if (state.palette) setPalette(state.palette);
}

void changeState(RandomState &state, std::mt19937 &random)
{
    switch (random() % 8) {
    case 0:
    case 1:
        return changeCapability(state, random);
    case 2:
        return changeLighting(state, random);
    case 3:
        return changeFragments(state, random);
    case 4:
        return changeVertices(state, random);
    default:
        return changeTexture(state, random);
    }
}

void drawState(const RandomState &state, RandomDraw draw)
{
    static const GLubyte indices[] = {3, 1, 2, 0};
    setArrays(state);
    switch (draw) {
    case RandomDraw::TRIANGLES:
        return glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    case RandomDraw::ELEMENTS:
        return glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_BYTE, indices);
    case RandomDraw::POINTS:
        return glDrawArrays(GL_POINTS, 0, 4);
    case RandomDraw::LINES:
        return glDrawArrays(GL_LINE_LOOP, 0, 4);
    case RandomDraw::DRAW_TEXTURE:
        return drawTexi(8, 8, 0, 40, 48);
    }
}
