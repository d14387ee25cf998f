// SPDX-License-Identifier: MIT
// Where every field of the shader key lies. The positions are written out here on purpose, a second time beside the
// list the key is made from: programs and dumps rely on them.
#include "shadergen/key.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <string>

namespace {

constexpr size_t kWords = 18;
using Words = std::array<uint32_t, kWords>;

struct Position {
    uint32_t word, lowBit, bits;
};

// Least significant bit is bit 0.
const std::map<std::string, Position> kPositions = {
    // clang-format off
    {"matrixPalette",       {0, 0, 1}},
    {"vertexUnits",         {0, 1, 4}},
    {"lighting",            {0, 5, 1}},
    {"normalizeNormal",     {0, 6, 1}},
    {"lightCount",          {0, 7, 4}},
    {"eyeCoordinates",      {0, 11, 1}},
    {"fogCoordinate",       {0, 12, 1}},
    {"alphaFactor",         {0, 13, 1}},
    {"orthogonalTransform", {0, 14, 1}},
    {"directionalLight",    {0, 15, 1}},
    {"pointLight",          {0, 16, 1}},
    {"disableSpot",         {0, 17, 1}},
    {"noAmbient",           {0, 18, 1}},
    {"noDiffuse",           {0, 19, 1}},
    {"noSpecular",          {0, 20, 1}},
    {"noTexGen",            {0, 21, 1}},
    {"mvpForm",             {0, 22, 3}},
    {"alphaFunc",           {0, 25, 3}},
    {"reservedGeneral",     {0, 28, 4}},
    {"combine0.envRgb",      {7, 0, 4}},
    {"combine0.envAlpha",    {7, 4, 4}},
    {"combine0.scaled",      {7, 8, 1}},
    {"combine0.formatClass", {7, 9, 3}},
    {"combine0.reservedCombine", {7, 12, 20}},
    {"combine1.envRgb",      {14, 0, 4}},
    {"combine1.envAlpha",    {14, 4, 4}},
    {"combine1.scaled",      {14, 8, 1}},
    {"combine1.formatClass", {14, 9, 3}},
    {"combine1.reservedCombine", {14, 12, 20}},
    {"unit0.enabled",       {15, 0, 1}},
    {"unit0.cubeMap",       {15, 1, 1}},
    {"unit0.external",      {15, 2, 1}},
    {"unit0.texGen",        {15, 3, 2}},
    {"unit0.texMatrixForm", {15, 5, 2}},
    {"unit0.projective",    {15, 7, 1}},
    {"unit0.reservedUnit",  {15, 8, 24}},
    {"unit1.enabled",       {16, 0, 1}},
    {"unit1.cubeMap",       {16, 1, 1}},
    {"unit1.external",      {16, 2, 1}},
    {"unit1.texGen",        {16, 3, 2}},
    {"unit1.texMatrixForm", {16, 5, 2}},
    {"unit1.projective",    {16, 7, 1}},
    {"unit1.reservedUnit",  {16, 8, 24}},
    {"packedTexCoords",     {17, 0, 1}},
    {"twoSided",            {17, 1, 1}},
    {"perVertexColor",      {17, 2, 1}},
    {"colorMaterial",       {17, 3, 1}},
    {"userClip",            {17, 4, 1}},
    {"flatShading",         {17, 5, 1}},
    {"fogMode",             {17, 6, 2}},
    {"passThrough",         {17, 8, 1}},
    {"pointSize",           {17, 9, 1}},
    {"pointSmooth",         {17, 10, 1}},
    {"pointSpriteReplace",  {17, 11, 2}},
    {"lineSmooth",          {17, 13, 1}},
    {"kept",                {17, 14, 2}},
    {"reservedOutput",      {17, 16, 16}},
    // clang-format on
};

struct FieldWriter {
    std::string name;
    void (*write)(ShaderStateBitfield &key, uint32_t value);
};

// One row per field of the list: its name, and how to write it alone.
const FieldWriter kWriters[] = {
#define WRITE(name, target)                                                                                            \
    {name, [](ShaderStateBitfield &key, uint32_t value) {                                                              \
         target = value; /* the compiler cuts it to the field's width */                                               \
     }},
#define KEY_GENERAL(name, bits) WRITE(#name, key.name)
#define KEY_COMBINE(name, bits)                                                                                        \
    WRITE("combine0." #name, key.combine[0].name) WRITE("combine1." #name, key.combine[1].name)
#define KEY_UNIT(name, bits) WRITE("unit0." #name, key.unit[0].name) WRITE("unit1." #name, key.unit[1].name)
#define KEY_OUTPUT(name, bits) WRITE(#name, key.name)
#include "shadergen/key_fields.def"
#undef WRITE
};

Words wordsOf(const ShaderStateBitfield &key)
{
    Words words;
    static_assert(sizeof(words) == sizeof(key));
    std::memcpy(words.data(), &key, sizeof(key));
    return words;
}

Words onlyBits(uint32_t word, uint32_t lowBit, uint32_t bits)
{
    Words words = {};
    words[word] = ((1u << bits) - 1) << lowBit;
    return words;
}

} // namespace

TEST(ShaderKey, Is72BytesAndWithItsInputs76)
{
    EXPECT_EQ(sizeof(ShaderStateBitfield), 72u);
    EXPECT_EQ(sizeof(GenerationInputs), 4u);
    EXPECT_EQ(sizeof(ProgramKey), 76u);
}

TEST(ShaderKey, EveryFieldLiesWhereItIsWrittenDown)
{
    for (const FieldWriter &field : kWriters) {
        const auto position = kPositions.find(field.name);
        ASSERT_NE(position, kPositions.end()) << field.name;
        const auto [word, lowBit, bits] = position->second;
        ShaderStateBitfield key = {};
        field.write(key, 0xFFFFFFFF);
        EXPECT_EQ(wordsOf(key), onlyBits(word, lowBit, bits)) << field.name;
    }
    EXPECT_EQ(std::size(kWriters), kPositions.size());
}

TEST(ShaderKey, FieldsCoverTheirWordsWithoutOverlap)
{
    Words covered = {};
    for (const auto &[name, position] : kPositions) {
        const uint32_t mask = onlyBits(position.word, position.lowBit, position.bits)[position.word];
        EXPECT_EQ(covered[position.word] & mask, 0u) << name;
        covered[position.word] |= mask;
    }
    for (const uint32_t word : {0u, 7u, 14u, 15u, 16u, 17u})
        EXPECT_EQ(covered[word], 0xFFFFFFFF) << "word " << word;
}

TEST(ShaderKey, CombinerArgumentsFillTheWordsBeforeTheEnvironmentCode)
{
    for (uint32_t unit = 0; unit < 2; ++unit) {
        for (uint32_t i = 0; i < 3; ++i) {
            const uint32_t firstWord = unit == 0 ? 1 : 8;
            ShaderStateBitfield key = {};
            key.combine[unit].rgbArg[i].operand = 3;
            EXPECT_EQ(wordsOf(key), onlyBits(firstWord + i, 0, 2));
            key = {};
            key.combine[unit].rgbArg[i].source = 7;
            EXPECT_EQ(wordsOf(key), onlyBits(firstWord + i, 2, 3));
            key = {};
            key.combine[unit].alphaArg[i].operand = 3;
            EXPECT_EQ(wordsOf(key), onlyBits(firstWord + 3 + i, 0, 2));
            key = {};
            key.combine[unit].alphaArg[i].source = 7;
            EXPECT_EQ(wordsOf(key), onlyBits(firstWord + 3 + i, 2, 3));
        }
    }
}

TEST(ShaderKey, CodesHaveTheirNumbers)
{
    EXPECT_EQ(MVP_GENERAL, 4);
    EXPECT_EQ(MVP_SCALE_TRANSLATE, 5);
    EXPECT_EQ(FOG_LINEAR, 1);
    EXPECT_EQ(FOG_EXP, 2);
    EXPECT_EQ(FOG_EXP2, 3);
    EXPECT_EQ(TEXGEN_NORMAL_MAP, 1);
    EXPECT_EQ(TEXGEN_REFLECTION_MAP, 2);
    EXPECT_EQ(TEX_MATRIX_SCALE, 1);
    EXPECT_EQ(TEX_MATRIX_GENERAL, 3);
    EXPECT_EQ(FORMAT_ALPHA, 0);
    EXPECT_EQ(FORMAT_LUMINANCE, 1);
    EXPECT_EQ(FORMAT_LUMINANCE_ALPHA, 2);
    EXPECT_EQ(FORMAT_RGB, 3);
    EXPECT_EQ(FORMAT_RGBA, 4);
    EXPECT_EQ(ENV_MODULATE, 1);
    EXPECT_EQ(ENV_DECAL, 2);
    EXPECT_EQ(ENV_ADD, 3);
    EXPECT_EQ(ENV_BLEND, 4);
    EXPECT_EQ(ENV_REPLACE, 5);
    EXPECT_EQ(COMBINE_REPLACE, 6);
    EXPECT_EQ(COMBINE_MODULATE, 7);
    EXPECT_EQ(COMBINE_ADD, 8);
    EXPECT_EQ(COMBINE_ADD_SIGNED, 9);
    EXPECT_EQ(COMBINE_INTERPOLATE, 10);
    EXPECT_EQ(COMBINE_SUBTRACT, 11);
    EXPECT_EQ(COMBINE_DOT3_RGB, 12);
    EXPECT_EQ(COMBINE_DOT3_RGBA, 13);
    EXPECT_EQ(OPERAND_SRC_ALPHA, 0);
    EXPECT_EQ(OPERAND_ONE_MINUS_SRC_ALPHA, 1);
    EXPECT_EQ(OPERAND_SRC_COLOR, 2);
    EXPECT_EQ(OPERAND_ONE_MINUS_SRC_COLOR, 3);
    EXPECT_EQ(SOURCE_TEXTURE, 1);
    EXPECT_EQ(SOURCE_TEXTURE0, 2);
    EXPECT_EQ(SOURCE_TEXTURE1, 3);
    EXPECT_EQ(SOURCE_CONSTANT, 4);
    EXPECT_EQ(SOURCE_PRIMARY_COLOR, 5);
    EXPECT_EQ(SOURCE_PREVIOUS, 6);
}

TEST(ShaderKey, ChangeMaskBitsAreThoseOfTheirUnit)
{
    EXPECT_EQ(keyDirtyEnv(0), 1u);
    EXPECT_EQ(keyDirtyEnv(1), 2u);
    EXPECT_EQ(keyDirtyTexGen(0), 4u);
    EXPECT_EQ(keyDirtyTexGen(1), 8u);
    EXPECT_EQ(keyDirtyTexMatrix(0), 16u);
    EXPECT_EQ(keyDirtyTexMatrix(1), 32u);
    EXPECT_EQ(KEY_DIRTY_ALPHA_TEST, 64u);
    EXPECT_EQ(KEY_DIRTY_ALL, 127u);
}
