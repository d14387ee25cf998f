// SPDX-License-Identifier: MIT
// What EGL keeps per thread: the last error, the current ES 1.x context, and what debug messages tell.
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
    const char *command = nullptr; // the function of this library being called
    void *label = nullptr;         // the thread's EGLLabelKHR
};

/// The calling thread's state. The initial-exec model makes it one load, since GL functions of eglGetProcAddress read
/// it at every call. It takes a few bytes of the static block, of which libvsp, which this library needs, takes more.
extern thread_local constinit ThreadState threadState __attribute__((tls_model("initial-exec")));

/// Begins a call that may be answered here: forgets our error, and names the function for debug messages.
inline void enter(const char *command)
{
    threadState.error = EGL_SUCCESS;
    threadState.command = command;
}

/// Makes `error` what eglGetError reports next. Returns EGL_TRUE for EGL_SUCCESS and
/// EGL_FALSE otherwise.
EGLBoolean finish(EGLint error);

/// The same for an error that the machine knows nothing of: its debug message is sent from here.
EGLBoolean refuse(EGLint error);

/// Refuses a call, unless the display is invalid or not initialised: then the machine's error counts.
EGLBoolean refuseOn(EGLDisplay dpy, EGLint error);

/// Forgets our error, before a call that the machine answers.
inline void handToMachine()
{
    threadState.error = EGL_SUCCESS;
}
