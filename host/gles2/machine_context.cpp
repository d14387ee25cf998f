// SPDX-License-Identifier: MIT
#include "machine_context.h"

#include <vector>

#ifndef EGL_NO_CONFIG_KHR
#define EGL_NO_CONFIG_KHR static_cast<EGLConfig>(nullptr)
#endif

EGLenum bindOpenGlEs()
{
    const EGLenum before = machineEgl.eglQueryAPI();
    machineEgl.eglBindAPI(EGL_OPENGL_ES_API);
    return before;
}

EGLBoolean releaseOpenGlEs(EGLDisplay display)
{
    const EGLenum api = bindOpenGlEs();
    const EGLBoolean released = machineEgl.eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    machineEgl.eglBindAPI(api);
    return released;
}

EGLDisplay surfacelessDisplay()
{
    static EGLDisplay display = [] {
        const char *extensions = machineEgl.eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
        EGLDisplay opened = EGL_NO_DISPLAY;
        const auto getPlatformDisplay =
            reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(machineEgl.eglGetProcAddress("eglGetPlatformDisplayEXT"));
        if (getPlatformDisplay && hasExtension(extensions, "EGL_MESA_platform_surfaceless"))
            opened = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (opened == EGL_NO_DISPLAY) opened = machineEgl.eglGetDisplay(EGL_DEFAULT_DISPLAY);
        return machineEgl.eglInitialize(opened, nullptr, nullptr) ? opened : EGL_NO_DISPLAY;
    }();
    return display;
}

// The caller's attribute list with client version 2. The minor version goes with the caller's major one.
static std::vector<EGLint> attributesForVersion2(const EGLint *given)
{
    std::vector<EGLint> attributes = {EGL_CONTEXT_CLIENT_VERSION, 2};
    for (; given && given[0] != EGL_NONE; given += 2) {
        if (given[0] != EGL_CONTEXT_CLIENT_VERSION && given[0] != EGL_CONTEXT_MINOR_VERSION_KHR)
            attributes.insert(attributes.end(), {given[0], given[1]});
    }
    attributes.push_back(EGL_NONE);
    return attributes;
}

static EGLConfig configOrAny(EGLDisplay display, EGLConfig config)
{
    if (config) return config;
    const char *extensions = machineEgl.eglQueryString(display, EGL_EXTENSIONS);
    if (hasExtension(extensions, "EGL_KHR_no_config_context") ||
        hasExtension(extensions, "EGL_MESA_configless_context"))
        return EGL_NO_CONFIG_KHR;
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT, EGL_SURFACE_TYPE, EGL_DONT_CARE, EGL_NONE};
    EGLConfig found = nullptr;
    EGLint count = 0;
    return machineEgl.eglChooseConfig(display, wanted, &found, 1, &count) && count > 0 ? found : nullptr;
}

EGLContext createMachineContext(EGLDisplay display, EGLConfig config, EGLContext share, const EGLint *attributes,
                                EGLenum &error)
{
    const EGLenum api = bindOpenGlEs();
    const EGLContext handle = machineEgl.eglCreateContext(display, configOrAny(display, config), share,
                                                          attributesForVersion2(attributes).data());
    error = handle ? EGL_SUCCESS : machineEgl.eglGetError();
    machineEgl.eglBindAPI(api);
    return handle;
}

// False when the context, or a surface it draws to, has been destroyed: they go when the context is released.
static bool canComeBack(EGLDisplay display, EGLContext handle, const LeftSurfaces &left)
{
    EGLint buffer, width;
    if (!machineEgl.eglQueryContext(display, handle, EGL_RENDER_BUFFER, &buffer)) return false;
    if (buffer == EGL_NONE) return true; // it has no surface
    return machineEgl.eglQuerySurface(display, left.draw, EGL_WIDTH, &width) &&
           machineEgl.eglQuerySurface(display, left.read, EGL_WIDTH, &width);
}

static LeftSurfaces currentSurfaces()
{
    return {.draw = machineEgl.eglGetCurrentSurface(EGL_DRAW), .read = machineEgl.eglGetCurrentSurface(EGL_READ)};
}

bool enterSideContext(const Context *context, LeftSurfaces &left)
{
    ShareGroup *group = context->group;
    left = currentSurfaces();
    if (!canComeBack(context->display, context->handle, left)) return false;
    EGLenum error;
    if (!group->side)
        group->side = createMachineContext(context->display, context->config, context->handle, nullptr, error);
    if (!group->side) return false;
    // Where a context cannot be current without surfaces, the application's serve it.
    const char *extensions = machineEgl.eglQueryString(context->display, EGL_EXTENSIONS);
    const bool surfaceless = hasExtension(extensions, "EGL_KHR_surfaceless_context");
    const EGLSurface draw = surfaceless ? EGL_NO_SURFACE : left.draw;
    const EGLSurface read = surfaceless ? EGL_NO_SURFACE : left.read;
    return machineEgl.eglMakeCurrent(context->display, draw, read, group->side);
}

void leaveSideContext(const Context *context, const LeftSurfaces &left)
{
    machineEgl.eglMakeCurrent(context->display, left.draw, left.read, context->handle);
}

bool enterThread(const Context *context, LeftThread &left)
{
    left = {.display = machineEgl.eglGetCurrentDisplay(),
            .context = machineEgl.eglGetCurrentContext(),
            .surfaces = currentSurfaces()};
    if (left.context && !canComeBack(left.display, left.context, left.surfaces)) return false;
    return machineEgl.eglMakeCurrent(context->display, EGL_NO_SURFACE, EGL_NO_SURFACE, context->handle);
}

void leaveThread(const Context *context, const LeftThread &left)
{
    if (left.context) {
        machineEgl.eglMakeCurrent(left.display, left.surfaces.draw, left.surfaces.read, left.context);
        return;
    }
    releaseOpenGlEs(context->display);
}

void destroySideContext(const Context *context)
{
    if (context->group->side) machineEgl.eglDestroyContext(context->display, context->group->side);
    context->group->side = EGL_NO_CONTEXT;
}
