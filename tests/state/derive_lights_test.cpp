// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class DeriveLights : public StateTest {
protected:
    LightingState &derive()
    {
        deriveLights(ctx);
        return ctx->lighting;
    }
    void setPosition(GLenum light, GLfloat w)
    {
        const GLfloat position[4] = {0, 1, 0, w};
        glLightfv(light, GL_POSITION, position);
    }
    void setColor(GLenum light, GLenum pname, Vec4 color)
    {
        glLightfv(light, pname, color.data());
    }
    void enableColouredLight1()
    {
        glEnable(GL_LIGHT1);
        setColor(GL_LIGHT1, GL_AMBIENT, {0.5f, 0.25f, 1, 2});
        setColor(GL_LIGHT1, GL_DIFFUSE, {1, 2, 3, 4});
        setColor(GL_LIGHT1, GL_SPECULAR, {8, 4, 2, 1});
    }
    void setMaterial(GLenum pname, Vec4 color)
    {
        glMaterialfv(GL_FRONT_AND_BACK, pname, color.data());
    }
};

} // namespace

TEST_F(DeriveLights, KindsFollowPositionBeforeCutoff)
{
    for (const GLenum light : {GL_LIGHT0, GL_LIGHT1, GL_LIGHT2, GL_LIGHT3})
        glEnable(light);
    setPosition(GL_LIGHT0, 0);
    glLightf(GL_LIGHT0, GL_SPOT_CUTOFF, 30); // directional lights are no spots
    setPosition(GL_LIGHT1, 1);
    setPosition(GL_LIGHT2, 2);
    glLightf(GL_LIGHT2, GL_SPOT_CUTOFF, 90);
    setPosition(GL_LIGHT4, 0);

    const LightingState &lighting = derive();
    EXPECT_EQ(lighting.lights[0].kind, LIGHT_DIRECTIONAL);
    EXPECT_EQ(lighting.lights[1].kind, LIGHT_POINT);
    EXPECT_EQ(lighting.lights[2].kind, LIGHT_SPOT);
    EXPECT_EQ(lighting.lights[3].kind, LIGHT_DIRECTIONAL);
    EXPECT_EQ(lighting.lights[4].kind, LIGHT_OFF);
    EXPECT_EQ(lighting.directionalMask, 0x9u);
    EXPECT_EQ(lighting.pointMask, 0x2u);
    EXPECT_EQ(lighting.spotMask, 0x4u);
}

TEST_F(DeriveLights, DisabledLightsLeaveTheMasks)
{
    setPosition(GL_LIGHT1, 1);
    glEnable(GL_LIGHT1);
    EXPECT_EQ(derive().pointMask, 0x2u);
    glDisable(GL_LIGHT1);
    EXPECT_EQ(derive().pointMask, 0u);
    EXPECT_EQ(ctx->lighting.lights[1].kind, LIGHT_OFF);
}

TEST_F(DeriveLights, AChangedPositionMovesTheLightToAnotherMask)
{
    glEnable(GL_LIGHT6);
    setPosition(GL_LIGHT6, 1);
    derive();
    setPosition(GL_LIGHT6, 0);
    EXPECT_EQ(derive().pointMask, 0u);
    EXPECT_EQ(ctx->lighting.directionalMask, 0x40u);
}

TEST_F(DeriveLights, ProductsAreComponentByComponent)
{
    enableColouredLight1();
    setMaterial(GL_AMBIENT, {2, 4, 8, 16});
    setMaterial(GL_DIFFUSE, {0.5f, 0.5f, 2, 2});
    setMaterial(GL_SPECULAR, {1, 0, -1, 0.5f});
    const Light &light = derive().lights[1];
    EXPECT_EQ(values(light.ambientProduct), (Vec4{1, 1, 8, 32}));
    EXPECT_EQ(values(light.diffuseProduct), (Vec4{0.5f, 1, 6, 8}));
    EXPECT_EQ(values(light.specularProduct), (Vec4{8, 0, -2, 0.5f}));
}

TEST_F(DeriveLights, ColorMaterialLeavesAmbientAndDiffuseOfTheLight)
{
    enableColouredLight1();
    setMaterial(GL_SPECULAR, {0.5f, 0.5f, 0.5f, 0.5f});
    derive();
    glEnable(GL_COLOR_MATERIAL);
    const Light &light = derive().lights[1];
    EXPECT_EQ(values(light.ambientProduct), (Vec4{0.5f, 0.25f, 1, 2}));
    EXPECT_EQ(values(light.diffuseProduct), (Vec4{1, 2, 3, 4}));
    EXPECT_EQ(values(light.specularProduct), (Vec4{4, 2, 1, 0.5f}));

    glDisable(GL_COLOR_MATERIAL);
    EXPECT_EQ(values(derive().lights[1].ambientProduct), (Vec4{0.5f * 0.2f, 0.25f * 0.2f, 0.2f, 2}));
}

