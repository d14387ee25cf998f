// SPDX-License-Identifier: MIT
#include "frontend/client_api.h"

#include "frontend/backend.h"
#include "state/state_test.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace {

constexpr size_t kSlots = 19;

ClientAPIFunctions clientApi()
{
    ClientAPIFunctions table = {};
    oglGetClientAPIFunctions(&table);
    return table;
}

// The caller's table as plain words, with one more that must never be written.
struct RawTable {
    void *slot[kSlots + 1];

    RawTable()
    {
        std::fill_n(slot, kSlots + 1, offsetPointer(0x5A));
    }
    template <typename Function>
    Function *at(size_t index) const
    {
        return reinterpret_cast<Function *>(slot[index]);
    }
    bool untouched() const
    {
        return std::all_of(slot, slot + kSlots + 1, [](void *word) { return word == offsetPointer(0x5A); });
    }
};

// The library binds its backend once per process, so what happens before that is looked at in a process of its own.
void inFreshProcess(void (*check)())
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto run = [check] {
        resetFakeBackend();
        check();
        std::fflush(stdout);
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

class ClientApi : public StateTest {
protected:
    ClientAPIFunctions api = clientApi();
};

using ClientApiBinding = testing::Test;

std::vector<std::string> calls(std::initializer_list<std::string> list)
{
    return list;
}

} // namespace

TEST(ClientApiBinding, ANullTableDoesNotLoadTheBackend)
{
    inFreshProcess([] {
        oglGetClientAPIFunctions(nullptr);
        EXPECT_TRUE(fakePlatform().mapped.empty());
        EXPECT_TRUE(fakePlatform().lookups.empty());
        EXPECT_EQ(hGllModule, nullptr);
    });
}

TEST(ClientApiBinding, TheBackendIsMappedOnFirstUseOnly)
{
    inFreshProcess([] {
        RawTable first;
        oglGetClientAPIFunctions(first.slot);
        EXPECT_EQ(fakePlatform().mapped, calls({"libGLESv2.so"}));
        EXPECT_EQ(fakePlatform().lookups, calls({"ogl2GetClientAPIFunctions"}));
        EXPECT_EQ(hGllModule, fakePlatform().modules["libGLESv2.so"]);
        EXPECT_EQ(hEglModule, nullptr);
        EXPECT_EQ(__gl_tls_index, 0u);

        RawTable second;
        oglGetClientAPIFunctions(second.slot);
        EXPECT_TRUE(std::equal(first.slot, first.slot + kSlots, second.slot));
        EXPECT_EQ(fakePlatform().mapped.size(), 1u);
        EXPECT_EQ(fakePlatform().lookups.size(), 1u);
        EXPECT_TRUE(fakePlatform().assertions.empty());
    });
}

TEST(ClientApiBinding, NoEntryPointIsLookedUpBeforeTheFirstContext)
{
    inFreshProcess([] {
        RawTable table;
        oglGetClientAPIFunctions(table.slot);
        EXPECT_EQ(glDrawArrays_2_0, nullptr);
        EXPECT_EQ(glGetError_2_0, nullptr);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    });
}

TEST(ClientApiBinding, AMissingLibraryIsAnAssertionAndLeavesTheTable)
{
    inFreshProcess([] {
        fakePlatform().modules.clear();
        RawTable table;
        oglGetClientAPIFunctions(table.slot);
        EXPECT_TRUE(table.untouched());
        EXPECT_EQ(fakePlatform().assertions.size(), 1u);
        // Once the library is there, the next call finds it.
        resetFakeBackend();
        oglGetClientAPIFunctions(table.slot);
        EXPECT_FALSE(table.untouched());
        EXPECT_TRUE(fakePlatform().assertions.empty());
        EXPECT_EQ(os_tls_alloc(), 2u) << "both attempts use the one slot of the backend";
    });
}

