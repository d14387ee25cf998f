// SPDX-License-Identifier: MIT
#include "frontend/backend.h"
#include "state/state_test.h"

namespace {

class Current : public StateTest {};
class Hints : public StateTest {};
class AlphaFunction : public StateTest {};

const std::vector<std::string> kNoCalls;

} // namespace

TEST_F(Current, ColourIsStoredUnclampedAndMarked)
{
    glColor4f(2, -1, 0.25f, 0.5f);
    EXPECT_EQ(values(ctx->current.color), (Vec4{2, -1, 0.25f, 0.5f}));
    EXPECT_EQ(ctx->dirty, 0x1u);
    EXPECT_EQ(takeCalls(), kNoCalls);
}

TEST_F(Current, ByteColoursAreDividedBy255)
{
    glColor4ub(255, 0, 128, 255);
    EXPECT_EQ(values(ctx->current.color), (Vec4{1, 0, 128 / 255.0f, 1}));
    EXPECT_EQ(ctx->dirty, 0x1u);
    for (int value = 0; value < 256; ++value) {
        glColor4ub(0, static_cast<GLubyte>(value), 0, 0);
        EXPECT_EQ(ctx->current.color[1], static_cast<GLfloat>(value) / 255.0f);
    }
}

TEST_F(Current, FixedPointFormsConvert)
{
    glColor4x(0x10000, 0x8000, -0x20000, 1);
    EXPECT_EQ(values(ctx->current.color), (Vec4{1, 0.5f, -2, 0x1p-16f}));
    EXPECT_EQ(ctx->dirty, 0x1u);
    glNormal3x(0x18000, -0x10000, 0);
    EXPECT_EQ(values(ctx->current.normal), (Vec4{1.5f, -1, 0, 0}));
    glMultiTexCoord4x(GL_TEXTURE1, 0x10000, 0x20000, 0x30000, 0x8000);
    EXPECT_EQ(values(ctx->current.texCoord[1]), (Vec4{1, 2, 3, 0.5f}));
}

TEST_F(Current, NormalIsStoredWithoutAMark)
{
    glNormal3f(1, 2, 3);
    EXPECT_EQ(values(ctx->current.normal), (Vec4{1, 2, 3, 0}));
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Current, NormalIsStoredInInterfaceOnlyModeToo)
{
    ctx->settings.interfaceOnly = 1;
    glNormal3f(1, 2, 3);
    EXPECT_EQ(values(ctx->current.normal), (Vec4{1, 2, 3, 0}));
    glNormal3x(0x40000, 0x50000, 0x60000);
    EXPECT_EQ(values(ctx->current.normal), (Vec4{4, 5, 6, 0}));
}

TEST_F(Current, TextureCoordinatesGoToTheNamedUnitWithoutAMark)
{
    glMultiTexCoord4f(GL_TEXTURE1, 1, 2, 3, 4);
    EXPECT_EQ(values(ctx->current.texCoord[1]), (Vec4{1, 2, 3, 4}));
    EXPECT_EQ(values(ctx->current.texCoord[0]), (Vec4{0, 0, 0, 1}));
    glMultiTexCoord4f(GL_TEXTURE0, 5, 6, 7, 8);
    EXPECT_EQ(values(ctx->current.texCoord[0]), (Vec4{5, 6, 7, 8}));
    EXPECT_EQ(ctx->dirty, 0u);
    for (const GLenum target : {GLenum(GL_TEXTURE2), GLenum(GL_TEXTURE0 - 1), 0u}) {
        expectOnlyError(ctx, GL_INVALID_ENUM, [target] { glMultiTexCoord4f(target, 9, 9, 9, 9); });
        expectOnlyError(ctx, GL_INVALID_ENUM, [target] { glMultiTexCoord4x(target, 9, 9, 9, 9); });
    }
}

TEST_F(Current, ActiveTextureIsForwardedInEveryValidCase)
{
    glActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(ctx->current.activeUnit, 1u);
    glActiveTexture(GL_TEXTURE1);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(ctx->current.activeUnit, 0u);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glActiveTexture(0x84c1)", "glActiveTexture(0x84c1)",
                                                     "glActiveTexture(0x84c0)"}));
    EXPECT_EQ(ctx->arrays.clientUnit, 0u);
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Current, ActiveTextureTakesTwoUnits)
{
    for (const GLenum texture : {GLenum(GL_TEXTURE2), GLenum(GL_TEXTURE0 - 1), 0u}) {
        takeCalls();
        expectOnlyError(ctx, GL_INVALID_ENUM, [texture] { glActiveTexture(texture); });
        EXPECT_TRUE(callsOf("glActiveTexture").empty());
    }
}

