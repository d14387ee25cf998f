// SPDX-License-Identifier: MIT
#include "frame.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <png.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

enum { MILLISECONDS_PER_FRAME = 16, LARGEST_SIZE = 4096 };

struct Options {
    const char *pngFile; // null: no picture is written
    int width, height;   // pixels
    int milliseconds;    // time of the first frame
    int frames;          // 0: until the window is closed
    int window;          // 1: under X11, 0: a pbuffer
};

struct Screen {
    EGLDisplay display;
    EGLConfig config;
    EGLSurface surface;
    EGLContext context;
    Display *x11; // null without a window
    Window window;
    Atom closeMessage;
};

static int fail(const struct Demo *demo, const char *what)
{
    fprintf(stderr, "%s: %s\n", demo->name, what);
    return 0;
}

static int failEgl(const struct Demo *demo, const char *call)
{
    fprintf(stderr, "%s: %s failed with EGL error 0x%04x\n", demo->name, call, (unsigned)eglGetError());
    return 0;
}

static int posterWidth(const struct Demo *demo)
{
    return demo->posterWidth ? demo->posterWidth : 480;
}

static int posterHeight(const struct Demo *demo)
{
    return demo->posterHeight ? demo->posterHeight : 360;
}

static void printUsage(const struct Demo *demo)
{
    printf("%s\n\n"
           "usage: %s [--png FILE] [--size WxH] [--time SECONDS] [--frames N] [--window] | --about\n"
           "  --png FILE      write the last frame as a picture\n"
           "  --size WxH      pixels, %dx%d when not given\n"
           "  --time SECONDS  time of the first frame, %g when not given\n"
           "  --frames N      frames to draw, 1/60 s apart: 1 when not given, in a window until it is closed\n"
           "  --window        draw in a window instead of off the screen\n"
           "  --about         print the title and one sentence\n",
           demo->about, demo->name, posterWidth(demo), posterHeight(demo), demo->posterMilliseconds / 1000.0);
    if (demo->ownOption) printf("  %-15s %s\n", demo->ownOption, demo->ownMeaning);
}

// Returns 0 for an unknown option or an argument out of range.
static int readOptions(const struct Demo *demo, struct Options *options, int argc, char **argv)
{
    int framesGiven = 0;
    for (int i = 1; i < argc; ++i) {
        const char *value = i + 1 < argc ? argv[i + 1] : "";
        char rest = 0;
        double seconds = 0.0;
        if (strcmp(argv[i], "--window") == 0) {
            options->window = 1;
            continue;
        }
        if (demo->ownOption && strcmp(argv[i], demo->ownOption) == 0) {
            *demo->ownGiven = 1;
            continue;
        }
        if (strcmp(argv[i], "--png") == 0 && *value) {
            options->pngFile = value;
        } else if (strcmp(argv[i], "--size") == 0) {
            if (sscanf(value, "%dx%d%c", &options->width, &options->height, &rest) != 2) return 0;
        } else if (strcmp(argv[i], "--time") == 0) {
            if (sscanf(value, "%lf%c", &seconds, &rest) != 1 || !(seconds >= 0.0 && seconds <= 86400.0)) return 0;
            options->milliseconds = (int)(seconds * 1000.0 + 0.5);
        } else if (strcmp(argv[i], "--frames") == 0) {
            if (sscanf(value, "%d%c", &options->frames, &rest) != 1 || options->frames < 1) return 0;
            framesGiven = 1;
        } else {
            return 0;
        }
        ++i;
    }
    if (!framesGiven) options->frames = options->window ? 0 : 1;
    return options->width >= 1 && options->width <= LARGEST_SIZE && options->height >= 1 &&
           options->height <= LARGEST_SIZE;
}

// Without a window nothing but the driver is needed: no display server, no graphics card.
static EGLDisplay surfacelessDisplay(void)
{
    const char *extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (!extensions || !strstr(extensions, "EGL_MESA_platform_surfaceless")) return eglGetDisplay(EGL_DEFAULT_DISPLAY);
    return eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, NULL);
}

