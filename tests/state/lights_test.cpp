// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class Lights : public StateTest {
protected:
    const Light &light(uint32_t index) const
    {
        return ctx->lighting.lights[index];
    }
};

// A quarter turn about z and a move by (10, 20, 30): (x, y, z) becomes (10 - y, 20 + x, 30 + z).
constexpr GLfloat kTurnAndMove[16] = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1};

} // namespace

TEST_F(Lights, StartAsTheStandardSays)
{
    for (uint32_t i = 0; i < kMaxLights; ++i) {
        SCOPED_TRACE(i);
        const Vec4 colored = i == 0 ? Vec4{1, 1, 1, 1} : Vec4{0, 0, 0, 1};
        EXPECT_EQ(light(i).enabled, 0u);
        EXPECT_EQ(light(i).kind, LIGHT_OFF);
        EXPECT_EQ(values(light(i).ambient), (Vec4{0, 0, 0, 1}));
        EXPECT_EQ(values(light(i).diffuse), colored);
        EXPECT_EQ(values(light(i).specular), colored);
        EXPECT_EQ(values(light(i).position), (Vec4{0, 0, 1, 0}));
        EXPECT_EQ(values(light(i).positionGiven), (Vec4{0, 0, 1, 0}));
        EXPECT_EQ(values(light(i).direction), (Vec3{0, 0, 1}));
        EXPECT_EQ(values(light(i).halfVector), (Vec3{0, 0, 1}));
        EXPECT_EQ(values(light(i).spotDirection), (Vec3{0, 0, -1}));
        EXPECT_EQ(values(light(i).spotDirectionUnit), (Vec3{0, 0, -1}));
        EXPECT_EQ(light(i).packed0[0], 0.0f);
        EXPECT_EQ(light(i).packed0[1], 180.0f);
        EXPECT_EQ(light(i).packed0[2], -1.0f);
        EXPECT_EQ(values(light(i).packed1), (Vec4{1, 0, 0, 0}));
    }
    EXPECT_EQ(values(ctx->lighting.model.ambient), (Vec4{0.2f, 0.2f, 0.2f, 1}));
    EXPECT_EQ(ctx->lighting.model.twoSide, 0u);
}

TEST_F(Lights, ProductsAndSceneColorStartComputedFromTheStartMaterial)
{
    // 1 x 0.8 for light 0; emission 0 + 0.2 x 0.2 for the scene, with the diffuse alpha.
    expectNear(light(0).ambientProduct, {0, 0, 0, 1}, 0);
    expectNear(light(0).diffuseProduct, {0.8f, 0.8f, 0.8f, 1}, 0);
    expectNear(light(0).specularProduct, {0, 0, 0, 1}, 0);
    expectNear(light(3).diffuseProduct, {0, 0, 0, 1}, 0);
    expectNear(ctx->lighting.sceneColor, {0.2f * 0.2f, 0.2f * 0.2f, 0.2f * 0.2f, 1}, 0);
}

TEST_F(Lights, AllStartMarkedForTheFirstLitDraw)
{
    TestContext fresh;
    EXPECT_EQ(fresh->lighting.geometryDirty, 0xFFu);
    EXPECT_EQ(fresh->lighting.colorDirty[0], 0xFFu);
    EXPECT_EQ(fresh->lighting.colorDirty[1], 0xFFu);
    EXPECT_EQ(fresh->lighting.sceneColorDirty, 1u);
}

TEST_F(Lights, ColorsAreStoredUnclampedAndMarkTheLightInBothColorMasks)
{
    struct Case {
        GLenum pname;
        GLfloat (Light::*place)[4];
    };
    for (const Case &c :
         {Case{GL_AMBIENT, &Light::ambient}, Case{GL_DIFFUSE, &Light::diffuse}, Case{GL_SPECULAR, &Light::specular}}) {
        clearMarks(ctx);
        const GLfloat color[4] = {-1.5f, 2.0f, 0.25f, 7.0f};
        glLightfv(GL_LIGHT5, c.pname, color);
        EXPECT_EQ(values(light(5).*c.place), (Vec4{-1.5f, 2.0f, 0.25f, 7.0f}));
        EXPECT_EQ(ctx->lighting.colorDirty[0], 1u << 5);
        EXPECT_EQ(ctx->lighting.colorDirty[1], 1u << 5);
        EXPECT_EQ(ctx->lighting.geometryDirty, 0u);
    }
}

