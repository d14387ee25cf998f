// SPDX-License-Identifier: MIT
// What buffer objects hold, for drivers over which the processor takes draws apart: OpenGL ES 2.0 cannot read buffers
// back. Kept only for those drivers.
#pragma once

#include "gl_api.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

struct BufferCopies {
    bool kept;                                              // false: the driver needs no copies
    std::unordered_map<GLuint, std::vector<uint8_t>> bytes; // by the buffer's name
};

/// As glBufferData and glBufferSubData do it for the buffer of that name. What the driver refuses changes nothing; a
/// buffer that does not fit into memory a second time has no copy.
void copyBuffer(BufferCopies &copies, GLuint buffer, GLsizeiptr size, const void *bytes, GLenum usage);
void copyIntoBuffer(BufferCopies &copies, GLuint buffer, GLintptr offset, GLsizeiptr size, const void *bytes);

/// The buffer's bytes, null when there is no copy.
const std::vector<uint8_t> *findCopy(const BufferCopies &copies, GLuint buffer);
