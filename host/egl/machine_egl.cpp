// SPDX-License-Identifier: MIT
// The machine's EGL is opened by absolute path. The dynamic linker tells libraries opened by path apart by device and
// inode, so a second libEGL.so.1 loads beside this one.
#include "machine_egl.h"

#include "own_files.h"

#include "host/library_folders.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constinit std::mutex loadMutex;
constinit std::atomic<bool> loadDone = false;
constinit MachineEgl machine = {};

bool isThisFile(const std::string &path)
{
    struct stat candidate, own;
    return stat(path.c_str(), &candidate) == 0 && stat(ownPath().c_str(), &own) == 0 &&
           candidate.st_dev == own.st_dev && candidate.st_ino == own.st_ino;
}

void *openCandidate(const std::string &path)
{
    void *module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) return nullptr;
    // Another build of this library would look for the machine's EGL in its turn, and could find this one: only a
    // drop-in of ours needs libvsp.so.
    const bool usable = dlsym(module, "eglGetProcAddress") && !dlsym(module, "os_tls_alloc");
    if (usable) return module;
    dlclose(module);
    return nullptr;
}

void *openMachineEgl()
{
    if (const char *named = secure_getenv("TRL20_DRIVER_EGL"); named && *named) {
        void *module = isThisFile(named) ? nullptr : openCandidate(named);
        if (!module) fprintf(stderr, "trl20: TRL20_DRIVER_EGL names %s, which is no EGL of this machine\n", named);
        return module;
    }
    for (const char *directory : kLibraryFolders) {
        const std::string path = std::string(directory) + "/libEGL.so.1";
        if (access(path.c_str(), R_OK) != 0 || isThisFile(path)) continue;
        if (void *module = openCandidate(path)) return module;
    }
    fprintf(stderr, "trl20: no libEGL.so.1 of this machine found in the standard library directories; "
                    "TRL20_DRIVER_EGL can name one\n");
    return nullptr;
}

// A function that is not exported is asked for by name: EGL 1.5 lets both ways exist.
template <typename Function>
void lookUp(void *module, Function &function, const char *name)
{
    function = reinterpret_cast<Function>(dlsym(module, name));
    if (!function && machine.eglGetProcAddress) function = reinterpret_cast<Function>(machine.eglGetProcAddress(name));
}

void loadMachineEgl()
{
    const std::lock_guard lock(loadMutex);
    if (loadDone.load(std::memory_order_relaxed)) return;

    if (void *module = openMachineEgl()) {
        lookUp(module, machine.eglGetProcAddress, "eglGetProcAddress");
// A row becomes: lookUp(module, machine.eglBindAPI, "eglBindAPI");
#define EGL_PASS(name, result, arguments, call, failure) lookUp(module, machine.name, #name);
#define EGL_OWN(name) lookUp(module, machine.name, #name);
#include "egl_functions.def"
    }
    loadDone.store(true, std::memory_order_release);
}

} // namespace

const MachineEgl &machineEgl()
{
    if (!loadDone.load(std::memory_order_acquire)) loadMachineEgl();
    return machine;
}

bool machineEglFound()
{
    return machineEgl().eglGetProcAddress != nullptr;
}

EGLint machineDisplayError(EGLDisplay dpy)
{
    // Of all that can be asked of a display, its version alone is also answered without one.
    return machine.eglQueryString(dpy, EGL_CLIENT_APIS) ? EGL_SUCCESS : machine.eglGetError();
}
