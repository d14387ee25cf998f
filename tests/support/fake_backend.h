// SPDX-License-Identifier: MIT
// A backend that draws nothing and records every call as text: glBindTexture(0x0de1, 5). Enums (arguments of type
// GLenum) are hexadecimal, other numbers decimal, floats as %g, arrays of uniform and attribute loads as {1, 0, 0, 1},
// other pointers as "null" or "ptr". With it goes a client table, so that contexts are made the way EGL makes them.
#pragma once

#include "frontend/context.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

struct FakeBackend {
    std::vector<std::string> calls;       // since the last clear, in order
    std::vector<std::string> shaderTexts; // every text given to glShaderSource
    std::vector<std::string> absent;      // names that os_lib_getaddr does not find
    bool vendorEntries = false;           // glAlphaFuncQRN and glFogfvQRN exist too
    GLenum error = GL_NO_ERROR;           // what glGetError returns once
    GLint viewport[4] = {0, 0, 64, 48};
    GLint maxViewportDims[2] = {4096, 2048};
    GLuint nextName = 1; // of shaders and programs
    bool createShaderFails = false;
    std::map<std::string, GLint> unknownLocations;       // names answered with -1
    std::map<std::string, std::function<void()>> onCall; // run when the function of that name is called
    GLint texLevelParameters[3] = {0, 0, 0};             // width, height, internal format
    std::map<std::string, uint32_t> results;             // of functions that return a number, by name; else 0
    int contextsAlive = 0;
    bool createContextFails = false;
    int setBuffersResult = 1;
    bool clientTableEmpty = false;             // the backend leaves its client table without functions
    std::vector<const void *> clientArguments; // of the last client-table call that takes pointers
};

FakeBackend &fakeBackend();

/// Resets the fake platform and the fake backend, and lets the library find the fake module "libGLESv2.so".
void resetFakeBackend();

/// Location that the fake backend gives a uniform or attribute name: the same for all programs, different for different
/// names, 0 for "gles_Vertex".
GLint fakeLocation(const std::string &name);

/// Calls of one function, in order: callsOf("glUseProgram").
std::vector<std::string> callsOf(const std::string &function);

/// The recorded calls; forgets them.
std::vector<std::string> takeCalls();

/// The text that a small number is recorded as when it is given as a pointer: +16 for 0x10.
inline void *offsetPointer(uintptr_t offset)
{
    return reinterpret_cast<void *>(offset);
}

/// One context, current on the calling thread, made through the client-API table.
struct TestContext {
    explicit TestContext(void *share = nullptr);
    ~TestContext();
    TestContext(const TestContext &) = delete;
    TestContext &operator=(const TestContext &) = delete;

    GLIContext *operator->() const
    {
        return ctx;
    }
    void makeCurrent() const;

    GLIContext *ctx = nullptr;
};
