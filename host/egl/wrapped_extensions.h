// SPDX-License-Identifier: MIT
// The extension functions that take a context. eglGetProcAddress gives them out where the machine has them.
#pragma once

#include <EGL/egl.h>
#include <EGL/eglext.h>

/// eglCreateImageKHR and eglLabelObjectKHR of the machine, with the machine's context in place of an ES 1.x one. To be
/// called only where the machine has the function.
EGLImageKHR EGLAPIENTRY createImageKhr(EGLDisplay dpy, EGLContext ctx, EGLenum target, EGLClientBuffer buffer,
                                       const EGLint *attributes);
EGLint EGLAPIENTRY labelObjectKhr(EGLDisplay dpy, EGLenum type, EGLObjectKHR object, EGLLabelKHR label);
