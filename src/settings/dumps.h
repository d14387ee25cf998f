// SPDX-License-Identifier: MIT
// Diagnostic files for developers, written to the current directory: the shader key of a draw, where a draw's vertices
// fall on the screen, its geometry in clip space, and the framebuffer. docs/settings.md shows their formats. A file
// that cannot be opened is skipped.
#pragma once

#include "frontend/gl_headers.h"

struct GLIContext;
struct PanelSettings;
struct ShaderStateBitfield;

/// Bits of ContextSettings::dumps: what a context's draws and swaps write.
enum DumpFlags : uint8_t {
    DUMP_STATE = 1,    // dumpStateInfo at every draw, a snapshot at every swap
    DUMP_ELEMENTS = 2, // both element dumps at every glDrawElements
};

/// The DumpFlags that the settings ask for.
uint8_t dumpFlags(const PanelSettings &settings);

/// What a draw writes under the context's dump flags; for a draw that is about to be given to the backend, since key
/// and matrices are up to date then. The second is for glDrawElements, with its arguments.
void dumpDraw(const GLIContext *ctx);
void dumpDrawElements(const GLIContext *ctx, GLenum mode, GLsizei count, GLenum type, const void *indices);

/// What a swap of the current context writes under its dump flags: the viewport's part of the framebuffer and what lies
/// left of and below it, as "snapshot0.tga" and so on.
void dumpSwap(const GLIContext *ctx);

/// Appends eight fields of the key to "state_info.txt".
void dumpStateInfo(const ShaderStateBitfield *key);

/// Appends for every index the screen bin and clip class of its vertex to "es11_binids.txt". Arrays in buffer objects
/// cannot be read: a line says so.
void dumpBinIDsElements(const GLIContext *ctx, GLenum mode, GLsizei count, GLenum type, const void *indices);

/// Appends the vertices of a triangle strip in clip space and its indices to "es11.clip". Other modes, and arrays in
/// buffer objects, get a line that says so.
void dumpClipFileElements(const GLIContext *ctx, GLenum mode, GLsizei count, GLenum type, const void *indices);

/// Writes width x height pixels of the current context's framebuffer from (0, 0) as an uncompressed TGA of 32 bits per
/// pixel, top row first, alpha 255. Sizes outside 1..65535 write nothing, nor does a failed allocation.
void saveFramebuf(const char *name, GLsizei width, GLsizei height);

/// saveFramebuf under prefix, a number that counts calls from 0, and ".tga". A name beyond 255 characters is cut.
void snapshot(const char *prefix, GLsizei width, GLsizei height);
