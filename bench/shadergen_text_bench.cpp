// SPDX-License-Identifier: MIT
// Generating both texts of a key into a warm buffer. Budget: 20 us, no allocation.
#include "shadergen/generators.h"
#include "state/lighting_state.h"
#include "support/fake_platform.h"

#include <benchmark/benchmark.h>

namespace {

// One textured unit, colour per vertex.
ProgramKey simpleKey()
{
    ProgramKey key = {};
    key.state.mvpForm = MVP_GENERAL;
    key.state.noTexGen = 1;
    key.state.perVertexColor = 1;
    key.state.unit[0].enabled = 1;
    key.state.combine[0].envRgb = ENV_MODULATE;
    key.state.combine[0].formatClass = FORMAT_RGBA;
    return key;
}

// Eight lights of all kinds, two combiners, and nearly everything else at once.
ProgramKey fullKey()
{
    ProgramKey key = simpleKey();
    ShaderStateBitfield &state = key.state;
    state.lighting = 1;
    state.eyeCoordinates = 1;
    state.lightCount = 8;
    for (uint32_t light = 0; light < 8; ++light)
        key.inputs.lightKinds = (key.inputs.lightKinds | (LIGHT_DIRECTIONAL + light % 3) << (2 * light)) & 0xFFFF;
    state.twoSided = 1;
    state.colorMaterial = 1;
    state.alphaFactor = 1;
    state.flatShading = 1;
    state.userClip = 1;
    state.fogMode = FOG_EXP2;
    state.alphaFunc = 5;
    state.matrixPalette = 1;
    key.inputs.paletteUnits = 4;
    key.inputs.pointAttenuation = 1;
    key.inputs.fogBlendInShader = 1;
    state.pointSize = 1;
    state.pointSmooth = 1;
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        state.unit[unit].enabled = 1;
        state.unit[unit].texMatrixForm = TEX_MATRIX_GENERAL;
        state.combine[unit].envRgb = COMBINE_INTERPOLATE;
        state.combine[unit].envAlpha = COMBINE_ADD_SIGNED;
        state.combine[unit].scaled = 1;
        for (uint32_t i = 0; i < 3; ++i) {
            state.combine[unit].rgbArg[i] = {OPERAND_SRC_ALPHA, SOURCE_CONSTANT, 0};
            state.combine[unit].alphaArg[i] = {OPERAND_SRC_ALPHA, SOURCE_PREVIOUS, 0};
        }
    }
    return key;
}

void generateBoth(benchmark::State &run, const ProgramKey &key)
{
    strbuf buffer = {};
    generateVertexText(key, &buffer);
    const int32_t vertexLength = buffer.length;
    generateFragmentText(key, &buffer);
    const int32_t fragmentLength = buffer.length;
    const size_t allocations = fakePlatform().allocations;
    for (auto _ : run) {
        generateVertexText(key, &buffer);
        benchmark::DoNotOptimize(buffer.text);
        generateFragmentText(key, &buffer);
        benchmark::DoNotOptimize(buffer.text);
        benchmark::ClobberMemory();
    }
    run.counters["characters"] = vertexLength + fragmentLength;
    run.counters["allocations"] = static_cast<double>(fakePlatform().allocations - allocations);
    os_free(buffer.text);
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("shadergen/text/simple", generateBoth, simpleKey());
    benchmark::RegisterBenchmark("shadergen/text/full", generateBoth, fullKey());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
