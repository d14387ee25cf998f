// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class Viewport : public StateTest {};
class ClipPlane : public StateTest {};

} // namespace

TEST_F(Viewport, IsTheSurfacesAfterMakeCurrent)
{
    EXPECT_EQ(ctx->viewport.x, 0);
    EXPECT_EQ(ctx->viewport.width, 64);
    EXPECT_EQ(ctx->viewport.height, 48);
    EXPECT_EQ(ctx->viewport.depthNear, 0.0f);
    EXPECT_EQ(ctx->viewport.depthFar, 1.0f);
}

TEST_F(Viewport, IsLimitedInTheContextOnly)
{
    glViewport(-3, 7, 100000, 100000);
    EXPECT_EQ(ctx->viewport.x, -3);
    EXPECT_EQ(ctx->viewport.y, 7);
    EXPECT_EQ(ctx->viewport.width, 4096);
    EXPECT_EQ(ctx->viewport.height, 2048);
    EXPECT_EQ(callsOf("glViewport"), std::vector<std::string>{"glViewport(-3, 7, 100000, 100000)"});
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Viewport, UpToTheLimitIsKeptAsGiven)
{
    glViewport(0, 0, 4096, 2047);
    EXPECT_EQ(ctx->viewport.width, 4096);
    EXPECT_EQ(ctx->viewport.height, 2047);
    glViewport(0, 0, 0, 0);
    EXPECT_EQ(ctx->viewport.width, 0);
    EXPECT_EQ(ctx->viewport.height, 0);
}

TEST_F(Viewport, NegativeSizesAreInvalidValue)
{
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glViewport(1, 1, -1, 10); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glViewport(1, 1, 10, -1); });
    EXPECT_EQ(callsOf("glViewport"), std::vector<std::string>{});
}

TEST_F(Viewport, IsInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glViewport(0, 0, -1, 1); },
                              [] { glClipPlanef(GL_CLIP_PLANE0, nullptr); },
                              [] { glClipPlanex(GL_CLIP_PLANE0, nullptr); },
                          });
}

TEST_F(Viewport, DepthRangeIsLimitedInTheContextOnly)
{
    glDepthRangef(-1, 2);
    EXPECT_EQ(ctx->viewport.depthNear, 0.0f);
    EXPECT_EQ(ctx->viewport.depthFar, 1.0f);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glDepthRangef(-1, 2)"});
    glDepthRangef(0.75f, 0.25f);
    EXPECT_EQ(ctx->viewport.depthNear, 0.75f);
    EXPECT_EQ(ctx->viewport.depthFar, 0.25f);
    glDepthRangef(kNaN, 0.0f);
    EXPECT_EQ(ctx->viewport.depthNear, 1.0f);
    EXPECT_EQ(ctx->viewport.depthFar, 0.0f);
    takeCalls();
    glDepthRangex(0x4000, 0x8000);
    EXPECT_EQ(ctx->viewport.depthNear, 0.25f);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glDepthRangef(0.25, 0.5)"});
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Viewport, MissingBackendFunctionsAreAssertionsAndTheStateIsKept)
{
    startWithout({"glGetIntegerv", "glViewport", "glDepthRangef", "glLogicOpQRN"});
    glViewport(1, 2, 100000, 3);
    glDepthRangef(0.25f, 0.5f);
    glLogicOp(GL_XOR);
    EXPECT_EQ(ctx->viewport.width, 100000); // no limit is known
    EXPECT_EQ(ctx->viewport.depthFar, 0.5f);
    EXPECT_EQ(fakePlatform().assertions, (std::vector<std::string>{"glGetIntegerv_2_0", "glViewport_2_0",
                                                                   "glDepthRangef_2_0", "glLogicOpQRN_2_0"}));
}