TEST_F(Current, MatrixCommandsFollowTheActiveUnitInTextureMode)
{
    glMatrixMode(GL_TEXTURE);
    glActiveTexture(GL_TEXTURE1);
    glTranslatef(4, 0, 0);
    EXPECT_EQ(ctx->transform.texture[1][0].f[12], 4.0f);
    EXPECT_EQ(ctx->transform.texture[0][0].f[12], 0.0f);
}

TEST_F(Current, ShadeModelIsAKeyBit)
{
    glShadeModel(GL_FLAT);
    EXPECT_EQ(ctx->key.flatShading, 1u);
    glShadeModel(GL_SMOOTH);
    EXPECT_EQ(ctx->key.flatShading, 0u);
    EXPECT_EQ(takeCalls(), kNoCalls);
    glShadeModel(GL_FLAT);
    for (const GLenum mode : {0u, 0x1CFFu, 0x1D02u})
        expectOnlyError(ctx, GL_INVALID_ENUM, [mode] { glShadeModel(mode); });
    EXPECT_EQ(ctx->key.flatShading, 1u);
}

TEST_F(Current, ShadeModelTouchesNoOtherKeyBit)
{
    glEnableClientState(GL_COLOR_ARRAY);
    ShaderStateBitfield expected = ctx->key;
    expected.flatShading = 1;
    glShadeModel(GL_FLAT);
    EXPECT_EQ(std::memcmp(&expected, &ctx->key, sizeof(expected)), 0);
}

TEST_F(Hints, EachTargetKeepsItsMode)
{
    const struct {
        GLenum target;
        Hint place;
    } targets[] = {
        {0x0C50, HINT_PERSPECTIVE_CORRECTION},
        {0x0C51, HINT_POINT_SMOOTH},
        {0x0C52, HINT_LINE_SMOOTH},
        {0x0C54, HINT_FOG},
        {0x8192, HINT_GENERATE_MIPMAP},
    };
    for (const auto &one : targets) {
        for (const GLenum mode : {GL_FASTEST, GL_NICEST, GL_DONT_CARE}) {
            HintState expected = ctx->hints;
            expected.mode[one.place] = mode;
            expectAccepted([&] { glHint(one.target, mode); });
            EXPECT_EQ(std::memcmp(&expected, &ctx->hints, sizeof(expected)), 0) << one.target << ' ' << mode;
        }
        for (const GLenum mode : {0x10FFu, 0x1103u, 0u})
            expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glHint(one.target, mode); });
    }
    for (const GLenum target : {0x0C4Fu, 0x0C53u, 0x0C55u, 0x8191u, 0x8193u})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glHint(target, GL_NICEST); });
}

TEST_F(Hints, DoNotReachTheBackend)
{
    glHint(GL_FOG_HINT, GL_NICEST);
    EXPECT_EQ(ctx->hints.mode[HINT_FOG], GLenum(GL_NICEST));
    EXPECT_EQ(takeCalls(), kNoCalls);
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Hints, AssertTheBackendsFunctionAlsoInInterfaceOnlyMode)
{
    const auto saved = std::exchange(glHint_2_0, nullptr);
    glHint(GL_FOG_HINT, GL_NICEST);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    EXPECT_EQ(ctx->hints.mode[HINT_FOG], GLenum(GL_NICEST)) << "the hint is kept all the same";

    ctx->settings.interfaceOnly = 1;
    glHint(GL_FOG_HINT, GL_FASTEST);
    EXPECT_EQ(fakePlatform().assertions.size(), 2u);
    EXPECT_EQ(ctx->hints.mode[HINT_FOG], GLenum(GL_NICEST));

    os_tls_write(__gl_tls_index, nullptr);
    glHint(GL_FOG_HINT, GL_FASTEST);
    EXPECT_EQ(fakePlatform().assertions.size(), 2u) << "without a context not even that";
    glHint_2_0 = saved;
}

TEST_F(AlphaFunction, IsKeptHereWhenTheBackendHasNone)
{
    glAlphaFunc(GL_GREATER, 0.5f);
    EXPECT_EQ(ctx->alphaTest.func, GLenum(GL_GREATER));
    EXPECT_EQ(ctx->alphaTest.ref, 0.5f);
    EXPECT_EQ(ctx->keyDirty, 64);
    EXPECT_EQ(takeCalls(), kNoCalls);
}

