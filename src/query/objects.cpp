// SPDX-License-Identifier: MIT
// Queries of texture objects, units, lights, material, clip planes and array pointers. Each converts by itself; they
// also answer in interface-only mode.
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/convert.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "query/convert.h"

namespace {

constexpr uint32_t kMaxComponents = 4; // of one material, light or clip plane value

// Floats of a record; count 0 for an unknown name.
struct Values {
    const GLfloat *floats;
    uint32_t count;
};

void copyFloats(Values values, GLfloat *out)
{
    for (uint32_t i = 0; i < values.count; ++i)
        out[i] = values.floats[i];
}

void copyFixed(Values values, GLfixed *out)
{
    for (uint32_t i = 0; i < values.count; ++i)
        out[i] = fixedFromFloat(values.floats[i]);
}

// The active unit's generation mode, or null after an error.
const GLenum *texGenMode(GLenum coord, GLenum pname)
{
    const GLIContext *ctx = currentContext();
    if (!ctx) return nullptr;
    if (coord != GL_TEXTURE_GEN_STR_OES || pname != GL_TEXTURE_GEN_MODE_OES) {
        __glSetError(GL_INVALID_ENUM);
        return nullptr;
    }
    return &ctx->texGen[ctx->current.activeUnit].mode;
}

const TextureObject *boundTexture(const GLIContext *ctx, GLenum target)
{
    const uint32_t unit = ctx->current.activeUnit;
    switch (target) {
    case GL_TEXTURE_2D:
        return ctx->bindings.texture2D[unit];
    case GL_TEXTURE_CUBE_MAP_OES:
        return ctx->bindings.textureCubeMap[unit];
    case GL_TEXTURE_EXTERNAL_OES:
        return ctx->bindings.textureExternal[unit];
    default:
        return nullptr;
    }
}

// Number of integers written: 0 after an error.
uint32_t getTexParameter(GLenum target, GLenum pname, GLint *out)
{
    const GLIContext *ctx = currentContext();
    if (!ctx) return 0;
    const TextureObject *texture = boundTexture(ctx, target);
    if (!texture) {
        __glSetError(GL_INVALID_ENUM);
        return 0;
    }

    switch (pname) {
    case GL_GENERATE_MIPMAP:
        out[0] = texture->generateMipmap;
        return 1;
    case GL_TEXTURE_CROP_RECT_OES:
        for (uint32_t i = 0; i < 4; ++i)
            out[i] = texture->cropRect[i];
        return 4;
    case GL_TEXTURE_MAG_FILTER:
    case GL_TEXTURE_MIN_FILTER:
    case GL_TEXTURE_WRAP_S:
    case GL_TEXTURE_WRAP_T:
        if (!assertThat(glGetTexParameteriv_2_0 != nullptr, "glGetTexParameteriv_2_0")) return 0;
        glGetTexParameteriv_2_0(target, pname, out);
        return 1;
    default:
        __glSetError(GL_INVALID_ENUM);
        return 0;
    }
}

// Number of integers written: 0 after an error or for a combination that answers nothing.
uint32_t getTexEnv(GLenum target, GLenum pname, GLint *out)
{
    const GLIContext *ctx = currentContext();
    if (!ctx) return 0;
    const TexEnvState &env = ctx->texEnv[ctx->current.activeUnit];
    if (target == GL_POINT_SPRITE_OES && pname == GL_COORD_REPLACE_OES) {
        out[0] = static_cast<GLint>(env.coordReplace);
        return 1;
    }
    if (target != GL_TEXTURE_ENV) return 0;

    GLenum value;
    switch (pname) {
    case GL_TEXTURE_ENV_COLOR:
        for (uint32_t i = 0; i < 4; ++i)
            out[i] = truncateToInt(env.color[i]);
        return 4;
    case GL_RGB_SCALE:
        out[0] = truncateToInt(env.scale[0]);
        return 1;
    case GL_ALPHA_SCALE:
        out[0] = truncateToInt(env.scale[3]);
        return 1;
    case GL_TEXTURE_ENV_MODE:
        value = env.mode;
        break;
    case GL_COMBINE_RGB:
        value = env.combineRgb;
        break;
    case GL_COMBINE_ALPHA:
        value = env.combineAlpha;
        break;
    case GL_SRC0_RGB:
    case GL_SRC1_RGB:
    case GL_SRC2_RGB:
        value = env.srcRgb[pname - GL_SRC0_RGB];
        break;
    case GL_SRC0_ALPHA:
    case GL_SRC1_ALPHA:
    case GL_SRC2_ALPHA:
        value = env.srcAlpha[pname - GL_SRC0_ALPHA];
        break;
    case GL_OPERAND0_RGB:
    case GL_OPERAND1_RGB:
    case GL_OPERAND2_RGB:
        value = env.operandRgb[pname - GL_OPERAND0_RGB];
        break;
    case GL_OPERAND0_ALPHA:
    case GL_OPERAND1_ALPHA:
    case GL_OPERAND2_ALPHA:
        value = env.operandAlpha[pname - GL_OPERAND0_ALPHA];
        break;
    default:
        __glSetError(GL_INVALID_ENUM);
        return 0;
    }
    out[0] = static_cast<GLint>(value);
    return 1;
}

// Front and back share one material: the face does not matter.
Values materialValues(const GLIContext *ctx, GLenum pname)
{
    const Material &material = ctx->lighting.material;
    const GLfloat *color = ctx->key.colorMaterial ? ctx->current.color : nullptr;
    switch (pname) {
    case GL_AMBIENT:
        return {color ? color : material.ambient, 4};
    case GL_DIFFUSE:
        return {color ? color : material.diffuse, 4};
    case GL_SPECULAR:
        return {material.specular, 4};
    case GL_EMISSION:
        return {material.emission, 4};
    case GL_SHININESS:
        return {&material.shininess, 1};
    default:
        __glSetError(GL_INVALID_ENUM);
        return {nullptr, 0};
    }
}

Values lightValues(const GLIContext *ctx, GLenum name, GLenum pname)
{
    const uint32_t index = name - GL_LIGHT0;
    if (index >= kMaxLights) {
        __glSetError(GL_INVALID_ENUM);
        return {nullptr, 0};
    }
    const Light &light = ctx->lighting.lights[index];
    switch (pname) {
    case GL_AMBIENT:
        return {light.ambient, 4};
    case GL_DIFFUSE:
        return {light.diffuse, 4};
    case GL_SPECULAR:
        return {light.specular, 4};
    case GL_POSITION:
        return {light.position, 4};
    case GL_SPOT_DIRECTION:
        return {light.spotDirection, 3};
    case GL_SPOT_EXPONENT:
        return {&light.packed0[0], 1};
    case GL_SPOT_CUTOFF:
        return {&light.packed0[1], 1};
    case GL_CONSTANT_ATTENUATION:
        return {&light.packed1[0], 1};
    case GL_LINEAR_ATTENUATION:
        return {&light.packed1[1], 1};
    case GL_QUADRATIC_ATTENUATION:
        return {&light.packed1[2], 1};
    default:
        __glSetError(GL_INVALID_ENUM);
        return {nullptr, 0};
    }
}

Values clipPlaneValues(const GLIContext *ctx, GLenum plane)
{
    if (plane == GL_CLIP_PLANE0) return {ctx->viewport.clipPlaneEye, 4};
    if (plane == GL_CLIP_PLANE1) return {ctx->viewport.clipPlane, 4};
    __glSetError(GL_INVALID_ENUM);
    return {nullptr, 0};
}

} // namespace

