// SPDX-License-Identifier: MIT
// Assertions through the platform's hook. They report the impossible; the code after one takes the safe way on.
#pragma once

#include "vsp.h"

/// Reports `what` when the condition fails. Returns whether it holds.
inline bool assertThat(bool condition, const char *what)
{
    if (!condition) [[unlikely]]
        os_assert_hook(0, what);
    return condition;
}
