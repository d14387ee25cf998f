// SPDX-License-Identifier: MIT
#include "shadergen/derive_combine.h"

#include "frontend/assert.h"
#include "frontend/context.h"

namespace {

FormatClass formatClass(GLenum internalFormat)
{
    switch (internalFormat) {
    case GL_ALPHA:
        return FORMAT_ALPHA;
    case GL_LUMINANCE:
        return FORMAT_LUMINANCE;
    case GL_LUMINANCE_ALPHA:
        return FORMAT_LUMINANCE_ALPHA;
    case GL_RGB:
        return FORMAT_RGB;
    case GL_RGBA:
        return FORMAT_RGBA;
    default:
        assertThat(false, "texture base format");
        return FORMAT_RGBA;
    }
}

// 0 for GL_COMBINE, whose functions stand instead.
uint32_t classicMode(GLenum mode)
{
    switch (mode) {
    case GL_MODULATE:
        return ENV_MODULATE;
    case GL_DECAL:
        return ENV_DECAL;
    case GL_ADD:
        return ENV_ADD;
    case GL_BLEND:
        return ENV_BLEND;
    case GL_REPLACE:
        return ENV_REPLACE;
    case GL_COMBINE:
        return 0;
    default:
        assertThat(false, "texture environment mode");
        return ENV_MODULATE;
    }
}

EnvCode combineFunction(GLenum function)
{
    switch (function) {
    case GL_REPLACE:
        return COMBINE_REPLACE;
    case GL_MODULATE:
        return COMBINE_MODULATE;
    case GL_ADD:
        return COMBINE_ADD;
    case GL_ADD_SIGNED:
        return COMBINE_ADD_SIGNED;
    case GL_INTERPOLATE:
        return COMBINE_INTERPOLATE;
    case GL_SUBTRACT:
        return COMBINE_SUBTRACT;
    case GL_DOT3_RGB:
        return COMBINE_DOT3_RGB;
    case GL_DOT3_RGBA:
        return COMBINE_DOT3_RGBA;
    default:
        assertThat(false, "combiner function");
        return COMBINE_MODULATE;
    }
}

CombineSource combineSource(GLenum source)
{
    switch (source) {
    case GL_TEXTURE:
        return SOURCE_TEXTURE;
    case GL_TEXTURE0:
        return SOURCE_TEXTURE0;
    case GL_TEXTURE1:
        return SOURCE_TEXTURE1;
    case GL_CONSTANT:
        return SOURCE_CONSTANT;
    case GL_PRIMARY_COLOR:
        return SOURCE_PRIMARY_COLOR;
    case GL_PREVIOUS:
        return SOURCE_PREVIOUS;
    default:
        assertThat(false, "combiner source");
        return SOURCE_PREVIOUS;
    }
}

CombineOperand combineOperand(GLenum operand)
{
    switch (operand) {
    case GL_SRC_ALPHA:
        return OPERAND_SRC_ALPHA;
    case GL_ONE_MINUS_SRC_ALPHA:
        return OPERAND_ONE_MINUS_SRC_ALPHA;
    case GL_SRC_COLOR:
        return OPERAND_SRC_COLOR;
    case GL_ONE_MINUS_SRC_COLOR:
        return OPERAND_ONE_MINUS_SRC_COLOR;
    default:
        assertThat(false, "combiner operand");
        return OPERAND_SRC_ALPHA;
    }
}

CombineArg combineArg(GLenum source, GLenum operand)
{
    return {.operand = combineOperand(operand), .source = combineSource(source), .reservedArg = 0};
}

uint32_t argumentCount(uint32_t envRgb, uint32_t envAlpha)
{
    if (envRgb == COMBINE_INTERPOLATE || envAlpha == COMBINE_INTERPOLATE) return 3;
    return envRgb == COMBINE_REPLACE && envAlpha == COMBINE_REPLACE ? 1 : 2;
}

bool isScaled(const TexEnvState &env)
{
    return env.scale[0] != 1.0f || env.scale[3] != 1.0f;
}

} // namespace

CombineBlock deriveCombine(const GLIContext *ctx, uint32_t unit)
{
    const TexEnvState &env = ctx->texEnv[unit];
    CombineBlock block = {};
    block.formatClass = formatClass(ctx->bindings.unitFormat[unit]);
    block.envRgb = classicMode(env.mode);
    if (block.envRgb != 0) return block;

    block.envRgb = combineFunction(env.combineRgb);
    block.envAlpha = combineFunction(env.combineAlpha);
    block.scaled = isScaled(env);
    const uint32_t arguments = argumentCount(block.envRgb, block.envAlpha);
    for (uint32_t i = 0; i < arguments; ++i) {
        block.rgbArg[i] = combineArg(env.srcRgb[i], env.operandRgb[i]);
        block.alphaArg[i] = combineArg(env.srcAlpha[i], env.operandAlpha[i]);
    }
    return block;
}
