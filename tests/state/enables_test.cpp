// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

// A place that holds one capability, and what a change of it marks.
struct Capability {
    const char *name;
    GLenum cap;
    std::function<uint32_t(const GLIContext *)> read;
    uint32_t dirty;
    uint32_t keyDirty;
    uint32_t palette;
};

const std::vector<Capability> &keptCapabilities()
{
    static const std::vector<Capability> list = {
        {"lighting", GL_LIGHTING, [](auto *c) { return uint32_t(c->key.lighting); }, 0x4, 0, 0},
        {"colour material", GL_COLOR_MATERIAL, [](auto *c) { return uint32_t(c->key.colorMaterial); }, 0x4, 0, 0},
        {"normalize", GL_NORMALIZE, [](auto *c) { return uint32_t(c->key.normalizeNormal); }, 0x4, 0, 0},
        {"rescale", GL_RESCALE_NORMAL, [](auto *c) { return c->enables.rescaleNormal; }, 0x4, 0, 0xFFFFF},
        {"fog", GL_FOG, [](auto *c) { return c->fog.enabled; }, 0x10000, 0, 0},
        {"alpha test", GL_ALPHA_TEST, [](auto *c) { return c->alphaTest.enabled; }, 0x4000, 64, 0},
        {"clip plane", GL_CLIP_PLANE0, [](auto *c) { return uint32_t(c->key.userClip); }, 0x800, 0, 0},
        {"palette", GL_MATRIX_PALETTE_OES, [](auto *c) { return uint32_t(c->key.matrixPalette); }, 0x8, 0, 0},
        {"texture generation", GL_TEXTURE_GEN_STR_OES, [](auto *c) { return c->enables.texGen[0]; }, 0x20, 4, 0},
        {"point sprite", GL_POINT_SPRITE_OES, [](auto *c) { return c->enables.pointSprite; }, 0x8000, 0, 0},
        {"point smooth", GL_POINT_SMOOTH, [](auto *c) { return c->enables.pointSmooth; }, 0x8000, 0, 0},
        {"line smooth", GL_LINE_SMOOTH, [](auto *c) { return c->enables.lineSmooth; }, 0, 0, 0},
        {"alpha to one", GL_SAMPLE_ALPHA_TO_ONE, [](auto *c) { return c->enables.sampleAlphaToOne; }, 0, 0, 0},
        {"alpha factor", 0x8C9F, [](auto *c) { return uint32_t(c->key.alphaFactor); }, 0, 0, 0},
    };
    return list;
}

class Enables : public StateTest {};

} // namespace

TEST_F(Enables, EachKeptCapabilityIsStoredWithItsMarksAndNotForwarded)
{
    for (const Capability &capability : keptCapabilities()) {
        SCOPED_TRACE(capability.name);
        for (const uint32_t value : {1u, 0u}) {
            clearMarks(ctx);
            value ? glEnable(capability.cap) : glDisable(capability.cap);
            EXPECT_EQ(capability.read(ctx), value);
            EXPECT_EQ(ctx->dirty, capability.dirty);
            EXPECT_EQ(ctx->keyDirty, capability.keyDirty);
            EXPECT_EQ(ctx->palette.dirty, capability.palette);
        }
    }
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Enables, AnEqualValueMarksNothing)
{
    for (const Capability &capability : keptCapabilities()) {
        SCOPED_TRACE(capability.name);
        for (const bool on : {false, true}) {
            if (on) glEnable(capability.cap);
            clearMarks(ctx);
            const std::vector<unsigned char> before = bytesOf(ctx);
            on ? glEnable(capability.cap) : glDisable(capability.cap);
            EXPECT_EQ(bytesOf(ctx), before);
        }
    }
}

TEST_F(Enables, EveryLightHasItsSwitchItsGeometryMarkAndItsColorMarks)
{
    for (uint32_t i = 0; i < kMaxLights; ++i) {
        SCOPED_TRACE(i);
        clearMarks(ctx);
        glEnable(GL_LIGHT0 + i);
        EXPECT_EQ(ctx->lighting.lights[i].enabled, 1u);
        EXPECT_EQ(ctx->key.lightCount, i + 1);
        EXPECT_EQ(ctx->lighting.geometryDirty, 1u << i);
        EXPECT_EQ(ctx->lighting.colorDirty[0], 1u << i);
        EXPECT_EQ(ctx->lighting.colorDirty[1], 1u << i);
        EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_ENABLES));
    }
    glEnable(GL_LIGHT3);
    EXPECT_EQ(ctx->key.lightCount, 8u);
    for (uint32_t i = 0; i < kMaxLights; ++i) {
        clearMarks(ctx);
        glDisable(GL_LIGHT0 + i);
        EXPECT_EQ(ctx->key.lightCount, 7 - i);
        EXPECT_EQ(ctx->lighting.geometryDirty, 1u << i);
    }
    glDisable(GL_LIGHT0);
    EXPECT_EQ(ctx->key.lightCount, 0u);
    EXPECT_EQ(ctx->key.eyeCoordinates, 0u) << "the count ran over its four bits";
}

