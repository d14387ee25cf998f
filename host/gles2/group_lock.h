// SPDX-License-Identifier: MIT
// The lock of a share group. It is taken at every change of programs, nearly always by the only thread there is.
#pragma once

#include <atomic>

/// A mutex whose two operations are one atomic instruction each while no thread has to wait.
struct GroupLock {
    enum : int { FREE, HELD, AWAITED };
    std::atomic<int> state; // AWAITED: held, and a thread may be waiting for it

    void lock()
    {
        int expected = FREE;
        if (!state.compare_exchange_strong(expected, HELD, std::memory_order_acquire)) [[unlikely]]
            await();
    }

    void unlock()
    {
        if (state.exchange(FREE, std::memory_order_release) == AWAITED) [[unlikely]]
            state.notify_one();
    }

    // Whoever has waited holds the lock as an awaited one, since others may still be waiting.
    [[gnu::noinline]] void await()
    {
        while (state.exchange(AWAITED, std::memory_order_acquire) != FREE)
            state.wait(AWAITED, std::memory_order_relaxed);
    }
};
