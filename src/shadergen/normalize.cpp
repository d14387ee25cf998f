// SPDX-License-Identifier: MIT
// State that has no effect must not make keys differ: what of the state really decides the texts.
#include "frontend/context.h"
#include "shadergen/program_cache.h"

namespace {

void clearLightingFields(ShaderStateBitfield &key)
{
    key.normalizeNormal = 0;
    key.lightCount = 0;
    key.directionalLight = 0;
    key.pointLight = 0;
    key.disableSpot = 0;
    key.noAmbient = 0;
    key.noDiffuse = 0;
    key.noSpecular = 0;
}

// Draw-texture's vertex shader passes position, colour and coordinates on. It has no output for fog, the clip plane,
// the alpha factor or a back colour, and neither lights nor matrices reach it.
void keepPassThroughFields(ShaderStateBitfield &key)
{
    ShaderStateBitfield kept = {};
    kept.alphaFunc = key.alphaFunc;
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        kept.combine[unit] = key.combine[unit];
        kept.unit[unit].enabled = key.unit[unit].enabled;
        kept.unit[unit].cubeMap = key.unit[unit].cubeMap;
        kept.unit[unit].external = key.unit[unit].external;
        kept.unit[unit].projective = key.unit[unit].projective;
    }
    kept.packedTexCoords = key.packedTexCoords;
    kept.perVertexColor = key.perVertexColor;
    kept.flatShading = key.flatShading;
    kept.passThrough = 1;
    key = kept;
}

// The kinds of the enabled lights without the gaps between them: the texts number lights in that way too.
uint32_t lightKinds(const LightingState &lighting)
{
    uint32_t kinds = 0;
    uint32_t slot = 0;
    for (const Light &light : lighting.lights) {
        if (light.kind != LIGHT_OFF) kinds |= light.kind << 2 * slot++;
    }
    return kinds;
}

} // namespace

GenerationInputs generationInputs(const GLIContext *ctx)
{
    const ShaderStateBitfield &state = ctx->key;
    if (state.passThrough) return {};
    // Texture generation reads the transformed normal too; the key's own bit is the lighting's.
    return {.lightKinds = (state.lighting ? lightKinds(ctx->lighting) : 0) & 0xFFFF,
            .paletteUnits = (state.matrixPalette ? paletteUnits(ctx) : 0) & 0x7,
            .pointAttenuation = ctx->pointLine.attenuationActive != 0,
            .fogBlendInShader = state.fogMode != FOG_NONE && ctx->backend.lacksFog,
            .normalizeForTexGen = !state.lighting && state.normalizeNormal && !state.noTexGen,
            .reservedInputs = 0};
}

ShaderStateBitfield normalizedState(const ShaderStateBitfield &given)
{
    ShaderStateBitfield state = given;
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        if (state.unit[unit].enabled) continue;
        state.combine[unit] = {};
        state.unit[unit] = {};
    }
    if (state.passThrough) {
        keepPassThroughFields(state);
        return state;
    }
    if (!state.lighting) clearLightingFields(state);
    if (!state.matrixPalette) state.vertexUnits = 0;
    return state;
}
