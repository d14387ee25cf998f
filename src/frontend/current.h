// SPDX-License-Identifier: MIT
// The calling thread's context. Every entry point begins with one of these.
#pragma once

#include "frontend/context.h"
#include "vsp.h"

/// Thread-local slot of the current GLIContext; EGL supplies it when the first context is created, 0 until then.
extern "C" uint32_t __gl_tls_index;

/// The current context; null without one. For pass-through entry points and queries.
inline GLIContext *currentContext()
{
    return static_cast<GLIContext *>(os_tls_read(__gl_tls_index));
}

/// The current context for a state-keeping entry point that decides no program, or whose own marks the draw follows, or
/// which clears derivedFor itself when it decides one: current values, matrices, material, arrays, switches, bindings,
/// draws. Null without one and in interface-only mode.
inline GLIContext *valueContext()
{
    GLIContext *ctx = currentContext();
    return ctx && !ctx->settings.interfaceOnly ? ctx : nullptr;
}

/// The same for every other state-keeping entry point: the next draw derives its program again.
inline GLIContext *stateContext()
{
    GLIContext *ctx = valueContext();
    if (ctx) ctx->derivedFor = 0;
    return ctx;
}

/// The same for those that also work in interface-only mode: null only without a context.
inline GLIContext *changingContext()
{
    GLIContext *ctx = currentContext();
    if (ctx) ctx->derivedFor = 0;
    return ctx;
}
