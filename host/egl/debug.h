// SPDX-License-Identifier: MIT
// EGL_KHR_debug for the errors that are raised here: the machine knows nothing of them and sends no message.
#pragma once

#include <EGL/egl.h>
#include <EGL/eglext.h>

/// Notes what the machine has accepted as its callback and message types, as given to eglDebugMessageControlKHR.
void noteDebugControl(EGLDEBUGPROCKHR callback, const EGLAttrib *attributes);

/// Sends the message of an error of the calling thread's, where the application wants it. The labels of objects are the
/// machine's and stay out of it.
void sendErrorMessage(EGLint error);