static int openWindow(const struct Demo *demo, struct Screen *screen, const struct Options *options)
{
    EGLint visualId = 0;
    if (!eglGetConfigAttrib(screen->display, screen->config, EGL_NATIVE_VISUAL_ID, &visualId))
        return failEgl(demo, "eglGetConfigAttrib");
    XVisualInfo wanted = {.visualid = (VisualID)visualId};
    int found = 0;
    XVisualInfo *visual = XGetVisualInfo(screen->x11, VisualIDMask, &wanted, &found);
    if (!visual) return fail(demo, "the X server has no visual for the configuration");
    const Window root = DefaultRootWindow(screen->x11);
    XSetWindowAttributes attributes = {.colormap = XCreateColormap(screen->x11, root, visual->visual, AllocNone)};
    screen->window = XCreateWindow(screen->x11, root, 0, 0, (unsigned)options->width, (unsigned)options->height, 0,
                                   visual->depth, InputOutput, visual->visual, CWColormap | CWBorderPixel, &attributes);
    XFree(visual);
    screen->closeMessage = XInternAtom(screen->x11, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(screen->x11, screen->window, &screen->closeMessage, 1);
    XStoreName(screen->x11, screen->window, demo->name);
    XMapWindow(screen->x11, screen->window);
    screen->surface = eglCreateWindowSurface(screen->display, screen->config, screen->window, NULL);
    return screen->surface != EGL_NO_SURFACE || failEgl(demo, "eglCreateWindowSurface");
}

static int openPbuffer(const struct Demo *demo, struct Screen *screen, const struct Options *options)
{
    const EGLint size[] = {EGL_WIDTH, options->width, EGL_HEIGHT, options->height, EGL_NONE};
    screen->surface = eglCreatePbufferSurface(screen->display, screen->config, size);
    return screen->surface != EGL_NO_SURFACE || failEgl(demo, "eglCreatePbufferSurface");
}

static int openScreen(const struct Demo *demo, struct Screen *screen, const struct Options *options)
{
    if (options->window) {
        screen->x11 = XOpenDisplay(NULL);
        if (!screen->x11) return fail(demo, "no X display to open a window on; without --window none is needed");
    }
    screen->display = screen->x11 ? eglGetDisplay((EGLNativeDisplayType)screen->x11) : surfacelessDisplay();
    if (!eglInitialize(screen->display, NULL, NULL)) return failEgl(demo, "eglInitialize");

    const EGLint wanted[] = {EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_ES_BIT,
                             EGL_SURFACE_TYPE,
                             screen->x11 ? EGL_WINDOW_BIT : EGL_PBUFFER_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_BLUE_SIZE,
                             8,
                             EGL_DEPTH_SIZE,
                             16,
                             EGL_NONE};
    EGLint found = 0;
    if (!eglChooseConfig(screen->display, wanted, &screen->config, 1, &found)) return failEgl(demo, "eglChooseConfig");
    if (!found) return fail(demo, "this EGL offers no OpenGL ES 1.x configuration");
    if (!(screen->x11 ? openWindow : openPbuffer)(demo, screen, options)) return 0;

    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    screen->context = eglCreateContext(screen->display, screen->config, EGL_NO_CONTEXT, version);
    if (screen->context == EGL_NO_CONTEXT) return failEgl(demo, "eglCreateContext");
    if (!eglMakeCurrent(screen->display, screen->surface, screen->surface, screen->context))
        return failEgl(demo, "eglMakeCurrent");
    return 1;
}

static void closeScreen(struct Screen *screen)
{
    if (screen->display != EGL_NO_DISPLAY) {
        eglMakeCurrent(screen->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglTerminate(screen->display); // takes the surface and the context along
    }
    if (screen->x11) XCloseDisplay(screen->x11);
}

// Returns 0 once the window was closed or a key was pressed.
static int windowStaysOpen(struct Screen *screen)
{
    while (screen->x11 && XPending(screen->x11)) {
        XEvent event;
        XNextEvent(screen->x11, &event);
        if (event.type == ClientMessage && (Atom)event.xclient.data.l[0] == screen->closeMessage) return 0;
    }
    return 1;
}

static int writePicture(const struct Demo *demo, const char *file, int width, int height)
{
    png_image picture = {.version = PNG_IMAGE_VERSION,
                         .width = (png_uint_32)width,
                         .height = (png_uint_32)height,
                         .format = PNG_FORMAT_RGBA};
    unsigned char *pixels = malloc(PNG_IMAGE_SIZE(picture));
    if (!pixels) return fail(demo, "no memory for the picture");
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    // The surface may have an alpha channel that the demo wrote to; the picture shows what a screen would.
    for (size_t i = 3; i < PNG_IMAGE_SIZE(picture); i += 4)
        pixels[i] = 255;
    // The negative row stride turns the picture upside up: GL's first row is the lowest.
    const int written = png_image_write_to_file(&picture, file, 0, pixels, -4 * width, NULL);
    free(pixels);
    if (!written) fprintf(stderr, "%s: cannot write %s: %s\n", demo->name, file, picture.message);
    return written;
}

static int drawFrames(const struct Demo *demo, struct Screen *screen, const struct Options *options)
{
    struct timespec begin, end;
    clock_gettime(CLOCK_MONOTONIC, &begin);
    int drawn = 0;
    while ((!options->frames || drawn < options->frames) && windowStaysOpen(screen)) {
        EGLint width = options->width, height = options->height;
        eglQuerySurface(screen->display, screen->surface, EGL_WIDTH, &width);
        eglQuerySurface(screen->display, screen->surface, EGL_HEIGHT, &height);
        glViewport(0, 0, width, height);
        demo->draw(options->milliseconds + drawn * MILLISECONDS_PER_FRAME, width, height);
        // The picture is read before the swap: a window's back buffer is undefined after it.
        const int isLast = ++drawn == options->frames;
        if (isLast && options->pngFile && !writePicture(demo, options->pngFile, width, height)) return 0;
        if (!eglSwapBuffers(screen->display, screen->surface)) return failEgl(demo, "eglSwapBuffers");
    }
    glFinish();
    clock_gettime(CLOCK_MONOTONIC, &end);

    const GLenum error = glGetError();
    if (error != GL_NO_ERROR) {
        fprintf(stderr, "%s: drawing left the GL error 0x%04x\n", demo->name, error);
        return 0;
    }
    const double seconds = (double)(end.tv_sec - begin.tv_sec) + 1e-9 * (double)(end.tv_nsec - begin.tv_nsec);
    printf("%s: %d frame%s in %.0f ms on %s, %s\n", demo->name, drawn, drawn == 1 ? "" : "s", 1000.0 * seconds,
           (const char *)glGetString(GL_RENDERER), (const char *)glGetString(GL_VERSION));
    return 1;
}

Function findFunction(const char *extension, const char *name)
{
    const size_t length = strlen(extension);
    const char *list = (const char *)glGetString(GL_EXTENSIONS);
    for (const char *at = list; at && (at = strstr(at, extension)); at += length)
        if ((at == list || at[-1] == ' ') && (at[length] == ' ' || !at[length])) return eglGetProcAddress(name);
    return NULL;
}

int runDemo(const struct Demo *demo, int argc, char **argv)
{
    if (argc == 2 && strcmp(argv[1], "--help") == 0) {
        printUsage(demo);
        return 0;
    }
    if (argc == 2 && strcmp(argv[1], "--about") == 0) {
        printf("%s\n%s\n", demo->title, demo->about);
        return 0;
    }
    struct Options options = {
        .width = posterWidth(demo), .height = posterHeight(demo), .milliseconds = demo->posterMilliseconds};
    if (!readOptions(demo, &options, argc, argv)) {
        fprintf(stderr, "%s: these options make no sense; --help lists them\n", demo->name);
        return 2;
    }
    struct Screen screen = {.display = EGL_NO_DISPLAY};
    int ok = openScreen(demo, &screen, &options);
    if (ok) {
        const char *obstacle = demo->start();
        ok = obstacle ? fail(demo, obstacle) : drawFrames(demo, &screen, &options);
    }
    closeScreen(&screen);
    return ok ? 0 : 1;
}
