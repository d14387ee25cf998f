// SPDX-License-Identifier: MIT
// The nineteen functions through which contexts are made, made current and destroyed.
#include "context.h"
#include "create_info.h"
#include "driver_abilities.h"
#include "expanded_program.h"
#include "explain.h"
#include "machine_context.h"
#include "programs.h"
#include "stored_programs.h"
#include "vertex_input.h"
#include "waiting_loads.h"

#include "client_api_table.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>

static void *createContext(void *shareContext, void *config, const void *attributes, uint32_t, void *extra)
{
    const BackendCreateInfo *info = static_cast<const BackendCreateInfo *>(extra);
    if (info && info->size < sizeof(BackendCreateInfo)) return nullptr;
    Context *share = static_cast<Context *>(shareContext);
    EGLDisplay display = info ? info->display : share ? share->display : surfacelessDisplay();

    const EGLContext shareHandle = share ? share->handle : info ? info->share : EGL_NO_CONTEXT;
    EGLenum error;
    const EGLContext handle =
        createMachineContext(display, config, shareHandle, static_cast<const EGLint *>(attributes), error);
    if (info && info->error) *info->error = error;
    if (info && info->context) *info->context = handle;
    if (!handle) return nullptr;

    Context *context = new Context{};
    context->handle = handle;
    context->display = display;
    context->config = config;
    context->group = share ? share->group : new ShareGroup{};
    context->imagesFound = info ? info->imagesFound : nullptr;
    // From now on another context may look at the group's programs.
    if (currentContext && currentContext->group == context->group) loadWaiting(currentContext);
    const std::lock_guard guard(context->group->lock);
    context->group->members.push_back(context);
    if (info && info->share) context->group->sharesWithMachine = true;
    ++context->group->contexts;
    joinNames(context);
    initAttributes(context);
    initCapabilities(context);
    context->lineWidth = 1.0f;
    return context;
}

// What the keeper could not delete while no context of the group was current.
static void deleteUnkept(ShareGroup *group)
{
    const std::lock_guard guard(group->lock);
    trimKeeper(group);
}

static void freeContext(Context *context)
{
    ShareGroup *group = context->group;
    leaveProgram(context);
    leaveNames(context);
    bool last;
    {
        const std::lock_guard guard(group->lock);
        std::erase(group->members, context);
        last = --group->contexts == 0;
        if (!last) {
            deleteProgramsOf(context);
            deleteShadersOf(context);
            if (currentContext && currentContext->group == group) trimKeeper(group);
        }
    }
    if (last) {
        destroySideContext(context);
        freeShareGroup(group);
    }
    delete context;
}

// The driver's programs of a group go with its last context, but not where contexts of the machine's share with it.
static void deleteProgramsOfLast(Context *context)
{
    ShareGroup *group = context->group;
    LeftThread left;
    if (!group->sharesWithMachine || group->contexts > 1 || context->current || !enterThread(context, left)) return;
    leaveProgram(context);
    {
        const std::lock_guard guard(group->lock);
        deleteProgramsOf(context);
        trimKeeper(group, 0);
    }
    leaveThread(context, left);
}

static int destroyContext(void *given)
{
    Context *context = static_cast<Context *>(given);
    if (!context) return 0;
    deleteProgramsOfLast(context);
    const EGLBoolean destroyed = machineEgl.eglDestroyContext(context->display, context->handle);
    // The machine keeps a current context until it is released, and so does this.
    if (context->current)
        context->destroyed = true;
    else
        freeContext(context);
    return destroyed == EGL_TRUE;
}

static void prepareContext(Context *context)
{
    if (context->prepared) return;
    context->prepared = true;
    driver.glGetIntegerv(GL_VIEWPORT, context->viewport);
    const std::lock_guard guard(context->group->lock);
    if (context->group->abilitiesKnown) return;
    context->group->abilities = readDriverAbilities();
    context->group->copies.kept = needsBufferCopies(context->group->abilities);
    context->group->abilitiesKnown = true;
}

