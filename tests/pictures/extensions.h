// SPDX-License-Identifier: MIT
// Extension entry points, which a library need not export: found through EGL.
#pragma once

#include <GLES/gl.h>
#include <GLES/glext.h>

#define EXTENSION(name, exported, type) extern type name;
#include "pictures/extensions.def"
#undef EXTENSION

/// The matrix palette, which only the drop-in pair has: all null on the machine's own ES 1.1.
extern PFNGLCURRENTPALETTEMATRIXOESPROC currentPaletteMatrix;
extern PFNGLLOADPALETTEFROMMODELVIEWMATRIXOESPROC loadPaletteFromModelView;
extern PFNGLMATRIXINDEXPOINTEROESPROC matrixIndexPointer;
extern PFNGLWEIGHTPOINTEROESPROC weightPointer;

/// Finds them all. Returns the name of a missing one of extensions.def, or null.
const char *loadExtensions();
