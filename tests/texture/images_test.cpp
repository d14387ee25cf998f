// SPDX-License-Identifier: MIT
#include "frontend/error.h"
#include "state/state_test.h"

namespace {

class Images : public StateTest {
protected:
    void upload(GLenum target, GLenum format, GLsizei width = 64, GLsizei height = 32, GLint level = 0)
    {
        glTexImage2D(target, level, static_cast<GLint>(format), width, height, 0, format, GL_UNSIGNED_BYTE, nullptr);
    }
    void uploadCompressed(GLenum target, GLenum format, GLint level = 0)
    {
        glCompressedTexImage2D(target, level, format, 16, 16, 0, 100, nullptr);
    }
    /// The backend reports an error in the next call of the function.
    void failNext(const char *function)
    {
        fakeBackend().onCall[function] = [] { fakeBackend().error = GL_INVALID_OPERATION; };
    }
    /// One image by each call that gives texels, all refused by the backend.
    void giveRefusedImages()
    {
        for (const char *function : {"glTexImage2D", "glCopyTexImage2D", "glTexSubImage2D", "glCopyTexSubImage2D"})
            failNext(function);
        upload(GL_TEXTURE_2D, GL_RGB);
        glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 4, 4, 0);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
        glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 1, 1);
    }
    const TextureObject &bound2D() const
    {
        return *ctx->bindings.texture2D[0];
    }
    const TextureObject &boundCubeMap() const
    {
        return *ctx->bindings.textureCubeMap[0];
    }
    GLenum unitFormat(uint32_t unit = 0) const
    {
        return ctx->bindings.unitFormat[unit];
    }
    size_t mipmapCalls() const
    {
        return callsOf("glGenerateMipmap").size();
    }
};

constexpr GLenum kFaceX = GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES;

} // namespace

TEST(InternalFormats, BaseFormatsStayAndCompressedOnesBecomeRgbaOrRgb)
{
    for (const GLenum format : {GL_ALPHA, GL_RGB, GL_RGBA, GL_LUMINANCE, GL_LUMINANCE_ALPHA})
        EXPECT_EQ(normalizeInternalFormat(format), format);
    for (const GLenum format : {0x8B91, 0x8B93, 0x8B94, 0x8B96, 0x8B98, 0x8B99, 0x87EE, 0x8C93})
        EXPECT_EQ(normalizeInternalFormat(format), GLenum(GL_RGBA)) << std::hex << format;
    // Paletted RGB, ETC1, the opaque vendor format, an unknown value and their neighbours.
    for (const GLenum format : {0x8B90, 0x8B92, 0x8B95, 0x8B97, 0x8D64, 0x8C92, 0, 0x1905, 0x190B, 0x8B9A})
        EXPECT_EQ(normalizeInternalFormat(format), GLenum(GL_RGB)) << std::hex << format;
}

TEST_F(Images, Level0IsRecordedAndDecidesAnEnabledUnit)
{
    glEnable(GL_TEXTURE_2D);
    clearMarks(ctx);
    upload(GL_TEXTURE_2D, GL_LUMINANCE);
    EXPECT_EQ(bound2D().width[0], 64);
    EXPECT_EQ(bound2D().height[0], 32);
    EXPECT_EQ(bound2D().internalFormat[0], GLenum(GL_LUMINANCE));
    EXPECT_EQ(unitFormat(), GLenum(GL_LUMINANCE));
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_TEXTURE_FORMAT));
    EXPECT_EQ(ctx->keyDirty, keyDirtyEnv(0));

    clearMarks(ctx);
    upload(GL_TEXTURE_2D, GL_LUMINANCE);
    EXPECT_EQ(ctx->dirty, 0u);
    EXPECT_EQ(ctx->keyDirty, 0u);
}

TEST_F(Images, ADisabledUnitKeepsItsFormatUntilItIsEnabled)
{
    upload(GL_TEXTURE_2D, GL_LUMINANCE);
    EXPECT_EQ(bound2D().internalFormat[0], GLenum(GL_LUMINANCE));
    EXPECT_EQ(unitFormat(), GLenum(GL_ALPHA));
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(unitFormat(), GLenum(GL_LUMINANCE));
}

