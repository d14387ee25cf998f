// SPDX-License-Identifier: MIT
// This machine's OpenGL ES 2.0 driver and its EGL, reached by absolute path and by name. Nothing here links against
// them: the program's own gl* names may be another library's.
#pragma once

#include "gl_api.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

struct Driver {
#define FORWARDED(name, result, parameters, arguments, need) result(GL_APIENTRY *name) parameters;
#define WRAPPED(name, result, parameters, need) result(GL_APIENTRY *name) parameters;
#define DRIVER_ONLY(name, result, parameters, need) result(GL_APIENTRY *name) parameters;
#include "driver_functions.def"
};

struct MachineEgl {
#define MACHINE_EGL(name) decltype(&::name) name;
#include "machine_egl.def"
};

// Said to be this library's own, so that a call of the driver's is a jump through the pointer and nothing else.
#pragma GCC visibility push(hidden)
/// The driver's functions; all null until loadDriver has succeeded.
extern Driver driver;
extern MachineEgl machineEgl;
#pragma GCC visibility pop

/// Finds and binds the driver, once per process. Returns false when there is none or one that lacks a core function,
/// and says on standard error what was tried. TRL20_DRIVER_EGL and TRL20_DRIVER_GLES2 name other files than the
/// machine's standard ones.
bool loadDriver();

/// True when the blank-separated list of extensions has this name.
bool hasExtension(const char *extensions, const char *name);
