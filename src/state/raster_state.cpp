// SPDX-License-Identifier: MIT
#include "state/raster_state.h"

#include "frontend/assert.h"
#include "frontend/context.h"

static FogCode fogCode(GLenum mode)
{
    switch (mode) {
    case GL_LINEAR:
        return FOG_LINEAR;
    case GL_EXP:
        return FOG_EXP;
    case GL_EXP2:
        return FOG_EXP2;
    default:
        assertThat(false, "fog mode");
        return FOG_NONE;
    }
}

void initRaster(GLIContext *ctx)
{
    ctx->pointLine = {.lineWidth = 1.0f,
                      .pointSize = 1.0f,
                      .pointSizeMin = 0.0f,
                      .pointSizeMax = kMaxPointSize,
                      .pointFadeThreshold = 1.0f,
                      .distanceAttenuation = {1.0f, 0.0f, 0.0f},
                      .attenuationActive = 0};
    ctx->fog = {.enabled = 0,
                .mode = GL_EXP,
                .coordSource = GL_FRAGMENT_DEPTH_QRN,
                .density = 1.0f,
                .start = 0.0f,
                .end = 1.0f,
                .color = {}};
    ctx->alphaTest = {.enabled = 0, .func = GL_ALWAYS, .ref = 0.0f};
}

void updateFogKey(GLIContext *ctx)
{
    const FogState &fog = ctx->fog;
    ctx->key.fogMode = fog.enabled ? fogCode(fog.mode) : FOG_NONE;
    ctx->key.fogCoordinate = fog.enabled && fog.coordSource == GL_FOG_COORDINATE_QRN;
}
