// SPDX-License-Identifier: MIT
// The files of the drop-in pair: what it exports, which files it finds, and what it says when one is missing.
#include "support/working_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <dlfcn.h>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// Standard output and error of a shell command.
std::string outputOf(const std::string &command)
{
    FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    EXPECT_TRUE(pipe);
    std::string output;
    std::array<char, 4096> block;
    while (const size_t size = fread(block.data(), 1, block.size(), pipe))
        output.append(block.data(), size);
    EXPECT_EQ(pclose(pipe), 0) << command << "\n" << output;
    return output;
}

// What the probe prints under an environment, such as "A=1 B=2". In a build with sanitizers it does not look for leaks:
// the driver has some, and is unloaded before they could be told from ours.
std::string probe(const std::string &environment)
{
    return outputOf("env -u LD_LIBRARY_PATH -u TRL20_DRIVER_EGL -u TRL20_GLES1_LIBRARY ASAN_OPTIONS=detect_leaks=0 " +
                    environment + " " PROBE);
}

const std::string kAllWell = "display yes, config yes, context yes, error 0x3000, glOrthof yes\n";
const std::string kFake = "TRL20_GLES1_LIBRARY=" FAKE_ES1_LIBRARY;

int countOf(const std::string &text, const std::string &part)
{
    int count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        count++;
    return count;
}

TEST(DropInFiles, ExportsTheFunctionsOfEglAndNothingElse)
{
    std::set<std::string> expected, exported;
#define EGL_PASS(name, result, arguments, call, failure) expected.insert(#name);
#define EGL_OWN(name) expected.insert(#name);
#include "host/egl/egl_functions.def"
    std::istringstream lines(outputOf(NM " -D --defined-only --format=posix " EGL_DROPIN));
    for (std::string line; std::getline(lines, line);)
        exported.insert(line.substr(0, line.find(' ')));
    EXPECT_EQ(expected.size(), 44u);
    EXPECT_EQ(exported, expected);
}

TEST(DropInFiles, TheStandardNameOfTheLibraryIsALinkBesideIt)
{
    const fs::path link = fs::path(EGL_DROPIN).parent_path() / "libGLESv1_CM.so.1";
    EXPECT_EQ(fs::read_symlink(link), "libGLESv1_CM_trl20.so");
}

TEST(DropInFiles, StaysLoadedWhenItIsClosed)
{
    void *first = dlopen(EGL_DROPIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_TRUE(first) << dlerror();
    dlclose(first);
    EXPECT_TRUE(dlopen(EGL_DROPIN, RTLD_NOW | RTLD_NOLOAD));
}

TEST(DropInFiles, TheMachinesEglIsFoundInTheStandardFolders)
{
    EXPECT_EQ(probe(kFake), kAllWell);
}

TEST(DropInFiles, TheMachinesEglCanBeNamed)
{
    EXPECT_EQ(probe(kFake + " TRL20_DRIVER_EGL=" MACHINE_EGL), kAllWell);
}

TEST(DropInFiles, AMachineWithoutEs1OfItsOwnServesIt)
{
    EXPECT_EQ(probe(kFake + " TRL20_DRIVER_EGL=" EGL_WITHOUT_ES1), kAllWell);
}

TEST(DropInFiles, AMissingEglIsSaidOnceAndNothingBreaks)
{
    const std::string output = probe(kFake + " TRL20_DRIVER_EGL=/nowhere/libEGL.so.1");
    EXPECT_EQ(countOf(output, "trl20: "), 1) << output;
    EXPECT_EQ(countOf(output, "/nowhere/libEGL.so.1"), 1) << output;
    EXPECT_EQ(countOf(output, "display no, config no, context no, error 0x3001"), 1) << output;
}

TEST(DropInFiles, TheDropInIsNoEglOfTheMachine)
{
    const TemporaryFolder folder;
    const fs::path link = folder.path / "link.so", copy = folder.path / "copy.so";
    fs::create_symlink(EGL_DROPIN, link);
    fs::copy_file(EGL_DROPIN, copy);
    for (const fs::path &path : {link, copy}) {
        const std::string output = probe(kFake + " TRL20_DRIVER_EGL=" + path.string());
        EXPECT_EQ(countOf(output, "display no, config no, context no, error 0x3001"), 1) << path << ": " << output;
    }
}

TEST(DropInFiles, AMissingLibraryIsSaidOnceAndRefusesContexts)
{
    const std::string output = probe("TRL20_GLES1_LIBRARY=/nowhere/libes1.so");
    EXPECT_EQ(countOf(output, "trl20: "), 1) << output;
    EXPECT_EQ(countOf(output, "/nowhere/libes1.so"), 1) << output;
    EXPECT_EQ(countOf(output, "display yes, config yes, context no, error 0x3003"), 1) << output;
}

TEST(DropInFiles, ALibraryWithoutATableIsSaidOnceAndRefusesContexts)
{
    const std::string output = probe("TRL20_GLES1_LIBRARY=libm.so.6");
    EXPECT_EQ(countOf(output, "trl20: "), 1) << output;
    EXPECT_EQ(countOf(output, "display yes, config yes, context no, error 0x3003"), 1) << output;
}

} // namespace
