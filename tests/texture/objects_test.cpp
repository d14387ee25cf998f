// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

class TextureObjects : public StateTest {
protected:
    TextureNamespace &names() const
    {
        return *ctx->textures;
    }
    TextureObject *lookup(GLuint name, GLenum target = GL_TEXTURE_2D) const
    {
        return lookupTextureObject(ctx->textures, target, name);
    }
    std::vector<GLuint> overflowNames() const
    {
        std::vector<GLuint> list;
        for (const TextureObject *object = names().overflowHead; object; object = object->next)
            list.push_back(object->name);
        return list;
    }
    void deleteName(GLuint name) const
    {
        glDeleteTextures(1, &name);
    }
};

} // namespace

TEST_F(TextureObjects, DefaultsHaveTheirFormatsAndAreBoundEverywhere)
{
    EXPECT_EQ(names().default2D.internalFormat[0], GLenum(GL_ALPHA));
    EXPECT_EQ(names().defaultCubeMap.internalFormat[0], GLenum(GL_ALPHA));
    EXPECT_EQ(names().defaultExternal.internalFormat[0], GLenum(GL_RGBA));
    EXPECT_EQ(names().tableSize, 16u);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        EXPECT_EQ(ctx->bindings.texture2D[unit], &names().default2D);
        EXPECT_EQ(ctx->bindings.textureCubeMap[unit], &names().defaultCubeMap);
        EXPECT_EQ(ctx->bindings.textureExternal[unit], &names().defaultExternal);
        EXPECT_EQ(ctx->bindings.unitFormat[unit], GLenum(GL_ALPHA));
        EXPECT_EQ(names().unitBoundInBackend[unit], 0);
    }
}

TEST_F(TextureObjects, InitialisationSetsEveryFieldAgain)
{
    TextureNamespace textures = {};
    TextureObject stale = {};
    stale.name = 5;
    textures.default2D.cropRect[2] = 4;
    textures.defaultCubeMap.width[3] = 4;
    textures.defaultExternal.generateMipmap = 1;
    textures.tableSize = 64;
    textures.overflowHead = textures.overflowTail = textures.recent[5] = &stale;
    initTextureObjects(&textures);
    EXPECT_EQ(textures.default2D.cropRect[2], 0);
    EXPECT_EQ(textures.defaultCubeMap.width[3], 0);
    EXPECT_EQ(textures.defaultExternal.generateMipmap, 0);
    EXPECT_EQ(textures.tableSize, 16u);
    EXPECT_EQ(textures.overflowHead, nullptr);
    EXPECT_EQ(textures.overflowTail, nullptr);
    EXPECT_EQ(textures.recent[5], nullptr);
    for (uint32_t slot = 0; slot < 16; ++slot)
        EXPECT_EQ(textures.table[slot], nullptr);
    destroyTextureObjects(&textures);
}

TEST_F(TextureObjects, NameZeroIsTheDefaultOfTheTarget)
{
    EXPECT_EQ(lookup(0, GL_TEXTURE_2D), &names().default2D);
    EXPECT_EQ(lookup(0, GL_TEXTURE_CUBE_MAP_OES), &names().defaultCubeMap);
    EXPECT_EQ(lookup(0, GL_TEXTURE_EXTERNAL_OES), &names().defaultExternal);
    EXPECT_EQ(lookup(0, GL_TEXTURE), nullptr);
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{"texture target"});
}

TEST_F(TextureObjects, ANewRecordIsEmptyWithAlphaFormat)
{
    const TextureObject *object = lookup(5);
    EXPECT_EQ(object->name, 5u);
    EXPECT_EQ(object->internalFormat[0], GLenum(GL_ALPHA));
    for (uint32_t face = 0; face < kCubeFaces; ++face) {
        EXPECT_EQ(object->width[face], 0);
        EXPECT_EQ(object->height[face], 0);
        if (face > 0) {
            EXPECT_EQ(object->internalFormat[face], 0u);
        }
    }
    for (const GLint side : object->cropRect)
        EXPECT_EQ(side, 0);
    EXPECT_EQ(object->generateMipmap, 0);
    EXPECT_EQ(object->next, nullptr);
    EXPECT_EQ(lookup(5), object);
}

