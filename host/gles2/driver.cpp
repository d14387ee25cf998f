// SPDX-License-Identifier: MIT
#include "driver.h"

#include "../library_folders.h"
#include "driver_limit.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <mutex>
#include <string>
#include <vector>

constinit Driver driver{};
constinit MachineEgl machineEgl{};

static std::string folderOf(const char *path)
{
    char resolved[PATH_MAX];
    std::string file = realpath(path, resolved) ? resolved : path;
    const size_t slash = file.rfind('/');
    return slash == std::string::npos ? "." : file.substr(0, slash);
}

static std::string ownFolder()
{
    Dl_info self{};
    if (!dladdr(reinterpret_cast<void *>(&loadDriver), &self) || !self.dli_fname) return {};
    return folderOf(self.dli_fname);
}

// This library or another build of it, which has no functions of its own: their calls would come back to it for ever.
static bool isBackend(void *module)
{
    return dlsym(module, "ogl2GetClientAPIFunctions");
}

// Opens one of the machine's libraries: the file the variable names, or the first in the standard folders that is not
// one of this project's. `tried` receives what was tried, up to the one that was opened.
static void *openMachineLibrary(const char *variable, const char *file, std::string &tried)
{
    std::vector<std::string> paths;
    const char *named = secure_getenv(variable);
    if (named && *named)
        paths.push_back(named);
    else {
        for (const char *folder : kLibraryFolders)
            paths.push_back(std::string(folder) + "/" + file);
    }
    const std::string own = ownFolder();
    for (const std::string &path : paths) {
        if (!(named && *named) && folderOf(path.c_str()) == own) continue;
        tried += (tried.empty() ? "" : ", ") + path;
        void *module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (module && !isBackend(module)) return module;
        if (module) dlclose(module);
    }
    return nullptr;
}

template <typename Function>
static void find(void *module, const char *name, Function &function)
{
    void *address = dlsym(module, name);
    if (!address && machineEgl.eglGetProcAddress)
        address = reinterpret_cast<void *>(machineEgl.eglGetProcAddress(name));
    function = reinterpret_cast<Function>(address);
}

static bool bindEgl(void *module)
{
    bool complete = true;
#define MACHINE_EGL(name)                                                                                              \
    find(module, #name, machineEgl.name);                                                                              \
    complete = complete && machineEgl.name;
#include "machine_egl.def"
    return complete;
}

static void addMissing(bool found, bool core, const char *name, std::string &missing)
{
    if (core && !found) missing += (missing.empty() ? "" : ", ") + std::string(name);
}

// Returns the names of missing core functions, empty when there are none.
static std::string bindDriver(void *module)
{
    constexpr bool CORE = true;
    constexpr bool OPTIONAL = false;
    std::string missing;
#define WRAPPED(name, result, parameters, need)                                                                        \
    find(module, #name, driver.name);                                                                                  \
    addMissing(driver.name, need, #name, missing);
#define FORWARDED(name, result, parameters, arguments, need) WRAPPED(name, result, parameters, need)
#define DRIVER_ONLY(name, result, parameters, need) WRAPPED(name, result, parameters, need)
#include "driver_functions.def"
    return missing;
}

// Optional entry points that are not in plain OpenGL ES 2.0; those for EGL images stay.
static void applyLimit()
{
    if (driverLimit() != DriverLimit::Es2) return;
    driver.glFramebufferTexture3DOES = nullptr;
    driver.glGetTexLevelParameteriv = nullptr;
    driver.glGetBufferPointervOES = nullptr;
}

static bool loadOnce()
{
    std::string tried;
    void *egl = openMachineLibrary("TRL20_DRIVER_EGL", "libEGL.so.1", tried);
    if (!egl || !bindEgl(egl)) {
        fprintf(stderr, "trl20: no usable EGL on this machine (tried %s); TRL20_DRIVER_EGL can name one\n",
                tried.c_str());
        return false;
    }
    tried.clear();
    void *gles2 = openMachineLibrary("TRL20_DRIVER_GLES2", "libGLESv2.so.2", tried);
    if (!gles2) {
        fprintf(stderr, "trl20: no OpenGL ES 2.0 driver on this machine (tried %s); TRL20_DRIVER_GLES2 can name one\n",
                tried.c_str());
        return false;
    }
    const std::string missing = bindDriver(gles2);
    if (!missing.empty()) fprintf(stderr, "trl20: the OpenGL ES 2.0 driver lacks %s\n", missing.c_str());
    applyLimit();
    return missing.empty();
}

bool loadDriver()
{
    static std::once_flag once;
    static bool loaded;
    std::call_once(once, [] { loaded = loadOnce(); });
    return loaded;
}

bool hasExtension(const char *extensions, const char *name)
{
    const size_t length = strlen(name);
    for (const char *at = extensions; at && (at = strstr(at, name)); at += length) {
        const bool starts = at == extensions || at[-1] == ' ';
        if (starts && (at[length] == ' ' || at[length] == '\0')) return true;
    }
    return false;
}
