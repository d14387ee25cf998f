// SPDX-License-Identifier: MIT
// The platform support library, libvsp.so: memory, strings, thread-local slots, modules, assertions.
// The library reaches the platform through these functions only. host/vsp implements them for Linux; a device brings
// its own.
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Memory, as malloc, realloc and free do it: null when there is none; os_realloc(null, n) allocates; os_free(null) is
/// allowed.
void *os_malloc(size_t size);
void *os_realloc(void *block, size_t size);
void os_free(void *block);

/// As memcpy and memset; both return `to`. The blocks must not overlap.
void *os_memcpy(void *to, const void *from, size_t size);
void *os_memset(void *to, int value, size_t size);

/// As strlen, strcpy and strcmp.
size_t os_strlen(const char *s);
char *os_strcpy(char *to, const char *from);
int os_strcmp(const char *a, const char *b);

/// A new thread-local slot, holding null on every thread. Returns its number, never 0; 0 when no slot is left.
uint32_t os_tls_alloc(void);
/// The calling thread's value of a slot; null for slot 0, for a number never handed out and before the first write.
void *os_tls_read(uint32_t slot);
/// Sets the calling thread's value of a slot. Slot 0 and unknown slots are ignored.
void os_tls_write(uint32_t slot, void *value);

/// Loads a module by name and returns its handle; null when it cannot be loaded.
void *os_lib_map(const char *name);
/// The address of a symbol that the module itself or one it needs defines; null when there is none or module is null.
void *os_lib_getaddr(void *module, const char *name);
/// Releases a handle of os_lib_map. Null is ignored.
void os_lib_unmap(void *module);

/// Reports a failed assertion: condition 0 means that it failed, and `what` names what was expected. Returns.
void os_assert_hook(int condition, const char *what);

#ifdef __cplusplus
}
#endif
