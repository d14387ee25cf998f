// SPDX-License-Identifier: MIT
#include "fake_es1_library.h"

#include "frontend/client_api.h"
#include "host/gles2/create_info.h"

#include <cstring>
#include <dlfcn.h>

namespace {

struct FakeContext {
    EGLDisplay display;
    EGLContext machine;
};

FakeEs1Record record;
thread_local FakeContext *current; // noted before the machine is asked, so that a failure has to be undone

template <typename Function>
Function machineFunction(const char *name)
{
    static void *machine = dlopen(MACHINE_EGL, RTLD_NOW | RTLD_LOCAL);
    return reinterpret_cast<Function>(dlsym(machine, name));
}
#define MACHINE(name) machineFunction<decltype(&name)>(#name)

void *createContext(void *share, void *config, const void *attributes, uint32_t slot, void *extra)
{
    const auto *info = static_cast<const BackendCreateInfo *>(extra);
    const auto *list = static_cast<const EGLint *>(attributes);
    record.attributes.clear();
    for (const EGLint *pair = list; *pair != EGL_NONE; pair += 2)
        record.attributes.insert(record.attributes.end(), {pair[0], pair[1]});
    record.lastShare = share;
    record.lastMachineShare = info->share;
    record.display = info->display;
    record.slot = slot;

    *info->error = record.failCreation;
    if (record.failCreation) return nullptr;
    const EGLContext shared = share ? static_cast<FakeContext *>(share)->machine : info->share;
    const EGLContext machine = MACHINE(eglCreateContext)(info->display, config, shared, list);
    *info->error = machine ? EGL_SUCCESS : MACHINE(eglGetError)();
    *info->context = machine;
    if (!machine) return nullptr;
    record.created++;
    record.lastContext = new FakeContext{info->display, machine};
    return record.lastContext;
}

int destroyContext(void *context)
{
    auto *fake = static_cast<FakeContext *>(context);
    const EGLBoolean result = MACHINE(eglDestroyContext)(fake->display, fake->machine);
    record.destroyed++;
    if (current == fake) current = nullptr;
    delete fake;
    return result;
}

int setBuffers(void *context, void *draw, void *read)
{
    auto *fake = static_cast<FakeContext *>(context);
    const EGLDisplay display = fake ? fake->display : MACHINE(eglGetCurrentDisplay)();
    current = fake;
    if (!fake && display == EGL_NO_DISPLAY) return 1;
    return MACHINE(eglMakeCurrent)(display, draw, read, fake ? fake->machine : EGL_NO_CONTEXT);
}

int swapBuffer(void *context, void *display, void *surface)
{
    record.swaps++;
    return context && (!surface || MACHINE(eglSwapBuffers)(display, surface));
}

void fakeDrawTex(GLint, GLint, GLint, GLint, GLint) {}

void *getProcAddress(const char *name)
{
    return strcmp(name, "glDrawTexiOES") == 0 ? reinterpret_cast<void *>(&fakeDrawTex) : nullptr;
}

} // namespace

FakeEs1Record *fakeEs1Record()
{
    record.currentContext = [] { return static_cast<void *>(current); };
    return &record;
}

void oglGetClientAPIFunctions(void *table)
{
    if (!table) return;
    *static_cast<ClientAPIFunctions *>(table) = {.createContext = createContext,
                                                 .destroyContext = destroyContext,
                                                 .setBuffers = setBuffers,
                                                 .checkValidity = nullptr,
                                                 .selectContext = nullptr,
                                                 .flush = nullptr,
                                                 .finish = nullptr,
                                                 .getIntegerv = nullptr,
                                                 .scissor = nullptr,
                                                 .viewport = nullptr,
                                                 .setSurfaceTexture = nullptr,
                                                 .releaseSurfaceTexture = nullptr,
                                                 .isSurfaceTextureReleased = nullptr,
                                                 .getMaxDisplayDimension = nullptr,
                                                 .getProcAddress = getProcAddress,
                                                 .swapBuffer = swapBuffer,
                                                 .createClientSurface = nullptr,
                                                 .destroyClientSurface = nullptr,
                                                 .queryClientCapability = nullptr};
}

// The few entry points that tests call; glMatrixMode and the rest are missing on purpose.

const GLubyte *glGetString(GLenum)
{
    return reinterpret_cast<const GLubyte *>("stand-in ES 1.1");
}

void glClear(GLbitfield)
{
    record.clears++;
}

void glOrthof(GLfloat, GLfloat, GLfloat, GLfloat, GLfloat, GLfloat) {}
