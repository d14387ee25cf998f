// SPDX-License-Identifier: MIT
#include "frontend/lifecycle.h"

#include "frontend/backend.h"
#include "frontend/client_api.h"
#include "shadergen/program_cache.h"
#include "state/state_test.h"

#include <thread>

namespace {

class Lifecycle : public StateTest {
protected:
    /// liveBlocks beside those of the fixture's own context.
    size_t blocks = fakePlatform().liveBlocks;
};

ClientAPIFunctions clientApi()
{
    ClientAPIFunctions table = {};
    oglGetClientAPIFunctions(&table);
    return table;
}

GLIContext *createContext(GLIContext *share)
{
    return static_cast<GLIContext *>(clientApi().createContext(share, nullptr, nullptr, __gl_tls_index, nullptr));
}

// Zero-filled like a context that nobody has initialised.
GLIContext *blankContext()
{
    auto *ctx = static_cast<GLIContext *>(os_malloc(sizeof(GLIContext)));
    os_memset(ctx, 0, sizeof(GLIContext));
    return ctx;
}

// Those of the context's name space are bound on both units.
void expectDefaultTextures(const GLIContext *ctx)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        EXPECT_EQ(ctx->bindings.texture2D[unit], &ctx->textures->default2D);
        EXPECT_EQ(ctx->bindings.textureCubeMap[unit], &ctx->textures->defaultCubeMap);
        EXPECT_EQ(ctx->bindings.textureExternal[unit], &ctx->textures->defaultExternal);
        EXPECT_EQ(ctx->bindings.unitFormat[unit], GLenum(GL_ALPHA));
    }
}

