// SPDX-License-Identifier: MIT
// What a test asks the counting driver.
#pragma once

/// Calls of a GL function that have reached the driver, all together for null; -1 for an unknown name.
extern "C" __attribute__((visibility("default"))) int countedCalls(const char *name);
