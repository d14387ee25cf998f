// SPDX-License-Identifier: MIT
// The library blends by a texture's format, which it notes when an image is given. Of images given beside it, it hears
// from here.
#include "images_in_place.h"

#include "es1_library.h"

#include "host/gles2/create_info.h"

void noteImagesInPlace(GLenum target)
{
    static const auto noteImage =
        reinterpret_cast<PFNGLEGLIMAGETARGETTEXTURE2DOESPROC>(es1Symbol("glEGLImageTargetTexture2DOES"));
    if (!noteImage) return;
    if (target != GL_TEXTURE_CUBE_MAP_OES) return noteImage(target, BACKEND_IMAGE_IN_PLACE);
    for (GLenum face = 0; face < 6; ++face)
        noteImage(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face, BACKEND_IMAGE_IN_PLACE);
}
