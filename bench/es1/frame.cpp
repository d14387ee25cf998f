// SPDX-License-Identifier: MIT
#include "es1/frame.h"

#include "pictures/headless.h"
#include "pictures/image.h"

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else // no counting: measure.cpp says so
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#endif

#include <GLES2/gl2.h> // only functions that ES 1.1 has too: this file serves both programs

#include <cstdio>
#include <cstring>
#include <ctime>

namespace {

struct Options {
    const Scene *scene = nullptr;
    int draws = 64;
    const char *pngFile = nullptr; // null: no picture is written
    bool time = false;
};

void printUsage(const SceneProgram &program)
{
    std::printf("usage: %s --scene NAME [--draws N] [--time] [--png FILE]\n"
                "       %s --list\n"
                "  --scene NAME  what to draw\n"
                "  --draws N     how often, 64 when not given\n"
                "  --time        draw N times more before, and say how long a draw takes\n"
                "  --png FILE    write the last picture\n"
                "  --list        the names of the scenes\n",
                program.name, program.name);
}

const Scene *findScene(const SceneProgram &program, const char *name)
{
    for (const Scene &scene : program.scenes)
        if (std::strcmp(scene.name, name) == 0) return &scene;
    std::fprintf(stderr, "%s: no scene is called '%s'; --list names them\n", program.name, name);
    return nullptr;
}

// Returns false after a line on standard error.
bool readOptions(const SceneProgram &program, Options &options, int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const char *value = i + 1 < argc ? argv[i + 1] : "";
        char rest = 0;
        if (std::strcmp(argv[i], "--time") == 0) {
            options.time = true;
            continue;
        }
        bool known = true;
        if (std::strcmp(argv[i], "--scene") == 0 && *value) {
            if (!(options.scene = findScene(program, value))) return false;
        } else if (std::strcmp(argv[i], "--draws") == 0) {
            known = std::sscanf(value, "%d%c", &options.draws, &rest) == 1 && options.draws > 0;
        } else if (std::strcmp(argv[i], "--png") == 0 && *value) {
            options.pngFile = value;
        } else {
            known = false;
        }
        if (!known) {
            std::fprintf(stderr, "%s: '%s %s' makes no sense; --help lists the options\n", program.name, argv[i],
                         value);
            return false;
        }
        ++i;
    }
    if (!options.scene) std::fprintf(stderr, "%s: which scene? --list names them\n", program.name);
    return options.scene;
}

double seconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void drawMany(const Scene &scene, int draws)
{
    for (int number = 0; number < draws; ++number)
        scene.draw(number);
}

struct Seconds {
    double wall, cpu; // cpu: of all threads
};

// The loop whose cost the table shows. Times include the wait until all is drawn; instructions, counted only while
// callgrind watches, do not, since it belongs to the driver alone.
Seconds drawMeasured(const Scene &scene, int draws)
{
    const Seconds start = {seconds(CLOCK_MONOTONIC), seconds(CLOCK_PROCESS_CPUTIME_ID)};
    CALLGRIND_START_INSTRUMENTATION;
    drawMany(scene, draws);
    CALLGRIND_STOP_INSTRUMENTATION;
    glFinish();
    return {seconds(CLOCK_MONOTONIC) - start.wall, seconds(CLOCK_PROCESS_CPUTIME_ID) - start.cpu};
}

bool writePicture(const char *file)
{
    Image image = {kSceneSize, kSceneSize, std::vector<uint8_t>(4 * kSceneSize * kSceneSize)};
    glReadPixels(0, 0, kSceneSize, kSceneSize, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
    // Scenes leave all sorts of alpha behind; the picture shows what a screen would.
    for (size_t alpha = 3; alpha < image.pixels.size(); alpha += 4)
        image.pixels[alpha] = 255;
    return writePng(file, image);
}

bool hasExtension(const char *wanted)
{
    return std::strstr(reinterpret_cast<const char *>(glGetString(GL_EXTENSIONS)), wanted);
}

void makeContext(EGLDisplay display, EGLint version)
{
    const EGLConfig config = chooseConfig(display, version == 1 ? EGL_OPENGL_ES_BIT : EGL_OPENGL_ES2_BIT);
    const EGLint size[] = {EGL_WIDTH, kSceneSize, EGL_HEIGHT, kSceneSize, EGL_NONE};
    const EGLint wanted[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(display, config, size);
    const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, wanted);
    if (!surface || !context || !eglMakeCurrent(display, surface, surface, context)) failEgl("no context");
}

int runScene(const SceneProgram &program, const Options &options)
{
    const Scene &scene = *options.scene;
    if (scene.extension && !hasExtension(scene.extension)) {
        std::printf("scene=%s unavailable=%s\n", scene.name, scene.extension);
        return kSceneUnavailable;
    }
    glClearColor(0.1f, 0.15f, 0.25f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    scene.setUp();
    if (options.time) {
        drawMany(scene, options.draws);
        glFinish();
    }
    const Seconds taken = drawMeasured(scene, options.draws);
    if (const GLenum error = glGetError(); error != GL_NO_ERROR) {
        std::fprintf(stderr, "%s: scene %s left the GL error 0x%04x\n", program.name, scene.name, error);
        return 1;
    }
    if (options.pngFile && !writePicture(options.pngFile)) {
        std::fprintf(stderr, "%s: cannot write %s\n", program.name, options.pngFile);
        return 1;
    }
    std::printf("scene=%s draws=%d", scene.name, options.draws);
    if (options.time)
        std::printf(" wall_ns=%.1f cpu_ns=%.1f", 1e9 * taken.wall / options.draws, 1e9 * taken.cpu / options.draws);
    std::printf(" renderer=%s\n", reinterpret_cast<const char *>(glGetString(GL_RENDERER)));
    return 0;
}

} // namespace

int runSceneProgram(const SceneProgram &program, int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        printUsage(program);
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
        for (const Scene &scene : program.scenes)
            std::printf("%s\n", scene.name);
        return 0;
    }
    Options options;
    if (!readOptions(program, options, argc, argv)) return 2;
    const EGLDisplay display = openDisplay();
    makeContext(display, program.version);
    const int status = runScene(program, options);
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglTerminate(display);
    return status;
}
