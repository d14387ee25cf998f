// SPDX-License-Identifier: MIT
// A GLFW program with OpenGL ES 1.1 contexts: two windows that share a texture. It prints what GLFW says of the
// contexts and the colours it finds in the windows.
#include <GLES/gl.h>
#include <GLES/glext.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { kSize = 64 };

static void reportError(int code, const char *text)
{
    printf("GLFW error %#x: %s\n", (unsigned)code, text);
}

static GLFWwindow *openWindow(const char *title, GLFWwindow *share)
{
    glfwWindowHint(GLFW_CLIENT_API, GLFW_OPENGL_ES_API);
    glfwWindowHint(GLFW_CONTEXT_CREATION_API, GLFW_EGL_CONTEXT_API);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 1);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 1);
    glfwWindowHint(GLFW_DEPTH_BITS, 16);
    GLFWwindow *window = glfwCreateWindow(kSize, kSize, title, NULL, share);
    if (!window) exit(1);
    printf("%s: client API %#x, version %d.%d\n", title, (unsigned)glfwGetWindowAttrib(window, GLFW_CLIENT_API),
           glfwGetWindowAttrib(window, GLFW_CONTEXT_VERSION_MAJOR),
           glfwGetWindowAttrib(window, GLFW_CONTEXT_VERSION_MINOR));
    return window;
}

static GLuint makeTexture(void)
{
    static const GLubyte texels[4][4] = {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 0, 255}};
    GLuint texture;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    glFinish();
    return texture;
}

// The texture on a square that covers the middle of the window, a quarter of a turn further with every step.
static void drawSquare(GLuint texture, int step)
{
    static const GLfloat corners[] = {-0.75f, -0.75f, 0.75f, -0.75f, -0.75f, 0.75f, 0.75f, 0.75f};
    static const GLfloat coordinates[] = {0, 0, 1, 0, 0, 1, 1, 1};
    glClearColor(0.2f, 0.4f, 0.6f, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotatef(90.0f * (GLfloat)step, 0, 0, 1);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, corners);
    glTexCoordPointer(2, GL_FLOAT, 0, coordinates);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

static void printColours(const char *title, int step)
{
    static const int places[5][2] = {{2, 2}, {20, 20}, {44, 20}, {20, 44}, {44, 44}};
    printf("%s, step %d:", title, step);
    for (int i = 0; i < 5; i++) {
        GLubyte colour[4];
        glReadPixels(places[i][0], places[i][1], 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, colour);
        printf(" %02x%02x%02x", colour[0], colour[1], colour[2]);
    }
    printf(", error %#x\n", glGetError());
}

int main(void)
{
    glfwSetErrorCallback(reportError);
    if (!glfwInit()) return 1;
    GLFWwindow *first = openWindow("first", NULL), *second = openWindow("second", first);

    glfwMakeContextCurrent(first);
    const GLuint texture = makeTexture();
    printf("version begins as ES 1.1's: %d\n",
           strncmp((const char *)glGetString(GL_VERSION), "OpenGL ES-CM 1.1", strlen("OpenGL ES-CM 1.1")) == 0);
    printf("renderer: %s\n", (const char *)glGetString(GL_RENDERER));
    // GLFW looks into the client library first, and asks EGL for what is not exported there.
    for (const char **name = (const char *[]){"glOrthof", "glClear", "glDrawTexiOES", "glFrustumx", NULL}; *name;
         name++)
        printf("%s: %s\n", *name, glfwGetProcAddress(*name) ? "there" : "missing");
    printf("draw-texture: %d, no such extension: %d\n", glfwExtensionSupported("GL_OES_draw_texture"),
           glfwExtensionSupported("GL_TRL_nothing"));

    GLFWwindow *const windows[] = {first, second};
    for (int step = 0; step < 3; step++)
        for (int i = 0; i < 2; i++) {
            glfwMakeContextCurrent(windows[i]);
            glfwSwapInterval(0); // a hidden window is not shown, and a swap that waits for that does not end
            drawSquare(texture, step + i);
            printColours(i ? "second" : "first", step);
            glfwSwapBuffers(windows[i]);
            glfwPollEvents();
        }
    printf("current is the second: %d\n", glfwGetCurrentContext() == second);
    glfwDestroyWindow(second);
    glfwDestroyWindow(first);
    glfwTerminate();
    return 0;
}
