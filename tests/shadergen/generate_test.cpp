// SPDX-License-Identifier: MIT
// The generators as the program cache calls them: from the wanted key into the context's buffer.
#include "frontend/context.h"
#include "shadergen/generators.h"
#include "shadergen/program_cache.h"
#include "shadergen/shader_texts.h"
#include "state/lighting_state.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

class Generate : public testing::Test {
protected:
    Generate()
    {
        resetFakePlatform();
        ctx->shaderCache = &cache;
        cache.wanted = plainKey();
    }
    ~Generate() override
    {
        os_free(ctx->shaderText.text);
    }

    ShaderCache cache = {};
    std::unique_ptr<GLIContext> ctx = std::make_unique<GLIContext>();
};

// The longest vertex text: all kinds of light, everything else that adds to it.
ProgramKey longKey()
{
    ProgramKey key = plainKey();
    enableLighting(key);
    for (uint32_t light = 0; light < 8; ++light)
        addLight(key, light, light == 0 ? LIGHT_DIRECTIONAL : light == 1 ? LIGHT_POINT : LIGHT_SPOT);
    key.state.twoSided = 1;
    key.state.colorMaterial = 1;
    key.state.alphaFactor = 1;
    key.state.flatShading = 1;
    key.state.userClip = 1;
    key.state.fogMode = FOG_EXP2;
    key.state.matrixPalette = 1;
    key.inputs.paletteUnits = 4;
    key.inputs.pointAttenuation = 1;
    key.state.pointSize = 1;
    key.state.pointSmooth = 1;
    for (uint32_t unit = 0; unit < 2; ++unit) {
        enableUnit(key, unit);
        key.state.unit[unit].texMatrixForm = TEX_MATRIX_GENERAL;
        key.state.combine[unit].envRgb = COMBINE_INTERPOLATE;
        key.state.combine[unit].envAlpha = COMBINE_ADD_SIGNED;
        key.state.combine[unit].scaled = 1;
        for (uint32_t i = 0; i < 3; ++i) {
            key.state.combine[unit].rgbArg[i] = {OPERAND_ONE_MINUS_SRC_ALPHA, SOURCE_CONSTANT, 0};
            key.state.combine[unit].alphaArg[i] = {OPERAND_ONE_MINUS_SRC_ALPHA, SOURCE_PRIMARY_COLOR, 0};
        }
    }
    return key;
}

uint64_t hashed(uint64_t hash, const std::string &text)
{
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u; // FNV-1a
    return hash;
}

// Number `index` of the grid: every field takes all its values over the grid, none of it means a sensible state.
ProgramKey gridKey(uint32_t index)
{
    uint32_t state = index * 2654435761u + 1;
    const auto next = [&state](uint32_t count) {
        state = state * 1664525u + 1013904223u;
        return (state >> 16) % count;
    };
    ProgramKey key = plainKey();
    ShaderStateBitfield &s = key.state;
    s.matrixPalette = next(2) & 1;
    key.inputs.paletteUnits = (1 + next(4)) & 7;
    s.lighting = next(2) & 1;
    s.normalizeNormal = next(2) & 1;
    for (uint32_t light = 0; light < 8; ++light)
        if (const uint32_t kind = next(4)) addLight(key, light, kind);
    s.eyeCoordinates = next(2) & 1;
    s.fogCoordinate = next(2) & 1;
    s.alphaFactor = next(2) & 1;
    s.orthogonalTransform = next(2) & 1;
    s.directionalLight = next(2) & 1;
    s.noSpecular = next(2) & 1;
    s.noTexGen = next(2) & 1;
    s.mvpForm = next(6) & 7;
    s.alphaFunc = next(8) & 7;
    for (uint32_t unit = 0; unit < 2; ++unit) {
        s.unit[unit] = {next(2) & 1, next(2) & 1, next(2) & 1, next(3) & 3, next(4) & 3, next(2) & 1, 0};
        CombineBlock &block = s.combine[unit];
        for (uint32_t i = 0; i < 3; ++i) {
            block.rgbArg[i] = {next(4) & 3, (1 + next(6)) & 7, 0};
            block.alphaArg[i] = {next(2) & 3, (1 + next(6)) & 7, 0};
        }
        block.envRgb = (1 + next(13)) & 0xF;
        block.envAlpha = (6 + next(6)) & 0xF;
        block.scaled = next(2) & 1;
        block.formatClass = next(5) & 7;
    }
    s.packedTexCoords = next(2) & 1;
    s.twoSided = next(2) & 1;
    s.perVertexColor = next(2) & 1;
    s.colorMaterial = next(2) & 1;
    s.userClip = next(2) & 1;
    s.flatShading = next(2) & 1;
    s.fogMode = next(4) & 3;
    s.passThrough = next(8) == 0;
    s.pointSize = next(2) & 1;
    s.pointSmooth = next(2) & 1;
    s.pointSpriteReplace = next(4) & 3;
    s.lineSmooth = next(2) & 1;
    key.inputs.pointAttenuation = next(2) & 1;
    key.inputs.fogBlendInShader = next(2) & 1;
    key.inputs.normalizeForTexGen = next(2) & 1;
    return key;
}

} // namespace

