// SPDX-License-Identifier: MIT
// The drop-in EGL as tests use it: opened by path, so that the machine's own can be beside it, over the stand-in for
// the ES 1.1 library, on a display without windows.
#pragma once

#include "fake_es1_library.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <gtest/gtest.h>

#include <initializer_list>

/// The drop-in's functions by their EGL names.
struct DropIn {
#define EGL_PASS(name, result, arguments, call, failure) decltype(&::name) name;
#define EGL_OWN(name) decltype(&::name) name;
#include "host/egl/egl_functions.def"
};

/// The drop-in, loaded at the first call with the stand-in as its ES 1.1 library.
const DropIn &dropIn();
/// What the stand-in was asked.
FakeEs1Record &fakeEs1();

/// A function of the drop-in's eglGetProcAddress.
template <typename Function>
Function procAddress(const char *name)
{
    return reinterpret_cast<Function>(dropIn().eglGetProcAddress(name));
}

/// A test with an initialised display, a configuration and a small pbuffer. All contexts it leaves go with the display.
class DropInTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    EGLContext createContext(std::initializer_list<EGLint> attributes, EGLContext share = EGL_NO_CONTEXT);
    EGLContext createEs1(EGLContext share = EGL_NO_CONTEXT)
    {
        return createContext({EGL_CONTEXT_CLIENT_VERSION, 1}, share);
    }
    EGLContext createEs2(EGLContext share = EGL_NO_CONTEXT)
    {
        return createContext({EGL_CONTEXT_CLIENT_VERSION, 2}, share);
    }
    EGLSurface createPbuffer();
    bool makeCurrent(EGLContext context);
    int live() const
    {
        return fakeEs1().created - fakeEs1().destroyed;
    }

    const DropIn &egl = dropIn();
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;
};