GL_API void GL_APIENTRY glGetTexGenivOES(GLenum coord, GLenum pname, GLint *params)
{
    if (const GLenum *mode = texGenMode(coord, pname)) params[0] = static_cast<GLint>(*mode);
}

GL_API void GL_APIENTRY glGetTexGenxvOES(GLenum coord, GLenum pname, GLfixed *params)
{
    if (const GLenum *mode = texGenMode(coord, pname)) params[0] = static_cast<GLfixed>(*mode);
}

GL_API void GL_APIENTRY glGetTexGenfvOES(GLenum coord, GLenum pname, GLfloat *params)
{
    if (const GLenum *mode = texGenMode(coord, pname)) params[0] = static_cast<GLfloat>(*mode);
}

GL_API void GL_APIENTRY glGetTexParameteriv(GLenum target, GLenum pname, GLint *params)
{
    getTexParameter(target, pname, params);
}

GL_API void GL_APIENTRY glGetTexParameterxv(GLenum target, GLenum pname, GLfixed *params)
{
    getTexParameter(target, pname, params); // unscaled, as glTexParameterxv stores it
}

GL_API void GL_APIENTRY glGetTexParameterfv(GLenum target, GLenum pname, GLfloat *params)
{
    GLint values[kMaxComponents] = {};
    const uint32_t count = getTexParameter(target, pname, values);
    for (uint32_t i = 0; i < count; ++i)
        params[i] = static_cast<GLfloat>(values[i]);
}

