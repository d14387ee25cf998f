// SPDX-License-Identifier: MIT
// Images of EGL as textures. No driver tells anything about an external texture, so its image is looked at through a
// texture of the ordinary kind when it is given.
#include "create_info.h"
#include "texture_levels.h"

// An image that cannot be an ordinary texture is one of video: without alpha, of unknown size.
static constexpr TextureLevel kVideo = {.width = 0, .height = 0, .format = GL_RGB};

// Takes the driver's errors, so none may be pending.
static TextureLevel lookAt(GLeglImageOES image)
{
    GLint before = 0;
    driver.glGetIntegerv(GL_TEXTURE_BINDING_2D, &before);
    GLuint probe = 0;
    driver.glGenTextures(1, &probe);
    driver.glBindTexture(GL_TEXTURE_2D, probe);
    driver.glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, image);
    TextureLevel found{};
    if (driver.glGetError() == GL_NO_ERROR) found = readTextureLevel(GL_TEXTURE_2D, 0);
    driver.glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(before));
    driver.glDeleteTextures(1, &probe);
    return found.width ? found : kVideo;
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
    noteLevel(target, 0, lookAt(image));
}
