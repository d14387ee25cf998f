// SPDX-License-Identifier: MIT
// Linkage of the exported mathematics functions; math_exports.def lists them.
#pragma once

#include <cstdint>

#define MATH_API extern "C" __attribute__((visibility("default")))
