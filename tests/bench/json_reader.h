// SPDX-License-Identifier: MIT
// Just enough JSON to say whether a text is JSON, and to find a value in it.
#pragma once

#include <map>
#include <string>

/// Every number, string, true, false and null of a text, by its path: "scenes[0].native.wall_ns".
using JsonValues = std::map<std::string, std::string>;

/// Reads a whole text. Returns false where it is not JSON.
bool readJson(const std::string &text, JsonValues &values);
