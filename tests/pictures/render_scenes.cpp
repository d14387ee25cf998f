// SPDX-License-Identifier: MIT
// Draws every scene with the EGL and ES 1.1 libraries it is started with, headless, each in a context of its own, and
// writes NAME.png into a folder. The same program runs on the drop-in pair and on the machine's own libraries.
//   render_scenes [--compared] DIR [NAME...]    --compared: only scenes that both libraries should draw alike
#include "pictures/extensions.h"
#include "pictures/headless.h"
#include "pictures/image.h"
#include "pictures/scene.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// The picture of a scene, and the GL error that the scene leaves.
Image drawScene(EGLDisplay display, EGLConfig config, const Scene &scene, GLenum &error)
{
    const EGLint size[] = {EGL_WIDTH, kPictureSize, EGL_HEIGHT, kPictureSize, EGL_NONE};
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(display, config, size);
    const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, version);
    if (!surface || !context || !eglMakeCurrent(display, surface, surface, context)) failEgl(scene.name.c_str());

    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    scene.draw();
    error = glGetError();

    Image image = {kPictureSize, kPictureSize, std::vector<uint8_t>(4 * kPictureSize * kPictureSize)};
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, kPictureSize, kPictureSize, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display, context);
    eglDestroySurface(display, surface);
    return image;
}

} // namespace

int main(int argc, char **argv)
{
    const bool compared = argc > 1 && std::string(argv[1]) == "--compared";
    const std::vector<std::string> arguments(argv + 1 + compared, argv + argc);
    if (arguments.empty()) {
        std::fprintf(stderr, "usage: render_scenes [--compared] DIR [NAME...]\n");
        return 2;
    }
    const std::string &folder = arguments[0];
    const EGLDisplay display = openDisplay();
    const EGLConfig config = chooseConfig(display);
    if (const char *missing = loadExtensions()) failEgl(missing);
    // Scenes that leave an error, a line each.
    std::FILE *errors = std::fopen((folder + "/errors.txt").c_str(), "w");
    if (!errors) failEgl("no errors.txt");
    for (const Scene &scene : allScenes()) {
        const bool named = std::find(arguments.begin() + 1, arguments.end(), scene.name) != arguments.end();
        if ((arguments.size() > 1 && !named) || (compared && scene.native.instead)) continue;
        const std::string path = folder + "/" + scene.name + ".png";
        GLenum error;
        const Image image = drawScene(display, config, scene, error);
        if (error != GL_NO_ERROR) std::fprintf(errors, "%s\n", scene.name.c_str());
        if (!writePng(path, image)) {
            std::fprintf(stderr, "render_scenes: cannot write %s\n", path.c_str());
            return 1;
        }
    }
    std::fclose(errors);
    eglTerminate(display);
    return 0;
}
