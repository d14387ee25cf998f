// SPDX-License-Identifier: MIT
// Thread-local slots: one small array per thread, so that a read is an index and a load.
#include "vsp.h"

#include <stdatomic.h>

// Slots 1 to 63 can be handed out; the process uses two or three. The array lies in the static TLS block also when this
// library is loaded late, and the room kept there for late libraries is under 2 KiB for all of them together.
enum { SLOT_COUNT = 64 };

// The initial-exec model reads the thread pointer directly; the default one for a shared library calls a function.
static _Thread_local void *slotValues[SLOT_COUNT] __attribute__((tls_model("initial-exec")));

static atomic_uint lastSlot; // highest number handed out; 0 = none yet

uint32_t os_tls_alloc(void)
{
    unsigned last = atomic_load_explicit(&lastSlot, memory_order_relaxed);
    do {
        if (last >= SLOT_COUNT - 1) return 0;
    } while (!atomic_compare_exchange_weak(&lastSlot, &last, last + 1));
    return last + 1;
}

// Slot 0 and slots not handed out are never written, so reading them needs no test of their own: they hold null.
void *os_tls_read(uint32_t slot)
{
    if (__builtin_expect(slot >= SLOT_COUNT, 0)) return NULL;
    return slotValues[slot];
}

void os_tls_write(uint32_t slot, void *value)
{
    if (slot == 0 || slot > atomic_load_explicit(&lastSlot, memory_order_relaxed)) return;
    slotValues[slot] = value;
}
