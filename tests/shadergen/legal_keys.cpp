// SPDX-License-Identifier: MIT
#include "shadergen/legal_keys.h"

#include "state/lighting_state.h"

#include <algorithm>

namespace {

// Kinds of lights 0 to 7 behind the values of LIGHTING from 1 on.
constexpr uint8_t D = LIGHT_DIRECTIONAL, P = LIGHT_POINT, S = LIGHT_SPOT;
constexpr uint8_t kLightSets[][kMaxLights] = {
    {},
    {D},
    {0, P},
    {0, 0, S},
    {D, 0, P},
    {0, S, 0, 0, D},
    {0, 0, P, 0, 0, S},
    {S, P, D},
    {D, D, D, D, D, D, D, D},
    {S, S, S, S, S, S, S, S},
    {D, P, S, D, P, S, D, P},
};

enum Primitive : uint32_t {
    TRIANGLES,
    POINTS,
    SMOOTH_POINTS,
    SPRITES_UNIT0,
    SPRITES_UNIT1,
    SPRITES_BOTH,
    SMOOTH_LINES,
    DRAW_TEXTURE,
    PRIMITIVES,
};

// Environment codes behind the values of ENVIRONMENT: all of them, GL_MODULATE first.
uint32_t environmentCode(uint32_t value)
{
    return ENV_MODULATE + value;
}

uint32_t unitAspectValues(uint32_t aspect)
{
    switch (aspect) {
    case TARGET:
    case TEX_MATRIX:
        return 4;
    case TEXGEN:
        return 3;
    case FORMAT:
        return 5;
    case ENVIRONMENT:
        return COMBINE_DOT3_RGBA;
    case ALPHA_FUNCTION:
        return COMBINE_SUBTRACT - COMBINE_REPLACE + 1;
    case PROJECTIVE:
    case SCALED:
        return 2;
    }
    switch ((aspect - ARGUMENTS) % ARGUMENT_ASPECTS) {
    case RGB_OPERAND:
        return 4;
    case ALPHA_OPERAND:
        return 2;
    default:
        return 6; // sources
    }
}

ShaderStateBitfield unitFields(const Choices &choices)
{
    ShaderStateBitfield state = {};
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        const uint8_t *chosen = choices.data() + (unit == 0 ? UNIT0 : UNIT1);
        if (chosen[TARGET] == 0) continue; // a disabled unit's words are zero
        state.unit[unit] = {.enabled = 1,
                            .cubeMap = chosen[TARGET] == 2,
                            .external = chosen[TARGET] == 3,
                            .texGen = chosen[TEXGEN] & 3u,
                            .texMatrixForm = chosen[TEX_MATRIX] & 3u,
                            .projective = chosen[PROJECTIVE] & 1u,
                            .reservedUnit = 0};
        CombineBlock &block = state.combine[unit];
        block.formatClass = chosen[FORMAT] & 7u;
        block.envRgb = environmentCode(chosen[ENVIRONMENT]) & 0xF;
        if (block.envRgb < COMBINE_REPLACE) continue;
        block.envAlpha = (COMBINE_REPLACE + chosen[ALPHA_FUNCTION]) & 0xF;
        block.scaled = chosen[SCALED] & 1u;
        for (uint32_t i = 0; i < 3; ++i) {
            const uint8_t *argument = chosen + ARGUMENTS + i * ARGUMENT_ASPECTS;
            block.rgbArg[i] = {.operand = argument[RGB_OPERAND] & 3u,
                               .source = (SOURCE_TEXTURE + argument[RGB_SOURCE]) & 7,
                               .reservedArg = 0};
            block.alphaArg[i] = {.operand = argument[ALPHA_OPERAND] & 1u,
                                 .source = (SOURCE_TEXTURE + argument[ALPHA_SOURCE]) & 7,
                                 .reservedArg = 0};
        }
    }
    return state;
}

