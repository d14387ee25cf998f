// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class Materials : public StateTest {
protected:
    const LightingState &lighting() const
    {
        return ctx->lighting;
    }
    const GLfloat color[4] = {-0.5f, 1.5f, 0.25f, 0.75f};
    const Vec4 stored = {-0.5f, 1.5f, 0.25f, 0.75f};
};

class LightModels : public Materials {};

} // namespace

TEST_F(Materials, StartAsTheStandardSays)
{
    EXPECT_EQ(values(lighting().material.ambient), (Vec4{0.2f, 0.2f, 0.2f, 1}));
    EXPECT_EQ(values(lighting().material.diffuse), (Vec4{0.8f, 0.8f, 0.8f, 1}));
    EXPECT_EQ(values(lighting().material.specular), (Vec4{0, 0, 0, 1}));
    EXPECT_EQ(values(lighting().material.emission), (Vec4{0, 0, 0, 1}));
    EXPECT_EQ(lighting().material.shininess, 0.0f);
}

TEST_F(Materials, EachColorIsStoredUnclampedWithItsOwnMarks)
{
    struct Case {
        GLenum pname;
        GLfloat (Material::*place)[4];
        uint32_t change;
        uint32_t colorMask;
        uint32_t sceneColor;
    };
    const Case cases[] = {
        {GL_AMBIENT, &Material::ambient, LIGHTING_AMBIENT, 0xFF, 1},
        {GL_DIFFUSE, &Material::diffuse, 0, 0xFF, 1},
        {GL_SPECULAR, &Material::specular, 0, 0xFF, 0},
        {GL_EMISSION, &Material::emission, LIGHTING_AMBIENT, 0, 1},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.pname);
        clearMarks(ctx);
        Material expected = lighting().material;
        std::copy_n(color, 4, expected.*c.place);
        expectAccepted([&] { glMaterialfv(GL_FRONT_AND_BACK, c.pname, color); });
        EXPECT_EQ(std::memcmp(&expected, &lighting().material, sizeof(expected)), 0) << "this colour and no other";
        EXPECT_EQ(lighting().change, c.change);
        EXPECT_EQ(lighting().colorDirty[0], c.colorMask);
        EXPECT_EQ(lighting().colorDirty[1], c.colorMask);
        EXPECT_EQ(lighting().sceneColorDirty, c.sceneColor);
        EXPECT_EQ(lighting().geometryDirty, 0u);
    }
}

TEST_F(Materials, AmbientAndDiffuseSetsBothWithBothMarks)
{
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, color);
    EXPECT_EQ(values(lighting().material.ambient), stored);
    EXPECT_EQ(values(lighting().material.diffuse), stored);
    EXPECT_EQ(values(lighting().material.specular), (Vec4{0, 0, 0, 1}));
    EXPECT_EQ(lighting().change, uint32_t(LIGHTING_AMBIENT));
    EXPECT_EQ(lighting().colorDirty[0], 0xFFu);
    EXPECT_EQ(lighting().sceneColorDirty, 1u);
}

TEST_F(Materials, ShininessIsCheckedOnBothSides)
{
    expectAccepted([] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 128.0f); });
    EXPECT_EQ(lighting().material.shininess, 128.0f);
    EXPECT_EQ(lighting().change, uint32_t(LIGHTING_SHININESS));
    EXPECT_EQ(lighting().colorDirty[0], 0u);
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 128.1f); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, -0.1f); });
    expectAccepted([] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 0.0f); });
    expectAccepted([] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, kNaN); });
    EXPECT_TRUE(std::isnan(lighting().material.shininess));
}

TEST_F(Materials, RepeatedShininessIsNotCheckedAtAll)
{
    ctx->lighting.material.shininess = 500.0f; // as if an earlier build had stored it
    expectAccepted([] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 500.0f); });
    EXPECT_EQ(lighting().change, 0u);
}

TEST_F(Materials, OnlyBothFacesTogetherAreAccepted)
{
    for (const GLenum face : {GL_FRONT, GL_BACK, 0})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glMaterialfv(face, GL_AMBIENT, color); });
}

TEST_F(Materials, UnknownNamesAreInvalidEnum)
{
    for (const GLenum pname : {GLenum(GL_POSITION), GLenum(GL_AMBIENT_AND_DIFFUSE + 1)})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glMaterialfv(GL_FRONT_AND_BACK, pname, color); });
}

TEST_F(Materials, DrawsAreMarkedOnlyWithLightingOnAndAfterSuccess)
{
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, color);
    EXPECT_EQ(ctx->dirty, 0u);

    glEnable(GL_LIGHTING);
    clearMarks(ctx);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, -1.0f);
    EXPECT_EQ(ctx->dirty, 0u);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 0.0f); // the stored value: still a success
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_ENABLES));
}

