// SPDX-License-Identifier: MIT
#ifndef DEMO_COMBINERS_TEXTURES_H
#define DEMO_COMBINERS_TEXTURES_H

#include "combiners_tables.h"

/// What the cells of the combiner board show.
struct BoardTextures {
    GLuint paintings[FORMATS]; // one flower in every base format
    GLuint stripes;            // for unit 1
    GLuint bumps;              // directions, for the dot products
    GLuint checks;             // lie under every cell
};

void makeBoardTextures(struct BoardTextures *textures);

#endif
