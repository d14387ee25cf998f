// SPDX-License-Identifier: MIT
// Textures and buffer objects, made by calls that ES 1.1 and ES 2.0 share.
#pragma once

#include "es1/content.h"

#include <GLES2/gl2.h>

#include <cstddef>

/// A texture with the texels of a pattern, linear filter, repeated. It stays bound to the active unit.
GLuint makeTexture(int pattern);

/// A texture of its own pattern in each of units 0 and 1; unit 0 is active afterwards.
void makeTextureUnits();

/// Buffer objects of a mesh. The vertices' buffer stays bound, and the indices' when there are any.
struct MeshBuffers {
    GLuint vertices;
    GLuint indices; // 0: none
    GLsizei vertexCount, indexCount;
};
MeshBuffers uploadMesh(const Mesh &mesh);

/// A buffer object with other vertex data, left bound.
GLuint uploadBytes(const void *data, size_t size);
