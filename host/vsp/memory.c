// SPDX-License-Identifier: MIT
// Memory and strings: the C library's, under the platform interface's names.
#include "vsp.h"

#include <stdlib.h>
#include <string.h>

void *os_malloc(size_t size)
{
    return malloc(size);
}

void *os_realloc(void *block, size_t size)
{
    return realloc(block, size);
}

void os_free(void *block)
{
    free(block);
}

void *os_memcpy(void *to, const void *from, size_t size)
{
    return memcpy(to, from, size);
}

void *os_memset(void *to, int value, size_t size)
{
    return memset(to, value, size);
}

size_t os_strlen(const char *s)
{
    return strlen(s);
}

char *os_strcpy(char *to, const char *from)
{
    return strcpy(to, from);
}

int os_strcmp(const char *a, const char *b)
{
    return strcmp(a, b);
}
