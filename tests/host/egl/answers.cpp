// SPDX-License-Identifier: MIT
// Asks the EGL it is started over many things about ES 1.x contexts, right ones and wrong ones, and prints every answer
// with its error, one a line. Over the drop-in the lines are to be those of a machine that has ES 1.1 itself.
//   answers surfaceless|x11
#include "answers.h"

#include <X11/Xlib.h>

#include <cstdio>

namespace {

struct Section {
    const char *name;
    void (*ask)(const Stage &stage);
};

// Termination comes last: it takes the display away.
constexpr Section kSections[] = {
    {"displays", askDisplays},
    {"configurations", askConfigs},
    {"creation", askCreation},
    {"sharing", askSharing},
    {"queries", askQueries},
    {"make current", askMakeCurrent},
    {"threads", askThreads},
    {"API binding", askApis},
    {"surfaces", askSurfaces},
    {"swapping", askSwapping},
    {"texture surfaces", askTextureSurfaces},
    {"synchronisation", askSyncs},
    {"images", askImages},
    {"labels", askLabels},
    {"termination", askTermination},
};

std::string errorName(EGLint error)
{
    static constexpr const char *kNames[] = {
        "success",       "not initialized", "bad access",  "bad alloc",
        "bad attribute", "bad config",      "bad context", "bad surface of the thread",
        "bad display",   "bad match",       "bad pixmap",  "bad window",
        "bad parameter", "bad surface",     "context lost"};
    const unsigned index = unsigned(error - EGL_SUCCESS);
    return index < std::size(kNames) ? kNames[index] : "error " + std::to_string(error);
}

EGLDisplay deviceDisplay()
{
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    extension<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT")(1, &device, &count);
    return eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr);
}

void openX11(Stage &stage)
{
    Display *server = XOpenDisplay(nullptr);
    if (!server) return;
    stage.display = eglGetPlatformDisplay(EGL_PLATFORM_X11_EXT, server, nullptr);
    const Window root = DefaultRootWindow(server);
    stage.window = XCreateSimpleWindow(server, root, 0, 0, 16, 16, 0, 0, 0);
    XMapWindow(server, stage.window);
    stage.pixmap = XCreatePixmap(server, root, 16, 16, unsigned(DefaultDepth(server, DefaultScreen(server))));
    XSync(server, False);
}

bool openStage(const std::string &platform, Stage &stage)
{
    if (platform == "surfaceless")
        stage.display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    else if (platform == "x11")
        openX11(stage);
    stage.other = deviceDisplay();
    if (!eglInitialize(stage.display, nullptr, nullptr) || !eglInitialize(stage.other, nullptr, nullptr)) return false;

    const EGLint surfaces = EGL_PBUFFER_BIT | (stage.window ? EGL_WINDOW_BIT | EGL_PIXMAP_BIT : 0);
    const EGLint criteria[] = {EGL_SURFACE_TYPE,    surfaces,          EGL_RED_SIZE, 8,
                               EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT, EGL_NONE};
    EGLint count = 0;
    if (!eglChooseConfig(stage.display, criteria, &stage.config, 1, &count) || count == 0) return false;
    const EGLint size[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    stage.pbuffer = eglCreatePbufferSurface(stage.display, stage.config, size);
    if (stage.window) stage.windowSurface = eglCreateWindowSurface(stage.display, stage.config, stage.window, nullptr);
    return stage.pbuffer;
}

} // namespace

void sayNumber(const std::string &label, long value)
{
    printf("%s: %ld, %s\n", label.c_str(), value, errorName(eglGetError()).c_str());
}

void sayText(const std::string &label, const char *value)
{
    printf("%s: %s, %s\n", label.c_str(), value ? value : "null", errorName(eglGetError()).c_str());
}

EGLContext strangeHandle()
{
    static int place;
    return &place;
}

int main(int count, char **arguments)
{
    Stage stage = {};
    if (!openStage(count > 1 ? arguments[1] : "", stage)) {
        fprintf(stderr, "usage: answers surfaceless|x11, with a driver and, for x11, a display\n");
        return 2;
    }
    setvbuf(stdout, nullptr, _IOLBF, 0); // what was answered before a crash is seen
    for (const Section &section : kSections) {
        printf("== %s\n", section.name);
        section.ask(stage);
        eglBindAPI(EGL_OPENGL_ES_API);
        eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglGetError();
    }
    return 0;
}
