// SPDX-License-Identifier: MIT
// The matrix palette (GL_OES_matrix_palette) and the arrays uploaded from it.
#pragma once

#include "frontend/gl_limits.h"
#include "math/matrix_record.h"

struct GLIContext;

constexpr uint32_t kAllPaletteMatrices = (1u << kPaletteMatrices) - 1;

struct PaletteState {
    uint32_t currentIndex;  // 0..19: the matrix that commands and loads act on
    uint32_t secondWord;    // kept at 0
    uint32_t dirty;         // bit i: matrix i changed since the last palette draw
    uint32_t normalsDirty;  // bit i: normal matrix i is older than matrix i; kept while no draw needs normals
    uint32_t nonOrthogonal; // bit i: matrix i may not use the short normal path
    MatrixRecord matrices[kPaletteMatrices];
    float upload[kPaletteMatrices][16];      // MV_palette, column-major
    float normalUpload[kPaletteMatrices][9]; // MVI_palette, column-major
};

/// All matrices identity, index 0, everything marked. Called by initTransform.
void initPalette(GLIContext *ctx);

/// Marks one palette matrix as changed; an index of 32 or more is ignored.
void markPaletteMatrix(GLIContext *ctx, uint32_t index);

/// Marks all palette matrices, for a change that their normal matrices depend on.
void markAllPaletteMatrices(GLIContext *ctx);

/// Number of palette matrices blended per vertex: the weight array's size, 0 to 4; a negative size counts as 0.
uint32_t paletteUnits(const GLIContext *ctx);