TEST_F(Generate, BothTextsComeFromTheWantedKey)
{
    EXPECT_EQ(std::string(GenerateVertexShader(ctx.get())), golden("plain.vert"));
    EXPECT_EQ(std::string(GenerateFragmentShader(ctx.get())), golden("plain.frag"));
    enableUnit(cache.wanted, 1);
    cache.wanted.state.perVertexColor = 1;
    EXPECT_EQ(std::string(GenerateFragmentShader(ctx.get())), golden("one_unit.frag"));
}

TEST_F(Generate, LongestTextsNeedNoAllocationOnceWarm)
{
    cache.wanted = longKey();
    const std::string vertex = GenerateVertexShader(ctx.get());
    EXPECT_GT(vertex.size(), 8192u); // more than one growth
    const size_t allocations = fakePlatform().allocations;
    EXPECT_EQ(GenerateVertexShader(ctx.get()), vertex);
    EXPECT_NE(GenerateFragmentShader(ctx.get()), nullptr);
    EXPECT_EQ(fakePlatform().allocations, allocations);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Generate, TextThatMemoryCutIsNotReturned)
{
    cache.wanted = longKey();
    const std::string whole = GenerateVertexShader(ctx.get());
    const int growths = ctx->shaderText.capacity / 4096;
    for (int failing = 1; failing < growths; ++failing) {
        os_free(ctx->shaderText.text);
        ctx->shaderText = {};
        // Later appends find memory again, but a piece is missing by then.
        fakePlatform().allocationsUntilFailure = failing;
        const char *text = GenerateVertexShader(ctx.get());
        EXPECT_EQ(text, nullptr) << "growth " << failing;
        fakePlatform().allocationsUntilFailure = -1;
        EXPECT_EQ(GenerateVertexShader(ctx.get()), whole);
    }
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Generate, EarlierTextLeavesNoTrace)
{
    cache.wanted = longKey();
    ASSERT_NE(GenerateVertexShader(ctx.get()), nullptr);
    cache.wanted = plainKey();
    EXPECT_EQ(std::string(GenerateVertexShader(ctx.get())), golden("plain.vert"));
}

// The two GLSL blocks of docs/shaders.md, in order.
TEST(ShaderPage, ShowsWhatItsExampleGenerates)
{
    ProgramKey key = plainKey();
    key.state.perVertexColor = 1;
    enableUnit(key, 0);
    const std::string page = golden("../../../docs/shaders.md");
    const std::string begin = "```glsl\n";
    size_t at = 0;
    for (const std::string &text : {vertexText(key), fragmentText(key)}) {
        at = page.find(begin, at);
        ASSERT_NE(at, std::string::npos);
        at += begin.size();
        EXPECT_EQ(page.substr(at, page.find("```\n", at) - at), text);
    }
}

// A stability check, not a correctness one: any change of any text over 4,000 keys changes these numbers. When a text
// is changed on purpose, the failure prints the new ones.
TEST(GenerateGrid, TextsOverAGridOfKeysAreAsBefore)
{
    resetFakePlatform();
    uint64_t vertexHash = 0xCBF29CE484222325u;
    uint64_t fragmentHash = 0xCBF29CE484222325u;
    for (uint32_t index = 0; index < 4000; ++index) {
        vertexHash = hashed(vertexHash, vertexText(gridKey(index)));
        fragmentHash = hashed(fragmentHash, fragmentText(gridKey(index)));
    }
    EXPECT_EQ(vertexHash, 9294160236826940381u);
    EXPECT_EQ(fragmentHash, 17948763865384740828u);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}