TEST_F(Images, OtherLevelsAreForwardedAndRecordNothing)
{
    upload(GL_TEXTURE_2D, GL_RGB, 8, 8, 1);
    EXPECT_EQ(bound2D().width[0], 0);
    EXPECT_EQ(callsOf("glTexImage2D"),
              std::vector<std::string>{"glTexImage2D(0x0de1, 1, 6407, 8, 8, 0, 0x1907, 0x1401, null)"});
}

TEST_F(Images, OddSizesAreInvalidValueAndForwardedAllTheSame)
{
    const struct {
        GLsizei width, height;
        bool valid;
    } cases[] = {{100, 100, false}, {64, 63, false}, {3, 64, false},         {-1, 64, false},
                 {64, -4, false},   {-4, -4, false}, {INT32_MIN, 64, false}, {0, 0, true},
                 {1, 1, true},      {0, 64, true},   {2048, 1, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << " x " << c.height);
        takeCalls();
        upload(GL_TEXTURE_2D, GL_RGB, c.width, c.height);
        EXPECT_EQ(callsOf("glTexImage2D").size(), 1u);
        EXPECT_EQ(glGetError(), GLenum(c.valid ? GL_NO_ERROR : GL_INVALID_VALUE));
        EXPECT_EQ(bound2D().width[0], c.width);
    }
}

TEST_F(Images, ABackendErrorIsSwallowedAndNothingIsRecorded)
{
    giveRefusedImages();
    EXPECT_EQ(bound2D().width[0], 0);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Images, AnEarlierErrorIsPutBackWhateverTheBackendSays)
{
    const std::vector<std::function<void()>> calls = {
        [&] { upload(GL_TEXTURE_2D, GL_RGB); },
        [] { glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 4, 4, 0); },
        [] { glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr); },
        [] { glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 1, 1); },
        [] { glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr); },
    };
    for (const bool fails : {false, true}) {
        if (fails)
            for (const char *function : {"glTexImage2D", "glCopyTexImage2D", "glTexSubImage2D", "glCopyTexSubImage2D",
                                         "glEGLImageTargetTexture2DOES"})
                failNext(function);
        for (const auto &call : calls) {
            __glSetError(GL_STACK_OVERFLOW);
            call();
            EXPECT_EQ(glGetError(), GLenum(GL_STACK_OVERFLOW));
            EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        }
    }
}

TEST_F(Images, AnErrorPendingInTheBackendBeforeTheCallIsKept)
{
    fakeBackend().error = GL_INVALID_FRAMEBUFFER_OPERATION_OES;
    upload(GL_TEXTURE_2D, GL_RGB);
    EXPECT_EQ(bound2D().width[0], 64);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_FRAMEBUFFER_OPERATION_OES));
}

TEST_F(Images, OfTwoPendingErrorsTheBackendsIsDroppedAndNotTakenForTheImages)
{
    const std::vector<std::function<void()>> calls = {
        [&] { upload(GL_TEXTURE_2D, GL_RGB, 8, 8); },
        [] { glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 8, 8, 0); },
        [] { glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr); },
    };
    fakeBackend().texLevelParameters[0] = 8;
    for (const auto &call : calls) {
        ctx->bindings.texture2D[0]->width[0] = 0;
        __glSetError(GL_STACK_OVERFLOW);
        fakeBackend().error = GL_INVALID_OPERATION;
        call();
        EXPECT_EQ(bound2D().width[0], 8);
        EXPECT_EQ(glGetError(), GLenum(GL_STACK_OVERFLOW));
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
}

TEST_F(Images, ABadTargetIsInvalidEnumOnlyWhenNothingWasPending)
{
    const std::vector<std::function<void()>> calls = {
        [&] { upload(GL_TEXTURE_EXTERNAL_OES, GL_RGB); },
        [&] { upload(kFaceX - 1, GL_RGB); },
        [&] { upload(kFaceX + 6, GL_RGB); },
        [] { glCopyTexImage2D(GL_TEXTURE_CUBE_MAP_OES, 0, GL_RGB, 0, 0, 4, 4, 0); },
        [] { glTexSubImage2D(GL_TEXTURE_CUBE_MAP_OES, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr); },
        [] { glCopyTexSubImage2D(GL_TEXTURE_CUBE_MAP_OES, 0, 0, 0, 0, 0, 1, 1); },
        [] { glEGLImageTargetTexture2DOES(GL_TEXTURE_CUBE_MAP_OES, nullptr); },
    };
    for (const auto &call : calls) {
        expectOnlyError(ctx, GL_INVALID_ENUM, call);
        __glSetError(GL_STACK_OVERFLOW);
        call();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << "the earlier error is lost then";
    }
}

