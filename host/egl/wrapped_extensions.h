// SPDX-License-Identifier: MIT
// The functions of EGL's extensions. Each passes here on its way to the machine, so that eglGetError knows of it.
#pragma once

#include <EGL/egl.h>

/// What eglGetProcAddress gives for the name of an EGL function outside EGL 1.5: null where the machine has none.
__eglMustCastToProperFunctionPointerType extensionFunction(const char *name);
