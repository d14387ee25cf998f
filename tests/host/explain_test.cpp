// SPDX-License-Identifier: MIT
// TRL20_EXPLAIN over the built backend.
#include "application.h"

#include "support/working_directory.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <latch>
#include <regex>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using std::filesystem::path;

void runExplained(const path &folder, const std::function<void(Application &)> &work, const char *told = "^$")
{
    runApplication({{"TRL20_EXPLAIN", folder}, {"MESA_SHADER_CACHE_DISABLE", "true"}}, work, told);
}

std::string summaryIn(const path &folder)
{
    return readFile(folder / "summary.txt");
}

void expectLine(const std::string &text, const std::string &line)
{
    EXPECT_TRUE(std::regex_search(text, std::regex("(^|\n)" + line + "(\n|$)"))) << "no " << line << " in\n" << text;
}

TEST(Explain, EveryProgramHasAFileWithItsTextsAndLog)
{
    const TemporaryFolder folder;
    const std::string flat = "#pragma GL_QRN_flat_varying\nattribute vec4 gles_Vertex;\nflat varying vec4 c;\n"
                             "void main(void)\n{\n    c = gles_Vertex;\n    gl_Position = gles_Vertex;\n}\n";
    const std::string flatFragment = "\n#pragma GL_QRN_flat_varying\nflat varying mediump vec4 c;\nvoid main(void)\n{\n"
                                     "    gl_FragColor = c;\n}\n";
    runExplained(folder.path / "made" / "when missing", [&](Application &app) {
        app.draw(app.link(kPlainVertex, fragmentOf(1)));
        app.draw(app.link(flat, flatFragment));
    });
    const path files = folder.path / "made" / "when missing";
    const std::string first = readFile(files / "program-001.txt");
    EXPECT_NE(first.find("\n==== vertex shader, as generated ====\n" + std::string(kPlainVertex)), std::string::npos);
    EXPECT_NE(first.find("\n==== fragment shader, as generated ====\n" + fragmentOf(1)), std::string::npos);
    EXPECT_NE(first.find("\n==== fragment shader, as handed to the driver, GLSL ES 1.00 ====\nprecision highp float;"),
              std::string::npos)
        << first;
    EXPECT_NE(first.find("\n==== driver's log ====\n"), std::string::npos);

    const std::string second = readFile(files / "program-002.txt");
    EXPECT_NE(second.find("\n==== fragment shader, as generated ====\n" + flatFragment), std::string::npos);
    EXPECT_NE(second.find("as handed to the driver, GLSL ES 3.00 ====\n#version 300 es\n"), std::string::npos)
        << second;
    EXPECT_NE(second.find("\n    GL_FLAT\n"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(files / "program-003.txt"));
}

TEST(Explain, AFileTellsWhichUniformIsWhereInTheArray)
{
    const TemporaryFolder folder;
    const std::string vertex = "attribute vec4 gles_Vertex;\nuniform mat4 turn;\nuniform vec4 moves[2];\n"
                               "void main()\n{\n    gl_Position = turn * gles_Vertex + moves[0] + moves[1];\n}\n";
    runExplained(folder.path, [&](Application &app) { app.draw(app.link(vertex, fragmentOf(1))); });
    const std::string file = readFile(folder.path / "program-001.txt");
    EXPECT_NE(file.find("\n==== places in trl20_Uniforms ====\n[0] mat4 turn\n[4] vec4 moves[2]\n\n===="),
              std::string::npos)
        << file;
}

TEST(Explain, TheSummaryCountsDrawsSearchesAndBuilds)
{
    const TemporaryFolder folder;
    runExplained(folder.path, [](Application &app) {
        const GLuint one = app.link(kPlainVertex, fragmentOf(1));
        const GLuint two = app.link(kPlainVertex, fragmentOf(2));
        for (int i = 0; i < 3; ++i)
            app.draw(one);
        app.draw(two, GL_LINES);
        app.draw(two, GL_POINTS);
        app.draw(one); // found again
        app.gl.glUseProgram(0);
        app.gl.glDeleteProgram(two);
        app.draw(app.link(kPlainVertex, fragmentOf(2))); // kept
        app.gl.glUseProgram(0);
        app.gl.glDrawArrays(GL_TRIANGLES, 0, 3);
    });
    const std::string summary = summaryIn(folder.path);
    expectLine(summary, "explain_test: 8 draws in 0 frames and \\d+\\.\\d\\d s");
    expectLine(summary, ".+OpenGL ES.*"); // the driver
    expectLine(
        summary,
        "programs  2 different, 2 builds by the driver in \\d+\\.\\d ms, first draws with them in \\d+\\.\\d ms");
    expectLine(summary, "library   4 searches for another program: 1 hit, 3 missed");
    expectLine(summary, "backend   of those missed: 1 kept from before, 0 loaded from files, 2 to be built");
    expectLine(summary, "1 draw without a program: they draw nothing");
    // number, frame, draw, seconds, builds, build ms, first draw ms, draws, vertices
    expectLine(summary, " +001 +0 +1 +\\d+\\.\\d+ +1 +\\d+\\.\\d +\\d+\\.\\d +4 +16  GL_TRIANGLE_STRIP");
    expectLine(summary,
               " +002 +0 +1 +\\d+\\.\\d+ +1 +\\d+\\.\\d +\\d+\\.\\d +3 +12  GL_POINTS, GL_LINES, GL_TRIANGLE_STRIP");
}

// A luminance image is read back by drawing it aside, with a program of the backend's own.
TEST(Explain, ATextureReadBackIsNoDraw)
{
    const TemporaryFolder folder;
    runExplained(folder.path, [](Application &app) {
        const GLubyte grey = 77;
        GLubyte found = 0;
        GLuint texture = 0;
        app.gl.glGenTextures(1, &texture);
        app.gl.glBindTexture(GL_TEXTURE_2D, texture);
        app.gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, 1, 1, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, &grey);
        app.draw(app.link(kPlainVertex, fragmentOf(1)));
        app.gl.glGetTexSubImageZEK(GL_TEXTURE_2D, 0, 0, 0, 0, 1, 1, 1, GL_LUMINANCE, GL_UNSIGNED_BYTE, &found);
        EXPECT_EQ(found, grey);
    });
    const std::string summary = summaryIn(folder.path);
    expectLine(summary, "explain_test: 1 draw in 0 frames .*");
    expectLine(summary, " +001 .* 1 +4  GL_TRIANGLE_STRIP");
}

