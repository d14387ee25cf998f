// SPDX-License-Identifier: MIT
// Contexts of the machine's EGL: those behind the backend's own, and one per share group for work aside.
#pragma once

#include "context.h"

/// Makes OpenGL ES the client API of the thread. Returns the one before, for eglBindAPI: calls that depend on it put
/// the caller's back afterwards.
EGLenum bindOpenGlEs();

/// Leaves the thread without a current context of OpenGL ES.
EGLBoolean releaseOpenGlEs(EGLDisplay display);

/// A display without a window system, for callers that bring none; opened once and kept. EGL_NO_DISPLAY without one.
EGLDisplay surfacelessDisplay();

/// An ES 2 context of the machine's. config: null asks for one without. attributes: EGLint list or null; a version in
/// it is replaced by 2. Returns EGL_NO_CONTEXT on failure. error: receives the machine's EGL error, or EGL_SUCCESS.
EGLContext createMachineContext(EGLDisplay display, EGLConfig config, EGLContext share, const EGLint *attributes,
                                EGLenum &error);

/// The surfaces of a context while the side context is current in its place.
struct LeftSurfaces {
    EGLSurface draw;
    EGLSurface read;
};

/// Makes a second context of the group current, whose state nobody else relies on: for work on shared objects that
/// would disturb the application's state. Texture 0 and framebuffers are not shared. The group's lock must be held
/// until leaveSideContext. Returns false, with the application's context still current, where there can be none.
bool enterSideContext(const Context *context, LeftSurfaces &left);

/// Makes the context itself current again, as it was.
void leaveSideContext(const Context *context, const LeftSurfaces &left);

/// What is current on a thread while one of the backend's contexts is there for a while; a context of none: nothing.
struct LeftThread {
    EGLDisplay display;
    EGLContext context;
    LeftSurfaces surfaces;
};

/// Makes a context that is current nowhere current on the machine's side alone: `currentContext` and what the backend
/// does by it stay. Returns false, with everything as it was, where that cannot be, or could not be taken back.
bool enterThread(const Context *context, LeftThread &left);

/// Makes current again what was.
void leaveThread(const Context *context, const LeftThread &left);

/// Destroys the group's side context, if it has one.
void destroySideContext(const Context *context);
