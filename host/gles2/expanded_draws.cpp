// SPDX-License-Identifier: MIT
#include "expanded_draws.h"

#include "primitive_vertices.h"
#include "vertex_input.h"

#include <climits>
#include <cstring>
#include <new>
#include <numeric>

// What comes of more vertices would not fit into a GLsizei.
static constexpr GLsizei kMostTakenApart = INT_MAX / kCornersPerLine;

// Bytes that an array or the indices are read from.
struct Source {
    const uint8_t *bytes; // null: they cannot be read
    size_t size;          // up to here; SIZE_MAX for client memory
};

static Source sourceOf(const Context *context, GLuint buffer, const void *pointer)
{
    if (buffer == 0) return {static_cast<const uint8_t *>(pointer), SIZE_MAX};
    const std::vector<uint8_t> *copy = findCopy(context->group->copies, buffer);
    const size_t offset = reinterpret_cast<size_t>(pointer);
    if (!copy || offset > copy->size()) return {nullptr, 0};
    return {copy->data() + offset, copy->size() - offset};
}

template <typename Index>
static void appendIndices(const Source &source, size_t count, std::vector<uint32_t> &indices)
{
    for (size_t i = 0; i < count; ++i) {
        Index index;
        memcpy(&index, source.bytes + i * sizeof index, sizeof index); // need not be aligned
        indices.push_back(index);
    }
}

static size_t sizeOfType(GLenum type)
{
    switch (type) {
    case GL_BYTE:
    case GL_UNSIGNED_BYTE:
        return 1;
    case GL_SHORT:
    case GL_UNSIGNED_SHORT:
        return 2;
    default: // GL_FLOAT, GL_FIXED
        return 4;
    }
}

// False when the indices cannot be read.
static bool readIndices(const Context *context, const DrawCall &call, std::vector<uint32_t> &indices)
{
    if (call.count > kMostTakenApart) return false;
    const size_t count = static_cast<size_t>(call.count);
    if (call.type == 0) {
        indices.resize(count);
        std::iota(indices.begin(), indices.end(), static_cast<uint32_t>(call.first));
        return true;
    }
    const Source source = sourceOf(context, context->buffers.element, call.indices);
    if (!source.bytes || count * sizeOfType(call.type) > source.size) return false;
    indices.reserve(count);
    if (call.type == GL_UNSIGNED_BYTE)
        appendIndices<uint8_t>(source, count, indices);
    else
        appendIndices<uint16_t>(source, count, indices);
    return true;
}

// One attribute on its way from an application's array into the paired vertices.
struct Stream {
    GLuint location;
    bool other; // of the other vertex, not of the own one
    const AttributeArray *array;
    Source source;
    size_t stride;       // bytes, in the source
    size_t elementBytes; // as they are: the driver gets the application's type
    size_t offset;       // in a paired vertex
};

struct PairedArrays {
    std::vector<Stream> streams;
    size_t vertexBytes;
    uint32_t locations;        // every attribute that the draw uses, one bit each
    std::vector<uint8_t> data; // the vertices
};

static void addStream(PairedArrays &arrays, GLint location, bool other, const AttributeArray &array,
                      const Source &source)
{
    if (location < 0) return;
    const size_t elementBytes = static_cast<size_t>(array.size) * sizeOfType(array.type);
    arrays.streams.push_back({.location = static_cast<GLuint>(location),
                              .other = other,
                              .array = &array,
                              .source = source,
                              .stride = array.strideBytes ? static_cast<size_t>(array.strideBytes) : elementBytes,
                              .elementBytes = elementBytes,
                              .offset = arrays.vertexBytes});
    arrays.vertexBytes += (elementBytes + 3) / 4 * 4;
    arrays.locations |= 1u << location;
}

// Values that are the same for all vertices. The own one is in place already: it is where the application set it.
static void setConstant(PairedArrays &arrays, GLint location, const GLfloat *value)
{
    if (location < 0) return;
    arrays.locations |= 1u << location;
    driver.glDisableVertexAttribArray(static_cast<GLuint>(location));
    driver.glVertexAttrib4fv(static_cast<GLuint>(location), value);
}