TEST_F(Images, ABadTargetAtAnotherLevelIsTheBackendsAffair)
{
    upload(GL_TEXTURE_CUBE_MAP_OES, GL_RGB, 4, 4, 1);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    glTexSubImage2D(GL_TEXTURE_EXTERNAL_OES, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Images, CubeFacesAreRecordedApartAndOnlyTheFirstDecides)
{
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    upload(kFaceX + 3, GL_RGB, 8, 8);
    EXPECT_EQ(boundCubeMap().width[3], 8);
    EXPECT_EQ(boundCubeMap().internalFormat[3], GLenum(GL_RGB));
    EXPECT_EQ(boundCubeMap().width[0], 0);
    EXPECT_EQ(unitFormat(), GLenum(GL_ALPHA));
    upload(kFaceX, GL_LUMINANCE_ALPHA, 8, 8);
    EXPECT_EQ(unitFormat(), GLenum(GL_LUMINANCE_ALPHA));
    upload(kFaceX + 5, GL_RGBA, 8, 8);
    EXPECT_EQ(unitFormat(), GLenum(GL_LUMINANCE_ALPHA));
    EXPECT_EQ(boundCubeMap().internalFormat[5], GLenum(GL_RGBA));
}

TEST_F(Images, TheEnablesDecideWhichImageCounts)
{
    struct Case {
        bool on2D, onCubeMap, onExternal;
        GLenum target;
        bool decides;
    };
    const Case cases[] = {
        {true, false, false, GL_TEXTURE_2D, true},
        {true, true, false, GL_TEXTURE_2D, false},
        {true, false, true, GL_TEXTURE_2D, false},
        {false, false, false, GL_TEXTURE_2D, false},
        {false, true, false, GL_TEXTURE_CUBE_MAP_OES, true},
        {true, true, false, GL_TEXTURE_CUBE_MAP_OES, true},
        {false, true, true, GL_TEXTURE_CUBE_MAP_OES, false},
        {true, false, false, GL_TEXTURE_CUBE_MAP_OES, false},
        {false, false, true, GL_TEXTURE_EXTERNAL_OES, true},
        {true, false, true, GL_TEXTURE_EXTERNAL_OES, false},
        {false, true, true, GL_TEXTURE_EXTERNAL_OES, false},
        {true, true, true, kFaceX, false},
        {false, true, false, kFaceX, false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.on2D << c.onCubeMap << c.onExternal << std::hex << c.target);
        ctx->enables.texture2D[0] = c.on2D;
        ctx->enables.textureCubeMap[0] = c.onCubeMap;
        ctx->enables.textureExternal[0] = c.onExternal;
        ctx->bindings.unitFormat[0] = GL_ALPHA;
        updateInternalFormat(ctx, c.target, GL_RGB, 0);
        EXPECT_EQ(unitFormat(), GLenum(c.decides ? GL_RGB : GL_ALPHA));
    }
}

TEST_F(Images, BindingATextureRecordsItsFormat)
{
    glBindTexture(GL_TEXTURE_2D, 5);
    upload(GL_TEXTURE_2D, GL_RGB);
    glBindTexture(GL_TEXTURE_2D, 0);
    glEnable(GL_TEXTURE_2D);
    clearMarks(ctx);
    glBindTexture(GL_TEXTURE_2D, 5);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGB));
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_TEXTURE_FORMAT));
    EXPECT_EQ(ctx->keyDirty, keyDirtyEnv(0));

    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 6);
    upload(kFaceX, GL_LUMINANCE, 8, 8);
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 0);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    EXPECT_EQ(unitFormat(), GLenum(GL_ALPHA));
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 6);
    EXPECT_EQ(unitFormat(), GLenum(GL_LUMINANCE));
}

