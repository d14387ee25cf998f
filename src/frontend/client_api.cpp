// SPDX-License-Identifier: MIT
// What EGL calls instead of contexts: each function keeps this library's context and forwards to the backend's table
// with the backend context that it owns. The slots that no one here needs answer their fixed results.
#include "frontend/client_api.h"

#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/current.h"
#include "frontend/lifecycle.h"
#include "settings/dumps.h"

extern "C" {
uint32_t __gl_tls_index = 0;
}

namespace {

uint32_t backendTlsSlot = 0; // the backend's own current-context slot
ClientAPIFunctions backendClientTable = {};
bool clientApiReady = false;

GLIContext *glesContext(void *context)
{
    return static_cast<GLIContext *>(context);
}

void *backendOf(void *context)
{
    return context ? glesContext(context)->backendContext : nullptr;
}

bool bindClientApi()
{
    if (clientApiReady) return true;

    if (backendTlsSlot == 0) backendTlsSlot = os_tls_alloc();
    if (!hGllModule) hGllModule = os_lib_map("libGLESv2.so");
    using FillTable = void (*)(void *table);
    const auto fillTable = reinterpret_cast<FillTable>(os_lib_getaddr(hGllModule, "ogl2GetClientAPIFunctions"));
    if (!assertThat(fillTable != nullptr, "ogl2GetClientAPIFunctions of libGLESv2.so")) return false;

    fillTable(&backendClientTable);
    clientApiReady = backendClientTable.createContext != nullptr;
    return clientApiReady;
}

void *oglCreateContext(void *shareContext, void *config, const void *attributes, uint32_t tlsIndex, void *extra)
{
    assertThat(__gl_tls_index == 0 || __gl_tls_index == tlsIndex, "one thread-local slot for all contexts");
    __gl_tls_index = tlsIndex;

    void *backendContext =
        backendClientTable.createContext(backendOf(shareContext), config, attributes, backendTlsSlot, extra);
    if (!backendContext) return nullptr;
    GLIContext *ctx = gliCreateContext(glesContext(shareContext));
    if (!ctx) {
        backendClientTable.destroyContext(backendContext);
        return nullptr;
    }
    ctx->backendContext = backendContext;
    return ctx;
}

int oglDestroyContext(void *context)
{
    if (!context) return 0;

    void *backendContext = backendOf(context);
    // EGL keeps a context alive while it is current; one that is destroyed all the same must not stay reachable.
    if (os_tls_read(__gl_tls_index) == context) os_tls_write(__gl_tls_index, nullptr);
    gliDestroyContext(glesContext(context));
    return backendClientTable.destroyContext(backendContext);
}

int oglSetBuffers(void *context, void *drawSurface, void *readSurface)
{
    void *backendContext = backendOf(context);
    os_tls_write(backendTlsSlot, backendContext);
    const int result = backendClientTable.setBuffers(backendContext, drawSurface, readSurface);
    gliMakeCurrent(glesContext(context), drawSurface, readSurface);
    return result;
}

void *oglCheckValidity(void *x)
{
    return x;
}

void *oglSelectContext(void *x)
{
    return x;
}

void oglFlush()
{
    backendClientTable.flush();
}

void oglFinish()
{
    backendClientTable.finish();
}

void oglGetIntegerv(GLenum pname, GLint *params)
{
    constexpr GLenum kBoundTexture = 3; // EGL's name for the bound 2D texture
    glGetIntegerv(pname == kBoundTexture ? GLenum(GL_TEXTURE_BINDING_2D) : pname, params);
}

void oglScissor(GLint x, GLint y, GLsizei width, GLsizei height)
{
    backendClientTable.scissor(x, y, width, height);
}

void oglViewport(GLint x, GLint y, GLsizei width, GLsizei height)
{
    GLIContext *ctx = currentContext();
    if (!ctx) return;

    ctx->viewport.x = x;
    ctx->viewport.y = y;
    ctx->viewport.width = width;
    ctx->viewport.height = height;
    backendClientTable.viewport(x, y, width, height);
}

void *oglSetSurfaceTexture(void *context, void *a, void *b, void *c, void *d, void *e, void *f)
{
    return backendClientTable.setSurfaceTexture(backendOf(context), a, b, c, d, e, f);
}

void *oglReleaseSurfaceTexture(void *x)
{
    return x;
}

int oglIsSurfaceTextureReleased(void *)
{
    return 0;
}

int oglGetMaxDisplayDimension(void *)
{
    assertThat(false, "oglGetMaxDisplayDimension is not supported");
    return 0;
}

struct Proc {
    const char *name;
    void (*function)();
};

// A row becomes: {"glTexGeniOES", reinterpret_cast<void (*)()>(glTexGeniOES)},
void *oglGetProcAddress(const char *name)
{
    if (!name) return nullptr;
    const Proc procs[] = {
#define PROC(name) {#name, reinterpret_cast<void (*)()>(name)},
#include "frontend/procs.def"
    };
    for (const Proc &proc : procs) {
        if (os_strcmp(name, proc.name) == 0) return reinterpret_cast<void *>(proc.function);
    }
    return nullptr;
}

int oglSwapBuffer(void *context, void *a, void *b)
{
    // Before the swap, while the framebuffer still holds the frame.
    if (context && context == currentContext()) dumpSwap(glesContext(context));
    return backendClientTable.swapBuffer(backendOf(context), a, b);
}

int oglCreateClientSurface(void *, void *surface)
{
    return backendClientTable.createClientSurface(nullptr, surface);
}

int oglDestroyClientSurface(void *surface)
{
    return backendClientTable.destroyClientSurface(surface);
}

int oglQueryClientCapability(void *a, void *b)
{
    return backendClientTable.queryClientCapability(a, b);
}

constexpr ClientAPIFunctions kClientApi = {
    .createContext = oglCreateContext,
    .destroyContext = oglDestroyContext,
    .setBuffers = oglSetBuffers,
    .checkValidity = oglCheckValidity,
    .selectContext = oglSelectContext,
    .flush = oglFlush,
    .finish = oglFinish,
    .getIntegerv = oglGetIntegerv,
    .scissor = oglScissor,
    .viewport = oglViewport,
    .setSurfaceTexture = oglSetSurfaceTexture,
    .releaseSurfaceTexture = oglReleaseSurfaceTexture,
    .isSurfaceTextureReleased = oglIsSurfaceTextureReleased,
    .getMaxDisplayDimension = oglGetMaxDisplayDimension,
    .getProcAddress = oglGetProcAddress,
    .swapBuffer = oglSwapBuffer,
    .createClientSurface = oglCreateClientSurface,
    .destroyClientSurface = oglDestroyClientSurface,
    .queryClientCapability = oglQueryClientCapability,
};

} // namespace

void oglGetClientAPIFunctions(void *table)
{
    if (!table || !bindClientApi()) return;
    os_memcpy(table, &kClientApi, sizeof(kClientApi));
}

void *gliCreateSurface(void)
{
    void *surface = os_malloc(sizeof(uint32_t));
    if (surface) os_memset(surface, 0, sizeof(uint32_t));
    return surface;
}

void gliDestroySurface(void *surface)
{
    os_free(surface);
}
