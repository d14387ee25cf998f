// SPDX-License-Identifier: MIT
// New values of gathered uniforms wait for the next draw, which gives all of them to the driver in one call: those
// between the first and the last that changed. The library above changes several per draw, a matrix and a colour or
// the colours of its lights, and every call of a driver costs as much as half a draw.
#pragma once

#include "context.h"

#include <algorithm>

/// Gives the driver what waits for the context's program, which must be the driver's program in use.
void loadWaiting(Context *context);

/// Notes that the gathered vectors from this location on hold new values. In a group of several contexts, which may
/// look at the program at any time, the driver is called at once. The context must have a program in use.
[[gnu::always_inline]] inline void loadWithNextDraw(GLint location, GLsizei vectors)
{
    Context *context = currentContext;
    WaitingLoads &waiting = context->program->waiting;
    waiting.first = std::min(waiting.first, location);
    waiting.end = std::max(waiting.end, location + vectors);
    context->specialDraws |= DRAWS_LOADED;
    if (context->group->contexts > 1) [[unlikely]]
        loadWaiting(context);
}