TEST_F(TextureObjects, TheTableGrowsToTheNextSixteenAndNamesAbove255GoToTheList)
{
    lookup(300);
    EXPECT_EQ(names().tableSize, 16u);
    lookup(15);
    EXPECT_EQ(names().tableSize, 16u);
    lookup(16);
    EXPECT_EQ(names().tableSize, 32u);
    const TextureObject *kept = lookup(15);
    lookup(200);
    EXPECT_EQ(names().tableSize, 208u);
    EXPECT_EQ(lookup(15), kept);
    for (uint32_t slot = 17; slot < 200; ++slot)
        EXPECT_EQ(names().table[slot], nullptr);
    lookup(255);
    EXPECT_EQ(names().tableSize, 256u);
    lookup(256);
    EXPECT_EQ(names().tableSize, 256u);
    EXPECT_EQ(overflowNames(), (std::vector<GLuint>{300, 256}));
    EXPECT_EQ(names().overflowTail->name, 256u);
}

TEST_F(TextureObjects, TargetsShareTheRecordOfAName)
{
    glBindTexture(GL_TEXTURE_2D, 17);
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 17);
    EXPECT_EQ(ctx->bindings.texture2D[0], ctx->bindings.textureCubeMap[0]);
    EXPECT_EQ(ctx->bindings.texture2D[0]->bindings, 2u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureObjects, BindingGoesToTheActiveUnitAndTheBackend)
{
    glActiveTexture(GL_TEXTURE1);
    takeCalls();
    glBindTexture(GL_TEXTURE_EXTERNAL_OES, 4);
    EXPECT_EQ(ctx->bindings.textureExternal[1]->name, 4u);
    EXPECT_EQ(ctx->bindings.textureExternal[0], &names().defaultExternal);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glBindTexture(0x8d65, 4)"});
    EXPECT_EQ(names().unitBoundInBackend[0], 0);
    EXPECT_EQ(names().unitBoundInBackend[1], 1);
}

TEST_F(TextureObjects, BindingToAnotherTargetIsInvalidEnum)
{
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glBindTexture(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES, 4); });
    EXPECT_EQ(callsOf("glBindTexture"), std::vector<std::string>{});
    EXPECT_EQ(names().table[4], nullptr);
}

TEST_F(TextureObjects, DeletingFewerThanOneNameIsInvalidValue)
{
    const GLuint name = 1;
    const TextureObject *object = lookup(name);
    for (const GLsizei n : {0, -1})
        expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glDeleteTextures(n, &name); });
    EXPECT_EQ(names().table[name], object);
    EXPECT_EQ(callsOf("glDeleteTextures"), std::vector<std::string>{});
}

TEST_F(TextureObjects, DeletingFreesTheRecordAndIsForwardedOnce)
{
    lookup(3);
    lookup(400);
    const TextureObject *kept = lookup(7);
    const size_t blocks = fakePlatform().liveBlocks;
    const GLuint list[5] = {3, 0, 99, 400, 7};
    glDeleteTextures(4, list);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks - 2);
    EXPECT_EQ(names().table[3], nullptr);
    EXPECT_EQ(names().table[7], kept);
    EXPECT_EQ(overflowNames(), std::vector<GLuint>{});
    EXPECT_EQ(callsOf("glDeleteTextures"), std::vector<std::string>{"glDeleteTextures(4, ptr)"});
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(TextureObjects, DeletingANameBehindTheTableLooksInTheListOnly)
{
    lookup(300);
    const size_t blocks = fakePlatform().liveBlocks;
    deleteName(16);
    deleteName(301);
    EXPECT_EQ(names().tableSize, 16u);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
    EXPECT_EQ(overflowNames(), std::vector<GLuint>{300});
}

TEST_F(TextureObjects, DeletingResetsEveryBindingOfTheCallingContext)
{
    glBindTexture(GL_TEXTURE_2D, 8);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, 8);
    glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 8);
    glBindTexture(GL_TEXTURE_EXTERNAL_OES, 9);
    glActiveTexture(GL_TEXTURE0);
    const GLenum format = ctx->bindings.unitFormat[1];
    deleteName(8);
    EXPECT_EQ(ctx->bindings.texture2D[0], &names().default2D);
    EXPECT_EQ(ctx->bindings.texture2D[1], &names().default2D);
    EXPECT_EQ(ctx->bindings.textureCubeMap[1], &names().defaultCubeMap);
    EXPECT_EQ(ctx->bindings.textureExternal[1]->name, 9u);
    EXPECT_EQ(ctx->bindings.unitFormat[1], format);
    deleteName(9);
    EXPECT_EQ(ctx->bindings.textureExternal[1], &names().defaultExternal);
}

