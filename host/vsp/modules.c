// SPDX-License-Identifier: MIT
// Modules: the dynamic linker's, with the directory of this library as the last place to look.
#include "vsp.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdio.h>
#include <string.h>

// Opens `name` in the directory this library was loaded from; null when it is not there.
static void *openBesideThisLibrary(const char *name)
{
    Dl_info self;
    if (!dladdr((void *)openBesideThisLibrary, &self) || !self.dli_fname) return NULL;
    const char *lastSlash = strrchr(self.dli_fname, '/');
    if (!lastSlash) return NULL;

    char path[PATH_MAX];
    int length = snprintf(path, sizeof path, "%.*s/%s", (int)(lastSlash - self.dli_fname), self.dli_fname, name);
    if (length < 0 || (size_t)length >= sizeof path) return NULL;
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

// Local scope: a backend brings its own gl* names, and those must not answer for the application's.
void *os_lib_map(const char *name)
{
    if (!name || !*name) return NULL; // dlopen would answer with the program itself
    void *module = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (!module && !strchr(name, '/')) module = openBesideThisLibrary(name);
    return module;
}

void *os_lib_getaddr(void *module, const char *name)
{
    return module && name ? dlsym(module, name) : NULL; // a null handle would search the whole program
}

void os_lib_unmap(void *module)
{
    if (module) dlclose(module);
}
