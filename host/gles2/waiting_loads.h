// SPDX-License-Identifier: MIT
// Loads of array elements wait for the next draw, so that neighbours become one call: the library above loads the
// colours of its lights element by element, and every call of a driver costs as much as half a draw.
#pragma once

#include "context.h"

/// Notes that the element at this location holds a new value. In a group of several contexts, which may look at the
/// program at any time, the driver is called at once. The context must have a program in use.
void loadWithNextDraw(GLint location);

/// Gives the driver what waits for the context's program, which must be the driver's program in use.
void loadWaiting(Context *context);

/// Drops what waits, when the program leaves the context without a driver to give it to.
void forgetWaiting(Context *context);
