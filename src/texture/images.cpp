// SPDX-License-Identifier: MIT
// Texture images (OpenGL ES 1.1, 3.7.1 to 3.7.3). The backend gets every image as it is given; the library notes size
// and base format of level 0 and has the backend make mipmaps where GL_GENERATE_MIPMAP asks for them.
#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/current.h"
#include "frontend/error.h"
#include "texture/texture_state.h"

namespace {

// The image that a target enum names.
struct ImagePlace {
    TextureObject *object; // null for a target that is none
    GLenum target;         // GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES or GL_TEXTURE_EXTERNAL_OES
    uint32_t face;
};

ImagePlace resolveTarget(GLIContext *ctx, GLenum target)
{
    if (target == GL_TEXTURE_2D) return {*activeBinding(ctx, target), target, 0};

    const uint32_t face = target - GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES;
    if (face < kCubeFaces) return {*activeBinding(ctx, GL_TEXTURE_CUBE_MAP_OES), GL_TEXTURE_CUBE_MAP_OES, face};
    return {nullptr, target, 0};
}

void recordImage(const ImagePlace &place, GLsizei width, GLsizei height, GLenum format)
{
    place.object->width[place.face] = width;
    place.object->height[place.face] = height;
    place.object->internalFormat[place.face] = format;
}

// Squareness and one format for all faces; their sizes may differ.
bool isCubeMapComplete(const TextureObject *object)
{
    for (uint32_t face = 0; face < kCubeFaces; ++face) {
        if (object->width[face] == 0 || object->width[face] != object->height[face]) return false;
        if (object->internalFormat[face] != object->internalFormat[0]) return false;
    }
    return true;
}

// Whether an upload to this place makes mipmaps: for a cube map once its faces fit together.
bool wantsMipmaps(const ImagePlace &place)
{
    if (!place.object->generateMipmap) return false;
    return place.target == GL_TEXTURE_2D || isCubeMapComplete(place.object);
}

void generateIfRequested(const ImagePlace &place)
{
    if (wantsMipmaps(place) && glGenerateMipmap_2_0) glGenerateMipmap_2_0(place.target);
}

bool backendFailed()
{
    return glGetError_2_0 && glGetError_2_0() != GL_NO_ERROR;
}

// The error that was pending before an image call. Image calls hide the backend's own errors: such an error only means
// that nothing is noted, and what was pending before is put back afterwards.
GLenum takePendingErrors()
{
    const GLenum saved = glGetError();
    backendFailed();
    return saved;
}

// For a target that is none. The earlier error, if there was one, is lost.
void failTarget(GLenum saved)
{
    if (saved == GL_NO_ERROR) __glSetError(GL_INVALID_ENUM);
}

bool isPowerOfTwo(GLsizei size)
{
    return (size & (size - 1)) == 0; // 0 counts as one
}

bool isImageSize(GLsizei width, GLsizei height)
{
    return (width | height) >= 0 && isPowerOfTwo(width) && isPowerOfTwo(height);
}

bool isPalettedFormat(GLenum format)
{
    return format >= GL_PALETTE4_RGB8_OES && format <= GL_PALETTE8_RGB5_A1_OES;
}

// Whether the image includes level 0: paletted images name all their levels with a negative number.
bool includesLevel0(GLint level, GLenum format)
{
    return level == 0 || (level < 0 && isPalettedFormat(format));
}

void noteImage(GLIContext *ctx, const ImagePlace &place, GLsizei width, GLsizei height, GLenum internalFormat)
{
    const GLenum format = normalizeInternalFormat(internalFormat);
    recordImage(place, width, height, format);
    updateInternalFormat(ctx, place.target, format, place.face);
    refreshOtherUnits(ctx, place.object);
}

// After a partial upload: sizes and formats stay, mipmaps are made anew.
void finishSubImage(GLIContext *ctx, GLenum target, GLint level, GLenum saved)
{
    if (!backendFailed() && level == 0 && target != GL_TEXTURE_EXTERNAL_OES && !ctx->settings.interfaceOnly) {
        const ImagePlace place = resolveTarget(ctx, target);
        if (!place.object) return failTarget(saved);
        generateIfRequested(place);
    }
    __glSetError(saved);
}

struct LevelDescription {
    GLint width, height, internalFormat;
};

// Level 0 of an EGL image. Without the backend's query its size stays unknown (0), and it counts as GL_RGBA: sampling
// an image without alpha gives alpha 1 then, as it should.
LevelDescription describeEglImage(const ImagePlace &place)
{
    if (!glGetTexLevelParameterivQRN_2_0) return {0, 0, GL_RGBA};

    LevelDescription level = {};
    const GLuint name = place.object->name;
    const auto face = static_cast<GLint>(place.face);
    glGetTexLevelParameterivQRN_2_0(name, face, 0, GL_TEXTURE_WIDTH_QRN, &level.width);
    glGetTexLevelParameterivQRN_2_0(name, face, 0, GL_TEXTURE_HEIGHT_QRN, &level.height);
    glGetTexLevelParameterivQRN_2_0(name, face, 0, GL_TEXTURE_INTERNAL_FORMAT_QRN, &level.internalFormat);
    return level;
}

} // namespace

