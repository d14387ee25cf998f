// SPDX-License-Identifier: MIT
// A surface off the screen, and an ES 1.1 context of the built library and backend on it, through the drop-in EGL.
#pragma once

#include <EGL/egl.h>
#include <GLES/gl.h>

#include <array>
#include <cstdint>
#include <gtest/gtest.h>

using Pixel = std::array<uint8_t, 4>;

inline constexpr int kSurfaceSize = 16; // pixels

/// A display with a surface that any context may draw to.
class SurfaceTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    EGLContext create(EGLint version, EGLContext share = EGL_NO_CONTEXT);
    bool makeCurrent(EGLContext context);

    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;
};

/// An ES 1.1 context, current.
class Es1Test : public SurfaceTest {
protected:
    void SetUp() override;
    /// Fails when the test has left an error.
    void TearDown() override;

    EGLContext context = EGL_NO_CONTEXT;
};

/// True when the tests run over a driver with OpenGL ES 2.0 alone.
bool overEs2();

Pixel pixelAt(int x, int y);

/// Fills the surface.
void clear(const Pixel &colour);

/// Covers the surface with two triangles in the present state.
void drawSquare();
