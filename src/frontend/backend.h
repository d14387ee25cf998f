// SPDX-License-Identifier: MIT
// The OpenGL ES 2.0 library behind this one: one pointer per entry point, named after it with the suffix _2_0, shared
// by all contexts. The exported ones are data symbols, so that companion components call the same backend.
#pragma once

#include "frontend/gl_headers.h"

struct GLIContext;

// A row becomes: extern "C" void(GL_APIENTRY *glEnable_2_0)(GLenum cap), under the hidden symbol own_glEnable: through
// an exported one a call would first look for its address. backend.cpp gives the exported ones their names.
#define BACKEND(name, result, arguments, visibility, group, need)                                                      \
    extern "C" __attribute__((__visibility__("hidden"))) result(GL_APIENTRY *name##_2_0)                               \
        arguments __asm__("own_" #name);
#include "frontend/backend.def"

/// Handle of the backend library; null until it is mapped.
TRL20_EXPORT void *hGllModule;
/// Handle of the EGL module. Never set here; unmapped with the backend when not null.
TRL20_EXPORT void *hEglModule;

/// Looks every backend entry point up in the module of the context. A missing core one is an assertion and stays null;
/// without a module, or without a context, all are missing.
TRL20_EXPORT void Load_Gll_2_0(void *context);
