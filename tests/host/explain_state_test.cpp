// SPDX-License-Identifier: MIT
// The state that is read back from generated texts, against the keys they were generated from.
#include "host/gles2/explain_state.h"

#include "shadergen/legal_keys.h"
#include "shadergen/shader_texts.h"
#include "state/lighting_state.h"
#include "support/fake_platform.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

namespace {

std::vector<std::string> stateOf(const ProgramKey &key)
{
    return stateOfTexts(vertexText(key), fragmentText(key));
}

using Phrases = std::vector<std::string>;

TEST(ExplainState, APlainProgramHasNothingToTell)
{
    EXPECT_EQ(stateOf(plainKey()), Phrases{});
}

TEST(ExplainState, EveryPieceOfStateHasItsPhrase)
{
    using Edit = void (*)(ProgramKey &);
    const struct {
        Edit edit;
        Phrases state;
    } cases[] = {
        {[](ProgramKey &key) { key.state.perVertexColor = 1; }, {"colour per vertex"}},
        {[](ProgramKey &key) { key.state.alphaFunc = 1; }, {"alpha test: GL_NEVER"}},
        {[](ProgramKey &key) { key.state.alphaFunc = 2; }, {"alpha test: GL_LESS"}},
        {[](ProgramKey &key) { key.state.alphaFunc = 3; }, {"alpha test: GL_EQUAL"}},
        {[](ProgramKey &key) { key.state.alphaFunc = 4; }, {"alpha test: GL_LEQUAL"}},
        {[](ProgramKey &key) { key.state.alphaFunc = 5; }, {"alpha test: GL_GREATER"}},
        {[](ProgramKey &key) { key.state.alphaFunc = 6; }, {"alpha test: GL_NOTEQUAL"}},
        {[](ProgramKey &key) { key.state.alphaFunc = 7; }, {"alpha test: GL_GEQUAL"}},
        {[](ProgramKey &key) { key.state.flatShading = 1; }, {"GL_FLAT"}},
        {[](ProgramKey &key) { key.state.fogMode = FOG_LINEAR; }, {"fog: GL_LINEAR", "fog blended by the device"}},
        {[](ProgramKey &key) {
             key.state.fogMode = FOG_EXP2;
             key.state.fogCoordinate = 1;
             key.inputs.fogBlendInShader = 1;
         },
         {"fog: GL_EXP2", "fog coordinate"}},
        {[](ProgramKey &key) {
             key.state.fogMode = FOG_EXP;
             key.inputs.fogBlendInShader = 1;
         },
         {"fog: GL_EXP"}},
        {[](ProgramKey &key) { key.state.mvpForm = 0; }, {"transform: none"}},
        {[](ProgramKey &key) { key.state.mvpForm = 3; }, {"transform: first 3 of 4 rows"}},
        {[](ProgramKey &key) { key.state.mvpForm = MVP_SCALE_TRANSLATE; }, {"transform: scale and translation only"}},
        {[](ProgramKey &key) {
             key.state.matrixPalette = 1;
             key.inputs.paletteUnits = 3;
         },
         {"GL_MATRIX_PALETTE_OES: 3 per vertex"}},
        {[](ProgramKey &key) {
             enableLighting(key);
             key.state.noSpecular = 1;
         },
         {"GL_LIGHTING: no light", "no specular light"}},
        {[](ProgramKey &key) {
             enableLighting(key);
             addLight(key, 1, LIGHT_SPOT);
             addLight(key, 3, LIGHT_DIRECTIONAL);
             addLight(key, 7, LIGHT_POINT);
             key.state.normalizeNormal = 1;
             key.state.colorMaterial = 1;
             key.state.twoSided = 1;
         },
         {"GL_LIGHTING: spot, directional, point", "GL_COLOR_MATERIAL", "normals made unit length",
          "GL_LIGHT_MODEL_TWO_SIDE"}},
        {[](ProgramKey &key) { enableUnit(key, 1); }, {"texture 1: 2D, GL_MODULATE of colour and alpha"}},
        {[](ProgramKey &key) {
             enableUnit(key, 0);
             key.state.combine[0].envRgb = ENV_ADD;
             key.state.unit[0].cubeMap = 1;
             key.state.unit[0].texGen = TEXGEN_NORMAL_MAP;
             key.state.eyeCoordinates = 1;
         },
         {"texture 0: cube map, GL_ADD of colour and alpha, GL_NORMAL_MAP_OES"}},
        {[](ProgramKey &key) {
             enableUnit(key, 0);
             key.state.combine[0].envRgb = ENV_REPLACE;
             key.state.combine[0].formatClass = FORMAT_ALPHA;
             key.state.unit[0].projective = 1;
             key.state.unit[0].texMatrixForm = TEX_MATRIX_SCALE;
         },
         {"texture 0: 2D, GL_REPLACE of alpha, texture matrix (scale), divided by q"}},
        {[](ProgramKey &key) {
             enableUnit(key, 1);
             key.state.combine[1].envRgb = ENV_BLEND;
             key.state.combine[1].formatClass = FORMAT_RGB;
             key.state.pointSize = 1;
             key.state.pointSpriteReplace = 2;
         },
         {"points", "texture 1: 2D, GL_BLEND of colour, GL_COORD_REPLACE_OES"}},
        {[](ProgramKey &key) {
             key.state.pointSize = 1;
             key.state.pointSmooth = 1;
             key.state.eyeCoordinates = 1;
             key.inputs.pointAttenuation = 1;
         },
         {"points", "GL_POINT_DISTANCE_ATTENUATION", "GL_POINT_SMOOTH"}},
        {[](ProgramKey &key) {
             key.state.userClip = 1;
             key.state.eyeCoordinates = 1;
         },
         {"GL_CLIP_PLANE0"}},
        {[](ProgramKey &key) { key.state.lineSmooth = 1; }, {"GL_LINE_SMOOTH"}},
        {[](ProgramKey &key) { key.state.passThrough = 1; }, {"draw-texture"}},
    };
    resetFakePlatform();
    for (size_t i = 0; i < std::size(cases); ++i) {
        ProgramKey key = plainKey();
        cases[i].edit(key);
        EXPECT_EQ(stateOf(key), cases[i].state) << "case " << i;
    }
    EXPECT_TRUE(fakePlatform().assertions.empty()) << fakePlatform().assertions.front();
}

TEST(ExplainState, ACombinerIsShownByItsLines)
{
    ProgramKey key = plainKey();
    enableUnit(key, 0);
    enableUnit(key, 1);
    CombineBlock &block = key.state.combine[1];
    block.envRgb = COMBINE_INTERPOLATE;
    block.envAlpha = COMBINE_REPLACE;
    block.scaled = 1;
    for (CombineArg &argument : block.rgbArg)
        argument = {.operand = OPERAND_SRC_COLOR, .source = SOURCE_PREVIOUS, .reservedArg = 0};
    for (CombineArg &argument : block.alphaArg)
        argument = {.operand = OPERAND_SRC_ALPHA, .source = SOURCE_TEXTURE, .reservedArg = 0};
    const Phrases expected = {"texture 0: 2D, GL_MODULATE of colour and alpha",
                              "texture 1: 2D, GL_COMBINE (arg0 = vec4(currentColor.rgb, texture1.a), "
                              "arg1 = vec4(currentColor.rgb, texture1.a), arg2 = vec4(currentColor.rgb, texture1.a), "
                              "currentColor.rgb = vec3((arg1 + arg2 * (arg0 - arg1))), currentColor.a = arg0.a, "
                              "currentColor.rgba *= gles_TexEnvColorScale[1])"};
    EXPECT_EQ(stateOf(key), expected);
}

// Each value of each aspect alone, and random walks through the legal states.
class EveryText : public testing::Test {
protected:
    void check(const Choices &choices)
    {
        const ProgramKey key = legalKey(choices);
        const std::string texts = vertexText(key) + '\0' + fragmentText(key);
        std::string phrases;
        for (const std::string &phrase : stateOf(key))
            phrases += phrase + '\n';
        const auto [known, added] = textsOf.emplace(phrases, texts);
        EXPECT_TRUE(known->second == texts) << "state\n" << phrases << "of\n" << known->second << "and of\n" << texts;
    }

