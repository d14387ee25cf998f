// SPDX-License-Identifier: MIT
// What an EGL layer hands to the backend through the last argument of the client table's create-context slot.
#pragma once

#include <EGL/egl.h>
#include <stdint.h>

/// The context is made on `display` (the machine's own, initialised) with the machine's EGLConfig given as the config
/// argument; a null config asks for a context without one. A null pointer instead of this record lets the backend open
/// a surfaceless display of its own.
///
/// The attribute list of the call is an EGLint list ended by EGL_NONE, or null. A client version in it is replaced
/// by 2.
///
/// Surfaces of the make-current and swap slots are the machine's EGLSurface handles; null means none. Swap takes
/// (context, EGLDisplay or null for the context's own, EGLSurface).
typedef struct BackendCreateInfo {
    uint32_t size;      // sizeof(BackendCreateInfo); a smaller record is refused
    EGLDisplay display; // the machine's display
    EGLenum *error;     // receives the machine's EGL error when creation fails, EGL_SUCCESS otherwise; may be null
} BackendCreateInfo;