TEST(ClientApiBinding, ALibraryWithoutTheTableFunctionIsAnAssertionAndLeavesTheTable)
{
    inFreshProcess([] {
        fakeBackend().absent = {"ogl2GetClientAPIFunctions"};
        RawTable table;
        oglGetClientAPIFunctions(table.slot);
        EXPECT_TRUE(table.untouched());
        EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    });
}

TEST(ClientApiBinding, ABackendTableWithoutItsFirstSlotLeavesTheTable)
{
    inFreshProcess([] {
        fakeBackend().clientTableEmpty = true;
        RawTable table;
        oglGetClientAPIFunctions(table.slot);
        EXPECT_TRUE(table.untouched());
        fakeBackend().clientTableEmpty = false;
        oglGetClientAPIFunctions(table.slot);
        EXPECT_FALSE(table.untouched());
    });
}

TEST_F(ClientApi, FillsNineteenDifferentSlotsAndNoMore)
{
    RawTable table;
    oglGetClientAPIFunctions(table.slot);
    const std::set<void *> different(table.slot, table.slot + kSlots);
    EXPECT_EQ(different.size(), kSlots);
    EXPECT_EQ(different.count(nullptr) + different.count(offsetPointer(0x5A)), 0u);
    EXPECT_EQ(table.slot[kSlots], offsetPointer(0x5A));
}

TEST_F(ClientApi, SlotsStandInTheOrderThatEglCalls)
{
    RawTable table;
    oglGetClientAPIFunctions(table.slot);
    void *const handle = offsetPointer(0x1234);
    EXPECT_EQ(table.at<void *(void *)>(3)(handle), handle);
    EXPECT_EQ(table.at<void *(void *)>(4)(handle), handle);
    EXPECT_EQ(table.at<void *(void *)>(11)(handle), handle);
    EXPECT_EQ(table.at<int(void *)>(12)(handle), 0);
    EXPECT_EQ(takeCalls(), calls({}));

    table.at<void()>(5)();
    table.at<void()>(6)();
    table.at<void(GLint, GLint, GLsizei, GLsizei)>(8)(1, -2, 3, 4);
    table.at<void(GLint, GLint, GLsizei, GLsizei)>(9)(5, -6, 7, 8);
    EXPECT_EQ(takeCalls(), calls({"flush", "finish", "scissor(1, -2, 3, 4)", "viewport(5, -6, 7, 8)"}));

    EXPECT_EQ(table.at<void *(const char *)>(14)("glDrawTexiOES"), reinterpret_cast<void *>(glDrawTexiOES));
    EXPECT_EQ(table.at<int(void *, void *, void *)>(15)(ctx, nullptr, nullptr), 7);
    EXPECT_EQ(table.at<int(void *, void *)>(16)(handle, handle), 5);
    EXPECT_EQ(table.at<int(void *)>(17)(handle), 6);
    EXPECT_EQ(table.at<int(void *, void *)>(18)(handle, handle), 8);
    EXPECT_EQ(takeCalls(),
              calls({"swapBuffer", "createClientSurface", "destroyClientSurface", "queryClientCapability"}));
}

TEST_F(ClientApi, CreationHandsTheBackendItsShareContextAndTheOtherArguments)
{
    void *const config = offsetPointer(0x11);
    void *const attributes = offsetPointer(0x22);
    void *const extra = offsetPointer(0x33);
    void *const alone = api.createContext(nullptr, config, attributes, __gl_tls_index, extra);
    auto arguments = fakeBackend().clientArguments;
    ASSERT_EQ(arguments.size(), 5u);
    EXPECT_EQ(arguments[0], nullptr);
    EXPECT_EQ(arguments[1], config);
    EXPECT_EQ(arguments[2], attributes);
    EXPECT_NE(arguments[3], nullptr) << "a slot is never 0";
    EXPECT_NE(arguments[3], offsetPointer(__gl_tls_index)) << "the backend has a slot of its own";
    EXPECT_EQ(arguments[4], extra);

    const void *const slot = arguments[3];
    void *const sharing = api.createContext(ctx, nullptr, nullptr, __gl_tls_index, nullptr);
    arguments = fakeBackend().clientArguments;
    EXPECT_EQ(arguments[0], ctx->backendContext);
    EXPECT_EQ(arguments[3], slot) << "the same slot for all contexts";
    EXPECT_NE(static_cast<GLIContext *>(sharing)->backendContext, nullptr);
    EXPECT_NE(static_cast<GLIContext *>(sharing)->backendContext, ctx->backendContext);
    api.destroyContext(sharing);
    api.destroyContext(alone);
}

