// SPDX-License-Identifier: MIT
// Which programs of an ES 1.1 context were loaded as binaries, with a folder of stored programs.
#include "es1_fixture.h"
#include "support/working_directory.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext_trl20.h>

#include <vector>

namespace {

struct StoredPrograms : Es1Test {
    static void SetUpTestSuite()
    {
        static const TemporaryFolder folder;
        setenv("TRL20_PROGRAM_CACHE", folder.path.c_str(), 1);
    }

    static std::vector<GLuint> programs()
    {
        std::vector<GLuint> names(10);
        GLint count = 0;
        glGetProgramsQRN(names.data(), static_cast<GLint>(names.size()), &count);
        names.resize(static_cast<size_t>(count));
        return names;
    }
};

TEST_F(StoredPrograms, AProgramOfAnEarlierContextIsABinary)
{
    drawSquare();
    ASSERT_EQ(programs().size(), 1u);
    EXPECT_EQ(glIsProgramBinaryQRN(programs()[0]), GL_FALSE) << "made from its texts";
    EXPECT_EQ(glIsProgramBinaryQRN(programs()[0] + 100), GL_FALSE) << "not a program";

    ASSERT_TRUE(makeCurrent(create(1))); // shares nothing
    glEnable(GL_FOG);
    drawSquare();
    glDisable(GL_FOG);
    drawSquare();
    ASSERT_EQ(programs().size(), 2u);
    EXPECT_EQ(glIsProgramBinaryQRN(programs()[0]), GL_FALSE) << "with fog, new";
    EXPECT_EQ(glIsProgramBinaryQRN(programs()[1]), GL_TRUE) << "without, as before";
}

} // namespace
