// SPDX-License-Identifier: MIT
// The figure's bones and the parts of its body.
#ifndef DEMO_FIGURE_BODY_H
#define DEMO_FIGURE_BODY_H

#include <GLES/gl.h>

enum { BONES = 13, PARTS = 20 };

enum Bone {
    PELVIS,
    CHEST,
    HEAD,
    LEFT_ARM,
    RIGHT_ARM,
    LEFT_FOREARM,
    RIGHT_FOREARM,
    LEFT_THIGH,
    RIGHT_THIGH,
    LEFT_SHIN,
    RIGHT_SHIN,
    LEFT_FOOT,
    RIGHT_FOOT
};

/// The figure stands on y = 0, looks along z, holds its arms out, 40 degrees below the x axis, and is 1.8 high.
struct BoneShape {
    int parent;       // -1: none
    GLfloat joint[3]; // where it turns against its parent
    GLfloat colour[3];
};

extern const struct BoneShape kBones[BONES];

/// A cone with round ends around a piece of a bone.
struct Part {
    int bone;
    GLfloat from[3], to[3], fromRadius, toRadius;
};

extern const struct Part kParts[PARTS];

#endif