TEST_F(ClientApi, AnotherThreadLocalSlotIsAnAssertionAndIsUsed)
{
    const uint32_t slot = __gl_tls_index;
    const uint32_t other = os_tls_alloc();
    void *const second = api.createContext(nullptr, nullptr, nullptr, other, nullptr);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    EXPECT_EQ(__gl_tls_index, other);
    EXPECT_NE(second, nullptr);
    api.destroyContext(second);

    __gl_tls_index = slot;
}

TEST_F(ClientApi, TheFirstSlotGivenIsNoAssertion)
{
    const uint32_t slot = std::exchange(__gl_tls_index, 0);
    void *const second = api.createContext(nullptr, nullptr, nullptr, slot, nullptr);
    EXPECT_TRUE(fakePlatform().assertions.empty());
    EXPECT_EQ(__gl_tls_index, slot);
    api.destroyContext(second);
}

TEST_F(ClientApi, WithoutABackendContextThereIsNoContext)
{
    fakeBackend().createContextFails = true;
    const size_t allocations = fakePlatform().allocations;
    EXPECT_EQ(api.createContext(nullptr, nullptr, nullptr, __gl_tls_index, nullptr), nullptr);
    EXPECT_EQ(fakePlatform().allocations, allocations);
    EXPECT_EQ(takeCalls(), calls({"createContext"}));
}

TEST_F(ClientApi, CreationDoesNotMakeTheContextCurrent)
{
    os_tls_write(__gl_tls_index, nullptr);
    void *const second = api.createContext(nullptr, nullptr, nullptr, __gl_tls_index, nullptr);
    EXPECT_EQ(os_tls_read(__gl_tls_index), nullptr);
    api.destroyContext(second);
}

TEST_F(ClientApi, DestructionReturnsTheBackendsResultForItsContext)
{
    auto *second = static_cast<GLIContext *>(api.createContext(nullptr, nullptr, nullptr, __gl_tls_index, nullptr));
    const void *const backendContext = second->backendContext;
    const int alive = fakeBackend().contextsAlive;
    EXPECT_EQ(api.destroyContext(second), 1);
    EXPECT_EQ(fakeBackend().clientArguments, std::vector<const void *>{backendContext});
    EXPECT_EQ(fakeBackend().contextsAlive, alive - 1);
}

TEST_F(ClientApi, DestroyingNoContextCallsNothing)
{
    EXPECT_EQ(api.destroyContext(nullptr), 0);
    EXPECT_EQ(takeCalls(), calls({}));
}

TEST_F(ClientApi, ADestroyedContextIsNoLongerCurrent)
{
    {
        TestContext second;
        EXPECT_EQ(os_tls_read(__gl_tls_index), second.ctx);
    }
    EXPECT_EQ(os_tls_read(__gl_tls_index), nullptr);
    glColor4f(1, 1, 1, 1);

    context->makeCurrent();
    auto *other = static_cast<GLIContext *>(api.createContext(nullptr, nullptr, nullptr, __gl_tls_index, nullptr));
    api.destroyContext(other);
    EXPECT_EQ(os_tls_read(__gl_tls_index), ctx) << "another context's destruction leaves the current one";
}

