// SPDX-License-Identifier: MIT
// Opening a folder that the user named makes what is missing, and says why when it cannot.
#include "host/gles2/folder.h"

#include "support/working_directory.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using std::filesystem::path;

class Folder : public testing::Test {
protected:
    // Returns 0 when the folder was opened, errno otherwise.
    static int open(const path &folder)
    {
        const int opened = openFolder(folder, 0700);
        if (opened < 0) return errno;
        close(opened);
        return 0;
    }

    TemporaryFolder parent;
};

TEST_F(Folder, IsMadeWithTheFoldersAboveIt)
{
    EXPECT_EQ(open(parent.path / "a" / "b" / "c"), 0);
    EXPECT_TRUE(std::filesystem::is_directory(parent.path / "a" / "b" / "c"));
    EXPECT_EQ(open(parent.path / "a" / "b" / "c"), 0) << "one that is there is opened";
    EXPECT_EQ(open(parent.path / "a" / "d" / ""), 0) << "a slash at the end";
}

TEST_F(Folder, OfAFileIsNone)
{
    writeFile(parent.path / "file", "x");
    EXPECT_EQ(open(parent.path / "file"), ENOTDIR);
    EXPECT_EQ(open(parent.path / "file" / "below"), ENOTDIR);
}

TEST_F(Folder, BehindALinkThatLeadsNowhereIsNotThere)
{
    std::filesystem::create_symlink("nowhere", parent.path / "link");
    EXPECT_EQ(open(parent.path / "link"), ENOENT);
}

TEST_F(Folder, ThatMayNotBeMadeIsRefusedForThatReason)
{
    ASSERT_EQ(chmod(parent.path.c_str(), 0555), 0);
    const uid_t user = geteuid();
    constexpr uid_t kNobody = 65534;
    ASSERT_EQ(seteuid(user == 0 ? kNobody : user), 0) << "root may make everything";
    const int direct = open(parent.path / "new");
    const int deep = open(parent.path / "new" / "below" / "it");
    ASSERT_EQ(seteuid(user), 0);
    ASSERT_EQ(chmod(parent.path.c_str(), 0755), 0);
    EXPECT_EQ(direct, EACCES);
    EXPECT_EQ(deep, EACCES);
}

} // namespace
