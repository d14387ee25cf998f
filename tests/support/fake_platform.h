// SPDX-License-Identifier: MIT
// The platform support library as the tests need it: assertions are recorded, any allocation can be made to fail, and
// modules are tables of names. It replaces libvsp.so in programs that link the library's objects.
#pragma once

#include "vsp.h"

#include <map>
#include <string>
#include <vector>

struct FakePlatform {
    std::vector<std::string> assertions;   // texts of failed assertions, in order
    int allocationsUntilFailure = -1;      // the call of os_malloc/os_realloc that fails, counted from 0; -1 = none
    size_t allocations = 0;                // os_malloc and growing os_realloc calls so far
    size_t liveBlocks = 0;                 // allocated and not yet freed
    std::map<std::string, void *> modules; // os_lib_map answers: module name to handle
    void *(*getaddr)(void *module, const char *name) = nullptr; // os_lib_getaddr answers
    std::vector<std::string> mapped;                            // names given to os_lib_map, in order
    std::vector<void *> unmapped;                               // handles given to os_lib_unmap, in order
    std::vector<std::string> lookups;                           // names given to os_lib_getaddr, in order
};

/// The one fake platform of the process.
FakePlatform &fakePlatform();

/// Forgets everything recorded and all answers. Thread-local slots stay allocated, their values are cleared on the
/// calling thread.
void resetFakePlatform();
