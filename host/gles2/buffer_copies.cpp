// SPDX-License-Identifier: MIT
#include "buffer_copies.h"

#include <cstring>
#include <new>

void copyBuffer(BufferCopies &copies, GLuint buffer, GLsizeiptr size, const void *bytes, GLenum usage)
{
    const bool taken = usage == GL_STREAM_DRAW || usage == GL_STATIC_DRAW || usage == GL_DYNAMIC_DRAW;
    if (buffer == 0 || size < 0 || !taken) return;
    try {
        std::vector<uint8_t> &copy = copies.bytes[buffer];
        copy.assign(static_cast<size_t>(size), 0);
        if (bytes && size) memcpy(copy.data(), bytes, static_cast<size_t>(size));
    } catch (const std::bad_alloc &) { // more than memory, so that the driver is likely to refuse it, too
        copies.bytes.erase(buffer);
    }
}

void copyIntoBuffer(BufferCopies &copies, GLuint buffer, GLintptr offset, GLsizeiptr size, const void *bytes)
{
    const auto found = copies.bytes.find(buffer);
    if (found == copies.bytes.end() || offset < 0 || size <= 0) return;
    const size_t end = static_cast<size_t>(offset) + static_cast<size_t>(size);
    if (end <= found->second.size()) memcpy(found->second.data() + offset, bytes, static_cast<size_t>(size));
}

const std::vector<uint8_t> *findCopy(const BufferCopies &copies, GLuint buffer)
{
    const auto found = copies.bytes.find(buffer);
    return found == copies.bytes.end() ? nullptr : &found->second;
}