TEST_F(TextureObjects, TheListIsMendedAtHeadMiddleAndTail)
{
    for (const GLuint name : {300, 301, 302, 303})
        lookup(name);
    deleteName(301);
    EXPECT_EQ(overflowNames(), (std::vector<GLuint>{300, 302, 303}));
    EXPECT_EQ(names().overflowTail->name, 303u);
    deleteName(303);
    EXPECT_EQ(overflowNames(), (std::vector<GLuint>{300, 302}));
    EXPECT_EQ(names().overflowTail->name, 302u);
    deleteName(300);
    EXPECT_EQ(overflowNames(), std::vector<GLuint>{302});
    EXPECT_EQ(names().overflowTail, names().overflowHead);
    deleteName(302);
    EXPECT_EQ(names().overflowHead, nullptr);
    EXPECT_EQ(names().overflowTail, nullptr);
    lookup(304);
    EXPECT_EQ(overflowNames(), std::vector<GLuint>{304});
}

// Names that share a place at hand, and one that does not.
TEST_F(TextureObjects, TheListsRecordsAreFoundWhateverIsAtHand)
{
    constexpr GLuint kFirst = 300, kSecond = kFirst + kRecentTextures, kOther = kFirst + 1;
    TextureObject *const first = lookup(kFirst);
    TextureObject *const second = lookup(kSecond);
    TextureObject *const other = lookup(kOther);
    EXPECT_EQ(names().recent[kFirst % kRecentTextures], second);
    EXPECT_EQ(names().recent[kOther % kRecentTextures], other);
    EXPECT_EQ(lookup(kFirst), first);
    EXPECT_EQ(names().recent[kFirst % kRecentTextures], first);
    EXPECT_EQ(lookup(kSecond), second);
    EXPECT_EQ(lookup(kOther), other);
    EXPECT_EQ(overflowNames(), (std::vector<GLuint>{kFirst, kSecond, kOther}));
}

TEST_F(TextureObjects, ADeletedRecordOfTheListIsNotAtHandAnyMore)
{
    constexpr GLuint kFirst = 300, kSecond = kFirst + kRecentTextures;
    lookup(kSecond);
    TextureObject *const first = lookup(kFirst);
    deleteName(kSecond); // the other's place stays
    EXPECT_EQ(names().recent[kFirst % kRecentTextures], first);
    deleteName(kFirst);
    EXPECT_EQ(names().recent[kFirst % kRecentTextures], nullptr);
    lookup(kFirst)->cropRect[0] = 7;
    EXPECT_EQ(overflowNames(), std::vector<GLuint>{kFirst});
    EXPECT_EQ(lookup(kFirst)->cropRect[0], 7);
}

TEST_F(TextureObjects, ADeletedRecordLivesWhileAnotherContextBindsIt)
{
    glBindTexture(GL_TEXTURE_2D, 6);
    TextureObject *object = ctx->bindings.texture2D[0];
    {
        TestContext other(ctx);
        glBindTexture(GL_TEXTURE_2D, 6);
        EXPECT_EQ(object->bindings, 2u);
        deleteName(6);
        EXPECT_EQ(other->bindings.texture2D[0], &names().default2D);
        EXPECT_EQ(ctx->bindings.texture2D[0], object);
        EXPECT_EQ(object->unnamed, 1);
        EXPECT_EQ(object->name, 6u);

        // The name is free at once.
        glBindTexture(GL_TEXTURE_2D, 6);
        EXPECT_NE(other->bindings.texture2D[0], object);
    }
    context->makeCurrent();
    const size_t blocks = fakePlatform().liveBlocks;
    glBindTexture(GL_TEXTURE_2D, 0);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks - 1);
}

TEST_F(TextureObjects, ADeletedRecordOfTheListLivesTheSameWay)
{
    glBindTexture(GL_TEXTURE_2D, 600);
    TextureObject *object = ctx->bindings.texture2D[0];
    {
        TestContext other(ctx);
        deleteName(600);
        EXPECT_EQ(names().overflowHead, nullptr);
        EXPECT_EQ(ctx->bindings.texture2D[0], object);
    }
    const size_t blocks = fakePlatform().liveBlocks;
    context->makeCurrent();
    glBindTexture(GL_TEXTURE_2D, 600);
    // The new record for the released one.
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
    EXPECT_NE(ctx->bindings.texture2D[0]->unnamed, 1);
}

TEST_F(TextureObjects, DestroyingTheLastContextFreesEveryRecord)
{
    context.reset();
    const size_t blocks = fakePlatform().liveBlocks;
    context = std::make_unique<TestContext>();
    {
        TestContext other(context->ctx);
        for (const GLuint name : {1, 20, 255, 256, 5000})
            glBindTexture(GL_TEXTURE_2D, name);
        context->makeCurrent();
        glBindTexture(GL_TEXTURE_2D, 20);
        glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 5000);
        other.makeCurrent();
        deleteName(20);
        deleteName(5000);
    }
    context.reset();
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
}