TEST_F(Viewport, DepthRangeAndLogicOpWorkInInterfaceOnlyModeButNotWithoutContext)
{
    ctx->settings.interfaceOnly = 1;
    glDepthRangef(0.5f, 0.5f);
    glLogicOp(GL_XOR);
    EXPECT_EQ(ctx->viewport.depthNear, 0.5f);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glDepthRangef(0.5, 0.5)", "glLogicOpQRN(0x1506)"}));

    os_tls_write(__gl_tls_index, nullptr);
    glDepthRangef(0, 1);
    glDepthRangex(0, 1);
    glLogicOp(GL_XOR);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    context->makeCurrent();
}

TEST_F(ClipPlane, UnderTheIdentityIsStoredAsGiven)
{
    const GLfloat plane[4] = {1, 2, 3, 4};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    EXPECT_EQ(values(ctx->viewport.clipPlaneEye), (Vec4{1, 2, 3, 4}));
    EXPECT_EQ(values(ctx->viewport.clipPlane), (Vec4{1, 2, 3, 4}));
    EXPECT_EQ(ctx->dirty, 0x800u);
}

TEST_F(ClipPlane, IsMovedByTheInverseOfTheModelview)
{
    glTranslatef(0, 0, -5);
    const GLfloat plane[4] = {0, 0, 1, 0};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    EXPECT_EQ(values(ctx->viewport.clipPlaneEye), (Vec4{0, 0, 1, 5}));
    EXPECT_EQ(values(ctx->viewport.clipPlane), (Vec4{0, 0, 1, 0}));
}

TEST_F(ClipPlane, KeepsThePointsOfThePlaneUnderAnAffineModelview)
{
    // Columns (0,2,0), (-3,0,0), (0,0,4), moved by (5,6,7).
    const GLfloat matrix[16] = {0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1};
    glLoadMatrixf(matrix);
    // Solved by hand: a' = -b/3, b' = a/2, c' = c/4, d' = d - 5a' - 6b' - 7c'.
    const GLfloat plane[4] = {2, 3, 8, 1};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    expectNear(ctx->viewport.clipPlaneEye, {-1, 1, 2, -14}, 1e-5f);
}

TEST_F(ClipPlane, OnlyOneExists)
{
    const GLfloat plane[4] = {};
    expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glClipPlanef(GL_CLIP_PLANE0 + 1, plane); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glClipPlanef(GL_CLIP_PLANE0 - 1, plane); });
}

TEST_F(ClipPlane, GoesThroughAllSixteenElementsOfAGeneralModelview)
{
    // Exchanges x and w, and is its own inverse.
    const GLfloat matrix[16] = {0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0};
    glLoadMatrixf(matrix);
    const GLfloat plane[4] = {1, 2, 3, 4};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    EXPECT_EQ(values(ctx->viewport.clipPlaneEye), (Vec4{4, 2, 3, 1}));
}

TEST_F(ClipPlane, OfASingularModelviewIsNoErrorAndTakesTheMatrixAsItIs)
{
    glTranslatef(0, 0, 5);
    glScalef(0, 1, 1);
    const GLfloat plane[4] = {1, 2, 3, 4};
    expectAccepted([&] { glClipPlanef(GL_CLIP_PLANE0, plane); });
    // Row vector times diag(0, 1, 1, 1) with the translation (0, 0, 5): d becomes 5c + d.
    EXPECT_EQ(values(ctx->viewport.clipPlaneEye), (Vec4{0, 2, 3, 19}));
    EXPECT_EQ(values(ctx->viewport.clipPlane), (Vec4{1, 2, 3, 4}));
}

TEST_F(ClipPlane, FixedFormDividesBy65536)
{
    const GLfixed plane[4] = {0x10000, -0x8000, 0, 0x30000};
    glClipPlanex(GL_CLIP_PLANE0, plane);
    EXPECT_EQ(values(ctx->viewport.clipPlane), (Vec4{1, -0.5f, 0, 3}));
    expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glClipPlanex(GL_CLIP_PLANE0 + 1, plane); });
}
