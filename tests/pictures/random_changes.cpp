// SPDX-License-Identifier: MIT
// One change at a time: of the model, and of the current context by ordinary calls.
#include "pictures/random_setters.h"
#include "pictures/textures.h"

#include <iterator>

namespace {

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
        state.palette = 1 + random() % 100;
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

} // namespace

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
