// SPDX-License-Identifier: MIT
// What EGL keeps per thread: the last error and the current ES 1.x context.
//
// The machine keeps an error too. Every function here that answers itself ends in finish(), which empties the machine's
// error and keeps ours; every call handed to the machine empties ours. eglGetError therefore reports whichever is
// newer.
#pragma once

#include <EGL/egl.h>

struct Es1Context;

struct ThreadState {
    EGLint error = EGL_SUCCESS;    // of the last call answered here; EGL_SUCCESS when the machine's counts
    Es1Context *current = nullptr; // the ES 1.x context current on this thread; null: none, or one of the machine's
};

/// The calling thread's state. No model of thread-local storage is forced, because an application may load this library
/// late, when the static block is used up.
extern thread_local constinit ThreadState threadState;

/// Makes `error` what eglGetError reports next. Returns EGL_TRUE for EGL_SUCCESS and EGL_FALSE otherwise.
EGLBoolean finish(EGLint error);

/// Forgets our error, before a call that the machine answers.
inline void handToMachine()
{
    threadState.error = EGL_SUCCESS;
}
