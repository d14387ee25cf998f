// SPDX-License-Identifier: MIT
// Surfaces as textures. The machine puts the surface into the texture that the library has bound; the library, which
// blends by a texture's format, has to hear of it.
#include "es1_library.h"
#include "machine_egl.h"
#include "thread_state.h"

#include "host/gles2/create_info.h"

#include <GLES/gl.h>
#include <GLES/glext.h>

EGLBoolean EGLAPIENTRY eglBindTexImage(EGLDisplay dpy, EGLSurface surface, EGLint buffer)
{
    enter("eglBindTexImage");
    const auto function = machineEgl().eglBindTexImage;
    if (!function) return finish(EGL_NOT_INITIALIZED);
    if (!function(dpy, surface, buffer)) return EGL_FALSE;
    if (!threadState.current) return EGL_TRUE;

    static const auto noteImage =
        reinterpret_cast<PFNGLEGLIMAGETARGETTEXTURE2DOESPROC>(es1Symbol("glEGLImageTargetTexture2DOES"));
    // EGL_TEXTURE_TARGET has no other value than EGL_TEXTURE_2D.
    if (noteImage) noteImage(GL_TEXTURE_2D, BACKEND_IMAGE_IN_PLACE);
    return EGL_TRUE;
}
