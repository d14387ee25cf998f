// SPDX-License-Identifier: MIT
// What is current on the calling thread, where ES 1.x contexts and the machine's alternate.
#pragma once

#include <EGL/egl.h>

/// The machine's context behind a handle: of an ES 1.x context the one underneath, of any other handle the handle
/// itself. Null for an ES 1.x context of another display than dpy.
EGLContext machineContextOf(EGLDisplay dpy, EGLContext handle);