TEST_F(ClientApi, MakeCurrentBindsTheBackendFirstAndReadsTheViewportFromIt)
{
    void *const second = api.createContext(nullptr, nullptr, nullptr, __gl_tls_index, nullptr);
    const auto slot = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(fakeBackend().clientArguments[3]));
    takeCalls();
    fakeBackend().setBuffersResult = 42;
    const GLint size[4] = {3, 4, 320, 200};
    std::copy_n(size, 4, fakeBackend().viewport);

    EXPECT_EQ(api.setBuffers(second, offsetPointer(0x10), offsetPointer(0x20)), 42);
    EXPECT_EQ(takeCalls(), calls({"setBuffers", "glGetIntegerv(0x0ba2, ptr)"}));
    const auto *made = static_cast<GLIContext *>(second);
    EXPECT_EQ(fakeBackend().clientArguments,
              (std::vector<const void *>{made->backendContext, offsetPointer(0x10), offsetPointer(0x20)}));
    EXPECT_EQ(os_tls_read(slot), made->backendContext);
    EXPECT_EQ(os_tls_read(__gl_tls_index), ctx) << "that slot is EGL's to write";
    EXPECT_EQ(made->drawSurface, offsetPointer(0x10));
    EXPECT_EQ(made->readSurface, offsetPointer(0x20));
    EXPECT_EQ(made->viewport.x, 3);
    EXPECT_EQ(made->viewport.y, 4);
    EXPECT_EQ(made->viewport.width, 320);
    EXPECT_EQ(made->viewport.height, 200);
    api.destroyContext(second);
}

TEST_F(ClientApi, EveryMakeCurrentReadsTheViewportAgain)
{
    glViewport(1, 2, 3, 4);
    fakeBackend().viewport[2] = 77;
    api.setBuffers(ctx, nullptr, nullptr);
    EXPECT_EQ(ctx->viewport.width, 77);
}

TEST_F(ClientApi, MakingNothingCurrentClearsTheBackendsSlot)
{
    void *const second = api.createContext(nullptr, nullptr, nullptr, __gl_tls_index, nullptr);
    const auto slot = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(fakeBackend().clientArguments[3]));
    api.setBuffers(second, nullptr, nullptr);
    takeCalls();
    fakeBackend().setBuffersResult = 0;
    EXPECT_EQ(api.setBuffers(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(takeCalls(), calls({"setBuffers"}));
    EXPECT_EQ(fakeBackend().clientArguments, (std::vector<const void *>{nullptr, nullptr, nullptr}));
    EXPECT_EQ(os_tls_read(slot), nullptr);
    api.destroyContext(second);
}

TEST_F(ClientApi, Name3AsksForTheBoundTexture)
{
    GLint value = -1;
    api.getIntegerv(3, &value);
    EXPECT_EQ(takeCalls(), calls({"glGetIntegerv(0x8069, ptr)"}));
    GLint viewport[4] = {};
    api.getIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], 64);
    glActiveTexture(GL_TEXTURE1);
    api.getIntegerv(GL_ACTIVE_TEXTURE, &value);
    EXPECT_EQ(value, GL_TEXTURE1);
}

TEST_F(ClientApi, ViewportIsCopiedIntoTheContextUnlimited)
{
    takeCalls();
    api.viewport(-5, 6, 70000, 8);
    EXPECT_EQ(takeCalls(), calls({"viewport(-5, 6, 70000, 8)"}));
    EXPECT_EQ(ctx->viewport.x, -5);
    EXPECT_EQ(ctx->viewport.y, 6);
    EXPECT_EQ(ctx->viewport.width, 70000);
    EXPECT_EQ(ctx->viewport.height, 8);
}

TEST_F(ClientApi, ViewportWithoutAContextDoesNothing)
{
    const auto before = bytesOf(ctx);
    os_tls_write(__gl_tls_index, nullptr);
    api.viewport(1, 2, 3, 4);
    EXPECT_EQ(takeCalls(), calls({}));
    EXPECT_EQ(bytesOf(ctx), before);
}

