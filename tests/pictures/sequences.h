// SPDX-License-Identifier: MIT
// Sequences of calls on long-lived contexts. Every draw of a sequence is compared with the same draw in a fresh context
// that was put into the same state by the shortest way: both pictures must be the same.
#pragma once

#include "pictures/image.h"

#include <EGL/egl.h>

#include <functional>
#include <string>
#include <vector>

constexpr int kTileSize = 64; // pixels of one picture, both ways

/// One draw, both ways.
struct Tile {
    std::string what;
    Image played; // after everything that happened before
    Image fresh;  // in a new context
};

/// Where a sequence plays: contexts over one display, and the tiles so far.
struct Stage {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;   // of one tile, for the played contexts
    std::vector<EGLContext> contexts = {}; // created by the running sequence
    std::vector<Tile> tiles = {};
};

/// A new context, current afterwards. share: as for eglCreateContext.
EGLContext newContext(Stage &stage, EGLContext share = EGL_NO_CONTEXT);

/// Makes a context current with the stage's surface; EGL_NO_CONTEXT: none.
void makeCurrent(const Stage &stage, EGLContext context);

void destroyContext(Stage &stage, EGLContext context);

/// Clears the picture, draws in the current context, and again in a fresh one after `shortest` set its state.
void compare(Stage &stage, std::string what, const std::function<void()> &draw, const std::function<void()> &shortest);

struct Sequence {
    std::string name;
    size_t draws; // that it compares
    std::function<void(Stage &)> play;
};

/// Every sequence, from all files.
std::vector<Sequence> allSequences();

// One list per file of sequences.
std::vector<Sequence> orderSequences();
std::vector<Sequence> textureSequences();
std::vector<Sequence> contextSequences();
std::vector<Sequence> keySequences();
std::vector<Sequence> randomSequences();

/// The random sequence of any seed, named RandomN.
Sequence randomSequence(uint32_t seed);
