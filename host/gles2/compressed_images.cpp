// SPDX-License-Identifier: MIT
// Compressed images: those that ES 1.1 asks for and the driver may not know are decoded here; all others are the
// driver's.
#include "compressed_images.h"

#include "driver_abilities.h"
#include "etc1.h"
#include "paletted.h"
#include "texture_levels.h"

void uploadPacked(GLenum target, GLint level, GLenum format, GLenum type, GLsizei width, GLsizei height,
                  const void *texels)
{
    GLint alignment = 4;
    driver.glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    driver.glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    driver.glTexImage2D(target, level, static_cast<GLint>(format), width, height, 0, format, type, texels);
    driver.glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
}

static bool isDecodedEtc1(GLenum format)
{
    return format == GL_ETC1_RGB8_OES && !driverHas("GL_OES_compressed_ETC1_RGB8_texture");
}

static void uploadEtc1(GLenum target, GLint level, GLsizei width, GLsizei height, GLint border, GLsizei size,
                       const void *bytes)
{
    GLint largest = 0;
    driver.glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (width < 0 || height < 0 || width > largest || height > largest || border != 0)
        return raiseError(GL_INVALID_VALUE);
    const size_t expected = etc1Size(width, height);
    if (size < 0 || static_cast<size_t>(size) != expected || (expected && !bytes)) return raiseError(GL_INVALID_VALUE);
    const std::vector<uint8_t> image = decodeEtc1(static_cast<const uint8_t *>(bytes), width, height);
    uploadPacked(target, level, GL_RGB, GL_UNSIGNED_BYTE, width, height, image.data());
}

// The driver's own formats. Before level queries there is no other way to know the level's size later.
static void uploadCompressed(GLenum target, GLint level, GLenum format, GLsizei width, GLsizei height, GLint border,
                             GLsizei size, const void *bytes)
{
    driver.glCompressedTexImage2D(target, level, format, width, height, border, size, bytes);
    if (currentContext->group->abilities.levelQueries || !findTextureTarget(target)) return;
    const GLenum error = driver.glGetError();
    if (error != GL_NO_ERROR) return raiseError(error);
    const GLenum base = format == GL_ETC1_RGB8_OES ? GL_RGB : GL_RGBA;
    noteLevel(target, level, {.width = width, .height = height, .format = base});
}

void GL_APIENTRY glCompressedTexImage2D(GLenum target, GLint level, GLenum format, GLsizei width, GLsizei height,
                                        GLint border, GLsizei size, const void *bytes)
{
    if (!currentContext) return;
    if (findPalettedFormat(format))
        uploadPaletted(target, level, format, width, height, border, size, bytes);
    else if (isDecodedEtc1(format))
        uploadEtc1(target, level, width, height, border, size, bytes);
    else
        uploadCompressed(target, level, format, width, height, border, size, bytes);
}

void GL_APIENTRY glCompressedTexSubImage2D(GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height,
                                           GLenum format, GLsizei size, const void *bytes)
{
    if (!currentContext) return;
    // Neither GL_OES_compressed_paletted_texture nor GL_OES_compressed_ETC1_RGB8_texture lets images change in part.
    if (findPalettedFormat(format) || isDecodedEtc1(format))
        raiseError(GL_INVALID_OPERATION);
    else
        driver.glCompressedTexSubImage2D(target, level, x, y, width, height, format, size, bytes);
}
