// SPDX-License-Identifier: MIT
// The lock of a share group under threads, without a driver.
#include "host/gles2/group_lock.h"

#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

namespace {

TEST(GroupLock, LetsOneThreadInAtATime)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 50000;
    GroupLock lock{};
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                const std::lock_guard guard(lock);
                const int before = count;
                if (round % 64 == 0) std::this_thread::yield(); // so that the others come to wait
                count = before + 1;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(count, kThreads * kRounds);
    EXPECT_EQ(lock.state, GroupLock::FREE);
}

TEST(GroupLock, AThreadThatWaitsIsLetInAtTheUnlock)
{
    GroupLock lock{};
    bool entered = false;
    lock.lock();
    std::thread waiting([&] {
        const std::lock_guard guard(lock);
        entered = true;
    });
    while (lock.state != GroupLock::AWAITED)
        std::this_thread::yield();
    EXPECT_FALSE(entered);
    lock.unlock();
    waiting.join();
    EXPECT_TRUE(entered);
}

} // namespace
