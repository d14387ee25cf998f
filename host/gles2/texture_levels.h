// SPDX-License-Identifier: MIT
// Levels of textures, as the driver tells of them.
#pragma once

#include "context.h"

/// A target textures are bound to.
struct TextureTarget {
    GLenum target;
    GLenum binding; // query of what is bound there
};

/// The row of a bind target, or for a face of a cube map the cube map's; null for every other name.
const TextureTarget *findTextureTarget(GLenum imageTarget);

/// Size and format of a level of the texture bound at an image target; zeros for one that is not there, or that the
/// driver tells nothing about. Errors of the driver are taken, so none may be pending.
TextureLevel readTextureLevel(GLenum imageTarget, GLint level);
