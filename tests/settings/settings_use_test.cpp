// SPDX-License-Identifier: MIT
// What the settings of a process do to its contexts. The record is filled once per process, so each case runs in a
// process of its own.
#include "frontend/backend.h"
#include "frontend/current.h"
#include "settings/panel_settings.h"
#include "support/fake_backend.h"
#include "support/working_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>

namespace {

// Runs checks in a directory that holds a settings file. Each check returns what is wrong, or nothing.
[[noreturn]] void runWithSettings(const std::string &text, const std::function<std::string()> &check)
{
    std::string wrong;
    {
        WorkingDirectory directory;
        writeFile("orvala_panel.txt", text);
        resetFakeBackend();
        wrong = check();
    }
    std::cerr << wrong;
    std::_Exit(wrong.empty() ? 0 : 1);
}

std::string isInterfaceOnly()
{
    const TestContext context;
    if (!context->settings.interfaceOnly) return "the flag is clear";
    glEnable(GL_LIGHTING);
    glColor4f(0, 0, 0, 0);
    glMatrixMode(0);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    if (!takeCalls().empty()) return "a state-keeping call reached the backend";
    if (context->key.lighting || context->current.color[0] != 1.0f) return "state was kept";
    if (context->error != GL_NO_ERROR) return "an error was recorded";
    glClear(GL_COLOR_BUFFER_BIT);
    if (takeCalls() != std::vector<std::string>{"glClear(16384)"}) return "glClear did not reach the backend";
    return "";
}

std::string isNormal()
{
    const TestContext context;
    if (context->settings.interfaceOnly || context->settings.dumps) return "a flag is set";
    glEnable(GL_LIGHTING);
    return context->key.lighting ? "" : "state was not kept";
}

std::string settingsStay()
{
    const TestContext first;
    writeFile("orvala_panel.txt", "performance=normal\ngmemSize=8\n");
    const TestContext second;
    if (!second->settings.interfaceOnly) return "the second context read the file again";
    return get_panel_settings()->onChipMemorySize == 0 ? "" : "the record changed";
}

std::string logsEachContextsFirstProgram()
{
    const char *const log = "c:\\temp\\sp_log.txt";
    for (int i = 0; i < 2; ++i) {
        const TestContext context;
        glVertexPointer(2, GL_FLOAT, 0, log);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        if (callsOf("glDrawArrays").empty()) return "no draw";
        if (!std::filesystem::remove(log)) return "no log of the first program";
        glEnable(GL_LIGHTING);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        if (std::filesystem::exists(log)) return "a second log";
    }
    return "";
}

std::string logsNothing()
{
    const TestContext context;
    glVertexPointer(2, GL_FLOAT, 0, &context);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    if (callsOf("glDrawArrays").empty()) return "no draw";
    for (const auto &entry : std::filesystem::directory_iterator(".")) {
        if (entry.path().filename() != "orvala_panel.txt") return "wrote " + entry.path().string();
    }
    return "";
}

class SettingsUse : public testing::Test {
protected:
    SettingsUse()
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe"); // a fresh process, whose record is not yet filled
    }
};

} // namespace

TEST_F(SettingsUse, InterfaceOnlyComesFromTheSettingsFile)
{
    EXPECT_EXIT(runWithSettings("performance=es11ifd\n", isInterfaceOnly), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(runWithSettings("performance=ifd\n", isNormal), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(runWithSettings("", isNormal), testing::ExitedWithCode(0), "");
}

TEST_F(SettingsUse, TheFileIsReadOncePerProcess)
{
    EXPECT_EXIT(runWithSettings("performance=es11ifd\n", settingsStay), testing::ExitedWithCode(0), "");
}

TEST_F(SettingsUse, TheShaderSwitchLogsTheFirstProgramOfEachContext)
{
    EXPECT_EXIT(runWithSettings("log.shaders=1\n", logsEachContextsFirstProgram), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(runWithSettings("log.shaders=0\n", logsNothing), testing::ExitedWithCode(0), "");
}
