// SPDX-License-Identifier: MIT
// Size and format of a texture's level by the texture's name, through a driver that answers for bound textures.
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

LevelSize readLevelSize(GLenum imageTarget, GLint level)
{
    if (!driver.glGetTexLevelParameteriv) return probeLevel(imageTarget, level).size;
    LevelSize size{};
    driver.glGetTexLevelParameteriv(imageTarget, level, GL_TEXTURE_WIDTH, &size.width);
    driver.glGetTexLevelParameteriv(imageTarget, level, GL_TEXTURE_HEIGHT, &size.height);
    return size;
}

// The format as the caller of glTexImage2D names it, from the sized format the driver tells.
static GLint baseFormat(GLenum target, GLint level, GLint sized)
{
    switch (sized) {
    case GL_ALPHA:
    case GL_RGB:
    case GL_RGBA:
    case GL_LUMINANCE:
    case GL_LUMINANCE_ALPHA:
        return sized;
    }
    GLint red = 0;
    GLint alpha = 0;
    driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_RED_SIZE, &red);
    driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_ALPHA_SIZE, &alpha);
    if (!red) return alpha ? GL_ALPHA : GL_RGB;
    return alpha ? GL_RGBA : GL_RGB;
}

static GLint probedValue(const ProbedLevel &probed, GLenum pname)
{
    if (pname == GL_TEXTURE_INTERNAL_FORMAT_QRN) return probed.format;
    return pname == GL_TEXTURE_WIDTH_QRN ? probed.size.width : probed.size.height;
}

static GLint readLevel(GLenum target, GLint level, GLenum pname)
{
    // No driver tells anything about the levels of external images. Such an image counts as RGBA of unknown size: one
    // without alpha samples alpha 1.
    if (target == GL_TEXTURE_EXTERNAL_OES) return pname == GL_TEXTURE_INTERNAL_FORMAT_QRN ? GL_RGBA : 0;
    if (!driver.glGetTexLevelParameteriv) return probedValue(probeLevel(target, level), pname);
    GLint value = 0;
    if (pname == GL_TEXTURE_WIDTH_QRN) driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_WIDTH, &value);
    if (pname == GL_TEXTURE_HEIGHT_QRN) driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_HEIGHT, &value);
    if (pname == GL_TEXTURE_INTERNAL_FORMAT_QRN) {
        driver.glGetTexLevelParameteriv(target, level, GL_TEXTURE_INTERNAL_FORMAT, &value);
        value = baseFormat(target, level, value);
    }
    return value;
}

// A name belongs to the one target it was first bound to; binding it elsewhere is an error and changes nothing.
void GL_APIENTRY glGetTexLevelParameterivQRN(GLuint texture, GLint face, GLint level, GLenum pname, GLint *params)
{
    if (!currentContext) return;
    if (!driver.glIsTexture(texture)) return raiseError(GL_INVALID_OPERATION);
    if (pname != GL_TEXTURE_WIDTH_QRN && pname != GL_TEXTURE_HEIGHT_QRN && pname != GL_TEXTURE_INTERNAL_FORMAT_QRN)
        return raiseError(GL_INVALID_ENUM);
    raiseError(driver.glGetError()); // errors from here on are this function's own
    for (const TextureTarget &candidate : kTargets) {
        GLint bound = 0;
        driver.glGetIntegerv(candidate.binding, &bound);
        driver.glBindTexture(candidate.target, texture);
        if (driver.glGetError() != GL_NO_ERROR) continue;
        const bool cube = candidate.target == GL_TEXTURE_CUBE_MAP;
        const GLenum image = cube ? GL_TEXTURE_CUBE_MAP_POSITIVE_X + static_cast<GLenum>(face) : candidate.target;
        *params = readLevel(image, level, pname);
        driver.glBindTexture(candidate.target, static_cast<GLuint>(bound));
        return raiseError(driver.glGetError());
    }
}
