// SPDX-License-Identifier: MIT
#include "pictures/headless.h"

#include <EGL/eglext.h>

#include <cstdio>
#include <cstdlib>

void failEgl(const char *what)
{
    std::fprintf(stderr, "%s (EGL error 0x%04x)\n", what, eglGetError());
    std::exit(1);
}

EGLDisplay openDisplay()
{
    const auto getPlatformDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    if (!getPlatformDisplay) failEgl("no eglGetPlatformDisplayEXT");
    const EGLDisplay display = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) failEgl("no surfaceless display");
    return display;
}

EGLConfig chooseConfig(EGLDisplay display, EGLint api)
{
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RENDERABLE_TYPE,
                             api,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_BLUE_SIZE,
                             8,
                             EGL_ALPHA_SIZE,
                             8,
                             EGL_DEPTH_SIZE,
                             24,
                             EGL_STENCIL_SIZE,
                             8,
                             EGL_SAMPLES,
                             0,
                             EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count < 1)
        failEgl("no configuration with pbuffers for this API");
    return config;
}