void drawTriangle()
{
    const GLfloat corners[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    glVertexPointer(3, GL_FLOAT, 0, corners);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

} // namespace

TEST_F(Lifecycle, FrontBlockStartsUnset)
{
    TestContext fresh;
    EXPECT_EQ(fresh->initialised, 1);
    EXPECT_EQ(fresh->backendModule, hGllModule);
    EXPECT_NE(fresh->backendContext, nullptr);
    EXPECT_EQ(fresh->error, GLenum(GL_NO_ERROR));
    EXPECT_EQ(fresh->primitiveFlags, 0u);
    EXPECT_EQ(fresh->keyDirty, 127);
    EXPECT_EQ(fresh->dirty & 0x2, 0x2u) << "the first draw loads the transform";
    EXPECT_EQ(fresh->settings.interfaceOnly, 0);
    EXPECT_EQ(fresh->diagnosticBuffer, nullptr);
    EXPECT_EQ(fresh->currentEntry, nullptr);
    const ShaderStateBitfield zero = {};
    EXPECT_EQ(std::memcmp(&fresh->key, &zero, sizeof(zero)), 0);
    for (const GLenum hint : fresh->hints.mode)
        EXPECT_EQ(hint, GLenum(GL_DONT_CARE));
}

TEST_F(Lifecycle, CurrentValuesStartAsTheStandardSays)
{
    TestContext fresh;
    EXPECT_EQ(values(fresh->current.color), (Vec4{1, 1, 1, 1}));
    EXPECT_EQ(values(fresh->current.normal), (Vec4{0, 0, 1, 0}));
    for (const auto &texCoord : fresh->current.texCoord)
        EXPECT_EQ(values(texCoord), (Vec4{0, 0, 0, 1}));
    EXPECT_EQ(fresh->current.activeUnit, 0u);
    EXPECT_EQ(fresh->viewport.depthNear, 0.0f);
    EXPECT_EQ(fresh->viewport.depthFar, 1.0f);
}

TEST_F(Lifecycle, PointsLinesFogAndAlphaStartAsTheStandardSays)
{
    TestContext fresh;
    const PointLineState &points = fresh->pointLine;
    EXPECT_EQ(points.lineWidth, 1.0f);
    EXPECT_EQ(points.pointSize, 1.0f);
    EXPECT_EQ(points.pointSizeMin, 0.0f);
    EXPECT_EQ(points.pointSizeMax, 128.0f);
    EXPECT_EQ(points.pointFadeThreshold, 1.0f);
    EXPECT_EQ(values(points.distanceAttenuation), (Vec3{1, 0, 0}));
    EXPECT_EQ(fresh->fog.mode, GLenum(GL_EXP));
    EXPECT_EQ(fresh->fog.coordSource, 0x8452u);
    EXPECT_EQ(fresh->fog.density, 1.0f);
    EXPECT_EQ(fresh->fog.start, 0.0f);
    EXPECT_EQ(fresh->fog.end, 1.0f);
    EXPECT_EQ(values(fresh->fog.color), (Vec4{0, 0, 0, 0}));
    EXPECT_EQ(fresh->alphaTest.func, GLenum(GL_ALWAYS));
    EXPECT_EQ(fresh->alphaTest.ref, 0.0f);
    EXPECT_EQ(fresh->vendor.alphaFactor, 1.0f);
    EXPECT_EQ(fresh->vendor.fogCoord, 0.0f);
    for (const TexGenState &texGen : fresh->texGen)
        EXPECT_EQ(texGen.mode, GLenum(GL_NORMAL_MAP_OES));
}

TEST_F(Lifecycle, BackendAbilitiesAreRecordedForEachShapeOfBackend)
{
    EXPECT_EQ(ctx->backend.lacksAlphaFunc, 1);
    EXPECT_EQ(ctx->backend.lacksFog, 1);
    useVendorBackend();
    EXPECT_EQ(ctx->backend.lacksAlphaFunc, 0);
    EXPECT_EQ(ctx->backend.lacksFog, 0);
    fakeBackend().absent = {"glFogfvQRN"};
    TestContext noFog;
    EXPECT_EQ(noFog->backend.lacksAlphaFunc, 0);
    EXPECT_EQ(noFog->backend.lacksFog, 1);
    fakeBackend().absent = {"glAlphaFuncQRN"};
    TestContext noAlpha;
    EXPECT_EQ(noAlpha->backend.lacksAlphaFunc, 1);
    EXPECT_EQ(noAlpha->backend.lacksFog, 0);
}

TEST_F(Lifecycle, NullContextsAreIgnored)
{
    gliInitLibrary(nullptr);
    EXPECT_EQ(gliInitContext(nullptr), 0u);
    gliMakeCurrent(nullptr, nullptr, nullptr);
    gliDestroyContext(nullptr);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Lifecycle, AContextOfItsOwnHasItsOwnNameSpaceAndDefaultTextures)
{
    TestContext other;
    EXPECT_NE(other->textures, ctx->textures);
    EXPECT_EQ(other->textures->shareCount, 1u);
    expectDefaultTextures(other.ctx);
}

TEST_F(Lifecycle, ASharingContextUsesTheNameSpaceAndItsDefaultTextures)
{
    TestContext sharing(ctx);
    EXPECT_EQ(sharing->textures, ctx->textures);
    EXPECT_EQ(ctx->textures->shareCount, 2u);
    expectDefaultTextures(sharing.ctx);
}

TEST_F(Lifecycle, ATextureRespecifiedElsewhereChoosesAnotherProgramAfterMakeCurrent)
{
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, 5);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    const ShaderProgramEntry *before = ctx->currentEntry;
    {
        TestContext sharing(ctx);
        glBindTexture(GL_TEXTURE_2D, 5);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 1, 1, 0, GL_ALPHA, GL_UNSIGNED_BYTE, nullptr);
        gliMakeCurrent(ctx, nullptr, nullptr);
        os_tls_write(__gl_tls_index, ctx);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        EXPECT_NE(ctx->currentEntry, before);
    }
}

