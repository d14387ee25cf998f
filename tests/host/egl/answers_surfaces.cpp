// SPDX-License-Identifier: MIT
// Questions about surfaces: windows, pixmaps, pbuffers, swapping them and sampling them.
#include "answers.h"

#include <GLES/gl.h>
#include <GLES/glext.h>

namespace {

void askAttributesOf(const Stage &stage, const char *kind, EGLSurface surface)
{
    for (const EGLint attribute : {EGL_CONFIG_ID, EGL_WIDTH, EGL_HEIGHT, EGL_LARGEST_PBUFFER, EGL_TEXTURE_FORMAT,
                                   EGL_TEXTURE_TARGET, EGL_MIPMAP_TEXTURE, EGL_MIPMAP_LEVEL, EGL_RENDER_BUFFER,
                                   EGL_SWAP_BEHAVIOR, EGL_MULTISAMPLE_RESOLVE, EGL_GL_COLORSPACE, EGL_VG_ALPHA_FORMAT,
                                   EGL_HORIZONTAL_RESOLUTION, EGL_PIXEL_ASPECT_RATIO, EGL_BUFFER_AGE_EXT, EGL_NONE}) {
        EGLint value = -7;
        say(std::string(kind) + " attribute " + std::to_string(attribute),
            eglQuerySurface(stage.display, surface, attribute, &value));
        if (attribute != EGL_CONFIG_ID) say(" is", value);
    }
}

// Clears the draw surface and reads the colour back through the current ES 1.x context.
std::string clearedColour()
{
    GLubyte pixel[4] = {1, 2, 3, 4};
    glClearColor(1, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glReadPixels(2, 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    std::string text = "colour";
    for (const GLubyte channel : pixel)
        append(text, channel);
    return text;
}

void askNativeSurfaces(const Stage &stage, EGLContext context)
{
    ASK(eglMakeCurrent(stage.display, stage.windowSurface, stage.windowSurface, context));
    say(clearedColour(), 0);
    ASK(eglSwapBuffers(stage.display, stage.windowSurface));
    ASK(eglCreateWindowSurface(stage.display, stage.config, stage.window, nullptr));

    const EGLSurface pixmap = eglCreatePixmapSurface(stage.display, stage.config, stage.pixmap, nullptr);
    ASK(pixmap);
    askAttributesOf(stage, "pixmap", pixmap);
    ASK(eglMakeCurrent(stage.display, pixmap, pixmap, context));
    say(clearedColour(), 0);
    ASK(eglWaitGL());
    ASK(eglWaitNative(EGL_CORE_NATIVE_ENGINE));
    ASK(eglSwapBuffers(stage.display, pixmap));
    ASK(useContext(stage, context));
    ASK(eglDestroySurface(stage.display, pixmap));

    // The pointer forms of EGL 1.5 take the address of the native handle.
    EGLNativeWindowType window = stage.window;
    EGLNativePixmapType nativePixmap = stage.pixmap;
    ASK(eglCreatePlatformWindowSurface(stage.display, stage.config, &window, nullptr));
    const EGLSurface platformPixmap =
        eglCreatePlatformPixmapSurface(stage.display, stage.config, &nativePixmap, nullptr);
    ASK(platformPixmap);
    ASK(eglDestroySurface(stage.display, platformPixmap));
    const auto createWindow = extension<PFNEGLCREATEPLATFORMWINDOWSURFACEEXTPROC>("eglCreatePlatformWindowSurfaceEXT");
    ASK(createWindow(stage.display, stage.config, &window, nullptr));

    ASK(eglCopyBuffers(stage.display, stage.pbuffer, stage.pixmap));
    ASK(eglCopyBuffers(stage.display, stage.windowSurface, stage.pixmap));
}

} // namespace

void askSurfaces(const Stage &stage)
{
    const EGLContext context = createEs1(stage);
    askAttributesOf(stage, "pbuffer", stage.pbuffer);
    ASK(useContext(stage, context));
    askAttributesOf(stage, "current pbuffer", stage.pbuffer);
    say(clearedColour(), 0);
    if (stage.windowSurface) askAttributesOf(stage, "window", stage.windowSurface);
    if (stage.windowSurface) askNativeSurfaces(stage, context);

    ASK(eglSurfaceAttrib(stage.display, stage.pbuffer, EGL_MIPMAP_LEVEL, 1));
    ASK(eglSurfaceAttrib(stage.display, stage.pbuffer, EGL_SWAP_BEHAVIOR, EGL_BUFFER_PRESERVED));
    ASK(eglSurfaceAttrib(stage.display, stage.pbuffer, EGL_SWAP_BEHAVIOR, EGL_WIDTH));
    ASK(eglSurfaceAttrib(stage.display, stage.pbuffer, EGL_MULTISAMPLE_RESOLVE, EGL_MULTISAMPLE_RESOLVE_BOX));
    ASK(eglSurfaceAttrib(stage.display, stage.pbuffer, EGL_WIDTH, 4));
    ASK(eglSurfaceAttrib(stage.display, strangeHandle(), EGL_MIPMAP_LEVEL, 1));
    EGLint value = 0;
    ASK(eglQuerySurface(stage.display, strangeHandle(), EGL_WIDTH, &value));
    ASK(eglQuerySurface(EGL_NO_DISPLAY, stage.pbuffer, EGL_WIDTH, &value));

    const EGLint negative[] = {EGL_WIDTH, -1, EGL_NONE};
    ASK(eglCreatePbufferSurface(stage.display, stage.config, negative));
    const EGLint unknown[] = {EGL_RED_SIZE, 8, EGL_NONE};
    ASK(eglCreatePbufferSurface(stage.display, stage.config, unknown));
    ASK(eglCreatePbufferSurface(stage.display, strangeHandle(), nullptr));
    const EGLSurface empty = eglCreatePbufferSurface(stage.display, stage.config, nullptr);
    ASK(empty);
    ASK(eglMakeCurrent(stage.display, empty, empty, context));
    ASK(eglDestroySurface(stage.display, empty));
    ASK(eglGetCurrentSurface(EGL_DRAW) == empty);
    ASK(eglDestroySurface(stage.display, empty));
    ASK(eglDestroySurface(stage.display, EGL_NO_SURFACE));

    ASK(eglCreatePbufferFromClientBuffer(stage.display, EGL_OPENVG_IMAGE, nullptr, stage.config, nullptr));
    ASK(eglCreatePbufferFromClientBuffer(stage.display, EGL_NONE, nullptr, stage.config, nullptr));
}

void askSwapping(const Stage &stage)
{
    const EGLContext context = createEs1(stage);
    ASK(eglSwapInterval(stage.display, 1));
    ASK(eglSwapBuffers(stage.display, stage.pbuffer));
    ASK(eglWaitClient());
    ASK(eglWaitGL());
    ASK(eglWaitNative(EGL_CORE_NATIVE_ENGINE));
    ASK(eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, context));
    ASK(eglSwapInterval(stage.display, 1));
    ASK(eglSwapBuffers(stage.display, stage.pbuffer));
    ASK(eglWaitClient());
    ASK(eglWaitGL());
    ASK(eglWaitNative(EGL_CORE_NATIVE_ENGINE));
    ASK(eglWaitNative(EGL_WIDTH));

    for (const EGLSurface surface : {stage.pbuffer, stage.windowSurface}) {
        if (!surface) continue;
        ASK(eglMakeCurrent(stage.display, surface, surface, context));
        ASK(eglSwapInterval(stage.display, 0));
        ASK(eglSwapInterval(stage.display, -1));
        ASK(eglSwapInterval(stage.display, 1000));
        ASK(eglSwapInterval(EGL_NO_DISPLAY, 1));
        ASK(eglSwapInterval(stage.other, 1));
        ASK(eglSwapBuffers(stage.display, surface));
        ASK(eglSwapBuffers(stage.display, EGL_NO_SURFACE));
        ASK(eglSwapBuffers(stage.display, strangeHandle()));
        ASK(eglSwapBuffers(EGL_NO_DISPLAY, surface));
        ASK(eglSwapBuffers(stage.other, surface));
        for (const char *name : {"eglSwapBuffersWithDamageKHR", "eglSwapBuffersWithDamageEXT"})
            if (const auto swap = extension<PFNEGLSWAPBUFFERSWITHDAMAGEKHRPROC>(name)) {
                EGLint rectangles[] = {0, 0, 4, 4};
                say(name, swap(stage.display, surface, rectangles, 1));
                say(name, swap(stage.display, surface, nullptr, 0));
                say(name, swap(stage.display, surface, rectangles, -1));
                say(name, swap(stage.display, strangeHandle(), nullptr, 0));
            }
        if (const auto post = extension<PFNEGLPOSTSUBBUFFERNVPROC>("eglPostSubBufferNV"))
            ASK(post(stage.display, surface, 0, 0, 4, 4));
        if (const auto region = extension<PFNEGLSETDAMAGEREGIONKHRPROC>("eglSetDamageRegionKHR")) {
            EGLint rectangles[] = {0, 0, 4, 4};
            ASK(region(stage.display, surface, rectangles, 1));
        }
    }
}

void askTextureSurfaces(const Stage &stage)
{
    const EGLContext context = createEs1(stage);
    ASK(eglBindTexImage(stage.display, stage.pbuffer, EGL_BACK_BUFFER));
    ASK(useContext(stage, context));
    ASK(eglBindTexImage(stage.display, stage.pbuffer, EGL_BACK_BUFFER));

    EGLConfig config = nullptr;
    EGLint count = 0;
    const EGLint criteria[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_BIND_TO_TEXTURE_RGBA, EGL_TRUE, EGL_NONE};
    ASK(eglChooseConfig(stage.display, criteria, &config, 1, &count));
    ASK(count);
    if (count == 0) return;
    const EGLint attributes[] = {
        EGL_WIDTH,      8,       EGL_HEIGHT, 8, EGL_TEXTURE_FORMAT, EGL_TEXTURE_RGBA, EGL_TEXTURE_TARGET,
        EGL_TEXTURE_2D, EGL_NONE};
    const EGLSurface source = eglCreatePbufferSurface(stage.display, config, attributes);
    ASK(source);
    ASK(eglMakeCurrent(stage.display, source, source, context));
    say(clearedColour(), 0);
    ASK(eglBindTexImage(stage.display, source, EGL_BACK_BUFFER));
    ASK(useContext(stage, context));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    ASK(eglBindTexImage(stage.display, source, EGL_RENDER_BUFFER));
    ASK(eglBindTexImage(stage.display, strangeHandle(), EGL_BACK_BUFFER));
    ASK(eglBindTexImage(stage.display, source, EGL_BACK_BUFFER));
    ASK(eglBindTexImage(stage.display, source, EGL_BACK_BUFFER));

    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glEnable(GL_TEXTURE_2D);
    static const GLfloat corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, corners);
    glTexCoordPointer(2, GL_FLOAT, 0, corners);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    GLubyte pixel[4] = {};
    glReadPixels(8, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    ASK(pixel[0]);
    ASK(pixel[1]);
    ASK(pixel[2]);

    ASK(eglReleaseTexImage(stage.display, source, EGL_BACK_BUFFER));
    ASK(eglReleaseTexImage(stage.display, source, EGL_BACK_BUFFER));
    ASK(eglReleaseTexImage(stage.display, stage.pbuffer, EGL_BACK_BUFFER));
    ASK(eglReleaseTexImage(stage.display, source, EGL_RENDER_BUFFER));
    ASK(eglDestroySurface(stage.display, source));
}
