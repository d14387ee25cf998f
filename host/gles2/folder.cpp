// SPDX-License-Identifier: MIT
#include "folder.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

int openFolder(const std::string &path, mode_t mode)
{
    int obstacle = 0; // the first: what lies below cannot be made either, for a lesser reason
    for (size_t at = path.find('/', 1);; at = path.find('/', at + 1)) {
        if (mkdir(path.substr(0, at).c_str(), mode) != 0 && errno != EEXIST && !obstacle) obstacle = errno;
        if (at == std::string::npos) break;
    }
    const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0 && errno == ENOENT && obstacle) errno = obstacle;
    return folder;
}

static bool writeAll(int file, const std::string &content)
{
    for (size_t done = 0; done < content.size();) {
        const ssize_t written = write(file, content.data() + done, content.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        done += static_cast<size_t>(written);
    }
    return true;
}

bool replaceFile(int folder, const std::string &name, const std::string &content, mode_t mode)
{
    static std::atomic<unsigned> count;
    const std::string temporary = "." + name + "." + std::to_string(getpid()) + "." + std::to_string(++count);
    unlinkat(folder, temporary.c_str(), 0); // of a process of that number that ended early
    const int file = openat(folder, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file < 0) return false;
    bool ok = writeAll(file, content);
    ok = close(file) == 0 && ok;
    ok = ok && renameat(folder, temporary.c_str(), folder, name.c_str()) == 0;
    if (ok) return true;
    const int reason = errno;
    unlinkat(folder, temporary.c_str(), 0);
    errno = reason;
    return false;
}

std::string readAll(int file, size_t size)
{
    std::string content(size, '\0');
    for (size_t done = 0; done < size;) {
        const ssize_t count = read(file, content.data() + done, size - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return {};
        done += static_cast<size_t>(count);
    }
    return content;
}
