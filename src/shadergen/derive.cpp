// SPDX-License-Identifier: MIT
#include "shadergen/derive.h"

#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/context.h"
#include "math/matrix_classify.h"
#include "shadergen/derive_combine.h"

namespace {

// Zero-one mask bits (see getMatrixZeroOneMask): element i zero = bit i, element i one = bit 16 + i.
constexpr uint32_t kMaskIdentity = 0x84217BDE;  // the identity matrix
constexpr uint32_t kMaskScale = 0x80007BDE;     // off-diagonal zero, element 15 one
constexpr uint32_t kMaskTwoCoords = 0x80000BDE; // as the former, elements 12 to 14 free
constexpr uint32_t kMaskAffineRow = 0x80000888; // row 3 is 0, 0, 0, 1

TexGenCode texGenCode(GLenum mode)
{
    switch (mode) {
    case GL_NORMAL_MAP_OES:
        return TEXGEN_NORMAL_MAP;
    case GL_REFLECTION_MAP_OES:
        return TEXGEN_REFLECTION_MAP;
    default:
        assertThat(false, "texture generation mode");
        return TEXGEN_NONE;
    }
}

void deriveTextureMatrix(GLIContext *ctx, uint32_t unit)
{
    TextureUnitKey &key = ctx->key.unit[unit];
    const MatrixRecord &matrix = *ctx->transform.top[STACK_TEXTURE0 + unit];
    if (matrix.flags & MATRIX_IDENTITY) {
        key.texMatrixForm = TEX_MATRIX_IDENTITY;
        key.projective = 0;
        return;
    }

    const uint32_t mask = getMatrixZeroOneMask(&matrix);
    if (mask == kMaskIdentity) {
        key.texMatrixForm = TEX_MATRIX_IDENTITY;
    } else if ((mask & kMaskScale) == kMaskScale) {
        key.texMatrixForm = TEX_MATRIX_SCALE;
    } else if ((mask & kMaskTwoCoords) == kMaskTwoCoords) {
        key.texMatrixForm = TEX_MATRIX_TWO_COORDS;
    } else {
        key.texMatrixForm = TEX_MATRIX_GENERAL;
    }
    key.projective = ctx->arrays.texCoord[unit].size == 4 || (mask & kMaskAffineRow) != kMaskAffineRow;
}

void deriveUnit(GLIContext *ctx, uint32_t unit)
{
    TextureUnitKey &key = ctx->key.unit[unit];
    if (!key.enabled) {
        ctx->key.combine[unit] = {};
        key = {.enabled = 0,
               .cubeMap = key.cubeMap,
               .external = key.external,
               .texGen = TEXGEN_NONE,
               .texMatrixForm = TEX_MATRIX_IDENTITY,
               .projective = key.projective,
               .reservedUnit = 0};
        return;
    }
    if (ctx->keyDirty & keyDirtyEnv(unit)) ctx->key.combine[unit] = deriveCombine(ctx, unit);
    if (ctx->keyDirty & keyDirtyTexGen(unit))
        key.texGen = ctx->enables.texGen[unit] ? texGenCode(ctx->texGen[unit].mode) : TEXGEN_NONE;
    if (ctx->keyDirty & keyDirtyTexMatrix(unit)) deriveTextureMatrix(ctx, unit);
}

uint32_t alphaFuncCode(const AlphaTestState &alphaTest)
{
    if (!alphaTest.enabled || alphaTest.func == GL_ALWAYS) return 0;
    if (!assertThat(alphaTest.func >= GL_NEVER && alphaTest.func < GL_ALWAYS, "alpha function")) return 0;
    return alphaTest.func - GL_NEVER + 1;
}

void deriveTextureAndAlpha(GLIContext *ctx)
{
    ShaderStateBitfield &key = ctx->key;
    uint32_t noTexGen = 1;
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        deriveUnit(ctx, unit);
        if (key.unit[unit].texGen != TEXGEN_NONE) noTexGen = 0;
    }
    key.noTexGen = noTexGen;
    if (ctx->keyDirty & KEY_DIRTY_ALPHA_TEST) key.alphaFunc = alphaFuncCode(ctx->alphaTest);
    // A disabled unit's marks may go too: turning a unit on sets all of them again.
    ctx->keyDirty = 0;
}