TEST_F(ClientApi, SurfaceCallsReceiveTheBackendsContext)
{
    void *const a = offsetPointer(0xA), *const b = offsetPointer(0xB), *const c = offsetPointer(0xC);
    void *const d = offsetPointer(0xD), *const e = offsetPointer(0xE), *const f = offsetPointer(0xF);
    EXPECT_EQ(api.setSurfaceTexture(ctx, a, b, c, d, e, f), f);
    EXPECT_EQ(fakeBackend().clientArguments, (std::vector<const void *>{ctx->backendContext, a, b, c, d, e, f}));
    EXPECT_EQ(api.swapBuffer(ctx, a, b), 7);
    EXPECT_EQ(fakeBackend().clientArguments, (std::vector<const void *>{ctx->backendContext, a, b}));
    EXPECT_EQ(api.createClientSurface(a, b), 5);
    EXPECT_EQ(fakeBackend().clientArguments, (std::vector<const void *>{nullptr, b}));
    EXPECT_EQ(api.destroyClientSurface(c), 6);
    EXPECT_EQ(fakeBackend().clientArguments, std::vector<const void *>{c});
    EXPECT_EQ(api.queryClientCapability(d, e), 8);
    EXPECT_EQ(fakeBackend().clientArguments, (std::vector<const void *>{d, e}));
}

TEST_F(ClientApi, TheLargestDisplaySizeIsNotSupported)
{
    EXPECT_EQ(api.getMaxDisplayDimension(offsetPointer(1)), 0);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    EXPECT_EQ(takeCalls(), calls({}));
}

TEST_F(ClientApi, EveryExtensionNameGivesTheEntryPointOfThatName)
{
    int names = 0;
#define PROC(name)                                                                                                     \
    EXPECT_EQ(api.getProcAddress(#name), reinterpret_cast<void *>(name)) << #name;                                     \
    ++names;
#include "frontend/procs.def"
    EXPECT_EQ(names, 42);
}

TEST_F(ClientApi, CoreVendorAndMisspeltNamesGiveNull)
{
    const char *const core[] = {"glColor4f",    "glColor4x",         "glDrawArrays", "glGetError", "glBindBuffer",
                                "glClipPlanef", "glPointParameterf", "glGetString",  "glLogicOp",  "glTexEnvi"};
    for (const char *name : core)
        EXPECT_EQ(api.getProcAddress(name), nullptr) << name;
    // Exported, but not in the table.
    const char *const vendor[] = {"glAlphaFuncQRN", "glGetTexturesQRN", "glFogfvQRN", "glFramebufferTexture3DOES",
                                  "glAlphaFactorfZEK"};
    for (const char *name : vendor)
        EXPECT_EQ(api.getProcAddress(name), nullptr) << name;
    const char *const misspelt[] = {"gldrawtexioes", "glDrawTexiOES ", "glDrawTexiOE", "glDrawTexi", "",
                                    "GLDRAWTEXIOES"};
    for (const char *name : misspelt)
        EXPECT_EQ(api.getProcAddress(name), nullptr) << '"' << name << '"';
    EXPECT_EQ(api.getProcAddress(nullptr), nullptr);
}

TEST_F(ClientApi, ProceduresAreFoundWithoutAContext)
{
    os_tls_write(__gl_tls_index, nullptr);
    EXPECT_NE(api.getProcAddress("glBlendEquationSeparateOES"), nullptr);
    EXPECT_NE(api.getProcAddress("glLoadPaletteFromModelViewMatrixOES"), nullptr);
}

TEST_F(ClientApi, ASurfaceIsOneZeroedWord)
{
    const size_t blocks = fakePlatform().liveBlocks;
    void *surface = gliCreateSurface();
    ASSERT_NE(surface, nullptr);
    uint32_t word = 1;
    std::memcpy(&word, surface, sizeof(word));
    EXPECT_EQ(word, 0u);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks + 1);
    gliDestroySurface(surface);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);

    fakePlatform().allocationsUntilFailure = 0;
    EXPECT_EQ(gliCreateSurface(), nullptr);
    gliDestroySurface(nullptr);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
}
