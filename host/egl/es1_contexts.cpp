// SPDX-License-Identifier: MIT
#include "es1_contexts.h"

#include "es1_library.h"
#include "thread_state.h"

namespace {

constinit std::mutex contextsMutex;
constinit Es1Context *contexts = nullptr;

void deleteContext(Es1Context *context)
{
    es1Table()->destroyContext(context->library);
    delete context;
}

} // namespace

std::unique_lock<std::mutex> lockEs1Contexts()
{
    return std::unique_lock(contextsMutex);
}

Es1Context *findEs1Context(EGLContext handle)
{
    for (Es1Context *context = contexts; context; context = context->next)
        if (context == handle) return context;
    return nullptr;
}

Es1Context *findEs1ContextOfGroup(uint32_t shareGroup)
{
    for (Es1Context *context = contexts; context; context = context->next)
        if (context->shareGroup == shareGroup) return context;
    return nullptr;
}

Es1Context *firstEs1Context()
{
    return contexts;
}

Es1Context *addEs1Context(const Es1Context &context)
{
    contexts = new Es1Context{.display = context.display,
                              .config = context.config,
                              .library = context.library,
                              .machine = context.machine,
                              .shareGroup = context.shareGroup,
                              .current = nullptr,
                              .destroyed = false,
                              .next = contexts};
    return contexts;
}

void retireEs1Context(Es1Context *context)
{
    Es1Context **link = &contexts;
    while (*link != context)
        link = &(*link)->next;
    *link = context->next;
    context->destroyed = true;
    if (!context->current) deleteContext(context);
}

bool isEs1Context(EGLContext handle)
{
    const auto lock = lockEs1Contexts();
    return findEs1Context(handle) != nullptr;
}

EGLint reserveEs1Context(EGLDisplay dpy, EGLContext handle, Es1Context *&context)
{
    const auto lock = lockEs1Contexts();
    Es1Context *found = findEs1Context(handle);
    if (!found || found->display != dpy) return EGL_BAD_CONTEXT;
    if (found->current && found->current != &threadState) return EGL_BAD_ACCESS;
    found->current = &threadState;
    context = found;
    return EGL_SUCCESS;
}

void releaseEs1Context(Es1Context *context)
{
    const auto lock = lockEs1Contexts();
    context->current = nullptr;
    if (context->destroyed) deleteContext(context);
}
