// SPDX-License-Identifier: MIT
// All GL entry points that the library exports, with calls that give them harmless arguments.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct EntryPoint {
    std::string name;
    // Every number is `number`, every pointer points to 256 KiB of zeros, shared by all arguments and all calls.
    std::function<void(uint32_t number)> call;
};

/// The exported entry points of OpenGL ES, its extensions and the vendor's, in the order of the export list.
const std::vector<EntryPoint> &exportedEntryPoints();