TEST_F(Images, AnExternalTextureBoundBesideAnEnabled2DLeavesTheFormat)
{
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    glEnable(GL_TEXTURE_2D);
    const GLenum before = unitFormat();
    glBindTexture(GL_TEXTURE_EXTERNAL_OES, 7); // a new record: GL_ALPHA
    EXPECT_EQ(before, GLenum(GL_RGBA));
    EXPECT_EQ(unitFormat(), GLenum(GL_RGBA));
    glDisable(GL_TEXTURE_2D);
    EXPECT_EQ(unitFormat(), GLenum(GL_ALPHA));
}

TEST_F(Images, AnImageAlsoDecidesTheOtherUnitThatSamplesIt)
{
    glBindTexture(GL_TEXTURE_2D, 5);
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, 5);
    clearMarks(ctx);
    upload(GL_TEXTURE_2D, GL_RGB);
    EXPECT_EQ(unitFormat(0), GLenum(GL_RGB));
    EXPECT_EQ(unitFormat(1), GLenum(GL_ALPHA));
    EXPECT_EQ(ctx->keyDirty, keyDirtyEnv(0));
    uploadCompressed(GL_TEXTURE_2D, 0x8B96);
    EXPECT_EQ(unitFormat(0), GLenum(GL_RGBA));
}

TEST_F(Images, AnImageOfAnotherTextureLeavesTheOtherUnit)
{
    glBindTexture(GL_TEXTURE_2D, 5);
    glEnable(GL_TEXTURE_2D);
    upload(GL_TEXTURE_2D, GL_RGB);
    const GLuint name = 5;
    glDeleteTextures(1, &name);
    EXPECT_EQ(unitFormat(0), GLenum(GL_RGB)); // of the deleted texture
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, 6);
    upload(GL_TEXTURE_2D, GL_LUMINANCE);
    EXPECT_EQ(unitFormat(0), GLenum(GL_RGB));
}

TEST_F(Images, CompressedImagesAreRecordedByTheirBaseFormat)
{
    glEnable(GL_TEXTURE_2D);
    uploadCompressed(GL_TEXTURE_2D, GL_PALETTE8_RGBA4_OES);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGBA));
    uploadCompressed(GL_TEXTURE_2D, GL_PALETTE4_RGB8_OES);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGB));
    EXPECT_EQ(bound2D().width[0], 16);
    uploadCompressed(GL_TEXTURE_2D, GL_PALETTE4_RGBA4_OES);
    uploadCompressed(GL_TEXTURE_2D, GL_ETC1_RGB8_OES);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGB));
}

TEST_F(Images, CompressedImagesAreForwardedWithoutErrorBracketAndMipmaps)
{
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1);
    takeCalls();
    uploadCompressed(GL_TEXTURE_2D, GL_ETC1_RGB8_OES);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glCompressedTexImage2D(0x0de1, 0, 0x8d64, 16, 16, 0, 100, null)"});
    failNext("glCompressedTexImage2D");
    uploadCompressed(GL_TEXTURE_2D, GL_ETC1_RGB8_OES);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_OPERATION));
}