TEST(Explain, AProgramIsComparedWithTheOneBeforeIt)
{
    const TemporaryFolder folder;
    const std::string alphaTest =
        "uniform mediump float gles_AlphaRef;\nvoid main()\n{\n    mediump vec4 currentColor = "
        "vec4(1.0);\n    if (!(currentColor.a  > gles_AlphaRef)) discard;\n\n"
        "    gl_FragColor = currentColor;\n}\n";
    const std::string smooth = "varying mediump float aaInnerRing;\nvoid main()\n{\n    gl_FragColor = vec4(1.0);\n}\n";
    runExplained(folder.path, [&](Application &app) {
        app.draw(app.link(kPlainVertex, smooth));
        app.draw(app.link(kPlainVertex, alphaTest));
    });
    EXPECT_NE(summaryIn(folder.path).find("        after 001: + alpha test: GL_GREATER; - GL_POINT_SMOOTH\n"),
              std::string::npos)
        << summaryIn(folder.path);
}

// The line that the driver complains of is that of the generated text, whatever the translator put above it.
TEST(Explain, AFailureShowsTheGeneratedLine)
{
    const struct {
        std::string head;
        const char *tail;
    } cases[] = {
        {"", ""},
        {"#pragma GL_QRN_flat_varying\nflat varying mediump vec4 c;\n", ""},
        {"\n#extension GL_QRN_line_coord : require\n\n", "    gl_FragColor = vec4(gl_LineCoord.y);\n"},
    };
    for (const auto &[head, tail] : cases) {
        const TemporaryFolder folder;
        const std::string text = head +
                                 "#extension GL_OES_EGL_image_external : require\nuniform lowp bool b;\nvoid main()\n"
                                 "{\n    nonsense;\n" +
                                 tail + "}\n";
        const std::string line = std::to_string(std::count(head.begin(), head.end(), '\n') + 5);
        runExplained(folder.path, [&](Application &app) { EXPECT_NE(app.link(kPlainVertex, text), 0u); });
        const std::string file = readFile(folder.path / "program-001.txt");
        expectLine(file, "program 1: .*the fragment shader DID NOT COMPILE, after \\d+\\.\\d ms");
        expectLine(file, "    line " + line + ":     nonsense;");
        EXPECT_NE(file.find("0:" + line + "("), std::string::npos) << file;
        if (!head.empty()) { // refused in 3.00 or 3.20, then tried in 1.00
            const size_t refused = file.find("of a higher version, which was given up:\n0:" + line + "(");
            EXPECT_LT(refused, file.find("fragment shader:\n0:" + line + "(")) << file;
        }
        expectLine(summaryIn(folder.path), "programs  1 different, 1 build by .* ms, 1 FAILED: see their files");
        EXPECT_TRUE(std::regex_search(summaryIn(folder.path), std::regex(" 001 .* FAILED\n")));
    }
}

