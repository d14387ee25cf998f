// SPDX-License-Identifier: MIT
// What draws need of the lights beyond what the application gave: kinds, colour products, scene colour.
#include "frontend/context.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

constexpr uint32_t SPOT_CUTOFF = 1; // place of the cutoff in Light::packed0

// Colours are worked on whole: all four components in one operation, the same products to the bit.
using Color = GLfloat __attribute__((vector_size(16)));

Color colorAt(const GLfloat components[4])
{
    Color color;
    std::memcpy(&color, components, sizeof(color));
    return color;
}

void storeColor(GLfloat to[4], Color color)
{
    std::memcpy(to, &color, sizeof(color));
}

void setBit(uint32_t &mask, uint32_t bit, bool value)
{
    mask = value ? mask | bit : mask & ~bit;
}

bool isNowherePositive(Color color)
{
#if defined(__SSE2__)
    return _mm_movemask_ps(_mm_cmpgt_ps(color, _mm_setzero_ps())) == 0;
#else
    const auto positive = color > 0.0f; // all bits of a component that is
    uint64_t halves[2];
    std::memcpy(halves, &positive, sizeof(halves));
    return (halves[0] | halves[1]) == 0;
#endif
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

struct LightProducts {
    Color ambient, diffuse, specular;
};

LightProducts lightProducts(const Light &light, const Material &material, bool colorMaterial)
{
    LightProducts products = {colorAt(light.ambient), colorAt(light.diffuse),
                              colorAt(light.specular) * colorAt(material.specular)};
    if (colorMaterial) return products; // the shader multiplies these two by the vertex colour
    products.ambient *= colorAt(material.ambient);
    products.diffuse *= colorAt(material.diffuse);
    return products;
}

void storeProducts(Light &light, const LightProducts &products)
{
    storeColor(light.ambientProduct, products.ambient);
    storeColor(light.diffuseProduct, products.diffuse);
    storeColor(light.specularProduct, products.specular);
}

// The products of the marked lights, and which of them are nowhere above 0. A disabled light counts as black; nothing
// reads its products, and enabling it marks them.
void deriveColors(LightingState &lighting, uint32_t marked, bool colorMaterial)
{
    const uint32_t enabled = enabledLights(lighting);
    const uint32_t disabled = marked & ~enabled;
    uint32_t blackAmbient = disabled;
    uint32_t blackDiffuse = disabled;
    uint32_t blackSpecular = disabled;
    for (uint32_t left = marked & enabled; left; left &= left - 1) {
        const auto i = static_cast<uint32_t>(std::countr_zero(left));
        const LightProducts products = lightProducts(lighting.lights[i], lighting.material, colorMaterial);
        storeProducts(lighting.lights[i], products);
        blackAmbient |= static_cast<uint32_t>(isNowherePositive(products.ambient)) << i;
        blackDiffuse |= static_cast<uint32_t>(isNowherePositive(products.diffuse)) << i;
        blackSpecular |= static_cast<uint32_t>(isNowherePositive(products.specular)) << i;
    }
    lighting.zeroAmbientMask = (lighting.zeroAmbientMask & ~marked) | blackAmbient;
    lighting.zeroDiffuseMask = (lighting.zeroDiffuseMask & ~marked) | blackDiffuse;
    lighting.zeroSpecularMask = (lighting.zeroSpecularMask & ~marked) | blackSpecular;
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
    storeProducts(light, lightProducts(light, lighting.material, colorMaterial));
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

    for (uint32_t marked = lighting.geometryDirty; marked; marked &= marked - 1)
        deriveKind(lighting, static_cast<uint32_t>(std::countr_zero(marked)));
    lighting.geometryDirty = 0;
    const uint32_t colorDirty = lighting.colorDirty[0] | lighting.colorDirty[1];
    if (colorDirty == 0) return;
    deriveColors(lighting, colorDirty, colorMaterial);
    lighting.colorDirty[0] = 0;
    lighting.colorDirty[1] = 0;
}
