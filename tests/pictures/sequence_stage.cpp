// SPDX-License-Identifier: MIT
#include "pictures/headless.h"
#include "pictures/sequences.h"

#include <GLES/gl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

EGLSurface newSurface(const Stage &stage)
{
    const EGLint size[] = {EGL_WIDTH, kTileSize, EGL_HEIGHT, kTileSize, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(stage.display, stage.config, size);
    if (!surface) failEgl("no surface");
    return surface;
}

EGLContext createContext(const Stage &stage, EGLContext share)
{
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    const EGLContext context = eglCreateContext(stage.display, stage.config, share, version);
    if (!context) failEgl("no context");
    return context;
}

// The picture after a draw on a cleared tile.
Image pictureOf(const std::function<void()> &draw)
{
    glClearColor(0.2f, 0.2f, 0.2f, 0.2f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    draw();
    Image image = {kTileSize, kTileSize, std::vector<uint8_t>(4 * kTileSize * kTileSize)};
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, kTileSize, kTileSize, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
    return image;
}

void tellError(const std::string &what, const char *side)
{
    const GLenum error = glGetError();
    if (error == GL_NO_ERROR) return;
    std::fprintf(stderr, "sequences: %s: GL error 0x%04x in the %s context\n", what.c_str(), error, side);
    std::exit(1);
}

} // namespace

EGLContext newContext(Stage &stage, EGLContext share)
{
    if (!stage.surface) stage.surface = newSurface(stage);
    const EGLContext context = createContext(stage, share);
    stage.contexts.push_back(context);
    makeCurrent(stage, context);
    return context;
}

void makeCurrent(const Stage &stage, EGLContext context)
{
    const EGLSurface surface = context ? stage.surface : EGL_NO_SURFACE;
    if (!eglMakeCurrent(stage.display, surface, surface, context)) failEgl("cannot make a context current");
}

void destroyContext(Stage &stage, EGLContext context)
{
    if (eglGetCurrentContext() == context) makeCurrent(stage, EGL_NO_CONTEXT);
    eglDestroyContext(stage.display, context);
    std::erase(stage.contexts, context);
}

void compare(Stage &stage, std::string what, const std::function<void()> &draw, const std::function<void()> &shortest)
{
    Tile tile = {std::move(what), pictureOf(draw), {}};
    tellError(tile.what, "played");

    const EGLContext played = eglGetCurrentContext();
    const EGLSurface surface = newSurface(stage);
    const EGLContext fresh = createContext(stage, EGL_NO_CONTEXT);
    if (!eglMakeCurrent(stage.display, surface, surface, fresh)) failEgl("cannot make the fresh context current");
    shortest();
    tile.fresh = pictureOf(draw);
    tellError(tile.what, "fresh");
    makeCurrent(stage, played);
    eglDestroyContext(stage.display, fresh);
    eglDestroySurface(stage.display, surface);
    stage.tiles.push_back(std::move(tile));
}

std::vector<Sequence> allSequences()
{
    std::vector<Sequence> all;
    for (const auto list : {orderSequences, textureSequences, contextSequences, keySequences, randomSequences}) {
        for (Sequence &sequence : list())
            all.push_back(std::move(sequence));
    }
    return all;
}
