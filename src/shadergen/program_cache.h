// SPDX-License-Identifier: MIT
// The programs a context has built, by key: at most 64, the least recently used one goes first.
#pragma once

#include "frontend/gl_headers.h"
#include "frontend/gl_limits.h"
#include "shadergen/key.h"

struct GLIContext;

constexpr uint32_t kCacheCapacity = 64; // programs per context; more would hide an application's state churn longer

/// Uniform locations of one enabled light.
struct LightLocations {
#define LOCATION_LIGHT(field, format) GLint field;
#include "shadergen/locations.def"
};

/// Backend locations of a program; -1 for what the program does not have.
struct ProgramLocations {
#define LOCATION(field, name, kind) GLint field;
#define LOCATION_UNITS(field, format, kind) GLint field[kTextureUnits];
#include "shadergen/locations.def"
    LightLocations light[kMaxLights]; // slot n: n-th enabled light
};

struct ShaderProgramEntry {
    ProgramKey key; // as normalised
    GLuint program; // backend names
    GLuint vertexShader;
    GLuint fragmentShader;
    ProgramLocations locations;
};

struct ShaderCacheNode {
    ShaderCacheNode *child[2]; // tree: smaller keys left (0), larger right (1)
    uint32_t red;
    ShaderCacheNode *next; // LRU list
    ShaderCacheNode *previous;
    ShaderProgramEntry entry;
};

/// Everything that a program's key is made of, as it was given. (The palette's units are in the key's vertexUnits, and
/// the place of fog blending never changes.)
struct AskedState {
    ShaderStateBitfield key;
    uint32_t directionalMask; // of LightingState
    uint32_t pointMask;
    uint32_t spotMask;
    uint32_t attenuationActive; // of PointLineState
};

/// A lookup of before, so that the same state again needs no search.
struct RecentLookup {
    AskedState asked;
    ShaderCacheNode *node; // what it found; null for nothing
};

constexpr uint32_t kRecentLookups = 256; // a power of two; enough that states seldom share a place

struct ShaderCache {
    ShaderCacheNode *root;
    ShaderCacheNode lru; // sentinel: next is the least, previous the most recently used node
    uint32_t capacity;   // nodes at most
    uint32_t nodeCount;  // nodes allocated
    uint32_t hitCount;   // never reset
    uint32_t missCount;
    ProgramKey wanted;                   // of the last search, normalised; the generators read it
    RecentLookup recent[kRecentLookups]; // by a hash of the asked state; all empty after an eviction
};

/// Makes the empty cache and the empty shader text. Without memory the context has none and every draw is skipped.
void initShaderCache(GLIContext *ctx);

/// Frees the cache and its nodes. The programs go with the backend context.
void destroyShaderCache(GLIContext *ctx);

/// Finds or builds the program of the context's key and binds it. Afterwards ctx->currentEntry is that program, or null
/// with program 0 bound when none could be built.
void gliSetShaderProgram(GLIContext *ctx);

/// What the generators read beside the context's key, as far as it has an effect.
GenerationInputs generationInputs(const GLIContext *ctx);

/// A key without what has no effect in its state. Fields that draw-texture's short shader has no outputs for are
/// cleared for such a draw.
ShaderStateBitfield normalizedState(const ShaderStateBitfield &given);
