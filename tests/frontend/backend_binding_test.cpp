// SPDX-License-Identifier: MIT
#include "frontend/backend.h"

#include "frontend/client_api.h"
#include "state/state_test.h"

#include <algorithm>

namespace {

// The list's rows by need and visibility; a row becomes: {"glClear", "glClear_2_0", ...}.
struct Entry {
    std::string name;
    bool exported;
    int group;
    bool core;
    const void *const *pointer;
};

const std::vector<Entry> &entries()
{
    constexpr bool EXPORTED = true, INTERNAL = false, CORE = true, OPTIONAL = false;
    static const std::vector<Entry> list = {
#define BACKEND(name, result, arguments, visibility, group, need)                                                      \
    {#name, visibility, group, need, reinterpret_cast<const void *const *>(&name##_2_0)},
#include "frontend/backend.def"
    };
    return list;
}

// Names in the order in which they are looked up, the repeated ones too.
std::vector<std::string> lookupOrder()
{
    return {
#define BACKEND(name, result, arguments, visibility, group, need) #name,
#define BACKEND_AGAIN(name) #name,
#include "frontend/backend.def"
    };
}

std::vector<const void *> pointers()
{
    std::vector<const void *> all;
    for (const Entry &entry : entries())
        all.push_back(*entry.pointer);
    return all;
}

size_t countEntries(bool (*wanted)(const Entry &))
{
    return static_cast<size_t>(std::count_if(entries().begin(), entries().end(), wanted));
}

ptrdiff_t placeOf(const std::vector<std::string> &names, const std::string &name, int occurrence = 0)
{
    auto at = std::find(names.begin(), names.end(), name);
    while (occurrence-- > 0)
        at = std::find(at + 1, names.end(), name);
    return at - names.begin();
}

class BackendBinding : public StateTest {};

} // namespace

TEST_F(BackendBinding, Has112ExportedAnd46InternalPointers)
{
    EXPECT_EQ(countEntries([](const Entry &entry) { return entry.exported; }), 112u);
    EXPECT_EQ(countEntries([](const Entry &entry) { return !entry.exported; }), 46u);
}

TEST_F(BackendBinding, AssertsInTheFirstAndThirdGroupOnly)
{
    // 51 names stand in group 1, three of them not asserted; ten in group 3.
    EXPECT_EQ(countEntries([](const Entry &entry) { return entry.group == 1; }), 51u);
    EXPECT_EQ(countEntries([](const Entry &entry) { return entry.core && entry.group == 1; }), 48u);
    EXPECT_EQ(countEntries([](const Entry &entry) { return entry.core && entry.group == 3; }), 10u);
    EXPECT_EQ(countEntries([](const Entry &entry) { return entry.core; }), 58u);
    for (const char *name :
         {"glEGLImageTargetRenderbufferStorageOES", "glEGLImageTargetTexture2DOES", "glGetTexLevelParameterivQRN"}) {
        const auto row = std::find_if(entries().begin(), entries().end(), [&](auto &e) { return e.name == name; });
        ASSERT_NE(row, entries().end());
        EXPECT_EQ(row->group, 1) << name;
        EXPECT_FALSE(row->core) << name;
    }
}

TEST_F(BackendBinding, LooksEachNameUpInOrderWithTwoOfThemTwice)
{
    fakePlatform().lookups.clear();
    Load_Gll_2_0(ctx);
    const std::vector<std::string> &lookups = fakePlatform().lookups;
    EXPECT_EQ(lookups, lookupOrder());
    ASSERT_EQ(lookups.size(), 160u);

    EXPECT_EQ(lookups.front(), "glClearColor");
    EXPECT_EQ(lookups.back(), "glTexObjectStateOverrideiQRN");
    const auto perfGroups = placeOf(lookups, "glGetPerfMonitorGroupsQRN");
    EXPECT_EQ(placeOf(lookups, "glGetPerfMonitorGroupsQRN", 1), perfGroups + 1);
    EXPECT_EQ(lookups[placeOf(lookups, "glGetBooleanv") + 1], "glGetTexLevelParameterivQRN");
    EXPECT_EQ(placeOf(lookups, "glGetTexLevelParameterivQRN", 1), 158);
    EXPECT_EQ(lookups[placeOf(lookups, "glLogicOpQRN") + 1], "glGetFixedvQRN");
    EXPECT_EQ(lookups[placeOf(lookups, "glGetPerfMonitorCounterDataQRN") + 1], "glBlendEquation");
    EXPECT_EQ(lookups[placeOf(lookups, "glSampleCoverage") + 1], "glIsRenderbuffer");
    EXPECT_EQ(lookups[placeOf(lookups, "glGenerateMipmap") + 1], "glAttachShader");
    EXPECT_EQ(lookups[placeOf(lookups, "glVertexAttribPointer") + 1], "glGetTexturesQRN");
}

TEST_F(BackendBinding, EveryPointerIsThatOfItsName)
{
    useVendorBackend();
    for (const Entry &entry : entries())
        EXPECT_EQ(*entry.pointer, fakePlatform().getaddr(nullptr, entry.name.c_str())) << entry.name;
    std::vector<const void *> all = pointers();
    EXPECT_EQ(std::count(all.begin(), all.end(), nullptr), 0);
}

TEST_F(BackendBinding, ASecondContextLooksEverythingUpAgainAndChangesNothing)
{
    const std::vector<const void *> before = pointers();
    fakePlatform().lookups.clear();
    TestContext second;
    EXPECT_EQ(fakePlatform().lookups, lookupOrder());
    EXPECT_EQ(pointers(), before);
    context->makeCurrent();
}

TEST_F(BackendBinding, AMissingCoreFunctionIsOneAssertionAndTheOthersAreLoaded)
{
    for (const Entry &missing : entries()) {
        if (!missing.core) continue;
        fakeBackend().absent = {missing.name};
        fakePlatform().assertions.clear();
        Load_Gll_2_0(ctx);
        EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{missing.name});
        EXPECT_EQ(*missing.pointer, nullptr);
        const std::vector<const void *> all = pointers();
        // Beside it only the two that this shape of backend never has.
        EXPECT_EQ(std::count(all.begin(), all.end(), nullptr), 3) << missing.name;
    }
    fakeBackend().absent.clear();
    Load_Gll_2_0(ctx);
}

