// SPDX-License-Identifier: MIT
// Random legal calls to the library, for its current context over the recording backend. The same seed gives the same
// calls, so that several contexts can be given the same.
#pragma once

#include <cstdint>

/// Changes something that decides programs, or what is loaded into them.
void changeAtRandom(uint32_t seed);

/// Changes only what draws follow without another look at everything: the modelview matrix or the material.
void changeValueAtRandom(uint32_t seed);

/// Draws something, by any kind of draw.
void drawAtRandom(uint32_t seed);
