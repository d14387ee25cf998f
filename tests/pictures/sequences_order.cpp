// SPDX-License-Identifier: MIT
// The same calls in every order: enables, binds, uploads, environments and draws around each other.
#include "pictures/sequences.h"
#include "pictures/textures.h"

#include <algorithm>
#include <array>

namespace {

void drawTexturedPart()
{
    glColor4f(0.8f, 0.6f, 0.4f, 0.5f);
    drawRectangle(-0.8f, -0.8f, 0.8f, 0.8f);
}

// A luminance-alpha texture with a blending environment: format and environment both show in the picture.
void bindTexture()
{
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
}

void uploadTexture()
{
    static const GLubyte texels[] = {255, 128, 64, 255, 128, 30, 200, 200};
    nearestFilter();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE_ALPHA, 2, 2, 0, GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, texels);
}

void enableTexture()
{
    glEnable(GL_TEXTURE_2D);
}

void setEnvironment()
{
    const GLfloat colour[] = {0, 0.5f, 1, 1};
    setEnv(GL_TEXTURE_ENV_MODE, GL_BLEND);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, colour);
}

void texturedState()
{
    bindTexture();
    uploadTexture();
    enableTexture();
    setEnvironment();
}

// All orders of bind, upload, enable and environment in which the upload follows the bind; after every call a draw that
// is not looked at, and disable and enable in between.
void ordersOfTextureCalls(Stage &stage)
{
    using Call = void (*)();
    const std::array<std::pair<const char *, Call>, 4> calls = {
        {{"bind", bindTexture}, {"upload", uploadTexture}, {"enable", enableTexture}, {"environment", setEnvironment}}};
    std::array<size_t, 4> order = {0, 1, 2, 3};
    do {
        if (std::find(order.begin(), order.end(), 0u) > std::find(order.begin(), order.end(), 1u)) continue;
        for (const bool between : {false, true}) {
            newContext(stage);
            std::string what = between ? "with draws between:" : "in a row:";
            for (const size_t i : order) {
                calls[i].second();
                what += std::string(" ") + calls[i].first;
                if (between) drawTexturedPart();
            }
            compare(stage, what, drawTexturedPart, texturedState);
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

void prepareAll()
{
    const GLfloat plane[] = {1, 0.5f, 0, 0.2f};
    const GLfloat fog[] = {0, 0, 1, 1};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, -1);
    glFogfv(GL_FOG_COLOR, fog);
    glAlphaFunc(GL_GREATER, 0.6f);
    glNormal3f(0, 0.6f, 0.8f);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 4);
    quartersTexture();
    glLineWidth(5);
    glPointSize(20);
}

// A bit per capability of kSwitches.
constexpr GLenum kSwitches[] = {GL_LIGHTING,   GL_LIGHT0,     GL_COLOR_MATERIAL, GL_FOG,
                                GL_ALPHA_TEST, GL_TEXTURE_2D, GL_CLIP_PLANE0,    GL_NORMALIZE};

void drawAllKinds()
{
    static const GLfloat line[] = {-0.9f, 0.85f, 0.9f, 0.7f};
    glColor4f(0.9f, 0.7f, 0.3f, 0.5f); // the alpha test drops this
    drawRectangle(-0.9f, -0.9f, 0.9f, 0.1f, 0.25f);
    glColor4f(0.3f, 0.7f, 0.9f, 0.8f);
    drawRectangle(-0.9f, 0.15f, 0.9f, 0.6f, 0.25f);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, line);
    glDrawArrays(GL_LINES, 0, 2);
    glDrawArrays(GL_POINTS, 1, 1);
    glDisableClientState(GL_VERTEX_ARRAY);
}

// Single capabilities on and off in a walk through their combinations, one change at a time, in one context.
constexpr size_t kSteps = 64;

void switchesOneByOne(Stage &stage)
{
    newContext(stage);
    prepareAll();
    uint32_t on = 0;
    for (uint32_t step = 1; step <= kSteps; ++step) {
        // The changed bit of a reflected code over eight bits, spread by a stride that meets all of them.
        const uint32_t bit = (static_cast<uint32_t>(__builtin_ctz(step)) + step / 16 * 3) % 8;
        on ^= 1u << bit;
        (on >> bit & 1 ? glEnable : glDisable)(kSwitches[bit]);
        compare(stage, "switches " + std::to_string(on), drawAllKinds, [on] {
            prepareAll();
            for (uint32_t i = 0; i < 8; ++i)
                if (on >> i & 1) glEnable(kSwitches[i]);
        });
    }
}

// On, off and on again beside none or all of the others, with and without draws between, must not leave anything
// behind.
void switchesBackAndForth(Stage &stage)
{
    for (const bool others : {false, true}) {
        newContext(stage);
        const auto prepare = [others](GLenum except) {
            prepareAll();
            for (const GLenum capability : kSwitches)
                if (others && capability != except) glEnable(capability);
        };
        prepare(0);
        for (const GLenum capability : kSwitches) {
            glEnable(capability);
            drawAllKinds();
            glDisable(capability);
            compare(stage, "off again", drawAllKinds, [&] { prepare(capability); });
            glEnable(capability);
            glDisable(capability);
            glEnable(capability);
            compare(stage, "on again", drawAllKinds, [&] {
                prepare(capability);
                glEnable(capability);
            });
            (others ? glEnable : glDisable)(capability);
        }
    }
}

// Lights that come and go move the places of the others.
void lightsComeAndGo(Stage &stage)
{
    const auto setLight = [](int i) {
        const GLfloat diffuse[] = {0.1f * static_cast<float>(i), 0.3f, 0.5f - 0.05f * static_cast<float>(i), 1};
        const GLfloat position[] = {0.2f * static_cast<float>(i) - 0.8f, 0.3f, 1, i % 2 ? 1.0f : 0.0f};
        const GLenum light = GL_LIGHT0 + static_cast<GLenum>(i);
        glLightfv(light, GL_DIFFUSE, diffuse);
        glLightfv(light, GL_POSITION, position);
        if (i % 4 == 3) glLightf(light, GL_SPOT_CUTOFF, 60);
    };
    const auto prepare = [&] {
        glEnable(GL_LIGHTING);
        for (int i = 0; i < 8; ++i)
            setLight(i);
    };
    newContext(stage);
    prepare();
    uint32_t on = 0;
    for (const int i : {3, 0, 7, 3, 5, 0, 2, 6, 7, 1, 4, 0, 3, 7, 5, 2}) {
        on ^= 1u << i;
        (on >> i & 1 ? glEnable : glDisable)(GL_LIGHT0 + static_cast<GLenum>(i));
        compare(
            stage, "lights " + std::to_string(on), [] { drawRectangle(-0.9f, -0.9f, 0.9f, 0.9f); },
            [&, on] {
                prepare();
                for (int k = 0; k < 8; ++k)
                    if (on >> k & 1) glEnable(GL_LIGHT0 + static_cast<GLenum>(k));
            });
    }
}

} // namespace

std::vector<Sequence> orderSequences()
{
    return {{"OrdersOfTextureCalls", 24, ordersOfTextureCalls},
            {"SwitchesOneByOne", kSteps, switchesOneByOne},
            {"SwitchesBackAndForth", 32, switchesBackAndForth},
            {"LightsComeAndGo", 16, lightsComeAndGo}};
}
