// SPDX-License-Identifier: MIT
#include "frontend/context.h"

#include "frontend/backend.h"
#include "frontend/current.h"
#include "frontend/lifecycle.h"
#include "settings/dumps.h"
#include "settings/panel_settings.h"
#include "shadergen/program_cache.h"
#include "shadergen/program_log.h"

// The context's name space: the share group's, or a new one. Returns 0 without memory.
static uint32_t joinNamespace(GLIContext *ctx)
{
    if (!ctx->textures) {
        auto *textures = static_cast<TextureNamespace *>(os_malloc(sizeof(TextureNamespace)));
        if (!textures) return 0;
        os_memset(textures, 0, sizeof(TextureNamespace));
        initTextureObjects(textures);
        ctx->textures = textures;
    }
    bindDefaultTextures(ctx);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit)
        ctx->bindings.unitFormat[unit] = GL_ALPHA;
    ++ctx->textures->shareCount;
    return 1;
}

// The context leaves its name space; the last one takes it along.
static void leaveNamespace(GLIContext *ctx)
{
    TextureNamespace *textures = ctx->textures;
    if (!textures) return; // none was made, for want of memory

    bindDefaultTextures(ctx);
    if (--textures->shareCount == 0) {
        destroyTextureObjects(textures);
        os_free(textures);
    }
    ctx->textures = nullptr;
    ctx->bindings = {};
}

static void initCurrentValues(GLIContext *ctx)
{
    ctx->current = {.color = {1.0f, 1.0f, 1.0f, 1.0f},
                    .normal = {0.0f, 0.0f, 1.0f, 0.0f},
                    .texCoord = {{0.0f, 0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, 0.0f, 1.0f}},
                    .activeUnit = 0};
}

static void initHints(GLIContext *ctx)
{
    for (GLenum &mode : ctx->hints.mode)
        mode = GL_DONT_CARE;
}

static void takeSettings(GLIContext *ctx)
{
    const PanelSettings *settings = get_panel_settings();
    ctx->settings.interfaceOnly = (settings->flags1 & PANEL_INTERFACE_ONLY) != 0;
    ctx->settings.dumps = dumpFlags(*settings);
    if (settings->flags0 & PANEL_LOG_SHADERS) requestProgramLogs();
}

uint32_t gliInitContext(GLIContext *ctx)
{
    if (!ctx) return 0;

    takeSettings(ctx);
    if (!joinNamespace(ctx)) return 0;
    initShaderCache(ctx);
    if (!ctx->shaderCache) {
        leaveNamespace(ctx);
        return 0;
    }

    ctx->key = {};
    ctx->keyDirty = KEY_DIRTY_ALL;
    ctx->error = GL_NO_ERROR;
    ctx->primitiveFlags = 0;
    ctx->dirty = 0;
    ctx->backend = {.lacksAlphaFunc = glAlphaFuncQRN_2_0 == nullptr, .lacksFog = glFogfvQRN_2_0 == nullptr};
    initCurrentValues(ctx);
    ctx->viewport.depthNear = 0.0f;
    ctx->viewport.depthFar = 1.0f;
    matrixfSetIdentity(&ctx->transform.projectionAdjustment);
    matrixfSetIdentity(&ctx->transform.effectiveProjection);
    initTransform(ctx);
    initVertexArray(ctx);
    initMaterial(ctx);
    initLighting(ctx);
    initTextureCombineMode(ctx);
    updatePerVertexColor(ctx);
    for (TexGenState &texGen : ctx->texGen)
        texGen.mode = GL_NORMAL_MAP_OES;
    initHints(ctx);
    initRaster(ctx);
    ctx->vendor = {.fogCoord = 0.0f, .alphaFactor = 1.0f};
    ctx->diagnosticBuffer = nullptr;
    return 1;
}

GLIContext *gliCreateContext(GLIContext *shareContext)
{
    auto *ctx = static_cast<GLIContext *>(os_malloc(sizeof(GLIContext)));
    if (!ctx) return nullptr;
    os_memset(ctx, 0, sizeof(GLIContext));
    if (shareContext) ctx->textures = shareContext->textures;

    gliInitLibrary(ctx);
    if (!gliInitContext(ctx)) {
        gliDestroyContext(ctx);
        return nullptr;
    }
    ctx->initialised = 1;
    return ctx;
}

void gliInitLibrary(GLIContext *ctx)
{
    if (!ctx) return;
    ctx->backendModule = hGllModule;
    Load_Gll_2_0(ctx);
}

void gliMakeCurrent(GLIContext *ctx, void *drawSurface, void *readSurface)
{
    if (!ctx) return;

    if (!ctx->initialised) {
        gliInitLibrary(ctx);
        ctx->initialised = static_cast<uint8_t>(gliInitContext(ctx));
    }
    ctx->drawSurface = drawSurface;
    ctx->readSurface = readSurface;

    GLint viewport[4] = {};
    if (glGetIntegerv_2_0) glGetIntegerv_2_0(GL_VIEWPORT, viewport);
    ctx->viewport.x = viewport[0];
    ctx->viewport.y = viewport[1];
    ctx->viewport.width = viewport[2];
    ctx->viewport.height = viewport[3];
    // Another context of the group may have respecified a texture that is bound here.
    if (ctx->textures && ctx->textures->shareCount > 1) refreshUnitFormats(ctx);
}

void gliDestroyContext(GLIContext *ctx)
{
    if (!ctx) return;

    os_free(ctx->diagnosticBuffer);
    ctx->diagnosticBuffer = nullptr;
    leaveNamespace(ctx);
    destroyShaderCache(ctx);
    os_free(ctx->shaderText.text);
    wipeMaterial(ctx);
    wipeLighting(ctx);
    os_free(ctx);
}

void gliCleanupLibrary()
{
    os_lib_unmap(hGllModule);
    if (hEglModule) os_lib_unmap(hEglModule);
}
