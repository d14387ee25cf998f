// SPDX-License-Identifier: MIT
// A fresh current directory for tests of code that reads and writes files there.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <stdlib.h>

/// An empty temporary directory that is the current one while this lives, and is removed with it.
struct WorkingDirectory {
    WorkingDirectory() : before(std::filesystem::current_path())
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "trl20_test.XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary directory");
        path = pattern;
        std::filesystem::current_path(path);
    }
    ~WorkingDirectory()
    {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(path);
    }
    WorkingDirectory(const WorkingDirectory &) = delete;
    WorkingDirectory &operator=(const WorkingDirectory &) = delete;

    std::filesystem::path before;
    std::filesystem::path path;
};

inline void writeFile(const std::string &name, const std::string &text)
{
    std::ofstream(name, std::ios::binary) << text;
}

/// The whole file; empty when there is none.
inline std::string readFile(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
