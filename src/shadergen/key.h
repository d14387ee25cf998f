// SPDX-License-Identifier: MIT
// The key of a generated program: everything that decides the text of its two shaders.
#pragma once

#include "frontend/gl_limits.h"

#include <cstdint>
#include <type_traits>

/// ShaderStateBitfield::mvpForm. 0 to 3: only that many leading rows differ from the identity.
enum MvpForm : uint32_t { MVP_GENERAL = 4, MVP_SCALE_TRANSLATE = 5 };

/// ShaderStateBitfield::fogMode.
enum FogCode : uint32_t { FOG_NONE = 0, FOG_LINEAR = 1, FOG_EXP = 2, FOG_EXP2 = 3 };

/// TextureUnitKey::texGen.
enum TexGenCode : uint32_t { TEXGEN_NONE = 0, TEXGEN_NORMAL_MAP = 1, TEXGEN_REFLECTION_MAP = 2 };

/// TextureUnitKey::texMatrixForm. Both general forms use a mat4.
enum TexMatrixForm : uint32_t {
    TEX_MATRIX_IDENTITY = 0,
    TEX_MATRIX_SCALE = 1,
    TEX_MATRIX_TWO_COORDS = 2,
    TEX_MATRIX_GENERAL = 3,
};

/// CombineBlock::formatClass: base format of the bound texture.
enum FormatClass : uint32_t {
    FORMAT_ALPHA = 0,
    FORMAT_LUMINANCE = 1,
    FORMAT_LUMINANCE_ALPHA = 2,
    FORMAT_RGB = 3,
    FORMAT_RGBA = 4,
};

/// CombineBlock::envRgb and envAlpha: the classic modes, then the functions of GL_COMBINE.
enum EnvCode : uint32_t {
    ENV_MODULATE = 1,
    ENV_DECAL = 2,
    ENV_ADD = 3,
    ENV_BLEND = 4,
    ENV_REPLACE = 5,
    COMBINE_REPLACE = 6,
    COMBINE_MODULATE = 7,
    COMBINE_ADD = 8,
    COMBINE_ADD_SIGNED = 9,
    COMBINE_INTERPOLATE = 10,
    COMBINE_SUBTRACT = 11,
    COMBINE_DOT3_RGB = 12,
    COMBINE_DOT3_RGBA = 13,
};

/// CombineArg::operand.
enum CombineOperand : uint32_t {
    OPERAND_SRC_ALPHA = 0,
    OPERAND_ONE_MINUS_SRC_ALPHA = 1,
    OPERAND_SRC_COLOR = 2,
    OPERAND_ONE_MINUS_SRC_COLOR = 3,
};

/// CombineArg::source.
enum CombineSource : uint32_t {
    SOURCE_TEXTURE = 1,
    SOURCE_TEXTURE0 = 2,
    SOURCE_TEXTURE1 = 3,
    SOURCE_CONSTANT = 4,
    SOURCE_PRIMARY_COLOR = 5,
    SOURCE_PREVIOUS = 6,
};

/// One argument of a combiner function.
struct CombineArg {
    uint32_t operand : 2; // CombineOperand
    uint32_t source : 3;  // CombineSource
    uint32_t reservedArg : 27;
};

/// Texture environment of one unit; all zero for a disabled unit.
struct CombineBlock {
    CombineArg rgbArg[3];
    CombineArg alphaArg[3];
#define KEY_COMBINE(name, bits) uint32_t name : bits;
#include "shadergen/key_fields.def"
};

/// Coordinates and target of one unit.
struct TextureUnitKey {
#define KEY_UNIT(name, bits) uint32_t name : bits;
#include "shadergen/key_fields.def"
};

/// The 72-byte key: eighteen 32-bit words, compared whole. Fields that mean nothing in a state are zero.
struct ShaderStateBitfield {
#define KEY_GENERAL(name, bits) uint32_t name : bits;
#include "shadergen/key_fields.def"
    CombineBlock combine[kTextureUnits];
    TextureUnitKey unit[kTextureUnits];
#define KEY_OUTPUT(name, bits) uint32_t name : bits;
#include "shadergen/key_fields.def"
};
static_assert(sizeof(CombineArg) == 4 && sizeof(CombineBlock) == 28 && sizeof(TextureUnitKey) == 4);
static_assert(sizeof(ShaderStateBitfield) == 72 && std::is_trivially_copyable_v<ShaderStateBitfield>);

/// What the generators read beside the key. One word; compared together with the key.
struct GenerationInputs {
    uint32_t lightKinds : 16;  // LightKind of each enabled light, two bits, lowest number lowest; 0 without lighting
    uint32_t paletteUnits : 3; // 0 to 4 with the matrix palette, else 0
    uint32_t pointAttenuation : 1;   // attenuated point size: declarations in every program of such a state
    uint32_t fogBlendInShader : 1;   // fog colour is blended by the shader, not by the device's fog unit
    uint32_t normalizeForTexGen : 1; // GL_NORMALIZE with texture generation while lighting is off, which the key's own
                                     // bit does not show then
    uint32_t reservedInputs : 10;
};
static_assert(sizeof(GenerationInputs) == 4);

/// The complete key of a program: what decides its texts, and nothing that does not.
struct ProgramKey {
    ShaderStateBitfield state;
    GenerationInputs inputs;
};
static_assert(sizeof(ProgramKey) == 76 && std::is_trivially_copyable_v<ProgramKey>);

/// Bits of GLIContext::keyDirty, the shader-key change mask. All are set in a new context.
constexpr uint32_t keyDirtyEnv(uint32_t unit)
{
    return 1u << unit;
}
constexpr uint32_t keyDirtyTexGen(uint32_t unit)
{
    return 4u << unit;
}
constexpr uint32_t keyDirtyTexMatrix(uint32_t unit)
{
    return 16u << unit;
}
constexpr uint32_t KEY_DIRTY_ALPHA_TEST = 64;
constexpr uint32_t KEY_DIRTY_ALL = 127;
