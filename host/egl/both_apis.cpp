// SPDX-License-Identifier: MIT
// For programs that link libGLESv1_CM and libGLESv2: the dynamic linker would give them the functions that both have
// from the one that comes first, whatever context is current. Preloaded, this library comes before both and passes each
// call to the API of the calling thread's context.
#include <EGL/egl.h>
#include <GLES/gl.h>

namespace {

// What eglGetProcAddress answers for these names follows the context. Asked once, before the program starts: asking
// resets the calling thread's EGL error. Null until then.
struct Functions {
#define BOTH(name, result, parameters, arguments) decltype(&::name) name;
#include "both_functions.def"
};
Functions functions;

template <typename Function>
void find(Function &function, const char *name)
{
    function = reinterpret_cast<Function>(eglGetProcAddress(name));
}

[[gnu::constructor]] void findFunctions()
{
#define BOTH(name, result, parameters, arguments) find(functions.name, #name);
#include "both_functions.def"
}

} // namespace

// The program's libraries may start before this one, and call. BOTH(glFlush, void, (void), ()) becomes
//     GL_API void GL_APIENTRY glFlush(void)
//     {
//         if (!functions.glFlush) findFunctions();
//         return functions.glFlush();
//     }
#define BOTH(name, result, parameters, arguments)                                                                      \
    GL_API result GL_APIENTRY name parameters                                                                          \
    {                                                                                                                  \
        if (!functions.name) [[unlikely]]                                                                              \
            findFunctions();                                                                                           \
        return functions.name arguments;                                                                               \
    }
#include "both_functions.def"
