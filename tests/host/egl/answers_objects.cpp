// SPDX-License-Identifier: MIT
// Questions about synchronisation objects, images and debug labels.
#include "answers.h"

#include <GLES/gl.h>
#include <GLES/glext.h>

#include <cstdint>
#include <cstdio>

namespace {

void askFence(const Stage &stage, EGLSync sync)
{
    EGLAttrib value = -7;
    ASK(sync);
    ASK(eglGetSyncAttrib(stage.display, sync, EGL_SYNC_TYPE, &value));
    ASK(value == EGL_SYNC_FENCE);
    ASK(eglGetSyncAttrib(stage.display, sync, EGL_SYNC_CONDITION, &value));
    ASK(value == EGL_SYNC_PRIOR_COMMANDS_COMPLETE);
    ASK(eglGetSyncAttrib(stage.display, sync, EGL_WIDTH, &value));
    ASK(eglWaitSync(stage.display, sync, 0));
    ASK(eglWaitSync(stage.display, sync, 1));
    ASK(eglClientWaitSync(stage.display, sync, EGL_SYNC_FLUSH_COMMANDS_BIT, EGL_FOREVER));
    ASK(eglClientWaitSync(stage.display, sync, EGL_SYNC_FLUSH_COMMANDS_BIT, 0));
    ASK(eglClientWaitSync(stage.display, sync, 0, EGL_FOREVER));
    ASK(eglClientWaitSync(EGL_NO_DISPLAY, sync, 0, 0));
    ASK(eglDestroySync(stage.display, sync));
    ASK(eglDestroySync(stage.display, sync));
    ASK(eglWaitSync(stage.display, sync, 0));
}

void askExtensionSyncs(const Stage &stage)
{
    const auto create = extension<PFNEGLCREATESYNCKHRPROC>("eglCreateSyncKHR");
    const auto destroy = extension<PFNEGLDESTROYSYNCKHRPROC>("eglDestroySyncKHR");
    const auto clientWait = extension<PFNEGLCLIENTWAITSYNCKHRPROC>("eglClientWaitSyncKHR");
    const auto signal = extension<PFNEGLSIGNALSYNCKHRPROC>("eglSignalSyncKHR");
    const auto query = extension<PFNEGLGETSYNCATTRIBKHRPROC>("eglGetSyncAttribKHR");
    const auto wait = extension<PFNEGLWAITSYNCKHRPROC>("eglWaitSyncKHR");
    const EGLSyncKHR fence = create(stage.display, EGL_SYNC_FENCE_KHR, nullptr);
    ASK(fence);
    ASK(wait(stage.display, fence, 0));
    ASK(clientWait(stage.display, fence, EGL_SYNC_FLUSH_COMMANDS_BIT_KHR, EGL_FOREVER_KHR));
    EGLint value = -7;
    ASK(query(stage.display, fence, EGL_SYNC_STATUS_KHR, &value));
    ASK(value);
    ASK(signal(stage.display, fence, EGL_SIGNALED_KHR));
    ASK(destroy(stage.display, fence));
    const EGLSyncKHR reusable = create(stage.display, EGL_SYNC_REUSABLE_KHR, nullptr);
    ASK(reusable);
    ASK(clientWait(stage.display, reusable, 0, 0));
    ASK(signal(stage.display, reusable, EGL_SIGNALED_KHR));
    ASK(clientWait(stage.display, reusable, EGL_SYNC_FLUSH_COMMANDS_BIT_KHR, EGL_FOREVER_KHR));
    ASK(wait(stage.display, reusable, 0));
    ASK(destroy(stage.display, reusable));
    ASK(create(stage.display, EGL_NONE, nullptr));
}

EGLClientBuffer named(GLuint name)
{
    return reinterpret_cast<EGLClientBuffer>(uintptr_t(name));
}

GLuint makeTexture(GLenum target, bool complete)
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(target, texture);
    if (!complete) return texture;
    const bool cube = target == GL_TEXTURE_CUBE_MAP_OES;
    for (GLenum face = 0; face < (cube ? 6 : 1); face++)
        glTexImage2D(cube ? GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face : target, 0, GL_RGBA, 4, 4, 0, GL_RGBA,
                     GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    return texture;
}

void askImage(const Stage &stage, const char *label, EGLContext context, EGLenum target, GLuint name,
              std::vector<EGLAttrib> attributes = {})
{
    attributes.push_back(EGL_NONE);
    const EGLImage image = eglCreateImage(stage.display, context, target, named(name), attributes.data());
    say(label, image);
    if (image) say(" destroyed", eglDestroyImage(stage.display, image));
}

int messages = 0;

// Objects' labels are left out: a message about an error may name another object as the one concerned.
void EGLAPIENTRY noteMessage(EGLenum error, const char *command, EGLint type, EGLLabelKHR thread, EGLLabelKHR,
                             const char *)
{
    messages++;
    printf("message of %s: error %#x, type %#x, thread label %s\n", command, error, unsigned(type),
           thread ? static_cast<const char *>(thread) : "none");
}

} // namespace

