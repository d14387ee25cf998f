// SPDX-License-Identifier: MIT
#include "debug.h"

#include "thread_state.h"

#include <atomic>

namespace {

// What is enabled of the two types that errors have. Aligned so that one instruction reads both with every compiler.
struct alignas(2) Wanted {
    bool critical, error;
};

// With a callback both types are enabled until an attribute disables them.
constinit std::atomic<EGLDEBUGPROCKHR> callback = nullptr;
constinit std::atomic<Wanted> wanted = Wanted{.critical = true, .error = true};

// EGL_KHR_debug: only a failed allocation is critical.
bool isCritical(EGLint error)
{
    return error == EGL_BAD_ALLOC;
}

} // namespace

void noteDebugControl(EGLDEBUGPROCKHR given, const EGLAttrib *attributes)
{
    Wanted now = given ? wanted.load() : Wanted{.critical = true, .error = true};
    for (; given && attributes && attributes[0] != EGL_NONE; attributes += 2) {
        if (attributes[0] == EGL_DEBUG_MSG_CRITICAL_KHR) now.critical = attributes[1] == EGL_TRUE;
        if (attributes[0] == EGL_DEBUG_MSG_ERROR_KHR) now.error = attributes[1] == EGL_TRUE;
    }
    wanted = now;
    callback = given;
}

void sendErrorMessage(EGLint error)
{
    const EGLDEBUGPROCKHR send = callback;
    const Wanted now = wanted;
    if (!send || !(isCritical(error) ? now.critical : now.error)) return;
    send(EGLenum(error), threadState.command, isCritical(error) ? EGL_DEBUG_MSG_CRITICAL_KHR : EGL_DEBUG_MSG_ERROR_KHR,
         threadState.label, nullptr, "trl20: refused for an OpenGL ES 1.x context");
}
