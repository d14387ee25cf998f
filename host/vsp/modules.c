// SPDX-License-Identifier: MIT
// Modules: the dynamic linker's, with the directory of this library as the last place to look. A module from there that
// is loaded already comes first, as the dynamic linker has it with names.
#include "vsp.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// Opens `name` in the directory of this library's file, links followed; null when it is not there.
static void *openBesideThisLibrary(const char *name, int mode)
{
    Dl_info self;
    char file[PATH_MAX], path[PATH_MAX];
    if (!dladdr((void *)openBesideThisLibrary, &self) || !self.dli_fname || !realpath(self.dli_fname, file))
        return NULL;
    const char *lastSlash = strrchr(file, '/');
    int length = snprintf(path, sizeof path, "%.*s/%s", (int)(lastSlash - file), file, name);
    if (length < 0 || (size_t)length >= sizeof path) return NULL;
    return dlopen(path, mode);
}

// Local scope: a backend brings its own gl* names, and those must not answer for the application's.
void *os_lib_map(const char *name)
{
    const int mode = RTLD_NOW | RTLD_LOCAL;
    if (!name || !*name) return NULL; // dlopen would answer with the program itself
    if (strchr(name, '/')) return dlopen(name, mode);
    // The program may have opened a library of the machine's under the same name.
    void *module = openBesideThisLibrary(name, mode | RTLD_NOLOAD);
    if (!module) module = dlopen(name, mode);
    return module ? module : openBesideThisLibrary(name, mode);
}

void *os_lib_getaddr(void *module, const char *name)
{
    return module && name ? dlsym(module, name) : NULL; // a null handle would search the whole program
}

void os_lib_unmap(void *module)
{
    if (module) dlclose(module);
}
