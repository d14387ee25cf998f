// SPDX-License-Identifier: MIT
#include "shadergen/pipeline/pipeline_test.h"

#include <array>
#include <bit>
#include <cstring>

namespace {

using Words = std::array<uint32_t, 18>;

constexpr uint32_t kLighting = 1u << 5;
constexpr uint32_t kMatrixPalette = 1u;
constexpr uint32_t kPassThrough = 1u << 8;

class NormalizedKey : public PipelineTest {
protected:
    Words normalized(const Words &words)
    {
        ctx->key = std::bit_cast<ShaderStateBitfield>(words);
        return std::bit_cast<Words>(normalizedState(ctx->key));
    }
    // Every bit set, but for draw-texture's: those keys have rules of their own.
    static Words allSet()
    {
        Words words;
        words.fill(0xFFFFFFFF);
        words[17] &= ~kPassThrough;
        return words;
    }
    uint32_t inputs()
    {
        return std::bit_cast<uint32_t>(generationInputs(ctx));
    }
};

} // namespace

TEST_F(NormalizedKey, EverythingOnKeepsEveryBit)
{
    EXPECT_EQ(normalized(allSet()), allSet());
    EXPECT_EQ(std::bit_cast<Words>(ctx->key), allSet()) << "the context's own key is not touched";
}

TEST_F(NormalizedKey, WithoutLightingItsFieldsAreCleared)
{
    Words words = allSet();
    words[0] &= ~kLighting;
    Words expected = words;
    expected[0] &= ~(0x00C0u | 0x8700u | 0x1F0000u); // byte 0 bits 6, 7; byte 1 bits 0-2, 7; byte 2 bits 0-4
    EXPECT_EQ(normalized(words), expected);
}

TEST_F(NormalizedKey, WithoutThePaletteItsUnitsAreCleared)
{
    Words words = allSet();
    words[0] &= ~kMatrixPalette;
    Words expected = words;
    expected[0] &= ~0x1Eu;
    EXPECT_EQ(normalized(words), expected);
}

TEST_F(NormalizedKey, DisabledUnitsAreZeroInBothPlaces)
{
    for (uint32_t disabled = 1; disabled < 4; ++disabled) {
        Words words = allSet();
        Words expected = words;
        for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
            if (!(disabled >> unit & 1)) continue;
            words[15 + unit] &= ~1u;
            for (uint32_t i = 0; i < 7; ++i)
                expected[1 + 7 * unit + i] = 0;
            expected[15 + unit] = 0;
        }
        EXPECT_EQ(normalized(words), expected) << "units " << disabled;
    }
}

TEST_F(NormalizedKey, DrawTextureKeepsWhatItsShadersRead)
{
    Words words;
    words.fill(0xFFFFFFFF);
    const Words kept = normalized(words);
    EXPECT_EQ(kept[0], 7u << 25); // alpha test
    for (uint32_t i = 1; i <= 14; ++i)
        EXPECT_EQ(kept[i], 0xFFFFFFFFu) << "combine word " << i;
    EXPECT_EQ(kept[15], 0x87u); // enabled, cube map, external, projective
    EXPECT_EQ(kept[16], 0x87u);
    EXPECT_EQ(kept[17], 1u | 4u | 0x20u | kPassThrough); // packed, vertex colour, flat
    EXPECT_EQ(inputs(), 0u);

    words[15] &= ~1u;
    const Words withoutUnit0 = normalized(words);
    for (uint32_t i = 1; i <= 7; ++i)
        EXPECT_EQ(withoutUnit0[i], 0u);
    EXPECT_EQ(withoutUnit0[15], 0u);
    EXPECT_EQ(withoutUnit0[16], 0x87u);
}

TEST_F(NormalizedKey, KindsOfEnabledLightsArePartOfTheKeyWithLighting)
{
    ctx->lighting.lights[2].kind = LIGHT_SPOT;
    ctx->lighting.lights[5].kind = LIGHT_DIRECTIONAL;
    ctx->lighting.lights[7].kind = LIGHT_POINT;
    EXPECT_EQ(inputs(), 0u);
    ctx->key.lighting = 1;
    EXPECT_EQ(inputs() & 0xFFFF, 0x27u); // 3, 1, 2 from the lowest bits on
    for (Light &light : ctx->lighting.lights)
        light.kind = LIGHT_POINT;
    EXPECT_EQ(inputs() & 0xFFFF, 0xAAAAu);
}

TEST_F(NormalizedKey, PaletteUnitsArePartOfTheKeyWithThePalette)
{
    ctx->arrays.weight.size = 3;
    EXPECT_EQ(inputs(), 0u);
    ctx->key.matrixPalette = 1;
    EXPECT_EQ(inputs(), 3u << 16);
    ctx->arrays.weight.size = 4;
    EXPECT_EQ(inputs(), 4u << 16);
    ctx->arrays.weight.size = -2;
    EXPECT_EQ(inputs(), 0u);
}

TEST_F(NormalizedKey, PointAttenuationIsPartOfTheKey)
{
    ctx->pointLine.attenuationActive = 1;
    EXPECT_EQ(inputs(), 1u << 19);
}

TEST_F(NormalizedKey, FogColourPlaceIsPartOfTheKeyWithFog)
{
    EXPECT_EQ(ctx->backend.lacksFog, 1u);
    EXPECT_EQ(inputs(), 0u);
    glEnable(GL_FOG);
    EXPECT_EQ(inputs(), 1u << 20);
    start(true);
    EXPECT_EQ(ctx->backend.lacksFog, 0u);
    glEnable(GL_FOG);
    EXPECT_EQ(inputs(), 0u);
}

TEST_F(NormalizedKey, NormalizingForTextureGenerationOutlivesLighting)
{
    ctx->key.normalizeNormal = 1;
    ctx->key.noTexGen = 1;
    EXPECT_EQ(inputs(), 0u);
    ctx->key.noTexGen = 0;
    EXPECT_EQ(inputs(), 1u << 21);
    EXPECT_EQ(normalizedState(ctx->key).normalizeNormal, 0u);
    ctx->key.lighting = 1;
    EXPECT_EQ(inputs(), 0u); // the key's own bit says it
    EXPECT_EQ(normalizedState(ctx->key).normalizeNormal, 1u);
}
