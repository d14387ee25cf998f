// SPDX-License-Identifier: MIT
// Info logs of a program and its shaders, written to files once on request.
#pragma once

struct ShaderProgramEntry;

/// Asks for the logs of the next program that is bound, in any context.
void requestProgramLogs();

/// Writes the logs of a bound program when they were requested, and withdraws the request. A file that cannot be opened
/// is skipped.
void writeRequestedProgramLogs(const ShaderProgramEntry &entry);
