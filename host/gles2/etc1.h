// SPDX-License-Identifier: MIT
// Images of GL_OES_compressed_ETC1_RGB8_texture, for drivers that do not decode them.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <vector>

/// Bytes of an image: eight for every 4 x 4 texels, begun ones included.
size_t etc1Size(int width, int height);

/// The texels of one block: 16 times red, green, blue, rows from the first, four texels each.
void decodeEtc1Block(const uint8_t block[8], uint8_t texels[48]);

/// Red, green and blue of all texels, rows packed. blocks: etc1Size bytes.
std::vector<uint8_t> decodeEtc1(const uint8_t *blocks, int width, int height);