TEST_F(BackendBinding, AMissingOptionalFunctionIsSilent)
{
    for (const Entry &missing : entries()) {
        if (missing.core) continue;
        fakeBackend().absent = {missing.name};
        Load_Gll_2_0(ctx);
        EXPECT_EQ(*missing.pointer, nullptr) << missing.name;
    }
    EXPECT_TRUE(fakePlatform().assertions.empty());
    fakeBackend().absent.clear();
    Load_Gll_2_0(ctx);
}

TEST_F(BackendBinding, WithoutAModuleEveryPointerIsNullAndEveryCoreNameAsserted)
{
    void *const module = ctx->backendModule;
    ctx->backendModule = nullptr;
    Load_Gll_2_0(ctx);
    const std::vector<const void *> all = pointers();
    EXPECT_EQ(std::count(all.begin(), all.end(), nullptr), 158);
    EXPECT_EQ(fakePlatform().assertions.size(), 58u);
    ctx->backendModule = module;
    Load_Gll_2_0(ctx);
}

TEST_F(BackendBinding, AContextIsMadeOverABackendWithoutAnyCoreFunction)
{
    for (const Entry &entry : entries())
        fakeBackend().absent.push_back(entry.name);
    {
        TestContext bare;
        EXPECT_EQ(bare->viewport.width, 0);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        glMatrixMode(0);
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    }
    fakeBackend().absent.clear();
    Load_Gll_2_0(ctx);
    context->makeCurrent();
}
