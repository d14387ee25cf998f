// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class Palette : public StateTest {};
class PaletteArrays : public StateTest {
protected:
    int data[2] = {};
};

const MatrixRecord &matrixOf(const GLIContext *ctx, uint32_t index)
{
    return ctx->palette.matrices[index];
}

} // namespace

TEST_F(Palette, StartsAsIdentitiesAllMarked)
{
    TestContext fresh;
    EXPECT_EQ(fresh->palette.currentIndex, 0u);
    EXPECT_EQ(fresh->palette.secondWord, 0u);
    EXPECT_EQ(fresh->palette.dirty, 0xFFFFFu);
    EXPECT_EQ(fresh->palette.normalsDirty, 0xFFFFFu);
    for (uint32_t i = 0; i < kPaletteMatrices; ++i) {
        EXPECT_TRUE(matrixOf(fresh.ctx, i).flags & MATRIX_IDENTITY);
        for (uint32_t element = 0; element < 16; ++element)
            EXPECT_EQ(matrixOf(fresh.ctx, i).f[element], element % 5 == 0 ? 1.0f : 0.0f);
    }
}

TEST_F(Palette, InitialisationSetsEveryFieldAgain)
{
    ctx->palette.currentIndex = 3;
    ctx->palette.secondWord = 3;
    ctx->palette.nonOrthogonal = 3;
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    glTranslatef(1, 2, 3);
    initTransform(ctx);
    EXPECT_EQ(ctx->palette.currentIndex, 0u);
    EXPECT_EQ(ctx->palette.secondWord, 0u);
    EXPECT_EQ(ctx->palette.nonOrthogonal, 0u);
    EXPECT_EQ(ctx->palette.dirty, 0xFFFFFu);
    EXPECT_EQ(matrixOf(ctx, 0).f[12], 0.0f);
}

TEST_F(Palette, IndexRunsTo19)
{
    expectAccepted([] { glCurrentPaletteMatrixOES(19); });
    EXPECT_EQ(ctx->palette.currentIndex, 19u);
    EXPECT_EQ(ctx->transform.top[STACK_PALETTE], &matrixOf(ctx, 19));
    EXPECT_EQ(ctx->dirty, 0u);
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glCurrentPaletteMatrixOES(20); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glCurrentPaletteMatrixOES(0xFFFFFFFF); });
}

TEST_F(Palette, LoadCopiesTheModelviewWithItsClass)
{
    glTranslatef(1, 2, 3);
    glCurrentPaletteMatrixOES(7);
    clearMarks(ctx);
    glLoadPaletteFromModelViewMatrixOES();
    EXPECT_EQ(matrixOf(ctx, 7).f[12], 1.0f);
    EXPECT_EQ(matrixOf(ctx, 7).f[14], 3.0f);
    EXPECT_EQ(matrixOf(ctx, 7).flags, ctx->transform.top[STACK_MODELVIEW]->flags);
    EXPECT_FALSE(matrixOf(ctx, 7).flags & MATRIX_IDENTITY);
    EXPECT_EQ(ctx->dirty, 0x2u);
    EXPECT_EQ(ctx->palette.dirty, 1u << 7);
    EXPECT_EQ(ctx->transform.uniformDirty, 0u);
}

TEST_F(Palette, MatrixCommandsActOnTheCurrentMatrix)
{
    glMatrixMode(GL_MATRIX_PALETTE_OES);
    glCurrentPaletteMatrixOES(3);
    clearMarks(ctx);
    glTranslatef(4, 0, 0);
    EXPECT_EQ(matrixOf(ctx, 3).f[12], 4.0f);
    EXPECT_EQ(matrixOf(ctx, 2).f[12], 0.0f);
    EXPECT_EQ(ctx->palette.dirty, 1u << 3);
    EXPECT_EQ(ctx->dirty, 0x10u);
    EXPECT_EQ(ctx->transform.uniformDirty, 0x10u);
}

TEST_F(Palette, MarksIgnoreIndexesWithoutABit)
{
    markPaletteMatrix(ctx, 32);
    EXPECT_EQ(ctx->palette.dirty, 0u);
    markPaletteMatrix(ctx, 31);
    EXPECT_EQ(ctx->palette.dirty, 0x80000000u);
}

TEST_F(PaletteArrays, WeightStoresEveryField)
{
    glBindBuffer(GL_ARRAY_BUFFER, 5);
    for (const GLenum type : {GL_BYTE, GL_SHORT, GL_FIXED, GL_FLOAT}) {
        clearMarks(ctx);
        expectAccepted([&] { glWeightPointerOES(3, type, 8, data); });
        const ClientArray &array = ctx->arrays.weight;
        EXPECT_EQ(array.type, type);
        EXPECT_EQ(array.size, 3);
        EXPECT_EQ(array.strideBytes, 8);
        EXPECT_EQ(array.pointer, data);
        EXPECT_EQ(array.buffer, 5u);
        EXPECT_EQ(ctx->dirty, 0x8u);
    }
}

TEST_F(PaletteArrays, WeightSizeChangesMarkTheUniforms)
{
    glWeightPointerOES(2, GL_FLOAT, 0, data);
    EXPECT_EQ(ctx->transform.uniformDirty, 0x10u);
    clearMarks(ctx);
    glWeightPointerOES(2, GL_SHORT, 0, data);
    EXPECT_EQ(ctx->transform.uniformDirty, 0u);
}

