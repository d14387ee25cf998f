// SPDX-License-Identifier: MIT
#include "pictures/extensions.h"

#include <EGL/egl.h>

#define EXTENSION(name, exported, type) type name = nullptr;
#include "pictures/extensions.def"
#undef EXTENSION

PFNGLCURRENTPALETTEMATRIXOESPROC currentPaletteMatrix = nullptr;
PFNGLLOADPALETTEFROMMODELVIEWMATRIXOESPROC loadPaletteFromModelView = nullptr;
PFNGLMATRIXINDEXPOINTEROESPROC matrixIndexPointer = nullptr;
PFNGLWEIGHTPOINTEROESPROC weightPointer = nullptr;

namespace {

template <typename Function>
void find(Function &function, const char *exported)
{
    function = reinterpret_cast<Function>(eglGetProcAddress(exported));
}

} // namespace

const char *loadExtensions()
{
    find(currentPaletteMatrix, "glCurrentPaletteMatrixOES");
    find(loadPaletteFromModelView, "glLoadPaletteFromModelViewMatrixOES");
    find(matrixIndexPointer, "glMatrixIndexPointerOES");
    find(weightPointer, "glWeightPointerOES");
#define EXTENSION(name, exported, type)                                                                                \
    find(name, exported);                                                                                              \
    if (!name) return exported;
#include "pictures/extensions.def"
#undef EXTENSION
    return nullptr;
}
