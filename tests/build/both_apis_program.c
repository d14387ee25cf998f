// SPDX-License-Identifier: MIT
// A program that links libGLESv1_CM and libGLESv2 and draws with contexts of both in turn, by linked functions alone.
// Prints the colour that each leaves in the middle, and the kind of context that was asked.
#include <EGL/egl.h>
#include <GLES/gl.h>
#include <GLES2/gl2.h>

#include <stdio.h>
#include <string.h>

static EGLDisplay display;
static EGLSurface surface;
static EGLConfig config;

static EGLContext makeContext(EGLint version)
{
    const EGLint attributes[] = {EGL_CONTEXT_CLIENT_VERSION, version, EGL_NONE};
    return eglCreateContext(display, config, EGL_NO_CONTEXT, attributes);
}

static int start(void)
{
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_ES_BIT | EGL_OPENGL_ES2_BIT,
                             EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_NONE};
    const EGLint size[] = {EGL_WIDTH, 8, EGL_HEIGHT, 8, EGL_NONE};
    EGLint count = 0;
    display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if (!eglInitialize(display, NULL, NULL)) return 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count == 0) return 0;
    surface = eglCreatePbufferSurface(display, config, size);
    return surface != EGL_NO_SURFACE;
}

static const GLfloat wholeSurface[] = {-2, -2, 6, -2, -2, 6};

static void drawFixed(void)
{
    glColor4f(1.0f, 0.4f, 0.0f, 1.0f);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, wholeSurface);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

static GLuint compile(GLenum kind, const char *text)
{
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &text, NULL);
    glCompileShader(shader);
    return shader;
}

static void drawShaded(void)
{
    const GLuint program = glCreateProgram();
    glAttachShader(program,
                   compile(GL_VERTEX_SHADER, "attribute vec2 at; void main() { gl_Position = vec4(at, 0, 1); }"));
    glAttachShader(program, compile(GL_FRAGMENT_SHADER, "void main() { gl_FragColor = vec4(0.0, 0.6, 1.0, 1.0); }"));
    glBindAttribLocation(program, 0, "at");
    glLinkProgram(program);
    glUseProgram(program);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, wholeSurface);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

static void show(EGLContext context, const char *name, void (*draw)(void))
{
    GLubyte rgba[4] = {0};
    if (!eglMakeCurrent(display, surface, surface, context)) printf("%s: not current\n", name);
    glViewport(0, 0, 8, 8);
    glClearColor(0.2f, 0.2f, 0.2f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    draw();
    glReadPixels(4, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    const char *version = (const char *)glGetString(GL_VERSION);
    const int fixed = version && strncmp(version, "OpenGL ES-CM", 12) == 0;
    printf("%s: %d %d %d, %s, error %x\n", name, rgba[0], rgba[1], rgba[2], fixed ? "ES-CM" : "ES", glGetError());
}

int main(void)
{
    if (!start()) {
        printf("no surface for both APIs\n");
        return 1;
    }
    const EGLContext fixed = makeContext(1);
    const EGLContext shaded = makeContext(2);
    for (int round = 0; round < 2; round++) {
        show(fixed, "OpenGL ES 1.1", drawFixed);
        show(shaded, "OpenGL ES 2.0", drawShaded);
    }
    return 0;
}
