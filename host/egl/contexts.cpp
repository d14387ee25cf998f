// SPDX-License-Identifier: MIT
// Creating, destroying and querying contexts. ES 1.x contexts are the library's over an ES 2.0 context of the machine,
// all others the machine's.
#include "current.h"
#include "es1_contexts.h"
#include "es1_library.h"
#include "machine_egl.h"
#include "thread_state.h"

#include "host/gles2/create_info.h"

#include <EGL/eglext.h>

#include <vector>

namespace {

// What eglCreateContext asks for, as far as it matters here.
struct Request {
    EGLint major = 1; // an OpenGL ES context without a client version is of version 1
    EGLint minor = 0;
    std::vector<EGLint> others; // the remaining attributes
};

Request readRequest(const EGLint *attributes)
{
    Request request;
    for (; attributes && attributes[0] != EGL_NONE; attributes += 2) {
        if (attributes[0] == EGL_CONTEXT_MAJOR_VERSION)
            request.major = attributes[1];
        else if (attributes[0] == EGL_CONTEXT_MINOR_VERSION)
            request.minor = attributes[1];
        else
            request.others.insert(request.others.end(), {attributes[0], attributes[1]});
    }
    return request;
}

// ES 1.x runs on every configuration of ES 2.0.
bool configServesEs1(EGLDisplay dpy, EGLConfig config)
{
    if (config == EGL_NO_CONFIG_KHR) return true;
    EGLint renderable = 0;
    return machineEgl().eglGetConfigAttrib(dpy, config, EGL_RENDERABLE_TYPE, &renderable) &&
           (renderable & EGL_OPENGL_ES2_BIT);
}

EGLContext fail(EGLint error)
{
    finish(error);
    return EGL_NO_CONTEXT;
}

EGLContext createEs1Context(EGLDisplay dpy, EGLConfig config, EGLContext share, Request request)
{
    if (const EGLint error = displayErrorOr(dpy, EGL_SUCCESS); error != EGL_SUCCESS) return fail(error);
    if (request.minor < 0 || request.minor > 1) return fail(EGL_BAD_MATCH);
    if (!configServesEs1(dpy, config)) return fail(EGL_BAD_CONFIG);
    const ClientAPIFunctions *library = es1Table();
    if (!library) return fail(EGL_BAD_ALLOC);

    const auto lock = lockEs1Contexts();
    const Es1Context *shared = findEs1Context(share);
    // Sharing goes by the library's records of texture names; a context of the machine's has none.
    if (share && !shared) return fail(EGL_BAD_CONTEXT);
    if (shared && shared->display != dpy) return fail(EGL_BAD_MATCH);

    request.others.insert(request.others.end(), {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE});
    EGLenum error = EGL_SUCCESS;
    BackendCreateInfo info = {.size = sizeof(info), .display = dpy, .error = &error};
    void *created = library->createContext(shared ? shared->library : nullptr, config, request.others.data(),
                                           es1CurrentSlot(), &info);
    if (!created) return fail(error != EGL_SUCCESS ? EGLint(error) : EGL_BAD_ALLOC);

    finish(EGL_SUCCESS);
    return addEs1Context(dpy, config, created);
}

EGLBoolean queryEs1Context(EGLDisplay dpy, EGLContext handle, EGLint attribute, EGLint *value)
{
    EGLConfig config;
    bool everCurrent;
    {
        const auto lock = lockEs1Contexts();
        const Es1Context *context = findEs1Context(handle);
        if (!context || context->display != dpy) return finish(EGL_BAD_CONTEXT);
        config = context->config;
        everCurrent = context->machine != EGL_NO_CONTEXT;
    }
    if (!value) return finish(EGL_BAD_PARAMETER);

    handToMachine();
    switch (attribute) {
    case EGL_CONTEXT_CLIENT_TYPE:
        *value = EGL_OPENGL_ES_API;
        return finish(EGL_SUCCESS);
    case EGL_CONTEXT_CLIENT_VERSION:
        *value = 1;
        return finish(EGL_SUCCESS);
    case EGL_CONFIG_ID:
        if (config) return machineEgl().eglGetConfigAttrib(dpy, config, EGL_CONFIG_ID, value);
        *value = 0;
        return finish(EGL_SUCCESS);
    case EGL_RENDER_BUFFER:
        if (everCurrent) break;
        *value = EGL_NONE;
        return finish(EGL_SUCCESS);
    }
    const EGLContext machine = machineContextOf(dpy, handle);
    return machine ? machineEgl().eglQueryContext(dpy, machine, attribute, value) : finish(EGL_BAD_ATTRIBUTE);
}

} // namespace

EGLContext EGLAPIENTRY eglCreateContext(EGLDisplay dpy, EGLConfig config, EGLContext share_context,
                                        const EGLint *attrib_list)
{
    if (!machineEglFound()) return fail(EGL_NOT_INITIALIZED);
    if (machineEgl().eglQueryAPI() == EGL_OPENGL_ES_API) {
        Request request = readRequest(attrib_list);
        if (request.major == 1) return createEs1Context(dpy, config, share_context, std::move(request));
    }

    // Sharing with an ES 1.x context is sharing with the ES 2.0 context that holds its objects.
    const EGLContext share = machineContextOf(dpy, share_context);
    if (share_context && !share) return fail(displayErrorOr(dpy, EGL_BAD_MATCH));
    handToMachine();
    return machineEgl().eglCreateContext(dpy, config, share, attrib_list);
}

EGLBoolean EGLAPIENTRY eglDestroyContext(EGLDisplay dpy, EGLContext ctx)
{
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    {
        const auto lock = lockEs1Contexts();
        if (Es1Context *context = findEs1Context(ctx)) {
            if (context->display != dpy) return finish(displayErrorOr(dpy, EGL_BAD_CONTEXT));
            retireEs1Context(context);
            return finish(EGL_SUCCESS);
        }
    }
    handToMachine();
    return machineEgl().eglDestroyContext(dpy, ctx);
}

EGLBoolean EGLAPIENTRY eglTerminate(EGLDisplay dpy)
{
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    {
        // Ours go first: their objects belong to the machine's contexts, which go with the display.
        const auto lock = lockEs1Contexts();
        for (Es1Context *context = firstEs1Context(); context;) {
            Es1Context *next = context->next;
            if (context->display == dpy) retireEs1Context(context);
            context = next;
        }
    }
    finish(EGL_SUCCESS);
    return machineEgl().eglTerminate(dpy);
}

EGLBoolean EGLAPIENTRY eglQueryContext(EGLDisplay dpy, EGLContext ctx, EGLint attribute, EGLint *value)
{
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    if (isEs1Context(ctx)) {
        const EGLint displayError = displayErrorOr(dpy, EGL_SUCCESS);
        return displayError == EGL_SUCCESS ? queryEs1Context(dpy, ctx, attribute, value) : finish(displayError);
    }
    handToMachine();
    return machineEgl().eglQueryContext(dpy, ctx, attribute, value);
}