GL_API void GL_APIENTRY glTexImage2D(GLenum target, GLint level, GLint internalformat, GLsizei width, GLsizei height,
                                     GLint border, GLenum format, GLenum type, const void *pixels)
{
    GLIContext *ctx = changingContext();
    if (!ctx) return;
    if (!assertThat(glTexImage2D_2_0 != nullptr, "glTexImage2D_2_0")) return;

    // OpenGL ES 1.1 knows powers of two only. The backend may take other sizes, and gets them all the same.
    if (!isImageSize(width, height)) __glSetError(GL_INVALID_VALUE);
    const GLenum saved = takePendingErrors();
    glTexImage2D_2_0(target, level, internalformat, width, height, border, format, type, pixels);
    if (!backendFailed() && level == 0 && !ctx->settings.interfaceOnly) {
        const ImagePlace place = resolveTarget(ctx, target);
        if (!place.object) return failTarget(saved);
        noteImage(ctx, place, width, height, static_cast<GLenum>(internalformat));
        // With mipmaps asked for the unit takes the format whatever it has enabled.
        if (wantsMipmaps(place))
            recordUnitFormat(ctx, ctx->current.activeUnit, place.object->internalFormat[place.face]);
        generateIfRequested(place);
    }
    __glSetError(saved);
}

GL_API void GL_APIENTRY glCopyTexImage2D(GLenum target, GLint level, GLenum internalformat, GLint x, GLint y,
                                         GLsizei width, GLsizei height, GLint border)
{
    GLIContext *ctx = changingContext();
    if (!ctx) return;
    if (!assertThat(glCopyTexImage2D_2_0 != nullptr, "glCopyTexImage2D_2_0")) return;

    const GLenum saved = takePendingErrors();
    glCopyTexImage2D_2_0(target, level, internalformat, x, y, width, height, border);
    if (!backendFailed() && level == 0 && !ctx->settings.interfaceOnly) {
        const ImagePlace place = resolveTarget(ctx, target);
        if (!place.object) return failTarget(saved);
        noteImage(ctx, place, width, height, internalformat);
        generateIfRequested(place);
    }
    __glSetError(saved);
}

GL_API void GL_APIENTRY glTexSubImage2D(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLsizei width,
                                        GLsizei height, GLenum format, GLenum type, const void *pixels)
{
    GLIContext *ctx = changingContext();
    if (!ctx) return;
    if (!assertThat(glTexSubImage2D_2_0 != nullptr, "glTexSubImage2D_2_0")) return;

    const GLenum saved = takePendingErrors();
    glTexSubImage2D_2_0(target, level, xoffset, yoffset, width, height, format, type, pixels);
    finishSubImage(ctx, target, level, saved);
}

GL_API void GL_APIENTRY glCopyTexSubImage2D(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint x, GLint y,
                                            GLsizei width, GLsizei height)
{
    GLIContext *ctx = changingContext();
    if (!ctx) return;
    if (!assertThat(glCopyTexSubImage2D_2_0 != nullptr, "glCopyTexSubImage2D_2_0")) return;

    const GLenum saved = takePendingErrors();
    glCopyTexSubImage2D_2_0(target, level, xoffset, yoffset, x, y, width, height);
    finishSubImage(ctx, target, level, saved);
}

GL_API void GL_APIENTRY glCompressedTexImage2D(GLenum target, GLint level, GLenum internalformat, GLsizei width,
                                               GLsizei height, GLint border, GLsizei imageSize, const void *data)
{
    GLIContext *ctx = changingContext();
    if (!ctx) return;
    if (!assertThat(glCompressedTexImage2D_2_0 != nullptr, "glCompressedTexImage2D_2_0")) return;

    if (includesLevel0(level, internalformat)) {
        if (ctx->settings.interfaceOnly) return;
        const ImagePlace place = resolveTarget(ctx, target);
        if (!place.object) return __glSetError(GL_INVALID_ENUM);
        const GLenum format = normalizeInternalFormat(internalformat);
        // Noted before the backend has accepted the image. The target goes on as given, so that a compressed cube face
        // does not change the unit's format.
        recordImage(place, width, height, format);
        updateInternalFormat(ctx, target, format, place.face);
        if (target == GL_TEXTURE_2D) refreshOtherUnits(ctx, place.object);
    }
    glCompressedTexImage2D_2_0(target, level, internalformat, width, height, border, imageSize, data);
}

GL_API void GL_APIENTRY glEGLImageTargetTexture2DOES(GLenum target, GLeglImageOES image)
{
    GLIContext *ctx = changingContext();
    if (!ctx) return;

    const GLenum saved = takePendingErrors();
    if (glEGLImageTargetTexture2DOES_2_0) glEGLImageTargetTexture2DOES_2_0(target, image);
    if (!backendFailed() && !ctx->settings.interfaceOnly) {
        const ImagePlace place = target == GL_TEXTURE_EXTERNAL_OES ? ImagePlace{*activeBinding(ctx, target), target, 0}
                                                                   : resolveTarget(ctx, target);
        if (!place.object) return failTarget(saved);
        const LevelDescription level = describeEglImage(place);
        noteImage(ctx, place, level.width, level.height, static_cast<GLenum>(level.internalFormat));
    }
    __glSetError(saved);
}

GL_API void GL_APIENTRY glEGLImageTargetRenderbufferStorageOES(GLenum target, GLeglImageOES image)
{
    if (!currentContext() || !glEGLImageTargetRenderbufferStorageOES_2_0) return;
    glEGLImageTargetRenderbufferStorageOES_2_0(target, image);
}
