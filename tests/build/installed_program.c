// SPDX-License-Identifier: MIT
// A program of someone who has installed the library: draws a triangle off the screen and prints who drew it, the
// colours it got, and how the program was called.
//   installed_program [--wait] [STATUS [ARGUMENT]]
#include <EGL/egl.h>
#include <GLES/gl.h>
#include <GLES/glext_trl20.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int makeContext(void)
{
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT, EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RED_SIZE, 8,
                             EGL_GREEN_SIZE,      8,                 EGL_BLUE_SIZE,    8,               EGL_NONE};
    const EGLint size[] = {EGL_WIDTH, 8, EGL_HEIGHT, 8, EGL_NONE};
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    EGLConfig config;
    EGLint count = 0;
    const EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if (!eglInitialize(display, NULL, NULL)) return 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count == 0) return 0;
    const EGLSurface surface = eglCreatePbufferSurface(display, config, size);
    const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, version);
    return eglMakeCurrent(display, surface, surface, context) == EGL_TRUE;
}

static void printPixel(const char *name, int x, int y)
{
    GLubyte rgb[4] = {0};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgb);
    printf("%s: %d %d %d\n", name, rgb[0], rgb[1], rgb[2]);
}

// Colours that are whole steps of 1/255.
static void draw(void)
{
    const GLfloat lowerLeftHalf[] = {-1, -1, 1, -1, -1, 1};
    glViewport(0, 0, 8, 8);
    glClearColor(0.0f, 0.4f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor4f(1.0f, 0.0f, 0.2f, 1.0f);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, lowerLeftHalf);
#ifdef GL_GLEXT_PROTOTYPES // the vendor entry points are linked: turn the triangle by half a circle
    const GLfloat halfTurn[] = {-1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    glLoadMatrixfWithHintZEK(halfTurn);
#endif
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

int main(int argc, char **argv)
{
    if (argc > 1 && strcmp(argv[1], "--wait") == 0) return sleep(60) != 0;
    if (!makeContext()) {
        printf("no OpenGL ES 1.1 context\n");
        return 1;
    }
    draw();
    const char *folders = getenv("LD_LIBRARY_PATH");
    printf("renderer: %s\n", (const char *)glGetString(GL_RENDERER));
    printf("version: %s\n", (const char *)glGetString(GL_VERSION));
    printPixel("inside", 1, 1);
    printPixel("outside", 6, 6);
    printf("argument: %s\n", argc > 2 ? argv[2] : "");
    printf("library path: %s\n", folders ? folders : "");
    return argc > 1 ? atoi(argv[1]) : 0;
}
