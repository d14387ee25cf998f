// SPDX-License-Identifier: MIT
#include "settings/dumps.h"

#include "frontend/assert.h"
#include "frontend/context.h"
#include "math/fp_vector.h"
#include "settings/panel_settings.h"

#include <cmath>
#include <cstdio>

namespace {

constexpr GLsizei kMaxSnapshotSize = 0xFFFF; // pixels: the file's size fields have 16 bits
constexpr uint32_t kBytesPerPixel = 4;
constexpr float kLastBin = 7.0f;
constexpr float kBoundaryDistanceSquared = 0.0001f; // bins; nearer to a bin's edge counts as on it

int32_t binBuffers = 0; // dumpBinIDsElements calls so far
int32_t snapshots = 0;  // snapshot calls so far

// The indices of a draw and the array they point into; both in client memory.
struct ElementSource {
    const unsigned char *indices;
    GLenum indexType;
    const ClientArray &vertices;
    const float *modelViewProjection; // column-major
};

bool isReadable(const GLIContext *ctx, const void *indices)
{
    return ctx->arrays.elementArrayBuffer == 0 && indices && ctx->arrays.vertex.buffer == 0 &&
           ctx->arrays.vertex.pointer;
}

ElementSource elementSource(const GLIContext *ctx, GLenum type, const void *indices)
{
    return {static_cast<const unsigned char *>(indices), type, ctx->arrays.vertex,
            ctx->transform.modelViewProjection.f};
}

// -1 for an index type that is none.
int32_t fetchIndex(const ElementSource &source, GLsizei place)
{
    if (source.indexType == GL_UNSIGNED_BYTE) return source.indices[place];
    if (!assertThat(source.indexType == GL_UNSIGNED_SHORT, "index type of an element dump")) return -1;
    uint16_t index;
    os_memcpy(&index, source.indices + 2 * static_cast<size_t>(place), sizeof(index));
    return index;
}

// Clip-space position of one vertex. An index or a type that cannot be read gives that of (0, 0, 0, 1).
void fetchPosition(const ElementSource &source, int32_t index, float out[4])
{
    float vertex[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    const ClientArray &array = source.vertices;
    if (assertThat(array.type == GL_FLOAT, "vertex type of an element dump") && index >= 0) {
        const size_t size = static_cast<size_t>(array.size) * sizeof(float);
        const size_t stride = array.strideBytes ? static_cast<size_t>(array.strideBytes) : size;
        os_memcpy(vertex, static_cast<const unsigned char *>(array.pointer) + stride * static_cast<size_t>(index),
                  size);
    }
    fp_vec4_xform4(source.modelViewProjection, vertex, out);
}

// Bin of a screen coordinate: one border bin, then whole units, clamped. NaN gives 0.
int32_t binOf(float coordinate)
{
    const float bin = std::trunc(coordinate) + 1.0f;
    if (!(bin > 0.0f)) return 0;
    return bin < kLastBin ? static_cast<int32_t>(bin) : static_cast<int32_t>(kLastBin);
}

bool isNearWhole(float coordinate)
{
    const float fraction = coordinate - std::trunc(coordinate);
    return fraction * fraction < kBoundaryDistanceSquared;
}

const char *clipClass(const float position[4])
{
    const float z = position[2];
    const float w = position[3];
    if (!(w > 0.0f)) return "NEG";
    if (z < -w) return "NCP";
    return z > w ? "FCP" : "IN ";
}

void writeBin(std::FILE *file, const float position[4])
{
    // A vertex with w = 0 is nowhere: bin 0, 0.
    float sx = 0.0f;
    float sy = -2.0f;
    int32_t column = 0;
    int32_t row = 0;
    if (position[3] != 0.0f) {
        sx = 0.5f + position[0] / position[3] * 0.5f;
        sy = (0.5f - position[1] / position[3] * 0.5f) * 4.0f;
        column = binOf(2.0f * sx);
        row = binOf(sy);
    }
    const bool onBoundary = isNearWhole(sx) || isNearWhole(sy / 2.0f);
    std::fprintf(file, onBoundary ? "!%i,%i,%s!,\t" : "(%i,%i,%s),\t", column, row, clipClass(position));
}

// -1 for an empty list.
int32_t largestIndex(const ElementSource &source, GLsizei count)
{
    int32_t largest = -1;
    for (GLsizei i = 0; i < count; ++i) {
        const int32_t index = fetchIndex(source, i);
        if (index > largest) largest = index;
    }
    return largest;
}

void writeStrip(std::FILE *file, const ElementSource &source, GLsizei count, int32_t largest)
{
    std::fprintf(file, "TRIANGLESTRIP VERTEXCOUNT %i INDEXCOUNT %i CULLMODE CCW ZWRITE 1 STENCIL 0 COLORWRITE 15\n",
                 largest + 1, count);
    for (int32_t index = 0; index <= largest; ++index) {
        float position[4];
        fetchPosition(source, index, position);
        std::fprintf(file, "VTX %i %f %f %f %f\n", index, static_cast<double>(position[0]),
                     static_cast<double>(position[1]), static_cast<double>(position[2]),
                     static_cast<double>(position[3]));
    }
    for (GLsizei i = 0; i < count; ++i)
        std::fprintf(file, "IDX %i %i\n", i, fetchIndex(source, i));
}

// Rows of R, G, B, A from the bottom to rows of B, G, R, 255 from the top.
void convertPixels(const unsigned char *from, unsigned char *to, size_t width, size_t height)
{
    for (size_t y = 0; y < height; ++y) {
        const unsigned char *source = from + (height - 1 - y) * width * kBytesPerPixel;
        for (size_t x = 0; x < width; ++x, source += kBytesPerPixel, to += kBytesPerPixel) {
            to[0] = source[2];
            to[1] = source[1];
            to[2] = source[0];
            to[3] = 255;
        }
    }
}

void writeTga(const char *name, const unsigned char *pixels, GLsizei width, GLsizei height)
{
    std::FILE *file = std::fopen(name, "wb");
    if (!file) return;

    const auto low = [](GLsizei value) { return static_cast<unsigned char>(value & 0xFF); };
    const auto high = [](GLsizei value) { return static_cast<unsigned char>(value >> 8); };
    const unsigned char header[18] = {
        0,          0,           2, // no identification, no colour map, uncompressed true colour
        0,          0,           0,           0,
        0,                                       // colour map
        0,          0,           0,           0, // origin
        low(width), high(width), low(height), high(height),
        32,   // bits per pixel
        0x20, // the first row is the top one
    };
    std::fwrite(header, 1, sizeof(header), file);
    std::fwrite(pixels, kBytesPerPixel, static_cast<size_t>(width) * static_cast<size_t>(height), file);
    std::fclose(file);
}

} // namespace

uint8_t dumpFlags(const PanelSettings &settings)
{
    uint8_t flags = 0;
    if (settings.flags0 & PANEL_LOG_DUMPX) flags |= DUMP_STATE;
    if (settings.flags0 & PANEL_LOG_PRIMITIVES) flags |= DUMP_ELEMENTS;
    return flags;
}

// This and the next are out of line: a draw takes in what it calls (see vertex/draw.cpp), and seldom dumps.
[[gnu::noinline]] void dumpDraw(const GLIContext *ctx)
{
    if (ctx->settings.dumps & DUMP_STATE) dumpStateInfo(&ctx->key);
}

[[gnu::noinline]] void dumpDrawElements(const GLIContext *ctx, GLenum mode, GLsizei count, GLenum type,
                                        const void *indices)
{
    dumpDraw(ctx);
    if (!(ctx->settings.dumps & DUMP_ELEMENTS)) return;
    dumpBinIDsElements(ctx, mode, count, type, indices);
    dumpClipFileElements(ctx, mode, count, type, indices);
}

void dumpSwap(const GLIContext *ctx)
{
    // The surface's size is not known here; a frame's last viewport covers it in most programs.
    const ViewportState &viewport = ctx->viewport;
    if (ctx->settings.dumps & DUMP_STATE)
        snapshot("snapshot", viewport.x + viewport.width, viewport.y + viewport.height);
}

void dumpStateInfo(const ShaderStateBitfield *key)
{
    std::FILE *file = std::fopen("state_info.txt", "a");
    if (!file) return;

    std::fprintf(file, "Shader state bitfield:\n");
    std::fprintf(file, "orthogonalTransform: %i\n", key->orthogonalTransform);
    std::fprintf(file, "directionalLight: %i\n", key->directionalLight);
    std::fprintf(file, "pointLight: %i\n", key->pointLight);
    std::fprintf(file, "noAmbient: %i\n", key->noAmbient);
    std::fprintf(file, "noDiffuse: %i\n", key->noDiffuse);
    std::fprintf(file, "noSpecular: %i\n", key->noSpecular);
    std::fprintf(file, "disableSpot: %i\n", key->disableSpot);
    std::fprintf(file, "vertexUnits: %i\n", key->vertexUnits);
    std::fprintf(file, "\n");
    std::fclose(file);
}

void dumpBinIDsElements(const GLIContext *ctx, GLenum, GLsizei count, GLenum type, const void *indices)
{
    const int32_t buffer = binBuffers++;
    std::FILE *file = std::fopen("es11_binids.txt", "a");
    if (!file) return;

    std::fprintf(file, "BinID buffer #%i (%i ids)\n", buffer, count);
    if (ctx->key.matrixPalette) {
        std::fprintf(file, "Matrix palette is not supported...\n");
    } else if (!isReadable(ctx, indices)) {
        std::fprintf(file, "Buffer objects are not supported...\n");
    } else {
        const ElementSource source = elementSource(ctx, type, indices);
        for (GLsizei i = 0; i < count; ++i) {
            float position[4];
            fetchPosition(source, fetchIndex(source, i), position);
            writeBin(file, position);
        }
    }
    std::fprintf(file, "\n");
    std::fclose(file);
}

void dumpClipFileElements(const GLIContext *ctx, GLenum mode, GLsizei count, GLenum type, const void *indices)
{
    std::FILE *file = std::fopen("es11.clip", "a");
    if (!file) return;

    const bool readable = isReadable(ctx, indices);
    const ElementSource source = elementSource(ctx, type, indices);
    const int32_t largest = readable ? largestIndex(source, count) : -1; // for every mode: a bad index type is told
    std::fprintf(file, "TYPE ");
    if (mode != GL_TRIANGLE_STRIP) {
        std::fprintf(file, "NB! COULDN'T HANDLE THE PRIMITIVE TYPE: %x\n", mode);
    } else if (!readable) {
        std::fprintf(file, "NB! COULDN'T READ THE BUFFER OBJECTS\n");
    } else {
        writeStrip(file, source, count, largest);
    }
    std::fclose(file);
}

void saveFramebuf(const char *name, GLsizei width, GLsizei height)
{
    if (width < 1 || height < 1 || width > kMaxSnapshotSize || height > kMaxSnapshotSize) return;
    const uint64_t bytes = uint64_t{kBytesPerPixel} * static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
    if (bytes > SIZE_MAX) return;

    const auto size = static_cast<size_t>(bytes);
    auto *read = static_cast<unsigned char *>(os_malloc(size));
    auto *converted = static_cast<unsigned char *>(os_malloc(size));
    if (read && converted) {
        os_memset(read, 0, size); // pixels outside the framebuffer stay black
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, read);
        convertPixels(read, converted, static_cast<size_t>(width), static_cast<size_t>(height));
        writeTga(name, converted, width, height);
    }
    os_free(converted);
    os_free(read);
}

void snapshot(const char *prefix, GLsizei width, GLsizei height)
{
    char name[256];
    const int length = std::snprintf(name, sizeof(name), "%s%i.tga", prefix, snapshots++);
    assertThat(length < static_cast<int>(sizeof(name)), "snapshot name of at most 255 characters");
    saveFramebuf(name, width, height);
}