// False when an array cannot be read; then constants may have been set.
static bool planStreams(const Context *context, const ExpandedProgram *expanded, PairedArrays &arrays)
{
    const AttributeState &attributes = context->attributes;
    for (const DoubledAttribute &attribute : expanded->attributes) {
        if (!(attributes.enabled & (1u << attribute.given))) {
            setConstant(arrays, attribute.own, attributes.values[attribute.given]);
            setConstant(arrays, attribute.other, attributes.values[attribute.given]);
            continue;
        }
        const AttributeArray &array = attributes.arrays[attribute.given];
        const Source source = array.buffer == kUnknownBuffer
                                  ? Source{nullptr, 0}
                                  : sourceOf(context, static_cast<GLuint>(array.buffer), array.pointer);
        if (!source.bytes) return false;
        addStream(arrays, attribute.own, false, array, source);
        addStream(arrays, attribute.other, true, array, source);
    }
    return true;
}

// Elements beyond a buffer's end are zero.
static void fillStream(PairedArrays &arrays, const Stream &stream, const std::vector<PairedVertex> &vertices)
{
    uint8_t *out = arrays.data.data() + stream.offset;
    for (const PairedVertex &vertex : vertices) {
        const size_t at = (stream.other ? vertex.other : vertex.own) * stream.stride;
        if (stream.source.size >= stream.elementBytes && at <= stream.source.size - stream.elementBytes)
            memcpy(out, stream.source.bytes + at, stream.elementBytes);
        out += arrays.vertexBytes;
    }
}

static void pointAt(GLuint location, GLint size, GLenum type, GLboolean normalized, size_t stride, const void *data)
{
    driver.glVertexAttribPointer(location, size, type, normalized, static_cast<GLsizei>(stride), data);
    driver.glEnableVertexAttribArray(location);
}

static void pointAtStreams(const PairedArrays &arrays)
{
    for (const Stream &stream : arrays.streams)
        pointAt(stream.location, stream.array->size, stream.array->type, stream.array->normalized, arrays.vertexBytes,
                arrays.data.data() + stream.offset);
}

static std::vector<float> cornersOf(size_t vertices)
{
    std::vector<float> corners;
    corners.reserve(2 * vertices);
    for (size_t i = 0; i < vertices; ++i)
        corners.insert(corners.end(), std::begin(kLineCorners[i % kCornersPerLine]),
                       std::end(kLineCorners[i % kCornersPerLine]));
    return corners;
}

static void submit(const ExpandedProgram *expanded, PairedArrays &arrays, const PairedVertices &paired)
{
    arrays.data.assign(arrays.vertexBytes * paired.vertices.size(), 0);
    for (const Stream &stream : arrays.streams)
        fillStream(arrays, stream, paired.vertices);

    driver.glBindBuffer(GL_ARRAY_BUFFER, 0); // the vertices are in client memory
    pointAtStreams(arrays);
    std::vector<float> corners;
    if (expanded->cornerLocation >= 0) {
        corners = cornersOf(paired.vertices.size());
        arrays.locations |= 1u << expanded->cornerLocation;
        pointAt(static_cast<GLuint>(expanded->cornerLocation), 2, GL_FLOAT, GL_FALSE, 0, corners.data());
    }
    driver.glDrawArrays(paired.mode, 0, static_cast<GLsizei>(paired.vertices.size()));
}

// False when something cannot be read, with nothing drawn. `arrays` tells which attributes have been touched.
static bool drawApart(const Context *context, const ExpandedProgram *expanded, const DrawCall &call,
                      Expansion expansion, PairedArrays &arrays)
{
    std::vector<uint32_t> indices;
    if (!readIndices(context, call, indices)) return false;
    const PairedVertices paired =
        expansion == Expansion::Lines ? cornersOfLines(call.mode, indices) : pairWithLast(call.mode, indices);
    if (paired.vertices.empty()) return true;
    if (!planStreams(context, expanded, arrays)) return false;
    submit(expanded, arrays, paired);
    return true;
}

bool drawPairedVertices(Context *context, const ExpandedProgram *expanded, const DrawCall &call, Expansion expansion)
{
    PairedArrays arrays{};
    bool drawn = false;
    syncArrayBuffer(context); // notices buffers that another context has deleted
    try {
        drawn = drawApart(context, expanded, call, expansion, arrays);
    } catch (const std::bad_alloc &) { // more vertices than memory: the driver may have a place for them
    }
    putBackAttributes(context, arrays.locations);
    return drawn;
}
