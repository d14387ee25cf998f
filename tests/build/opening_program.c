// SPDX-License-Identifier: MIT
// A program that opens its libraries by itself, as libraries for games do: clears a surface off the screen to green and
// prints who did it. The first GL library that is named is used, those behind it are opened before.
//   opening_program VERSION EGL GL [GL...]
#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>

static void *egl, *gl;

#define EGL(name) ((__typeof__(&name))dlsym(egl, #name))
#define GL(name) ((__typeof__(&name))dlsym(gl, #name))

static int makeContext(EGLint version)
{
    const EGLint renderable = version == 1 ? EGL_OPENGL_ES_BIT : EGL_OPENGL_ES2_BIT;
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, renderable, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                             EGL_GREEN_SIZE,      8,          EGL_NONE};
    const EGLint size[] = {EGL_WIDTH, 8, EGL_HEIGHT, 8, EGL_NONE};
    const EGLint versionWanted[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    EGLConfig config;
    EGLint count = 0;
    const EGLDisplay display = EGL(eglGetDisplay)(EGL_DEFAULT_DISPLAY);
    if (!EGL(eglInitialize)(display, NULL, NULL)) return 0;
    if (!EGL(eglChooseConfig)(display, wanted, &config, 1, &count) || count == 0) return 0;
    const EGLSurface surface = EGL(eglCreatePbufferSurface)(display, config, size);
    const EGLContext context = EGL(eglCreateContext)(display, config, EGL_NO_CONTEXT, versionWanted);
    return EGL(eglMakeCurrent)(display, surface, surface, context) == EGL_TRUE;
}

int main(int argc, char **argv)
{
    if (argc < 4) {
        printf("usage: opening_program VERSION libEGL.so.1 libGLESv1_CM.so.1\n");
        return 2;
    }
    for (int i = argc - 1; i >= 3; i--)
        gl = dlopen(argv[i], RTLD_NOW);
    egl = dlopen(argv[2], RTLD_NOW);
    if (!egl || !gl || !makeContext(atoi(argv[1]))) {
        printf("no context\n");
        return 1;
    }
    GLubyte pixel[4] = {0};
    GL(glClearColor)(0.0f, 1.0f, 0.0f, 1.0f);
    GL(glClear)(GL_COLOR_BUFFER_BIT);
    GL(glReadPixels)(4, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    printf("renderer: %s\n", (const char *)GL(glGetString)(GL_RENDERER));
    printf("pixel: %d %d %d\n", pixel[0], pixel[1], pixel[2]);
    return 0;
}
