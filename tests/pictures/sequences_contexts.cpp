// SPDX-License-Identifier: MIT
// Several contexts: shared textures and buffers, interleaved states, other threads.
#include "pictures/sequences.h"
#include "pictures/textures.h"

#include <thread>

namespace {

void drawQuad()
{
    glColor4f(0.9f, 0.8f, 0.7f, 0.6f);
    drawRectangle(-0.8f, -0.8f, 0.8f, 0.8f);
}

// An image for a name, which may be bound already.
void image(GLuint name, GLenum format, GLubyte value)
{
    const GLubyte texel[] = {value, static_cast<GLubyte>(255 - value), 128, 200};
    glBindTexture(GL_TEXTURE_2D, name);
    nearestFilter();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), 1, 1, 0, format, GL_UNSIGNED_BYTE, texel);
}

std::function<void()> textured(GLenum format, GLubyte value)
{
    return [=] {
        glEnable(GL_TEXTURE_2D);
        image(1, format, value);
    };
}

// Two contexts that share: what one uploads the other draws, whoever bound it first; a name deleted in one goes on in
// the other that still binds it, and comes back as a new texture.
void sharedTextures(Stage &stage)
{
    const EGLContext first = newContext(stage);
    glEnable(GL_TEXTURE_2D);
    image(40, GL_RGBA, 200);
    compare(stage, "first", drawQuad, textured(GL_RGBA, 200));
    const EGLContext second = newContext(stage, first);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, 40);
    compare(stage, "second, not uploaded there", drawQuad, textured(GL_RGBA, 200));
    image(40, GL_LUMINANCE, 90);
    compare(stage, "second, uploaded there", drawQuad, textured(GL_LUMINANCE, 90));
    makeCurrent(stage, first);
    glBindTexture(GL_TEXTURE_2D, 40);
    compare(stage, "first, bound again", drawQuad, textured(GL_LUMINANCE, 90));
    image(300, GL_ALPHA, 60);
    makeCurrent(stage, second);
    glBindTexture(GL_TEXTURE_2D, 300);
    compare(stage, "second, another name", drawQuad, textured(GL_ALPHA, 60));
    const GLuint name = 300;
    makeCurrent(stage, first);
    glDeleteTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, 40);
    compare(stage, "first, after deleting it", drawQuad, textured(GL_LUMINANCE, 90));
    makeCurrent(stage, second);
    compare(stage, "second still binds it", drawQuad, textured(GL_ALPHA, 60));
    glBindTexture(GL_TEXTURE_2D, 40);
    compare(stage, "second, elsewhere", drawQuad, textured(GL_LUMINANCE, 90));
    image(300, GL_RGB, 10);
    compare(stage, "second, the name again", drawQuad, textured(GL_RGB, 10));
    // The first goes; the shared textures stay.
    destroyContext(stage, first);
    compare(stage, "second alone", drawQuad, textured(GL_RGB, 10));
    glBindTexture(GL_TEXTURE_2D, 40);
    compare(stage, "second alone, the older", drawQuad, textured(GL_LUMINANCE, 90));
}

// A format that changes in one context shows in the other once that is made current, even without a new bind.
void changedElsewhere(Stage &stage)
{
    const EGLContext first = newContext(stage);
    glEnable(GL_TEXTURE_2D);
    image(1, GL_RGBA, 220);
    drawQuad();
    const EGLContext second = newContext(stage, first);
    GLubyte value = 20;
    for (const GLenum format : {GL_ALPHA, GL_LUMINANCE, GL_RGB, GL_LUMINANCE_ALPHA}) {
        makeCurrent(stage, second);
        image(1, format, value);
        makeCurrent(stage, first);
        compare(stage, "changed in the other context", drawQuad, textured(format, value));
        value = static_cast<GLubyte>(value + 50);
    }
}

// Contexts that share nothing keep their states apart, draw by draw.
void interleavedContexts(Stage &stage)
{
    const auto state = [](int i) {
        glShadeModel(i % 2 ? GL_FLAT : GL_SMOOTH);
        if (i & 1) textured(GL_RGB, static_cast<GLubyte>(60 * i))();
        if (i & 2) glEnable(GL_LIGHTING), glEnable(GL_LIGHT0);
        glRotatef(static_cast<GLfloat>(20 * i), 0, 0, 1);
    };
    EGLContext contexts[4];
    for (int i = 0; i < 4; ++i) {
        contexts[i] = newContext(stage);
        state(i);
    }
    for (const int i : {2, 0, 3, 1, 1, 3, 0, 2}) {
        makeCurrent(stage, contexts[i]);
        compare(stage, "context " + std::to_string(i), drawQuad, [=] { state(i); });
    }
}

// A context that moves from thread to thread, and two that draw on two threads in turn.
void otherThreads(Stage &stage)
{
    const auto state = [] {
        textured(GL_LUMINANCE_ALPHA, 150)();
        glEnable(GL_FOG);
        glFogf(GL_FOG_DENSITY, 0.5f);
    };
    const EGLContext context = newContext(stage);
    state();
    compare(stage, "where it was made", drawQuad, state);
    makeCurrent(stage, EGL_NO_CONTEXT);
    std::thread([&] {
        makeCurrent(stage, context);
        compare(stage, "on another thread", drawQuad, state);
        glColor4f(0, 0, 0, 0);
        image(1, GL_RGB, 99);
        makeCurrent(stage, EGL_NO_CONTEXT);
    }).join();
    std::thread([&] {
        makeCurrent(stage, context);
        compare(stage, "on a third, with the second's image", drawQuad, [&] {
            state();
            image(1, GL_RGB, 99);
        });
        makeCurrent(stage, EGL_NO_CONTEXT);
    }).join();
    makeCurrent(stage, context);
    compare(stage, "back home", drawQuad, [&] {
        state();
        image(1, GL_RGB, 99);
    });
    // This thread keeps its context while another makes, uses and ends one that shares with it.
    std::thread([&] {
        eglBindAPI(EGL_OPENGL_ES_API);
        Stage other = {.display = stage.display, .config = stage.config};
        const EGLContext sharing = newContext(other, context);
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, 1);
        compare(other, "shared on another thread", drawQuad, textured(GL_RGB, 99));
        stage.tiles.push_back(other.tiles.back());
        destroyContext(other, sharing);
        eglDestroySurface(other.display, other.surface);
    }).join();
    compare(stage, "undisturbed", drawQuad, [&] {
        state();
        image(1, GL_RGB, 99);
    });
}

// Made current again and again, with nothing current in between, and destroyed while current elsewhere.
void currentAndNot(Stage &stage)
{
    const auto state = textured(GL_RGBA, 77);
    const EGLContext context = newContext(stage);
    state();
    for (int i = 0; i < 3; ++i) {
        makeCurrent(stage, EGL_NO_CONTEXT);
        drawQuad(); // nothing happens without a context
        makeCurrent(stage, context);
        compare(stage, "current again", drawQuad, state);
    }
}

} // namespace

std::vector<Sequence> contextSequences()
{
    return {{"SharedTextures", 11, sharedTextures},
            {"ChangedElsewhere", 4, changedElsewhere},
            {"InterleavedContexts", 8, interleavedContexts},
            {"OtherThreads", 6, otherThreads},
            {"CurrentAndNot", 3, currentAndNot}};
}
