// SPDX-License-Identifier: MIT
// Reads what callgrind writes: instructions by the file that holds the code.
#pragma once

#include <iosfwd>
#include <map>
#include <string>

/// Instructions of each program or library, by its path, without those of what it calls. Code that belongs to no file,
/// such as the driver's jump table, is under "???".
std::map<std::string, double> instructionsByFile(std::istream &profile);