TEST_F(DeriveLights, SceneColorIsEmissionPlusGlobalAmbientWithTheDiffuseAlpha)
{
    setMaterial(GL_EMISSION, {0.5f, 0.25f, 0, 9});
    setMaterial(GL_AMBIENT, {1, 2, 4, 9});
    setMaterial(GL_DIFFUSE, {9, 9, 9, 0.75f});
    const GLfloat ambient[4] = {0.5f, 0.5f, 0.125f, 0.3f};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
    EXPECT_EQ(values(derive().sceneColor), (Vec4{1, 1.25f, 0.5f, 0.75f}));

    glEnable(GL_COLOR_MATERIAL);
    EXPECT_EQ(values(derive().sceneColor), (Vec4{0.5f, 0.5f, 0.125f, 0.3f}));
}

TEST_F(DeriveLights, ZeroMasksCountDisabledLightsAndProductsThatAreNowherePositive)
{
    derive();
    EXPECT_EQ(ctx->lighting.zeroAmbientMask, 0xFFu);
    EXPECT_EQ(ctx->lighting.zeroDiffuseMask, 0xFFu);
    EXPECT_EQ(ctx->lighting.zeroSpecularMask, 0xFFu);

    setColor(GL_LIGHT2, GL_AMBIENT, {0, 0, 0, 0});
    setColor(GL_LIGHT2, GL_DIFFUSE, {0, 0, 0.001f, 0});
    setColor(GL_LIGHT2, GL_SPECULAR, {-1, -1, -1, 0});
    setMaterial(GL_SPECULAR, {1, 1, 1, 1});
    glEnable(GL_LIGHT2);
    derive();
    EXPECT_EQ(ctx->lighting.zeroAmbientMask, 0xFFu);
    EXPECT_EQ(ctx->lighting.zeroDiffuseMask, 0xFBu);
    EXPECT_EQ(ctx->lighting.zeroSpecularMask, 0xFFu);

    setColor(GL_LIGHT2, GL_AMBIENT, {0, 0, 0, 1}); // alpha counts
    derive();
    EXPECT_EQ(ctx->lighting.zeroAmbientMask, 0xFBu);
    glDisable(GL_LIGHT2);
    derive();
    EXPECT_EQ(ctx->lighting.zeroAmbientMask, 0xFFu);
    EXPECT_EQ(ctx->lighting.zeroDiffuseMask, 0xFFu);
}

TEST_F(DeriveLights, OnePositiveComponentIsEnoughToCountAsLight)
{
    setMaterial(GL_AMBIENT, {1, 1, 1, 1});
    setMaterial(GL_DIFFUSE, {1, 1, 1, 1});
    setMaterial(GL_SPECULAR, {1, 1, 1, 1});
    glEnable(GL_LIGHT5);
    for (size_t component = 0; component < 4; ++component) {
        SCOPED_TRACE(component);
        Vec4 color = {0, -1, 0, 0};
        for (const GLenum pname : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR})
            setColor(GL_LIGHT5, pname, color);
        derive();
        EXPECT_EQ(ctx->lighting.zeroAmbientMask, 0xFFu);
        EXPECT_EQ(ctx->lighting.zeroDiffuseMask, 0xFFu);
        EXPECT_EQ(ctx->lighting.zeroSpecularMask, 0xFFu);

        color[component] = 0.001f;
        for (const GLenum pname : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR})
            setColor(GL_LIGHT5, pname, color);
        derive();
        EXPECT_EQ(ctx->lighting.zeroAmbientMask, 0xDFu);
        EXPECT_EQ(ctx->lighting.zeroDiffuseMask, 0xDFu);
        EXPECT_EQ(ctx->lighting.zeroSpecularMask, 0xDFu);
    }
}

TEST_F(DeriveLights, NaNProductsAreNotPositive)
{
    setColor(GL_LIGHT0, GL_AMBIENT, {kNaN, 0, 0, 0});
    glEnable(GL_LIGHT0);
    EXPECT_EQ(derive().zeroAmbientMask, 0xFFu);
}

TEST_F(DeriveLights, OnlyMarkedLightsAreWorkedAndTheMarksAreCleared)
{
    ctx->lighting.lights[3].enabled = 1;
    ctx->lighting.geometryDirty = 1u << 3;
    derive();
    EXPECT_EQ(ctx->lighting.directionalMask, 0x08u);
    ctx->lighting.lights[4].enabled = 1;
    ctx->lighting.geometryDirty = 1u << 4;
    ctx->lighting.colorDirty[0] = ctx->lighting.colorDirty[1] = 1u << 3;
    ctx->lighting.sceneColorDirty = 1;
    ctx->lighting.change = LIGHTING_TWO_SIDE;
    derive();
    EXPECT_EQ(ctx->lighting.directionalMask, 0x18u);
    EXPECT_EQ(ctx->lighting.zeroAmbientMask, 0xF7u);
    EXPECT_EQ(ctx->lighting.geometryDirty, 0u);
    EXPECT_EQ(ctx->lighting.colorDirty[0], 0u);
    EXPECT_EQ(ctx->lighting.colorDirty[1], 0u);
    EXPECT_EQ(ctx->lighting.sceneColorDirty, 0u);
    EXPECT_EQ(ctx->lighting.change, 0u);
}
