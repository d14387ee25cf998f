// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class TexParameters : public StateTest {
protected:
    TextureObject &object(GLenum target = GL_TEXTURE_2D)
    {
        return **activeBinding(ctx, target);
    }
    std::vector<GLint> cropRect(GLenum target = GL_TEXTURE_2D)
    {
        const GLint *rect = object(target).cropRect;
        return {rect, rect + 4};
    }
};

constexpr GLenum kTargets[] = {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES};

} // namespace

TEST_F(TexParameters, FiltersAndWrapsAreForwardedUnchecked)
{
    for (const GLenum pname : {GL_TEXTURE_MAG_FILTER, GL_TEXTURE_MIN_FILTER, GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
        takeCalls();
        glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, pname, -7);
        char text[64];
        std::snprintf(text, sizeof(text), "glTexParameteri(0x8513, 0x%04x, -7)", pname);
        EXPECT_EQ(takeCalls(), std::vector<std::string>{text});
    }
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(TexParameters, FixedFormsPassValuesUnchanged)
{
    glTexParameterx(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    const GLfixed wrap = GL_REPEAT;
    glTexParameterxv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &wrap);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glTexParameteri(0x0de1, 0x2801, 9729)",
                                                     "glTexParameteri(0x0de1, 0x2802, 10497)"}));
    const GLfixed rect[4] = {0x10000, 0x8000, -0x10000, 3};
    glTexParameterxv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, rect);
    EXPECT_EQ(cropRect(), (std::vector<GLint>{0x10000, 0x8000, -0x10000, 3}));
}

TEST_F(TexParameters, FloatFormsTruncateTowardZero)
{
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, 9729.9f);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glTexParameteri(0x0de1, 0x2800, 9729)"});
    const GLfloat rect[4] = {1.9f, -1.9f, 64.5f, 0.99f};
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, rect);
    EXPECT_EQ(cropRect(), (std::vector<GLint>{1, -1, 64, 0}));
    const GLfloat extremes[4] = {kNaN, 1e20f, -1e20f, 2147483520.0f};
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, extremes);
    EXPECT_EQ(cropRect(), (std::vector<GLint>{0, INT32_MAX, INT32_MIN, 2147483520}));
}

TEST_F(TexParameters, CropRectangleIsKeptForEveryTargetAndMarksTheUnit)
{
    const GLint rect[4] = {-5, 6, 70, -80};
    for (const GLenum target : kTargets) {
        glTexParameteriv(target, GL_TEXTURE_CROP_RECT_OES, rect);
        EXPECT_EQ(cropRect(target), (std::vector<GLint>{-5, 6, 70, -80}));
    }
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_TEXUNIT0));
    glActiveTexture(GL_TEXTURE1);
    clearMarks(ctx);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, rect);
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_TEXUNIT1));
    EXPECT_EQ(callsOf("glTexParameteri"), std::vector<std::string>{});
}

TEST_F(TexParameters, ScalarFormOfTheCropRectangleSetsItsLeftEdge)
{
    expectAccepted([] { glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, 9); });
    EXPECT_EQ(cropRect(), (std::vector<GLint>{9, 0, 0, 0}));
    expectAccepted([] { glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, 8.5f); });
    EXPECT_EQ(cropRect(), (std::vector<GLint>{8, 0, 0, 0}));
}

TEST_F(TexParameters, GenerateMipmapIsTrueForAnythingButZeroAndStaysHere)
{
    for (const GLenum target : {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES}) {
        glTexParameteri(target, GL_GENERATE_MIPMAP, -3);
        EXPECT_EQ(object(target).generateMipmap, 1);
        glTexParameteri(target, GL_GENERATE_MIPMAP, 0);
        EXPECT_EQ(object(target).generateMipmap, 0);
        glTexParameterf(target, GL_GENERATE_MIPMAP, 0.5f);
        EXPECT_EQ(object(target).generateMipmap, 1);
        glTexParameterf(target, GL_GENERATE_MIPMAP, -0.0f);
        EXPECT_EQ(object(target).generateMipmap, 0);
    }
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(TexParameters, ExternalTexturesAcceptOnlyMipmapsOff)
{
    object(GL_TEXTURE_EXTERNAL_OES).generateMipmap = 1;
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glTexParameteri(GL_TEXTURE_EXTERNAL_OES, GL_GENERATE_MIPMAP, 1); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glTexParameterf(GL_TEXTURE_EXTERNAL_OES, GL_GENERATE_MIPMAP, 0.5f); });
    expectAccepted([] { glTexParameteri(GL_TEXTURE_EXTERNAL_OES, GL_GENERATE_MIPMAP, GL_FALSE); });
    EXPECT_EQ(object(GL_TEXTURE_EXTERNAL_OES).generateMipmap, 0);
    EXPECT_EQ(callsOf("glTexParameteri"), std::vector<std::string>{});
}

TEST_F(TexParameters, UnknownTargetsAndNamesAreInvalidEnum)
{
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glTexParameteri(0x8515, GL_TEXTURE_WRAP_S, GL_REPEAT); });
    for (const GLenum pname : {0x27FF, 0x2804, 0x8190, 0x8192, 0x8B9C, 0x8B9E}) {
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glTexParameteri(GL_TEXTURE_2D, pname, 1); });
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glTexParameterfv(GL_TEXTURE_2D, pname, nullptr); });
    }
    EXPECT_EQ(callsOf("glTexParameteri"), std::vector<std::string>{});
}

TEST_F(TexParameters, AreInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, nullptr); },
                              [] { glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, nullptr); },
                              [] { glTexParameterxv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, nullptr); },
                              [] { glTexParameteri(0, 0, 0); },
                              [] { glTexParameterf(0, 0, 0); },
                              [] { glTexParameterx(0, 0, 0); },
                          });
}