TEST_F(PaletteArrays, WeightSizeIsCheckedBeforeTypeAndOnlyFromAbove)
{
    expectAccepted([&] { glWeightPointerOES(0, GL_FLOAT, 0, data); });
    EXPECT_EQ(ctx->arrays.weight.size, 0);
    expectAccepted([&] { glWeightPointerOES(-2, GL_FLOAT, 0, data); });
    EXPECT_EQ(ctx->arrays.weight.size, -2);
    expectAccepted([&] { glWeightPointerOES(4, GL_FLOAT, 0, data); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glWeightPointerOES(5, GL_DONT_CARE, 0, data); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glWeightPointerOES(3, GL_UNSIGNED_BYTE, 0, data); });
}

TEST_F(PaletteArrays, WeightRecordsTheBufferEvenWhenItFails)
{
    glBindBuffer(GL_ARRAY_BUFFER, 7);
    const ClientArray before = ctx->arrays.weight;
    glWeightPointerOES(5, GL_FLOAT, 4, data);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_VALUE));
    EXPECT_EQ(ctx->arrays.weight.buffer, 7u);
    EXPECT_EQ(ctx->arrays.weight.size, before.size);
    EXPECT_EQ(ctx->arrays.weight.pointer, before.pointer);
    EXPECT_EQ(ctx->dirty, 0u);

    glBindBuffer(GL_ARRAY_BUFFER, 8);
    glWeightPointerOES(3, GL_UNSIGNED_SHORT, 4, data);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(ctx->arrays.weight.buffer, 8u);
    EXPECT_EQ(ctx->arrays.weight.size, before.size);
}

TEST_F(PaletteArrays, TheSameSizeAndTypeAreNotCheckedAgain)
{
    glWeightPointerOES(3, GL_FLOAT, 0, data);
    glMatrixIndexPointerOES(3, GL_UNSIGNED_BYTE, 0, data);
    glBindBuffer(GL_ARRAY_BUFFER, 4);
    clearMarks(ctx);
    expectAccepted([&] { glWeightPointerOES(3, GL_FLOAT, -8, data + 1); });
    EXPECT_EQ(ctx->arrays.weight.strideBytes, -8);
    EXPECT_EQ(ctx->arrays.weight.pointer, data + 1);
    EXPECT_EQ(ctx->arrays.weight.buffer, 4u);
    EXPECT_EQ(ctx->dirty, 0x8u);
    clearMarks(ctx);
    expectAccepted([&] { glMatrixIndexPointerOES(3, GL_UNSIGNED_BYTE, -8, data + 1); });
    EXPECT_EQ(ctx->arrays.matrixIndex.strideBytes, -8);
    EXPECT_EQ(ctx->arrays.matrixIndex.pointer, data + 1);
    EXPECT_EQ(ctx->arrays.matrixIndex.buffer, 4u);
    EXPECT_EQ(ctx->dirty, 0x8u);
    EXPECT_EQ(ctx->transform.uniformDirty, 0u);
}

TEST_F(PaletteArrays, IndexStoresEveryField)
{
    glBindBuffer(GL_ARRAY_BUFFER, 6);
    for (const GLenum type : {GL_UNSIGNED_BYTE, GL_UNSIGNED_SHORT}) {
        clearMarks(ctx);
        expectAccepted([&] { glMatrixIndexPointerOES(2, type, 4, data); });
        const ClientArray &array = ctx->arrays.matrixIndex;
        EXPECT_EQ(array.type, type);
        EXPECT_EQ(array.size, 2);
        EXPECT_EQ(array.strideBytes, 4);
        EXPECT_EQ(array.pointer, data);
        EXPECT_EQ(array.buffer, 6u);
        EXPECT_EQ(ctx->dirty, 0x8u);
    }
    clearMarks(ctx);
    glMatrixIndexPointerOES(1, GL_UNSIGNED_SHORT, 4, data);
    EXPECT_EQ(ctx->transform.uniformDirty, 0x10u);
}

TEST_F(PaletteArrays, IndexTypeIsCheckedFirstAndThenLeavesTheBufferAlone)
{
    glBindBuffer(GL_ARRAY_BUFFER, 8);
    expectOnlyError(ctx, GL_INVALID_ENUM, [&] { glMatrixIndexPointerOES(5, GL_FLOAT, 0, data); });
    glMatrixIndexPointerOES(5, GL_UNSIGNED_BYTE, 0, data);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_VALUE));
    EXPECT_EQ(ctx->arrays.matrixIndex.buffer, 8u);
    EXPECT_EQ(ctx->arrays.matrixIndex.pointer, nullptr);
    EXPECT_EQ(ctx->dirty, 0u);
    for (const GLint size : {4, 0, -1}) {
        expectAccepted([&] { glMatrixIndexPointerOES(size, GL_UNSIGNED_BYTE, 0, data); });
        EXPECT_EQ(ctx->arrays.matrixIndex.size, size);
    }
}

TEST_F(PaletteArrays, UnitsAreTheWeightSizeFromZeroToFour)
{
    const struct {
        GLint size;
        uint32_t units;
    } cases[] = {{-1, 0}, {0, 0}, {1, 1}, {3, 3}, {4, 4}};
    for (const auto &c : cases) {
        glWeightPointerOES(c.size, GL_SHORT, 0, data);
        EXPECT_EQ(paletteUnits(ctx), c.units);
    }
    ctx->arrays.weight.size = 5;
    EXPECT_EQ(paletteUnits(ctx), 4u);
}

TEST_F(Palette, IsInertWithoutContextAndInInterfaceOnlyMode)
{
    glBindBuffer(GL_ARRAY_BUFFER, 3);
    expectInert(*context, {
                              [] { glCurrentPaletteMatrixOES(99); },
                              [] { glLoadPaletteFromModelViewMatrixOES(); },
                              [] { glWeightPointerOES(9, 0, 0, nullptr); },
                              [] { glMatrixIndexPointerOES(9, GL_UNSIGNED_BYTE, 0, nullptr); },
                          });
}