void askSyncs(const Stage &stage)
{
    ASK(eglCreateSync(stage.display, EGL_SYNC_FENCE, nullptr));
    const EGLContext context = createEs1(stage);
    ASK(useContext(stage, context));
    glClear(GL_COLOR_BUFFER_BIT);
    askFence(stage, eglCreateSync(stage.display, EGL_SYNC_FENCE, nullptr));
    ASK(eglCreateSync(stage.other, EGL_SYNC_FENCE, nullptr));
    ASK(eglCreateSync(stage.display, EGL_NONE, nullptr));
    ASK(eglCreateSync(EGL_NO_DISPLAY, EGL_SYNC_FENCE, nullptr));
    const EGLAttrib unknown[] = {EGL_WIDTH, 1, EGL_NONE};
    ASK(eglCreateSync(stage.display, EGL_SYNC_FENCE, unknown));
    askExtensionSyncs(stage);
    const EGLSync kept = eglCreateSync(stage.display, EGL_SYNC_FENCE, nullptr);
    ASK(useContext(stage, EGL_NO_CONTEXT));
    ASK(eglWaitSync(stage.display, kept, 0));
    ASK(eglClientWaitSync(stage.display, kept, EGL_SYNC_FLUSH_COMMANDS_BIT, EGL_FOREVER));
    ASK(eglDestroySync(stage.display, kept));
}

void askImages(const Stage &stage)
{
    const EGLContext context = createEs1(stage), shared = createEs1(stage, context);
    ASK(useContext(stage, context));
    // Names of the context are not 1: a name that is passed on as it is must still be the right one.
    GLuint unused[5];
    glGenTextures(5, unused);
    const GLuint texture = makeTexture(GL_TEXTURE_2D, true);
    const GLuint incomplete = makeTexture(GL_TEXTURE_2D, false);
    const GLuint cube = makeTexture(GL_TEXTURE_CUBE_MAP_OES, true);
    const EGLenum face = EGL_GL_TEXTURE_CUBE_MAP_NEGATIVE_Y;

    askImage(stage, "image of a texture", context, EGL_GL_TEXTURE_2D, texture);
    askImage(stage, "again", context, EGL_GL_TEXTURE_2D, texture);
    askImage(stage, "through the shared context", shared, EGL_GL_TEXTURE_2D, texture);
    askImage(stage, "level 0", context, EGL_GL_TEXTURE_2D, texture, {EGL_GL_TEXTURE_LEVEL, 0});
    askImage(stage, "level 1", context, EGL_GL_TEXTURE_2D, texture, {EGL_GL_TEXTURE_LEVEL, 1});
    askImage(stage, "level -1", context, EGL_GL_TEXTURE_2D, texture, {EGL_GL_TEXTURE_LEVEL, -1});
    askImage(stage, "preserved", context, EGL_GL_TEXTURE_2D, texture, {EGL_IMAGE_PRESERVED, EGL_TRUE});
    askImage(stage, "unknown attribute", context, EGL_GL_TEXTURE_2D, texture, {EGL_WIDTH, 1});
    askImage(stage, "texture 0", context, EGL_GL_TEXTURE_2D, 0);
    askImage(stage, "no texture of that name", context, EGL_GL_TEXTURE_2D, 4711);
    askImage(stage, "a name never bound", context, EGL_GL_TEXTURE_2D, unused[2]);
    askImage(stage, "without an image", context, EGL_GL_TEXTURE_2D, incomplete);
    askImage(stage, "cube map as 2D", context, EGL_GL_TEXTURE_2D, cube);
    askImage(stage, "cube map face", context, face, cube);
    askImage(stage, "2D as cube map face", context, face, texture);
    askImage(stage, "3D", context, EGL_GL_TEXTURE_3D, texture);
    askImage(stage, "unknown target", context, EGL_WIDTH, texture);

    GLuint renderbuffer = 0;
    extension<PFNGLGENRENDERBUFFERSOESPROC>("glGenRenderbuffersOES")(1, &renderbuffer);
    extension<PFNGLBINDRENDERBUFFEROESPROC>("glBindRenderbufferOES")(GL_RENDERBUFFER_OES, renderbuffer);
    askImage(stage, "renderbuffer without storage", context, EGL_GL_RENDERBUFFER, renderbuffer);
    extension<PFNGLRENDERBUFFERSTORAGEOESPROC>("glRenderbufferStorageOES")(GL_RENDERBUFFER_OES, GL_RGBA4_OES, 8, 8);
    askImage(stage, "renderbuffer", context, EGL_GL_RENDERBUFFER, renderbuffer);
    askImage(stage, "renderbuffer 0", context, EGL_GL_RENDERBUFFER, 0);

    const EGLImage image = eglCreateImage(stage.display, context, EGL_GL_TEXTURE_2D, named(texture), nullptr);
    ASK(eglCreateImage(stage.other, context, EGL_GL_TEXTURE_2D, named(texture), nullptr));
    ASK(eglCreateImage(EGL_NO_DISPLAY, context, EGL_GL_TEXTURE_2D, named(texture), nullptr));
    const auto createKhr = extension<PFNEGLCREATEIMAGEKHRPROC>("eglCreateImageKHR");
    const auto destroyKhr = extension<PFNEGLDESTROYIMAGEKHRPROC>("eglDestroyImageKHR");
    const EGLint level0[] = {EGL_GL_TEXTURE_LEVEL_KHR, 0, EGL_IMAGE_PRESERVED_KHR, EGL_TRUE, EGL_NONE};
    const EGLImageKHR khr = createKhr(stage.display, shared, EGL_GL_TEXTURE_2D_KHR, named(texture), level0);
    ASK(khr);
    ASK(destroyKhr(stage.display, khr));
    ASK(destroyKhr(stage.display, khr));

    // The image becomes another texture, also of a context that shares nothing.
    const EGLContext stranger = createEs1(stage);
    for (const EGLContext user : {context, stranger}) {
        ASK(useContext(stage, user));
        makeTexture(GL_TEXTURE_2D, false);
        extension<PFNGLEGLIMAGETARGETTEXTURE2DOESPROC>("glEGLImageTargetTexture2DOES")(GL_TEXTURE_2D, image);
        ASK(glGetError());
    }
    // While another context is current.
    askImage(stage, "of a context that is not current", shared, EGL_GL_TEXTURE_2D, texture);
    ASK(eglGetCurrentContext() == stranger);
    ASK(eglDestroyImage(stage.display, image));
    ASK(eglDestroyImage(stage.display, image));
    ASK(eglDestroyImage(stage.display, EGL_NO_IMAGE));
}

