// SPDX-License-Identifier: MIT
// The per-context record. It only puts the subsystems' records together; each is described in its own header.
#pragma once

#include "ext/vendor_state.h"
#include "frontend/gl_headers.h"
#include "shadergen/key.h"
#include "shadergen/strbuf.h"
#include "state/lighting_state.h"
#include "state/raster_state.h"
#include "texture/texture_state.h"
#include "transform/palette_state.h"
#include "transform/transform_state.h"
#include "transform/viewport_state.h"
#include "vertex/array_state.h"
#include "vertex/current_state.h"

struct ShaderCache;
struct ShaderProgramEntry;

/// What the backend cannot do itself; 0 or 1 each. Known once its entry points are bound.
struct BackendAbilities {
    uint8_t lacksAlphaFunc; // no glAlphaFuncQRN: the shaders test alpha
    uint8_t lacksFog;       // no glFogfvQRN: the shaders blend the fog colour
};

/// Flags taken from the settings record when the context was initialised.
struct ContextSettings {
    uint8_t interfaceOnly; // state-keeping entry points and draws return at once
    uint8_t dumps;         // DumpFlags: diagnostic files that draws and swaps write
};

struct GLIContext {
    void *backendModule;        // handle of the backend library
    void *backendContext;       // made and owned through the backend's client table
    uint8_t initialised;        // 1 once gliInitContext has run
    TextureNamespace *textures; // of the share group
    GLenum error;               // GL_NO_ERROR when none is pending
    ShaderStateBitfield key;    // set by entry points and by deriveShaderState
    HintState hints;
    void *drawSurface; // as given at make-current
    void *readSurface;
    ArrayState arrays;
    uint32_t primitiveFlags; // PrimitiveFlags of the draw under way
    CurrentState current;
    ViewportState viewport;
    TransformState transform;
    PaletteState palette;
    BackendAbilities backend;
    LightingState lighting;
    TexEnvState texEnv[kTextureUnits];
    TexGenState texGen[kTextureUnits];
    TextureBindings bindings;
    PointLineState pointLine;
    FogState fog;
    AlphaTestState alphaTest;
    EnableState enables;
    uint8_t keyDirty;   // key-change mask, see shadergen/key.h
    uint8_t derivedFor; // key and program are those of the state for draws of this mark, see vertex/draw.cpp; 0 = none
    uint32_t dirty;     // DIRTY_* bits of all subsystems; 0 after every draw
    ShaderCache *shaderCache;
    ShaderProgramEntry *currentEntry; // its program is bound in the backend; null = none
    strbuf shaderText;                // of the last generated shader
    VendorState vendor;
    ContextSettings settings;
    void *diagnosticBuffer; // owned; null = none
};