static int releaseCurrent()
{
    Context *context = currentContext;
    if (!context) return 1;
    loadWaiting(context);
    if (!releaseOpenGlEs(context->display)) return 0;
    setCurrentContext(nullptr);
    context->current = false;
    if (context->destroyed) freeContext(context);
    return 1;
}

static int setBuffers(void *given, void *drawSurface, void *readSurface)
{
    Context *context = static_cast<Context *>(given);
    if (!context) return releaseCurrent();
    if (currentContext) loadWaiting(currentContext);
    if (!machineEgl.eglMakeCurrent(context->display, drawSurface, readSurface, context->handle)) return 0;

    Context *before = currentContext;
    setCurrentContext(context);
    context->current = true;
    if (before != context && context->prepared) expectDeletions(context);
    if (before && before != context) {
        before->current = false;
        if (before->destroyed) freeContext(before);
    }
    if (before != context) deleteUnkept(context->group);
    prepareContext(context);
    return 1;
}

static int swapBuffer(void *given, void *display, void *surface)
{
    if (!surface) return 1;
    const Context *context = static_cast<Context *>(given);
    if (!display && context) display = context->display;
    return machineEgl.eglSwapBuffers(display, surface) == EGL_TRUE;
}

struct NamedFunction {
    std::string_view name;
    void *address;
};

// Every entry point this library exports for the table of backend functions.
static void *ownFunction(std::string_view name)
{
    static const NamedFunction functions[] = {
#define FORWARDED(function, result, parameters, arguments, need) {#function, reinterpret_cast<void *>(function)},
#define WRAPPED(function, result, parameters, need) {#function, reinterpret_cast<void *>(function)},
#include "driver_functions.def"
#define VENDOR(function) {#function, reinterpret_cast<void *>(function)},
#include "vendor_functions.def"
    };
    const auto found = std::find_if(std::begin(functions), std::end(functions),
                                    [&](const NamedFunction &f) { return f.name == name; });
    return found == std::end(functions) ? nullptr : found->address;
}

static void *getProcAddress(const char *name)
{
    if (!name) return nullptr;
    if (void *own = ownFunction(name)) return own;
    return reinterpret_cast<void *>(machineEgl.eglGetProcAddress(name));
}

static int maxDisplayDimension(void *)
{
    GLint size = 0;
    if (currentContext) driver.glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &size);
    return size;
}

static constexpr ClientAPIFunctions kClientTable = {
    .createContext = createContext,
    .destroyContext = destroyContext,
    .setBuffers = setBuffers,
    .checkValidity = [](void *x) { return x; },
    .selectContext = [](void *x) { return x; },
    .flush = [] { driver.glFlush(); },
    .finish = [] { driver.glFinish(); },
    .getIntegerv = [](GLenum pname, GLint *params) { glGetIntegerv(pname, params); },
    .scissor = [](GLint x, GLint y, GLsizei width, GLsizei height) { driver.glScissor(x, y, width, height); },
    .viewport = [](GLint x, GLint y, GLsizei width, GLsizei height) { glViewport(x, y, width, height); },
    .setSurfaceTexture = [](void *, void *, void *, void *, void *, void *, void *) -> void * { return nullptr; },
    .releaseSurfaceTexture = [](void *x) { return x; },
    .isSurfaceTextureReleased = [](void *) { return 0; },
    .getMaxDisplayDimension = maxDisplayDimension,
    .getProcAddress = getProcAddress,
    .swapBuffer = swapBuffer,
    .createClientSurface = [](void *, void *surface) { return surface != nullptr ? 1 : 0; },
    .destroyClientSurface = [](void *surface) { return surface != nullptr ? 1 : 0; },
    .queryClientCapability = [](void *, void *) { return 0; },
};

// Without a driver the table stays as the caller gave it, but for slot 0: null there says that nothing works.
void ogl2GetClientAPIFunctions(void *table)
{
    if (!table) return;
    if (!loadDriver()) {
        static_cast<ClientAPIFunctions *>(table)->createContext = nullptr;
        return;
    }
    startExplain();
    startStoredPrograms();
    *static_cast<ClientAPIFunctions *>(table) = kClientTable;
}
