// SPDX-License-Identifier: MIT
// A stand-in for the ES 1.1 library: its table makes ES 2.0 contexts of the machine and keeps count of what is asked.
#pragma once

#include <EGL/egl.h>

#include <atomic>
#include <cstdint>
#include <vector>

struct FakeEs1Record {
    std::atomic<int> created;       // contexts made
    std::atomic<int> destroyed;     // contexts destroyed
    std::atomic<int> swaps;         // calls of the swap slot
    std::atomic<int> clears;        // calls of the library's glClear
    void *lastContext;              // the newest context made
    void *lastShare;                // its share context
    EGLContext lastMachineShare;    // the machine's context that it was to share with
    std::vector<EGLint> attributes; // its attribute list, without EGL_NONE
    EGLDisplay display;             // its display
    uint32_t slot;                  // the thread-local slot it was given
    void *(*currentContext)(); // the context the calling thread was last asked to have current, as a backend notes it
    EGLint failCreation;       // not 0: context creation fails with this EGL error
};

/// Exported by the stand-in.
extern "C" FakeEs1Record *fakeEs1Record();
