// SPDX-License-Identifier: MIT
// What a test asks the driver with performance monitors.
#pragma once

/// The monitor calls that have reached the driver since the last asking, one a line: name and arguments.
extern "C" __attribute__((visibility("default"))) const char *takeMonitorCalls(void);
