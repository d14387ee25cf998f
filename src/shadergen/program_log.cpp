// SPDX-License-Identifier: MIT
#include "shadergen/program_log.h"

#include "frontend/backend.h"
#include "shadergen/program_cache.h"
#include "vsp.h"

#include <cstdio>

namespace {

constexpr GLint kLogBufferStep = 0x100000; // bytes; one step per log that does not fit, whatever its length

bool logsRequested = false;
char *logBuffer = nullptr;
GLint logBufferSize = 0; // bytes

// Room for a log of the given length, as far as one step gives it. The old content is not kept.
void growLogBuffer(GLint length)
{
    if (length <= logBufferSize) return;
    os_free(logBuffer);
    logBuffer = static_cast<char *>(os_malloc(static_cast<size_t>(logBufferSize) + kLogBufferStep));
    logBufferSize = logBuffer ? logBufferSize + kLogBufferStep : 0;
}

// The backend may leave the buffer alone when it has no log.
void emptyLogBuffer()
{
    if (logBuffer) logBuffer[0] = '\0';
}

void writeLog(const char *path)
{
    std::FILE *file = std::fopen(path, "w");
    if (!file) return;
    if (logBuffer) std::fputs(logBuffer, file);
    std::fclose(file);
}

void writeProgramLog(GLuint program, const char *path)
{
    GLint length = 0;
    glGetProgramiv_2_0(program, GL_INFO_LOG_LENGTH, &length);
    growLogBuffer(length);
    emptyLogBuffer();
    glGetProgramInfoLog_2_0(program, logBufferSize, nullptr, logBuffer);
    writeLog(path);
}

void writeShaderLog(GLuint shader, const char *path)
{
    GLint length = 0;
    glGetShaderiv_2_0(shader, GL_INFO_LOG_LENGTH, &length);
    growLogBuffer(length);
    emptyLogBuffer();
    glGetShaderInfoLog_2_0(shader, logBufferSize, nullptr, logBuffer);
    writeLog(path);
}

} // namespace

void requestProgramLogs()
{
    logsRequested = true;
}

void writeRequestedProgramLogs(const ShaderProgramEntry &entry)
{
    if (!logsRequested) return;
    logsRequested = false;
    writeProgramLog(entry.program, "c:\\temp\\sp_log.txt");
    writeShaderLog(entry.fragmentShader, "c:\\temp\\fs_log.txt");
    writeShaderLog(entry.vertexShader, "c:\\temp\\vs_log.txt");
}