// A driver without wide lines gets another program for them.
TEST(Explain, ProgramsForWideLinesHaveAFileOfTheirOwn)
{
    const TemporaryFolder folder;
    writeFile(folder.path / "program-002-lines.txt", "old");
    runApplication({{"TRL20_EXPLAIN", folder.path}, {"TRL20_DRIVER_LIMIT", "thin-lines"}}, [](Application &app) {
        app.gl.glLineWidth(5.0f);
        app.draw(app.link(kPlainVertex, fragmentOf(1)), GL_LINES);
    });
    const std::string file = readFile(folder.path / "program-001-lines.txt");
    expectLine(file, "program 1, another one for its texts \\(lines\\): compiled and linked in .* ms");
    EXPECT_NE(file.find("==== geometry shader, as handed to the driver, GLSL ES 3.20 ===="), std::string::npos) << file;
    expectLine(summaryIn(folder.path), "programs  1 different, 2 builds by .*");
    EXPECT_FALSE(std::filesystem::exists(folder.path / "program-002-lines.txt")) << "of an earlier run";
}

TEST(Explain, ContextsOnSeveralThreadsAreCountedTogether)
{
    const TemporaryFolder folder;
    runExplained(folder.path, [](Application &app) {
        app.makeCurrent(nullptr);
        std::latch bothReady(2);
        const auto work = [&] {
            void *context = app.makeContext();
            const GLuint one = app.link(kPlainVertex, fragmentOf(1));
            const GLuint two = app.link(kPlainVertex, fragmentOf(2));
            bothReady.arrive_and_wait();
            for (int i = 0; i < 20; ++i) {
                app.draw(i % 2 ? one : two);
                for (int j = 0; j < 19999; ++j)
                    app.gl.glDrawArrays(GL_POINTS, 0, 0); // next to nothing but the counting
            }
            app.makeCurrent(nullptr);
            backend().table.destroyContext(context);
        };
        std::thread first(work);
        std::thread second(work);
        first.join();
        second.join();
    });
    const std::string summary = summaryIn(folder.path);
    expectLine(summary, "explain_test: 800000 draws in 0 frames .*");
    expectLine(summary, "programs  2 different, 4 builds by .*");
    for (const char *number : {"001", "002"})
        expectLine(summary, std::string(" +") + number +
                                " .* 2 +\\d+\\.\\d +\\d+\\.\\d +400000 +80  GL_POINTS, GL_TRIANGLE_STRIP");
}

TEST(Explain, AnEarlierRunsProgramsGoAndOtherFilesStay)
{
    const TemporaryFolder folder;
    for (const char *name : {"program-001.txt", "program-007.txt", "program-1000.txt", "program-7.txt", "notes.txt",
                             "program-003-lines.txt", "program-003-1.txt"})
        writeFile(folder.path / name, "old");
    runExplained(folder.path, [](Application &app) { app.draw(app.link(kPlainVertex, fragmentOf(1))); });
    EXPECT_EQ(readFile(folder.path / "program-001.txt").substr(0, 9), "program 1");
    EXPECT_FALSE(std::filesystem::exists(folder.path / "program-007.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder.path / "program-1000.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder.path / "program-003-lines.txt"));
    for (const char *name : {"program-7.txt", "program-003-1.txt"}) // not names that are written
        EXPECT_EQ(readFile(folder.path / name), "old");
    EXPECT_EQ(readFile(folder.path / "notes.txt"), "old");
}

