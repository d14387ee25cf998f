// SPDX-License-Identifier: MIT
// TRL20_PROGRAM_CACHE over the built backend: programs kept between processes, and everything that may happen to the
// files in between.
#include "application.h"

#include "host/gles2/stored_program_file.h"
#include "support/working_directory.h"

#include <chrono>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using std::filesystem::path;

constexpr const char *kGreen = "void main()\n{\n    gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0);\n}\n";

std::vector<path> filesIn(const path &folder)
{
    std::vector<path> files;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    return files;
}

mode_t modeOf(const path &file)
{
    struct stat status {};
    EXPECT_EQ(lstat(file.c_str(), &status), 0) << file;
    return status.st_mode & 07777;
}

// Asked in a process of its own: the backend reads its variables once.
bool driverGivesPrograms()
{
    const pid_t process = fork();
    if (process == 0) {
        setenv("MESA_SHADER_CACHE_DISABLE", "false", 1);
        Application app;
        app.makeContext();
        GLint formats = 0;
        app.gl.glGetIntegerv(GL_NUM_PROGRAM_BINARY_FORMATS_OES, &formats);
        _exit(formats > 0 ? 0 : 1);
    }
    int status = -1;
    waitpid(process, &status, 0);
    return status == 0;
}

// Mesa gives programs away only with its own cache on; each run has an empty one.
class StoredPrograms : public testing::Test {
protected:
    void SetUp() override
    {
        static const bool given = driverGivesPrograms();
        ASSERT_TRUE(given) << "Mesa gives its programs away; another driver may not, and is no place for these tests";
    }

    void run(const std::function<void(Application &)> &work, const char *told = "^$")
    {
        const TemporaryFolder mesa;
        runApplication({{"TRL20_PROGRAM_CACHE", folder},
                        {"MESA_SHADER_CACHE_DISABLE", "false"},
                        {"MESA_SHADER_CACHE_DIR", mesa.path}},
                       work, told);
    }

    // Links and draws the green program. `compiled` is whether the driver has to compile it.
    void expectGreen(bool compiled, const char *told = "^$")
    {
        run(
            [compiled](Application &app) {
                app.draw(app.link(kPlainVertex, kGreen));
                EXPECT_EQ(app.pixelAt(9, 9), (Pixel{0, 255, 0, 255}));
                EXPECT_EQ(countedCalls("glCompileShader"), compiled ? 2 : 0);
                EXPECT_EQ(countedCalls("glLinkProgram"), compiled ? 1 : 0);
                EXPECT_EQ(app.gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
            },
            told);
    }

    // The file of the green program, which a first run has written.
    path storeGreen()
    {
        expectGreen(true);
        const std::vector<path> files = filesIn(folder);
        EXPECT_EQ(files.size(), 1u);
        return files.empty() ? path() : files[0];
    }

    // Whatever was done to the file: the next run compiles and mends it, and the one after that loads it.
    void expectMended(const path &file, const std::string &what)
    {
        SCOPED_TRACE(what);
        expectGreen(true);
        EXPECT_EQ(modeOf(file), 0600u);
        EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(file)));
        EXPECT_EQ(filesIn(folder).size(), 1u);
        expectGreen(false);
    }

    TemporaryFolder parent;
    path folder = parent.path / "made" / "here";
};

TEST_F(StoredPrograms, TheSecondRunCompilesNothing)
{
    const mode_t before = umask(0);
    const path file = storeGreen();
    umask(before);
    EXPECT_EQ(modeOf(folder), 0700u);
    EXPECT_EQ(modeOf(file), 0600u);
    EXPECT_TRUE(isProgramFileName(file.filename().string())) << file;
    expectGreen(false);
}

TEST_F(StoredPrograms, WithoutTheVariableNothingIsAskedOfTheDriver)
{
    runApplication({{"MESA_SHADER_CACHE_DISABLE", "false"}}, [](Application &app) {
        app.draw(app.link(kPlainVertex, kGreen));
        for (const char *function : {"glGetProgramBinary", "glProgramBinary", "glProgramParameteri"})
            EXPECT_EQ(countedCalls(function), 0) << function;
    });
}