GL_API void GL_APIENTRY glGetTexEnviv(GLenum target, GLenum pname, GLint *params)
{
    getTexEnv(target, pname, params);
}

GL_API void GL_APIENTRY glGetTexEnvfv(GLenum target, GLenum pname, GLfloat *params)
{
    GLint values[kMaxComponents] = {};
    const uint32_t count = getTexEnv(target, pname, values);
    if (count == kMaxComponents) { // only the colour has four
        const GLIContext *ctx = currentContext();
        return copyFloats({ctx->texEnv[ctx->current.activeUnit].color, count}, params);
    }
    if (count == 1) params[0] = static_cast<GLfloat>(values[0]);
}

GL_API void GL_APIENTRY glGetTexEnvxv(GLenum target, GLenum pname, GLfixed *params)
{
    GLint values[kMaxComponents] = {};
    const uint32_t count = getTexEnv(target, pname, values);
    if (count == kMaxComponents) {
        const GLIContext *ctx = currentContext();
        return copyFixed({ctx->texEnv[ctx->current.activeUnit].color, count}, params);
    }
    if (count == 0) return;
    const bool isScale = pname == GL_RGB_SCALE || pname == GL_ALPHA_SCALE;
    params[0] = isScale ? static_cast<GLfixed>(static_cast<uint32_t>(values[0]) << 16) : values[0];
}

GL_API void GL_APIENTRY glGetMaterialfv(GLenum, GLenum pname, GLfloat *params)
{
    if (const GLIContext *ctx = currentContext()) copyFloats(materialValues(ctx, pname), params);
}

GL_API void GL_APIENTRY glGetMaterialxv(GLenum, GLenum pname, GLfixed *params)
{
    if (const GLIContext *ctx = currentContext()) copyFixed(materialValues(ctx, pname), params);
}

GL_API void GL_APIENTRY glGetLightfv(GLenum light, GLenum pname, GLfloat *params)
{
    if (const GLIContext *ctx = currentContext()) copyFloats(lightValues(ctx, light, pname), params);
}

GL_API void GL_APIENTRY glGetLightxv(GLenum light, GLenum pname, GLfixed *params)
{
    if (const GLIContext *ctx = currentContext()) copyFixed(lightValues(ctx, light, pname), params);
}

GL_API void GL_APIENTRY glGetClipPlanef(GLenum plane, GLfloat *equation)
{
    if (const GLIContext *ctx = currentContext()) copyFloats(clipPlaneValues(ctx, plane), equation);
}

GL_API void GL_APIENTRY glGetClipPlanex(GLenum plane, GLfixed *equation)
{
    if (const GLIContext *ctx = currentContext()) copyFixed(clipPlaneValues(ctx, plane), equation);
}

GL_API void GL_APIENTRY glGetPointerv(GLenum pname, void **params)
{
    const GLIContext *ctx = currentContext();
    if (!ctx) return;
    const ArrayState &arrays = ctx->arrays;
    const ClientArray *array = nullptr;
    switch (pname) {
    case GL_VERTEX_ARRAY_POINTER:
        array = &arrays.vertex;
        break;
    case GL_NORMAL_ARRAY_POINTER:
        array = &arrays.normal;
        break;
    case GL_COLOR_ARRAY_POINTER:
        array = &arrays.color;
        break;
    case GL_TEXTURE_COORD_ARRAY_POINTER:
        array = &arrays.texCoord[arrays.clientUnit];
        break;
    case GL_WEIGHT_ARRAY_POINTER_OES:
        array = &arrays.weight;
        break;
    case GL_MATRIX_INDEX_ARRAY_POINTER_OES:
        array = &arrays.matrixIndex;
        break;
    case GL_POINT_SIZE_ARRAY_POINTER_OES:
        array = &arrays.pointSize;
        break;
    default:
        return __glSetError(GL_INVALID_ENUM);
    }
    *params = const_cast<void *>(array->pointer);
}
