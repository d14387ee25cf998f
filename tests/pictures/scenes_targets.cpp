// SPDX-License-Identifier: MIT
// Framebuffer objects as targets and then as textures, and images shared through EGL.
#include "pictures/extensions.h"
#include "pictures/lighting_reference.h"
#include "pictures/textures.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

namespace {

constexpr GLsizei kTargetSize = 64;

// An empty texture of the target's size, bound to the active unit.
GLuint targetTexture(GLenum format = GL_RGBA)
{
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    nearestFilter();
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), kTargetSize, kTargetSize, 0, format, GL_UNSIGNED_BYTE,
                 nullptr);
    return name;
}

// A framebuffer object that draws into a texture, bound, with the viewport of its size.
GLuint bindTarget(GLuint texture)
{
    GLuint name;
    genFramebuffers(1, &name);
    bindFramebuffer(GL_FRAMEBUFFER_OES, name);
    framebufferTexture2D(GL_FRAMEBUFFER_OES, GL_COLOR_ATTACHMENT0_OES, GL_TEXTURE_2D, texture, 0);
    glViewport(0, 0, kTargetSize, kTargetSize);
    return name;
}

void backToPicture()
{
    bindFramebuffer(GL_FRAMEBUFFER_OES, 0);
    glViewport(0, 0, kPictureSize, kPictureSize);
}

void showTexture(float left, float bottom, float right, float top)
{
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    drawRectangle(left, bottom, right, top);
    glDisable(GL_TEXTURE_2D);
}

bool complete()
{
    return checkFramebufferStatus(GL_FRAMEBUFFER_OES) == GL_FRAMEBUFFER_COMPLETE_OES;
}

// A red target with a blue lower left quarter, then shown twice.
void drawnThenShown()
{
    bindTarget(targetTexture());
    if (!complete()) return;
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor4f(0, 0, 1, 1);
    drawRectangle(-1, -1, 0, 0);
    backToPicture();
    showTexture(-1, -1, 0, 1);
    showTexture(0, -1, 1, 1);
}

// Lit, textured and fogged into the target: the whole pipeline works there, too.
void pipelineIntoTarget()
{
    const GLuint target = targetTexture();
    bindTarget(target);
    glClear(GL_COLOR_BUFFER_BIT);
    plainTexture(GL_RGB, Colour{1, 0.6, 0.2, 1});
    glEnable(GL_TEXTURE_2D);
    setLights({{}});
    glEnable(GL_FOG);
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, 0);
    glFogf(GL_FOG_END, 1);
    glNormal3f(0, 0, 1);
    drawRectangle(-1, -1, 1, 1, -0.5f); // half black fog
    glDisable(GL_FOG);
    glDisable(GL_LIGHTING);
    backToPicture();
    glBindTexture(GL_TEXTURE_2D, target);
    showTexture(-1, -1, 1, 1);
}

// Depth of the target's own: the nearer rectangle stays on top.
void targetWithDepth()
{
    const GLuint target = targetTexture();
    bindTarget(target);
    GLuint depth;
    genRenderbuffers(1, &depth);
    bindRenderbuffer(GL_RENDERBUFFER_OES, depth);
    renderbufferStorage(GL_RENDERBUFFER_OES, GL_DEPTH_COMPONENT16_OES, kTargetSize, kTargetSize);
    framebufferRenderbuffer(GL_FRAMEBUFFER_OES, GL_DEPTH_ATTACHMENT_OES, GL_RENDERBUFFER_OES, depth);
    if (!complete()) return;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glColor4f(0, 1, 0, 1);
    drawRectangle(-1, -1, 0.5f, 0.5f, -0.5f);
    glColor4f(1, 0, 0, 1);
    drawRectangle(-0.5f, -0.5f, 1, 1, 0.5f);
    glDisable(GL_DEPTH_TEST);
    backToPicture();
    showTexture(-1, -1, 1, 1);
}

// Levels made from a target, and a target that is a level.
void mipmapsOfTarget()
{
    bindTarget(targetTexture());
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor4f(0, 0, 1, 1);
    drawRectangle(0, -1, 1, 1);
    backToPicture();
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST_MIPMAP_NEAREST);
    generateMipmap(GL_TEXTURE_2D);
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    drawLevelTexel({-1, -1, 1, 1}, kTargetSize, 6, 0, 0);
}

