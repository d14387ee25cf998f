// SPDX-License-Identifier: MIT
#include "support/fake_platform.h"

#include <array>
#include <cstdlib>
#include <cstring>

namespace {

constexpr uint32_t kSlots = 64;
thread_local std::array<void *, kSlots> slotValues;
uint32_t slotsUsed = 0;

bool allocationFails()
{
    FakePlatform &platform = fakePlatform();
    ++platform.allocations;
    if (platform.allocationsUntilFailure < 0) return false;
    return platform.allocationsUntilFailure-- == 0;
}

} // namespace

FakePlatform &fakePlatform()
{
    static FakePlatform platform;
    return platform;
}

void resetFakePlatform()
{
    const size_t liveBlocks = fakePlatform().liveBlocks;
    fakePlatform() = FakePlatform{};
    fakePlatform().liveBlocks = liveBlocks;
    slotValues.fill(nullptr);
}

extern "C" {

void *os_malloc(size_t size)
{
    if (allocationFails()) return nullptr;
    void *block = std::malloc(size);
    if (!block) return nullptr;
    std::memset(block, 0xA5, size); // nothing may rely on fresh memory being zero
    ++fakePlatform().liveBlocks;
    return block;
}

void *os_realloc(void *block, size_t size)
{
    if (allocationFails()) return nullptr;
    if (!block) ++fakePlatform().liveBlocks;
    return std::realloc(block, size);
}

void os_free(void *block)
{
    if (!block) return;
    --fakePlatform().liveBlocks;
    std::free(block);
}

void *os_memcpy(void *to, const void *from, size_t size)
{
    return std::memcpy(to, from, size);
}

void *os_memset(void *to, int value, size_t size)
{
    return std::memset(to, value, size);
}

size_t os_strlen(const char *s)
{
    return std::strlen(s);
}

char *os_strcpy(char *to, const char *from)
{
    return std::strcpy(to, from);
}

int os_strcmp(const char *a, const char *b)
{
    return std::strcmp(a, b);
}

uint32_t os_tls_alloc(void)
{
    return slotsUsed + 1 < kSlots ? ++slotsUsed : 0;
}

void *os_tls_read(uint32_t slot)
{
    return slot < kSlots ? slotValues[slot] : nullptr;
}

void os_tls_write(uint32_t slot, void *value)
{
    if (slot != 0 && slot < kSlots) slotValues[slot] = value;
}

void *os_lib_map(const char *name)
{
    FakePlatform &platform = fakePlatform();
    platform.mapped.emplace_back(name);
    const auto found = platform.modules.find(name);
    return found == platform.modules.end() ? nullptr : found->second;
}

void *os_lib_getaddr(void *module, const char *name)
{
    FakePlatform &platform = fakePlatform();
    platform.lookups.emplace_back(name);
    return module && platform.getaddr ? platform.getaddr(module, name) : nullptr;
}

void os_lib_unmap(void *module)
{
    fakePlatform().unmapped.push_back(module);
}

void os_assert_hook(int condition, const char *what)
{
    if (!condition) fakePlatform().assertions.emplace_back(what);
}

} // extern "C"
