// SPDX-License-Identifier: MIT
// Images of EGL as textures. No driver tells anything about an external texture, so its image is looked at through a
// texture of the ordinary kind when it is given.
#include "create_info.h"
#include "texture_levels.h"

// An image that cannot be an ordinary texture is one of video: without alpha, of unknown size.
static constexpr TextureLevel kVideo = {.width = 0, .height = 0, .format = GL_RGB};

static GLuint boundTexture(GLenum binding)
{
    GLint bound = 0;
    driver.glGetIntegerv(binding, &bound);
    return static_cast<GLuint>(bound);
}

// Takes the driver's errors, so none may be pending.
static TextureLevel lookAt(GLeglImageOES image)
{
    const GLuint before = boundTexture(GL_TEXTURE_BINDING_2D);
    GLuint probe = 0;
    driver.glGenTextures(1, &probe);
    driver.glBindTexture(GL_TEXTURE_2D, probe);
    driver.glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, image);
    TextureLevel found{};
    if (driver.glGetError() == GL_NO_ERROR) found = readTextureLevel(GL_TEXTURE_2D, 0);
    driver.glBindTexture(GL_TEXTURE_2D, before);
    driver.glDeleteTextures(1, &probe);
    return found.width ? found : kVideo;
}

TextureLevel findExternalImage()
{
    const GLuint texture = boundTexture(GL_TEXTURE_BINDING_EXTERNAL_OES);
    SharedNames &names = currentContext->group->names;
    const std::lock_guard<std::mutex> guard(names.lock);
    const auto found = names.externalImages.find(texture);
    return found == names.externalImages.end() ? TextureLevel{} : found->second;
}

void GL_APIENTRY glEGLImageTargetTexture2DOES(GLenum target, GLeglImageOES image)
{
    Context *context = currentContext;
    if (!context || image == BACKEND_IMAGE_IN_PLACE) return;
    if (!driver.glEGLImageTargetTexture2DOES) return raiseError(GL_INVALID_OPERATION);
    driver.glEGLImageTargetTexture2DOES(target, image);
    if (target != GL_TEXTURE_EXTERNAL_OES) return;
    const GLenum error = driver.glGetError();
    if (error != GL_NO_ERROR) return raiseError(error);

    const TextureLevel level = lookAt(image);
    const GLuint texture = boundTexture(GL_TEXTURE_BINDING_EXTERNAL_OES);
    SharedNames &names = context->group->names;
    const std::lock_guard<std::mutex> guard(names.lock);
    names.externalImages[texture] = level;
}
