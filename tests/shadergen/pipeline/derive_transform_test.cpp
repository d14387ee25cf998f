// SPDX-License-Identifier: MIT
#include "math/matrix_classify.h"
#include "shadergen/pipeline/pipeline_test.h"

#include <algorithm>
#include <cmath>

namespace {

class TransformKey : public PipelineTest {
protected:
    void loadModelview(const Matrix16 &matrix)
    {
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(matrix.m);
    }
    uint32_t mvpFormOf(const Matrix16 &matrix, GLint vertexSize)
    {
        glVertexPointer(vertexSize, GL_FLOAT, 0, nullptr);
        loadModelview(matrix);
        deriveShaderState(ctx);
        return ctx->key.mvpForm;
    }
    void expectNormalMatrix(const std::vector<GLfloat> &expected)
    {
        for (size_t i = 0; i < 9; ++i)
            EXPECT_NEAR(ctx->transform.normalMatrix[i], expected[i], 1e-6f) << "element " << i;
    }
};

class PaletteKey : public PipelineTest {
protected:
    PaletteKey()
    {
        enablePalette();
    }
    void loadPaletteMatrix(GLuint index, const Matrix16 &matrix)
    {
        glMatrixMode(GL_MATRIX_PALETTE_OES);
        glCurrentPaletteMatrixOES(index);
        glLoadMatrixf(matrix.m);
    }
};

// A quarter turn about z.
constexpr Matrix16 kQuarterTurn = {{0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};

} // namespace

TEST_F(TransformKey, ModelviewProjectionIsTheirProduct)
{
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(identityWith(0, 2).m);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(identityWith(12, 3).m);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->transform.modelViewProjection.f[0], 2.0f);
    EXPECT_EQ(ctx->transform.modelViewProjection.f[12], 6.0f); // the translation comes first
}

TEST_F(TransformKey, AProductWithAProjectionIsAGeneralFloatMatrix)
{
    glMatrixMode(GL_PROJECTION);
    glOrthof(-2, 2, -2, 2, -2, 2);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 0, 0);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->transform.modelViewProjection.flags, uint32_t(MATRIX_FLOAT | MATRIX_GENERAL));
    EXPECT_EQ(takeAssertions().size(), 0u);
}

TEST_F(TransformKey, AnIdentityModelviewLeavesTheProjectionAsItIs)
{
    glMatrixMode(GL_PROJECTION);
    Matrix16 projection = identityWith(11, -1);
    projection.m[8] = INFINITY; // a product's sums would hold infinity times 0
    glLoadMatrixf(projection.m);
    deriveShaderState(ctx);
    for (uint32_t i = 0; i < 16; ++i)
        EXPECT_EQ(ctx->transform.modelViewProjection.f[i], projection.m[i]) << "element " << i;
}

TEST_F(TransformKey, EveryChangeOfEitherMatrixReachesTheProduct)
{
    const auto product = [this](uint32_t element) {
        deriveShaderState(ctx);
        return ctx->transform.modelViewProjection.f[element];
    };
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 0, 0);
    EXPECT_EQ(product(12), 1.0f);
    glPushMatrix();
    glScalef(4, 1, 1);
    EXPECT_EQ(product(0), 4.0f);
    glPopMatrix();
    EXPECT_EQ(product(0), 1.0f);
    EXPECT_EQ(product(12), 1.0f);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glScalef(8, 1, 1);
    EXPECT_EQ(product(12), 8.0f);
    glPopMatrix();
    EXPECT_EQ(product(12), 1.0f);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    EXPECT_EQ(product(12), 0.0f);
}

