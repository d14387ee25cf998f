// SPDX-License-Identifier: MIT
#include "off_screen.h"

template <typename Function>
static Function extensionFunction(const MachineEgl &egl, const char *name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void *>(egl.eglGetProcAddress(name)));
}

// The first device of a driver that knows no surfaceless platform.
static EGLDisplay deviceDisplay(const MachineEgl &egl, PFNEGLGETPLATFORMDISPLAYEXTPROC getPlatformDisplay)
{
    const auto queryDevices = extensionFunction<PFNEGLQUERYDEVICESEXTPROC>(egl, "eglQueryDevicesEXT");
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (!queryDevices || !queryDevices(1, &device, &count) || count == 0) return EGL_NO_DISPLAY;
    return getPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr);
}

// What works without a display server comes first.
static void openDisplay(const MachineEgl &egl, OffScreen &screen)
{
    const auto opens = [&](const char *platform, EGLDisplay display) {
        screen.platform = platform;
        screen.display = display;
        return egl.eglInitialize(display, nullptr, nullptr) == EGL_TRUE;
    };
    const auto getPlatformDisplay = extensionFunction<PFNEGLGETPLATFORMDISPLAYEXTPROC>(egl, "eglGetPlatformDisplayEXT");
    const char *extensions = egl.eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (getPlatformDisplay && hasExtension(extensions, "EGL_MESA_platform_surfaceless") &&
        opens("surfaceless", getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr)))
        return;
    if (getPlatformDisplay && hasExtension(extensions, "EGL_EXT_platform_device") &&
        opens("device", deviceDisplay(egl, getPlatformDisplay)))
        return;
    if (!opens("default", egl.eglGetDisplay(EGL_DEFAULT_DISPLAY))) screen.failure = "eglInitialize";
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