TEST_F(TextureObjects, WithoutMemoryForARecordTheBindingStays)
{
    glBindTexture(GL_TEXTURE_2D, 1);
    for (const GLuint name : {2, 300}) {
        takeCalls();
        fakePlatform().allocationsUntilFailure = 0;
        expectOnlyError(ctx, GL_OUT_OF_MEMORY, [&] { glBindTexture(GL_TEXTURE_2D, name); });
        EXPECT_EQ(ctx->bindings.texture2D[0]->name, 1u);
        EXPECT_EQ(callsOf("glBindTexture"), std::vector<std::string>{});
        expectAccepted([&] { glBindTexture(GL_TEXTURE_2D, name); });
        EXPECT_EQ(ctx->bindings.texture2D[0]->name, name);
        glBindTexture(GL_TEXTURE_2D, 1);
    }
}

TEST_F(TextureObjects, WithoutMemoryForALargerTableNothingIsLost)
{
    glBindTexture(GL_TEXTURE_2D, 1);
    const TextureObject *kept = ctx->bindings.texture2D[0];
    fakePlatform().allocationsUntilFailure = 0;
    expectOnlyError(ctx, GL_OUT_OF_MEMORY, [] { glBindTexture(GL_TEXTURE_2D, 40); });
    EXPECT_EQ(names().tableSize, 16u);
    EXPECT_EQ(lookup(1), kept);

    // The table grows, the record does not come: the next try makes it.
    fakePlatform().allocationsUntilFailure = 1;
    glBindTexture(GL_TEXTURE_2D, 40);
    EXPECT_EQ(glGetError(), GLenum(GL_OUT_OF_MEMORY));
    EXPECT_EQ(names().tableSize, 48u);
    EXPECT_EQ(ctx->bindings.texture2D[0], kept);
    expectAccepted([] { glBindTexture(GL_TEXTURE_2D, 40); });
    EXPECT_EQ(ctx->bindings.texture2D[0]->name, 40u);
}

TEST_F(TextureObjects, WithoutATableEveryNameGoesToTheList)
{
    TextureNamespace textures = {};
    fakePlatform().allocationsUntilFailure = 0;
    initTextureObjects(&textures);
    EXPECT_EQ(textures.tableSize, 0u);
    EXPECT_EQ(textures.table, nullptr);
    TextureObject *object = lookupTextureObject(&textures, GL_TEXTURE_2D, 5);
    EXPECT_EQ(textures.overflowHead, object);
    lookupTextureObject(&textures, GL_TEXTURE_2D, 200);
    EXPECT_EQ(lookupTextureObject(&textures, GL_TEXTURE_2D, 5), object);
    EXPECT_EQ(textures.tableSize, 0u);
    const size_t blocks = fakePlatform().liveBlocks;
    destroyTextureObjects(&textures);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks - 2);
}

TEST_F(TextureObjects, MissingBackendFunctionsAreAssertionsAndTheStateIsKept)
{
    startWithout({"glBindTexture", "glDeleteTextures", "glTexParameteri"});
    glBindTexture(GL_TEXTURE_2D, 4);
    EXPECT_EQ(ctx->bindings.texture2D[0]->name, 4u);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    deleteName(4);
    EXPECT_EQ(ctx->bindings.texture2D[0], &names().default2D);
    EXPECT_EQ(fakePlatform().assertions,
              (std::vector<std::string>{"glBindTexture_2_0", "glTexParameteri_2_0", "glDeleteTextures_2_0"}));
}

TEST_F(TextureObjects, AreInertWithoutContextAndInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glBindTexture(GL_TEXTURE_2D, 12); },
                              [] { glBindTexture(0, 12); },
                          });
}

TEST_F(TextureObjects, InterfaceOnlyModeDeletesInTheBackendOnly)
{
    lookup(3);
    ctx->settings.interfaceOnly = 1;
    deleteName(3);
    EXPECT_EQ(callsOf("glDeleteTextures"), std::vector<std::string>{"glDeleteTextures(1, ptr)"});
    EXPECT_NE(names().table[3], nullptr);
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glDeleteTextures(0, nullptr); });

    os_tls_write(__gl_tls_index, nullptr);
    takeCalls();
    glDeleteTextures(1, nullptr);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    context->makeCurrent();
}
