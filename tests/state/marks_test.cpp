// SPDX-License-Identifier: MIT
// Change marks of all setters: a call adds its own and leaves those of earlier calls.
#include "state/state_test.h"

namespace {

class Marks : public StateTest {
protected:
    static std::vector<uint32_t> words(const GLIContext *ctx)
    {
        std::vector<uint32_t> all;
        visitMarks(ctx, [&](auto word) { all.push_back(word); });
        return all;
    }

    static void setEveryMark(GLIContext *ctx)
    {
        visitMarks(ctx, [](auto &word) { word = static_cast<std::remove_reference_t<decltype(word)>>(~0u); });
        ctx->lighting.sceneColorDirty = 1; // the one that is no mask
    }
};

const GLfloat kFour[4] = {0.5f, 0.25f, 0.125f, 1};
const GLuint kBuffer = 3;
const GLint kRect[4] = {1, 2, 3, 4};

struct Setter {
    const char *name;
    void (*call)();
};

// Each changes something that it has to mark, in a fresh context with lighting on.
constexpr Setter kSetters[] = {
    {"clip plane", [] { glClipPlanef(GL_CLIP_PLANE0, kFour); }},
    {"matrix", [] { glTranslatef(1, 2, 3); }},
    {"texture matrix",
     [] {
         glMatrixMode(GL_TEXTURE);
         glTranslatef(1, 2, 3);
     }},
    {"palette load", [] { glLoadPaletteFromModelViewMatrixOES(); }},
    {"weight pointer", [] { glWeightPointerOES(2, GL_SHORT, 0, kFour); }},
    {"matrix index pointer", [] { glMatrixIndexPointerOES(2, GL_UNSIGNED_BYTE, 0, kFour); }},
    {"vertex pointer", [] { glVertexPointer(2, GL_FLOAT, 0, kFour); }},
    {"coordinate pointer", [] { glTexCoordPointer(2, GL_FLOAT, 0, kFour); }},
    {"client array", [] { glEnableClientState(GL_NORMAL_ARRAY); }},
    {"buffer deletion", [] { glDeleteBuffers(1, &kBuffer); }},
    {"current colour", [] { glColor4f(1, 0, 0, 1); }},
    {"alpha function", [] { glAlphaFunc(GL_LESS, 0.5f); }},
    {"point size pointer", [] { glPointSizePointerOES(GL_FLOAT, 0, kFour); }},
    {"light colour", [] { glLightfv(GL_LIGHT2, GL_DIFFUSE, kFour); }},
    {"light position", [] { glLightfv(GL_LIGHT2, GL_POSITION, kFour); }},
    {"spot cutoff", [] { glLightf(GL_LIGHT2, GL_SPOT_CUTOFF, 30); }},
    {"material ambient", [] { glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, kFour); }},
    {"material emission", [] { glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, kFour); }},
    {"shininess", [] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 9); }},
    {"global ambient", [] { glLightModelfv(GL_LIGHT_MODEL_AMBIENT, kFour); }},
    {"two sides", [] { glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1); }},
    {"light", [] { glEnable(GL_LIGHT2); }},
    {"no lighting", [] { glDisable(GL_LIGHTING); }},
    {"colour material", [] { glEnable(GL_COLOR_MATERIAL); }},
    {"normalize", [] { glEnable(GL_NORMALIZE); }},
    {"rescale", [] { glEnable(GL_RESCALE_NORMAL); }},
    {"fog", [] { glEnable(GL_FOG); }},
    {"fog density", [] { glFogf(GL_FOG_DENSITY, 2); }},
    {"alpha test", [] { glEnable(GL_ALPHA_TEST); }},
    {"clip", [] { glEnable(GL_CLIP_PLANE0); }},
    {"palette", [] { glEnable(GL_MATRIX_PALETTE_OES); }},
    {"point smooth", [] { glEnable(GL_POINT_SMOOTH); }},
    {"attenuation", [] { glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, kFour); }},
    {"generation", [] { glEnable(GL_TEXTURE_GEN_STR_OES); }},
    {"generation mode", [] { glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES); }},
    {"texture and its format", [] { glEnable(GL_TEXTURE_EXTERNAL_OES); }},
    {"crop rectangle", [] { glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, kRect); }},
    {"environment", [] { glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL); }},
    {"combiner", [] { glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, GL_ADD); }},
    {"coordinate replacement", [] { glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 1); }},
};

} // namespace

TEST_F(Marks, EverySetterLeavesTheMarksOfEarlierCalls)
{
    for (const Setter &setter : kSetters) {
        SCOPED_TRACE(setter.name);
        TestContext fresh;
        glEnable(GL_LIGHTING);
        clearMarks(fresh.ctx);
        const std::vector<uint32_t> none = words(fresh.ctx);
        setEveryMark(fresh.ctx);
        const std::vector<uint32_t> all = words(fresh.ctx);
        setter.call();
        EXPECT_EQ(words(fresh.ctx), all);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));

        TestContext other;
        glEnable(GL_LIGHTING);
        clearMarks(other.ctx);
        setter.call();
        EXPECT_NE(words(other.ctx), none) << "it marks nothing: the call proves nothing here";
    }
    context->makeCurrent();
}
