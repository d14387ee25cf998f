// SPDX-License-Identifier: MIT
// The tables of client-API functions: the one EGL gets from this library and the one this library gets from the backend
// have the same shape.
#pragma once

#include "frontend/gl_headers.h"

struct ClientAPIFunctions {
    void *(*createContext)(void *shareContext, void *config, const void *attributes, uint32_t tlsIndex, void *extra);
    int (*destroyContext)(void *context);
    int (*setBuffers)(void *context, void *drawSurface, void *readSurface);
    void *(*checkValidity)(void *x);
    void *(*selectContext)(void *x);
    void (*flush)();
    void (*finish)();
    void (*getIntegerv)(GLenum pname, GLint *params);
    void (*scissor)(GLint x, GLint y, GLsizei width, GLsizei height);
    void (*viewport)(GLint x, GLint y, GLsizei width, GLsizei height);
    void *(*setSurfaceTexture)(void *context, void *a, void *b, void *c, void *d, void *e, void *f);
    void *(*releaseSurfaceTexture)(void *x);
    int (*isSurfaceTextureReleased)(void *x);
    int (*getMaxDisplayDimension)(void *x);
    void *(*getProcAddress)(const char *name);
    int (*swapBuffer)(void *context, void *a, void *b);
    int (*createClientSurface)(void *unused, void *surface);
    int (*destroyClientSurface)(void *surface);
    int (*queryClientCapability)(void *a, void *b);
};
static_assert(sizeof(ClientAPIFunctions) == 19 * sizeof(void *));

/// Fills the caller's table in slot order, binding the backend on first use. A null table: nothing. When the backend
/// cannot be bound the table is left as it was.
TRL20_EXPORT void oglGetClientAPIFunctions(void *table);

/// A surface record of one zeroed word; null without memory.
TRL20_EXPORT void *gliCreateSurface(void);
/// Frees what gliCreateSurface made.
TRL20_EXPORT void gliDestroySurface(void *surface);