// A unit that was turned off, which no mark tells, and whose part is still in the key: the environment code of an
// enabled unit is never 0.
bool hasTurnedOffUnit(const ShaderStateBitfield &key)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit)
        if (!key.unit[unit].enabled && key.combine[unit].envRgb != 0) return true;
    return false;
}

// Two components of either unit fit one varying, when neither lookup needs more than two.
uint32_t coordinatesPack(const GLIContext *ctx)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        const TextureUnitKey &key = ctx->key.unit[unit];
        if (!key.enabled || key.texMatrixForm != TEX_MATRIX_IDENTITY || key.cubeMap || key.projective) return 0;
        if (ctx->arrays.texCoord[unit].size > 2) return 0;
    }
    return 1;
}

void derivePrimitive(GLIContext *ctx)
{
    ShaderStateBitfield &key = ctx->key;
    const EnableState &enables = ctx->enables;
    key.passThrough = 0;
    key.pointSize = 0;
    key.pointSmooth = 0;
    key.pointSpriteReplace = 0;
    key.lineSmooth = 0;

    if (ctx->primitiveFlags & PRIMITIVE_POINTS) {
        key.pointSize = 1;
        if (enables.pointSprite) {
            key.pointSpriteReplace =
                (ctx->texEnv[0].coordReplace != 0 ? 1u : 0u) | (ctx->texEnv[1].coordReplace != 0 ? 2u : 0u);
        } else {
            key.pointSmooth = enables.pointSmooth;
        }
    } else if (ctx->primitiveFlags & PRIMITIVE_LINES) {
        key.lineSmooth = enables.lineSmooth;
        const GLfloat width = ctx->pointLine.lineWidth;
        // One pixel wider when smooth: half a pixel of falling coverage on either side.
        if (assertThat(glLineWidth_2_0 != nullptr, "glLineWidth_2_0"))
            glLineWidth_2_0(enables.lineSmooth ? width + 1.0f : width);
    } else if (ctx->primitiveFlags & PRIMITIVE_DRAW_TEXTURE) {
        key.passThrough = 1;
    }
}

uint32_t needsEyeCoordinates(const GLIContext *ctx)
{
    if (ctx->pointLine.attenuationActive) return 1;
    if (ctx->key.lighting || !ctx->key.noTexGen) return 1;
    return ctx->key.userClip;
}

} // namespace

void deriveLighting(GLIContext *ctx)
{
    ShaderStateBitfield &key = ctx->key;
    if (!key.lighting) {
        key.twoSided = 0;
        return;
    }
    deriveLights(ctx);
    const LightingState &lighting = ctx->lighting;
    key.directionalLight = lighting.directionalMask == kAllLights;
    key.pointLight = lighting.directionalMask == 0;
    key.disableSpot = lighting.spotMask == 0;
    key.noAmbient = lighting.zeroAmbientMask == kAllLights;
    key.noDiffuse = lighting.zeroDiffuseMask == kAllLights;
    key.noSpecular = lighting.zeroSpecularMask == kAllLights;
    key.twoSided = lighting.model.twoSide && key.perVertexColor && !(key.noDiffuse && key.noSpecular);
}

void deriveShaderState(GLIContext *ctx)
{
    if (ctx->keyDirty || hasTurnedOffUnit(ctx->key)) deriveTextureAndAlpha(ctx);
    deriveLighting(ctx);
    ctx->key.packedTexCoords = coordinatesPack(ctx);
    ctx->key.eyeCoordinates = needsEyeCoordinates(ctx);
    derivePrimitive(ctx);
    updateTransformState(ctx);
}
