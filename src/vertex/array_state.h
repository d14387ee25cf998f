// SPDX-License-Identifier: MIT
// Client arrays: what the application described, read by draws, key and queries.
#pragma once

#include "frontend/gl_headers.h"
#include "frontend/gl_limits.h"

struct GLIContext;

/// Bit of the context dirty word: an array's description or enable changed.
constexpr uint32_t DIRTY_ARRAYS = 0x8;

/// One vertex array as the application described it.
struct ClientArray {
    uint32_t enabled;    // 0 or 1
    GLenum type;         // of one component
    GLint size;          // components per element
    GLsizei strideBytes; // between elements; 0 = packed
    const void *pointer; // client memory, or byte offset when buffer is not 0
    GLuint buffer;       // array buffer bound when the pointer was set; 0 = client memory
};

struct ArrayState {
    GLuint arrayBuffer;        // bound to GL_ARRAY_BUFFER
    GLuint elementArrayBuffer; // bound to GL_ELEMENT_ARRAY_BUFFER
    ClientArray vertex;
    ClientArray normal;
    ClientArray color;
    ClientArray texCoord[kTextureUnits];
    ClientArray matrixIndex;
    ClientArray weight;
    ClientArray pointSize;
    GLenum vertexType;   // copy of vertex.type for the key derivation
    uint32_t clientUnit; // 0 or 1: client active texture unit
};

/// Bits of GLIContext::primitiveFlags, the class of the draw under way; 0 between draws.
enum PrimitiveFlags : uint32_t {
    PRIMITIVE_DRAW_TEXTURE = 1,
    PRIMITIVE_POINTS = 2,
    PRIMITIVE_LINES = 4,
};

/// Start values: both buffer names 0; every array disabled, GL_FLOAT, of its start size.
void initVertexArray(GLIContext *ctx);

/// The key's per-vertex-colour bit: colour array enabled or lighting enabled. Run after either changes.
void updatePerVertexColor(GLIContext *ctx);

/// Bookkeeping of glBindBuffer; targets other than the array and element buffers are ignored.
void bindBufferName(GLIContext *ctx, GLenum target, GLuint buffer);

/// A buffer was deleted: every binding of this context to it becomes 0 (OpenGL ES 1.1, 2.9), and arrays that took their
/// data from it point nowhere, since their offsets mean nothing without it.
void forgetBufferName(GLIContext *ctx, GLuint buffer);
