// SPDX-License-Identifier: MIT
// Surfaces as textures. The machine puts the surface into the texture that the library has bound.
#include "images_in_place.h"
#include "machine_egl.h"
#include "thread_state.h"

EGLBoolean EGLAPIENTRY eglBindTexImage(EGLDisplay dpy, EGLSurface surface, EGLint buffer)
{
    enter("eglBindTexImage");
    const auto function = machineEgl().eglBindTexImage;
    if (!function) return finish(EGL_NOT_INITIALIZED);
    if (!function(dpy, surface, buffer)) return EGL_FALSE;
    // EGL_TEXTURE_TARGET has no other value than EGL_TEXTURE_2D.
    if (threadState.current) noteImagesInPlace(GL_TEXTURE_2D);
    return EGL_TRUE;
}
