// SPDX-License-Identifier: MIT
#include "own_files.h"

#include <cstdlib>
#include <dlfcn.h>

std::string ownPath()
{
    Dl_info info = {};
    if (!dladdr(reinterpret_cast<void *>(&ownPath), &info) || !info.dli_fname) return {};
    // Links are followed: the other libraries lie beside the file that was built, not beside a link to it.
    char *resolved = realpath(info.dli_fname, nullptr);
    std::string path = resolved ? resolved : info.dli_fname;
    free(resolved);
    return path;
}

std::string folderOf(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}