TEST(Explain, AFolderThatCannotBeUsedIsToldAndTheProgramRuns)
{
    const TemporaryFolder folder;
    writeFile(folder.path / "file", "");
    for (const path &bad : {folder.path / "file", folder.path / "file" / "below", path("/proc/trl20")}) {
        runExplained(
            bad,
            [](Application &app) {
                app.draw(app.link(kPlainVertex, "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }"));
                EXPECT_EQ(app.pixelAt(3, 3), (Pixel{0, 255, 0, 255}));
            },
            "^trl20: TRL20_EXPLAIN: cannot write to [^\n]*: [^\n]*; nothing is explained\n$");
    }
}

TEST(Explain, AFolderThatGoesAwayIsToldOnceAndTheProgramRuns)
{
    const TemporaryFolder folder;
    const path gone = folder.path / "gone";
    runExplained(
        gone,
        [&](Application &app) {
            app.draw(app.link(kPlainVertex, fragmentOf(1)));
            std::filesystem::remove_all(gone);
            app.draw(app.link(kPlainVertex, fragmentOf(2)));
            app.draw(app.link(kPlainVertex, fragmentOf(3)));
        },
        "^trl20: TRL20_EXPLAIN: cannot write program-002.txt: [^\n]*; nothing more is explained\n$");
}

TEST(Explain, AnEmptyNameIsNone)
{
    const WorkingDirectory here;
    runExplained("", [](Application &app) { app.draw(app.link(kPlainVertex, fragmentOf(1))); });
    EXPECT_TRUE(std::filesystem::is_empty(here.folder.path));
}

TEST(Explain, BesideAnotherProcessTheFolderIsOneInside)
{
    const TemporaryFolder folder;
    const int other = open(folder.path.c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    runExplained(
        folder.path, [](Application &app) { app.draw(app.link(kPlainVertex, fragmentOf(1))); },
        "^trl20: TRL20_EXPLAIN: another process writes to [^\n]*; this one writes to [^\n]*/process-[0-9]+\n$");
    close(other);
    int folders = 0;
    for (const auto &entry : std::filesystem::directory_iterator(folder.path)) {
        ++folders;
        EXPECT_TRUE(exists(entry.path() / "program-001.txt")) << entry.path();
        EXPECT_TRUE(exists(entry.path() / "summary.txt")) << entry.path();
    }
    EXPECT_EQ(folders, 1);
}

TEST(Explain, AChildOfForkWritesNothing)
{
    const TemporaryFolder folder;
    runExplained(folder.path, [&](Application &app) {
        app.draw(app.link(kPlainVertex, fragmentOf(1)));
        const pid_t child = fork();
        if (child == 0) exit(0); // runs what is registered for the end
        waitpid(child, nullptr, 0);
        expectLine(summaryIn(folder.path), "explain_test: 0 draws .*"); // as of the build
    });
    expectLine(summaryIn(folder.path), "explain_test: 1 draw .*");
}

TEST(Explain, AKilledProcessLeavesASummaryOfItsLastSecond)
{
    const TemporaryFolder folder;
    const auto child = [&] {
        setenv("TRL20_EXPLAIN", folder.path.c_str(), 1);
        Application app;
        app.makeContext();
        const GLuint program = app.link(kPlainVertex, fragmentOf(1));
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1200);
        while (std::chrono::steady_clock::now() < end)
            app.draw(program);
        raise(SIGKILL);
    };
    EXPECT_EXIT(child(), testing::KilledBySignal(SIGKILL), "");
    EXPECT_EQ(summaryIn(folder.path).find("explain_test: 0 draws"), std::string::npos);
    expectLine(summaryIn(folder.path), "explain_test: \\d+ draws in 0 frames .*");
}

} // namespace
