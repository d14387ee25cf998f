// SPDX-License-Identifier: MIT
// glEnable and glDisable. What decides the generated shaders is kept here; everything else is the backend's.
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/current.h"

namespace {

template <uint32_t light>
void markLight(GLIContext *ctx)
{
    noteLightEnable(ctx, light);
}

void markEnables(GLIContext *ctx)
{
    ctx->dirty |= DIRTY_ENABLES;
}

void markLighting(GLIContext *ctx)
{
    ctx->dirty |= DIRTY_ENABLES;
    updatePerVertexColor(ctx);
}

void markColorMaterial(GLIContext *ctx)
{
    markLightColors(ctx->lighting, kAllLights);
    ctx->lighting.sceneColorDirty = 1;
    ctx->dirty |= DIRTY_ENABLES;
}

void markRescaleNormal(GLIContext *ctx)
{
    markAllPaletteMatrices(ctx);
    ctx->dirty |= DIRTY_ENABLES;
}

void markFog(GLIContext *ctx)
{
    updateFogKey(ctx);
    ctx->dirty |= DIRTY_FOG;
}

void markAlphaTest(GLIContext *ctx)
{
    assertThat(ctx->backend.lacksAlphaFunc != 0, "alpha test done by the shaders");
    ctx->dirty |= DIRTY_ALPHA_TEST;
    ctx->keyDirty |= KEY_DIRTY_ALPHA_TEST;
}

void markClipPlane(GLIContext *ctx)
{
    ctx->dirty |= DIRTY_CLIP_PLANE;
}

void markArrays(GLIContext *ctx)
{
    ctx->dirty |= DIRTY_ARRAYS;
}

void markTexGen(GLIContext *ctx)
{
    const uint32_t unit = ctx->current.activeUnit;
    ctx->dirty |= unit == 0 ? DIRTY_TEXUNIT0 : DIRTY_TEXUNIT1;
    ctx->keyDirty |= keyDirtyTexGen(unit);
}

void markTextureTarget(GLIContext *ctx)
{
    updateTextureEnables(ctx, ctx->current.activeUnit);
}

void markPoints(GLIContext *ctx)
{
    ctx->dirty |= DIRTY_POINTS;
}

void markNothing(GLIContext *) {}

// Returns whether the capability is kept here. A switch that already has the value marks nothing.
bool setEnable(GLIContext *ctx, GLenum cap, uint32_t value)
{
    switch (cap) {
        // A row becomes:
        // case GL_LIGHTING:
        //     if (ctx->key.lighting != value) {
        //         ctx->key.lighting = value;
        //         ctx->derivedFor = 0;
        //         markLighting(ctx);
        //     }
        //     return true;
#define CAPABILITY(name, place, mark)                                                                                  \
    case name:                                                                                                         \
        if (place != value) {                                                                                          \
            place = value;                                                                                             \
            ctx->derivedFor = 0;                                                                                       \
            mark(ctx);                                                                                                 \
        }                                                                                                              \
        return true;
#include "state/capabilities.def"
#undef CAPABILITY
    default:
        return false;
    }
}

// Whether the backend has to be told.
bool isBackendCapability(GLIContext *ctx, GLenum cap, uint32_t value)
{
    if (cap == GL_ALPHA_TEST && !ctx->backend.lacksAlphaFunc) return true;
    return !setEnable(ctx, cap, value);
}

} // namespace

GL_API void GL_APIENTRY glEnable(GLenum cap)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    if (!isBackendCapability(ctx, cap, 1)) return;
    if (assertThat(glEnable_2_0 != nullptr, "glEnable_2_0")) glEnable_2_0(cap);
}

GL_API void GL_APIENTRY glDisable(GLenum cap)
{
    GLIContext *ctx = valueContext();
    if (!ctx) return;

    if (!isBackendCapability(ctx, cap, 0)) return;
    if (assertThat(glDisable_2_0 != nullptr, "glDisable_2_0")) glDisable_2_0(cap);
}
