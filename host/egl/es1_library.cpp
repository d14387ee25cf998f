// SPDX-License-Identifier: MIT
#include "es1_library.h"

#include "own_files.h"

#include <vsp.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <mutex>
#include <string>

namespace {

constexpr const char *kLibraryName = "libGLESv1_CM_trl20.so";

constinit std::mutex loadMutex;
constinit std::atomic<void *> library = nullptr;
constinit std::atomic<bool> tableReady = false;
constinit bool libraryTried = false;
constinit bool tableFailureTold = false;
constinit ClientAPIFunctions table = {};
constinit uint32_t currentSlot = 0; // written before tableReady

// The path to open, and the name to leave to the dynamic linker after that; null: none.
struct LibraryFile {
    std::string path;
    const char *fallback;
};

LibraryFile libraryFile()
{
    const char *named = secure_getenv("TRL20_GLES1_LIBRARY");
    if (named && *named) return {named, nullptr};
    return {folderOf(ownPath()) + "/" + kLibraryName, kLibraryName};
}

// The library maps its backend by the bare name libGLESv2.so, and a development link of that name may lie in the
// default search path. What is loaded already under that soname is found first.
void loadBackendBeside(const std::string &path)
{
    dlopen((folderOf(path) + "/libGLESv2.so").c_str(), RTLD_NOW | RTLD_LOCAL);
}

void *loadLibrary()
{
    if (void *loaded = library.load(std::memory_order_acquire)) return loaded;
    const std::lock_guard lock(loadMutex);
    if (libraryTried) return library.load(std::memory_order_relaxed);

    libraryTried = true;
    const LibraryFile file = libraryFile();
    void *module = dlopen(file.path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const std::string reason = module ? "" : dlerror();
    if (!module && file.fallback) module = dlopen(file.fallback, RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        fprintf(stderr, "trl20: cannot load the OpenGL ES 1.1 library: %s\n", reason.c_str());
        return nullptr;
    }
    loadBackendBeside(file.path);
    library.store(module, std::memory_order_release);
    return module;
}

bool bindTable(void *module)
{
    const std::lock_guard lock(loadMutex);
    if (tableReady.load(std::memory_order_relaxed)) return true;

    using FillTable = void (*)(void *);
    const auto fillTable = reinterpret_cast<FillTable>(dlsym(module, "oglGetClientAPIFunctions"));
    if (fillTable) fillTable(&table);
    if (currentSlot == 0) currentSlot = os_tls_alloc();
    // The library leaves the table as it was when it cannot bind its backend.
    if (!table.createContext || currentSlot == 0) {
        if (!tableFailureTold) fprintf(stderr, "trl20: the OpenGL ES 1.1 library could not bind its ES 2.0 backend\n");
        tableFailureTold = true;
        return false;
    }
    tableReady.store(true, std::memory_order_release);
    return true;
}

} // namespace

const ClientAPIFunctions *es1Table()
{
    if (tableReady.load(std::memory_order_acquire)) return &table;
    void *module = loadLibrary();
    return module && bindTable(module) ? &table : nullptr;
}

void *es1Symbol(const char *name)
{
    void *module = loadLibrary();
    return module ? dlsym(module, name) : nullptr;
}

uint32_t es1CurrentSlot()
{
    return currentSlot;
}
