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
    for (size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1))
        mkdir(path.substr(0, at).c_str(), mode);
    mkdir(path.c_str(), mode); // what could not be made cannot be opened either
    return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
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
