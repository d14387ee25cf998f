// SPDX-License-Identifier: MIT
#include "off_screen.h"

template <typename Function>
static Function extensionFunction(const MachineEgl &egl, const char *name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void *>(egl.eglGetProcAddress(name)));
}

// Without a display server first: it is what works everywhere.
static void openDisplay(const MachineEgl &egl, OffScreen &screen)
{
    const auto getPlatformDisplay = extensionFunction<PFNEGLGETPLATFORMDISPLAYEXTPROC>(egl, "eglGetPlatformDisplayEXT");
    const char *extensions = egl.eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (getPlatformDisplay && hasExtension(extensions, "EGL_MESA_platform_surfaceless")) {
        screen.platform = "surfaceless";
        screen.display = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (egl.eglInitialize(screen.display, nullptr, nullptr)) return;
    }
    screen.platform = "default";
    screen.display = egl.eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if (!egl.eglInitialize(screen.display, nullptr, nullptr)) screen.failure = "eglInitialize";
}

OffScreen enterOffScreen(const MachineEgl &egl, EGLint version)
{
    OffScreen screen;
    openDisplay(egl, screen);
    if (screen.failure) return screen;

    const EGLint renderable = version == 1 ? EGL_OPENGL_ES_BIT : EGL_OPENGL_ES2_BIT;
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, renderable, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                             EGL_RED_SIZE,        8,          EGL_GREEN_SIZE,   8,
                             EGL_BLUE_SIZE,       8,          EGL_NONE};
    const EGLint versionWanted[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    const EGLint size[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    egl.eglBindAPI(EGL_OPENGL_ES_API);
    if (!egl.eglChooseConfig(screen.display, wanted, &config, 1, &count) || count == 0) {
        screen.failure = "eglChooseConfig";
        return screen;
    }
    screen.context = egl.eglCreateContext(screen.display, config, EGL_NO_CONTEXT, versionWanted);
    if (screen.context == EGL_NO_CONTEXT) {
        screen.failure = "eglCreateContext";
        return screen;
    }
    const auto createPbuffer = extensionFunction<PFNEGLCREATEPBUFFERSURFACEPROC>(egl, "eglCreatePbufferSurface");
    const EGLSurface surface = createPbuffer ? createPbuffer(screen.display, config, size) : EGL_NO_SURFACE;
    if (!egl.eglMakeCurrent(screen.display, surface, surface, screen.context)) screen.failure = "eglMakeCurrent";
    return screen;
}

void leaveOffScreen(const MachineEgl &egl, const OffScreen &screen)
{
    if (screen.context == EGL_NO_CONTEXT) return;
    egl.eglMakeCurrent(screen.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    egl.eglDestroyContext(screen.display, screen.context);
}