TEST_F(Images, ABadCompressedTargetIsRefusedAtLevel0Only)
{
    for (const GLenum target :
         {GLenum(GL_TEXTURE_EXTERNAL_OES), GLenum(GL_TEXTURE_CUBE_MAP_OES), kFaceX - 1, kFaceX + 6})
        expectOnlyError(ctx, GL_INVALID_ENUM, [&] { uploadCompressed(target, GL_ETC1_RGB8_OES); });
    EXPECT_EQ(callsOf("glCompressedTexImage2D").size(), 0u);
    uploadCompressed(GL_TEXTURE_EXTERNAL_OES, GL_ETC1_RGB8_OES, 1);
    EXPECT_EQ(callsOf("glCompressedTexImage2D").size(), 1u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Images, ACompressedCubeFaceNeverDecidesTheUnit)
{
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    uploadCompressed(kFaceX, GL_ETC1_RGB8_OES);
    EXPECT_EQ(boundCubeMap().internalFormat[0], GLenum(GL_RGB));
    EXPECT_EQ(boundCubeMap().width[0], 16);
    EXPECT_EQ(unitFormat(), GLenum(GL_ALPHA));
}

TEST_F(Images, APalettedImageWithAllItsLevelsIncludesLevel0)
{
    glEnable(GL_TEXTURE_2D);
    uploadCompressed(GL_TEXTURE_2D, GL_PALETTE8_RGBA4_OES, -4);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGBA));
    EXPECT_EQ(bound2D().width[0], 16);
    // A negative level means nothing for other formats.
    for (const GLenum other :
         {GLenum(GL_ETC1_RGB8_OES), GLenum(GL_PALETTE4_RGB8_OES - 1), GLenum(GL_PALETTE8_RGB5_A1_OES + 1)}) {
        uploadCompressed(GL_TEXTURE_2D, other, -4);
        EXPECT_EQ(unitFormat(), GLenum(GL_RGBA));
    }
    uploadCompressed(GL_TEXTURE_2D, GL_PALETTE4_RGB8_OES, -1);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGB));
    uploadCompressed(GL_TEXTURE_2D, GL_PALETTE8_RGB5_A1_OES, -1);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGBA));
}

TEST_F(Images, MipmapsAreMadeAfterEveryLevel0UploadOfA2DTexture)
{
    upload(GL_TEXTURE_2D, GL_RGB);
    EXPECT_EQ(mipmapCalls(), 0u);
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1);
    upload(GL_TEXTURE_2D, GL_RGB);
    EXPECT_EQ(mipmapCalls(), 1u);
    upload(GL_TEXTURE_2D, GL_RGB, 8, 8, 1);
    EXPECT_EQ(mipmapCalls(), 1u);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 1, 1);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 4, 4, 0);
    EXPECT_EQ(mipmapCalls(), 4u);
    glTexSubImage2D(GL_TEXTURE_2D, 1, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(mipmapCalls(), 4u);
    EXPECT_EQ(callsOf("glGenerateMipmap")[0], "glGenerateMipmap(0x0de1)");
}

TEST_F(Images, SubImagesLeaveSizeAndFormat)
{
    upload(GL_TEXTURE_2D, GL_RGB);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_LUMINANCE, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(bound2D().width[0], 64);
    EXPECT_EQ(bound2D().internalFormat[0], GLenum(GL_RGB));
}

TEST_F(Images, CopiesRecordSizeAndFormat)
{
    glEnable(GL_TEXTURE_2D);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE_ALPHA, 1, 2, 48, 24, 0);
    EXPECT_EQ(bound2D().width[0], 48); // sizes are not checked here
    EXPECT_EQ(bound2D().height[0], 24);
    EXPECT_EQ(unitFormat(), GLenum(GL_LUMINANCE_ALPHA));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(callsOf("glCopyTexImage2D"),
              std::vector<std::string>{"glCopyTexImage2D(0x0de1, 0, 0x190a, 1, 2, 48, 24, 0)"});
}

TEST_F(Images, CubeMipmapsWaitForTheSixthSquareFaceOfOneFormat)
{
    glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, GL_GENERATE_MIPMAP, 1);
    for (uint32_t face = 0; face < 5; ++face)
        upload(kFaceX + face, GL_RGB, 8, 8);
    EXPECT_EQ(mipmapCalls(), 0u);
    upload(kFaceX + 5, GL_RGBA, 8, 8); // another format
    EXPECT_EQ(mipmapCalls(), 0u);
    upload(kFaceX + 5, GL_RGB, 8, 4); // not square
    EXPECT_EQ(mipmapCalls(), 0u);
    upload(kFaceX + 5, GL_RGB, 0, 0); // empty
    EXPECT_EQ(mipmapCalls(), 0u);
    upload(kFaceX + 5, GL_RGB, 4, 4); // another size will do
    EXPECT_EQ(callsOf("glGenerateMipmap"), std::vector<std::string>{"glGenerateMipmap(0x8513)"});
    upload(kFaceX, GL_RGB, 16, 16);
    EXPECT_EQ(mipmapCalls(), 2u);
}

