// SPDX-License-Identifier: MIT
#include "es1/upload.h"

#include <initializer_list>

GLuint makeTexture(int pattern)
{
    const std::vector<uint8_t> texels = makeTexels(pattern);
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kTextureSize, kTextureSize, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    return texture;
}

void makeTextureUnits()
{
    for (const int unit : {1, 0}) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        makeTexture(unit);
    }
}

static GLuint makeBuffer(GLenum target, const void *data, size_t size)
{
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(target, buffer);
    glBufferData(target, static_cast<GLsizeiptr>(size), data, GL_STATIC_DRAW);
    return buffer;
}

MeshBuffers uploadMesh(const Mesh &mesh)
{
    MeshBuffers buffers = {.vertices = uploadBytes(mesh.vertices.data(), mesh.vertices.size() * sizeof(Vertex)),
                           .indices = 0,
                           .vertexCount = static_cast<GLsizei>(mesh.vertices.size()),
                           .indexCount = static_cast<GLsizei>(mesh.indices.size())};
    if (buffers.indexCount)
        buffers.indices =
            makeBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.indices.data(), mesh.indices.size() * sizeof(uint16_t));
    return buffers;
}

GLuint uploadBytes(const void *data, size_t size)
{
    return makeBuffer(GL_ARRAY_BUFFER, data, size);
}
