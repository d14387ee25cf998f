// SPDX-License-Identifier: MIT
// Functions that take a context only to find its objects: they get the machine's context underneath.
#include "wrapped_extensions.h"

#include "current.h"
#include "machine_egl.h"
#include "thread_state.h"

namespace {

// Whether the machine can be given a context for this handle; the error is set when it cannot.
bool unwrap(EGLDisplay dpy, EGLContext handle, EGLContext &machine)
{
    machine = machineContextOf(dpy, handle);
    if (handle && !machine) {
        finish(displayErrorOr(dpy, EGL_BAD_CONTEXT));
        return false;
    }
    finish(EGL_SUCCESS);
    return true;
}

template <typename Function>
Function machineExtension(const char *name)
{
    return reinterpret_cast<Function>(machineEgl().eglGetProcAddress(name));
}

} // namespace

EGLImage EGLAPIENTRY eglCreateImage(EGLDisplay dpy, EGLContext ctx, EGLenum target, EGLClientBuffer buffer,
                                    const EGLAttrib *attrib_list)
{
    const auto function = machineEgl().eglCreateImage;
    if (!function) return finish(EGL_NOT_INITIALIZED), EGL_NO_IMAGE;
    EGLContext machine;
    return unwrap(dpy, ctx, machine) ? function(dpy, machine, target, buffer, attrib_list) : EGL_NO_IMAGE;
}

EGLImageKHR EGLAPIENTRY createImageKhr(EGLDisplay dpy, EGLContext ctx, EGLenum target, EGLClientBuffer buffer,
                                       const EGLint *attributes)
{
    static const auto function = machineExtension<PFNEGLCREATEIMAGEKHRPROC>("eglCreateImageKHR");
    EGLContext machine;
    return unwrap(dpy, ctx, machine) ? function(dpy, machine, target, buffer, attributes) : EGL_NO_IMAGE_KHR;
}

EGLint EGLAPIENTRY labelObjectKhr(EGLDisplay dpy, EGLenum type, EGLObjectKHR object, EGLLabelKHR label)
{
    static const auto function = machineExtension<PFNEGLLABELOBJECTKHRPROC>("eglLabelObjectKHR");
    if (type != EGL_OBJECT_CONTEXT_KHR) return function(dpy, type, object, label);
    EGLContext machine;
    return unwrap(dpy, object, machine) ? function(dpy, type, machine, label) : threadState.error;
}
