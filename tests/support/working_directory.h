// SPDX-License-Identifier: MIT
// Fresh folders for tests of code that reads and writes files.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <stdlib.h>

/// An empty folder that goes with its owner.
struct TemporaryFolder {
    TemporaryFolder()
    {
        constexpr size_t kReplaced = 6; // letters X at the end, by mkdtemp
        std::string pattern = (std::filesystem::temp_directory_path() / "trl20_test.").string();
        pattern.append(kReplaced, 'X');
        if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
        path = pattern;
    }
    ~TemporaryFolder()
    {
        std::filesystem::remove_all(path);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    std::filesystem::path path;
};

/// An empty folder that is the current one while this lives.
struct WorkingDirectory {
    WorkingDirectory() : before(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder.path);
    }
    ~WorkingDirectory()
    {
        std::filesystem::current_path(before);
    }
    WorkingDirectory(const WorkingDirectory &) = delete;
    WorkingDirectory &operator=(const WorkingDirectory &) = delete;

    TemporaryFolder folder;
    std::filesystem::path before;
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
