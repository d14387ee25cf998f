// SPDX-License-Identifier: MIT
// What is current on the calling thread, where ES 1.x contexts and the machine's alternate.
#pragma once

#include <EGL/egl.h>

/// The machine's context behind a handle: of an ES 1.x context the one underneath, of any other handle the handle
/// itself. Null for an ES 1.x context of another display than dpy, and for one that was never current and cannot be
/// made so without surfaces.
EGLContext machineContextOf(EGLDisplay dpy, EGLContext handle);

/// `error`, or the machine's error when the display itself is invalid or not initialised: that one comes first.
EGLint displayErrorOr(EGLDisplay dpy, EGLint error);