TEST_F(Images, EveryKindOfUploadToAFaceOfACompleteCubeMapMakesMipmaps)
{
    for (uint32_t face = 0; face < 6; ++face)
        upload(kFaceX + face, GL_RGB, 8, 8);
    glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, GL_GENERATE_MIPMAP, 1);
    glCopyTexImage2D(kFaceX + 2, 0, GL_RGB, 0, 0, 4, 4, 0);
    EXPECT_EQ(boundCubeMap().width[2], 4);
    EXPECT_EQ(mipmapCalls(), 1u);
    glTexSubImage2D(kFaceX + 3, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(mipmapCalls(), 2u);
    glCopyTexSubImage2D(kFaceX + 4, 0, 0, 0, 0, 0, 1, 1);
    EXPECT_EQ(callsOf("glGenerateMipmap"), std::vector<std::string>(3, "glGenerateMipmap(0x8513)"));
    // A face that no longer fits ends it, for the others too.
    glCopyTexImage2D(kFaceX + 5, 0, GL_RGBA, 0, 0, 4, 4, 0);
    glTexSubImage2D(kFaceX, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(mipmapCalls(), 3u);
}

TEST_F(Images, ARefusedImageMakesNoMipmaps)
{
    upload(GL_TEXTURE_2D, GL_RGB);
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1);
    giveRefusedImages();
    EXPECT_EQ(mipmapCalls(), 0u);
}

TEST_F(Images, TheActiveUnitIsTheOneWhoseFormatChanges)
{
    glActiveTexture(GL_TEXTURE1);
    glEnable(GL_TEXTURE_2D);
    clearMarks(ctx);
    upload(GL_TEXTURE_2D, GL_LUMINANCE);
    EXPECT_EQ(unitFormat(1), GLenum(GL_LUMINANCE));
    EXPECT_EQ(unitFormat(0), GLenum(GL_ALPHA));
    EXPECT_EQ(ctx->dirty, 0x4000u);
    EXPECT_EQ(ctx->keyDirty, 2u);
}

TEST_F(Images, WithMipmapsTheUnitTakesTheFormatWhateverIsEnabled)
{
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1);
    clearMarks(ctx);
    upload(GL_TEXTURE_2D, GL_RGB);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGB));
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_TEXTURE_FORMAT));
    EXPECT_EQ(ctx->keyDirty, keyDirtyEnv(0));
    // Copies do not.
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, 0, 0, 4, 4, 0);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGB));

    glTexParameteri(GL_TEXTURE_CUBE_MAP_OES, GL_GENERATE_MIPMAP, 1);
    for (uint32_t face = 0; face < 5; ++face)
        upload(kFaceX + face, GL_RGBA, 8, 8);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGB));
    upload(kFaceX + 5, GL_RGBA, 8, 8);
    EXPECT_EQ(unitFormat(), GLenum(GL_RGBA));
}

TEST_F(Images, EglImagesAreDescribedByTheBackend)
{
    fakeBackend().texLevelParameters[0] = 320;
    fakeBackend().texLevelParameters[1] = 200;
    fakeBackend().texLevelParameters[2] = GL_LUMINANCE;
    glBindTexture(GL_TEXTURE_EXTERNAL_OES, 11);
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    takeCalls();
    glEGLImageTargetTexture2DOES(GL_TEXTURE_EXTERNAL_OES, nullptr);
    const TextureObject &object = *ctx->bindings.textureExternal[0];
    EXPECT_EQ(object.width[0], 320);
    EXPECT_EQ(object.height[0], 200);
    EXPECT_EQ(object.internalFormat[0], GLenum(GL_LUMINANCE));
    EXPECT_EQ(unitFormat(), GLenum(GL_LUMINANCE));
    EXPECT_EQ(callsOf("glGetTexLevelParameterivQRN"),
              (std::vector<std::string>{"glGetTexLevelParameterivQRN(11, 0, 0, 0x8bd2, ptr)",
                                        "glGetTexLevelParameterivQRN(11, 0, 0, 0x8bd3, ptr)",
                                        "glGetTexLevelParameterivQRN(11, 0, 0, 0x8bd5, ptr)"}));

    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 12);
    takeCalls();
    glEGLImageTargetTexture2DOES(kFaceX + 4, nullptr);
    EXPECT_EQ(ctx->bindings.textureCubeMap[0]->width[4], 320);
    EXPECT_EQ(callsOf("glGetTexLevelParameterivQRN")[0], "glGetTexLevelParameterivQRN(12, 4, 0, 0x8bd2, ptr)");
}