TEST_F(Lights, PositionUnderAnIdentityModelviewIsCopied)
{
    const GLfloat position[4] = {1, -2, 3, 1};
    glLightfv(GL_LIGHT7, GL_POSITION, position);
    EXPECT_EQ(values(light(7).position), (Vec4{1, -2, 3, 1}));
    EXPECT_EQ(values(light(7).positionGiven), (Vec4{1, -2, 3, 1}));
    EXPECT_EQ(ctx->lighting.geometryDirty, 1u << 7);
    EXPECT_EQ(ctx->lighting.colorDirty[0], 0u);

    // A product with zeros would make NaN of the other components.
    constexpr GLfloat infinity = std::numeric_limits<GLfloat>::infinity();
    const GLfloat far[4] = {infinity, 2, 3, 1};
    glLightfv(GL_LIGHT7, GL_POSITION, far);
    EXPECT_EQ(values(light(7).position), (Vec4{infinity, 2, 3, 1}));
    glLightfv(GL_LIGHT7, GL_SPOT_DIRECTION, far);
    EXPECT_EQ(values(light(7).spotDirection), (Vec3{infinity, 2, 3}));
}

TEST_F(Lights, PositionIsDividedByAWOtherThanZeroAndOne)
{
    const GLfloat position[4] = {2, 4, -6, 2};
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    EXPECT_EQ(values(light(0).position), (Vec4{1, 2, -3, 2}));
    EXPECT_EQ(values(light(0).positionGiven), (Vec4{2, 4, -6, 2}));
}

TEST_F(Lights, PositionMovesWithTheModelviewOfTheCall)
{
    glTranslatef(0, 0, -5);
    const GLfloat position[4] = {1, 2, 3, 1};
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    glLoadIdentity();
    EXPECT_EQ(values(light(0).position), (Vec4{1, 2, -2, 1}));
}

TEST_F(Lights, PositionIsTransformedByAGeneralModelview)
{
    glLoadMatrixf(kTurnAndMove);
    const GLfloat position[4] = {1, 2, 3, 1};
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    EXPECT_EQ(values(light(0).position), (Vec4{8, 21, 33, 1}));

    // w = 2 takes the translation twice before the division.
    const GLfloat doubled[4] = {1, 2, 3, 2};
    glLightfv(GL_LIGHT0, GL_POSITION, doubled);
    EXPECT_EQ(values(light(0).positionGiven), (Vec4{18, 41, 63, 2}));
    EXPECT_EQ(values(light(0).position), (Vec4{9, 20.5f, 31.5f, 2}));
}

TEST_F(Lights, DirectionalPositionGivesUnitDirectionAndHalfVector)
{
    const GLfloat position[4] = {3, 0, 4, 0};
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    EXPECT_EQ(values(light(0).position), (Vec4{3, 0, 4, 0}));
    expectNear(light(0).direction, {0.6f, 0, 0.8f}, 1e-6f);
    // (0.6, 0, 1.8) over its length, the square root of 3.6.
    expectNear(light(0).halfVector, {0.31622777f, 0, 0.94868330f}, 1e-6f);
}

TEST_F(Lights, DirectionalPositionIgnoresTheTranslation)
{
    glLoadMatrixf(kTurnAndMove);
    const GLfloat position[4] = {0, -2, 0, 0};
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    EXPECT_EQ(values(light(0).position), (Vec4{2, 0, 0, 0}));
    EXPECT_EQ(values(light(0).direction), (Vec3{1, 0, 0}));
}

