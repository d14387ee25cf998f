// SPDX-License-Identifier: MIT
// Levels of textures that no driver tells about, as they were given: external images, and compressed images where there
// are no level queries.
#pragma once

#include "gl_api.h"

#include <map>
#include <mutex>

/// One level of a texture.
struct TextureLevel {
    GLint width; // texels
    GLint height;
    GLenum format; // as glTexImage2D names it: GL_ALPHA, GL_RGB, GL_RGBA, GL_LUMINANCE, GL_LUMINANCE_ALPHA
};

struct LevelPlace {
    GLuint texture;
    GLenum imageTarget;
    GLint level;
    auto operator<=>(const LevelPlace &) const = default;
};

/// Those of a share group.
struct NotedLevels {
    std::mutex lock;
    std::map<LevelPlace, TextureLevel> levels;
};

/// Notes a level of the texture that is bound at the image target.
void noteLevel(GLenum imageTarget, GLint level, const TextureLevel &noted);

/// The level that was noted last for the texture that is bound now; zeros when none was.
TextureLevel findNotedLevel(GLenum imageTarget, GLint level);
