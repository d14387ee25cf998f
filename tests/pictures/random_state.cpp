// SPDX-License-Identifier: MIT
#include "pictures/random_state.h"

#include "pictures/extensions.h"
#include "pictures/random_setters.h"
#include "pictures/textures.h"

#include <iterator>

namespace {

// Back to the start values of a context.
void startCombiner(RandomUnit &u, uint32_t unit)
{
    const uint32_t own = 4 + unit; // the unit's texture by its number
    for (int i = 0; i < 3; ++i)
        u.source[i] = u.alphaSource[i] = i == 0 ? own : i == 1 ? 3 : 1;
    u.operand[2] = 1;
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