TEST_F(TransformKey, FormOfTheProductDependsOnMaskAndVertexSize)
{
    struct Case {
        const char *label;
        Matrix16 matrix;
        uint32_t form;     // with three components
        uint32_t fourForm; // with four
    };
    const Case cases[] = {
        {"identity", kIdentity, 0, 0},
        {"scale of x", identityWith(0, 2), 5, 1},
        {"scale of y", identityWith(5, 2), 5, 2},
        {"scale of z", identityWith(10, 2), 5, 3},
        {"scale of w", identityWith(15, 2), 5, 4},
        {"translation of x", identityWith(12, 2), 5, 1},
        {"translation of y", identityWith(13, 2), 5, 2},
        {"translation of z", identityWith(14, 2), 5, 3},
        {"y into x", identityWith(4, 2), 1, 1},
        {"z into x", identityWith(8, 2), 1, 1},
        {"x into y", identityWith(1, 2), 2, 2},
        {"z into y", identityWith(9, 2), 2, 2},
        {"x into z", identityWith(2, 2), 3, 3},
        {"y into z", identityWith(6, 2), 3, 3},
        {"x into w", identityWith(3, 2), 4, 4},
        {"y into w", identityWith(7, 2), 4, 4},
        {"z into w", identityWith(11, 2), 4, 4},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(mvpFormOf(c.matrix, 2), c.form) << c.label;
        EXPECT_EQ(mvpFormOf(c.matrix, 3), c.form) << c.label;
        EXPECT_EQ(mvpFormOf(c.matrix, 4), c.fourForm) << c.label;
        EXPECT_EQ(ctx->key.vertexUnits, 0u);
    }
}

TEST_F(TransformKey, VertexSizeAloneChangesTheForm)
{
    EXPECT_EQ(mvpFormOf(identityWith(12, 2), 3), uint32_t(MVP_SCALE_TRANSLATE));
    glVertexPointer(4, GL_FLOAT, 0, nullptr);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.mvpForm, 1u);
}

TEST_F(TransformKey, FixedMatricesAreAssertions)
{
    ctx->transform.top[STACK_PROJECTION]->flags = MATRIX_IDENTITY;
    deriveShaderState(ctx);
    EXPECT_GE(takeAssertions().size(), 1u);
    ctx->transform.top[STACK_PROJECTION]->flags |= MATRIX_FLOAT;
    ctx->transform.top[STACK_MODELVIEW]->flags = MATRIX_IDENTITY;
    deriveShaderState(ctx);
    EXPECT_GE(takeAssertions().size(), 1u);
    followModelview(ctx);
    const Calls told = takeAssertions();
    EXPECT_NE(std::find(told.begin(), told.end(), "float modelview matrix"), told.end());
}

TEST_F(TransformKey, NormalMatrixIsTheInverseTransposeOfTheModelview)
{
    glEnable(GL_LIGHTING);
    glMatrixMode(GL_MODELVIEW);
    glScalef(2, 4, 8);
    deriveShaderState(ctx);
    expectNormalMatrix({0.5f, 0, 0, 0, 0.25f, 0, 0, 0, 0.125f});
}

TEST_F(TransformKey, RescaleTakesTheLengthOfTheInverseThirdRow)
{
    glEnable(GL_LIGHTING);
    glEnable(GL_RESCALE_NORMAL);
    glMatrixMode(GL_MODELVIEW);
    glScalef(2, 4, 8);
    deriveShaderState(ctx);
    expectNormalMatrix({4, 0, 0, 0, 2, 0, 0, 0, 1}); // eight times as long
    glDisable(GL_RESCALE_NORMAL);
    deriveShaderState(ctx);
    expectNormalMatrix({0.5f, 0, 0, 0, 0.25f, 0, 0, 0, 0.125f});
    glEnable(GL_RESCALE_NORMAL);
    // Sheared: the inverse's third row is (-0.5, -0.25, 0.125), of length sqrt(21)/8.
    const Matrix16 sheared = {{1, 0, 4, 0, 0, 1, 2, 0, 0, 0, 8, 0, 0, 0, 0, 1}};
    glLoadMatrixf(sheared.m);
    ctx->transform.top[STACK_MODELVIEW]->flags = MATRIX_ANISOSCALE | MATRIX_FLOAT;
    deriveShaderState(ctx);
    const float f = 8 / std::sqrt(21.0f);
    expectNormalMatrix({f, 0, 0, 0, f, 0, -0.5f * f, -0.25f * f, 0.125f * f});
}