void setLighting(const Choices &choices, ProgramKey &key)
{
    ShaderStateBitfield &state = key.state;
    state.colorMaterial = choices[COLOR_MATERIAL] & 1u;
    state.perVertexColor = choices[COLOR_ARRAY] != 0 || choices[LIGHTING] != 0;
    if (choices[LIGHTING] == 0) {
        key.inputs.normalizeForTexGen = choices[NORMALIZE] && !state.noTexGen;
        return;
    }
    state.lighting = 1;
    state.normalizeNormal = choices[NORMALIZE] & 1u;
    const uint8_t(&kinds)[kMaxLights] = kLightSets[choices[LIGHTING] - 1];
    for (uint32_t light = 0; light < kMaxLights; ++light)
        key.inputs.lightKinds = (key.inputs.lightKinds | static_cast<uint32_t>(kinds[light]) << (2 * light)) & 0xFFFF;
    state.lightCount = (kMaxLights - std::count(kinds, kinds + kMaxLights, 0)) & 0xF;
    state.directionalLight = std::count(kinds, kinds + kMaxLights, D) == kMaxLights;
    state.pointLight = std::count(kinds, kinds + kMaxLights, D) == 0;
    state.disableSpot = std::count(kinds, kinds + kMaxLights, S) == 0;
    // Without a light every product counts as zero.
    state.noAmbient = state.lightCount == 0;
    state.noDiffuse = state.lightCount == 0 || choices[NO_DIFFUSE] != 0;
    state.noSpecular = state.lightCount == 0 || choices[NO_SPECULAR] != 0;
    state.twoSided = choices[TWO_SIDE] != 0 && !(state.noDiffuse && state.noSpecular);
}

void setTransform(const Choices &choices, ProgramKey &key)
{
    ShaderStateBitfield &state = key.state;
    if (choices[PALETTE] != 0) {
        state.matrixPalette = 1;
        state.vertexUnits = choices[PALETTE] & 0xFu;
        key.inputs.paletteUnits = choices[PALETTE] & 7u;
        state.orthogonalTransform = choices[ORTHOGONAL] & 1u;
        state.mvpForm = MVP_GENERAL;
        return;
    }
    state.orthogonalTransform = choices[ORTHOGONAL] != 0 && state.lighting && state.directionalLight && state.noTexGen;
    // The general form first, so that it is the plain choice.
    state.mvpForm = choices[MVP_FORM] == 0   ? MVP_GENERAL
                    : choices[MVP_FORM] <= 4 ? choices[MVP_FORM] - 1u
                                             : MVP_SCALE_TRANSLATE;
}

uint32_t coordinatesPack(const Choices &choices, const ShaderStateBitfield &state)
{
    for (const TextureUnitKey &unit : state.unit)
        if (!unit.enabled || unit.texMatrixForm != TEX_MATRIX_IDENTITY || unit.cubeMap || unit.projective) return 0;
    return choices[SHORT_COORDINATES] & 1u;
}

// Draw-texture's short vertex shader has coordinates and a colour only.
ProgramKey passThroughKey(const Choices &choices, ShaderStateBitfield state)
{
    state.packedTexCoords = coordinatesPack(choices, state);
    for (TextureUnitKey &unit : state.unit) {
        unit.texGen = TEXGEN_NONE;
        unit.texMatrixForm = TEX_MATRIX_IDENTITY;
    }
    state.alphaFunc = choices[ALPHA_TEST] & 7u;
    state.perVertexColor = choices[COLOR_ARRAY] != 0 || choices[LIGHTING] != 0;
    state.flatShading = choices[FLAT] & 1u;
    state.passThrough = 1;
    return {.state = state, .inputs = {}};
}

} // namespace

uint32_t aspectValues(uint32_t aspect)
{
    if (aspect >= UNIT1) return unitAspectValues(aspect - UNIT1);
    if (aspect >= UNIT0) return unitAspectValues(aspect - UNIT0);
    switch (aspect) {
    case LIGHTING:
        return 1 + std::size(kLightSets);
    case FOG:
        return 4;
    case PALETTE:
        return 1 + kMaxVertexUnits;
    case MVP_FORM:
        return 6;
    case ALPHA_TEST:
        return 8;
    case PRIMITIVE:
        return PRIMITIVES;
    default:
        return 2;
    }
}

