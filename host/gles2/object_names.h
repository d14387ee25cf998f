// SPDX-License-Identifier: MIT
// Names that were bound and not deleted since: the objects among them are what a listing tells. A listing asks the
// driver which of them are objects, since contexts of the machine's that share with these delete without a word.
#pragma once

#include "gl_api.h"

#include <atomic>
#include <mutex>
#include <set>
#include <vector>

/// Names that a context has noted already, by their low bits, so that binding one again costs a comparison.
struct SeenNames {
    static constexpr GLuint kCount = 64;
    // 0 in the places not in use; the name 0 is thus always seen. Other threads take out what they delete.
    std::atomic<GLuint> names[kCount];

    bool has(GLuint name) const
    {
        return names[name % kCount].load(std::memory_order_relaxed) == name;
    }
};

/// One kind of objects that a share group has in common.
struct NamesOfKind {
    std::set<GLuint> noted;
    std::vector<SeenNames *> seen; // one of each context
};

/// Names used by any context of a share group.
struct SharedNames {
    std::mutex lock;
    NamesOfKind textures;
    NamesOfKind buffers;
    NamesOfKind renderbuffers;
};

/// Notes a name the context has not seen. Returns whether it is new to the group.
bool noteName(SharedNames &shared, NamesOfKind SharedNames::*kind, SeenNames &seen, GLuint name);

/// Takes deleted names out, so that a program may make and delete objects for ever.
void forgetNames(SharedNames &shared, NamesOfKind SharedNames::*kind, GLsizei n, const GLuint *names);

struct Context;

/// The names a context has seen follow the deletions of its group from here to there. The group outlives both.
void joinNames(Context *context);
void leaveNames(Context *context);