TEST_F(AlphaFunction, ReferencesAreClamped)
{
    const struct {
        GLfloat given, stored;
    } cases[] = {{1.5f, 1}, {1, 1}, {0.99f, 0.99f}, {0, 0}, {-0.5f, 0}, {INFINITY, 1}, {-INFINITY, 0}, {kNaN, 1}};
    for (const auto &one : cases) {
        glAlphaFunc(GL_GREATER, one.given);
        EXPECT_EQ(ctx->alphaTest.ref, one.stored) << one.given;
    }
    glAlphaFuncx(GL_LESS, 0x18000);
    EXPECT_EQ(ctx->alphaTest.ref, 1.0f);
    glAlphaFuncx(GL_LESS, 0x4000);
    EXPECT_EQ(ctx->alphaTest.ref, 0.25f);
    EXPECT_EQ(ctx->alphaTest.func, GLenum(GL_LESS));
}

TEST_F(AlphaFunction, HasEightFunctions)
{
    for (GLenum func = 0x0200; func <= 0x0207; ++func) {
        expectAccepted([func] { glAlphaFunc(func, 0.5f); });
        EXPECT_EQ(ctx->alphaTest.func, func);
    }
    clearMarks(ctx);
    for (const GLenum func : {0x01FFu, 0x0208u, 0u}) {
        expectOnlyError(ctx, GL_INVALID_ENUM, [func] { glAlphaFunc(func, 0.25f); });
        expectOnlyError(ctx, GL_INVALID_ENUM, [func] { glAlphaFuncx(func, 0); });
    }
    EXPECT_EQ(ctx->keyDirty, 0);
}

TEST_F(AlphaFunction, GoesToABackendThatHasItUnclamped)
{
    useVendorBackend();
    glAlphaFunc(GL_GREATER, 1.5f);
    glAlphaFuncx(GL_LEQUAL, -0x8000);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glAlphaFuncQRN(0x0204, 1.5)", "glAlphaFuncQRN(0x0203, -0.5)"}));
    EXPECT_EQ(ctx->alphaTest.func, GLenum(GL_ALWAYS));
    EXPECT_EQ(ctx->alphaTest.ref, 0.0f);
    EXPECT_EQ(ctx->keyDirty, 0);
    takeCalls();
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glAlphaFunc(0x0208, 0); });
    EXPECT_TRUE(callsOf("glAlphaFuncQRN").empty());
}

TEST_F(AlphaFunction, AVanishedBackendFunctionIsAnAssertion)
{
    useVendorBackend();
    const auto saved = std::exchange(glAlphaFuncQRN_2_0, nullptr);
    glAlphaFunc(GL_GREATER, 0.5f);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    EXPECT_EQ(takeCalls(), kNoCalls);
    glAlphaFuncQRN_2_0 = saved;
}

TEST_F(Current, NothingHappensWithoutAContextOrInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glColor4f(0, 0, 0, 0); },
                              [] { glColor4ub(9, 9, 9, 9); },
                              [] { glColor4x(9, 9, 9, 9); },
                              [] { glMultiTexCoord4f(GL_TEXTURE0, 9, 9, 9, 9); },
                              [] { glMultiTexCoord4f(0, 9, 9, 9, 9); },
                              [] { glMultiTexCoord4x(GL_TEXTURE0, 9, 9, 9, 9); },
                              [] { glActiveTexture(GL_TEXTURE1); },
                              [] { glActiveTexture(0); },
                              [] { glShadeModel(GL_FLAT); },
                              [] { glShadeModel(0); },
                              [] { glHint(GL_FOG_HINT, GL_NICEST); },
                              [] { glHint(0, 0); },
                              [] { glAlphaFunc(GL_LESS, 0.5f); },
                              [] { glAlphaFunc(0, 0.5f); },
                              [] { glAlphaFuncx(GL_LESS, 0x8000); },
                          });
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Current, NormalNeedsAContextAllTheSame)
{
    os_tls_write(__gl_tls_index, nullptr);
    glNormal3f(1, 2, 3);
    glNormal3x(1, 2, 3);
    EXPECT_EQ(values(ctx->current.normal), (Vec4{0, 0, 1, 0}));
}
