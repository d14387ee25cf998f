// SPDX-License-Identifier: MIT
// The skin of the figure: one closed mesh around its bones, each vertex bound to up to four of them.
#ifndef DEMO_FIGURE_MESH_H
#define DEMO_FIGURE_MESH_H

#include "figure_body.h"

enum { WEIGHTS = 4, MESH_VERTICES = 24000, MESH_INDICES = 6 * MESH_VERTICES };

struct FigureVertex {
    GLfloat position[3];
    GLfloat normal[3];
    GLfloat weights[WEIGHTS]; // sum up to 1
    GLubyte bones[WEIGHTS];
    GLubyte colour[4]; // of the bones, mixed by their weights
};

struct FigureMesh {
    struct FigureVertex vertices[MESH_VERTICES];
    GLushort indices[MESH_INDICES]; // of triangles, counter-clockwise seen from outside
    int vertexCount, indexCount;
};

void makeFigureMesh(struct FigureMesh *mesh);

#endif
