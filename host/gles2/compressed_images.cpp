// SPDX-License-Identifier: MIT
#include "paletted.h"

void GL_APIENTRY glCompressedTexImage2D(GLenum target, GLint level, GLenum format, GLsizei width, GLsizei height,
                                        GLint border, GLsizei size, const void *bytes)
{
    if (!currentContext) return;
    if (findPalettedFormat(format))
        uploadPaletted(target, level, format, width, height, border, size, bytes);
    else
        driver.glCompressedTexImage2D(target, level, format, width, height, border, size, bytes);
}

void GL_APIENTRY glCompressedTexSubImage2D(GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height,
                                           GLenum format, GLsizei size, const void *bytes)
{
    if (!currentContext) return;
    // GL_OES_compressed_paletted_texture: paletted images cannot be changed in part.
    if (findPalettedFormat(format))
        raiseError(GL_INVALID_OPERATION);
    else
        driver.glCompressedTexSubImage2D(target, level, x, y, width, height, format, size, bytes);
}
