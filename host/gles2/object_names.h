// SPDX-License-Identifier: MIT
// Names that were bound once: the objects among them are what a listing tells. Names are never taken out, since drivers
// give freed names again, and a listing asks the driver which of them are objects.
#pragma once

#include "gl_api.h"

#include <mutex>
#include <set>

/// Names used by any context of a share group.
struct SharedNames {
    std::mutex lock;
    std::set<GLuint> textures;
    std::set<GLuint> freedTextures; // of those the ones deleted and not bound again
    std::set<GLuint> buffers;
    std::set<GLuint> renderbuffers;
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

/// Notes a name the context has not seen in one of the group's sets. Returns whether it is new there.
bool noteName(SharedNames &shared, std::set<GLuint> SharedNames::*set, SeenNames &seen, GLuint name);

/// Notes that textures of the current context's group are deleted: what has their names later is something new.
void noteFreedTextures(GLsizei n, const GLuint *textures);
