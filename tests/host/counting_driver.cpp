// SPDX-License-Identifier: MIT
// A driver that counts the calls of each function and hands them to the machine's own. The backend is pointed at it
// with TRL20_DRIVER_EGL and TRL20_DRIVER_GLES2: the EGL functions are those of the library it links with, the GL
// functions are not among its symbols, so the backend asks eglGetProcAddress for them.
#include "counting_driver.h"

#include "host/gles2/gl_api.h"

#include <EGL/egl.h>
#include <cstring>
#include <dlfcn.h>

static void *machineFunction(const char *name)
{
    static void *const gles2 = dlopen("libGLESv2.so.2", RTLD_NOW | RTLD_LOCAL);
    if (void *address = gles2 ? dlsym(gles2, name) : nullptr) return address;
    const auto next = reinterpret_cast<void *(*)(const char *)>(dlsym(RTLD_NEXT, "eglGetProcAddress"));
    return next ? next(name) : nullptr;
}

static int totalCount;

template <typename Function>
struct Counted;

// One function per name, since the name is a template argument.
template <typename Result, typename... Arguments>
struct Counted<Result(GL_APIENTRY *)(Arguments...)> {
    using Function = Result(GL_APIENTRY *)(Arguments...);

    template <const char *name>
    struct Named {
        static inline int count;

        static Result GL_APIENTRY call(Arguments... arguments)
        {
            static const Function function = reinterpret_cast<Function>(machineFunction(name));
            ++count;
            ++totalCount;
            return function(arguments...);
        }
    };
};

struct Row {
    const char *name;
    void *function;
    int *count;
};

#define DRIVER_ONLY(name, result, parameters, need) static constexpr char name##Name[] = #name;
#define WRAPPED(name, result, parameters, need) DRIVER_ONLY(name, result, parameters, need)
#define FORWARDED(name, result, parameters, arguments, need) DRIVER_ONLY(name, result, parameters, need)
#include "host/gles2/driver_functions.def"

static const Row rows[] = {
#define DRIVER_ONLY(name, result, parameters, need)                                                                    \
    {#name, reinterpret_cast<void *>(&Counted<result(GL_APIENTRY *) parameters>::Named<name##Name>::call),             \
     &Counted<result(GL_APIENTRY *) parameters>::Named<name##Name>::count},
#define WRAPPED(name, result, parameters, need) DRIVER_ONLY(name, result, parameters, need)
#define FORWARDED(name, result, parameters, arguments, need) DRIVER_ONLY(name, result, parameters, need)
#include "host/gles2/driver_functions.def"
};

static const Row *findRow(const char *name)
{
    for (const Row &row : rows) {
        if (strcmp(row.name, name) == 0) return &row;
    }
    return nullptr;
}

extern "C" __attribute__((visibility("default"))) __eglMustCastToProperFunctionPointerType EGLAPIENTRY
eglGetProcAddress(const char *name)
{
    const Row *row = findRow(name);
    void *address = row && machineFunction(name) ? row->function : row ? nullptr : machineFunction(name);
    return reinterpret_cast<__eglMustCastToProperFunctionPointerType>(address);
}

int countedCalls(const char *name)
{
    if (!name) return totalCount;
    const Row *row = findRow(name);
    return row ? *row->count : -1;
}
