// SPDX-License-Identifier: MIT
// What an EGL layer hands to the backend through the last argument of the client table's create-context slot.
#pragma once

#include <EGL/egl.h>
#include <GLES2/gl2.h>
#include <stdint.h>

/// The context is made on `display` (the machine's own, initialised) with the machine's EGLConfig given as the config
/// argument; a null config asks for a context without one. A null pointer instead of this record lets the backend open
/// a surfaceless display of its own.
///
/// The attribute list of the call is an EGLint list ended by EGL_NONE, or null. A client version in it is replaced
/// by 2.
///
/// Surfaces of the make-current and swap slots are the machine's EGLSurface handles; null means none. Swap takes
/// (context, EGLDisplay or null for the context's own, EGLSurface); without a surface it swaps nothing and returns 1:
/// the caller swaps in another way, and only the library is to know.
typedef struct BackendCreateInfo {
    uint32_t size;       // sizeof(BackendCreateInfo); a smaller record is refused
    EGLDisplay display;  // the machine's display
    EGLContext share;    // a context of the machine to share objects with; not used where the call has a share context
    EGLContext *context; // receives the machine's context, null when creation fails; may be null
    EGLenum *error;      // receives the machine's EGL error when creation fails, EGL_SUCCESS otherwise; may be null
    void (*imagesFound)(GLenum target); // the texture now bound there is new to the group's contexts and has images by
                                        // another API, of which the library knows nothing; may be null
} BackendCreateInfo;

/// An image for glEGLImageTargetTexture2DOES that stands for what the bound texture holds already, because EGL has put
/// a surface there (eglBindTexImage), or because another API has given it. The backend leaves the texture alone, and
/// the library then asks for its size and format as it does for any image.
#define BACKEND_IMAGE_IN_PLACE ((void *)-1)
