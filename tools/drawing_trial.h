// SPDX-License-Identifier: MIT
// Draws through the installed libraries as a program would: the proof that nothing is missing.
#pragma once

#include <string>

/// Draws a triangle through the drop-in pair in this folder and looks at the result. Returns what went wrong; empty:
/// all is well.
std::string tryDrawing(const std::string &folder);
