// SPDX-License-Identifier: MIT
// Says which driver the backend finds on this machine, what it can do, and what is emulated over it and how.
#include "driver.h"
#include "driver_abilities.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Row {
    const char *ability;
    bool present;
    const char *whenPresent; // what the emulation does with it
    const char *whenAbsent;
};

const char *orEmpty(const void *text)
{
    return text ? static_cast<const char *>(text) : "";
}

const char *driverText(GLenum name)
{
    return orEmpty(driver.glGetString(name));
}

void advise(const char *problem)
{
    printf("%s\n\n"
           "What to do on Debian 12:\n"
           "  ./trl20 setup                installs all of the following\n"
           "  libegl1 libgles2             the libraries that find a driver\n"
           "  libegl-mesa0 libgl1-mesa-dri a driver that needs no graphics card\n"
           "A driver elsewhere is named by TRL20_DRIVER_EGL and TRL20_DRIVER_GLES2 (paths of libEGL.so.1 and "
           "libGLESv2.so.2).\n",
           problem);
}

// Without a display server first: it is what the demos and the tests use.
EGLDisplay openDisplay(const char *&platform)
{
    const char *extensions = machineEgl.eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    const auto getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        reinterpret_cast<void *>(machineEgl.eglGetProcAddress("eglGetPlatformDisplayEXT")));
    if (hasExtension(extensions, "EGL_MESA_platform_surfaceless") && getPlatformDisplay) {
        platform = "surfaceless";
        const EGLDisplay display = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (machineEgl.eglInitialize(display, nullptr, nullptr)) return display;
    }
    platform = "default";
    const EGLDisplay display = machineEgl.eglGetDisplay(EGL_DEFAULT_DISPLAY);
    return machineEgl.eglInitialize(display, nullptr, nullptr) ? display : EGL_NO_DISPLAY;
}

EGLContext createContext(EGLDisplay display, EGLint renderable, EGLint version, EGLConfig &config)
{
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, renderable, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_NONE};
    const EGLint attributes[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    EGLint count = 0;
    machineEgl.eglBindAPI(EGL_OPENGL_ES_API);
    if (!machineEgl.eglChooseConfig(display, wanted, &config, 1, &count) || !count) return EGL_NO_CONTEXT;
    return machineEgl.eglCreateContext(display, config, EGL_NO_CONTEXT, attributes);
}

bool makeCurrent(EGLDisplay display, EGLContext context, EGLConfig config)
{
    const auto createPbuffer = reinterpret_cast<PFNEGLCREATEPBUFFERSURFACEPROC>(
        reinterpret_cast<void *>(machineEgl.eglGetProcAddress("eglCreatePbufferSurface")));
    const EGLint size[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    const EGLSurface surface = createPbuffer ? createPbuffer(display, config, size) : EGL_NO_SURFACE;
    return machineEgl.eglMakeCurrent(display, surface, surface, context);
}

void printAbilities()
{
    const DriverAbilities abilities = readDriverAbilities();
    const char *extensions = driverText(GL_EXTENSIONS);
    const auto has = [&](const char *name) { return hasExtension(extensions, name); };
    const bool geometry = abilities.geometryEssl320 || !abilities.geometryExtensionEssl310.empty();
    const bool external = has("GL_OES_EGL_image_external");
    const Row rows[] = {
        {"highp in fragment shaders", abilities.fragmentHighp, "fragments are computed in full precision",
         "fragments are computed in mediump: less exact colours, texture coordinates and fog"},
        {"ES 3 shaders", abilities.essl300, "flat shading uses flat outputs of ESSL 3.00",
         "flat shading is drawn smooth, and says so once"},
        {"geometry shaders", geometry, "smooth lines become rectangles with soft edges",
         "smooth lines are drawn without their soft edge"},
        {"external images", external, "textures from EGL images of video frames work",
         "textures from EGL images of video frames are refused"},
        {"external images in ES 3 shaders", abilities.externalImageEssl300, "also with flat shading and smooth lines",
         "flat shading and smooth lines fall back when one is bound"},
        {"ETC1 textures", has("GL_OES_compressed_ETC1_RGB8_texture"), "handed to the driver", "refused"},
        {"framebuffer fetch", has("GL_EXT_shader_framebuffer_fetch"),
         "not used: logic operations are accepted and have no effect",
         "logic operations are accepted and have no effect"},
        {"performance monitors", has("GL_AMD_performance_monitor"),
         "not used: the monitor calls raise GL_INVALID_OPERATION", "the monitor calls raise GL_INVALID_OPERATION"},
    };
    for (const Row &row : rows)
        printf("  %-32s %-4s %s\n", row.ability, row.present ? "yes" : "no",
               row.present ? row.whenPresent : row.whenAbsent);
}

void printAlways()
{
    printf("\nWhatever the driver:\n"
           "  fixed functions                  generated vertex and fragment shaders, one pair for each state\n"
           "  alpha test, fog, clip plane      in the generated shaders\n"
           "  paletted textures                expanded on the processor, all ten formats with their mipmaps\n"
           "  matrix palette                   in the vertex shader, up to twenty matrices\n"
           "  draw-texture                     a generated rectangle\n");
}

} // namespace

// --brief: the lines that belong above benchmark results.
int main(int argc, char **argv)
{
    const bool brief = argc == 2 && strcmp(argv[1], "--brief") == 0;
    if (argc > 1 && !brief) {
        fprintf(stderr, "usage: trl20_doctor [--brief]\n");
        return 2;
    }
    if (!loadDriver()) {
        advise("No OpenGL ES 2.0 driver was found.");
        return 1;
    }
    const char *platform = "";
    const EGLDisplay display = openDisplay(platform);
    if (display == EGL_NO_DISPLAY) {
        advise("EGL is there, but no driver behind it could be started.");
        return 1;
    }
    // A context of version 2 tells the driver's highest ES version: that is what the backend gets, too.
    EGLConfig config = nullptr;
    const EGLContext context = createContext(display, EGL_OPENGL_ES2_BIT, 2, config);
    if (context == EGL_NO_CONTEXT || !makeCurrent(display, context, config)) {
        advise("EGL is there, but it makes no OpenGL ES 2.0 context.");
        return 1;
    }
    if (brief) {
        printf("driver: %s, %s\n", driverText(GL_RENDERER), driverText(GL_VERSION));
        return 0;
    }
    EGLConfig es1Config = nullptr;
    const bool ownEs1 = createContext(display, EGL_OPENGL_ES_BIT, 1, es1Config) != EGL_NO_CONTEXT;
    printf("EGL         %s, %s, opened on the %s platform\n", orEmpty(machineEgl.eglQueryString(display, EGL_VENDOR)),
           orEmpty(machineEgl.eglQueryString(display, EGL_VERSION)), platform);
    printf("driver      %s\nrenderer    %s\nversion     %s\n", driverText(GL_VENDOR), driverText(GL_RENDERER),
           driverText(GL_VERSION));
    printf("own ES 1.1  %s\n", ownEs1 ? "yes: the demos and the picture tests compare with it; it is not used otherwise"
                                      : "no: the demos and the picture tests have nothing to compare with");
    printf("\nWhat the driver can do, and what becomes of it:\n");
    printAbilities();
    printAlways();
    return 0;
}