void choosePrerequisites(uint32_t aspect, Choices &choices)
{
    const auto choose = [&choices](uint32_t needed, uint32_t value) {
        if (choices[needed] == 0) choices[needed] = static_cast<uint8_t>(value);
    };
    if (aspect >= UNIT0) {
        const uint32_t first = aspect >= UNIT1 ? UNIT1 : UNIT0;
        const uint32_t ofUnit = aspect - first;
        choose(first + TARGET, 1);
        // A function with three arguments, or one that leaves alpha to its own function.
        if (ofUnit >= ARGUMENTS) choose(first + ENVIRONMENT, COMBINE_INTERPOLATE - ENV_MODULATE);
        if (ofUnit == ALPHA_FUNCTION || ofUnit == SCALED) choose(first + ENVIRONMENT, COMBINE_DOT3_RGB - ENV_MODULATE);
        return;
    }
    switch (aspect) {
    case NO_SPECULAR:
    case NO_DIFFUSE:
    case TWO_SIDE:
        choose(LIGHTING, std::size(kLightSets) - 3); // a light of each kind
        break;
    case ORTHOGONAL:
        choose(LIGHTING, std::size(kLightSets) - 2); // eight directional ones
        break;
    case COLOR_MATERIAL:
    case NORMALIZE:
        choose(LIGHTING, 2);
        break;
    case ALPHA_FACTOR:
    case FLAT:
        choose(COLOR_ARRAY, 1);
        break;
    case FOG_COORDINATE:
    case FOG_IN_SHADER:
        choose(FOG, FOG_LINEAR);
        break;
    case ATTENUATION:
        choose(PRIMITIVE, POINTS);
        break;
    case SHORT_COORDINATES:
        for (const uint32_t first : {UNIT0, UNIT1})
            choose(first + TARGET, 1);
        break;
    default:
        break;
    }
}

ProgramKey legalKey(const Choices &choices)
{
    ProgramKey key = {.state = unitFields(choices), .inputs = {}};
    if (choices[PRIMITIVE] == DRAW_TEXTURE) return passThroughKey(choices, key.state);

    ShaderStateBitfield &state = key.state;
    state.noTexGen = state.unit[0].texGen == TEXGEN_NONE && state.unit[1].texGen == TEXGEN_NONE;
    setLighting(choices, key);
    setTransform(choices, key);
    state.alphaFactor = choices[ALPHA_FACTOR] & 1u;
    state.flatShading = choices[FLAT] & 1u;
    state.userClip = choices[USER_CLIP] & 1u;
    state.alphaFunc = choices[ALPHA_TEST] & 7u;
    state.fogMode = choices[FOG] & 3u;
    state.fogCoordinate = state.fogMode != FOG_NONE && choices[FOG_COORDINATE] != 0;
    key.inputs.fogBlendInShader = state.fogMode != FOG_NONE && choices[FOG_IN_SHADER] != 0;
    key.inputs.pointAttenuation = choices[ATTENUATION] & 1u;
    state.packedTexCoords = coordinatesPack(choices, state);
    state.eyeCoordinates = choices[ATTENUATION] != 0 || state.lighting || !state.noTexGen || state.userClip;

    const uint32_t primitive = choices[PRIMITIVE];
    state.pointSize = primitive >= POINTS && primitive <= SPRITES_BOTH;
    state.pointSmooth = primitive == SMOOTH_POINTS;
    if (primitive >= SPRITES_UNIT0 && primitive <= SPRITES_BOTH)
        state.pointSpriteReplace = (primitive - SPRITES_UNIT0 + 1) & 3;
    state.lineSmooth = primitive == SMOOTH_LINES;
    return key;
}
