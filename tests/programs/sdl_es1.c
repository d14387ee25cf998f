// SPDX-License-Identifier: MIT
// An SDL program with an OpenGL ES 1.1 context, as games have them: every GL function comes from SDL, the window
// changes its size, the context is lost and made again, and a second one shares its texture. It prints what SDL says of
// the context and the colours it finds in the window.
#include <SDL2/SDL.h>
#include <SDL2/SDL_opengles.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// A row becomes: static __typeof__(&glClear) sdl_glClear;
#define FUNCTIONS(ROW)                                                                                                 \
    ROW(glBindTexture)                                                                                                 \
    ROW(glClear)                                                                                                       \
    ROW(glClearColor) ROW(glColor4f) ROW(glDrawArrays) ROW(glEnable) ROW(glEnableClientState) ROW(glGenTextures)       \
        ROW(glGetError) ROW(glGetIntegerv) ROW(glGetString) ROW(glLoadIdentity) ROW(glMatrixMode) ROW(glOrthof)        \
            ROW(glReadPixels) ROW(glRotatef) ROW(glTexCoordPointer) ROW(glTexEnvi) ROW(glTexImage2D)                   \
                ROW(glTexParameteri) ROW(glVertexPointer) ROW(glViewport)
#define DECLARE(name) static __typeof__(&name) sdl_##name;
FUNCTIONS(DECLARE)

static void findFunctions(void)
{
#define FIND(name)                                                                                                     \
    sdl_##name = (__typeof__(&name))SDL_GL_GetProcAddress(#name);                                                      \
    if (!sdl_##name) printf("%s is missing\n", #name);
    FUNCTIONS(FIND)
}

static void setAttributes(void)
{
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_ES);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 1);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 16);
}

static SDL_GLContext createContext(SDL_Window *window)
{
    const SDL_GLContext context = SDL_GL_CreateContext(window);
    if (!context) {
        printf("no context: %s\n", SDL_GetError());
        exit(1);
    }
    SDL_GL_SetSwapInterval(0); // a hidden window is not shown, and a swap that waits for that does not end
    return context;
}

static void printAttributes(void)
{
    static const SDL_GLattr attributes[] = {SDL_GL_RED_SIZE, SDL_GL_DEPTH_SIZE, SDL_GL_CONTEXT_MAJOR_VERSION,
                                            SDL_GL_CONTEXT_PROFILE_MASK};
    for (size_t i = 0; i < sizeof attributes / sizeof *attributes; i++) {
        int value = -1;
        const int status = SDL_GL_GetAttribute(attributes[i], &value);
        printf("attribute %d: %d, status %d\n", attributes[i], value, status);
    }
    printf("draw-texture: %d, no such extension: %d\n", SDL_GL_ExtensionSupported("GL_OES_draw_texture"),
           SDL_GL_ExtensionSupported("GL_TRL_nothing"));
}

static GLuint makeTexture(void)
{
    static const GLubyte texels[4][4] = {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 0, 255}};
    GLuint texture;
    sdl_glGenTextures(1, &texture);
    sdl_glBindTexture(GL_TEXTURE_2D, texture);
    sdl_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    sdl_glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    sdl_glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    return texture;
}

// The texture on a square that covers the middle of the window, a quarter of a turn from the last picture's, and the
// colours of five places.
static void draw(SDL_Window *window, const char *title, GLuint texture)
{
    static const GLfloat corners[] = {-0.75f, -0.75f, 0.75f, -0.75f, -0.75f, 0.75f, 0.75f, 0.75f};
    static const GLfloat coordinates[] = {0, 0, 1, 0, 0, 1, 1, 1};
    static const double places[5][2] = {{0.03, 0.03}, {0.3, 0.3}, {0.7, 0.3}, {0.3, 0.7}, {0.7, 0.7}};
    static int turns;
    int width, height;
    SDL_GL_GetDrawableSize(window, &width, &height);
    sdl_glViewport(0, 0, width, height);
    sdl_glClearColor(0.2f, 0.4f, 0.6f, 1);
    sdl_glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    sdl_glMatrixMode(GL_PROJECTION);
    sdl_glLoadIdentity();
    sdl_glOrthof(-1, 1, -1, 1, -1, 1);
    sdl_glMatrixMode(GL_MODELVIEW);
    sdl_glLoadIdentity();
    sdl_glRotatef(90.0f * (GLfloat)turns++, 0, 0, 1);
    sdl_glEnable(GL_TEXTURE_2D);
    sdl_glBindTexture(GL_TEXTURE_2D, texture);
    sdl_glEnableClientState(GL_VERTEX_ARRAY);
    sdl_glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    sdl_glVertexPointer(2, GL_FLOAT, 0, corners);
    sdl_glTexCoordPointer(2, GL_FLOAT, 0, coordinates);
    sdl_glColor4f(0.8f, 1, 0.4f, 1);
    sdl_glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);

    printf("%s, %dx%d:", title, width, height);
    for (int i = 0; i < 5; i++) {
        GLubyte colour[4] = {0};
        sdl_glReadPixels((GLint)(places[i][0] * width), (GLint)(places[i][1] * height), 1, 1, GL_RGBA, GL_UNSIGNED_BYTE,
                         colour);
        printf(" %02x%02x%02x", colour[0], colour[1], colour[2]);
    }
    printf(", error %#x\n", sdl_glGetError());
    SDL_GL_SwapWindow(window);
}

int main(void)
{
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        printf("no SDL: %s\n", SDL_GetError());
        return 1;
    }
    printf("video driver: %s\n", SDL_GetCurrentVideoDriver());
    setAttributes();
    SDL_Window *window = SDL_CreateWindow("first", 0, 0, 64, 48, SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE);
    if (!window) {
        printf("no window: %s\n", SDL_GetError());
        return 1;
    }
    SDL_GLContext context = createContext(window);
    findFunctions();
    printf("version begins as ES 1.1's: %d\n",
           strncmp((const char *)sdl_glGetString(GL_VERSION), "OpenGL ES-CM 1.1", strlen("OpenGL ES-CM 1.1")) == 0);
    printf("renderer: %s\n", (const char *)sdl_glGetString(GL_RENDERER));
    printAttributes();
    GLuint texture = makeTexture();
    draw(window, "first", texture);

    SDL_SetWindowSize(window, 100, 80);
    for (int i = 0; i < 3; i++) {
        SDL_PumpEvents();
        draw(window, "of another size", texture);
    }

    SDL_GL_DeleteContext(context);
    context = createContext(window);
    texture = makeTexture();
    draw(window, "made again", texture);

    SDL_GL_SetAttribute(SDL_GL_SHARE_WITH_CURRENT_CONTEXT, 1);
    const SDL_GLContext sharing = createContext(window);
    draw(window, "sharing", texture);
    SDL_GL_MakeCurrent(window, context);
    draw(window, "made again", texture);
    SDL_GL_DeleteContext(sharing);
    SDL_GL_DeleteContext(context);
    SDL_DestroyWindow(window);
    SDL_Quit();
    return 0;
}
