// SPDX-License-Identifier: MIT
// What draws need of the lights beyond what the application gave: kinds, colour products, scene colour.
#include "frontend/context.h"

#include <bit>
#include <cstring>

namespace {

constexpr uint32_t SPOT_CUTOFF = 1; // place of the cutoff in Light::packed0

// Colours are worked on whole: all four components in one operation, the same products to the bit.
using Color = GLfloat __attribute__((vector_size(16), aligned(4), may_alias));

Color colorAt(const GLfloat color[4])
{
    return *reinterpret_cast<const Color *>(color);
}

void storeColor(GLfloat to[4], Color color)
{
    *reinterpret_cast<Color *>(to) = color;
}

void setBit(uint32_t &mask, uint32_t bit, bool value)
{
    mask = value ? mask | bit : mask & ~bit;
}

bool isNowherePositive(const GLfloat color[4])
{
    const auto positive = colorAt(color) > 0.0f; // all bits of a component that is
    uint64_t halves[2];
    std::memcpy(halves, &positive, sizeof(halves));
    return (halves[0] | halves[1]) == 0;
}

LightKind kindOf(const Light &light)
{
    if (!light.enabled) return LIGHT_OFF;
    if (light.position[3] == 0.0f) return LIGHT_DIRECTIONAL;
    return light.packed0[SPOT_CUTOFF] != 180.0f ? LIGHT_SPOT : LIGHT_POINT;
}

void deriveKind(LightingState &lighting, uint32_t index)
{
    Light &light = lighting.lights[index];
    const uint32_t bit = 1u << index;
    light.kind = kindOf(light);
    setBit(lighting.directionalMask, bit, light.kind == LIGHT_DIRECTIONAL);
    setBit(lighting.pointMask, bit, light.kind == LIGHT_POINT);
    setBit(lighting.spotMask, bit, light.kind == LIGHT_SPOT);
}

void deriveColors(LightingState &lighting, uint32_t index, bool colorMaterial)
{
    const uint32_t bit = 1u << index;
    const Light &light = lighting.lights[index];
    if (!light.enabled) {
        // Counts as black. Nothing reads its products, and enabling it marks them.
        lighting.zeroAmbientMask |= bit;
        lighting.zeroDiffuseMask |= bit;
        lighting.zeroSpecularMask |= bit;
        return;
    }
    deriveLightProducts(lighting, index, colorMaterial);
    setBit(lighting.zeroAmbientMask, bit, isNowherePositive(light.ambientProduct));
    setBit(lighting.zeroDiffuseMask, bit, isNowherePositive(light.diffuseProduct));
    setBit(lighting.zeroSpecularMask, bit, isNowherePositive(light.specularProduct));
}

// OpenGL ES 1.1, 2.12.1: emission plus global ambient, with the diffuse alpha. Under colour material the shader adds
// the emission itself, after the product with the vertex colour.
void deriveSceneColor(LightingState &lighting, bool colorMaterial)
{
    const GLfloat *ambient = lighting.model.ambient;
    if (colorMaterial) return storeColor(lighting.sceneColor, colorAt(ambient));

    const Material &material = lighting.material;
    for (uint32_t i = 0; i < 3; ++i)
        lighting.sceneColor[i] = material.emission[i] + ambient[i] * material.ambient[i];
    lighting.sceneColor[3] = material.diffuse[3];
}

} // namespace

void noteLightEnable(GLIContext *ctx, uint32_t light)
{
    LightingState &lighting = ctx->lighting;
    ctx->key.lightCount += lighting.lights[light].enabled ? 1u : 15u; // modulo the field's 4 bits
    lighting.geometryDirty |= 1u << light;
    // The zero masks count a disabled light as black.
    markLightColors(lighting, 1u << light);
    ctx->dirty |= DIRTY_ENABLES;
}

void deriveLightProducts(LightingState &lighting, uint32_t index, bool colorMaterial)
{
    Light &light = lighting.lights[index];
    const Material &material = lighting.material;
    if (colorMaterial) {
        // The shader multiplies these two by the vertex colour.
        storeColor(light.ambientProduct, colorAt(light.ambient));
        storeColor(light.diffuseProduct, colorAt(light.diffuse));
    } else {
        storeColor(light.ambientProduct, colorAt(light.ambient) * colorAt(material.ambient));
        storeColor(light.diffuseProduct, colorAt(light.diffuse) * colorAt(material.diffuse));
    }
    storeColor(light.specularProduct, colorAt(light.specular) * colorAt(material.specular));
}

void markLightColors(LightingState &lighting, uint32_t lightMask)
{
    lighting.colorDirty[0] |= lightMask;
    lighting.colorDirty[1] |= lightMask;
}

void markLitDraws(GLIContext *ctx)
{
    if (ctx->key.lighting) ctx->dirty |= DIRTY_ENABLES;
}

void deriveLights(GLIContext *ctx)
{
    LightingState &lighting = ctx->lighting;
    const bool colorMaterial = ctx->key.colorMaterial;
    // What these bits stand for is read from the state at every lit draw.
    lighting.change = 0;
    if (lighting.sceneColorDirty) {
        deriveSceneColor(lighting, colorMaterial);
        lighting.sceneColorDirty = 0;
    }

    const uint32_t colorDirty = lighting.colorDirty[0] | lighting.colorDirty[1];
    if ((lighting.geometryDirty | colorDirty) == 0) return;
    for (uint32_t marked = lighting.geometryDirty | colorDirty; marked; marked &= marked - 1) {
        const auto i = static_cast<uint32_t>(std::countr_zero(marked));
        if (lighting.geometryDirty & (1u << i)) deriveKind(lighting, i);
        if (colorDirty & (1u << i)) deriveColors(lighting, i, colorMaterial);
    }
    lighting.geometryDirty = 0;
    lighting.colorDirty[0] = 0;
    lighting.colorDirty[1] = 0;
}
