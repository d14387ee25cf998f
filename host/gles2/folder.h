// SPDX-License-Identifier: MIT
// Files in a folder that the user named, written whole or not at all.
#pragma once

#include <string>
#include <sys/types.h>

/// Makes the folder where it is missing, folders above it too, and opens it. `mode` is that of folders made here.
/// Returns its descriptor, -1 otherwise: errno then tells why it could not be made, or opened.
int openFolder(const std::string &path, mode_t mode);

/// Writes a file of the folder under a name of its own and then gives it the name, so that readers never see half a
/// file and a link of that name is replaced, not followed. `mode` is the new file's. Returns false with errno set.
bool replaceFile(int folder, const std::string &name, const std::string &content, mode_t mode);

/// The next `size` bytes of a file; empty when there are fewer, or they cannot be read.
std::string readAll(int file, size_t size);
