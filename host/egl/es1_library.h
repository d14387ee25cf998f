// SPDX-License-Identifier: MIT
// The OpenGL ES 1.1 library beside this one, and the table through which EGL drives it.
#pragma once

#include "frontend/client_api.h"

#include <cstdint>

/// The library's table, bound at the first call that succeeds; null when the library or its backend is missing, which
/// the first call says on standard error.
///
/// The library is the file that TRL20_GLES1_LIBRARY names, or else libGLESv1_CM_trl20.so beside this file, or else
/// whatever the dynamic linker finds under that name. The backend, libGLESv2.so, is taken from beside the library.
const ClientAPIFunctions *es1Table();

/// A function the library exports; null when it has none of that name or is missing.
void *es1Symbol(const char *name);

/// The thread-local slot in which the library finds the calling thread's current context.
uint32_t es1CurrentSlot();
