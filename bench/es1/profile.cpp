// SPDX-License-Identifier: MIT
#include "es1/profile.h"

#include <cctype>
#include <cstdlib>
#include <istream>

// A name is written as "(number) path" where it comes first and as "(number)" from then on.
static std::string unabbreviated(const std::string &name, std::map<std::string, std::string> &known)
{
    const size_t end = name.find(')');
    if (end == std::string::npos) return name;
    std::string &path = known[name.substr(0, end)];
    if (end + 2 < name.size()) path = name.substr(end + 2);
    return path;
}

std::map<std::string, double> instructionsByFile(std::istream &profile)
{
    std::map<std::string, double> instructions;
    std::map<std::string, std::string> known;
    std::string current;
    bool called = false; // the next cost is that of a call, counted where it is spent
    for (std::string line; std::getline(profile, line);) {
        const bool calledObject = line.starts_with("cob=");
        if (calledObject || line.starts_with("ob=")) {
            const std::string path = unabbreviated(line.substr(line.find('=') + 1), known);
            if (!calledObject) current = path;
        } else if (line.starts_with("calls=")) {
            called = true;
        } else if (!line.empty() && (std::isdigit(static_cast<unsigned char>(line[0])) || line[0] == '+' ||
                                     line[0] == '-' || line[0] == '*')) {
            // A place in the source, absolute or from the last one, and the cost.
            if (!called) instructions[current] += std::strtod(line.c_str() + line.find(' '), nullptr);
            called = false;
        }
    }
    return instructions;
}
