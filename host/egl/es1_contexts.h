// SPDX-License-Identifier: MIT
// The list of ES 1.x contexts: which handles are ours, what stands behind each, and who has it current.
#pragma once

#include <EGL/egl.h>

#include <cstdint>
#include <mutex>

struct ThreadState;

// One ES 1.x context; its address is the application's handle. It lives until it is destroyed and current nowhere.
struct Es1Context {
    EGLDisplay display;         // the machine's
    EGLConfig config;           // the machine's; null: made without one
    void *library;              // the library's context
    EGLContext machine;         // the machine's context underneath
    uint32_t shareGroup;        // see share_groups.h
    const ThreadState *current; // the thread it is current on; null: none
    bool destroyed;             // the handle is invalid, only the thread that has it current keeps it alive
    Es1Context *next;           // in the list of valid handles
};

/// The lock on the list and on the fields of its contexts. It is also held while the library creates and destroys
/// contexts, because the library counts what its contexts share without locks.
std::unique_lock<std::mutex> lockEs1Contexts();

/// The context of a valid handle, null for any other. The lock is held by the caller.
Es1Context *findEs1Context(EGLContext handle);

/// The first of the list; the others follow by `next`. The lock is held by the caller.
Es1Context *firstEs1Context();

/// An ES 1.x context of a share group, null when it has none. The lock is held by the caller.
Es1Context *findEs1ContextOfGroup(uint32_t shareGroup);

/// Puts a new context on the list. The lock is held by the caller.
Es1Context *addEs1Context(const Es1Context &context);

/// Makes a handle invalid. The context goes now or, when it is current on a thread, with releaseEs1Context. The lock is
/// held by the caller.
void retireEs1Context(Es1Context *context);

/// Whether a handle is a valid ES 1.x context, of whatever display.
bool isEs1Context(EGLContext handle);

/// Notes that the calling thread is about to have a context current. EGL_BAD_CONTEXT: no context of dpy;
/// EGL_BAD_ACCESS: another thread has it current; otherwise EGL_SUCCESS and the context.
EGLint reserveEs1Context(EGLDisplay dpy, EGLContext handle, Es1Context *&context);

/// Notes that no thread has a context current any more, and lets a destroyed one go.
void releaseEs1Context(Es1Context *context);
