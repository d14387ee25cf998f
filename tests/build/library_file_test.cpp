// SPDX-License-Identifier: MIT
// What the build leaves: the symbols the library exports, the libraries it needs, and what its objects must not hold.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Given by the build.
const std::string kLibrary = LIBRARY;
const std::string kVsp = VSP;
const std::string kObjectList = OBJECT_LIST; // a file: one object per line

std::vector<std::string> linesOf(const std::string &command)
{
    std::vector<std::string> lines;
    std::FILE *pipe = popen(command.c_str(), "r");
    if (!pipe) return lines;
    std::array<char, 4096> line;
    while (std::fgets(line.data(), line.size(), pipe)) {
        std::string text = line.data();
        while (!text.empty() && text.back() == '\n')
            text.pop_back();
        lines.push_back(text);
    }
    pclose(pipe);
    return lines;
}

std::string lastWord(const std::string &line)
{
    return line.substr(line.find_last_of(' ') + 1);
}

std::set<std::string> exportedSymbols(const std::string &library)
{
    std::set<std::string> symbols;
    for (const std::string &line : linesOf("nm -D --defined-only '" + library + "'"))
        symbols.insert(lastWord(line));
    return symbols;
}

std::set<std::string> listedSymbols()
{
    std::set<std::string> symbols;
#define EXPORT(name) symbols.insert(#name);
#define LIST_EXPORTED(name) symbols.insert(name "_2_0");
#define LIST_INTERNAL(name)
#define BACKEND(name, result, arguments, visibility, group, need) LIST_##visibility(#name)
#include "frontend/exports.def"
    return symbols;
}

std::vector<std::string> difference(const std::set<std::string> &a, const std::set<std::string> &b)
{
    std::vector<std::string> only;
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(only));
    return only;
}

std::vector<std::string> neededLibraries(const std::string &library)
{
    std::vector<std::string> needed;
    for (const std::string &line : linesOf("readelf -d '" + library + "'")) {
        if (line.find("(NEEDED)") == std::string::npos) continue;
        const size_t open = line.find('[');
        needed.push_back(line.substr(open + 1, line.find(']') - open - 1));
    }
    std::sort(needed.begin(), needed.end());
    return needed;
}

} // namespace

TEST(LibraryFile, ExportsExactlyTheListedSymbols)
{
    const std::set<std::string> built = exportedSymbols(kLibrary);
    const std::set<std::string> listed = listedSymbols();
    ASSERT_GT(built.size(), 300u) << "nm showed nothing of " << kLibrary;
    EXPECT_EQ(difference(built, listed), std::vector<std::string>{}) << "exported but not listed";
    EXPECT_EQ(difference(listed, built), std::vector<std::string>{}) << "listed but not exported";
}

TEST(LibraryFile, ExportsBackendPointersAsData)
{
    int pointers = 0;
    for (const std::string &line : linesOf("nm -D --defined-only '" + kLibrary + "'")) {
        if (line.size() < 5 || line.rfind("_2_0") != line.size() - 4 || line.find("Load_Gll") != std::string::npos)
            continue;
        ++pointers;
        EXPECT_TRUE(line.find(" B ") != std::string::npos || line.find(" D ") != std::string::npos) << line;
    }
    EXPECT_EQ(pointers, 112);
}

TEST(LibraryFile, NeedsTheCLibraryTheMathematicsLibraryAndVspOnly)
{
    EXPECT_EQ(neededLibraries(kLibrary), (std::vector<std::string>{"libc.so.6", "libm.so.6", "libvsp.so"}));
}

TEST(LibraryFile, HasAllGles11EntryPointsOfTheKhronosHeader)
{
    const std::set<std::string> built = exportedSymbols(kLibrary);
    std::vector<std::string> missing;
    for (const std::string &line : linesOf("grep -o 'GL_APIENTRY gl[A-Za-z0-9]*' /usr/include/GLES/gl.h")) {
        if (!built.count(lastWord(line))) missing.push_back(lastWord(line));
    }
    EXPECT_EQ(missing, std::vector<std::string>{});
}

TEST(LibraryFile, NeverLinksToGlByName)
{
    for (const std::string &line : linesOf("nm -D --undefined-only '" + kLibrary + "'")) {
        const std::string symbol = lastWord(line);
        EXPECT_NE(symbol.rfind("gl", 0), 0u) << symbol;
        EXPECT_NE(symbol.rfind("egl", 0), 0u) << symbol;
        EXPECT_NE(symbol.rfind("_Z", 0), 0u) << "C++ run-time symbol " << symbol;
    }
}

TEST(LibraryObjects, HoldNoStaticInitialisers)
{
    std::ifstream list(kObjectList);
    std::string object;
    int objects = 0;
    while (std::getline(list, object)) {
        ++objects;
        for (const std::string &line : linesOf("readelf -SW '" + object + "'"))
            EXPECT_EQ(line.find(".init_array"), std::string::npos) << object << ": " << line;
    }
    EXPECT_GT(objects, 20) << "no objects listed in " << kObjectList;
}

// The size is set for this processor: other instructions take more room, and larger pages more padding.
#if defined(__x86_64__)
TEST(LibraryFile, IsUnderItsSizeWhenStripped)
{
    const std::string stripped = kLibrary + ".stripped";
    ASSERT_EQ(std::system(("strip -o '" + stripped + "' '" + kLibrary + "'").c_str()), 0);
    std::ifstream file(stripped, std::ios::binary | std::ios::ate);
    EXPECT_LT(file.tellg(), 256 * 1024);
    std::remove(stripped.c_str());
}
#endif

TEST(VspFile, ExportsThePlatformInterface)
{
    const std::set<std::string> built = exportedSymbols(kVsp);
    const std::set<std::string> wanted = {"os_malloc",      "os_realloc",   "os_free",       "os_memcpy",
                                          "os_memset",      "os_strlen",    "os_strcpy",     "os_strcmp",
                                          "os_tls_alloc",   "os_tls_read",  "os_tls_write",  "os_lib_map",
                                          "os_lib_getaddr", "os_lib_unmap", "os_assert_hook"};
    EXPECT_EQ(built, wanted);
}
