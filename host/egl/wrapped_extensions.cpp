// SPDX-License-Identifier: MIT
// Functions that take a context get the machine's context underneath; all others go to the machine as they are.
#define EGL_EGLEXT_PROTOTYPES
#include "wrapped_extensions.h"

#include "current.h"
#include "debug.h"
#include "es1_contexts.h"
#include "es1_library.h"
#include "machine_egl.h"
#include "thread_state.h"

#include <EGL/eglext.h>

#include <atomic>
#include <cstring>

namespace {

using Proc = __eglMustCastToProperFunctionPointerType;

// A row becomes: ROW_eglCreateSyncKHR,
enum Row : uint8_t {
#define EGL_EXTENSION(name) ROW_##name,
#define EGL_EXTENSION_SWAP(name) ROW_##name,
#define EGL_EXTENSION_OWN(name, function) ROW_##name,
#include "egl_extensions.def"
    ROW_COUNT
};

// The machine's functions, each stored before its wrapper is given out.
constinit std::atomic<Proc> machineFunctions[ROW_COUNT] = {};

template <typename Function>
Function *machineFunction(Row row)
{
    return reinterpret_cast<Function *>(machineFunctions[row].load(std::memory_order_relaxed));
}

// Whether the machine can be given a context for this handle; the error is set when it cannot.
bool unwrap(EGLDisplay dpy, EGLContext handle, EGLContext &machine)
{
    machine = machineContextOf(dpy, handle);
    if (handle && !machine) {
        refuseOn(dpy, EGL_BAD_CONTEXT);
        return false;
    }
    finish(EGL_SUCCESS);
    return true;
}

EGLImageKHR EGLAPIENTRY createImageKhr(EGLDisplay dpy, EGLContext ctx, EGLenum target, EGLClientBuffer buffer,
                                       const EGLint *attributes)
{
    enter("eglCreateImageKHR");
    const auto function = machineFunction<decltype(eglCreateImageKHR)>(ROW_eglCreateImageKHR);
    EGLContext machine;
    return unwrap(dpy, ctx, machine) ? function(dpy, machine, target, buffer, attributes) : EGL_NO_IMAGE_KHR;
}

EGLint EGLAPIENTRY labelObjectKhr(EGLDisplay dpy, EGLenum type, EGLObjectKHR object, EGLLabelKHR label)
{
    const auto function = machineFunction<decltype(eglLabelObjectKHR)>(ROW_eglLabelObjectKHR);
    enter("eglLabelObjectKHR");
    if (type == EGL_OBJECT_THREAD_KHR) threadState.label = label;
    if (type != EGL_OBJECT_CONTEXT_KHR) return function(dpy, type, object, label);
    EGLContext machine;
    return unwrap(dpy, object, machine) ? function(dpy, type, machine, label) : threadState.error;
}

EGLint EGLAPIENTRY debugMessageControlKhr(EGLDEBUGPROCKHR callback, const EGLAttrib *attributes)
{
    enter("eglDebugMessageControlKHR");
    const auto function = machineFunction<decltype(eglDebugMessageControlKHR)>(ROW_eglDebugMessageControlKHR);
    const EGLint error = function(callback, attributes);
    if (error == EGL_SUCCESS) noteDebugControl(callback, attributes);
    return error;
}

// The wrapper of a function type that hands everything on.
template <typename Function>
struct Passing;
template <typename Result, typename... Arguments>
struct Passing<Result(Arguments...)> {
    template <Row row>
    static Result EGLAPIENTRY call(Arguments... arguments)
    {
        handToMachine();
        return machineFunction<Result(Arguments...)>(row)(arguments...);
    }
};

// The same for a function that swaps in its own way. The library takes its pictures of frames at its own swap.
template <typename Function>
struct Swapping;
template <typename Result, typename... Arguments>
struct Swapping<Result(EGLDisplay, Arguments...)> {
    template <Row row>
    static Result EGLAPIENTRY call(EGLDisplay dpy, Arguments... arguments)
    {
        handToMachine();
        if (threadState.current) es1Table()->swapBuffer(threadState.current->library, dpy, EGL_NO_SURFACE);
        return machineFunction<Result(EGLDisplay, Arguments...)>(row)(dpy, arguments...);
    }
};

struct ExtensionFunction {
    const char *name;
    Row row;
    Proc wrapper;
};

// A row becomes: {"eglCreateSyncKHR", ROW_eglCreateSyncKHR, &Passing<decltype(::eglCreateSyncKHR)>::call<ROW_...>},
const ExtensionFunction kExtensionFunctions[ROW_COUNT] = {
#define EGL_EXTENSION(name) {#name, ROW_##name, reinterpret_cast<Proc>(&Passing<decltype(::name)>::call<ROW_##name>)},
#define EGL_EXTENSION_SWAP(name)                                                                                       \
    {#name, ROW_##name, reinterpret_cast<Proc>(&Swapping<decltype(::name)>::call<ROW_##name>)},
#define EGL_EXTENSION_OWN(name, function) {#name, ROW_##name, reinterpret_cast<Proc>(&function)},
#include "egl_extensions.def"
};

} // namespace

Proc extensionFunction(const char *name)
{
    const Proc machine = machineEglFound() ? machineEgl().eglGetProcAddress(name) : nullptr;
    if (!machine) return nullptr;
    for (const ExtensionFunction &row : kExtensionFunctions) {
        if (strcmp(name, row.name) != 0) continue;
        machineFunctions[row.row].store(machine, std::memory_order_relaxed);
        return row.wrapper;
    }
    return machine;
}

EGLImage EGLAPIENTRY eglCreateImage(EGLDisplay dpy, EGLContext ctx, EGLenum target, EGLClientBuffer buffer,
                                    const EGLAttrib *attrib_list)
{
    enter("eglCreateImage");
    const auto function = machineEgl().eglCreateImage;
    if (!function) return finish(EGL_NOT_INITIALIZED), EGL_NO_IMAGE;
    EGLContext machine;
    return unwrap(dpy, ctx, machine) ? function(dpy, machine, target, buffer, attrib_list) : EGL_NO_IMAGE;
}
