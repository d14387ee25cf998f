// SPDX-License-Identifier: MIT
// The machine's driver with performance monitors added, which the machine's own lacks: one group, 7, with counters 1
// and 2. The backend is pointed at it with TRL20_DRIVER_GLES2; whatever is not here it asks the machine's EGL for.
#include "monitor_driver.h"

#include "host/gles2/gl_api.h"

#include <EGL/egl.h>
#include <cstdarg>
#include <cstdio>
#include <string>

static std::string calls;

[[gnu::format(printf, 1, 2)]] static void note(const char *format, ...)
{
    char line[200];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    calls += std::string(line) + "\n";
}

const char *takeMonitorCalls(void)
{
    static std::string taken;
    taken.swap(calls);
    calls.clear();
    return taken.c_str();
}

const GLubyte *GL_APIENTRY glGetString(GLenum name)
{
    const auto machines = reinterpret_cast<decltype(&glGetString)>(eglGetProcAddress("glGetString"));
    const GLubyte *answer = machines(name);
    if (name != GL_EXTENSIONS || !answer) return answer;
    static std::string extensions;
    extensions = "GL_AMD_performance_monitor " + std::string(reinterpret_cast<const char *>(answer));
    return reinterpret_cast<const GLubyte *>(extensions.c_str());
}

void GL_APIENTRY glGetPerfMonitorGroupsAMD(GLint *count, GLsizei size, GLuint *groups)
{
    note("groups %d", size);
    *count = 1;
    if (size > 0) groups[0] = 7;
}

void GL_APIENTRY glGetPerfMonitorCountersAMD(GLuint group, GLint *count, GLint *active, GLsizei size, GLuint *counters)
{
    note("counters %u %d", group, size);
    *count = 2;
    *active = 1;
    for (GLuint i = 0; i < 2 && i < static_cast<GLuint>(size); ++i)
        counters[i] = i + 1;
}

void GL_APIENTRY glGetPerfMonitorGroupStringAMD(GLuint group, GLsizei size, GLsizei *length, GLchar *text)
{
    note("group string %u %d", group, size);
    *length = snprintf(text, static_cast<size_t>(size), "pixels");
}

void GL_APIENTRY glGetPerfMonitorCounterStringAMD(GLuint group, GLuint counter, GLsizei size, GLsizei *length,
                                                  GLchar *text)
{
    note("counter string %u %u %d", group, counter, size);
    *length = snprintf(text, static_cast<size_t>(size), "written");
}

void GL_APIENTRY glGetPerfMonitorCounterInfoAMD(GLuint group, GLuint counter, GLenum pname, void *data)
{
    note("counter info %u %u 0x%x", group, counter, pname);
    *static_cast<GLenum *>(data) = GL_UNSIGNED_INT;
}

void GL_APIENTRY glGenPerfMonitorsAMD(GLsizei n, GLuint *monitors)
{
    note("gen %d", n);
    for (GLsizei i = 0; i < n; ++i)
        monitors[i] = 100u + static_cast<GLuint>(i);
}

void GL_APIENTRY glDeletePerfMonitorsAMD(GLsizei n, GLuint *monitors)
{
    note("delete %d: %u", n, monitors[0]);
}

void GL_APIENTRY glSelectPerfMonitorCountersAMD(GLuint monitor, GLboolean enable, GLuint group, GLint count,
                                                GLuint *counters)
{
    note("select %u %d %u %d: %u", monitor, enable, group, count, counters[0]);
}

void GL_APIENTRY glBeginPerfMonitorAMD(GLuint monitor)
{
    note("begin %u", monitor);
}

void GL_APIENTRY glEndPerfMonitorAMD(GLuint monitor)
{
    note("end %u", monitor);
}

void GL_APIENTRY glGetPerfMonitorCounterDataAMD(GLuint monitor, GLenum pname, GLsizei size, GLuint *out, GLint *written)
{
    note("counter data %u 0x%x %d", monitor, pname, size);
    out[0] = 12345;
    *written = 4;
}
