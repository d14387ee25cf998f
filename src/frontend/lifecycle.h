// SPDX-License-Identifier: MIT
// Birth and death of contexts and of the library's hold on the backend.
#pragma once

#include <cstdint>

struct GLIContext;

/// A new, initialised context that shares the textures of shareContext when that is not null. Null without memory.
GLIContext *gliCreateContext(GLIContext *shareContext);

/// Start values of every block. Returns 1; 0 without memory, or for a null context (nothing happens then).
uint32_t gliInitContext(GLIContext *ctx);

/// Remembers the surfaces and reads the backend's viewport; initialises a context that was not yet. Null: nothing.
void gliMakeCurrent(GLIContext *ctx, void *drawSurface, void *readSurface);

/// Frees the context and what it owns; the textures go with the last context of the share group. Null: nothing.
void gliDestroyContext(GLIContext *ctx);

/// Gives the context the backend's module handle and binds the backend's entry points. Null: nothing.
void gliInitLibrary(GLIContext *ctx);

/// Unmaps the backend, and the EGL module when it was set.
void gliCleanupLibrary();
