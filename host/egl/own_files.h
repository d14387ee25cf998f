// SPDX-License-Identifier: MIT
// Where this library lies: the other libraries of a build lie beside it.
#pragma once

#include <string>

/// The path this library was loaded from, made absolute; empty when it cannot be told.
std::string ownPath();

/// The folder part of a path, without the last slash; "." for a bare name.
std::string folderOf(const std::string &path);
