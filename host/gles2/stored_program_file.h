// SPDX-License-Identifier: MIT
// The content of a file that holds one linked program of the driver. Nothing here trusts what is read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A linked program as the driver gave it.
struct ProgramBinary {
    uint32_t format; // the driver's name of it
    std::string bytes;
};

/// The file's content: a head, the key, the bytes, and a checksum over all of them.
std::string encodeProgramFile(std::string_view key, const ProgramBinary &binary);

/// Takes the program out of a file's content. False, with `binary` untouched, unless the content is whole, undamaged,
/// of this version and of exactly this key.
bool decodeProgramFile(std::string_view content, std::string_view key, ProgramBinary &binary);

/// The name of the file for a key: different keys may have the same one.
std::string programFileName(std::string_view key);

/// True for a name that programFileName can give.
bool isProgramFileName(std::string_view name);