TEST_F(Lifecycle, TheNameSpaceLivesUntilTheLastContextOfTheGroup)
{
    const size_t start = fakePlatform().liveBlocks;
    auto first = std::make_unique<TestContext>();
    glBindTexture(GL_TEXTURE_2D, 5);
    glBindTexture(GL_TEXTURE_2D, 1000);
    auto second = std::make_unique<TestContext>(first->ctx);
    auto third = std::make_unique<TestContext>(second->ctx);
    TextureNamespace *const textures = first->ctx->textures;
    EXPECT_EQ(textures->shareCount, 3u);

    first.reset();
    EXPECT_EQ(textures->shareCount, 2u);
    second.reset();
    EXPECT_EQ(textures->shareCount, 1u);
    third->makeCurrent();
    glBindTexture(GL_TEXTURE_2D, 5);
    EXPECT_EQ(third->ctx->bindings.texture2D[0]->name, 5u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    third.reset();
    EXPECT_EQ(fakePlatform().liveBlocks, start);
}

TEST_F(Lifecycle, DestroyingTheOriginalLastIsAsGood)
{
    const size_t start = fakePlatform().liveBlocks;
    auto first = std::make_unique<TestContext>();
    auto second = std::make_unique<TestContext>(first->ctx);
    glBindTexture(GL_TEXTURE_2D, 77);
    second.reset();
    EXPECT_EQ(first->ctx->textures->shareCount, 1u);
    first.reset();
    EXPECT_EQ(fakePlatform().liveBlocks, start);
}

TEST_F(Lifecycle, DestructionFreesProgramsTextAndDiagnostics)
{
    const size_t start = fakePlatform().liveBlocks;
    {
        TestContext second;
        drawTriangle();
        glEnable(GL_LIGHTING);
        glEnable(GL_LIGHT0);
        drawTriangle();
        second->diagnosticBuffer = os_malloc(100);
        EXPECT_GT(fakePlatform().liveBlocks, start + 4);
    }
    EXPECT_EQ(fakePlatform().liveBlocks, start);
    context->makeCurrent();
}

TEST_F(Lifecycle, TheFirstMakeCurrentInitialisesABlankContext)
{
    GLIContext *blank = blankContext();
    fakePlatform().lookups.clear();
    gliMakeCurrent(blank, offsetPointer(1), offsetPointer(2));
    EXPECT_EQ(blank->initialised, 1);
    EXPECT_EQ(blank->keyDirty, 127);
    EXPECT_EQ(blank->textures->shareCount, 1u);
    EXPECT_EQ(blank->backendModule, hGllModule);
    EXPECT_FALSE(fakePlatform().lookups.empty());
    EXPECT_EQ(blank->viewport.width, 64);

    blank->keyDirty = 1;
    fakePlatform().lookups.clear();
    gliMakeCurrent(blank, offsetPointer(3), offsetPointer(4));
    EXPECT_EQ(blank->keyDirty, 1) << "initialised only once";
    EXPECT_TRUE(fakePlatform().lookups.empty());
    EXPECT_EQ(blank->drawSurface, offsetPointer(3));
    EXPECT_EQ(blank->readSurface, offsetPointer(4));
    gliDestroyContext(blank);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
}

TEST_F(Lifecycle, ABlankContextWithoutMemoryIsTriedAgain)
{
    for (int failing = 0; failing < 4; ++failing) {
        SCOPED_TRACE(failing);
        GLIContext *blank = blankContext();
        fakePlatform().allocationsUntilFailure = failing;
        gliMakeCurrent(blank, nullptr, nullptr);
        fakePlatform().allocationsUntilFailure = -1;
        gliMakeCurrent(blank, nullptr, nullptr);
        EXPECT_EQ(blank->initialised, 1);
        EXPECT_EQ(blank->textures->shareCount, 1u);
        gliDestroyContext(blank);
        EXPECT_EQ(fakePlatform().liveBlocks, blocks);
    }
}

TEST_F(Lifecycle, EveryFailingAllocationGivesNoContextAndNoLeak)
{
    const int alive = fakeBackend().contextsAlive;
    int failing = 0;
    for (;; ++failing) {
        SCOPED_TRACE(failing);
        ASSERT_LT(failing, 20) << "creation never succeeded";
        takeCalls();
        fakePlatform().allocationsUntilFailure = failing;
        GLIContext *made = createContext(nullptr);
        const bool failed = fakePlatform().allocationsUntilFailure == -1;
        fakePlatform().allocationsUntilFailure = -1;
        if (made) {
            clientApi().destroyContext(made);
        } else {
            EXPECT_TRUE(failed);
            EXPECT_EQ(takeCalls(), (std::vector<std::string>{"createContext", "destroyContext"}));
        }
        EXPECT_EQ(fakeBackend().contextsAlive, alive);
        EXPECT_EQ(fakePlatform().liveBlocks, blocks);
        if (made && !failed) break;
    }
    EXPECT_GE(failing, 3) << "context, name space and cache are allocated";
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(Lifecycle, AFailedSharingContextLeavesTheGroupAsItWas)
{
    glBindTexture(GL_TEXTURE_2D, 5);
    const size_t before = fakePlatform().liveBlocks;
    for (int failing = 0; failing < 20; ++failing) {
        SCOPED_TRACE(failing);
        fakePlatform().allocationsUntilFailure = failing;
        GLIContext *made = createContext(ctx);
        fakePlatform().allocationsUntilFailure = -1;
        if (made) {
            EXPECT_EQ(ctx->textures->shareCount, 2u);
            clientApi().destroyContext(made);
            EXPECT_GE(failing, 2);
        }
        EXPECT_EQ(ctx->textures->shareCount, 1u);
        EXPECT_EQ(ctx->bindings.texture2D[0]->name, 5u);
        EXPECT_EQ(fakePlatform().liveBlocks, before);
        if (made) return;
    }
    FAIL() << "creation never succeeded";
}

TEST_F(Lifecycle, EveryFailingAllocationOfAFirstDrawSkipsItOrLeavesItWhole)
{
    std::vector<std::string> wholeTexts;
    {
        TestContext undisturbed;
        drawTriangle();
        wholeTexts = fakeBackend().shaderTexts;
    }
    EXPECT_EQ(wholeTexts.size(), 2u);
    int skipped = 0;
    for (int failing = 0; failing < 40; ++failing) {
        SCOPED_TRACE(failing);
        const size_t start = fakePlatform().liveBlocks;
        bool failed = false;
        {
            TestContext fresh;
            takeCalls();
            fakeBackend().shaderTexts.clear();
            fakePlatform().allocationsUntilFailure = failing;
            drawTriangle();
            failed = fakePlatform().allocationsUntilFailure == -1;
            fakePlatform().allocationsUntilFailure = -1;
            EXPECT_EQ(fresh->dirty, 0u);
            EXPECT_EQ(fresh->primitiveFlags, 0u);
            if (callsOf("glDrawArrays").empty()) {
                ++skipped;
                EXPECT_TRUE(failed);
                EXPECT_EQ(callsOf("glUseProgram"), std::vector<std::string>{"glUseProgram(0)"});
                EXPECT_EQ(callsOf("glCreateShader").size(), callsOf("glDeleteShader").size());
                EXPECT_TRUE(callsOf("glCreateProgram").empty());
            } else {
                EXPECT_EQ(fakeBackend().shaderTexts, wholeTexts);
            }

            takeCalls();
            drawTriangle();
            EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
            EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        }
        EXPECT_EQ(fakePlatform().liveBlocks, start);
        if (!failed) break;
    }
    EXPECT_GE(skipped, 1) << "the cache's entry is allocated";
    context->makeCurrent();
}

TEST_F(Lifecycle, AProgramBuiltBeforeSurvivesTheFailedBuildOfAnother)
{
    const size_t start = fakePlatform().liveBlocks;
    {
        TestContext fresh;
        drawTriangle();
        glEnable(GL_LIGHTING);
        takeCalls();
        fakePlatform().allocationsUntilFailure = 0;
        drawTriangle();
        EXPECT_EQ(takeCalls(), std::vector<std::string>{"glUseProgram(0)"});
        EXPECT_EQ(fresh->currentEntry, nullptr);

        glDisable(GL_LIGHTING);
        drawTriangle();
        EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
        EXPECT_TRUE(callsOf("glCreateProgram").empty());
        glEnable(GL_LIGHTING);
        drawTriangle();
        EXPECT_EQ(callsOf("glDrawArrays").size(), 2u);
    }
    EXPECT_EQ(fakePlatform().liveBlocks, start);
    context->makeCurrent();
}

TEST_F(Lifecycle, ATextThatDoesNotFitForWantOfMemorySkipsTheDraw)
{
    // Two units with combiners make the fragment text longer than the buffer's first 4096 bytes.
    const auto drawLongTexts = [](GLIContext *made) {
        for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
            glActiveTexture(GL_TEXTURE0 + unit);
            glEnable(GL_TEXTURE_2D);
            glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
            glEnable(GL_TEXTURE_GEN_STR_OES);
        }
        glEnable(GL_LIGHTING);
        glLightModelx(GL_LIGHT_MODEL_TWO_SIDE, 1);
        for (uint32_t light = 0; light < kMaxLights; ++light) {
            const GLfloat place[4] = {1, 2, 3, light % 2 ? 1.0f : 0.0f};
            glEnable(GL_LIGHT0 + light);
            glLightfv(GL_LIGHT0 + light, GL_POSITION, place);
        }
        glLightf(GL_LIGHT1, GL_SPOT_CUTOFF, 30);
        drawTriangle();
        return made->shaderText.capacity;
    };
    int skipped = 0;
    for (int failing = 0; failing < 20; ++failing) {
        SCOPED_TRACE(failing);
        const size_t start = fakePlatform().liveBlocks;
        bool failed = false;
        {
            TestContext fresh;
            takeCalls();
            fakePlatform().allocationsUntilFailure = failing;
            const int32_t capacity = drawLongTexts(fresh.ctx);
            failed = fakePlatform().allocationsUntilFailure == -1;
            fakePlatform().allocationsUntilFailure = -1;
            if (!failed) {
                EXPECT_GT(capacity, 4096) << "the state of this test must need a second step";
            }
            if (callsOf("glDrawArrays").empty()) {
                ++skipped;
                EXPECT_EQ(callsOf("glCreateShader").size(), callsOf("glDeleteShader").size());
                EXPECT_TRUE(callsOf("glCreateProgram").empty());
            }
            takeCalls();
            drawTriangle();
            EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
        }
        EXPECT_EQ(fakePlatform().liveBlocks, start);
        if (!failed) break;
    }
    EXPECT_GE(skipped, 2) << "the cache's entry and the longer text";
    context->makeCurrent();
}

TEST_F(Lifecycle, CleanUpUnmapsTheBackendAndAnEglModuleIfSet)
{
    gliCleanupLibrary();
    EXPECT_EQ(fakePlatform().unmapped, std::vector<void *>{hGllModule});
    fakePlatform().unmapped.clear();
    hEglModule = offsetPointer(0x77);
    gliCleanupLibrary();
    hEglModule = nullptr;
    EXPECT_EQ(fakePlatform().unmapped, (std::vector<void *>{hGllModule, offsetPointer(0x77)}));

    // It does not undo the binding of the client table.
    EXPECT_NE(clientApi().createContext, nullptr);
}

TEST_F(Lifecycle, AThreadHasNoContextUntilItIsGivenOne)
{
    const auto before = bytesOf(ctx);
    std::thread([] {
        EXPECT_EQ(currentContext(), nullptr);
        glColor4f(0.25f, 0.5f, 0.75f, 1);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        drawTriangle();
    }).join();
    EXPECT_EQ(bytesOf(ctx), before);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(Lifecycle, ThreadsHaveContextsOfTheirOwn)
{
    glColor4f(1, 0, 0, 1);
    GLuint programOfThread = 0;
    std::thread([&] {
        TestContext own;
        EXPECT_EQ(values(own->current.color), (Vec4{1, 1, 1, 1}));
        glColor4f(0, 1, 0, 1);
        glMatrixMode(0);
        drawTriangle();
        programOfThread = own->currentEntry->program;
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    }).join();
    EXPECT_EQ(currentContext(), ctx);
    EXPECT_EQ(values(ctx->current.color), (Vec4{1, 0, 0, 1}));
    EXPECT_EQ(ctx->currentEntry, nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    drawTriangle();
    EXPECT_NE(ctx->currentEntry->program, programOfThread);
}

TEST_F(Lifecycle, ThreadsKeepStateAtTheSameTime)
{
    TestContext contexts[2];
    const auto work = [&contexts](int thread) {
        os_tls_write(__gl_tls_index, contexts[thread].ctx);
        for (int i = 0; i < 10000; ++i) {
            glColor4f(static_cast<GLfloat>(thread), static_cast<GLfloat>(i), 0, 1);
            glLoadIdentity();
            glTranslatef(static_cast<GLfloat>(i), static_cast<GLfloat>(thread), 0);
            glNormal3f(0, static_cast<GLfloat>(thread), 1);
        }
    };
    std::thread first(work, 0);
    std::thread second(work, 1);
    first.join();
    second.join();
    for (int thread = 0; thread < 2; ++thread) {
        const GLIContext *own = contexts[thread].ctx;
        EXPECT_EQ(values(own->current.color), (Vec4{static_cast<GLfloat>(thread), 9999, 0, 1}));
        EXPECT_EQ(own->transform.top[STACK_MODELVIEW]->f[12], 9999.0f);
        EXPECT_EQ(own->transform.top[STACK_MODELVIEW]->f[13], static_cast<GLfloat>(thread));
    }
    context->makeCurrent();
}
