// SPDX-License-Identifier: MIT
#include "debug.h"
#include "machine_egl.h"
#include "thread_state.h"

thread_local constinit ThreadState threadState;

EGLBoolean finish(EGLint error)
{
    if (machineEglFound()) machineEgl().eglGetError();
    threadState.error = error;
    return error == EGL_SUCCESS ? EGL_TRUE : EGL_FALSE;
}

EGLBoolean refuse(EGLint error)
{
    finish(error);
    sendErrorMessage(error);
    return EGL_FALSE;
}

EGLBoolean refuseOn(EGLDisplay dpy, EGLint error)
{
    const EGLint displayError = machineDisplayError(dpy);
    return displayError == EGL_SUCCESS ? refuse(error) : finish(displayError);
}

EGLint EGLAPIENTRY eglGetError(void)
{
    const EGLint machineError = machineEglFound() ? machineEgl().eglGetError() : EGL_SUCCESS;
    const EGLint ownError = threadState.error;
    threadState.error = EGL_SUCCESS;
    // The machine's was emptied when ours was set, so one that is there now is newer: an extension's function, which
    // goes to the machine without passing here, raised it.
    return machineError != EGL_SUCCESS ? machineError : ownError;
}
