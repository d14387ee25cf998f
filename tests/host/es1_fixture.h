// SPDX-License-Identifier: MIT
// An ES 1.1 context of the built library and backend, through the drop-in EGL, on a surface of its own.
#pragma once

#include <EGL/egl.h>
#include <GLES/gl.h>

#include <array>
#include <cstdint>
#include <gtest/gtest.h>

using Pixel = std::array<uint8_t, 4>;

/// True when the tests run over a driver with OpenGL ES 2.0 alone.
bool overEs2();

class Es1Test : public testing::Test {
protected:
    static constexpr int kSurfaceSize = 16; // pixels

    void SetUp() override;
    /// Fails when the test has left an error.
    void TearDown() override;

    static Pixel pixelAt(int x, int y);
    /// Fills the surface.
    static void clear(const Pixel &colour);
    /// Covers the surface with two triangles in the present state.
    static void drawSquare();

    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
};
