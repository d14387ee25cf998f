// SPDX-License-Identifier: MIT
#include "frontend/backend.h"

#include "frontend/assert.h"
#include "frontend/context.h"

extern "C" {
void *hGllModule = nullptr;
void *hEglModule = nullptr;

// A row becomes: void(GL_APIENTRY *glClear_2_0)(GLbitfield mask) = nullptr;
#define BACKEND(name, result, arguments, visibility, group, need) result(GL_APIENTRY *name##_2_0) arguments = nullptr;
#include "frontend/backend.def"

// A row becomes: void(GL_APIENTRY *exported_glEnable)(GLenum cap), the symbol glEnable_2_0 of the same storage.
#define BACKEND_INTERNAL(name, result, arguments)
#define BACKEND_EXPORTED(name, result, arguments)                                                                      \
    TRL20_EXPORT result(GL_APIENTRY *exported_##name) arguments __asm__(#name "_2_0")                                  \
        __attribute__((alias("own_" #name)));
#define BACKEND(name, result, arguments, visibility, group, need) BACKEND_##visibility(name, result, arguments)
#include "frontend/backend.def"
#undef BACKEND_INTERNAL
#undef BACKEND_EXPORTED
}

// Looks one function up. A missing core function is reported under its backend name.
template <typename Function>
static void load(Function *&pointer, void *module, const char *name, bool core)
{
    pointer = reinterpret_cast<Function *>(os_lib_getaddr(module, name));
    if (core) assertThat(pointer != nullptr, name);
}

void Load_Gll_2_0(void *context)
{
    constexpr bool CORE = true;
    constexpr bool OPTIONAL = false;
    void *module = context ? static_cast<GLIContext *>(context)->backendModule : nullptr;

    // A row becomes: load(glClear_2_0, module, "glClear", CORE);
#define BACKEND(name, result, arguments, visibility, group, need) load(name##_2_0, module, #name, need);
#define BACKEND_AGAIN(name) load(name##_2_0, module, #name, OPTIONAL);
#include "frontend/backend.def"
}
