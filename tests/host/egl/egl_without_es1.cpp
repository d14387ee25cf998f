// SPDX-License-Identifier: MIT
// An EGL as of a machine whose driver has no ES 1.x: the machine's own, less that. It exports one function, from which
// the others are had.
#include <EGL/egl.h>

#include <cstring>
#include <dlfcn.h>

namespace {

using Proc = __eglMustCastToProperFunctionPointerType;

template <typename Function>
Function machineFunction(const char *name)
{
    static void *machine = dlopen(MACHINE_EGL, RTLD_NOW | RTLD_LOCAL);
    return reinterpret_cast<Function>(dlsym(machine, name));
}
#define MACHINE(name) machineFunction<decltype(&name)>(#name)

EGLint valueIn(const EGLint *list, EGLint attribute, EGLint missing)
{
    for (; list && list[0] != EGL_NONE; list += 2)
        if (list[0] == attribute) return list[1];
    return missing;
}

EGLBoolean chooseConfig(EGLDisplay display, const EGLint *list, EGLConfig *configs, EGLint size, EGLint *count)
{
    const EGLint types = valueIn(list, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT);
    const EGLint conformant = valueIn(list, EGL_CONFORMANT, 0);
    if (types == EGL_DONT_CARE || !((types | conformant) & EGL_OPENGL_ES_BIT))
        return MACHINE(eglChooseConfig)(display, list, configs, size, count);
    *count = 0;
    return EGL_TRUE;
}

EGLBoolean getConfigAttrib(EGLDisplay display, EGLConfig config, EGLint attribute, EGLint *value)
{
    if (!MACHINE(eglGetConfigAttrib)(display, config, attribute, value)) return EGL_FALSE;
    if (attribute == EGL_RENDERABLE_TYPE || attribute == EGL_CONFORMANT) *value &= ~EGL_OPENGL_ES_BIT;
    return EGL_TRUE;
}

EGLContext createContext(EGLDisplay display, EGLConfig config, EGLContext share, const EGLint *list)
{
    const bool openGlEs = MACHINE(eglQueryAPI)() == EGL_OPENGL_ES_API;
    if (openGlEs && valueIn(list, EGL_CONTEXT_CLIENT_VERSION, 1) == 1) return EGL_NO_CONTEXT;
    return MACHINE(eglCreateContext)(display, config, share, list);
}

} // namespace

Proc EGLAPIENTRY eglGetProcAddress(const char *name)
{
    if (strcmp(name, "eglChooseConfig") == 0) return reinterpret_cast<Proc>(&chooseConfig);
    if (strcmp(name, "eglGetConfigAttrib") == 0) return reinterpret_cast<Proc>(&getConfigAttrib);
    if (strcmp(name, "eglCreateContext") == 0) return reinterpret_cast<Proc>(&createContext);
    return MACHINE(eglGetProcAddress)(name);
}
