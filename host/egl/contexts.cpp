// SPDX-License-Identifier: MIT
// Creating, destroying and querying contexts. ES 1.x contexts are the library's over an ES 2.0 context of the machine,
// all others the machine's.
#include "current.h"
#include "es1_contexts.h"
#include "es1_library.h"
#include "images_in_place.h"
#include "machine_egl.h"
#include "share_groups.h"
#include "thread_state.h"

#include "host/gles2/create_info.h"

#include <EGL/eglext.h>

#include <vector>

namespace {

// What eglCreateContext asks for, as far as it matters here.
struct Request {
    EGLint major = 1; // an OpenGL ES context without a client version is of version 1
    EGLint minor = 0;
    bool noError = false;
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
        request.noError |= attributes[0] == EGL_CONTEXT_OPENGL_NO_ERROR_KHR && attributes[1] == EGL_TRUE;
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
    refuse(error);
    return EGL_NO_CONTEXT;
}

// What a new ES 1.x context shares its objects with.
struct Sharing {
    void *library;      // a context of the library's, null: none
    EGLContext machine; // one of the machine's where the library has none in the group
    uint32_t group;
};

Sharing sharingWith(EGLContext share, const Es1Context *shared)
{
    if (!share) return {.library = nullptr, .machine = EGL_NO_CONTEXT, .group = newShareGroup()};
    if (shared) return {.library = shared->library, .machine = EGL_NO_CONTEXT, .group = shared->shareGroup};
    const uint32_t group = shareGroupOf(share);
    if (group == 0) return {.library = nullptr, .machine = share, .group = newShareGroup()};
    const Es1Context *member = findEs1ContextOfGroup(group);
    return {.library = member ? member->library : nullptr, .machine = share, .group = group};
}

EGLContext createEs1Context(EGLDisplay dpy, EGLConfig config, EGLContext share, Request request)
{
    if (const EGLint error = machineDisplayError(dpy); error != EGL_SUCCESS) return finish(error), EGL_NO_CONTEXT;
    if (request.minor < 0 || request.minor > 1) return fail(EGL_BAD_MATCH);
    // EGL_KHR_create_context_no_error starts at ES 2.0; and the library goes by the machine's errors.
    if (request.noError) return fail(EGL_BAD_ATTRIBUTE);
    if (!configServesEs1(dpy, config)) return fail(EGL_BAD_CONFIG);
    const ClientAPIFunctions *library = es1Table();
    if (!library) return fail(EGL_BAD_ALLOC);

    const auto lock = lockEs1Contexts();
    const Es1Context *shared = findEs1Context(share);
    if (shared && shared->display != dpy) return fail(EGL_BAD_MATCH);
    const Sharing sharing = sharingWith(share, shared);

    request.others.insert(request.others.end(), {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE});
    EGLenum error = EGL_SUCCESS;
    EGLContext machine = EGL_NO_CONTEXT;
    BackendCreateInfo info = {.size = sizeof(info),
                              .display = dpy,
                              .share = sharing.machine,
                              .context = &machine,
                              .error = &error,
                              .imagesFound = noteImagesInPlace};
    void *created = library->createContext(sharing.library, config, request.others.data(), es1CurrentSlot(), &info);
    if (!created) return error != EGL_SUCCESS ? (finish(EGLint(error)), EGL_NO_CONTEXT) : fail(EGL_BAD_ALLOC);

    if (sharing.machine) noteShareGroup(dpy, sharing.machine, sharing.group);
    finish(EGL_SUCCESS);
    return addEs1Context({.display = dpy,
                          .config = config,
                          .library = created,
                          .machine = machine,
                          .shareGroup = sharing.group,
                          .current = nullptr,
                          .destroyed = false,
                          .next = nullptr});
}

// Notes that a new context of the machine's shares with another, ES 1.x or the machine's.
void joinShareGroup(EGLDisplay dpy, EGLContext created, EGLContext share)
{
    const auto lock = lockEs1Contexts();
    const Es1Context *es1 = findEs1Context(share);
    uint32_t group = es1 ? es1->shareGroup : shareGroupOf(share);
    if (group == 0) {
        group = newShareGroup();
        noteShareGroup(dpy, share, group);
    }
    noteShareGroup(dpy, created, group);
}

EGLBoolean queryEs1Context(EGLDisplay dpy, EGLContext handle, EGLint attribute, EGLint *value)
{
    EGLConfig config;
    EGLContext machine;
    {
        const auto lock = lockEs1Contexts();
        const Es1Context *context = findEs1Context(handle);
        if (!context || context->display != dpy) return refuse(EGL_BAD_CONTEXT);
        config = context->config;
        machine = context->machine;
    }
    if (!value) return refuse(EGL_BAD_PARAMETER);

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
    }
    return machineEgl().eglQueryContext(dpy, machine, attribute, value);
}

} // namespace

EGLContext EGLAPIENTRY eglCreateContext(EGLDisplay dpy, EGLConfig config, EGLContext share_context,
                                        const EGLint *attrib_list)
{
    enter("eglCreateContext");
    if (!machineEglFound()) return fail(EGL_NOT_INITIALIZED);
    if (machineEgl().eglQueryAPI() == EGL_OPENGL_ES_API) {
        Request request = readRequest(attrib_list);
        if (request.major == 1) return createEs1Context(dpy, config, share_context, std::move(request));
    }

    // Sharing with an ES 1.x context is sharing with the ES 2.0 context that holds its objects.
    const EGLContext share = machineContextOf(dpy, share_context);
    if (share_context && !share) return refuseOn(dpy, EGL_BAD_MATCH), EGL_NO_CONTEXT;
    const EGLContext created = machineEgl().eglCreateContext(dpy, config, share, attrib_list);
    if (created && share) joinShareGroup(dpy, created, share_context);
    return created;
}

EGLBoolean EGLAPIENTRY eglDestroyContext(EGLDisplay dpy, EGLContext ctx)
{
    enter("eglDestroyContext");
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    {
        const auto lock = lockEs1Contexts();
        if (Es1Context *context = findEs1Context(ctx)) {
            if (context->display != dpy) return refuseOn(dpy, EGL_BAD_CONTEXT);
            retireEs1Context(context);
            return finish(EGL_SUCCESS);
        }
    }
    forgetShareGroup(ctx); // before another thread can be given the same handle
    return machineEgl().eglDestroyContext(dpy, ctx);
}

EGLBoolean EGLAPIENTRY eglTerminate(EGLDisplay dpy)
{
    enter("eglTerminate");
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
    forgetShareGroupsOf(dpy);
    finish(EGL_SUCCESS);
    return machineEgl().eglTerminate(dpy);
}

EGLBoolean EGLAPIENTRY eglQueryContext(EGLDisplay dpy, EGLContext ctx, EGLint attribute, EGLint *value)
{
    enter("eglQueryContext");
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    if (isEs1Context(ctx)) {
        const EGLint displayError = machineDisplayError(dpy);
        return displayError == EGL_SUCCESS ? queryEs1Context(dpy, ctx, attribute, value) : finish(displayError);
    }
    return machineEgl().eglQueryContext(dpy, ctx, attribute, value);
}