TEST_F(StoredPrograms, ALoadedProgramIsAsFreshlyLinked)
{
    const std::string vertex = "attribute vec4 a;\nattribute vec4 gles_Vertex;\nvoid main()\n{\n"
                               "    gl_Position = gles_Vertex + a;\n}\n";
    const auto work = [&](Application &app, int compiles) {
        const GLuint program = app.link(vertex, kColorFragment);
        EXPECT_EQ(countedCalls("glCompileShader"), compiles);
        EXPECT_EQ(app.gl.glGetAttribLocation(program, "gles_Vertex"), 0);
        EXPECT_GT(app.gl.glGetAttribLocation(program, "a"), 0);
        const GLint color = app.gl.glGetUniformLocation(program, "color");
        GLfloat values[4] = {9, 9, 9, 9};
        app.gl.glGetUniformfv(program, color, values);
        EXPECT_EQ(std::vector<GLfloat>(values, values + 4), (std::vector<GLfloat>{0, 0, 0, 0}));
        app.gl.glUseProgram(program);
        app.gl.glUniform4f(color, 0.0f, 0.0f, 1.0f, 1.0f);
        app.gl.glVertexAttrib4f(static_cast<GLuint>(app.gl.glGetAttribLocation(program, "a")), 0, 0, 0, 0);
        app.draw(program);
        EXPECT_EQ(app.pixelAt(9, 9), (Pixel{0, 0, 255, 255}));
        GLint length = -1;
        app.gl.glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
        EXPECT_EQ(length, 0);
    };
    run([&](Application &app) { work(app, 2); });
    run([&](Application &app) { work(app, 0); });
}

TEST_F(StoredPrograms, BindingsTextsAndStagesArePartOfTheKey)
{
    const std::string lines = "\n#extension GL_QRN_line_coord : require\n\nvoid main()\n{\n"
                              "    gl_FragColor = vec4(1.0, gl_LineCoord.y, 0.0, 1.0);\n}\n";
    const auto work = [&](Application &app) {
        for (const GLuint position : {0u, 5u}) {
            const GLuint program = app.link(kPlainVertex, kGreen, position);
            EXPECT_EQ(app.gl.glGetAttribLocation(program, "gles_Vertex"), static_cast<GLint>(position));
        }
        app.link(kPlainVertex, fragmentOf(1));
        const GLuint program = app.link(kPlainVertex, lines);
        app.gl.glLineWidth(4.0f);
        app.gl.glClear(GL_COLOR_BUFFER_BIT);
        app.draw(program, GL_LINES); // along the lower edge, whose upper half is seen: the coordinate runs from 0.5 on
        EXPECT_EQ(app.pixelAt(16, 1)[0], 255);
        EXPECT_GT(app.pixelAt(16, 1)[1], 128);
        EXPECT_EQ(app.pixelAt(16, 5)[0], 0);
    };
    run(work);
    EXPECT_EQ(filesIn(folder).size(), 4u);
    run([&](Application &app) {
        work(app);
        EXPECT_EQ(countedCalls("glCompileShader"), 0);
    });
}

TEST_F(StoredPrograms, DamagedFilesAreCompiledAnewAndMended)
{
    const path file = storeGreen();
    const std::string whole = readFile(file);
    for (const size_t at : {size_t{0}, size_t{9}, size_t{13}, size_t{17}, size_t{25}, size_t{33}, size_t{41},
                            size_t{60}, whole.size() / 2, whole.size() - 1}) {
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 4);
        writeFile(file, damaged);
        expectMended(file, "byte " + std::to_string(at));
    }
    for (const size_t length : {size_t{0}, size_t{1}, size_t{47}, size_t{48}, whole.size() / 2, whole.size() - 1}) {
        writeFile(file, whole.substr(0, length));
        expectMended(file, "length " + std::to_string(length));
    }
    writeFile(file, whole + "x");
    expectMended(file, "one byte more");
}

// The key from the file's own content: it starts behind the head of 48 bytes and has its size at byte 16.
std::string keyIn(const std::string &content)
{
    uint64_t size = 0;
    memcpy(&size, content.data() + 16, sizeof size);
    return content.substr(48, size);
}

TEST_F(StoredPrograms, AnotherDriversProgramIsNotUsed)
{
    const path file = storeGreen();
    const std::string whole = readFile(file);
    const std::string key = keyIn(whole);
    ProgramBinary binary{};
    ASSERT_TRUE(decodeProgramFile(whole, key, binary));
    std::string other = key;
    ++other[0]; // of the vendor's name, which is first
    writeFile(file, encodeProgramFile(other, binary));
    expectMended(file, "another vendor under the same name");
}

