// SPDX-License-Identifier: MIT
// The machine's own EGL, reached through function pointers: it carries the same file name as this library, so its
// functions cannot be linked.
#pragma once

#include <EGL/egl.h>

/// The machine's functions by their EGL names. Null: this machine's EGL has no such function.
// A row becomes: decltype(&::eglBindAPI) eglBindAPI;
struct MachineEgl {
#define EGL_PASS(name, result, arguments, call, failure) decltype(&::name) name;
#define EGL_OWN(name) decltype(&::name) name;
#include "egl_functions.def"
};

/// The machine's EGL, loaded at the first call. Without one the first call says so on standard error and all pointers
/// are null.
///
/// It is the file that TRL20_DRIVER_EGL names, or else the first libEGL.so.1 of the standard library directories that
/// is not this file.
const MachineEgl &machineEgl();

/// Whether the machine has an EGL.
bool machineEglFound();

/// The machine's error for a display that is invalid or not initialised, otherwise EGL_SUCCESS.
EGLint machineDisplayError(EGLDisplay dpy);
