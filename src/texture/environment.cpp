// SPDX-License-Identifier: MIT
// Texture environments, combiners and point-sprite coordinate replacement (OpenGL ES 1.1, 3.7.12; GL_OES_point_sprite).
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "state/fixed_vector.h"

#include <bit>

namespace {

// Bits of TransformState::uniformDirty: both units' matrices, since a replaced coordinate is not transformed.
constexpr uint32_t kCoordReplaceMarks = 0x08 | 0x10;

uint32_t dirtyTexEnv(uint32_t unit)
{
    return unit == 0 ? DIRTY_TEXENV0 : DIRTY_TEXENV1;
}

TexEnvState &activeEnv(GLIContext *ctx)
{
    return ctx->texEnv[ctx->current.activeUnit];
}

void markEnvironment(GLIContext *ctx)
{
    const uint32_t unit = ctx->current.activeUnit;
    ctx->dirty |= dirtyTexEnv(unit);
    ctx->keyDirty |= keyDirtyEnv(unit);
}

bool isEnvMode(GLenum mode)
{
    switch (mode) {
    case GL_REPLACE:
    case GL_ADD:
    case GL_BLEND:
    case GL_MODULATE:
    case GL_DECAL:
    case GL_COMBINE:
        return true;
    default:
        return false;
    }
}

bool isAlphaFunction(GLenum function)
{
    switch (function) {
    case GL_REPLACE:
    case GL_MODULATE:
    case GL_ADD:
    case GL_ADD_SIGNED:
    case GL_INTERPOLATE:
    case GL_SUBTRACT:
        return true;
    default:
        return false;
    }
}

bool isRgbFunction(GLenum function)
{
    return isAlphaFunction(function) || function == GL_DOT3_RGB || function == GL_DOT3_RGBA;
}

bool isSource(GLenum source)
{
    switch (source) {
    case GL_TEXTURE:
    case GL_TEXTURE0:
    case GL_TEXTURE1:
    case GL_CONSTANT:
    case GL_PRIMARY_COLOR:
    case GL_PREVIOUS:
        return true;
    default:
        return false;
    }
}

bool isAlphaOperand(GLenum operand)
{
    return operand == GL_SRC_ALPHA || operand == GL_ONE_MINUS_SRC_ALPHA;
}

bool isRgbOperand(GLenum operand)
{
    return isAlphaOperand(operand) || operand == GL_SRC_COLOR || operand == GL_ONE_MINUS_SRC_COLOR;
}

// Where an enum parameter of the combiner is kept and which values it takes.
struct CombineParam {
    GLenum *place; // null for a name that is none
    bool (*accepts)(GLenum value);
};

CombineParam findCombineParam(TexEnvState &env, GLenum pname)
{
    switch (pname) {
    case GL_COMBINE_RGB:
        return {&env.combineRgb, isRgbFunction};
    case GL_COMBINE_ALPHA:
        return {&env.combineAlpha, isAlphaFunction};
    case GL_SRC0_RGB:
    case GL_SRC1_RGB:
    case GL_SRC2_RGB:
        return {&env.srcRgb[pname - GL_SRC0_RGB], isSource};
    case GL_SRC0_ALPHA:
    case GL_SRC1_ALPHA:
    case GL_SRC2_ALPHA:
        return {&env.srcAlpha[pname - GL_SRC0_ALPHA], isSource};
    case GL_OPERAND0_RGB:
    case GL_OPERAND1_RGB:
    case GL_OPERAND2_RGB:
        return {&env.operandRgb[pname - GL_OPERAND0_RGB], isRgbOperand};
    case GL_OPERAND0_ALPHA:
    case GL_OPERAND1_ALPHA:
    case GL_OPERAND2_ALPHA:
        return {&env.operandAlpha[pname - GL_OPERAND0_ALPHA], isAlphaOperand};
    default:
        return {nullptr, nullptr};
    }
}

bool isScale(GLenum pname)
{
    return pname == GL_RGB_SCALE || pname == GL_ALPHA_SCALE;
}

void setTexEnvMode(GLIContext *ctx, GLenum mode)
{
    if (!isEnvMode(mode)) return __glSetError(GL_INVALID_ENUM);

    activeEnv(ctx).mode = mode;
}

// value: an enum, or the bits of a float for the two scales, which take any value.
void setTexEnvCombineParam(GLIContext *ctx, GLenum pname, uint32_t value)
{
    TexEnvState &env = activeEnv(ctx);
    if (pname == GL_RGB_SCALE) {
        env.scale[0] = env.scale[1] = env.scale[2] = std::bit_cast<GLfloat>(value);
    } else if (pname == GL_ALPHA_SCALE) {
        env.scale[3] = std::bit_cast<GLfloat>(value);
    } else {
        const CombineParam param = findCombineParam(env, pname);
        if (!param.place || !param.accepts(value)) return __glSetError(GL_INVALID_ENUM);
        *param.place = value;
    }
    ctx->keyDirty |= keyDirtyEnv(ctx->current.activeUnit);
}

void setTextureEnv(GLIContext *ctx, GLenum pname, const GLfloat *params)
{
    if (pname == GL_TEXTURE_ENV_MODE) return setTexEnvMode(ctx, static_cast<GLenum>(truncateToInt(params[0])));
    if (isScale(pname)) return setTexEnvCombineParam(ctx, pname, std::bit_cast<uint32_t>(params[0]));
    if (pname != GL_TEXTURE_ENV_COLOR)
        return setTexEnvCombineParam(ctx, pname, static_cast<GLenum>(truncateToInt(params[0])));

    TexEnvState &env = activeEnv(ctx);
    for (uint32_t i = 0; i < 4; ++i)
        env.color[i] = clampToUnit(params[i]);
}

void setPointSprite(GLIContext *ctx, GLenum pname, const GLfloat *params)
{
    if (pname != GL_COORD_REPLACE_OES) return __glSetError(GL_INVALID_ENUM);

    TexEnvState &env = activeEnv(ctx);
    const uint32_t replace = truncateToUnsigned(params[0]);
    if (replace == env.coordReplace) return;
    env.coordReplace = replace;
    ctx->transform.uniformDirty |= kCoordReplaceMarks;
}

} // namespace

