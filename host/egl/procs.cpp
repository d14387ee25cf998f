// SPDX-License-Identifier: MIT
// eglGetProcAddress. An EGL name gives our function where there is one. A GL name that ES 1.1 alone has gives the
// library's function; one that other APIs have too gives a dispatcher, because the answer has to hold whatever context
// is current when it is called. Everything else is the machine's.
#include "es1_library.h"
#include "machine_egl.h"
#include "thread_state.h"
#include "wrapped_extensions.h"

#include <EGL/eglext.h>

#include <atomic>
#include <cstring>

namespace {

using Proc = __eglMustCastToProperFunctionPointerType;

enum Scope : uint8_t { ES1, SHARED };
enum Place : uint8_t { CORE, EXTENSION };

// A row becomes: ROW_glMatrixMode,
enum Row : uint16_t {
#define GL_FUNCTION(name, scope, place) ROW_##name,
#include "gl_functions.def"
    ROW_COUNT
};

struct GlFunction {
    const char *name;
    Scope scope;
    Place place;
    Proc dispatcher; // null for scope ES1
};
extern const GlFunction kGlFunctions[ROW_COUNT];

Proc machineFunction(const char *name)
{
    return machineEglFound() ? machineEgl().eglGetProcAddress(name) : nullptr;
}

Proc libraryFunction(const GlFunction &function)
{
    if (function.place == EXTENSION) {
        const ClientAPIFunctions *library = es1Table();
        if (void *address = library ? library->getProcAddress(function.name) : nullptr)
            return reinterpret_cast<Proc>(address);
    }
    return reinterpret_cast<Proc>(es1Symbol(function.name));
}

// The two functions behind a dispatcher, looked up at the first call that needs them; null before.
struct Targets {
    std::atomic<Proc> library;
    std::atomic<Proc> machine;
};
constinit Targets targets[ROW_COUNT] = {};

Proc currentFunction(Row row)
{
    const bool inLibrary = threadState.current != nullptr;
    std::atomic<Proc> &target = inLibrary ? targets[row].library : targets[row].machine;
    Proc found = target.load(std::memory_order_relaxed);
    if (!found) {
        found = inLibrary ? libraryFunction(kGlFunctions[row]) : machineFunction(kGlFunctions[row].name);
        target.store(found, std::memory_order_relaxed);
    }
    return found;
}

// The dispatcher of a function type: the function of the current context, or nothing where that has none.
template <typename Function>
struct Dispatcher;
template <typename Result, typename... Arguments>
struct Dispatcher<Result(Arguments...)> {
    template <Row row>
    static Result GL_APIENTRY call(Arguments... arguments)
    {
        const auto function = reinterpret_cast<Result (*)(Arguments...)>(currentFunction(row));
        return function ? function(arguments...) : Result();
    }
};

// A row becomes: {"glMatrixMode", SHARED, CORE, DISPATCH_SHARED(glMatrixMode)},
#define DISPATCH_ES1(name) nullptr
#define DISPATCH_SHARED(name) reinterpret_cast<Proc>(&Dispatcher<decltype(::name)>::call<ROW_##name>)
const GlFunction kGlFunctions[ROW_COUNT] = {
#define GL_FUNCTION(name, scope, place) {#name, scope, place, DISPATCH_##scope(name)},
#include "gl_functions.def"
};
#undef DISPATCH_ES1
#undef DISPATCH_SHARED

struct EglFunction {
    const char *name;
    Proc function;
};

// A row becomes: {"eglBindAPI", reinterpret_cast<Proc>(&::eglBindAPI)},
const EglFunction kEglFunctions[] = {
#define EGL_PASS(name, result, arguments, call, failure) {#name, reinterpret_cast<Proc>(&::name)},
#define EGL_OWN(name) {#name, reinterpret_cast<Proc>(&::name)},
#include "egl_functions.def"
};

Proc eglFunction(const char *name)
{
    for (const EglFunction &row : kEglFunctions)
        if (strcmp(name, row.name) == 0) return row.function;
    return extensionFunction(name);
}

Proc glFunction(const char *name)
{
    for (const GlFunction &row : kGlFunctions) {
        if (strcmp(name, row.name) != 0) continue;
        if (row.scope == SHARED) return row.dispatcher;
        const Proc library = libraryFunction(row);
        return library ? library : machineFunction(name);
    }
    return machineFunction(name);
}

} // namespace

Proc EGLAPIENTRY eglGetProcAddress(const char *procname)
{
    finish(EGL_SUCCESS);
    if (!procname) return nullptr;
    return strncmp(procname, "egl", 3) == 0 ? eglFunction(procname) : glFunction(procname);
}