    std::map<std::string, std::string> textsOf;
};

TEST_F(EveryText, TextsThatDifferHaveStatesThatDiffer)
{
    resetFakePlatform();
    for (uint32_t aspect = 0; aspect < ASPECTS; ++aspect) {
        for (uint32_t value = 0; value < aspectValues(aspect); ++value) {
            Choices choices = {};
            choices[aspect] = static_cast<uint8_t>(value);
            choosePrerequisites(aspect, choices);
            check(choices);
        }
    }
    // Neighbours, which differ in one aspect, from a new start every now and then.
    std::mt19937 random(4);
    Choices choices = {};
    for (int step = 0; step < 10000 && !HasFailure(); ++step) {
        for (uint32_t aspect = 0; step % 50 == 0 && aspect < ASPECTS; ++aspect)
            choices[aspect] = static_cast<uint8_t>(random() % aspectValues(aspect));
        const uint32_t aspect = static_cast<uint32_t>(random() % ASPECTS);
        choices[aspect] = static_cast<uint8_t>(random() % aspectValues(aspect));
        check(choices);
    }
    EXPECT_GT(textsOf.size(), 3000u);
}

TEST(ExplainState, WhatAnotherStateLacksIsListedInOrder)
{
    EXPECT_EQ(phrasesNotIn({"a", "b", "c"}, {"b"}), (Phrases{"a", "c"}));
    EXPECT_EQ(phrasesNotIn({"a"}, {"a", "b"}), Phrases{});
    EXPECT_EQ(phrasesNotIn({}, {"a"}), Phrases{});
}

} // namespace