TEST_F(Images, EglImagesOfABackendWithoutTheQueryCountAsRgbaOfUnknownSize)
{
    startWithout({"glGetTexLevelParameterivQRN", "glEGLImageTargetRenderbufferStorageOES"});
    glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr);
    EXPECT_EQ(bound2D().internalFormat[0], GLenum(GL_RGBA));
    EXPECT_EQ(bound2D().width[0], 0);
    EXPECT_EQ(bound2D().height[0], 0);
    glEGLImageTargetRenderbufferStorageOES(GL_RENDERBUFFER_OES, nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Images, OptionalBackendFunctionsMayBeMissing)
{
    startWithout({"glEGLImageTargetTexture2DOES", "glGenerateMipmap"});
    fakeBackend().texLevelParameters[0] = 320;
    glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr);
    EXPECT_EQ(bound2D().width[0], 320); // what the backend tells is noted all the same
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1);
    upload(GL_TEXTURE_2D, GL_RGB);
    EXPECT_EQ(bound2D().width[0], 64);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Images, ARefusedEglImageIsNotRecorded)
{
    failNext("glEGLImageTargetTexture2DOES");
    fakeBackend().texLevelParameters[0] = 320;
    glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr);
    EXPECT_EQ(bound2D().width[0], 0);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Images, EglImagesOfRenderbuffersAreForwarded)
{
    glEGLImageTargetRenderbufferStorageOES(GL_RENDERBUFFER_OES, nullptr);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glEGLImageTargetRenderbufferStorageOES(0x8d41, null)"});
}

TEST_F(Images, InterfaceOnlyModeForwardsAndRecordsNothing)
{
    ctx->settings.interfaceOnly = 1;
    upload(GL_TEXTURE_2D, GL_RGB);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 4, 4, 0);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr);
    uploadCompressed(GL_TEXTURE_2D, GL_ETC1_RGB8_OES, 1);
    EXPECT_EQ(callsOf("glTexImage2D").size(), 1u);
    EXPECT_EQ(callsOf("glCopyTexImage2D").size(), 1u);
    EXPECT_EQ(callsOf("glTexSubImage2D").size(), 1u);
    EXPECT_EQ(callsOf("glEGLImageTargetTexture2DOES").size(), 1u);
    EXPECT_EQ(callsOf("glCompressedTexImage2D").size(), 1u);
    EXPECT_EQ(bound2D().width[0], 0);

    uploadCompressed(GL_TEXTURE_2D, GL_ETC1_RGB8_OES);
    EXPECT_EQ(callsOf("glCompressedTexImage2D").size(), 1u) << "level 0 is not forwarded then";
    upload(GL_TEXTURE_2D, GL_RGB, 100, 100);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_VALUE));
}

TEST_F(Images, WithoutContextNothingReachesTheBackend)
{
    os_tls_write(__gl_tls_index, nullptr);
    upload(GL_TEXTURE_2D, GL_RGB);
    uploadCompressed(GL_TEXTURE_2D, GL_ETC1_RGB8_OES);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 4, 4, 0);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 1, 1);
    glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr);
    glEGLImageTargetRenderbufferStorageOES(GL_RENDERBUFFER_OES, nullptr);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    context->makeCurrent();
}

TEST_F(Images, AMissingBackendFunctionIsAnAssertion)
{
    startWithout(
        {"glTexImage2D", "glCopyTexImage2D", "glTexSubImage2D", "glCopyTexSubImage2D", "glCompressedTexImage2D"});
    upload(GL_TEXTURE_2D, GL_RGB);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 4, 4, 0);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 1, 1);
    uploadCompressed(GL_TEXTURE_2D, GL_ETC1_RGB8_OES);
    EXPECT_EQ(fakePlatform().assertions,
              (std::vector<std::string>{"glTexImage2D_2_0", "glCopyTexImage2D_2_0", "glTexSubImage2D_2_0",
                                        "glCopyTexSubImage2D_2_0", "glCompressedTexImage2D_2_0"}));
}