TEST_F(Lights, ZeroVectorsStayZeroWhenMadeUnitVectors)
{
    const GLfloat nowhere[4] = {0, 0, 0, 0};
    glLightfv(GL_LIGHT0, GL_POSITION, nowhere);
    EXPECT_EQ(values(light(0).direction), (Vec3{0, 0, 0}));
    EXPECT_EQ(values(light(0).halfVector), (Vec3{0, 0, 1}));

    const GLfloat behind[4] = {0, 0, -3, 0};
    glLightfv(GL_LIGHT0, GL_POSITION, behind);
    EXPECT_EQ(values(light(0).direction), (Vec3{0, 0, -1}));
    EXPECT_EQ(values(light(0).halfVector), (Vec3{0, 0, 0}));

    glLightfv(GL_LIGHT0, GL_SPOT_DIRECTION, nowhere);
    EXPECT_EQ(values(light(0).spotDirectionUnit), (Vec3{0, 0, 0}));
}

TEST_F(Lights, SpotDirectionIsTurnedButNotMoved)
{
    const GLfloat direction[3] = {1, 2, 3};
    glLightfv(GL_LIGHT2, GL_SPOT_DIRECTION, direction);
    EXPECT_EQ(values(light(2).spotDirection), (Vec3{1, 2, 3}));

    glLoadMatrixf(kTurnAndMove);
    clearMarks(ctx);
    glLightfv(GL_LIGHT2, GL_SPOT_DIRECTION, direction);
    EXPECT_EQ(values(light(2).spotDirection), (Vec3{-2, 1, 3}));
    const GLfloat length = std::sqrt(14.0f);
    expectNear(light(2).spotDirectionUnit, {-2 / length, 1 / length, 3 / length}, 1e-6f);
    EXPECT_EQ(ctx->lighting.geometryDirty, 0u);
    EXPECT_EQ(ctx->lighting.colorDirty[0], 0u);
}

TEST_F(Lights, ScalarRangesAreCheckedOnBothSides)
{
    struct Case {
        GLenum pname;
        GLfloat value;
        bool valid;
        GLfloat (Light::*place)[4];
        uint32_t component;
    };
    const Case cases[] = {
        {GL_SPOT_EXPONENT, 0.0f, true, &Light::packed0, 0},
        {GL_SPOT_EXPONENT, 128.0f, true, &Light::packed0, 0},
        {GL_SPOT_EXPONENT, 128.1f, false, &Light::packed0, 0},
        {GL_SPOT_EXPONENT, -0.1f, false, &Light::packed0, 0},
        {GL_SPOT_CUTOFF, 0.0f, true, &Light::packed0, 1},
        {GL_SPOT_CUTOFF, 90.0f, true, &Light::packed0, 1},
        {GL_SPOT_CUTOFF, 180.0f, true, &Light::packed0, 1},
        {GL_SPOT_CUTOFF, 90.5f, false, &Light::packed0, 1},
        {GL_SPOT_CUTOFF, 179.9f, false, &Light::packed0, 1},
        {GL_SPOT_CUTOFF, 180.1f, false, &Light::packed0, 1},
        {GL_SPOT_CUTOFF, -1.0f, false, &Light::packed0, 1},
        {GL_CONSTANT_ATTENUATION, 0.0f, true, &Light::packed1, 0},
        {GL_CONSTANT_ATTENUATION, -0.1f, false, &Light::packed1, 0},
        {GL_LINEAR_ATTENUATION, 3.0f, true, &Light::packed1, 1},
        {GL_LINEAR_ATTENUATION, -0.1f, false, &Light::packed1, 1},
        {GL_QUADRATIC_ATTENUATION, 1e9f, true, &Light::packed1, 2},
        {GL_QUADRATIC_ATTENUATION, -1e-9f, false, &Light::packed1, 2},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.pname << " " << c.value);
        if (c.valid) {
            expectAccepted([&] { glLightf(GL_LIGHT1, c.pname, c.value); });
            EXPECT_EQ((light(1).*c.place)[c.component], c.value);
        } else {
            expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glLightf(GL_LIGHT1, c.pname, c.value); });
        }
    }
}

TEST_F(Lights, NaNPassesEveryRangeCheck)
{
    for (const GLenum pname :
         {GL_SPOT_EXPONENT, GL_SPOT_CUTOFF, GL_CONSTANT_ATTENUATION, GL_LINEAR_ATTENUATION, GL_QUADRATIC_ATTENUATION})
        expectAccepted([&] { glLightf(GL_LIGHT0, pname, kNaN); });
    EXPECT_TRUE(std::isnan(light(0).packed0[0]));
    EXPECT_TRUE(std::isnan(light(0).packed0[1]));
    EXPECT_TRUE(std::isnan(light(0).packed1[2]));
}

