// SPDX-License-Identifier: MIT
// Names that were bound once: the objects among them are what a listing tells. Names are never taken out, since drivers
// give freed names again, and a listing asks the driver which of them are objects.
#pragma once

#include "gl_api.h"

#include <map>
#include <mutex>
#include <set>

/// One level of a texture.
struct TextureLevel {
    GLint width; // texels
    GLint height;
    GLenum format; // as glTexImage2D names it: GL_ALPHA, GL_RGB, GL_RGBA, GL_LUMINANCE, GL_LUMINANCE_ALPHA
};

/// Names used by any context of a share group.
struct SharedNames {
    std::mutex lock;
    std::set<GLuint> textures;
    std::set<GLuint> buffers;
    std::set<GLuint> renderbuffers;
    std::map<GLuint, TextureLevel> externalImages; // of external textures, when they were last given one
};

/// Names that a context has noted already, by their low bits, so that binding one again costs a comparison.
struct SeenNames {
    static constexpr GLuint kCount = 64;
    GLuint names[kCount]; // 0 in the places not yet used; the name 0 is thus always seen

    bool has(GLuint name) const
    {
        return names[name % kCount] == name;
    }
};

/// Notes a name the context has not seen in one of the group's sets.
void noteName(SharedNames &shared, std::set<GLuint> SharedNames::*set, SeenNames &seen, GLuint name);