// A target without alpha keeps the current alpha when it is shown.
void targetWithoutAlpha()
{
    bindTarget(targetTexture(GL_RGB));
    if (!complete()) return;
    glClearColor(0.2f, 0.4f, 0.6f, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    backToPicture();
    glColor4f(1, 1, 1, 0.6f);
    showTexture(-1, -1, 1, 1);
}

// A face of a cube map as the target.
void cubeFaceTarget()
{
    static const GLubyte white[] = {255, 255, 255, 255};
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, name);
    nearestFilter(GL_TEXTURE_CUBE_MAP_OES);
    for (GLenum face = 0; face < 6; ++face)
        glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES + face, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, white);
    GLuint framebuffer;
    genFramebuffers(1, &framebuffer);
    bindFramebuffer(GL_FRAMEBUFFER_OES, framebuffer);
    framebufferTexture2D(GL_FRAMEBUFFER_OES, GL_COLOR_ATTACHMENT0_OES, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y_OES, name, 0);
    if (!complete()) return;
    glClearColor(0, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    backToPicture();
    const GLfloat positions[] = {-1, -1, 0, -1, -1, 1, 0, 1};
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glMultiTexCoord4f(GL_TEXTURE0, 0, -1, 0, 1);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glTranslatef(1, 0, 0);
    glMultiTexCoord4f(GL_TEXTURE0, 0, 1, 0, 1);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// Draw-texture into a target, in the target's pixels.
void drawTextureIntoTarget()
{
    const GLint crop[] = {0, 0, 2, 2};
    const GLuint target = targetTexture();
    bindTarget(target);
    glClear(GL_COLOR_BUFFER_BIT);
    quartersTexture();
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop);
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    drawTexi(0, 0, 0, kTargetSize, kTargetSize);
    backToPicture();
    glBindTexture(GL_TEXTURE_2D, target);
    showTexture(-1, -1, 1, 1);
}

// An image of a texture, which other textures share.
EGLImageKHR imageOf(GLuint texture)
{
    const auto createImage = reinterpret_cast<PFNEGLCREATEIMAGEKHRPROC>(eglGetProcAddress("eglCreateImageKHR"));
    // Not a native pointer: the number of a texture.
    const auto buffer = reinterpret_cast<EGLClientBuffer>(static_cast<uintptr_t>(texture));
    const EGLint attributes[] = {EGL_GL_TEXTURE_LEVEL_KHR, 0, EGL_NONE};
    return createImage(eglGetCurrentDisplay(), eglGetCurrentContext(), EGL_GL_TEXTURE_2D_KHR, buffer, attributes);
}

// A texture of the target that is that image. The image itself may go at once.
void bindImage(GLenum target, GLuint texture)
{
    const auto destroyImage = reinterpret_cast<PFNEGLDESTROYIMAGEKHRPROC>(eglGetProcAddress("eglDestroyImageKHR"));
    const EGLImageKHR image = imageOf(texture);
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(target, name);
    nearestFilter(target);
    imageTargetTexture(target, image);
    destroyImage(eglGetCurrentDisplay(), image);
}

void imageAsTexture()
{
    bindImage(GL_TEXTURE_2D, quartersTexture());
    showTexture(-1, -1, 1, 1);
}

void imageAsExternalTexture()
{
    bindImage(GL_TEXTURE_EXTERNAL_OES, quartersTexture());
    glBindTexture(GL_TEXTURE_2D, 0);
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    setEnv(GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glColor4f(0.5f, 1, 1, 0.5f);
    drawRectangle(-1, -1, 1, 1);
}

void replacedByExternal(GLenum format)
{
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glColor4f(1, 1, 1, 0.2f);
    bindImage(GL_TEXTURE_EXTERNAL_OES, plainTexture(format, Colour{0.4, 0.6, 0.8, 0.6}));
    drawRectangle(-1, -1, 1, 1);
}

void externalWithAlpha()
{
    replacedByExternal(GL_RGBA);
}

void externalWithoutAlpha()
{
    replacedByExternal(GL_RGB);
}

// External on unit 1 over a 2D texture on unit 0, then off again.
void externalOnUnit1()
{
    bindImage(GL_TEXTURE_2D, quartersTexture()); // any texture of four quarters
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE1);
    bindImage(GL_TEXTURE_EXTERNAL_OES, quartersTexture());
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    setEnv(GL_TEXTURE_ENV_MODE, GL_ADD);
    glColor4f(0.5f, 0.5f, 0.5f, 1);
    drawRectangle(-1, -1, 1, 1);
    glDisable(GL_TEXTURE_EXTERNAL_OES);
    drawRectangle(-1, -1, 1, 0);
}