TEST_F(StoredPrograms, WhatTheDriverRefusesIsCompiled)
{
    const path file = storeGreen();
    const std::string key = keyIn(readFile(file));
    ProgramBinary binary{};
    ASSERT_TRUE(decodeProgramFile(readFile(file), key, binary));

    std::string changed = binary.bytes;
    changed[changed.size() / 2] = static_cast<char>(changed[changed.size() / 2] ^ 1);
    for (const std::string &bytes : {changed, std::string(1000, 'x'), std::string("x"), std::string()}) {
        writeFile(file, encodeProgramFile(key, {.format = binary.format, .bytes = bytes}));
        expectMended(file, "binary of " + std::to_string(bytes.size()) + " bytes");
    }
    writeFile(file, encodeProgramFile(key, {.format = binary.format + 1, .bytes = binary.bytes}));
    run([](Application &app) {
        app.link(kPlainVertex, kGreen);
        EXPECT_EQ(countedCalls("glProgramBinary"), 0) << "a format that the driver does not list";
        EXPECT_EQ(app.gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    });
}

TEST_F(StoredPrograms, AnErrorOfTheApplicationSurvivesALoad)
{
    const path file = storeGreen();
    const auto work = [](Application &app) {
        app.gl.glBlendFunc(GL_FLOAT, GL_FLOAT);
        app.link(kPlainVertex, kGreen);
        EXPECT_EQ(app.gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
        EXPECT_EQ(app.gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    };
    run(work);
    std::filesystem::remove(file);
    run(work);
}

// What another user could have put there.
TEST_F(StoredPrograms, FilesThatOthersCouldHaveWrittenAreNotRead)
{
    const path file = storeGreen();
    for (const mode_t mode : {0620u, 0602u, 0666u}) {
        chmod(file.c_str(), mode);
        expectMended(file, "mode " + std::to_string(mode));
    }
    chmod(file.c_str(), 0644); // readable by others, which does no harm
    expectGreen(false);

    const path elsewhere = parent.path / "elsewhere";
    std::filesystem::rename(file, elsewhere);
    std::filesystem::create_symlink(elsewhere, file);
    expectMended(file, "symbolic link");

    std::filesystem::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    expectMended(file, "pipe");
}

TEST_F(StoredPrograms, AFolderInTheFilesPlaceIsToldAndTheProgramRuns)
{
    const path file = storeGreen();
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    expectGreen(true, "^trl20: TRL20_PROGRAM_CACHE: a program could not be written to the folder\n$");
    EXPECT_EQ(filesIn(folder), std::vector<path>{file}) << "nothing unfinished is left";
}

TEST_F(StoredPrograms, AFolderThatOthersCanWriteToIsNotUsed)
{
    storeGreen();
    for (const mode_t mode : {0770u, 0702u, 01777u}) {
        chmod(folder.c_str(), mode);
        expectGreen(true, "^trl20: TRL20_PROGRAM_CACHE: [^\n]* must be your own folder[^\n]*; no programs are kept\n$");
    }
    chmod(folder.c_str(), 0755);
    expectGreen(false);
}

TEST_F(StoredPrograms, AFolderThatCannotBeOpenedIsTold)
{
    writeFile(parent.path / "file", "");
    for (const path &bad : {parent.path / "file", parent.path / "file" / "below", path("/proc/trl20")}) {
        folder = bad;
        expectGreen(true, "^trl20: TRL20_PROGRAM_CACHE: cannot use [^\n]*: [^\n]*; no programs are kept\n$");
    }
}

TEST_F(StoredPrograms, ADriverThatGivesNoProgramsAwayIsToldOnce)
{
    const auto work = [](Application &app) {
        app.draw(app.link(kPlainVertex, kGreen));
        app.link(kPlainVertex, fragmentOf(1));
        EXPECT_EQ(app.pixelAt(9, 9), (Pixel{0, 255, 0, 255}));
    };
    const char *told = "^trl20: TRL20_PROGRAM_CACHE: this driver does not give its programs away; none are kept\n$";
    runApplication({{"TRL20_PROGRAM_CACHE", folder}, {"MESA_SHADER_CACHE_DISABLE", "true"}}, work, told);
    runApplication({{"TRL20_PROGRAM_CACHE", folder}, {"TRL20_DRIVER_LIMIT", "es2"}}, work, told);
    EXPECT_TRUE(filesIn(folder).empty());
}

TEST_F(StoredPrograms, ProcessesAtOnceLeaveWholeFiles)
{
    std::vector<pid_t> processes;
    constexpr int kPrograms = 12;
    const TemporaryFolder mesa;
    for (int i = 0; i < 4; ++i) {
        const pid_t process = fork();
        if (process == 0) {
            setenv("TRL20_PROGRAM_CACHE", folder.c_str(), 1);
            setenv("MESA_SHADER_CACHE_DISABLE", "false", 1);
            setenv("MESA_SHADER_CACHE_DIR", mesa.path.c_str(), 1);
            Application app;
            app.makeContext();
            for (int number = 0; number < kPrograms; ++number)
                app.draw(app.link(kPlainVertex, fragmentOf(number)));
            _exit(app.gl.glGetError() != GL_NO_ERROR);
        }
        processes.push_back(process);
    }
    for (const pid_t process : processes) {
        int status = -1;
        waitpid(process, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(filesIn(folder).size(), static_cast<size_t>(kPrograms));
    run([](Application &app) {
        for (int number = 0; number < kPrograms; ++number)
            app.draw(app.link(kPlainVertex, fragmentOf(number)));
        EXPECT_EQ(countedCalls("glCompileShader"), 0);
    });
}

// 1000 files are kept; a process that starts with more removes the oldest down to 750.
TEST_F(StoredPrograms, AFullFolderLosesTheFilesUsedLeastRecently)
{
    const path green = storeGreen();
    const auto now = std::filesystem::file_time_type::clock::now();
    const auto addFile = [&](const std::string &name, int ageSeconds) {
        writeFile(folder / name, "x");
        last_write_time(folder / name, now - std::chrono::seconds(ageSeconds));
    };
    const auto nameOf = [](int i) {
        char name[40];
        snprintf(name, sizeof name, "%016x.program", i);
        return std::string(name);
    };
    for (int i = 0; i < 999; ++i)
        addFile(nameOf(i), 1000 + i);
    last_write_time(green, now - std::chrono::seconds(5000)); // the oldest
    addFile("notes", 9999);
    addFile("." + nameOf(1) + ".123.1", 60 * 60);
    addFile("." + nameOf(2) + ".123.1", 25 * 60 * 60);
    expectGreen(false); // 1000 are not too many; it is used now, and so the newest
    EXPECT_FALSE(exists(folder / ("." + nameOf(2) + ".123.1"))) << "given up a day ago";
    EXPECT_EQ(filesIn(folder).size(), 1002u);

    addFile(nameOf(999), 4000);
    expectGreen(false);
    EXPECT_EQ(filesIn(folder).size(), 752u);
    EXPECT_TRUE(exists(folder / "notes"));
    EXPECT_TRUE(exists(folder / ("." + nameOf(1) + ".123.1"))) << "may still be written";
    EXPECT_TRUE(exists(folder / nameOf(748)));
    EXPECT_FALSE(exists(folder / nameOf(749)));
    EXPECT_FALSE(exists(folder / nameOf(999)));
}

TEST_F(StoredPrograms, AFolderOfManyBytesLosesTheOldestToo)
{
    const path green = storeGreen();
    for (int i = 0; i < 9; ++i) { // 72 MiB of the 64
        const path file = folder / ("000000000000000" + std::to_string(i) + ".program");
        writeFile(file, "");
        std::filesystem::resize_file(file, 8 << 20);
        last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::seconds(100 - i));
    }
    expectGreen(false);
    EXPECT_EQ(filesIn(folder).size(), 6u); // below 48 MiB: five of them and the green one
    EXPECT_FALSE(exists(folder / "0000000000000003.program"));
    EXPECT_TRUE(exists(folder / "0000000000000004.program"));
}

TEST_F(StoredPrograms, ExplainTellsLoadsFromBuilds)
{
    storeGreen();
    const TemporaryFolder explained;
    setenv("TRL20_EXPLAIN", explained.path.c_str(), 1);
    run([](Application &app) {
        app.draw(app.link(kPlainVertex, kGreen));
        app.draw(app.link(kPlainVertex, fragmentOf(1)));
    });
    unsetenv("TRL20_EXPLAIN");
    const std::string summary = readFile(explained.path / "summary.txt");
    EXPECT_NE(summary.find("0 kept from before, 1 loaded from files, 1 to be built"), std::string::npos) << summary;
    EXPECT_NE(readFile(explained.path / "program-001.txt").find("; loaded from a file in "), std::string::npos);
}

} // namespace
