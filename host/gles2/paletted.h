// SPDX-License-Identifier: MIT
// Paletted textures, GL_OES_compressed_paletted_texture: a palette, then the indices of one or more levels.
#pragma once

#include "context.h"

#include <vector>

struct PalettedFormat {
    GLenum format;
    int indexBits;  // 4 or 8
    int entryBytes; // of one palette entry
    GLenum upload;  // format and type under which an entry is a texel
    GLenum uploadType;
};

/// The row of a paletted format, null for every other.
const PalettedFormat *findPalettedFormat(GLenum format);

/// Bytes of a whole image: the palette and `levels` levels from width x height down.
size_t palettedSize(const PalettedFormat &format, int width, int height, int levels);

/// Texels of one level from its indices, rows packed. Four-bit indices run through all texels of the level, the high
/// half of a byte first.
std::vector<uint8_t> expandPaletted(const PalettedFormat &format, const uint8_t *palette, const uint8_t *indices,
                                    size_t texels);

/// glCompressedTexImage2D for a paletted format: level 0 or less, minus the number of further levels in the data.
void uploadPaletted(GLenum target, GLint level, GLenum format, GLsizei width, GLsizei height, GLint border,
                    GLsizei size, const void *bytes);