void askLabels(const Stage &stage)
{
    const auto label = extension<PFNEGLLABELOBJECTKHRPROC>("eglLabelObjectKHR");
    const auto control = extension<PFNEGLDEBUGMESSAGECONTROLKHRPROC>("eglDebugMessageControlKHR");
    const auto query = extension<PFNEGLQUERYDEBUGKHRPROC>("eglQueryDebugKHR");
    const EGLContext context = createEs1(stage);
    const auto text = [](const char *name) { return static_cast<EGLLabelKHR>(const_cast<char *>(name)); };
    ASK(label(stage.display, EGL_OBJECT_CONTEXT_KHR, context, text("ctx")));
    ASK(label(stage.display, EGL_OBJECT_SURFACE_KHR, stage.pbuffer, text("surface")));
    ASK(label(stage.display, EGL_OBJECT_DISPLAY_KHR, stage.display, text("display")));
    ASK(label(stage.display, EGL_OBJECT_THREAD_KHR, nullptr, text("thread")));
    ASK(label(stage.display, EGL_OBJECT_CONTEXT_KHR, strangeHandle(), text("none")));
    ASK(label(stage.display, EGL_OBJECT_CONTEXT_KHR, nullptr, text("none")));
    ASK(label(EGL_NO_DISPLAY, EGL_OBJECT_CONTEXT_KHR, context, text("none")));
    ASK(label(stage.display, EGL_NONE, context, text("none")));

    const EGLAttrib all[] = {EGL_DEBUG_MSG_CRITICAL_KHR,
                             EGL_TRUE,
                             EGL_DEBUG_MSG_ERROR_KHR,
                             EGL_TRUE,
                             EGL_DEBUG_MSG_WARN_KHR,
                             EGL_TRUE,
                             EGL_DEBUG_MSG_INFO_KHR,
                             EGL_TRUE,
                             EGL_NONE};
    ASK(control(noteMessage, all));
    EGLAttrib value = 0;
    ASK(query(EGL_DEBUG_CALLBACK_KHR, &value));
    ASK(value == EGLAttrib(&noteMessage));
    createContext(stage, {EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 7});
    createContext(stage, {EGL_CONTEXT_OPENGL_PROFILE_MASK, 1});
    eglCreateContext(stage.display, stage.config, strangeHandle(), nullptr);
    eglMakeCurrent(stage.display, strangeHandle(), strangeHandle(), context);
    eglMakeCurrent(stage.display, stage.pbuffer, stage.pbuffer, EGL_NO_CONTEXT);
    EGLint number = 0;
    eglQueryContext(stage.display, context, EGL_WIDTH, &number);
    eglQueryContext(stage.display, strangeHandle(), EGL_WIDTH, &number);
    eglSwapBuffers(stage.display, stage.pbuffer);
    ASK(useContext(stage, context));
    eglSwapBuffers(stage.display, EGL_NO_SURFACE);
    eglCreateImage(stage.display, context, EGL_GL_TEXTURE_2D, named(4711), nullptr);
    eglDestroyContext(stage.display, strangeHandle());
    ASK(messages);
    ASK(control(nullptr, nullptr));
    ASK(label(stage.display, EGL_OBJECT_THREAD_KHR, nullptr, nullptr));
}
