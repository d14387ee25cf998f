// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class UnitEnables : public StateTest {};

} // namespace

TEST_F(UnitEnables, KeyBitsFollowTheThreeTargets)
{
    for (uint32_t targets = 0; targets < 8; ++targets) {
        SCOPED_TRACE(targets);
        const bool on2D = targets & 1;
        const bool onCubeMap = targets & 2;
        const bool onExternal = targets & 4;
        ctx->enables.texture2D[1] = on2D;
        ctx->enables.textureCubeMap[1] = onCubeMap;
        ctx->enables.textureExternal[1] = onExternal;
        updateTextureEnables(ctx, 1);
        EXPECT_EQ(ctx->key.unit[1].enabled, targets != 0);
        EXPECT_EQ(ctx->key.unit[1].cubeMap, onCubeMap && !onExternal);
        EXPECT_EQ(ctx->key.unit[1].external, onExternal);
        EXPECT_EQ(ctx->key.unit[0].enabled, 0u);
    }
}

TEST_F(UnitEnables, TurningAUnitOnMarksEverythingOfIt)
{
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(ctx->keyDirty, 0x15u);
    clearMarks(ctx);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    EXPECT_EQ(ctx->keyDirty, 0u); // it was on, and both defaults have one format
    glDisable(GL_TEXTURE_CUBE_MAP_OES);
    glDisable(GL_TEXTURE_2D);
    EXPECT_EQ(ctx->keyDirty, 0u);
    glActiveTexture(GL_TEXTURE1);
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(ctx->keyDirty, 0x2Au);
}

TEST_F(UnitEnables, AnEqualValueMarksNothing)
{
    for (const GLenum target : {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES}) {
        for (const bool on : {false, true}) {
            if (on) glEnable(target);
            clearMarks(ctx);
            // Another format than the recorded one, which a change would take over.
            ctx->bindings.unitFormat[0] = GL_LUMINANCE_ALPHA;
            const std::vector<unsigned char> before = bytesOf(ctx);
            on ? glEnable(target) : glDisable(target);
            EXPECT_EQ(bytesOf(ctx), before);
        }
    }
}

TEST_F(UnitEnables, EveryChangeRecordsTheFormatOfTheTextureThatIsSampledNow)
{
    ctx->bindings.texture2D[0]->internalFormat[0] = GL_RGB;
    ctx->bindings.textureCubeMap[0]->internalFormat[0] = GL_LUMINANCE;
    ctx->bindings.textureExternal[0]->internalFormat[0] = GL_RGBA;
    const GLenum &format = ctx->bindings.unitFormat[0];
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(format, GLenum(GL_RGB));
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    EXPECT_EQ(format, GLenum(GL_LUMINANCE));
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    EXPECT_EQ(format, GLenum(GL_RGBA));
    glDisable(GL_TEXTURE_CUBE_MAP_OES);
    EXPECT_EQ(format, GLenum(GL_RGBA));
    glDisable(GL_TEXTURE_EXTERNAL_OES);
    EXPECT_EQ(format, GLenum(GL_RGB));
    EXPECT_EQ(ctx->dirty, uint32_t(DIRTY_TEXTURE_FORMAT));
    glDisable(GL_TEXTURE_2D);
    EXPECT_EQ(format, GLenum(GL_RGB));
}

TEST_F(UnitEnables, MakeCurrentInAShareGroupSeesTheOthersImages)
{
    glBindTexture(GL_TEXTURE_2D, 5);
    glEnable(GL_TEXTURE_2D);
    {
        TestContext other(ctx);
        EXPECT_EQ(other->bindings.unitFormat[0], GLenum(GL_ALPHA));
        glBindTexture(GL_TEXTURE_2D, 5);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
        EXPECT_EQ(ctx->bindings.unitFormat[0], GLenum(GL_ALPHA));
        clearMarks(ctx);
        context->makeCurrent();
        EXPECT_EQ(ctx->bindings.unitFormat[0], GLenum(GL_RGB));
        EXPECT_EQ(ctx->keyDirty, keyDirtyEnv(0));
        other.makeCurrent();
    }
    context->makeCurrent();
}
