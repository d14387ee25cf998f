// SPDX-License-Identifier: MIT
#include "shadergen/program_log.h"

#include "frontend/backend.h"
#include "shadergen/pipeline/pipeline_test.h"
#include "support/working_directory.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;

constexpr char kProgramLog[] = "c:\\temp\\sp_log.txt";
constexpr char kFragmentLog[] = "c:\\temp\\fs_log.txt";
constexpr char kVertexLog[] = "c:\\temp\\vs_log.txt";
constexpr GLint kMebibyte = 0x100000;

// What the backend answers, by object name.
std::map<GLuint, std::string> backendLogs;
GLint reportedExtra = 1;        // reported length beyond the text; 1 for the terminating zero
std::vector<GLsizei> roomGiven; // buffer sizes of the log queries
std::vector<std::string> order; // queries, in order

void GL_APIENTRY answerLength(GLuint object, GLenum pname, GLint *out)
{
    if (pname == GL_INFO_LOG_LENGTH) *out = static_cast<GLint>(backendLogs[object].size()) + reportedExtra;
    order.push_back("length " + std::to_string(object));
}

void GL_APIENTRY answerLog(GLuint object, GLsizei room, GLsizei *length, GLchar *out)
{
    EXPECT_EQ(length, nullptr);
    order.push_back("log " + std::to_string(object));
    roomGiven.push_back(room);
    if (room > 0) out[backendLogs[object].copy(out, static_cast<size_t>(room) - 1)] = '\0';
}

// Works in a directory of its own; the files' names are Windows paths, plain names elsewhere.
class ProgramLog : public PipelineTest {
protected:
    ProgramLog()
    {
        backendLogs.clear();
        reportedExtra = 1;
        roomGiven.clear();
        order.clear();
        useAnswers();
    }
    static void useAnswers()
    {
        glGetProgramiv_2_0 = answerLength;
        glGetShaderiv_2_0 = answerLength;
        glGetProgramInfoLog_2_0 = answerLog;
        glGetShaderInfoLog_2_0 = answerLog;
    }
    static std::string content(const char *file)
    {
        std::ifstream stream(file, std::ios::binary);
        EXPECT_TRUE(stream) << file;
        std::stringstream text;
        text << stream.rdbuf();
        return text.str();
    }
    static size_t fileCount()
    {
        return static_cast<size_t>(std::distance(fs::directory_iterator("."), fs::directory_iterator()));
    }

    WorkingDirectory directory;
};

} // namespace

TEST_F(ProgramLog, NothingIsWrittenUnasked)
{
    draw();
    EXPECT_EQ(fileCount(), 0u);
    EXPECT_TRUE(order.empty());
}

TEST_F(ProgramLog, NextBoundProgramWritesItsThreeLogsOnce)
{
    backendLogs = {{1, "vertex text"}, {2, "fragment text\nsecond line"}, {3, "program text"}};
    requestProgramLogs();
    draw();
    EXPECT_EQ(content(kProgramLog), "program text");
    EXPECT_EQ(content(kFragmentLog), "fragment text\nsecond line");
    EXPECT_EQ(content(kVertexLog), "vertex text");
    EXPECT_EQ(fileCount(), 3u);
    EXPECT_EQ(order, (Calls{"length 3", "log 3", "length 2", "log 2", "length 1", "log 1"}));

    fs::remove(kProgramLog);
    glEnable(GL_FOG);
    draw();
    EXPECT_FALSE(fs::exists(kProgramLog)) << "asked for once";
}

TEST_F(ProgramLog, UnchangedDrawKeepsTheRequestUntilAProgramIsBound)
{
    draw();
    requestProgramLogs();
    draw();
    EXPECT_EQ(fileCount(), 0u);
    glEnable(GL_FOG);
    draw();
    EXPECT_EQ(fileCount(), 3u);
}

TEST_F(ProgramLog, ProgramFoundInTheCacheWritesItsLogsToo)
{
    draw();
    glEnable(GL_FOG);
    draw();
    glDisable(GL_FOG);
    backendLogs[3] = "first program";
    requestProgramLogs();
    draw();
    EXPECT_EQ(content(kProgramLog), "first program");
}

TEST_F(ProgramLog, ProgramThatCouldNotBeBuiltLeavesTheRequest)
{
    fakeBackend().createShaderFails = true;
    requestProgramLogs();
    draw();
    EXPECT_EQ(fileCount(), 0u);
    fakeBackend().createShaderFails = false;
    glEnable(GL_FOG);
    draw();
    EXPECT_EQ(fileCount(), 3u);
}

TEST_F(ProgramLog, EarlierFilesAreReplaced)
{
    std::ofstream(kVertexLog) << "a longer text of an earlier run";
    backendLogs[1] = "short";
    requestProgramLogs();
    draw();
    EXPECT_EQ(content(kVertexLog), "short");
}

TEST_F(ProgramLog, EmptyLogsGiveEmptyFiles)
{
    reportedExtra = 0;
    requestProgramLogs();
    draw();
    EXPECT_EQ(content(kProgramLog), "");
    EXPECT_EQ(content(kFragmentLog), "");
    EXPECT_EQ(content(kVertexLog), "");
    EXPECT_EQ(order.size(), 6u) << "the logs are asked for whatever their length";
}

TEST_F(ProgramLog, BufferGrowsByOneMebibyteForALogThatDoesNotFit)
{
    // The buffer is the process' own: its size at this point depends on the tests before. A log beyond every earlier
    // size grows it once; one step is all it gets.
    backendLogs[3] = "x";
    requestProgramLogs();
    draw();
    const GLsizei start = roomGiven.at(0);
    EXPECT_EQ(start % kMebibyte, 0);
    ASSERT_GE(start, kMebibyte);

    reportedExtra = start + kMebibyte; // lengths far beyond one step
    backendLogs = {{4, "v"}, {5, "f"}, {6, std::string(static_cast<size_t>(start) + kMebibyte + 5, 'p')}};
    roomGiven.clear();
    requestProgramLogs();
    glEnable(GL_FOG);
    draw();
    ASSERT_EQ(roomGiven.size(), 3u);
    EXPECT_EQ(roomGiven[0], start + kMebibyte);
    EXPECT_EQ(content(kProgramLog), std::string(static_cast<size_t>(start) + kMebibyte - 1, 'p')) << "cut to the room";
    EXPECT_EQ(content(kVertexLog), "v");
}

TEST_F(ProgramLog, WithoutMemoryTheFilesStayEmptyAndTheDrawGoesOn)
{
    draw(); // everything a draw itself allocates is there
    backendLogs[3] = "program text";
    reportedExtra = 1 << 30;
    requestProgramLogs();
    glEnable(GL_FOG);
    draw();
    glDisable(GL_FOG);
    requestProgramLogs();
    takeCalls();
    fakePlatform().allocationsUntilFailure = 0;
    draw();
    fakePlatform().allocationsUntilFailure = -1;
    EXPECT_EQ(content(kProgramLog), "");
    EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
}

TEST_F(ProgramLog, FileThatCannotBeOpenedIsSkipped)
{
    fs::create_directory(kProgramLog);
    backendLogs[1] = "vertex text";
    requestProgramLogs();
    draw();
    EXPECT_EQ(content(kVertexLog), "vertex text");
    EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
}
