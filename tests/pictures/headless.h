// SPDX-License-Identifier: MIT
// A display without a window system, for the programs that draw pictures.
#pragma once

#include <EGL/egl.h>

/// Ends the program with the name of what went wrong and the EGL error.
[[noreturn]] void failEgl(const char *what);

/// The surfaceless display, initialised. Ends the program without one.
EGLDisplay openDisplay();

/// A configuration of an API (an EGL_OPENGL_ES_BIT) for pbuffers: RGBA 8888, 24 bits of depth, 8 of stencil, no
/// samples.
EGLConfig chooseConfig(EGLDisplay display, EGLint api = EGL_OPENGL_ES_BIT);
