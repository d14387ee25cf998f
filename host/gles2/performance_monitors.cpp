// SPDX-License-Identifier: MIT
// Performance monitors, over the driver's GL_AMD_performance_monitor: the same calls and parameter names.
#include "context.h"
#include "driver_abilities.h"

// Whether the driver has the extension is known with a context only, so the entry points are there without it too, and
// answer as the library does where a device lacks them.
static bool canMonitor()
{
    if (!currentContext) return false;
    if (driver.glGetPerfMonitorGroupsAMD && driverHas("GL_AMD_performance_monitor")) return true;
    raiseError(GL_INVALID_OPERATION);
    return false;
}

void GL_APIENTRY glGetPerfMonitorGroupsQRN(GLint *numGroups, GLsizei groupsSize, GLuint *groups)
{
    if (canMonitor()) driver.glGetPerfMonitorGroupsAMD(numGroups, groupsSize, groups);
}

void GL_APIENTRY glGetPerfMonitorCountersQRN(GLuint group, GLint *numCounters, GLint *maxActiveCounters,
                                             GLsizei countersSize, GLuint *counters)
{
    if (canMonitor()) driver.glGetPerfMonitorCountersAMD(group, numCounters, maxActiveCounters, countersSize, counters);
}

void GL_APIENTRY glGetPerfMonitorGroupStringQRN(GLuint group, GLsizei bufSize, GLsizei *length, char *groupString)
{
    if (canMonitor()) driver.glGetPerfMonitorGroupStringAMD(group, bufSize, length, groupString);
}

void GL_APIENTRY glGetPerfMonitorCounterStringQRN(GLuint group, GLuint counter, GLsizei bufSize, GLsizei *length,
                                                  char *counterString)
{
    if (canMonitor()) driver.glGetPerfMonitorCounterStringAMD(group, counter, bufSize, length, counterString);
}

void GL_APIENTRY glGetPerfMonitorCounterInfoQRN(GLuint group, GLuint counter, GLenum pname, void *data)
{
    if (canMonitor()) driver.glGetPerfMonitorCounterInfoAMD(group, counter, pname, data);
}

void GL_APIENTRY glGenPerfMonitorsQRN(GLsizei n, GLuint *monitors)
{
    if (canMonitor()) driver.glGenPerfMonitorsAMD(n, monitors);
}

void GL_APIENTRY glDeletePerfMonitorsQRN(GLsizei n, GLuint *monitors)
{
    if (canMonitor()) driver.glDeletePerfMonitorsAMD(n, monitors);
}

void GL_APIENTRY glSelectPerfMonitorCountersQRN(GLuint monitor, GLboolean enable, GLuint group, GLint numCounters,
                                                GLuint *counterList)
{
    if (canMonitor()) driver.glSelectPerfMonitorCountersAMD(monitor, enable, group, numCounters, counterList);
}

void GL_APIENTRY glBeginPerfMonitorQRN(GLuint monitor)
{
    if (canMonitor()) driver.glBeginPerfMonitorAMD(monitor);
}

void GL_APIENTRY glEndPerfMonitorQRN(GLuint monitor)
{
    if (canMonitor()) driver.glEndPerfMonitorAMD(monitor);
}

void GL_APIENTRY glGetPerfMonitorCounterDataQRN(GLuint monitor, GLenum pname, GLsizei dataSize, GLuint *data,
                                                GLint *bytesWritten)
{
    if (canMonitor()) driver.glGetPerfMonitorCounterDataAMD(monitor, pname, dataSize, data, bytesWritten);
}
