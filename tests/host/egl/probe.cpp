// SPDX-License-Identifier: MIT
// Opens the drop-in as an application would and prints what it answers, in one line: display, whether the chosen
// configuration says that it serves ES 1.x, ES 1.x context, error of its creation, whether an ES 1.1 function is to be
// had.
#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdio>
#include <dlfcn.h>

int main()
{
    void *module = dlopen(EGL_DROPIN, RTLD_NOW | RTLD_LOCAL);
    if (!module) return fprintf(stderr, "%s\n", dlerror()), 1;
#define DROPIN(name) reinterpret_cast<decltype(&name)>(dlsym(module, #name))

    const EGLDisplay display = DROPIN(eglGetPlatformDisplay)(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    DROPIN(eglInitialize)(display, nullptr, nullptr);
    EGLConfig config = nullptr;
    EGLint count = 0, types = 0;
    const EGLint criteria[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_NONE};
    DROPIN(eglChooseConfig)(display, criteria, &config, 1, &count);
    DROPIN(eglGetConfigAttrib)(display, config, EGL_RENDERABLE_TYPE, &types);
    EGLContext context = EGL_NO_CONTEXT;
    for (int attempt = 0; attempt < 2; attempt++) // a complaint is made once
        context = DROPIN(eglCreateContext)(display, config, EGL_NO_CONTEXT, nullptr);
    const EGLint error = DROPIN(eglGetError)();
    const bool hasOrtho = DROPIN(eglGetProcAddress)("glOrthof") != nullptr;
    DROPIN(eglGetProcAddress)("glClear")(); // without a context: does nothing
    printf("display %s, config %s, context %s, error 0x%04x, glOrthof %s\n", display ? "yes" : "no",
           types & EGL_OPENGL_ES_BIT ? "yes" : "no", context ? "yes" : "no", error, hasOrtho ? "yes" : "no");
    DROPIN(eglTerminate)(display);
    DROPIN(eglReleaseThread)();
    return 0;
}
