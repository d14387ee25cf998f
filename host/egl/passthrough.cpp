// SPDX-License-Identifier: MIT
// The functions that concern no ES 1.x context. Displays, configurations, surfaces, synchronisation objects and images
// are the machine's own handles; and whatever is current, ES 1.x or not, is a context of the machine's to the machine.
// So waiting, copying and querying what is current pass through as well.
#include "machine_egl.h"
#include "thread_state.h"

// A row becomes:
// EGLBoolean EGLAPIENTRY eglBindAPI(EGLenum api)
// {
//     const auto function = machineEgl().eglBindAPI;
//     if (!function) return finish(EGL_NOT_INITIALIZED), EGL_FALSE;
//     handToMachine();
//     return function(api);
// }
#define EGL_PASS(name, result, arguments, call, failure)                                                               \
    result EGLAPIENTRY name arguments                                                                                  \
    {                                                                                                                  \
        const auto function = machineEgl().name;                                                                       \
        if (!function) return finish(EGL_NOT_INITIALIZED), failure;                                                    \
        handToMachine();                                                                                               \
        return function call;                                                                                          \
    }
#define EGL_OWN(name)
#include "egl_functions.def"
