// SPDX-License-Identifier: MIT
// The platform support library for Linux.
#include "vsp.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

// The address sanitizer, where there is one, would end the program where malloc answers null.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace {

TEST(Memory, ReallocKeepsContentsAndFreeAcceptsNull)
{
    char *block = static_cast<char *>(os_realloc(nullptr, 4));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(os_memset(block, 'x', 4), block);
    block = static_cast<char *>(os_realloc(block, 5000));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::string(block, 4), "xxxx");
    os_free(block);
    os_free(nullptr);
}

TEST(Memory, AnImpossibleSizeGivesNull)
{
    volatile size_t impossible = SIZE_MAX / 2 + 1; // more than a pointer difference holds
    EXPECT_EQ(os_malloc(impossible), nullptr);
}

TEST(Strings, FollowTheCLibrary)
{
    char copy[8];
    EXPECT_EQ(os_strcpy(copy, "abc"), copy);
    EXPECT_STREQ(copy, "abc");
    EXPECT_EQ(os_strlen(copy), 3u);
    EXPECT_EQ(os_strlen(""), 0u);
    EXPECT_EQ(os_strcmp("abc", copy), 0);
    EXPECT_LT(os_strcmp("abc", "abd"), 0);
    EXPECT_GT(os_strcmp("abcd", "abc"), 0);
    const char source[3] = {'1', '2', '3'};
    EXPECT_EQ(os_memcpy(copy, source, 2), copy);
    EXPECT_EQ(std::string(copy, 3), "12c");
}

TEST(ThreadSlots, AreDistinctAndNeverZeroAndStartNull)
{
    const uint32_t first = os_tls_alloc();
    const uint32_t second = os_tls_alloc();
    EXPECT_NE(first, 0u);
    EXPECT_NE(second, 0u);
    EXPECT_NE(first, second);
    EXPECT_EQ(os_tls_read(first), nullptr);
    EXPECT_EQ(os_tls_read(second), nullptr);
}