TEST_F(Lights, CutoffKeepsItsCosineAndMarksTheGeometry)
{
    glLightf(GL_LIGHT4, GL_SPOT_CUTOFF, 60.0f);
    EXPECT_NEAR(light(4).packed0[2], 0.5f, 1e-7f);
    EXPECT_EQ(ctx->lighting.geometryDirty, 1u << 4);

    clearMarks(ctx);
    glLightf(GL_LIGHT4, GL_SPOT_EXPONENT, 3.0f);
    glLightf(GL_LIGHT4, GL_LINEAR_ATTENUATION, 3.0f);
    EXPECT_EQ(ctx->lighting.geometryDirty, 0u);
    EXPECT_EQ(ctx->lighting.colorDirty[0], 0u);
}

TEST_F(Lights, UnknownLightsAndNamesAreInvalidEnum)
{
    const GLfloat params[4] = {-1, -1, -1, -1};
    for (const GLenum bad : {GLenum(GL_LIGHT0 - 1), GLenum(GL_LIGHT7 + 1)})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glLightfv(bad, GL_SPOT_EXPONENT, params); });
    for (const GLenum bad : {GLenum(GL_AMBIENT - 1), GLenum(GL_QUADRATIC_ATTENUATION + 1), GLenum(GL_SHININESS)})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glLightfv(GL_LIGHT0, bad, params); });
}

TEST_F(Lights, DrawsAreMarkedOnlyWithLightingOnAndAfterSuccess)
{
    glLightf(GL_LIGHT0, GL_LINEAR_ATTENUATION, 1.0f);
    EXPECT_EQ(ctx->dirty, 0u);

    glEnable(GL_LIGHTING);
    clearMarks(ctx);
    glLightf(GL_LIGHT0, GL_LINEAR_ATTENUATION, -1.0f);
    EXPECT_EQ(ctx->dirty, 0u);
    const GLfloat params[4] = {1, 0, 0, 0};
    for (GLenum pname = GL_AMBIENT; pname <= GL_QUADRATIC_ATTENUATION; ++pname) {
        clearMarks(ctx);
        glLightfv(GL_LIGHT0, pname, params);
        EXPECT_EQ(ctx->dirty, 0x4u) << std::hex << pname;
    }
}

TEST_F(Lights, FixedFormsDivideBy65536)
{
    const GLfixed position[4] = {0x10000, -0x20000, 0x8000, 0x10000};
    glLightxv(GL_LIGHT0, GL_POSITION, position);
    EXPECT_EQ(values(light(0).position), (Vec4{1, -2, 0.5f, 1}));
    const GLfixed direction[3] = {0x10000, 0, 0};
    glLightxv(GL_LIGHT0, GL_SPOT_DIRECTION, direction);
    EXPECT_EQ(values(light(0).spotDirection), (Vec3{1, 0, 0}));
    glLightx(GL_LIGHT0, GL_SPOT_EXPONENT, 64 << 16);
    EXPECT_EQ(light(0).packed0[0], 64.0f);
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glLightx(GL_LIGHT0, GL_SPOT_EXPONENT, (128 << 16) + 1); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glLightxv(GL_LIGHT0, GL_SHININESS, nullptr); });
}

TEST_F(Lights, ScalarFormOfAVectorParameterSetsItsFirstComponent)
{
    expectAccepted([] { glLightf(GL_LIGHT0, GL_DIFFUSE, 0.5f); });
    EXPECT_EQ(values(light(0).diffuse), (Vec4{0.5f, 0, 0, 0}));
}

TEST_F(Lights, AreInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glLightfv(GL_LIGHT0, GL_DIFFUSE, nullptr); },
                              [] { glLightxv(GL_LIGHT0, GL_DIFFUSE, nullptr); },
                              [] { glLightf(GL_LIGHT0, GL_SPOT_EXPONENT, -1); },
                              [] { glLightx(0, 0, 0); },
                          });
}
