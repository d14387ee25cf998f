// SPDX-License-Identifier: MIT
// A context that draws off the screen, on whichever EGL the functions belong to: the machine's own or the drop-in's.
#pragma once

#include "driver.h"

struct OffScreen {
    const char *failure = nullptr; // the EGL function that failed; null: the context is current
    const char *platform = "";     // the one that the display belongs to
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
};

/// Makes a context of this ES version current on a small pbuffer.
OffScreen enterOffScreen(const MachineEgl &egl, EGLint version);

/// Leaves it, so that another may be current.
void leaveOffScreen(const MachineEgl &egl, const OffScreen &screen);