TEST_F(Materials, FixedFormsDivideBy65536)
{
    const GLfixed fixed[4] = {0x10000, 0x8000, -0x10000, 0};
    glMaterialxv(GL_FRONT_AND_BACK, GL_EMISSION, fixed);
    EXPECT_EQ(values(lighting().material.emission), (Vec4{1, 0.5f, -1, 0}));
    glMaterialx(GL_FRONT_AND_BACK, GL_SHININESS, 20 << 16);
    EXPECT_EQ(lighting().material.shininess, 20.0f);
    const GLfixed thirty = 30 << 16;
    glMaterialxv(GL_FRONT_AND_BACK, GL_SHININESS, &thirty);
    EXPECT_EQ(lighting().material.shininess, 30.0f);
    const Vec4 converted = {1, 0.5f, -1, 0};
    glMaterialxv(GL_FRONT_AND_BACK, GL_AMBIENT, fixed);
    EXPECT_EQ(values(lighting().material.ambient), converted);
    glMaterialxv(GL_FRONT_AND_BACK, GL_DIFFUSE, fixed);
    EXPECT_EQ(values(lighting().material.diffuse), converted);
    glMaterialxv(GL_FRONT_AND_BACK, GL_SPECULAR, fixed);
    EXPECT_EQ(values(lighting().material.specular), converted);
    const GLfixed both[4] = {0x20000, 0, 0x4000, 0x10000};
    glMaterialxv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, both);
    EXPECT_EQ(values(lighting().material.ambient), (Vec4{2, 0, 0.25f, 1}));
    EXPECT_EQ(values(lighting().material.diffuse), (Vec4{2, 0, 0.25f, 1}));
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glMaterialxv(GL_FRONT_AND_BACK, GL_POSITION, nullptr); });
}

TEST_F(Materials, ScalarFormOfAColorSetsItsRed)
{
    expectAccepted([] { glMaterialf(GL_FRONT_AND_BACK, GL_DIFFUSE, 0.5f); });
    EXPECT_EQ(values(lighting().material.diffuse), (Vec4{0.5f, 0, 0, 0}));
    expectAccepted([] { glMaterialx(GL_FRONT_AND_BACK, GL_AMBIENT, 0x4000); });
    EXPECT_EQ(values(lighting().material.ambient), (Vec4{0.25f, 0, 0, 0}));
    expectAccepted([] { glLightModelf(GL_LIGHT_MODEL_AMBIENT, 0.75f); });
    EXPECT_EQ(values(lighting().model.ambient), (Vec4{0.75f, 0, 0, 0}));
}

TEST_F(LightModels, TwoSideIsTrueForAnythingButZeroAndMarksOnlyChanges)
{
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 0.0f);
    EXPECT_EQ(lighting().change, 0u);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, -0.25f);
    EXPECT_EQ(lighting().model.twoSide, 1u);
    EXPECT_EQ(lighting().change, uint32_t(LIGHTING_TWO_SIDE));
    clearMarks(ctx);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 7.0f);
    EXPECT_EQ(lighting().change, 0u);
    glLightModelx(GL_LIGHT_MODEL_TWO_SIDE, 0);
    EXPECT_EQ(lighting().model.twoSide, 0u);
    glLightModelx(GL_LIGHT_MODEL_TWO_SIDE, 1); // 1/65536
    EXPECT_EQ(lighting().model.twoSide, 1u);
}

TEST_F(LightModels, AmbientIsStoredAndMarksTheSceneColor)
{
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, color);
    EXPECT_EQ(values(lighting().model.ambient), stored);
    EXPECT_EQ(lighting().change, uint32_t(LIGHTING_AMBIENT));
    EXPECT_EQ(lighting().sceneColorDirty, 1u);
    EXPECT_EQ(lighting().colorDirty[0], 0u);
    EXPECT_EQ(ctx->dirty, 0u);

    const GLfixed fixed[4] = {0x8000, 0, 0x10000, 0x4000};
    glLightModelxv(GL_LIGHT_MODEL_AMBIENT, fixed);
    EXPECT_EQ(values(lighting().model.ambient), (Vec4{0.5f, 0, 1, 0.25f}));
}

TEST_F(LightModels, MarkDrawsWithLightingOn)
{
    glEnable(GL_LIGHTING);
    clearMarks(ctx);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 0.0f);
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_ENABLES));
}

TEST_F(LightModels, UnknownNamesAreInvalidEnum)
{
    expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glLightModelfv(GL_AMBIENT, color); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glLightModelxv(GL_LIGHT_MODEL_AMBIENT + 1, nullptr); });
}

TEST_F(Materials, AreInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, nullptr); },
                              [] { glMaterialxv(GL_FRONT_AND_BACK, GL_AMBIENT, nullptr); },
                              [] { glMaterialf(GL_FRONT, GL_SHININESS, -1); },
                              [] { glMaterialx(GL_FRONT_AND_BACK, GL_SHININESS, 1); },
                              [] { glLightModelfv(GL_LIGHT_MODEL_AMBIENT, nullptr); },
                              [] { glLightModelxv(GL_LIGHT_MODEL_AMBIENT, nullptr); },
                              [] { glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1); },
                              [] { glLightModelx(0, 0); },
                          });
}
