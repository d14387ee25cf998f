// SPDX-License-Identifier: MIT
// The stones of the temple: surfaces and textures, worked out at the start.
#ifndef DEMO_TEMPLE_MODEL_H
#define DEMO_TEMPLE_MODEL_H

#include "sheet.h"

enum { BAYS = 14 };
#define BAY 3.0f   // from column to column
#define AISLE 2.7f // from the middle of the way to a row of columns

struct Temple {
    struct Sheet column; // stands at the origin
    struct Sheet beam;   // along z, over a row of columns on the right
    struct Sheet ground;
    struct Sheet lamp;
    GLuint marble, paving, glow;
};

extern struct Temple temple;

/// Where a lamp hangs: over the way, left and right by turns. All move towards the viewer as the walk goes on.
/// position: gets four coordinates.
void lampPosition(int index, GLfloat walked, GLfloat *position);

/// Fills it; returns null.
const char *makeTemple(void);

#endif
