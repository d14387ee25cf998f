// SPDX-License-Identifier: MIT
// Performance monitors from an ES 1.1 context, over a driver that has them.
#include "es1_fixture.h"
#include "monitor_driver.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext_trl20.h>

#include <cstdlib>
#include <string>

namespace {

// Parameter names are the driver's extension's.
constexpr GLenum kCounterType = 0x8BC0;
constexpr GLenum kResult = 0x8BC6;
constexpr GLenum kUnsignedInt = 0x1405;

struct Monitors : Es1Test {
    static void SetUpTestSuite()
    {
        setenv("TRL20_DRIVER_GLES2", TRL20_MONITOR_DRIVER, 1);
    }
};

TEST_F(Monitors, GroupsAndCountersAreTheDrivers)
{
    takeMonitorCalls();
    GLint groups = 0, counters = 0, active = 0;
    GLuint group = 0, numbers[2] = {};
    glGetPerfMonitorGroupsQRN(&groups, 1, &group);
    glGetPerfMonitorCountersQRN(group, &counters, &active, 2, numbers);
    EXPECT_EQ(groups, 1);
    EXPECT_EQ(group, 7u);
    EXPECT_EQ(counters, 2);
    EXPECT_EQ(active, 1);
    EXPECT_EQ(numbers[0], 1u);
    EXPECT_EQ(numbers[1], 2u);
    EXPECT_STREQ(takeMonitorCalls(), "groups 1\ncounters 7 2\n");

    char text[20] = "";
    GLsizei length = 0;
    glGetPerfMonitorGroupStringQRN(7, sizeof text, &length, text);
    EXPECT_STREQ(text, "pixels");
    EXPECT_EQ(length, 6);
    glGetPerfMonitorCounterStringQRN(7, 2, 5, &length, text);
    EXPECT_STREQ(text, "writ");
    GLenum type = 0;
    glGetPerfMonitorCounterInfoQRN(7, 2, kCounterType, &type);
    EXPECT_EQ(type, kUnsignedInt);
    EXPECT_STREQ(takeMonitorCalls(), "group string 7 20\ncounter string 7 2 5\ncounter info 7 2 0x8bc0\n");
}

TEST_F(Monitors, AMonitorRunsFromItsMakingToItsDeletion)
{
    takeMonitorCalls();
    GLuint monitor = 0, counter = 2, result = 0;
    GLint written = 0;
    glGenPerfMonitorsQRN(1, &monitor);
    EXPECT_EQ(monitor, 100u);
    glSelectPerfMonitorCountersQRN(monitor, GL_TRUE, 7, 1, &counter);
    glBeginPerfMonitorQRN(monitor);
    glEndPerfMonitorQRN(monitor);
    glGetPerfMonitorCounterDataQRN(monitor, kResult, sizeof result, &result, &written);
    EXPECT_EQ(result, 12345u);
    EXPECT_EQ(written, 4);
    glDeletePerfMonitorsQRN(1, &monitor);
    EXPECT_STREQ(takeMonitorCalls(), "gen 1\nselect 100 1 7 1: 2\nbegin 100\nend 100\ncounter data 100 0x8bc6 4\n"
                                     "delete 1: 100\n");
}

} // namespace
