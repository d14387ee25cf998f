// SPDX-License-Identifier: MIT
// A backend whose functions do nothing, for measuring the library's own cost. Names of shaders and programs count up,
// the locations of a program are all different, everything else answers 0. It tests no alpha and blends no fog.
#pragma once

struct GLIContext;

/// Points every backend entry point at a function that does nothing.
void useEmptyBackend();

/// A new context over the empty backend, current on the calling thread; gliDestroyContext ends it. Null without memory.
GLIContext *createEmptyBackendContext();
