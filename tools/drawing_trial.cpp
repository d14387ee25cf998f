// SPDX-License-Identifier: MIT
#include "drawing_trial.h"

#include "off_screen.h"

#include <GLES/gl.h>

#include <cstring>
#include <dlfcn.h>

namespace {

struct Es1 {
#define ES1(name) decltype(&::name) name;
#include "trial_functions.def"
};

template <typename Function>
void find(void *module, const char *name, Function &function, std::string &missing)
{
    function = reinterpret_cast<Function>(dlsym(module, name));
    if (!function && missing.empty()) missing = name;
}

// Both return the name of a missing function, empty when there is none.
std::string bindEgl(void *module, MachineEgl &egl)
{
    std::string missing;
#define MACHINE_EGL(name) find(module, #name, egl.name, missing);
#include "machine_egl.def"
    return missing;
}

std::string bindEs1(void *module, Es1 &es1)
{
    std::string missing;
#define ES1(name) find(module, #name, es1.name, missing);
#include "trial_functions.def"
    return missing;
}

bool pixelIs(const Es1 &es1, int x, int y, GLubyte red, GLubyte green, GLubyte blue)
{
    GLubyte pixel[4] = {};
    es1.glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    return pixel[0] == red && pixel[1] == green && pixel[2] == blue;
}

// Whole steps of 1/255 in any precision: 0, 51, 255.
std::string draw(const Es1 &es1)
{
    const char *version = reinterpret_cast<const char *>(es1.glGetString(GL_VERSION));
    if (!version || strncmp(version, "OpenGL ES-CM 1.1", 16) != 0) return "the context is not one of OpenGL ES 1.1";
    const GLfloat lowerLeftHalf[] = {-1, -1, 1, -1, -1, 1};
    es1.glClearColor(0.0f, 0.2f, 0.0f, 1.0f);
    es1.glClear(GL_COLOR_BUFFER_BIT);
    es1.glColor4f(1.0f, 0.0f, 0.2f, 1.0f);
    es1.glEnableClientState(GL_VERTEX_ARRAY);
    es1.glVertexPointer(2, GL_FLOAT, 0, lowerLeftHalf);
    es1.glDrawArrays(GL_TRIANGLES, 0, 3);
    if (!pixelIs(es1, 12, 12, 0, 51, 0)) return "clearing gave a wrong colour";
    if (!pixelIs(es1, 3, 3, 255, 0, 51)) return "a triangle was drawn in a wrong colour, or not at all";
    if (es1.glGetError() != GL_NO_ERROR) return "drawing recorded an error";
    return {};
}

} // namespace

std::string tryDrawing(const std::string &folder)
{
    MachineEgl egl = {};
    Es1 es1 = {};
    void *eglModule = dlopen((folder + "/libEGL.so.1").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!eglModule) return dlerror();
    void *es1Module = dlopen((folder + "/libGLESv1_CM.so.1").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!es1Module) return dlerror();
    for (const std::string &missing : {bindEgl(eglModule, egl), bindEs1(es1Module, es1)}) {
        if (!missing.empty()) return "the libraries lack " + missing;
    }
    const OffScreen screen = enterOffScreen(egl, 1);
    const std::string failure =
        screen.failure ? std::string(screen.failure) + " made no OpenGL ES 1.1 context" : draw(es1);
    leaveOffScreen(egl, screen);
    return failure;
}