TEST_F(Enables, ANinthLightIsTheBackends)
{
    glEnable(GL_LIGHT7 + 1);
    glDisable(GL_LIGHT0 - 1);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glEnable(0x4008)", "glDisable(0x3fff)"}));
    EXPECT_EQ(ctx->key.lightCount, 0u);
}

TEST_F(Enables, OtherCapabilitiesAreForwarded)
{
    for (const GLenum cap : {GL_BLEND, GL_DEPTH_TEST, GL_CULL_FACE, GL_SCISSOR_TEST, GL_STENCIL_TEST, GL_DITHER,
                             GL_MULTISAMPLE, GL_COLOR_LOGIC_OP, GL_POLYGON_OFFSET_FILL, 0x1234}) {
        takeCalls();
        glEnable(cap);
        glDisable(cap);
        char text[32];
        std::snprintf(text, sizeof(text), "(0x%04x)", cap);
        EXPECT_EQ(takeCalls(),
                  (std::vector<std::string>{std::string("glEnable") + text, std::string("glDisable") + text}));
    }
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Enables, LightingDecidesThePerVertexColorToo)
{
    glEnable(GL_LIGHTING);
    EXPECT_EQ(ctx->key.perVertexColor, 1u);
    glDisable(GL_LIGHTING);
    EXPECT_EQ(ctx->key.perVertexColor, 0u);
    glEnableClientState(GL_COLOR_ARRAY);
    glEnable(GL_LIGHTING);
    glDisable(GL_LIGHTING);
    EXPECT_EQ(ctx->key.perVertexColor, 1u);
}

TEST_F(Enables, ColorMaterialMarksAllLightColorsAndTheSceneColor)
{
    glEnable(GL_COLOR_MATERIAL);
    EXPECT_EQ(ctx->lighting.colorDirty[0], 0xFFu);
    EXPECT_EQ(ctx->lighting.colorDirty[1], 0xFFu);
    EXPECT_EQ(ctx->lighting.sceneColorDirty, 1u);
    EXPECT_EQ(ctx->lighting.geometryDirty, 0u);
}

TEST_F(Enables, FogSetsItsKeyFields)
{
    glEnable(GL_FOG);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_EXP));
    glDisable(GL_FOG);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_NONE));
}

TEST_F(Enables, TextureGenerationIsPerActiveUnit)
{
    glActiveTexture(GL_TEXTURE1);
    clearMarks(ctx);
    glEnable(GL_TEXTURE_GEN_STR_OES);
    EXPECT_EQ(ctx->enables.texGen[0], 0u);
    EXPECT_EQ(ctx->enables.texGen[1], 1u);
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_TEXUNIT1));
    EXPECT_EQ(ctx->keyDirty, keyDirtyTexGen(1));
}

TEST_F(Enables, TextureTargetsAreKeptPerActiveUnitAndNotForwarded)
{
    glActiveTexture(GL_TEXTURE1);
    takeCalls();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    EXPECT_EQ(ctx->enables.texture2D[1], 1u);
    EXPECT_EQ(ctx->enables.textureCubeMap[1], 1u);
    EXPECT_EQ(ctx->enables.textureExternal[1], 1u);
    EXPECT_EQ(ctx->enables.texture2D[0], 0u);
    EXPECT_EQ(ctx->key.unit[0].enabled, 0u);
    EXPECT_EQ(ctx->key.unit[1].enabled, 1u);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(Enables, AlphaTestGoesToABackendThatCanDoIt)
{
    useVendorBackend();
    glEnable(GL_ALPHA_TEST);
    glDisable(GL_ALPHA_TEST);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glEnable(0x0bc0)", "glDisable(0x0bc0)"}));
    EXPECT_EQ(ctx->alphaTest.enabled, 0u);
    EXPECT_EQ(ctx->dirty, 0u);
    EXPECT_EQ(ctx->keyDirty, 0u);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Enables, FogStaysWithTheLibraryOverEitherBackend)
{
    useVendorBackend();
    glEnable(GL_FOG);
    EXPECT_EQ(ctx->key.fogMode, uint32_t(FOG_EXP));
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(Enables, AMissingBackendFunctionIsAnAssertion)
{
    startWithout({"glEnable", "glDisable"});
    glEnable(GL_BLEND);
    glDisable(GL_BLEND);
    EXPECT_EQ(fakePlatform().assertions, (std::vector<std::string>{"glEnable_2_0", "glDisable_2_0"}));
}

TEST_F(Enables, AreInertWithoutContextAndInInterfaceOnlyMode)
{
    std::vector<std::function<void()>> calls = {[] { glEnable(GL_BLEND); }, [] { glDisable(GL_BLEND); },
                                                [] { glEnable(GL_LIGHT0); }};
    for (const Capability &capability : keptCapabilities())
        calls.emplace_back([cap = capability.cap] { glEnable(cap); });
    expectInert(*context, calls);
}
