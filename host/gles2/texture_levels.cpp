// SPDX-License-Identifier: MIT
// Size and format of a texture's level by the texture's name, through a driver that answers for bound textures, or for
// none.
#include "level_probe.h"

static constexpr TextureTarget kTargets[] = {
    {GL_TEXTURE_2D, GL_TEXTURE_BINDING_2D},
    {GL_TEXTURE_CUBE_MAP, GL_TEXTURE_BINDING_CUBE_MAP},
    {GL_TEXTURE_EXTERNAL_OES, GL_TEXTURE_BINDING_EXTERNAL_OES},
};

static bool isCubeFace(GLenum target)
{
    return target >= GL_TEXTURE_CUBE_MAP_POSITIVE_X && target <= GL_TEXTURE_CUBE_MAP_NEGATIVE_Z;
}

const TextureTarget *findTextureTarget(GLenum imageTarget)
{
    const GLenum target = isCubeFace(imageTarget) ? GL_TEXTURE_CUBE_MAP : imageTarget;
    for (const TextureTarget &candidate : kTargets) {
        if (candidate.target == target) return &candidate;
    }
    return nullptr;
}

// The format as the caller of glTexImage2D names it, from the sized format the driver tells.
static GLenum baseFormat(GLenum target, GLint level, GLint sized)
{
    switch (sized) {
    case GL_ALPHA:
    case GL_RGB:
    case GL_RGBA:
    case GL_LUMINANCE:
    case GL_LUMINANCE_ALPHA:
        return static_cast<GLenum>(sized);
    case GL_LUMINANCE8_EXT: // whose sizes no version of OpenGL ES tells
        return GL_LUMINANCE;
    case GL_LUMINANCE8_ALPHA8_EXT:
        return GL_LUMINANCE_ALPHA;
    }
    GLint red = 0;
    GLint alpha = 0;
    driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_RED_SIZE, &red);
    driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_ALPHA_SIZE, &alpha);
    if (!red) return alpha ? GL_ALPHA : GL_RGB;
    return alpha ? GL_RGBA : GL_RGB;
}

static TextureLevel askForLevel(GLenum target, GLint level)
{
    TextureLevel found{};
    GLint format = 0;
    driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_WIDTH, &found.width);
    driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_HEIGHT, &found.height);
    driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_INTERNAL_FORMAT, &format);
    if (found.width) found.format = baseFormat(target, level, format);
    driver.glGetError(); // of a level that cannot be
    return found;
}

TextureLevel readTextureLevel(GLenum imageTarget, GLint level)
{
    if (imageTarget == GL_TEXTURE_EXTERNAL_OES) return findNotedLevel(imageTarget, level);
    if (currentContext->group->abilities.levelQueries) return askForLevel(imageTarget, level);
    const TextureLevel found = probeLevel(imageTarget, level);
    return found.width ? found : findNotedLevel(imageTarget, level); // compressed levels refuse every upload
}

static GLint valueOf(const TextureLevel &level, GLenum pname)
{
    if (pname == GL_TEXTURE_INTERNAL_FORMAT_QRN) return static_cast<GLint>(level.format);
    return pname == GL_TEXTURE_WIDTH_QRN ? level.width : level.height;
}

// A name belongs to the one target it was first bound to; binding it elsewhere is an error and changes nothing. Name 0
// is the two-dimensional texture that is there from the start: the library asks for it after an EGL image was given to
// it.
void GL_APIENTRY glGetTexLevelParameterivQRN(GLuint texture, GLint face, GLint level, GLenum pname, GLint *params)
{
    if (!currentContext) return;
    if (texture != 0 && !driver.glIsTexture(texture)) return raiseError(GL_INVALID_OPERATION);
    if (pname != GL_TEXTURE_WIDTH_QRN && pname != GL_TEXTURE_HEIGHT_QRN && pname != GL_TEXTURE_INTERNAL_FORMAT_QRN)
        return raiseError(GL_INVALID_ENUM);
    if (face < 0 || face > 5 || level < 0) return raiseError(GL_INVALID_VALUE);
    raiseError(driver.glGetError()); // errors from here on are this function's own
    for (const TextureTarget &candidate : kTargets) {
        GLint bound = 0;
        driver.glGetIntegerv(candidate.binding, &bound);
        driver.glBindTexture(candidate.target, texture);
        if (driver.glGetError() != GL_NO_ERROR) continue;
        const bool cube = candidate.target == GL_TEXTURE_CUBE_MAP;
        const GLenum image = cube ? GL_TEXTURE_CUBE_MAP_POSITIVE_X + static_cast<GLenum>(face) : candidate.target;
        *params = valueOf(readTextureLevel(image, level), pname);
        driver.glBindTexture(candidate.target, static_cast<GLuint>(bound));
        return;
    }
}