TEST(ThreadSlots, EachThreadHasItsOwnValue)
{
    const uint32_t slot = os_tls_alloc();
    ASSERT_NE(slot, 0u);
    int mine = 0;
    os_tls_write(slot, &mine);
    std::vector<std::thread> threads;
    std::vector<int> values(8);
    std::vector<int> failures(8);
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&, i] {
            failures[i] += os_tls_read(slot) != nullptr;
            for (int round = 0; round < 1000; ++round) {
                os_tls_write(slot, &values[i]);
                failures[i] += os_tls_read(slot) != &values[i];
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(failures, std::vector<int>(8));
    EXPECT_EQ(os_tls_read(slot), &mine);
}

TEST(ThreadSlots, ZeroAndUnknownNumbersReadNullAndIgnoreWrites)
{
    int value = 0;
    for (uint32_t slot : {0u, 63u, 64u, 1000u, 0xFFFFFFFFu}) {
        os_tls_write(slot, &value);
        EXPECT_EQ(os_tls_read(slot), nullptr) << slot;
    }
}

// In a child, since it uses up every slot of the process.
TEST(ThreadSlotsDeathTest, RunningOutGivesZeroAndKeepsTheOthers)
{
    EXPECT_EXIT(
        {
            int value = 0;
            uint32_t last = 0;
            int count = 0;
            while (uint32_t slot = os_tls_alloc()) {
                if (slot <= last) _exit(1);
                last = slot;
                os_tls_write(slot, &value);
                ++count;
            }
            _exit(count >= 32 && os_tls_alloc() == 0 && os_tls_read(last) == &value ? 0 : 2);
        },
        testing::ExitedWithCode(0), "");
}

std::string directoryOfVsp()
{
    Dl_info info{};
    dladdr(reinterpret_cast<void *>(&os_lib_map), &info);
    return std::filesystem::path(info.dli_fname).parent_path().string();
}

TEST(Modules, ABareNameFollowsTheSystemsSearch)
{
    void *module = os_lib_map("libm.so.6");
    ASSERT_NE(module, nullptr);
    using Cosine = double (*)(double);
    Cosine cosine = reinterpret_cast<Cosine>(os_lib_getaddr(module, "cos"));
    ASSERT_NE(cosine, nullptr);
    EXPECT_EQ(cosine(0.0), 1.0);
    EXPECT_EQ(os_lib_getaddr(module, "noSuchFunctionAnywhere"), nullptr);
    os_lib_unmap(module);
}

TEST(Modules, TheDirectoryOfTheLibraryItselfIsSearchedLast)
{
    const std::string name = "libtrl20_vsp_test_module.so";
    const std::filesystem::path copy = std::filesystem::path(directoryOfVsp()) / name;
    std::filesystem::copy_file(std::filesystem::path(directoryOfVsp()) / "libvsp.so", copy,
                               std::filesystem::copy_options::overwrite_existing);
    void *module = os_lib_map(name.c_str());
    EXPECT_NE(module, nullptr);
    EXPECT_NE(os_lib_getaddr(module, "os_lib_map"), nullptr);
    os_lib_unmap(module);
    std::filesystem::remove(copy);
}

// The system has a library of this name too, which a program may have opened.
TEST(Modules, WhatLiesBesideTheLibraryAndIsLoadedComesFirst)
{
    const char *name = "libanl.so.1";
    void *systems = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(systems, nullptr) << dlerror();
    const std::filesystem::path copy = std::filesystem::path(directoryOfVsp()) / name;
    std::filesystem::copy_file(std::filesystem::path(directoryOfVsp()) / "libvsp.so", copy,
                               std::filesystem::copy_options::overwrite_existing);
    void *module = os_lib_map(name);
    EXPECT_EQ(module, systems) << "it is not loaded";
    os_lib_unmap(module);
    void *loaded = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
    std::filesystem::remove(copy);
    ASSERT_NE(loaded, nullptr) << dlerror();
    module = os_lib_map(name);
    EXPECT_EQ(module, loaded);
    os_lib_unmap(module);
}

TEST(Modules, MissingModulesAndNullHandlesAnswerNull)
{
    EXPECT_EQ(os_lib_map("libtrl20_does_not_exist.so"), nullptr);
    EXPECT_EQ(os_lib_map("/nowhere/libm.so.6"), nullptr);
    EXPECT_EQ(os_lib_map(""), nullptr);
    EXPECT_EQ(os_lib_map(nullptr), nullptr);
    EXPECT_EQ(os_lib_getaddr(nullptr, "os_lib_map"), nullptr); // would be found in the program itself
    os_lib_unmap(nullptr);
}

TEST(Modules, MappedNamesStayOutOfTheProgramsScope)
{
    void *module = os_lib_map("libGLESv2.so.2");
    ASSERT_NE(module, nullptr) << "packages.txt brings this library";
    EXPECT_NE(os_lib_getaddr(module, "glClear"), nullptr);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "glClear"), nullptr);
    os_lib_unmap(module);
}

void failTwiceThenOther()
{
    os_assert_hook(1, "holds");
    os_assert_hook(0, "first text");
    os_assert_hook(0, "first text");
    os_assert_hook(0, "second text");
    os_assert_hook(0, nullptr);
    _exit(7);
}

TEST(AssertionsDeathTest, AreToldOncePerTextAndExecutionGoesOn)
{
    unsetenv("VSP_ASSERT");
    EXPECT_EXIT(failTwiceThenOther(), testing::ExitedWithCode(7),
                "^trl20: assertion failed: first text\ntrl20: assertion failed: second text\n"
                "trl20: assertion failed: \\(no text\\)\n$");
}

TEST(AssertionsDeathTest, QuietSaysNothing)
{
    setenv("VSP_ASSERT", "quiet", 1);
    EXPECT_EXIT(failTwiceThenOther(), testing::ExitedWithCode(7), "^$");
    unsetenv("VSP_ASSERT");
}

TEST(AssertionsDeathTest, AbortStopsAtTheFirstFailure)
{
    setenv("VSP_ASSERT", "abort", 1);
    EXPECT_EXIT(failTwiceThenOther(), testing::KilledBySignal(SIGABRT), "^trl20: assertion failed: first text\n$");
    unsetenv("VSP_ASSERT");
}

TEST(AssertionsDeathTest, OneTextFromManyThreadsIsToldOnce)
{
    EXPECT_EXIT(
        {
            std::vector<std::thread> threads;
            for (int i = 0; i < 8; ++i)
                threads.emplace_back([] {
                    for (int round = 0; round < 100; ++round)
                        os_assert_hook(0, "raced");
                });
            for (std::thread &thread : threads)
                thread.join();
            _exit(0);
        },
        testing::ExitedWithCode(0), "^trl20: assertion failed: raced\n$");
}

} // namespace
