// SPDX-License-Identifier: MIT
// Failed assertions: told once per distinct text, then the program goes on. VSP_ASSERT=abort stops it instead, and
// VSP_ASSERT=quiet tells nothing.
#include "vsp.h"

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// Texts already told. Assertions sit in draw calls, where one fault would otherwise fill the terminal.
struct ToldText {
    struct ToldText *next;
    char text[];
};

static struct ToldText *toldTexts;
static pthread_mutex_t toldLock = PTHREAD_MUTEX_INITIALIZER;

// Records a text. Returns 1 for a new one; without memory every text counts as new.
static int isFirstTelling(const char *text)
{
    for (const struct ToldText *told = toldTexts; told; told = told->next) {
        if (strcmp(told->text, text) == 0) return 0;
    }
    size_t size = strlen(text) + 1;
    struct ToldText *told = malloc(sizeof *told + size);
    if (told) {
        memcpy(told->text, text, size);
        told->next = toldTexts;
        toldTexts = told;
    }
    return 1;
}

void os_assert_hook(int condition, const char *what)
{
    if (condition) return;
    const char *text = what ? what : "(no text)";
    const char *mode = getenv("VSP_ASSERT");
    if (mode && strcmp(mode, "quiet") == 0) return;

    pthread_mutex_lock(&toldLock);
    if (isFirstTelling(text)) fprintf(stderr, "trl20: assertion failed: %s\n", text);
    pthread_mutex_unlock(&toldLock);
    if (mode && strcmp(mode, "abort") == 0) abort();
}