// Draw-texture takes the image's size for the crop rectangle.
void imageCropped()
{
    const GLint crop[] = {0, 0, 1, 1};
    bindImage(GL_TEXTURE_2D, quartersTexture());
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop);
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    drawTexi(0, 0, 0, 128, 128);
}

std::vector<Probe> quarterProbes(const Colour &factor = {1, 1, 1, 1}, const Colour &term = {0, 0, 0, 0})
{
    std::vector<Probe> probes;
    for (int i = 0; i < 4; ++i) {
        const Colour &c = kQuarterColours[i];
        const Colour colour = {c.r * factor.r + term.r, c.g * factor.g + term.g, c.b * factor.b + term.b,
                               c.a * factor.a};
        probes.push_back(probeOf(i % 2 ? 96 : 32, i / 2 ? 96 : 32, colour, "a quarter of the image"));
    }
    return probes;
}

} // namespace

std::vector<Scene> targetScenes()
{
    const Colour red = {1, 0, 0, 1};
    const Colour green = {0, 1, 0, 1};
    const Colour blue = {0, 0, 1, 1};
    const double lit = 0.84 / 2; // through half the fog
    std::vector<Scene> scenes = {
        {"TargetDrawnThenShown",
         drawnThenShown,
         {probeOf(16, 32, blue, "lower left quarter"), probeOf(48, 32, red, "cleared"),
          probeOf(80, 32, blue, "shown again"), probeOf(112, 96, red, "cleared")}},
        {"PipelineIntoTarget",
         pipelineIntoTarget,
         {probeOf(64, 64, {lit, lit * 0.6, lit * 0.2, 1}, "lit, textured, fogged")},
         {.tolerance = 3}},
        {"TargetWithDepth",
         targetWithDepth,
         {probeOf(64, 64, green, "the nearer one"), probeOf(112, 112, red, "the other"),
          probeOf(120, 8, {0, 0, 0, 0}, "none")}},
        {"MipmapsOfTarget", mipmapsOfTarget, {probeOf(64, 64, {0.5, 0, 0.5, 1}, "the mean of all")}, {}, 2},
        {"TargetWithoutAlpha", targetWithoutAlpha, {probeOf(64, 64, {0.2, 0.4, 0.6, 0.6}, "the current alpha")}},
        {"CubeFaceTarget",
         cubeFaceTarget,
         {probeOf(32, 64, {0, 1, 1, 1}, "the face drawn to"), probeOf(96, 64, {1, 1, 1, 1}, "another face")}},
        {"DrawTextureIntoTarget", drawTextureIntoTarget, quarterProbes()},
        {"EglImageAsTexture", imageAsTexture, quarterProbes()},
        {"EglImageAsExternalTexture", imageAsExternalTexture, quarterProbes({0.5, 1, 1, 0.5})},
        {"ExternalImageWithAlpha", externalWithAlpha, {probeOf(64, 64, {0.4, 0.6, 0.8, 0.6}, "its own alpha")}},
        {"ExternalImageWithoutAlpha",
         externalWithoutAlpha,
         {probeOf(64, 64, {0.4, 0.6, 0.8, 0.2}, "the current alpha")}},
        {"EglImageCropped", imageCropped, {probeOf(96, 96, red, "its lower left texel alone")}},
    };
    std::vector<Probe> both = quarterProbes({1.5, 1.5, 1.5, 1});
    for (size_t i = 0; i < 2; ++i)
        both[i] = probeOf(i ? 96 : 32, 16, i ? Colour{0, 0.5, 0, 1} : Colour{0.5, 0, 0, 1}, "unit 0 alone");
    scenes.push_back({"ExternalImageOnUnit1", externalOnUnit1, both});
    return scenes;
}
