// SPDX-License-Identifier: MIT
// Making contexts current. The library's backend makes the machine's context underneath current, so the machine always
// knows what is current; here the two records of it, the library's slot and ours, follow.
#include "current.h"

#include "es1_contexts.h"
#include "es1_library.h"
#include "machine_egl.h"
#include "thread_state.h"

#include <vsp.h>

#include <unistd.h>

namespace {

// What the machine has current on this thread.
struct Binding {
    EGLDisplay display;
    EGLSurface draw, read;
    EGLContext context;
};

Binding machineBinding()
{
    const MachineEgl &machine = machineEgl();
    return {.display = machine.eglGetCurrentDisplay(),
            .draw = machine.eglGetCurrentSurface(EGL_DRAW),
            .read = machine.eglGetCurrentSurface(EGL_READ),
            .context = machine.eglGetCurrentContext()};
}

// Undoes what the library and its backend noted for a context that did not stay current.
void restore(const Binding &binding)
{
    if (threadState.current) {
        es1Table()->setBuffers(threadState.current->library, binding.draw, binding.read);
        return;
    }
    es1Table()->setBuffers(nullptr, nullptr, nullptr);
    if (binding.context) machineEgl().eglMakeCurrent(binding.display, binding.draw, binding.read, binding.context);
}

// Leaves the thread without a current context, the machine's record of it included.
void leaveEs1()
{
    Es1Context *left = threadState.current;
    es1Table()->setBuffers(nullptr, nullptr, nullptr);
    os_tls_write(es1CurrentSlot(), nullptr);
    threadState.current = nullptr;
    releaseEs1Context(left);
}

// A thread that ends with an ES 1.x context current releases it, so that others can use or destroy it. The main thread
// ends with the process, where atexit functions may still draw.
struct ThreadExit {
    bool armed = false;
    ~ThreadExit()
    {
        if (armed && threadState.current && gettid() != getpid()) leaveEs1();
    }
};
thread_local ThreadExit threadExit;

EGLBoolean makeEs1Current(EGLDisplay dpy, EGLSurface draw, EGLSurface read, EGLContext handle)
{
    Es1Context *context = nullptr;
    if (const EGLint error = reserveEs1Context(dpy, handle, context); error != EGL_SUCCESS) return refuseOn(dpy, error);

    Es1Context *before = threadState.current;
    machineEgl().eglGetError(); // what follows counts
    if (!es1Table()->setBuffers(context->library, draw, read)) {
        const EGLint error = machineEgl().eglGetError();
        restore(machineBinding()); // a call that fails leaves the machine's as it was
        if (context != before) releaseEs1Context(context);
        return finish(error != EGL_SUCCESS ? error : EGL_BAD_MATCH);
    }
    os_tls_write(es1CurrentSlot(), context->library);
    threadState.current = context;
    threadExit.armed = true;
    if (before && before != context) releaseEs1Context(before);
    return finish(EGL_SUCCESS);
}

} // namespace

EGLContext machineContextOf(EGLDisplay dpy, EGLContext handle)
{
    const auto lock = lockEs1Contexts();
    const Es1Context *context = findEs1Context(handle);
    if (!context) return handle;
    return context->display == dpy ? context->machine : EGL_NO_CONTEXT;
}

EGLBoolean EGLAPIENTRY eglMakeCurrent(EGLDisplay dpy, EGLSurface draw, EGLSurface read, EGLContext ctx)
{
    enter("eglMakeCurrent");
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    if (ctx && isEs1Context(ctx)) return makeEs1Current(dpy, draw, read, ctx);

    // The machine's call comes first: when it fails, the ES 1.x context stays current.
    if (!machineEgl().eglMakeCurrent(dpy, draw, read, ctx)) return EGL_FALSE;
    if (!threadState.current) return EGL_TRUE;

    // Telling the backend releases whatever the machine has current, the new context too.
    leaveEs1();
    finish(EGL_SUCCESS);
    return ctx ? machineEgl().eglMakeCurrent(dpy, draw, read, ctx) : EGL_TRUE;
}

EGLContext EGLAPIENTRY eglGetCurrentContext(void)
{
    enter("eglGetCurrentContext");
    if (!machineEglFound()) return EGL_NO_CONTEXT;
    const EGLContext machine = machineEgl().eglGetCurrentContext();
    Es1Context *current = threadState.current;
    return current && current->machine == machine ? current : machine;
}

EGLBoolean EGLAPIENTRY eglReleaseThread(void)
{
    enter("eglReleaseThread");
    if (threadState.current) leaveEs1();
    finish(EGL_SUCCESS);
    return machineEglFound() ? machineEgl().eglReleaseThread() : EGL_TRUE;
}

EGLBoolean EGLAPIENTRY eglSwapBuffers(EGLDisplay dpy, EGLSurface surface)
{
    enter("eglSwapBuffers");
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    // Without a display or a surface the table's swap would take the context's own, or swap nothing.
    if (!threadState.current || !dpy || !surface) return machineEgl().eglSwapBuffers(dpy, surface);

    machineEgl().eglGetError(); // what follows counts
    if (es1Table()->swapBuffer(threadState.current->library, dpy, surface)) return finish(EGL_SUCCESS);
    const EGLint error = machineEgl().eglGetError();
    return finish(error != EGL_SUCCESS ? error : EGL_BAD_SURFACE);
}
