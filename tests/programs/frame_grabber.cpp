// SPDX-License-Identifier: MIT
// Preloaded into a program that knows nothing of it: writes what the program shows at its first swaps as PNG files and
// ends it after the last one, and says on standard error who drew them. The program's clock stands still between swaps,
// so that every run shows the same frames.
//   FRAME_GRABBER_OUT     path of the pictures without their ending: OUT.1.png, OUT.2.png, ...
//   FRAME_GRABBER_FRAMES  how many swaps are seen; 1 where it is missing
#include "pictures/image.h"

#include <EGL/egl.h>
#include <GLES/gl.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <sys/time.h>
#include <unistd.h>

namespace {

int framesSeen = 0;

template <typename Function>
Function *nextFunction(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

template <typename Function>
Function *glFunction(const char *name)
{
    return reinterpret_cast<Function *>(nextFunction<decltype(eglGetProcAddress)>("eglGetProcAddress")(name));
}

[[noreturn]] void end(int status)
{
    fflush(stdout);
    _exit(status); // the program's own clean-up is not asked for
}

// The draw surface as it is before it is swapped. The program's pack alignment is put back.
Image readFrame(EGLDisplay display, EGLSurface surface)
{
    Image frame;
    const auto querySurface = nextFunction<decltype(eglQuerySurface)>("eglQuerySurface");
    querySurface(display, surface, EGL_WIDTH, &frame.width);
    querySurface(display, surface, EGL_HEIGHT, &frame.height);
    frame.pixels.resize(4 * size_t(frame.width) * size_t(frame.height));
    GLint alignment = 4;
    glFunction<decltype(glGetIntegerv)>("glGetIntegerv")(GL_PACK_ALIGNMENT, &alignment);
    const auto pixelStore = glFunction<decltype(glPixelStorei)>("glPixelStorei");
    pixelStore(GL_PACK_ALIGNMENT, 1);
    glFunction<decltype(glReadPixels)>("glReadPixels")(0, 0, frame.width, frame.height, GL_RGBA, GL_UNSIGNED_BYTE,
                                                       frame.pixels.data());
    pixelStore(GL_PACK_ALIGNMENT, alignment);
    return frame;
}

int framesWanted()
{
    const char *text = getenv("FRAME_GRABBER_FRAMES");
    return text ? atoi(text) : 1;
}

} // namespace

extern "C" EGLBoolean EGLAPIENTRY eglSwapBuffers(EGLDisplay display, EGLSurface surface)
{
    const char *out = getenv("FRAME_GRABBER_OUT");
    const Image frame = readFrame(display, surface);
    framesSeen++;
    if (!out || !writePng(std::string(out) + "." + std::to_string(framesSeen) + ".png", frame)) {
        fprintf(stderr, "frame grabber: cannot write frame %d\n", framesSeen);
        end(1);
    }
    if (framesSeen >= framesWanted()) {
        const auto getString = glFunction<decltype(glGetString)>("glGetString");
        fprintf(stderr, "drawn by %s\n", reinterpret_cast<const char *>(getString(GL_RENDERER)));
        end(0);
    }
    return nextFunction<decltype(eglSwapBuffers)>("eglSwapBuffers")(display, surface);
}

// A fortieth of a second passes with each swap.
extern "C" int gettimeofday(timeval *time, void *)
{
    *time = {.tv_sec = 1000 + framesSeen / 40, .tv_usec = framesSeen % 40 * 25000};
    return 0;
}