TEST_F(TransformKey, NormalMatrixWaitsForADrawThatNeedsIt)
{
    glMatrixMode(GL_MODELVIEW);
    glScalef(2, 2, 2);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->transform.normalMatrix[0], 1.0f); // no eye coordinates: as it was
    glEnable(GL_LIGHTING);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->transform.normalMatrix[0], 0.5f);
    glDisable(GL_LIGHTING);
    glScalef(2, 2, 2);
    deriveShaderState(ctx);
    glEnable(GL_LIGHTING);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->transform.normalMatrix[0], 0.25f);
}

TEST_F(TransformKey, SingularModelviewGivesAFiniteNormalMatrix)
{
    glEnable(GL_LIGHTING);
    glEnable(GL_RESCALE_NORMAL);
    glMatrixMode(GL_MODELVIEW);
    glScalef(1, 1, 0);
    deriveShaderState(ctx);
    for (const float element : ctx->transform.normalMatrix)
        EXPECT_TRUE(std::isfinite(element));
}

TEST_F(TransformKey, OrthogonalTransformNeedsAllThreeConditions)
{
    enableLights(8);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(kQuarterTurn.m);
    glTranslatef(5, 6, 7);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 1u);

    glDisable(GL_LIGHT4);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 0u) << "seven lights";
    glEnable(GL_LIGHT4);
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_TEXTURE_GEN_STR_OES);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 0u) << "texture generation";
    glDisable(GL_TEXTURE_GEN_STR_OES);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 1u);
    glDisable(GL_LIGHTING);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 0u) << "lighting off";
    glEnable(GL_LIGHTING);
    glScalef(1, 1, 1.01f);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 0u) << "scaled";
}

TEST_F(PaletteKey, KeyFieldsOfAPaletteDraw)
{
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.mvpForm, uint32_t(MVP_GENERAL));
    EXPECT_EQ(ctx->key.vertexUnits, 2u);
    static const GLfloat weights[4] = {};
    for (const GLint size : {-1, 0, 1, 3, 4}) {
        glWeightPointerOES(size, GL_FLOAT, 0, weights);
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->key.vertexUnits, static_cast<uint32_t>(size < 0 ? 0 : size));
    }
    glDisable(GL_MATRIX_PALETTE_OES);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.vertexUnits, 0u);
    EXPECT_EQ(ctx->key.mvpForm, 0u);
}

TEST_F(PaletteKey, AllTwentyMatricesAreUploadedFirst)
{
    for (GLuint i = 0; i < kPaletteMatrices; ++i)
        loadPaletteMatrix(i, identityWith(12, static_cast<GLfloat>(i)));
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->palette.dirty, 0u);
    for (uint32_t i = 0; i < kPaletteMatrices; ++i) {
        EXPECT_EQ(ctx->palette.upload[i][0], 1.0f);
        EXPECT_EQ(ctx->palette.upload[i][12], static_cast<GLfloat>(i));
    }
}

TEST_F(PaletteKey, OnlyMarkedMatricesAreCopied)
{
    deriveShaderState(ctx);
    for (uint32_t i = 0; i < kPaletteMatrices; ++i)
        ctx->palette.matrices[i].f[13] = 9;
    for (const uint32_t marked : {0u, 7u, 19u}) {
        ctx->palette.dirty = 1u << marked;
        deriveShaderState(ctx);
        EXPECT_EQ(ctx->palette.dirty, 0u);
        EXPECT_EQ(ctx->palette.upload[marked][13], 9.0f);
    }
    for (const uint32_t other : {1u, 6u, 8u, 18u})
        EXPECT_EQ(ctx->palette.upload[other][13], 0.0f) << other;
}