void initTextureCombineMode(GLIContext *ctx)
{
    struct Start {
        GLenum pname;
        GLenum value;
    };
    constexpr Start kStart[] = {
        {GL_COMBINE_RGB, GL_MODULATE},
        {GL_SRC1_RGB, GL_PREVIOUS},
        {GL_SRC2_RGB, GL_CONSTANT},
        {GL_COMBINE_ALPHA, GL_MODULATE},
        {GL_SRC1_ALPHA, GL_PREVIOUS},
        {GL_SRC2_ALPHA, GL_CONSTANT},
        {GL_OPERAND0_RGB, GL_SRC_COLOR},
        {GL_OPERAND1_RGB, GL_SRC_COLOR},
        {GL_OPERAND2_RGB, GL_SRC_ALPHA},
        {GL_OPERAND0_ALPHA, GL_SRC_ALPHA},
        {GL_OPERAND1_ALPHA, GL_SRC_ALPHA},
        {GL_OPERAND2_ALPHA, GL_SRC_ALPHA},
        {GL_RGB_SCALE, std::bit_cast<uint32_t>(1.0f)},
        {GL_ALPHA_SCALE, std::bit_cast<uint32_t>(1.0f)},
    };
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        ctx->current.activeUnit = unit;
        activeEnv(ctx).mode = GL_MODULATE;
        for (const Start &start : kStart)
            setTexEnvCombineParam(ctx, start.pname, start.value);
        // The unit's own texture by its number, where the standard has GL_TEXTURE.
        setTexEnvCombineParam(ctx, GL_SRC0_RGB, GL_TEXTURE0 + unit);
        setTexEnvCombineParam(ctx, GL_SRC0_ALPHA, GL_TEXTURE0 + unit);
    }
    ctx->current.activeUnit = 0;
}

GL_API void GL_APIENTRY glTexEnvfv(GLenum target, GLenum pname, const GLfloat *params)
{
    GLIContext *ctx = stateContext();
    if (!ctx) return;

    // The marks are set also after an error.
    if (target == GL_POINT_SPRITE_OES) {
        setPointSprite(ctx, pname, params);
        ctx->dirty |= DIRTY_COORD_REPLACE;
        return;
    }
    if (target == GL_TEXTURE_ENV) {
        setTextureEnv(ctx, pname, params);
    } else {
        __glSetError(GL_INVALID_ENUM);
    }
    markEnvironment(ctx);
}

GL_API void GL_APIENTRY glTexEnvf(GLenum target, GLenum pname, GLfloat param)
{
    // The colour takes the one value as its red.
    const GLfloat params[4] = {param, 0.0f, 0.0f, 0.0f};
    glTexEnvfv(target, pname, params);
}

GL_API void GL_APIENTRY glTexEnviv(GLenum target, GLenum pname, const GLint *params)
{
    if (!stateContext()) return;

    // By value, colours too: 1 and everything above it is full intensity.
    GLfloat converted[4] = {};
    const uint32_t count = pname == GL_TEXTURE_ENV_COLOR ? 4 : 1;
    for (uint32_t i = 0; i < count; ++i)
        converted[i] = static_cast<GLfloat>(params[i]);
    glTexEnvfv(target, pname, converted);
}

GL_API void GL_APIENTRY glTexEnvi(GLenum target, GLenum pname, GLint param)
{
    const GLint params[4] = {param, 0, 0, 0};
    glTexEnviv(target, pname, params);
}

GL_API void GL_APIENTRY glTexEnvxv(GLenum target, GLenum pname, const GLfixed *params)
{
    if (!stateContext()) return;

    GLfloat converted[4] = {};
    if (target == GL_TEXTURE_ENV && pname == GL_TEXTURE_ENV_COLOR) {
        floatsFromFixed(converted, params, 4);
    } else if (isScale(pname)) {
        converted[0] = floatFromFixed(params[0]);
    } else {
        // Enums come unscaled.
        converted[0] = static_cast<GLfloat>(params[0]);
    }
    glTexEnvfv(target, pname, converted);
}

GL_API void GL_APIENTRY glTexEnvx(GLenum target, GLenum pname, GLfixed param)
{
    const GLfixed params[4] = {param, 0, 0, 0};
    glTexEnvxv(target, pname, params);
}
