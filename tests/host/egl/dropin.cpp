// SPDX-License-Identifier: MIT
#include "dropin.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <vector>

namespace {

DropIn load()
{
    setenv("TRL20_GLES1_LIBRARY", FAKE_ES1_LIBRARY, 1);
    setenv("TRL20_DRIVER_EGL", MACHINE_EGL, 1);
    void *module = dlopen(EGL_DROPIN, RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        fprintf(stderr, "%s\n", dlerror());
        abort();
    }
    DropIn functions;
#define EGL_PASS(name, result, arguments, call, failure)                                                               \
    functions.name = reinterpret_cast<decltype(&::name)>(dlsym(module, #name));
#define EGL_OWN(name) functions.name = reinterpret_cast<decltype(&::name)>(dlsym(module, #name));
#include "host/egl/egl_functions.def"
    return functions;
}

// The machine unloads its driver with the last display, and what the driver had allocated for good is then a leak
// without an owner to a leak checker. Whatever is loaded now stays.
void keepModulesLoaded()
{
    dl_iterate_phdr(
        [](dl_phdr_info *module, size_t, void *) {
            if (*module->dlpi_name) dlopen(module->dlpi_name, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
            return 0;
        },
        nullptr);
}

} // namespace

const DropIn &dropIn()
{
    static const DropIn functions = load();
    return functions;
}

FakeEs1Record &fakeEs1()
{
    static void *module = dlopen(FAKE_ES1_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    static auto *record = reinterpret_cast<decltype(&fakeEs1Record)>(dlsym(module, "fakeEs1Record"))();
    return *record;
}

void DropInTest::SetUp()
{
    fakeEs1().failCreation = 0;
    ASSERT_TRUE(egl.eglBindAPI(EGL_OPENGL_ES_API));
    display = egl.eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    ASSERT_NE(display, EGL_NO_DISPLAY);
    ASSERT_TRUE(egl.eglInitialize(display, nullptr, nullptr));
    keepModulesLoaded();
    const EGLint criteria[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RED_SIZE, 8, EGL_ALPHA_SIZE, 8, EGL_NONE};
    EGLint count = 0;
    ASSERT_TRUE(egl.eglChooseConfig(display, criteria, &config, 1, &count));
    ASSERT_EQ(count, 1);
    surface = createPbuffer();
    ASSERT_NE(surface, EGL_NO_SURFACE);
}

void DropInTest::TearDown()
{
    if (display == EGL_NO_DISPLAY) return;
    EXPECT_TRUE(makeCurrent(EGL_NO_CONTEXT));
    EXPECT_TRUE(egl.eglTerminate(display));
    EXPECT_EQ(live(), 0) << "contexts of the ES 1.1 library left behind";
    egl.eglReleaseThread();
}

EGLContext DropInTest::createContext(std::initializer_list<EGLint> attributes, EGLContext share)
{
    std::vector<EGLint> list = attributes;
    list.push_back(EGL_NONE);
    return egl.eglCreateContext(display, config, share, list.data());
}

EGLSurface DropInTest::createPbuffer()
{
    const EGLint size[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    return egl.eglCreatePbufferSurface(display, config, size);
}

bool DropInTest::makeCurrent(EGLContext context)
{
    const EGLSurface bound = context ? surface : EGL_NO_SURFACE;
    return egl.eglMakeCurrent(display, bound, bound, context);
}
