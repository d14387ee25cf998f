// SPDX-License-Identifier: MIT
// The table of client-API functions: what EGL gets from the library and what the library gets from its backend have the
// same shape. The order of the slots is the interface. A context, surface, configuration or unnamed argument is
// pointer-sized. Needs the GL types of a Khronos header before it.
#pragma once

#include <assert.h>
#include <stdint.h>

typedef struct ClientAPIFunctions {
    void *(*createContext)(void *shareContext, void *config, const void *attributes, uint32_t tlsIndex, void *extra);
    int (*destroyContext)(void *context);
    int (*setBuffers)(void *context, void *drawSurface, void *readSurface);
    void *(*checkValidity)(void *x);
    void *(*selectContext)(void *x);
    void (*flush)(void);
    void (*finish)(void);
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
} ClientAPIFunctions;
static_assert(sizeof(ClientAPIFunctions) == 19 * sizeof(void *));
