// SPDX-License-Identifier: MIT
#include "context.h"

#include <cstdio>
#include <mutex>
#include <set>
#include <string>

// A write to it would be a fault.
static constinit const HeldState noContext{};

constinit thread_local Context *currentContext = nullptr;
constinit thread_local HeldState *heldState = const_cast<HeldState *>(&noContext);

void setCurrentContext(Context *context)
{
    currentContext = context;
    heldState = context ? context : const_cast<HeldState *>(&noContext);
}

void raiseError(GLenum error)
{
    if (currentContext && currentContext->error == GL_NO_ERROR) currentContext->error = error;
}

void tellOnce(const char *text)
{
    static std::mutex lock;
    static std::set<std::string> told;
    const std::lock_guard<std::mutex> guard(lock);
    if (told.insert(text).second) fprintf(stderr, "trl20: %s\n", text);
}

GLenum GL_APIENTRY glGetError(void)
{
    if (!currentContext || currentContext->error == GL_NO_ERROR) return driver.glGetError();
    const GLenum error = currentContext->error;
    currentContext->error = GL_NO_ERROR;
    return error;
}