TEST_F(PaletteKey, NormalMatricesAreMadeWithEyeCoordinates)
{
    glEnable(GL_LIGHTING);
    for (GLuint i = 0; i < kPaletteMatrices; ++i) {
        loadPaletteMatrix(i, kIdentity);
        glScalef(2, 4, static_cast<GLfloat>(i + 1));
    }
    deriveShaderState(ctx);
    for (uint32_t i = 0; i < kPaletteMatrices; ++i) {
        EXPECT_FLOAT_EQ(ctx->palette.normalUpload[i][0], 0.5f);
        EXPECT_FLOAT_EQ(ctx->palette.normalUpload[i][4], 0.25f);
        EXPECT_FLOAT_EQ(ctx->palette.normalUpload[i][8], 1.0f / static_cast<float>(i + 1));
    }
    EXPECT_EQ(ctx->palette.normalsDirty, 0u);
}

TEST_F(PaletteKey, NormalMatricesCatchUpWhenTheyWereNotNeeded)
{
    glEnable(GL_LIGHTING);
    deriveShaderState(ctx);
    ASSERT_EQ(ctx->palette.normalUpload[3][0], 1.0f);
    glDisable(GL_LIGHTING);
    loadPaletteMatrix(3, kIdentity);
    glScalef(2, 2, 2);
    deriveShaderState(ctx); // consumes the palette's own mark
    ASSERT_EQ(ctx->palette.dirty, 0u);
    ASSERT_EQ(ctx->palette.upload[3][0], 2.0f);
    EXPECT_EQ(ctx->palette.normalsDirty, 1u << 3);
    glEnable(GL_LIGHTING);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->palette.normalUpload[3][0], 0.5f);
    EXPECT_EQ(ctx->palette.normalsDirty, 0u);
}

TEST_F(PaletteKey, RescalingReachesAllNormalMatrices)
{
    glEnable(GL_LIGHTING);
    for (GLuint i = 0; i < kPaletteMatrices; ++i) {
        loadPaletteMatrix(i, kIdentity);
        glScalef(2, 2, 2);
    }
    deriveShaderState(ctx);
    glEnable(GL_RESCALE_NORMAL);
    deriveShaderState(ctx);
    for (uint32_t i = 0; i < kPaletteMatrices; ++i)
        EXPECT_FLOAT_EQ(ctx->palette.normalUpload[i][0], 1.0f) << i;
    // Also when the switch falls between draws without normals.
    glDisable(GL_LIGHTING);
    glDisable(GL_RESCALE_NORMAL);
    deriveShaderState(ctx);
    glEnable(GL_LIGHTING);
    deriveShaderState(ctx);
    for (uint32_t i = 0; i < kPaletteMatrices; ++i)
        EXPECT_FLOAT_EQ(ctx->palette.normalUpload[i][0], 0.5f) << i;
}

TEST_F(PaletteKey, OrthogonalTransformNeedsEveryMatrixOrthogonal)
{
    enableLights(8);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 1u);
    EXPECT_EQ(ctx->palette.nonOrthogonal, 0u);
    loadPaletteMatrix(19, identityWith(0, 2));
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 0u);
    EXPECT_EQ(ctx->palette.nonOrthogonal, 1u << 19);
    loadPaletteMatrix(19, kQuarterTurn);
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 1u);
}

TEST_F(PaletteKey, WithoutObjectSpaceLightsNoMatrixCountsAsOrthogonal)
{
    deriveShaderState(ctx);
    EXPECT_EQ(ctx->key.orthogonalTransform, 0u);
    EXPECT_EQ(ctx->palette.nonOrthogonal, 0xFFFFFu);
}

TEST_F(PaletteKey, SkippedPaletteDrawConsumesNothing)
{
    draw();
    loadPaletteMatrix(5, identityWith(12, 3));
    glDisableClientState(GL_WEIGHT_ARRAY_OES);
    draw();
    EXPECT_EQ(ctx->palette.dirty, 1u << 5);
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    draw();
    EXPECT_EQ(ctx->palette.dirty, 0u);
    EXPECT_EQ(ctx->palette.upload[5][12], 3.0f);
}
